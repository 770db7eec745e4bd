// The fields of the property pages (text box, drop-down list, check box, frame,
// command button) and the property-page base: notification rules, focus, the
// page's changed state, and drawing.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "framework/page_widgets.h"
#include "framework/property_page.h"
#include "framework/widgets.h"
#include "platform/headless/headless_host.h"
#include "platform/headless/headless_platform.h"

using namespace korvel;
using namespace korvel::headless;

namespace {

constexpr ColorRef kPxWhite = Rgb(255, 255, 255);
constexpr ColorRef kPxBlack = Rgb(0, 0, 0);
constexpr ColorRef kPxShadow = Rgb(128, 128, 128);
constexpr ColorRef kPxFace = Rgb(192, 192, 192);

// A page with one field of each kind, which records what the overridables saw.
class SamplePage : public PropertyPage {
 public:
  SamplePage(Host& host, Platform& platform) : PropertyPage(host, platform, "Sample", 200, 120) {
    NameLabel = Label{"NameLabel", "&Name:", Rect{4, 4, 60, 18}, nullptr};
    NameBox.name = "NameBox";
    NameBox.rect = Rect{64, 2, 196, 22};
    KindList.name = "KindList";
    KindList.rect = Rect{64, 26, 160, 47};
    KindList.AddItem("One");
    KindList.AddItem("Two");
    FlagCheck.name = "FlagCheck";
    FlagCheck.caption = "&Flag";
    FlagCheck.rect = Rect{64, 52, 160, 69};
    Box = Frame{"Box", "Group", Rect{2, 72, 198, 118}, nullptr};
    GoButton = CommandButton{"GoButton", "&Go", Rect{10, 88, 70, 110}, nullptr, false, nullptr};
    NameBox.on_change = [this] { SetChanged(true); };
    FlagCheck.on_click = [this] { SetChanged(true); };
    for (PageField f : std::initializer_list<PageField>{&NameLabel, &NameBox, &KindList, &FlagCheck, &Box, &GoButton})
      AddField(f);
  }
  Label NameLabel;
  TextBox NameBox;
  ComboBox KindList;
  CheckBox FlagCheck;
  Frame Box;
  CommandButton GoButton;
  std::vector<std::string> seen;

 protected:
  void SelectionChanged() override {
    seen.push_back("SelectionChanged " + std::to_string(SelectedControls().size()));
    NameBox.SetText("loaded");  // raises Change, which marks the page changed
  }
  void ApplyChanges() override { seen.push_back("ApplyChanges"); }
};

class PageWidgets : public ::testing::Test {
 protected:
  HeadlessPlatform platform;
  HeadlessHost host{platform};
  int changes = 0;
  std::vector<std::string> log;
};

}  // namespace

// ---- text box ----

TEST_F(PageWidgets, TextBoxRaisesChangeOnlyWhenTheTextChanges) {
  TextBox box;
  box.on_change = [this] { ++changes; };
  box.SetText("");
  EXPECT_EQ(changes, 0);
  box.SetText("Open");
  EXPECT_EQ(changes, 1);
  box.SetText("Open");
  EXPECT_EQ(changes, 1);
  box.SetText("open");
  EXPECT_EQ(changes, 2);
  EXPECT_EQ(box.Text(), "open");
}

TEST_F(PageWidgets, TextBoxSettingTextPutsTheCaretAtTheStart) {
  TextBox box;
  box.SetText("Hello");
  box.SetSelStart(2);
  box.SetSelLength(3);
  box.SetText("World!");
  EXPECT_EQ(box.SelStart(), 0);
  EXPECT_EQ(box.SelLength(), 0);
}

TEST_F(PageWidgets, TextBoxSelectionIsClampedToTheText) {
  TextBox box;
  box.SetText("Hello");
  box.SetSelStart(9);
  EXPECT_EQ(box.SelStart(), 5);
  box.SetSelStart(-3);
  EXPECT_EQ(box.SelStart(), 0);
  box.SetSelStart(1);
  box.SetSelLength(10);
  EXPECT_EQ(box.SelLength(), 4);
  EXPECT_EQ(box.SelText(), "ello");
  box.SetSelLength(-1);
  EXPECT_EQ(box.SelLength(), 0);
  box.SetSelLength(2);
  box.SetSelStart(3);  // moving the start clears the selection
  EXPECT_EQ(box.SelLength(), 0);
}

TEST_F(PageWidgets, TextBoxTypingReplacesTheSelection) {
  TextBox box;
  box.on_change = [this] { ++changes; };
  box.SetText("ABCDE");
  changes = 0;
  box.SetSelStart(1);
  box.SetSelLength(3);
  box.Type("x");
  EXPECT_EQ(box.Text(), "AxE");
  EXPECT_EQ(box.SelStart(), 2);
  EXPECT_EQ(box.SelLength(), 0);
  EXPECT_EQ(changes, 1);
  box.Type("");  // nothing selected, nothing typed: no change
  EXPECT_EQ(changes, 1);
  box.SetSelStart(1);
  box.SetSelLength(1);
  box.Type("x");  // the same character over itself
  EXPECT_EQ(box.Text(), "AxE");
  EXPECT_EQ(changes, 1);
}

TEST_F(PageWidgets, DisabledTextBoxTakesNoTypingButCodeStillSetsIt) {
  TextBox box;
  box.on_change = [this] { ++changes; };
  box.SetEnabled(false);
  box.Type("abc");
  EXPECT_EQ(box.Text(), "");
  EXPECT_EQ(changes, 0);
  box.SetText("abc");
  EXPECT_EQ(box.Text(), "abc");
  EXPECT_EQ(changes, 1);
}

// ---- focus ----

TEST_F(PageWidgets, FocusBelongsToOneFieldOfThePage) {
  SamplePage page(host, platform);
  EXPECT_EQ(page.FocusOwner(), nullptr);
  EXPECT_TRUE(page.NameBox.SetFocus());
  EXPECT_TRUE(page.NameBox.HasFocus());
  EXPECT_EQ(page.FocusOwner(), &page.NameBox);
  EXPECT_TRUE(page.FlagCheck.SetFocus());
  EXPECT_FALSE(page.NameBox.HasFocus());
  EXPECT_TRUE(page.FlagCheck.HasFocus());
}

TEST_F(PageWidgets, DisabledFieldRefusesAndLosesTheFocus) {
  SamplePage page(host, platform);
  ASSERT_TRUE(page.KindList.SetFocus());
  page.KindList.SetEnabled(false);
  EXPECT_FALSE(page.KindList.HasFocus());
  EXPECT_EQ(page.FocusOwner(), nullptr);
  EXPECT_FALSE(page.KindList.SetFocus());
  EXPECT_EQ(page.FocusOwner(), nullptr);
}

TEST_F(PageWidgets, FieldOnNoPageCannotTakeTheFocus) {
  TextBox box;
  EXPECT_FALSE(box.SetFocus());
  EXPECT_FALSE(box.HasFocus());
}

// ---- drop-down list ----

TEST_F(PageWidgets, ListRaisesClickOnlyWhenTheIndexChanges) {
  ComboBox list;
  list.on_click = [this] { log.push_back("Click"); };
  for (const char* s : {"0 - Button", "1 - Check", "2 - Separator"}) list.AddItem(s);
  EXPECT_EQ(list.ListIndex(), -1);
  EXPECT_EQ(list.Text(), "");
  list.SetListIndex(2);
  EXPECT_EQ(list.ListIndex(), 2);
  EXPECT_EQ(list.Text(), "2 - Separator");
  list.SetListIndex(2);
  list.Choose(2);
  EXPECT_EQ(log, (std::vector<std::string>{"Click"}));
  list.Choose(0);
  EXPECT_EQ(log.size(), 2u);
  EXPECT_EQ(list.Text(), "0 - Button");
  list.SetListIndex(-1);
  EXPECT_EQ(log.size(), 3u);
  EXPECT_EQ(list.Text(), "");
}

TEST_F(PageWidgets, ListIgnoresAnIndexOutsideItsItems) {
  ComboBox list;
  list.on_click = [this] { ++changes; };
  list.AddItem("a");
  list.AddItem("b");
  list.SetListIndex(1);
  list.SetListIndex(2);
  list.SetListIndex(-2);
  EXPECT_EQ(list.ListIndex(), 1);
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(list.ListCount(), 2);
  EXPECT_EQ(list.List(0), "a");
  EXPECT_EQ(list.List(5), "");
  list.Clear();
  EXPECT_EQ(list.ListIndex(), -1);
  EXPECT_EQ(list.ListCount(), 0);
  EXPECT_EQ(changes, 1);
}

TEST_F(PageWidgets, DisabledListTakesNoChoiceButCodeStillSetsIt) {
  ComboBox list;
  list.on_click = [this] { ++changes; };
  list.AddItem("a");
  list.AddItem("b");
  list.SetEnabled(false);
  list.Choose(1);
  EXPECT_EQ(list.ListIndex(), -1);
  EXPECT_EQ(changes, 0);
  list.SetListIndex(1);
  EXPECT_EQ(list.ListIndex(), 1);
  EXPECT_EQ(changes, 1);
}

// ---- check box ----

TEST_F(PageWidgets, CheckBoxRaisesClickOnlyWhenTheValueChanges) {
  CheckBox check;
  check.on_click = [&] { log.push_back("Click"); };
  check.SetValue(vbUnchecked);
  EXPECT_TRUE(log.empty());
  check.SetValue(vbChecked);
  EXPECT_EQ(check.Value(), 1);
  check.SetValue(vbChecked);
  EXPECT_EQ(log.size(), 1u);
  check.SetValue(3);  // not a check box value
  check.SetValue(-1);
  EXPECT_EQ(check.Value(), 1);
  EXPECT_EQ(log.size(), 1u);
  check.SetValue(vbGrayed);
  EXPECT_EQ(check.Value(), 2);
  EXPECT_EQ(log.size(), 2u);
}

TEST_F(PageWidgets, CheckBoxToggleByTheUser) {
  CheckBox check;
  check.on_click = [this] { ++changes; };
  check.Toggle();
  EXPECT_EQ(check.Value(), vbChecked);
  check.Toggle();
  EXPECT_EQ(check.Value(), vbUnchecked);
  check.SetValue(vbGrayed);
  check.Toggle();
  EXPECT_EQ(check.Value(), vbChecked);
  EXPECT_EQ(changes, 4);
  check.SetEnabled(false);
  check.Toggle();
  EXPECT_EQ(check.Value(), vbChecked);
  EXPECT_EQ(changes, 4);
}

// ---- command button ----

TEST_F(PageWidgets, DisabledCommandButtonIgnoresClick) {
  CommandButton b{"GoButton", "Go", Rect{0, 0, 40, 20}, nullptr, false, [this] { ++changes; }};
  b.Click();
  EXPECT_EQ(changes, 1);
  b.enabled = false;
  b.Click();
  EXPECT_EQ(changes, 1);
}

TEST_F(PageWidgets, StripMnemonic) {
  EXPECT_EQ(StripMnemonic("&Key:"), "Key:");
  EXPECT_EQ(StripMnemonic("A && B"), "A & B");
  EXPECT_EQ(StripMnemonic("End&"), "End");
  EXPECT_EQ(StripMnemonic(""), "");
}

// ---- the page ----

TEST_F(PageWidgets, PageChangedNotifiesTheSiteOnEveryChangeOfState) {
  SamplePage page(host, platform);
  std::vector<bool> site;
  page.on_status_change = [&](bool c) { site.push_back(c); };
  EXPECT_FALSE(page.Changed());
  page.NameBox.Type("a");
  page.NameBox.Type("b");
  page.FlagCheck.Toggle();
  EXPECT_TRUE(page.Changed());
  EXPECT_EQ(site, (std::vector<bool>{true}));
  page.Apply();
  EXPECT_FALSE(page.Changed());
  EXPECT_EQ(site, (std::vector<bool>{true, false}));
  EXPECT_EQ(page.seen, (std::vector<std::string>{"ApplyChanges"}));
}

TEST_F(PageWidgets, LoadingASelectionDoesNotMarkThePageChanged) {
  SamplePage page(host, platform);
  std::vector<bool> site;
  page.on_status_change = [&](bool c) { site.push_back(c); };
  struct Nothing : Automation {
    Variant Invoke(const std::string&, InvokeKind, std::vector<Variant>&) override { return {}; }
  } a, b;
  page.SetSelectedControls({&a, &b});
  EXPECT_EQ(page.seen, (std::vector<std::string>{"SelectionChanged 2"}));
  EXPECT_EQ(page.NameBox.Text(), "loaded");
  EXPECT_FALSE(page.Changed());
  EXPECT_TRUE(site.empty());
  ASSERT_EQ(page.SelectedControls().size(), 2u);
  EXPECT_EQ(page.SelectedControls()[0], &a);
  page.NameBox.Type("!");
  EXPECT_TRUE(page.Changed());
}

TEST_F(PageWidgets, FieldsDescribeThemselvesForADialog) {
  SamplePage page(host, platform);
  page.NameBox.SetText("abc");
  page.KindList.SetListIndex(1);
  page.FlagCheck.SetEnabled(false);
  page.GoButton.enabled = false;
  std::vector<PageFieldInfo> got;
  for (const PageField& f : page.Fields()) got.push_back(Describe(f));
  std::vector<PageFieldInfo> want{
      {"Label", "NameLabel", "&Name:", Rect{4, 4, 60, 18}, true},
      {"TextBox", "NameBox", "abc", Rect{64, 2, 196, 22}, true},
      {"ComboBox", "KindList", "Two", Rect{64, 26, 160, 47}, true},
      {"CheckBox", "FlagCheck", "&Flag", Rect{64, 52, 160, 69}, false},
      {"Frame", "Box", "Group", Rect{2, 72, 198, 118}, true},
      {"CommandButton", "GoButton", "&Go", Rect{10, 88, 70, 110}, false},
  };
  EXPECT_EQ(got, want);
  EXPECT_EQ(page.Caption(), "Sample");
}

// ---- drawing ----

TEST_F(PageWidgets, TextBoxDrawsASunkenWhiteWellAndGreyWhenDisabled) {
  SamplePage page(host, platform);
  page.Paint();
  Hdc dc = page.surface().hDC();
  auto px = [&](int x, int y) { return platform.raster().GetPixel(dc, x, y); };
  EXPECT_EQ(px(64, 2), kPxShadow);      // outer edge, top left
  EXPECT_EQ(px(65, 3), kPxBlack);       // inner edge, top left
  EXPECT_EQ(px(195, 21), kPxWhite);     // outer edge, bottom right
  EXPECT_EQ(px(194, 20), Rgb(223, 223, 223));  // inner edge, bottom right (3-D light)
  EXPECT_EQ(px(190, 12), kPxWhite);     // the well
  EXPECT_EQ(px(63, 12), kPxFace);       // the page around it
  page.NameBox.SetEnabled(false);
  page.Paint();
  EXPECT_EQ(px(190, 12), kPxFace);
  EXPECT_EQ(px(64, 2), kPxShadow);
}

TEST_F(PageWidgets, CheckBoxDrawsItsMarkWhenChecked) {
  SamplePage page(host, platform);
  // The 13-pixel box sits centred on the field's height: rows 54 to 66.
  Hdc dc = page.surface().hDC();
  auto px = [&](int x, int y) { return platform.raster().GetPixel(dc, x, y); };
  page.Paint();
  EXPECT_EQ(px(64, 54), kPxShadow);
  EXPECT_EQ(px(67, 59), kPxWhite);  // where the mark's left foot goes
  EXPECT_EQ(px(73, 57), kPxWhite);  // the mark's top right
  page.FlagCheck.SetValue(vbChecked);
  page.Paint();
  EXPECT_EQ(px(67, 59), kPxBlack);
  EXPECT_EQ(px(73, 57), kPxBlack);
  EXPECT_EQ(px(68, 57), kPxWhite);  // inside the V
  page.FlagCheck.SetEnabled(false);
  page.Paint();
  EXPECT_EQ(px(67, 59), kPxShadow);  // grey mark on the face colour
  EXPECT_EQ(px(68, 57), kPxFace);
}

TEST_F(PageWidgets, FocusedTextBoxHighlightsItsSelection) {
  SamplePage page(host, platform);
  page.NameBox.SetText("WWWW");
  page.Paint();
  Hdc dc = page.surface().hDC();
  auto px = [&](int x, int y) { return platform.raster().GetPixel(dc, x, y); };
  // No highlight anywhere on the row while the box has no focus.
  auto count_highlight = [&] {
    int n = 0;
    for (int x = 66; x < 194; ++x)
      if (px(x, 12) == Rgb(0, 0, 128)) ++n;
    return n;
  };
  EXPECT_EQ(count_highlight(), 0);
  page.NameBox.SetFocus();
  page.NameBox.SetSelStart(0);
  page.NameBox.SetSelLength(4);
  page.Paint();
  EXPECT_GT(count_highlight(), 4);
  EXPECT_EQ(px(190, 12), kPxWhite);  // beyond the selected text
}
