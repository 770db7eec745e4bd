// Late binding: every member of the four controls' dispatch interfaces reached by
// its type-library name (in any case), values round trip through variants, wrong
// argument types raise 13, unknown names and kinds 438, argument counts 449/450.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "controls/bar/bar.h"
#include "controls/divider/divider.h"
#include "controls/link/link.h"
#include "controls/minislider/minislider.h"
#include "framework/errors.h"
#include "platform/headless/headless_host.h"
#include "platform/headless/headless_platform.h"

using namespace korvel;
using namespace korvel::headless;

namespace {

class Automation : public ::testing::Test {
 protected:
  Variant Get(Control& c, const std::string& name) {
    std::vector<Variant> args;
    return c.Invoke(name, InvokeKind::PropertyGet, args);
  }
  void Put(Control& c, const std::string& name, Variant v) {
    std::vector<Variant> args{std::move(v)};
    Variant r = c.Invoke(name, InvokeKind::PropertyPut, args);
    EXPECT_TRUE(r.IsEmpty());
  }
  void PutRef(Control& c, const std::string& name, Variant v) {
    std::vector<Variant> args{std::move(v)};
    Variant r = c.Invoke(name, InvokeKind::PropertyPutRef, args);
    EXPECT_TRUE(r.IsEmpty());
  }
  // The error number a call raises, or 0.
  static int ErrorOf(const std::function<void()>& f) {
    try {
      f();
    } catch (const RuntimeError& e) {
      return e.Number();
    }
    return 0;
  }
  int ErrorOfCall(Control& c, const std::string& name, InvokeKind kind, std::vector<Variant> args) {
    return ErrorOf([&] { c.Invoke(name, kind, args); });
  }
  // AboutBox by name shows one fresh About form per call.
  void ExpectAboutBox(Control& c) {
    host.modal_forms.clear();
    std::vector<Variant> none;
    EXPECT_TRUE(c.Invoke("AboutBox", InvokeKind::Method, none).IsEmpty());
    EXPECT_TRUE(c.Invoke("aboutbox", InvokeKind::Method, none).IsEmpty());
    EXPECT_EQ(host.modal_forms, (std::vector<std::string>{"About KorvelUI99...", "About KorvelUI99..."}));
  }

  HeadlessPlatform platform;
  HeadlessHost host{platform};
};

// ---- KorvelLink ----

TEST_F(Automation, LinkEveryMemberByName) {
  KorvelLink link{host, platform};
  host.PlaceNew(link, 140, 20);
  host.ClearRecords();

  Put(link, "Caption", "Home page");
  EXPECT_EQ(link.Caption(), "Home page");
  EXPECT_EQ(Get(link, "caption").ToString(), "Home page");
  EXPECT_EQ(Get(link, "Caption").Type(), VarType::String);

  Put(link, "URL", "  http://example.test/  ");
  EXPECT_EQ(Get(link, "url").ToString(), "http://example.test/");  // trimmed by the property

  Put(link, "Enabled", false);
  EXPECT_EQ(Get(link, "Enabled").Type(), VarType::Boolean);
  EXPECT_FALSE(Get(link, "ENABLED").ToBool());
  Put(link, "Enabled", Variant::Integer(-1));
  EXPECT_TRUE(link.Enabled());

  Put(link, "ForeColor", Variant::Color(0x000000FF));
  EXPECT_EQ(Get(link, "ForeColor").ToColor(), 0x000000FFu);
  EXPECT_EQ(Get(link, "ForeColor").Type(), VarType::Long);
  Put(link, "BackColor", Variant::Color(0x80000005));
  EXPECT_EQ(Get(link, "backcolor").ToColor(), 0x80000005u);
  Put(link, "HoverColor", Variant::Long(0x00FF00));
  EXPECT_EQ(Get(link, "HoverColor").ToColor(), 0x00FF00u);

  auto font = std::make_shared<Font>("Arial", 10);
  PutRef(link, "Font", Variant::Object(font));
  EXPECT_EQ(link.Font(), font);
  EXPECT_EQ(Get(link, "Font").ToFont(), font);  // the same object, by reference

  EXPECT_EQ(host.property_changes, (std::vector<std::string>{"Caption", "URL", "Enabled", "Enabled", "ForeColor",
                                                             "BackColor", "HoverColor", "Font"}));
  ExpectAboutBox(link);
}

TEST_F(Automation, LinkWrongTypesAndUnknownMembers) {
  KorvelLink link{host, platform};
  host.PlaceNew(link, 140, 20);
  EXPECT_EQ(ErrorOfCall(link, "ForeColor", InvokeKind::PropertyPut, {Variant("red")}), 13);
  EXPECT_EQ(ErrorOfCall(link, "Enabled", InvokeKind::PropertyPut, {Variant("maybe")}), 13);
  EXPECT_EQ(ErrorOfCall(link, "Font", InvokeKind::PropertyPutRef, {Variant("Arial")}), 13);
  EXPECT_EQ(ErrorOfCall(link, "Font", InvokeKind::PropertyPutRef, {Variant::Object(std::make_shared<Picture>(
                                                                      PictureType::Bitmap, Image{}))}),
            13);
  // A font is assigned by reference only; a caption is a value.
  EXPECT_EQ(ErrorOfCall(link, "Font", InvokeKind::PropertyPut, {Variant::Object(std::make_shared<Font>())}), 438);
  EXPECT_EQ(ErrorOfCall(link, "Caption", InvokeKind::PropertyPutRef, {Variant("x")}), 438);
  EXPECT_EQ(ErrorOfCall(link, "Click", InvokeKind::Method, {}), 438);  // an event, not a member
  EXPECT_EQ(ErrorOfCall(link, "Navigate", InvokeKind::Method, {}), 438);
  EXPECT_EQ(ErrorOfCall(link, "Caption", InvokeKind::PropertyPut, {}), 449);
  EXPECT_EQ(ErrorOfCall(link, "Caption", InvokeKind::PropertyGet, {Variant("1")}), 450);
  EXPECT_EQ(ErrorOfCall(link, "AboutBox", InvokeKind::Method, {Variant(1)}), 450);
  // Numbers convert to a caption, text to a colour where it is numeric.
  Put(link, "Caption", Variant::Integer(42));
  EXPECT_EQ(link.Caption(), "42");
  Put(link, "ForeColor", "&HFF&");
  EXPECT_EQ(link.ForeColor(), 0xFFu);
}

// ---- KorvelDivider ----

TEST_F(Automation, DividerEveryMemberByName) {
  KorvelDivider divider{host, platform};
  host.PlaceNew(divider, 200, 20);
  host.ClearRecords();

  Put(divider, "Caption", "General");
  EXPECT_EQ(Get(divider, "Caption").ToString(), "General");
  EXPECT_EQ(Get(divider, "Default_").ToString(), "General");
  Put(divider, "default_", "Options");
  EXPECT_EQ(divider.Caption(), "Options");
  EXPECT_EQ(Get(divider, "CAPTION").ToString(), "Options");

  auto font = std::make_shared<Font>("Arial", 12);
  PutRef(divider, "Font", Variant::Object(font));
  EXPECT_EQ(Get(divider, "Font").ToFont(), font);
  EXPECT_EQ(divider.UserControl().Font(), font);
  EXPECT_EQ(host.property_changes, (std::vector<std::string>{"Caption", "Caption", "Font"}));

  EXPECT_EQ(ErrorOfCall(divider, "Font", InvokeKind::PropertyPutRef, {Variant(3)}), 13);
  EXPECT_EQ(ErrorOfCall(divider, "Value", InvokeKind::PropertyGet, {}), 438);
  EXPECT_EQ(ErrorOfCall(divider, "Caption", InvokeKind::Method, {}), 438);
  ExpectAboutBox(divider);
}

// ---- KorvelBar ----

TEST_F(Automation, BarEveryMemberByName) {
  KorvelBar bar{host, platform};
  bar.Initialize();
  host.PlaceNew(bar, 100, 12);
  host.ClearRecords();

  EXPECT_EQ(Get(bar, "Value").Type(), VarType::Integer);
  EXPECT_EQ(Get(bar, "Value").ToInteger(), 0);
  Put(bar, "Value", Variant::Integer(37));
  EXPECT_EQ(Get(bar, "value").ToInteger(), 37);
  Put(bar, "Value", Variant::Long(250));  // clamped by the property
  EXPECT_EQ(Get(bar, "Value").ToInteger(), 100);
  Put(bar, "Value", "12");
  EXPECT_EQ(bar.Value(), 12);
  EXPECT_EQ(host.property_changes, (std::vector<std::string>{"Value", "Value", "Value"}));

  EXPECT_EQ(ErrorOfCall(bar, "Value", InvokeKind::PropertyPut, {Variant("twelve")}), 13);
  EXPECT_EQ(ErrorOfCall(bar, "Value", InvokeKind::PropertyPut, {Variant::Long(40000)}), 6);  // a 16-bit value
  EXPECT_EQ(bar.Value(), 12);
  EXPECT_EQ(ErrorOfCall(bar, "Min", InvokeKind::PropertyGet, {}), 438);
  ExpectAboutBox(bar);
}

// ---- KorvelMiniSlider ----

TEST_F(Automation, MiniSliderEveryMemberByName) {
  KorvelMiniSlider slider{host, platform};
  host.PlaceNew(slider, 160, 12);
  host.ClearRecords();

  Put(slider, "Max", Variant::Long(500));
  EXPECT_EQ(Get(slider, "max").ToLong(), 500);
  EXPECT_EQ(Get(slider, "Max").Type(), VarType::Long);
  Put(slider, "Min", Variant::Long(-20));
  EXPECT_EQ(Get(slider, "Min").ToLong(), -20);
  Put(slider, "Value", Variant::Long(300));
  EXPECT_EQ(Get(slider, "Value").ToLong(), 300);
  Put(slider, "Value", Variant::Long(9999));  // clamped to Max
  EXPECT_EQ(Get(slider, "VALUE").ToLong(), 500);
  Put(slider, "ForeColor", Variant::Color(0x000080));
  EXPECT_EQ(Get(slider, "ForeColor").ToColor(), 0x000080u);
  Put(slider, "BackColor", Variant::Color(0x80000005));
  EXPECT_EQ(Get(slider, "BackColor").ToColor(), 0x80000005u);
  EXPECT_TRUE(Get(slider, "Enabled").ToBool());
  EXPECT_EQ(Get(slider, "Enabled").Type(), VarType::Boolean);
  Put(slider, "Enabled", false);  // marks the change, keeps the flag
  EXPECT_TRUE(Get(slider, "Enabled").ToBool());

  EXPECT_EQ(host.property_changes,
            (std::vector<std::string>{"Max", "Min", "Value", "Value", "ForeColor", "BackColor", "Enabled"}));
  ASSERT_EQ(host.events.size(), 2u);
  EXPECT_EQ(host.events[0].name, "Change");
  EXPECT_EQ(host.events[0].args, (std::vector<Variant>{Variant::Long(300)}));
  EXPECT_EQ(host.events[1].args, (std::vector<Variant>{Variant::Long(500)}));

  EXPECT_EQ(ErrorOfCall(slider, "Value", InvokeKind::PropertyPut, {Variant("lots")}), 13);
  EXPECT_EQ(ErrorOfCall(slider, "BackColor", InvokeKind::PropertyPut, {Variant::Object(std::make_shared<Font>())}), 13);
  EXPECT_EQ(ErrorOfCall(slider, "Caption", InvokeKind::PropertyGet, {}), 438);
  EXPECT_EQ(ErrorOfCall(slider, "Value", InvokeKind::PropertyPutRef, {Variant::Long(1)}), 438);
  EXPECT_EQ(slider.Value(), 500);
  ExpectAboutBox(slider);
}

}  // namespace
