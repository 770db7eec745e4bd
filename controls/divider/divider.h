// KorvelDivider: an etched separator, a shadow line with a highlight line beside it.
// Wider than tall (or square) it runs across with an optional caption sitting on
// the line; narrower than tall it runs down and shows no caption.
#pragma once
#include <cstdint>
#include <string>

#include "framework/control.h"

namespace korvel {

class KorvelDivider : public Control {
 public:
  // The hidden default member.
  static constexpr const char* kDefaultMember = "Default_";

  KorvelDivider(Host& host, Platform& platform);

  // ---- dispatch interface, in its order ----
  const std::string& Caption() const { return caption_; }
  void SetCaption(const std::string& caption);
  // The same value as Caption; assigning it assigns Caption.
  const std::string& Default_() const { return caption_; }
  void SetDefault_(const std::string& caption) { SetCaption(caption); }
  // The surface's own font.
  const FontRef& Font() { return UserControl().Font(); }
  void SetFont(FontRef font);
  // AboutBox() comes from Control.

  // Late binding: the members of the dispatch interface by name.
  Variant Invoke(const std::string& name, InvokeKind kind, std::vector<Variant>& args) override;

  // ---- life cycle ----
  void InitProperties() override;
  void ReadProperties(const PropertyBag& bag) override;
  void WriteProperties(PropertyBag& bag) override;
  void Resize() override;
  void Paint() override;
  void Show() override { Paint(); }

  // The caption's extent in pixels (0 x 0 without a caption).
  std::int32_t TextWidth() const { return text_width_; }
  std::int32_t TextHeight() const { return text_height_; }
  // The width and height the last resize found.
  std::int32_t DividerWidth() const { return width_; }
  std::int32_t DividerHeight() const { return height_; }

 private:
  void MeasureCaption();

  std::string caption_;
  std::int32_t text_width_ = 0;
  std::int32_t text_height_ = 0;
  std::int32_t width_ = 0;
  std::int32_t height_ = 0;
};

}  // namespace korvel
