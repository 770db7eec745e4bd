#include "controls/divider/divider.h"

#include "framework/arith.h"
#include "framework/errors.h"

namespace korvel {

namespace {
constexpr OleColor kShadow = 0x80000010;     // COLOR_BTNSHADOW
constexpr OleColor kHighlight = 0x80000014;  // COLOR_BTNHIGHLIGHT

// The value of key name converted with convert; a value that cannot be converted
// gives the default, as a missing key does.
template <class F>
auto ReadOr(const PropertyBag& bag, const std::string& name, const Variant& def, F convert) {
  try {
    return convert(bag.ReadProperty(name, def));
  } catch (const RuntimeError&) {
    return convert(def);
  }
}

}  // namespace

KorvelDivider::KorvelDivider(Host& host, Platform& platform) : Control(host, platform) {}

void KorvelDivider::MeasureCaption() {
  if (!caption_.empty()) {
    text_width_ = CLng(UserControl().TextWidth(caption_));
    text_height_ = CLng(UserControl().TextHeight(caption_));
  } else {
    text_width_ = 0;
    text_height_ = 0;
  }
}

void KorvelDivider::SetCaption(const std::string& caption) {
  caption_ = caption;
  IgnoreErrors([&] { MeasureCaption(); });
  Paint();
  host_.PropertyChanged("Caption");
}

void KorvelDivider::SetFont(FontRef font) {
  UserControl().SetFont(std::move(font));
  IgnoreErrors([&] { MeasureCaption(); });
  Paint();
  host_.PropertyChanged("Font");
}

void KorvelDivider::InitProperties() {
  // Only the ambient font's name is taken over; size and style stay the surface's.
  if (FontRef ambient = host_.AmbientFont()) UserControl().Font()->SetName(ambient->Name());
}

void KorvelDivider::ReadProperties(const PropertyBag& bag) {
  // A key that is missing or cannot be converted reads as its default.
  IgnoreErrors([&] {
    UserControl().SetFont(
        ReadOr(bag, "Font", Variant::Object(host_.AmbientFont()), [](const Variant& v) { return v.ToFont(); }));
  });
  IgnoreErrors([&] {
    SetCaption(ReadOr(bag, "Caption", Variant::String(""), [](const Variant& v) { return v.ToString(); }));
  });
}

void KorvelDivider::WriteProperties(PropertyBag& bag) {
  bag.WriteProperty("Caption", Variant::String(caption_), Variant::String(""));
  bag.WriteProperty("Font", Variant::Object(UserControl().Font()));
}

void KorvelDivider::Resize() {
  IgnoreErrors([&] {
    width_ = CLng(UserControl().ScaleWidth());
    height_ = CLng(UserControl().ScaleHeight());
  });
  Paint();
}

void KorvelDivider::Paint() {
  // A failure while drawing leaves the picture as far as it got.
  IgnoreErrors([&] {
    Surface& s = UserControl();
    s.Cls();
    if (width_ < height_) {
      // Running down: shadow on the left of the middle, highlight on it.
      std::int32_t x = IntDiv(width_, 2);
      s.Line(static_cast<float>(x - 1), 0, static_cast<float>(x - 1), static_cast<float>(height_), kShadow);
      s.Line(static_cast<float>(x), 0, static_cast<float>(x), static_cast<float>(height_), kHighlight);
      return;
    }
    // Running across: the caption sits on the line, which runs directly under it.
    std::int32_t top = IntDiv(height_ - text_height_, 2) - 1;
    float y = static_cast<float>(top + text_height_);
    s.Line(0, y, static_cast<float>(width_), y, kShadow);
    s.Line(0, y + 1, static_cast<float>(width_), y + 1, kHighlight);
    s.SetCurrentX(0);
    s.SetCurrentY(static_cast<float>(top));
    s.Print(caption_);
  });
}

Variant KorvelDivider::Invoke(const std::string& name, InvokeKind kind, std::vector<Variant>& args) {
  MemberCall call{name, kind, args};
  if (call.Get("Caption")) return Caption();
  if (call.Put("Caption")) return SetCaption(call.Value().ToString()), Variant();
  if (call.Get("Default_")) return Default_();
  if (call.Put("Default_")) return SetDefault_(call.Value().ToString()), Variant();
  if (call.Get("Font")) return Variant::Object(Font());
  if (call.PutRef("Font")) return SetFont(call.Value().ToFont()), Variant();
  return Control::Invoke(name, kind, args);
}

}  // namespace korvel
