// INTERIM: a do-nothing stand-in for the Win32 platform so that the server links
// and its COM side can be tested before the real platform lands. Delete after the merge.
#include "platform/win32/win32_platform.h"
#include "platform/win32/win32_kernel.h"
namespace korvel::win32 {
namespace {
class NullGdi : public Gdi {
 public:
  ColorRef GetSysColor(int index) override { return {}; }
  bool DrawEdge(Hdc dc, Rect* rc, std::uint32_t edge, std::uint32_t flags) override { return {}; }
  bool DrawStateA(Hdc dc, Handle brush, Handle data, const std::string& text, int x, int y, int cx, int cy,
                  std::uint32_t flags) override { return {}; }
  int DrawTextA(Hdc dc, const std::string& text, Rect* rc, std::uint32_t format) override { return {}; }
  Hdc CreateCompatibleDC(Hdc dc) override { return {}; }
  bool DeleteDC(Hdc dc) override { return {}; }
  Hbitmap CreateBitmap(int width, int height, unsigned planes, unsigned bits_per_pixel, const void* bits) override { return {}; }
  Hbitmap CreateCompatibleBitmap(Hdc dc, int width, int height) override { return {}; }
  Handle CreatePen(int style, int width, ColorRef color) override { return {}; }
  Handle CreateSolidBrush(ColorRef color) override { return {}; }
  Hfont CreateFontIndirectA(const LOGFONTA& lf) override { return {}; }
  Handle GetStockObject(int index) override { return {}; }
  Hgdiobj SelectObject(Hdc dc, Hgdiobj obj) override { return {}; }
  bool DeleteObject(Hgdiobj obj) override { return {}; }
  ColorRef SetBkColor(Hdc dc, ColorRef color) override { return {}; }
  ColorRef GetBkColor(Hdc dc) override { return {}; }
  ColorRef SetTextColor(Hdc dc, ColorRef color) override { return {}; }
  int SetBkMode(Hdc dc, int mode) override { return {}; }
  int SetROP2(Hdc dc, int rop2) override { return {}; }
  bool BitBlt(Hdc dst, int x, int y, int cx, int cy, Hdc src, int x1, int y1, std::uint32_t rop) override { return {}; }
  bool StretchBlt(Hdc dst, int x, int y, int cx, int cy, Hdc src, int xs, int ys, int cxs, int cys,
                  std::uint32_t rop) override { return {}; }
  bool MoveToEx(Hdc dc, int x, int y, Point* old) override { return {}; }
  bool LineTo(Hdc dc, int x, int y) override { return {}; }
  bool Rectangle(Hdc dc, int left, int top, int right, int bottom) override { return {}; }
  int FillRect(Hdc dc, const Rect* rc, Handle brush) override { return {}; }
  ColorRef SetPixel(Hdc dc, int x, int y, ColorRef color) override { return {}; }
  ColorRef GetPixel(Hdc dc, int x, int y) override { return {}; }
  bool TextOutA(Hdc dc, int x, int y, const std::string& text) override { return {}; }
  bool GetTextExtentPoint32A(Hdc dc, const std::string& text, Size* size) override { return {}; }
  Hbitmap CreateBitmapFromImage(const Image& image) override { return {}; }
  Image ImageOfBitmap(Hbitmap bitmap) override { return {}; }
};
class NullUser : public User {
 public:
  virtual Hwnd SetCapture(Hwnd wnd) override { return {}; }
  virtual bool ReleaseCapture() override { return {}; }
  virtual Hwnd GetCapture() override { return {}; }
  virtual bool GetCursorPos(Point* pt) override { return {}; }
  virtual Hwnd SetParent(Hwnd child, Hwnd parent) override { return {}; }
  virtual std::int32_t GetWindowLongA(Hwnd wnd, std::int32_t index) override { return {}; }
  virtual std::int32_t SetWindowLongA(Hwnd wnd, std::int32_t index, std::int32_t value) override { return {}; }
  virtual bool SetWindowPos(Hwnd wnd, Hwnd after, int x, int y, int cx, int cy, std::uint32_t flags) override { return {}; }
  virtual std::intptr_t SendMessageA(Hwnd wnd, std::uint32_t msg, std::uintptr_t wparam, std::intptr_t lparam) override { return {}; }
  virtual bool InvalidateRect(Hwnd wnd, const Rect* rc, bool erase) override { return {}; }
  virtual Hwnd CreateWindowExA(std::uint32_t ex_style, const std::string& class_name, const std::string& title,
                               std::uint32_t style, int x, int y, int cx, int cy, Hwnd parent, Handle menu) override { return {}; }
  virtual bool DestroyWindow(Hwnd wnd) override { return {}; }
  // SPI_GETNONCLIENTMETRICS fills a NONCLIENTMETRICSA whose cbSize the caller sets.
  virtual bool SystemParametersInfoA(std::uint32_t action, std::uint32_t param, void* data,
                                     std::uint32_t win_ini) override { return {}; }
};
class NullShell : public Shell {
 public:
  virtual Handle ShellExecuteA(Hwnd wnd, const std::string& verb, const std::string& file,
                               const std::string& parameters, const std::string& directory, int show) override { return {}; }
  // Returns an item list handle, 0 when cancelled.
  virtual Handle SHBrowseForFolderA(BROWSEINFOA* bi) override { return {}; }
  // path must hold at least 260 characters.
  virtual bool SHGetPathFromIDListA(Handle idlist, char* path) override { return {}; }
};
class NullDialogs : public Dialogs {
 public:
  virtual bool GetOpenFileNameA(OPENFILENAMEA* ofn) override { return {}; }
  virtual bool GetSaveFileNameA(OPENFILENAMEA* ofn) override { return {}; }
  virtual bool ChooseColorA(CHOOSECOLORA* cc) override { return {}; }
  virtual std::int32_t ChooseFontA(CHOOSEFONTA* cf) override { return {}; }
};
NullGdi g_gdi;
NullUser g_user;
NullShell g_shell;
NullDialogs g_dialogs;
Win32Kernel g_kernel;
}  // namespace

struct Win32SurfaceSite::Impl {
  int left = 0, top = 0, width = 0, height = 0;
  bool visible = true;
};
Win32SurfaceSite::Win32SurfaceSite(Hwnd, int width, int height) : impl_(std::make_unique<Impl>()) {
  impl_->width = width;
  impl_->height = height;
}
Win32SurfaceSite::~Win32SurfaceSite() = default;
Hdc Win32SurfaceSite::Dc() { return 0; }
Hwnd Win32SurfaceSite::Window() { return 0; }
int Win32SurfaceSite::PixelWidth() { return impl_->width; }
int Win32SurfaceSite::PixelHeight() { return impl_->height; }
void Win32SurfaceSite::Move(int left, int top, int width, int height) {
  impl_->left = left;
  impl_->top = top;
  impl_->width = width;
  impl_->height = height;
}
int Win32SurfaceSite::Left() { return impl_->left; }
int Win32SurfaceSite::Top() { return impl_->top; }
void Win32SurfaceSite::SetVisible(bool visible) { impl_->visible = visible; }
bool Win32SurfaceSite::Visible() { return impl_->visible; }
void Win32SurfaceSite::Refresh() {}
void Win32SurfaceSite::SetToolTipText(const std::string&) {}
void Win32SurfaceSite::SetMousePointer(int) {}
void Win32SurfaceSite::SetParentWindow(Hwnd) {}
void Win32SurfaceSite::DrawTo(Hdc, int, int, int, int) {}

struct Win32Platform::Impl {
  Handle module;
};
Win32Platform::Win32Platform(Handle module) : impl_(std::make_unique<Impl>(Impl{module})) {}
Win32Platform::~Win32Platform() = default;
Gdi& Win32Platform::gdi() { return g_gdi; }
User& Win32Platform::user() { return g_user; }
Shell& Win32Platform::shell() { return g_shell; }
Kernel& Win32Platform::kernel() { return g_kernel; }
Dialogs& Win32Platform::dialogs() { return g_dialogs; }
std::unique_ptr<SurfaceSite> Win32Platform::CreateSurfaceSite(Hwnd parent, int width, int height) {
  return std::make_unique<Win32SurfaceSite>(parent, width, height);
}
int Win32Platform::TwipsPerPixelX() { return 15; }
int Win32Platform::TwipsPerPixelY() { return 15; }
Handle Win32Platform::ModuleInstance() { return impl_->module; }

}  // namespace korvel::win32
