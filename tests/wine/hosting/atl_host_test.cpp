// A second opinion on hosting: the platform's own ATL container (atl.dll, loaded at
// run time) creates each control by its ProgID in a real window, activates it in
// place and draws it. For every class given on the command line:
//   - the container gets the control, and the control has a window of its own that
//     is a visible child of the container's window, as wide as the container (the
//     toolbar chooses its own height);
//   - IViewObject::Draw into a memory bitmap of the window's size succeeds and draws
//     something (at least two colours);
//   - the window shows exactly what Draw drew, pixel for pixel.
// Prints "N passed, N failed".
#include <ocidl.h>
#include <oleidl.h>
#include <windows.h>

#include <cstdio>
#include <set>
#include <string>
#include <vector>

namespace {

int passed = 0, failed = 0;
void Check(bool ok, const std::wstring& what) {
  std::printf("%s: %ls\n", ok ? "ok" : "FAILED", what.c_str());
  ok ? ++passed : ++failed;
}

using AtlAxWinInitFn = BOOL(WINAPI*)();
using AtlAxCreateControlFn = HRESULT(WINAPI*)(LPCOLESTR, HWND, IStream*, IUnknown**);
using AtlAxGetControlFn = HRESULT(WINAPI*)(HWND, IUnknown**);

template <class F>
F Proc(HMODULE module, const char* name) {
  return module ? reinterpret_cast<F>(reinterpret_cast<void*>(GetProcAddress(module, name))) : nullptr;
}

constexpr int kWidth = 200;
constexpr int kHeight = 40;

// The pixels of a 32-bit top-down bitmap.
struct Pixels {
  std::vector<DWORD> data;
};

HBITMAP MakeDib(HDC dc, int width, int height, void** bits) {
  BITMAPINFO bi{};
  bi.bmiHeader.biSize = sizeof bi.bmiHeader;
  bi.bmiHeader.biWidth = width;
  bi.bmiHeader.biHeight = -height;
  bi.bmiHeader.biPlanes = 1;
  bi.bmiHeader.biBitCount = 32;
  bi.bmiHeader.biCompression = BI_RGB;
  return CreateDIBSection(dc, &bi, DIB_RGB_COLORS, bits, nullptr, 0);
}

// Copies the pixels out of a device context (a window's or a memory one).
Pixels Grab(HDC src, int width, int height) {
  Pixels p;
  p.data.resize(static_cast<size_t>(width) * height);
  HDC mem = CreateCompatibleDC(src);
  void* bits = nullptr;
  HBITMAP bmp = MakeDib(src, width, height, &bits);
  HGDIOBJ old = SelectObject(mem, bmp);
  BitBlt(mem, 0, 0, width, height, src, 0, 0, SRCCOPY);
  GdiFlush();
  const DWORD* b = static_cast<const DWORD*>(bits);
  for (size_t i = 0; i < p.data.size(); ++i) p.data[i] = b[i] & 0x00FFFFFF;
  SelectObject(mem, old);
  DeleteObject(bmp);
  DeleteDC(mem);
  return p;
}

void HostOne(const std::wstring& progid, AtlAxCreateControlFn create, AtlAxGetControlFn get_control, HWND frame) {
  HWND holder = CreateWindowExW(0, L"STATIC", L"", WS_CHILD | WS_VISIBLE, 10, 10, kWidth, kHeight, frame, nullptr,
                                GetModuleHandleW(nullptr), nullptr);
  IUnknown* container = nullptr;
  HRESULT hr = create(progid.c_str(), holder, nullptr, &container);
  Check(SUCCEEDED(hr), progid + L": AtlAxCreateControl");
  IUnknown* control = nullptr;
  if (SUCCEEDED(hr)) hr = get_control(holder, &control);
  Check(SUCCEEDED(hr) && control, progid + L": AtlAxGetControl gives the control");
  if (!control) {
    if (container) container->Release();
    DestroyWindow(holder);
    return;
  }

  IOleInPlaceObject* inplace = nullptr;
  HWND wnd = nullptr;
  if (SUCCEEDED(control->QueryInterface(IID_IOleInPlaceObject, reinterpret_cast<void**>(&inplace)))) {
    inplace->GetWindow(&wnd);
    inplace->Release();
  }
  Check(wnd != nullptr, progid + L": in-place active with a window of its own");
  Check(wnd && GetParent(wnd) == holder, progid + L": its window is a child of the container's window");
  Check(wnd && IsWindowVisible(wnd), progid + L": its window is visible");
  RECT rc{};
  if (wnd) GetClientRect(wnd, &rc);
  Check(rc.right == kWidth && rc.bottom > 0 && rc.bottom <= kHeight,
        progid + L": its window is as wide as the container (" + std::to_wstring(rc.right) + L" x " +
            std::to_wstring(rc.bottom) + L")");
  const int width = rc.right > 0 ? rc.right : kWidth;
  const int height = rc.bottom > 0 ? rc.bottom : kHeight;

  // Draw into a memory bitmap, as a container does for printing or a design view.
  IViewObject* view = nullptr;
  Pixels drawn;
  bool drew = false;
  if (SUCCEEDED(control->QueryInterface(IID_IViewObject, reinterpret_cast<void**>(&view)))) {
    HDC screen = GetDC(nullptr);
    HDC mem = CreateCompatibleDC(screen);
    void* bits = nullptr;
    HBITMAP bmp = MakeDib(screen, width, height, &bits);
    HGDIOBJ old = SelectObject(mem, bmp);
    RECTL bounds = {0, 0, width, height};
    hr = view->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, mem, &bounds, nullptr, nullptr, 0);
    drew = SUCCEEDED(hr);
    drawn = Grab(mem, width, height);
    SelectObject(mem, old);
    DeleteObject(bmp);
    DeleteDC(mem);
    ReleaseDC(nullptr, screen);
    view->Release();
  }
  Check(drew, progid + L": IViewObject::Draw");
  std::set<DWORD> colours(drawn.data.begin(), drawn.data.end());
  Check(colours.size() >= 2, progid + L": Draw drew something (" + std::to_wstring(colours.size()) + L" colours)");

  if (wnd) {
    RedrawWindow(wnd, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ERASE);
    HDC wdc = GetDC(wnd);
    Pixels shown = Grab(wdc, width, height);
    ReleaseDC(wnd, wdc);
    int differ = 0;
    for (size_t i = 0; i < shown.data.size(); ++i) differ += shown.data[i] != drawn.data[i];
    Check(differ == 0, progid + L": the window shows what Draw drew (" + std::to_wstring(differ) +
                           L" pixels differ)");
  }

  IOleObject* ole = nullptr;
  if (SUCCEEDED(control->QueryInterface(IID_IOleObject, reinterpret_cast<void**>(&ole)))) {
    ole->Close(OLECLOSE_NOSAVE);
    ole->Release();
  }
  control->Release();
  if (container) container->Release();
  DestroyWindow(holder);
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  OleInitialize(nullptr);
  HMODULE atl = LoadLibraryW(L"atl.dll");
  auto init = Proc<AtlAxWinInitFn>(atl, "AtlAxWinInit");
  auto create = Proc<AtlAxCreateControlFn>(atl, "AtlAxCreateControl");
  auto get_control = Proc<AtlAxGetControlFn>(atl, "AtlAxGetControl");
  Check(atl && init && create && get_control, L"the platform's ATL container is there");
  if (!(atl && init && create && get_control)) {
    std::printf("%d passed, %d failed\n", passed, failed);
    return 1;
  }
  init();
  HWND frame = CreateWindowExW(0, L"STATIC", L"KorvelUI99 hosting", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0,
                               kWidth + 40, kHeight + 80, nullptr, nullptr, GetModuleHandleW(nullptr), nullptr);
  for (int i = 1; i < argc; ++i) HostOne(argv[i], create, get_control, frame);
  DestroyWindow(frame);
  OleUninitialize();
  std::printf("%d passed, %d failed\n", passed, failed);
  return failed ? 1 : 0;
}
