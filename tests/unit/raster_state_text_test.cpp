// DrawStateA and DrawTextA on the raster with the metrics font, checked against
// golden pictures (the shared scenarios) and exact rectangles.
#include <gtest/gtest.h>

#include <cstring>

#include "tests/unit/raster_test_util.h"

namespace korvel::test {
namespace {

TEST(RasterState, BitmapNormalIsACopy) { EXPECT_TRUE(DrawsGolden("state_bitmap_normal")); }

// The scenario also checks the shadow and highlight pixels and the restored
// background colour.
TEST(RasterState, BitmapDisabledIsEmbossed) {
  EXPECT_TRUE(DrawsGolden("state_bitmap_disabled"));
  Raster r;
  Hdc dc = NewSurface(r.gdi, 10, 10, r.gdi.GetSysColor(COLOR_BTNFACE));
  Hbitmap b = StateSmallBitmap(r.gdi);
  std::size_t live = r.gdi.LiveObjects();
  EXPECT_TRUE(r.gdi.DrawStateA(dc, 0, b, "", 2, 2, 0, 0, DST_BITMAP | DSS_DISABLED));
  EXPECT_EQ(r.gdi.LiveObjects(), live);  // the mask, its DC and the brushes are gone
}

Hfont SmallFont(Raster& r, Hdc dc) {
  LOGFONTA lf;
  lf.lfHeight = -8;  // characters 4 x 10, drawn as 2 x 4 blocks from (1, 3)
  std::strcpy(lf.lfFaceName, "Metrics");
  Hfont f = r.gdi.CreateFontIndirectA(lf);
  r.gdi.SelectObject(dc, f);
  return f;
}

TEST(RasterState, TextNormalAndDisabled) { EXPECT_TRUE(DrawsGolden("state_text")); }

// Each: DrawText returns the height of the text and leaves the rectangle alone.
class TextGolden : public ::testing::TestWithParam<std::string> {};

TEST_P(TextGolden, MatchesPicture) { EXPECT_TRUE(DrawsGolden(GetParam())); }

std::vector<std::string> TextScenarioNames() {
  std::vector<std::string> names;
  for (const auto& s : RasterScenarios())
    if (s.name.rfind("text_", 0) == 0) names.push_back(s.name);
  return names;
}

TEST(RasterText, EveryTextCaseIsAScenario) { EXPECT_EQ(TextScenarioNames().size(), 7u); }

INSTANTIATE_TEST_SUITE_P(Raster, TextGolden, ::testing::ValuesIn(TextScenarioNames()),
                         [](const ::testing::TestParamInfo<std::string>& info) { return info.param; });

TEST(RasterText, CalcRectMeasuresWithoutDrawing) {
  Raster r;
  Hdc dc = r.gdi.CreateSurfaceDc(24, 24, kCanvas);
  SmallFont(r, dc);
  Rect rc{2, 3, 40, 50};
  EXPECT_EQ(r.gdi.DrawTextA(dc, "a&bc", &rc, DT_CALCRECT | DT_SINGLELINE), 10);
  EXPECT_EQ(rc, (Rect{2, 3, 14, 13}));  // three characters: the prefix is not counted
  rc = Rect{0, 0, 22, 0};
  EXPECT_EQ(r.gdi.DrawTextA(dc, "ab cd efghij", &rc, DT_CALCRECT | DT_WORDBREAK), 30);
  EXPECT_EQ(rc, (Rect{0, 0, 24, 30}));  // the unbreakable word is wider than the box
  rc = Rect{5, 5, 9, 9};
  EXPECT_EQ(r.gdi.DrawTextA(dc, "", &rc, DT_CALCRECT | DT_SINGLELINE), 10);
  EXPECT_EQ(rc, (Rect{5, 5, 5, 15}));
  for (ColorRef c : r.Pixels(dc)) ASSERT_EQ(c, kCanvas);
}

}  // namespace
}  // namespace korvel::test
