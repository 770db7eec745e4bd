// DrawStateA and DrawTextA on the raster with the metrics font, checked against
// golden pictures and exact rectangles.
#include <gtest/gtest.h>

#include <cstring>

#include "tests/unit/raster_test_util.h"

namespace korvel::test {
namespace {

constexpr ColorRef kWhite = Rgb(255, 255, 255), kBlack = Rgb(0, 0, 0), kRed = Rgb(255, 0, 0);
constexpr ColorRef kInk = Rgb(0, 0, 128), kPaper = Rgb(255, 224, 224);

std::vector<LegendEntry> StateLegend() {
  auto l = SysLegend();
  l.push_back({'r', "RED", kRed});
  l.push_back({'n', "INK", kInk});
  return l;
}

// A 6 x 6 bitmap: white, with a black L, a red dot and one grey pixel.
Hbitmap SmallBitmap(Raster& r) {
  Hdc s = r.gdi.CreateSurfaceDc(6, 6, kWhite);
  for (int y = 1; y < 5; ++y) r.gdi.SetPixel(s, 1, y, kBlack);
  for (int x = 1; x < 5; ++x) r.gdi.SetPixel(s, x, 4, kBlack);
  r.gdi.SetPixel(s, 4, 1, kRed);
  r.gdi.SetPixel(s, 3, 2, Rgb(250, 250, 250));
  Hbitmap b = r.gdi.SelectObject(s, r.gdi.CreateBitmap(1, 1, 1, 32, nullptr));
  r.gdi.DeleteDC(s);
  return b;
}

TEST(RasterState, BitmapNormalIsACopy) {
  Raster r;
  Hdc dc = r.gdi.CreateSurfaceDc(10, 10, r.gdi.GetSysColor(COLOR_BTNFACE));
  Hbitmap b = SmallBitmap(r);
  EXPECT_TRUE(r.gdi.DrawStateA(dc, 0, b, "", 2, 2, 0, 0, DST_BITMAP | DSS_NORMAL));
  auto legend = StateLegend();
  legend.push_back({'w', "NEARWHITE", Rgb(250, 250, 250)});
  EXPECT_TRUE(r.Matches(dc, "state_bitmap_normal.txt",
                        "DrawState DST_BITMAP DSS_NORMAL of a 6x6 bitmap (white, black L, red dot, one (250,250,250)\n"
                        "pixel) at (2,2) on BTNFACE",
                        legend));
}

TEST(RasterState, BitmapDisabledIsEmbossed) {
  Raster r;
  Hdc dc = r.gdi.CreateSurfaceDc(10, 10, r.gdi.GetSysColor(COLOR_BTNFACE));
  r.gdi.SetTextColor(dc, kRed);
  r.gdi.SetBkColor(dc, kInk);
  Hbitmap b = SmallBitmap(r);
  std::size_t live = r.gdi.LiveObjects();
  EXPECT_TRUE(r.gdi.DrawStateA(dc, 0, b, "", 2, 2, 0, 0, DST_BITMAP | DSS_DISABLED));
  EXPECT_EQ(r.gdi.LiveObjects(), live);  // the mask, its DC and the brushes are gone
  // Every pixel that is not pure white counts as image: shadow at (x, y), highlight
  // one pixel down and right where the shadow does not cover it.
  EXPECT_EQ(r.gdi.GetPixel(dc, 5, 4), r.gdi.GetSysColor(COLOR_3DSHADOW));    // the near-white pixel
  EXPECT_EQ(r.gdi.GetPixel(dc, 7, 4), r.gdi.GetSysColor(COLOR_3DHILIGHT));   // below right of the red dot
  EXPECT_EQ(r.gdi.GetPixel(dc, 2, 2), r.gdi.GetSysColor(COLOR_BTNFACE));
  // The DC's colours are restored.
  EXPECT_EQ(r.gdi.GetBkColor(dc), kInk);
  EXPECT_TRUE(r.Matches(dc, "state_bitmap_disabled.txt",
                        "DrawState DST_BITMAP DSS_DISABLED of the 6x6 bitmap (white, black L, red dot, one\n"
                        "(250,250,250) pixel) at (2,2) on BTNFACE",
                        StateLegend()));
}

Hfont SmallFont(Raster& r, Hdc dc) {
  LOGFONTA lf;
  lf.lfHeight = -8;  // characters 4 x 10, drawn as 2 x 4 blocks from (1, 3)
  std::strcpy(lf.lfFaceName, "Metrics");
  Hfont f = r.gdi.CreateFontIndirectA(lf);
  r.gdi.SelectObject(dc, f);
  return f;
}

TEST(RasterState, TextNormalAndDisabled) {
  Raster r;
  Hdc dc = r.gdi.CreateSurfaceDc(12, 12, r.gdi.GetSysColor(COLOR_BTNFACE));
  SmallFont(r, dc);
  r.gdi.SetTextColor(dc, kInk);
  r.gdi.SetBkMode(dc, TRANSPARENT);
  EXPECT_TRUE(r.gdi.DrawStateA(dc, 0, 0, "ab", 1, 0, 0, 0, DST_TEXT | DSS_NORMAL));
  EXPECT_TRUE(r.gdi.DrawStateA(dc, 0, 0, "a", 1, 1, 0, 0, DST_TEXT | DSS_DISABLED));
  EXPECT_TRUE(r.Matches(dc, "state_text.txt",
                        "DrawState DST_TEXT \"ab\" DSS_NORMAL at (1,0) in ink, then \"a\" DSS_DISABLED at (1,1);\n"
                        "metrics font lfHeight -8 (4x10 cells), transparent",
                        StateLegend()));
}

struct TextCase {
  const char* file;
  const char* text;
  Rect rc;
  std::uint32_t format;
  int height;  // the return value
};

const TextCase kTextCases[] = {
    {"text_center_vcenter.txt", "abc", {1, 1, 23, 13}, DT_CENTER | DT_VCENTER | DT_SINGLELINE, 11},
    {"text_right_bottom.txt", "abc", {1, 1, 23, 13}, DT_RIGHT | DT_BOTTOM | DT_SINGLELINE, 12},
    {"text_ellipsis.txt", "abcdefgh", {1, 1, 23, 13}, DT_END_ELLIPSIS | DT_SINGLELINE, 10},
    {"text_prefix.txt", "a&bc&&", {1, 1, 23, 13}, DT_SINGLELINE, 10},
    {"text_noprefix.txt", "a&b", {1, 1, 23, 13}, DT_SINGLELINE | DT_NOPREFIX, 10},
    {"text_clipped.txt", "abcdefgh", {1, 1, 23, 13}, DT_SINGLELINE | DT_CENTER, 10},
    {"text_wordbreak.txt", "ab cd efghij", {1, 1, 23, 23}, DT_WORDBREAK, 30},
};

class TextGolden : public ::testing::TestWithParam<TextCase> {};

TEST_P(TextGolden, MatchesPicture) {
  const TextCase& c = GetParam();
  Raster r;
  int h = c.rc.bottom + 1;
  Hdc dc = r.gdi.CreateSurfaceDc(24, h, kCanvas);
  SmallFont(r, dc);
  r.gdi.SetTextColor(dc, kInk);
  r.gdi.SetBkColor(dc, kPaper);
  Rect rc = c.rc;
  EXPECT_EQ(r.gdi.DrawTextA(dc, c.text, &rc, c.format), c.height);
  EXPECT_EQ(rc, c.rc);
  auto legend = SysLegend();
  legend.push_back({'n', "INK", kInk});
  legend.push_back({'p', "PAPER", kPaper});
  char where[64];
  std::snprintf(where, sizeof where, "(%d,%d)-(%d,%d)", c.rc.left, c.rc.top, c.rc.right, c.rc.bottom);
  EXPECT_TRUE(r.Matches(dc, c.file,
                        std::string("DrawText \"") + c.text + "\" in " + where +
                            ", opaque paper background, ink text, metrics font lfHeight -8 (4x10 cells)",
                        legend));
}

INSTANTIATE_TEST_SUITE_P(Raster, TextGolden, ::testing::ValuesIn(kTextCases),
                         [](const ::testing::TestParamInfo<TextCase>& info) {
                           std::string n = info.param.file;
                           return n.substr(0, n.find('.'));
                         });

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
