// GDI on a pixel raster. Handles are small numbers into one object table; stock
// objects are permanent. The semantics follow the platform's: a bitmap can be
// selected into one DC at a time, DeleteObject refuses an object that is selected
// (it stays in use), colour-to-monochrome copies map the source DC's background
// colour to white, monochrome-to-colour copies map black to the destination's text
// colour and white to its background colour. Every pen is drawn one pixel wide,
// whatever width it was made with (the platform draws wider pens as shapes with round
// ends; nothing here draws with them).
#pragma once
#include <array>
#include <map>
#include <memory>
#include <variant>

#include "framework/platform.h"
#include "framework/sys_colors.h"
#include "platform/headless/raster.h"
#include "platform/headless/text_renderer.h"

namespace korvel::headless {

// The classic system colour scheme.
using korvel::ClassicSysColors;

class HeadlessGdi : public Gdi {
 public:
  explicit HeadlessGdi(std::unique_ptr<TextRenderer> text);
  ~HeadlessGdi() override;

  // ---- test and tool access ----
  // Replaces the system colour table (a test can switch schemes).
  void SetSysColors(const std::array<ColorRef, kSysColorCount>& colors) { sys_colors_ = colors; }
  void SetSysColor(int index, ColorRef color) { sys_colors_.at(static_cast<std::size_t>(index)) = color; }
  TextRenderer& text() { return *text_; }
  void SetTextRenderer(std::unique_ptr<TextRenderer> text) { text_ = std::move(text); }
  BitmapObj* Bitmap(Hbitmap h);
  DcObj* Dc(Hdc h);
  // The bitmap currently selected into dc.
  BitmapObj* DcBitmap(Hdc dc);
  // Number of live (not deleted) objects and DCs, stock objects excluded.
  std::size_t LiveObjects() const;
  // Creates a DC with a fresh 32-bit bitmap of width x height selected (a surface).
  Hdc CreateSurfaceDc(int width, int height, ColorRef fill = kWhite);
  // Counts pixel writes made through drawing calls (for redraw measurements).
  std::uint64_t PixelWrites() const { return pixel_writes_; }

  // ---- Gdi ----
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

  // ---- raster primitives shared by the drawing calls ----
  // How a colour that is neither black nor white lands on a monochrome bitmap:
  // kNearest   the nearer of black and white (SetPixel, the text background);
  // kPen       the opposite of the DC's background colour, unless it is that colour
  //            (pens, and the lines DrawEdge draws);
  // kBrush     dithered: white where the colour's grey level (30 R + 59 G + 11 B) / 100
  //            plus the 16 x 16 ordered-dither threshold at the pixel exceeds 255
  //            (solid brushes: FillRect, Rectangle's inside, pattern blits).
  // Pure black and white always stay what they are.
  enum class Paint { kNearest, kPen, kBrush };
  // Writes one pixel of dc's bitmap with the DC's draw mode (clipped).
  void PlotRop2(Hdc dc, int x, int y, ColorRef color, Paint paint = Paint::kPen);
  // Writes one pixel directly (clipped); on a monochrome bitmap the colour is
  // reduced to the nearer of black and white.
  void Plot(BitmapObj& bmp, int x, int y, ColorRef color);
  // Fills a rectangle (right and bottom exclusive) with a colour, clipped.
  void FillSolid(Hdc dc, const Rect& rc, ColorRef color, Paint paint = Paint::kBrush);
  // The colour a pixel at (x, y) of dc's bitmap takes for color painted as paint.
  ColorRef PaintColor(Hdc dc, ColorRef color, Paint paint, int x, int y);
  // A solid brush of a system colour (cached, never deleted).
  Handle SysColorBrush(int index);
  // Converts a colour for a 1-bit target: the nearer of black and white (by the
  // sum of the squared differences of the three components).
  static ColorRef ToMonoNearest(ColorRef c);
  // The area PatBlt covers for rc: a rectangle given right to left or bottom to top
  // covers the columns right + 1 to left (rows bottom + 1 to top), as FillRect does.
  static Rect PatBltArea(const Rect& rc);

  // ---- text helpers for DrawTextA (headless_draw.cpp) ----
  // Draws one run of text at (x, y) in the DC's font, colours and background mode,
  // clipped to clip when it is given.
  void DrawTextRun(Hdc dc, int x, int y, const std::string& run, const Rect* clip);
  // The row of the font's underline below the top of a line (the font's ascent + 1).
  int UnderlineRow(const LOGFONTA& lf);

 private:
  using Object = std::variant<BitmapObj, PenObj, BrushObj, FontObj>;
  Handle NewObject(Object obj);
  Handle NewHandle() { return next_handle_++; }
  LOGFONTA DcFont(Hdc dc);

  std::unique_ptr<TextRenderer> text_;
  std::array<ColorRef, kSysColorCount> sys_colors_;
  std::map<Handle, Object> objects_;
  std::map<Hdc, DcObj> dcs_;
  std::map<int, Handle> stock_;
  std::map<int, Handle> sys_brushes_;
  Handle default_bitmap_ = 0;
  Handle next_handle_ = 0x100;
  std::uint64_t pixel_writes_ = 0;
};

}  // namespace korvel::headless
