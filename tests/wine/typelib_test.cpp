// Reads the built type library back through ITypeLib/ITypeInfo and compares it
// with the tables of typelib_expect.h: library attributes, every class, interface,
// member, argument, event and enumeration value. Prints each failure and a final
// "N passed, N failed" line; the exit code is 0 only when nothing failed.
//
// Usage: typelib_test <path of korvelui99.tlb>   (a Unix path is turned into Z:\...)

#include <windows.h>
#include <oleauto.h>

#include <cstdio>
#include <cwchar>
#include <set>
#include <string>
#include <type_traits>

#include "typelib_expect.h"

namespace {

namespace ex = korvel::typelib_expect;

int g_passed = 0;
int g_failed = 0;

void check(bool ok, const std::string& what) {
    if (ok) {
        ++g_passed;
    } else {
        ++g_failed;
        std::printf("FAIL: %s\n", what.c_str());
    }
}

template <typename A, typename B>
void checkEq(const A& actual, const B& expected, const std::string& what) {
    bool ok = actual == expected;
    if (!ok) {
        if constexpr (std::is_convertible_v<A, std::string>)
            check(false, what + ": got \"" + std::string(actual) + "\", want \"" + std::string(expected) + "\"");
        else
            check(false, what + ": got " + std::to_string(actual) + ", want " + std::to_string(expected));
    } else {
        check(true, what);
    }
}

std::string narrow(const wchar_t* w) {
    if (!w) return {};
    int n = WideCharToMultiByte(CP_UTF8, 0, w, -1, nullptr, 0, nullptr, nullptr);
    std::string s(n > 0 ? n - 1 : 0, '\0');
    if (n > 1) WideCharToMultiByte(CP_UTF8, 0, w, -1, s.data(), n, nullptr, nullptr);
    return s;
}

std::wstring widen(const char* s) {
    int n = MultiByteToWideChar(CP_UTF8, 0, s, -1, nullptr, 0);
    std::wstring w(n > 0 ? n - 1 : 0, L'\0');
    if (n > 1) MultiByteToWideChar(CP_UTF8, 0, s, -1, w.data(), n);
    return w;
}

std::string guidText(const GUID& g) {
    wchar_t buf[64] = {};
    StringFromGUID2(g, buf, 64);
    return narrow(buf);
}

bool sameText(const std::string& a, const std::string& b) {
    return CompareStringA(LOCALE_INVARIANT, NORM_IGNORECASE, a.c_str(), -1, b.c_str(), -1) == CSTR_EQUAL;
}

struct Bstr {
    BSTR b = nullptr;
    ~Bstr() { SysFreeString(b); }
    std::string str() const { return narrow(b); }
};

template <typename T>
struct Ref {
    T* p = nullptr;
    ~Ref() { if (p) p->Release(); }
    T* operator->() const { return p; }
    T** out() { return &p; }
};

const char* const kStdoleLibid = "{00020430-0000-0000-C000-000000000046}";
std::string g_libid;  // our LIBID as read from the library

std::string libidOf(ITypeInfo* ti) {
    Ref<ITypeLib> lib;
    UINT index = 0;
    if (FAILED(ti->GetContainingTypeLib(lib.out(), &index))) return {};
    TLIBATTR* la = nullptr;
    if (FAILED(lib->GetLibAttr(&la))) return {};
    std::string s = guidText(la->guid);
    lib->ReleaseTLibAttr(la);
    return s;
}

std::string nameOf(ITypeInfo* ti) {
    Bstr n;
    ti->GetDocumentation(MEMBERID_NIL, &n.b, nullptr, nullptr, nullptr);
    return n.str();
}

// Renders a type as typelib_expect.h writes it; checks on the way that the stdole
// types come from stdole2.tlb and the enumerations from this library.
std::string render(ITypeInfo* ti, const TYPEDESC& td, const std::string& where) {
    switch (td.vt) {
    case VT_PTR: return render(ti, *td.lptdesc, where) + "*";
    case VT_SAFEARRAY: return "SAFEARRAY(" + render(ti, *td.lptdesc, where) + ")";
    case VT_USERDEFINED: {
        Ref<ITypeInfo> r;
        if (FAILED(ti->GetRefTypeInfo(td.hreftype, r.out()))) {
            check(false, where + ": unresolved user-defined type");
            return "?";
        }
        std::string n = nameOf(r.p);
        std::string lib = libidOf(r.p);
        if (n == "OLE_COLOR" || n == "IFontDisp" || n == "IPictureDisp")
            check(sameText(lib, kStdoleLibid), where + ": " + n + " refers to stdole2.tlb");
        else
            check(sameText(lib, g_libid), where + ": " + n + " is defined in this library");
        return n;
    }
    case VT_I2: return "short";
    case VT_I4: return "long";
    case VT_BOOL: return "VARIANT_BOOL";
    case VT_BSTR: return "BSTR";
    case VT_VARIANT: return "VARIANT";
    case VT_VOID: return "void";
    case VT_HRESULT: return "HRESULT";
    case VT_UI4: return "ULONG";
    case VT_INT: return "INT";
    case VT_DISPATCH: return "IDispatch*";
    case VT_UNKNOWN: return "IUnknown*";
    default: return "vt" + std::to_string(td.vt);
    }
}

const char* invokeName(ex::Invoke k) {
    switch (k) {
    case ex::Invoke::Get: return "get";
    case ex::Invoke::Put: return "put";
    case ex::Invoke::PutRef: return "putref";
    default: return "method";
    }
}

INVOKEKIND invokeKind(ex::Invoke k) {
    switch (k) {
    case ex::Invoke::Get: return INVOKE_PROPERTYGET;
    case ex::Invoke::Put: return INVOKE_PROPERTYPUT;
    case ex::Invoke::PutRef: return INVOKE_PROPERTYPUTREF;
    default: return INVOKE_FUNC;
    }
}

void checkParam(ITypeInfo* ti, const ELEMDESC& e, const ex::Param& p, const std::string& where, bool checkName,
                const std::string& actualName) {
    if (checkName) checkEq(actualName, std::string(p.name), where + " name");
    std::string want = std::string(p.type) + (p.byRef ? "*" : "");
    checkEq(render(ti, e.tdesc, where), want, where + " type");
    USHORT f = e.paramdesc.wParamFlags;
    check((f & PARAMFLAG_FIN) != 0, where + " is [in]");
    check(((f & PARAMFLAG_FOUT) != 0) == p.byRef, where + (p.byRef ? " is [in, out]" : " is not [out]"));
    check(((f & PARAMFLAG_FOPT) != 0) == p.optional, where + (p.optional ? " is optional" : " is not optional"));
    bool hasDefault = (f & PARAMFLAG_FHASDEFAULT) != 0;
    check(hasDefault == (p.defaultValue != nullptr), where + (p.defaultValue ? " has a default" : " has no default"));
    if (hasDefault && p.defaultValue && e.paramdesc.pparamdescex) {
        VARIANT& v = e.paramdesc.pparamdescex->varDefaultValue;
        if (std::string(p.type) == "BSTR") {
            check(V_VT(&v) == VT_BSTR, where + " default is a string");
            if (V_VT(&v) == VT_BSTR) checkEq(narrow(V_BSTR(&v)), std::string(p.defaultValue), where + " default");
        } else {
            VARIANT n;
            VariantInit(&n);
            HRESULT hr = VariantChangeType(&n, &v, 0, VT_I4);
            check(SUCCEEDED(hr), where + " default is a number");
            if (SUCCEEDED(hr)) checkEq(std::to_string(V_I4(&n)), std::string(p.defaultValue), where + " default");
        }
    }
}

std::string memberHelp(ITypeInfo* ti, MEMBERID id) {
    Bstr doc;
    ti->GetDocumentation(id, nullptr, &doc.b, nullptr, nullptr);
    return doc.str();
}

// Functions of the dispatch view that come from IUnknown and IDispatch.
bool inherited(const FUNCDESC* fd) {
    return (fd->wFuncFlags & FUNCFLAG_FRESTRICTED) && fd->memid >= 0x60000000 && fd->memid < 0x60020000;
}

void checkDual(ITypeLib* lib, const ex::Interface& want) {
    const std::string iname = want.name;
    Ref<ITypeInfo> disp;
    GUID iid;
    if (FAILED(IIDFromString(widen(want.iid).c_str(), &iid)) || FAILED(lib->GetTypeInfoOfGuid(iid, disp.out()))) {
        check(false, iname + " " + want.iid + " is in the library");
        return;
    }
    check(true, iname + " " + want.iid + " is in the library");
    checkEq(nameOf(disp.p), iname, iname + " name");
    TYPEATTR* ta = nullptr;
    disp->GetTypeAttr(&ta);
    check(ta->typekind == TKIND_DISPATCH, iname + " dispatch view");
    check((ta->wTypeFlags & TYPEFLAG_FDUAL) != 0, iname + " is dual");
    check((ta->wTypeFlags & TYPEFLAG_FNONEXTENSIBLE) != 0, iname + " is nonextensible");
    check((ta->wTypeFlags & TYPEFLAG_FHIDDEN) == 0, iname + " is not hidden");
    WORD cFuncs = ta->cFuncs;
    disp->ReleaseTypeAttr(ta);

    // Dispatch view: the members in order, as a client sees them through IDispatch.
    size_t k = 0;
    for (WORD i = 0; i < cFuncs; ++i) {
        FUNCDESC* fd = nullptr;
        disp->GetFuncDesc(i, &fd);
        if (inherited(fd)) {
            disp->ReleaseFuncDesc(fd);
            continue;
        }
        Bstr names[32];
        BSTR raw[32] = {};
        UINT cNames = 0;
        disp->GetNames(fd->memid, raw, 32, &cNames);
        for (UINT j = 0; j < cNames; ++j) names[j].b = raw[j];
        std::string fname = names[0].str();
        if (k >= want.functions.size()) {
            check(false, iname + ": unexpected member " + fname);
            disp->ReleaseFuncDesc(fd);
            continue;
        }
        const ex::Function& f = want.functions[k++];
        std::string where = iname + "." + f.name + " (" + invokeName(f.kind) + ")";
        checkEq(fname, std::string(f.name), where + " name");
        checkEq(static_cast<long>(fd->memid), f.dispid, where + " dispid");
        checkEq(static_cast<int>(fd->invkind), static_cast<int>(invokeKind(f.kind)), where + " invoke kind");
        check(((fd->wFuncFlags & FUNCFLAG_FHIDDEN) != 0) == ((f.flags & ex::kHidden) != 0), where + " hidden flag");
        check(((fd->wFuncFlags & FUNCFLAG_FNONBROWSABLE) != 0) == ((f.flags & ex::kNonBrowsable) != 0),
              where + " nonbrowsable flag");
        checkEq(memberHelp(disp.p, fd->memid), std::string(f.help), where + " help string");
        std::string result = render(disp.p, fd->elemdescFunc.tdesc, where + " result");
        checkEq(result, std::string(*f.result ? f.result : "void"), where + " result");
        checkEq(static_cast<size_t>(fd->cParams), f.params.size(), where + " argument count");
        bool isPut = f.kind == ex::Invoke::Put || f.kind == ex::Invoke::PutRef;
        for (size_t j = 0; j < f.params.size() && j < static_cast<size_t>(fd->cParams); ++j) {
            // GetNames leaves out the value argument of a property put.
            bool named = !(isPut && j + 1 == f.params.size());
            std::string actual = j + 1 < cNames ? names[j + 1].str() : std::string();
            checkParam(disp.p, fd->lprgelemdescParam[j], f.params[j], where + " argument " + f.params[j].name, named,
                       actual);
        }
        disp->ReleaseFuncDesc(fd);
    }
    checkEq(k, want.functions.size(), iname + " member count");

    // Interface view: vtable slots follow IDispatch's seven, in declaration order.
    HREFTYPE href = 0;
    Ref<ITypeInfo> vt;
    if (FAILED(disp->GetRefTypeOfImplType(static_cast<UINT>(-1), &href)) || FAILED(disp->GetRefTypeInfo(href, vt.out()))) {
        check(false, iname + " has an interface view");
        return;
    }
    vt->GetTypeAttr(&ta);
    check(ta->typekind == TKIND_INTERFACE, iname + " interface view");
    const int ptr = static_cast<int>(sizeof(void*));
    checkEq(static_cast<size_t>(ta->cFuncs), want.functions.size(), iname + " vtable function count");
    checkEq(static_cast<int>(ta->cbSizeVft), static_cast<int>((7 + want.functions.size()) * ptr), iname + " vtable size");
    WORD n = ta->cFuncs;
    vt->ReleaseTypeAttr(ta);
    {
        HREFTYPE base = 0;
        Ref<ITypeInfo> b;
        if (SUCCEEDED(vt->GetRefTypeOfImplType(0, &base)) && SUCCEEDED(vt->GetRefTypeInfo(base, b.out()))) {
            checkEq(nameOf(b.p), std::string("IDispatch"), iname + " derives from IDispatch");
            TYPEATTR* bt = nullptr;
            b->GetTypeAttr(&bt);
            checkEq(static_cast<int>(bt->cbSizeVft), 7 * ptr, iname + " IDispatch vtable size");
            checkEq(static_cast<int>(bt->cFuncs), 4, iname + " IDispatch function count");
            b->ReleaseTypeAttr(bt);
        } else {
            check(false, iname + " has a base interface");
        }
    }
    for (WORD i = 0; i < n && i < want.functions.size(); ++i) {
        FUNCDESC* fd = nullptr;
        vt->GetFuncDesc(i, &fd);
        const ex::Function& f = want.functions[i];
        std::string where = iname + "." + f.name + " (" + invokeName(f.kind) + ", vtable)";
        checkEq(static_cast<int>(fd->oVft), (7 + i) * ptr, where + " slot offset");
        checkEq(static_cast<long>(fd->memid), f.dispid, where + " dispid");
        check(fd->callconv == CC_STDCALL, where + " stdcall");
        check(fd->funckind == FUNC_PUREVIRTUAL, where + " pure virtual");
        checkEq(render(vt.p, fd->elemdescFunc.tdesc, where), std::string("HRESULT"), where + " returns HRESULT");
        size_t extra = *f.result ? 1 : 0;
        checkEq(static_cast<size_t>(fd->cParams), f.params.size() + extra, where + " argument count");
        if (extra && fd->cParams > 0) {
            const ELEMDESC& last = fd->lprgelemdescParam[fd->cParams - 1];
            check((last.paramdesc.wParamFlags & (PARAMFLAG_FRETVAL | PARAMFLAG_FOUT)) ==
                      (PARAMFLAG_FRETVAL | PARAMFLAG_FOUT),
                  where + " last argument is [out, retval]");
            checkEq(render(vt.p, last.tdesc, where), std::string(f.result) + "*", where + " retval type");
        }
        vt->ReleaseFuncDesc(fd);
    }
}

void checkEvents(ITypeLib* lib, const ex::Interface& want) {
    const std::string iname = want.name;
    Ref<ITypeInfo> ti;
    GUID iid;
    if (FAILED(IIDFromString(widen(want.iid).c_str(), &iid)) || FAILED(lib->GetTypeInfoOfGuid(iid, ti.out()))) {
        check(false, iname + " " + want.iid + " is in the library");
        return;
    }
    check(true, iname + " " + want.iid + " is in the library");
    checkEq(nameOf(ti.p), iname, iname + " name");
    TYPEATTR* ta = nullptr;
    ti->GetTypeAttr(&ta);
    check(ta->typekind == TKIND_DISPATCH, iname + " is a dispinterface");
    check((ta->wTypeFlags & TYPEFLAG_FDUAL) == 0, iname + " is not dual");
    checkEq(static_cast<size_t>(ta->cFuncs), want.events.size(), iname + " event count");
    WORD n = ta->cFuncs;
    ti->ReleaseTypeAttr(ta);
    for (WORD i = 0; i < n && i < want.events.size(); ++i) {
        const ex::Event& e = want.events[i];
        std::string where = iname + "." + e.name;
        FUNCDESC* fd = nullptr;
        ti->GetFuncDesc(i, &fd);
        Bstr names[32];
        BSTR raw[32] = {};
        UINT cNames = 0;
        ti->GetNames(fd->memid, raw, 32, &cNames);
        for (UINT j = 0; j < cNames; ++j) names[j].b = raw[j];
        checkEq(names[0].str(), std::string(e.name), where + " name");
        checkEq(static_cast<long>(fd->memid), e.dispid, where + " dispid");
        check(fd->invkind == INVOKE_FUNC, where + " is a method");
        checkEq(render(ti.p, fd->elemdescFunc.tdesc, where), std::string("void"), where + " returns nothing");
        checkEq(memberHelp(ti.p, fd->memid), std::string(e.help), where + " help string");
        checkEq(static_cast<size_t>(fd->cParams), e.params.size(), where + " argument count");
        for (size_t j = 0; j < e.params.size() && j < static_cast<size_t>(fd->cParams); ++j) {
            std::string actual = j + 1 < cNames ? names[j + 1].str() : std::string();
            checkParam(ti.p, fd->lprgelemdescParam[j], e.params[j], where + " argument " + e.params[j].name, true, actual);
        }
        ti->ReleaseFuncDesc(fd);
    }
}

void checkClass(ITypeLib* lib, const ex::Class& c) {
    const std::string cname = c.name;
    Ref<ITypeInfo> ti;
    GUID clsid;
    if (FAILED(CLSIDFromString(widen(c.clsid).c_str(), &clsid)) || FAILED(lib->GetTypeInfoOfGuid(clsid, ti.out()))) {
        check(false, cname + " " + c.clsid + " is in the library");
        return;
    }
    check(true, cname + " " + c.clsid + " is in the library");
    Bstr name, doc;
    ti->GetDocumentation(MEMBERID_NIL, &name.b, &doc.b, nullptr, nullptr);
    checkEq(name.str(), cname, cname + " name");
    checkEq(doc.str(), std::string(c.help), cname + " description");
    TYPEATTR* ta = nullptr;
    ti->GetTypeAttr(&ta);
    check(ta->typekind == TKIND_COCLASS, cname + " is a coclass");
    check((ta->wTypeFlags & TYPEFLAG_FCANCREATE) != 0, cname + " can be created");
    check(((ta->wTypeFlags & TYPEFLAG_FCONTROL) != 0) == c.isControl, cname + (c.isControl ? " is a control" : " is not a control"));
    UINT wantImpl = c.eventInterface ? 2 : 1;
    checkEq(static_cast<UINT>(ta->cImplTypes), wantImpl, cname + " implemented interface count");
    UINT n = ta->cImplTypes;
    ti->ReleaseTypeAttr(ta);
    for (UINT i = 0; i < n && i < wantImpl; ++i) {
        HREFTYPE h = 0;
        INT flags = 0;
        Ref<ITypeInfo> r;
        ti->GetRefTypeOfImplType(i, &h);
        ti->GetImplTypeFlags(i, &flags);
        ti->GetRefTypeInfo(h, r.out());
        std::string rn = r.p ? nameOf(r.p) : std::string("?");
        if (i == 0) {
            checkEq(rn, std::string(c.defaultInterface), cname + " default interface");
            checkEq(flags, static_cast<INT>(IMPLTYPEFLAG_FDEFAULT), cname + " default interface flags");
        } else {
            checkEq(rn, std::string(c.eventInterface), cname + " event interface");
            checkEq(flags, static_cast<INT>(IMPLTYPEFLAG_FDEFAULT | IMPLTYPEFLAG_FSOURCE), cname + " event interface flags");
        }
    }
}

void checkEnum(ITypeLib* lib, const ex::Enumeration& want) {
    const std::string ename = want.name;
    std::wstring w = widen(want.name);
    ITypeInfo* found[2] = {};
    MEMBERID ids[2] = {};
    USHORT count = 2;
    HRESULT hr = lib->FindName(w.data(), 0, found, ids, &count);
    ITypeInfo* ti = nullptr;
    for (USHORT i = 0; i < count; ++i) {
        if (ids[i] == MEMBERID_NIL && !ti) ti = found[i];
        else if (found[i]) found[i]->Release();
    }
    if (FAILED(hr) || !ti) {
        check(false, ename + " is in the library");
        return;
    }
    check(true, ename + " is in the library");
    TYPEATTR* ta = nullptr;
    ti->GetTypeAttr(&ta);
    check(ta->typekind == TKIND_ENUM, ename + " is an enumeration");
    checkEq(static_cast<size_t>(ta->cVars), want.values.size(), ename + " value count");
    WORD n = ta->cVars;
    ti->ReleaseTypeAttr(ta);
    for (WORD i = 0; i < n && i < want.values.size(); ++i) {
        const ex::EnumValue& v = want.values[i];
        VARDESC* vd = nullptr;
        ti->GetVarDesc(i, &vd);
        Bstr vn;
        ti->GetDocumentation(vd->memid, &vn.b, nullptr, nullptr, nullptr);
        std::string where = ename + "." + v.name + " (" + v.display + ")";
        checkEq(vn.str(), std::string(v.name), where + " name");
        check(vd->varkind == VAR_CONST, where + " is a constant");
        VARIANT n4;
        VariantInit(&n4);
        if (vd->lpvarValue && SUCCEEDED(VariantChangeType(&n4, vd->lpvarValue, 0, VT_I4)))
            checkEq(static_cast<long>(V_I4(&n4)), v.value, where + " value");
        else
            check(false, where + " value readable");
        ti->ReleaseVarDesc(vd);
    }
    ti->Release();
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::printf("usage: typelib_test <korvelui99.tlb>\n");
        return 2;
    }
    std::string path = argv[1];
    if (!path.empty() && path[0] == '/') {
        path = "Z:" + path;
        for (char& ch : path)
            if (ch == '/') ch = '\\';
    }
    CoInitialize(nullptr);
    {
        Ref<ITypeLib> lib;
        HRESULT hr = LoadTypeLibEx(widen(path.c_str()).c_str(), REGKIND_NONE, lib.out());
        check(SUCCEEDED(hr), "LoadTypeLibEx(" + path + ", REGKIND_NONE)");
        if (FAILED(hr)) {
            std::printf("%d passed, %d failed\n", g_passed, g_failed);
            return 1;
        }

        TLIBATTR* la = nullptr;
        lib->GetLibAttr(&la);
        g_libid = guidText(la->guid);
        checkEq(g_libid, std::string(ex::kLibid), "LIBID");
        checkEq(static_cast<int>(la->wMajorVerNum), static_cast<int>(ex::kMajorVersion), "major version");
        checkEq(static_cast<int>(la->wMinorVerNum), static_cast<int>(ex::kMinorVersion), "minor version");
        checkEq(static_cast<int>(la->syskind), static_cast<int>(sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32), "syskind");
        lib->ReleaseTLibAttr(la);
        Bstr libName;
        lib->GetDocumentation(-1, &libName.b, nullptr, nullptr, nullptr);
        checkEq(libName.str(), std::string(ex::kLibraryName), "library name");

        for (const ex::Class& c : ex::kClasses) checkClass(lib.p, c);
        for (const ex::Interface& i : ex::kInterfaces) {
            if (i.isEventInterface) checkEvents(lib.p, i);
            else checkDual(lib.p, i);
        }
        for (const ex::Enumeration& e : ex::kEnumerations) checkEnum(lib.p, e);

        // Nothing else in the library: every type is one of the above.
        std::set<std::string> known;
        for (const ex::Class& c : ex::kClasses) known.insert(c.name);
        for (const ex::Interface& i : ex::kInterfaces) known.insert(i.name);
        for (const ex::Enumeration& e : ex::kEnumerations) known.insert(e.name);
        UINT count = lib->GetTypeInfoCount();
        checkEq(static_cast<size_t>(count), known.size(), "number of types in the library");
        for (UINT i = 0; i < count; ++i) {
            Bstr n;
            lib->GetDocumentation(static_cast<INT>(i), &n.b, nullptr, nullptr, nullptr);
            check(known.count(n.str()) == 1, "type " + n.str() + " is expected");
        }
    }
    CoUninitialize();
    std::printf("%d passed, %d failed\n", g_passed, g_failed);
    return g_failed == 0 ? 0 : 1;
}
