// Korvel headers come before the platform's (they define the platform's constants).
#include "framework/errors.h"
#include "framework/picture.h"
#include "framework/property_bag.h"
#include "platform/win32/win32_platform.h"
#include "activex/ole_control.h"

#include <cstring>
#include <new>

#include "activex/connection_point.h"
#include "activex/ole_host.h"

#include <objsafe.h>

namespace korvel::activex {

Platform& ServerPlatform();

// ---- type information ----

namespace {

ITypeLib* g_typelib = nullptr;
std::vector<std::unique_ptr<ClassTypes>> g_types;  // by row of the class table

ITypeInfo* InfoOf(const GUID& guid) {
  ITypeLib* tl = ModuleTypeLib();
  ITypeInfo* info = nullptr;
  if (!tl || FAILED(tl->GetTypeInfoOfGuid(guid, &info))) return nullptr;
  return info;
}

}  // namespace

ITypeLib* ModuleTypeLib() {
  if (!g_typelib) {
    wchar_t path[MAX_PATH];
    GetModuleFileNameW(ServerModule(), path, MAX_PATH);
    if (FAILED(LoadTypeLibEx(path, REGKIND_NONE, &g_typelib))) g_typelib = nullptr;
  }
  return g_typelib;
}

const ClassTypes* TypesOf(const ClassInfo& cls) {
  const size_t row = static_cast<size_t>(&cls - Classes());
  if (g_types.size() < static_cast<size_t>(ClassCount())) g_types.resize(static_cast<size_t>(ClassCount()));
  if (g_types[row]) return g_types[row].get();
  auto t = std::make_unique<ClassTypes>();
  t->coclass = InfoOf(*cls.clsid);
  t->dispatch = InfoOf(*cls.dual_iid);
  if (!t->coclass || !t->dispatch) return nullptr;
  // The interface side of the dual interface holds the members with their types.
  HREFTYPE href = 0;
  if (SUCCEEDED(t->dispatch->GetRefTypeOfImplType(static_cast<UINT>(-1), &href)))
    t->dispatch->GetRefTypeInfo(href, &t->vtable);
  if (!t->vtable) {
    t->vtable = t->dispatch;
    t->vtable->AddRef();
  }
  t->members = std::make_unique<TypeMembers>(t->vtable);
  if (cls.events_iid) {
    t->events = InfoOf(*cls.events_iid);
    if (t->events) t->event_members = std::make_unique<TypeMembers>(t->events);
  }
  g_types[row] = std::move(t);
  return g_types[row].get();
}

void ReleaseAllTypes() {
  for (auto& t : g_types) {
    if (!t) continue;
    t->members.reset();
    t->event_members.reset();
    for (ITypeInfo* i : {t->coclass, t->dispatch, t->vtable, t->events})
      if (i) i->Release();
  }
  g_types.clear();
  if (g_typelib) g_typelib->Release();
  g_typelib = nullptr;
}

// ---- conversions at the boundary ----

namespace {

size_t ScalarSize(VARTYPE vt) {
  switch (vt) {
    case VT_I1: case VT_UI1: return 1;
    case VT_I2: case VT_UI2: case VT_BOOL: return 2;
    case VT_I4: case VT_UI4: case VT_INT: case VT_UINT: case VT_R4: case VT_ERROR: return 4;
    case VT_R8: case VT_CY: case VT_DATE: case VT_I8: case VT_UI8: return 8;
    default: return 0;
  }
}

// Stores value (whose ownership passes) where ref points; free_old releases what
// was there (not for an [out, retval] pointer, which holds nothing yet).
HRESULT StoreByRef(const VARIANT& ref, VARIANT* value, bool free_old) {
  const VARTYPE t = static_cast<VARTYPE>(V_VT(&ref) & ~VT_BYREF);
  void* where = V_BYREF(&ref);
  if (t == VT_VARIANT) {
    auto* dst = static_cast<VARIANT*>(where);
    if (free_old) VariantClear(dst);
    *dst = *value;
    V_VT(value) = VT_EMPTY;
    return S_OK;
  }
  if (t & VT_ARRAY) {
    if (V_VT(value) == VT_EMPTY) {
      V_VT(value) = t;
      V_ARRAY(value) = nullptr;
    }
    if (!(V_VT(value) & VT_ARRAY)) return DISP_E_TYPEMISMATCH;
    auto* dst = static_cast<SAFEARRAY**>(where);
    if (free_old && *dst) SafeArrayDestroy(*dst);
    *dst = V_ARRAY(value);
    V_VT(value) = VT_EMPTY;
    return S_OK;
  }
  if (t == VT_DISPATCH || t == VT_UNKNOWN) {
    if (V_VT(value) == VT_EMPTY) {
      V_VT(value) = t;
      V_UNKNOWN(value) = nullptr;
    }
  }
  if (V_VT(value) != t && FAILED(VariantChangeType(value, value, 0, t))) return DISP_E_TYPEMISMATCH;
  switch (t) {
    case VT_BSTR: {
      auto* dst = static_cast<BSTR*>(where);
      if (free_old) SysFreeString(*dst);
      *dst = V_BSTR(value);
      break;
    }
    case VT_DISPATCH:
    case VT_UNKNOWN: {
      auto* dst = static_cast<IUnknown**>(where);
      if (free_old && *dst) (*dst)->Release();
      *dst = V_UNKNOWN(value);
      break;
    }
    default: {
      const size_t n = ScalarSize(t);
      if (!n) return DISP_E_TYPEMISMATCH;
      std::memcpy(where, &value->bVal, n);
      break;
    }
  }
  V_VT(value) = VT_EMPTY;
  return S_OK;
}

std::string ProgIdOf(const ClassInfo& cls) { return "KorvelUI99." + Narrow(cls.name); }

int ButtonOf(WPARAM wp) {
  int b = 0;
  if (wp & MK_LBUTTON) b |= 1;
  if (wp & MK_RBUTTON) b |= 2;
  if (wp & MK_MBUTTON) b |= 4;
  return b;
}

int ShiftOf(WPARAM wp) {
  int s = 0;
  if (wp & MK_SHIFT) s |= vbShiftMask;
  if (wp & MK_CONTROL) s |= vbCtrlMask;
  if (GetKeyState(VK_MENU) < 0) s |= vbAltMask;
  return s;
}

// The container's property bag seen as the core's bag.
class OleBag : public PropertyBag {
 public:
  OleBag(IPropertyBag* bag, IErrorLog* log, ObjectBridge& bridge) : bag_(bag), log_(log), bridge_(bridge) {}
  Variant ReadProperty(const std::string& name, const Variant& def) const override {
    std::wstring w = Widen(name);
    VARIANT v;
    VariantInit(&v);
    if (FAILED(bag_->Read(w.c_str(), &v, log_))) {
      VariantClear(&v);
      return def;
    }
    Variant r = def;
    try {
      r = bridge_.FromOle(v);
    } catch (...) {
      r = def;
    }
    VariantClear(&v);
    return r;
  }
  void WriteProperty(const std::string& name, const Variant& value, const Variant& def) override {
    if (value == def) return;  // reading it back with the same default gives the same value
    WriteProperty(name, value);
  }
  void WriteProperty(const std::string& name, const Variant& value) override {
    std::wstring w = Widen(name);
    VARIANT v;
    VariantInit(&v);
    try {
      bridge_.ToOle(value, &v);
    } catch (...) {
      return;
    }
    bag_->Write(w.c_str(), &v);
    VariantClear(&v);
  }

 private:
  IPropertyBag* bag_;
  IErrorLog* log_;
  ObjectBridge& bridge_;
};

constexpr SIZEL kDefaultExtentPixels{120, 24};

}  // namespace

// ---- creation ----

OleControl::OleControl(const ClassInfo& cls, const ClassTypes& types) : cls_(cls), types_(&types) { ServerLock(); }

OleControl::~OleControl() {
  if (event_point_) event_point_->UnadviseAll();
  if (notify_point_) notify_point_->UnadviseAll();
  if (inplace_site_) inplace_site_->Release();
  if (site_) site_->Release();
  if (advise_holder_) advise_holder_->Release();
  if (view_sink_) view_sink_->Release();
  try {
    if (control_) control_->Terminate();
    control_.reset();
  } catch (...) {
  }
  delete event_point_;
  delete notify_point_;
  ServerUnlock();
}

HRESULT OleControl::Init() {
  host_ = std::make_unique<OleHost>(*this);
  host_->ReadAmbients();
  control_ = cls_.create_control(*host_, ServerPlatform());
  dual_ = cls_.create_dual(*this);
  event_point_ = new ConnectionPoint(this, cls_.events_iid ? *cls_.events_iid : IID_NULL);
  notify_point_ = new ConnectionPoint(this, IID_IPropertyNotifySink);
  extent_.cx = PixelsToHimetric(kDefaultExtentPixels.cx);
  extent_.cy = PixelsToHimetric(kDefaultExtentPixels.cy);
  control_->SetExtentPixels(kDefaultExtentPixels.cx, kDefaultExtentPixels.cy);
  control_->Initialize();
  return S_OK;
}

HRESULT OleControl::Create(const ClassInfo& cls, IUnknown* outer, REFIID riid, void** out) {
  if (!out) return E_POINTER;
  *out = nullptr;
  if (outer) return CLASS_E_NOAGGREGATION;
  const ClassTypes* types = TypesOf(cls);
  if (!types) return TYPE_E_CANTLOADLIBRARY;
  OleControl* obj = new (std::nothrow) OleControl(cls, *types);
  if (!obj) return E_OUTOFMEMORY;
  HRESULT hr;
  try {
    hr = obj->Init();
  } catch (...) {
    hr = E_FAIL;
  }
  if (SUCCEEDED(hr)) hr = obj->QueryInterface(riid, out);
  obj->Release();
  return hr;
}

// ---- IUnknown ----

STDMETHODIMP OleControl::QueryInterface(REFIID riid, void** out) {
  if (!out) return E_POINTER;
  *out = nullptr;
  IUnknown* p = nullptr;
  if (IsEqualIID(riid, IID_IUnknown)) p = static_cast<IOleObject*>(this);
  else if (IsEqualIID(riid, IID_IDispatch) || IsEqualIID(riid, *cls_.dual_iid)) p = dual_->Dispatch();
  else if (IsEqualIID(riid, IID_IConnectionPointContainer)) p = static_cast<IConnectionPointContainer*>(this);
  else if (IsEqualIID(riid, IID_IProvideClassInfo) || IsEqualIID(riid, IID_IProvideClassInfo2)) p = static_cast<IProvideClassInfo2*>(this);
  else if (IsEqualIID(riid, IID_ISpecifyPropertyPages)) p = static_cast<ISpecifyPropertyPages*>(this);
  else if (IsEqualIID(riid, IID_IObjectSafety)) p = static_cast<IObjectSafety*>(this);
  else if (IsEqualIID(riid, IID_IPersist) || IsEqualIID(riid, IID_IPersistPropertyBag)) p = static_cast<IPersistPropertyBag*>(this);
  else if (IsEqualIID(riid, IID_IPersistStreamInit)) p = static_cast<IPersistStreamInit*>(this);
  else if (IsEqualIID(riid, IID_IOleObject)) p = static_cast<IOleObject*>(this);
  else if (IsEqualIID(riid, IID_IOleWindow) || IsEqualIID(riid, IID_IOleInPlaceObject)) p = static_cast<IOleInPlaceObject*>(this);
  else if (IsEqualIID(riid, IID_IOleInPlaceActiveObject)) p = static_cast<IOleInPlaceActiveObject*>(this);
  else if (IsEqualIID(riid, IID_IOleControl)) p = static_cast<IOleControl*>(this);
  else if (IsEqualIID(riid, IID_IViewObject) || IsEqualIID(riid, IID_IViewObject2)) p = static_cast<IViewObject2*>(this);
  else if (IsEqualIID(riid, IID_ISupportErrorInfo)) p = static_cast<ISupportErrorInfo*>(this);
  if (!p) return E_NOINTERFACE;
  AddRef();
  *out = p;
  return S_OK;
}

STDMETHODIMP_(ULONG) OleControl::AddRef() { return static_cast<ULONG>(InterlockedIncrement(&refs_)); }

STDMETHODIMP_(ULONG) OleControl::Release() {
  LONG n = InterlockedDecrement(&refs_);
  if (n == 0) delete this;
  return static_cast<ULONG>(n);
}

// ---- IDispatch ----

HRESULT OleControl::GetTypeInfoCount(UINT* count) {
  if (!count) return E_POINTER;
  *count = 1;
  return S_OK;
}

HRESULT OleControl::GetTypeInfo(UINT index, LCID, ITypeInfo** info) {
  if (!info) return E_POINTER;
  *info = nullptr;
  if (index != 0) return DISP_E_BADINDEX;
  types_->dispatch->AddRef();
  *info = types_->dispatch;
  return S_OK;
}

HRESULT OleControl::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) {
  if (!names || !ids) return E_POINTER;
  HRESULT hr = S_OK;
  for (UINT i = 0; i < count; ++i) ids[i] = DISPID_UNKNOWN;
  if (count == 0) return S_OK;
  ids[0] = types_->members->IdOf(Narrow(names[0]));
  if (ids[0] == DISPID_UNKNOWN) hr = DISP_E_UNKNOWNNAME;
  if (count > 1) {
    // Argument names of the member, for named arguments.
    for (const Member& m : types_->members->All()) {
      if (m.id != ids[0]) continue;
      for (UINT i = 1; i < count; ++i)
        for (size_t p = 0; p < m.params.size(); ++p)
          if (_wcsicmp(m.params[p].name.c_str(), names[i]) == 0) ids[i] = static_cast<DISPID>(p);
    }
    for (UINT i = 1; i < count; ++i)
      if (ids[i] == DISPID_UNKNOWN) hr = DISP_E_UNKNOWNNAME;
  }
  return hr;
}

HRESULT OleControl::Fail(const std::string& source, std::int32_t number, const std::string& description,
                         EXCEPINFO* excep) {
  const HRESULT scode = MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, static_cast<unsigned>(number) & 0xFFFF);
  if (excep) {
    std::memset(excep, 0, sizeof *excep);
    excep->scode = scode;
    excep->bstrSource = AllocBstr(source);
    excep->bstrDescription = AllocBstr(description);
  }
  ICreateErrorInfo* create = nullptr;
  if (SUCCEEDED(CreateErrorInfo(&create)) && create) {
    std::wstring s = Widen(source), d = Widen(description);
    create->SetGUID(*cls_.dual_iid);
    create->SetSource(const_cast<LPOLESTR>(s.c_str()));
    create->SetDescription(const_cast<LPOLESTR>(d.c_str()));
    IErrorInfo* info = nullptr;
    if (SUCCEEDED(create->QueryInterface(IID_IErrorInfo, reinterpret_cast<void**>(&info))) && info) {
      SetErrorInfo(0, info);
      info->Release();
    }
    create->Release();
  }
  return DISP_E_EXCEPTION;
}

HRESULT OleControl::CallMember(const Member& m, VARIANT* const* args, int count, VARIANT* result, EXCEPINFO* excep,
                               UINT* arg_err) {
  std::vector<const MemberParam*> inputs;
  for (const auto& p : m.params)
    if (!p.retval) inputs.push_back(&p);
  if (count > static_cast<int>(inputs.size())) return DISP_E_BADPARAMCOUNT;

  std::vector<Variant> kargs;
  for (size_t i = 0; i < inputs.size(); ++i) {
    const MemberParam& p = *inputs[i];
    const VARIANT* a = static_cast<int>(i) < count ? args[i] : nullptr;
    const bool missing = !a || (V_VT(a) == VT_ERROR && V_ERROR(a) == DISP_E_PARAMNOTFOUND);
    if (missing) {
      if (p.has_default) {
        kargs.push_back(bridge_.FromOle(p.def));
        continue;
      }
      if (p.optional) {
        kargs.emplace_back();
        continue;
      }
      return DISP_E_PARAMNOTOPTIONAL;
    }
    const UINT position = static_cast<UINT>(count - 1 - static_cast<int>(i));  // in rgvarg
    VARIANT v;
    VariantInit(&v);
    HRESULT hr = VariantCopyInd(&v, const_cast<VARIANT*>(a));
    if (SUCCEEDED(hr)) {
      const VARTYPE want = p.type.vt;
      if (want == VT_DISPATCH || want == VT_UNKNOWN) {
        if (V_VT(&v) != VT_DISPATCH && V_VT(&v) != VT_UNKNOWN && V_VT(&v) != VT_EMPTY) hr = DISP_E_TYPEMISMATCH;
      } else if (want == VT_SAFEARRAY) {
        if (!(V_VT(&v) & VT_ARRAY) && V_VT(&v) != VT_EMPTY) hr = DISP_E_TYPEMISMATCH;
      } else if (want == VT_UI4) {
        // Colours: a signed 32-bit value (&H8000000F& from a script) keeps its bits.
        hr = VariantChangeType(&v, &v, 0, VT_I4);
        if (FAILED(hr)) hr = VariantChangeType(&v, &v, 0, VT_UI4);
        if (SUCCEEDED(hr)) V_VT(&v) = VT_UI4;
      } else if (want != VT_VARIANT) {
        HRESULT changed = VariantChangeType(&v, &v, 0, want);
        // A number out of the parameter's range goes to the core as it is, whose
        // conversion raises the run-time error (Overflow) the caller sees.
        if (FAILED(changed) && changed != DISP_E_OVERFLOW) hr = changed;
      }
    }
    if (SUCCEEDED(hr)) {
      try {
        kargs.push_back(bridge_.FromOle(v));
      } catch (...) {
        hr = DISP_E_TYPEMISMATCH;
      }
    }
    VariantClear(&v);
    if (FAILED(hr)) {
      if (arg_err) *arg_err = position;
      return hr == DISP_E_OVERFLOW ? DISP_E_OVERFLOW : DISP_E_TYPEMISMATCH;
    }
  }

  InvokeKind kind = InvokeKind::Method;
  switch (m.kind) {
    case INVOKE_PROPERTYGET: kind = InvokeKind::PropertyGet; break;
    case INVOKE_PROPERTYPUT: kind = InvokeKind::PropertyPut; break;
    case INVOKE_PROPERTYPUTREF: kind = InvokeKind::PropertyPutRef; break;
    default: break;
  }
  Variant r;
  try {
    r = control_->Invoke(m.name, kind, kargs);
  } catch (const RuntimeError& e) {
    return Fail(ProgIdOf(cls_), e.Number(), e.Description(), excep);
  } catch (const std::exception& e) {
    return Fail(ProgIdOf(cls_), 51, std::string("Internal error: ") + e.what(), excep);
  }

  // By-reference arguments come back with the values the control left in them.
  for (size_t i = 0; i < inputs.size() && static_cast<int>(i) < count; ++i) {
    const VARIANT* a = args[i];
    if (!inputs[i]->type.byref || !(V_VT(a) & VT_BYREF)) continue;
    VARIANT v;
    try {
      bridge_.ToOle(kargs[i], &v, inputs[i]->type.array_elem);
    } catch (...) {
      continue;
    }
    if (FAILED(StoreByRef(*a, &v, true))) VariantClear(&v);
  }

  if (const MemberParam* ret = m.RetVal(); ret && result) {
    VariantClear(result);
    try {
      bridge_.ToOle(r, result, ret->type.array_elem);
    } catch (...) {
      VariantInit(result);
      return DISP_E_TYPEMISMATCH;
    }
    const VARTYPE want = ret->type.vt;
    if (want == VT_DISPATCH || want == VT_UNKNOWN) {
      if (V_VT(result) == VT_EMPTY) {
        V_VT(result) = want;
        V_UNKNOWN(result) = nullptr;
      }
    } else if (want != VT_VARIANT && want != VT_SAFEARRAY && V_VT(result) != want) {
      if (FAILED(VariantChangeType(result, result, 0, want))) {
        VariantClear(result);
        return DISP_E_TYPEMISMATCH;
      }
    }
  }
  return S_OK;
}

HRESULT OleControl::Invoke(DISPID id, REFIID riid, LCID, WORD flags, DISPPARAMS* params, VARIANT* result,
                           EXCEPINFO* excep, UINT* arg_err) {
  try {
    if (!IsEqualIID(riid, IID_NULL)) return DISP_E_UNKNOWNINTERFACE;
    if (!params) return E_INVALIDARG;
    const Member* m = types_->members->Find(id, flags);
    if (!m) return DISP_E_MEMBERNOTFOUND;
    const bool put = (m->kind == INVOKE_PROPERTYPUT || m->kind == INVOKE_PROPERTYPUTREF);
    if (params->cNamedArgs > 0) {
      // Only the value of a property assignment is passed by name.
      if (!put || params->cNamedArgs != 1 || params->rgdispidNamedArgs[0] != DISPID_PROPERTYPUT)
        return DISP_E_NONAMEDARGS;
    } else if (put) {
      return DISP_E_PARAMNOTOPTIONAL;
    }
    // Arguments come last first; named ones (the assigned value) lead.
    const int n = static_cast<int>(params->cArgs);
    std::vector<VARIANT*> ordered(static_cast<size_t>(n));
    for (int i = 0; i < n; ++i) ordered[static_cast<size_t>(i)] = &params->rgvarg[n - 1 - i];
    VARIANT local;
    VariantInit(&local);
    HRESULT hr = CallMember(*m, ordered.data(), n, result ? result : &local, excep, arg_err);
    VariantClear(&local);
    // Late-bound callers get colours as the language's signed Long.
    if (SUCCEEDED(hr) && result && V_VT(result) == VT_UI4) V_VT(result) = VT_I4;
    return hr;
  } catch (...) {
    return E_UNEXPECTED;
  }
}

HRESULT OleControl::CallVtbl(const char* name, INVOKEKIND kind, void* const* args, int count) {
  try {
    const Member* m = types_->members->Find(name, kind);
    if (!m || static_cast<int>(m->params.size()) != count) return E_NOTIMPL;
    std::vector<VARIANT> refs;
    refs.reserve(static_cast<size_t>(count));
    void* retval_ptr = nullptr;
    VARTYPE retval_vt = VT_EMPTY;
    for (int i = 0; i < count; ++i) {
      const MemberParam& p = m->params[static_cast<size_t>(i)];
      VARTYPE vt = p.type.vt == VT_SAFEARRAY ? static_cast<VARTYPE>(VT_ARRAY | p.type.array_elem) : p.type.vt;
      if (p.retval) {
        retval_ptr = *static_cast<void* const*>(args[i]);
        if (!retval_ptr) return E_POINTER;
        retval_vt = vt;
        continue;
      }
      VARIANT r;
      VariantInit(&r);
      V_VT(&r) = static_cast<VARTYPE>(vt | VT_BYREF);
      V_BYREF(&r) = p.type.byref ? *static_cast<void* const*>(args[i]) : args[i];
      if (!V_BYREF(&r)) return E_POINTER;
      refs.push_back(r);
    }
    std::vector<VARIANT*> ordered;
    for (auto& r : refs) ordered.push_back(&r);
    VARIANT result;
    VariantInit(&result);
    EXCEPINFO excep{};
    HRESULT hr = CallMember(*m, ordered.data(), static_cast<int>(ordered.size()), &result, &excep, nullptr);
    if (hr == DISP_E_EXCEPTION) {
      SysFreeString(excep.bstrSource);
      SysFreeString(excep.bstrDescription);
      SysFreeString(excep.bstrHelpFile);
      VariantClear(&result);
      return excep.scode;
    }
    if (SUCCEEDED(hr) && retval_ptr) {
      VARIANT ref;
      V_VT(&ref) = static_cast<VARTYPE>(retval_vt | VT_BYREF);
      V_BYREF(&ref) = retval_ptr;
      hr = StoreByRef(ref, &result, false);
    }
    VariantClear(&result);
    return hr;
  } catch (...) {
    return E_UNEXPECTED;
  }
}

// ---- IConnectionPointContainer ----

STDMETHODIMP OleControl::EnumConnectionPoints(IEnumConnectionPoints** out) {
  if (!out) return E_POINTER;
  *out = NewConnectionPointEnum({event_point_, notify_point_});
  return *out ? S_OK : E_OUTOFMEMORY;
}

STDMETHODIMP OleControl::FindConnectionPoint(REFIID riid, IConnectionPoint** out) {
  if (!out) return E_POINTER;
  *out = nullptr;
  if (cls_.events_iid && IsEqualIID(riid, *cls_.events_iid)) *out = event_point_;
  else if (IsEqualIID(riid, IID_IPropertyNotifySink)) *out = notify_point_;
  if (!*out) return CONNECT_E_NOCONNECTION;
  (*out)->AddRef();
  return S_OK;
}

// ---- IProvideClassInfo2 ----

STDMETHODIMP OleControl::GetClassInfo(ITypeInfo** out) {
  if (!out) return E_POINTER;
  types_->coclass->AddRef();
  *out = types_->coclass;
  return S_OK;
}

STDMETHODIMP OleControl::GetGUID(DWORD kind, GUID* out) {
  if (!out) return E_POINTER;
  if (kind != GUIDKIND_DEFAULT_SOURCE_DISP_IID || !cls_.events_iid) {
    *out = GUID_NULL;
    return E_INVALIDARG;
  }
  *out = *cls_.events_iid;
  return S_OK;
}

// ---- ISpecifyPropertyPages ----

STDMETHODIMP OleControl::GetPages(CAUUID* pages) {
  if (!pages) return E_POINTER;
  pages->cElems = 0;
  pages->pElems = nullptr;
  size_t n = 0;
  while (n < 4 && cls_.pages[n]) ++n;
  if (n == 0) return S_OK;
  pages->pElems = static_cast<GUID*>(CoTaskMemAlloc(n * sizeof(GUID)));
  if (!pages->pElems) return E_OUTOFMEMORY;
  for (size_t i = 0; i < n; ++i) pages->pElems[pages->cElems++] = *cls_.pages[i];
  return S_OK;
}

// ---- IObjectSafety: safe neither for scripting nor for initialisation ----

STDMETHODIMP OleControl::GetInterfaceSafetyOptions(REFIID riid, DWORD* supported, DWORD* enabled) {
  if (!supported || !enabled) return E_POINTER;
  *supported = 0;
  *enabled = 0;
  IUnknown* probe = nullptr;
  if (FAILED(QueryInterface(riid, reinterpret_cast<void**>(&probe)))) return E_NOINTERFACE;
  probe->Release();
  return S_OK;
}

STDMETHODIMP OleControl::SetInterfaceSafetyOptions(REFIID riid, DWORD mask, DWORD) {
  IUnknown* probe = nullptr;
  if (FAILED(QueryInterface(riid, reinterpret_cast<void**>(&probe)))) return E_NOINTERFACE;
  probe->Release();
  return mask == 0 ? S_OK : E_FAIL;
}

// ---- persistence ----

STDMETHODIMP OleControl::GetClassID(CLSID* out) {
  if (!out) return E_POINTER;
  *out = *cls_.clsid;
  return S_OK;
}

STDMETHODIMP OleControl::InitNew() {
  if (initialised_) return E_UNEXPECTED;
  try {
    control_->InitProperties();
    initialised_ = true;
    ApplyExtent();
    dirty_ = false;
    return S_OK;
  } catch (...) {
    return E_FAIL;
  }
}

STDMETHODIMP OleControl::Load(IPropertyBag* bag, IErrorLog* log) {
  if (!bag) return E_POINTER;
  if (initialised_) return E_UNEXPECTED;
  try {
    OleBag b(bag, log, bridge_);
    control_->ReadProperties(b);
    initialised_ = true;
    ApplyExtent();
    dirty_ = false;
    return S_OK;
  } catch (...) {
    return E_FAIL;
  }
}

STDMETHODIMP OleControl::Save(IPropertyBag* bag, BOOL clear_dirty, BOOL) {
  if (!bag) return E_POINTER;
  try {
    OleBag b(bag, nullptr, bridge_);
    control_->WriteProperties(b);
    if (clear_dirty) dirty_ = false;
    return S_OK;
  } catch (...) {
    return E_FAIL;
  }
}

STDMETHODIMP OleControl::IsDirty() { return dirty_ ? S_OK : S_FALSE; }

// The binary form: the bag's text form as UTF-8 after a 32-bit length.
STDMETHODIMP OleControl::Load(LPSTREAM stream) {
  if (!stream) return E_POINTER;
  if (initialised_) return E_UNEXPECTED;
  try {
    std::uint32_t length = 0;
    ULONG got = 0;
    if (FAILED(stream->Read(&length, sizeof length, &got)) || got != sizeof length) return E_FAIL;
    if (length > (64u << 20)) return E_FAIL;
    std::string text(length, '\0');
    if (length && (FAILED(stream->Read(text.data(), length, &got)) || got != length)) return E_FAIL;
    PropertyBag bag = PropertyBag::FromText(text);
    control_->ReadProperties(bag);
    initialised_ = true;
    ApplyExtent();
    dirty_ = false;
    return S_OK;
  } catch (...) {
    return E_FAIL;
  }
}

STDMETHODIMP OleControl::Save(LPSTREAM stream, BOOL clear_dirty) {
  if (!stream) return E_POINTER;
  try {
    PropertyBag bag;
    control_->WriteProperties(bag);
    const std::string text = bag.ToText();
    const auto length = static_cast<std::uint32_t>(text.size());
    ULONG put = 0;
    if (FAILED(stream->Write(&length, sizeof length, &put)) || put != sizeof length) return STG_E_CANTSAVE;
    if (length && (FAILED(stream->Write(text.data(), length, &put)) || put != length)) return STG_E_CANTSAVE;
    if (clear_dirty) dirty_ = false;
    return S_OK;
  } catch (...) {
    return E_FAIL;
  }
}

STDMETHODIMP OleControl::GetSizeMax(ULARGE_INTEGER* size) {
  if (!size) return E_POINTER;
  try {
    PropertyBag bag;
    control_->WriteProperties(bag);
    size->QuadPart = sizeof(std::uint32_t) + bag.ToText().size();
    return S_OK;
  } catch (...) {
    return E_FAIL;
  }
}

// ---- extent and drawing ----

void OleControl::ApplyExtent() {
  control_->SetExtentPixels(HimetricToPixels(extent_.cx), HimetricToPixels(extent_.cy));
  control_->Resize();
  control_->Paint();
}

void OleControl::RequestSize(int width_px, int height_px) {
  // A side whose pixel size stays keeps its exact HIMETRIC extent.
  if (HimetricToPixels(extent_.cx) != width_px) extent_.cx = PixelsToHimetric(width_px);
  if (HimetricToPixels(extent_.cy) != height_px) extent_.cy = PixelsToHimetric(height_px);
  Surface& s = control_->UserControl();
  control_->SetExtentPixels(width_px, height_px);
  if (inplace_site_ && inplace_active_) {
    RECT rc{s.Left(), s.Top(), s.Left() + width_px, s.Top() + height_px};
    inplace_site_->OnPosRectChange(&rc);
  }
  control_->Resize();
  Invalidate();
}

void OleControl::Invalidate() {
  if (view_sink_) view_sink_->OnViewChange(DVASPECT_CONTENT, -1);
}

// ---- IOleObject ----

STDMETHODIMP OleControl::SetClientSite(IOleClientSite* site) {
  try {
    if (site_) site_->Release();
    site_ = site;
    if (site_) site_->AddRef();
    host_->ReadAmbients();
    return S_OK;
  } catch (...) {
    return E_FAIL;
  }
}

STDMETHODIMP OleControl::GetClientSite(IOleClientSite** site) {
  if (!site) return E_POINTER;
  *site = site_;
  if (site_) site_->AddRef();
  return S_OK;
}

STDMETHODIMP OleControl::SetHostNames(LPCOLESTR, LPCOLESTR) { return S_OK; }

STDMETHODIMP OleControl::Close(DWORD) {
  InPlaceDeactivate();
  if (advise_holder_) advise_holder_->SendOnClose();
  return S_OK;
}

STDMETHODIMP OleControl::SetMoniker(DWORD, IMoniker*) { return E_NOTIMPL; }
STDMETHODIMP OleControl::GetMoniker(DWORD, DWORD, IMoniker** mk) {
  if (mk) *mk = nullptr;
  return E_NOTIMPL;
}
STDMETHODIMP OleControl::InitFromData(IDataObject*, BOOL, DWORD) { return E_NOTIMPL; }
STDMETHODIMP OleControl::GetClipboardData(DWORD, IDataObject** data) {
  if (data) *data = nullptr;
  return E_NOTIMPL;
}

void OleControl::RouteMouse(unsigned msg, std::uintptr_t wp, std::intptr_t lp) {
  const float x = static_cast<float>(static_cast<short>(LOWORD(lp)));
  const float y = static_cast<float>(static_cast<short>(HIWORD(lp)));
  switch (msg) {
    case WM_MOUSEMOVE: control_->MouseMove(ButtonOf(wp), ShiftOf(wp), x, y); break;
    case WM_LBUTTONDOWN: control_->MouseDown(1, ShiftOf(wp), x, y); break;
    case WM_RBUTTONDOWN: control_->MouseDown(2, ShiftOf(wp), x, y); break;
    case WM_MBUTTONDOWN: control_->MouseDown(4, ShiftOf(wp), x, y); break;
    case WM_LBUTTONUP: control_->MouseUp(1, ShiftOf(wp), x, y); break;
    case WM_RBUTTONUP: control_->MouseUp(2, ShiftOf(wp), x, y); break;
    case WM_MBUTTONUP: control_->MouseUp(4, ShiftOf(wp), x, y); break;
    default: break;
  }
}

std::function<bool(unsigned, std::uintptr_t, std::intptr_t)> OleControl::MouseRoute(Surface& surface) {
  // Only the surface that takes the control's input passes its mouse messages on.
  if (&surface != &control_->InputSurface()) return nullptr;
  return [this](unsigned msg, std::uintptr_t wp, std::intptr_t lp) -> bool {
    if (msg < WM_MOUSEFIRST || msg > WM_MOUSELAST) return false;
    RouteMouse(msg, wp, lp);
    return true;
  };
}

HRESULT OleControl::ActivateInPlace(IOleClientSite* site, HWND parent, bool ui) {
  if (!site) site = site_;
  if (!site) return E_UNEXPECTED;
  if (!inplace_active_) {
    IOleInPlaceSite* ips = nullptr;
    if (FAILED(site->QueryInterface(IID_IOleInPlaceSite, reinterpret_cast<void**>(&ips))) || !ips)
      return OLEOBJ_S_CANNOT_DOVERB_NOW;
    if (ips->CanInPlaceActivate() != S_OK) {
      ips->Release();
      return E_FAIL;
    }
    ips->OnInPlaceActivate();
    HWND wnd = parent;
    if (!wnd) ips->GetWindow(&wnd);
    IOleInPlaceFrame* frame = nullptr;
    IOleInPlaceUIWindow* doc = nullptr;
    RECT pos{0, 0, HimetricToPixels(extent_.cx), HimetricToPixels(extent_.cy)}, clip = pos;
    OLEINPLACEFRAMEINFO fi{};
    fi.cb = sizeof fi;
    if (SUCCEEDED(ips->GetWindowContext(&frame, &doc, &pos, &clip, &fi))) {
      if (frame) frame->Release();
      if (doc) doc->Release();
    }
    inplace_site_ = ips;
    inplace_active_ = true;
    host_->SetWindow(wnd);
    Surface& s = control_->UserControl();
    if (auto* ws = dynamic_cast<win32::Win32SurfaceSite*>(&s.site())) {
      ws->on_message = MouseRoute(s);
      ws->SetParentWindow(reinterpret_cast<Hwnd>(wnd));
    }
    const int w = pos.right - pos.left, h = pos.bottom - pos.top;
    if (w > 0 && h > 0) {
      extent_.cx = PixelsToHimetric(w);
      extent_.cy = PixelsToHimetric(h);
    }
    s.Move(pos.left, pos.top, HimetricToPixels(extent_.cx), HimetricToPixels(extent_.cy));
    s.SetVisible(true);
    control_->Resize();
    control_->Show();
    // A control that hands its input to a constituent surface has given it a window
    // of its own by now (in Show).
    Surface& input = control_->InputSurface();
    if (&input != &s)
      if (auto* is = dynamic_cast<win32::Win32SurfaceSite*>(&input.site())) is->on_message = MouseRoute(input);
    control_->Paint();
  }
  if (ui && !ui_active_) {
    ui_active_ = true;
    inplace_site_->OnUIActivate();
  }
  return S_OK;
}

STDMETHODIMP OleControl::DoVerb(LONG verb, LPMSG, IOleClientSite* site, LONG, HWND parent, LPCRECT) {
  try {
    switch (verb) {
      case OLEIVERB_PRIMARY:
      case OLEIVERB_SHOW:
      case OLEIVERB_UIACTIVATE: return ActivateInPlace(site, parent, true);
      case OLEIVERB_INPLACEACTIVATE: return ActivateInPlace(site, parent, false);
      case OLEIVERB_HIDE:
        control_->UserControl().SetVisible(false);
        control_->Hide();
        return S_OK;
      default: return OLEOBJ_S_INVALIDVERB;
    }
  } catch (...) {
    return E_FAIL;
  }
}

STDMETHODIMP OleControl::EnumVerbs(IEnumOLEVERB** verbs) { return OleRegEnumVerbs(*cls_.clsid, verbs); }
STDMETHODIMP OleControl::Update() { return S_OK; }
STDMETHODIMP OleControl::IsUpToDate() { return S_OK; }
STDMETHODIMP OleControl::GetUserClassID(CLSID* out) { return GetClassID(out); }
STDMETHODIMP OleControl::GetUserType(DWORD form, LPOLESTR* type) { return OleRegGetUserType(*cls_.clsid, form, type); }

STDMETHODIMP OleControl::SetExtent(DWORD aspect, SIZEL* size) {
  if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
  if (!size) return E_POINTER;
  try {
    extent_ = *size;
    ApplyExtent();
    return S_OK;
  } catch (...) {
    return E_FAIL;
  }
}

STDMETHODIMP OleControl::GetExtent(DWORD aspect, SIZEL* size) {
  if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
  if (!size) return E_POINTER;
  *size = extent_;
  return S_OK;
}

STDMETHODIMP OleControl::Advise(IAdviseSink* sink, DWORD* cookie) {
  if (!advise_holder_ && FAILED(CreateOleAdviseHolder(&advise_holder_))) return E_OUTOFMEMORY;
  return advise_holder_->Advise(sink, cookie);
}

STDMETHODIMP OleControl::Unadvise(DWORD cookie) {
  return advise_holder_ ? advise_holder_->Unadvise(cookie) : OLE_E_NOCONNECTION;
}

STDMETHODIMP OleControl::EnumAdvise(IEnumSTATDATA** out) {
  if (!out) return E_POINTER;
  *out = nullptr;
  return advise_holder_ ? advise_holder_->EnumAdvise(out) : S_OK;
}

STDMETHODIMP OleControl::GetMiscStatus(DWORD, DWORD* status) {
  if (!status) return E_POINTER;
  *status = cls_.misc_status;
  return S_OK;
}

STDMETHODIMP OleControl::SetColorScheme(LOGPALETTE*) { return E_NOTIMPL; }

// ---- in-place ----

STDMETHODIMP OleControl::GetWindow(HWND* wnd) {
  if (!wnd) return E_POINTER;
  *wnd = inplace_active_ ? reinterpret_cast<HWND>(control_->UserControl().hWnd()) : nullptr;
  return *wnd ? S_OK : E_FAIL;
}

STDMETHODIMP OleControl::ContextSensitiveHelp(BOOL) { return E_NOTIMPL; }

STDMETHODIMP OleControl::InPlaceDeactivate() {
  if (!inplace_active_) return S_OK;
  try {
    UIDeactivate();
    Surface& s = control_->UserControl();
    if (auto* is = dynamic_cast<win32::Win32SurfaceSite*>(&control_->InputSurface().site())) is->on_message = nullptr;
    if (auto* ws = dynamic_cast<win32::Win32SurfaceSite*>(&s.site())) {
      ws->on_message = nullptr;
      ws->SetParentWindow(0);
    }
    host_->SetWindow(nullptr);
    inplace_active_ = false;
    IOleInPlaceSite* ips = inplace_site_;
    inplace_site_ = nullptr;
    if (ips) {
      ips->OnInPlaceDeactivate();
      ips->Release();
    }
    return S_OK;
  } catch (...) {
    return E_FAIL;
  }
}

STDMETHODIMP OleControl::UIDeactivate() {
  if (!ui_active_) return S_OK;
  ui_active_ = false;
  if (inplace_site_) inplace_site_->OnUIDeactivate(FALSE);
  return S_OK;
}

STDMETHODIMP OleControl::SetObjectRects(LPCRECT pos, LPCRECT) {
  if (!pos) return E_POINTER;
  try {
    const int w = pos->right - pos->left, h = pos->bottom - pos->top;
    extent_.cx = PixelsToHimetric(w);
    extent_.cy = PixelsToHimetric(h);
    control_->UserControl().Move(pos->left, pos->top, w, h);
    control_->Resize();
    control_->Paint();
    return S_OK;
  } catch (...) {
    return E_FAIL;
  }
}

STDMETHODIMP OleControl::ReactivateAndUndo() { return E_NOTIMPL; }
STDMETHODIMP OleControl::TranslateAccelerator(LPMSG) { return S_FALSE; }
STDMETHODIMP OleControl::OnFrameWindowActivate(BOOL) { return S_OK; }
STDMETHODIMP OleControl::OnDocWindowActivate(BOOL) { return S_OK; }
STDMETHODIMP OleControl::ResizeBorder(LPCRECT, IOleInPlaceUIWindow*, BOOL) { return S_OK; }
STDMETHODIMP OleControl::EnableModeless(BOOL) { return S_OK; }

// ---- IOleControl ----

STDMETHODIMP OleControl::GetControlInfo(CONTROLINFO* info) {
  if (!info) return E_POINTER;
  if (info->cb < sizeof(CONTROLINFO)) return E_INVALIDARG;
  info->hAccel = nullptr;
  info->cAccel = 0;
  info->dwFlags = 0;
  return S_OK;
}

STDMETHODIMP OleControl::OnMnemonic(MSG*) { return E_NOTIMPL; }

STDMETHODIMP OleControl::OnAmbientPropertyChange(DISPID) {
  try {
    host_->ReadAmbients();
    if (initialised_) control_->Paint();
    Invalidate();
    return S_OK;
  } catch (...) {
    return E_FAIL;
  }
}

STDMETHODIMP OleControl::FreezeEvents(BOOL freeze) {
  if (freeze)
    ++freeze_count_;
  else if (freeze_count_ > 0)
    --freeze_count_;
  return S_OK;
}

// ---- IViewObject2 ----

STDMETHODIMP OleControl::Draw(DWORD aspect, LONG, void*, DVTARGETDEVICE*, HDC, HDC dc, LPCRECTL bounds, LPCRECTL,
                              BOOL(STDMETHODCALLTYPE*)(ULONG_PTR), ULONG_PTR) {
  if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
  if (!dc || !bounds) return E_INVALIDARG;
  try {
    auto* ws = dynamic_cast<win32::Win32SurfaceSite*>(&control_->UserControl().site());
    if (!ws) return E_FAIL;
    control_->Paint();
    const int cx = bounds->right - bounds->left, cy = bounds->bottom - bounds->top;
    ws->DrawTo(reinterpret_cast<Hdc>(dc), bounds->left, bounds->top, cx, cy);
    // A constituent surface that takes the input is shown over the area, scaled alike.
    Surface& uc = control_->UserControl();
    Surface& input = control_->InputSurface();
    auto* is = dynamic_cast<win32::Win32SurfaceSite*>(&input.site());
    if (&input != &uc && is && input.Visible() && uc.Width() > 0 && uc.Height() > 0) {
      const auto sx = [&](int v) { return static_cast<int>(static_cast<long long>(v) * cx / uc.Width()); };
      const auto sy = [&](int v) { return static_cast<int>(static_cast<long long>(v) * cy / uc.Height()); };
      is->DrawTo(reinterpret_cast<Hdc>(dc), bounds->left + sx(input.Left()), bounds->top + sy(input.Top()),
                 sx(input.Width()), sy(input.Height()));
    }
    return S_OK;
  } catch (...) {
    return E_FAIL;
  }
}

STDMETHODIMP OleControl::GetColorSet(DWORD, LONG, void*, DVTARGETDEVICE*, HDC, LOGPALETTE** colors) {
  if (colors) *colors = nullptr;
  return S_FALSE;
}
STDMETHODIMP OleControl::Freeze(DWORD, LONG, void*, DWORD*) { return E_NOTIMPL; }
STDMETHODIMP OleControl::Unfreeze(DWORD) { return E_NOTIMPL; }

STDMETHODIMP OleControl::SetAdvise(DWORD aspects, DWORD flags, IAdviseSink* sink) {
  if (view_sink_) view_sink_->Release();
  view_sink_ = sink;
  if (view_sink_) view_sink_->AddRef();
  view_aspects_ = aspects;
  view_flags_ = flags;
  return S_OK;
}

STDMETHODIMP OleControl::GetAdvise(DWORD* aspects, DWORD* flags, IAdviseSink** sink) {
  if (aspects) *aspects = view_aspects_;
  if (flags) *flags = view_flags_;
  if (sink) {
    *sink = view_sink_;
    if (view_sink_) view_sink_->AddRef();
  }
  return S_OK;
}

STDMETHODIMP OleControl::GetExtent(DWORD aspect, LONG, DVTARGETDEVICE*, LPSIZEL size) {
  return GetExtent(aspect, size);
}

// ---- ISupportErrorInfo ----

STDMETHODIMP OleControl::InterfaceSupportsErrorInfo(REFIID riid) {
  return IsEqualIID(riid, *cls_.dual_iid) || IsEqualIID(riid, IID_IDispatch) ? S_OK : S_FALSE;
}

}  // namespace korvel::activex
