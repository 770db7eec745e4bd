// KorvelToolbar: the state pictures and every item drawn in every state, pixel by
// pixel, from a strip whose top rows are in the mask colour (magenta).
#include "tests/unit/toolbar_test_fixture.h"

using namespace toolbar_test;

namespace {

class ToolbarRender : public ToolbarTest {
 protected:
  // Blackens the whole area so that every pixel a paint leaves alone shows.
  void Blacken(KorvelToolbar& tb) {
    Surface& a = tb.ButtonArea();
    a.Line(0, 0, a.ScaleWidth() - 1, a.ScaleHeight() - 1, 0x000000, true, true);
  }
  // Image k as copied at (x + at, at) from a state picture whose mask pixels show
  // as back (or, with back 0xFFFFFFFF, stay magenta).
  void ExpectImage(KorvelToolbar& tb, int x, int at, int k, ColorRef back, const std::string& what) {
    for (int py = 0; py < 16; ++py)
      for (int px = 0; px < 16; ++px) {
        ColorRef want = StripPixel(k, px, py);
        if (want == kMagenta && back != 0xFFFFFFFFu) want = back;
        ASSERT_EQ(Area(tb, x + at + px, at + py), want) << what << " at " << px << "," << py;
      }
  }
  // The 17 x 17 disabled block read from column src of the embossed strip.
  void ExpectDisabled(KorvelToolbar& tb, int x, int src, int images, const std::string& what) {
    for (int py = 0; py < 17; ++py)
      for (int px = 0; px < 17; ++px)
        ASSERT_EQ(Area(tb, x + 3 + px, 3 + py), DisabledPixel(src + px, py, images)) << what << " " << px << "," << py;
  }
  // The cell's outer ring (x..x+21, 0..21) and the two-pixel band inside it.
  void ExpectRing(KorvelToolbar& tb, int x, ColorRef top_left, ColorRef bottom_right, const std::string& what) {
    for (int i = 0; i < 21; ++i) {
      EXPECT_EQ(Area(tb, x + i, 0), top_left) << what << " top " << i;
      EXPECT_EQ(Area(tb, x, i), top_left) << what << " left " << i;
      EXPECT_EQ(Area(tb, x + 1 + i, 21), bottom_right) << what << " bottom " << i;
      EXPECT_EQ(Area(tb, x + 21, 1 + i), bottom_right) << what << " right " << i;
    }
  }
  void ExpectSolid(KorvelToolbar& tb, int x1, int y1, int x2, int y2, ColorRef c, const std::string& what) {
    for (int y = y1; y <= y2; ++y)
      for (int x = x1; x <= x2; ++x) ASSERT_EQ(Area(tb, x, y), c) << what << " at " << x << "," << y;
  }
};

}  // namespace

// ---- state pictures ----

TEST_F(ToolbarRender, StatePicturesAreSizedAndMasked) {
  auto tb = Make({Button("A")});
  EXPECT_EQ(tb->NormalPic().Width(), 64);
  EXPECT_EQ(tb->NormalPic().Height(), 16);
  EXPECT_EQ(tb->ActivePic().Width(), 64);
  EXPECT_EQ(tb->ActivePic().Height(), 16);
  EXPECT_EQ(tb->DisabledPic().Width(), 64 + 4);
  EXPECT_EQ(tb->DisabledPic().Height(), 17);
  EXPECT_EQ(tb->WorkPic(1).Width(), 64);
  EXPECT_EQ(tb->WorkPic(2).Height(), 16);
  for (int x = 0; x < 64; ++x)
    for (int y = 0; y < 16; ++y) {
      ColorRef src = StripPixel(x / 16 + 1, x % 16, y);
      ASSERT_EQ(Pic(tb->NormalPic(), x, y), src == kMagenta ? kFace : src) << x << "," << y;
      ASSERT_EQ(Pic(tb->ActivePic(), x, y), src == kMagenta ? kHot : src) << x << "," << y;
    }
  for (int x = 0; x < 68; ++x)
    for (int y = 0; y < 17; ++y) ASSERT_EQ(Pic(tb->DisabledPic(), x, y), DisabledPixel(x, y, 4)) << x << "," << y;
}

TEST_F(ToolbarRender, RebuildDrawsTheDisabledStripFromTheUnmaskedPicture) {
  auto tb = Make({Button("A")}, 4, false);
  platform.RecordGdiCalls(true);
  tb->SetMaskColor(0x00FF00FF);
  platform.RecordGdiCalls(false);
  auto states = platform.log().Matching("DrawStateA(");
  ASSERT_EQ(states.size(), 1u);
  std::string dc = N(tb->DisabledPic().hDC());
  EXPECT_EQ(states[0].rfind("DrawStateA(" + dc + ", 0, ", 0), 0u) << states[0];
  EXPECT_NE(states[0].find(", \"\", 0, 0, 64, 16, 0x24) = 1"), std::string::npos) << states[0];
}

TEST_F(ToolbarRender, PaintingNeverRebuildsTheStatePictures) {
  auto tb = Make({Button("A"), Check("B", true), Disabled(Button("C"))});
  int rebuilds = tb->Rebuilds();
  platform.RecordGdiCalls(true);
  tb->Paint();
  tb->PaintButtons();
  tb->Resize();
  tb->MouseMove(0, 0, 5, 5);
  tb->MouseDown(1, 0, 5, 5);
  tb->MouseUp(1, 0, 5, 5);
  platform.RecordGdiCalls(false);
  EXPECT_EQ(tb->Rebuilds(), rebuilds);
  EXPECT_TRUE(platform.log().Matching("DrawStateA(").empty());
  EXPECT_TRUE(platform.log().Matching("CreateBitmap(").empty());
}

TEST_F(ToolbarRender, HotTrackingColourIsTheHalfwayMixOfHighlightAndFace) {
  auto tb = Make({Button("A")});
  EXPECT_EQ(tb->HotColor(), Rgb(224, 224, 224));
}

// ---- resting states ----

TEST_F(ToolbarRender, RestingEnabledButtonAndUncheckedCheck) {
  auto tb = Make({Button("A"), Check("B")});
  Blacken(*tb);
  tb->PaintButtons();
  for (int x : {0, 22}) {
    ExpectSolid(*tb, x, 0, x + 21, 2, kFace, "top band");
    ExpectSolid(*tb, x, 19, x + 21, 21, kFace, "bottom band");
    ExpectSolid(*tb, x, 0, x + 2, 21, kFace, "left band");
    ExpectSolid(*tb, x + 19, 0, x + 21, 21, kFace, "right band");
    ExpectImage(*tb, x, 3, x / 22 + 1, kFace, "normal image");
  }
  EXPECT_EQ(Area(*tb, 44, 10), 0u);  // nothing drawn past the last item
}

TEST_F(ToolbarRender, RestingDisabledButtonAndCheckCopyTheWiderDisabledBlock) {
  auto tb = Make({Button("A"), Disabled(Button("B")), Disabled(Check("C", true)), Disabled(Check("D"))});
  Blacken(*tb);
  tb->PaintButtons();
  // Image column 16 is read at 16 x 17 / 16 = 17, column 32 at 34, column 48 at 51.
  ExpectDisabled(*tb, 22, 17, 4, "disabled button");
  ExpectDisabled(*tb, 44, 34, 4, "disabled checked check");
  ExpectDisabled(*tb, 66, 51, 4, "disabled unchecked check");
  for (int x : {22, 44, 66}) {
    ExpectSolid(*tb, x, 0, x + 21, 2, kFace, "top band");
    ExpectSolid(*tb, x + 20, 0, x + 21, 21, kFace, "right band");
    EXPECT_EQ(Area(*tb, x + 3 + 17, 10), kFace);
  }
}

TEST_F(ToolbarRender, DisabledCheckedCheckIsDrawnWithoutTheCheckedBackground) {
  auto tb = Make({Disabled(Check("A", true))});
  EXPECT_EQ(Area(*tb, 1, 1), kFace);
  EXPECT_EQ(Area(*tb, 0, 0), kFace);     // no sunken edge
  EXPECT_EQ(Area(*tb, 21, 21), kFace);
  ExpectDisabled(*tb, 0, 0, 4, "disabled checked");
}

TEST_F(ToolbarRender, RestingCheckedEnabledCheck) {
  auto tb = Make({Button("A"), Check("B", true)});
  Blacken(*tb);
  tb->PaintButtons();
  ExpectRing(*tb, 22, kShadow, kHilite, "sunken outer");
  ExpectSolid(*tb, 23, 1, 42, 3, kHot, "hot band above the image");
  ExpectSolid(*tb, 23, 1, 25, 20, kHot, "hot band left of the image");
  ExpectSolid(*tb, 42, 1, 42, 20, kHot, "hot column right of the image");
  ExpectImage(*tb, 22, 4, 2, kHot, "active image at (x + 4, 4)");
}

TEST_F(ToolbarRender, SeparatorIsASunkenTwoPixelLine) {
  auto tb = Make({Button("A"), Separator(), Button("B")});
  Blacken(*tb);
  tb->PaintButtons();
  for (int y = 0; y < 22; ++y) {
    EXPECT_EQ(Area(*tb, 22, y), kFace) << y;
    EXPECT_EQ(Area(*tb, 24, y), kFace) << y;
    EXPECT_EQ(Area(*tb, 25, y), kShadow) << y;
    EXPECT_EQ(Area(*tb, 26, y), kHilite) << y;
    EXPECT_EQ(Area(*tb, 27, y), kFace) << y;
    EXPECT_EQ(Area(*tb, 29, y), kFace) << y;
  }
  ExpectImage(*tb, 30, 3, 2, kFace, "the button after it");
}

TEST_F(ToolbarRender, PlaceholderIsButtonFaceOfItsWidth) {
  auto tb = Make({Button("A"), Placeholder(40)});
  Blacken(*tb);
  tb->PaintButtons();
  ExpectSolid(*tb, 22, 0, 61, 21, kFace, "placeholder");
  EXPECT_EQ(Area(*tb, 62, 0), 0u);
  EXPECT_EQ(Area(*tb, 62, 21), 0u);
}

TEST_F(ToolbarRender, DesignTimeButtonsGetARaisedEdge) {
  auto tb = Make({Button("A"), Check("B"), Disabled(Check("C")), Check("D", true), Disabled(Button("E"))}, 5, false);
  platform.RecordGdiCalls(true);
  tb->PaintButtons();
  platform.RecordGdiCalls(false);
  std::string dc = N(tb->ButtonArea().hDC());
  EXPECT_EQ(platform.log().Matching("DrawEdge("),
            (Strings{"DrawEdge(" + dc + ", (0, 0, 22, 22), 4, 0x80F) = 1",
                     "DrawEdge(" + dc + ", (22, 0, 44, 22), 4, 0x80F) = 1",
                     "DrawEdge(" + dc + ", (44, 0, 66, 22), 4, 0xF) = 1",
                     "DrawEdge(" + dc + ", (66, 0, 88, 22), 2, 0xF) = 1",
                     "DrawEdge(" + dc + ", (88, 0, 110, 22), 4, 0x80F) = 1"}));
  ExpectRing(*tb, 0, kHilite, kShadow, "design-time button");
  ExpectImage(*tb, 0, 3, 1, kFace, "image over the filled edge");
  ExpectDisabled(*tb, 44, 34, 5, "design-time disabled check");
  EXPECT_EQ(Area(*tb, 44, 10), kHilite);  // the edge shows left of it
  // At run time the same buttons have no edge.
  host.user_mode = true;
  platform.log().Clear();
  platform.RecordGdiCalls(true);
  tb->PaintButtons();
  platform.RecordGdiCalls(false);
  EXPECT_EQ(platform.log().Matching("DrawEdge("), (Strings{"DrawEdge(" + dc + ", (66, 0, 88, 22), 2, 0xF) = 1"}));
}

// ---- hot states ----

TEST_F(ToolbarRender, HoverIsARaisedFilledCellWithTheImageAtThree) {
  auto tb = Make({Button("A"), Button("B")});
  tb->MouseMove(0, 0, 30, 10);
  ASSERT_EQ(tb->HotIndex(), 2);
  ExpectRing(*tb, 22, kHilite, kShadow, "raised inner");
  ExpectSolid(*tb, 23, 1, 42, 2, kFace, "filled middle");
  ExpectImage(*tb, 22, 3, 2, kFace, "normal image");
}

TEST_F(ToolbarRender, PressedInsideIsASunkenFilledCellWithTheImageAtFour) {
  auto tb = Make({Button("A"), Check("B")});
  for (int x : {5, 30}) {
    tb->MouseMove(0, 0, static_cast<float>(x), 10);
    tb->MouseDown(1, 0, static_cast<float>(x), 10);
    int left = x < 22 ? 0 : 22;
    ExpectRing(*tb, left, kShadow, kHilite, "sunken outer");
    ExpectSolid(*tb, left + 1, 1, left + 20, 3, kFace, "filled middle");
    ExpectSolid(*tb, left + 1, 1, left + 3, 20, kFace, "left of the image");
    ExpectImage(*tb, left, 4, left / 22 + 1, kFace, "normal image shifted");
    tb->MouseUp(1, 0, 100, 10);  // released outside: nothing toggles
  }
}

TEST_F(ToolbarRender, PressedOutsidePopsUpToTheHoverLook) {
  auto tb = Make({Button("A")});
  tb->MouseDown(1, 0, 5, 10);
  tb->MouseMove(1, 0, 5, 30);
  ASSERT_FALSE(tb->Inside());
  ExpectRing(*tb, 0, kHilite, kShadow, "raised again");
  ExpectImage(*tb, 0, 3, 1, kFace, "image back at three");
}

TEST_F(ToolbarRender, CheckedCheckHotNotPressedKeepsTheCheckedLook) {
  auto tb = Make({Check("A", true)});
  tb->MouseMove(0, 0, 5, 10);
  ASSERT_EQ(tb->HotIndex(), 1);
  ExpectRing(*tb, 0, kShadow, kHilite, "sunken outer");
  ExpectSolid(*tb, 1, 1, 20, 3, kHot, "hot background");
  ExpectImage(*tb, 0, 4, 1, kHot, "active image");
}

TEST_F(ToolbarRender, CheckedCheckPressedInsideIsSunkenFilledWithTheNormalImage) {
  auto tb = Make({Check("A", true)});
  tb->MouseDown(1, 0, 5, 10);
  ExpectRing(*tb, 0, kShadow, kHilite, "sunken outer");
  ExpectSolid(*tb, 1, 1, 20, 3, kFace, "face background");
  ExpectImage(*tb, 0, 4, 1, kFace, "normal image");
}

TEST_F(ToolbarRender, HotDisabledButtonDrawsItsRestingState) {
  auto tb = Make({Disabled(Button("A"))});
  tb->MouseDown(1, 0, 5, 10);
  ASSERT_EQ(tb->HotIndex(), 1);
  EXPECT_EQ(Area(*tb, 0, 0), kFace);
  ExpectDisabled(*tb, 0, 0, 4, "pressed disabled");
}

// ---- mask settings and system colours ----

TEST_F(ToolbarRender, WithoutMaskColourMagentaShowsInEveryState) {
  auto tb = Make({Button("A"), Check("B", true), Button("C")}, 4, false);
  tb->SetUseMaskColor(false);
  host.user_mode = true;
  tb->Resize();
  ExpectImage(*tb, 0, 3, 1, 0xFFFFFFFFu, "resting");
  ExpectImage(*tb, 22, 4, 2, 0xFFFFFFFFu, "checked");
  // The checked background shows only around the image.
  EXPECT_EQ(Area(*tb, 23, 1), kHot);
  EXPECT_EQ(Area(*tb, 25, 10), kHot);
  EXPECT_EQ(Area(*tb, 26, 4), kMagenta);
  tb->MouseMove(0, 0, 50, 10);
  ExpectImage(*tb, 44, 3, 3, 0xFFFFFFFFu, "hover");
  tb->MouseDown(1, 0, 50, 10);
  ExpectImage(*tb, 44, 4, 3, 0xFFFFFFFFu, "pressed");
  for (int x = 0; x < 64; ++x) ASSERT_EQ(Pic(tb->ActivePic(), x, 0), kMagenta);
}

TEST_F(ToolbarRender, SystemColourChangeShowsInHotAndCheckedOnlyAfterTheNextRebuild) {
  auto tb = Make({Check("A", true)}, 4, false);
  platform.raster().SetSysColor(COLOR_BTNHIGHLIGHT, Rgb(0, 0, 64));
  tb->PaintButtons();
  EXPECT_EQ(Area(*tb, 1, 1), kHot);
  EXPECT_EQ(Area(*tb, 4, 4), kHot);
  tb->SetMaskColor(0x00FF00FF);  // a rebuild
  // (0 + 192) / 2 = 96, (0 + 192) / 2 = 96, (64 + 192) / 2 = 128
  EXPECT_EQ(tb->HotColor(), Rgb(96, 96, 128));
  EXPECT_EQ(Area(*tb, 1, 1), Rgb(96, 96, 128));
  EXPECT_EQ(Area(*tb, 4, 4), Rgb(96, 96, 128));
}

// ---- visibility and redraw extent ----

TEST_F(ToolbarRender, InvisibleToolbarPaintsNothingEvenWhenEnabledChanges) {
  auto tb = Make({Button("A"), Check("B")});
  host.visible = false;
  Blacken(*tb);
  Image before = AreaImage(*tb);
  std::uint64_t writes = platform.raster().PixelWrites();
  tb->SetEnabled("A", false);
  tb->SetValue("B", true);
  tb->PaintButtons();
  tb->DrawButton(1);
  tb->MouseMove(0, 0, 5, 5);
  EXPECT_EQ(platform.raster().PixelWrites(), writes);
  EXPECT_EQ(AreaImage(*tb), before);
  host.visible = true;
  tb->PaintButtons();
  ExpectDisabled(*tb, 0, 0, 4, "shown once visible");
}

TEST_F(ToolbarRender, HoverChangeRedrawsOnlyTheTwoCellsConcerned) {
  // Eight buttons without tips (no tool tip is drawn).
  auto tb = Make({Button("A"), Button("B"), Button("C"), Button("D"), Button("E"), Button("F"), Button("G"),
                  Button("H")},
                 8, true, ktInternetExplorer, 300);
  tb->MouseMove(0, 0, 5, 10);  // button 1 hot
  Image before = AreaImage(*tb);
  std::uint64_t w0 = platform.raster().PixelWrites();
  tb->MouseMove(0, 0, 30, 10);  // onto button 2
  std::uint64_t change = platform.raster().PixelWrites() - w0;
  Image after = AreaImage(*tb);
  for (int y = 0; y < after.height; ++y)
    for (int x = 44; x < after.width; ++x) ASSERT_EQ(after.At(x, y), before.At(x, y)) << x << "," << y;
  // The same two cells drawn again in their new states write as many pixels.
  w0 = platform.raster().PixelWrites();
  tb->DrawButton(1);
  tb->DrawButton(2);
  std::uint64_t two_cells = platform.raster().PixelWrites() - w0;
  EXPECT_EQ(change, two_cells);
  w0 = platform.raster().PixelWrites();
  tb->PaintButtons();
  std::uint64_t full = platform.raster().PixelWrites() - w0;
  EXPECT_LT(change * 3, full);
}
