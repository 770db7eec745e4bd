#include "framework/surface.h"

#include <algorithm>

#include <cmath>
#include <cstring>
#include <utility>

#include "framework/arith.h"
#include "framework/brightmoor.h"

namespace korvel {

namespace {
int Px(float v) { return static_cast<int>(RoundHalfEven(v)); }
}  // namespace

LOGFONTA LogFontOf(const Font& font) {
  LOGFONTA lf;
  lf.lfHeight = -static_cast<std::int32_t>(RoundHalfEven(font.Size() * 96.0 / 72.0));
  lf.lfWeight = font.Weight();
  lf.lfItalic = font.Italic() ? 1 : 0;
  lf.lfUnderline = font.Underline() ? 1 : 0;
  lf.lfStrikeOut = font.Strikethrough() ? 1 : 0;
  lf.lfCharSet = static_cast<std::uint8_t>(font.Charset());
  std::strncpy(lf.lfFaceName, font.Name().c_str(), sizeof lf.lfFaceName - 1);
  return lf;
}

Surface::Surface(Platform& platform, Hwnd parent, int width, int height)
    : platform_(platform), site_(platform.CreateSurfaceSite(parent, width, height)),
      font_(std::make_shared<korvel::Font>()) {
  Cls();
}

Surface::~Surface() {
  Gdi& gdi = platform_.gdi();
  if (font_selected_) gdi.SelectObject(hDC(), old_font_);
  if (hfont_) gdi.DeleteObject(hfont_);
}

ColorRef Surface::Translate(OleColor c) { return TranslateSysColor(platform_, c); }

void Surface::Move(int left, int top, int width, int height) {
  const int old_width = site_->PixelWidth();
  const int old_height = site_->PixelHeight();
  site_->Move(left, top, width, height);
  // A persistent image that grows shows its background colour in the new area, as
  // the host's surfaces do, until the owner draws there.
  const int new_width = site_->PixelWidth();
  const int new_height = site_->PixelHeight();
  if (new_width <= old_width && new_height <= old_height) return;
  Gdi& gdi = platform_.gdi();
  Handle brush = gdi.CreateSolidBrush(Translate(back_color_));
  if (new_width > old_width) {
    Rect right{old_width, 0, new_width, new_height};
    gdi.FillRect(hDC(), &right, brush);
  }
  if (new_height > old_height) {
    Rect bottom{0, old_height, std::min(old_width, new_width), new_height};
    gdi.FillRect(hDC(), &bottom, brush);
  }
  gdi.DeleteObject(brush);
}

void Surface::SetToolTipText(const std::string& t) {
  tool_tip_text_ = t;
  site_->SetToolTipText(t);
}

void Surface::SetMousePointer(int p) {
  mouse_pointer_ = p;
  site_->SetMousePointer(p);
}

void Surface::SetBackColor(OleColor c) {
  back_color_ = c;
  Cls();
}

void Surface::SetFont(FontRef f) {
  if (f) font_ = std::move(f);
}

void Surface::SetPicture(PictureRef p) {
  picture_ = std::move(p);
  Cls();
}

void Surface::SelectCurrentFont() {
  Gdi& gdi = platform_.gdi();
  LOGFONTA lf = LogFontOf(*font_);
  if (font_selected_ && std::memcmp(&lf, &selected_lf_, sizeof lf) == 0) return;
  Hfont f = gdi.CreateFontIndirectA(lf);
  Hfont prev = gdi.SelectObject(hDC(), f);
  if (!font_selected_) old_font_ = prev;
  if (hfont_) gdi.DeleteObject(hfont_);
  hfont_ = f;
  selected_lf_ = lf;
  font_selected_ = true;
}

void Surface::Cls() {
  Gdi& gdi = platform_.gdi();
  Rect rc{0, 0, site_->PixelWidth(), site_->PixelHeight()};
  Handle brush = gdi.CreateSolidBrush(Translate(back_color_));
  gdi.FillRect(hDC(), &rc, brush);
  gdi.DeleteObject(brush);
  if (picture_) PaintPicture(picture_, 0, 0);
  current_x_ = 0;
  current_y_ = 0;
}

void Surface::Line(float x1, float y1, float x2, float y2, std::optional<OleColor> color, bool box, bool fill) {
  Gdi& gdi = platform_.gdi();
  Hdc dc = hDC();
  ColorRef c = Translate(color.value_or(fore_color_));
  int old_rop = gdi.SetROP2(dc, draw_mode_);
  Handle pen = gdi.CreatePen(PS_SOLID, draw_width_, c);
  Handle old_pen = gdi.SelectObject(dc, pen);
  int ix1 = Px(x1), iy1 = Px(y1), ix2 = Px(x2), iy2 = Px(y2);
  if (!box) {
    gdi.MoveToEx(dc, ix1, iy1, nullptr);
    gdi.LineTo(dc, ix2, iy2);
  } else {
    if (ix1 > ix2) std::swap(ix1, ix2);
    if (iy1 > iy2) std::swap(iy1, iy2);
    Handle brush;
    if (fill)
      brush = gdi.CreateSolidBrush(c);
    else if (fill_style_ == vbFSSolid)
      brush = gdi.CreateSolidBrush(Translate(fill_color_));
    else
      brush = gdi.GetStockObject(NULL_BRUSH);
    Handle old_brush = gdi.SelectObject(dc, brush);
    gdi.Rectangle(dc, ix1, iy1, ix2 + 1, iy2 + 1);
    gdi.SelectObject(dc, old_brush);
    if (fill || fill_style_ == vbFSSolid) gdi.DeleteObject(brush);
  }
  gdi.SelectObject(dc, old_pen);
  gdi.DeleteObject(pen);
  gdi.SetROP2(dc, old_rop);
  current_x_ = x2;
  current_y_ = y2;
}

void Surface::PSet(float x, float y, std::optional<OleColor> color) {
  platform_.gdi().SetPixel(hDC(), Px(x), Px(y), Translate(color.value_or(fore_color_)));
  current_x_ = x;
  current_y_ = y;
}

void Surface::Print(const std::string& text) {
  Gdi& gdi = platform_.gdi();
  Hdc dc = hDC();
  SelectCurrentFont();
  gdi.SetTextColor(dc, Translate(fore_color_));
  int old_mode = gdi.SetBkMode(dc, font_transparent_ ? TRANSPARENT : OPAQUE);
  ColorRef old_bk = gdi.SetBkColor(dc, Translate(back_color_));
  gdi.TextOutA(dc, Px(current_x_), Px(current_y_), text);
  gdi.SetBkColor(dc, old_bk);
  gdi.SetBkMode(dc, old_mode);
  float h = TextHeight(text);
  current_x_ = 0;
  current_y_ += h;
}

float Surface::TextWidth(const std::string& text) {
  SelectCurrentFont();
  Size s;
  platform_.gdi().GetTextExtentPoint32A(hDC(), text, &s);
  return static_cast<float>(s.cx);
}

float Surface::TextHeight(const std::string& text) {
  SelectCurrentFont();
  Size s;
  platform_.gdi().GetTextExtentPoint32A(hDC(), text.empty() ? std::string(" ") : text, &s);
  return static_cast<float>(s.cy);
}

void Surface::PaintPicture(const PictureRef& picture, float x, float y) {
  if (!picture) return;
  const Image& img = picture->Pixels();
  PaintPicture(picture, x, y, static_cast<float>(img.width), static_cast<float>(img.height));
}

void Surface::PaintPicture(const PictureRef& picture, float x, float y, float width, float height) {
  if (!picture) return;
  Gdi& gdi = platform_.gdi();
  const Image& img = picture->Pixels();
  Hdc src = gdi.CreateCompatibleDC(hDC());
  Handle old = gdi.SelectObject(src, picture->HandleFor(gdi));
  if (picture->Type() == PictureType::Icon && !img.transparent.empty()) {
    // Icons keep the surface where their mask is set: copy pixel by pixel.
    for (int yy = 0; yy < img.height; ++yy)
      for (int xx = 0; xx < img.width; ++xx)
        if (!img.transparent[static_cast<std::size_t>(yy) * img.width + xx])
          gdi.SetPixel(hDC(), Px(x) + xx * Px(width) / std::max(1, img.width),
                       Px(y) + yy * Px(height) / std::max(1, img.height), img.At(xx, yy));
  } else if (Px(width) == img.width && Px(height) == img.height) {
    gdi.BitBlt(hDC(), Px(x), Px(y), img.width, img.height, src, 0, 0, SRCCOPY);
  } else {
    gdi.StretchBlt(hDC(), Px(x), Px(y), Px(width), Px(height), src, 0, 0, img.width, img.height, SRCCOPY);
  }
  gdi.SelectObject(src, old);
  gdi.DeleteDC(src);
}

Image Surface::Snapshot() {
  Gdi& gdi = platform_.gdi();
  Image img(site_->PixelWidth(), site_->PixelHeight());
  for (int y = 0; y < img.height; ++y)
    for (int x = 0; x < img.width; ++x) img.At(x, y) = gdi.GetPixel(hDC(), x, y);
  return img;
}

}  // namespace korvel
