#include "activex/type_members.h"

#include "activex/ole_variant.h"
#include "framework/arith.h"

namespace korvel::activex {

namespace {

ParamType Resolve(ITypeInfo* info, const TYPEDESC& td) {
  ParamType t;
  switch (td.vt) {
    case VT_PTR: {
      ParamType inner = Resolve(info, *td.lptdesc);
      // A pointer to an interface is the interface itself; a pointer to a value
      // is a by-reference argument.
      if ((inner.vt == VT_DISPATCH || inner.vt == VT_UNKNOWN) && td.lptdesc->vt == VT_USERDEFINED) return inner;
      inner.byref = true;
      return inner;
    }
    case VT_SAFEARRAY:
      t.vt = VT_SAFEARRAY;
      t.array_elem = Resolve(info, *td.lptdesc).vt;
      return t;
    case VT_USERDEFINED: {
      ITypeInfo* ref = nullptr;
      t.vt = VT_I4;
      if (SUCCEEDED(info->GetRefTypeInfo(td.hreftype, &ref)) && ref) {
        TYPEATTR* attr = nullptr;
        if (SUCCEEDED(ref->GetTypeAttr(&attr)) && attr) {
          switch (attr->typekind) {
            case TKIND_ALIAS: t = Resolve(ref, attr->tdescAlias); break;
            case TKIND_ENUM: t.vt = VT_I4; break;
            case TKIND_DISPATCH: t.vt = VT_DISPATCH; break;
            case TKIND_INTERFACE: t.vt = (attr->wTypeFlags & TYPEFLAG_FDISPATCHABLE) ? VT_DISPATCH : VT_UNKNOWN; break;
            default: t.vt = VT_I4; break;
          }
          ref->ReleaseTypeAttr(attr);
        }
        ref->Release();
      }
      return t;
    }
    case VT_INT: t.vt = VT_I4; return t;
    case VT_UINT: t.vt = VT_UI4; return t;
    case VT_HRESULT: t.vt = VT_I4; return t;
    default: t.vt = td.vt; return t;
  }
}

}  // namespace

int Member::InputCount() const {
  int n = 0;
  for (const auto& p : params)
    if (!p.retval) ++n;
  return n;
}

const MemberParam* Member::RetVal() const {
  for (const auto& p : params)
    if (p.retval) return &p;
  return nullptr;
}

TypeMembers::TypeMembers(ITypeInfo* info) {
  TYPEATTR* attr = nullptr;
  if (!info || FAILED(info->GetTypeAttr(&attr)) || !attr) return;
  const int funcs = attr->cFuncs;
  info->ReleaseTypeAttr(attr);
  for (int i = 0; i < funcs; ++i) {
    FUNCDESC* fd = nullptr;
    if (FAILED(info->GetFuncDesc(static_cast<UINT>(i), &fd)) || !fd) continue;
    Member m;
    m.id = fd->memid;
    m.kind = fd->invkind;
    std::vector<BSTR> names(static_cast<size_t>(fd->cParams) + 1, nullptr);
    UINT got = 0;
    info->GetNames(fd->memid, names.data(), static_cast<UINT>(names.size()), &got);
    if (got > 0 && names[0]) {
      m.wname.assign(names[0], SysStringLen(names[0]));
      m.name = Narrow(names[0], static_cast<int>(SysStringLen(names[0])));
    }
    for (int p = 0; p < fd->cParams; ++p) {
      const ELEMDESC& ed = fd->lprgelemdescParam[p];
      MemberParam mp;
      if (static_cast<UINT>(p) + 1 < got && names[static_cast<size_t>(p) + 1])
        mp.name.assign(names[static_cast<size_t>(p) + 1], SysStringLen(names[static_cast<size_t>(p) + 1]));
      mp.type = Resolve(info, ed.tdesc);
      const USHORT flags = ed.paramdesc.wParamFlags;
      mp.retval = (flags & PARAMFLAG_FRETVAL) != 0;
      if (mp.retval) mp.type.byref = false;
      mp.optional = (flags & PARAMFLAG_FOPT) != 0;
      VariantInit(&mp.def);
      if ((flags & PARAMFLAG_FHASDEFAULT) && ed.paramdesc.pparamdescex) {
        mp.has_default = true;
        VariantCopy(&mp.def, &ed.paramdesc.pparamdescex->varDefaultValue);
      }
      m.params.push_back(std::move(mp));
    }
    for (BSTR b : names) SysFreeString(b);
    info->ReleaseFuncDesc(fd);
    members_.push_back(std::move(m));
  }
}

TypeMembers::~TypeMembers() {
  for (auto& m : members_)
    for (auto& p : m.params) VariantClear(&p.def);
}

const Member* TypeMembers::Find(MEMBERID id, WORD flags) const {
  // A get may be asked for as a method and a method as a get (scripts do both).
  static const std::pair<WORD, INVOKEKIND> kOrder[] = {
      {DISPATCH_METHOD, INVOKE_FUNC},
      {DISPATCH_PROPERTYGET, INVOKE_PROPERTYGET},
      {DISPATCH_PROPERTYPUT, INVOKE_PROPERTYPUT},
      {DISPATCH_PROPERTYPUTREF, INVOKE_PROPERTYPUTREF},
  };
  for (const auto& [flag, kind] : kOrder) {
    if (!(flags & flag)) continue;
    for (const auto& m : members_)
      if (m.id == id && m.kind == kind) return &m;
  }
  // A put of an object to a member that only has putref, and the reverse.
  if (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) {
    for (const auto& m : members_)
      if (m.id == id && (m.kind == INVOKE_PROPERTYPUT || m.kind == INVOKE_PROPERTYPUTREF)) return &m;
  }
  return nullptr;
}

const Member* TypeMembers::Find(const std::string& name, INVOKEKIND kind) const {
  for (const auto& m : members_)
    if (m.kind == kind && CompareText(m.name, name) == 0) return &m;
  return nullptr;
}

MEMBERID TypeMembers::IdOf(const std::string& name) const {
  for (const auto& m : members_)
    if (CompareText(m.name, name) == 0) return m.id;
  return DISPID_UNKNOWN;
}

}  // namespace korvel::activex
