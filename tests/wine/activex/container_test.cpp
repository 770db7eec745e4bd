// A small container of our own: a client site with ambient properties, a control
// site with an extender, and an in-place site on a real window. Checks the ambient
// UserMode, BackColor and Font reaching the controls, re-reading them on
// OnAmbientPropertyChange, the extender, in-place activation with its window, a
// control asking for its own size, and mouse input reaching the control.
#include "ax_test.h"

using namespace axtest;

namespace {

class Extender : public IDispatch {
 public:
  std::vector<std::string> puts;
  VARIANT_BOOL visible = VARIANT_TRUE, enabled = VARIANT_TRUE;
  long align = 0;
  STDMETHODIMP QueryInterface(REFIID riid, void** out) override {
    if (IsEqualIID(riid, IID_IUnknown) || IsEqualIID(riid, IID_IDispatch)) {
      *out = static_cast<IDispatch*>(this);
      return S_OK;
    }
    *out = nullptr;
    return E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return 2; }
  STDMETHODIMP_(ULONG) Release() override { return 1; }
  STDMETHODIMP GetTypeInfoCount(UINT* n) override { *n = 0; return S_OK; }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* id) override {
    static const wchar_t* kNames[] = {L"Name", L"Visible", L"Align", L"Enabled"};
    for (int i = 0; i < 4; ++i)
      if (_wcsicmp(names[0], kNames[i]) == 0) {
        *id = i + 1;
        return S_OK;
      }
    *id = DISPID_UNKNOWN;
    return DISP_E_UNKNOWNNAME;
  }
  STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* dp, VARIANT* result, EXCEPINFO*, UINT*) override {
    if (flags & DISPATCH_PROPERTYPUT) {
      VARIANT v;
      VariantInit(&v);
      VariantChangeType(&v, &dp->rgvarg[0], 0, VT_I4);
      static const char* kNames[] = {"", "Name", "Visible", "Align", "Enabled"};
      puts.push_back(std::string(kNames[id]) + "=" + std::to_string(V_I4(&v)));
      if (id == 2) visible = V_I4(&v) ? VARIANT_TRUE : VARIANT_FALSE;
      if (id == 3) align = V_I4(&v);
      if (id == 4) enabled = V_I4(&v) ? VARIANT_TRUE : VARIANT_FALSE;
      return S_OK;
    }
    if (!result) return E_POINTER;
    VariantInit(result);
    switch (id) {
      case 1: V_VT(result) = VT_BSTR; V_BSTR(result) = SysAllocString(L"Slider1"); return S_OK;
      case 2: V_VT(result) = VT_BOOL; V_BOOL(result) = visible; return S_OK;
      case 3: V_VT(result) = VT_I4; V_I4(result) = align; return S_OK;
      case 4: V_VT(result) = VT_BOOL; V_BOOL(result) = enabled; return S_OK;
      default: return DISP_E_MEMBERNOTFOUND;
    }
  }
};

class Site : public IOleClientSite, public IOleInPlaceSite, public IOleControlSite, public IDispatch {
 public:
  HWND window = nullptr;
  RECT pos{10, 10, 110, 34};
  bool user_mode = true;
  long back_color = 0x8000000F;
  IDispatch* font = nullptr;
  Extender extender;
  std::vector<std::string> log;
  std::vector<RECT> pos_changes;

  STDMETHODIMP QueryInterface(REFIID riid, void** out) override {
    if (IsEqualIID(riid, IID_IUnknown) || IsEqualIID(riid, IID_IOleClientSite)) *out = static_cast<IOleClientSite*>(this);
    else if (IsEqualIID(riid, IID_IOleWindow) || IsEqualIID(riid, IID_IOleInPlaceSite)) *out = static_cast<IOleInPlaceSite*>(this);
    else if (IsEqualIID(riid, IID_IOleControlSite)) *out = static_cast<IOleControlSite*>(this);
    else if (IsEqualIID(riid, IID_IDispatch)) *out = static_cast<IDispatch*>(this);
    else {
      *out = nullptr;
      return E_NOINTERFACE;
    }
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return 2; }
  STDMETHODIMP_(ULONG) Release() override { return 1; }
  // IOleClientSite
  STDMETHODIMP SaveObject() override { return E_NOTIMPL; }
  STDMETHODIMP GetMoniker(DWORD, DWORD, IMoniker** m) override { *m = nullptr; return E_NOTIMPL; }
  STDMETHODIMP GetContainer(IOleContainer** c) override { *c = nullptr; return E_NOINTERFACE; }
  STDMETHODIMP ShowObject() override { return S_OK; }
  STDMETHODIMP OnShowWindow(BOOL) override { return S_OK; }
  STDMETHODIMP RequestNewObjectLayout() override { return E_NOTIMPL; }
  // IOleInPlaceSite
  STDMETHODIMP GetWindow(HWND* w) override { *w = window; return S_OK; }
  STDMETHODIMP ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }
  STDMETHODIMP CanInPlaceActivate() override { log.push_back("CanInPlaceActivate"); return S_OK; }
  STDMETHODIMP OnInPlaceActivate() override { log.push_back("OnInPlaceActivate"); return S_OK; }
  STDMETHODIMP OnUIActivate() override { log.push_back("OnUIActivate"); return S_OK; }
  STDMETHODIMP GetWindowContext(IOleInPlaceFrame** f, IOleInPlaceUIWindow** d, LPRECT p, LPRECT c,
                                LPOLEINPLACEFRAMEINFO) override {
    log.push_back("GetWindowContext");
    *f = nullptr;
    *d = nullptr;
    *p = pos;
    *c = pos;
    return S_OK;
  }
  STDMETHODIMP Scroll(SIZE) override { return E_NOTIMPL; }
  STDMETHODIMP OnUIDeactivate(BOOL) override { log.push_back("OnUIDeactivate"); return S_OK; }
  STDMETHODIMP OnInPlaceDeactivate() override { log.push_back("OnInPlaceDeactivate"); return S_OK; }
  STDMETHODIMP DiscardUndoState() override { return S_OK; }
  STDMETHODIMP DeactivateAndUndo() override { return S_OK; }
  STDMETHODIMP OnPosRectChange(LPCRECT r) override {
    pos_changes.push_back(*r);
    return S_OK;
  }
  // IOleControlSite
  STDMETHODIMP OnControlInfoChanged() override { return S_OK; }
  STDMETHODIMP LockInPlaceActive(BOOL) override { return S_OK; }
  STDMETHODIMP GetExtendedControl(IDispatch** d) override { *d = &extender; return S_OK; }
  STDMETHODIMP TransformCoords(POINTL*, POINTF*, DWORD) override { return E_NOTIMPL; }
  STDMETHODIMP TranslateAccelerator(MSG*, DWORD) override { return S_FALSE; }
  STDMETHODIMP OnFocus(BOOL) override { return S_OK; }
  STDMETHODIMP ShowPropertyFrame() override { return E_NOTIMPL; }
  // IDispatch: the ambient properties
  STDMETHODIMP GetTypeInfoCount(UINT* n) override { *n = 0; return S_OK; }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
  STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* r, EXCEPINFO*, UINT*) override {
    if (!r) return E_POINTER;
    VariantInit(r);
    switch (id) {
      case DISPID_AMBIENT_USERMODE: V_VT(r) = VT_BOOL; V_BOOL(r) = user_mode ? VARIANT_TRUE : VARIANT_FALSE; return S_OK;
      case DISPID_AMBIENT_BACKCOLOR: V_VT(r) = VT_I4; V_I4(r) = back_color; return S_OK;
      case DISPID_AMBIENT_DISPLAYNAME: V_VT(r) = VT_BSTR; V_BSTR(r) = SysAllocString(L"Slider1"); return S_OK;
      case DISPID_AMBIENT_FONT:
        if (!font) return DISP_E_MEMBERNOTFOUND;
        V_VT(r) = VT_DISPATCH;
        V_DISPATCH(r) = font;
        font->AddRef();
        return S_OK;
      default: return DISP_E_MEMBERNOTFOUND;
    }
  }
};

std::string Join(const std::vector<std::string>& v) {
  std::string s;
  for (auto& x : v) s += (s.empty() ? "" : " ") + x;
  return s;
}

std::string FontName(IDispatch* d) {
  IFont* f = nullptr;
  if (!d || FAILED(d->QueryInterface(IID_IFont, reinterpret_cast<void**>(&f)))) return "(none)";
  BSTR n = nullptr;
  f->get_Name(&n);
  f->Release();
  std::string s = n ? Narrow(n) : "";
  SysFreeString(n);
  return s;
}

// Creates progid on site (the site first, as the misc status asks) and runs InitNew.
IDispatch* Place(const wchar_t* progid, Site& site, IOleObject** ole) {
  IDispatch* d = Create(progid);
  *ole = nullptr;
  if (!d) return nullptr;
  d->QueryInterface(IID_IOleObject, reinterpret_cast<void**>(ole));
  if (*ole) (*ole)->SetClientSite(&site);
  IPersistStreamInit* p = nullptr;
  if (SUCCEEDED(d->QueryInterface(IID_IPersistStreamInit, reinterpret_cast<void**>(&p)))) {
    p->InitNew();
    p->Release();
  }
  return d;
}

void Pump(int ms) {
  const DWORD end = GetTickCount() + static_cast<DWORD>(ms);
  MSG msg;
  while (GetTickCount() < end) {
    while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
      TranslateMessage(&msg);
      DispatchMessageW(&msg);
    }
    Sleep(5);
  }
}

HWND MakeWindow() {
  WNDCLASSW wc{};
  wc.lpfnWndProc = DefWindowProcW;
  wc.hInstance = GetModuleHandleW(nullptr);
  wc.lpszClassName = L"KorvelTestContainer";
  RegisterClassW(&wc);
  HWND w = CreateWindowExW(0, wc.lpszClassName, L"container", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 400, 300,
                           nullptr, nullptr, wc.hInstance, nullptr);
  Pump(50);
  return w;
}

void DesignAndRunTime() {
  Site site;
  site.user_mode = false;
  IOleObject* ole = nullptr;
  IDispatch* bar = Place(L"KorvelUI99.KorvelBar", site, &ole);
  Check(bar != nullptr, "KorvelBar placed on a site");
  if (!bar) return;
  Check(GetLong(bar, L"Value") == 100, "at design time (ambient UserMode False) a new bar is full");
  Put(bar, L"Value", VI2(20));
  Check(GetLong(bar, L"Value") == 100, "at design time Value is not assigned");
  site.user_mode = true;
  IOleControl* oc = nullptr;
  bar->QueryInterface(IID_IOleControl, reinterpret_cast<void**>(&oc));
  Check(oc && oc->OnAmbientPropertyChange(DISPID_AMBIENT_USERMODE) == S_OK, "OnAmbientPropertyChange(UserMode)");
  Put(bar, L"Value", VI2(20));
  Check(GetLong(bar, L"Value") == 20, "after the ambient changed to run time Value is assigned");
  if (oc) oc->Release();
  if (ole) {
    ole->SetClientSite(nullptr);
    ole->Release();
  }
  bar->Release();
}

void AmbientsAndExtender() {
  Site site;
  site.back_color = 0x00ABCDEF;
  FONTDESC fd{sizeof(FONTDESC), const_cast<LPOLESTR>(L"Courier New"), {{100000, 0}}, 400, 0, FALSE, FALSE, FALSE};
  OleCreateFontIndirect(&fd, IID_IDispatch, reinterpret_cast<void**>(&site.font));
  IOleObject* ole = nullptr;
  IDispatch* link = Place(L"KorvelUI99.KorvelLink", site, &ole);
  Check(link != nullptr, "KorvelLink placed on a site");
  if (!link) return;
  Check(GetLong(link, L"BackColor") == 0x00ABCDEF, "a new link takes the ambient BackColor");
  CallResult r;
  Get(link, L"Font", r);
  const std::string ambient = FontName(site.font);
  Check(r.hr == S_OK && V_VT(&r.value) == VT_DISPATCH && FontName(V_DISPATCH(&r.value)) == ambient,
        "a new link takes the ambient font's name (" + ambient + ")");
  Check(!(V_VT(&r.value) == VT_DISPATCH && V_DISPATCH(&r.value) == site.font), "... in a font object of its own");
  Put(link, L"Enabled", VBool(false));
  Check(Join(site.extender.puts) == "Enabled=0", "Enabled False on the link sets the extender's Enabled (got " +
                                                      Join(site.extender.puts) + ")");
  if (ole) {
    ole->SetClientSite(nullptr);
    ole->Release();
  }
  link->Release();
  site.font->Release();
}

void InPlace() {
  Site site;
  site.window = MakeWindow();
  Check(site.window != nullptr, "a container window");
  IOleObject* ole = nullptr;
  IDispatch* slider = Place(L"KorvelUI99.KorvelMiniSlider", site, &ole);
  if (!slider || !ole) return;
  Sink sink(DIID___KorvelMiniSlider);
  IConnectionPoint* point = nullptr;
  DWORD cookie = Connect(slider, DIID___KorvelMiniSlider, static_cast<IDispatch*>(&sink), &point);
  HRESULT hr = ole->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, &site, 0, site.window, &site.pos);
  Check(hr == S_OK, "DoVerb(OLEIVERB_INPLACEACTIVATE)");
  Check(Join(site.log) == "CanInPlaceActivate OnInPlaceActivate GetWindowContext",
        "the in-place site is asked in order (got " + Join(site.log) + ")");
  IOleInPlaceObject* ipo = nullptr;
  slider->QueryInterface(IID_IOleInPlaceObject, reinterpret_cast<void**>(&ipo));
  HWND child = nullptr;
  Check(ipo && ipo->GetWindow(&child) == S_OK && child && GetParent(child) == site.window,
        "the active control has a child window of the container");
  RECT rc{};
  if (child) GetWindowRect(child, &rc);
  POINT origin{0, 0};
  ClientToScreen(site.window, &origin);
  Check(child && rc.left - origin.x == 10 && rc.top - origin.y == 10 && rc.right - rc.left == 100 && rc.bottom - rc.top == 24,
        "the child window sits at the site's position rectangle 10,10 100x24");
  // A press at x = 50 of a 100-pixel slider (0..100): value (50 - 1) / 0.98 = 50.
  if (child) {
    sink.calls.clear();
    PostMessageW(child, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(50, 12));
    PostMessageW(child, WM_LBUTTONUP, 0, MAKELPARAM(50, 12));
    Pump(200);
  }
  Check(GetLong(slider, L"Value") == 50, "a mouse press in the control's window sets the value (got " +
                                             std::to_string(GetLong(slider, L"Value")) + ")");
  Check(!sink.calls.empty(), "the press raised events: " + Join(sink.calls));
  site.log.clear();
  Check(ipo && ipo->InPlaceDeactivate() == S_OK, "InPlaceDeactivate");
  Check(Join(site.log) == "OnInPlaceDeactivate", "the site hears OnInPlaceDeactivate (got " + Join(site.log) + ")");
  Check(child && !IsWindow(child), "the control's window is gone after deactivation");
  if (ipo) ipo->Release();
  if (point) {
    point->Unadvise(cookie);
    point->Release();
  }
  ole->Close(OLECLOSE_NOSAVE);
  ole->SetClientSite(nullptr);
  ole->Release();
  slider->Release();

  // A bar narrower than 5 pixels asks for 5: the in-place site hears of the new rectangle.
  site.pos = RECT{20, 40, 22, 60};
  site.log.clear();
  IDispatch* bar = Place(L"KorvelUI99.KorvelBar", site, &ole);
  if (bar && ole) {
    ole->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, &site, 0, site.window, &site.pos);
    bool asked = false;
    for (const RECT& r : site.pos_changes) asked = asked || (r.left == 20 && r.top == 40 && r.right == 25);
    Check(asked, "the bar's own size request reaches OnPosRectChange as 20,40 - 25,...");
    SIZEL ext{};
    ole->GetExtent(DVASPECT_CONTENT, &ext);
    Check(ext.cx == 132, "its extent is now 5 pixels (132 HIMETRIC), got " + std::to_string(ext.cx));
    ole->Close(OLECLOSE_NOSAVE);
    ole->SetClientSite(nullptr);
    ole->Release();
    bar->Release();
  }
  DestroyWindow(site.window);
}

}  // namespace

int main() {
  OleInitialize(nullptr);
  DesignAndRunTime();
  AmbientsAndExtender();
  InPlace();
  OleUninitialize();
  return Summary();
}
