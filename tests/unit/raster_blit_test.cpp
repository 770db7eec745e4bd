// BitBlt raster operations with colour/mono conversion, pen draw modes and
// StretchBlt on the raster, checked against golden pictures (the shared scenarios).
#include <gtest/gtest.h>

#include "tests/unit/raster_test_util.h"

namespace korvel::test {
namespace {

constexpr ColorRef kGreen = Rgb(0, 255, 0), kWhite = Rgb(255, 255, 255), kBlack = Rgb(0, 0, 0);

const char* const kRops[] = {"srccopy", "notsrccopy", "srcand", "srcinvert", "srcpaint", "blackness", "whiteness"};
auto RopName = [](const ::testing::TestParamInfo<const char*>& i) { return std::string(i.param); };

class ColourToColour : public ::testing::TestWithParam<const char*> {};
TEST_P(ColourToColour, MatchesPicture) { EXPECT_TRUE(DrawsGolden(std::string("blit_c2c_") + GetParam())); }

class ColourToMono : public ::testing::TestWithParam<const char*> {};
TEST_P(ColourToMono, MatchesPicture) { EXPECT_TRUE(DrawsGolden(std::string("blit_c2m_") + GetParam())); }

class MonoToColour : public ::testing::TestWithParam<const char*> {};
TEST_P(MonoToColour, MatchesPicture) { EXPECT_TRUE(DrawsGolden(std::string("blit_m2c_") + GetParam())); }

INSTANTIATE_TEST_SUITE_P(Raster, ColourToColour, ::testing::ValuesIn(kRops), RopName);
INSTANTIATE_TEST_SUITE_P(Raster, ColourToMono, ::testing::ValuesIn(kRops), RopName);
INSTANTIATE_TEST_SUITE_P(Raster, MonoToColour, ::testing::ValuesIn(kRops), RopName);

TEST(RasterBlit, ColourToMonoByValue) {
  Raster r;
  Hdc src = ColourSource(r.gdi);
  r.gdi.SetBkColor(src, kGreen);
  Hdc dst = MonoSurface(r.gdi, false);
  r.gdi.BitBlt(dst, 0, 0, 8, 4, src, 0, 0, SRCCOPY);
  EXPECT_EQ(r.gdi.GetPixel(dst, 0, 0), kBlack);
  EXPECT_EQ(r.gdi.GetPixel(dst, 1, 0), kWhite);  // the source background colour
  EXPECT_EQ(r.gdi.GetPixel(dst, 3, 3), kBlack);  // white is not the background here
}

TEST(RasterBlit, PenModesOnLinesAndBoxes) {
  EXPECT_TRUE(DrawsGolden("pen_copypen"));
  EXPECT_TRUE(DrawsGolden("pen_maskpen"));
}

TEST(RasterStretch, EnlargesThreeToEight) { EXPECT_TRUE(DrawsGolden("stretch_enlarge")); }

TEST(RasterStretch, EnlargesMirrored) { EXPECT_TRUE(DrawsGolden("stretch_mirror")); }

// The scenario also checks single pixels: each is the AND of the merged ones.
TEST(RasterStretch, ShrinksWithAndOfMergedPixels) { EXPECT_TRUE(DrawsGolden("stretch_shrink")); }

TEST(RasterStretch, MonoSourceEnlargedUsesDestinationColours) { EXPECT_TRUE(DrawsGolden("stretch_mono_enlarge")); }

}  // namespace
}  // namespace korvel::test
