// BitBlt raster operations with colour/mono conversion, pen draw modes and
// StretchBlt on the raster, checked against golden pictures.
#include <gtest/gtest.h>

#include "tests/unit/raster_test_util.h"

namespace korvel::test {
namespace {

constexpr ColorRef kRed = Rgb(255, 0, 0), kGreen = Rgb(0, 255, 0), kBlue = Rgb(0, 0, 255);
constexpr ColorRef kYellow = Rgb(255, 255, 0), kGrey = Rgb(128, 128, 128), kWhite = Rgb(255, 255, 255);
constexpr ColorRef kBlack = Rgb(0, 0, 0), kDark = Rgb(0, 0, 200), kBrick = Rgb(200, 0, 0);

std::vector<LegendEntry> BlitLegend() {
  return {{'r', "RED", kRed},       {'g', "GREEN", kGreen}, {'b', "BLUE", kBlue},  {'y', "YELLOW", kYellow},
          {'s', "GREY", kGrey},     {'W', "WHITE", kWhite}, {'K', "BLACK", kBlack}, {'d', "DARKBLUE", kDark},
          {'k', "BRICK", kBrick}};
}

struct Rop {
  const char* name;
  std::uint32_t code;
};
const Rop kRops[] = {{"srccopy", SRCCOPY},   {"notsrccopy", NOTSRCCOPY}, {"srcand", SRCAND},
                     {"srcinvert", SRCINVERT}, {"srcpaint", SRCPAINT},   {"blackness", BLACKNESS},
                     {"whiteness", WHITENESS}};

// An 8 x 4 colour source: columns red, green, blue, white (twice).
Hdc ColourSource(Raster& r) {
  Hdc s = r.gdi.CreateSurfaceDc(8, 4, kWhite);
  const ColorRef cols[4] = {kRed, kGreen, kBlue, kWhite};
  for (int y = 0; y < 4; ++y)
    for (int x = 0; x < 8; ++x) r.gdi.SetPixel(s, x, y, cols[x % 4]);
  return s;
}

// An 8 x 4 monochrome bitmap in a DC: a checker of 2 x 2 white and black squares.
Hdc MonoSurface(Raster& r, bool checker) {
  Hdc dc = r.gdi.CreateCompatibleDC(0);
  Hbitmap b = r.gdi.CreateBitmap(8, 4, 1, 1, nullptr);
  r.gdi.SelectObject(dc, b);
  for (int y = 0; y < 4; ++y)
    for (int x = 0; x < 8; ++x)
      r.gdi.SetPixel(dc, x, y, checker ? ((((x / 2) + (y / 2)) & 1) ? kBlack : kWhite) : (y < 2 ? kWhite : kBlack));
  return dc;
}

class ColourToColour : public ::testing::TestWithParam<Rop> {};
TEST_P(ColourToColour, MatchesPicture) {
  Raster r;
  Hdc src = ColourSource(r);
  Hdc dst = r.gdi.CreateSurfaceDc(8, 4, kYellow);
  for (int x = 0; x < 8; ++x) r.gdi.SetPixel(dst, x, 2, kGrey), r.gdi.SetPixel(dst, x, 3, kGrey);
  ASSERT_TRUE(r.gdi.BitBlt(dst, 0, 0, 8, 4, src, 0, 0, GetParam().code));
  std::string name = std::string("blit_c2c_") + GetParam().name + ".txt";
  EXPECT_TRUE(r.Matches(dst, name,
                        std::string("BitBlt ") + GetParam().name +
                            ": source columns red, green, blue, white; destination rows yellow (0-1), grey (2-3)",
                        BlitLegend()));
}

class ColourToMono : public ::testing::TestWithParam<Rop> {};
TEST_P(ColourToMono, MatchesPicture) {
  Raster r;
  Hdc src = ColourSource(r);
  r.gdi.SetBkColor(src, kBlue);  // blue becomes white, everything else black
  Hdc dst = MonoSurface(r, false);
  ASSERT_TRUE(r.gdi.BitBlt(dst, 0, 0, 8, 4, src, 0, 0, GetParam().code));
  std::string name = std::string("blit_c2m_") + GetParam().name + ".txt";
  EXPECT_TRUE(r.Matches(dst, name,
                        std::string("BitBlt ") + GetParam().name +
                            " colour to mono: source columns red, green, blue, white with background blue;\n"
                            "destination monochrome, rows white (0-1), black (2-3)",
                        BlitLegend()));
}

class MonoToColour : public ::testing::TestWithParam<Rop> {};
TEST_P(MonoToColour, MatchesPicture) {
  Raster r;
  Hdc src = MonoSurface(r, true);
  Hdc dst = r.gdi.CreateSurfaceDc(8, 4, kYellow);
  for (int x = 0; x < 8; ++x) r.gdi.SetPixel(dst, x, 2, kGrey), r.gdi.SetPixel(dst, x, 3, kGrey);
  r.gdi.SetTextColor(dst, kBrick);  // black source pixels
  r.gdi.SetBkColor(dst, kDark);     // white source pixels
  ASSERT_TRUE(r.gdi.BitBlt(dst, 0, 0, 8, 4, src, 0, 0, GetParam().code));
  std::string name = std::string("blit_m2c_") + GetParam().name + ".txt";
  EXPECT_TRUE(r.Matches(dst, name,
                        std::string("BitBlt ") + GetParam().name +
                            " mono to colour: source 2x2 checker starting white; destination text colour\n"
                            "brick (200,0,0), background dark blue (0,0,200), rows yellow (0-1), grey (2-3)",
                        BlitLegend()));
}

auto RopName = [](const ::testing::TestParamInfo<Rop>& i) { return std::string(i.param.name); };
INSTANTIATE_TEST_SUITE_P(Raster, ColourToColour, ::testing::ValuesIn(kRops), RopName);
INSTANTIATE_TEST_SUITE_P(Raster, ColourToMono, ::testing::ValuesIn(kRops), RopName);
INSTANTIATE_TEST_SUITE_P(Raster, MonoToColour, ::testing::ValuesIn(kRops), RopName);

TEST(RasterBlit, ColourToMonoByValue) {
  Raster r;
  Hdc src = ColourSource(r);
  r.gdi.SetBkColor(src, kGreen);
  Hdc dst = MonoSurface(r, false);
  r.gdi.BitBlt(dst, 0, 0, 8, 4, src, 0, 0, SRCCOPY);
  EXPECT_EQ(r.gdi.GetPixel(dst, 0, 0), kBlack);
  EXPECT_EQ(r.gdi.GetPixel(dst, 1, 0), kWhite);  // the source background colour
  EXPECT_EQ(r.gdi.GetPixel(dst, 3, 3), kBlack);  // white is not the background here
}

TEST(RasterBlit, PenModesOnLinesAndBoxes) {
  for (int mode : {R2_COPYPEN, R2_MASKPEN}) {
    Raster r;
    Hdc dc = r.gdi.CreateSurfaceDc(10, 10, Rgb(0, 255, 255));
    r.gdi.SetROP2(dc, mode);
    Handle pen = r.gdi.CreatePen(PS_SOLID, 1, Rgb(255, 0, 255));
    Handle brush = r.gdi.CreateSolidBrush(Rgb(255, 255, 0));
    Hgdiobj op = r.gdi.SelectObject(dc, pen);
    Hgdiobj ob = r.gdi.SelectObject(dc, brush);
    r.gdi.Rectangle(dc, 2, 2, 8, 7);
    r.gdi.MoveToEx(dc, 0, 9, nullptr);
    r.gdi.LineTo(dc, 9, 0);
    r.gdi.MoveToEx(dc, 0, 0, nullptr);
    r.gdi.LineTo(dc, 9, 4);
    r.gdi.SelectObject(dc, op);
    r.gdi.SelectObject(dc, ob);
    std::vector<LegendEntry> legend = {{'c', "CYAN", Rgb(0, 255, 255)},   {'m', "MAGENTA", Rgb(255, 0, 255)},
                                       {'y', "YELLOW", Rgb(255, 255, 0)}, {'b', "BLUE", Rgb(0, 0, 255)},
                                       {'g', "GREEN", Rgb(0, 255, 0)},    {'r', "RED", Rgb(255, 0, 0)}};
    std::string name = mode == R2_COPYPEN ? "pen_copypen.txt" : "pen_maskpen.txt";
    EXPECT_TRUE(r.Matches(dc, name,
                          std::string(mode == R2_COPYPEN ? "R2_COPYPEN" : "R2_MASKPEN") +
                              " on cyan: magenta pen, yellow brush; Rectangle(2,2,8,7),\n"
                              "lines (0,9)-(9,0) and (0,0)-(9,4)",
                          legend));
  }
}

// A 3 x 3 source of nine colours.
Hdc NineColours(Raster& r) {
  Hdc s = r.gdi.CreateSurfaceDc(3, 3, kWhite);
  const ColorRef c[9] = {kRed, kGreen, kBlue, kYellow, kGrey, kWhite, kBlack, kDark, kBrick};
  for (int y = 0; y < 3; ++y)
    for (int x = 0; x < 3; ++x) r.gdi.SetPixel(s, x, y, c[y * 3 + x]);
  return s;
}

TEST(RasterStretch, EnlargesThreeToEight) {
  Raster r;
  Hdc src = NineColours(r);
  Hdc dst = r.gdi.CreateSurfaceDc(10, 10, kCanvas);
  ASSERT_TRUE(r.gdi.StretchBlt(dst, 1, 1, 8, 8, src, 0, 0, 3, 3, SRCCOPY));
  auto legend = BlitLegend();
  legend.push_back({'.', "CANVAS", kCanvas});
  EXPECT_TRUE(r.Matches(dst, "stretch_enlarge.txt",
                        "StretchBlt SRCCOPY of 3x3 (rows: red green blue / yellow grey white / black darkblue "
                        "brick)\nto (1,1) 8x8",
                        legend));
}

TEST(RasterStretch, EnlargesMirrored) {
  Raster r;
  Hdc src = NineColours(r);
  Hdc dst = r.gdi.CreateSurfaceDc(10, 10, kCanvas);
  // Negative destination width: column 8 takes source column 0, going left.
  ASSERT_TRUE(r.gdi.StretchBlt(dst, 8, 1, -8, 8, src, 0, 0, 3, 3, SRCCOPY));
  auto legend = BlitLegend();
  legend.push_back({'.', "CANVAS", kCanvas});
  EXPECT_TRUE(r.Matches(dst, "stretch_mirror.txt",
                        "StretchBlt SRCCOPY of the 3x3 nine colours to x=8, y=1, cx=-8, cy=8", legend));
}

TEST(RasterStretch, ShrinksWithAndOfMergedPixels) {
  Raster r;
  // 8 x 8 source: colour by column, with one black row; BLACKONWHITE ANDs the
  // pixels that land on one destination pixel.
  Hdc src = r.gdi.CreateSurfaceDc(8, 8, kWhite);
  const ColorRef cols[8] = {kRed, kYellow, kWhite, kGreen, kWhite, kBlue, kWhite, kWhite};
  for (int y = 0; y < 8; ++y)
    for (int x = 0; x < 8; ++x) r.gdi.SetPixel(src, x, y, y == 4 ? kBlack : cols[x]);
  Hdc dst = r.gdi.CreateSurfaceDc(5, 5, kCanvas);
  ASSERT_TRUE(r.gdi.StretchBlt(dst, 1, 1, 3, 3, src, 0, 0, 8, 8, SRCCOPY));
  // Columns 0-2 -> 0, 3-4 -> 1, 5-7 -> 2; rows likewise (row 4 is black).
  EXPECT_EQ(r.gdi.GetPixel(dst, 1, 1), (kRed & kYellow & kWhite));
  EXPECT_EQ(r.gdi.GetPixel(dst, 2, 1), (kGreen & kWhite));
  EXPECT_EQ(r.gdi.GetPixel(dst, 3, 1), (kBlue & kWhite & kWhite));
  EXPECT_EQ(r.gdi.GetPixel(dst, 2, 2), kBlack);
  EXPECT_EQ(r.gdi.GetPixel(dst, 3, 3), kBlue);
  auto legend = BlitLegend();
  legend.push_back({'.', "CANVAS", kCanvas});
  EXPECT_TRUE(r.Matches(dst, "stretch_shrink.txt",
                        "StretchBlt SRCCOPY of 8x8 (columns red yellow white green white blue white white, row 4 "
                        "black)\nto (1,1) 3x3",
                        legend));
}

TEST(RasterStretch, MonoSourceEnlargedUsesDestinationColours) {
  Raster r;
  Hdc src = MonoSurface(r, true);
  Hdc dst = r.gdi.CreateSurfaceDc(10, 10, kCanvas);
  r.gdi.SetTextColor(dst, kBrick);
  r.gdi.SetBkColor(dst, kDark);
  ASSERT_TRUE(r.gdi.StretchBlt(dst, 1, 1, 8, 8, src, 0, 0, 4, 4, SRCCOPY));
  auto legend = BlitLegend();
  legend.push_back({'.', "CANVAS", kCanvas});
  EXPECT_TRUE(r.Matches(dst, "stretch_mono_enlarge.txt",
                        "StretchBlt SRCCOPY of the top-left 4x4 of a 2x2 mono checker (white first) to (1,1) 8x8;\n"
                        "text colour brick, background dark blue",
                        legend));
}

}  // namespace
}  // namespace korvel::test
