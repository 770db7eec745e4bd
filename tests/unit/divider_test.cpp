// KorvelDivider: the etched line in both orientations, the caption sitting on the
// line, caption metrics, the hidden default member, the font by reference and
// persistence. Pixels are checked with the metrics font: at the default 8.25 pt
// font a character cell is 5 x 13 and a non-space character is a solid block from
// (x + 1, y + 3) to (x + 3, y + 9).
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "controls/divider/divider.h"
#include "framework/winconst.h"
#include "platform/headless/headless_host.h"
#include "platform/headless/headless_platform.h"

using namespace korvel;
using namespace korvel::headless;

namespace {

class DividerTest : public ::testing::Test {
 protected:
  HeadlessPlatform platform;
  HeadlessHost host{platform};
  KorvelDivider divider{host, platform};

  ColorRef Sys(int index) { return platform.raster().GetSysColor(index); }
  ColorRef Pixel(int x, int y) { return divider.UserControl().Snapshot().At(x, y); }
  void Place(int w, int h) {
    host.PlaceNew(divider, w, h);
    host.ClearRecords();
  }
  // Every row (or column) of the picture that holds colour c across its whole length.
  std::vector<int> FullRows(ColorRef c) {
    Image img = divider.UserControl().Snapshot();
    std::vector<int> rows;
    for (int y = 0; y < img.height; ++y) {
      bool all = true;
      for (int x = 0; x < img.width; ++x) all = all && img.At(x, y) == c;
      if (all) rows.push_back(y);
    }
    return rows;
  }
  std::vector<int> FullColumns(ColorRef c) {
    Image img = divider.UserControl().Snapshot();
    std::vector<int> cols;
    for (int x = 0; x < img.width; ++x) {
      bool all = true;
      for (int y = 0; y < img.height; ++y) all = all && img.At(x, y) == c;
      if (all) cols.push_back(x);
    }
    return cols;
  }
  int Count(ColorRef c) {
    Image img = divider.UserControl().Snapshot();
    int n = 0;
    for (int y = 0; y < img.height; ++y)
      for (int x = 0; x < img.width; ++x) n += img.At(x, y) == c;
    return n;
  }
};

// ---- the cases the divider must get right ----

TEST_F(DividerTest, SquareControlIsDrawnHorizontally) {
  Place(100, 100);
  // No caption: the lines sit at 100 \ 2 - 1 and 100 \ 2.
  EXPECT_EQ(FullRows(Sys(COLOR_BTNSHADOW)), (std::vector<int>{49}));
  EXPECT_EQ(FullRows(Sys(COLOR_BTNHIGHLIGHT)), (std::vector<int>{50}));
  EXPECT_EQ(Count(Sys(COLOR_BTNSHADOW)), 100);
  EXPECT_EQ(Count(Sys(COLOR_BTNHIGHLIGHT)), 100);
  EXPECT_EQ(Pixel(49, 10), Sys(COLOR_BTNFACE));
  EXPECT_EQ(Pixel(50, 90), Sys(COLOR_BTNFACE));
}

TEST_F(DividerTest, CaptionTallerThanTheControlGivesNegativeTop) {
  Place(200, 10);
  divider.SetCaption("Hi");
  // T = (10 - 13) \ 2 - 1 = -2: the text starts above the control and the lines
  // (rows 11 and 12) fall below it.
  EXPECT_EQ(divider.TextHeight(), 13);
  const ColorRef text = Sys(COLOR_BTNTEXT), face = Sys(COLOR_BTNFACE);
  EXPECT_EQ(Pixel(1, 0), face);
  EXPECT_EQ(Pixel(1, 1), text);  // block row T + 3
  EXPECT_EQ(Pixel(3, 7), text);  // block row T + 9
  EXPECT_EQ(Pixel(1, 8), face);
  EXPECT_EQ(Pixel(6, 1), text);  // "i"
  EXPECT_EQ(Count(Sys(COLOR_BTNSHADOW)), 0);
  EXPECT_EQ(Count(Sys(COLOR_BTNHIGHLIGHT)), 0);
  EXPECT_EQ(Count(text), 2 * 3 * 7);
}

TEST_F(DividerTest, ChangingTheFontRecentresCaptionAndLines) {
  Place(200, 24);
  divider.SetCaption("Hi");
  // T = (24 - 13) \ 2 - 1 = 4; lines at 4 + 13 and one below.
  EXPECT_EQ(FullRows(Sys(COLOR_BTNSHADOW)), (std::vector<int>{17}));
  EXPECT_EQ(FullRows(Sys(COLOR_BTNHIGHLIGHT)), (std::vector<int>{18}));
  EXPECT_EQ(Pixel(1, 7), Sys(COLOR_BTNTEXT));
  EXPECT_EQ(Pixel(1, 6), Sys(COLOR_BTNFACE));
  host.ClearRecords();

  auto big = std::make_shared<korvel::Font>("Arial", 12);  // 7 x 18 cells
  divider.SetFont(big);
  EXPECT_EQ(divider.TextWidth(), 14);
  EXPECT_EQ(divider.TextHeight(), 18);
  // T = (24 - 18) \ 2 - 1 = 2; lines at 20 and 21; text block rows 5 to 16.
  EXPECT_EQ(FullRows(Sys(COLOR_BTNSHADOW)), (std::vector<int>{20}));
  EXPECT_EQ(FullRows(Sys(COLOR_BTNHIGHLIGHT)), (std::vector<int>{21}));
  EXPECT_EQ(Pixel(0, 17), Sys(COLOR_BTNFACE));
  EXPECT_EQ(Pixel(1, 5), Sys(COLOR_BTNTEXT));
  EXPECT_EQ(Pixel(5, 16), Sys(COLOR_BTNTEXT));
  EXPECT_EQ(Pixel(1, 4), Sys(COLOR_BTNFACE));
  EXPECT_EQ(Pixel(1, 17), Sys(COLOR_BTNFACE));
  EXPECT_EQ(host.property_changes, (std::vector<std::string>{"Font"}));
}

// ---- drawing ----

TEST_F(DividerTest, HorizontalWithoutCaption) {
  Place(200, 24);
  EXPECT_EQ(divider.TextWidth(), 0);
  EXPECT_EQ(divider.TextHeight(), 0);
  EXPECT_EQ(FullRows(Sys(COLOR_BTNSHADOW)), (std::vector<int>{11}));
  EXPECT_EQ(FullRows(Sys(COLOR_BTNHIGHLIGHT)), (std::vector<int>{12}));
  EXPECT_EQ(Count(Sys(COLOR_BTNSHADOW)), 200);
  EXPECT_EQ(Count(Sys(COLOR_BTNHIGHLIGHT)), 200);
  EXPECT_EQ(Pixel(0, 10), Sys(COLOR_BTNFACE));
  EXPECT_EQ(Pixel(199, 13), Sys(COLOR_BTNFACE));
}

TEST_F(DividerTest, HorizontalCaptionSitsOnTheLine) {
  Place(200, 24);
  divider.SetCaption("Hi");
  EXPECT_EQ(divider.TextWidth(), 10);
  EXPECT_EQ(divider.TextHeight(), 13);
  const ColorRef text = Sys(COLOR_BTNTEXT), face = Sys(COLOR_BTNFACE);
  // "H" from (1, 7) to (3, 13), "i" from (6, 7) to (8, 13), left-aligned at x 0.
  EXPECT_EQ(Pixel(0, 7), face);
  EXPECT_EQ(Pixel(1, 7), text);
  EXPECT_EQ(Pixel(3, 13), text);
  EXPECT_EQ(Pixel(4, 10), face);
  EXPECT_EQ(Pixel(6, 7), text);
  EXPECT_EQ(Pixel(8, 13), text);
  EXPECT_EQ(Pixel(9, 10), face);
  EXPECT_EQ(Count(text), 2 * 3 * 7);
  // The lines run the whole width, under the caption too.
  EXPECT_EQ(FullRows(Sys(COLOR_BTNSHADOW)), (std::vector<int>{17}));
  EXPECT_EQ(FullRows(Sys(COLOR_BTNHIGHLIGHT)), (std::vector<int>{18}));
  EXPECT_EQ(host.property_changes, (std::vector<std::string>{"Caption"}));
}

TEST_F(DividerTest, VerticalDrawsTwoColumnsAndNoCaption) {
  Place(10, 80);
  divider.SetCaption("Hi");
  // X = 10 \ 2 = 5: shadow in column 4, highlight in column 5, every row.
  EXPECT_EQ(FullColumns(Sys(COLOR_BTNSHADOW)), (std::vector<int>{4}));
  EXPECT_EQ(FullColumns(Sys(COLOR_BTNHIGHLIGHT)), (std::vector<int>{5}));
  EXPECT_EQ(Count(Sys(COLOR_BTNSHADOW)), 80);
  EXPECT_EQ(Count(Sys(COLOR_BTNHIGHLIGHT)), 80);
  EXPECT_EQ(Count(Sys(COLOR_BTNTEXT)), 0);
  EXPECT_EQ(Pixel(3, 40), Sys(COLOR_BTNFACE));
  EXPECT_EQ(Pixel(6, 40), Sys(COLOR_BTNFACE));
}

TEST_F(DividerTest, VerticalOddWidth) {
  Place(11, 40);
  EXPECT_EQ(FullColumns(Sys(COLOR_BTNSHADOW)), (std::vector<int>{4}));
  EXPECT_EQ(FullColumns(Sys(COLOR_BTNHIGHLIGHT)), (std::vector<int>{5}));
}

TEST_F(DividerTest, ResizeRefreshesSizeAndRedraws) {
  Place(200, 24);
  host.Size(divider, 150, 30);
  EXPECT_EQ(divider.DividerWidth(), 150);
  EXPECT_EQ(divider.DividerHeight(), 30);
  EXPECT_EQ(FullRows(Sys(COLOR_BTNSHADOW)), (std::vector<int>{14}));
  EXPECT_EQ(FullRows(Sys(COLOR_BTNHIGHLIGHT)), (std::vector<int>{15}));
  host.Size(divider, 30, 150);
  EXPECT_EQ(FullColumns(Sys(COLOR_BTNSHADOW)), (std::vector<int>{14}));
  EXPECT_EQ(FullColumns(Sys(COLOR_BTNHIGHLIGHT)), (std::vector<int>{15}));
  EXPECT_EQ(Count(Sys(COLOR_BTNSHADOW)), 150);
}

TEST_F(DividerTest, ShowRepaints) {
  Place(200, 24);
  divider.UserControl().Cls();
  EXPECT_EQ(Count(Sys(COLOR_BTNSHADOW)), 0);
  divider.Show();
  EXPECT_EQ(FullRows(Sys(COLOR_BTNSHADOW)), (std::vector<int>{11}));
}

// ---- members ----

TEST_F(DividerTest, CaptionMetricsAreZeroWhenEmpty) {
  Place(200, 24);
  divider.SetCaption("Options");
  EXPECT_EQ(divider.Caption(), "Options");
  EXPECT_EQ(divider.TextWidth(), 35);
  EXPECT_EQ(divider.TextHeight(), 13);
  divider.SetCaption("");
  EXPECT_EQ(divider.TextWidth(), 0);
  EXPECT_EQ(divider.TextHeight(), 0);
  EXPECT_EQ(FullRows(Sys(COLOR_BTNSHADOW)), (std::vector<int>{11}));
  EXPECT_EQ(Count(Sys(COLOR_BTNTEXT)), 0);
  EXPECT_EQ(host.property_changes, (std::vector<std::string>{"Caption", "Caption"}));
}

TEST_F(DividerTest, DefaultMemberIsTheCaption) {
  Place(200, 24);
  divider.SetDefault_("Hi");
  EXPECT_EQ(divider.Caption(), "Hi");
  EXPECT_EQ(divider.Default_(), "Hi");
  EXPECT_EQ(divider.TextWidth(), 10);
  EXPECT_EQ(Pixel(1, 7), Sys(COLOR_BTNTEXT));
  divider.SetCaption("Other");
  EXPECT_EQ(divider.Default_(), "Other");
  EXPECT_EQ(host.property_changes, (std::vector<std::string>{"Caption", "Caption"}));
  EXPECT_STREQ(KorvelDivider::kDefaultMember, "Default_");
}

TEST_F(DividerTest, FontIsTheSurfaceFontByReference) {
  Place(200, 24);
  EXPECT_EQ(divider.Font().get(), divider.UserControl().Font().get());
  auto f = std::make_shared<korvel::Font>("Arial", 12);
  divider.SetFont(f);
  EXPECT_EQ(divider.Font().get(), f.get());
  EXPECT_EQ(divider.UserControl().Font().get(), f.get());
  // Without a caption the metrics stay 0 and the lines stay in the middle.
  EXPECT_EQ(divider.TextWidth(), 0);
  EXPECT_EQ(divider.TextHeight(), 0);
  EXPECT_EQ(FullRows(Sys(COLOR_BTNSHADOW)), (std::vector<int>{11}));
  // Nothing given: the surface keeps its font.
  divider.SetFont(nullptr);
  EXPECT_EQ(divider.Font().get(), f.get());
  EXPECT_EQ(host.property_changes, (std::vector<std::string>{"Font", "Font"}));
}

TEST_F(DividerTest, NewInstanceTakesOnlyTheAmbientFontName) {
  host.ambient_font = std::make_shared<korvel::Font>("Arial", 12);
  host.PlaceNew(divider, 200, 24);
  EXPECT_EQ(divider.Font()->Name(), "Arial");
  EXPECT_EQ(divider.Font()->Size(), 8.25);
  EXPECT_NE(divider.Font().get(), host.ambient_font.get());
  EXPECT_EQ(divider.Caption(), "");
  EXPECT_TRUE(host.property_changes.empty());
  EXPECT_TRUE(host.events.empty());
}

TEST_F(DividerTest, AboutBoxShowsAFreshFormEachTime) {
  Place(200, 24);
  divider.AboutBox();
  divider.AboutBox();
  EXPECT_EQ(host.modal_forms, (std::vector<std::string>{"About KorvelUI99...", "About KorvelUI99..."}));
}

// ---- persistence ----

TEST_F(DividerTest, WritesCaptionThenFont) {
  Place(200, 24);
  PropertyBag empty;
  divider.WriteProperties(empty);
  EXPECT_EQ(empty.Keys(), (std::vector<std::string>{"Font"}));
  EXPECT_EQ(empty.ReadProperty("Font").ToFont().get(), divider.Font().get());
  divider.SetCaption("Options");
  PropertyBag bag;
  divider.WriteProperties(bag);
  EXPECT_EQ(bag.Keys(), (std::vector<std::string>{"Caption", "Font"}));
  EXPECT_EQ(bag.ReadProperty("Caption").ToString(), "Options");
}

TEST_F(DividerTest, RoundTripThroughTheTextForm) {
  host.ambient_font = std::make_shared<korvel::Font>("Arial", 12);
  Place(200, 24);
  divider.SetCaption("Options");
  PropertyBag saved;
  divider.WriteProperties(saved);
  PropertyBag bag = PropertyBag::FromText(saved.ToText());

  HeadlessPlatform p2;
  HeadlessHost h2(p2);
  KorvelDivider loaded(h2, p2);
  h2.Load(loaded, bag, 200, 24);
  EXPECT_EQ(loaded.Caption(), "Options");
  EXPECT_EQ(loaded.Font()->Name(), "Arial");
  EXPECT_EQ(loaded.Font()->Size(), 8.25);
  EXPECT_EQ(loaded.TextWidth(), 35);
  EXPECT_EQ(loaded.TextHeight(), 13);
  EXPECT_EQ(h2.property_changes, (std::vector<std::string>{"Caption"}));
  Image img = loaded.UserControl().Snapshot();
  EXPECT_EQ(img.At(0, 17), p2.raster().GetSysColor(COLOR_BTNSHADOW));
  EXPECT_EQ(img.At(199, 18), p2.raster().GetSysColor(COLOR_BTNHIGHLIGHT));
  EXPECT_EQ(img.At(1, 7), p2.raster().GetSysColor(COLOR_BTNTEXT));
}

TEST_F(DividerTest, EmptyBagTakesTheAmbientFont) {
  PropertyBag bag;
  host.Load(divider, bag, 200, 24);
  EXPECT_EQ(divider.Font().get(), host.ambient_font.get());
  EXPECT_EQ(divider.Caption(), "");
  EXPECT_EQ(host.property_changes, (std::vector<std::string>{"Caption"}));
  EXPECT_EQ(FullRows(Sys(COLOR_BTNSHADOW)), (std::vector<int>{11}));
}

TEST_F(DividerTest, TextFormFontAndCaptionLoad) {
  PropertyBag bag = PropertyBag::FromText(
      "Caption = \"General\"\n"
      "Font = BeginProperty Font\n"
      "   Name = \"Tahoma\"\n"
      "   Size = 12\n"
      "   Weight = 700\n"
      "EndProperty\n");
  host.Load(divider, bag, 200, 24);
  EXPECT_EQ(divider.Font()->Name(), "Tahoma");
  EXPECT_TRUE(divider.Font()->Bold());
  EXPECT_EQ(divider.Caption(), "General");
  EXPECT_EQ(divider.TextWidth(), 49);
  EXPECT_EQ(divider.TextHeight(), 18);
  EXPECT_EQ(FullRows(Sys(COLOR_BTNSHADOW)), (std::vector<int>{20}));
}

TEST_F(DividerTest, WrongTypesAndGarbageLoadAsDefaults) {
  PropertyBag bag = PropertyBag::FromText(
      "Font = 12\n"
      "garbage without an equals sign\n"
      "Caption = \"unterminated\n");
  host.Load(divider, bag, 200, 24);
  EXPECT_EQ(divider.Font().get(), host.ambient_font.get());
  EXPECT_EQ(divider.Caption(), "");
  EXPECT_EQ(FullRows(Sys(COLOR_BTNSHADOW)), (std::vector<int>{11}));

  // A caption that is no text at all reads as "".
  HeadlessPlatform p2;
  HeadlessHost h2(p2);
  KorvelDivider other(h2, p2);
  PropertyBag pictures;
  pictures.WriteProperty("Caption", Variant::Object(Picture::FromImage(Image(2, 2))));
  pictures.WriteProperty("Font", Variant::String("Arial"));
  h2.Load(other, pictures, 200, 24);
  EXPECT_EQ(other.Caption(), "");
  EXPECT_EQ(other.Font().get(), h2.ambient_font.get());
  EXPECT_EQ(h2.property_changes, (std::vector<std::string>{"Caption"}));
}

}  // namespace
