// The portable headers come first: their constants share names with <windows.h>'s macros.
#include "platform/win32/win32_platform.h"
#include "platform/win32/win32_text.h"

#include <cstring>
#include <vector>

#ifndef NOMINMAX
#define NOMINMAX
#endif
#define WIN32_LEAN_AND_MEAN
#include <windows.h>

namespace korvel::win32 {

namespace {

HDC ToDc(Hdc h) { return reinterpret_cast<HDC>(h); }
HGDIOBJ ToObj(Hgdiobj h) { return reinterpret_cast<HGDIOBJ>(h); }
template <typename T>
Handle FromHandle(T h) {
  return reinterpret_cast<Handle>(h);
}

RECT ToRect(const Rect& r) { return RECT{r.left, r.top, r.right, r.bottom}; }
Rect FromRect(const RECT& r) { return Rect{r.left, r.top, r.right, r.bottom}; }

// The platform's DIB pixels are 0x00RRGGBB; the core's are 0x00BBGGRR.
std::uint32_t SwapRedBlue(std::uint32_t c) {
  return ((c & 0xFF) << 16) | (c & 0xFF00) | ((c >> 16) & 0xFF);
}

BITMAPINFO TopDown32(int width, int height) {
  BITMAPINFO bi{};
  bi.bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
  bi.bmiHeader.biWidth = width;
  bi.bmiHeader.biHeight = -height;
  bi.bmiHeader.biPlanes = 1;
  bi.bmiHeader.biBitCount = 32;
  bi.bmiHeader.biCompression = BI_RGB;
  return bi;
}

}  // namespace

ColorRef Win32Gdi::GetSysColor(int index) { return ::GetSysColor(index); }

bool Win32Gdi::DrawEdge(Hdc dc, Rect* rc, std::uint32_t edge, std::uint32_t flags) {
  if (!rc) return false;
  RECT r = ToRect(*rc);
  BOOL ok = ::DrawEdge(ToDc(dc), &r, edge, flags);
  *rc = FromRect(r);  // BF_ADJUST shrinks the rectangle
  return ok != FALSE;
}

bool Win32Gdi::DrawStateA(Hdc dc, Handle brush, Handle data, const std::string& text, int x, int y, int cx, int cy,
                          std::uint32_t flags) {
  std::uint32_t type = flags & 0x000F;
  if (type == DST_TEXT || type == DST_PREFIXTEXT) {
    std::wstring wide = Widen(text);
    return ::DrawStateW(ToDc(dc), reinterpret_cast<HBRUSH>(brush), nullptr, reinterpret_cast<LPARAM>(wide.c_str()),
                        static_cast<WPARAM>(wide.size()), x, y, cx, cy, flags) != FALSE;
  }
  return ::DrawStateW(ToDc(dc), reinterpret_cast<HBRUSH>(brush), nullptr, static_cast<LPARAM>(data), 0, x, y, cx, cy,
                      flags) != FALSE;
}

int Win32Gdi::DrawTextA(Hdc dc, const std::string& text, Rect* rc, std::uint32_t format) {
  if (!rc) return 0;
  std::wstring wide = Widen(text);
  RECT r = ToRect(*rc);
  int h = ::DrawTextW(ToDc(dc), wide.c_str(), static_cast<int>(wide.size()), &r, format);
  *rc = FromRect(r);  // DT_CALCRECT reports the text's rectangle
  return h;
}

Hdc Win32Gdi::CreateCompatibleDC(Hdc dc) { return FromHandle(::CreateCompatibleDC(ToDc(dc))); }

bool Win32Gdi::DeleteDC(Hdc dc) { return ::DeleteDC(ToDc(dc)) != FALSE; }

Hbitmap Win32Gdi::CreateBitmap(int width, int height, unsigned planes, unsigned bits_per_pixel, const void* bits) {
  return FromHandle(::CreateBitmap(width, height, planes, bits_per_pixel, bits));
}

Hbitmap Win32Gdi::CreateCompatibleBitmap(Hdc dc, int width, int height) {
  return FromHandle(::CreateCompatibleBitmap(ToDc(dc), width, height));
}

Handle Win32Gdi::CreatePen(int style, int width, ColorRef color) {
  return FromHandle(::CreatePen(style, width, color));
}

Handle Win32Gdi::CreateSolidBrush(ColorRef color) { return FromHandle(::CreateSolidBrush(color)); }

Hfont Win32Gdi::CreateFontIndirectA(const korvel::LOGFONTA& lf) {
  ::LOGFONTW w = WidenFont(lf);
  return FromHandle(::CreateFontIndirectW(&w));
}

Handle Win32Gdi::GetStockObject(int index) { return FromHandle(::GetStockObject(index)); }

Hgdiobj Win32Gdi::SelectObject(Hdc dc, Hgdiobj obj) { return FromHandle(::SelectObject(ToDc(dc), ToObj(obj))); }

bool Win32Gdi::DeleteObject(Hgdiobj obj) { return ::DeleteObject(ToObj(obj)) != FALSE; }

ColorRef Win32Gdi::SetBkColor(Hdc dc, ColorRef color) { return ::SetBkColor(ToDc(dc), color); }

ColorRef Win32Gdi::GetBkColor(Hdc dc) { return ::GetBkColor(ToDc(dc)); }

ColorRef Win32Gdi::SetTextColor(Hdc dc, ColorRef color) { return ::SetTextColor(ToDc(dc), color); }

int Win32Gdi::SetBkMode(Hdc dc, int mode) { return ::SetBkMode(ToDc(dc), mode); }

int Win32Gdi::SetROP2(Hdc dc, int rop2) { return ::SetROP2(ToDc(dc), rop2); }

bool Win32Gdi::BitBlt(Hdc dst, int x, int y, int cx, int cy, Hdc src, int x1, int y1, std::uint32_t rop) {
  return ::BitBlt(ToDc(dst), x, y, cx, cy, ToDc(src), x1, y1, rop) != FALSE;
}

bool Win32Gdi::StretchBlt(Hdc dst, int x, int y, int cx, int cy, Hdc src, int xs, int ys, int cxs, int cys,
                          std::uint32_t rop) {
  return ::StretchBlt(ToDc(dst), x, y, cx, cy, ToDc(src), xs, ys, cxs, cys, rop) != FALSE;
}

bool Win32Gdi::MoveToEx(Hdc dc, int x, int y, Point* old) {
  POINT p{};
  BOOL ok = ::MoveToEx(ToDc(dc), x, y, &p);
  if (old) *old = Point{p.x, p.y};
  return ok != FALSE;
}

bool Win32Gdi::LineTo(Hdc dc, int x, int y) { return ::LineTo(ToDc(dc), x, y) != FALSE; }

bool Win32Gdi::Rectangle(Hdc dc, int left, int top, int right, int bottom) {
  return ::Rectangle(ToDc(dc), left, top, right, bottom) != FALSE;
}

int Win32Gdi::FillRect(Hdc dc, const Rect* rc, Handle brush) {
  if (!rc) return 0;
  RECT r = ToRect(*rc);
  return ::FillRect(ToDc(dc), &r, reinterpret_cast<HBRUSH>(brush));
}

ColorRef Win32Gdi::SetPixel(Hdc dc, int x, int y, ColorRef color) { return ::SetPixel(ToDc(dc), x, y, color); }

ColorRef Win32Gdi::GetPixel(Hdc dc, int x, int y) { return ::GetPixel(ToDc(dc), x, y); }

bool Win32Gdi::TextOutA(Hdc dc, int x, int y, const std::string& text) {
  std::wstring wide = Widen(text);
  return ::TextOutW(ToDc(dc), x, y, wide.c_str(), static_cast<int>(wide.size())) != FALSE;
}

bool Win32Gdi::GetTextExtentPoint32A(Hdc dc, const std::string& text, Size* size) {
  std::wstring wide = Widen(text);
  SIZE s{};
  BOOL ok = ::GetTextExtentPoint32W(ToDc(dc), wide.c_str(), static_cast<int>(wide.size()), &s);
  if (size) *size = Size{s.cx, s.cy};
  return ok != FALSE;
}

Hbitmap Win32Gdi::CreateBitmapFromImage(const Image& image) {
  if (image.width <= 0 || image.height <= 0 ||
      image.pixels.size() < static_cast<std::size_t>(image.width) * static_cast<std::size_t>(image.height))
    return 0;
  BITMAPINFO bi = TopDown32(image.width, image.height);
  void* bits = nullptr;
  HBITMAP bmp = ::CreateDIBSection(nullptr, &bi, DIB_RGB_COLORS, &bits, nullptr, 0);
  if (!bmp || !bits) return 0;
  auto* px = static_cast<std::uint32_t*>(bits);
  std::size_t n = static_cast<std::size_t>(image.width) * static_cast<std::size_t>(image.height);
  for (std::size_t i = 0; i < n; ++i) px[i] = SwapRedBlue(image.pixels[i]);
  ::GdiFlush();
  return FromHandle(bmp);
}

Image Win32Gdi::ImageOfBitmap(Hbitmap bitmap) {
  BITMAP bm{};
  if (!bitmap || ::GetObjectW(ToObj(bitmap), sizeof bm, &bm) == 0 || bm.bmWidth <= 0 || bm.bmHeight <= 0)
    return Image();
  int height = bm.bmHeight < 0 ? -bm.bmHeight : bm.bmHeight;
  Image img(bm.bmWidth, height);
  BITMAPINFO bi = TopDown32(bm.bmWidth, height);
  std::vector<std::uint32_t> px(img.pixels.size());
  HDC screen = ::GetDC(nullptr);
  int rows = ::GetDIBits(screen, reinterpret_cast<HBITMAP>(bitmap), 0, static_cast<UINT>(height), px.data(), &bi,
                         DIB_RGB_COLORS);
  ::ReleaseDC(nullptr, screen);
  if (rows != height) return Image();
  for (std::size_t i = 0; i < px.size(); ++i) img.pixels[i] = SwapRedBlue(px[i] & 0x00FFFFFF);
  return img;
}

}  // namespace korvel::win32
