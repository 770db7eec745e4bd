// DrawEdge on the raster, checked against golden pictures: a 12 x 12 canvas with the
// edge drawn on the 10 x 10 rectangle (1, 1)-(11, 11) (the shared scenarios), and
// the rectangles BF_ADJUST leaves.
#include <gtest/gtest.h>

#include "tests/unit/raster_test_util.h"

namespace korvel::test {
namespace {

// The edge pictures of the shared scenarios (all but the BF_ADJUST one below).
std::vector<std::string> EdgeScenarioNames() {
  std::vector<std::string> names;
  for (const auto& s : RasterScenarios())
    if (s.family == "edge" && s.name != "edge_raised_middle_adjust") names.push_back(s.name);
  return names;
}

TEST(RasterEdge, EveryEdgeCaseIsAScenario) { EXPECT_EQ(EdgeScenarioNames().size(), 35u); }

TEST(RasterColors, SharedClassicTableIsTheRastersDefault) {
  headless::HeadlessGdi fresh{std::make_unique<headless::MetricsTextRenderer>()};
  for (int i = 0; i < kSysColorCount; ++i) EXPECT_EQ(fresh.GetSysColor(i), ClassicColors()[i]) << "colour " << i;
  auto distinct = DistinctSysColors();
  int differ = 0;
  for (int i = 0; i < kSysColorCount; ++i) differ += distinct[i] != ClassicColors()[i];
  EXPECT_EQ(differ, 2);
  EXPECT_EQ(distinct[COLOR_WINDOW], Rgb(255, 255, 192));
  EXPECT_EQ(distinct[COLOR_WINDOWFRAME], Rgb(64, 0, 0));
}

// Each: DrawEdge returns what the platform returns, leaves the rectangle alone
// without BF_ADJUST, and draws the golden picture.
class EdgeGolden : public ::testing::TestWithParam<std::string> {};

TEST_P(EdgeGolden, MatchesPicture) { EXPECT_TRUE(DrawsGolden(GetParam())); }

INSTANTIATE_TEST_SUITE_P(Raster, EdgeGolden, ::testing::ValuesIn(EdgeScenarioNames()),
                         [](const ::testing::TestParamInfo<std::string>& info) { return info.param; });

TEST(RasterEdge, AdjustShrinksByTheLinesDrawn) {
  Raster r;
  Hdc dc = r.gdi.CreateSurfaceDc(12, 12, kCanvas);
  Rect rc{1, 1, 11, 11};
  EXPECT_TRUE(r.gdi.DrawEdge(dc, &rc, EDGE_SUNKEN, BF_RECT | BF_ADJUST));
  EXPECT_EQ(rc, (Rect{3, 3, 9, 9}));
  rc = Rect{1, 1, 11, 11};
  r.gdi.DrawEdge(dc, &rc, BDR_RAISEDINNER, BF_LEFT | BF_BOTTOM | BF_ADJUST);
  EXPECT_EQ(rc, (Rect{2, 1, 11, 10}));
  rc = Rect{1, 1, 11, 11};
  // Two outer bits count as one line; the result is FALSE but the rect still moves.
  EXPECT_FALSE(r.gdi.DrawEdge(dc, &rc, BDR_OUTER, BF_RECT | BF_ADJUST));
  EXPECT_EQ(rc, (Rect{2, 2, 10, 10}));
  rc = Rect{1, 1, 11, 11};
  EXPECT_TRUE(r.gdi.DrawEdge(dc, &rc, EDGE_RAISED, BF_DIAGONAL_ENDTOPRIGHT | BF_ADJUST));
  EXPECT_EQ(rc, (Rect{1, 3, 9, 11}));
}

TEST(RasterEdge, AdjustWithMiddleFillsTheAdjustedRect) {
  // The rectangle becomes (3,3)-(9,9) and the picture is edge_raised_middle.txt.
  EXPECT_TRUE(DrawsGolden("edge_raised_middle_adjust"));
}

}  // namespace
}  // namespace korvel::test
