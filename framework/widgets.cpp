#include "framework/widgets.h"

#include "framework/brightmoor.h"

namespace korvel {

namespace {

// Selects font into the surface's DC for one drawing call and restores the old one.
class ScopedFont {
 public:
  ScopedFont(Surface& s, const FontRef& font) : s_(s) {
    Gdi& gdi = s.platform().gdi();
    font_ = gdi.CreateFontIndirectA(LogFontOf(font ? *font : Font()));
    old_ = gdi.SelectObject(s.hDC(), font_);
  }
  ~ScopedFont() {
    Gdi& gdi = s_.platform().gdi();
    gdi.SelectObject(s_.hDC(), old_);
    gdi.DeleteObject(font_);
  }

 private:
  Surface& s_;
  Hfont font_ = 0;
  Hgdiobj old_ = 0;
};

void DrawCaption(Surface& s, const std::string& text, Rect rc, const FontRef& font, OleColor color,
                 std::uint32_t format) {
  Platform& p = s.platform();
  Gdi& gdi = p.gdi();
  ScopedFont f(s, font);
  ColorRef old_color = gdi.SetTextColor(s.hDC(), TranslateSysColor(p, color));
  int old_mode = gdi.SetBkMode(s.hDC(), TRANSPARENT);
  gdi.DrawTextA(s.hDC(), text, &rc, format);
  gdi.SetBkMode(s.hDC(), old_mode);
  gdi.SetTextColor(s.hDC(), old_color);
}

}  // namespace

std::string StripMnemonic(const std::string& caption) {
  std::string out;
  for (std::size_t i = 0; i < caption.size(); ++i) {
    if (caption[i] == '&' && i + 1 < caption.size()) ++i;
    else if (caption[i] == '&') continue;
    out += caption[i];
  }
  return out;
}

void Label::Paint(Surface& s) const {
  DrawCaption(s, caption, rect, font, fore_color, alignment | (word_wrap ? DT_WORDBREAK : DT_SINGLELINE));
}

void ImageBox::Paint(Surface& s) const {
  if (picture) s.PaintPicture(picture, static_cast<float>(rect.left), static_cast<float>(rect.top));
}

void CommandButton::Paint(Surface& s) const {
  Platform& p = s.platform();
  Rect face = rect;
  if (is_default) {
    s.Line(static_cast<float>(rect.left), static_cast<float>(rect.top), static_cast<float>(rect.right - 1),
           static_cast<float>(rect.bottom - 1), 0u, true, false);
    face = Rect{rect.left + 1, rect.top + 1, rect.right - 1, rect.bottom - 1};
  }
  DrawEdgeRect(p, s.hDC(), face, static_cast<std::int32_t>(EDGE_RAISED), true);
  if (enabled) {
    DrawCaption(s, caption, face, font, 0x80000012, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
    return;
  }
  // Disabled: the caption embossed, centred as the enabled one is.
  Gdi& gdi = p.gdi();
  ScopedFont f(s, font);
  Size ext;
  gdi.GetTextExtentPoint32A(s.hDC(), StripMnemonic(caption), &ext);
  int x = (face.left + face.right - ext.cx) / 2;
  int y = (face.top + face.bottom - ext.cy) / 2;
  if (!caption.empty()) gdi.DrawStateA(s.hDC(), 0, 0, caption, x, y, 0, 0, DST_PREFIXTEXT | DSS_DISABLED);
}

}  // namespace korvel
