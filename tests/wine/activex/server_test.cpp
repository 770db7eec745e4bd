// The server as a whole: QueryInterface answers the same way every time, safety
// options refused, property pages, misc status, class factory locks and
// DllCanUnloadNow, and AboutBox showing a fresh modal About window per call.
#include <atomic>
#include <thread>

#include <objsafe.h>

#include "ax_test.h"

using namespace axtest;

namespace {

const wchar_t* kProgIds[] = {L"KorvelUI99.KorvelToolbar", L"KorvelUI99.KorvelLink", L"KorvelUI99.KorvelDivider", L"KorvelUI99.KorvelBar",
                             L"KorvelUI99.KorvelMiniSlider"};

void Interfaces(const wchar_t* progid) {
  const std::string cls = Narrow(progid);
  IDispatch* d = CreateNew(progid);
  Check(d != nullptr, cls + " created");
  if (!d) return;
  struct Probe {
    const IID* iid;
    const char* name;
    bool expected;
  };
  const Probe probes[] = {
      {&IID_IDispatch, "IDispatch", true},
      {&IID_IConnectionPointContainer, "IConnectionPointContainer", true},
      {&IID_IProvideClassInfo, "IProvideClassInfo", true},
      {&IID_IProvideClassInfo2, "IProvideClassInfo2", true},
      {&IID_ISpecifyPropertyPages, "ISpecifyPropertyPages", true},
      {&IID_IObjectSafety, "IObjectSafety", true},
      {&IID_IPersist, "IPersist", true},
      {&IID_IPersistPropertyBag, "IPersistPropertyBag", true},
      {&IID_IPersistStreamInit, "IPersistStreamInit", true},
      {&IID_IOleObject, "IOleObject", true},
      {&IID_IOleWindow, "IOleWindow", true},
      {&IID_IOleInPlaceObject, "IOleInPlaceObject", true},
      {&IID_IOleInPlaceActiveObject, "IOleInPlaceActiveObject", true},
      {&IID_IOleControl, "IOleControl", true},
      {&IID_IViewObject, "IViewObject", true},
      {&IID_IViewObject2, "IViewObject2", true},
      {&IID_ISupportErrorInfo, "ISupportErrorInfo", true},
      {&IID_IPersistStorage, "IPersistStorage", false},
      {&IID_IDataObject, "IDataObject", false},
      {&IID_IQuickActivate, "IQuickActivate", false},
  };
  IUnknown* identity = nullptr;
  d->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(&identity));
  for (const Probe& p : probes) {
    bool same = true;
    void* first = nullptr;
    HRESULT h1 = d->QueryInterface(*p.iid, &first);
    for (int i = 0; i < 3; ++i) {
      void* again = nullptr;
      HRESULT h2 = d->QueryInterface(*p.iid, &again);
      same = same && h1 == h2 && first == again;
      if (again) static_cast<IUnknown*>(again)->Release();
    }
    IUnknown* back = nullptr;
    if (first) static_cast<IUnknown*>(first)->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(&back));
    const bool identity_ok = !first || back == identity;
    if (back) back->Release();
    if (first) static_cast<IUnknown*>(first)->Release();
    Check(SUCCEEDED(h1) == p.expected && same && identity_ok,
          cls + ": " + p.name + (p.expected ? " answered" : " refused") + " the same way every time");
  }
  if (identity) identity->Release();

  IObjectSafety* safety = nullptr;
  if (SUCCEEDED(d->QueryInterface(IID_IObjectSafety, reinterpret_cast<void**>(&safety)))) {
    DWORD supported = 99, enabled = 99;
    Check(safety->GetInterfaceSafetyOptions(IID_IDispatch, &supported, &enabled) == S_OK && supported == 0 && enabled == 0,
          cls + ": safe for nothing on IDispatch");
    supported = enabled = 99;
    Check(safety->GetInterfaceSafetyOptions(IID_IPersistPropertyBag, &supported, &enabled) == S_OK && supported == 0 &&
              enabled == 0,
          cls + ": safe for nothing on IPersistPropertyBag");
    Check(safety->SetInterfaceSafetyOptions(IID_IDispatch, INTERFACESAFE_FOR_UNTRUSTED_CALLER,
                                            INTERFACESAFE_FOR_UNTRUSTED_CALLER) == E_FAIL,
          cls + ": refuses to be made safe for scripting");
    Check(safety->SetInterfaceSafetyOptions(IID_IPersistPropertyBag, INTERFACESAFE_FOR_UNTRUSTED_DATA,
                                            INTERFACESAFE_FOR_UNTRUSTED_DATA) == E_FAIL,
          cls + ": refuses to be made safe for initialization");
    Check(safety->GetInterfaceSafetyOptions(IID_IStorage, &supported, &enabled) == E_NOINTERFACE,
          cls + ": no safety options for an interface it lacks");
    safety->Release();
  }
  ISpecifyPropertyPages* pages = nullptr;
  if (SUCCEEDED(d->QueryInterface(IID_ISpecifyPropertyPages, reinterpret_cast<void**>(&pages)))) {
    CAUUID list{5, nullptr};
    if (cls == "KorvelUI99.KorvelToolbar")
      Check(pages->GetPages(&list) == S_OK && list.cElems == 1 && IsEqualCLSID(list.pElems[0], CLSID_ktButtons),
            cls + ": lists its Buttons page");
    else
      Check(pages->GetPages(&list) == S_OK && list.cElems == 0, cls + ": no property pages");
    CoTaskMemFree(list.pElems);
    pages->Release();
  }
  IOleObject* ole = nullptr;
  if (SUCCEEDED(d->QueryInterface(IID_IOleObject, reinterpret_cast<void**>(&ole)))) {
    DWORD misc = 0;
    Check(ole->GetMiscStatus(DVASPECT_CONTENT, &misc) == S_OK && misc == 0x20191, cls + ": misc status 0x20191");
    SIZEL size{2000, 700};
    SIZEL got{};
    // The toolbar keeps a height of its own; the others take the extent given.
    const bool toolbar = cls == "KorvelUI99.KorvelToolbar";
    const bool ok = ole->SetExtent(DVASPECT_CONTENT, &size) == S_OK && ole->GetExtent(DVASPECT_CONTENT, &got) == S_OK;
    Check(ok && got.cx == 2000 && (toolbar ? got.cy != 700 && got.cy > 0 : got.cy == 700),
          cls + ": SetExtent then GetExtent gives 2000 x " + std::to_string(got.cy));
    CLSID user{};
    CLSID clsid{};
    CLSIDFromProgID(progid, &clsid);
    Check(ole->GetUserClassID(&user) == S_OK && IsEqualCLSID(user, clsid), cls + ": GetUserClassID");
    ole->Release();
  }
  d->Release();
}

using CanUnload = HRESULT(STDAPICALLTYPE*)();

void Unloading() {
  IDispatch* d = Create(L"KorvelUI99.KorvelLink");
  HMODULE server = GetModuleHandleW(L"KorvelUI99.ocx");
  auto can_unload =
      server ? reinterpret_cast<CanUnload>(reinterpret_cast<void*>(GetProcAddress(server, "DllCanUnloadNow"))) : nullptr;
  Check(can_unload != nullptr, "the server exports DllCanUnloadNow");
  if (!can_unload || !d) return;
  Check(can_unload() == S_FALSE, "DllCanUnloadNow is S_FALSE while an object lives");
  d->Release();
  Check(can_unload() == S_OK, "DllCanUnloadNow is S_OK once every object is released");

  IClassFactory* factory = nullptr;
  Check(SUCCEEDED(CoGetClassObject(CLSID_KorvelBar, CLSCTX_INPROC_SERVER, nullptr, IID_IClassFactory,
                                   reinterpret_cast<void**>(&factory))) && factory,
        "the class factory of KorvelBar");
  if (!factory) return;
  Check(factory->LockServer(TRUE) == S_OK, "LockServer(TRUE)");
  factory->Release();
  Check(can_unload() == S_FALSE, "DllCanUnloadNow is S_FALSE while the server is locked");
  CoGetClassObject(CLSID_KorvelBar, CLSCTX_INPROC_SERVER, nullptr, IID_IClassFactory, reinterpret_cast<void**>(&factory));
  IUnknown* outer = reinterpret_cast<IUnknown*>(factory);
  void* obj = reinterpret_cast<void*>(1);
  Check(factory->CreateInstance(outer, IID_IUnknown, &obj) == CLASS_E_NOAGGREGATION && obj == nullptr,
        "aggregation is refused");
  factory->LockServer(FALSE);
  factory->Release();
  Check(can_unload() == S_OK, "DllCanUnloadNow is S_OK after LockServer(FALSE)");
  void* none = nullptr;
  Check(CoGetClassObject(CLSID_KorvelColor, CLSCTX_INPROC_SERVER, nullptr, IID_IClassFactory, &none) != S_OK,
        "no class factory for a class the server cannot create");
}


// ---- the About box ----

// Watches for the modal About window of one AboutBox call and closes it, by a
// click on its OK button or by WM_CLOSE.
struct AboutWatcher {
  bool click_ok = false;
  HWND found = nullptr;
  HWND surface = nullptr;
  wchar_t caption[64] = {};
  std::thread thread;
  void Start() {
    thread = std::thread([this] {
      for (int i = 0; i < 500 && !found; ++i) {
        HWND w = FindWindowW(L"KorvelModalForm", nullptr);
        if (w && IsWindowVisible(w)) {
          found = w;
          GetWindowTextW(w, caption, 64);
          surface = FindWindowExW(w, nullptr, nullptr, nullptr);
          Sleep(100);  // let it paint
          if (click_ok && surface) {
            const LPARAM at = MAKELPARAM(186, 209);  // the middle of the OK button
            PostMessageW(surface, WM_MOUSEMOVE, 0, at);
            PostMessageW(surface, WM_LBUTTONDOWN, MK_LBUTTON, at);
            PostMessageW(surface, WM_LBUTTONUP, 0, at);
          } else {
            PostMessageW(w, WM_CLOSE, 0, 0);
          }
          break;
        }
        Sleep(20);
      }
    });
  }
  void Join() { thread.join(); }
};

void AboutBox(const wchar_t* progid) {
  const std::string cls = Narrow(progid);
  IDispatch* d = CreateNew(progid);
  if (!d) return;
  HWND first = nullptr;
  for (int call = 0; call < 2; ++call) {
    AboutWatcher w;
    w.click_ok = call == 0;
    w.Start();
    CallResult r;
    InvokeId(d, DISPID_ABOUTBOX, DISPATCH_METHOD, {}, r);
    w.Join();
    const std::string how = call == 0 ? "closed by its OK button" : "closed by the window's close command";
    Check(r.hr == S_OK, cls + ": AboutBox call " + std::to_string(call + 1) + " returns S_OK once the window is " + how);
    Check(w.found != nullptr && std::wstring(w.caption) == L"About KorvelUI99...",
          cls + ": call " + std::to_string(call + 1) + " showed a window captioned \"About KorvelUI99...\"");
    Check(w.found && !IsWindow(w.found), cls + ": the About window is gone when AboutBox returns");
    if (call == 0) {
      first = w.found;
      Check(w.surface != nullptr, cls + ": the About window shows the form's surface as its child window");
    }
    if (call == 1) Check(w.found && w.found != first, cls + ": the second call built a fresh window");
  }
  d->Release();
}

// ---- drawing into a container's device context ----

void Draw() {
  IDispatch* d = CreateNew(L"KorvelUI99.KorvelMiniSlider");
  if (!d) return;
  Put(d, L"Value", VI4(50));
  Put(d, L"ForeColor", VI4(0x0000FF));
  Put(d, L"BackColor", VI4(0xFFFFFF));
  IOleObject* ole = nullptr;
  IViewObject2* view = nullptr;
  d->QueryInterface(IID_IOleObject, reinterpret_cast<void**>(&ole));
  d->QueryInterface(IID_IViewObject2, reinterpret_cast<void**>(&view));
  SIZEL size{2540, 635};  // 96 x 24 pixels
  if (ole) ole->SetExtent(DVASPECT_CONTENT, &size);
  BITMAPINFO bi{};
  bi.bmiHeader.biSize = sizeof bi.bmiHeader;
  bi.bmiHeader.biWidth = 96;
  bi.bmiHeader.biHeight = -24;
  bi.bmiHeader.biPlanes = 1;
  bi.bmiHeader.biBitCount = 32;
  void* bits = nullptr;
  HDC dc = CreateCompatibleDC(nullptr);
  HBITMAP bmp = CreateDIBSection(dc, &bi, DIB_RGB_COLORS, &bits, nullptr, 0);
  HGDIOBJ old = SelectObject(dc, bmp);
  // A marker colour everywhere first, so that every pixel checked was drawn.
  for (int i = 0; i < 96 * 24; ++i) static_cast<DWORD*>(bits)[i] = 0x123456;
  RECTL bounds{0, 0, 96, 24};
  HRESULT hr = view ? view->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, dc, &bounds, nullptr, nullptr, 0) : E_FAIL;
  GdiFlush();
  auto px = [&](int x, int y) { return static_cast<const DWORD*>(bits)[y * 96 + x] & 0xFFFFFF; };
  Check(hr == S_OK, "KorvelMiniSlider: IViewObject::Draw into a memory DC");
  Check(px(0, 0) == 0x000000 && px(95, 23) == 0x000000, "KorvelMiniSlider: the black outline at the corners");
  Check(px(10, 12) == 0xFF0000, "KorvelMiniSlider: the bar colour left of the value (red)");
  Check(px(80, 12) == 0xFFFFFF, "KorvelMiniSlider: the background colour right of it (white)");
  SelectObject(dc, old);
  DeleteObject(bmp);
  DeleteDC(dc);
  if (view) view->Release();
  if (ole) ole->Release();
  d->Release();
}

// ---- resources ----

void Resources(const std::wstring& path) {
  HMODULE m = LoadLibraryExW(path.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
  Check(m != nullptr, "the server loads as a data file");
  if (!m) return;
  Check(FindResourceW(m, MAKEINTRESOURCEW(1), L"TYPELIB") != nullptr, "the type library is resource TYPELIB 1");
  int good = 0;
  for (int id = 30000; id <= 30015; ++id) {
    HBITMAP b = static_cast<HBITMAP>(LoadImageW(m, MAKEINTRESOURCEW(id), IMAGE_BITMAP, 0, 0, 0));
    BITMAP info{};
    if (b && GetObjectW(b, sizeof info, &info) && info.bmWidth == 16 && info.bmHeight == 15) ++good;
    if (b) DeleteObject(b);
  }
  Check(good == 16, "sixteen 16 x 15 toolbox bitmaps, 30000 to 30015 (got " + std::to_string(good) + ")");
  Check(FindResourceW(m, MAKEINTRESOURCEW(30016), MAKEINTRESOURCEW(2)) == nullptr, "no bitmap 30016");
  FreeLibrary(m);
}

}  // namespace

int main(int argc, char** argv) {
  CoInitialize(nullptr);
  if (argc > 1) Resources(ServerPath(argv[1]));
  else Check(false, "the server's path is given");
  for (const wchar_t* p : kProgIds) Interfaces(p);
  Unloading();
  for (const wchar_t* p : kProgIds) AboutBox(p);
  Draw();
  CoUninitialize();
  return Summary();
}
