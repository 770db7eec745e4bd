// The portable headers come first: their constants share names with <windows.h>'s macros.
#include "platform/win32/win32_platform.h"

#ifndef NOMINMAX
#define NOMINMAX
#endif
#define WIN32_LEAN_AND_MEAN
#include <windows.h>

namespace korvel::win32 {

struct Win32Platform::Impl {
  explicit Impl(korvel::Handle m) : module(m), user(m) {}
  korvel::Handle module;
  Win32Gdi gdi;
  Win32User user;
  Win32Shell shell;
  Win32Kernel kernel;
  Win32Dialogs dialogs;
};

namespace {

int TwipsPerPixel(int caps) {
  HDC screen = ::GetDC(nullptr);
  int dpi = screen ? ::GetDeviceCaps(screen, caps) : 0;
  if (screen) ::ReleaseDC(nullptr, screen);
  return dpi > 0 ? 1440 / dpi : 15;
}

}  // namespace

Win32Platform::Win32Platform(korvel::Handle module) : impl_(std::make_unique<Impl>(module)) {}

Win32Platform::~Win32Platform() = default;

Gdi& Win32Platform::gdi() { return impl_->gdi; }
User& Win32Platform::user() { return impl_->user; }
Shell& Win32Platform::shell() { return impl_->shell; }
Kernel& Win32Platform::kernel() { return impl_->kernel; }
Dialogs& Win32Platform::dialogs() { return impl_->dialogs; }

std::unique_ptr<SurfaceSite> Win32Platform::CreateSurfaceSite(Hwnd parent, int width, int height) {
  return std::make_unique<Win32SurfaceSite>(impl_->module, parent, width, height);
}

int Win32Platform::TwipsPerPixelX() { return TwipsPerPixel(LOGPIXELSX); }
int Win32Platform::TwipsPerPixelY() { return TwipsPerPixel(LOGPIXELSY); }

korvel::Handle Win32Platform::ModuleInstance() { return impl_->module; }

}  // namespace korvel::win32
