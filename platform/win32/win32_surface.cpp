// The portable headers come first: their constants share names with <windows.h>'s macros.
#include "platform/win32/win32_platform.h"
#include "platform/win32/win32_text.h"

#include <algorithm>

#ifndef NOMINMAX
#define NOMINMAX
#endif
#define WIN32_LEAN_AND_MEAN
#include <windows.h>
#include <commctrl.h>

namespace korvel::win32 {

namespace {

const wchar_t kClassName[] = L"KorvelSurface";
const wchar_t kParkingClassName[] = L"KorvelParking";

// The hidden window that holds the thread's realized surface windows while no
// container gives them a parent, and how many surfaces use it.
struct Parking {
  HWND wnd = nullptr;
  int users = 0;
};
thread_local Parking parking;

// A predefined resource's number (IDC_*) in the wide calls' form.
LPCWSTR Res(LPSTR id) { return reinterpret_cast<LPCWSTR>(id); }

HINSTANCE ModuleOfThisCode();

HINSTANCE ModuleOfThisCode() {
  HMODULE module = nullptr;
  ::GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<LPCWSTR>(&ModuleOfThisCode), &module);
  return module;
}

void EnsureWindowClass(HINSTANCE module, WNDPROC proc) {
  WNDCLASSEXW wc{};
  wc.cbSize = sizeof wc;
  if (::GetClassInfoExW(module, kClassName, &wc)) return;
  wc = WNDCLASSEXW{};
  wc.cbSize = sizeof wc;
  wc.style = CS_DBLCLKS;
  wc.lpfnWndProc = proc;
  wc.hInstance = module;
  wc.hCursor = ::LoadCursorW(nullptr, Res(IDC_ARROW));
  wc.hbrBackground = nullptr;  // the image covers the whole window
  wc.lpszClassName = kClassName;
  // Another thread may have registered it in between: that is as good.
  ::RegisterClassExW(&wc);
}

HWND ParkingWindow(HINSTANCE module) {
  if (parking.wnd && ::IsWindow(parking.wnd)) return parking.wnd;
  WNDCLASSEXW wc{};
  wc.cbSize = sizeof wc;
  if (!::GetClassInfoExW(module, kParkingClassName, &wc)) {
    wc = WNDCLASSEXW{};
    wc.cbSize = sizeof wc;
    wc.lpfnWndProc = ::DefWindowProcW;
    wc.hInstance = module;
    wc.lpszClassName = kParkingClassName;
    ::RegisterClassExW(&wc);
  }
  // Never shown: WS_POPUP without WS_VISIBLE, so nothing under it is on screen.
  parking.wnd = ::CreateWindowExW(WS_EX_TOOLWINDOW, kParkingClassName, L"", WS_POPUP | WS_CLIPCHILDREN, 0, 0, 0, 0,
                                  nullptr, nullptr, module, nullptr);
  return parking.wnd;
}

// A 32-bit top-down DIB section filled white.
HBITMAP NewImage(int width, int height) {
  BITMAPINFO bi{};
  bi.bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
  bi.bmiHeader.biWidth = width;
  bi.bmiHeader.biHeight = -height;
  bi.bmiHeader.biPlanes = 1;
  bi.bmiHeader.biBitCount = 32;
  bi.bmiHeader.biCompression = BI_RGB;
  void* bits = nullptr;
  HBITMAP bmp = ::CreateDIBSection(nullptr, &bi, DIB_RGB_COLORS, &bits, nullptr, 0);
  if (bmp && bits) {
    auto* px = static_cast<std::uint32_t*>(bits);
    std::fill(px, px + static_cast<std::size_t>(width) * static_cast<std::size_t>(height), 0x00FFFFFFu);
  }
  return bmp;
}

// The host's mouse pointer numbers as standard cursors (0 keeps the class cursor).
LPCWSTR CursorOf(int pointer) {
  switch (pointer) {
    case 1: return Res(IDC_ARROW);
    case 2: return Res(IDC_CROSS);
    case 3: return Res(IDC_IBEAM);
    case 4: return Res(IDC_ARROW);  // the icon pointer has no standard cursor left
    case 5: return Res(IDC_SIZEALL);
    case 6: return Res(IDC_SIZENESW);
    case 7: return Res(IDC_SIZENS);
    case 8: return Res(IDC_SIZENWSE);
    case 9: return Res(IDC_SIZEWE);
    case 10: return Res(IDC_UPARROW);
    case 11: return Res(IDC_WAIT);
    case 12: return Res(IDC_NO);
    case 13: return Res(IDC_APPSTARTING);
    case 14: return Res(IDC_HELP);
    case 15: return Res(IDC_SIZEALL);
    case 99: return Res(IDC_HAND);
    default: return Res(IDC_ARROW);
  }
}

// The messages the owner's handler sees first.
bool Forwarded(UINT msg) {
  if (msg >= WM_MOUSEFIRST && msg <= WM_MOUSELAST) return true;
  if (msg >= WM_KEYFIRST && msg <= WM_KEYLAST) return true;
  switch (msg) {
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
    case WM_CAPTURECHANGED:
    case WM_MOUSELEAVE:
    case WM_MOUSEACTIVATE:
    case WM_GETDLGCODE:
    case WM_TIMER:
    case WM_CANCELMODE:
      return true;
    default:
      return false;
  }
}

}  // namespace

struct Win32SurfaceSite::Impl {
  Win32SurfaceSite* owner = nullptr;
  HINSTANCE module = nullptr;
  HDC dc = nullptr;
  HBITMAP image = nullptr;
  HGDIOBJ original = nullptr;
  HWND wnd = nullptr;
  HWND tip = nullptr;
  int left = 0, top = 0, width = 0, height = 0;
  bool visible = true;
  bool tracking_leave = false;
  bool realized = false;  // RealizeWindow was called: parent 0 parks the window
  std::wstring tip_text;
  int pointer = 0;

  void UpdateToolTip();
  LRESULT OnMessage(HWND w, UINT msg, WPARAM wparam, LPARAM lparam);
  static LRESULT CALLBACK WindowProc(HWND wnd, UINT msg, WPARAM wparam, LPARAM lparam);
};

void Win32SurfaceSite::Impl::UpdateToolTip() {
  if (!wnd) return;
  if (tip_text.empty()) {
    if (tip) ::DestroyWindow(tip);
    tip = nullptr;
    return;
  }
  TTTOOLINFOW ti{};
  ti.cbSize = TTTOOLINFOW_V2_SIZE;
  ti.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
  ti.hwnd = wnd;
  ti.uId = reinterpret_cast<UINT_PTR>(wnd);
  ti.lpszText = tip_text.data();
  if (tip) {
    ::SendMessageW(tip, TTM_UPDATETIPTEXTW, 0, reinterpret_cast<LPARAM>(&ti));
    return;
  }
  INITCOMMONCONTROLSEX icc{sizeof(INITCOMMONCONTROLSEX), ICC_BAR_CLASSES | ICC_TAB_CLASSES};
  ::InitCommonControlsEx(&icc);
  tip = ::CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX,
                          CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, wnd, nullptr, module, nullptr);
  if (tip) ::SendMessageW(tip, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&ti));
}

LRESULT Win32SurfaceSite::Impl::OnMessage(HWND w, UINT msg, WPARAM wparam, LPARAM lparam) {
  switch (msg) {
    case WM_PAINT: {
      PAINTSTRUCT ps;
      HDC target = ::BeginPaint(w, &ps);
      const RECT& r = ps.rcPaint;
      ::BitBlt(target, r.left, r.top, r.right - r.left, r.bottom - r.top, dc, r.left, r.top, SRCCOPY);
      ::EndPaint(w, &ps);
      return 0;
    }
    case WM_ERASEBKGND:
      return 1;  // the image covers the whole window
    case WM_SETCURSOR:
      if (pointer != 0 && reinterpret_cast<HWND>(wparam) == w && LOWORD(lparam) == HTCLIENT) {
        ::SetCursor(::LoadCursorW(nullptr, CursorOf(pointer)));
        return TRUE;
      }
      break;
    case WM_NCDESTROY:
      // Destroyed with its parent as well as by SetParentWindow(0): the surface
      // forgets the window either way. The tip, owned by it, is gone too.
      ::SetWindowLongPtrW(w, GWLP_USERDATA, 0);
      wnd = nullptr;
      tip = nullptr;
      tracking_leave = false;
      return ::DefWindowProcW(w, msg, wparam, lparam);
    default:
      break;
  }
  if (msg == WM_MOUSEMOVE && !tracking_leave) {
    TRACKMOUSEEVENT tme{sizeof(TRACKMOUSEEVENT), TME_LEAVE, w, 0};
    tracking_leave = ::TrackMouseEvent(&tme) != FALSE;
  } else if (msg == WM_MOUSELEAVE) {
    tracking_leave = false;
  }
  if (Forwarded(msg) && owner->on_message) {
    // The handler may destroy the surface: nothing of it is touched afterwards.
    auto handler = owner->on_message;
    if (handler(msg, static_cast<std::uintptr_t>(wparam), static_cast<std::intptr_t>(lparam))) return 0;
  }
  return ::DefWindowProcW(w, msg, wparam, lparam);
}

LRESULT CALLBACK Win32SurfaceSite::Impl::WindowProc(HWND wnd, UINT msg, WPARAM wparam, LPARAM lparam) {
  try {
    auto* impl = reinterpret_cast<Win32SurfaceSite::Impl*>(::GetWindowLongPtrW(wnd, GWLP_USERDATA));
    if (msg == WM_NCCREATE) {
      impl = static_cast<Win32SurfaceSite::Impl*>(reinterpret_cast<CREATESTRUCTW*>(lparam)->lpCreateParams);
      ::SetWindowLongPtrW(wnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(impl));
      if (impl) impl->wnd = wnd;
    }
    if (!impl) return ::DefWindowProcW(wnd, msg, wparam, lparam);
    return impl->OnMessage(wnd, msg, wparam, lparam);
  } catch (...) {
    // No exception leaves a window procedure.
    return 0;
  }
}

Win32SurfaceSite::Win32SurfaceSite(Hwnd parent, int width, int height)
    : Win32SurfaceSite(reinterpret_cast<korvel::Handle>(ModuleOfThisCode()), parent, width, height) {}

Win32SurfaceSite::Win32SurfaceSite(korvel::Handle module, Hwnd parent, int width, int height)
    : impl_(std::make_unique<Impl>()) {
  impl_->owner = this;
  impl_->module = module ? reinterpret_cast<HINSTANCE>(module) : ModuleOfThisCode();
  impl_->width = std::max(0, width);
  impl_->height = std::max(0, height);
  impl_->dc = ::CreateCompatibleDC(nullptr);
  impl_->image = NewImage(std::max(1, impl_->width), std::max(1, impl_->height));
  impl_->original = ::SelectObject(impl_->dc, impl_->image);
  if (parent) SetParentWindow(parent);
}

Win32SurfaceSite::~Win32SurfaceSite() {
  on_message = nullptr;  // the owner is going away: nothing more reaches it
  if (impl_->wnd) ::DestroyWindow(impl_->wnd);
  if (impl_->realized && --parking.users == 0 && parking.wnd) {
    ::DestroyWindow(parking.wnd);
    parking.wnd = nullptr;
  }
  ::SelectObject(impl_->dc, impl_->original);
  ::DeleteDC(impl_->dc);
  ::DeleteObject(impl_->image);
}

Hdc Win32SurfaceSite::Dc() { return reinterpret_cast<Hdc>(impl_->dc); }

Hwnd Win32SurfaceSite::Window() { return reinterpret_cast<Hwnd>(impl_->wnd); }

int Win32SurfaceSite::PixelWidth() { return impl_->width; }

int Win32SurfaceSite::PixelHeight() { return impl_->height; }

void Win32SurfaceSite::Move(int left, int top, int width, int height) {
  width = std::max(0, width);
  height = std::max(0, height);
  impl_->left = left;
  impl_->top = top;
  bool resized = width != impl_->width || height != impl_->height;
  if (resized) {
    // A new persistent image keeping the old content at the top left; the new
    // area is white until the owner clears it. Whatever else the DC holds (font,
    // pen, brush) stays selected.
    HBITMAP fresh = NewImage(std::max(1, width), std::max(1, height));
    if (fresh) {
      HDC copy = ::CreateCompatibleDC(impl_->dc);
      HGDIOBJ before = ::SelectObject(copy, fresh);
      ::BitBlt(copy, 0, 0, std::min(width, impl_->width), std::min(height, impl_->height), impl_->dc, 0, 0, SRCCOPY);
      ::SelectObject(copy, before);
      ::DeleteDC(copy);
      ::SelectObject(impl_->dc, fresh);
      ::DeleteObject(impl_->image);
      impl_->image = fresh;
      impl_->width = width;
      impl_->height = height;
    }
  }
  if (impl_->wnd) {
    ::SetWindowPos(impl_->wnd, nullptr, left, top, impl_->width, impl_->height, SWP_NOZORDER | SWP_NOACTIVATE);
    if (resized) ::InvalidateRect(impl_->wnd, nullptr, FALSE);
  }
}

int Win32SurfaceSite::Left() { return impl_->left; }

int Win32SurfaceSite::Top() { return impl_->top; }

void Win32SurfaceSite::SetVisible(bool visible) {
  impl_->visible = visible;
  if (impl_->wnd) ::ShowWindow(impl_->wnd, visible ? SW_SHOWNA : SW_HIDE);
}

bool Win32SurfaceSite::Visible() { return impl_->visible; }

void Win32SurfaceSite::Refresh() {
  if (!impl_->wnd) return;
  ::InvalidateRect(impl_->wnd, nullptr, FALSE);
  ::UpdateWindow(impl_->wnd);
}

void Win32SurfaceSite::SetToolTipText(const std::string& text) {
  impl_->tip_text = Widen(text);
  impl_->UpdateToolTip();
}

void Win32SurfaceSite::SetMousePointer(int pointer) { impl_->pointer = pointer; }

Hwnd Win32SurfaceSite::RealizeWindow() {
  if (!impl_->realized) {
    impl_->realized = true;
    ++parking.users;
  }
  if (!impl_->wnd) SetParentWindow(reinterpret_cast<Hwnd>(ParkingWindow(impl_->module)));
  return Window();
}

void Win32SurfaceSite::SetParentWindow(Hwnd parent) {
  if (!parent && impl_->realized && impl_->wnd) {
    // The window keeps its children (and their state) for the next container.
    ::SetParent(impl_->wnd, ParkingWindow(impl_->module));
    return;
  }
  if (!parent) {
    if (impl_->wnd) ::DestroyWindow(impl_->wnd);  // WM_NCDESTROY forgets it
    impl_->wnd = nullptr;
    impl_->tip = nullptr;
    return;
  }
  if (impl_->wnd) {
    ::SetParent(impl_->wnd, reinterpret_cast<HWND>(parent));
    return;
  }
  EnsureWindowClass(impl_->module, &Impl::WindowProc);
  ::CreateWindowExW(0, kClassName, L"", WS_CHILD | WS_CLIPSIBLINGS | (impl_->visible ? WS_VISIBLE : 0), impl_->left,
                    impl_->top, impl_->width, impl_->height, reinterpret_cast<HWND>(parent), nullptr, impl_->module,
                    impl_.get());
  impl_->UpdateToolTip();
}

void Win32SurfaceSite::DrawTo(Hdc dc, int x, int y, int cx, int cy) {
  if (!dc || impl_->width <= 0 || impl_->height <= 0) return;
  HDC target = reinterpret_cast<HDC>(dc);
  int mode = ::SetStretchBltMode(target, COLORONCOLOR);
  ::StretchBlt(target, x, y, cx, cy, impl_->dc, 0, 0, impl_->width, impl_->height, SRCCOPY);
  if (mode) ::SetStretchBltMode(target, mode);
}

void Win32SurfaceSite::ReleaseWindowClass(korvel::Handle module) {
  HINSTANCE m = module ? reinterpret_cast<HINSTANCE>(module) : ModuleOfThisCode();
  ::UnregisterClassW(kClassName, m);
  ::UnregisterClassW(kParkingClassName, m);
}

Hwnd Win32SurfaceSite::ToolTipWindow() { return reinterpret_cast<Hwnd>(impl_->tip); }

int Win32SurfaceSite::MousePointer() { return impl_->pointer; }

}  // namespace korvel::win32
