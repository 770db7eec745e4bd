// KorvelBar: a percentage bar. A one-pixel sunken frame whose inside is filled
// from the left with the resource form's gradient in proportion to Value (0..100)
// and with the button face for the rest. Full at design time; persists nothing.
#pragma once
#include <cstdint>
#include <memory>

#include "framework/control.h"
#include "framework/res_form.h"
#include "framework/types.h"

namespace korvel {

class KorvelBar : public Control {
 public:
  KorvelBar(Host& host, Platform& platform);
  ~KorvelBar() override;

  // ---- dispatch interface ----
  // Value (default member): percent filled. Set only at run time; 101 and above
  // become 100, negatives 0.
  std::int16_t Value() const { return value_; }
  void SetValue(std::int16_t value);
  // AboutBox: the shared one of Control.

  // Late binding: the members of the dispatch interface by name.
  Variant Invoke(const std::string& name, InvokeKind kind, std::vector<Variant>& args) override;

  // ---- life cycle ----
  void Initialize() override;
  void InitProperties() override;
  void ReadProperties(const PropertyBag& bag) override;
  // No WriteProperties: nothing is persisted.
  void Resize() override;
  void Paint() override;
  void Show() override;

  // ---- state for tests ----
  const Rect& FrameRect() const { return frame_rect_; }
  OleColor HighlightColor() const { return highlight_color_; }
  OleColor FaceColor() const { return face_color_; }
  // The resource form this bar loaded (null before Initialize).
  ResForm* Resources() { return res_form_.get(); }

 private:
  // The one routine behind InitProperties and ReadProperties: reads no key.
  void ReadBarProperties(const PropertyBag* bag);

  std::int16_t value_ = 0;
  Rect frame_rect_;
  // Set with the properties, never drawn with.
  OleColor highlight_color_ = 0;
  OleColor face_color_ = 0;
  std::shared_ptr<ResForm> res_form_;
};

}  // namespace korvel
