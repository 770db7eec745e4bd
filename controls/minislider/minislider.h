// KorvelMiniSlider: a flat value bar. A black outline whose inside is filled from
// the left with the bar colour up to Value and with the background colour for the
// rest; pressing a mouse button over it and dragging sets the value.
#pragma once
#include <cstdint>

#include "framework/control.h"
#include "framework/types.h"

namespace korvel {

class KorvelMiniSlider : public Control {
 public:
  KorvelMiniSlider(Host& host, Platform& platform);
  ~KorvelMiniSlider() override;

  // ---- dispatch interface ----
  // Value (default member): clamped to Min..Max; every assignment raises Change.
  std::int32_t Value() const { return value_; }
  void SetValue(std::int32_t value);
  // Min and Max pull the other two along; they raise no Change.
  std::int32_t Min() const { return min_; }
  void SetMin(std::int32_t value);
  std::int32_t Max() const { return max_; }
  void SetMax(std::int32_t value);
  OleColor ForeColor() const { return fore_color_; }
  void SetForeColor(OleColor color);
  OleColor BackColor() const { return back_color_; }
  void SetBackColor(OleColor color);
  // Enabled: an assignment only marks the property changed when it differs; the
  // flag itself comes from new-instance defaults and loading alone.
  bool Enabled() const { return enabled_; }
  void SetEnabled(bool enabled);
  // AboutBox: the shared one of Control.
  // Events: Click(NewValue) and Change(NewValue), both signed 32-bit.

  // Late binding: the members of the dispatch interface by name.
  Variant Invoke(const std::string& name, InvokeKind kind, std::vector<Variant>& args) override;

  // ---- life cycle ----
  void InitProperties() override;
  void ReadProperties(const PropertyBag& bag) override;
  void WriteProperties(PropertyBag& bag) override;
  void Resize() override;
  void Paint() override;
  void MouseDown(int button, int shift, float x, float y) override;
  void MouseMove(int button, int shift, float x, float y) override;

  // ---- derived state for tests ----
  std::int32_t PixelWidth() const { return width_; }
  std::int32_t PixelHeight() const { return height_; }
  float Scale() const { return scale_; }

 private:
  void RecomputeScale();

  std::int32_t value_ = 0;
  std::int32_t min_ = 0;
  std::int32_t max_ = 0;
  OleColor fore_color_ = 0;
  OleColor back_color_ = 0;
  bool enabled_ = false;
  std::int32_t width_ = 0;
  std::int32_t height_ = 0;
  float scale_ = 0;
};

}  // namespace korvel
