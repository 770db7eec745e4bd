// KorvelLink: display text and centring, paint colours and underline, hover
// tracking with the mouse capture, the click rule, the Enabled setter and
// persistence. Pixels are checked with the metrics font: at the default 8.25 pt
// font a character cell is 5 x 13 and a non-space character is a solid block
// from (x + 1, y + 3) to (x + 3, y + 9); the underline runs on row y + 11.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "controls/link/link.h"
#include "framework/winconst.h"
#include "platform/headless/headless_host.h"
#include "platform/headless/headless_platform.h"

using namespace korvel;
using namespace korvel::headless;

namespace {

class LinkTest : public ::testing::Test {
 protected:
  static constexpr int kW = 140;
  static constexpr int kH = 20;

  HeadlessPlatform platform;
  HeadlessHost host{platform};
  KorvelLink link{host, platform};

  ColorRef Sys(int index) { return platform.raster().GetSysColor(index); }
  ColorRef Pixel(int x, int y) { return link.UserControl().Snapshot().At(x, y); }
  std::string Hwnd() { return std::to_string(static_cast<long long>(link.UserControl().hWnd())); }
  // The capture and shell calls, in order.
  std::vector<std::string> UserCalls() {
    std::vector<std::string> out;
    for (const auto& c : platform.log().calls)
      if (c.rfind("SetCapture(", 0) == 0 || c.rfind("ReleaseCapture(", 0) == 0 || c.rfind("ShellExecuteA(", 0) == 0)
        out.push_back(c);
    return out;
  }
  void Place() {
    host.PlaceNew(link, kW, kH);
    host.ClearRecords();
    platform.log().Clear();
  }
  // Marks a pixel that only a repaint (which clears the surface) removes.
  static constexpr ColorRef kMarker = Rgb(1, 2, 3);
  void Mark() { link.UserControl().PSet(kW - 1, 0, kMarker); }
  bool MarkerKept() { return Pixel(kW - 1, 0) == kMarker; }
};

// ---- the cases the link must get right ----

TEST_F(LinkTest, EmptyCaptionAndUrlShowGoToTheInternetAndAClickOpensNothing) {
  Place();
  EXPECT_EQ(link.GetLinkText(), "Go to the Internet...");
  // 21 characters, 105 pixels: (140 - 105) \ 2 = 17, (20 - 13) \ 2 = 3.
  EXPECT_EQ(link.TextX(), 17);
  EXPECT_EQ(link.TextY(), 3);
  const ColorRef text = Sys(COLOR_HIGHLIGHT), face = Sys(COLOR_BTNFACE);
  EXPECT_EQ(Pixel(18, 6), text);    // "G": first column, first row
  EXPECT_EQ(Pixel(20, 12), text);   // "G": last column, last row
  EXPECT_EQ(Pixel(17, 6), face);
  EXPECT_EQ(Pixel(18, 5), face);
  EXPECT_EQ(Pixel(18, 13), face);
  EXPECT_EQ(Pixel(28, 8), face);    // the blank after "Go"
  EXPECT_EQ(Pixel(118, 8), text);   // the last "."
  EXPECT_EQ(Pixel(122, 8), face);

  link.MouseMove(1, 0, 50, 10);
  link.MouseDown(1, 0, 50, 10);
  link.MouseUp(1, 0, 50, 10);
  EXPECT_EQ(UserCalls(), (std::vector<std::string>{"SetCapture(" + Hwnd() + ")", "ReleaseCapture()",
                                                    "SetCapture(" + Hwnd() + ")"}));
  EXPECT_TRUE(platform.log().Matching("ShellExecuteA").empty());
}

TEST_F(LinkTest, MailtoUrlWithBlanksShowsOnlyTheAddress) {
  Place();
  link.SetURL("  MAILTO:sales  ");
  EXPECT_EQ(link.URL(), "MAILTO:sales");
  EXPECT_EQ(link.GetLinkText(), "sales");
  // "sales" is 25 pixels wide: (140 - 25) \ 2 = 57.
  EXPECT_EQ(link.TextX(), 57);
  const ColorRef text = Sys(COLOR_HIGHLIGHT), face = Sys(COLOR_BTNFACE);
  EXPECT_EQ(Pixel(57, 8), face);
  EXPECT_EQ(Pixel(58, 8), text);
  EXPECT_EQ(Pixel(80, 8), text);
  EXPECT_EQ(Pixel(81, 8), face);
  // The click opens the stored text, prefix and all.
  link.MouseUp(1, 0, 70, 10);
  EXPECT_EQ(platform.log().Matching("ShellExecuteA"),
            (std::vector<std::string>{R"(ShellExecuteA(0, "open", "MAILTO:sales", "1", "1", 1))"}));
}

TEST_F(LinkTest, ClickReleasedOnColumnZeroOrRowZeroDoesNotOpen) {
  Place();
  link.SetURL("http://example.com");
  link.MouseUp(1, 0, 0, 10);
  link.MouseUp(1, 0, 70, 0);
  // Column 0 and row 0 still count as inside for hovering: the link recaptures.
  EXPECT_EQ(UserCalls(), (std::vector<std::string>{"ReleaseCapture()", "SetCapture(" + Hwnd() + ")",
                                                    "ReleaseCapture()", "SetCapture(" + Hwnd() + ")"}));
  EXPECT_TRUE(link.Hovering());
  platform.log().Clear();
  link.MouseUp(1, 0, 1, 1);
  EXPECT_EQ(UserCalls(),
            (std::vector<std::string>{R"(ShellExecuteA(0, "open", "http://example.com", "1", "1", 1))",
                                      "ReleaseCapture()", "SetCapture(" + Hwnd() + ")"}));
  platform.log().Clear();
  link.MouseUp(1, 0, kW - 1, kH - 1);
  EXPECT_EQ(platform.log().Matching("ShellExecuteA").size(), 1u);
  platform.log().Clear();
  link.MouseUp(1, 0, kW, 10);  // on the right edge: outside
  EXPECT_EQ(UserCalls(), (std::vector<std::string>{"ReleaseCapture()", "ReleaseCapture()"}));
  EXPECT_FALSE(link.Hovering());
}

TEST_F(LinkTest, DisabledLinkPaintsGrayTextAndIgnoresClicks) {
  Place();
  link.SetURL("http://example.com");
  host.ClearRecords();
  link.SetEnabled(false);
  // "http://example.com": 18 characters, 90 pixels, TextX = 25.
  EXPECT_EQ(link.TextX(), 25);
  EXPECT_EQ(Pixel(26, 6), Sys(COLOR_GRAYTEXT));
  EXPECT_EQ(Pixel(25, 6), Sys(COLOR_BTNFACE));
  link.MouseUp(1, 0, 50, 10);
  EXPECT_TRUE(platform.log().Matching("ShellExecuteA").empty());
  EXPECT_EQ(host.property_changes, (std::vector<std::string>{"Enabled"}));
}

TEST_F(LinkTest, ForeColorOnDisabledLinkDoesNotRepaint) {
  Place();
  link.SetEnabled(false);
  host.ClearRecords();
  Mark();
  link.SetForeColor(Rgb(0, 128, 0));
  EXPECT_TRUE(MarkerKept());
  EXPECT_EQ(link.ForeColor(), Rgb(0, 128, 0));
  EXPECT_EQ(Pixel(18, 6), Sys(COLOR_GRAYTEXT));
  EXPECT_EQ(host.property_changes, (std::vector<std::string>{"ForeColor"}));
  // Enabled again, the new colour shows.
  link.SetEnabled(true);
  EXPECT_FALSE(MarkerKept());
  EXPECT_EQ(Pixel(18, 6), Rgb(0, 128, 0));
}

TEST_F(LinkTest, HoverColorRepaintsOnlyWhileHovered) {
  Place();
  Mark();
  link.SetHoverColor(Rgb(0, 0, 200));
  EXPECT_TRUE(MarkerKept());
  EXPECT_EQ(Pixel(18, 6), Sys(COLOR_HIGHLIGHT));
  EXPECT_EQ(link.HoverColor(), Rgb(0, 0, 200));
  link.MouseMove(0, 0, 30, 10);
  EXPECT_EQ(Pixel(18, 6), Rgb(0, 0, 200));
  Mark();
  link.SetHoverColor(Rgb(0, 200, 0));
  EXPECT_FALSE(MarkerKept());
  EXPECT_EQ(Pixel(18, 6), Rgb(0, 200, 0));
  EXPECT_EQ(host.property_changes, (std::vector<std::string>{"HoverColor", "HoverColor"}));
}

TEST_F(LinkTest, NoClickEventEverReachesTheHost) {
  Place();
  link.SetURL("http://example.com");
  link.MouseMove(0, 0, 30, 10);
  link.MouseDown(1, 0, 30, 10);
  link.MouseUp(1, 0, 30, 10);
  link.MouseMove(0, 0, 300, 10);
  EXPECT_EQ(platform.log().Matching("ShellExecuteA").size(), 1u);
  EXPECT_TRUE(host.events.empty());
  EXPECT_STREQ(KorvelLink::kClickEvent, "Click");
  EXPECT_EQ(KorvelLink::kClickDispId, -600);
}

// ---- members ----

TEST_F(LinkTest, NewInstanceTakesAmbientFontNameAndBackColor) {
  host.ambient_font = std::make_shared<korvel::Font>("Arial", 12);
  host.ambient_back_color = 0x80000005;
  host.PlaceNew(link, kW, kH);
  ASSERT_TRUE(link.Font());
  EXPECT_EQ(link.Font()->Name(), "Arial");
  EXPECT_EQ(link.Font()->Size(), 8.25);  // only the name is taken over
  EXPECT_EQ(link.Font().get(), link.UserControl().Font().get());
  EXPECT_NE(link.Font().get(), host.ambient_font.get());
  EXPECT_EQ(link.Caption(), "");
  EXPECT_EQ(link.URL(), "");
  EXPECT_TRUE(link.Enabled());
  EXPECT_EQ(link.ForeColor(), 0x8000000Du);
  EXPECT_EQ(link.BackColor(), 0x80000005u);
  EXPECT_EQ(link.HoverColor(), 255u);
  EXPECT_FALSE(link.Hovering());
  EXPECT_EQ(link.UserControl().MousePointer(), 99);
  EXPECT_TRUE(host.property_changes.empty());
  EXPECT_EQ(Pixel(0, 0), Sys(COLOR_WINDOW));
  EXPECT_EQ(Pixel(18, 6), Sys(COLOR_HIGHLIGHT));
}

TEST_F(LinkTest, CaptionIsShownInsteadOfTheUrl) {
  Place();
  link.SetURL("http://example.com");
  link.SetCaption("Home");
  EXPECT_EQ(link.Caption(), "Home");
  EXPECT_EQ(link.GetLinkText(), "Home");
  EXPECT_EQ(link.TextX(), 60);  // (140 - 20) \ 2
  EXPECT_EQ(Pixel(61, 6), Sys(COLOR_HIGHLIGHT));
  EXPECT_EQ(Pixel(59, 6), Sys(COLOR_BTNFACE));
  EXPECT_EQ(Pixel(80, 6), Sys(COLOR_BTNFACE));
  // Stored as given: blanks are kept.
  link.SetCaption(" A ");
  EXPECT_EQ(link.Caption(), " A ");
  EXPECT_EQ(host.property_changes, (std::vector<std::string>{"URL", "Caption", "Caption"}));
}

TEST_F(LinkTest, UrlIsTrimmedAndShownAsStored) {
  Place();
  link.SetURL("  http://Example.com/a b  ");
  EXPECT_EQ(link.URL(), "http://Example.com/a b");
  EXPECT_EQ(link.GetLinkText(), "http://Example.com/a b");
  link.SetURL("mailto:");
  EXPECT_EQ(link.GetLinkText(), "");
  EXPECT_EQ(host.property_changes, (std::vector<std::string>{"URL", "URL"}));
}

TEST_F(LinkTest, EnabledSetterActsOnlyOnAChange) {
  Place();
  link.SetEnabled(true);  // no change
  EXPECT_TRUE(host.property_changes.empty());
  host.enabled = false;  // shows that the extender is not touched
  link.SetEnabled(true);
  EXPECT_FALSE(host.enabled);
  host.enabled = true;
  link.SetEnabled(false);
  EXPECT_FALSE(link.Enabled());
  EXPECT_FALSE(host.enabled);
  EXPECT_EQ(link.UserControl().MousePointer(), 0);
  EXPECT_EQ(Pixel(18, 6), Sys(COLOR_GRAYTEXT));
  link.SetEnabled(false);
  link.SetEnabled(true);
  EXPECT_TRUE(host.enabled);
  EXPECT_EQ(link.UserControl().MousePointer(), 99);
  EXPECT_EQ(Pixel(18, 6), Sys(COLOR_HIGHLIGHT));
  EXPECT_EQ(host.property_changes, (std::vector<std::string>{"Enabled", "Enabled"}));
}

TEST_F(LinkTest, ForeColorRepaintsAnEnabledLink) {
  Place();
  link.SetForeColor(0x80000008);
  EXPECT_EQ(link.ForeColor(), 0x80000008u);
  EXPECT_EQ(Pixel(18, 6), Sys(COLOR_WINDOWTEXT));
  EXPECT_EQ(host.property_changes, (std::vector<std::string>{"ForeColor"}));
}

TEST_F(LinkTest, BackColorSetsTheSurfaceBackground) {
  Place();
  link.SetBackColor(Rgb(255, 255, 192));
  EXPECT_EQ(link.BackColor(), Rgb(255, 255, 192));
  EXPECT_EQ(link.UserControl().BackColor(), Rgb(255, 255, 192));
  EXPECT_EQ(Pixel(0, 0), Rgb(255, 255, 192));
  EXPECT_EQ(Pixel(17, 6), Rgb(255, 255, 192));
  EXPECT_EQ(Pixel(18, 6), Sys(COLOR_HIGHLIGHT));
  EXPECT_EQ(host.property_changes, (std::vector<std::string>{"BackColor"}));
}

TEST_F(LinkTest, FontIsKeptByReferenceAndRecentresTheText) {
  Place();
  auto big = std::make_shared<korvel::Font>("Arial", 12);  // 7 x 18 cells
  link.SetFont(big);
  EXPECT_EQ(link.Font().get(), big.get());
  EXPECT_EQ(link.UserControl().Font().get(), big.get());
  // 21 x 7 = 147 pixels, wider than the control: (140 - 147) \ 2 = -3.
  EXPECT_EQ(link.TextX(), -3);
  EXPECT_EQ(link.TextY(), 1);
  const ColorRef text = Sys(COLOR_HIGHLIGHT), face = Sys(COLOR_BTNFACE);
  EXPECT_EQ(Pixel(0, 4), text);
  EXPECT_EQ(Pixel(2, 15), text);
  EXPECT_EQ(Pixel(3, 4), face);
  EXPECT_EQ(Pixel(0, 3), face);
  EXPECT_EQ(Pixel(0, 16), face);
  EXPECT_EQ(host.property_changes, (std::vector<std::string>{"Font"}));
  // A change to the font object shows at the next paint.
  big->SetSize(8.25);
  link.Paint();
  EXPECT_EQ(link.TextX(), 17);
}

TEST_F(LinkTest, LinkWithoutFontDrawsNothing) {
  Place();
  Mark();
  link.SetFont(nullptr);
  EXPECT_TRUE(MarkerKept());
  link.MouseMove(0, 0, 10, 10);
  EXPECT_TRUE(MarkerKept());
}

TEST_F(LinkTest, HoverTrackingCapturesAndReleases) {
  Place();
  const std::string cap = "SetCapture(" + Hwnd() + ")";
  link.MouseMove(0, 0, 10, 10);   // in
  link.MouseMove(0, 0, 20, 10);   // still in: nothing
  link.MouseMove(0, 0, 140, 10);  // out on the right
  link.MouseMove(0, 0, -1, 5);    // out again: released again
  link.MouseMove(0, 0, 0, 0);     // the corner is inside
  link.MouseMove(0, 0, 139, 19);  // still in
  link.MouseMove(0, 0, 139, 20);  // out at the bottom
  EXPECT_EQ(UserCalls(), (std::vector<std::string>{cap, "ReleaseCapture()", "ReleaseCapture()", cap,
                                                    "ReleaseCapture()"}));
  EXPECT_FALSE(link.Hovering());
  EXPECT_TRUE(host.property_changes.empty());
}

TEST_F(LinkTest, HoveredLinkIsUnderlinedInHoverColor) {
  Place();
  const ColorRef red = Rgb(255, 0, 0), face = Sys(COLOR_BTNFACE);
  EXPECT_EQ(Pixel(18, 14), face);  // no underline yet
  link.MouseMove(0, 0, 60, 10);
  EXPECT_TRUE(link.Hovering());
  EXPECT_EQ(Pixel(18, 6), red);
  // Underline on row TextY + 11 = 14, under every cell including the blanks.
  EXPECT_EQ(Pixel(17, 14), red);
  EXPECT_EQ(Pixel(28, 14), red);
  EXPECT_EQ(Pixel(121, 14), red);
  EXPECT_EQ(Pixel(16, 14), face);
  EXPECT_EQ(Pixel(122, 14), face);
  // The font itself is left as it was.
  EXPECT_FALSE(link.Font()->Underline());
  link.MouseMove(0, 0, 200, 10);
  EXPECT_EQ(Pixel(18, 6), Sys(COLOR_HIGHLIGHT));
  EXPECT_EQ(Pixel(28, 14), face);
}

TEST_F(LinkTest, DisabledLinkStillShowsHover) {
  Place();
  link.SetEnabled(false);
  link.MouseMove(0, 0, 60, 10);
  EXPECT_EQ(Pixel(18, 6), Rgb(255, 0, 0));
  EXPECT_EQ(Pixel(28, 14), Rgb(255, 0, 0));
  link.MouseMove(0, 0, -5, 10);
  EXPECT_EQ(Pixel(18, 6), Sys(COLOR_GRAYTEXT));
}

TEST_F(LinkTest, UnderlinedFontStaysUnderlinedWhenNotHovered) {
  Place();
  auto f = std::make_shared<korvel::Font>();
  f->SetUnderline(true);
  link.SetFont(f);
  EXPECT_EQ(Pixel(28, 14), Sys(COLOR_HIGHLIGHT));
  link.MouseMove(0, 0, 60, 10);
  link.MouseMove(0, 0, 600, 10);
  EXPECT_TRUE(f->Underline());
  EXPECT_EQ(Pixel(28, 14), Sys(COLOR_HIGHLIGHT));
}

TEST_F(LinkTest, ClickOpensTheUrlThenTracksHoverAgain) {
  Place();
  link.SetURL("http://example.com");
  link.MouseMove(0, 0, 30, 10);
  link.MouseUp(1, 0, 30, 10);
  const std::string cap = "SetCapture(" + Hwnd() + ")";
  EXPECT_EQ(UserCalls(),
            (std::vector<std::string>{cap, R"(ShellExecuteA(0, "open", "http://example.com", "1", "1", 1))",
                                      "ReleaseCapture()", cap}));
  EXPECT_TRUE(link.Hovering());
  EXPECT_EQ(Pixel(26, 6), Rgb(255, 0, 0));  // "http://example.com" starts at 25
  // Released outside the control: opens nothing, hovering ends.
  platform.log().Clear();
  link.MouseUp(1, 0, 30, 25);
  EXPECT_EQ(UserCalls(), (std::vector<std::string>{"ReleaseCapture()", "ReleaseCapture()"}));
  EXPECT_FALSE(link.Hovering());
}

TEST_F(LinkTest, ResizeRecentresTheText) {
  Place();
  host.Size(link, 200, 30);
  EXPECT_EQ(link.TextX(), 47);  // (200 - 105) \ 2, rounded 95 \ 2
  EXPECT_EQ(link.TextY(), 8);   // (30 - 13) \ 2
  EXPECT_EQ(Pixel(48, 11), Sys(COLOR_HIGHLIGHT));
  EXPECT_EQ(Pixel(47, 11), Sys(COLOR_BTNFACE));
}

TEST_F(LinkTest, AboutBoxShowsAFreshFormEachTime) {
  Place();
  link.AboutBox();
  link.AboutBox();
  EXPECT_EQ(host.modal_forms, (std::vector<std::string>{"About KorvelUI99...", "About KorvelUI99..."}));
}

// ---- persistence ----

TEST_F(LinkTest, NewInstanceWritesFontAndItsHighlightForeColor) {
  Place();
  PropertyBag bag;
  link.WriteProperties(bag);
  EXPECT_EQ(bag.Keys(), (std::vector<std::string>{"Font", "ForeColor"}));
  EXPECT_EQ(bag.ReadProperty("Font").ToFont().get(), link.Font().get());
  EXPECT_EQ(bag.ReadProperty("ForeColor").ToColor(), 0x8000000Du);
}

TEST_F(LinkTest, WritesEveryChangedKeyInOrder) {
  Place();
  link.SetHoverColor(Rgb(0, 255, 0));
  link.SetForeColor(Rgb(0, 0, 128));
  link.SetBackColor(0x80000005);
  link.SetEnabled(false);
  link.SetURL("http://example.com");
  link.SetCaption("Home");
  PropertyBag bag;
  link.WriteProperties(bag);
  EXPECT_EQ(bag.Keys(), (std::vector<std::string>{"Font", "Caption", "URL", "Enabled", "BackColor", "ForeColor",
                                                  "HoverColor"}));
  EXPECT_EQ(bag.ReadProperty("Caption").ToString(), "Home");
  EXPECT_EQ(bag.ReadProperty("URL").ToString(), "http://example.com");
  EXPECT_FALSE(bag.ReadProperty("Enabled").ToBool());
  EXPECT_EQ(bag.ReadProperty("BackColor").ToColor(), 0x80000005u);
  EXPECT_EQ(bag.ReadProperty("ForeColor").ToColor(), Rgb(0, 0, 128));
  EXPECT_EQ(bag.ReadProperty("HoverColor").ToColor(), Rgb(0, 255, 0));
  // Blue fore colour is the saved default and is left out.
  link.SetForeColor(0xFF0000);
  PropertyBag bag2;
  link.WriteProperties(bag2);
  EXPECT_FALSE(bag2.Contains("ForeColor"));
}

TEST_F(LinkTest, NewInstanceRoundTripsThroughTheTextForm) {
  Place();
  PropertyBag saved;
  link.WriteProperties(saved);
  PropertyBag bag = PropertyBag::FromText(saved.ToText());

  HeadlessPlatform p2;
  HeadlessHost h2(p2);
  h2.enabled = false;
  KorvelLink loaded(h2, p2);
  h2.Load(loaded, bag, kW, kH);
  EXPECT_EQ(loaded.ForeColor(), 0x8000000Du);  // written explicitly, so kept
  EXPECT_EQ(loaded.BackColor(), 0x8000000Fu);
  EXPECT_EQ(loaded.HoverColor(), 255u);
  EXPECT_TRUE(loaded.Enabled());
  EXPECT_TRUE(h2.enabled);  // the fresh flag was false: the setter ran
  EXPECT_EQ(loaded.Caption(), "");
  EXPECT_EQ(loaded.URL(), "");
  ASSERT_TRUE(loaded.Font());
  EXPECT_EQ(loaded.Font()->Name(), "MS Sans Serif");
  EXPECT_EQ(loaded.Font()->Size(), 8.25);
  EXPECT_EQ(h2.property_changes,
            (std::vector<std::string>{"Caption", "URL", "Enabled", "ForeColor", "BackColor", "HoverColor"}));
  EXPECT_EQ(loaded.UserControl().Snapshot().At(18, 6), p2.raster().GetSysColor(COLOR_HIGHLIGHT));
  EXPECT_EQ(loaded.UserControl().Snapshot().At(17, 6), p2.raster().GetSysColor(COLOR_BTNFACE));
}

TEST_F(LinkTest, EmptyBagGivesSavedDefaultsWithBlueText) {
  PropertyBag bag;
  host.enabled = false;
  host.Load(link, bag, kW, kH);
  EXPECT_EQ(link.ForeColor(), 0xFF0000u);  // a new link would be 0x8000000D
  EXPECT_EQ(link.BackColor(), 0x8000000Fu);
  EXPECT_EQ(link.HoverColor(), 255u);
  EXPECT_TRUE(link.Enabled());
  EXPECT_TRUE(host.enabled);
  EXPECT_EQ(link.UserControl().MousePointer(), 99);
  EXPECT_EQ(link.Font().get(), host.ambient_font.get());
  EXPECT_EQ(Pixel(18, 6), Rgb(0, 0, 255));
}

TEST_F(LinkTest, EnabledFalseReadIntoFreshInstanceLeavesExtenderAndPointer) {
  PropertyBag bag;
  bag.WriteProperty("Enabled", Variant::Bool(false));
  bag.WriteProperty("URL", Variant::String("http://example.com"));
  host.enabled = true;
  host.Load(link, bag, kW, kH);
  EXPECT_FALSE(link.Enabled());
  EXPECT_TRUE(host.enabled);
  EXPECT_EQ(link.UserControl().MousePointer(), 99);
  EXPECT_EQ(host.property_changes,
            (std::vector<std::string>{"Caption", "URL", "ForeColor", "BackColor", "HoverColor"}));
  EXPECT_EQ(Pixel(26, 6), Sys(COLOR_GRAYTEXT));
  link.MouseUp(1, 0, 50, 10);
  EXPECT_TRUE(platform.log().Matching("ShellExecuteA").empty());
}

TEST_F(LinkTest, WrongTypesAndGarbageLoadAsDefaults) {
  PropertyBag bag = PropertyBag::FromText(
      "Enabled = \"abc\"\n"
      "ForeColor = \"x\"\n"
      "this line is not a property\n"
      "BackColor = \"zz\"\n"
      "HoverColor = 1E+99\n"
      "Caption = 12\n"
      "URL = \"  http://example.com  \"\n"
      "Font = \"Arial\"\n");
  host.Load(link, bag, kW, kH);
  EXPECT_TRUE(link.Enabled());
  EXPECT_EQ(link.ForeColor(), 0xFF0000u);
  EXPECT_EQ(link.BackColor(), 0x8000000Fu);
  EXPECT_EQ(link.HoverColor(), 255u);
  EXPECT_EQ(link.Caption(), "12");
  EXPECT_EQ(link.URL(), "http://example.com");
  EXPECT_EQ(link.Font().get(), host.ambient_font.get());
  // "12" is 10 pixels wide: (140 - 10) \ 2 = 65, in the saved default blue.
  EXPECT_EQ(link.TextX(), 65);
  EXPECT_EQ(Pixel(66, 6), Rgb(0, 0, 255));
  EXPECT_EQ(Pixel(65, 6), Sys(COLOR_BTNFACE));
}

TEST_F(LinkTest, TextFormFontAndValuesLoad) {
  PropertyBag bag = PropertyBag::FromText(
      "Font = BeginProperty Font\n"
      "   Name = \"Courier New\"\n"
      "   Size = 12\n"
      "   Underline = -1 'True\n"
      "EndProperty\n"
      "Caption = \"Write to us\"\n"
      "URL = \"mailto:us@example.com\"\n"
      "Enabled = 0 'False\n"
      "ForeColor = &H00800000&\n"
      "BackColor = &H80000005&\n"
      "HoverColor = &H000000C0&\n");
  host.Load(link, bag, kW, kH);
  ASSERT_TRUE(link.Font());
  EXPECT_EQ(link.Font()->Name(), "Courier New");
  EXPECT_EQ(link.Caption(), "Write to us");
  EXPECT_EQ(link.URL(), "mailto:us@example.com");
  EXPECT_FALSE(link.Enabled());
  EXPECT_EQ(link.ForeColor(), 0x800000u);
  EXPECT_EQ(link.BackColor(), 0x80000005u);
  EXPECT_EQ(link.HoverColor(), 0xC0u);
  // Courier New 12 pt in the metrics font: 7 x 18 cells; "Write to us" is 77 wide.
  EXPECT_EQ(link.GetLinkText(), "Write to us");
  EXPECT_EQ(link.TextX(), 31);  // (140 - 77) \ 2, 63 \ 2
  EXPECT_EQ(link.TextY(), 1);
  EXPECT_EQ(Pixel(32, 4), Sys(COLOR_GRAYTEXT));
  // The font is underlined, so the grey text is too (row TextY + 16).
  EXPECT_EQ(Pixel(31, 17), Sys(COLOR_GRAYTEXT));
  EXPECT_EQ(Pixel(30, 17), Sys(COLOR_WINDOW));
}

}  // namespace
