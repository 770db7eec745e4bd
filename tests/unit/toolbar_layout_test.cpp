// KorvelToolbar: the button list, keyed members, geometry, border styles and sizing.
#include "tests/unit/toolbar_test_fixture.h"

using namespace toolbar_test;

namespace {

class ToolbarLayout : public ToolbarTest {};

}  // namespace

// ---- button list ----

TEST_F(ToolbarLayout, NewInstanceStartsEmptyWithInternetExplorerBorder) {
  host.align = 0;
  KorvelToolbar tb(host, platform);
  host.PlaceNew(tb, 200, 10);
  EXPECT_EQ(tb.BorderStyle(), ktInternetExplorer);
  EXPECT_EQ(tb.MaskColor(), 0x00FF00FFu);
  EXPECT_TRUE(tb.UseMaskColor());
  EXPECT_EQ(tb.Picture(), nullptr);
  EXPECT_EQ(tb.ButtonCount(), 0);
  EXPECT_EQ(host.align, 1);
  for (int a = 0; a < 6; ++a) EXPECT_EQ(tb.ArraySize(a), 0u);
  EXPECT_EQ(tb.HotColor(), kHot);
}

TEST_F(ToolbarLayout, ArraysFollowTheCount) {
  auto tb = Make({Button("A"), Check("B"), Separator()});
  EXPECT_EQ(tb->ButtonCount(), 3);
  for (int a = 0; a < 6; ++a) EXPECT_EQ(tb->ArraySize(a), 3u) << a;
  Apply(*tb, {Button("A")});
  for (int a = 0; a < 6; ++a) EXPECT_EQ(tb->ArraySize(a), 1u) << a;
  Apply(*tb, {});
  EXPECT_EQ(tb->ButtonCount(), 0);
  for (int a = 0; a < 6; ++a) EXPECT_EQ(tb->ArraySize(a), 0u) << a;
}

TEST_F(ToolbarLayout, WidthBelowOneAndStyleOutOfRangeAreCorrectedWhenStored) {
  auto tb = Make({Item{"A", "", 7}, Item{"B", "", -1}, Placeholder(0), Placeholder(-3)});
  EXPECT_EQ(tb->StyleAt(1), ktButton);
  EXPECT_EQ(tb->StyleAt(2), ktButton);
  EXPECT_EQ(tb->WidthAt(3), 1);
  EXPECT_EQ(tb->WidthAt(4), 1);
}

TEST_F(ToolbarLayout, KeysOpenLowerOpenAndSpacedUpperOpenReachTheSameButton) {
  auto tb = Make({Button("New"), Button("Open"), Button("open")});
  EXPECT_EQ(tb->FindButton("Open"), 2);
  EXPECT_EQ(tb->FindButton("open"), 2);
  EXPECT_EQ(tb->FindButton(" OPEN "), 2);
  // An empty key reaches none, even when a button's key is empty.
  auto empty = Make({Button(""), Button("X")});
  EXPECT_EQ(empty->FindButton(""), 0);
  EXPECT_EQ(empty->FindButton("   "), 0);
  EXPECT_EQ(empty->FindButton("Y"), 0);
  // Stored keys are compared trimmed too.
  auto spaced = Make({Button("  Save ")});
  EXPECT_EQ(spaced->FindButton("save"), 1);
}

TEST_F(ToolbarLayout, ButtonLeftSumsTheWidthsBefore) {
  auto tb = Make({Button("A"), Separator(), Button("B"), Placeholder(40), Check("C")});
  ASSERT_EQ(tb->ButtonHeight(), 22);
  EXPECT_EQ(tb->ButtonLeft(0), 0);
  EXPECT_EQ(tb->ButtonLeft(1), 0);
  EXPECT_EQ(tb->ButtonLeft(2), 22);
  EXPECT_EQ(tb->ButtonLeft(3), 30);
  EXPECT_EQ(tb->ButtonLeft(4), 52);
  EXPECT_EQ(tb->ButtonLeft(5), 92);
  EXPECT_EQ(tb->ButtonLeft(6), 0);
  EXPECT_EQ(tb->ButtonLeft(-1), 0);
}

TEST_F(ToolbarLayout, SeparatorShiftsTheSecondButtonByEightAndPlaceholderOfWidth40By40) {
  auto sep = Make({Button("A"), Separator(), Button("B")});
  EXPECT_EQ(sep->ButtonLeft(3) - sep->ButtonLeft(1), 22 + 8);
  EXPECT_EQ(sep->ImageOffset(3), 16);  // the second image
  // The second button shows the second image (its left half in the second colour).
  EXPECT_EQ(Area(*sep, 30 + 3, 3 + 4), ImageColor(2));
  EXPECT_EQ(Area(*sep, 30 + 3 + 7, 3 + 15), ImageColor(2));

  auto ph = Make({Button("A"), Placeholder(40), Button("B")});
  EXPECT_EQ(ph->ButtonLeft(3) - ph->ButtonLeft(1), 22 + 40);
  EXPECT_EQ(ph->ImageOffset(3), 16);
  EXPECT_EQ(Area(*ph, 62 + 3, 3 + 4), ImageColor(2));
}

TEST_F(ToolbarLayout, ImageOffsetCountsOnlyButtonsAndChecks) {
  auto tb = Make({Separator(), Button("A"), Placeholder(5), Check("B"), Button("C")});
  EXPECT_EQ(tb->ImageOffset(1), -1);
  EXPECT_EQ(tb->ImageOffset(2), 0);
  EXPECT_EQ(tb->ImageOffset(3), -1);
  EXPECT_EQ(tb->ImageOffset(4), 16);
  EXPECT_EQ(tb->ImageOffset(5), 32);
  EXPECT_EQ(tb->ImageOffset(0), -1);
  EXPECT_EQ(tb->ImageOffset(6), -1);
}

TEST_F(ToolbarLayout, ButtonAtLastColumnOfAButtonAndFirstColumnOfTheNextItem) {
  auto tb = Make({Button("A"), Button("B"), Separator(), Check("C"), Placeholder(10)});
  EXPECT_EQ(tb->ButtonAt(21), 1);  // last column of button 1
  EXPECT_EQ(tb->ButtonAt(22), 2);  // first column of button 2
  EXPECT_EQ(tb->ButtonAt(43), 2);
  EXPECT_EQ(tb->ButtonAt(44), 0);  // first column of the separator
  EXPECT_EQ(tb->ButtonAt(51), 0);
  EXPECT_EQ(tb->ButtonAt(52), 4);
  EXPECT_EQ(tb->ButtonAt(73), 4);
  EXPECT_EQ(tb->ButtonAt(74), 0);   // placeholder
  EXPECT_EQ(tb->ButtonAt(84), 0);   // past every item
  EXPECT_EQ(tb->ButtonAt(-1), 0);
  EXPECT_EQ(tb->AreaWidth(), 188);
  EXPECT_EQ(tb->ButtonAt(188), 0);  // at the area width
  EXPECT_EQ(tb->ButtonAt(0), 1);
}

TEST_F(ToolbarLayout, ButtonAtStopsAtTheAreaWidth) {
  // Narrow: the area is 30 - 12 = 18 pixels wide, button 1 reaches 22.
  auto tb = Make({Button("A"), Button("B")}, 4, true, ktInternetExplorer, 30);
  EXPECT_EQ(tb->AreaWidth(), 18);
  EXPECT_EQ(tb->ButtonAt(17), 1);
  EXPECT_EQ(tb->ButtonAt(18), 0);
  EXPECT_EQ(tb->ButtonAt(25), 0);
}

// ---- keyed members ----

TEST_F(ToolbarLayout, KeyedGettersOfAnUnknownKeyGiveEmptyValues) {
  auto tb = Make({Item{"A", "1", ktCheck, true, true}});
  EXPECT_FALSE(tb->Enabled("Z"));
  EXPECT_FALSE(tb->Value("Z"));
  EXPECT_FALSE(tb->ToolTipText("Z"));
  EXPECT_EQ(tb->Style("Z"), 0);
  EXPECT_TRUE(tb->Enabled("a"));
  EXPECT_TRUE(tb->Value(" A"));
  EXPECT_EQ(tb->Style("A"), ktCheck);
}

TEST_F(ToolbarLayout, EnabledAndValueWorkAtRunTimeWithoutPropertyChanged) {
  auto tb = Make({Button("A"), Check("B")});
  tb->SetEnabled("A", false);
  tb->SetValue("b", true);
  EXPECT_FALSE(tb->EnabledAt(1));
  EXPECT_TRUE(tb->ValueAt(2));
  EXPECT_TRUE(host.property_changes.empty());
  // The checked look shows at once: the hot-tracking background.
  EXPECT_EQ(Area(*tb, 22 + 1, 1), kHot);
  // An unknown key changes nothing.
  tb->SetEnabled("Q", false);
  tb->SetValue("Q", true);
  EXPECT_TRUE(tb->EnabledAt(2));
  EXPECT_TRUE(host.property_changes.empty());
}

TEST_F(ToolbarLayout, EnabledRedrawsOnlyThatButton) {
  auto tb = Make({Button("A"), Button("B"), Button("C")});
  Image before = AreaImage(*tb);
  tb->SetEnabled("B", false);
  Image after = AreaImage(*tb);
  for (int y = 0; y < after.height; ++y)
    for (int x = 0; x < after.width; ++x)
      if (x < 22 || x >= 44) {
        EXPECT_EQ(after.At(x, y), before.At(x, y)) << x << "," << y;
      }
  EXPECT_NE(after, before);
}

TEST_F(ToolbarLayout, ToolTipTextReturnsTheTipConvertedToABoolean) {
  auto tb = Make({Button("T", "True"), Button("F", "False"), Button("N", "-1"), Button("Z", "0"),
                  Button("D", "2.5"), Button("W", "Open a file"), Button("E", "")});
  EXPECT_TRUE(tb->ToolTipText("T"));
  EXPECT_FALSE(tb->ToolTipText("F"));
  EXPECT_TRUE(tb->ToolTipText("N"));
  EXPECT_FALSE(tb->ToolTipText("Z"));
  EXPECT_TRUE(tb->ToolTipText("D"));
  EXPECT_EQ(ErrorOf([&] { tb->ToolTipText("W"); }), kErrTypeMismatch);
  EXPECT_EQ(ErrorOf([&] { tb->ToolTipText("E"); }), kErrTypeMismatch);
  EXPECT_FALSE(tb->ToolTipText("unknown"));
}

// ---- design-time-only properties ----

TEST_F(ToolbarLayout, BorderStyleFourOrMinusOneIsIgnoredAtDesignTime) {
  auto tb = Make({Button("A")}, 4, false, ktRaised);
  tb->SetBorderStyle(4);
  tb->SetBorderStyle(-1);
  EXPECT_EQ(tb->BorderStyle(), ktRaised);
  EXPECT_TRUE(host.property_changes.empty());
  tb->SetBorderStyle(ktBar);
  EXPECT_EQ(tb->BorderStyle(), ktBar);
  EXPECT_EQ(host.property_changes, Strings{"BorderStyle"});
}

TEST_F(ToolbarLayout, DesignTimeOnlyPropertiesAreIgnoredAtRunTime) {
  auto tb = Make({Button("A")});
  PropertyBag before;
  tb->WriteProperties(before);
  PictureRef strip = tb->Picture();
  int rebuilds = tb->Rebuilds();
  tb->SetBorderStyle(ktRaised);
  tb->SetPicture(Strip(2));
  tb->SetMaskColor(0x123456);
  tb->SetUseMaskColor(false);
  EXPECT_EQ(tb->BorderStyle(), ktInternetExplorer);
  EXPECT_EQ(tb->Picture(), strip);
  EXPECT_EQ(tb->MaskColor(), 0x00FF00FFu);
  EXPECT_TRUE(tb->UseMaskColor());
  EXPECT_EQ(tb->Rebuilds(), rebuilds);
  EXPECT_TRUE(host.property_changes.empty());
  PropertyBag after;
  tb->WriteProperties(after);
  EXPECT_EQ(after.ToText(), before.ToText());
}

TEST_F(ToolbarLayout, DesignTimeAssignmentsMarkAndRebuild) {
  auto tb = Make({Button("A")}, 4, false);
  int rebuilds = tb->Rebuilds();
  tb->SetMaskColor(0x0000FF);
  EXPECT_EQ(tb->Rebuilds(), rebuilds + 1);
  tb->SetUseMaskColor(true);  // unchanged: nothing happens
  EXPECT_EQ(tb->Rebuilds(), rebuilds + 1);
  tb->SetUseMaskColor(false);
  EXPECT_EQ(tb->Rebuilds(), rebuilds + 2);
  tb->SetPicture(Strip(3));
  EXPECT_EQ(tb->Rebuilds(), rebuilds + 3);
  EXPECT_EQ(tb->ImageCount(), 3);
  EXPECT_EQ(host.property_changes, (Strings{"MaskColor", "UseMaskColor", "Picture"}));
}

// ---- image metrics and sizing ----

TEST_F(ToolbarLayout, ImageMetricsComeFromTheStrip) {
  auto tb = Make({Button("A")}, 5);
  EXPECT_EQ(tb->ImageSize(), 16);
  EXPECT_EQ(tb->ButtonHeight(), 22);
  EXPECT_EQ(tb->ImageCount(), 5);
  host.user_mode = false;
  tb->SetPicture(Picture::FromImage(Image(50, 24, kMagenta)));  // 50 div 24
  EXPECT_EQ(tb->ImageSize(), 24);
  EXPECT_EQ(tb->ButtonHeight(), 30);
  EXPECT_EQ(tb->ImageCount(), 2);
  tb->SetPicture(nullptr);
  EXPECT_EQ(tb->ImageSize(), 0);
  EXPECT_EQ(tb->ButtonHeight(), 0);
  EXPECT_EQ(tb->ImageCount(), 0);
}

TEST_F(ToolbarLayout, StripOfHeightZeroRaisesDivisionByZero) {
  auto tb = Make({Button("A")}, 4, false);
  host.ClearRecords();
  EXPECT_EQ(ErrorOf([&] { tb->SetPicture(Picture::FromImage(Image(16, 0))); }), kErrDivisionByZero);
  // The division comes after image size and button height were set; nothing is marked.
  EXPECT_EQ(tb->ImageSize(), 0);
  EXPECT_EQ(tb->ButtonHeight(), 6);
  EXPECT_TRUE(host.property_changes.empty());
}

TEST_F(ToolbarLayout, NoPictureGivesHeightSevenInEveryBorderStyleAndNoHits) {
  for (std::int32_t border : {ktNoBorder, ktRaised, ktBar, ktInternetExplorer}) {
    auto tb = Make({Button("A"), Check("B")}, 0, true, border);
    EXPECT_EQ(tb->ButtonHeight(), 0) << border;
    EXPECT_EQ(tb->UserControl().Height(), 7) << border;
    for (int x = -1; x <= 200; ++x) EXPECT_EQ(tb->ButtonAt(x), 0) << border << " x " << x;
  }
}

struct BorderCase {
  std::int32_t style;
  Rect rect;
  std::int16_t edge;
  int height;
  int left, top, width;
};

TEST_F(ToolbarLayout, BorderStylesGiveTheirRectanglesEdgesHeightsAndAreas) {
  const BorderCase cases[] = {
      {ktRaised, {0, 0, 200, 28}, 4, 28, 3, 3, 194},
      {ktBar, {-1, 25 - 2, 201, 25}, 2, 25, 3, 0, 194},
      {ktInternetExplorer, {0, 0, 200, 28}, 6, 28, 9, 3, 188},
  };
  for (const auto& c : cases) {
    auto tb = Make({Button("A")}, 4, true, c.style);
    EXPECT_EQ(tb->UserControl().Height(), c.height) << c.style;
    EXPECT_EQ(tb->BorderRect(), c.rect) << c.style;
    EXPECT_EQ(tb->BorderEdge(), c.edge) << c.style;
    EXPECT_EQ(tb->ButtonArea().Left(), c.left) << c.style;
    EXPECT_EQ(tb->ButtonArea().Top(), c.top) << c.style;
    EXPECT_EQ(tb->ButtonArea().Width(), c.width) << c.style;
    EXPECT_EQ(tb->ButtonArea().Height(), 22) << c.style;
    EXPECT_EQ(tb->AreaWidth(), c.width) << c.style;
  }
}

TEST_F(ToolbarLayout, NoBorderKeepsTheLastRectangleAndEdge) {
  auto tb = Make({Button("A")}, 4, false, ktRaised);
  tb->SetBorderStyle(ktNoBorder);
  EXPECT_EQ(tb->UserControl().Height(), 22);
  EXPECT_EQ(tb->BorderRect(), (Rect{0, 0, 200, 28}));  // from the Raised layout
  EXPECT_EQ(tb->BorderEdge(), 4);
  EXPECT_EQ(tb->ButtonArea().Left(), 0);
  EXPECT_EQ(tb->ButtonArea().Top(), 0);
  EXPECT_EQ(tb->ButtonArea().Width(), 200);
  // A fresh toolbar loaded with No Border has never had a rectangle.
  PropertyBag bag;
  KorvelToolbar fresh(host, platform);
  host.Load(fresh, bag, 100, 30);
  EXPECT_EQ(fresh.BorderRect(), (Rect{0, 0, 0, 0}));
  EXPECT_EQ(fresh.BorderEdge(), 0);
  EXPECT_EQ(fresh.UserControl().Height(), 7);
}

TEST_F(ToolbarLayout, HeightIsForcedThroughTheHostInTwips) {
  host.user_mode = false;
  KorvelToolbar tb(host, platform);
  host.PlaceNew(tb, 200, 10);
  host.ClearRecords();
  tb.SetPicture(Strip(4));
  // 22 + 6 pixels at 15 twips per pixel, the width kept.
  ASSERT_FALSE(host.size_requests.empty());
  EXPECT_EQ(host.size_requests.front(), (std::pair<std::int32_t, std::int32_t>{3000, 420}));
  EXPECT_EQ(tb.UserControl().Height(), 28);
  // The host's own change of height is answered with a request for the required one.
  host.ClearRecords();
  host.Size(tb, 200, 50);
  EXPECT_EQ(host.size_requests, (std::vector<std::pair<std::int32_t, std::int32_t>>{{3000, 420}}));
  EXPECT_EQ(tb.UserControl().Height(), 28);
}

TEST_F(ToolbarLayout, WidthBelowSevenIsSetToSeven) {
  auto tb = Make({Button("A")});
  host.Size(*tb, 5, 28);
  ASSERT_FALSE(host.size_requests.empty());
  EXPECT_EQ(host.size_requests.front(), (std::pair<std::int32_t, std::int32_t>{105, 420}));
  EXPECT_EQ(tb->UserControl().Width(), 7);
  EXPECT_EQ(tb->AreaWidth(), 7 - 12);  // the Internet Explorer area: CW - 12
}

TEST_F(ToolbarLayout, BorderPaintingRaisedEtchedBarAndGripper) {
  platform.RecordGdiCalls(true);
  auto ie = Make({Button("A")}, 4, true, ktInternetExplorer);
  ie->Paint();
  std::string dc = N(ie->UserControl().hDC());
  EXPECT_EQ(platform.log().Matching("DrawEdge(" + dc),
            (Strings{"DrawEdge(" + dc + ", (0, 0, 200, 28), 6, 0x80F) = 1",
                     "DrawEdge(" + dc + ", (3, 3, 6, 25), 4, 0xF) = 1"}));
  platform.RecordGdiCalls(false);
  // The gripper: highlight at its left, shadow at its right, face between.
  EXPECT_EQ(Ctl(*ie, 3, 10), kHilite);
  EXPECT_EQ(Ctl(*ie, 4, 10), kFace);
  EXPECT_EQ(Ctl(*ie, 5, 10), kShadow);
  // The etched frame: shadow then highlight from the outside in at the top left.
  EXPECT_EQ(Ctl(*ie, 0, 0), kShadow);
  EXPECT_EQ(Ctl(*ie, 1, 1), kHilite);

  auto bar = Make({Button("A")}, 4, true, ktBar);
  // Only the sunken line along the bottom shows: shadow on row 23, highlight on 24.
  EXPECT_EQ(Ctl(*bar, 100, 23), kShadow);
  EXPECT_EQ(Ctl(*bar, 100, 24), kHilite);
  EXPECT_EQ(Ctl(*bar, 0, 23), kShadow);
  EXPECT_EQ(Ctl(*bar, 199, 24), kHilite);

  auto raised = Make({Button("A")}, 4, true, ktRaised);
  EXPECT_EQ(Ctl(*raised, 0, 0), kHilite);
  EXPECT_EQ(Ctl(*raised, 199, 27), kShadow);
  EXPECT_EQ(Ctl(*raised, 1, 1), kFace);
}
