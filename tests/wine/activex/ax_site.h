// A client site of our own for the control server's tests: ambient properties
// through IDispatch, an extender through IOleControlSite, an in-place site on a
// window, and a log of what the control asked of it.
#pragma once
#include "ax_test.h"

namespace axtest {

class Extender : public IDispatch {
 public:
  std::vector<std::string> puts;
  std::wstring name = L"Slider1";
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
      case 1: V_VT(result) = VT_BSTR; V_BSTR(result) = SysAllocString(name.c_str()); return S_OK;
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

// Creates progid on site (the site first, as the misc status asks) and runs InitNew.
inline IDispatch* Place(const wchar_t* progid, Site& site, IOleObject** ole) {
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

}  // namespace axtest
