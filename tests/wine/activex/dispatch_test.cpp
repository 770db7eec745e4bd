// Every implemented class created by its ProgIDs and driven by name through
// IDispatch: dispatch ids as the type library gives them, every member's value
// round trip, the default member, a type mismatch, a run-time error with its
// number and description, and the dual interface's vtable.
#include "ax_test.h"

using namespace axtest;

namespace {

IDispatch* NewFont(const wchar_t* name, long long size_1e4, bool bold) {
  FONTDESC fd{};
  fd.cbSizeofstruct = sizeof fd;
  fd.lpstrName = const_cast<LPOLESTR>(name);
  fd.cySize.int64 = size_1e4;
  fd.sWeight = bold ? 700 : 400;
  IDispatch* d = nullptr;
  HRESULT hr = OleCreateFontIndirect(&fd, IID_IDispatch, reinterpret_cast<void**>(&d));
  if (FAILED(hr)) std::printf("OleCreateFontIndirect: %s\n", Hex(hr).c_str());
  return d;
}

// "name size bold" as the font object reports them (the platform may have
// substituted the face and rounded the size to whole pixels).
std::string FontText(IDispatch* d) {
  IFont* f = nullptr;
  if (!d || FAILED(d->QueryInterface(IID_IFont, reinterpret_cast<void**>(&f))) || !f) return "(no font)";
  BSTR name = nullptr;
  CY size{};
  BOOL bold = FALSE;
  f->get_Name(&name);
  f->get_Size(&size);
  f->get_Bold(&bold);
  f->Release();
  std::string s = (name ? Narrow(name) : std::string()) + " " + std::to_string(size.int64) + (bold ? " bold" : "");
  SysFreeString(name);
  return s;
}

bool SameObject(IUnknown* a, IUnknown* b) {
  if (!a || !b) return false;
  IUnknown *x = nullptr, *y = nullptr;
  a->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(&x));
  b->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(&y));
  bool same = x && x == y;
  if (x) x->Release();
  if (y) y->Release();
  return same;
}

void ExpectIds(IDispatch* d, const char* cls, std::vector<std::pair<const wchar_t*, DISPID>> ids) {
  for (auto& [name, id] : ids)
    Check(IdOf(d, name) == id, std::string(cls) + ": " + Narrow(name) + " has dispatch id " + std::to_string(id));
  DISPID unknown = 7;
  LPOLESTR n = const_cast<LPOLESTR>(L"NoSuchMember");
  Check(d->GetIDsOfNames(IID_NULL, &n, 1, 0, &unknown) == DISP_E_UNKNOWNNAME && unknown == DISPID_UNKNOWN,
        std::string(cls) + ": an unknown name gives DISP_E_UNKNOWNNAME");
}

void ExpectColor(IDispatch* d, const char* cls, const wchar_t* name, long value) {
  Check(Put(d, name, VI4(value)) == S_OK, std::string(cls) + ": put " + Narrow(name));
  VARTYPE vt = 0;
  long got = GetLong(d, name, &vt);
  Check(got == value && vt == VT_I4, std::string(cls) + ": " + Narrow(name) + " reads back " + std::to_string(value) +
                                         " as a Long (got " + std::to_string(got) + ", vt " + std::to_string(vt) + ")");
}

void ExpectFontByReference(IDispatch* d, const char* cls) {
  IDispatch* font = NewFont(L"Arial", 120000, true);
  Check(font != nullptr, "a standard font");
  if (!font) return;
  const std::string before = FontText(font);
  Check(Put(d, L"Font", VDisp(font), DISPATCH_PROPERTYPUTREF) == S_OK, std::string(cls) + ": Set Font");
  CallResult r;
  Get(d, L"Font", r);
  Check(r.hr == S_OK && V_VT(&r.value) == VT_DISPATCH && SameObject(V_DISPATCH(&r.value), font),
        std::string(cls) + ": Font reads back the same font object");
  // The font comes back with the face, size and weight the font object had.
  Check(r.hr == S_OK && V_VT(&r.value) == VT_DISPATCH && FontText(V_DISPATCH(&r.value)) == before,
        std::string(cls) + ": the font read back is " + before);
  Check(Put(d, L"Font", VStr(L"Arial"), DISPATCH_PROPERTYPUTREF) == DISP_E_TYPEMISMATCH,
        std::string(cls) + ": Set Font to a string is a type mismatch");
  font->Release();
}

void ExpectTypeMismatch(IDispatch* d, const char* cls, const wchar_t* name, VARIANT v) {
  CallResult r;
  InvokeId(d, IdOf(d, name), DISPATCH_PROPERTYPUT, {v}, r);
  Check(r.hr == DISP_E_TYPEMISMATCH && r.arg_err == 0,
        std::string(cls) + ": a wrong type for " + Narrow(name) + " gives DISP_E_TYPEMISMATCH at argument 0 (got " + Hex(r.hr) + ")");
}

void ExpectOverflow(IDispatch* d, const char* cls, const wchar_t* name, VARIANT v) {
  CallResult r;
  InvokeId(d, IdOf(d, name), DISPATCH_PROPERTYPUT, {v}, r);
  Check(r.hr == DISP_E_EXCEPTION, std::string(cls) + ": an out-of-range " + Narrow(name) + " gives DISP_E_EXCEPTION (got " + Hex(r.hr) + ")");
  Check(r.excep.scode == static_cast<SCODE>(0x800A0006), std::string(cls) + ": with error number 6 (scode " + Hex(r.excep.scode) + ")");
  Check(r.excep.bstrDescription && std::wstring(r.excep.bstrDescription) == L"Overflow",
        std::string(cls) + ": and the description \"Overflow\"");
  Check(r.excep.bstrSource && std::wstring(r.excep.bstrSource) == L"KorvelUI99." + std::wstring(cls, cls + strlen(cls)),
        std::string(cls) + ": from the class's ProgID");
}

void Link() {
  IDispatch* d = CreateNew(L"KorvelUI99.KorvelLink");
  Check(d != nullptr, "KorvelLink created by ProgID");
  if (!d) return;
  ExpectIds(d, "KorvelLink", {{L"Caption", 1}, {L"URL", 0}, {L"Enabled", 2}, {L"AboutBox", -552}, {L"ForeColor", 3},
                              {L"BackColor", 4}, {L"Font", 5}, {L"HoverColor", 6}, {L"caption", 1}});
  Check(Put(d, L"Caption", VStr(L"Home page")) == S_OK && GetString(d, L"Caption") == L"Home page",
        "KorvelLink: Caption round trip");
  Check(Put(d, L"URL", VStr(L"  http://example.test/ ")) == S_OK && GetString(d, L"URL") == L"http://example.test/",
        "KorvelLink: URL round trip (trimmed)");
  // The default member is URL.
  CallResult r;
  InvokeId(d, DISPID_VALUE, DISPATCH_PROPERTYGET, {}, r);
  Check(r.hr == S_OK && V_VT(&r.value) == VT_BSTR && std::wstring(V_BSTR(&r.value)) == L"http://example.test/",
        "KorvelLink: the default member reads URL");
  CallResult w;
  InvokeId(d, DISPID_VALUE, DISPATCH_PROPERTYPUT, {VStr(L"mailto:a@b.test")}, w);
  Check(w.hr == S_OK && GetString(d, L"URL") == L"mailto:a@b.test", "KorvelLink: the default member assigns URL");
  VARTYPE vt = 0;
  Check(Put(d, L"Enabled", VBool(false)) == S_OK && GetLong(d, L"Enabled", &vt) == 0 && vt == VT_BOOL,
        "KorvelLink: Enabled False round trip as a Boolean");
  Check(Put(d, L"Enabled", VI2(-1)) == S_OK && GetLong(d, L"Enabled") == -1, "KorvelLink: Enabled True from -1");
  ExpectColor(d, "KorvelLink", L"ForeColor", 0xFF);
  ExpectColor(d, "KorvelLink", L"BackColor", static_cast<long>(0x80000005));
  ExpectColor(d, "KorvelLink", L"HoverColor", 0x00FF00);
  ExpectFontByReference(d, "KorvelLink");
  ExpectTypeMismatch(d, "KorvelLink", L"ForeColor", VStr(L"red"));
  ExpectTypeMismatch(d, "KorvelLink", L"Enabled", VStr(L"maybe"));
  // A script calls a property get with the method flag too.
  CallResult m;
  InvokeId(d, IdOf(d, L"Caption"), DISPATCH_METHOD | DISPATCH_PROPERTYGET, {}, m);
  Check(m.hr == S_OK && V_VT(&m.value) == VT_BSTR && std::wstring(V_BSTR(&m.value)) == L"Home page",
        "KorvelLink: a get called as method-or-get");
  CallResult nf;
  InvokeId(d, 77, DISPATCH_PROPERTYGET, {}, nf);
  Check(nf.hr == DISP_E_MEMBERNOTFOUND, "KorvelLink: an unknown dispatch id gives DISP_E_MEMBERNOTFOUND");

  // The dual interface's vtable reaches the same members.
  _KorvelLink* link = nullptr;
  Check(SUCCEEDED(d->QueryInterface(IID__KorvelLink, reinterpret_cast<void**>(&link))) && link, "KorvelLink: QueryInterface for _KorvelLink");
  if (link) {
    BSTR early = SysAllocString(L"Early bound");
    Check(link->put_Caption(early) == S_OK, "KorvelLink: put_Caption through the vtable");
    SysFreeString(early);
    BSTR got = nullptr;
    Check(link->get_Caption(&got) == S_OK && got && std::wstring(got) == L"Early bound", "KorvelLink: get_Caption through the vtable");
    SysFreeString(got);
    OLE_COLOR c = 0;
    Check(link->put_HoverColor(0x80000012) == S_OK && link->get_HoverColor(&c) == S_OK && c == 0x80000012,
          "KorvelLink: an OLE_COLOR with the high bit through the vtable");
    VARIANT_BOOL b = 0;
    Check(link->get_Enabled(&b) == S_OK && b == VARIANT_TRUE, "KorvelLink: get_Enabled through the vtable");
    IFontDisp* f = nullptr;
    Check(link->get_Font(&f) == S_OK && f, "KorvelLink: get_Font through the vtable");
    if (f) f->Release();
    link->Release();
  }
  Check(GetString(d, L"Caption") == L"Early bound", "KorvelLink: the vtable and IDispatch see one object");
  d->Release();
}

void Divider() {
  IDispatch* d = CreateNew(L"KorvelUI99.KorvelDivider.1");
  Check(d != nullptr, "KorvelDivider created by its versioned ProgID");
  if (!d) return;
  ExpectIds(d, "KorvelDivider", {{L"Caption", 1}, {L"Default_", 0}, {L"Font", 2}, {L"AboutBox", -552}});
  Check(Put(d, L"Caption", VStr(L"General")) == S_OK && GetString(d, L"Caption") == L"General", "KorvelDivider: Caption round trip");
  Check(GetString(d, L"Default_") == L"General", "KorvelDivider: Default_ reads the caption");
  CallResult w;
  InvokeId(d, DISPID_VALUE, DISPATCH_PROPERTYPUT, {VStr(L"Options")}, w);
  Check(w.hr == S_OK && GetString(d, L"Caption") == L"Options", "KorvelDivider: the default member assigns the caption");
  ExpectFontByReference(d, "KorvelDivider");
  d->Release();
}

void Bar() {
  IDispatch* d = CreateNew(L"KorvelUI99.KorvelBar");
  Check(d != nullptr, "KorvelBar created by ProgID");
  if (!d) return;
  ExpectIds(d, "KorvelBar", {{L"Value", 0}, {L"AboutBox", -552}});
  VARTYPE vt = 0;
  // Created by a script there is no container: run time, so the bar starts empty.
  Check(GetLong(d, L"Value", &vt) == 0 && vt == VT_I2, "KorvelBar: a new bar at run time reads 0 as an Integer");
  Check(Put(d, L"Value", VI2(37)) == S_OK && GetLong(d, L"Value") == 37, "KorvelBar: Value round trip");
  Check(Put(d, L"Value", VI2(250)) == S_OK && GetLong(d, L"Value") == 100, "KorvelBar: 250 is clamped to 100");
  Check(Put(d, L"Value", VStr(L"12")) == S_OK && GetLong(d, L"Value") == 12, "KorvelBar: a numeric string converts");
  ExpectTypeMismatch(d, "KorvelBar", L"Value", VStr(L"twelve"));
  ExpectOverflow(d, "KorvelBar", L"Value", VI4(40000));
  Check(GetLong(d, L"Value") == 12, "KorvelBar: the failed assignments left Value alone");
  _KorvelBar* bar = nullptr;
  if (SUCCEEDED(d->QueryInterface(IID__KorvelBar, reinterpret_cast<void**>(&bar))) && bar) {
    short v = 0;
    Check(bar->put_Value(55) == S_OK && bar->get_Value(&v) == S_OK && v == 55, "KorvelBar: Value through the vtable");
    bar->Release();
  } else {
    Check(false, "KorvelBar: QueryInterface for _KorvelBar");
  }
  d->Release();
}

void MiniSlider() {
  IDispatch* d = CreateNew(L"KorvelUI99.KorvelMiniSlider");
  Check(d != nullptr, "KorvelMiniSlider created by ProgID");
  if (!d) return;
  ExpectIds(d, "KorvelMiniSlider", {{L"Value", 0}, {L"Min", 1}, {L"Max", 2}, {L"ForeColor", 3}, {L"BackColor", 4},
                                    {L"Enabled", 5}, {L"AboutBox", -552}});
  VARTYPE vt = 0;
  Check(Put(d, L"Max", VI4(500)) == S_OK && GetLong(d, L"Max", &vt) == 500 && vt == VT_I4, "KorvelMiniSlider: Max round trip as a Long");
  Check(Put(d, L"Min", VI4(-20)) == S_OK && GetLong(d, L"Min") == -20, "KorvelMiniSlider: Min round trip");
  Check(Put(d, L"Value", VI4(300)) == S_OK && GetLong(d, L"Value") == 300, "KorvelMiniSlider: Value round trip");
  Check(Put(d, L"Value", VI4(9999)) == S_OK && GetLong(d, L"Value") == 500, "KorvelMiniSlider: Value clamped to Max");
  CallResult r;
  InvokeId(d, DISPID_VALUE, DISPATCH_PROPERTYGET, {}, r);
  Check(r.hr == S_OK && V_VT(&r.value) == VT_I4 && V_I4(&r.value) == 500, "KorvelMiniSlider: the default member is Value");
  ExpectColor(d, "KorvelMiniSlider", L"ForeColor", 0x000080);
  ExpectColor(d, "KorvelMiniSlider", L"BackColor", static_cast<long>(0x80000005));
  Check(GetLong(d, L"Enabled", &vt) == -1 && vt == VT_BOOL, "KorvelMiniSlider: Enabled starts True");
  Check(Put(d, L"Enabled", VBool(false)) == S_OK && GetLong(d, L"Enabled") == -1,
        "KorvelMiniSlider: assigning Enabled keeps the flag (as the control does)");
  ExpectTypeMismatch(d, "KorvelMiniSlider", L"Value", VStr(L"lots"));
  ExpectOverflow(d, "KorvelMiniSlider", L"Value", VR8(1e10));
  d->Release();
}

}  // namespace

int main() {
  CoInitialize(nullptr);
  Link();
  Divider();
  Bar();
  MiniSlider();
  CoUninitialize();
  return Summary();
}
