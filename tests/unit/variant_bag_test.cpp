// The variant's conversions and the property bag with its text form.
#include <gtest/gtest.h>

#include "framework/errors.h"
#include "framework/property_bag.h"

using namespace korvel;

namespace {
int ErrorOf(const std::function<void()>& f) {
  try {
    f();
  } catch (const RuntimeError& e) {
    return e.Number();
  }
  return 0;
}
}  // namespace

TEST(Variant, NumbersConvertWithRoundingAndRangeChecks) {
  EXPECT_EQ(Variant(2.5).ToInteger(), 2);
  EXPECT_EQ(Variant(std::int32_t{40000}).ToLong(), 40000);
  EXPECT_EQ(ErrorOf([] { Variant(std::int32_t{40000}).ToInteger(); }), 6);
  EXPECT_EQ(Variant(true).ToInteger(), -1);
  EXPECT_EQ(Variant(false).ToLong(), 0);
  EXPECT_EQ(Variant().ToLong(), 0);
  EXPECT_EQ(Variant(" 12 ").ToInteger(), 12);
  EXPECT_EQ(Variant("&H8000000F").ToColor(), 0x8000000Fu);
  EXPECT_EQ(Variant::Color(0x8000000D).ToColor(), 0x8000000Du);
}

TEST(Variant, TextThatIsNotANumberIsATypeMismatch) {
  EXPECT_EQ(ErrorOf([] { Variant("abc").ToInteger(); }), 13);
  EXPECT_EQ(ErrorOf([] { Variant("").ToLong(); }), 13);
  EXPECT_EQ(ErrorOf([] { Variant("True").ToLong(); }), 13);
  EXPECT_EQ(ErrorOf([] { Variant("1e999").ToDouble(); }), 6);
}

TEST(Variant, BooleansFromTextAndNumbers) {
  EXPECT_TRUE(Variant("True").ToBool());
  EXPECT_TRUE(Variant("true").ToBool());
  EXPECT_FALSE(Variant("False").ToBool());
  EXPECT_TRUE(Variant("-1").ToBool());
  EXPECT_TRUE(Variant("7").ToBool());
  EXPECT_FALSE(Variant("0").ToBool());
  EXPECT_EQ(ErrorOf([] { Variant("").ToBool(); }), 13);
  EXPECT_EQ(ErrorOf([] { Variant("Yes").ToBool(); }), 13);
  EXPECT_TRUE(Variant(std::int16_t{2}).ToBool());
}

TEST(Variant, ToStringFollowsTheHostsFormatting) {
  EXPECT_EQ(Variant(true).ToString(), "True");
  EXPECT_EQ(Variant(false).ToString(), "False");
  EXPECT_EQ(Variant(std::int16_t{-5}).ToString(), "-5");
  EXPECT_EQ(Variant(10.5).ToString(), "10.5");
  EXPECT_EQ(Variant(8.25f).ToString(), "8.25");
  auto font = std::make_shared<Font>("Arial", 9);
  EXPECT_EQ(Variant(font).ToString(), "Arial");  // the font's default member
}

TEST(Variant, ObjectsConvertOnlyToTheirOwnKind) {
  auto font = std::make_shared<Font>();
  EXPECT_EQ(Variant(font).ToFont(), font);
  EXPECT_EQ(ErrorOf([&] { Variant(font).ToPicture(); }), 13);
  EXPECT_EQ(ErrorOf([] { Variant(std::int16_t{1}).ToFont(); }), 13);
  EXPECT_EQ(Variant().ToFont(), nullptr);
}

TEST(Variant, EqualityComparesNumbersByValue) {
  EXPECT_TRUE(Variant(std::int16_t{0}) == Variant(std::int32_t{0}));
  EXPECT_TRUE(Variant(true) == Variant(std::int16_t{-1}));
  EXPECT_TRUE(Variant::Color(0xFF00FF) == Variant(std::int32_t{0xFF00FF}));
  EXPECT_FALSE(Variant("a") == Variant("A"));
  EXPECT_TRUE(Variant("") == Variant(""));
  EXPECT_FALSE(Variant("x") == Variant(std::int16_t{0}));
}

TEST(PropertyBag, ReadGivesTheDefaultForAnAbsentKey) {
  PropertyBag bag;
  EXPECT_EQ(bag.ReadProperty("Caption", "none").ToString(), "none");
  bag.WriteProperty("Caption", "Hello");
  EXPECT_EQ(bag.ReadProperty("caption", "none").ToString(), "Hello");  // keys ignore case
}

TEST(PropertyBag, WriteOmitsAValueEqualToItsDefault) {
  PropertyBag bag;
  bag.WriteProperty("Min", std::int32_t{0}, std::int32_t{0});
  bag.WriteProperty("Max", std::int32_t{100});
  bag.WriteProperty("Enabled", true, true);
  bag.WriteProperty("Caption", "x", "");
  EXPECT_EQ(bag.Keys(), (std::vector<std::string>{"Max", "Caption"}));
}

TEST(PropertyBag, TextFormHasOneKeyAndValuePerLine) {
  PropertyBag bag;
  bag.WriteProperty("Caption", "Say \"hi\"");
  bag.WriteProperty("Count", std::int16_t{3});
  bag.WriteProperty("Big", std::int32_t{70000});
  bag.WriteProperty("ForeColor", Variant::Color(0x8000000D));
  bag.WriteProperty("Small", Variant::Long(5));
  bag.WriteProperty("Enabled", true);
  bag.WriteProperty("Off", false);
  bag.WriteProperty("Ratio", 0.5);
  bag.WriteProperty("Size", 8.25f);
  EXPECT_EQ(bag.ToText(),
            "Caption = \"Say \"\"hi\"\"\"\n"
            "Count = 3\n"
            "Big = &H00011170&\n"
            "ForeColor = &H8000000D&\n"
            "Small = 5&\n"
            "Enabled = -1  'True\n"
            "Off = 0   'False\n"
            "Ratio = 0.5#\n"
            "Size = 8.25!\n");
}

TEST(PropertyBag, TextFormRoundTripsEveryKind) {
  PropertyBag bag;
  bag.WriteProperty("Caption", "Grüße, 東京 \"quoted\"");
  bag.WriteProperty("Tabs", std::string("a\tb\r\nc") + '\0' + "d");
  bag.WriteProperty("Count", std::int16_t{-7});
  bag.WriteProperty("Color", Variant::Color(0x00FF00FF));
  bag.WriteProperty("Flag", true);
  bag.WriteProperty("Ratio", 0.1);
  bag.WriteProperty("Size", 10.5f);
  auto font = std::make_shared<Font>("Arial", 10.5);
  font->SetBold(true);
  font->SetItalic(true);
  font->SetCharset(1);
  bag.WriteProperty("Font", font);
  Image img(3, 2, Rgb(255, 0, 255));
  img.At(1, 1) = Rgb(1, 2, 3);
  bag.WriteProperty("Picture", Picture::FromImage(img));

  PropertyBag back = PropertyBag::FromText(bag.ToText());
  EXPECT_EQ(back.Keys(), bag.Keys());
  EXPECT_EQ(back.ReadProperty("Caption").ToString(), "Grüße, 東京 \"quoted\"");
  EXPECT_EQ(back.ReadProperty("Tabs").ToString(), std::string("a\tb\r\nc") + '\0' + "d");
  EXPECT_EQ(back.ReadProperty("Count").Type(), VarType::Integer);
  EXPECT_EQ(back.ReadProperty("Count").ToInteger(), -7);
  EXPECT_EQ(back.ReadProperty("Color").ToColor(), 0x00FF00FFu);
  EXPECT_EQ(back.ReadProperty("Flag").Type(), VarType::Boolean);
  EXPECT_TRUE(back.ReadProperty("Flag").ToBool());
  EXPECT_EQ(back.ReadProperty("Ratio").ToDouble(), 0.1);
  EXPECT_EQ(back.ReadProperty("Size").ToSingle(), 10.5f);
  FontRef f = back.ReadProperty("Font").ToFont();
  ASSERT_TRUE(f);
  EXPECT_EQ(*f, *font);
  PictureRef p = back.ReadProperty("Picture").ToPicture();
  ASSERT_TRUE(p);
  EXPECT_EQ(p->Pixels(), img);
}

TEST(PropertyBag, DamagedLinesAreSkippedAndTheRestLoads) {
  PropertyBag bag = PropertyBag::FromText(
      "Caption = \"unterminated\n"
      "no equals sign here\n"
      "Max = 12\n"
      "Picture = Picture(!!notbase64!!)\n"
      "Value = \"7\"\n");
  EXPECT_EQ(bag.Keys(), (std::vector<std::string>{"Max", "Value"}));
  EXPECT_EQ(bag.ReadProperty("Value").ToInteger(), 7);  // a numeric string converts when read
}

TEST(Font, BoldFollowsTheWeight) {
  Font f;
  EXPECT_EQ(f.Name(), "MS Sans Serif");
  EXPECT_EQ(f.Size(), 8.25);
  EXPECT_FALSE(f.Bold());
  f.SetBold(true);
  EXPECT_EQ(f.Weight(), 700);
  f.SetWeight(551);
  EXPECT_TRUE(f.Bold());
  f.SetWeight(550);
  EXPECT_FALSE(f.Bold());
  f.SetBold(false);
  EXPECT_EQ(f.Weight(), 400);
}
