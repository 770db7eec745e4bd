// KorvelToolbar: hot tracking, pressing, events, capture and the tool tip, checked
// transition by transition with the platform calls and events in one ordered log.
#include <cstdio>

#include "tests/unit/toolbar_test_fixture.h"

using namespace toolbar_test;

namespace {

class ToolbarMouse : public ToolbarTest {
 protected:
  // A, B (check, tip "Bold"), separator, C (disabled), D (empty tip); A's tip is
  // "Open file" (9 characters: 45 x 13 pixels in the metrics font).
  std::unique_ptr<KorvelToolbar> MakeBar() {
    platform.headless_user().cursor = Point{100, 200};
    auto tb = Make({Button("A", "Open file"), Check("B", false, "Bold"), Separator(),
                    Disabled(Button("C", "Cut")), Button("D", "")});
    InterleaveEvents();
    return tb;
  }
  // The calls ShowToolTip makes for a tip of the given extent at the scripted cursor.
  Strings TipCalls(KorvelToolbar& tb, int width, int height) {
    std::string tip = N(tb.ToolTip().hWnd());
    return {"SetParent(" + tip + ", 0)", "GetCursorPos()", "GetWindowLongA(" + tip + ", -20)",
            "SetWindowLongA(" + tip + ", -20, 0x88)",
            "SetWindowPos(" + tip + ", 0, 100, 232, " + std::to_string(width) + ", " + std::to_string(height) +
                ", 0x10)"};
  }
  static Strings Join(Strings a, const Strings& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
  }
  std::string Capture(KorvelToolbar& tb) { return "SetCapture(" + N(tb.ButtonArea().hWnd()) + ")"; }
};

}  // namespace

// ---- hovering ----

TEST_F(ToolbarMouse, EnteringAButtonShowsItsTipRaisesHoverAndTakesCapture) {
  auto tb = MakeBar();
  tb->MouseMove(0, 0, 5, 10);
  EXPECT_EQ(Calls(), Join(TipCalls(*tb, 50, 18), {"event Hover(\"A\", \"Open file\")", Capture(*tb)}));
  EXPECT_EQ(tb->HotIndex(), 1);
  EXPECT_TRUE(tb->Inside());
  EXPECT_FALSE(tb->Pressing());
  EXPECT_TRUE(tb->ToolTip().Visible());
  // Moving within the same button changes nothing.
  tb->MouseMove(0, 0, 20, 3);
  EXPECT_TRUE(Calls().empty());
  EXPECT_EQ(host.events.size(), 1u);
}

TEST_F(ToolbarMouse, MovingStraightOntoAnAdjacentButtonRaisesOneHoverWithTheNewKey) {
  auto tb = MakeBar();
  tb->MouseMove(0, 0, 5, 10);
  Calls();
  host.ClearRecords();
  tb->MouseMove(0, 0, 22, 10);
  EXPECT_EQ(Calls(), Join(Join({"ReleaseCapture()"}, TipCalls(*tb, 25, 18)),
                          {"event Hover(\"B\", \"Bold\")", Capture(*tb)}));
  EXPECT_EQ(Events(), (Strings{"Hover(\"B\", \"Bold\")"}));
  EXPECT_EQ(tb->HotIndex(), 2);
}

TEST_F(ToolbarMouse, MovingFromAButtonOntoASeparatorRaisesEmptyHover) {
  auto tb = MakeBar();
  tb->MouseMove(0, 0, 30, 10);
  Calls();
  host.ClearRecords();
  tb->MouseMove(0, 0, 44, 10);  // the separator's first column
  EXPECT_EQ(Calls(), (Strings{"event Hover(\"\", \"\")", "ReleaseCapture()"}));
  EXPECT_EQ(tb->HotIndex(), 0);
  EXPECT_FALSE(tb->Inside());
  EXPECT_FALSE(tb->ToolTip().Visible());
  // The button is back in its resting look.
  EXPECT_EQ(Area(*tb, 22, 0), kFace);
}

TEST_F(ToolbarMouse, LeavingBelowTheButtonsRaisesEmptyHover) {
  auto tb = MakeBar();
  tb->MouseMove(0, 0, 5, 10);
  host.ClearRecords();
  tb->MouseMove(0, 0, 5, 22);  // one row below the button (captured pointer)
  EXPECT_EQ(Events(), (Strings{"Hover(\"\", \"\")"}));
  tb->MouseMove(0, 0, 5, -1);  // nothing hot: entering again needs no vertical test
  EXPECT_EQ(Events(), (Strings{"Hover(\"\", \"\")", "Hover(\"A\", \"Open file\")"}));
}

TEST_F(ToolbarMouse, EmptyToolTipTextShowsNoTipButHoverIsRaisedWithEmptyText) {
  auto tb = MakeBar();
  tb->MouseMove(0, 0, 5 + 52 + 22, 10);  // D at 74
  EXPECT_EQ(tb->HotIndex(), 5);
  EXPECT_EQ(Calls(), (Strings{"event Hover(\"D\", \"\")", Capture(*tb)}));
  EXPECT_FALSE(tb->ToolTip().Visible());
}

TEST_F(ToolbarMouse, HoverOnADisabledButtonIsRaisedToo) {
  auto tb = MakeBar();
  tb->MouseMove(0, 0, 60, 10);
  EXPECT_EQ(Events(), (Strings{"Hover(\"C\", \"Cut\")"}));
  EXPECT_EQ(tb->HotIndex(), 4);
}

TEST_F(ToolbarMouse, MouseXIsRoundedHalfToEvenBeforeHitTesting) {
  auto tb = MakeBar();
  tb->MouseMove(0, 0, 21.5f, 10);  // 22: button B
  EXPECT_EQ(tb->HotIndex(), 2);
  auto tb2 = MakeBar();
  tb2->MouseMove(0, 0, 20.5f, 10);  // 20: button A
  EXPECT_EQ(tb2->HotIndex(), 1);
}

// ---- pressing and clicking ----

TEST_F(ToolbarMouse, PressAndReleaseInsideClicksWithTheLowerLeftCorner) {
  auto tb = MakeBar();
  tb->MouseMove(0, 0, 30, 10);
  Calls();
  host.ClearRecords();
  tb->MouseDown(1, 0, 30, 10);
  EXPECT_TRUE(Calls().empty());  // no event and no capture call on press
  EXPECT_TRUE(tb->Pressing());
  tb->ButtonArea().SetToolTipText("stale");
  tb->MouseUp(1, 0, 30, 10);
  // X = area left 9 + ButtonLeft 22, Y = area top 3 + button height 22.
  EXPECT_EQ(Calls(), (Strings{"event Click(\"B\", 31, 25)", "ReleaseCapture()", "event Hover(\"\", \"\")"}));
  EXPECT_TRUE(tb->ValueAt(2));
  EXPECT_EQ(tb->HotIndex(), 0);
  EXPECT_FALSE(tb->Inside());
  EXPECT_FALSE(tb->Pressing());
  EXPECT_EQ(tb->ButtonArea().ToolTipText(), "");
  EXPECT_FALSE(tb->ToolTip().Visible());
}

TEST_F(ToolbarMouse, PressDragOffDragBackReleaseClicksOnceAndTogglesOnce) {
  auto tb = MakeBar();
  tb->MouseDown(1, 0, 30, 10);
  tb->MouseMove(1, 0, 50, 10);
  EXPECT_FALSE(tb->Inside());
  tb->MouseMove(1, 0, 51, 10);  // still outside: nothing redrawn
  tb->MouseMove(1, 0, 30, 10);
  EXPECT_TRUE(tb->Inside());
  tb->MouseUp(1, 0, 30, 10);
  EXPECT_EQ(Events(), (Strings{"Click(\"B\", 31, 25)", "Hover(\"\", \"\")"}));
  EXPECT_TRUE(tb->ValueAt(2));
  EXPECT_TRUE(tb->Value("B"));
}

TEST_F(ToolbarMouse, PressDragOffReleaseGivesNoClickNoToggleAndEmptyHover) {
  auto tb = MakeBar();
  tb->MouseDown(1, 0, 30, 10);
  tb->MouseMove(1, 0, 30, 40);  // below the button
  EXPECT_FALSE(tb->Inside());
  Calls();
  tb->MouseUp(1, 0, 30, 40);
  EXPECT_EQ(Calls(), (Strings{"ReleaseCapture()", "event Hover(\"\", \"\")"}));
  EXPECT_FALSE(tb->ValueAt(2));
}

TEST_F(ToolbarMouse, DraggingOffAndBackRedrawsThePressedButton) {
  auto tb = MakeBar();
  tb->MouseDown(1, 0, 5, 10);
  EXPECT_EQ(Area(*tb, 0, 0), kShadow);  // sunken
  tb->MouseMove(1, 0, 5, 30);
  EXPECT_EQ(Area(*tb, 0, 0), kHilite);  // popped up
  tb->MouseMove(1, 0, 5, 10);
  EXPECT_EQ(Area(*tb, 0, 0), kShadow);
}

TEST_F(ToolbarMouse, DisabledButtonCanBePressedButNeverClicks) {
  auto tb = MakeBar();
  Apply(*tb, {Disabled(Check("X", false, "t"))});
  host.user_mode = true;
  tb->MouseDown(1, 0, 5, 10);
  EXPECT_TRUE(tb->Pressing());
  tb->MouseUp(1, 0, 5, 10);
  EXPECT_EQ(Events(), (Strings{"Hover(\"\", \"\")"}));
  EXPECT_FALSE(tb->ValueAt(1));
}

TEST_F(ToolbarMouse, LeftPressOnASeparatorOrPlaceholderDoesNothing) {
  auto tb = MakeBar();
  tb->MouseDown(1, 0, 46, 10);
  tb->MouseDown(1, 0, 150, 10);
  EXPECT_FALSE(tb->Pressing());
  tb->MouseUp(1, 0, 46, 10);
  EXPECT_TRUE(Calls().empty());
}

TEST_F(ToolbarMouse, MouseUpWithoutAPressDoesNothing) {
  auto tb = MakeBar();
  tb->MouseMove(0, 0, 5, 10);
  Calls();
  tb->MouseUp(1, 0, 5, 10);
  tb->MouseUp(2, 0, 5, 10);
  EXPECT_TRUE(Calls().empty());
  EXPECT_EQ(tb->HotIndex(), 1);
}

TEST_F(ToolbarMouse, ClickCoordinatesFollowTheBorderStyle) {
  struct Case {
    std::int32_t border;
    int x, y;
  };
  // The second button sits after a separator: ButtonLeft 30.
  for (const Case& c : {Case{ktNoBorder, 30, 22}, Case{ktRaised, 33, 25}, Case{ktBar, 33, 22},
                        Case{ktInternetExplorer, 39, 25}}) {
    auto tb = Make({Button("A"), Separator(), Button("Go")}, 4, true, c.border);
    tb->MouseDown(1, 0, 35, 10);
    tb->MouseUp(1, 0, 35, 10);
    tb->MouseDown(2, 0, 35, 10);
    std::string click = "Click(\"Go\", " + std::to_string(c.x) + ", " + std::to_string(c.y) + ")";
    std::string right = "RightClick(\"Go\", " + std::to_string(c.x) + ", " + std::to_string(c.y) + ")";
    EXPECT_EQ(Events(), (Strings{click, "Hover(\"\", \"\")", right})) << c.border;
  }
}

// ---- right button ----

TEST_F(ToolbarMouse, RightClickOnAHoveredButtonTakesCaptureAndEndsIdleWithInsideSet) {
  auto tb = MakeBar();
  tb->MouseMove(0, 0, 5, 10);
  Calls();
  tb->MouseDown(2, 0, 5, 10);
  EXPECT_EQ(Calls(), (Strings{Capture(*tb), "event RightClick(\"A\", 9, 25)"}));
  EXPECT_EQ(tb->HotIndex(), 0);
  EXPECT_TRUE(tb->Inside());
  EXPECT_FALSE(tb->Pressing());
  EXPECT_EQ(Area(*tb, 0, 0), kFace);  // resting look
  // The next move enters the button again.
  tb->MouseMove(0, 0, 6, 10);
  EXPECT_EQ(tb->HotIndex(), 1);
  EXPECT_EQ(Events(), (Strings{"Hover(\"A\", \"Open file\")", "RightClick(\"A\", 9, 25)", "Hover(\"A\", \"Open file\")"}));
}

TEST_F(ToolbarMouse, RightClickWithNothingHotReleasesCapture) {
  auto tb = MakeBar();
  tb->MouseDown(2, 0, 30, 10);
  EXPECT_EQ(Calls(), (Strings{"ReleaseCapture()", "event RightClick(\"B\", 31, 25)"}));
  // The middle button is not the left button either.
  tb->MouseDown(4, 0, 30, 10);
  EXPECT_EQ(Calls(), (Strings{Capture(*tb), "event RightClick(\"B\", 31, 25)"}));
}

TEST_F(ToolbarMouse, RightClickOnADisabledButtonRaisesNothingButClearsTheHotState) {
  auto tb = MakeBar();
  tb->MouseMove(0, 0, 60, 10);
  ASSERT_EQ(tb->HotIndex(), 4);
  host.ClearRecords();
  tb->MouseDown(2, 0, 60, 10);
  EXPECT_TRUE(host.events.empty());
  EXPECT_EQ(tb->HotIndex(), 0);
  EXPECT_TRUE(tb->Inside());
}

TEST_F(ToolbarMouse, RightPressOnASeparatorDoesNothing) {
  auto tb = MakeBar();
  tb->MouseDown(2, 0, 46, 10);
  EXPECT_TRUE(Calls().empty());
}

TEST_F(ToolbarMouse, RightPressDuringALeftPressCancelsThePress) {
  auto tb = MakeBar();
  tb->MouseDown(1, 0, 30, 10);
  tb->MouseDown(2, 0, 30, 10);
  EXPECT_FALSE(tb->Pressing());
  tb->MouseUp(1, 0, 30, 10);
  EXPECT_EQ(Events(), (Strings{"RightClick(\"B\", 31, 25)"}));
  EXPECT_FALSE(tb->ValueAt(2));
}

// ---- the tool tip ----

TEST_F(ToolbarMouse, ToolTipIsATopLevelToolWindow32PixelsBelowThePointer) {
  LOGFONTA lf;
  std::snprintf(lf.lfFaceName, sizeof lf.lfFaceName, "%s", "Tahoma");
  lf.lfWeight = 700;
  lf.lfItalic = 1;
  platform.headless_user().message_font = lf;
  auto tb = MakeBar();
  EXPECT_EQ(tb->ToolTipFont()->Name(), "Tahoma");
  EXPECT_TRUE(tb->ToolTipFont()->Italic());
  EXPECT_EQ(tb->ToolTipFont()->Weight(), 700);
  tb->MouseMove(0, 0, 5, 10);
  HeadlessWindow* w = platform.headless_user().Window(tb->ToolTip().hWnd());
  ASSERT_NE(w, nullptr);
  EXPECT_EQ(w->parent, 0u);
  EXPECT_EQ(w->ex_style & 0x88u, 0x88u);
  EXPECT_EQ(w->rect, (Rect{100, 232, 150, 250}));
  EXPECT_TRUE(w->visible);
  Surface& tip = tb->ToolTip();
  EXPECT_EQ(tip.Width(), 50);
  EXPECT_EQ(tip.Height(), 18);
  // The raised outer edge: light at the top left, dark shadow at the bottom right.
  EXPECT_EQ(Pic(tip, 0, 0), Sys(COLOR_3DLIGHT));
  EXPECT_EQ(Pic(tip, 49, 17), Sys(COLOR_3DDKSHADOW));
  EXPECT_EQ(Pic(tip, 1, 1), kFace);
  // Some of the text is drawn from (2, 2).
  int ink = 0;
  for (int y = 2; y < 16; ++y)
    for (int x = 2; x < 48; ++x) ink += Pic(tip, x, y) != kFace;
  EXPECT_GT(ink, 0);
  // Leaving hides it.
  tb->MouseMove(0, 0, 46, 10);
  EXPECT_FALSE(tip.Visible());
}

TEST_F(ToolbarMouse, ToolTipExtendedStyleKeepsItsOtherBits) {
  auto tb = MakeBar();
  platform.headless_user().Window(tb->ToolTip().hWnd())->ex_style = 0x100;
  tb->MouseMove(0, 0, 5, 10);
  auto calls = platform.log().Matching("SetWindowLongA(");
  ASSERT_EQ(calls.size(), 1u);
  EXPECT_EQ(calls[0], "SetWindowLongA(" + N(tb->ToolTip().hWnd()) + ", -20, 0x188)");
}

TEST_F(ToolbarMouse, ClickHandlerSeesTheRedrawnState) {
  auto tb = MakeBar();
  bool seen = false;
  host.on_event = [&](RecordedEvent& e) {
    if (e.name == "Click") seen = tb->Value("B") && Area(*tb, 23, 1) == kHot;
  };
  tb->MouseDown(1, 0, 30, 10);
  tb->MouseUp(1, 0, 30, 10);
  EXPECT_TRUE(seen);
}
