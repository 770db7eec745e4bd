// KorvelBar and the resource form it takes its gradient from.
#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "controls/bar/bar.h"
#include "framework/res_form.h"
#include "platform/headless/headless_host.h"
#include "platform/headless/headless_platform.h"

using namespace korvel;
using namespace korvel::headless;

namespace {

constexpr ColorRef kFace = Rgb(192, 192, 192);     // COLOR_BTNFACE
constexpr ColorRef kShadow = Rgb(128, 128, 128);   // COLOR_BTNSHADOW
constexpr ColorRef kHilite = Rgb(255, 255, 255);   // COLOR_BTNHIGHLIGHT
constexpr ColorRef kNavy = Rgb(0, 0, 128);         // COLOR_HIGHLIGHT: the strip's first column
constexpr ColorRef kGradSecond = Rgb(4, 4, 129);   // the strip's second band (t = 0.02)
constexpr ColorRef kGradLast = Rgb(188, 188, 191); // the strip's last band (t = 0.98)

class Bar : public ::testing::Test {
 protected:
  std::unique_ptr<KorvelBar> Place(int w, int h, bool user_mode = true) {
    host.user_mode = user_mode;
    auto bar = std::make_unique<KorvelBar>(host, platform);
    bar->Initialize();
    host.PlaceNew(*bar, w, h);
    return bar;
  }
  ColorRef Px(KorvelBar& bar, int x, int y) { return platform.raster().GetPixel(bar.UserControl().hDC(), x, y); }
  int Refreshes(KorvelBar& bar) { return platform.refreshes[bar.UserControl().hWnd()]; }
  std::string Dc(KorvelBar& bar) { return std::to_string(bar.UserControl().hDC()); }
  std::string GradDc(KorvelBar& bar) { return std::to_string(bar.Resources()->GradPic().hDC()); }
  // Paints once more with the drawing calls recorded and returns them.
  std::vector<std::string> RecordPaint(KorvelBar& bar) {
    platform.log().Clear();
    platform.RecordGdiCalls(true);
    bar.Paint();
    platform.RecordGdiCalls(false);
    std::vector<std::string> out;
    for (const auto& c : platform.log().calls)
      if (c.rfind("DrawEdge", 0) == 0 || c.rfind("StretchBlt", 0) == 0 || c.rfind("Rectangle", 0) == 0)
        out.push_back(c);
    return out;
  }

  HeadlessPlatform platform;
  HeadlessHost host{platform};
};

}  // namespace

// ---- the resource form ----

TEST(ResForm, GradPicIs64By1AndPaintedHighlightToButtonFace) {
  HeadlessPlatform platform;
  HeadlessHost host(platform);
  ResForm form(host, platform);
  Surface& g = form.GradPic();
  EXPECT_EQ(g.Width(), 64);
  EXPECT_EQ(g.Height(), 1);
  EXPECT_EQ(g.ScaleWidth(), 64.0f);
  EXPECT_EQ(g.ScaleHeight(), 1.0f);
  HeadlessGdi& gdi = platform.raster();
  // 50 bands of 1.28 pixels; each starts where the one before ends and covers it.
  EXPECT_EQ(gdi.GetPixel(g.hDC(), 0, 0), kNavy);
  EXPECT_EQ(gdi.GetPixel(g.hDC(), 1, 0), kGradSecond);
  EXPECT_EQ(gdi.GetPixel(g.hDC(), 2, 0), kGradSecond);
  EXPECT_EQ(gdi.GetPixel(g.hDC(), 31, 0), Rgb(92, 92, 159));
  EXPECT_EQ(gdi.GetPixel(g.hDC(), 32, 0), Rgb(96, 96, 160));
  EXPECT_EQ(gdi.GetPixel(g.hDC(), 62, 0), Rgb(184, 184, 189));
  EXPECT_EQ(gdi.GetPixel(g.hDC(), 63, 0), kGradLast);
}

TEST(ResForm, GradientTakesTheSystemColoursOfLoadTime) {
  HeadlessPlatform platform;
  platform.raster().SetSysColor(COLOR_HIGHLIGHT, Rgb(200, 0, 0));
  platform.raster().SetSysColor(COLOR_BTNFACE, Rgb(0, 100, 0));
  HeadlessHost host(platform);
  ResForm form(host, platform);
  HeadlessGdi& gdi = platform.raster();
  EXPECT_EQ(gdi.GetPixel(form.GradPic().hDC(), 0, 0), Rgb(200, 0, 0));
  // t = 0.98: 200 x 0.02 = 4; 100 x 0.98 = 98.
  EXPECT_EQ(gdi.GetPixel(form.GradPic().hDC(), 63, 0), Rgb(4, 98, 0));
  // A later change of the scheme does not repaint the loaded strip.
  platform.raster().SetSysColor(COLOR_HIGHLIGHT, Rgb(0, 0, 255));
  EXPECT_EQ(gdi.GetPixel(form.GradPic().hDC(), 0, 0), Rgb(200, 0, 0));
}

TEST(ResForm, SharedIsOneInstancePerPlatformWhileHeld) {
  HeadlessPlatform p1, p2;
  auto a = ResForm::Shared(p1);
  auto b = ResForm::Shared(p1);
  auto c = ResForm::Shared(p2);
  ASSERT_NE(a, nullptr);
  EXPECT_EQ(a.get(), b.get());
  EXPECT_NE(a.get(), c.get());
  EXPECT_EQ(&a->platform(), &p1);
  EXPECT_EQ(&c->platform(), &p2);
  EXPECT_TRUE(a->Loaded());
  std::weak_ptr<ResForm> watch = a;
  a.reset();
  EXPECT_FALSE(watch.expired());  // b still holds it
  b.reset();
  EXPECT_TRUE(watch.expired());   // unloaded with the last holder
  auto again = ResForm::Shared(p1);
  ASSERT_NE(again, nullptr);
  EXPECT_EQ(p1.raster().GetPixel(again->GradPic().hDC(), 0, 0), kNavy);
}

// ---- the bar: loading the form ----

TEST_F(Bar, InitializeLoadsTheSharedResourceForm) {
  host.user_mode = true;
  KorvelBar one(host, platform), two(host, platform);
  EXPECT_EQ(one.Resources(), nullptr);
  one.Initialize();
  two.Initialize();
  ASSERT_NE(one.Resources(), nullptr);
  EXPECT_EQ(one.Resources(), two.Resources());
  EXPECT_EQ(one.Resources(), ResForm::Shared(platform).get());
}

TEST_F(Bar, ResourceFormLivesWhileAnyBarHoldsIt) {
  auto one = Place(160, 18);
  std::weak_ptr<ResForm> watch = ResForm::Shared(platform);
  auto two = Place(160, 18);
  EXPECT_EQ(one->Resources(), two->Resources());
  one.reset();
  EXPECT_FALSE(watch.expired());
  two.reset();
  EXPECT_TRUE(watch.expired());
}

// ---- Value ----

TEST_F(Bar, NewInstanceAtRunTimeStartsAtZero) {
  auto bar = Place(160, 18, true);
  EXPECT_EQ(bar->Value(), 0);
  EXPECT_EQ(bar->HighlightColor(), 0x8000000Du);
  EXPECT_EQ(bar->FaceColor(), 0x8000000Fu);
  EXPECT_TRUE(host.property_changes.empty());
  EXPECT_TRUE(host.events.empty());
}

TEST_F(Bar, ValueAbove100StoresHundredAndNegativeStoresZero) {
  auto bar = Place(160, 18);
  bar->SetValue(150);
  EXPECT_EQ(bar->Value(), 100);
  bar->SetValue(-5);
  EXPECT_EQ(bar->Value(), 0);
  bar->SetValue(101);
  EXPECT_EQ(bar->Value(), 100);
  bar->SetValue(37);
  EXPECT_EQ(bar->Value(), 37);
  bar->SetValue(32767);
  EXPECT_EQ(bar->Value(), 100);
  bar->SetValue(-32768);
  EXPECT_EQ(bar->Value(), 0);
  EXPECT_EQ(host.property_changes,
            (std::vector<std::string>{"Value", "Value", "Value", "Value", "Value", "Value"}));
  EXPECT_TRUE(host.events.empty());  // the bar has no events
}

TEST_F(Bar, ValueSetterPaintsAtOnce) {
  auto bar = Place(160, 18);
  EXPECT_EQ(Px(*bar, 2, 8), kFace);
  bar->SetValue(100);
  EXPECT_EQ(Px(*bar, 2, 8), kNavy);
  bar->SetValue(0);
  EXPECT_EQ(Px(*bar, 2, 8), kFace);
}

TEST_F(Bar, DesignTimeAlwaysShowsHundredAndIgnoresValue) {
  auto bar = Place(160, 18, /*user_mode=*/false);
  EXPECT_EQ(bar->Value(), 100);
  EXPECT_EQ(Px(*bar, 2, 8), kNavy);
  EXPECT_EQ(Px(*bar, 156, 8), kGradLast);
  bar->SetValue(20);
  EXPECT_EQ(bar->Value(), 100);
  bar->SetValue(0);
  EXPECT_EQ(bar->Value(), 100);
  EXPECT_TRUE(host.property_changes.empty());
  EXPECT_EQ(Px(*bar, 2, 8), kNavy);
  EXPECT_EQ(Px(*bar, 100, 8), Px(*bar, 100, 9));
  EXPECT_NE(Px(*bar, 100, 8), kFace);
}

TEST_F(Bar, ReadPropertiesReadsNoKeyAndFollowsUserMode) {
  PropertyBag bag = PropertyBag::FromText("Value = 50\nHighlightColor = &H000000FF&\n");
  ASSERT_TRUE(bag.Contains("Value"));
  host.user_mode = true;
  KorvelBar run(host, platform);
  run.Initialize();
  host.Load(run, bag, 160, 18);
  EXPECT_EQ(run.Value(), 0);
  EXPECT_EQ(run.HighlightColor(), 0x8000000Du);
  EXPECT_EQ(run.FaceColor(), 0x8000000Fu);

  host.user_mode = false;
  KorvelBar design(host, platform);
  design.Initialize();
  host.Load(design, bag, 160, 18);
  EXPECT_EQ(design.Value(), 100);
  EXPECT_EQ(design.HighlightColor(), 0x8000000Du);
  EXPECT_EQ(design.FaceColor(), 0x8000000Fu);
  EXPECT_TRUE(host.property_changes.empty());
}

TEST_F(Bar, WritesNothing) {
  auto bar = Place(160, 18);
  bar->SetValue(64);
  PropertyBag bag;
  bar->WriteProperties(bag);
  EXPECT_EQ(bag.Size(), 0u);
  EXPECT_EQ(bag.ToText(), "");
}

TEST_F(Bar, BagWithWrongTypesLoadsLikeAnEmptyOne) {
  PropertyBag bag = PropertyBag::FromText("Value = \"abc\"\nFrameRect = 99999999999\n");
  bag.WriteProperty("Value", Variant::Double(99999999999.0));
  host.user_mode = true;
  KorvelBar bar(host, platform);
  bar.Initialize();
  host.Load(bar, bag, 160, 18);
  EXPECT_EQ(bar.Value(), 0);
  EXPECT_EQ(bar.FrameRect(), (Rect{0, 0, 160, 18}));
}

TEST_F(Bar, AboutBoxShowsAFreshAboutFormEachCall) {
  auto bar = Place(160, 18);
  bar->AboutBox();
  bar->AboutBox();
  EXPECT_EQ(host.modal_forms, (std::vector<std::string>{"About KorvelUI99...", "About KorvelUI99..."}));
}

// ---- paint ----

TEST_F(Bar, PaintCallsAtThirtySevenPercent) {
  auto bar = Place(160, 18);
  bar->SetValue(37);
  // W4 = 156, H4 = 14, R3 = 157, B3 = 15; FillStart = round(37 x 156 / 100 + 1) = round(58.72) = 59.
  EXPECT_EQ(RecordPaint(*bar), (std::vector<std::string>{
                                   "DrawEdge(" + Dc(*bar) + ", (0, 0, 160, 18), 2, 0xF) = 1",
                                   "StretchBlt(" + Dc(*bar) + ", 2, 2, 156, 14, " + GradDc(*bar) +
                                       ", 0, 0, 64, 1, 0xCC0020) = 1",
                                   "Rectangle(" + Dc(*bar) + ", 59, 2, 158, 16)",
                               }));
}

TEST_F(Bar, PaintCallsAtZeroPercentSkipTheStretchAndFillFromXOne) {
  auto bar = Place(160, 18);
  ASSERT_EQ(bar->Value(), 0);
  EXPECT_EQ(RecordPaint(*bar), (std::vector<std::string>{
                                   "DrawEdge(" + Dc(*bar) + ", (0, 0, 160, 18), 2, 0xF) = 1",
                                   "Rectangle(" + Dc(*bar) + ", 1, 2, 158, 16)",
                               }));
}

TEST_F(Bar, PaintCallsAtHundredPercentKeepOneColumnAtR3) {
  auto bar = Place(160, 18);
  bar->SetValue(100);
  EXPECT_EQ(RecordPaint(*bar), (std::vector<std::string>{
                                   "DrawEdge(" + Dc(*bar) + ", (0, 0, 160, 18), 2, 0xF) = 1",
                                   "StretchBlt(" + Dc(*bar) + ", 2, 2, 156, 14, " + GradDc(*bar) +
                                       ", 0, 0, 64, 1, 0xCC0020) = 1",
                                   "Rectangle(" + Dc(*bar) + ", 157, 2, 158, 16)",
                               }));
}

TEST_F(Bar, FillStartDividesInFloatingPointAndRoundsHalfToEven) {
  // W = 154: W4 = 150; 37 x 150 / 100 + 1 = 56.5 -> 56 (halves to even).
  auto narrow = Place(154, 18);
  narrow->SetValue(37);
  EXPECT_EQ(RecordPaint(*narrow).back(), "Rectangle(" + Dc(*narrow) + ", 56, 2, 152, 16)");
  // W = 161: W4 = 157; 50 x 157 / 100 + 1 = 79.5 -> 80 (an integer division would give 79).
  auto wide = Place(161, 18);
  wide->SetValue(50);
  EXPECT_EQ(RecordPaint(*wide).back(), "Rectangle(" + Dc(*wide) + ", 80, 2, 159, 16)");
}

TEST_F(Bar, SunkenFramePixels) {
  auto bar = Place(160, 18);
  bar->SetValue(50);
  // Top and left in the button shadow, bottom and right in the button highlight.
  EXPECT_EQ(Px(*bar, 80, 0), kShadow);
  EXPECT_EQ(Px(*bar, 0, 9), kShadow);
  EXPECT_EQ(Px(*bar, 80, 17), kHilite);
  EXPECT_EQ(Px(*bar, 159, 9), kHilite);
  // One pixel wide: the ring inside it is the button face.
  EXPECT_EQ(Px(*bar, 80, 1), kFace);
  EXPECT_EQ(Px(*bar, 1, 9), kFace);
  EXPECT_EQ(Px(*bar, 80, 16), kFace);
  EXPECT_EQ(Px(*bar, 158, 9), kFace);
}

TEST_F(Bar, HundredPercentLeavesOneButtonFaceColumnAtR3) {
  auto bar = Place(160, 18);
  bar->SetValue(100);
  for (int y = 2; y <= 15; ++y) {
    EXPECT_EQ(Px(*bar, 2, y), kNavy) << y;           // the strip's first column
    EXPECT_EQ(Px(*bar, 156, y), kGradLast) << y;     // its last column
    EXPECT_EQ(Px(*bar, 157, y), kFace) << y;         // R3: the one-pixel button-face column
  }
  EXPECT_EQ(Px(*bar, 2, 1), kFace);
  EXPECT_EQ(Px(*bar, 2, 16), kFace);
}

TEST_F(Bar, ZeroPercentIsButtonFaceFromXOne) {
  auto bar = Place(160, 18);
  bar->SetValue(100);
  bar->SetValue(0);
  for (int x = 1; x <= 158; ++x) EXPECT_EQ(Px(*bar, x, 8), kFace) << x;
  EXPECT_EQ(Px(*bar, 0, 8), kShadow);
  EXPECT_EQ(Px(*bar, 159, 8), kHilite);
}

TEST_F(Bar, ThirtySevenPercentBoundary) {
  auto bar = Place(160, 18);
  bar->SetValue(37);
  EXPECT_EQ(Px(*bar, 2, 8), kNavy);
  EXPECT_NE(Px(*bar, 58, 8), kFace);  // last gradient column
  EXPECT_EQ(Px(*bar, 59, 8), kFace);  // FillStart
  EXPECT_EQ(Px(*bar, 157, 8), kFace);
}

TEST_F(Bar, HiddenBarAtRunTimeDoesNotPaint) {
  auto bar = Place(160, 18);
  host.visible = false;
  const std::uint64_t before = platform.raster().PixelWrites();
  EXPECT_TRUE(RecordPaint(*bar).empty());
  bar->SetValue(100);
  bar->Show();
  EXPECT_EQ(platform.raster().PixelWrites(), before);
  EXPECT_EQ(bar->Value(), 100);
  EXPECT_EQ(host.property_changes, (std::vector<std::string>{"Value"}));
  EXPECT_EQ(Px(*bar, 2, 8), kFace);  // still the 0 % picture
  host.visible = true;
  bar->Show();
  EXPECT_EQ(Px(*bar, 2, 8), kNavy);
}

TEST_F(Bar, HiddenBarAtDesignTimePaints) {
  host.visible = false;
  auto bar = Place(160, 18, /*user_mode=*/false);
  EXPECT_EQ(Px(*bar, 2, 8), kNavy);
  EXPECT_EQ(RecordPaint(*bar).size(), 3u);
}

TEST_F(Bar, PaintPutsTheSurfaceBackToButtonFace) {
  auto bar = Place(160, 18);
  bar->UserControl().SetBackColor(0x80000005);
  bar->Paint();
  EXPECT_EQ(bar->UserControl().BackColor(), 0x8000000Fu);
  EXPECT_EQ(Px(*bar, 1, 1), kFace);
}

TEST_F(Bar, RefreshOnlyWithAutoRedraw) {
  auto bar = Place(160, 18);
  bar->SetValue(10);
  EXPECT_EQ(Refreshes(*bar), 0);
  bar->UserControl().SetAutoRedraw(true);
  bar->SetValue(20);
  EXPECT_EQ(Refreshes(*bar), 1);
  bar->Paint();
  EXPECT_EQ(Refreshes(*bar), 2);
}

// ---- resize ----

TEST_F(Bar, ResizeSetsFrameRectAndPaints) {
  auto bar = Place(160, 18);
  EXPECT_EQ(bar->FrameRect(), (Rect{0, 0, 160, 18}));
  bar->SetValue(100);
  host.Size(*bar, 80, 12);
  EXPECT_EQ(bar->FrameRect(), (Rect{0, 0, 80, 12}));
  EXPECT_TRUE(host.size_requests.empty());
  // W4 = 76: the strip runs to x = 77, R3 = 77 is the button-face column; x = 76 is
  // the 75th of 76 columns and takes the strip's column 62 (74 x 64 / 76 = 62.3).
  EXPECT_EQ(Px(*bar, 2, 5), kNavy);
  EXPECT_EQ(Px(*bar, 76, 5), Rgb(184, 184, 189));
  EXPECT_EQ(Px(*bar, 77, 5), kFace);
  EXPECT_EQ(Px(*bar, 79, 5), kHilite);
  EXPECT_EQ(Px(*bar, 5, 11), kHilite);
}

TEST_F(Bar, ResizingToThreePixelsWideSnapsBackToFive) {
  auto bar = Place(160, 18);
  host.ClearRecords();
  host.Size(*bar, 3, 18);
  // 5 x 15 twips wide; the height asked for stays 18 pixels.
  EXPECT_EQ(host.size_requests, (std::vector<std::pair<std::int32_t, std::int32_t>>{{75, 270}}));
  EXPECT_EQ(bar->UserControl().Width(), 5);
  EXPECT_EQ(bar->UserControl().Height(), 18);
  EXPECT_EQ(bar->FrameRect(), (Rect{0, 0, 5, 18}));
}

TEST_F(Bar, ResizingTooLowSnapsTheHeightBackToFive) {
  auto bar = Place(160, 18);
  host.ClearRecords();
  host.Size(*bar, 160, 2);
  EXPECT_EQ(host.size_requests, (std::vector<std::pair<std::int32_t, std::int32_t>>{{2400, 75}}));
  EXPECT_EQ(bar->UserControl().Height(), 5);
  EXPECT_EQ(bar->FrameRect(), (Rect{0, 0, 160, 5}));
}

TEST_F(Bar, ResizingTooSmallBothWaysFixesWidthThenHeight) {
  auto bar = Place(160, 18);
  host.ClearRecords();
  host.Size(*bar, 1, 1);
  EXPECT_EQ(host.size_requests, (std::vector<std::pair<std::int32_t, std::int32_t>>{{75, 15}, {75, 75}}));
  EXPECT_EQ(bar->FrameRect(), (Rect{0, 0, 5, 5}));
}

TEST_F(Bar, FiveByFiveBarPaintsWithoutCrash) {
  auto bar = Place(5, 5);
  bar->SetValue(100);
  // W4 = H4 = 1: one gradient pixel at (2, 2). The button-face box from FillStart =
  // R3 = 2 is 1 x 1, a figure GDI's Rectangle does not draw, so the pixel stays.
  EXPECT_EQ(Px(*bar, 2, 2), kNavy);
  EXPECT_EQ(Px(*bar, 0, 2), kShadow);
  EXPECT_EQ(Px(*bar, 4, 2), kHilite);
}
