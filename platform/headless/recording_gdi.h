// A Gdi that records every call with its arguments into the platform's call log
// and forwards it to the raster, so tests can assert the exact drawing calls a
// routine makes (flags, raster operations, the order of selections and deletions).
#pragma once
#include "framework/platform.h"
#include "platform/headless/headless_platform.h"

namespace korvel::headless {

class RecordingGdi : public Gdi {
 public:
  RecordingGdi(Gdi& inner, CallLog& log) : inner_(inner), log_(log) {}

  ColorRef GetSysColor(int index) override;
  bool DrawEdge(Hdc dc, Rect* rc, std::uint32_t edge, std::uint32_t flags) override;
  bool DrawStateA(Hdc dc, Handle brush, Handle data, const std::string& text, int x, int y, int cx, int cy,
                  std::uint32_t flags) override;
  int DrawTextA(Hdc dc, const std::string& text, Rect* rc, std::uint32_t format) override;
  Hdc CreateCompatibleDC(Hdc dc) override;
  bool DeleteDC(Hdc dc) override;
  Hbitmap CreateBitmap(int width, int height, unsigned planes, unsigned bpp, const void* bits) override;
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

 private:
  Gdi& inner_;
  CallLog& log_;
};

}  // namespace korvel::headless
