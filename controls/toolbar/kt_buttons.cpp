#include "controls/toolbar/kt_buttons.h"

#include <algorithm>
#include <memory>

#include "framework/arith.h"
#include "framework/brightmoor.h"
#include "framework/errors.h"

namespace korvel {

namespace {

constexpr std::int32_t kStyleButton = 0;
constexpr std::int32_t kStyleCheck = 1;
constexpr std::int32_t kStyleSeparator = 2;
constexpr std::int32_t kStylePlaceholder = 3;
constexpr std::int32_t kMsgExclamation = 48;

// The numeric box's value: the leading number of its text, read as the host's Val
// reads it (spaces skipped, a sign, digits, a fraction), rounded, and kept within
// the widths a toolbar accepts (1 to 32767).
std::int16_t WidthOfText(const std::string& text) {
  std::size_t i = 0;
  while (i < text.size() && (text[i] == ' ' || text[i] == '\t')) ++i;
  bool negative = false;
  if (i < text.size() && (text[i] == '-' || text[i] == '+')) negative = text[i++] == '-';
  double v = 0;
  while (i < text.size() && text[i] >= '0' && text[i] <= '9' && v < 1e6) v = v * 10 + (text[i++] - '0');
  if (i < text.size() && text[i] == '.') {
    double scale = 0.1;
    for (++i; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i, scale /= 10) v += (text[i] - '0') * scale;
  }
  v = RoundHalfEven(negative ? -v : v);
  return static_cast<std::int16_t>(std::clamp(v, 1.0, 32767.0));
}

// Element i (from 1) of an array that came back from the toolbar, or nothing when
// the array does not reach it.
const Variant* Element(const Variant& array, int i) {
  if (array.Type() != VarType::Array) return nullptr;
  const VariantArray& a = array.ToArray();
  std::int64_t at = static_cast<std::int64_t>(i) - a.lower_bound;
  if (at < 0 || at >= static_cast<std::int64_t>(a.items.size())) return nullptr;
  return &a.items[static_cast<std::size_t>(at)];
}

}  // namespace

ktButtons::ktButtons(Host& host, Platform& platform)
    : PropertyPage(host, platform, "Buttons", kWidth, kHeight), font_(std::make_shared<Font>()) {
  auto label = [this](Label& l, const char* name, const char* caption, Rect rc) {
    l = Label{name, caption, rc, font_};
    l.word_wrap = false;
  };
  auto button = [this](CommandButton& b, const char* name, const char* caption, Rect rc) {
    b = CommandButton{name, caption, rc, font_, false, nullptr};
  };

  label(ButtonCaptionLabel, "ButtonCaptionLabel", "Button:", Rect{8, 14, 56, 27});
  label(CurButtonLabel, "CurButtonLabel", "", Rect{60, 14, 100, 27});
  SelectorFrame = Frame{"SelectorFrame", "", Rect{144, 4, 332, 42}, font_};
  button(LeftButton, "LeftButton", "<", Rect{152, 12, 176, 34});
  button(AddButton, "AddButton", "&Add", Rect{180, 12, 236, 34});
  button(RemoveButton, "RemoveButton", "&Remove", Rect{240, 12, 296, 34});
  button(RightButton, "RightButton", ">", Rect{300, 12, 324, 34});
  label(KeyLabel, "KeyLabel", "&Key:", Rect{8, 54, 92, 67});
  KeyBox.name = "KeyBox";
  KeyBox.rect = Rect{96, 50, 332, 71};
  label(TipLabel, "TipLabel", "&ToolTipText:", Rect{8, 80, 92, 93});
  TipBox.name = "TipBox";
  TipBox.rect = Rect{96, 76, 332, 97};
  label(StyleLabel, "StyleLabel", "&Style:", Rect{8, 106, 92, 119});
  StyleList.name = "StyleList";
  StyleList.rect = Rect{96, 102, 220, 123};
  label(WidthLabel, "WidthLabel", "&Width:", Rect{8, 132, 92, 145});
  WidthBox.name = "WidthBox";
  WidthBox.rect = Rect{96, 128, 150, 149};
  EnabledCheck.name = "EnabledCheck";
  EnabledCheck.caption = "&Enabled";
  EnabledCheck.rect = Rect{236, 104, 332, 121};
  ValueCheck.name = "ValueCheck";
  ValueCheck.caption = "&Value";
  ValueCheck.rect = Rect{236, 130, 332, 147};
  label(ApplyLabel, "ApplyLabel", "Click Apply to update control.", Rect{8, 176, 332, 190});
  for (FontRef* f : {&KeyBox.font, &TipBox.font, &StyleList.font, &WidthBox.font, &EnabledCheck.font,
                     &ValueCheck.font})
    *f = font_;
  for (const char* item : {"0 - Button", "1 - Check", "2 - Separator", "3 - Placeholder"}) StyleList.AddItem(item);

  // ---- field events ----
  auto mark = [this] { SetChanged(true); };
  KeyBox.on_change = mark;
  TipBox.on_change = mark;
  WidthBox.on_change = mark;
  EnabledCheck.on_click = mark;
  ValueCheck.on_click = mark;
  StyleList.on_click = [this] {
    SetChanged(true);
    EnableControls();
  };
  AddButton.on_click = [this] { AddItem(); };
  RemoveButton.on_click = [this] { RemoveItem(); };
  LeftButton.on_click = [this] { MoveLeft(); };
  RightButton.on_click = [this] { MoveRight(); };

  for (PageField f : std::initializer_list<PageField>{
           &ButtonCaptionLabel, &CurButtonLabel, &SelectorFrame, &LeftButton, &AddButton, &RemoveButton,
           &RightButton, &KeyLabel, &KeyBox, &TipLabel, &TipBox, &StyleLabel, &StyleList, &EnabledCheck,
           &WidthLabel, &WidthBox, &ValueCheck, &ApplyLabel})
    AddField(f);
  EnableControls();
}

// ---- page events ----

void ktButtons::SelectionChanged() {
  if (SelectedControls().size() >= 2) host_.MsgBox(kTooManyPrompt, kMsgExclamation, kTooManyTitle);
  LoadFromControl();
  current_ = count_ > 0 ? 1 : 0;
  ShowCurrent();
}

void ktButtons::ApplyChanges() {
  StoreCurrent();
  ApplyToControl();
}

// ---- fields ----

void ktButtons::EnableControls() {
  // The style is the one the list shows for the current item: choosing another
  // style in the list takes effect on the fields at once.
  bool any = count_ > 0;
  std::int32_t style = StyleList.ListIndex();
  bool key = false, check = false, value = false, width = false;
  if (any) {
    switch (style) {
      case kStyleButton: key = check = true; break;
      case kStyleCheck: key = check = value = true; break;
      case kStyleSeparator: break;
      case kStylePlaceholder: width = true; break;
      default: break;
    }
  }
  StyleList.SetEnabled(any);
  KeyBox.SetEnabled(key);
  TipBox.SetEnabled(key);
  EnabledCheck.SetEnabled(check);
  ValueCheck.SetEnabled(value);
  WidthBox.SetEnabled(width);
}

void ktButtons::ShowCurrent() {
  if (count_ > 0) {
    CurButtonLabel.caption = CStr(static_cast<std::int32_t>(current_));
    KeyBox.SetText(Key(current_));
    TipBox.SetText(Tip(current_));
    StyleList.SetListIndex(Style(current_));
    EnabledCheck.SetValue(ItemEnabled(current_) ? vbChecked : vbUnchecked);
    ValueCheck.SetValue(ItemValue(current_) ? vbChecked : vbUnchecked);
    WidthBox.SetText(CStr(static_cast<std::int32_t>(Width(current_))));
  }
  EnableControls();
}

void ktButtons::StoreCurrent() {
  if (count_ <= 0 || current_ <= 0) return;
  std::size_t c = Slot(current_);
  key_[c] = KeyBox.Text();
  tip_[c] = TipBox.Text();
  style_[c] = std::max(StyleList.ListIndex(), kStyleButton);
  enabled_[c] = EnabledCheck.Value() > 0;
  value_[c] = ValueCheck.Value() > 0;
  width_[c] = WidthOfText(WidthBox.Text());
}

// ---- the toolbar ----

void ktButtons::LoadFromControl() { CallCustomize(false); }

void ktButtons::ApplyToControl() { CallCustomize(true); }

void ktButtons::CallCustomize(bool update_control) {
  if (SelectedControls().empty() || !SelectedControls().front()) {
    if (!update_control) {
      count_ = 0;
      ResizeArrays();
    }
    return;
  }
  std::vector<Variant> keys, tips, styles, enableds, values, widths;
  if (update_control) {
    for (int i = 1; i <= count_; ++i) {
      keys.push_back(Variant::String(Key(i)));
      tips.push_back(Variant::String(Tip(i)));
      styles.push_back(Variant::Long(Style(i)));
      enableds.push_back(Variant::Bool(ItemEnabled(i)));
      values.push_back(Variant::Bool(ItemValue(i)));
      widths.push_back(Variant::Integer(Width(i)));
    }
  }
  std::vector<Variant> args{Variant::Bool(update_control),
                            Variant::Integer(update_control ? count_ : std::int16_t{0}),
                            Variant::Array(std::move(keys), 1),
                            Variant::Array(std::move(tips), 1),
                            Variant::Array(std::move(styles), 1),
                            Variant::Array(std::move(enableds), 1),
                            Variant::Array(std::move(values), 1),
                            Variant::Array(std::move(widths), 1)};
  bool ok = true;
  try {
    SelectedControls().front()->Invoke("Customize", InvokeKind::Method, args);
  } catch (const RuntimeError&) {
    // An object without Customize (or one that refuses the arguments) leaves the
    // page as it is when applying, and gives an empty list when loading.
    ok = false;
  }
  if (update_control) return;

  count_ = 0;
  if (ok && args.size() == 8) IgnoreErrors([&] { count_ = std::max<std::int16_t>(args[1].ToInteger(), 0); });
  ResizeArrays();
  for (int i = 1; i <= count_; ++i) {
    ClearItem(i);
    std::size_t s = Slot(i);
    if (const Variant* v = Element(args[2], i)) IgnoreErrors([&] { key_[s] = v->ToString(); });
    if (const Variant* v = Element(args[3], i)) IgnoreErrors([&] { tip_[s] = v->ToString(); });
    if (const Variant* v = Element(args[4], i)) IgnoreErrors([&] { style_[s] = v->ToLong(); });
    if (const Variant* v = Element(args[5], i)) IgnoreErrors([&] { enabled_[s] = v->ToBool(); });
    if (const Variant* v = Element(args[6], i)) IgnoreErrors([&] { value_[s] = v->ToBool(); });
    if (const Variant* v = Element(args[7], i)) IgnoreErrors([&] { width_[s] = v->ToInteger(); });
    // The corrections the toolbar makes when it reads a saved list.
    if (style_[s] < kStyleButton || style_[s] > kStylePlaceholder) style_[s] = kStyleButton;
    if (width_[s] < 1) width_[s] = 1;
  }
}

// ---- list operations ----

bool ktButtons::ValidateKey() {
  if (current_ == 0 || !KeyBox.Enabled() || IsValidKeyName(KeyBox.Text())) return true;
  host_.MsgBox(kInvalidKeyPrompt, kMsgExclamation, kInvalidKeyTitle);
  KeyBox.SetFocus();
  KeyBox.SetSelStart(0);
  KeyBox.SetSelLength(static_cast<std::int32_t>(KeyBox.Text().size()));
  return false;
}

void ktButtons::AddItem() {
  if (count_ == INT16_MAX) return;  // the count is a 16-bit number
  if (!ValidateKey()) return;
  StoreCurrent();
  ++count_;
  ResizeArrays();
  if (current_ == 0) {
    ClearItem(1);
    current_ = 1;
  } else if (current_ == 1 && count_ > 2) {
    // With the first item current, the new item goes in front of it; with a single
    // item it is appended (the branch below). The asymmetry is kept on purpose.
    for (int i = count_ - 1; i >= 1; --i) CopyItem(i, 1);
    ClearItem(1);
    current_ = 1;
  } else {
    for (int i = count_ - 1; i >= current_ + 1; --i) CopyItem(i, 1);
    ClearItem(current_ + 1);
    ++current_;
  }
  ShowCurrent();
  SetChanged(true);
}

void ktButtons::RemoveItem() {
  if (current_ == 0) return;
  if (current_ != count_) {
    for (int i = current_ + 1; i <= count_; ++i) CopyItem(i, -1);
  } else {
    --current_;
  }
  --count_;
  ResizeArrays();
  ShowCurrent();
  SetChanged(true);
}

void ktButtons::MoveLeft() {
  if (count_ <= 0 || current_ < 2) return;
  if (!ValidateKey()) return;
  StoreCurrent();
  SwapItems(current_, current_ - 1);
  --current_;
  ShowCurrent();
  SetChanged(true);
}

void ktButtons::MoveRight() {
  if (current_ >= count_) return;
  if (!ValidateKey()) return;
  StoreCurrent();
  SwapItems(current_, current_ + 1);
  ++current_;
  ShowCurrent();
  SetChanged(true);
}

void ktButtons::CopyItem(int i, int offset) {
  std::size_t from = Slot(i), to = Slot(i + offset);
  key_[to] = key_[from];
  tip_[to] = tip_[from];
  style_[to] = style_[from];
  enabled_[to] = enabled_[from];
  value_[to] = value_[from];
  width_[to] = width_[from];
}

void ktButtons::ClearItem(int i) {
  std::size_t s = Slot(i);
  key_[s] = "";
  tip_[s] = "";
  style_[s] = kStyleButton;
  enabled_[s] = true;
  value_[s] = false;
  width_[s] = 1;
}

void ktButtons::SwapItems(int a, int b) {
  std::size_t x = Slot(a), y = Slot(b);
  std::swap(key_[x], key_[y]);
  std::swap(tip_[x], tip_[y]);
  std::swap(style_[x], style_[y]);
  std::vector<bool>::swap(enabled_[x], enabled_[y]);
  std::vector<bool>::swap(value_[x], value_[y]);
  std::swap(width_[x], width_[y]);
}

void ktButtons::ResizeArrays() {
  // Items past the old end start empty, as a preserving resize leaves them.
  auto n = static_cast<std::size_t>(std::max<std::int16_t>(count_, 0));
  key_.resize(n);
  tip_.resize(n);
  style_.resize(n, 0);
  enabled_.resize(n, false);
  value_.resize(n, false);
  width_.resize(n, 0);
}

}  // namespace korvel
