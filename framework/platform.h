// The platform interfaces the controls talk to, kept in the shape of the platform
// calls they make (DrawEdge with its edge and flag words, BitBlt with its raster
// operation, records field by field in the platform's order). The headless backend
// implements them on a pixel raster and records service calls; the Win32 backend
// maps each one onto the real call.
//
// Text arguments are UTF-8. The "A" names are kept because the controls make the
// ANSI calls; the Win32 backend may pass text through the wide form so that text
// outside the ANSI code page survives.
#pragma once
#include <cstdint>
#include <memory>
#include <string>

#include "framework/image.h"
#include "framework/types.h"
#include "framework/winconst.h"

namespace korvel {

struct Size {
  std::int32_t cx = 0, cy = 0;
  friend bool operator==(const Size&, const Size&) = default;
};

// LOGFONTA, 60 bytes in the platform's layout.
struct LOGFONTA {
  std::int32_t lfHeight = 0;
  std::int32_t lfWidth = 0;
  std::int32_t lfEscapement = 0;
  std::int32_t lfOrientation = 0;
  std::int32_t lfWeight = 0;
  std::uint8_t lfItalic = 0;
  std::uint8_t lfUnderline = 0;
  std::uint8_t lfStrikeOut = 0;
  std::uint8_t lfCharSet = 0;
  std::uint8_t lfOutPrecision = 0;
  std::uint8_t lfClipPrecision = 0;
  std::uint8_t lfQuality = 0;
  std::uint8_t lfPitchAndFamily = 0;
  char lfFaceName[32] = {};
};
static_assert(sizeof(LOGFONTA) == 60);

// NONCLIENTMETRICSA, 340 bytes in the platform's layout.
struct NONCLIENTMETRICSA {
  std::uint32_t cbSize = 0;
  std::int32_t iBorderWidth = 0;
  std::int32_t iScrollWidth = 0;
  std::int32_t iScrollHeight = 0;
  std::int32_t iCaptionWidth = 0;
  std::int32_t iCaptionHeight = 0;
  LOGFONTA lfCaptionFont;
  std::int32_t iSmCaptionWidth = 0;
  std::int32_t iSmCaptionHeight = 0;
  LOGFONTA lfSmCaptionFont;
  std::int32_t iMenuWidth = 0;
  std::int32_t iMenuHeight = 0;
  LOGFONTA lfMenuFont;
  LOGFONTA lfStatusFont;
  LOGFONTA lfMessageFont;
};
static_assert(sizeof(NONCLIENTMETRICSA) == 340);

// Stock objects
inline constexpr int WHITE_BRUSH = 0;
inline constexpr int BLACK_BRUSH = 4;
inline constexpr int NULL_BRUSH = 5;
inline constexpr int WHITE_PEN = 6;
inline constexpr int BLACK_PEN = 7;
inline constexpr int NULL_PEN = 8;
// Pen styles
inline constexpr int PS_SOLID = 0;
inline constexpr int PS_NULL = 5;

// The drawing calls made on device contexts (GDI, and USER's DrawEdge, DrawState,
// DrawText and GetSysColor).
class Gdi {
 public:
  virtual ~Gdi() = default;

  virtual ColorRef GetSysColor(int index) = 0;
  virtual bool DrawEdge(Hdc dc, Rect* rc, std::uint32_t edge, std::uint32_t flags) = 0;
  // DrawStateA with no callback: data is the bitmap (DST_BITMAP) or icon handle,
  // or the text (DST_TEXT) given separately.
  virtual bool DrawStateA(Hdc dc, Handle brush, Handle data, const std::string& text, int x, int y, int cx,
                          int cy, std::uint32_t flags) = 0;
  virtual int DrawTextA(Hdc dc, const std::string& text, Rect* rc, std::uint32_t format) = 0;

  virtual Hdc CreateCompatibleDC(Hdc dc) = 0;
  virtual bool DeleteDC(Hdc dc) = 0;
  virtual Hbitmap CreateBitmap(int width, int height, unsigned planes, unsigned bits_per_pixel,
                               const void* bits) = 0;
  virtual Hbitmap CreateCompatibleBitmap(Hdc dc, int width, int height) = 0;
  virtual Handle CreatePen(int style, int width, ColorRef color) = 0;
  virtual Handle CreateSolidBrush(ColorRef color) = 0;
  virtual Hfont CreateFontIndirectA(const LOGFONTA& lf) = 0;
  virtual Handle GetStockObject(int index) = 0;
  virtual Hgdiobj SelectObject(Hdc dc, Hgdiobj obj) = 0;
  virtual bool DeleteObject(Hgdiobj obj) = 0;

  virtual ColorRef SetBkColor(Hdc dc, ColorRef color) = 0;
  virtual ColorRef GetBkColor(Hdc dc) = 0;
  virtual ColorRef SetTextColor(Hdc dc, ColorRef color) = 0;
  virtual int SetBkMode(Hdc dc, int mode) = 0;
  virtual int SetROP2(Hdc dc, int rop2) = 0;

  virtual bool BitBlt(Hdc dst, int x, int y, int cx, int cy, Hdc src, int x1, int y1, std::uint32_t rop) = 0;
  virtual bool StretchBlt(Hdc dst, int x, int y, int cx, int cy, Hdc src, int xs, int ys, int cxs, int cys,
                          std::uint32_t rop) = 0;
  virtual bool MoveToEx(Hdc dc, int x, int y, Point* old) = 0;
  virtual bool LineTo(Hdc dc, int x, int y) = 0;
  virtual bool Rectangle(Hdc dc, int left, int top, int right, int bottom) = 0;
  virtual int FillRect(Hdc dc, const Rect* rc, Handle brush) = 0;
  virtual ColorRef SetPixel(Hdc dc, int x, int y, ColorRef color) = 0;
  virtual ColorRef GetPixel(Hdc dc, int x, int y) = 0;
  virtual bool TextOutA(Hdc dc, int x, int y, const std::string& text) = 0;
  virtual bool GetTextExtentPoint32A(Hdc dc, const std::string& text, Size* size) = 0;

  // Bridges between portable images and platform bitmaps (a DIB section on Win32).
  virtual Hbitmap CreateBitmapFromImage(const Image& image) = 0;
  virtual Image ImageOfBitmap(Hbitmap bitmap) = 0;
};

// Window manager calls.
class User {
 public:
  virtual ~User() = default;
  virtual Hwnd SetCapture(Hwnd wnd) = 0;
  virtual bool ReleaseCapture() = 0;
  virtual Hwnd GetCapture() = 0;
  virtual bool GetCursorPos(Point* pt) = 0;
  virtual Hwnd SetParent(Hwnd child, Hwnd parent) = 0;
  virtual std::int32_t GetWindowLongA(Hwnd wnd, std::int32_t index) = 0;
  virtual std::int32_t SetWindowLongA(Hwnd wnd, std::int32_t index, std::int32_t value) = 0;
  virtual bool SetWindowPos(Hwnd wnd, Hwnd after, int x, int y, int cx, int cy, std::uint32_t flags) = 0;
  virtual std::intptr_t SendMessageA(Hwnd wnd, std::uint32_t msg, std::uintptr_t wparam, std::intptr_t lparam) = 0;
  virtual bool InvalidateRect(Hwnd wnd, const Rect* rc, bool erase) = 0;
  virtual Hwnd CreateWindowExA(std::uint32_t ex_style, const std::string& class_name, const std::string& title,
                               std::uint32_t style, int x, int y, int cx, int cy, Hwnd parent, Handle menu) = 0;
  virtual bool DestroyWindow(Hwnd wnd) = 0;
  // SPI_GETNONCLIENTMETRICS fills a NONCLIENTMETRICSA whose cbSize the caller sets.
  virtual bool SystemParametersInfoA(std::uint32_t action, std::uint32_t param, void* data,
                                     std::uint32_t win_ini) = 0;
};

// ---- Common dialog records (the platform's ANSI forms, fields in its order) ----

struct OPENFILENAMEA {  // 76 bytes on the 32-bit platform
  std::uint32_t lStructSize = 0;
  Hwnd hwndOwner = 0;
  Handle hInstance = 0;
  const char* lpstrFilter = nullptr;  // NUL-separated, ended by two NULs
  char* lpstrCustomFilter = nullptr;
  std::uint32_t nMaxCustFilter = 0;
  std::uint32_t nFilterIndex = 0;
  char* lpstrFile = nullptr;
  std::uint32_t nMaxFile = 0;
  char* lpstrFileTitle = nullptr;
  std::uint32_t nMaxFileTitle = 0;
  const char* lpstrInitialDir = nullptr;
  const char* lpstrTitle = nullptr;
  std::uint32_t Flags = 0;
  std::uint16_t nFileOffset = 0;
  std::uint16_t nFileExtension = 0;
  const char* lpstrDefExt = nullptr;
  std::intptr_t lCustData = 0;
  Handle lpfnHook = 0;
  const char* lpTemplateName = nullptr;
};

struct CHOOSECOLORA {  // 36 bytes on the 32-bit platform
  std::uint32_t lStructSize = 0;
  Hwnd hwndOwner = 0;
  Handle hInstance = 0;
  ColorRef rgbResult = 0;
  ColorRef* lpCustColors = nullptr;  // 16 colours
  std::uint32_t Flags = 0;
  std::intptr_t lCustData = 0;
  Handle lpfnHook = 0;
  const char* lpTemplateName = nullptr;
};

struct CHOOSEFONTA {  // 60 bytes on the 32-bit platform
  std::uint32_t lStructSize = 0;
  Hwnd hwndOwner = 0;
  Hdc hDC = 0;
  LOGFONTA* lpLogFont = nullptr;
  std::int32_t iPointSize = 0;
  std::uint32_t Flags = 0;
  ColorRef rgbColors = 0;
  std::intptr_t lCustData = 0;
  Handle lpfnHook = 0;
  const char* lpTemplateName = nullptr;
  Handle hInstance = 0;
  char* lpszStyle = nullptr;
  std::uint16_t nFontType = 0;
  std::int32_t nSizeMin = 0;
  std::int32_t nSizeMax = 0;
};

struct BROWSEINFOA {  // 32 bytes on the 32-bit platform
  Hwnd hwndOwner = 0;
  Handle pidlRoot = 0;
  char* pszDisplayName = nullptr;
  const char* lpszTitle = nullptr;
  std::uint32_t ulFlags = 0;
  Handle lpfn = 0;
  std::intptr_t lParam = 0;
  std::int32_t iImage = 0;
};

inline constexpr std::uint32_t OFN_OVERWRITEPROMPT = 0x2;
inline constexpr std::uint32_t OFN_HIDEREADONLY = 0x4;
inline constexpr std::uint32_t OFN_PATHMUSTEXIST = 0x800;
inline constexpr std::uint32_t OFN_FILEMUSTEXIST = 0x1000;
inline constexpr std::uint32_t CF_SCREENFONTS = 0x1;
inline constexpr std::uint32_t CF_INITTOLOGFONTSTRUCT = 0x40;
inline constexpr std::uint32_t CF_EFFECTS = 0x100;
inline constexpr std::uint16_t BOLD_FONTTYPE = 0x100;
inline constexpr std::uint32_t BIF_RETURNONLYFSDIRS = 0x1;

// Common dialogs (comdlg32).
class Dialogs {
 public:
  virtual ~Dialogs() = default;
  virtual bool GetOpenFileNameA(OPENFILENAMEA* ofn) = 0;
  virtual bool GetSaveFileNameA(OPENFILENAMEA* ofn) = 0;
  virtual bool ChooseColorA(CHOOSECOLORA* cc) = 0;
  virtual std::int32_t ChooseFontA(CHOOSEFONTA* cf) = 0;
};

// Shell calls.
class Shell {
 public:
  virtual ~Shell() = default;
  virtual Handle ShellExecuteA(Hwnd wnd, const std::string& verb, const std::string& file,
                               const std::string& parameters, const std::string& directory, int show) = 0;
  // Returns an item list handle, 0 when cancelled.
  virtual Handle SHBrowseForFolderA(BROWSEINFOA* bi) = 0;
  // path must hold at least 260 characters.
  virtual bool SHGetPathFromIDListA(Handle idlist, char* path) = 0;
};

// STARTUPINFOA: the controls set only cb (68); the other fields stay zero.
struct STARTUPINFOA {
  std::uint32_t cb = 0;
};
struct PROCESS_INFORMATION {
  Handle hProcess = 0;
  Handle hThread = 0;
  std::uint32_t dwProcessId = 0;
  std::uint32_t dwThreadId = 0;
};

// Kernel calls.
class Kernel {
 public:
  virtual ~Kernel() = default;
  virtual bool CreateProcessA(const char* application, const std::string& command_line, bool inherit_handles,
                              std::uint32_t creation_flags, const STARTUPINFOA* startup,
                              PROCESS_INFORMATION* info) = 0;
  virtual std::uint32_t WaitForSingleObject(Handle object, std::uint32_t milliseconds) = 0;
  virtual bool CloseHandle(Handle object) = 0;
  // 0xFFFFFFFF (INVALID_FILE_ATTRIBUTES) when the file does not exist.
  virtual std::uint32_t GetFileAttributesA(const std::string& path) = 0;
};

// What a drawing surface needs from its platform: a persistent image with a device
// context, and the window that shows it.
class SurfaceSite {
 public:
  virtual ~SurfaceSite() = default;
  virtual Hdc Dc() = 0;          // device context of the persistent image
  virtual Hwnd Window() = 0;     // the window that shows it (0 where there is none)
  virtual int PixelWidth() = 0;  // inner size in pixels
  virtual int PixelHeight() = 0;
  // Moves and sizes the surface within its parent (pixels); the image keeps its
  // top-left content and new area is undefined until cleared.
  virtual void Move(int left, int top, int width, int height) = 0;
  virtual int Left() = 0;
  virtual int Top() = 0;
  virtual void SetVisible(bool visible) = 0;
  virtual bool Visible() = 0;
  // Shows the persistent image in the window now.
  virtual void Refresh() = 0;
  // Gives the surface a window of its own now, if it has none yet, and returns it. A
  // control that owns child windows (a text box, a scroll bar, a status window)
  // needs one before its container shows it: until the container gives a parent,
  // the window waits hidden, and it keeps its children when the container takes
  // its parent away again.
  virtual Hwnd RealizeWindow() { return Window(); }
  virtual void SetToolTipText(const std::string& text) = 0;
  virtual void SetMousePointer(int pointer) = 0;
};

// Everything a control can reach on its platform.
class Platform {
 public:
  virtual ~Platform() = default;
  virtual Gdi& gdi() = 0;
  virtual User& user() = 0;
  virtual Shell& shell() = 0;
  virtual Kernel& kernel() = 0;
  virtual Dialogs& dialogs() = 0;
  // A new drawing surface of width x height pixels, child of parent (0: top level).
  virtual std::unique_ptr<SurfaceSite> CreateSurfaceSite(Hwnd parent, int width, int height) = 0;
  virtual int TwipsPerPixelX() = 0;
  virtual int TwipsPerPixelY() = 0;
  // The library's module instance handle.
  virtual Handle ModuleInstance() = 0;
};

}  // namespace korvel
