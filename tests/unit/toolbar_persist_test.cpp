// KorvelToolbar: saving and loading, hostile property bags, Customize, the default
// font, and late binding of every member by name.
#include <cstring>

#include "tests/unit/toolbar_test_fixture.h"

using namespace toolbar_test;

namespace {

class ToolbarPersist : public ToolbarTest {
 protected:
  std::unique_ptr<KorvelToolbar> Load(const PropertyBag& bag, int width = 200) {
    host.user_mode = true;
    auto tb = std::make_unique<KorvelToolbar>(host, platform);
    host.Load(*tb, bag, width, 10);
    return tb;
  }
  PropertyBag Save(KorvelToolbar& tb) {
    PropertyBag bag;
    tb.WriteProperties(bag);
    return bag;
  }
  void ExpectButton(KorvelToolbar& tb, int i, const Item& want) {
    EXPECT_EQ(tb.KeyAt(i), want.key) << i;
    EXPECT_EQ(tb.TipAt(i), want.tip) << i;
    EXPECT_EQ(tb.StyleAt(i), want.style) << i;
    EXPECT_EQ(tb.EnabledAt(i), want.enabled) << i;
    EXPECT_EQ(tb.ValueAt(i), want.value) << i;
    EXPECT_EQ(tb.WidthAt(i), want.width) << i;
  }
  // The eight arguments of Customize as a property page passes them.
  static std::vector<Variant> CustomizeArgs(bool update, std::int16_t count, std::vector<Variant> key,
                                            std::vector<Variant> tip, std::vector<Variant> style,
                                            std::vector<Variant> enabled, std::vector<Variant> value,
                                            std::vector<Variant> width, std::int32_t lower = 1) {
    return {Variant::Bool(update),
            Variant::Integer(count),
            Variant::Array(std::move(key), lower),
            Variant::Array(std::move(tip), lower),
            Variant::Array(std::move(style), lower),
            Variant::Array(std::move(enabled), lower),
            Variant::Array(std::move(value), lower),
            Variant::Array(std::move(width), lower)};
  }
};

}  // namespace

// ---- writing ----

TEST_F(ToolbarPersist, SavedNoBorderToolbarWithoutButtonsWritesOnlyMaskColor) {
  auto loaded = Load(PropertyBag());
  EXPECT_EQ(loaded->BorderStyle(), ktNoBorder);
  PropertyBag bag = Save(*loaded);
  EXPECT_EQ(bag.Keys(), (Strings{"MaskColor"}));
  EXPECT_EQ(bag.ReadProperty("MaskColor").Type(), VarType::Long);
  EXPECT_EQ(bag.ReadProperty("MaskColor").ToColor(), 0x00FF00FFu);
  // A freshly placed toolbar starts with the Internet Explorer border.
  KorvelToolbar fresh(host, platform);
  host.PlaceNew(fresh, 200, 10);
  EXPECT_EQ(fresh.BorderStyle(), ktInternetExplorer);
  PropertyBag fresh_bag = Save(fresh);
  EXPECT_EQ(fresh_bag.Keys(), (Strings{"BorderStyle", "MaskColor"}));
  EXPECT_EQ(fresh_bag.ReadProperty("BorderStyle").ToInteger(), 3);
}

TEST_F(ToolbarPersist, KeysAreWrittenInOrderWithTheirTypes) {
  auto tb = Make({Item{"Open", "Open a file", ktCheck, false, true, 1}, Item{"", "", ktPlaceholder, true, false, 40}},
                 4, false, ktRaised);
  tb->SetUseMaskColor(false);
  tb->SetMaskColor(0x00FF00FF);
  PropertyBag bag = Save(*tb);
  EXPECT_EQ(bag.Keys(), (Strings{"BorderStyle", "Picture", "UseMaskColor", "MaskColor", "ButtonCount",
                                 "Button1_Key", "Button1_ToolTipText", "Button1_Style", "Button1_Enabled",
                                 "Button1_Value", "Button2_Style", "Button2_Width"}));
  EXPECT_EQ(bag.ReadProperty("BorderStyle").Type(), VarType::Integer);
  EXPECT_EQ(bag.ReadProperty("Picture").Type(), VarType::Picture);
  EXPECT_EQ(bag.ReadProperty("UseMaskColor").Type(), VarType::Boolean);
  EXPECT_EQ(bag.ReadProperty("ButtonCount").Type(), VarType::Integer);
  EXPECT_EQ(bag.ReadProperty("ButtonCount").ToInteger(), 2);
  EXPECT_EQ(bag.ReadProperty("Button1_Key").ToString(), "Open");
  EXPECT_EQ(bag.ReadProperty("Button1_ToolTipText").ToString(), "Open a file");
  EXPECT_EQ(bag.ReadProperty("Button1_Style").Type(), VarType::Long);
  EXPECT_EQ(bag.ReadProperty("Button1_Style").ToLong(), 1);
  EXPECT_EQ(bag.ReadProperty("Button1_Enabled").Type(), VarType::Boolean);
  EXPECT_FALSE(bag.ReadProperty("Button1_Enabled").ToBool());
  EXPECT_TRUE(bag.ReadProperty("Button1_Value").ToBool());
  EXPECT_EQ(bag.ReadProperty("Button2_Style").ToLong(), 3);
  EXPECT_EQ(bag.ReadProperty("Button2_Width").Type(), VarType::Integer);
  EXPECT_EQ(bag.ReadProperty("Button2_Width").ToInteger(), 40);
}

// ---- reading ----

TEST_F(ToolbarPersist, BorderStyleSevenLoadsAsThreeStyleNineAsButtonWidthZeroOrMinusFiveAsOne) {
  PropertyBag bag;
  bag.WriteProperty("BorderStyle", Variant::Integer(7));
  bag.WriteProperty("ButtonCount", Variant::Integer(3));
  bag.WriteProperty("Button2_Style", Variant::Long(9));
  bag.WriteProperty("Button2_Width", Variant::Integer(0));
  bag.WriteProperty("Button3_Style", Variant::Long(3));
  bag.WriteProperty("Button3_Width", Variant::Integer(-5));
  auto tb = Load(bag);
  EXPECT_EQ(tb->BorderStyle(), ktInternetExplorer);
  EXPECT_EQ(tb->StyleAt(2), ktButton);
  EXPECT_EQ(tb->WidthAt(2), 1);
  EXPECT_EQ(tb->StyleAt(3), ktPlaceholder);
  EXPECT_EQ(tb->WidthAt(3), 1);
  PropertyBag other;
  other.WriteProperty("BorderStyle", Variant::Integer(-1));
  other.WriteProperty("ButtonCount", Variant::Integer(2));
  other.WriteProperty("Button1_Style", Variant::Long(4));
  other.WriteProperty("Button2_Style", Variant::Long(-1));
  auto tb2 = Load(other);
  EXPECT_EQ(tb2->BorderStyle(), ktInternetExplorer);
  EXPECT_EQ(tb2->StyleAt(1), ktButton);
  EXPECT_EQ(tb2->StyleAt(2), ktButton);
}

TEST_F(ToolbarPersist, CountOfTwoWithoutTheSecondGroupGivesADefaultSecondButton) {
  PropertyBag bag;
  bag.WriteProperty("ButtonCount", Variant::Integer(2));
  bag.WriteProperty("Button1_Key", Variant::String("One"));
  bag.WriteProperty("Button1_Style", Variant::Long(1));
  auto tb = Load(bag);
  ASSERT_EQ(tb->ButtonCount(), 2);
  ExpectButton(*tb, 1, Item{"One", "", ktCheck, true, false, 1});
  ExpectButton(*tb, 2, Item{"", "", ktButton, true, false, 1});
}

TEST_F(ToolbarPersist, ReadingTakesTheToolTipFontFirstAndRebuildsOnce) {
  PropertyBag bag;
  bag.WriteProperty("Picture", Variant::Object(Strip(4)));
  platform.log().Clear();
  KorvelToolbar tb(host, platform);
  tb.ReadProperties(bag);
  ASSERT_FALSE(platform.log().calls.empty());
  EXPECT_EQ(platform.log().calls.front(), "SystemParametersInfoA(41, 0, cbSize 340, 0)");
  EXPECT_EQ(tb.Rebuilds(), 1);
  EXPECT_EQ(tb.ImageCount(), 4);
  EXPECT_EQ(tb.ButtonHeight(), 22);
}

TEST_F(ToolbarPersist, RoundTripThroughTheBagAndItsTextForm) {
  auto tb = Make({Button("New", "New file"), Check("Bold", true, "Bold"), Separator(), Placeholder(40),
                  Disabled(Button("Cut", "Cut \"this\""))},
                 4, false, ktBar);
  tb->SetMaskColor(0x00FF00FF);
  PropertyBag bag = Save(*tb);
  std::string text = bag.ToText();
  PropertyBag parsed = PropertyBag::FromText(text);
  EXPECT_EQ(parsed.Keys(), bag.Keys());
  for (const PropertyBag* b : {&bag, &parsed}) {
    auto copy = Load(*b);
    EXPECT_EQ(copy->BorderStyle(), ktBar);
    EXPECT_EQ(copy->MaskColor(), 0x00FF00FFu);
    EXPECT_TRUE(copy->UseMaskColor());
    ASSERT_EQ(copy->ButtonCount(), 5);
    ExpectButton(*copy, 1, Item{"New", "New file", ktButton, true, false, 1});
    ExpectButton(*copy, 2, Item{"Bold", "Bold", ktCheck, true, true, 1});
    ExpectButton(*copy, 3, Item{"", "", ktSeparator, true, false, 1});
    ExpectButton(*copy, 4, Item{"", "", ktPlaceholder, true, false, 40});
    ExpectButton(*copy, 5, Item{"Cut", "Cut \"this\"", ktButton, false, false, 1});
    ASSERT_NE(copy->Picture(), nullptr);
    EXPECT_EQ(copy->Picture()->Pixels(), StripImage(4));
    EXPECT_EQ(copy->UserControl().Height(), 25);
    EXPECT_EQ(Save(*copy).ToText(), text);
    // The loaded toolbar looks the same as the saved one does at run time.
    tb->PaintButtons();
    EXPECT_TRUE(AreaImage(*copy) == AreaImage(*tb));
  }
}

// ---- hostile bags ----

TEST_F(ToolbarPersist, HugeButtonCountLoadsWithDefaultButtons) {
  PropertyBag bag;
  bag.WriteProperty("Picture", Variant::Object(Strip(4)));
  bag.WriteProperty("ButtonCount", Variant::Integer(30000));
  bag.WriteProperty("Button29999_Key", Variant::String("Far"));
  auto tb = Load(bag);
  ASSERT_EQ(tb->ButtonCount(), 30000);
  for (int a = 0; a < 6; ++a) EXPECT_EQ(tb->ArraySize(a), 30000u);
  EXPECT_EQ(tb->FindButton("far"), 29999);
  EXPECT_EQ(tb->ButtonLeft(29999), 29998 * 22);
  EXPECT_EQ(tb->ButtonAt(187), 9);
  ExpectButton(*tb, 30000, Item{"", "", ktButton, true, false, 1});
  PropertyBag saved = Save(*tb);
  EXPECT_EQ(saved.ReadProperty("ButtonCount").ToInteger(), 30000);
  EXPECT_EQ(saved.ReadProperty("Button29999_Key").ToString(), "Far");
}

TEST_F(ToolbarPersist, NegativeOrOverflowingButtonCountLoadsAnEmptyToolbar) {
  for (const Variant& count : {Variant::Integer(-5), Variant::Long(70000), Variant::Long(-70000),
                               Variant::String("many"), Variant::Object(Strip(1))}) {
    PropertyBag bag;
    bag.WriteProperty("ButtonCount", count);
    bag.WriteProperty("Button1_Key", Variant::String("A"));
    auto tb = Load(bag);
    EXPECT_EQ(tb->ButtonCount(), 0);
    for (int a = 0; a < 6; ++a) EXPECT_EQ(tb->ArraySize(a), 0u);
    EXPECT_EQ(tb->FindButton("A"), 0);
    EXPECT_FALSE(Save(*tb).Contains("ButtonCount"));
  }
}

TEST_F(ToolbarPersist, WrongTypesFallBackToTheirDefaults) {
  PropertyBag bag;
  bag.WriteProperty("BorderStyle", Variant::String("thick"));
  bag.WriteProperty("Picture", Variant::String("not a picture"));
  bag.WriteProperty("MaskColor", Variant::Object(std::make_shared<Font>()));
  bag.WriteProperty("UseMaskColor", Variant::String("maybe"));
  bag.WriteProperty("ButtonCount", Variant::String("2"));
  bag.WriteProperty("Button1_Key", Variant::Object(Strip(1)));
  bag.WriteProperty("Button1_ToolTipText", Variant::Long(42));
  bag.WriteProperty("Button1_Style", Variant::String("Check"));
  bag.WriteProperty("Button1_Enabled", Variant::String("perhaps"));
  bag.WriteProperty("Button1_Value", Variant::Array({Variant::Bool(true)}));
  bag.WriteProperty("Button1_Width", Variant::Long(99999));
  bag.WriteProperty("Button2_Style", Variant::String("1"));
  bag.WriteProperty("Button2_Value", Variant::String("True"));
  auto tb = Load(bag);
  EXPECT_EQ(tb->BorderStyle(), ktNoBorder);
  EXPECT_EQ(tb->Picture(), nullptr);
  EXPECT_EQ(tb->MaskColor(), 0x00FF00FFu);
  EXPECT_TRUE(tb->UseMaskColor());
  ASSERT_EQ(tb->ButtonCount(), 2);
  ExpectButton(*tb, 1, Item{"", "42", ktButton, true, false, 1});
  ExpectButton(*tb, 2, Item{"", "", ktCheck, true, true, 1});
}

TEST_F(ToolbarPersist, StripOfHeightZeroInTheBagLoadsWithoutACrash) {
  PropertyBag bag;
  bag.WriteProperty("BorderStyle", Variant::Integer(1));
  bag.WriteProperty("Picture", Variant::Object(Picture::FromImage(Image(16, 0))));
  bag.WriteProperty("ButtonCount", Variant::Integer(2));
  bag.WriteProperty("Button2_Style", Variant::Long(1));
  bag.WriteProperty("Button2_Value", Variant::Bool(true));
  auto tb = Load(bag);
  ASSERT_NE(tb->Picture(), nullptr);
  // The rebuild stopped at the division; the button height was already set.
  EXPECT_EQ(tb->ImageSize(), 0);
  EXPECT_EQ(tb->ButtonHeight(), 6);
  EXPECT_EQ(tb->ButtonCount(), 2);
  EXPECT_EQ(tb->UserControl().Height(), 12);
  tb->MouseMove(0, 0, 2, 2);
  tb->MouseDown(1, 0, 2, 2);
  tb->MouseUp(1, 0, 2, 2);
  EXPECT_EQ(Events(), (Strings{"Hover(\"\", \"\")", "Click(\"\", 3, 9)", "Hover(\"\", \"\")"}));
}

TEST_F(ToolbarPersist, DamagedTextFormLoads) {
  std::string text =
      "BorderStyle = 2\n"
      "Picture = Picture(@@@not base64@@@)\n"
      "ButtonCount = 3\n"
      "Button1_Key = \"Open\n"
      "Button1_Style = &HFFFFFFFF&\n"
      "Button2_Width = 1e99#\n"
      "this line is not a property\n"
      "Button3_Key = \"Ok\"\n";
  auto tb = Load(PropertyBag::FromText(text));
  EXPECT_EQ(tb->BorderStyle(), ktBar);
  EXPECT_EQ(tb->Picture(), nullptr);
  ASSERT_EQ(tb->ButtonCount(), 3);
  EXPECT_EQ(tb->StyleAt(1), ktButton);
  EXPECT_EQ(tb->WidthAt(2), 1);
  EXPECT_EQ(tb->KeyAt(3), "Ok");
}

// ---- Customize ----

TEST_F(ToolbarPersist, CustomizeWithCountZeroEmptiesTheToolbar) {
  auto tb = Make({Button("A"), Check("B")}, 4, false);
  host.ClearRecords();
  Apply(*tb, {});
  EXPECT_EQ(tb->ButtonCount(), 0);
  for (int a = 0; a < 6; ++a) EXPECT_EQ(tb->ArraySize(a), 0u);
  EXPECT_EQ(host.property_changes, Strings{""});
  // The row is cleared: no cell is left drawn.
  for (int x = 0; x < 44; ++x) ASSERT_EQ(Area(*tb, x, 0), kFace) << x;
}

TEST_F(ToolbarPersist, CustomizeFetchCopiesTheList) {
  auto tb = Make({Item{"A", "tip a", ktCheck, false, true, 1}, Placeholder(33)}, 4, false);
  std::int16_t count = -1;
  std::vector<std::string> key{"junk"}, tip;
  std::vector<std::int32_t> style;
  std::vector<bool> enabled, value;
  std::vector<std::int16_t> width;
  tb->Customize(false, count, key, tip, style, enabled, value, width);
  EXPECT_EQ(count, 2);
  EXPECT_EQ(key, (Strings{"A", ""}));
  EXPECT_EQ(tip, (Strings{"tip a", ""}));
  EXPECT_EQ(style, (std::vector<std::int32_t>{1, 3}));
  EXPECT_EQ(enabled, (std::vector<bool>{false, true}));
  EXPECT_EQ(value, (std::vector<bool>{true, false}));
  EXPECT_EQ(width, (std::vector<std::int16_t>{1, 33}));
  EXPECT_TRUE(host.property_changes.empty());
}

TEST_F(ToolbarPersist, CustomizeDoesNothingAtRunTime) {
  auto tb = Make({Button("A")}, 4, true);
  std::int16_t count = 7;
  std::vector<std::string> key{"X"}, tip{"Y"};
  std::vector<std::int32_t> style{1};
  std::vector<bool> enabled{false}, value{true};
  std::vector<std::int16_t> width{5};
  tb->Customize(false, count, key, tip, style, enabled, value, width);
  EXPECT_EQ(count, 7);
  EXPECT_EQ(key, Strings{"X"});
  count = 1;
  tb->Customize(true, count, key, tip, style, enabled, value, width);
  EXPECT_EQ(tb->KeyAt(1), "A");
  EXPECT_TRUE(host.property_changes.empty());
}

// ---- the default font ----

TEST_F(ToolbarPersist, GetDefaultFontTakesTheMessageFontUpToItsFirstNul) {
  LOGFONTA lf;
  std::memcpy(lf.lfFaceName, "Verdana\0Junk", 12);
  lf.lfWeight = 600;
  lf.lfItalic = 1;
  lf.lfUnderline = 1;
  lf.lfHeight = -40;
  platform.headless_user().message_font = lf;
  KorvelToolbar tb(host, platform);
  platform.log().Clear();
  FontRef f = tb.GetDefaultFont();
  EXPECT_EQ(platform.log().calls, Strings{"SystemParametersInfoA(41, 0, cbSize 340, 0)"});
  EXPECT_EQ(f->Name(), "Verdana");
  EXPECT_EQ(f->Weight(), 600);
  EXPECT_TRUE(f->Bold());
  EXPECT_TRUE(f->Italic());
  EXPECT_TRUE(f->Underline());
  EXPECT_EQ(f->Size(), 8.25);  // the size is left at the font object's default
  EXPECT_NE(tb.GetDefaultFont(), f);  // a new object each time
}

TEST_F(ToolbarPersist, NewInstanceTakesTheToolTipFontAndAlignsTop) {
  LOGFONTA lf;
  std::memcpy(lf.lfFaceName, "Tahoma", 7);
  lf.lfWeight = 400;
  platform.headless_user().message_font = lf;
  host.align = 0;
  KorvelToolbar tb(host, platform);
  platform.log().Clear();
  tb.InitProperties();
  EXPECT_EQ(platform.log().calls, Strings{"SystemParametersInfoA(41, 0, cbSize 340, 0)"});
  EXPECT_EQ(tb.ToolTipFont()->Name(), "Tahoma");
  EXPECT_EQ(host.align, 1);
}

// ---- late binding ----

TEST_F(ToolbarPersist, InvokeReachesEveryPropertyByName) {
  auto tb = Make({Item{"A", "True", ktCheck, true, false, 1}, Button("B", "words")}, 4, false);
  std::vector<Variant> none;
  auto get = [&](const char* name, std::vector<Variant> args = {}) {
    return tb->Invoke(name, InvokeKind::PropertyGet, args);
  };
  auto put = [&](const char* name, std::vector<Variant> args, InvokeKind kind = InvokeKind::PropertyPut) {
    tb->Invoke(name, kind, args);
  };
  EXPECT_EQ(get("BorderStyle").Type(), VarType::Long);
  EXPECT_EQ(get("borderstyle").ToLong(), 3);
  put("BorderStyle", {Variant::Long(1)});
  EXPECT_EQ(tb->BorderStyle(), ktRaised);
  EXPECT_EQ(get("Picture").ToPicture(), tb->Picture());
  PictureRef two = Strip(2);
  put("Picture", {Variant::Object(two)}, InvokeKind::PropertyPutRef);
  EXPECT_EQ(tb->Picture(), two);
  EXPECT_EQ(ErrorOf([&] { put("Picture", {Variant::Object(two)}); }), kErrNoSuchMember);
  put("MaskColor", {Variant::Color(0x0000FF)});
  EXPECT_EQ(get("MaskColor").ToColor(), 0x0000FFu);
  put("UseMaskColor", {Variant::Bool(false)});
  EXPECT_EQ(get("UseMaskColor").Type(), VarType::Boolean);
  EXPECT_FALSE(get("UseMaskColor").ToBool());
  EXPECT_EQ(host.property_changes, (Strings{"BorderStyle", "Picture", "MaskColor", "UseMaskColor"}));

  host.user_mode = true;
  host.ClearRecords();
  put("Enabled", {Variant::String("b"), Variant::Bool(false)});
  EXPECT_FALSE(get("Enabled", {Variant::String("B")}).ToBool());
  EXPECT_TRUE(get("ENABLED", {Variant::String("A")}).ToBool());
  put("Value", {Variant::String("A"), Variant::Bool(true)});
  EXPECT_TRUE(get("Value", {Variant::String("a")}).ToBool());
  put("", {Variant::String("A"), Variant::Bool(false)});  // the default member
  EXPECT_FALSE(get("", {Variant::String("A")}).ToBool());
  EXPECT_EQ(get("Value", {Variant::String("A")}).Type(), VarType::Boolean);
  EXPECT_TRUE(host.property_changes.empty());
  EXPECT_EQ(get("ToolTipText", {Variant::String("A")}).Type(), VarType::Boolean);
  EXPECT_TRUE(get("ToolTipText", {Variant::String("A")}).ToBool());
  EXPECT_FALSE(get("ToolTipText", {Variant::String("nothing")}).ToBool());
  EXPECT_EQ(ErrorOf([&] { get("ToolTipText", {Variant::String("B")}); }), kErrTypeMismatch);
  EXPECT_EQ(get("Style", {Variant::String("A")}).ToLong(), 1);
  EXPECT_EQ(get("Style", {Variant::String("B")}).ToLong(), 0);
  // Run time: the design-time-only properties are left alone.
  put("BorderStyle", {Variant::Long(2)});
  EXPECT_EQ(tb->BorderStyle(), ktRaised);
}

TEST_F(ToolbarPersist, InvokeErrorsForUnknownMembersMissingArgumentsAndWrongTypes) {
  auto tb = Make({Button("A")});
  std::vector<Variant> none;
  EXPECT_EQ(ErrorOf([&] { tb->Invoke("ButtonCount", InvokeKind::PropertyGet, none); }), kErrNoSuchMember);
  EXPECT_EQ(ErrorOf([&] { tb->Invoke("Style", InvokeKind::PropertyPut, none); }), kErrNoSuchMember);
  EXPECT_EQ(ErrorOf([&] { tb->Invoke("ToolTipText", InvokeKind::PropertyPut, none); }), kErrNoSuchMember);
  EXPECT_EQ(ErrorOf([&] { tb->Invoke("Enabled", InvokeKind::PropertyGet, none); }), kErrArgumentNotOptional);
  std::vector<Variant> one{Variant::String("A")};
  EXPECT_EQ(ErrorOf([&] { tb->Invoke("Value", InvokeKind::PropertyPut, one); }), kErrArgumentNotOptional);
  std::vector<Variant> bad{Variant::Object(Strip(1))};
  EXPECT_EQ(ErrorOf([&] { tb->Invoke("Enabled", InvokeKind::PropertyGet, bad); }), kErrTypeMismatch);
  std::vector<Variant> three{Variant::Bool(false), Variant::Integer(0), Variant()};
  EXPECT_EQ(ErrorOf([&] { tb->Invoke("Customize", InvokeKind::Method, three); }), kErrArgumentNotOptional);
}

TEST_F(ToolbarPersist, InvokeAboutBoxAndGetDefaultFont) {
  auto tb = Make({});
  std::vector<Variant> none;
  tb->Invoke("aboutbox", InvokeKind::Method, none);
  EXPECT_EQ(host.modal_forms.size(), 1u);
  Variant f = tb->Invoke("GetDefaultFont", InvokeKind::Method, none);
  EXPECT_EQ(f.Type(), VarType::Font);
  EXPECT_NE(f.ToFont(), nullptr);
}

TEST_F(ToolbarPersist, InvokeCustomizeFetchReplacesTheByReferenceArguments) {
  auto tb = Make({Item{"A", "tip", ktCheck, false, true, 1}, Separator(), Placeholder(12)}, 4, false);
  std::vector<Variant> args = CustomizeArgs(false, 0, {}, {}, {}, {}, {}, {});
  tb->Invoke("Customize", InvokeKind::Method, args);
  ASSERT_EQ(args.size(), 8u);
  EXPECT_EQ(args[1].Type(), VarType::Integer);
  EXPECT_EQ(args[1].ToInteger(), 3);
  EXPECT_EQ(args[2], Variant::Array({Variant::String("A"), Variant::String(""), Variant::String("")}, 1));
  EXPECT_EQ(args[3], Variant::Array({Variant::String("tip"), Variant::String(""), Variant::String("")}, 1));
  EXPECT_EQ(args[4], Variant::Array({Variant::Long(1), Variant::Long(2), Variant::Long(3)}, 1));
  EXPECT_EQ(args[5], Variant::Array({Variant::Bool(false), Variant::Bool(true), Variant::Bool(true)}, 1));
  EXPECT_EQ(args[6], Variant::Array({Variant::Bool(true), Variant::Bool(false), Variant::Bool(false)}, 1));
  EXPECT_EQ(args[7], Variant::Array({Variant::Integer(1), Variant::Integer(1), Variant::Integer(12)}, 1));
  // Element types as declared: strings, ktStyle (32-bit), booleans, 16-bit widths.
  EXPECT_EQ(args[2].ToArray().items[0].Type(), VarType::String);
  EXPECT_EQ(args[4].ToArray().items[0].Type(), VarType::Long);
  EXPECT_EQ(args[5].ToArray().items[0].Type(), VarType::Boolean);
  EXPECT_EQ(args[7].ToArray().items[0].Type(), VarType::Integer);
  EXPECT_EQ(args[2].ToArray().lower_bound, 1);
}

TEST_F(ToolbarPersist, InvokeCustomizeApplyReplacesTheList) {
  auto tb = Make({Button("Old")}, 4, false);
  host.ClearRecords();
  std::vector<Variant> args = CustomizeArgs(
      true, 2, {Variant::String("Save"), Variant::String("")}, {Variant::String("Save it"), Variant::String("")},
      {Variant::Long(1), Variant::Long(3)}, {Variant::Bool(true), Variant::Bool(true)},
      {Variant::Bool(true), Variant::Bool(false)}, {Variant::Integer(1), Variant::Integer(25)});
  tb->Invoke("CUSTOMIZE", InvokeKind::Method, args);
  ASSERT_EQ(tb->ButtonCount(), 2);
  ExpectButton(*tb, 1, Item{"Save", "Save it", ktCheck, true, true, 1});
  ExpectButton(*tb, 2, Item{"", "", ktPlaceholder, true, false, 25});
  EXPECT_EQ(host.property_changes, Strings{""});
  EXPECT_EQ(Area(*tb, 1, 1), kHot);  // repainted: the checked look
  // Arrays with another lower bound are read by index from 1.
  std::vector<Variant> zero = CustomizeArgs(
      true, 1, {Variant::String("skipped"), Variant::String("Z")}, {Variant(), Variant::String("z")},
      {Variant(), Variant::Long(0)}, {Variant(), Variant::Bool(false)}, {Variant(), Variant::Bool(false)},
      {Variant(), Variant::Integer(1)}, 0);
  tb->Invoke("Customize", InvokeKind::Method, zero);
  ASSERT_EQ(tb->ButtonCount(), 1);
  ExpectButton(*tb, 1, Item{"Z", "z", ktButton, false, false, 1});
}

TEST_F(ToolbarPersist, InvokeCustomizeWithShortArraysRaisesSubscriptOutOfRangeAndKeepsTheList) {
  auto tb = Make({Button("Keep")}, 4, false);
  host.ClearRecords();
  std::vector<Variant> args = CustomizeArgs(true, 2, {Variant::String("A"), Variant::String("B")},
                                            {Variant::String(""), Variant::String("")},
                                            {Variant::Long(0), Variant::Long(0)}, {Variant::Bool(true)},
                                            {Variant::Bool(false), Variant::Bool(false)},
                                            {Variant::Integer(1), Variant::Integer(1)});
  EXPECT_EQ(ErrorOf([&] { tb->Invoke("Customize", InvokeKind::Method, args); }), 9);
  ASSERT_EQ(tb->ButtonCount(), 1);
  EXPECT_EQ(tb->KeyAt(1), "Keep");
  EXPECT_TRUE(host.property_changes.empty());
}

TEST_F(ToolbarPersist, InvokeCustomizeAtRunTimeLeavesTheArguments) {
  auto tb = Make({Button("A")});
  std::vector<Variant> args = CustomizeArgs(false, 5, {}, {}, {}, {}, {}, {});
  std::vector<Variant> before = args;
  tb->Invoke("Customize", InvokeKind::Method, args);
  EXPECT_EQ(args, before);
}

TEST_F(ToolbarPersist, SavingAgainIntoTheSameBagDropsKeysBackAtTheirDefaults) {
  auto tb = Make({Item{"A", "tip", ktCheck, false, true, 1}, Button("B"), Placeholder(30)}, 4, false);
  PropertyBag bag;
  tb->WriteProperties(bag);
  ASSERT_TRUE(bag.Contains("Button1_Value"));
  Apply(*tb, {Button("A"), Button("B"), Placeholder(30)});
  tb->WriteProperties(bag);
  EXPECT_EQ(bag.Keys(), (Strings{"BorderStyle", "Picture", "MaskColor", "ButtonCount", "Button1_Key",
                                 "Button2_Key", "Button3_Style", "Button3_Width"}));
  auto copy = Load(bag);
  ASSERT_EQ(copy->ButtonCount(), 3);
  ExpectButton(*copy, 1, Item{"A", "", ktButton, true, false, 1});
  ExpectButton(*copy, 2, Item{"B", "", ktButton, true, false, 1});
  ExpectButton(*copy, 3, Item{"", "", ktPlaceholder, true, false, 30});
}
