#include "platform/headless/headless_gdi.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace korvel::headless {

ColorRef ApplyRop2(int rop2, ColorRef pen, ColorRef dst) {
  // The R2 code minus one is a truth table indexed by (pen bit << 1) | dest bit.
  std::uint32_t table = static_cast<std::uint32_t>(rop2 - 1) & 0xF;
  ColorRef out = 0;
  for (int idx = 0; idx < 4; ++idx) {
    if (!((table >> idx) & 1)) continue;
    ColorRef p = (idx & 2) ? pen : ~pen;
    ColorRef d = (idx & 1) ? dst : ~dst;
    out |= p & d;
  }
  return out & 0xFFFFFF;
}

ColorRef ApplyRop3(std::uint32_t rop, ColorRef pattern, ColorRef src, ColorRef dst) {
  // The code's third byte is a truth table indexed by (P << 2) | (S << 1) | D.
  std::uint32_t table = (rop >> 16) & 0xFF;
  ColorRef out = 0;
  for (int idx = 0; idx < 8; ++idx) {
    if (!((table >> idx) & 1)) continue;
    ColorRef p = (idx & 4) ? pattern : ~pattern;
    ColorRef s = (idx & 2) ? src : ~src;
    ColorRef d = (idx & 1) ? dst : ~dst;
    out |= p & s & d;
  }
  return out & 0xFFFFFF;
}

HeadlessGdi::HeadlessGdi(std::unique_ptr<TextRenderer> text)
    : text_(std::move(text)), sys_colors_(ClassicSysColors()) {
  auto stock = [this](int index, Object obj) {
    Handle h = NewObject(std::move(obj));
    stock_[index] = h;
  };
  stock(WHITE_BRUSH, BrushObj{false, kWhite});
  stock(BLACK_BRUSH, BrushObj{false, kBlack});
  stock(NULL_BRUSH, BrushObj{true, 0});
  stock(WHITE_PEN, PenObj{PS_SOLID, 1, kWhite});
  stock(BLACK_PEN, PenObj{PS_SOLID, 1, kBlack});
  stock(NULL_PEN, PenObj{PS_NULL, 1, 0});
  LOGFONTA system_font;
  system_font.lfHeight = -11;
  system_font.lfWeight = 700;
  std::strcpy(system_font.lfFaceName, "System");
  stock(13 /* SYSTEM_FONT */, FontObj{system_font});
  // The 1 x 1 monochrome bitmap every new memory DC holds.
  BitmapObj one;
  one.width = 1;
  one.height = 1;
  one.mono = true;
  one.px.assign(1, kBlack);
  default_bitmap_ = NewObject(std::move(one));
}

HeadlessGdi::~HeadlessGdi() = default;

Handle HeadlessGdi::NewObject(Object obj) {
  Handle h = NewHandle();
  objects_.emplace(h, std::move(obj));
  return h;
}

BitmapObj* HeadlessGdi::Bitmap(Hbitmap h) {
  auto it = objects_.find(h);
  if (it == objects_.end()) return nullptr;
  return std::get_if<BitmapObj>(&it->second);
}

DcObj* HeadlessGdi::Dc(Hdc h) {
  auto it = dcs_.find(h);
  return it == dcs_.end() ? nullptr : &it->second;
}

BitmapObj* HeadlessGdi::DcBitmap(Hdc dc) {
  DcObj* d = Dc(dc);
  return d ? Bitmap(d->bitmap) : nullptr;
}

std::size_t HeadlessGdi::LiveObjects() const {
  std::size_t n = objects_.size() + dcs_.size();
  n -= stock_.size() + sys_brushes_.size() + 1;  // stock objects, system brushes, default bitmap
  return n;
}

Hdc HeadlessGdi::CreateSurfaceDc(int width, int height, ColorRef fill) {
  Hdc dc = CreateCompatibleDC(0);
  Hbitmap bmp = CreateBitmap(width, height, 1, 32, nullptr);
  BitmapObj* b = Bitmap(bmp);
  std::fill(b->px.begin(), b->px.end(), fill);
  SelectObject(dc, bmp);
  return dc;
}

ColorRef HeadlessGdi::GetSysColor(int index) {
  if (index < 0 || index >= kSysColorCount) return 0;
  return sys_colors_[static_cast<std::size_t>(index)];
}

Handle HeadlessGdi::SysColorBrush(int index) {
  auto it = sys_brushes_.find(index);
  if (it != sys_brushes_.end()) {
    std::get<BrushObj>(objects_[it->second]).color = GetSysColor(index);
    return it->second;
  }
  Handle h = NewObject(BrushObj{false, GetSysColor(index)});
  sys_brushes_[index] = h;
  return h;
}

ColorRef HeadlessGdi::ToMonoNearest(ColorRef c) {
  auto sq = [](int v) { return v * v; };
  int to_black = sq(RedOf(c)) + sq(GreenOf(c)) + sq(BlueOf(c));
  int to_white = sq(255 - RedOf(c)) + sq(255 - GreenOf(c)) + sq(255 - BlueOf(c));
  return to_white < to_black ? kWhite : kBlack;  // never equal for whole components
}

Rect HeadlessGdi::PatBltArea(const Rect& rc) {
  Rect a = rc;
  if (a.right < a.left) a = Rect{a.right + 1, a.top, a.left + 1, a.bottom};
  if (a.bottom < a.top) a = Rect{a.left, a.bottom + 1, a.right, a.top + 1};
  return a;
}

namespace {

// The ordered-dither thresholds (a 16 x 16 Bayer matrix: each entry is the
// previous size's entry times four plus the quadrant's offset 0, 2, 3, 1).
int DitherThreshold(int x, int y) {
  int t = 0;
  for (int bit = 3; bit >= 0; --bit) {
    int xb = (x >> (3 - bit)) & 1, yb = (y >> (3 - bit)) & 1;
    int q = yb ? (xb ? 1 : 3) : (xb ? 2 : 0);
    t |= q << (2 * bit);
  }
  return t;
}

}  // namespace

ColorRef HeadlessGdi::PaintColor(Hdc dc, ColorRef color, Paint paint, int x, int y) {
  color &= 0xFFFFFF;
  BitmapObj* b = DcBitmap(dc);
  if (!b || !b->mono || color == kBlack || color == kWhite) return color;
  switch (paint) {
    case Paint::kNearest:
      return ToMonoNearest(color);
    case Paint::kPen: {
      DcObj* d = Dc(dc);
      ColorRef bk = d ? d->bk_color : kWhite;
      ColorRef bk_mono = ToMonoNearest(bk);
      if (color == bk) return bk_mono;
      return bk_mono == kWhite ? kBlack : kWhite;
    }
    case Paint::kBrush: {
      int grey = (30 * RedOf(color) + 59 * GreenOf(color) + 11 * BlueOf(color)) / 100;
      return grey + DitherThreshold(((x % 16) + 16) % 16, ((y % 16) + 16) % 16) > 255 ? kWhite : kBlack;
    }
  }
  return color;
}

Hdc HeadlessGdi::CreateCompatibleDC(Hdc) {
  Hdc h = NewHandle();
  DcObj dc;
  dc.bitmap = default_bitmap_;
  dc.pen = stock_[BLACK_PEN];
  dc.brush = stock_[WHITE_BRUSH];
  dc.font = stock_[13];
  dcs_.emplace(h, dc);
  return h;
}

bool HeadlessGdi::DeleteDC(Hdc dc) {
  DcObj* d = Dc(dc);
  if (!d) return false;
  if (BitmapObj* b = Bitmap(d->bitmap); b && d->bitmap != default_bitmap_) b->selected_in = 0;
  dcs_.erase(dc);
  return true;
}

Hbitmap HeadlessGdi::CreateBitmap(int width, int height, unsigned planes, unsigned bpp, const void* bits) {
  if (width <= 0 || height <= 0 || planes != 1) {
    if (width == 0 || height == 0) return default_bitmap_;
    return 0;
  }
  BitmapObj b;
  b.width = width;
  b.height = height;
  b.mono = bpp == 1;
  b.px.assign(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), kBlack);
  if (bits) {
    const auto* p = static_cast<const std::uint8_t*>(bits);
    if (b.mono) {
      // Rows are padded to 16 bits, as the platform's CreateBitmap expects.
      std::size_t stride = ((static_cast<std::size_t>(width) + 15) / 16) * 2;
      for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
          b.At(x, y) = ((p[y * stride + x / 8] >> (7 - x % 8)) & 1) ? kWhite : kBlack;
    } else if (bpp == 32) {
      for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
          const std::uint8_t* q = p + (static_cast<std::size_t>(y) * width + x) * 4;
          b.At(x, y) = Rgb(q[2], q[1], q[0]);
        }
    }
  }
  return NewObject(std::move(b));
}

Hbitmap HeadlessGdi::CreateCompatibleBitmap(Hdc dc, int width, int height) {
  BitmapObj* cur = DcBitmap(dc);
  bool mono = cur ? cur->mono : false;
  return CreateBitmap(width, height, 1, mono ? 1 : 32, nullptr);
}

Handle HeadlessGdi::CreatePen(int style, int width, ColorRef color) {
  return NewObject(PenObj{style, width, color & 0xFFFFFF});
}

Handle HeadlessGdi::CreateSolidBrush(ColorRef color) { return NewObject(BrushObj{false, color & 0xFFFFFF}); }

Hfont HeadlessGdi::CreateFontIndirectA(const LOGFONTA& lf) { return NewObject(FontObj{lf}); }

Handle HeadlessGdi::GetStockObject(int index) {
  auto it = stock_.find(index);
  return it == stock_.end() ? 0 : it->second;
}

Hgdiobj HeadlessGdi::SelectObject(Hdc dc, Hgdiobj obj) {
  DcObj* d = Dc(dc);
  auto it = objects_.find(obj);
  if (!d || it == objects_.end()) return 0;
  Object& o = it->second;
  if (auto* b = std::get_if<BitmapObj>(&o)) {
    if (b->selected_in && b->selected_in != dc && obj != default_bitmap_) return 0;  // in another DC
    Handle old = d->bitmap;
    if (BitmapObj* ob = Bitmap(old); ob && old != default_bitmap_) ob->selected_in = 0;
    if (obj != default_bitmap_) b->selected_in = dc;
    d->bitmap = obj;
    return old;
  }
  if (std::holds_alternative<PenObj>(o)) return std::exchange(d->pen, obj);
  if (std::holds_alternative<BrushObj>(o)) return std::exchange(d->brush, obj);
  if (std::holds_alternative<FontObj>(o)) return std::exchange(d->font, obj);
  return 0;
}

bool HeadlessGdi::DeleteObject(Hgdiobj obj) {
  auto it = objects_.find(obj);
  if (it == objects_.end()) return false;
  for (const auto& [i, h] : stock_)
    if (h == obj) return true;  // stock objects are never deleted
  if (obj == default_bitmap_) return true;
  for (const auto& [i, h] : sys_brushes_)
    if (h == obj) return true;
  if (auto* b = std::get_if<BitmapObj>(&it->second); b && b->selected_in) return false;  // still in use
  for (const auto& [h, d] : dcs_)
    if (d.pen == obj || d.brush == obj || d.font == obj) return false;
  objects_.erase(it);
  return true;
}

ColorRef HeadlessGdi::SetBkColor(Hdc dc, ColorRef color) {
  DcObj* d = Dc(dc);
  if (!d) return 0xFFFFFFFF;
  return std::exchange(d->bk_color, color & 0xFFFFFF);
}

ColorRef HeadlessGdi::GetBkColor(Hdc dc) {
  DcObj* d = Dc(dc);
  return d ? d->bk_color : 0xFFFFFFFF;
}

ColorRef HeadlessGdi::SetTextColor(Hdc dc, ColorRef color) {
  DcObj* d = Dc(dc);
  if (!d) return 0xFFFFFFFF;
  return std::exchange(d->text_color, color & 0xFFFFFF);
}

int HeadlessGdi::SetBkMode(Hdc dc, int mode) {
  DcObj* d = Dc(dc);
  if (!d) return 0;
  return std::exchange(d->bk_mode, mode);
}

int HeadlessGdi::SetROP2(Hdc dc, int rop2) {
  DcObj* d = Dc(dc);
  if (!d || rop2 < 1 || rop2 > 16) return 0;
  return std::exchange(d->rop2, rop2);
}

void HeadlessGdi::Plot(BitmapObj& bmp, int x, int y, ColorRef color) {
  if (!bmp.Inside(x, y)) return;
  bmp.At(x, y) = bmp.mono ? ToMonoNearest(color) : (color & 0xFFFFFF);
  ++pixel_writes_;
}

void HeadlessGdi::PlotRop2(Hdc dc, int x, int y, ColorRef color, Paint paint) {
  DcObj* d = Dc(dc);
  BitmapObj* b = d ? Bitmap(d->bitmap) : nullptr;
  if (!b || !b->Inside(x, y)) return;
  Plot(*b, x, y, ApplyRop2(d->rop2, PaintColor(dc, color, paint, x, y), b->At(x, y)));
}

void HeadlessGdi::FillSolid(Hdc dc, const Rect& rc, ColorRef color, Paint paint) {
  BitmapObj* b = DcBitmap(dc);
  if (!b) return;
  int l = std::max(0, rc.left), t = std::max(0, rc.top);
  int r = std::min(b->width, rc.right), bo = std::min(b->height, rc.bottom);
  for (int y = t; y < bo; ++y)
    for (int x = l; x < r; ++x) Plot(*b, x, y, PaintColor(dc, color, paint, x, y));
}

bool HeadlessGdi::BitBlt(Hdc dst, int x, int y, int cx, int cy, Hdc src, int x1, int y1, std::uint32_t rop) {
  DcObj* dd = Dc(dst);
  BitmapObj* db = dd ? Bitmap(dd->bitmap) : nullptr;
  if (!db) return false;
  bool uses_source = (((rop >> 2) ^ rop) & 0x330000) != 0;
  DcObj* sd = uses_source ? Dc(src) : nullptr;
  BitmapObj* sb = sd ? Bitmap(sd->bitmap) : nullptr;
  if (uses_source && !sb) return false;
  ColorRef pattern = 0;
  if (auto it = objects_.find(dd->brush); it != objects_.end())
    if (auto* br = std::get_if<BrushObj>(&it->second)) pattern = br->null ? 0 : br->color;
  // Copy the source block first so that overlapping copies within one bitmap work.
  std::vector<ColorRef> block;
  if (sb) {
    block.resize(static_cast<std::size_t>(std::max(cx, 0)) * static_cast<std::size_t>(std::max(cy, 0)));
    for (int j = 0; j < cy; ++j)
      for (int i = 0; i < cx; ++i) {
        int sx = x1 + i, sy = y1 + j;
        ColorRef s = sb->Inside(sx, sy) ? sb->At(sx, sy) : kBlack;
        if (!sb->mono && db->mono) s = (s == sd->bk_color) ? kWhite : kBlack;         // colour to mono
        else if (sb->mono && !db->mono) s = (s == kWhite) ? dd->bk_color : dd->text_color;  // mono to colour
        block[static_cast<std::size_t>(j) * cx + i] = s;
      }
  }
  for (int j = 0; j < cy; ++j)
    for (int i = 0; i < cx; ++i) {
      int tx = x + i, ty = y + j;
      if (!db->Inside(tx, ty)) continue;
      if (sb && !sb->Inside(x1 + i, y1 + j)) continue;
      ColorRef s = sb ? block[static_cast<std::size_t>(j) * cx + i] : 0;
      ColorRef p = PaintColor(dst, pattern, Paint::kBrush, tx, ty);
      Plot(*db, tx, ty, ApplyRop3(rop, p, s, db->At(tx, ty)));
    }
  return true;
}

bool HeadlessGdi::MoveToEx(Hdc dc, int x, int y, Point* old) {
  DcObj* d = Dc(dc);
  if (!d) return false;
  if (old) *old = d->pos;
  d->pos = {x, y};
  return true;
}

bool HeadlessGdi::LineTo(Hdc dc, int x, int y) {
  DcObj* d = Dc(dc);
  if (!d) return false;
  PenObj pen;
  if (auto it = objects_.find(d->pen); it != objects_.end())
    if (auto* p = std::get_if<PenObj>(&it->second)) pen = *p;
  int x0 = d->pos.x, y0 = d->pos.y;
  d->pos = {x, y};
  if (pen.style == PS_NULL) return true;
  // The last point is not drawn.
  WalkLine(x0, y0, x, y, [&](int px, int py) { PlotRop2(dc, px, py, pen.color, Paint::kPen); });
  return true;
}

bool HeadlessGdi::Rectangle(Hdc dc, int left, int top, int right, int bottom) {
  DcObj* d = Dc(dc);
  if (!d) return false;
  if (left > right) std::swap(left, right);
  if (top > bottom) std::swap(top, bottom);
  PenObj pen;
  if (auto it = objects_.find(d->pen); it != objects_.end())
    if (auto* p = std::get_if<PenObj>(&it->second)) pen = *p;
  BrushObj brush{true, 0};
  if (auto it = objects_.find(d->brush); it != objects_.end())
    if (auto* b = std::get_if<BrushObj>(&it->second)) brush = *b;
  bool has_pen = pen.style != PS_NULL;
  // The outline is a closed figure through the four corners (right - 1, bottom - 1
  // inclusive), each side drawn without its last point: a 1 x 1 figure has sides of
  // no length and draws nothing.
  if (has_pen && right - left == 1 && bottom - top == 1) return true;
  // With a pen the figure covers left..right-1; without one the platform fills one
  // pixel less on the right and bottom.
  int r = has_pen ? right : right - 1;
  int b = has_pen ? bottom : bottom - 1;
  for (int y = top; y < b; ++y)
    for (int x = left; x < r; ++x) {
      bool edge = has_pen && (x == left || y == top || x == r - 1 || y == b - 1);
      if (edge)
        PlotRop2(dc, x, y, pen.color, Paint::kPen);
      else if (!brush.null)
        PlotRop2(dc, x, y, brush.color, Paint::kBrush);
    }
  return true;
}

int HeadlessGdi::FillRect(Hdc dc, const Rect* rc, Handle brush) {
  if (!rc) return 0;
  ColorRef color = 0;
  // A brush value of COLOR_* + 1 stands for that system colour's brush.
  if (brush > 0 && brush <= static_cast<Handle>(kSysColorCount)) {
    color = GetSysColor(static_cast<int>(brush) - 1);
  } else {
    auto it = objects_.find(brush);
    if (it == objects_.end()) return 0;
    auto* b = std::get_if<BrushObj>(&it->second);
    if (!b) return 0;
    if (b->null) return 1;
    color = b->color;
  }
  FillSolid(dc, PatBltArea(*rc), color, Paint::kBrush);
  return 1;
}

ColorRef HeadlessGdi::SetPixel(Hdc dc, int x, int y, ColorRef color) {
  BitmapObj* b = DcBitmap(dc);
  if (!b || !b->Inside(x, y)) return 0xFFFFFFFF;
  Plot(*b, x, y, color);
  return b->At(x, y);
}

ColorRef HeadlessGdi::GetPixel(Hdc dc, int x, int y) {
  BitmapObj* b = DcBitmap(dc);
  if (!b || !b->Inside(x, y)) return 0xFFFFFFFF;
  return b->At(x, y);
}

LOGFONTA HeadlessGdi::DcFont(Hdc dc) {
  DcObj* d = Dc(dc);
  if (d)
    if (auto it = objects_.find(d->font); it != objects_.end())
      if (auto* f = std::get_if<FontObj>(&it->second)) return f->lf;
  return LOGFONTA{};
}

bool HeadlessGdi::TextOutA(Hdc dc, int x, int y, const std::string& text) {
  DcObj* d = Dc(dc);
  BitmapObj* b = d ? Bitmap(d->bitmap) : nullptr;
  if (!b) return false;
  LOGFONTA lf = DcFont(dc);
  if (d->bk_mode == OPAQUE) {
    Size s = text_->Measure(lf, text);
    FillSolid(dc, Rect{x, y, x + s.cx, y + s.cy}, d->bk_color, Paint::kNearest);
  }
  text_->Draw(*b, x, y, lf, text, d->text_color);
  return true;
}

bool HeadlessGdi::GetTextExtentPoint32A(Hdc dc, const std::string& text, Size* size) {
  if (!size || !Dc(dc)) return false;
  *size = text_->Measure(DcFont(dc), text);
  return true;
}

Hbitmap HeadlessGdi::CreateBitmapFromImage(const Image& image) {
  Hbitmap h = CreateBitmap(image.width, image.height, 1, 32, nullptr);
  if (BitmapObj* b = Bitmap(h)) b->px = image.pixels;
  return h;
}

Image HeadlessGdi::ImageOfBitmap(Hbitmap bitmap) {
  BitmapObj* b = Bitmap(bitmap);
  if (!b) return Image();
  Image img(b->width, b->height);
  img.pixels = b->px;
  return img;
}

}  // namespace korvel::headless
