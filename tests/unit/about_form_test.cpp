// The About form and the AboutBox every control offers.
#include <gtest/gtest.h>

#include "controls/link/link.h"
#include "framework/about_form.h"
#include "framework/control.h"
#include "platform/headless/headless_host.h"
#include "platform/headless/headless_platform.h"

using namespace korvel;
using namespace korvel::headless;

namespace {

// A control with nothing of its own, to reach the shared AboutBox.
class PlainControl : public Control {
 public:
  using Control::Control;
};

}  // namespace

TEST(AboutForm, ContentAfterLoad) {
  HeadlessPlatform p;
  HeadlessHost host(p);
  AboutForm form(host, p);
  EXPECT_EQ(form.Caption(), "About KorvelUI99...");
  EXPECT_EQ(form.VersionLabel.caption, "Version 1.0");
  EXPECT_EQ(form.VisitLabel.caption, "Visit the web site for even more goodies!");
  EXPECT_EQ(form.OKButton.caption, "OK");
  EXPECT_EQ(form.OKButton.name, "OKButton");
  EXPECT_EQ(form.WebLink().URL(), "http://www.korvelui.example/");
  EXPECT_EQ(form.EMailLink().URL(), "mailto:support@korvelui.example");
  EXPECT_EQ(form.EMailLink().GetLinkText(), "support@korvelui.example");
  EXPECT_EQ(form.VersionLabel.font->Name(), "Arial");
  EXPECT_EQ(form.CreditsLabel.font->Name(), "Arial");
  EXPECT_EQ(form.WebLink().Font()->Name(), "Arial");
  EXPECT_NE(form.CreditsLabel.caption.find("free controls"), std::string::npos);
  EXPECT_TRUE(form.Loaded());
}

TEST(AboutForm, LogoIsDrawnAtItsPlace) {
  HeadlessPlatform p;
  HeadlessHost host(p);
  AboutForm form(host, p);
  Image shot = form.surface().Snapshot();
  Image logo = KorvelLogoImage();
  for (int y = 0; y < 48; ++y)
    for (int x = 0; x < 48; ++x) ASSERT_EQ(shot.At(12 + x, 12 + y), logo.At(x, y)) << x << "," << y;
}

TEST(AboutForm, OkButtonUnloadsTheForm) {
  HeadlessPlatform p;
  HeadlessHost host(p);
  AboutForm form(host, p);
  form.MouseDown(1, 0, 150, 200);
  EXPECT_TRUE(form.Loaded());
  form.MouseUp(1, 0, 150, 200);
  EXPECT_FALSE(form.Loaded());
}

TEST(AboutForm, ReleasingOutsideOkKeepsTheFormOpen) {
  HeadlessPlatform p;
  HeadlessHost host(p);
  AboutForm form(host, p);
  form.MouseDown(1, 0, 150, 200);
  form.MouseUp(1, 0, 10, 200);
  EXPECT_TRUE(form.Loaded());
}

TEST(AboutForm, WebLinkOpensTheSite) {
  HeadlessPlatform p;
  HeadlessHost host(p);
  AboutForm form(host, p);
  p.log().Clear();
  form.MouseMove(0, 0, 100, 158);
  EXPECT_TRUE(form.WebLink().Hovering());
  form.MouseUp(1, 0, 100, 158);
  auto shell = p.log().Matching("ShellExecuteA(");
  ASSERT_EQ(shell.size(), 1u);
  EXPECT_EQ(shell[0], "ShellExecuteA(0, \"open\", \"http://www.korvelui.example/\", \"1\", \"1\", 1)");
}

TEST(AboutForm, EMailLinkOpensTheMailtoAddress) {
  HeadlessPlatform p;
  HeadlessHost host(p);
  AboutForm form(host, p);
  p.log().Clear();
  form.MouseMove(0, 0, 100, 176);
  form.MouseUp(1, 0, 100, 176);
  auto shell = p.log().Matching("ShellExecuteA(");
  ASSERT_EQ(shell.size(), 1u);
  EXPECT_EQ(shell[0], "ShellExecuteA(0, \"open\", \"mailto:support@korvelui.example\", \"1\", \"1\", 1)");
}

TEST(AboutBox, ShowsTheFormModallyAndUnloadsIt) {
  HeadlessPlatform p;
  HeadlessHost host(p);
  PlainControl c(host, p);
  bool loaded_while_shown = false;
  host.on_show_modal = [&](Form& f) { loaded_while_shown = f.Loaded(); };
  c.AboutBox();
  EXPECT_EQ(host.modal_forms, (std::vector<std::string>{"About KorvelUI99..."}));
  EXPECT_TRUE(loaded_while_shown);
}

TEST(AboutBox, TwoCallsShowTwoFreshIndependentForms) {
  HeadlessPlatform p;
  HeadlessHost host(p);
  PlainControl c(host, p);
  std::vector<bool> hovering_at_show;
  std::vector<bool> loaded_at_show;
  host.on_show_modal = [&](Form& f) {
    auto& about = static_cast<AboutForm&>(f);
    hovering_at_show.push_back(about.WebLink().Hovering());
    loaded_at_show.push_back(about.Loaded());
    // The user hovers the web link and closes the form with OK.
    about.MouseMove(0, 0, 100, 158);
    about.MouseDown(1, 0, 150, 200);
    about.MouseUp(1, 0, 150, 200);
    EXPECT_FALSE(about.Loaded());
  };
  const std::size_t live_before = p.raster().LiveObjects();
  c.AboutBox();
  c.AboutBox();
  EXPECT_EQ(host.modal_forms.size(), 2u);
  // The second form starts as new: loaded, nothing hovered.
  EXPECT_EQ(hovering_at_show, (std::vector<bool>{false, false}));
  EXPECT_EQ(loaded_at_show, (std::vector<bool>{true, true}));
  // Each form and its links released everything they drew with.
  EXPECT_EQ(p.raster().LiveObjects(), live_before);
}
