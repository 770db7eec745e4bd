// The Win32 platform on real GDI and USER: a surface drawn through the platform
// and read back pixel by pixel, bitmaps to and from images, DrawEdge, UTF-8 text
// through the wide calls, the surface window (creation, size, parent, messages,
// painting, destruction), tool tips and mouse pointers, twips per pixel.
// Prints "N passed, N failed".
#include <cstdio>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "framework/surface.h"
#include "platform/win32/win32_platform.h"

#ifndef NOMINMAX
#define NOMINMAX
#endif
#define WIN32_LEAN_AND_MEAN
// The portable headers come first; from here on the platform's macros carry
// the same constants (used without the korvel:: prefix).
#include <windows.h>
#include <commctrl.h>
#include <commdlg.h>
#include <windowsx.h>

using korvel::win32::Win32Platform;
using korvel::win32::Win32SurfaceSite;

namespace {

int passed = 0, failed = 0;
void Check(bool ok, const std::string& what) {
  std::printf("%s: %s\n", ok ? "ok" : "FAILED", what.c_str());
  std::fflush(stdout);
  ok ? ++passed : ++failed;
}

std::string Hex(unsigned v) {
  char buf[16];
  std::snprintf(buf, sizeof buf, "0x%06X", v);
  return buf;
}

void CheckColor(COLORREF got, COLORREF want, const std::string& what) {
  Check(got == want, what + " (" + Hex(got) + ", expected " + Hex(want) + ")");
}

HDC DcOf(korvel::Hdc h) { return reinterpret_cast<HDC>(h); }
HWND WndOf(korvel::Hwnd h) { return reinterpret_cast<HWND>(h); }
korvel::Hwnd FromWnd(HWND h) { return reinterpret_cast<korvel::Hwnd>(h); }

void PumpMessages() {
  MSG msg;
  while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
    TranslateMessage(&msg);
    DispatchMessageW(&msg);
  }
}

HWND NewFrame(int width, int height) {
  static bool registered = false;
  if (!registered) {
    WNDCLASSW wc{};
    wc.lpfnWndProc = DefWindowProcW;
    wc.hInstance = GetModuleHandleW(nullptr);
    wc.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
    wc.lpszClassName = L"KorvelTestFrame";
    RegisterClassW(&wc);
    registered = true;
  }
  RECT r{0, 0, width, height};
  AdjustWindowRect(&r, WS_POPUP | WS_VISIBLE, FALSE);
  HWND frame = CreateWindowExW(0, L"KorvelTestFrame", L"frame", WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN, 10, 10,
                               r.right - r.left, r.bottom - r.top, nullptr, nullptr, GetModuleHandleW(nullptr),
                               nullptr);
  UpdateWindow(frame);
  PumpMessages();
  return frame;
}

std::wstring ClassOf(HWND wnd) {
  wchar_t name[64] = {};
  GetClassNameW(wnd, name, 64);
  return name;
}

// ---- a surface drawn through the platform ----
void SurfaceDrawing(Win32Platform& p) {
  korvel::Surface s(p, 0, 40, 30);
  Check(s.hWnd() == 0, "a surface created without a parent has no window");
  Check(s.Width() == 40 && s.Height() == 30, "the surface is 40 x 30 pixels");
  s.SetBackColor(korvel::Rgb(10, 20, 30));  // clears
  HDC dc = DcOf(s.hDC());
  CheckColor(GetPixel(dc, 0, 0), RGB(10, 20, 30), "SetBackColor clears: (0, 0)");
  CheckColor(GetPixel(dc, 39, 29), RGB(10, 20, 30), "SetBackColor clears: (39, 29)");
  s.Line(2, 3, 12, 10, korvel::Rgb(255, 0, 0), true, true);
  CheckColor(GetPixel(dc, 2, 3), RGB(255, 0, 0), "box fill: top-left corner (2, 3)");
  CheckColor(GetPixel(dc, 12, 10), RGB(255, 0, 0), "box fill: bottom-right corner (12, 10) included");
  CheckColor(GetPixel(dc, 7, 6), RGB(255, 0, 0), "box fill: inside (7, 6)");
  CheckColor(GetPixel(dc, 1, 3), RGB(10, 20, 30), "box fill: (1, 3) left of the box untouched");
  CheckColor(GetPixel(dc, 13, 10), RGB(10, 20, 30), "box fill: (13, 10) right of the box untouched");
  CheckColor(GetPixel(dc, 2, 11), RGB(10, 20, 30), "box fill: (2, 11) below the box untouched");
  CheckColor(GetPixel(dc, 2, 2), RGB(10, 20, 30), "box fill: (2, 2) above the box untouched");
  s.PSet(20, 21, korvel::Rgb(0, 0, 255));
  CheckColor(GetPixel(dc, 20, 21), RGB(0, 0, 255), "PSet (20, 21) blue");
  CheckColor(GetPixel(dc, 21, 21), RGB(10, 20, 30), "PSet touches one pixel only");
  s.Line(0, 25, 5, 25, korvel::Rgb(0, 128, 0));
  CheckColor(GetPixel(dc, 4, 25), RGB(0, 128, 0), "a line reaches the pixel before its end");
  CheckColor(GetPixel(dc, 5, 25), RGB(10, 20, 30), "a line leaves its last point out");
  s.Cls();
  CheckColor(GetPixel(dc, 7, 6), RGB(10, 20, 30), "Cls clears to the back colour");

  korvel::Image snap = s.Snapshot();
  Check(snap.width == 40 && snap.height == 30 && snap.At(20, 21) == korvel::Rgb(10, 20, 30),
        "Snapshot reads the surface's image");

  // Growing keeps the top-left content; the new area shows the back colour.
  s.PSet(39, 29, korvel::Rgb(1, 2, 3));
  s.Move(0, 0, 50, 35);
  dc = DcOf(s.hDC());
  Check(s.Width() == 50 && s.Height() == 35, "Move grows the surface to 50 x 35");
  CheckColor(GetPixel(dc, 39, 29), RGB(1, 2, 3), "growing keeps the old pixel (39, 29)");
  CheckColor(GetPixel(dc, 0, 0), RGB(10, 20, 30), "growing keeps the old pixel (0, 0)");
  CheckColor(GetPixel(dc, 45, 32), RGB(10, 20, 30), "the new area shows the back colour");
  s.Move(0, 0, 20, 10);
  CheckColor(GetPixel(DcOf(s.hDC()), 19, 9), RGB(10, 20, 30), "shrinking keeps the top-left content");
}

// ---- bitmaps and images ----
void Bitmaps(Win32Platform& p) {
  korvel::Gdi& gdi = p.gdi();
  korvel::Image img(3, 2);
  img.At(0, 0) = korvel::Rgb(255, 0, 0);
  img.At(1, 0) = korvel::Rgb(0, 255, 0);
  img.At(2, 0) = korvel::Rgb(0, 0, 255);
  img.At(0, 1) = korvel::Rgb(1, 2, 3);
  img.At(1, 1) = korvel::Rgb(255, 255, 255);
  img.At(2, 1) = korvel::Rgb(0, 0, 0);
  korvel::Hbitmap bmp = gdi.CreateBitmapFromImage(img);
  Check(bmp != 0, "CreateBitmapFromImage makes a bitmap");
  DIBSECTION ds{};
  int got = GetObjectW(reinterpret_cast<HGDIOBJ>(bmp), sizeof ds, &ds);
  Check(got == sizeof ds && ds.dsBm.bmBitsPixel == 32 && (ds.dsBmih.biHeight == -2 || ds.dsBmih.biHeight == 2) && ds.dsBm.bmWidth == 3 &&
            ds.dsBm.bmBits != nullptr,
        "it is a 32-bit DIB section of 3 x 2 (" + std::to_string(got) + " " +
            std::to_string(ds.dsBm.bmBitsPixel) + " " + std::to_string(ds.dsBmih.biHeight) + ")");
  HDC mem = CreateCompatibleDC(nullptr);
  HGDIOBJ old = SelectObject(mem, reinterpret_cast<HGDIOBJ>(bmp));
  CheckColor(GetPixel(mem, 0, 0), RGB(255, 0, 0), "pixel (0, 0) of the bitmap is red");
  CheckColor(GetPixel(mem, 2, 0), RGB(0, 0, 255), "pixel (2, 0) of the bitmap is blue");
  CheckColor(GetPixel(mem, 0, 1), RGB(1, 2, 3), "pixel (0, 1) of the bitmap is (1, 2, 3): row 0 is the top");
  SelectObject(mem, old);
  korvel::Image back = gdi.ImageOfBitmap(bmp);
  Check(back == img, "ImageOfBitmap gives the image back pixel for pixel");
  gdi.DeleteObject(bmp);

  // A monochrome bitmap: rows of 16 bits, the high bit first, 1 is white.
  const unsigned char bits[] = {0xA5, 0x00, 0x0F, 0x00};
  korvel::Hbitmap mono = gdi.CreateBitmap(8, 2, 1, 1, bits);
  korvel::Image m = gdi.ImageOfBitmap(mono);
  const korvel::ColorRef W = 0xFFFFFF, B = 0;
  std::vector<korvel::ColorRef> want = {W, B, W, B, B, W, B, W, B, B, B, B, W, W, W, W};
  Check(m.width == 8 && m.height == 2 && m.pixels == want, "ImageOfBitmap reads a 1-bpp bitmap as black and white");
  gdi.DeleteObject(mono);

  Check(gdi.CreateBitmapFromImage(korvel::Image()) == 0, "an empty image makes no bitmap");
  Check(gdi.ImageOfBitmap(0).width == 0, "no bitmap gives an empty image");
  DeleteDC(mem);
}

// ---- DrawEdge on a bitmap ----
void Edges(Win32Platform& p) {
  korvel::Gdi& gdi = p.gdi();
  korvel::Hbitmap bmp = gdi.CreateBitmapFromImage(korvel::Image(10, 10, korvel::Rgb(255, 255, 255)));
  korvel::Hdc dc = gdi.CreateCompatibleDC(0);
  korvel::Hgdiobj old = gdi.SelectObject(dc, bmp);
  korvel::Rect rc{0, 0, 10, 10};
  Check(gdi.DrawEdge(dc, &rc, EDGE_SUNKEN, BF_RECT | BF_ADJUST), "DrawEdge succeeds");
  Check(rc == korvel::Rect{2, 2, 8, 8}, "BF_ADJUST shrinks the rectangle by both borders");
  HDC h = DcOf(dc);
  CheckColor(GetPixel(h, 0, 5), GetSysColor(COLOR_BTNSHADOW), "sunken outer left: button shadow");
  CheckColor(GetPixel(h, 5, 0), GetSysColor(COLOR_BTNSHADOW), "sunken outer top: button shadow");
  CheckColor(GetPixel(h, 9, 5), GetSysColor(COLOR_BTNHIGHLIGHT), "sunken outer right: button highlight");
  CheckColor(GetPixel(h, 5, 9), GetSysColor(COLOR_BTNHIGHLIGHT), "sunken outer bottom: button highlight");
  CheckColor(GetPixel(h, 1, 5), GetSysColor(COLOR_3DDKSHADOW), "sunken inner left: dark shadow");
  CheckColor(GetPixel(h, 5, 1), GetSysColor(COLOR_3DDKSHADOW), "sunken inner top: dark shadow");
  CheckColor(GetPixel(h, 8, 5), GetSysColor(COLOR_3DLIGHT), "sunken inner right: light");
  CheckColor(GetPixel(h, 5, 8), GetSysColor(COLOR_3DLIGHT), "sunken inner bottom: light");
  CheckColor(GetPixel(h, 5, 5), RGB(255, 255, 255), "no BF_MIDDLE: the middle stays white");
  Check(gdi.GetSysColor(COLOR_BTNFACE) == GetSysColor(COLOR_BTNFACE), "GetSysColor is the platform's");
  gdi.SelectObject(dc, old);
  gdi.DeleteDC(dc);
  gdi.DeleteObject(bmp);
}

// ---- UTF-8 text through the wide calls ----
void Text(Win32Platform& p) {
  korvel::Gdi& gdi = p.gdi();
  korvel::Hbitmap bmp = gdi.CreateBitmapFromImage(korvel::Image(100, 40, korvel::Rgb(255, 255, 255)));
  korvel::Hdc dc = gdi.CreateCompatibleDC(0);
  korvel::Hgdiobj old = gdi.SelectObject(dc, bmp);
  korvel::LOGFONTA lf;
  lf.lfHeight = -16;
  lf.lfWeight = 400;
  std::snprintf(lf.lfFaceName, sizeof lf.lfFaceName, "%s", "Tahoma");
  korvel::Hfont font = gdi.CreateFontIndirectA(lf);
  Check(font != 0, "CreateFontIndirectA makes a font");
  korvel::Hgdiobj old_font = gdi.SelectObject(dc, font);
  HDC h = DcOf(dc);
  wchar_t face[LF_FACESIZE] = {};
  GetTextFaceW(h, LF_FACESIZE, face);
  char face8[64] = {};
  WideCharToMultiByte(CP_UTF8, 0, face, -1, face8, 64, nullptr, nullptr);
  // The face is what the platform picks for the name (a substitute where the font
  // is not installed): the same as the wide call's.
  LOGFONTW wlf{};
  wlf.lfHeight = -16;
  wlf.lfWeight = 400;
  lstrcpyW(wlf.lfFaceName, L"Tahoma");
  HFONT direct = CreateFontIndirectW(&wlf);
  HDC probe = CreateCompatibleDC(nullptr);
  HGDIOBJ probe_old = SelectObject(probe, direct);
  wchar_t direct_face[LF_FACESIZE] = {};
  GetTextFaceW(probe, LF_FACESIZE, direct_face);
  TEXTMETRICW direct_tm{};
  GetTextMetricsW(probe, &direct_tm);
  SelectObject(probe, probe_old);
  DeleteDC(probe);
  DeleteObject(direct);
  Check(std::wstring(face) == direct_face, std::string("the font's face is the one the platform picks: ") + face8);
  TEXTMETRICW tm{};
  GetTextMetricsW(h, &tm);
  Check(tm.tmHeight == direct_tm.tmHeight && tm.tmAscent == direct_tm.tmAscent && tm.tmWeight == 400 &&
            tm.tmHeight > 14 && tm.tmHeight < 22,
        "the font has the metrics of the same record made with the wide call (height " +
            std::to_string(tm.tmHeight) + ")");
  korvel::Size size;
  Check(gdi.GetTextExtentPoint32A(dc, "\xC3\xA9", &size), "GetTextExtentPoint32A succeeds");
  SIZE one{}, two{};
  GetTextExtentPoint32W(h, L"\x00E9", 1, &one);
  GetTextExtentPoint32W(h, L"\x00C3\x00A9", 2, &two);
  Check(size.cx == one.cx && size.cy == one.cy,
        "the UTF-8 e-acute measures as the one wide character (" + std::to_string(size.cx) + " = " +
            std::to_string(one.cx) + ")");
  Check(size.cx != two.cx, "and not as its two bytes read as ANSI (" + std::to_string(two.cx) + ")");
  korvel::Rect rc{0, 0, 100, 40};
  gdi.DrawTextA(dc, "\xC3\xA9", &rc, DT_CALCRECT | DT_SINGLELINE);
  Check(rc.right == one.cx && rc.bottom == one.cy, "DrawTextA DT_CALCRECT gives the same extent");

  gdi.SetTextColor(dc, korvel::Rgb(0, 0, 0));
  gdi.SetBkMode(dc, TRANSPARENT);
  Check(gdi.TextOutA(dc, 2, 2, "\xC3\xA9"), "TextOutA succeeds");
  int dark = 0;
  for (int y = 0; y < 40; ++y)
    for (int x = 0; x < 100; ++x)
      if (GetPixel(h, x, y) != RGB(255, 255, 255)) ++dark;
  Check(dark > 0 && dark < 200, "TextOutA drew the character (" + std::to_string(dark) + " pixels)");

  // DrawStateA text, disabled, on black: the embossed style draws in the highlight
  // and shadow colours, exactly as the wide call does with the same arguments.
  korvel::Rect all{0, 0, 100, 40};
  korvel::Handle black = gdi.GetStockObject(BLACK_BRUSH);
  gdi.FillRect(dc, &all, black);
  Check(gdi.DrawStateA(dc, 0, 0, "&Ab\xC3\xA9", 4, 4, 0, 0, DST_PREFIXTEXT | DSS_DISABLED),
        "DrawStateA draws disabled prefix text");
  HBITMAP ref = CreateBitmap(100, 40, 1, 32, nullptr);
  HDC rdc = CreateCompatibleDC(nullptr);
  HGDIOBJ rold = SelectObject(rdc, ref);
  HGDIOBJ rfont = SelectObject(rdc, reinterpret_cast<HGDIOBJ>(font));
  RECT rall{0, 0, 100, 40};
  FillRect(rdc, &rall, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
  DrawStateW(rdc, nullptr, nullptr, reinterpret_cast<LPARAM>(L"&Ab\x00E9"), 4, 4, 4, 0, 0,
             DST_PREFIXTEXT | DSS_DISABLED);
  int highlight = 0, shadow = 0, differ = 0;
  for (int y = 0; y < 40; ++y)
    for (int x = 0; x < 100; ++x) {
      COLORREF c = GetPixel(h, x, y);
      if (c == GetSysColor(COLOR_BTNSHADOW)) ++shadow;
      if (c == GetSysColor(COLOR_BTNHIGHLIGHT)) ++highlight;
      if (c != GetPixel(rdc, x, y)) ++differ;
    }
  Check(shadow > 0 && highlight > 0,
        "the disabled text has shadow (" + std::to_string(shadow) + ") and highlight (" +
            std::to_string(highlight) + ") pixels");
  Check(differ == 0, "DrawStateA's pixels equal DrawStateW's for the same text (" + std::to_string(differ) +
                         " differ)");
  SelectObject(rdc, rfont);
  SelectObject(rdc, rold);
  DeleteDC(rdc);
  DeleteObject(ref);

  gdi.SelectObject(dc, old_font);
  gdi.DeleteObject(font);
  gdi.SelectObject(dc, old);
  gdi.DeleteDC(dc);
  gdi.DeleteObject(bmp);
}

// ---- the surface window ----
struct Seen {
  unsigned msg = 0;
  std::uintptr_t wparam = 0;
  std::intptr_t lparam = 0;
  int count = 0;
};

void SurfaceWindow(Win32Platform& p) {
  HWND frame = NewFrame(120, 90);
  Check(frame != nullptr, "a top-level frame window");
  korvel::Surface s(p, 0, 30, 20);
  auto& site = dynamic_cast<Win32SurfaceSite&>(s.site());
  s.Move(5, 6, 30, 20);
  Check(site.Window() == 0, "no window before SetParentWindow");
  site.SetParentWindow(FromWnd(frame));
  HWND child = WndOf(site.Window());
  Check(child != nullptr && IsWindow(child), "SetParentWindow creates the child window");
  Check(GetParent(child) == frame, "its parent is the frame");
  Check(ClassOf(child) == L"KorvelSurface", "its class is KorvelSurface");
  WNDCLASSEXW wc{};
  wc.cbSize = sizeof wc;
  Check(GetClassInfoExW(reinterpret_cast<HINSTANCE>(p.ModuleInstance()), L"KorvelSurface", &wc) &&
            (wc.style & CS_DBLCLKS) && wc.hbrBackground == nullptr,
        "the class is registered in the module with CS_DBLCLKS and no background brush");
  LONG style = GetWindowLongW(child, GWL_STYLE);
  Check((style & WS_CHILD) && (style & WS_VISIBLE), "the window is a visible child");
  RECT cr{};
  GetClientRect(child, &cr);
  Check(cr.right == 30 && cr.bottom == 20, "the window is 30 x 20");
  RECT wr{};
  GetWindowRect(child, &wr);
  MapWindowPoints(nullptr, frame, reinterpret_cast<POINT*>(&wr), 2);
  Check(wr.left == 5 && wr.top == 6, "the window is at (5, 6) in the frame");

  // Messages reach on_message first, with their arguments.
  Seen seen;
  site.on_message = [&seen](unsigned msg, std::uintptr_t wp, std::intptr_t lp) {
    if (msg != WM_LBUTTONDOWN && msg != WM_KEYDOWN && msg != WM_LBUTTONDBLCLK) return false;
    seen.msg = msg;
    seen.wparam = wp;
    seen.lparam = lp;
    ++seen.count;
    return true;
  };
  LRESULT r = SendMessageW(child, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 7));
  Check(seen.count == 1 && seen.msg == WM_LBUTTONDOWN && seen.wparam == MK_LBUTTON &&
            GET_X_LPARAM(seen.lparam) == 5 && GET_Y_LPARAM(seen.lparam) == 7 && r == 0,
        "WM_LBUTTONDOWN at (5, 7) reaches on_message with MK_LBUTTON and (5, 7)");
  SendMessageW(child, WM_KEYDOWN, 'A', 0x001E0001);
  Check(seen.count == 2 && seen.msg == WM_KEYDOWN && seen.wparam == 'A' && seen.lparam == 0x001E0001,
        "WM_KEYDOWN reaches on_message with its key and flags");
  SendMessageW(child, WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(1, 2));
  Check(seen.count == 3 && seen.msg == WM_LBUTTONDBLCLK, "WM_LBUTTONDBLCLK reaches on_message");

  // The first mouse move tracks the mouse's leaving: when the cursor then goes
  // elsewhere, the leave notice follows.
  std::vector<unsigned> order;
  site.on_message = [&order](unsigned msg, std::uintptr_t, std::intptr_t) {
    if (msg == WM_MOUSEMOVE || msg == WM_MOUSELEAVE) order.push_back(msg);
    return false;
  };
  POINT inside{2, 2};
  ClientToScreen(child, &inside);
  SetCursorPos(inside.x, inside.y);
  PumpMessages();
  order.clear();
  SendMessageW(child, WM_MOUSEMOVE, 0, MAKELPARAM(2, 2));
  SetCursorPos(600, 500);
  for (int i = 0; i < 100 && order.size() < 2; ++i) {
    PumpMessages();
    Sleep(20);
  }
  Check(order == std::vector<unsigned>{WM_MOUSEMOVE, WM_MOUSELEAVE},
        "WM_MOUSEMOVE then WM_MOUSELEAVE reach on_message (" + std::to_string(order.size()) + " messages)");

  bool threw = false;
  site.on_message = [&threw](unsigned, std::uintptr_t, std::intptr_t) -> bool {
    threw = true;
    throw std::runtime_error("handler failure");
  };
  r = SendMessageW(child, WM_LBUTTONUP, 0, MAKELPARAM(1, 1));
  Check(threw && r == 0, "an exception of on_message stays inside the window procedure");
  site.on_message = nullptr;

  // Painting shows the image.
  s.SetBackColor(korvel::Rgb(0, 128, 255));
  s.Line(3, 4, 9, 12, korvel::Rgb(200, 0, 100), true, true);
  s.PSet(29, 19, korvel::Rgb(7, 7, 7));
  s.Refresh();
  PumpMessages();
  UpdateWindow(child);
  HDC wdc = GetDC(child);
  HDC mdc = DcOf(s.hDC());
  int differ = 0;
  for (int y = 0; y < 20; ++y)
    for (int x = 0; x < 30; ++x)
      if (GetPixel(wdc, x, y) != GetPixel(mdc, x, y)) ++differ;
  CheckColor(GetPixel(wdc, 5, 5), RGB(200, 0, 100), "the window shows the box at (5, 5)");
  CheckColor(GetPixel(wdc, 29, 19), RGB(7, 7, 7), "the window shows the point at (29, 19)");
  Check(differ == 0, "the window's 600 pixels equal the image (" + std::to_string(differ) + " differ)");
  ReleaseDC(child, wdc);

  // DrawTo stretches the image into another DC.
  HBITMAP big = reinterpret_cast<HBITMAP>(p.gdi().CreateBitmapFromImage(korvel::Image(60, 40, 0)));
  HDC bdc = CreateCompatibleDC(nullptr);
  HGDIOBJ bold = SelectObject(bdc, big);
  site.DrawTo(reinterpret_cast<korvel::Hdc>(bdc), 0, 0, 60, 40);
  CheckColor(GetPixel(bdc, 10, 10), RGB(200, 0, 100), "DrawTo doubles: (10, 10) is the box's (5, 5)");
  CheckColor(GetPixel(bdc, 59, 39), RGB(7, 7, 7), "DrawTo doubles: (59, 39) is the point (29, 19)");
  CheckColor(GetPixel(bdc, 0, 0), RGB(0, 128, 255), "DrawTo doubles: (0, 0) is the back colour");
  SelectObject(bdc, bold);
  DeleteDC(bdc);
  DeleteObject(big);

  // Move resizes and repositions the window.
  s.Move(8, 9, 40, 25);
  GetClientRect(child, &cr);
  GetWindowRect(child, &wr);
  MapWindowPoints(nullptr, frame, reinterpret_cast<POINT*>(&wr), 2);
  Check(cr.right == 40 && cr.bottom == 25 && wr.left == 8 && wr.top == 9, "Move places the window at (8, 9), 40 x 25");
  s.SetVisible(false);
  Check(!IsWindowVisible(child) && !s.Visible(), "SetVisible(false) hides the window");
  s.SetVisible(true);
  Check(IsWindowVisible(child) != FALSE, "SetVisible(true) shows it");

  // Mouse pointers on WM_SETCURSOR.
  s.SetMousePointer(99);
  LRESULT handled = SendMessageW(child, WM_SETCURSOR, reinterpret_cast<WPARAM>(child), MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
  Check(handled == TRUE && GetCursor() == LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_HAND)),
        "pointer 99 shows the hand cursor");
  s.SetMousePointer(11);
  SendMessageW(child, WM_SETCURSOR, reinterpret_cast<WPARAM>(child), MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
  Check(GetCursor() == LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_WAIT)), "pointer 11 shows the hourglass");
  s.SetMousePointer(9);
  SendMessageW(child, WM_SETCURSOR, reinterpret_cast<WPARAM>(child), MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
  Check(GetCursor() == LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_SIZEWE)), "pointer 9 shows size W-E");
  s.SetMousePointer(0);
  SendMessageW(child, WM_SETCURSOR, reinterpret_cast<WPARAM>(child), MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
  Check(GetCursor() == LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_ARROW)),
        "pointer 0 shows the class's arrow");

  // Tool tips: a standard tool tip control while there is a text.
  s.SetToolTipText("Tip \xC3\xA9");
  HWND tip = WndOf(site.ToolTipWindow());
  Check(tip != nullptr && ClassOf(tip) == L"tooltips_class32", "a tool tip text makes a tool tip control");
  Check(SendMessageW(tip, TTM_GETTOOLCOUNT, 0, 0) == 1, "with one tool");
  wchar_t text[80] = {};
  TTTOOLINFOW ti{};
  ti.cbSize = TTTOOLINFOW_V2_SIZE;
  ti.hwnd = child;
  ti.uId = reinterpret_cast<UINT_PTR>(child);
  ti.lpszText = text;
  SendMessageW(tip, TTM_GETTEXTW, 80, reinterpret_cast<LPARAM>(&ti));
  Check(std::wstring(text) == L"Tip \x00E9", "the tool's text is the UTF-8 text");
  s.SetToolTipText("Other");
  Check(WndOf(site.ToolTipWindow()) == tip, "a new text keeps the control");
  s.SetToolTipText("");
  Check(site.ToolTipWindow() == 0 && !IsWindow(tip), "an empty text removes the control");

  // SetParentWindow(0) destroys the window and keeps the image.
  site.SetParentWindow(0);
  Check(!IsWindow(child) && site.Window() == 0, "SetParentWindow(0) destroys the window");
  CheckColor(GetPixel(DcOf(s.hDC()), 5, 5), RGB(200, 0, 100), "the image is kept");
  site.SetParentWindow(FromWnd(frame));
  child = WndOf(site.Window());
  GetClientRect(child, &cr);
  Check(IsWindow(child) && cr.right == 40 && cr.bottom == 25, "a new parent makes a new window of the same size");

  // The frame's destruction takes the child with it; the surface forgets it.
  DestroyWindow(frame);
  Check(site.Window() == 0 && !IsWindow(child), "a destroyed parent leaves the surface without a window");
}

// A realized surface keeps its window, and the child windows in it, while no
// container gives it a parent.
void ParkedWindow(Win32Platform& p) {
  auto s = std::make_unique<korvel::Surface>(p, 0, 30, 20);
  auto& site = dynamic_cast<Win32SurfaceSite&>(s->site());
  Check(site.Window() == 0, "a surface has no window before it is realized");
  HWND wnd = WndOf(site.RealizeWindow());
  Check(wnd != nullptr && WndOf(site.Window()) == wnd, "RealizeWindow makes the surface's window");
  HWND parking = GetParent(wnd);
  Check(parking != nullptr && ClassOf(parking) == L"KorvelParking", "it waits under the parking window");
  Check(!IsWindowVisible(parking) && !IsWindowVisible(wnd), "nothing of it is on screen");
  Check(WndOf(site.RealizeWindow()) == wnd, "a second RealizeWindow keeps the same window");
  HWND edit = CreateWindowExW(0, L"EDIT", L"kept", WS_CHILD | WS_VISIBLE, 1, 1, 20, 14, wnd, nullptr, nullptr, nullptr);
  Check(edit != nullptr, "a child window in the realized surface");

  HWND frame = NewFrame(120, 90);
  site.SetParentWindow(FromWnd(frame));
  Check(WndOf(site.Window()) == wnd && GetParent(wnd) == frame, "a container's parent takes the same window");
  Check(IsWindowVisible(wnd) && IsWindowVisible(edit), "the window and its child show in the frame");
  site.SetParentWindow(0);
  Check(WndOf(site.Window()) == wnd && GetParent(wnd) == parking, "parent 0 parks the window instead of destroying it");
  wchar_t text[16] = {};
  GetWindowTextW(edit, text, 16);
  Check(IsWindow(edit) && std::wstring(text) == L"kept", "the child window and its text survive");
  Check(!IsWindowVisible(wnd), "the parked window is off screen again");
  DestroyWindow(frame);
  Check(IsWindow(wnd), "destroying the old container leaves the parked window alone");

  {
    korvel::Surface other(p, 0, 10, 10);
    auto& other_site = dynamic_cast<Win32SurfaceSite&>(other.site());
    Check(GetParent(WndOf(other_site.RealizeWindow())) == parking, "the thread's surfaces share one parking window");
  }
  Check(IsWindow(parking), "the parking window stays while a realized surface lives");
  s.reset();
  Check(!IsWindow(wnd) && !IsWindow(edit), "the surface's window goes with the surface");
  Check(!IsWindow(parking), "the parking window goes with the thread's last realized surface");
}

// ---- services ----

// A dialog hook that confirms the dialog as soon as it opens.
UINT_PTR CALLBACK CloseOnInit(HWND dlg, UINT msg, WPARAM, LPARAM) {
  if (msg == WM_INITDIALOG) PostMessageW(dlg, WM_COMMAND, IDOK, 0);
  return 0;
}

void Services(Win32Platform& p) {
  Check(p.TwipsPerPixelX() == 15 && p.TwipsPerPixelY() == 15,
        "twips per pixel are 15 at the screen's " + std::to_string(GetDeviceCaps(GetDC(nullptr), LOGPIXELSX)) +
            " dpi");
  Check(p.ModuleInstance() == reinterpret_cast<korvel::Handle>(GetModuleHandleW(nullptr)),
        "ModuleInstance is the module given");

  korvel::User& user = p.user();
  korvel::Hwnd wnd = user.CreateWindowExA(0, "STATIC", "Caf\xC3\xA9", WS_POPUP, 0, 0, 50, 20, 0, 0);
  wchar_t title[32] = {};
  GetWindowTextW(WndOf(wnd), title, 32);
  Check(wnd != 0 && std::wstring(title) == L"Caf\x00E9", "CreateWindowExA keeps a UTF-8 title");
  Check(user.SetWindowPos(wnd, 0, 3, 4, 60, 25, SWP_NOZORDER | SWP_NOACTIVATE),
        "SetWindowPos succeeds");
  RECT wr{};
  GetWindowRect(WndOf(wnd), &wr);
  Check(wr.left == 3 && wr.top == 4 && wr.right - wr.left == 60 && wr.bottom - wr.top == 25,
        "SetWindowPos moves and sizes the window");
  Check(static_cast<std::uint32_t>(user.GetWindowLongA(wnd, GWL_STYLE)) & WS_POPUP,
        "GetWindowLongA reads the style");
  user.SetWindowLongA(wnd, GWL_EXSTYLE, WS_EX_TOOLWINDOW);
  Check(GetWindowLongW(WndOf(wnd), GWL_EXSTYLE) & WS_EX_TOOLWINDOW, "SetWindowLongA sets the extended style");
  std::intptr_t len = user.SendMessageA(wnd, WM_GETTEXTLENGTH, 0, 0);
  Check(len == 4, "SendMessageA passes the message (" + std::to_string(len) + " characters in ANSI)");
  Check(user.DestroyWindow(wnd) && !IsWindow(WndOf(wnd)), "DestroyWindow");

  korvel::NONCLIENTMETRICSA ncm;
  ncm.cbSize = 340;
  Check(user.SystemParametersInfoA(SPI_GETNONCLIENTMETRICS, 340, &ncm, 0), "SPI_GETNONCLIENTMETRICS");
  NONCLIENTMETRICSW w{};
  w.cbSize = sizeof w;
  SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof w, &w, 0);
  char face[64] = {};
  WideCharToMultiByte(CP_UTF8, 0, w.lfMessageFont.lfFaceName, -1, face, 64, nullptr, nullptr);
  Check(ncm.cbSize == 340 && ncm.lfMessageFont.lfHeight == w.lfMessageFont.lfHeight &&
            std::string(ncm.lfMessageFont.lfFaceName) == face && face[0] != 0 &&
            ncm.iCaptionHeight == w.iCaptionHeight,
        std::string("the message font is the platform's (") + face + ")");

  // The colour dialog, ended by its hook as soon as it opens: the initial colour
  // comes back, and the custom colours are copied both ways.
  korvel::ColorRef custom[16];
  for (int i = 0; i < 16; ++i) custom[i] = korvel::Rgb(i, 2 * i, 3 * i);
  korvel::CHOOSECOLORA cc;
  cc.lStructSize = 36;
  cc.rgbResult = korvel::Rgb(12, 34, 56);
  cc.lpCustColors = custom;
  cc.Flags = CC_RGBINIT | CC_ENABLEHOOK;
  cc.lpfnHook = reinterpret_cast<korvel::Handle>(&CloseOnInit);
  bool ok = p.dialogs().ChooseColorA(&cc);
  Check(ok && cc.rgbResult == korvel::Rgb(12, 34, 56), "ChooseColorA returns the colour of the record");
  Check(custom[15] == korvel::Rgb(15, 30, 45) && custom[1] == korvel::Rgb(1, 2, 3),
        "the custom colours come back unchanged");
}

}  // namespace

int main() {
  Win32Platform p(reinterpret_cast<korvel::Handle>(GetModuleHandleW(nullptr)));
  SurfaceDrawing(p);
  Bitmaps(p);
  Edges(p);
  Text(p);
  SurfaceWindow(p);
  ParkedWindow(p);
  Services(p);
  std::printf("%d passed, %d failed\n", passed, failed);
  return failed == 0 ? 0 : 1;
}
