// The constituents of the library's property pages that hold state: a text box, a
// drop-down list, a check box and a frame (labels and command buttons are in
// widgets.h). Each is a state model that keeps the platform's notification rules:
// a text box raises Change only when its text really changes, a list and a check
// box raise Click only when their index or value changes, whether the user or code
// changed it; a disabled field takes no user input. Each draws itself on the page's
// surface in the classic look.
#pragma once
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "framework/font.h"
#include "framework/surface.h"
#include "framework/types.h"

namespace korvel {

// The keyboard focus among the fields of one page: at most one field holds it.
struct FocusScope {
  const void* owner = nullptr;
};

// A field that can take the focus and be disabled.
class FocusableField {
 public:
  bool Enabled() const { return enabled_; }
  // A disabled field cannot keep the focus.
  void SetEnabled(bool enabled);
  bool HasFocus() const { return scope_ && scope_->owner == this; }
  // Takes the focus; a disabled field or one on no page refuses it (returns false).
  bool SetFocus();
  // The page the field is on (set when the page adds the field).
  void SetFocusScope(FocusScope* scope) { scope_ = scope; }

 protected:
  bool enabled_ = true;
  FocusScope* scope_ = nullptr;
};

class TextBox : public FocusableField {
 public:
  std::string name;
  Rect rect;
  FontRef font;
  std::function<void()> on_change;

  const std::string& Text() const { return text_; }
  // Sets the text; the caret goes to the start with nothing selected. Change is
  // raised only when the text differs from the old one.
  void SetText(const std::string& text);
  // Positions are in characters from 0. SelStart is clamped to the text and clears
  // the selection; SelLength is clamped to what follows SelStart.
  std::int32_t SelStart() const { return sel_start_; }
  void SetSelStart(std::int32_t start);
  std::int32_t SelLength() const { return sel_length_; }
  void SetSelLength(std::int32_t length);
  std::string SelText() const { return text_.substr(sel_start_, sel_length_); }
  // The user types text over the selection (nothing happens when disabled); the
  // caret ends after the typed text.
  void Type(const std::string& typed);

  void Paint(Surface& s) const;

 private:
  std::string text_;
  std::int32_t sel_start_ = 0;
  std::int32_t sel_length_ = 0;
};

// A drop-down list (the list style of a combo box: the text is always one of the items).
class ComboBox : public FocusableField {
 public:
  std::string name;
  Rect rect;
  FontRef font;
  std::function<void()> on_click;

  void AddItem(const std::string& item) { items_.push_back(item); }
  // Empties the list; the index becomes -1 without a Click.
  void Clear();
  std::int32_t ListCount() const { return static_cast<std::int32_t>(items_.size()); }
  std::string List(std::int32_t index) const;
  // -1 when nothing is selected.
  std::int32_t ListIndex() const { return list_index_; }
  // An index outside -1 to ListCount - 1 is ignored; Click is raised when the index changes.
  void SetListIndex(std::int32_t index);
  // The text of the selected item, "" when none.
  std::string Text() const { return List(list_index_); }
  // The user picks an item from the drop-down (nothing happens when disabled).
  void Choose(std::int32_t index);

  void Paint(Surface& s) const;

 private:
  std::vector<std::string> items_;
  std::int32_t list_index_ = -1;
};

inline constexpr std::int16_t vbUnchecked = 0;
inline constexpr std::int16_t vbChecked = 1;
inline constexpr std::int16_t vbGrayed = 2;

class CheckBox : public FocusableField {
 public:
  std::string name;
  std::string caption;
  Rect rect;
  FontRef font;
  std::function<void()> on_click;

  std::int16_t Value() const { return value_; }
  // 0 unchecked, 1 checked, 2 grayed; other values are ignored. Click is raised
  // when the value changes.
  void SetValue(std::int16_t value);
  // The user clicks the box: checked becomes unchecked, anything else checked
  // (nothing happens when disabled).
  void Toggle();

  void Paint(Surface& s) const;

 private:
  std::int16_t value_ = vbUnchecked;
};

// An etched frame that groups fields, with an optional caption in its top edge.
struct Frame {
  std::string name;
  std::string caption;
  Rect rect;
  FontRef font;
  void Paint(Surface& s) const;
};

}  // namespace korvel
