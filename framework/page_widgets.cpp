#include "framework/page_widgets.h"

#include <algorithm>

#include "framework/brightmoor.h"
#include "framework/widgets.h"

namespace korvel {

namespace {

constexpr OleColor kWindow = 0x80000005;
constexpr OleColor kWindowText = 0x80000008;
constexpr OleColor kHighlight = 0x8000000D;
constexpr OleColor kHighlightText = 0x8000000E;
constexpr OleColor kButtonFace = 0x8000000F;
constexpr OleColor kGrayText = 0x80000011;
constexpr OleColor kButtonText = 0x80000012;

// The field's font selected into the surface's DC while it draws, with the text
// colour and a transparent background.
class DrawScope {
 public:
  DrawScope(Surface& s, const FontRef& font) : s_(s), gdi_(s.platform().gdi()) {
    font_ = gdi_.CreateFontIndirectA(LogFontOf(font ? *font : Font()));
    old_font_ = gdi_.SelectObject(s.hDC(), font_);
    old_text_ = gdi_.SetTextColor(s.hDC(), Sys(kButtonText));
    old_mode_ = gdi_.SetBkMode(s.hDC(), TRANSPARENT);
  }
  ~DrawScope() {
    gdi_.SetBkMode(s_.hDC(), old_mode_);
    gdi_.SetTextColor(s_.hDC(), old_text_);
    gdi_.SelectObject(s_.hDC(), old_font_);
    gdi_.DeleteObject(font_);
  }
  Gdi& gdi() { return gdi_; }
  Hdc dc() { return s_.hDC(); }
  ColorRef Sys(OleColor c) { return TranslateSysColor(s_.platform(), c); }
  void Fill(const Rect& rc, OleColor color) {
    Handle brush = gdi_.CreateSolidBrush(Sys(color));
    gdi_.FillRect(dc(), &rc, brush);
    gdi_.DeleteObject(brush);
  }
  void Text(const std::string& text, Rect rc, OleColor color, std::uint32_t format) {
    gdi_.SetTextColor(dc(), Sys(color));
    gdi_.DrawTextA(dc(), text, &rc, format);
  }
  // A caption in the disabled look: embossed, with its mnemonic underlined.
  void DisabledText(const std::string& text, int x, int y) {
    if (!text.empty()) gdi_.DrawStateA(dc(), 0, 0, text, x, y, 0, 0, DST_PREFIXTEXT | DSS_DISABLED);
  }
  int TextWidth(const std::string& text) {
    Size sz;
    gdi_.GetTextExtentPoint32A(dc(), text, &sz);
    return sz.cx;
  }
  int TextHeight() {
    Size sz;
    gdi_.GetTextExtentPoint32A(dc(), "Ag", &sz);
    return sz.cy;
  }

 private:
  Surface& s_;
  Gdi& gdi_;
  Hfont font_ = 0;
  Hgdiobj old_font_ = 0;
  ColorRef old_text_ = 0;
  int old_mode_ = OPAQUE;
};

// The sunken, filled well of an edit field or list: returns the area inside the edge.
Rect SunkenWell(Surface& s, DrawScope& d, const Rect& rc, bool enabled) {
  DrawEdgeRect(s.platform(), s.hDC(), rc, static_cast<std::int32_t>(EDGE_SUNKEN), false);
  Rect inner{rc.left + 2, rc.top + 2, rc.right - 2, rc.bottom - 2};
  d.Fill(inner, enabled ? kWindow : kButtonFace);
  return inner;
}

}  // namespace

// ---- focus ----

void FocusableField::SetEnabled(bool enabled) {
  enabled_ = enabled;
  if (!enabled && HasFocus()) scope_->owner = nullptr;
}

bool FocusableField::SetFocus() {
  if (!enabled_ || !scope_) return false;
  scope_->owner = this;
  return true;
}

// ---- text box ----

void TextBox::SetText(const std::string& text) {
  bool changed = text != text_;
  text_ = text;
  sel_start_ = 0;
  sel_length_ = 0;
  if (changed && on_change) on_change();
}

void TextBox::SetSelStart(std::int32_t start) {
  sel_start_ = std::clamp<std::int32_t>(start, 0, static_cast<std::int32_t>(text_.size()));
  sel_length_ = 0;
}

void TextBox::SetSelLength(std::int32_t length) {
  sel_length_ = std::clamp<std::int32_t>(length, 0, static_cast<std::int32_t>(text_.size()) - sel_start_);
}

void TextBox::Type(const std::string& typed) {
  if (!enabled_) return;
  std::string old = text_;
  text_ = text_.substr(0, sel_start_) + typed + text_.substr(sel_start_ + sel_length_);
  sel_start_ += static_cast<std::int32_t>(typed.size());
  sel_length_ = 0;
  if (text_ != old && on_change) on_change();
}

void TextBox::Paint(Surface& s) const {
  DrawScope d(s, font);
  Rect inner = SunkenWell(s, d, rect, enabled_);
  Rect text_rc{inner.left + 2, inner.top + 1, inner.right - 1, inner.bottom - 1};
  constexpr std::uint32_t kFormat = DT_LEFT | DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX;
  d.Text(text_, text_rc, enabled_ ? kWindowText : kGrayText, kFormat);
  if (!HasFocus()) return;
  int x0 = text_rc.left + d.TextWidth(text_.substr(0, sel_start_));
  int h = d.TextHeight();
  int top = (text_rc.top + text_rc.bottom - h) / 2;
  if (sel_length_ > 0) {
    std::string sel = SelText();
    Rect hi{x0, top, std::min<std::int32_t>(x0 + d.TextWidth(sel), text_rc.right), top + h};
    d.Fill(hi, kHighlight);
    d.Text(sel, Rect{x0, text_rc.top, text_rc.right, text_rc.bottom}, kHighlightText, kFormat);
  } else {
    d.Fill(Rect{x0, top, x0 + 1, top + h}, kWindowText);  // the caret
  }
}

// ---- drop-down list ----

void ComboBox::Clear() {
  items_.clear();
  list_index_ = -1;
}

std::string ComboBox::List(std::int32_t index) const {
  if (index < 0 || index >= ListCount()) return std::string();
  return items_[static_cast<std::size_t>(index)];
}

void ComboBox::SetListIndex(std::int32_t index) {
  if (index < -1 || index >= ListCount() || index == list_index_) return;
  list_index_ = index;
  if (on_click) on_click();
}

void ComboBox::Choose(std::int32_t index) {
  if (enabled_) SetListIndex(index);
}

void ComboBox::Paint(Surface& s) const {
  DrawScope d(s, font);
  Rect inner = SunkenWell(s, d, rect, enabled_);
  // The drop-down button fills the right end of the well, as wide as a scroll bar.
  Rect button{inner.right - 16, inner.top, inner.right, inner.bottom};
  DrawEdgeRect(s.platform(), s.hDC(), button, static_cast<std::int32_t>(EDGE_RAISED), true);
  int ax = (button.left + button.right) / 2 - 3;
  int ay = (button.top + button.bottom) / 2 - 2;
  for (int row = 0; row < 4; ++row) {
    Rect line{ax + row, ay + row, ax + 7 - row, ay + row + 1};
    if (!enabled_) d.Fill(Rect{line.left + 1, line.top + 1, line.right + 1, line.bottom + 1}, 0x80000014);
    d.Fill(line, enabled_ ? kButtonText : kGrayText);
  }
  Rect text_area{inner.left + 1, inner.top + 1, button.left - 1, inner.bottom - 1};
  OleColor color = enabled_ ? kWindowText : kGrayText;
  if (HasFocus()) {
    d.Fill(text_area, kHighlight);
    color = kHighlightText;
  }
  d.Text(Text(), Rect{text_area.left + 2, text_area.top, text_area.right, text_area.bottom}, color,
         DT_LEFT | DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX);
}

// ---- check box ----

void CheckBox::SetValue(std::int16_t value) {
  if (value < vbUnchecked || value > vbGrayed || value == value_) return;
  value_ = value;
  if (on_click) on_click();
}

void CheckBox::Toggle() {
  if (enabled_) SetValue(value_ == vbChecked ? vbUnchecked : vbChecked);
}

void CheckBox::Paint(Surface& s) const {
  DrawScope d(s, font);
  // The 13 x 13 box, sunken, centred on the caption's line.
  int top = (rect.top + rect.bottom - 13) / 2;
  Rect box{rect.left, top, rect.left + 13, top + 13};
  DrawEdgeRect(s.platform(), s.hDC(), box, static_cast<std::int32_t>(EDGE_SUNKEN), false);
  bool white = enabled_ && value_ != vbGrayed;
  d.Fill(Rect{box.left + 2, box.top + 2, box.right - 2, box.bottom - 2}, white ? kWindow : kButtonFace);
  if (value_ != vbUnchecked) {
    // The classic check mark, seven pixels square.
    static const char* const kMark[7] = {"      #", "     ##", "#   ###", "## ### ", "#####  ", " ###   ",
                                         "  #    "};
    OleColor ink = (enabled_ && value_ == vbChecked) ? kWindowText : kGrayText;
    for (int y = 0; y < 7; ++y)
      for (int x = 0; x < 7; ++x)
        if (kMark[y][x] == '#') d.Fill(Rect{box.left + 3 + x, box.top + 3 + y, box.left + 4 + x, box.top + 4 + y}, ink);
  }
  Rect text_rc{box.right + 4, rect.top, rect.right, rect.bottom};
  if (enabled_) {
    d.Text(caption, text_rc, kButtonText, DT_LEFT | DT_SINGLELINE | DT_VCENTER);
  } else {
    d.DisabledText(caption, text_rc.left, (rect.top + rect.bottom - d.TextHeight()) / 2);
  }
  if (HasFocus()) {
    // The dotted focus frame around the caption.
    int w = d.TextWidth(StripMnemonic(caption));
    int h = d.TextHeight();
    int ty = (rect.top + rect.bottom - h) / 2;
    Rect f{text_rc.left - 1, ty - 1, text_rc.left + w + 1, ty + h + 1};
    for (int x = f.left; x < f.right; x += 2) {
      d.gdi().SetPixel(d.dc(), x, f.top, 0);
      d.gdi().SetPixel(d.dc(), x, f.bottom - 1, 0);
    }
    for (int y = f.top; y < f.bottom; y += 2) {
      d.gdi().SetPixel(d.dc(), f.left, y, 0);
      d.gdi().SetPixel(d.dc(), f.right - 1, y, 0);
    }
  }
}

// ---- frame ----

void Frame::Paint(Surface& s) const {
  DrawScope d(s, font);
  int h = caption.empty() ? 0 : d.TextHeight();
  Rect edge{rect.left, rect.top + h / 2, rect.right, rect.bottom};
  DrawEdgeRect(s.platform(), s.hDC(), edge, static_cast<std::int32_t>(EDGE_ETCHED), false);
  if (caption.empty()) return;
  // The caption interrupts the top edge, with a little face colour either side.
  int w = d.TextWidth(StripMnemonic(caption));
  Rect gap{rect.left + 6, rect.top, rect.left + 6 + w + 4, rect.top + h};
  d.Fill(gap, kButtonFace);
  d.Text(caption, Rect{gap.left + 2, gap.top, gap.right, gap.bottom}, kButtonText, DT_LEFT | DT_SINGLELINE);
}

}  // namespace korvel
