// A small container of our own: a client site with ambient properties, a control
// site with an extender, and an in-place site on a real window. Checks the ambient
// UserMode, BackColor and Font reaching the controls, re-reading them on
// OnAmbientPropertyChange, the extender, in-place activation with its window, a
// control asking for its own size, and mouse input reaching the control.
#include "ax_site.h"

using namespace axtest;

namespace {


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
  ITypeLib* tl = nullptr;
  if (SUCCEEDED(LoadRegTypeLib(LIBID_KorvelUI99, 1, 0, LOCALE_NEUTRAL, &tl))) {
    tl->GetTypeInfoOfGuid(DIID___KorvelMiniSlider, &sink.info);
    tl->Release();
  }
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
  Check(sink.calls == std::vector<std::string>{"Click(3:50)", "Change(3:50)"},
        "the press raised Click(50) then Change(50) (got " + Join(sink.calls) + ")");
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
  if (sink.info) sink.info->Release();

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
