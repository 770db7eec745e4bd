// ktButtons, the Buttons page of the toolbar: loading through Customize, the
// fields' enabled states, adding, removing and moving items, key checking, and
// applying the list back through Customize. The toolbar is a recording stand-in
// reached only by name, as the page reaches a real one.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "controls/toolbar/kt_buttons.h"
#include "framework/arith.h"
#include "framework/errors.h"
#include "platform/headless/headless_host.h"
#include "platform/headless/headless_platform.h"

using namespace korvel;
using namespace korvel::headless;

namespace {

struct Item {
  std::string key, tip;
  std::int32_t style = 0;
  bool enabled = true, value = false;
  std::int16_t width = 1;
};

// A selected object with a Customize method: answers a fetch from its list,
// takes the list on apply, and records every call with its arguments as received.
class FakeToolbar : public Automation {
 public:
  struct Call {
    std::string name;
    InvokeKind kind;
    std::vector<Variant> args;
  };
  std::vector<Item> items;
  std::vector<Call> calls;
  std::function<void()> on_call;  // runs as each call arrives

  Variant Invoke(const std::string& name, InvokeKind kind, std::vector<Variant>& args) override {
    calls.push_back(Call{name, kind, args});
    if (on_call) on_call();
    if (CompareText(name, "Customize") != 0 || kind != InvokeKind::Method) throw RuntimeError(kErrNoSuchMember);
    if (args.size() != 8) throw RuntimeError(kErrArgumentNotOptional);
    if (args[0].ToBool()) {
      items.clear();
      int n = args[1].ToInteger();
      for (int i = 0; i < n; ++i) {
        Item it;
        it.key = args[2].ToArray().items.at(i).ToString();
        it.tip = args[3].ToArray().items.at(i).ToString();
        it.style = args[4].ToArray().items.at(i).ToLong();
        it.enabled = args[5].ToArray().items.at(i).ToBool();
        it.value = args[6].ToArray().items.at(i).ToBool();
        it.width = args[7].ToArray().items.at(i).ToInteger();
        items.push_back(it);
      }
    } else {
      std::vector<Variant> k, t, s, e, v, w;
      for (const Item& it : items) {
        k.push_back(Variant::String(it.key));
        t.push_back(Variant::String(it.tip));
        s.push_back(Variant::Long(it.style));
        e.push_back(Variant::Bool(it.enabled));
        v.push_back(Variant::Bool(it.value));
        w.push_back(Variant::Integer(it.width));
      }
      args[1] = Variant::Integer(static_cast<std::int16_t>(items.size()));
      args[2] = Variant::Array(k, 1);
      args[3] = Variant::Array(t, 1);
      args[4] = Variant::Array(s, 1);
      args[5] = Variant::Array(e, 1);
      args[6] = Variant::Array(v, 1);
      args[7] = Variant::Array(w, 1);
    }
    return {};
  }
};

// An object with no Customize at all.
class NotAToolbar : public Automation {
 public:
  int calls = 0;
  Variant Invoke(const std::string&, InvokeKind, std::vector<Variant>&) override {
    ++calls;
    throw RuntimeError(kErrNoSuchMember);
  }
};

Item Btn(const std::string& key, const std::string& tip = "") { return Item{key, tip, 0, true, false, 1}; }
Item Sep() { return Item{"", "", 2, true, false, 1}; }

using Strings = std::vector<std::string>;

class KtButtons : public ::testing::Test {
 protected:
  // A page loaded from a toolbar holding items; the records start empty.
  ktButtons& Load(std::vector<Item> items) {
    bar.items = std::move(items);
    page.SetSelectedControls({&bar});
    bar.calls.clear();
    host.ClearRecords();
    return page;
  }
  // The page's list, one item per string: key|tip|style|enabled|value|width.
  Strings List() {
    Strings out;
    for (int i = 1; i <= page.Count(); ++i)
      out.push_back(page.Key(i) + "|" + page.Tip(i) + "|" + std::to_string(page.Style(i)) + "|" +
                    (page.ItemEnabled(i) ? "T" : "F") + "|" + (page.ItemValue(i) ? "T" : "F") + "|" +
                    std::to_string(page.Width(i)));
    return out;
  }
  Strings Keys() {
    Strings out;
    for (int i = 1; i <= page.Count(); ++i) out.push_back(page.Key(i));
    return out;
  }
  // The enabled states of StyleList, KeyBox, TipBox, EnabledCheck, ValueCheck, WidthBox.
  std::string Enables() {
    std::string s;
    for (bool b : {page.StyleList.Enabled(), page.KeyBox.Enabled(), page.TipBox.Enabled(),
                   page.EnabledCheck.Enabled(), page.ValueCheck.Enabled(), page.WidthBox.Enabled()})
      s += b ? '1' : '0';
    return s;
  }
  // The fields as shown: label|key|tip|style|enabled|value|width.
  std::string Shown() {
    return page.CurButtonLabel.caption + "|" + page.KeyBox.Text() + "|" + page.TipBox.Text() + "|" +
           std::to_string(page.StyleList.ListIndex()) + "|" + std::to_string(page.EnabledCheck.Value()) + "|" +
           std::to_string(page.ValueCheck.Value()) + "|" + page.WidthBox.Text();
  }
  void SetKey(const std::string& key) {
    page.KeyBox.SetSelStart(0);
    page.KeyBox.SetSelLength(static_cast<std::int32_t>(page.KeyBox.Text().size()));
    page.KeyBox.Type(key);
  }

  HeadlessPlatform platform;
  HeadlessHost host{platform};
  ktButtons page{host, platform};
  FakeToolbar bar;
};

void ExpectEmptyArray(const Variant& v) {
  ASSERT_EQ(v.Type(), VarType::Array);
  EXPECT_EQ(v.ToArray().lower_bound, 1);
  EXPECT_TRUE(v.ToArray().items.empty());
}

}  // namespace

// ---- the page and its fields ----

TEST_F(KtButtons, CaptionsAndListItems) {
  EXPECT_EQ(page.Caption(), "Buttons");
  EXPECT_EQ(page.ButtonCaptionLabel.caption, "Button:");
  EXPECT_EQ(page.KeyLabel.caption, "&Key:");
  EXPECT_EQ(page.TipLabel.caption, "&ToolTipText:");
  EXPECT_EQ(page.StyleLabel.caption, "&Style:");
  EXPECT_EQ(page.WidthLabel.caption, "&Width:");
  EXPECT_EQ(page.EnabledCheck.caption, "&Enabled");
  EXPECT_EQ(page.ValueCheck.caption, "&Value");
  EXPECT_EQ(page.ApplyLabel.caption, "Click Apply to update control.");
  ASSERT_EQ(page.StyleList.ListCount(), 4);
  EXPECT_EQ(page.StyleList.List(0), "0 - Button");
  EXPECT_EQ(page.StyleList.List(1), "1 - Check");
  EXPECT_EQ(page.StyleList.List(2), "2 - Separator");
  EXPECT_EQ(page.StyleList.List(3), "3 - Placeholder");
  EXPECT_EQ(page.surface().Width(), 340);
  EXPECT_EQ(page.surface().Height(), 200);
}

TEST_F(KtButtons, FieldsHaveTheirNamesAndLieOnThePage) {
  Strings names;
  for (const PageField& f : page.Fields()) {
    PageFieldInfo info = Describe(f);
    names.push_back(info.name);
    EXPECT_GE(info.rect.left, 0) << info.name;
    EXPECT_GE(info.rect.top, 0) << info.name;
    EXPECT_LE(info.rect.right, 340) << info.name;
    EXPECT_LE(info.rect.bottom, 200) << info.name;
    EXPECT_LT(info.rect.left, info.rect.right) << info.name;
  }
  for (const char* n : {"CurButtonLabel", "KeyBox", "TipBox", "StyleList", "EnabledCheck", "ValueCheck", "WidthBox",
                        "AddButton", "RemoveButton", "LeftButton", "RightButton", "SelectorFrame"})
    EXPECT_NE(std::find(names.begin(), names.end(), n), names.end()) << n;
  // The four command buttons sit inside the selector frame.
  for (const CommandButton* b : {&page.LeftButton, &page.AddButton, &page.RemoveButton, &page.RightButton}) {
    EXPECT_GE(b->rect.left, page.SelectorFrame.rect.left) << b->name;
    EXPECT_LE(b->rect.right, page.SelectorFrame.rect.right) << b->name;
    EXPECT_GE(b->rect.top, page.SelectorFrame.rect.top) << b->name;
    EXPECT_LE(b->rect.bottom, page.SelectorFrame.rect.bottom) << b->name;
  }
}

TEST_F(KtButtons, NewPageHasEveryFieldDisabled) {
  EXPECT_EQ(page.Count(), 0);
  EXPECT_EQ(page.Current(), 0);
  EXPECT_EQ(Enables(), "000000");
}

// ---- loading ----

TEST_F(KtButtons, SelectionChangedFetchesTheListThroughCustomize) {
  bar.items = {Item{"New", "New file", 0, true, false, 1}, Sep(), Item{"Bold", "Bold text", 1, false, true, 1}};
  page.SetSelectedControls({&bar});
  ASSERT_EQ(bar.calls.size(), 1u);
  const FakeToolbar::Call& c = bar.calls[0];
  EXPECT_EQ(c.name, "Customize");
  EXPECT_EQ(c.kind, InvokeKind::Method);
  ASSERT_EQ(c.args.size(), 8u);
  EXPECT_EQ(c.args[0].Type(), VarType::Boolean);
  EXPECT_FALSE(c.args[0].ToBool());
  EXPECT_EQ(c.args[1].Type(), VarType::Integer);
  EXPECT_EQ(c.args[1].ToInteger(), 0);
  for (int i = 2; i < 8; ++i) ExpectEmptyArray(c.args[i]);

  EXPECT_EQ(page.Count(), 3);
  EXPECT_EQ(page.Current(), 1);
  EXPECT_EQ(List(), (Strings{"New|New file|0|T|F|1", "||2|T|F|1", "Bold|Bold text|1|F|T|1"}));
  EXPECT_EQ(Shown(), "1|New|New file|0|1|0|1");
  EXPECT_EQ(Enables(), "111100");
  EXPECT_TRUE(host.msgboxes.empty());
  EXPECT_FALSE(page.Changed());
}

TEST_F(KtButtons, EmptyToolbarLoadsAnEmptyDisabledPage) {
  Load({});
  EXPECT_EQ(page.Count(), 0);
  EXPECT_EQ(page.Current(), 0);
  EXPECT_EQ(Enables(), "000000");
  EXPECT_FALSE(page.Changed());
}

TEST_F(KtButtons, TwoSelectedControlsShowTheMessageAndTheFirstIsEdited) {
  FakeToolbar second;
  second.items = {Btn("Other")};
  bar.items = {Btn("First")};
  std::size_t boxes_before_fetch = 99;
  bar.on_call = [&] { boxes_before_fetch = host.msgboxes.size(); };
  page.SetSelectedControls({&bar, &second});
  EXPECT_EQ(boxes_before_fetch, 1u);  // the message comes first, then the list is fetched
  ASSERT_EQ(host.msgboxes.size(), 1u);
  EXPECT_EQ(host.msgboxes[0].prompt,
            "You can only edit one toolbar at a time.  Any changes you make will only affect one toolbar.");
  EXPECT_EQ(host.msgboxes[0].title, "Too many controls selected");
  EXPECT_EQ(host.msgboxes[0].buttons, 48);
  EXPECT_EQ(bar.calls.size(), 1u);
  EXPECT_TRUE(second.calls.empty());
  EXPECT_EQ(Keys(), (Strings{"First"}));
  page.Apply();
  EXPECT_EQ(bar.calls.size(), 2u);
  EXPECT_TRUE(second.calls.empty());
}

TEST_F(KtButtons, OneSelectedControlShowsNoMessage) {
  Load({Btn("A")});
  page.SetSelectedControls({&bar});
  EXPECT_TRUE(host.msgboxes.empty());
}

TEST_F(KtButtons, ObjectWithoutCustomizeGivesAnEmptyList) {
  NotAToolbar other;
  page.SetSelectedControls({&other});
  EXPECT_EQ(other.calls, 1);
  EXPECT_EQ(page.Count(), 0);
  EXPECT_EQ(Enables(), "000000");
  page.Apply();  // nothing to reach, nothing thrown
  EXPECT_EQ(other.calls, 2);
}

TEST_F(KtButtons, LoadingCorrectsStylesAndWidthsAsTheToolbarDoes) {
  Load({Item{"A", "", 9, true, false, 0}, Item{"B", "", -1, true, false, -5}, Item{"C", "", 3, true, false, 40}});
  EXPECT_EQ(List(), (Strings{"A||0|T|F|1", "B||0|T|F|1", "C||3|T|F|40"}));
}

// ---- EnableControls, row by row ----

TEST_F(KtButtons, EnableControlsButtonRow) {
  Load({Item{"A", "", 0, true, false, 1}});
  page.EnableControls();
  // StyleList, KeyBox, TipBox, EnabledCheck on; ValueCheck, WidthBox off.
  EXPECT_EQ(Enables(), "111100");
}

TEST_F(KtButtons, EnableControlsCheckRow) {
  Load({Item{"A", "", 1, true, false, 1}});
  page.EnableControls();
  EXPECT_EQ(Enables(), "111110");
}

TEST_F(KtButtons, EnableControlsSeparatorRow) {
  Load({Item{"", "", 2, true, false, 1}});
  page.EnableControls();
  EXPECT_EQ(Enables(), "100000");
}

TEST_F(KtButtons, EnableControlsPlaceholderRow) {
  Load({Item{"", "", 3, true, false, 24}});
  page.EnableControls();
  EXPECT_EQ(Enables(), "100001");
  EXPECT_EQ(page.WidthBox.Text(), "24");
}

TEST_F(KtButtons, EnableControlsEmptyListRow) {
  Load({});
  page.EnableControls();
  EXPECT_EQ(Enables(), "000000");
}

TEST_F(KtButtons, ChoosingAStyleReEnablesTheFieldsAndMarksChanged) {
  Load({Btn("A")});
  page.StyleList.Choose(1);
  EXPECT_EQ(Enables(), "111110");
  EXPECT_TRUE(page.Changed());
  page.StyleList.Choose(3);
  EXPECT_EQ(Enables(), "100001");
  page.StyleList.Choose(2);
  EXPECT_EQ(Enables(), "100000");
  page.StyleList.Choose(0);
  EXPECT_EQ(Enables(), "111100");
}

// ---- edge cases ----

TEST_F(KtButtons, AddOnAnEmptyListCreatesItemOneWithTheDefaults) {
  Load({});
  page.AddButton.Click();
  EXPECT_EQ(page.Count(), 1);
  EXPECT_EQ(page.Current(), 1);
  EXPECT_EQ(page.CurButtonLabel.caption, "1");
  EXPECT_EQ(List(), (Strings{"||0|T|F|1"}));
  EXPECT_EQ(Shown(), "1|||0|1|0|1");
  EXPECT_EQ(Enables(), "111100");
  EXPECT_TRUE(page.Changed());
  EXPECT_TRUE(host.msgboxes.empty());
}

TEST_F(KtButtons, AddWithTheFirstOfTwoCurrentInsertsBeforeIt) {
  Load({Btn("A"), Btn("B")});
  page.AddButton.Click();
  EXPECT_EQ(Keys(), (Strings{"", "A", "B"}));
  EXPECT_EQ(page.Current(), 1);
  EXPECT_EQ(page.CurButtonLabel.caption, "1");
  EXPECT_EQ(List()[0], "||0|T|F|1");
}

TEST_F(KtButtons, AddWithTheSingleItemCurrentAppendsAfterIt) {
  Load({Btn("A")});
  page.AddButton.Click();
  EXPECT_EQ(Keys(), (Strings{"A", ""}));
  EXPECT_EQ(page.Current(), 2);
  EXPECT_EQ(page.CurButtonLabel.caption, "2");
  EXPECT_EQ(List(), (Strings{"A||0|T|F|1", "||0|T|F|1"}));
}

TEST_F(KtButtons, AddWithTheSecondCurrentInsertsAfterIt) {
  // The page moves items, it does not browse them: B becomes current by moving it
  // right from the front, which gives A, B with B current.
  Load({Btn("B"), Btn("A")});
  page.RightButton.Click();
  ASSERT_EQ(Keys(), (Strings{"A", "B"}));
  ASSERT_EQ(page.Current(), 2);
  page.AddButton.Click();
  EXPECT_EQ(Keys(), (Strings{"A", "B", ""}));
  EXPECT_EQ(page.Current(), 3);
  EXPECT_EQ(page.CurButtonLabel.caption, "3");
}

TEST_F(KtButtons, AddInTheMiddleInsertsAfterTheCurrentItem) {
  Load({Btn("B"), Btn("A"), Btn("C")});
  page.RightButton.Click();  // A, B, C with B current
  ASSERT_EQ(Keys(), (Strings{"A", "B", "C"}));
  ASSERT_EQ(page.Current(), 2);
  page.AddButton.Click();
  EXPECT_EQ(Keys(), (Strings{"A", "B", "", "C"}));
  EXPECT_EQ(page.Current(), 3);
  EXPECT_EQ(page.CurButtonLabel.caption, "3");
}

TEST_F(KtButtons, RemovingTheLastItemMakesThePreviousOneCurrent) {
  Load({Btn("A", "a"), Btn("B", "b"), Btn("C", "c")});
  page.RightButton.Click();
  page.RightButton.Click();  // B, C, A with A current (3)
  ASSERT_EQ(Keys(), (Strings{"B", "C", "A"}));
  ASSERT_EQ(page.Current(), 3);
  page.RemoveButton.Click();
  EXPECT_EQ(Keys(), (Strings{"B", "C"}));
  EXPECT_EQ(page.Count(), 2);
  EXPECT_EQ(page.Current(), 2);
  EXPECT_EQ(Shown(), "2|C|c|0|1|0|1");
  EXPECT_TRUE(page.Changed());
}

TEST_F(KtButtons, RemovingAMiddleItemShowsTheNextInItsPlace) {
  Load({Btn("B", "b"), Btn("A", "a"), Btn("C", "c")});
  page.RightButton.Click();  // A, B, C with B current
  page.RemoveButton.Click();
  EXPECT_EQ(List(), (Strings{"A|a|0|T|F|1", "C|c|0|T|F|1"}));
  EXPECT_EQ(page.Current(), 2);
  EXPECT_EQ(Shown(), "2|C|c|0|1|0|1");
}

TEST_F(KtButtons, RemovingTheFirstItemShiftsTheRestLeft) {
  Load({Btn("A"), Btn("B"), Btn("C")});
  page.RemoveButton.Click();
  EXPECT_EQ(Keys(), (Strings{"B", "C"}));
  EXPECT_EQ(page.Current(), 1);
  EXPECT_EQ(page.KeyBox.Text(), "B");
}

TEST_F(KtButtons, RemovingTheOnlyItemLeavesAnEmptyDisabledPage) {
  Load({Btn("A")});
  page.RemoveButton.Click();
  EXPECT_EQ(page.Count(), 0);
  EXPECT_EQ(page.Current(), 0);
  EXPECT_EQ(Enables(), "000000");
  EXPECT_TRUE(page.Changed());
  // Remove again does nothing; Add starts a new list.
  page.RemoveButton.Click();
  EXPECT_EQ(page.Count(), 0);
  page.AddButton.Click();
  EXPECT_EQ(List(), (Strings{"||0|T|F|1"}));
  EXPECT_EQ(page.Current(), 1);
}

TEST_F(KtButtons, LeftOnTheFirstItemDoesNothing) {
  Load({Btn("A"), Btn("B")});
  page.LeftButton.Click();
  EXPECT_EQ(Keys(), (Strings{"A", "B"}));
  EXPECT_EQ(page.Current(), 1);
  EXPECT_FALSE(page.Changed());
  EXPECT_TRUE(host.msgboxes.empty());
  EXPECT_TRUE(bar.calls.empty());
}

TEST_F(KtButtons, RightOnTheLastItemDoesNothing) {
  Load({Btn("A"), Btn("B")});
  page.RightButton.Click();
  ASSERT_EQ(page.Current(), 2);
  page.Apply();  // unchanged page again
  bar.calls.clear();
  page.RightButton.Click();
  EXPECT_EQ(Keys(), (Strings{"B", "A"}));
  EXPECT_EQ(page.Current(), 2);
  EXPECT_FALSE(page.Changed());
  EXPECT_TRUE(host.msgboxes.empty());
  EXPECT_TRUE(bar.calls.empty());
}

TEST_F(KtButtons, LeftAndRightOnAnEmptyListDoNothing) {
  Load({});
  page.LeftButton.Click();
  page.RightButton.Click();
  page.RemoveButton.Click();
  EXPECT_EQ(page.Count(), 0);
  EXPECT_EQ(page.Current(), 0);
  EXPECT_FALSE(page.Changed());
}

TEST_F(KtButtons, SelectingASeparatorAcceptsAnEmptyKey) {
  Load({Btn("A")});
  page.AddButton.Click();  // a new Button with an empty key, current 2
  ASSERT_EQ(page.KeyBox.Text(), "");
  page.StyleList.Choose(2);
  EXPECT_FALSE(page.KeyBox.Enabled());
  EXPECT_FALSE(page.TipBox.Enabled());
  EXPECT_FALSE(page.EnabledCheck.Enabled());
  EXPECT_FALSE(page.ValueCheck.Enabled());
  page.AddButton.Click();
  EXPECT_TRUE(host.msgboxes.empty());
  EXPECT_EQ(List(), (Strings{"A||0|T|F|1", "||2|T|F|1", "||0|T|F|1"}));
  EXPECT_EQ(page.Current(), 3);
}

// ---- key checking ----

TEST_F(KtButtons, AddWithAnInvalidKeyShowsTheMessageAndSelectsTheKey) {
  Load({Btn("A"), Btn("B")});
  SetKey("1A");
  page.AddButton.Click();
  ASSERT_EQ(host.msgboxes.size(), 1u);
  EXPECT_EQ(host.msgboxes[0].prompt,
            "This is an invalid key name.  Use only letters, numbers, and underscores ( _ ) in the name, and start "
            "the name with a letter.");
  EXPECT_EQ(host.msgboxes[0].title, "Invalid key");
  EXPECT_EQ(host.msgboxes[0].buttons, 48);
  EXPECT_TRUE(page.KeyBox.HasFocus());
  EXPECT_EQ(page.FocusOwner(), &page.KeyBox);
  EXPECT_EQ(page.KeyBox.SelStart(), 0);
  EXPECT_EQ(page.KeyBox.SelLength(), 2);
  // Nothing was added or stored.
  EXPECT_EQ(Keys(), (Strings{"A", "B"}));
  EXPECT_EQ(page.Current(), 1);
  EXPECT_EQ(page.KeyBox.Text(), "1A");
}

TEST_F(KtButtons, EmptyKeyOfAButtonBlocksAddLeftAndRight) {
  Load({Btn("A"), Btn("B"), Btn("C")});
  page.RightButton.Click();  // B, A, C with A current (2)
  SetKey("");
  page.AddButton.Click();
  page.LeftButton.Click();
  page.RightButton.Click();
  EXPECT_EQ(host.msgboxes.size(), 3u);
  for (const auto& m : host.msgboxes) EXPECT_EQ(m.title, "Invalid key");
  EXPECT_EQ(Keys(), (Strings{"B", "A", "C"}));
  EXPECT_EQ(page.Current(), 2);
  EXPECT_EQ(page.KeyBox.SelStart(), 0);
  EXPECT_EQ(page.KeyBox.SelLength(), 0);
}

TEST_F(KtButtons, CheckItemKeysAreCheckedToo) {
  Load({Item{"A", "", 1, true, false, 1}, Btn("B")});
  SetKey("A B");
  page.RightButton.Click();
  ASSERT_EQ(host.msgboxes.size(), 1u);
  EXPECT_EQ(page.KeyBox.SelLength(), 3);
  EXPECT_EQ(page.Current(), 1);
}

TEST_F(KtButtons, ValidKeysPass) {
  for (const char* key : {"a", "Z9", "A_1"}) {
    Load({Btn("X"), Btn("Y")});
    SetKey(key);
    page.RightButton.Click();
    EXPECT_TRUE(host.msgboxes.empty()) << key;
    EXPECT_EQ(Keys(), (Strings{"Y", key})) << key;
  }
}

TEST_F(KtButtons, InvalidKeyRejections) {
  for (const char* key : {"", " A", "A ", "1A", "A-B", "A[1]"}) {
    Load({Btn("X"), Btn("Y")});
    SetKey(key);
    page.RightButton.Click();
    EXPECT_EQ(host.msgboxes.size(), 1u) << key;
    EXPECT_EQ(Keys(), (Strings{"X", "Y"})) << key;
  }
}

TEST_F(KtButtons, PlaceholderKeyIsNotChecked) {
  Load({Item{"", "", 3, true, false, 30}, Btn("B")});
  page.RightButton.Click();
  EXPECT_TRUE(host.msgboxes.empty());
  EXPECT_EQ(List(), (Strings{"B||0|T|F|1", "||3|T|F|30"}));
}

TEST_F(KtButtons, InvalidKeyAppliedDirectlyIsStoredAsItIs) {
  Load({Btn("A")});
  SetKey("1 bad");
  page.Apply();
  EXPECT_TRUE(host.msgboxes.empty());
  ASSERT_EQ(bar.items.size(), 1u);
  EXPECT_EQ(bar.items[0].key, "1 bad");
}

// ---- moving ----

TEST_F(KtButtons, RightAndLeftMoveTheItemAndCurrentFollowsIt) {
  Load({Btn("A", "a"), Btn("B", "b"), Btn("C", "c")});
  page.RightButton.Click();
  EXPECT_EQ(List(), (Strings{"B|b|0|T|F|1", "A|a|0|T|F|1", "C|c|0|T|F|1"}));
  EXPECT_EQ(page.Current(), 2);
  EXPECT_EQ(Shown(), "2|A|a|0|1|0|1");
  page.RightButton.Click();
  EXPECT_EQ(Keys(), (Strings{"B", "C", "A"}));
  EXPECT_EQ(page.Current(), 3);
  page.LeftButton.Click();
  EXPECT_EQ(Keys(), (Strings{"B", "A", "C"}));
  EXPECT_EQ(page.Current(), 2);
  page.LeftButton.Click();
  EXPECT_EQ(Keys(), (Strings{"A", "B", "C"}));
  EXPECT_EQ(page.Current(), 1);
  EXPECT_TRUE(page.Changed());
}

TEST_F(KtButtons, MovingStoresTheEditedFieldsFirst) {
  Load({Btn("A"), Btn("B")});
  SetKey("Save");
  page.TipBox.Type("Save file");
  page.StyleList.Choose(1);
  page.ValueCheck.Toggle();
  page.EnabledCheck.Toggle();
  page.RightButton.Click();
  EXPECT_EQ(List(), (Strings{"B||0|T|F|1", "Save|Save file|1|F|T|1"}));
  EXPECT_EQ(Shown(), "2|Save|Save file|1|0|1|1");
}

TEST_F(KtButtons, AddStoresTheEditedFieldsFirst) {
  Load({Btn("A"), Btn("B")});
  page.RightButton.Click();  // B, A with A current
  page.StyleList.Choose(3);
  page.WidthBox.SetSelStart(1);
  page.WidthBox.Type("4");  // "14"
  page.AddButton.Click();
  EXPECT_EQ(List(), (Strings{"B||0|T|F|1", "A||3|T|F|14", "||0|T|F|1"}));
}

TEST_F(KtButtons, WidthBoxIsReadAsANumberFromOneTo32767) {
  struct Case {
    const char* text;
    std::int16_t width;
  };
  for (Case c : {Case{"12", 12}, Case{" 7px", 7}, Case{"abc", 1}, Case{"", 1}, Case{"0", 1}, Case{"-4", 1},
                 Case{"2.5", 2}, Case{"3.5", 4}, Case{"40000", 32767}, Case{"99999999999", 32767}}) {
    Load({Item{"", "", 3, true, false, 1}});
    page.WidthBox.SetText(c.text);
    page.Apply();
    ASSERT_EQ(bar.items.size(), 1u);
    EXPECT_EQ(bar.items[0].width, c.width) << c.text;
  }
}

// ---- field events ----

TEST_F(KtButtons, EachFieldEventMarksThePageChanged) {
  auto check = [&](const char* what, auto action) {
    Load({Item{"A", "", 1, true, false, 1}});
    std::vector<bool> site;
    page.on_status_change = [&](bool c) { site.push_back(c); };
    action();
    EXPECT_TRUE(page.Changed()) << what;
    EXPECT_EQ(site, (std::vector<bool>{true})) << what;
    page.Apply();
    page.on_status_change = nullptr;
  };
  check("KeyBox", [&] { page.KeyBox.Type("x"); });
  check("TipBox", [&] { page.TipBox.Type("x"); });
  check("WidthBox", [&] { page.WidthBox.SetText("5"); });
  check("EnabledCheck", [&] { page.EnabledCheck.Toggle(); });
  check("ValueCheck", [&] { page.ValueCheck.Toggle(); });
  check("StyleList", [&] { page.StyleList.Choose(0); });
}

TEST_F(KtButtons, SettingAFieldToWhatItShowsIsNoChange) {
  Load({Btn("A", "tip")});
  page.KeyBox.SetText("A");
  page.TipBox.SetText("tip");
  page.WidthBox.SetText("1");
  page.EnabledCheck.SetValue(vbChecked);
  page.ValueCheck.SetValue(vbUnchecked);
  page.StyleList.Choose(0);
  EXPECT_FALSE(page.Changed());
}

// ---- applying ----

TEST_F(KtButtons, ApplySendsTheWholeListThroughCustomize) {
  Load({Item{"New", "New file", 0, true, false, 1}, Sep(), Item{"Bold", "Bold", 1, true, true, 1},
        Item{"", "", 3, false, false, 60}});
  page.TipBox.Type("!");  // "!New file": the caret is at the start
  page.Apply();
  ASSERT_EQ(bar.calls.size(), 1u);
  const FakeToolbar::Call& c = bar.calls[0];
  EXPECT_EQ(c.name, "Customize");
  EXPECT_EQ(c.kind, InvokeKind::Method);
  ASSERT_EQ(c.args.size(), 8u);
  EXPECT_EQ(c.args[0].Type(), VarType::Boolean);
  EXPECT_TRUE(c.args[0].ToBool());
  EXPECT_EQ(c.args[1].Type(), VarType::Integer);
  EXPECT_EQ(c.args[1].ToInteger(), 4);
  std::vector<std::vector<Variant>> want{
      {Variant::String("New"), Variant::String(""), Variant::String("Bold"), Variant::String("")},
      {Variant::String("!New file"), Variant::String(""), Variant::String("Bold"), Variant::String("")},
      {Variant::Long(0), Variant::Long(2), Variant::Long(1), Variant::Long(3)},
      {Variant::Bool(true), Variant::Bool(true), Variant::Bool(true), Variant::Bool(false)},
      {Variant::Bool(false), Variant::Bool(false), Variant::Bool(true), Variant::Bool(false)},
      {Variant::Integer(1), Variant::Integer(1), Variant::Integer(1), Variant::Integer(60)},
  };
  const VarType types[6] = {VarType::String, VarType::String, VarType::Long,
                            VarType::Boolean, VarType::Boolean, VarType::Integer};
  for (int a = 0; a < 6; ++a) {
    ASSERT_EQ(c.args[2 + a].Type(), VarType::Array) << a;
    const VariantArray& arr = c.args[2 + a].ToArray();
    EXPECT_EQ(arr.lower_bound, 1) << a;
    ASSERT_EQ(arr.items.size(), 4u) << a;
    for (int i = 0; i < 4; ++i) {
      EXPECT_EQ(arr.items[i].Type(), types[a]) << a << "," << i;
      EXPECT_EQ(arr.items[i], want[a][i]) << a << "," << i;
    }
  }
  EXPECT_FALSE(page.Changed());
  EXPECT_TRUE(host.msgboxes.empty());
}

TEST_F(KtButtons, ApplyAfterRemovingEverythingSendsAnEmptyList) {
  Load({Btn("A")});
  page.RemoveButton.Click();
  page.Apply();
  ASSERT_EQ(bar.calls.size(), 1u);
  const auto& args = bar.calls[0].args;
  EXPECT_TRUE(args[0].ToBool());
  EXPECT_EQ(args[1].Type(), VarType::Integer);
  EXPECT_EQ(args[1].ToInteger(), 0);
  for (int i = 2; i < 8; ++i) ExpectEmptyArray(args[i]);
  EXPECT_TRUE(bar.items.empty());
}

TEST_F(KtButtons, LoadThenApplyGivesTheToolbarItsOwnList) {
  std::vector<Item> items{Item{"New", "New file", 0, true, false, 1}, Sep(), Item{"Bold", "", 1, false, true, 1},
                          Item{"", "", 3, true, false, 90}};
  Load(items);
  page.Apply();
  ASSERT_EQ(bar.items.size(), items.size());
  for (std::size_t i = 0; i < items.size(); ++i) {
    EXPECT_EQ(bar.items[i].key, items[i].key);
    EXPECT_EQ(bar.items[i].tip, items[i].tip);
    EXPECT_EQ(bar.items[i].style, items[i].style);
    EXPECT_EQ(bar.items[i].enabled, items[i].enabled);
    EXPECT_EQ(bar.items[i].value, items[i].value);
    EXPECT_EQ(bar.items[i].width, items[i].width);
  }
}

TEST_F(KtButtons, BuildingAListFromScratch) {
  Load({});
  page.AddButton.Click();
  SetKey("Cut");
  page.TipBox.Type("Cut");
  page.AddButton.Click();  // appended: the list held one item
  SetKey("Copy");
  page.AddButton.Click();
  page.StyleList.Choose(2);
  page.AddButton.Click();
  SetKey("Paste");
  page.Apply();
  ASSERT_EQ(bar.items.size(), 4u);
  EXPECT_EQ(bar.items[0].key, "Cut");
  EXPECT_EQ(bar.items[0].tip, "Cut");
  EXPECT_EQ(bar.items[1].key, "Copy");
  EXPECT_EQ(bar.items[2].style, 2);
  EXPECT_EQ(bar.items[3].key, "Paste");
  EXPECT_TRUE(host.msgboxes.empty());
}

// ---- drawing ----

TEST_F(KtButtons, PaintShowsEnabledAndDisabledFields) {
  Load({Btn("A"), Sep()});
  page.Paint();
  // Moving the button right makes the separator first; loading it again shows it.
  Hdc dc = page.surface().hDC();
  auto px = [&](int x, int y) { return platform.raster().GetPixel(dc, x, y); };
  const Rect& k = page.KeyBox.rect;
  EXPECT_EQ(px(k.right - 4, k.bottom - 4), Rgb(255, 255, 255));  // an enabled edit field is white
  EXPECT_EQ(px(k.left, k.top), Rgb(128, 128, 128));              // and sunken
  page.RightButton.Click();
  page.Apply();
  Load(bar.items);  // the separator is current: the key box greys
  ASSERT_EQ(page.Style(1), 2);
  page.Paint();
  EXPECT_EQ(px(k.right - 4, k.bottom - 4), Rgb(192, 192, 192));
  EXPECT_EQ(px(k.left, k.top), Rgb(128, 128, 128));
}
