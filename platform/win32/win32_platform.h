// The framework's platform on real Windows: GDI, USER, shell, common dialogs and
// kernel calls, and drawing surfaces that keep a persistent image and show it in a
// child window while they have a parent window.
//
// Include this header (and every korvel header) before <windows.h> elsewhere: the
// framework defines the platform's constants under their own names.
#pragma once
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "framework/platform.h"
#include "platform/win32/win32_kernel.h"

namespace korvel::win32 {

// GDI and USER drawing calls. Text is UTF-8 and goes through the wide calls
// (DrawTextW, DrawStateW, TextOutW, GetTextExtentPoint32W, CreateFontIndirectW).
class Win32Gdi : public Gdi {
 public:
  ColorRef GetSysColor(int index) override;
  bool DrawEdge(Hdc dc, Rect* rc, std::uint32_t edge, std::uint32_t flags) override;
  bool DrawStateA(Hdc dc, Handle brush, Handle data, const std::string& text, int x, int y, int cx, int cy,
                  std::uint32_t flags) override;
  int DrawTextA(Hdc dc, const std::string& text, Rect* rc, std::uint32_t format) override;
  Hdc CreateCompatibleDC(Hdc dc) override;
  bool DeleteDC(Hdc dc) override;
  Hbitmap CreateBitmap(int width, int height, unsigned planes, unsigned bits_per_pixel, const void* bits) override;
  Hbitmap CreateCompatibleBitmap(Hdc dc, int width, int height) override;
  Handle CreatePen(int style, int width, ColorRef color) override;
  Handle CreateSolidBrush(ColorRef color) override;
  Hfont CreateFontIndirectA(const LOGFONTA& lf) override;
  Handle GetStockObject(int index) override;
  Hgdiobj SelectObject(Hdc dc, Hgdiobj obj) override;
  bool DeleteObject(Hgdiobj obj) override;
  ColorRef SetBkColor(Hdc dc, ColorRef color) override;
  ColorRef GetBkColor(Hdc dc) override;
  ColorRef SetTextColor(Hdc dc, ColorRef color) override;
  int SetBkMode(Hdc dc, int mode) override;
  int SetROP2(Hdc dc, int rop2) override;
  bool BitBlt(Hdc dst, int x, int y, int cx, int cy, Hdc src, int x1, int y1, std::uint32_t rop) override;
  bool StretchBlt(Hdc dst, int x, int y, int cx, int cy, Hdc src, int xs, int ys, int cxs, int cys,
                  std::uint32_t rop) override;
  bool MoveToEx(Hdc dc, int x, int y, Point* old) override;
  bool LineTo(Hdc dc, int x, int y) override;
  bool Rectangle(Hdc dc, int left, int top, int right, int bottom) override;
  int FillRect(Hdc dc, const Rect* rc, Handle brush) override;
  ColorRef SetPixel(Hdc dc, int x, int y, ColorRef color) override;
  ColorRef GetPixel(Hdc dc, int x, int y) override;
  bool TextOutA(Hdc dc, int x, int y, const std::string& text) override;
  bool GetTextExtentPoint32A(Hdc dc, const std::string& text, Size* size) override;
  Hbitmap CreateBitmapFromImage(const Image& image) override;
  Image ImageOfBitmap(Hbitmap bitmap) override;
};

// SurfaceSite on Win32: a 32-bit top-down DIB section selected into a memory DC
// (the persistent image; white when made, and when it grows the new area is white
// and the old content stays at the top left), and, while the surface has a parent
// window, a child window of the class "KorvelSurface" (CS_DBLCLKS, no background
// brush) that shows it: WM_PAINT copies the image. The window keeps the surface's
// position and size; a surface made with parent 0 has no window until
// SetParentWindow. Mouse pointers apply on WM_SETCURSOR: 0 the class's arrow, 99 the
// hand, the host's other pointer numbers their standard cursors.
class Win32SurfaceSite : public SurfaceSite {
 public:
  // The window class is registered in the module that holds this code.
  Win32SurfaceSite(Hwnd parent, int width, int height);
  // The window class is registered in module (once per module).
  Win32SurfaceSite(Handle module, Hwnd parent, int width, int height);
  ~Win32SurfaceSite() override;
  Win32SurfaceSite(const Win32SurfaceSite&) = delete;
  Win32SurfaceSite& operator=(const Win32SurfaceSite&) = delete;

  Hdc Dc() override;
  Hwnd Window() override;
  int PixelWidth() override;
  int PixelHeight() override;
  void Move(int left, int top, int width, int height) override;
  int Left() override;
  int Top() override;
  void SetVisible(bool visible) override;
  bool Visible() override;
  void Refresh() override;
  void SetToolTipText(const std::string& text) override;
  void SetMousePointer(int pointer) override;
  // A window made before the container gives a parent lives under a hidden parking
  // window of the thread (one per thread, gone with the thread's last such surface).
  // From then on SetParentWindow(0) parks the window instead of destroying it.
  Hwnd RealizeWindow() override;

  // Messages of the surface's window reach this first: mouse (WM_MOUSEFIRST to
  // WM_MOUSELAST: moves, buttons, double clicks, wheels), keys (WM_KEYFIRST to
  // WM_KEYLAST: WM_KEYDOWN/UP, WM_CHAR, the WM_SYS* forms), WM_SETFOCUS,
  // WM_KILLFOCUS, WM_CAPTURECHANGED, WM_MOUSELEAVE (tracked from the first mouse move
  // after each leave), WM_MOUSEACTIVATE, WM_GETDLGCODE, WM_TIMER and WM_CANCELMODE.
  // It returns true when it handled one (the window procedure then returns 0);
  // otherwise the default processing follows. Exceptions never leave the window
  // procedure: one thrown by the handler is swallowed there.
  std::function<bool(unsigned msg, std::uintptr_t wparam, std::intptr_t lparam)> on_message;

  // Gives the surface a child window of parent (creating it, or re-parenting the
  // existing one); parent 0 destroys the window and keeps the image (or parks it,
  // once RealizeWindow has been called).
  void SetParentWindow(Hwnd parent);
  // Copies the image, stretched to the rectangle, into another device context
  // (a container's IViewObject::Draw).
  void DrawTo(Hdc dc, int x, int y, int cx, int cy);

  // The surface window's class name.
  static constexpr const char* kWindowClass = "KorvelSurface";
  // Removes the window class from module (the server calls this when it unloads;
  // no surface window of that module may be left). Registration happens again on
  // the next window.
  static void ReleaseWindowClass(Handle module);
  // The tool tip control while the surface shows a tip (0 otherwise).
  Hwnd ToolTipWindow();
  int MousePointer();

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

// Window manager calls. Text goes through the wide calls (UTF-8 converted).
class Win32User : public User {
 public:
  // module: the instance handle given to CreateWindowExA.
  explicit Win32User(Handle module = 0) : module_(module) {}

  Hwnd SetCapture(Hwnd wnd) override;
  bool ReleaseCapture() override;
  Hwnd GetCapture() override;
  bool GetCursorPos(Point* pt) override;
  Hwnd SetParent(Hwnd child, Hwnd parent) override;
  std::int32_t GetWindowLongA(Hwnd wnd, std::int32_t index) override;
  std::int32_t SetWindowLongA(Hwnd wnd, std::int32_t index, std::int32_t value) override;
  bool SetWindowPos(Hwnd wnd, Hwnd after, int x, int y, int cx, int cy, std::uint32_t flags) override;
  // Passed on unchanged (SendMessageA): a message that carries text carries it in
  // the ANSI code page.
  std::intptr_t SendMessageA(Hwnd wnd, std::uint32_t msg, std::uintptr_t wparam, std::intptr_t lparam) override;
  bool InvalidateRect(Hwnd wnd, const Rect* rc, bool erase) override;
  // Through CreateWindowExW with the module's instance handle.
  Hwnd CreateWindowExA(std::uint32_t ex_style, const std::string& class_name, const std::string& title,
                       std::uint32_t style, int x, int y, int cx, int cy, Hwnd parent, Handle menu) override;
  bool DestroyWindow(Hwnd wnd) override;
  // SPI_GETNONCLIENTMETRICS is answered through the wide call and translated into
  // the 340-byte record (face names as UTF-8); other actions are passed on unchanged.
  bool SystemParametersInfoA(std::uint32_t action, std::uint32_t param, void* data,
                             std::uint32_t win_ini) override;

 private:
  Handle module_ = 0;
};

// Shell calls through their wide forms.
class Win32Shell : public Shell {
 public:
  // An empty verb, parameter or directory text is passed as no text (NULL).
  Handle ShellExecuteA(Hwnd wnd, const std::string& verb, const std::string& file, const std::string& parameters,
                       const std::string& directory, int show) override;
  // The display name is written back into pszDisplayName (260 bytes) when it is set.
  // lpfn is passed on as a BFFCALLBACK of the wide call.
  Handle SHBrowseForFolderA(BROWSEINFOA* bi) override;
  // Writes the path as UTF-8 (at most 259 bytes and the NUL).
  bool SHGetPathFromIDListA(Handle idlist, char* path) override;
};

// Common dialogs through their wide forms: each record is translated field by field
// into the platform's own (sized for the build), the dialog is shown, and the
// results (buffers, offsets, flags, colours, custom colours, the font) are copied
// back. Hooks and templates are passed on as they are.
class Win32Dialogs : public Dialogs {
 public:
  bool GetOpenFileNameA(OPENFILENAMEA* ofn) override;
  bool GetSaveFileNameA(OPENFILENAMEA* ofn) override;
  bool ChooseColorA(CHOOSECOLORA* cc) override;
  std::int32_t ChooseFontA(CHOOSEFONTA* cf) override;
};

class Win32Platform : public Platform {
 public:
  // module: the instance handle of the module that holds the library (the server
  // DLL, or the test program).
  explicit Win32Platform(Handle module);
  ~Win32Platform() override;

  Gdi& gdi() override;
  User& user() override;
  Shell& shell() override;
  Kernel& kernel() override;
  Dialogs& dialogs() override;
  // Returns a Win32SurfaceSite.
  std::unique_ptr<SurfaceSite> CreateSurfaceSite(Hwnd parent, int width, int height) override;
  // From the screen's logical pixels per inch: 1440 / dpi (15 at 96 dpi).
  int TwipsPerPixelX() override;
  int TwipsPerPixelY() override;
  Handle ModuleInstance() override;

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace korvel::win32
