// KorvelLink: a hyperlink label. It shows one line of text centred in its area,
// turns to its hover colour and underlines itself while the mouse is over it, and
// opens its URL with the shell when it is clicked.
#pragma once
#include <cstdint>
#include <string>

#include "framework/control.h"

namespace korvel {

class KorvelLink : public Control {
 public:
  // What the link shows when it has neither a caption nor a URL.
  static constexpr const char* kGoText = "Go to the Internet...";
  // The event interface holds Click (the standard Click id). The link declares it
  // but never raises it: a click only opens the URL.
  static constexpr const char* kClickEvent = "Click";
  static constexpr std::int32_t kClickDispId = -600;
  // The default member.
  static constexpr const char* kDefaultMember = "URL";
  // MousePointer values: the link's own pointing-hand cursor, and the default one.
  static constexpr int kHandPointer = 99;
  static constexpr int kDefaultPointer = 0;

  KorvelLink(Host& host, Platform& platform);

  // ---- dispatch interface, in its order ----
  const std::string& Caption() const { return caption_; }
  void SetCaption(const std::string& caption);
  const std::string& URL() const { return url_; }
  void SetURL(const std::string& url);
  bool Enabled() const { return enabled_; }
  void SetEnabled(bool enabled);
  // AboutBox() comes from Control.
  OleColor ForeColor() const { return fore_color_; }
  void SetForeColor(OleColor color);
  OleColor BackColor() const { return back_color_; }
  void SetBackColor(OleColor color);
  const FontRef& Font() const { return font_; }
  void SetFont(FontRef font);
  OleColor HoverColor() const { return hover_color_; }
  void SetHoverColor(OleColor color);

  // Late binding: the members of the dispatch interface by name.
  Variant Invoke(const std::string& name, InvokeKind kind, std::vector<Variant>& args) override;

  // ---- life cycle ----
  void InitProperties() override;
  void ReadProperties(const PropertyBag& bag) override;
  void WriteProperties(PropertyBag& bag) override;
  void Resize() override;
  void Paint() override;
  void MouseMove(int button, int shift, float x, float y) override;
  void MouseUp(int button, int shift, float x, float y) override;

  // The text the link shows; also works out where it is printed (TextX, TextY).
  std::string GetLinkText();
  bool Hovering() const { return hovering_; }
  std::int16_t TextX() const { return text_x_; }
  std::int16_t TextY() const { return text_y_; }

 private:
  void TrackHover(float x, float y);

  std::string caption_;
  std::string url_;
  // A fresh object starts with every field cleared (the flag false); InitProperties
  // or ReadProperties fill them in.
  bool enabled_ = false;
  OleColor fore_color_ = 0;
  OleColor back_color_ = 0;
  FontRef font_;
  OleColor hover_color_ = 0;
  bool hovering_ = false;
  std::int16_t text_x_ = 0;
  std::int16_t text_y_ = 0;
};

}  // namespace korvel
