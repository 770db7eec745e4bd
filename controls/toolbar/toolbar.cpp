#include "controls/toolbar/toolbar.h"

#include <algorithm>
#include <cmath>

#include "framework/arith.h"
#include "framework/brightmoor.h"
#include "framework/errors.h"

namespace korvel {

namespace {

constexpr OleColor kButtonFace = 0x8000000F;       // COLOR_BTNFACE
constexpr OleColor kButtonHighlight = 0x80000014;  // COLOR_BTNHIGHLIGHT
constexpr OleColor kLightMagenta = 0x00FF00FF;
constexpr std::int32_t kSeparatorWidth = 8;
constexpr std::int32_t kMinimumSize = 7;
constexpr int kLeftButton = 1;
constexpr std::int32_t kErrSubscriptOutOfRange = 9;

// A mouse coordinate as a whole pixel (rounded half to even); one far outside any
// surface is held at the edge of the 32-bit range instead of overflowing.
std::int32_t WholePixel(float v) {
  double r = RoundHalfEven(v);
  if (std::isnan(r)) return -1;
  if (r < -2147483648.0) return INT32_MIN;
  if (r > 2147483647.0) return INT32_MAX;
  return static_cast<std::int32_t>(r);
}

const Variant& Arg(const std::vector<Variant>& args, std::size_t n) {
  if (n >= args.size()) throw RuntimeError(kErrArgumentNotOptional);
  return args[n];
}

// Element index (1-based) of a caller's array.
const Variant& Element(const VariantArray& a, std::int32_t index) {
  std::int64_t slot = static_cast<std::int64_t>(index) - a.lower_bound;
  if (slot < 0 || slot >= static_cast<std::int64_t>(a.items.size()))
    throw RuntimeError(kErrSubscriptOutOfRange, "Subscript out of range");
  return a.items[static_cast<std::size_t>(slot)];
}

}  // namespace

KorvelToolbar::KorvelToolbar(Host& host, Platform& platform) : Control(host, platform) {
  Hwnd parent = UserControl().hWnd();
  button_area_ = std::make_unique<Surface>(platform, parent, 1, 1);
  tool_tip_ = std::make_unique<Surface>(platform, parent, 1, 1);
  tool_tip_->SetVisible(false);
  src_pic_ = std::make_unique<Surface>(platform, parent, 1, 1);
  normal_pic_ = std::make_unique<Surface>(platform, parent, 1, 1);
  active_pic_ = std::make_unique<Surface>(platform, parent, 1, 1);
  disabled_pic_ = std::make_unique<Surface>(platform, parent, 1, 1);
  work_pic_[0] = std::make_unique<Surface>(platform, parent, 1, 1);
  work_pic_[1] = std::make_unique<Surface>(platform, parent, 1, 1);
  for (Surface* s : {src_pic_.get(), normal_pic_.get(), active_pic_.get(), disabled_pic_.get(), work_pic_[0].get(),
                     work_pic_[1].get()})
    s->SetVisible(false);
  UserControl().SetAutoRedraw(true);
  button_area_->SetAutoRedraw(true);
}

KorvelToolbar::~KorvelToolbar() = default;

// ---- button list ----

std::size_t KorvelToolbar::ArraySize(int which) const {
  switch (which) {
    case 0: return keys_.size();
    case 1: return tips_.size();
    case 2: return styles_.size();
    case 3: return enabled_.size();
    case 4: return values_.size();
    default: return widths_.size();
  }
}

void KorvelToolbar::ResizeButtonArrays() {
  std::size_t n = button_count_ < 1 ? 0 : static_cast<std::size_t>(button_count_);
  keys_.resize(n);
  tips_.resize(n);
  styles_.resize(n, ktButton);
  enabled_.resize(n, 0);
  values_.resize(n, 0);
  widths_.resize(n, 0);
}

int KorvelToolbar::FindButton(const std::string& key) const {
  std::string k = UCase(Trim(key));
  if (k.empty()) return 0;
  for (int i = 1; i <= button_count_; ++i)
    if (UCase(Trim(keys_[Slot(i)])) == k) return i;
  return 0;
}

std::int32_t KorvelToolbar::ItemWidth(int index) const {
  switch (StyleAt(index)) {
    case ktSeparator: return kSeparatorWidth;
    case ktPlaceholder: return WidthAt(index);
    default: return button_height_;
  }
}

std::int32_t KorvelToolbar::ButtonLeft(int index) const {
  if (!Valid(index) || index == 1) return 0;
  std::int32_t x = 0;
  for (int i = 1; i < index; ++i) x += ItemWidth(i);
  return x;
}

int KorvelToolbar::ButtonAt(std::int32_t x) const {
  if (x < 0 || x >= area_width_ || button_count_ < 1) return 0;
  std::int32_t right = 0;
  for (int i = 1; i <= button_count_; ++i) {
    right += ItemWidth(i);
    if (right > x) {
      std::int32_t s = StyleAt(i);
      return (s == ktButton || s == ktCheck) ? i : 0;
    }
  }
  return 0;
}

std::int32_t KorvelToolbar::ImageOffset(int index) const {
  if (!Valid(index)) return -1;
  std::int32_t s = StyleAt(index);
  if (s == ktSeparator || s == ktPlaceholder) return -1;
  if (index == 1) return 0;
  std::int32_t images = 0;
  for (int i = 1; i < index; ++i)
    if (StyleAt(i) == ktButton || StyleAt(i) == ktCheck) ++images;
  return image_size_ * images;
}

// ---- properties ----

void KorvelToolbar::SetBorderStyle(std::int32_t style) {
  if (host_.UserMode()) return;
  if (style < ktNoBorder || style > ktInternetExplorer) return;
  border_style_ = style;
  host_.PropertyChanged("BorderStyle");
  Resize();
}

void KorvelToolbar::SetPicture(PictureRef picture) {
  if (host_.UserMode()) return;
  picture_ = std::move(picture);
  RebuildPictures();
  host_.PropertyChanged("Picture");
  Resize();
}

void KorvelToolbar::SetMaskColor(OleColor color) {
  if (host_.UserMode()) return;
  mask_color_ = color;
  RebuildPictures();
  host_.PropertyChanged("MaskColor");
  Resize();
}

void KorvelToolbar::SetUseMaskColor(bool use) {
  if (host_.UserMode()) return;
  if (use == use_mask_color_) return;
  use_mask_color_ = use;
  RebuildPictures();
  host_.PropertyChanged("UseMaskColor");
  Resize();
}

bool KorvelToolbar::Enabled(const std::string& key) {
  int i = FindButton(key);
  return i != 0 && EnabledAt(i);
}

void KorvelToolbar::SetEnabled(const std::string& key, bool enabled) {
  int i = FindButton(key);
  if (i == 0) return;
  enabled_[Slot(i)] = enabled ? 1 : 0;
  DrawButton(i);
}

bool KorvelToolbar::Value(const std::string& key) {
  int i = FindButton(key);
  return i != 0 && ValueAt(i);
}

void KorvelToolbar::SetValue(const std::string& key, bool value) {
  int i = FindButton(key);
  if (i == 0) return;
  values_[Slot(i)] = value ? 1 : 0;
  DrawButton(i);
}

bool KorvelToolbar::ToolTipText(const std::string& key) {
  int i = FindButton(key);
  if (i == 0) return false;
  // The text goes through the boolean conversion: "True", "False" or a number.
  return Variant::String(TipAt(i)).ToBool();
}

std::int32_t KorvelToolbar::Style(const std::string& key) {
  int i = FindButton(key);
  return i == 0 ? 0 : StyleAt(i);
}

void KorvelToolbar::ApplyButtons(std::int16_t count, const std::vector<std::string>& key,
                                 const std::vector<std::string>& tip, const std::vector<std::int32_t>& style,
                                 const std::vector<bool>& enabled, const std::vector<bool>& value,
                                 const std::vector<std::int16_t>& width) {
  std::size_t n = count < 1 ? 0 : static_cast<std::size_t>(count);
  for (const std::size_t size : {key.size(), tip.size(), style.size(), enabled.size(), value.size(), width.size()})
    if (size < n) throw RuntimeError(kErrSubscriptOutOfRange, "Subscript out of range");
  button_count_ = static_cast<std::int16_t>(n);
  keys_.assign(key.begin(), key.begin() + static_cast<std::ptrdiff_t>(n));
  tips_.assign(tip.begin(), tip.begin() + static_cast<std::ptrdiff_t>(n));
  styles_.resize(n);
  enabled_.resize(n);
  values_.resize(n);
  widths_.resize(n);
  for (std::size_t i = 0; i < n; ++i) {
    // The list keeps its invariants whatever the caller sends: a style outside
    // the four is a Button, a width below 1 is 1.
    styles_[i] = (style[i] < ktButton || style[i] > ktPlaceholder) ? ktButton : style[i];
    enabled_[i] = enabled[i] ? 1 : 0;
    values_[i] = value[i] ? 1 : 0;
    widths_[i] = width[i] < 1 ? 1 : width[i];
  }
}

void KorvelToolbar::Customize(bool update_control, std::int16_t& count, std::vector<std::string>& key,
                              std::vector<std::string>& tip, std::vector<std::int32_t>& style,
                              std::vector<bool>& enabled, std::vector<bool>& value,
                              std::vector<std::int16_t>& placeholder_width) {
  if (host_.UserMode()) return;
  if (update_control) {
    ApplyButtons(count, key, tip, style, enabled, value, placeholder_width);
    hot_index_ = 0;
    pressing_ = false;
    Resize();
    host_.PropertyChanged("");
    return;
  }
  count = button_count_;
  key = keys_;
  tip = tips_;
  style = styles_;
  enabled.assign(enabled_.begin(), enabled_.end());
  value.assign(values_.begin(), values_.end());
  placeholder_width = widths_;
}

FontRef KorvelToolbar::GetDefaultFont() {
  NONCLIENTMETRICSA ncm;
  ncm.cbSize = sizeof(NONCLIENTMETRICSA);  // 340
  platform_.user().SystemParametersInfoA(SPI_GETNONCLIENTMETRICS, 0, &ncm, 0);
  const LOGFONTA& lf = ncm.lfMessageFont;
  auto font = std::make_shared<Font>();
  font->SetName(StripAtNull(std::string(lf.lfFaceName, sizeof lf.lfFaceName)));
  font->SetWeight(Store16(lf.lfWeight));
  font->SetItalic(lf.lfItalic != 0);
  font->SetUnderline(lf.lfUnderline != 0);
  return font;
}

// ---- late binding ----

Variant KorvelToolbar::Invoke(const std::string& name, InvokeKind kind, std::vector<Variant>& args) {
  auto is = [&name](const char* member) { return CompareText(name, member) == 0; };
  const bool get = kind == InvokeKind::PropertyGet;
  const bool put = kind == InvokeKind::PropertyPut;

  if (is("BorderStyle")) {
    if (get) return Variant::Long(border_style_);
    if (put) {
      SetBorderStyle(Arg(args, 0).ToLong());
      return {};
    }
  } else if (is("Picture")) {
    if (get) return Variant::Object(picture_);
    if (kind == InvokeKind::PropertyPutRef) {
      SetPicture(Arg(args, 0).ToPicture());
      return {};
    }
  } else if (is("MaskColor")) {
    if (get) return Variant::Color(mask_color_);
    if (put) {
      SetMaskColor(Arg(args, 0).ToColor());
      return {};
    }
  } else if (is("UseMaskColor")) {
    if (get) return Variant::Bool(use_mask_color_);
    if (put) {
      SetUseMaskColor(Arg(args, 0).ToBool());
      return {};
    }
  } else if (is("Enabled")) {
    if (get) return Variant::Bool(Enabled(Arg(args, 0).ToString()));
    if (put) {
      std::string key = Arg(args, 0).ToString();
      SetEnabled(key, Arg(args, 1).ToBool());
      return {};
    }
  } else if (is("Value") || name.empty()) {
    if (get) return Variant::Bool(Value(Arg(args, 0).ToString()));
    if (put) {
      std::string key = Arg(args, 0).ToString();
      SetValue(key, Arg(args, 1).ToBool());
      return {};
    }
  } else if (is("ToolTipText")) {
    if (get) return Variant::Bool(ToolTipText(Arg(args, 0).ToString()));
  } else if (is("Style")) {
    if (get) return Variant::Long(Style(Arg(args, 0).ToString()));
  } else if (is("GetDefaultFont")) {
    if (kind == InvokeKind::Method || get) return Variant::Object(GetDefaultFont());
  } else if (is("Customize")) {
    if (kind == InvokeKind::Method) {
      bool update = Arg(args, 0).ToBool();
      Arg(args, 7);  // all eight arguments are required
      if (host_.UserMode()) return {};
      if (update) {
        std::int16_t count = args[1].ToInteger();
        std::int32_t n = count < 1 ? 0 : count;
        std::vector<std::string> key, tip;
        std::vector<std::int32_t> style;
        std::vector<bool> enabled, value;
        std::vector<std::int16_t> width;
        const VariantArray& a_key = args[2].ToArray();
        const VariantArray& a_tip = args[3].ToArray();
        const VariantArray& a_style = args[4].ToArray();
        const VariantArray& a_enabled = args[5].ToArray();
        const VariantArray& a_value = args[6].ToArray();
        const VariantArray& a_width = args[7].ToArray();
        for (std::int32_t i = 1; i <= n; ++i) {
          key.push_back(Element(a_key, i).ToString());
          tip.push_back(Element(a_tip, i).ToString());
          style.push_back(Element(a_style, i).ToLong());
          enabled.push_back(Element(a_enabled, i).ToBool());
          value.push_back(Element(a_value, i).ToBool());
          width.push_back(Element(a_width, i).ToInteger());
        }
        Customize(true, count, key, tip, style, enabled, value, width);
        return {};
      }
      std::int16_t count = 0;
      std::vector<std::string> key, tip;
      std::vector<std::int32_t> style;
      std::vector<bool> enabled, value;
      std::vector<std::int16_t> width;
      Customize(false, count, key, tip, style, enabled, value, width);
      std::vector<Variant> v_key, v_tip, v_style, v_enabled, v_value, v_width;
      for (std::size_t i = 0; i < key.size(); ++i) {
        v_key.push_back(Variant::String(key[i]));
        v_tip.push_back(Variant::String(tip[i]));
        v_style.push_back(Variant::Long(style[i]));
        v_enabled.push_back(Variant::Bool(enabled[i]));
        v_value.push_back(Variant::Bool(value[i]));
        v_width.push_back(Variant::Integer(width[i]));
      }
      args[1] = Variant::Integer(count);
      args[2] = Variant::Array(std::move(v_key), 1);
      args[3] = Variant::Array(std::move(v_tip), 1);
      args[4] = Variant::Array(std::move(v_style), 1);
      args[5] = Variant::Array(std::move(v_enabled), 1);
      args[6] = Variant::Array(std::move(v_value), 1);
      args[7] = Variant::Array(std::move(v_width), 1);
      return {};
    }
  }
  return Control::Invoke(name, kind, args);
}

// ---- life cycle ----

void KorvelToolbar::InitProperties() {
  border_style_ = ktInternetExplorer;  // the persisted default is No Border
  mask_color_ = kLightMagenta;
  use_mask_color_ = true;
  picture_ = nullptr;
  button_count_ = 0;
  ResizeButtonArrays();
  hot_color_ = BlendColors(platform_, kButtonHighlight, kButtonFace, 0.5f);
  host_.SetExtenderAlign(1);  // top
  tool_tip_->SetFont(GetDefaultFont());
}

void KorvelToolbar::ReadProperties(const PropertyBag& bag) {
  tool_tip_->SetFont(GetDefaultFont());

  std::int32_t border = ktNoBorder;
  IgnoreErrors([&] { border = bag.ReadProperty("BorderStyle", Variant::Integer(0)).ToInteger(); });
  if (border > ktInternetExplorer || border < ktNoBorder) border = ktInternetExplorer;
  border_style_ = border;
  PictureRef picture;
  IgnoreErrors([&] { picture = bag.ReadProperty("Picture", Variant()).ToPicture(); });
  picture_ = picture;
  OleColor mask = kLightMagenta;
  IgnoreErrors([&] { mask = bag.ReadProperty("MaskColor", Variant::Color(kLightMagenta)).ToColor(); });
  mask_color_ = mask;
  bool use_mask = true;
  IgnoreErrors([&] { use_mask = bag.ReadProperty("UseMaskColor", Variant::Bool(true)).ToBool(); });
  use_mask_color_ = use_mask;
  std::int16_t count = 0;
  IgnoreErrors([&] { count = bag.ReadProperty("ButtonCount", Variant::Integer(0)).ToInteger(); });
  // A negative count is an empty toolbar.
  button_count_ = count < 0 ? 0 : count;
  keys_.clear();
  tips_.clear();
  styles_.clear();
  enabled_.clear();
  values_.clear();
  widths_.clear();
  ResizeButtonArrays();

  for (int i = 1; i <= button_count_; ++i) {
    const std::string prefix = "Button" + std::to_string(i) + "_";
    const std::size_t s = Slot(i);
    std::string key;
    IgnoreErrors([&] { key = bag.ReadProperty(prefix + "Key", Variant::String("")).ToString(); });
    keys_[s] = std::move(key);
    std::string tip;
    IgnoreErrors([&] { tip = bag.ReadProperty(prefix + "ToolTipText", Variant::String("")).ToString(); });
    tips_[s] = std::move(tip);
    std::int32_t style = ktButton;
    IgnoreErrors([&] { style = bag.ReadProperty(prefix + "Style", Variant::Long(0)).ToLong(); });
    styles_[s] = (style >= 4 || style < 0) ? ktButton : style;
    bool enabled = true;
    IgnoreErrors([&] { enabled = bag.ReadProperty(prefix + "Enabled", Variant::Bool(true)).ToBool(); });
    enabled_[s] = enabled ? 1 : 0;
    bool value = false;
    IgnoreErrors([&] { value = bag.ReadProperty(prefix + "Value", Variant::Bool(false)).ToBool(); });
    values_[s] = value ? 1 : 0;
    std::int16_t width = 1;
    IgnoreErrors([&] { width = bag.ReadProperty(prefix + "Width", Variant::Integer(1)).ToInteger(); });
    widths_[s] = width < 1 ? 1 : width;
  }
  // A strip that cannot be divided into images stops the rebuild; loading goes on.
  IgnoreErrors([&] { RebuildPictures(); });
}

void KorvelToolbar::WriteProperties(PropertyBag& bag) {
  IgnoreErrors([&] { bag.WriteProperty("BorderStyle", Variant::Integer(Store16(border_style_)), Variant::Integer(0)); });
  IgnoreErrors([&] {
    if (picture_)
      bag.WriteProperty("Picture", Variant::Object(picture_), Variant());
    else
      bag.WriteProperty("Picture", Variant(), Variant());
  });
  IgnoreErrors([&] { bag.WriteProperty("UseMaskColor", Variant::Bool(use_mask_color_), Variant::Bool(true)); });
  // Always stored: written without a default.
  IgnoreErrors([&] { bag.WriteProperty("MaskColor", Variant::Color(mask_color_)); });
  IgnoreErrors([&] { bag.WriteProperty("ButtonCount", Variant::Integer(button_count_), Variant::Integer(0)); });
  for (int i = 1; i <= button_count_; ++i) {
    const std::string prefix = "Button" + std::to_string(i) + "_";
    const std::size_t s = Slot(i);
    IgnoreErrors([&] { bag.WriteProperty(prefix + "Key", Variant::String(keys_[s]), Variant::String("")); });
    IgnoreErrors([&] { bag.WriteProperty(prefix + "ToolTipText", Variant::String(tips_[s]), Variant::String("")); });
    IgnoreErrors([&] { bag.WriteProperty(prefix + "Style", Variant::Long(styles_[s]), Variant::Long(0)); });
    IgnoreErrors([&] { bag.WriteProperty(prefix + "Enabled", Variant::Bool(enabled_[s] != 0), Variant::Bool(true)); });
    IgnoreErrors([&] { bag.WriteProperty(prefix + "Value", Variant::Bool(values_[s] != 0), Variant::Bool(false)); });
    IgnoreErrors([&] { bag.WriteProperty(prefix + "Width", Variant::Integer(widths_[s]), Variant::Integer(1)); });
  }
}

// ---- state pictures ----

void KorvelToolbar::RebuildPictures() {
  ++rebuilds_;
  src_pic_->SetPicture(nullptr);
  disabled_pic_->SetPicture(nullptr);
  active_pic_->SetPicture(nullptr);
  normal_pic_->SetPicture(nullptr);
  // Computed at every rebuild so that it follows the system colours.
  hot_color_ = BlendColors(platform_, kButtonHighlight, kButtonFace, 0.5f);
  if (!picture_) {
    button_height_ = 0;
    image_size_ = 0;
    image_count_ = 0;
    return;
  }
  const std::int32_t w = HimetricToPixels(picture_->Width());
  const std::int32_t h = HimetricToPixels(picture_->Height());
  image_size_ = Store16(h);
  button_height_ = Store16(h + 6);
  // Nothing guards a strip of height 0: the division raises error 11.
  image_count_ = Store16(IntDiv(w, h));

  // Sized surfaces start in their background colour, as the host's picture boxes do.
  auto size = [](Surface& s, int cx, int cy) {
    s.Move(0, 0, cx, cy);
    s.Cls();
  };
  size(*src_pic_, w, h);
  src_pic_->SetPicture(picture_);
  size(*normal_pic_, w, h);
  size(*active_pic_, w, h);
  size(*disabled_pic_, w + image_count_, h + 1);
  size(*work_pic_[0], w, h);
  size(*work_pic_[1], w, h);
  Gdi& gdi = platform_.gdi();
  if (use_mask_color_) {
    ReplaceMaskColor(platform_, *src_pic_, *normal_pic_, *work_pic_[0], *work_pic_[1], mask_color_, kButtonFace);
    ReplaceMaskColor(platform_, *src_pic_, *active_pic_, *work_pic_[0], *work_pic_[1], mask_color_, hot_color_);
  } else {
    gdi.BitBlt(normal_pic_->hDC(), 0, 0, w, h, src_pic_->hDC(), 0, 0, SRCCOPY);
    gdi.BitBlt(active_pic_->hDC(), 0, 0, w, h, src_pic_->hDC(), 0, 0, SRCCOPY);
  }
  DrawDisabledPicture(platform_, picture_, disabled_pic_->hDC(), 0, 0, w, h);
  src_pic_->SetPicture(nullptr);
  Resize();
}

// ---- layout and painting ----

void KorvelToolbar::Resize() {
  Surface& uc = UserControl();
  const std::int32_t cw = uc.Width();
  const std::int32_t ch = uc.Height();
  if (cw < kMinimumSize) {
    SetWidth(static_cast<std::int32_t>(ScaleXToTwips(kMinimumSize)));
    return;
  }
  button_area_->Cls();
  const std::int32_t bh = button_height_;
  std::int32_t required = bh;
  switch (border_style_) {
    case ktNoBorder:
      // The border rectangle and edge stay as they were.
      required = bh;
      button_area_->Move(0, 0, cw, bh);
      area_width_ = cw;
      break;
    case ktRaised:
      border_rect_ = Rect{0, 0, cw, ch};
      border_edge_ = BDR_RAISEDINNER;
      required = bh + 6;
      button_area_->Move(3, 3, cw - 6, bh);
      area_width_ = cw - 6;
      break;
    case ktBar:
      // From -1 to CW + 1: only the sunken line along the bottom shows.
      border_rect_ = Rect{-1, ch - 2, cw + 1, ch};
      border_edge_ = BDR_SUNKENOUTER;
      required = bh + 3;
      button_area_->Move(3, 0, cw - 6, bh);
      area_width_ = cw - 6;
      break;
    default:
      border_rect_ = Rect{0, 0, cw, ch};
      border_edge_ = EDGE_ETCHED;
      required = bh + 6;
      button_area_->Move(9, 3, cw - 12, bh);
      area_width_ = cw - 12;
      break;
  }
  if (required < kMinimumSize) required = kMinimumSize;
  if (ch == required) {
    Paint();
    PaintButtons();
  } else {
    SetHeight(static_cast<std::int32_t>(ScaleYToTwips(static_cast<float>(required))));
  }
}

void KorvelToolbar::Show() {
  const Hwnd parent = UserControl().hWnd();
  if (!parent || button_area_->hWnd()) return;
  FontRef tip_font = tool_tip_->Font();
  tool_tip_.reset();
  button_area_ = std::make_unique<Surface>(platform_, parent, 1, 1);
  button_area_->SetAutoRedraw(true);
  tool_tip_ = std::make_unique<Surface>(platform_, parent, 1, 1);
  tool_tip_->SetVisible(false);
  tool_tip_->SetFont(tip_font);
  hot_index_ = 0;
  inside_ = false;
  pressing_ = false;
  Resize();
}

void KorvelToolbar::Paint() {
  Surface& uc = UserControl();
  uc.Cls();
  DrawEdgeRect(platform_, uc.hDC(), border_rect_, border_edge_, true);
  if (border_style_ == ktInternetExplorer) {
    // The gripper: a raised bar 3 pixels wide left of the buttons.
    DrawEdgeRect(platform_, uc.hDC(), Rect{3, 3, 6, button_height_ + 3}, BDR_RAISEDINNER, false);
  }
  if (uc.AutoRedraw()) uc.Refresh();
}

void KorvelToolbar::PaintButtons() {
  if (!host_.ExtenderVisible()) return;
  // One walk over the items: each left edge and image column follows from the last.
  std::int32_t x = 0;
  std::int32_t image_x = 0;
  for (int i = 1; i <= button_count_; ++i) {
    const std::int32_t s = StyleAt(i);
    const bool takes_image = s == ktButton || s == ktCheck;
    DrawCell(i, x, takes_image ? image_x : -1);
    if (takes_image) image_x += image_size_;
    x += ItemWidth(i);
  }
  if (button_area_->AutoRedraw()) button_area_->Refresh();
}

void KorvelToolbar::DrawButton(int index) {
  if (!host_.ExtenderVisible() || !Valid(index)) return;
  DrawCell(index, ButtonLeft(index), ImageOffset(index));
  if (button_area_->AutoRedraw()) button_area_->Refresh();
}

void KorvelToolbar::DrawCell(int index, std::int32_t x, std::int32_t image_x) {
  Surface& area = *button_area_;
  Gdi& gdi = platform_.gdi();
  const Hdc dc = area.hDC();
  const std::int32_t bh = button_height_;
  const std::int32_t s = image_size_;
  const std::int32_t style = StyleAt(index);
  const bool enabled = EnabledAt(index);
  const bool checked = ValueAt(index);
  const bool is_button = style == ktButton || style == ktCheck;
  const bool hot = is_button && index == hot_index_;
  const Rect cell{x, 0, x + bh, bh};
  const auto fx = static_cast<float>(x);
  const auto fb = static_cast<float>(bh - 1);
  auto fill_cell = [&](OleColor color) { area.Line(fx, 0, static_cast<float>(x + bh - 1), fb, color, true, true); };
  auto image = [&](Surface& from, std::int32_t at) { gdi.BitBlt(dc, x + at, at, s, s, from.hDC(), image_x, 0, SRCCOPY); };

  if (!enabled || !hot) {
    const bool design = !host_.UserMode();
    switch (style) {
      case ktSeparator:
        area.Line(fx, 0, static_cast<float>(x + 7), fb, kButtonFace, true, true);
        // A 2-pixel sunken line whose top and bottom edges fall outside the area.
        DrawEdgeRect(platform_, dc, Rect{x + 3, -1, x + 5, bh + 1}, BDR_SUNKENOUTER, false);
        return;
      case ktPlaceholder:
        area.Line(fx, 0, static_cast<float>(x + WidthAt(index) - 1), fb, kButtonFace, true, true);
        return;
      case ktCheck:
        if (checked && enabled) {
          fill_cell(hot_color_);
          image(*active_pic_, 4);
          DrawEdgeRect(platform_, dc, cell, BDR_SUNKENOUTER, false);
          return;
        }
        break;
      default:
        break;
    }
    fill_cell(kButtonFace);
    // In the designer the cells get a raised edge so that they can be seen.
    if (design) DrawEdgeRect(platform_, dc, cell, BDR_RAISEDINNER, style == ktButton || enabled);
    if (enabled) {
      image(*normal_pic_, 3);
    } else {
      // The disabled strip is read at column x 17 / 16, one pixel wider per image.
      const std::int32_t src = (image_x * 17) / 16;
      gdi.BitBlt(dc, x + 3, 3, s + 1, s + 1, disabled_pic_->hDC(), src, 0, SRCCOPY);
    }
    return;
  }

  const bool pressed_inside = pressing_ && inside_;
  if (style == ktCheck && checked && !pressed_inside) {
    fill_cell(hot_color_);
    image(*active_pic_, 4);
    DrawEdgeRect(platform_, dc, cell, BDR_SUNKENOUTER, false);
  } else if (pressed_inside) {
    DrawEdgeRect(platform_, dc, cell, BDR_SUNKENOUTER, true);
    image(*normal_pic_, 4);
  } else {
    DrawEdgeRect(platform_, dc, cell, BDR_RAISEDINNER, true);
    image(*normal_pic_, 3);
  }
}

// ---- mouse ----

bool KorvelToolbar::PointerInside(int index, std::int32_t x, float y) const {
  const std::int32_t left = ButtonLeft(index);
  const std::int32_t bh = button_height_;
  return static_cast<std::int64_t>(x) >= left && static_cast<std::int64_t>(x) < static_cast<std::int64_t>(left) + bh &&
         y >= 0 && y < static_cast<float>(bh);
}

void KorvelToolbar::RaiseButtonEvent(const char* name, int index) {
  // The lower-left corner of the button in the control's pixels.
  const std::int32_t ex = button_area_->Left() + ButtonLeft(index);
  const std::int32_t ey = button_area_->Top() + button_height_;
  RaiseEvent(host_, name, Variant::String(KeyAt(index)), Variant::Long(ex), Variant::Long(ey));
}

void KorvelToolbar::MouseDown(int button, int shift, float x, float y) {
  (void)shift, (void)y;
  User& user = platform_.user();
  const int i = ButtonAt(WholePixel(x));
  if (i == 0) return;
  if (button != kLeftButton) {
    if (inside_)
      user.SetCapture(button_area_->hWnd());
    else
      user.ReleaseCapture();
    inside_ = true;
    pressing_ = false;
    hot_index_ = 0;
    DrawButton(i);
    if (EnabledAt(i)) RaiseButtonEvent("RightClick", i);
    return;
  }
  const std::int32_t style = StyleAt(i);
  if (style == ktButton || style == ktCheck) {
    hot_index_ = i;
    inside_ = true;
    pressing_ = true;
    DrawButton(i);  // the pressed look; no event on press
  }
}

void KorvelToolbar::MouseMove(int button, int shift, float x, float y) {
  (void)button, (void)shift;
  User& user = platform_.user();
  const std::int32_t px = WholePixel(x);
  if (pressing_) {
    const bool now_inside = PointerInside(hot_index_, px, y);
    if (now_inside != inside_) {
      inside_ = now_inside;
      DrawButton(hot_index_);
    }
    return;
  }
  if (hot_index_ != 0) {
    int n = ButtonAt(px);
    if (n != 0 && !PointerInside(n, px, y)) n = 0;
    if (n == hot_index_) return;
    const int old = hot_index_;
    hot_index_ = n;
    DrawButton(old);
    DrawButton(n);
    if (n != 0) {
      user.ReleaseCapture();
      HideToolTip();
      ShowToolTip(TipAt(n));
      RaiseEvent(host_, "Hover", Variant::String(KeyAt(n)), Variant::String(TipAt(n)));
      user.SetCapture(button_area_->hWnd());
    } else {
      RaiseEvent(host_, "Hover", Variant::String(""), Variant::String(""));
      HideToolTip();
      inside_ = false;
      user.ReleaseCapture();
    }
    return;
  }
  // Nothing hot: no vertical test, the pointer is over the area by definition.
  const int i = ButtonAt(px);
  hot_index_ = i;
  if (i != 0) {
    inside_ = true;
    DrawButton(i);
    ShowToolTip(TipAt(i));
    RaiseEvent(host_, "Hover", Variant::String(KeyAt(i)), Variant::String(TipAt(i)));
    user.SetCapture(button_area_->hWnd());
  }
}

void KorvelToolbar::MouseUp(int button, int shift, float x, float y) {
  (void)button, (void)shift, (void)x, (void)y;
  if (!pressing_ || hot_index_ == 0) return;
  const int i = hot_index_;
  const bool enabled = EnabledAt(i);
  if (enabled && StyleAt(i) == ktCheck && inside_) values_[Slot(i)] = ValueAt(i) ? 0 : 1;
  hot_index_ = 0;
  DrawButton(i);
  if (enabled && inside_) RaiseButtonEvent("Click", i);
  platform_.user().ReleaseCapture();
  HideToolTip();
  RaiseEvent(host_, "Hover", Variant::String(""), Variant::String(""));
  button_area_->SetToolTipText("");
  inside_ = false;
  pressing_ = false;
}

// ---- tool tip ----

void KorvelToolbar::ShowToolTip(const std::string& text) {
  if (text.empty()) return;
  User& user = platform_.user();
  Surface& tip = *tool_tip_;
  const Hwnd wnd = tip.hWnd();
  // A top-level window of its own, so that it may stand outside the form.
  user.SetParent(wnd, 0);
  tip.Cls();
  Point cursor;
  user.GetCursorPos(&cursor);
  const auto width = static_cast<std::int32_t>(tip.TextWidth(text)) + 5;
  const auto height = static_cast<std::int32_t>(tip.TextHeight(text)) + 5;
  const std::int32_t ex = user.GetWindowLongA(wnd, GWL_EXSTYLE);
  user.SetWindowLongA(wnd, GWL_EXSTYLE, ex | static_cast<std::int32_t>(WS_EX_TOPMOST | WS_EX_TOOLWINDOW));
  // 32 pixels below the pointer, never activated.
  user.SetWindowPos(wnd, 0, cursor.x, cursor.y + 32, width, height, SWP_NOACTIVATE);
  // The surface's image follows its window's new extent.
  tip.Move(cursor.x, cursor.y + 32, width, height);
  tip.Cls();
  DrawEdgeRect(platform_, tip.hDC(), Rect{0, 0, width, height}, BDR_RAISEDOUTER, false);
  tip.SetCurrentX(2);
  tip.SetCurrentY(2);
  tip.Print(text);
  tip.SetVisible(true);
}

void KorvelToolbar::HideToolTip() { tool_tip_->SetVisible(false); }

}  // namespace korvel
