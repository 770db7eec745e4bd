// A control container of our own for the Wine tests: it places one control in a
// real window the way a form designer or a running form does, and records what the
// control tells it.
//
//   - the client site answers the ambient properties a test sets (UserMode,
//     DisplayName, BackColor, ForeColor, Font) through its IDispatch;
//   - the control site hands out an extender with Name, Visible and Align;
//   - property change notifications (IPropertyNotifySink::OnChanged) are recorded
//     by dispatch id;
//   - events on the control's default source interface are recorded by name with
//     their arguments, in order;
//   - a property bag (IPropertyBag) keeps what the control saves;
//   - the control is activated in place in a top-level window, and mouse input can
//     be sent to its own window.
#pragma once
#include <ocidl.h>
#include <olectl.h>
#include <oleidl.h>
#include <windows.h>

#include <map>
#include <string>
#include <vector>

namespace korvel_test {

// ---- small helpers ----

inline std::wstring VariantText(const VARIANT& v) {
  VARIANT t;
  VariantInit(&t);
  std::wstring s;
  if (v.vt == VT_EMPTY) return L"(empty)";
  if (SUCCEEDED(VariantChangeType(&t, const_cast<VARIANT*>(&v), VARIANT_ALPHABOOL, VT_BSTR)) && t.bstrVal)
    s.assign(t.bstrVal, SysStringLen(t.bstrVal));
  VariantClear(&t);
  return s;
}

// A COM object whose life is reference counted the usual way.
template <class Derived>
class RefCounted {
 public:
  ULONG AddRefImpl() { return InterlockedIncrement(&refs_); }
  ULONG ReleaseImpl() {
    ULONG n = InterlockedDecrement(&refs_);
    if (n == 0) delete static_cast<Derived*>(this);
    return n;
  }
  virtual ~RefCounted() = default;

 private:
  LONG refs_ = 1;
};

// ---- property bag ----

class PropertyBag final : public IPropertyBag, public RefCounted<PropertyBag> {
 public:
  std::map<std::wstring, VARIANT> values;  // by key, as the control wrote them
  std::vector<std::wstring> order;         // keys in the order of the writes

  ~PropertyBag() override {
    for (auto& kv : values) VariantClear(&kv.second);
  }
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** out) override {
    if (riid == IID_IUnknown || riid == IID_IPropertyBag) {
      *out = static_cast<IPropertyBag*>(this);
      AddRef();
      return S_OK;
    }
    *out = nullptr;
    return E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return AddRefImpl(); }
  ULONG STDMETHODCALLTYPE Release() override { return ReleaseImpl(); }
  HRESULT STDMETHODCALLTYPE Read(LPCOLESTR name, VARIANT* var, IErrorLog*) override {
    auto it = values.find(name);
    if (it == values.end()) return E_INVALIDARG;
    VARTYPE want = var->vt;
    if (want == VT_EMPTY) return VariantCopy(var, &it->second);
    VARIANT copy;
    VariantInit(&copy);
    HRESULT hr = VariantChangeType(&copy, &it->second, 0, want);
    if (FAILED(hr)) return hr;
    VariantClear(var);
    *var = copy;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Write(LPCOLESTR name, VARIANT* var) override {
    auto it = values.find(name);
    if (it == values.end()) {
      VARIANT v;
      VariantInit(&v);
      it = values.emplace(name, v).first;
      order.push_back(name);
    }
    VariantClear(&it->second);
    return VariantCopy(&it->second, var);
  }
  // Key = text lines, in write order; objects show as "(object)".
  std::wstring Dump() const {
    std::wstring s;
    for (const std::wstring& k : order) {
      const VARIANT& v = values.at(k);
      s += k + L" = " + ((v.vt == VT_DISPATCH || v.vt == VT_UNKNOWN) ? L"(object)" : VariantText(v)) + L"\n";
    }
    return s;
  }
};

// ---- the recorded traffic ----

struct Event {
  std::wstring name;
  std::vector<std::wstring> args;  // as text, in declared order
};

class EventSink final : public IDispatch, public RefCounted<EventSink> {
 public:
  EventSink(IID events, ITypeInfo* info) : events_(events), info_(info) {
    if (info_) info_->AddRef();
  }
  ~EventSink() override {
    if (info_) info_->Release();
  }
  std::vector<Event> events;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** out) override {
    if (riid == IID_IUnknown || riid == IID_IDispatch || riid == events_) {
      *out = static_cast<IDispatch*>(this);
      AddRef();
      return S_OK;
    }
    *out = nullptr;
    return E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return AddRefImpl(); }
  ULONG STDMETHODCALLTYPE Release() override { return ReleaseImpl(); }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* n) override {
    *n = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* params, VARIANT* result, EXCEPINFO*,
                                   UINT*) override {
    if (result) VariantInit(result);
    Event e;
    BSTR name = nullptr;
    UINT got = 0;
    if (info_ && SUCCEEDED(info_->GetNames(id, &name, 1, &got)) && got) {
      e.name.assign(name, SysStringLen(name));
      SysFreeString(name);
    } else {
      e.name = L"#" + std::to_wstring(id);
    }
    for (UINT i = params->cArgs; i-- > 0;) {
      const VARIANT& a = params->rgvarg[i];
      e.args.push_back((a.vt & VT_BYREF) && (a.vt & ~VT_BYREF) == VT_VARIANT ? VariantText(*a.pvarVal)
                                                                             : VariantText(a));
    }
    events.push_back(std::move(e));
    return S_OK;
  }

 private:
  IID events_;
  ITypeInfo* info_;
};

class NotifySink final : public IPropertyNotifySink, public RefCounted<NotifySink> {
 public:
  std::vector<DISPID> changed;
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** out) override {
    if (riid == IID_IUnknown || riid == IID_IPropertyNotifySink) {
      *out = static_cast<IPropertyNotifySink*>(this);
      AddRef();
      return S_OK;
    }
    *out = nullptr;
    return E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return AddRefImpl(); }
  ULONG STDMETHODCALLTYPE Release() override { return ReleaseImpl(); }
  HRESULT STDMETHODCALLTYPE OnChanged(DISPID id) override {
    changed.push_back(id);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE OnRequestEdit(DISPID) override { return S_OK; }
};

// ---- the extender: Name, Visible, Align ----

class Extender final : public IDispatch, public RefCounted<Extender> {
 public:
  std::wstring name = L"Control1";
  bool visible = true;
  long align = 0;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** out) override {
    if (riid == IID_IUnknown || riid == IID_IDispatch) {
      *out = static_cast<IDispatch*>(this);
      AddRef();
      return S_OK;
    }
    *out = nullptr;
    return E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return AddRefImpl(); }
  ULONG STDMETHODCALLTYPE Release() override { return ReleaseImpl(); }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* n) override {
    *n = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override {
    static const wchar_t* const kNames[] = {L"Name", L"Visible", L"Align"};
    HRESULT hr = S_OK;
    for (UINT i = 0; i < count; ++i) {
      ids[i] = DISPID_UNKNOWN;
      for (int k = 0; k < 3; ++k)
        if (i == 0 && _wcsicmp(names[i], kNames[k]) == 0) ids[i] = 1 + k;
      if (ids[i] == DISPID_UNKNOWN) hr = DISP_E_UNKNOWNNAME;
    }
    return hr;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* params, VARIANT* result,
                                   EXCEPINFO*, UINT*) override {
    if (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) {
      if (params->cArgs < 1) return DISP_E_BADPARAMCOUNT;
      VARIANT v;
      VariantInit(&v);
      switch (id) {
        case 1:
          if (FAILED(VariantChangeType(&v, &params->rgvarg[0], 0, VT_BSTR))) return DISP_E_TYPEMISMATCH;
          name.assign(v.bstrVal, SysStringLen(v.bstrVal));
          break;
        case 2:
          if (FAILED(VariantChangeType(&v, &params->rgvarg[0], 0, VT_BOOL))) return DISP_E_TYPEMISMATCH;
          visible = v.boolVal != VARIANT_FALSE;
          break;
        case 3:
          if (FAILED(VariantChangeType(&v, &params->rgvarg[0], 0, VT_I4))) return DISP_E_TYPEMISMATCH;
          align = v.lVal;
          break;
        default: return DISP_E_MEMBERNOTFOUND;
      }
      VariantClear(&v);
      return S_OK;
    }
    if (!result) return S_OK;
    VariantInit(result);
    switch (id) {
      case 1:
        result->vt = VT_BSTR;
        result->bstrVal = SysAllocString(name.c_str());
        return S_OK;
      case 2:
        result->vt = VT_BOOL;
        result->boolVal = visible ? VARIANT_TRUE : VARIANT_FALSE;
        return S_OK;
      case 3:
        result->vt = VT_I4;
        result->lVal = align;
        return S_OK;
      default: return DISP_E_MEMBERNOTFOUND;
    }
  }
};

// ---- the site ----

// One site per control: client site, in-place site, control site and the ambient
// properties' dispatch interface, with a frame window of its own.
class Site final : public IOleClientSite,
                   public IOleInPlaceSite,
                   public IOleControlSite,
                   public IOleInPlaceFrame,
                   public IDispatch,
                   public RefCounted<Site> {
 public:
  // Ambient properties (a test sets them before it places the control).
  bool user_mode = true;
  std::wstring display_name = L"Control1";
  OLE_COLOR back_color = 0x8000000F;
  OLE_COLOR fore_color = 0x80000012;
  IFontDisp* font = nullptr;  // none: the ambient Font is not answered
  Extender* extender = new Extender();

  HWND frame = nullptr;
  RECT pos = {10, 10, 210, 40};

  ~Site() override {
    extender->Release();
    if (font) font->Release();
    if (frame) DestroyWindow(frame);
  }

  // A visible top-level window for the control to live in.
  void MakeFrame() {
    static bool registered = false;
    if (!registered) {
      WNDCLASSW wc{};
      wc.lpfnWndProc = DefWindowProcW;
      wc.hInstance = GetModuleHandleW(nullptr);
      wc.lpszClassName = L"KorvelTestContainer";
      wc.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
      RegisterClassW(&wc);
      registered = true;
    }
    frame = CreateWindowExW(0, L"KorvelTestContainer", L"KorvelUI99 test container",
                            WS_OVERLAPPEDWINDOW | WS_VISIBLE | WS_CLIPCHILDREN, 0, 0, 400, 300, nullptr, nullptr,
                            GetModuleHandleW(nullptr), nullptr);
  }

  // IUnknown
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** out) override {
    if (riid == IID_IUnknown || riid == IID_IOleClientSite) {
      *out = static_cast<IOleClientSite*>(this);
    } else if (riid == IID_IOleWindow || riid == IID_IOleInPlaceSite) {
      *out = static_cast<IOleInPlaceSite*>(this);
    } else if (riid == IID_IOleControlSite) {
      *out = static_cast<IOleControlSite*>(this);
    } else if (riid == IID_IOleInPlaceFrame || riid == IID_IOleInPlaceUIWindow) {
      *out = static_cast<IOleInPlaceFrame*>(this);
    } else if (riid == IID_IDispatch) {
      *out = static_cast<IDispatch*>(this);
    } else {
      *out = nullptr;
      return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return AddRefImpl(); }
  ULONG STDMETHODCALLTYPE Release() override { return ReleaseImpl(); }

  // IOleClientSite
  HRESULT STDMETHODCALLTYPE SaveObject() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE GetMoniker(DWORD, DWORD, IMoniker** mk) override {
    *mk = nullptr;
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE GetContainer(IOleContainer** c) override {
    *c = nullptr;
    return E_NOINTERFACE;
  }
  HRESULT STDMETHODCALLTYPE ShowObject() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnShowWindow(BOOL) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE RequestNewObjectLayout() override { return E_NOTIMPL; }

  // IOleWindow (shared by the in-place site and the frame)
  HRESULT STDMETHODCALLTYPE GetWindow(HWND* wnd) override {
    *wnd = frame;
    return frame ? S_OK : E_FAIL;
  }
  HRESULT STDMETHODCALLTYPE ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }

  // IOleInPlaceSite
  HRESULT STDMETHODCALLTYPE CanInPlaceActivate() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnInPlaceActivate() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnUIActivate() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE GetWindowContext(IOleInPlaceFrame** f, IOleInPlaceUIWindow** doc, LPRECT p, LPRECT clip,
                                             LPOLEINPLACEFRAMEINFO info) override {
    *f = static_cast<IOleInPlaceFrame*>(this);
    AddRef();
    *doc = nullptr;
    *p = pos;
    *clip = pos;
    if (info) {
      info->fMDIApp = FALSE;
      info->hwndFrame = frame;
      info->haccel = nullptr;
      info->cAccelEntries = 0;
    }
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Scroll(SIZE) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE OnUIDeactivate(BOOL) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnInPlaceDeactivate() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE DiscardUndoState() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE DeactivateAndUndo() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnPosRectChange(LPCRECT r) override {
    pos = *r;
    ++pos_rect_changes;
    return S_OK;
  }
  int pos_rect_changes = 0;

  // IOleControlSite
  HRESULT STDMETHODCALLTYPE OnControlInfoChanged() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE LockInPlaceActive(BOOL) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE GetExtendedControl(IDispatch** disp) override {
    *disp = extender;
    extender->AddRef();
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE TransformCoords(POINTL*, POINTF*, DWORD) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE TranslateAccelerator(MSG*, DWORD) override { return S_FALSE; }
  HRESULT STDMETHODCALLTYPE OnFocus(BOOL) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE ShowPropertyFrame() override { return E_NOTIMPL; }

  // IOleInPlaceUIWindow / IOleInPlaceFrame
  HRESULT STDMETHODCALLTYPE GetBorder(LPRECT) override { return INPLACE_E_NOTOOLSPACE; }
  HRESULT STDMETHODCALLTYPE RequestBorderSpace(LPCBORDERWIDTHS) override { return INPLACE_E_NOTOOLSPACE; }
  HRESULT STDMETHODCALLTYPE SetBorderSpace(LPCBORDERWIDTHS) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE SetActiveObject(IOleInPlaceActiveObject*, LPCOLESTR) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE InsertMenus(HMENU, LPOLEMENUGROUPWIDTHS) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE SetMenu(HMENU, HOLEMENU, HWND) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE RemoveMenus(HMENU) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE SetStatusText(LPCOLESTR) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE EnableModeless(BOOL) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE TranslateAccelerator(LPMSG, WORD) override { return S_FALSE; }

  // IDispatch: the ambient properties
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* n) override {
    *n = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return DISP_E_UNKNOWNNAME;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result, EXCEPINFO*,
                                   UINT*) override {
    if (!result) return S_OK;
    VariantInit(result);
    ambient_reads.push_back(id);
    switch (id) {
      case DISPID_AMBIENT_USERMODE:
        result->vt = VT_BOOL;
        result->boolVal = user_mode ? VARIANT_TRUE : VARIANT_FALSE;
        return S_OK;
      case DISPID_AMBIENT_DISPLAYNAME:
        result->vt = VT_BSTR;
        result->bstrVal = SysAllocString(display_name.c_str());
        return S_OK;
      case DISPID_AMBIENT_BACKCOLOR:
        result->vt = VT_I4;
        result->lVal = static_cast<LONG>(back_color);
        return S_OK;
      case DISPID_AMBIENT_FORECOLOR:
        result->vt = VT_I4;
        result->lVal = static_cast<LONG>(fore_color);
        return S_OK;
      case DISPID_AMBIENT_FONT:
        if (!font) return DISP_E_MEMBERNOTFOUND;
        result->vt = VT_DISPATCH;
        result->pdispVal = font;
        font->AddRef();
        return S_OK;
      default: return DISP_E_MEMBERNOTFOUND;
    }
  }
  std::vector<DISPID> ambient_reads;
};

// ---- one placed control ----

class Placed {
 public:
  Site* site = new Site();
  IUnknown* control = nullptr;
  IDispatch* dispatch = nullptr;
  EventSink* events = nullptr;
  NotifySink* notify = new NotifySink();
  HRESULT create_result = E_FAIL;

  ~Placed() { Remove(); }

  // Creates the control by ProgID, gives it the site, then either InitNew (bag
  // null: a new instance) or Load from the bag, and connects events and
  // property notifications. Activates it in place when activate is true.
  bool Place(const wchar_t* progid, PropertyBag* bag, bool activate) {
    site->MakeFrame();
    CLSID clsid;
    create_result = CLSIDFromProgID(progid, &clsid);
    if (FAILED(create_result)) return false;
    create_result = CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown,
                                     reinterpret_cast<void**>(&control));
    if (FAILED(create_result)) return false;
    control->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&dispatch));
    IOleObject* ole = nullptr;
    if (SUCCEEDED(control->QueryInterface(IID_IOleObject, reinterpret_cast<void**>(&ole)))) {
      ole->SetClientSite(site);
      ole->Release();
    }
    IPersistPropertyBag* ppb = nullptr;
    if (SUCCEEDED(control->QueryInterface(IID_IPersistPropertyBag, reinterpret_cast<void**>(&ppb)))) {
      create_result = bag ? ppb->Load(bag, nullptr) : ppb->InitNew();
      ppb->Release();
    }
    Connect();
    if (activate) Activate();
    return SUCCEEDED(create_result);
  }

  void Activate() {
    IOleObject* ole = nullptr;
    if (FAILED(control->QueryInterface(IID_IOleObject, reinterpret_cast<void**>(&ole)))) return;
    SIZEL himetric = {(site->pos.right - site->pos.left) * 2540 / 96, (site->pos.bottom - site->pos.top) * 2540 / 96};
    ole->SetExtent(DVASPECT_CONTENT, &himetric);
    ole->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, site, 0, site->frame, &site->pos);
    ole->Release();
  }

  // The control's own window while it is in-place active.
  HWND Window() {
    IOleInPlaceObject* ip = nullptr;
    HWND w = nullptr;
    if (control && SUCCEEDED(control->QueryInterface(IID_IOleInPlaceObject, reinterpret_cast<void**>(&ip)))) {
      ip->GetWindow(&w);
      ip->Release();
    }
    return w;
  }

  // Sends a mouse message to the control's window at (x, y) in its client pixels.
  LRESULT Mouse(UINT msg, int x, int y, WPARAM keys = 0) {
    HWND w = Window();
    return w ? SendMessageW(w, msg, keys, MAKELPARAM(x, y)) : 0;
  }

  // Saves the control into a new bag.
  PropertyBag* Save() {
    auto* bag = new PropertyBag();
    IPersistPropertyBag* ppb = nullptr;
    if (SUCCEEDED(control->QueryInterface(IID_IPersistPropertyBag, reinterpret_cast<void**>(&ppb)))) {
      ppb->Save(bag, TRUE, TRUE);
      ppb->Release();
    }
    return bag;
  }

  // Tells the control that an ambient property changed.
  void AmbientChanged(DISPID id) {
    IOleControl* oc = nullptr;
    if (SUCCEEDED(control->QueryInterface(IID_IOleControl, reinterpret_cast<void**>(&oc)))) {
      oc->OnAmbientPropertyChange(id);
      oc->Release();
    }
  }

  // ---- late-bound calls by name ----
  HRESULT Call(const wchar_t* name, WORD flags, std::vector<VARIANT> args, VARIANT* result,
               EXCEPINFO* excep = nullptr) {
    if (!dispatch) return E_NOINTERFACE;
    DISPID id;
    LPOLESTR n = const_cast<LPOLESTR>(name);
    HRESULT hr = dispatch->GetIDsOfNames(IID_NULL, &n, 1, LOCALE_USER_DEFAULT, &id);
    if (FAILED(hr)) return hr;
    std::vector<VARIANT> rev(args.rbegin(), args.rend());
    DISPID put = DISPID_PROPERTYPUT;
    DISPPARAMS dp = {rev.data(), nullptr, static_cast<UINT>(rev.size()), 0};
    if (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) {
      dp.rgdispidNamedArgs = &put;
      dp.cNamedArgs = 1;
    }
    EXCEPINFO ei{};
    UINT arg_err = 0;
    if (result) VariantInit(result);
    hr = dispatch->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &dp, result, excep ? excep : &ei, &arg_err);
    if (!excep) {
      SysFreeString(ei.bstrSource);
      SysFreeString(ei.bstrDescription);
      SysFreeString(ei.bstrHelpFile);
    }
    return hr;
  }
  std::wstring Get(const wchar_t* name) {
    VARIANT r;
    if (FAILED(Call(name, DISPATCH_PROPERTYGET, {}, &r))) return L"(error)";
    std::wstring s = VariantText(r);
    VariantClear(&r);
    return s;
  }
  HRESULT Put(const wchar_t* name, VARIANT v) { return Call(name, DISPATCH_PROPERTYPUT, {v}, nullptr); }

  void Remove() {
    if (!control) {
      if (site) site->Release(), site = nullptr;
      if (notify) notify->Release(), notify = nullptr;
      return;
    }
    Disconnect();
    IOleObject* ole = nullptr;
    if (SUCCEEDED(control->QueryInterface(IID_IOleObject, reinterpret_cast<void**>(&ole)))) {
      ole->Close(OLECLOSE_NOSAVE);
      ole->SetClientSite(nullptr);
      ole->Release();
    }
    if (dispatch) dispatch->Release(), dispatch = nullptr;
    control->Release();
    control = nullptr;
    if (events) events->Release(), events = nullptr;
    if (notify) notify->Release(), notify = nullptr;
    if (site) site->Release(), site = nullptr;
  }

 private:
  IConnectionPoint* event_point_ = nullptr;
  DWORD event_cookie_ = 0;
  IConnectionPoint* notify_point_ = nullptr;
  DWORD notify_cookie_ = 0;

  void Connect() {
    IProvideClassInfo2* pci = nullptr;
    GUID source = GUID_NULL;
    ITypeInfo* event_info = nullptr;
    if (SUCCEEDED(control->QueryInterface(IID_IProvideClassInfo2, reinterpret_cast<void**>(&pci)))) {
      pci->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &source);
      ITypeInfo* ci = nullptr;
      if (SUCCEEDED(pci->GetClassInfo(&ci))) {
        ITypeLib* lib = nullptr;
        UINT idx = 0;
        if (SUCCEEDED(ci->GetContainingTypeLib(&lib, &idx))) {
          lib->GetTypeInfoOfGuid(source, &event_info);
          lib->Release();
        }
        ci->Release();
      }
      pci->Release();
    }
    events = new EventSink(source, event_info);
    if (event_info) event_info->Release();
    IConnectionPointContainer* cpc = nullptr;
    if (FAILED(control->QueryInterface(IID_IConnectionPointContainer, reinterpret_cast<void**>(&cpc)))) return;
    if (source != GUID_NULL && SUCCEEDED(cpc->FindConnectionPoint(source, &event_point_)))
      event_point_->Advise(static_cast<IDispatch*>(events), &event_cookie_);
    if (SUCCEEDED(cpc->FindConnectionPoint(IID_IPropertyNotifySink, &notify_point_)))
      notify_point_->Advise(static_cast<IPropertyNotifySink*>(notify), &notify_cookie_);
    cpc->Release();
  }
  void Disconnect() {
    if (event_point_) {
      if (event_cookie_) event_point_->Unadvise(event_cookie_);
      event_point_->Release();
      event_point_ = nullptr;
    }
    if (notify_point_) {
      if (notify_cookie_) notify_point_->Unadvise(notify_cookie_);
      notify_point_->Release();
      notify_point_ = nullptr;
    }
  }
};

// Variant makers for calls.
inline VARIANT Str(const wchar_t* s) {
  VARIANT v;
  VariantInit(&v);
  v.vt = VT_BSTR;
  v.bstrVal = SysAllocString(s);  // freed by the callee's copy rules: tests accept the small leak
  return v;
}
inline VARIANT Long(long n) {
  VARIANT v;
  VariantInit(&v);
  v.vt = VT_I4;
  v.lVal = n;
  return v;
}
inline VARIANT Bool(bool b) {
  VARIANT v;
  VariantInit(&v);
  v.vt = VT_BOOL;
  v.boolVal = b ? VARIANT_TRUE : VARIANT_FALSE;
  return v;
}

}  // namespace korvel_test
