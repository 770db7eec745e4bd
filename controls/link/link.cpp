#include "controls/link/link.h"

#include <algorithm>

#include "framework/arith.h"
#include "framework/brightmoor.h"
#include "framework/errors.h"

namespace korvel {

namespace {

constexpr OleColor kHighlight = 0x8000000D;  // COLOR_HIGHLIGHT
constexpr OleColor kGrayText = 0x80000011;   // COLOR_GRAYTEXT
constexpr OleColor kButtonFace = 0x8000000F; // COLOR_BTNFACE
constexpr OleColor kBlue = 0xFF0000;
constexpr OleColor kRed = 255;

// An offset kept in a 16-bit field; one beyond its range is held at the limit.
std::int16_t Offset16(std::int32_t v) {
  return static_cast<std::int16_t>(std::clamp<std::int32_t>(v, INT16_MIN, INT16_MAX));
}

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

KorvelLink::KorvelLink(Host& host, Platform& platform) : Control(host, platform) {
  // The link is designed with its own pointing-hand cursor.
  UserControl().SetMousePointer(kHandPointer);
}

// ---- properties ----

void KorvelLink::SetCaption(const std::string& caption) {
  caption_ = caption;
  Paint();
  host_.PropertyChanged("Caption");
}

void KorvelLink::SetURL(const std::string& url) {
  url_ = Trim(url);
  Paint();
  host_.PropertyChanged("URL");
}

void KorvelLink::SetEnabled(bool enabled) {
  if (enabled == enabled_) return;
  enabled_ = enabled;
  host_.SetExtenderEnabled(enabled);
  UserControl().SetMousePointer(enabled ? kHandPointer : kDefaultPointer);
  Paint();
  host_.PropertyChanged("Enabled");
}

void KorvelLink::SetForeColor(OleColor color) {
  fore_color_ = color;
  // A disabled link shows grey text, so its fore colour does not show yet.
  if (enabled_) Paint();
  host_.PropertyChanged("ForeColor");
}

void KorvelLink::SetBackColor(OleColor color) {
  back_color_ = color;
  UserControl().SetBackColor(color);
  Paint();
  host_.PropertyChanged("BackColor");
}

void KorvelLink::SetFont(FontRef font) {
  font_ = std::move(font);
  Paint();
  host_.PropertyChanged("Font");
}

void KorvelLink::SetHoverColor(OleColor color) {
  hover_color_ = color;
  if (hovering_) Paint();
  host_.PropertyChanged("HoverColor");
}

// ---- life cycle ----

void KorvelLink::InitProperties() {
  Surface& s = UserControl();
  // Only the ambient font's name is taken over; size and style stay the surface's.
  if (FontRef ambient = host_.AmbientFont()) s.Font()->SetName(ambient->Name());
  font_ = s.Font();
  enabled_ = true;
  back_color_ = host_.AmbientBackColor();
  s.SetBackColor(back_color_);
  fore_color_ = kHighlight;
  hover_color_ = kRed;
}

void KorvelLink::ReadProperties(const PropertyBag& bag) {
  // A key that is missing or cannot be converted reads as its default; reading
  // always goes on with the next key.
  auto text = [](const Variant& v) { return v.ToString(); };
  auto color = [](const Variant& v) { return v.ToColor(); };
  IgnoreErrors([&] {
    font_ = ReadOr(bag, "Font", Variant::Object(host_.AmbientFont()), [](const Variant& v) { return v.ToFont(); });
  });
  IgnoreErrors([&] { SetCaption(ReadOr(bag, "Caption", Variant::String(""), text)); });
  IgnoreErrors([&] { SetURL(ReadOr(bag, "URL", Variant::String(""), text)); });
  IgnoreErrors([&] { SetEnabled(ReadOr(bag, "Enabled", Variant::Bool(true), [](const Variant& v) { return v.ToBool(); })); });
  // The saved default is blue, while a new link starts in the highlight colour.
  IgnoreErrors([&] { SetForeColor(ReadOr(bag, "ForeColor", Variant::Color(kBlue), color)); });
  IgnoreErrors([&] { SetBackColor(ReadOr(bag, "BackColor", Variant::Color(kButtonFace), color)); });
  IgnoreErrors([&] { SetHoverColor(ReadOr(bag, "HoverColor", Variant::Color(kRed), color)); });
}

void KorvelLink::WriteProperties(PropertyBag& bag) {
  bag.WriteProperty("Font", Variant::Object(font_));
  bag.WriteProperty("Caption", Variant::String(caption_), Variant::String(""));
  bag.WriteProperty("URL", Variant::String(url_), Variant::String(""));
  bag.WriteProperty("Enabled", Variant::Bool(enabled_), Variant::Bool(true));
  bag.WriteProperty("BackColor", Variant::Color(back_color_), Variant::Color(kButtonFace));
  bag.WriteProperty("ForeColor", Variant::Color(fore_color_), Variant::Color(kBlue));
  bag.WriteProperty("HoverColor", Variant::Color(hover_color_), Variant::Color(kRed));
}

void KorvelLink::Resize() {
  // The link keeps its size; the text is centred again.
  Paint();
}

std::string KorvelLink::GetLinkText() {
  Surface& s = UserControl();
  std::string text;
  if (!caption_.empty()) {
    text = caption_;
  } else if (!url_.empty()) {
    std::string trimmed = Trim(url_);
    if (Left(LCase(trimmed), 7) == "mailto:")
      text = Mid(trimmed, 8);
    else
      text = url_;
  } else {
    text = kGoText;
  }
  text_x_ = Offset16(IntDiv(RoundHalfEven(s.ScaleWidth() - s.TextWidth(text)), 2));
  text_y_ = Offset16(IntDiv(RoundHalfEven(s.ScaleHeight() - s.TextHeight(text)), 2));
  return text;
}

void KorvelLink::Paint() {
  if (!font_) return;
  Surface& s = UserControl();
  s.Cls();
  s.SetFont(font_);
  bool underline = s.FontUnderline();
  if (hovering_) {
    s.SetForeColor(hover_color_);
    s.SetFontUnderline(true);
  } else {
    s.SetForeColor(enabled_ ? fore_color_ : kGrayText);
  }
  std::string text = GetLinkText();
  s.SetCurrentX(text_x_);
  s.SetCurrentY(text_y_);
  s.Print(text);
  s.SetFontUnderline(underline);
}

void KorvelLink::TrackHover(float x, float y) {
  Surface& s = UserControl();
  bool inside = x >= 0 && x < s.ScaleWidth() && y >= 0 && y < s.ScaleHeight();
  if (!inside) {
    platform_.user().ReleaseCapture();
    hovering_ = false;
    Paint();
  } else if (!hovering_) {
    // Holding the capture lets the link see the move that leaves it.
    platform_.user().SetCapture(s.hWnd());
    hovering_ = true;
    Paint();
  }
}

void KorvelLink::MouseMove(int button, int shift, float x, float y) {
  (void)button, (void)shift;
  TrackHover(x, y);
}

void KorvelLink::MouseUp(int button, int shift, float x, float y) {
  (void)button, (void)shift;
  Surface& s = UserControl();
  // The zero row and column count for hovering but not for clicking.
  if (!url_.empty() && enabled_ && x > 0 && x < s.ScaleWidth() && y > 0 && y < s.ScaleHeight())
    OpenDocument(platform_, url_);
  hovering_ = false;
  platform_.user().ReleaseCapture();
  TrackHover(x, y);
}

Variant KorvelLink::Invoke(const std::string& name, InvokeKind kind, std::vector<Variant>& args) {
  MemberCall call{name, kind, args};
  if (call.Get("Caption")) return Caption();
  if (call.Put("Caption")) return SetCaption(call.Value().ToString()), Variant();
  if (call.Get("URL")) return URL();
  if (call.Put("URL")) return SetURL(call.Value().ToString()), Variant();
  if (call.Get("Enabled")) return Variant::Bool(Enabled());
  if (call.Put("Enabled")) return SetEnabled(call.Value().ToBool()), Variant();
  if (call.Get("ForeColor")) return Variant::Color(ForeColor());
  if (call.Put("ForeColor")) return SetForeColor(call.Value().ToColor()), Variant();
  if (call.Get("BackColor")) return Variant::Color(BackColor());
  if (call.Put("BackColor")) return SetBackColor(call.Value().ToColor()), Variant();
  if (call.Get("Font")) return Variant::Object(Font());
  if (call.PutRef("Font")) return SetFont(call.Value().ToFont()), Variant();
  if (call.Get("HoverColor")) return Variant::Color(HoverColor());
  if (call.Put("HoverColor")) return SetHoverColor(call.Value().ToColor()), Variant();
  return Control::Invoke(name, kind, args);
}

}  // namespace korvel
