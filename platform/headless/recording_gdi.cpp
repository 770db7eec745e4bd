#include "platform/headless/recording_gdi.h"

namespace korvel::headless {

namespace {
std::string S(long long v) { return std::to_string(v); }
std::string H(Handle h) { return S(static_cast<long long>(h)); }
std::string R(const Rect* rc) {
  if (!rc) return "null";
  return "(" + S(rc->left) + ", " + S(rc->top) + ", " + S(rc->right) + ", " + S(rc->bottom) + ")";
}
std::string B(bool b) { return b ? "1" : "0"; }
}  // namespace

// Queries (GetSysColor, GetPixel, GetBkColor, text extents) are forwarded without a record.
ColorRef RecordingGdi::GetSysColor(int index) { return inner_.GetSysColor(index); }

bool RecordingGdi::DrawEdge(Hdc dc, Rect* rc, std::uint32_t edge, std::uint32_t flags) {
  std::string r = R(rc);
  bool ok = inner_.DrawEdge(dc, rc, edge, flags);
  log_.Add("DrawEdge(" + H(dc) + ", " + r + ", " + S(edge) + ", " + Hex(flags) + ") = " + B(ok));
  return ok;
}

bool RecordingGdi::DrawStateA(Hdc dc, Handle brush, Handle data, const std::string& text, int x, int y, int cx,
                              int cy, std::uint32_t flags) {
  bool ok = inner_.DrawStateA(dc, brush, data, text, x, y, cx, cy, flags);
  log_.Add("DrawStateA(" + H(dc) + ", " + H(brush) + ", " + H(data) + ", " + Quote(text) + ", " + S(x) + ", " +
           S(y) + ", " + S(cx) + ", " + S(cy) + ", " + Hex(flags) + ") = " + B(ok));
  return ok;
}

int RecordingGdi::DrawTextA(Hdc dc, const std::string& text, Rect* rc, std::uint32_t format) {
  std::string r = R(rc);
  int h = inner_.DrawTextA(dc, text, rc, format);
  log_.Add("DrawTextA(" + H(dc) + ", " + Quote(text) + ", " + r + ", " + Hex(format) + ") = " + S(h));
  return h;
}

Hdc RecordingGdi::CreateCompatibleDC(Hdc dc) {
  Hdc h = inner_.CreateCompatibleDC(dc);
  log_.Add("CreateCompatibleDC(" + H(dc) + ") = " + H(h));
  return h;
}

bool RecordingGdi::DeleteDC(Hdc dc) {
  bool ok = inner_.DeleteDC(dc);
  log_.Add("DeleteDC(" + H(dc) + ") = " + B(ok));
  return ok;
}

Hbitmap RecordingGdi::CreateBitmap(int width, int height, unsigned planes, unsigned bpp, const void* bits) {
  Hbitmap h = inner_.CreateBitmap(width, height, planes, bpp, bits);
  log_.Add("CreateBitmap(" + S(width) + ", " + S(height) + ", " + S(planes) + ", " + S(bpp) + ", " +
           (bits ? "bits" : "null") + ") = " + H(h));
  return h;
}

Hbitmap RecordingGdi::CreateCompatibleBitmap(Hdc dc, int width, int height) {
  Hbitmap h = inner_.CreateCompatibleBitmap(dc, width, height);
  log_.Add("CreateCompatibleBitmap(" + H(dc) + ", " + S(width) + ", " + S(height) + ") = " + H(h));
  return h;
}

Handle RecordingGdi::CreatePen(int style, int width, ColorRef color) {
  Handle h = inner_.CreatePen(style, width, color);
  log_.Add("CreatePen(" + S(style) + ", " + S(width) + ", " + Hex(color) + ") = " + H(h));
  return h;
}

Handle RecordingGdi::CreateSolidBrush(ColorRef color) {
  Handle h = inner_.CreateSolidBrush(color);
  log_.Add("CreateSolidBrush(" + Hex(color) + ") = " + H(h));
  return h;
}

Hfont RecordingGdi::CreateFontIndirectA(const LOGFONTA& lf) {
  Hfont h = inner_.CreateFontIndirectA(lf);
  log_.Add("CreateFontIndirectA(" + Quote(lf.lfFaceName) + ", " + S(lf.lfHeight) + ", " + S(lf.lfWeight) + ") = " +
           H(h));
  return h;
}

Handle RecordingGdi::GetStockObject(int index) { return inner_.GetStockObject(index); }

Hgdiobj RecordingGdi::SelectObject(Hdc dc, Hgdiobj obj) {
  Hgdiobj old = inner_.SelectObject(dc, obj);
  log_.Add("SelectObject(" + H(dc) + ", " + H(obj) + ") = " + H(old));
  return old;
}

bool RecordingGdi::DeleteObject(Hgdiobj obj) {
  bool ok = inner_.DeleteObject(obj);
  log_.Add("DeleteObject(" + H(obj) + ") = " + B(ok));
  return ok;
}

ColorRef RecordingGdi::SetBkColor(Hdc dc, ColorRef color) {
  ColorRef old = inner_.SetBkColor(dc, color);
  log_.Add("SetBkColor(" + H(dc) + ", " + Hex(color) + ") = " + Hex(old));
  return old;
}

ColorRef RecordingGdi::GetBkColor(Hdc dc) { return inner_.GetBkColor(dc); }

ColorRef RecordingGdi::SetTextColor(Hdc dc, ColorRef color) {
  ColorRef old = inner_.SetTextColor(dc, color);
  log_.Add("SetTextColor(" + H(dc) + ", " + Hex(color) + ") = " + Hex(old));
  return old;
}

int RecordingGdi::SetBkMode(Hdc dc, int mode) {
  int old = inner_.SetBkMode(dc, mode);
  log_.Add("SetBkMode(" + H(dc) + ", " + S(mode) + ") = " + S(old));
  return old;
}

int RecordingGdi::SetROP2(Hdc dc, int rop2) {
  int old = inner_.SetROP2(dc, rop2);
  log_.Add("SetROP2(" + H(dc) + ", " + S(rop2) + ") = " + S(old));
  return old;
}

bool RecordingGdi::BitBlt(Hdc dst, int x, int y, int cx, int cy, Hdc src, int x1, int y1, std::uint32_t rop) {
  bool ok = inner_.BitBlt(dst, x, y, cx, cy, src, x1, y1, rop);
  log_.Add("BitBlt(" + H(dst) + ", " + S(x) + ", " + S(y) + ", " + S(cx) + ", " + S(cy) + ", " + H(src) + ", " +
           S(x1) + ", " + S(y1) + ", " + Hex(rop) + ") = " + B(ok));
  return ok;
}

bool RecordingGdi::StretchBlt(Hdc dst, int x, int y, int cx, int cy, Hdc src, int xs, int ys, int cxs, int cys,
                              std::uint32_t rop) {
  bool ok = inner_.StretchBlt(dst, x, y, cx, cy, src, xs, ys, cxs, cys, rop);
  log_.Add("StretchBlt(" + H(dst) + ", " + S(x) + ", " + S(y) + ", " + S(cx) + ", " + S(cy) + ", " + H(src) + ", " +
           S(xs) + ", " + S(ys) + ", " + S(cxs) + ", " + S(cys) + ", " + Hex(rop) + ") = " + B(ok));
  return ok;
}

bool RecordingGdi::MoveToEx(Hdc dc, int x, int y, Point* old) {
  bool ok = inner_.MoveToEx(dc, x, y, old);
  log_.Add("MoveToEx(" + H(dc) + ", " + S(x) + ", " + S(y) + ")");
  return ok;
}

bool RecordingGdi::LineTo(Hdc dc, int x, int y) {
  bool ok = inner_.LineTo(dc, x, y);
  log_.Add("LineTo(" + H(dc) + ", " + S(x) + ", " + S(y) + ")");
  return ok;
}

bool RecordingGdi::Rectangle(Hdc dc, int left, int top, int right, int bottom) {
  bool ok = inner_.Rectangle(dc, left, top, right, bottom);
  log_.Add("Rectangle(" + H(dc) + ", " + S(left) + ", " + S(top) + ", " + S(right) + ", " + S(bottom) + ")");
  return ok;
}

int RecordingGdi::FillRect(Hdc dc, const Rect* rc, Handle brush) {
  int r = inner_.FillRect(dc, rc, brush);
  log_.Add("FillRect(" + H(dc) + ", " + R(rc) + ", " + H(brush) + ")");
  return r;
}

ColorRef RecordingGdi::SetPixel(Hdc dc, int x, int y, ColorRef color) {
  ColorRef c = inner_.SetPixel(dc, x, y, color);
  log_.Add("SetPixel(" + H(dc) + ", " + S(x) + ", " + S(y) + ", " + Hex(color) + ")");
  return c;
}

ColorRef RecordingGdi::GetPixel(Hdc dc, int x, int y) { return inner_.GetPixel(dc, x, y); }

bool RecordingGdi::TextOutA(Hdc dc, int x, int y, const std::string& text) {
  bool ok = inner_.TextOutA(dc, x, y, text);
  log_.Add("TextOutA(" + H(dc) + ", " + S(x) + ", " + S(y) + ", " + Quote(text) + ")");
  return ok;
}

bool RecordingGdi::GetTextExtentPoint32A(Hdc dc, const std::string& text, Size* size) {
  return inner_.GetTextExtentPoint32A(dc, text, size);
}

Hbitmap RecordingGdi::CreateBitmapFromImage(const Image& image) {
  Hbitmap h = inner_.CreateBitmapFromImage(image);
  log_.Add("CreateBitmapFromImage(" + S(image.width) + ", " + S(image.height) + ") = " + H(h));
  return h;
}

Image RecordingGdi::ImageOfBitmap(Hbitmap bitmap) { return inner_.ImageOfBitmap(bitmap); }

}  // namespace korvel::headless
