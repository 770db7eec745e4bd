// KorvelToolbar: a single-row image toolbar. Its buttons are not windows but cells
// of one drawing surface (ButtonArea) laid out left to right, each named by a text
// key. The images come from one strip (Picture) from which three state pictures
// (normal, hot, disabled) are prepared whenever the strip or its mask settings
// change, so that painting a button is a fill, an optional edge and one copy.
#pragma once
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "framework/control.h"
#include "framework/font.h"
#include "framework/picture.h"
#include "framework/surface.h"
#include "framework/types.h"

namespace korvel {

// ktStyle
enum ktStyle : std::int32_t { ktButton = 0, ktCheck = 1, ktSeparator = 2, ktPlaceholder = 3 };
// ktBorder
enum ktBorder : std::int32_t { ktNoBorder = 0, ktRaised = 1, ktBar = 2, ktInternetExplorer = 3 };

class KorvelToolbar : public Control {
 public:
  KorvelToolbar(Host& host, Platform& platform);
  ~KorvelToolbar() override;

  // ---- dispatch interface ----
  // BorderStyle, Picture, MaskColor and UseMaskColor change only at design time;
  // at run time an assignment is ignored without an error.
  std::int32_t BorderStyle() const { return border_style_; }
  void SetBorderStyle(std::int32_t style);
  const PictureRef& Picture() const { return picture_; }
  // A strip of height 0 raises run-time error 11 (division by zero).
  void SetPicture(PictureRef picture);
  OleColor MaskColor() const { return mask_color_; }
  void SetMaskColor(OleColor color);
  bool UseMaskColor() const { return use_mask_color_; }
  void SetUseMaskColor(bool use);
  // Keyed members: an unknown key reads as false / "" / 0 and ignores assignments.
  // Enabled and Value work at run time, redraw the one button and mark nothing.
  bool Enabled(const std::string& key);
  void SetEnabled(const std::string& key, bool enabled);
  bool Value(const std::string& key);
  void SetValue(const std::string& key, bool value);
  // Declared with a boolean result: the tip text converted to a boolean; text that
  // does not convert raises error 13. The text itself reaches containers through
  // Hover and the property page through Customize.
  bool ToolTipText(const std::string& key);
  std::int32_t Style(const std::string& key);
  // The whole button list in one call (the property page's way in). Fetch fills
  // the vectors (element 0 is button 1); apply replaces the list. Nothing at run time.
  void Customize(bool update_control, std::int16_t& count, std::vector<std::string>& key,
                 std::vector<std::string>& tip, std::vector<std::int32_t>& style, std::vector<bool>& enabled,
                 std::vector<bool>& value, std::vector<std::int16_t>& placeholder_width);
  // A new font object from the platform's message font.
  FontRef GetDefaultFont();
  // Events: Click(Key, X, Y), RightClick(Key, X, Y), Hover(Key, ToolTipText).

  Variant Invoke(const std::string& name, InvokeKind kind, std::vector<Variant>& args) override;

  // ---- life cycle ----
  void InitProperties() override;
  void ReadProperties(const PropertyBag& bag) override;
  void WriteProperties(PropertyBag& bag) override;
  void Resize() override;
  void Paint() override;
  // Where the control's area has been given a window since the toolbar was made (a
  // container activating it in place), the button area and the tip get windows of
  // their own: the area a child of the control's, the tip made top-level when shown.
  void Show() override;
  // The mouse events are the button area's.
  Surface& InputSurface() override { return *button_area_; }
  // Mouse input of ButtonArea (coordinates in ButtonArea pixels).
  void MouseDown(int button, int shift, float x, float y) override;
  void MouseMove(int button, int shift, float x, float y) override;
  void MouseUp(int button, int shift, float x, float y) override;

  // ---- button list and geometry ----
  std::int16_t ButtonCount() const { return button_count_; }
  // 1-based; index must be in 1..ButtonCount.
  const std::string& KeyAt(int index) const { return keys_[Slot(index)]; }
  const std::string& TipAt(int index) const { return tips_[Slot(index)]; }
  std::int32_t StyleAt(int index) const { return styles_[Slot(index)]; }
  bool EnabledAt(int index) const { return enabled_[Slot(index)] != 0; }
  bool ValueAt(int index) const { return values_[Slot(index)] != 0; }
  std::int16_t WidthAt(int index) const { return widths_[Slot(index)]; }
  // Sizes of the six arrays (they always equal ButtonCount).
  std::size_t ArraySize(int which) const;

  int FindButton(const std::string& key) const;
  std::int32_t ButtonLeft(int index) const;
  int ButtonAt(std::int32_t x) const;
  std::int32_t ImageOffset(int index) const;
  std::int32_t ItemWidth(int index) const;

  // ---- derived state ----
  std::int16_t ButtonHeight() const { return button_height_; }
  std::int16_t ImageSize() const { return image_size_; }
  std::int16_t ImageCount() const { return image_count_; }
  std::int32_t AreaWidth() const { return area_width_; }
  const Rect& BorderRect() const { return border_rect_; }
  std::int16_t BorderEdge() const { return border_edge_; }
  ColorRef HotColor() const { return hot_color_; }
  int HotIndex() const { return hot_index_; }
  bool Inside() const { return inside_; }
  bool Pressing() const { return pressing_; }
  const FontRef& ToolTipFont() const { return tool_tip_->Font(); }
  // How many times the state pictures were rebuilt.
  int Rebuilds() const { return rebuilds_; }

  // ---- constituent surfaces ----
  Surface& ButtonArea() { return *button_area_; }
  Surface& ToolTip() { return *tool_tip_; }
  Surface& NormalPic() { return *normal_pic_; }
  Surface& ActivePic() { return *active_pic_; }
  Surface& DisabledPic() { return *disabled_pic_; }
  Surface& SrcPic() { return *src_pic_; }
  Surface& WorkPic(int index) { return index == 1 ? *work_pic_[0] : *work_pic_[1]; }

  // Draws one item in its current state (nothing while the toolbar is invisible).
  void DrawButton(int index);
  // Paints every item (ButtonArea's paint).
  void PaintButtons();

 private:
  static std::size_t Slot(int index) { return static_cast<std::size_t>(index - 1); }
  bool Valid(int index) const { return index >= 1 && index <= button_count_; }
  void ResizeButtonArrays();
  void RebuildPictures();
  void DrawCell(int index, std::int32_t x, std::int32_t image_x);
  bool PointerInside(int index, std::int32_t x, float y) const;
  void ShowToolTip(const std::string& text);
  void HideToolTip();
  void RaiseButtonEvent(const char* name, int index);
  void ApplyButtons(std::int16_t count, const std::vector<std::string>& key, const std::vector<std::string>& tip,
                    const std::vector<std::int32_t>& style, const std::vector<bool>& enabled,
                    const std::vector<bool>& value, const std::vector<std::int16_t>& width);

  // persisted
  std::int32_t border_style_ = ktNoBorder;
  PictureRef picture_;
  OleColor mask_color_ = 0x00FF00FF;
  bool use_mask_color_ = true;
  std::int16_t button_count_ = 0;
  std::vector<std::string> keys_;
  std::vector<std::string> tips_;
  std::vector<std::int32_t> styles_;
  std::vector<std::uint8_t> enabled_;
  std::vector<std::uint8_t> values_;
  std::vector<std::int16_t> widths_;

  // derived
  std::int16_t button_height_ = 0;
  std::int16_t image_count_ = 0;
  std::int16_t image_size_ = 0;
  std::int32_t area_width_ = 0;
  Rect border_rect_;
  std::int16_t border_edge_ = 0;
  ColorRef hot_color_ = 0;
  int rebuilds_ = 0;

  // interaction
  int hot_index_ = 0;
  bool inside_ = false;
  bool pressing_ = false;

  std::unique_ptr<Surface> button_area_;
  std::unique_ptr<Surface> tool_tip_;
  std::unique_ptr<Surface> src_pic_;
  std::unique_ptr<Surface> normal_pic_;
  std::unique_ptr<Surface> active_pic_;
  std::unique_ptr<Surface> disabled_pic_;
  std::unique_ptr<Surface> work_pic_[2];
};

}  // namespace korvel
