// KorvelMiniSlider: properties, events, paint, mouse and persistence.
#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "controls/minislider/minislider.h"
#include "platform/headless/headless_host.h"
#include "platform/headless/headless_platform.h"

using namespace korvel;
using namespace korvel::headless;

namespace {

constexpr ColorRef kNavy = Rgb(0, 0, 128);      // 0x8000000D, the default bar colour
constexpr ColorRef kWindow = Rgb(255, 255, 255); // 0x80000005, the default background
constexpr ColorRef kOutline = Rgb(0, 0, 0);

class MiniSlider : public ::testing::Test {
 protected:
  std::unique_ptr<KorvelMiniSlider> Place(int w = 160, int h = 12) {
    auto s = std::make_unique<KorvelMiniSlider>(host, platform);
    host.PlaceNew(*s, w, h);
    host.ClearRecords();
    return s;
  }
  std::unique_ptr<KorvelMiniSlider> Load(const PropertyBag& bag, int w = 160, int h = 12) {
    auto s = std::make_unique<KorvelMiniSlider>(host, platform);
    host.Load(*s, bag, w, h);
    return s;
  }
  ColorRef Px(KorvelMiniSlider& s, int x, int y) { return platform.raster().GetPixel(s.UserControl().hDC(), x, y); }
  int Refreshes(KorvelMiniSlider& s) { return platform.refreshes[s.UserControl().hWnd()]; }
  // Events as Name(argument), checking that each argument is a 32-bit integer.
  std::vector<std::string> Events() {
    std::vector<std::string> out;
    for (const auto& e : host.events) {
      std::string s = e.name + "(";
      for (std::size_t i = 0; i < e.args.size(); ++i) {
        EXPECT_EQ(e.args[i].Type(), VarType::Long) << e.name;
        s += (i ? ", " : "") + std::to_string(e.args[i].ToLong());
      }
      out.push_back(s + ")");
    }
    return out;
  }
  using Names = std::vector<std::string>;

  HeadlessPlatform platform;
  HeadlessHost host{platform};
};

}  // namespace

// ---- new instance ----

TEST_F(MiniSlider, NewInstanceDefaults) {
  KorvelMiniSlider s(host, platform);
  host.PlaceNew(s, 160, 12);
  EXPECT_EQ(s.Value(), 0);
  EXPECT_EQ(s.Min(), 0);
  EXPECT_EQ(s.Max(), 100);
  EXPECT_EQ(s.ForeColor(), 0x8000000Du);
  EXPECT_EQ(s.BackColor(), 0x80000005u);
  EXPECT_TRUE(s.Enabled());
  EXPECT_EQ(s.PixelWidth(), 160);
  EXPECT_EQ(s.PixelHeight(), 12);
  EXPECT_EQ(s.Scale(), 158.0f / 100.0f);
  EXPECT_TRUE(host.events.empty());
  EXPECT_TRUE(host.property_changes.empty());
}

TEST_F(MiniSlider, InitPropertiesDoesNotRecomputeTheScale) {
  KorvelMiniSlider s(host, platform);
  s.UserControl().Move(0, 0, 160, 12);
  s.InitProperties();
  EXPECT_EQ(s.Scale(), 0.0f);
  EXPECT_EQ(s.PixelWidth(), 0);
  s.Resize();
  EXPECT_EQ(s.Scale(), 1.58f);
}

// ---- paint ----

TEST_F(MiniSlider, PaintAtMinDrawsOnlyTheBackgroundFill) {
  auto s = Place();
  ASSERT_EQ(s->Value(), 0);
  // Background fill from (0 x 1.58 + 1, 1) to (158, 10); the bar fill is skipped.
  for (int x = 1; x <= 158; ++x) EXPECT_EQ(Px(*s, x, 5), kWindow) << x;
  EXPECT_EQ(Px(*s, 1, 1), kWindow);
  EXPECT_EQ(Px(*s, 158, 10), kWindow);
  // The black outline from (0, 0) to (159, 11).
  EXPECT_EQ(Px(*s, 0, 5), kOutline);
  EXPECT_EQ(Px(*s, 159, 5), kOutline);
  EXPECT_EQ(Px(*s, 80, 0), kOutline);
  EXPECT_EQ(Px(*s, 80, 11), kOutline);
  EXPECT_EQ(Px(*s, 0, 0), kOutline);
  EXPECT_EQ(Px(*s, 159, 11), kOutline);
}

TEST_F(MiniSlider, PaintInTheMiddle) {
  auto s = Place();
  s->SetValue(50);
  // 50 x 1.58 = 79: bar fill 1..79, background fill from 80 to 158.
  EXPECT_EQ(Px(*s, 1, 5), kNavy);
  EXPECT_EQ(Px(*s, 79, 1), kNavy);
  EXPECT_EQ(Px(*s, 79, 10), kNavy);
  EXPECT_EQ(Px(*s, 80, 5), kWindow);
  EXPECT_EQ(Px(*s, 158, 5), kWindow);
  EXPECT_EQ(Px(*s, 79, 0), kOutline);
  EXPECT_EQ(Px(*s, 79, 11), kOutline);
}

TEST_F(MiniSlider, PaintBoundaryRoundsTheFloatCorners) {
  auto s = Place();
  s->SetValue(37);
  // 37 x 1.58 = 58.46 -> 58; the background starts at 59.46 -> 59.
  EXPECT_EQ(Px(*s, 58, 5), kNavy);
  EXPECT_EQ(Px(*s, 59, 5), kWindow);
}

TEST_F(MiniSlider, PaintAtMaxDrawsOnlyTheBarFill) {
  auto s = Place();
  s->SetValue(100);
  for (int x = 1; x <= 158; ++x) EXPECT_EQ(Px(*s, x, 5), kNavy) << x;
  EXPECT_EQ(Px(*s, 159, 5), kOutline);
  // Going back down covers the bar with the background from the new boundary.
  s->SetValue(0);
  for (int x = 1; x <= 158; ++x) EXPECT_EQ(Px(*s, x, 5), kWindow) << x;
}

TEST_F(MiniSlider, ShiftedRangePaintsFromMin) {
  auto s = Place();
  s->SetMax(150);
  s->SetMin(50);
  s->SetValue(100);
  // Scale 158 / 100; (100 - 50) x 1.58 = 79.
  EXPECT_EQ(Px(*s, 79, 5), kNavy);
  EXPECT_EQ(Px(*s, 80, 5), kWindow);
}

TEST_F(MiniSlider, MinEqualsMaxGivesZeroScaleFullBarAndNoMouse) {
  auto s = Place();
  s->SetMin(50);
  s->SetMax(50);
  EXPECT_EQ(s->Value(), 50);
  EXPECT_EQ(s->Scale(), 0.0f);
  for (int x = 1; x <= 158; ++x) EXPECT_EQ(Px(*s, x, 5), kNavy) << x;
  EXPECT_EQ(Px(*s, 0, 5), kOutline);
  EXPECT_EQ(Px(*s, 159, 5), kOutline);
  host.ClearRecords();
  s->MouseDown(1, 0, 10, 5);
  s->MouseMove(1, 0, 159, 5);
  s->MouseMove(1, 0, -3, 5);
  EXPECT_TRUE(host.events.empty());
  EXPECT_EQ(s->Value(), 50);
}

TEST_F(MiniSlider, TwoPixelsWideOrLessGivesZeroScale) {
  auto s = Place();
  host.Size(*s, 2, 12);
  EXPECT_EQ(s->PixelWidth(), 2);
  EXPECT_EQ(s->Scale(), 0.0f);
  s->MouseDown(1, 0, 1, 5);
  EXPECT_TRUE(host.events.empty());
  // The outline covers both columns.
  EXPECT_EQ(Px(*s, 0, 5), kOutline);
  EXPECT_EQ(Px(*s, 1, 5), kOutline);
  host.Size(*s, 1, 12);
  EXPECT_EQ(s->Scale(), 0.0f);
  host.Size(*s, 0, 0);
  EXPECT_EQ(s->Scale(), 0.0f);
  host.Size(*s, 3, 12);
  EXPECT_EQ(s->Scale(), 0.01f);
}

TEST_F(MiniSlider, RefreshOnlyWithAutoRedraw) {
  auto s = Place();
  s->SetValue(10);
  EXPECT_EQ(Refreshes(*s), 0);
  s->UserControl().SetAutoRedraw(true);
  s->SetValue(20);
  EXPECT_EQ(Refreshes(*s), 1);
  s->MouseDown(1, 0, 80, 5);
  EXPECT_EQ(Refreshes(*s), 2);
}

TEST_F(MiniSlider, ColoursSetStorePaintAndSignal) {
  auto s = Place();
  s->SetValue(50);
  host.ClearRecords();
  s->SetForeColor(0x0000FF);
  EXPECT_EQ(s->ForeColor(), 0x0000FFu);
  EXPECT_EQ(Px(*s, 10, 5), Rgb(255, 0, 0));
  s->SetBackColor(0x80000010);  // button shadow
  EXPECT_EQ(s->BackColor(), 0x80000010u);
  EXPECT_EQ(Px(*s, 100, 5), Rgb(128, 128, 128));
  EXPECT_EQ(host.property_changes, (Names{"ForeColor", "BackColor"}));
  EXPECT_TRUE(host.events.empty());
}

// ---- Value ----

TEST_F(MiniSlider, ValueBeyondMaxStoresMaxAndRaisesChangeOfMax) {
  auto s = Place();
  s->SetValue(150);
  EXPECT_EQ(s->Value(), 100);
  EXPECT_EQ(Events(), (Names{"Change(100)"}));
  EXPECT_EQ(host.property_changes, (Names{"Value"}));
}

TEST_F(MiniSlider, ValueBelowMinStoresMin) {
  auto s = Place();
  s->SetMin(10);
  host.ClearRecords();
  s->SetValue(-7);
  EXPECT_EQ(s->Value(), 10);
  EXPECT_EQ(Events(), (Names{"Change(10)"}));
}

TEST_F(MiniSlider, SettingValueToItsCurrentValueStillRaisesChange) {
  auto s = Place();
  s->SetValue(40);
  s->SetValue(40);
  EXPECT_EQ(Events(), (Names{"Change(40)", "Change(40)"}));
  EXPECT_EQ(host.property_changes, (Names{"Value", "Value"}));
}

TEST_F(MiniSlider, ValueSetterPaintsThenSignalsThenRaisesChange) {
  auto s = Place();
  std::vector<std::string> seen;
  host.on_event = [&](RecordedEvent& e) {
    seen.push_back(e.name + " value " + std::to_string(s->Value()) + " changes " +
                   std::to_string(host.property_changes.size()) +
                   (Px(*s, 79, 5) == kNavy ? " painted" : " not painted"));
  };
  s->SetValue(50);
  EXPECT_EQ(seen, (Names{"Change value 50 changes 1 painted"}));
}

// ---- Min and Max ----

TEST_F(MiniSlider, MinAboveMaxMovesMaxAndValueUpWithoutChange) {
  auto s = Place();
  s->SetValue(50);
  host.ClearRecords();
  s->SetMin(120);
  EXPECT_EQ(s->Min(), 120);
  EXPECT_EQ(s->Max(), 120);
  EXPECT_EQ(s->Value(), 120);
  EXPECT_EQ(s->Scale(), 0.0f);
  EXPECT_TRUE(host.events.empty());
  EXPECT_EQ(host.property_changes, (Names{"Min"}));
  EXPECT_EQ(Px(*s, 80, 5), kNavy);  // empty range: the full bar
}

TEST_F(MiniSlider, MinPullsValueOnlyWhenBelow) {
  auto s = Place();
  s->SetValue(50);
  host.ClearRecords();
  s->SetMin(20);
  EXPECT_EQ(s->Value(), 50);
  EXPECT_EQ(s->Max(), 100);
  EXPECT_EQ(s->Scale(), 158.0f / 80.0f);
  s->SetMin(60);
  EXPECT_EQ(s->Value(), 60);
  EXPECT_EQ(s->Max(), 100);
  EXPECT_TRUE(host.events.empty());
  EXPECT_EQ(host.property_changes, (Names{"Min", "Min"}));
  // At Min again: only the background fill.
  EXPECT_EQ(Px(*s, 1, 5), kWindow);
}

TEST_F(MiniSlider, MaxBelowMinMovesMinAndValueDownWithoutChange) {
  auto s = Place();
  s->SetValue(50);
  host.ClearRecords();
  s->SetMax(30);
  EXPECT_EQ(s->Value(), 30);
  EXPECT_EQ(s->Min(), 0);
  EXPECT_EQ(s->Scale(), static_cast<float>(158.0 / 30.0));
  EXPECT_EQ(Px(*s, 158, 5), kNavy);  // at Max
  s->SetMax(-10);
  EXPECT_EQ(s->Max(), -10);
  EXPECT_EQ(s->Min(), -10);
  EXPECT_EQ(s->Value(), -10);
  EXPECT_EQ(s->Scale(), 0.0f);
  EXPECT_TRUE(host.events.empty());
  EXPECT_EQ(host.property_changes, (Names{"Max", "Max"}));
}

TEST_F(MiniSlider, ExtremeRangeDoesNotOverflow) {
  auto s = Place();
  s->SetMin(-2147483647 - 1);
  s->SetMax(2147483647);
  EXPECT_GT(s->Scale(), 0.0f);
  s->SetValue(0);
  EXPECT_EQ(s->Value(), 0);
  host.ClearRecords();
  s->MouseDown(1, 0, 159, 5);
  EXPECT_EQ(Events(), (Names{"Click(2147483647)", "Change(2147483647)"}));
  s->MouseMove(1, 0, 0, 5);
  EXPECT_EQ(s->Value(), -2147483647 - 1);
  s->MouseMove(1, 0, 80, 5);
  EXPECT_GT(s->Value(), -2147483647 - 1);
  EXPECT_LT(s->Value(), 2147483647);
}

// ---- Enabled ----

TEST_F(MiniSlider, AssigningEnabledFalseAtRunTimeLeavesTheSliderResponding) {
  auto s = Place();
  s->SetEnabled(false);
  EXPECT_EQ(host.property_changes, (Names{"Enabled"}));
  EXPECT_TRUE(s->Enabled());
  s->MouseDown(1, 0, 80, 5);
  EXPECT_EQ(Events(), (Names{"Click(50)", "Change(50)"}));
  EXPECT_EQ(s->Value(), 50);
}

TEST_F(MiniSlider, AssigningTheSameEnabledSignalsNothing) {
  auto s = Place();
  s->SetEnabled(true);
  EXPECT_TRUE(host.property_changes.empty());
}

TEST_F(MiniSlider, LoadedDisabledSliderIgnoresTheMouseWhateverIsAssigned) {
  PropertyBag bag;
  bag.WriteProperty("Enabled", Variant::Bool(false));
  auto s = Load(bag);
  EXPECT_FALSE(s->Enabled());
  host.ClearRecords();
  s->MouseDown(1, 0, 80, 5);
  EXPECT_TRUE(host.events.empty());
  s->SetEnabled(true);
  EXPECT_EQ(host.property_changes, (Names{"Enabled"}));
  EXPECT_FALSE(s->Enabled());
  s->MouseDown(1, 0, 80, 5);
  EXPECT_TRUE(host.events.empty());
  s->SetEnabled(false);
  EXPECT_EQ(host.property_changes, (Names{"Enabled"}));
}

// ---- mouse ----

TEST_F(MiniSlider, MouseDownRaisesClickThenChangeBeforeStoring) {
  auto s = Place();
  std::vector<std::string> seen;
  host.on_event = [&](RecordedEvent& e) { seen.push_back(e.name + " sees " + std::to_string(s->Value())); };
  s->MouseDown(1, 0, 80, 5);  // 79 / 1.58 = 50
  EXPECT_EQ(Events(), (Names{"Click(50)", "Change(50)"}));
  EXPECT_EQ(seen, (Names{"Click sees 0", "Change sees 0"}));
  EXPECT_EQ(s->Value(), 50);
  EXPECT_TRUE(host.property_changes.empty());
  EXPECT_EQ(Px(*s, 79, 5), kNavy);
  EXPECT_EQ(Px(*s, 80, 5), kWindow);
}

TEST_F(MiniSlider, MovingWithinOneValueStepRaisesNothing) {
  auto s = Place();
  s->MouseDown(1, 0, 80, 5);
  host.ClearRecords();
  s->MouseMove(1, 0, 80.5f, 5);  // 79.5 / 1.58 = 50.3 -> 50
  s->MouseMove(1, 0, 79.5f, 5);  // 78.5 / 1.58 = 49.7 -> 50
  EXPECT_TRUE(host.events.empty());
  s->MouseMove(1, 0, 81, 5);  // 80 / 1.58 = 50.6 -> 51
  EXPECT_EQ(Events(), (Names{"Click(51)", "Change(51)"}));
}

TEST_F(MiniSlider, CandidateRoundsHalfToEven) {
  auto s = Place(102, 12);  // Scale = 100 / 100 = 1
  ASSERT_EQ(s->Scale(), 1.0f);
  s->MouseDown(1, 0, 3.5f, 5);  // 2.5 -> 2
  EXPECT_EQ(s->Value(), 2);
  s->MouseMove(1, 0, 4.5f, 5);  // 3.5 -> 4
  EXPECT_EQ(s->Value(), 4);
  EXPECT_EQ(Events(), (Names{"Click(2)", "Change(2)", "Click(4)", "Change(4)"}));
}

TEST_F(MiniSlider, DraggingLeftOfTheControlGivesMin) {
  auto s = Place();
  s->SetMax(200);
  s->SetMin(-50);
  s->SetValue(75);
  host.ClearRecords();
  s->MouseMove(1, 0, -30, 5);
  EXPECT_EQ(Events(), (Names{"Click(-50)", "Change(-50)"}));
  s->SetValue(75);
  host.ClearRecords();
  s->MouseMove(1, 0, 0, 5);  // X = 0 counts as left of the control
  EXPECT_EQ(Events(), (Names{"Click(-50)", "Change(-50)"}));
}

TEST_F(MiniSlider, DraggingAtOrBeyondTheRightInnerEdgeGivesMax) {
  auto s = Place();
  s->MouseMove(1, 0, 159, 5);  // X = Width - 1
  EXPECT_EQ(Events(), (Names{"Click(100)", "Change(100)"}));
  s->SetValue(10);
  host.ClearRecords();
  s->MouseMove(2, 0, 900, 5);
  EXPECT_EQ(Events(), (Names{"Click(100)", "Change(100)"}));
  // Just inside: (158.9 - 1) / 1.58 = 99.94 -> 100 as well, through the value.
  s->SetValue(10);
  host.ClearRecords();
  s->MouseMove(1, 0, 158.9f, 5);
  EXPECT_EQ(Events(), (Names{"Click(100)", "Change(100)"}));
}

TEST_F(MiniSlider, CandidateBelowMinIsClampedByValue) {
  auto s = Place();
  s->SetValue(50);
  host.ClearRecords();
  s->MouseMove(1, 0, 0.1f, 5);  // (0.1 - 1) / 1.58 = -0.57 -> -1, clamped to Min
  EXPECT_EQ(Events(), (Names{"Click(0)", "Change(0)"}));
  EXPECT_EQ(s->Value(), 0);
}

TEST_F(MiniSlider, MouseWithoutAButtonDoesNothing) {
  auto s = Place();
  s->MouseMove(0, 0, 80, 5);
  s->MouseDown(0, 0, 80, 5);
  s->MouseUp(1, 0, 80, 5);
  EXPECT_TRUE(host.events.empty());
  EXPECT_EQ(s->Value(), 0);
}

TEST_F(MiniSlider, AboutBoxShowsTheAboutForm) {
  auto s = Place();
  s->AboutBox();
  EXPECT_EQ(host.modal_forms, (Names{"About KorvelUI99..."}));
}

// ---- persistence ----

TEST_F(MiniSlider, NewInstanceWritesMaxAndValueOnly) {
  auto s = Place();
  PropertyBag bag;
  s->WriteProperties(bag);
  EXPECT_EQ(bag.Keys(), (Names{"Max", "Value"}));
  EXPECT_EQ(bag.ReadProperty("Max").ToLong(), 100);
  EXPECT_EQ(bag.ReadProperty("Value").ToLong(), 0);
}

TEST_F(MiniSlider, WritesInItsOrder) {
  PropertyBag in;
  in.WriteProperty("Enabled", Variant::Bool(false));
  auto s = Load(in);
  s->SetMin(-5);
  s->SetMax(50);
  s->SetValue(20);
  s->SetForeColor(0x0000FF);
  s->SetBackColor(0x00FF00);
  PropertyBag bag;
  s->WriteProperties(bag);
  EXPECT_EQ(bag.Keys(), (Names{"Enabled", "Min", "Max", "Value", "ForeColor", "BackColor"}));
  EXPECT_EQ(bag.ToText(),
            "Enabled = 0   'False\nMin = &HFFFFFFFB&\nMax = 50&\nValue = 20&\nForeColor = 255&\n"
            "BackColor = 65280&\n");
}

TEST_F(MiniSlider, RoundTripThroughTheTextForm) {
  PropertyBag in;
  in.WriteProperty("Enabled", Variant::Bool(false));
  auto a = Load(in);
  a->SetMax(500);
  a->SetMin(100);
  a->SetValue(250);
  a->SetForeColor(0x80000010);
  PropertyBag saved;
  a->WriteProperties(saved);

  host.ClearRecords();
  auto b = Load(PropertyBag::FromText(saved.ToText()));
  EXPECT_FALSE(b->Enabled());
  EXPECT_EQ(b->Min(), 100);
  EXPECT_EQ(b->Max(), 500);
  EXPECT_EQ(b->Value(), 250);
  EXPECT_EQ(b->ForeColor(), 0x80000010u);
  EXPECT_EQ(b->BackColor(), 0x80000005u);
  // Min, Max and Value go through their setters; loading raises Change once.
  EXPECT_EQ(host.property_changes, (Names{"Min", "Max", "Value"}));
  EXPECT_EQ(Events(), (Names{"Change(250)"}));
  EXPECT_EQ(b->Scale(), 158.0f / 400.0f);
}

TEST_F(MiniSlider, EmptyBagLoadsWithMaxAndValueAtMin) {
  auto s = Load(PropertyBag());
  EXPECT_TRUE(s->Enabled());
  EXPECT_EQ(s->ForeColor(), 0x8000000Du);
  EXPECT_EQ(s->BackColor(), 0x80000005u);
  EXPECT_EQ(s->Min(), 0);
  EXPECT_EQ(s->Max(), 0);  // differs from a new instance's 100
  EXPECT_EQ(s->Value(), 0);
  EXPECT_EQ(s->Scale(), 0.0f);
  EXPECT_EQ(Events(), (Names{"Change(0)"}));
  EXPECT_EQ(Px(*s, 80, 5), kNavy);  // empty range: full bar
}

TEST_F(MiniSlider, BagWithoutMaxLoadsWithMaxEqualToMin) {
  auto s = Load(PropertyBag::FromText("Min = 10\nValue = 3\n"));
  EXPECT_EQ(s->Min(), 10);
  EXPECT_EQ(s->Max(), 10);
  EXPECT_EQ(s->Value(), 10);  // 3 clamped up to Min
  EXPECT_EQ(Events(), (Names{"Change(10)"}));
}

TEST_F(MiniSlider, BagWithoutValueLoadsAtMin) {
  auto s = Load(PropertyBag::FromText("Min = -20\nMax = 40\n"));
  EXPECT_EQ(s->Value(), -20);
  EXPECT_EQ(Events(), (Names{"Change(-20)"}));
}

TEST_F(MiniSlider, LoadAppliesMinThenMaxThenValue) {
  auto s = Load(PropertyBag::FromText("Max = 5\nValue = 7\nMin = 10\n"));
  // Min 10 pulls Max up to 10; Max 5 then pulls Min and Value down to 5.
  EXPECT_EQ(s->Min(), 5);
  EXPECT_EQ(s->Max(), 5);
  EXPECT_EQ(s->Value(), 5);
  EXPECT_EQ(host.property_changes, (Names{"Min", "Max", "Value"}));
  EXPECT_EQ(Events(), (Names{"Change(5)"}));
}

TEST_F(MiniSlider, BagWithWrongTypesAndOutOfRangeValuesFallsBackToDefaults) {
  PropertyBag bag = PropertyBag::FromText(
      "Enabled = \"maybe\"\nForeColor = \"red\"\nBackColor = &H000000FF&\nMin = 7\nMax = \"abc\"\n");
  bag.WriteProperty("Value", Variant::Double(99999999999.0));
  auto s = Load(bag);
  EXPECT_TRUE(s->Enabled());
  EXPECT_EQ(s->ForeColor(), 0x8000000Du);
  EXPECT_EQ(s->BackColor(), 0x000000FFu);  // the good key in between is kept
  EXPECT_EQ(s->Min(), 7);
  EXPECT_EQ(s->Max(), 7);    // "abc": the default, the Min just read
  EXPECT_EQ(s->Value(), 7);  // overflow: the default, the Min just read
  EXPECT_EQ(host.property_changes, (Names{"Min", "Max", "Value"}));
  EXPECT_EQ(Events(), (Names{"Change(7)"}));
}

TEST_F(MiniSlider, BagWithStringNumbersConverts) {
  auto s = Load(PropertyBag::FromText("Min = \"3\"\nMax = \"9\"\nValue = \"4.5\"\n"));
  EXPECT_EQ(s->Min(), 3);
  EXPECT_EQ(s->Max(), 9);
  EXPECT_EQ(s->Value(), 4);  // 4.5 rounds half to even
}
