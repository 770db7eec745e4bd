// The portable headers come first: their constants share names with <windows.h>'s macros.
#include "platform/win32/win32_platform.h"
#include "platform/win32/win32_text.h"

#include <cstddef>
#include <cwchar>

#ifndef NOMINMAX
#define NOMINMAX
#endif
#define WIN32_LEAN_AND_MEAN
#include <windows.h>

namespace korvel::win32 {

namespace {

HWND ToWnd(Hwnd h) { return reinterpret_cast<HWND>(h); }
Handle FromWnd(HWND h) { return reinterpret_cast<Handle>(h); }

}  // namespace

Hwnd Win32User::SetCapture(Hwnd wnd) { return FromWnd(::SetCapture(ToWnd(wnd))); }

bool Win32User::ReleaseCapture() { return ::ReleaseCapture() != FALSE; }

Hwnd Win32User::GetCapture() { return FromWnd(::GetCapture()); }

bool Win32User::GetCursorPos(Point* pt) {
  POINT p{};
  BOOL ok = ::GetCursorPos(&p);
  if (pt) *pt = Point{p.x, p.y};
  return ok != FALSE;
}

Hwnd Win32User::SetParent(Hwnd child, Hwnd parent) { return FromWnd(::SetParent(ToWnd(child), ToWnd(parent))); }

std::int32_t Win32User::GetWindowLongA(Hwnd wnd, std::int32_t index) { return ::GetWindowLongA(ToWnd(wnd), index); }

std::int32_t Win32User::SetWindowLongA(Hwnd wnd, std::int32_t index, std::int32_t value) {
  return ::SetWindowLongA(ToWnd(wnd), index, value);
}

bool Win32User::SetWindowPos(Hwnd wnd, Hwnd after, int x, int y, int cx, int cy, std::uint32_t flags) {
  return ::SetWindowPos(ToWnd(wnd), ToWnd(after), x, y, cx, cy, flags) != FALSE;
}

std::intptr_t Win32User::SendMessageA(Hwnd wnd, std::uint32_t msg, std::uintptr_t wparam, std::intptr_t lparam) {
  return ::SendMessageA(ToWnd(wnd), msg, wparam, lparam);
}

bool Win32User::InvalidateRect(Hwnd wnd, const Rect* rc, bool erase) {
  RECT r{};
  if (rc) r = RECT{rc->left, rc->top, rc->right, rc->bottom};
  return ::InvalidateRect(ToWnd(wnd), rc ? &r : nullptr, erase ? TRUE : FALSE) != FALSE;
}

Hwnd Win32User::CreateWindowExA(std::uint32_t ex_style, const std::string& class_name, const std::string& title,
                                std::uint32_t style, int x, int y, int cx, int cy, Hwnd parent, Handle menu) {
  std::wstring cls = Widen(class_name);
  std::wstring text = Widen(title);
  return FromWnd(::CreateWindowExW(ex_style, cls.c_str(), text.c_str(), style, x, y, cx, cy, ToWnd(parent),
                                   reinterpret_cast<HMENU>(menu), reinterpret_cast<HINSTANCE>(module_), nullptr));
}

bool Win32User::DestroyWindow(Hwnd wnd) { return ::DestroyWindow(ToWnd(wnd)) != FALSE; }

bool Win32User::SystemParametersInfoA(std::uint32_t action, std::uint32_t param, void* data, std::uint32_t win_ini) {
  if (action != SPI_GETNONCLIENTMETRICS)
    return ::SystemParametersInfoA(action, param, data, win_ini) != FALSE;
  auto* out = static_cast<korvel::NONCLIENTMETRICSA*>(data);
  if (!out) return false;
  ::NONCLIENTMETRICSW m{};
  // The record without the padded border width is accepted by every version.
  m.cbSize = offsetof(::NONCLIENTMETRICSW, lfMessageFont) + sizeof(::LOGFONTW);
  if (!::SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, m.cbSize, &m, win_ini)) return false;
  std::uint32_t cb = out->cbSize;
  out->iBorderWidth = m.iBorderWidth;
  out->iScrollWidth = m.iScrollWidth;
  out->iScrollHeight = m.iScrollHeight;
  out->iCaptionWidth = m.iCaptionWidth;
  out->iCaptionHeight = m.iCaptionHeight;
  out->lfCaptionFont = NarrowFont(m.lfCaptionFont);
  out->iSmCaptionWidth = m.iSmCaptionWidth;
  out->iSmCaptionHeight = m.iSmCaptionHeight;
  out->lfSmCaptionFont = NarrowFont(m.lfSmCaptionFont);
  out->iMenuWidth = m.iMenuWidth;
  out->iMenuHeight = m.iMenuHeight;
  out->lfMenuFont = NarrowFont(m.lfMenuFont);
  out->lfStatusFont = NarrowFont(m.lfStatusFont);
  out->lfMessageFont = NarrowFont(m.lfMessageFont);
  out->cbSize = cb;
  return true;
}

}  // namespace korvel::win32
