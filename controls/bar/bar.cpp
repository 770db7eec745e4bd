#include "controls/bar/bar.h"

#include "framework/arith.h"

namespace korvel {

namespace {
constexpr OleColor kButtonFace = 0x8000000F;
constexpr OleColor kHighlight = 0x8000000D;
constexpr int kMinPixels = 5;
}  // namespace

KorvelBar::KorvelBar(Host& host, Platform& platform) : Control(host, platform) {}

KorvelBar::~KorvelBar() = default;

void KorvelBar::Initialize() {
  // GradPic lives on the shared resource form; loading it paints the strip.
  if (!res_form_) res_form_ = ResForm::Shared(platform_);
}

void KorvelBar::InitProperties() { ReadBarProperties(nullptr); }

void KorvelBar::ReadProperties(const PropertyBag& bag) { ReadBarProperties(&bag); }

void KorvelBar::ReadBarProperties(const PropertyBag* bag) {
  (void)bag;  // no key is read
  // (UserMode + 1) * 100 with UserMode -1 at run time, 0 at design time.
  const int user_mode = VbBool(host_.UserMode());
  value_ = static_cast<std::int16_t>((user_mode + 1) * 100);
  highlight_color_ = kHighlight;
  face_color_ = kButtonFace;
}

void KorvelBar::SetValue(std::int16_t value) {
  if (!host_.UserMode()) return;  // run time only; ignored while designing
  if (value >= 101) value = 100;
  if (value < 0) value = 0;
  value_ = value;
  host_.PropertyChanged("Value");
  Paint();
}

void KorvelBar::Resize() {
  const std::int32_t min_w = kMinPixels * platform_.TwipsPerPixelX();
  const std::int32_t min_h = kMinPixels * platform_.TwipsPerPixelY();
  if (Width() < min_w) {
    SetWidth(min_w);  // the host answers with another Resize
    return;
  }
  if (Height() < min_h) {
    SetHeight(min_h);
    return;
  }
  Surface& s = UserControl();
  frame_rect_.left = 0;
  frame_rect_.top = 0;
  frame_rect_.right = static_cast<std::int32_t>(RoundHalfEven(s.ScaleWidth()));
  frame_rect_.bottom = static_cast<std::int32_t>(RoundHalfEven(s.ScaleHeight()));
  Paint();
}

void KorvelBar::Show() { Paint(); }

void KorvelBar::Paint() {
  if (host_.UserMode() && !host_.ExtenderVisible()) return;
  Surface& s = UserControl();
  s.Cls();
  if (s.BackColor() != kButtonFace) s.SetBackColor(kButtonFace);

  const double w = s.ScaleWidth();
  const double h = s.ScaleHeight();
  const auto r3 = static_cast<std::int32_t>(RoundHalfEven(w - 3));
  const auto b3 = static_cast<std::int32_t>(RoundHalfEven(h - 3));
  const auto w4 = static_cast<std::int32_t>(RoundHalfEven(w - 4));
  const auto h4 = static_cast<std::int32_t>(RoundHalfEven(h - 4));

  Gdi& gdi = platform_.gdi();
  gdi.DrawEdge(s.hDC(), &frame_rect_, BDR_SUNKENOUTER, BF_RECT);

  // The product in 32-bit integers (Value <= 100 and a surface's width keep it in
  // range), the division in floating point.
  const std::int32_t product = static_cast<std::int32_t>(value_) * w4;
  const double fill_start = RoundHalfEven(static_cast<double>(product) / 100.0 + 2 - 1);

  if (!res_form_) res_form_ = ResForm::Shared(platform_);  // a host that skipped Initialize
  if (value_ != 0) {
    // The whole strip over the whole inside, whatever the value.
    gdi.StretchBlt(s.hDC(), 2, 2, w4, h4, res_form_->GradPic().hDC(), 0, 0, ResForm::kGradWidth,
                   ResForm::kGradHeight, SRCCOPY);
  }
  // The part beyond the value goes back to the button face (at 100 % still one
  // column at R3; at 0 % from x = 1).
  s.Line(static_cast<float>(fill_start), 2, static_cast<float>(r3), static_cast<float>(b3), kButtonFace, true,
         true);

  if (s.AutoRedraw()) s.Refresh();
}

Variant KorvelBar::Invoke(const std::string& name, InvokeKind kind, std::vector<Variant>& args) {
  MemberCall call{name, kind, args};
  if (call.Get("Value")) return Variant::Integer(Value());
  if (call.Put("Value")) return SetValue(call.Value().ToInteger()), Variant();
  return Control::Invoke(name, kind, args);
}

}  // namespace korvel
