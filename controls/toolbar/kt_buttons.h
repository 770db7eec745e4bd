// ktButtons: the Buttons property page of the toolbar. The page keeps its own copy
// of the button list, shows one item at a time, lets the designer add, remove and
// move items, checks keys, and writes the whole list back through the toolbar's
// Customize method when the host applies the page. The toolbar is reached only by
// name through Automation, never by its type.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "framework/property_page.h"

namespace korvel {

class ktButtons : public PropertyPage {
 public:
  // The page's size in pixels.
  static constexpr int kWidth = 340;
  static constexpr int kHeight = 200;
  static constexpr const char* kTooManyPrompt =
      "You can only edit one toolbar at a time.  Any changes you make will only affect one toolbar.";
  static constexpr const char* kTooManyTitle = "Too many controls selected";
  static constexpr const char* kInvalidKeyPrompt =
      "This is an invalid key name.  Use only letters, numbers, and underscores ( _ ) in the name, and start the "
      "name with a letter.";
  static constexpr const char* kInvalidKeyTitle = "Invalid key";

  ktButtons(Host& host, Platform& platform);

  // Sets the fields' enabled state from the count and the current item's style.
  void EnableControls();

  // ---- the working copy (indices from 1) ----
  std::int16_t Current() const { return current_; }
  std::int16_t Count() const { return count_; }
  const std::string& Key(int i) const { return key_[Slot(i)]; }
  const std::string& Tip(int i) const { return tip_[Slot(i)]; }
  std::int32_t Style(int i) const { return style_[Slot(i)]; }
  bool ItemEnabled(int i) const { return enabled_[Slot(i)]; }
  bool ItemValue(int i) const { return value_[Slot(i)]; }
  std::int16_t Width(int i) const { return width_[Slot(i)]; }

  // ---- fields ----
  Label ButtonCaptionLabel;
  Label CurButtonLabel;
  Label KeyLabel;
  TextBox KeyBox;
  Label TipLabel;
  TextBox TipBox;
  Label StyleLabel;
  ComboBox StyleList;
  Label WidthLabel;
  TextBox WidthBox;
  CheckBox EnabledCheck;
  CheckBox ValueCheck;
  Frame SelectorFrame;
  CommandButton LeftButton;
  CommandButton AddButton;
  CommandButton RemoveButton;
  CommandButton RightButton;
  Label ApplyLabel;

 protected:
  void SelectionChanged() override;
  void ApplyChanges() override;

 private:
  std::size_t Slot(int i) const { return static_cast<std::size_t>(i - 1); }

  void ShowCurrent();
  void StoreCurrent();
  void LoadFromControl();
  void ApplyToControl();
  void AddItem();
  void RemoveItem();
  void MoveLeft();
  void MoveRight();
  bool ValidateKey();
  void CopyItem(int i, int offset);
  void ClearItem(int i);
  void ResizeArrays();
  void SwapItems(int a, int b);
  // The selected toolbar's Customize, with the page's list or to receive it.
  void CallCustomize(bool update_control);

  FontRef font_;
  std::int16_t current_ = 0;
  std::int16_t count_ = 0;
  std::vector<std::string> key_;
  std::vector<std::string> tip_;
  std::vector<std::int32_t> style_;
  std::vector<bool> enabled_;
  std::vector<bool> value_;
  std::vector<std::int16_t> width_;
};

}  // namespace korvel
