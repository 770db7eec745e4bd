#include "controls/minislider/minislider.h"

#include <cmath>

#include "framework/arith.h"
#include "framework/errors.h"

namespace korvel {

namespace {
constexpr OleColor kDefaultFore = 0x8000000D;  // highlight
constexpr OleColor kDefaultBack = 0x80000005;  // window
constexpr OleColor kOutline = 0x000000;

std::int32_t RoundedPixels(float v) {
  double r = RoundHalfEven(v);
  if (!(r > -2147483648.0)) return 0;
  if (r > 2147483647.0) return 2147483647;
  return static_cast<std::int32_t>(r);
}
}  // namespace

KorvelMiniSlider::KorvelMiniSlider(Host& host, Platform& platform) : Control(host, platform) {}

KorvelMiniSlider::~KorvelMiniSlider() = default;

// ---- properties ----

void KorvelMiniSlider::SetValue(std::int32_t value) {
  value_ = value;
  if (value_ > max_) value_ = max_;
  if (value_ < min_) value_ = min_;
  Paint();
  host_.PropertyChanged("Value");
  RaiseEvent(host_, "Change", value_);  // even when nothing changed
}

void KorvelMiniSlider::SetMin(std::int32_t value) {
  min_ = value;
  if (value_ < min_) value_ = min_;  // no Change for a pulled value
  if (max_ < min_) max_ = min_;
  RecomputeScale();
  host_.PropertyChanged("Min");
}

void KorvelMiniSlider::SetMax(std::int32_t value) {
  max_ = value;
  if (value_ > max_) value_ = max_;
  if (min_ > max_) min_ = max_;
  RecomputeScale();
  host_.PropertyChanged("Max");
}

void KorvelMiniSlider::SetForeColor(OleColor color) {
  fore_color_ = color;
  Paint();
  host_.PropertyChanged("ForeColor");
}

void KorvelMiniSlider::SetBackColor(OleColor color) {
  back_color_ = color;
  Paint();
  host_.PropertyChanged("BackColor");
}

void KorvelMiniSlider::SetEnabled(bool enabled) {
  // Deliberately not stored: mouse handling stays as initialised or loaded.
  if (enabled != enabled_) host_.PropertyChanged("Enabled");
}

// ---- life cycle ----

void KorvelMiniSlider::InitProperties() {
  max_ = 100;
  enabled_ = true;
  fore_color_ = kDefaultFore;
  back_color_ = kDefaultBack;
  // The scale waits for the host's first Resize.
  Paint();
}

void KorvelMiniSlider::ReadProperties(const PropertyBag& bag) {
  // A key that is missing or cannot be read gives its default.
  bool enabled = true;
  IgnoreErrors([&] { enabled = bag.ReadProperty("Enabled", Variant::Bool(true)).ToBool(); });
  enabled_ = enabled;
  OleColor fore = kDefaultFore;
  IgnoreErrors([&] { fore = bag.ReadProperty("ForeColor", Variant::Color(kDefaultFore)).ToColor(); });
  fore_color_ = fore;
  OleColor back = kDefaultBack;
  IgnoreErrors([&] { back = bag.ReadProperty("BackColor", Variant::Color(kDefaultBack)).ToColor(); });
  back_color_ = back;

  std::int32_t min = 0;
  IgnoreErrors([&] { min = bag.ReadProperty("Min", Variant::Long(0)).ToLong(); });
  SetMin(min);
  // Max and Value default to the Min just read.
  std::int32_t max = min_;
  IgnoreErrors([&] { max = bag.ReadProperty("Max", Variant::Long(min_)).ToLong(); });
  SetMax(max);
  std::int32_t value = min_;
  IgnoreErrors([&] { value = bag.ReadProperty("Value", Variant::Long(min_)).ToLong(); });
  SetValue(value);  // loading raises Change once
}

void KorvelMiniSlider::WriteProperties(PropertyBag& bag) {
  IgnoreErrors([&] { bag.WriteProperty("Enabled", Variant::Bool(enabled_), Variant::Bool(true)); });
  IgnoreErrors([&] { bag.WriteProperty("Min", Variant::Long(min_), Variant::Long(0)); });
  IgnoreErrors([&] { bag.WriteProperty("Max", Variant::Long(max_)); });
  IgnoreErrors([&] { bag.WriteProperty("Value", Variant::Long(value_)); });
  IgnoreErrors([&] { bag.WriteProperty("ForeColor", Variant::Color(fore_color_), Variant::Color(kDefaultFore)); });
  IgnoreErrors([&] { bag.WriteProperty("BackColor", Variant::Color(back_color_), Variant::Color(kDefaultBack)); });
}

void KorvelMiniSlider::Resize() { RecomputeScale(); }

void KorvelMiniSlider::RecomputeScale() {
  Surface& s = UserControl();
  width_ = RoundedPixels(s.ScaleWidth());
  height_ = RoundedPixels(s.ScaleHeight());
  // The range in double: Max - Min of two 32-bit values may not fit 32 bits.
  const double range = static_cast<double>(max_) - static_cast<double>(min_);
  if (width_ > 2 && range > 0)
    scale_ = static_cast<float>((static_cast<double>(width_) - 2) / range);
  else
    scale_ = 0;
  Paint();
}

void KorvelMiniSlider::Paint() {
  Surface& s = UserControl();
  const float right = static_cast<float>(width_ - 2);
  const float bottom = static_cast<float>(height_ - 2);
  if (scale_ != 0) {
    const double offset = static_cast<double>(value_) - static_cast<double>(min_);
    // Each fill is skipped at its end: only one of the two is drawn at Min or Max.
    if (value_ < max_)
      s.Line(static_cast<float>(offset * scale_ + 1), 1, right, bottom, back_color_, true, true);
    if (value_ > min_) s.Line(1, 1, static_cast<float>(offset * scale_), bottom, fore_color_, true, true);
  } else {
    // No usable range (empty, or too narrow): a full bar.
    s.Line(1, 1, right, bottom, fore_color_, true, true);
  }
  s.Line(0, 0, static_cast<float>(width_ - 1), static_cast<float>(height_ - 1), kOutline, true, false);
  if (s.AutoRedraw()) s.Refresh();
}

// ---- mouse ----

void KorvelMiniSlider::MouseDown(int button, int shift, float x, float y) { MouseMove(button, shift, x, y); }

void KorvelMiniSlider::MouseMove(int button, int shift, float x, float y) {
  (void)shift;
  (void)y;
  if (!(button > 0) || !(scale_ > 0) || !enabled_) return;
  // (X - 1) / Scale in single precision, then the minimum added; rounded halves to even.
  const float steps = (x - 1.0f) / scale_;
  const double raw = RoundHalfEven(static_cast<double>(steps) + static_cast<double>(min_));
  std::int32_t candidate;
  if (x <= 0) {
    candidate = min_;
  } else if (x >= static_cast<float>(width_ - 1)) {
    candidate = max_;
  } else if (std::isnan(raw)) {
    return;
  } else if (raw < min_) {
    candidate = min_;
  } else if (raw > max_) {
    candidate = max_;
  } else {
    candidate = static_cast<std::int32_t>(raw);
  }
  if (candidate == value_) return;
  // The events go out before the value is stored: handlers still read the old Value.
  RaiseEvent(host_, "Click", candidate);
  RaiseEvent(host_, "Change", candidate);
  value_ = candidate;
  Paint();
}

Variant KorvelMiniSlider::Invoke(const std::string& name, InvokeKind kind, std::vector<Variant>& args) {
  MemberCall call{name, kind, args};
  if (call.Get("Value")) return Variant::Long(Value());
  if (call.Put("Value")) return SetValue(call.Value().ToLong()), Variant();
  if (call.Get("Min")) return Variant::Long(Min());
  if (call.Put("Min")) return SetMin(call.Value().ToLong()), Variant();
  if (call.Get("Max")) return Variant::Long(Max());
  if (call.Put("Max")) return SetMax(call.Value().ToLong()), Variant();
  if (call.Get("ForeColor")) return Variant::Color(ForeColor());
  if (call.Put("ForeColor")) return SetForeColor(call.Value().ToColor()), Variant();
  if (call.Get("BackColor")) return Variant::Color(BackColor());
  if (call.Put("BackColor")) return SetBackColor(call.Value().ToColor()), Variant();
  if (call.Get("Enabled")) return Variant::Bool(Enabled());
  if (call.Put("Enabled")) return SetEnabled(call.Value().ToBool()), Variant();
  return Control::Invoke(name, kind, args);
}

}  // namespace korvel
