// DrawEdge on the raster, checked against golden pictures: a 12 x 12 canvas with the
// edge drawn on the 10 x 10 rectangle (1, 1)-(11, 11).
#include <gtest/gtest.h>

#include <cstdio>

#include "tests/unit/raster_test_util.h"

namespace korvel::test {
namespace {

struct EdgeCase {
  const char* file;
  const char* what;
  std::uint32_t edge;
  std::uint32_t flags;
  bool result;
};

const EdgeCase kEdgeCases[] = {
    // Every edge type as a full rectangle, without and with the middle.
    {"edge_raisedouter_rect.txt", "BDR_RAISEDOUTER, BF_RECT", BDR_RAISEDOUTER, BF_RECT, true},
    {"edge_sunkenouter_rect.txt", "BDR_SUNKENOUTER, BF_RECT", BDR_SUNKENOUTER, BF_RECT, true},
    {"edge_raisedinner_rect.txt", "BDR_RAISEDINNER, BF_RECT", BDR_RAISEDINNER, BF_RECT, true},
    {"edge_sunkeninner_rect.txt", "BDR_SUNKENINNER, BF_RECT", BDR_SUNKENINNER, BF_RECT, true},
    {"edge_raised_rect.txt", "EDGE_RAISED, BF_RECT", EDGE_RAISED, BF_RECT, true},
    {"edge_sunken_rect.txt", "EDGE_SUNKEN, BF_RECT", EDGE_SUNKEN, BF_RECT, true},
    {"edge_etched_rect.txt", "EDGE_ETCHED, BF_RECT", EDGE_ETCHED, BF_RECT, true},
    {"edge_bump_rect.txt", "EDGE_BUMP, BF_RECT", EDGE_BUMP, BF_RECT, true},
    {"edge_raisedouter_middle.txt", "BDR_RAISEDOUTER, BF_RECT | BF_MIDDLE", BDR_RAISEDOUTER, BF_RECT | BF_MIDDLE, true},
    {"edge_sunkeninner_middle.txt", "BDR_SUNKENINNER, BF_RECT | BF_MIDDLE", BDR_SUNKENINNER, BF_RECT | BF_MIDDLE, true},
    {"edge_raised_middle.txt", "EDGE_RAISED, BF_RECT | BF_MIDDLE", EDGE_RAISED, BF_RECT | BF_MIDDLE, true},
    {"edge_sunken_middle.txt", "EDGE_SUNKEN, BF_RECT | BF_MIDDLE", EDGE_SUNKEN, BF_RECT | BF_MIDDLE, true},
    {"edge_etched_middle.txt", "EDGE_ETCHED, BF_RECT | BF_MIDDLE", EDGE_ETCHED, BF_RECT | BF_MIDDLE, true},
    {"edge_bump_middle.txt", "EDGE_BUMP, BF_RECT | BF_MIDDLE", EDGE_BUMP, BF_RECT | BF_MIDDLE, true},
    // Both outer lines at once: FALSE and no middle.
    {"edge_bothouter_middle.txt", "BDR_OUTER, BF_RECT | BF_MIDDLE", BDR_OUTER, BF_RECT | BF_MIDDLE, false},
    // Single sides and corners.
    {"edge_raised_left.txt", "EDGE_RAISED, BF_LEFT", EDGE_RAISED, BF_LEFT, true},
    {"edge_raised_top.txt", "EDGE_RAISED, BF_TOP", EDGE_RAISED, BF_TOP, true},
    {"edge_raised_right.txt", "EDGE_RAISED, BF_RIGHT", EDGE_RAISED, BF_RIGHT, true},
    {"edge_raised_bottom.txt", "EDGE_RAISED, BF_BOTTOM", EDGE_RAISED, BF_BOTTOM, true},
    {"edge_raised_topleft.txt", "EDGE_RAISED, BF_TOPLEFT", EDGE_RAISED, BF_TOPLEFT, true},
    {"edge_raised_bottomright.txt", "EDGE_RAISED, BF_BOTTOMRIGHT", EDGE_RAISED, BF_BOTTOMRIGHT, true},
    {"edge_sunken_topright.txt", "EDGE_SUNKEN, BF_TOPRIGHT", EDGE_SUNKEN, BF_TOPRIGHT, true},
    {"edge_sunken_bottomleft.txt", "EDGE_SUNKEN, BF_BOTTOMLEFT", EDGE_SUNKEN, BF_BOTTOMLEFT, true},
    // Soft, flat and mono colours.
    {"edge_raised_soft.txt", "EDGE_RAISED, BF_RECT | BF_SOFT", EDGE_RAISED, BF_RECT | BF_SOFT, true},
    {"edge_sunken_soft.txt", "EDGE_SUNKEN, BF_RECT | BF_SOFT", EDGE_SUNKEN, BF_RECT | BF_SOFT, true},
    {"edge_raised_flat.txt", "EDGE_RAISED, BF_RECT | BF_FLAT | BF_MIDDLE", EDGE_RAISED, BF_RECT | BF_FLAT | BF_MIDDLE, true},
    {"edge_sunken_mono.txt", "EDGE_SUNKEN, BF_RECT | BF_MONO | BF_MIDDLE", EDGE_SUNKEN, BF_RECT | BF_MONO | BF_MIDDLE, true},
    {"edge_bothouter_mono.txt", "BDR_OUTER, BF_RECT | BF_MONO | BF_MIDDLE", BDR_OUTER, BF_RECT | BF_MONO | BF_MIDDLE, true},
    // Diagonals.
    {"edge_diag.txt", "EDGE_RAISED, BF_DIAGONAL", EDGE_RAISED, BF_DIAGONAL, true},
    {"edge_diag_endtopright.txt", "EDGE_RAISED, BF_DIAGONAL_ENDTOPRIGHT", EDGE_RAISED, BF_DIAGONAL_ENDTOPRIGHT, true},
    {"edge_diag_endtopleft.txt", "EDGE_RAISED, BF_DIAGONAL_ENDTOPLEFT", EDGE_RAISED, BF_DIAGONAL_ENDTOPLEFT, true},
    {"edge_diag_endbottomleft.txt", "EDGE_RAISED, BF_DIAGONAL_ENDBOTTOMLEFT", EDGE_RAISED, BF_DIAGONAL_ENDBOTTOMLEFT, true},
    {"edge_diag_endbottomright.txt", "EDGE_RAISED, BF_DIAGONAL_ENDBOTTOMRIGHT", EDGE_RAISED, BF_DIAGONAL_ENDBOTTOMRIGHT, true},
    {"edge_diag_endtopright_middle.txt", "EDGE_SUNKEN, BF_DIAGONAL_ENDTOPRIGHT | BF_MIDDLE", EDGE_SUNKEN, BF_DIAGONAL_ENDTOPRIGHT | BF_MIDDLE, true},
    {"edge_diag_endbottomleft_middle.txt", "EDGE_SUNKEN, BF_DIAGONAL_ENDBOTTOMLEFT | BF_MIDDLE", EDGE_SUNKEN, BF_DIAGONAL_ENDBOTTOMLEFT | BF_MIDDLE, true},
};

class EdgeGolden : public ::testing::TestWithParam<EdgeCase> {};

TEST_P(EdgeGolden, MatchesPicture) {
  const EdgeCase& c = GetParam();
  Raster r;
  Hdc dc = r.gdi.CreateSurfaceDc(12, 12, kCanvas);
  Rect rc{1, 1, 11, 11};
  EXPECT_EQ(r.gdi.DrawEdge(dc, &rc, c.edge, c.flags), c.result);
  EXPECT_EQ(rc, (Rect{1, 1, 11, 11}));  // untouched without BF_ADJUST
  EXPECT_TRUE(r.Matches(dc, c.file, std::string("DrawEdge ") + c.what + " on (1,1)-(11,11) of a 12x12 canvas",
                        SysLegend()));
}

INSTANTIATE_TEST_SUITE_P(Raster, EdgeGolden, ::testing::ValuesIn(kEdgeCases),
                         [](const ::testing::TestParamInfo<EdgeCase>& info) {
                           std::string n = info.param.file;
                           n = n.substr(0, n.find('.'));
                           for (char& ch : n)
                             if (ch == '.' || ch == '-') ch = '_';
                           return n;
                         });

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
  Raster r;
  Hdc dc = r.gdi.CreateSurfaceDc(12, 12, kCanvas);
  Rect rc{1, 1, 11, 11};
  r.gdi.DrawEdge(dc, &rc, EDGE_RAISED, BF_RECT | BF_ADJUST | BF_MIDDLE);
  EXPECT_EQ(rc, (Rect{3, 3, 9, 9}));
  EXPECT_TRUE(r.Matches(dc, "edge_raised_middle.txt",
                        "DrawEdge EDGE_RAISED, BF_RECT | BF_MIDDLE on (1,1)-(11,11) of a 12x12 canvas", SysLegend()));
}

}  // namespace
}  // namespace korvel::test
