// Gallery pictures of the toolbar: every border style, the hot, pressed, checked,
// disabled and design-time looks, separators and placeholders, and the tool tip.
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "controls/toolbar/toolbar.h"
#include "platform/headless/headless_host.h"
#include "tools/gallery.h"

using namespace korvel;
using namespace korvel::headless;

namespace korvel::gallery {

namespace {

constexpr ColorRef kMask = Rgb(255, 0, 255);

// Eight 16 x 16 images on magenta: new page, open folder, disk, scissors, two
// pages (copy), clipboard, a bold B, an italic I and a curved undo arrow.
Image ToolbarStrip() {
  const int n = 9;
  Image img(16 * n, 16, kMask);
  auto box = [&](int cell, int x0, int y0, int x1, int y1, ColorRef c) {
    for (int y = y0; y <= y1; ++y)
      for (int x = x0; x <= x1; ++x) img.At(cell * 16 + x, y) = c;
  };
  auto dot = [&](int cell, int x, int y, ColorRef c) { img.At(cell * 16 + x, y) = c; };
  const ColorRef black = Rgb(0, 0, 0), white = Rgb(255, 255, 255), navy = Rgb(0, 0, 128),
                 olive = Rgb(128, 128, 0), yellow = Rgb(255, 255, 0), grey = Rgb(128, 128, 128),
                 red = Rgb(192, 0, 0), teal = Rgb(0, 128, 128);
  // 0: new page with a folded corner
  box(0, 3, 1, 12, 14, black);
  box(0, 4, 2, 11, 13, white);
  box(0, 9, 1, 12, 4, kMask);
  for (int i = 0; i < 4; ++i) dot(0, 9 + i, 1 + i, black), dot(0, 9, 1 + i, black), dot(0, 9 + i, 4, black);
  // 1: open folder
  box(1, 1, 4, 14, 13, olive);
  box(1, 2, 5, 13, 12, yellow);
  box(1, 1, 3, 6, 4, olive);
  box(1, 4, 8, 15, 13, olive);
  box(1, 5, 9, 14, 12, Rgb(255, 255, 128));
  // 2: disk
  box(2, 2, 2, 13, 13, black);
  box(2, 3, 3, 12, 12, navy);
  box(2, 5, 3, 10, 7, white);
  box(2, 5, 10, 10, 12, grey);
  // 3: scissors
  for (int i = 0; i < 8; ++i) dot(3, 4 + i, 1 + i, black), dot(3, 11 - i, 1 + i, black);
  box(3, 2, 9, 6, 13, red);
  box(3, 3, 10, 5, 12, kMask);
  box(3, 9, 9, 13, 13, red);
  box(3, 10, 10, 12, 12, kMask);
  // 4: copy, two pages
  box(4, 1, 1, 8, 10, black);
  box(4, 2, 2, 7, 9, white);
  box(4, 6, 5, 13, 14, black);
  box(4, 7, 6, 12, 13, white);
  box(4, 8, 8, 11, 8, navy);
  box(4, 8, 10, 11, 10, navy);
  // 5: paste, a clipboard
  box(5, 2, 2, 13, 14, olive);
  box(5, 3, 3, 12, 13, Rgb(192, 128, 64));
  box(5, 5, 1, 10, 3, grey);
  box(5, 6, 6, 11, 13, white);
  // 6: bold B
  box(6, 4, 2, 5, 13, black);
  box(6, 6, 2, 9, 3, black);
  box(6, 6, 7, 10, 8, black);
  box(6, 6, 12, 10, 13, black);
  box(6, 10, 3, 11, 6, black);
  box(6, 11, 8, 12, 12, black);
  // 7: italic I
  for (int y = 2; y <= 13; ++y) box(7, 9 - (y - 2) / 3, y, 10 - (y - 2) / 3, y, black);
  box(7, 6, 2, 12, 2, black);
  box(7, 3, 13, 9, 13, black);
  // 8: undo, a curved arrow
  for (int x = 4; x <= 11; ++x) dot(8, x, 5, teal), dot(8, x, 6, teal);
  box(8, 11, 5, 12, 11, teal);
  box(8, 6, 10, 12, 11, teal);
  for (int i = 0; i < 4; ++i) box(8, 4 - i + 3, 5 - i, 4 - i + 3, 6 + i, teal);
  return img;
}

struct ButtonDef {
  std::string key, tip;
  std::int32_t style = ktButton;
  bool enabled = true, value = false;
  std::int16_t width = 1;
};

std::vector<ButtonDef> StandardButtons() {
  return {{"New", "New document"},
          {"Open", "Open a document"},
          {"Save", "Save"},
          {"", "", ktSeparator},
          {"Cut", "Cut", ktButton, false},
          {"Copy", "Copy"},
          {"Paste", "Paste"},
          {"", "", ktSeparator},
          {"Bold", "Bold", ktCheck, true, true},
          {"Italic", "Italic", ktCheck},
          {"", "", ktPlaceholder, true, false, 24},
          {"Undo", "Undo", ktButton, false}};
}

// One toolbar on its own host: built at design time, then switched to run time
// unless design is asked for.
struct Scene {
  explicit Scene(HeadlessPlatform& p) : platform(p), host(p), tb(host, p) {}
  HeadlessPlatform& platform;
  HeadlessHost host;
  KorvelToolbar tb;

  void Build(std::int32_t border, const std::vector<ButtonDef>& items, bool design = false, int width = 300,
             bool picture = true, bool use_mask = true) {
    host.user_mode = false;
    host.PlaceNew(tb, width, 10);
    if (picture) tb.SetPicture(Picture::FromImage(ToolbarStrip()));
    tb.SetUseMaskColor(use_mask);
    tb.SetBorderStyle(border);
    std::int16_t count = static_cast<std::int16_t>(items.size());
    std::vector<std::string> key, tip;
    std::vector<std::int32_t> style;
    std::vector<bool> enabled, value;
    std::vector<std::int16_t> w;
    for (const auto& s : items) {
      key.push_back(s.key);
      tip.push_back(s.tip);
      style.push_back(s.style);
      enabled.push_back(s.enabled);
      value.push_back(s.value);
      w.push_back(s.width);
    }
    tb.Customize(true, count, key, tip, style, enabled, value, w);
    host.user_mode = !design;
    tb.Resize();
  }
  // The control with its button row where the host shows it.
  Image Picture() {
    Image img = tb.UserControl().Snapshot();
    Image row = tb.ButtonArea().Snapshot();
    const int left = tb.ButtonArea().Left(), top = tb.ButtonArea().Top();
    for (int y = 0; y < row.height; ++y)
      for (int x = 0; x < row.width; ++x)
        if (left + x < img.width && top + y < img.height) img.At(left + x, top + y) = row.At(x, y);
    return img;
  }
  // The centre of button index in ButtonArea pixels.
  float CentreX(int index) { return static_cast<float>(tb.ButtonLeft(index) + tb.ButtonHeight() / 2); }
  float CentreY() { return static_cast<float>(tb.ButtonHeight() / 2); }
};

// Puts a picture on a piece of button-face form with a margin.
Image OnForm(HeadlessPlatform& p, const Image& img, int margin = 8) {
  Image out(img.width + 2 * margin, img.height + 2 * margin, p.raster().GetSysColor(COLOR_BTNFACE));
  for (int y = 0; y < img.height; ++y)
    for (int x = 0; x < img.width; ++x) out.At(x + margin, y + margin) = img.At(x, y);
  return out;
}

void RenderToolbar(HeadlessPlatform& p, Gallery& g) {
  const std::string section = "Toolbar (KorvelToolbar)";
  LOGFONTA lf;
  lf.lfHeight = -11;
  lf.lfWeight = 400;
  std::strcpy(lf.lfFaceName, "Liberation Sans");
  p.headless_user().message_font = lf;

  {
    Scene s(p);
    s.Build(ktInternetExplorer, StandardButtons());
    g.Add(section, "toolbar-ie",
          "Internet Explorer border (new-instance default): etched frame and a gripper left of the buttons; "
          "New, Open, Save, separator, Cut (disabled), Copy, Paste, separator, Bold (checked), Italic, a "
          "24-pixel placeholder and Undo (disabled). Disabled images come from the embossed strip, which "
          "counts every non-white pixel (the magenta background too) as image",
          OnForm(p, s.Picture()), 3);
  }
  {
    Scene s(p);
    s.Build(ktRaised, StandardButtons());
    g.Add(section, "toolbar-raised", "Raised border: a raised inner edge all round, buttons inset by 3 pixels",
          OnForm(p, s.Picture()), 3);
  }
  {
    Scene s(p);
    s.Build(ktBar, StandardButtons());
    g.Add(section, "toolbar-bar", "Bar border: only a sunken line along the bottom, 3 pixels lower than the buttons",
          OnForm(p, s.Picture()), 3);
  }
  {
    Scene s(p);
    s.Build(ktNoBorder, StandardButtons());
    g.Add(section, "toolbar-noborder", "No border: the buttons fill the control, which is exactly 22 pixels high",
          OnForm(p, s.Picture()), 3);
  }
  {
    Scene s(p);
    s.Build(ktInternetExplorer, StandardButtons());
    s.tb.MouseMove(0, 0, s.CentreX(2), s.CentreY());
    g.Add(section, "toolbar-hot", "Hot: the pointer over Open gives a raised cell", OnForm(p, s.Picture()), 3);
    Image tip = s.tb.ToolTip().Snapshot();
    g.Add(section, "toolbar-tooltip",
          "The tool tip shown for Open: a top-level window 32 pixels below the pointer, a raised outer edge and "
          "the text in the message font",
          OnForm(p, tip), 3);
  }
  {
    Scene s(p);
    s.Build(ktInternetExplorer, StandardButtons());
    s.tb.MouseMove(0, 0, s.CentreX(3), s.CentreY());
    s.tb.MouseDown(1, 0, s.CentreX(3), s.CentreY());
    g.Add(section, "toolbar-pressed",
          "Pressed: the left button held down on Save gives a sunken cell with the image one pixel lower right",
          OnForm(p, s.Picture()), 3);
  }
  {
    Scene s(p);
    s.Build(ktInternetExplorer, StandardButtons());
    s.tb.MouseMove(0, 0, s.CentreX(9), s.CentreY());
    g.Add(section, "toolbar-checked-hot",
          "Bold is checked: the hot-tracking background (halfway between highlight and face) and a sunken edge, "
          "here with the pointer over it",
          OnForm(p, s.Picture()), 3);
  }
  {
    Scene s(p);
    std::vector<ButtonDef> items = StandardButtons();
    for (auto& it : items) it.enabled = false;
    items[8].value = true;
    s.Build(ktInternetExplorer, items);
    g.Add(section, "toolbar-disabled",
          "Every button disabled: the embossed block of each image, Bold drawn resting without its checked look",
          OnForm(p, s.Picture()), 3);
  }
  {
    Scene s(p);
    s.Build(ktInternetExplorer, StandardButtons(), /*design=*/true);
    g.Add(section, "toolbar-design",
          "Design time: every Button and Check cell gets a raised edge so that it shows in the designer",
          OnForm(p, s.Picture()), 3);
  }
  {
    Scene s(p);
    s.Build(ktInternetExplorer, StandardButtons(), false, 300, true, /*use_mask=*/false);
    s.tb.MouseMove(0, 0, s.CentreX(2), s.CentreY());
    g.Add(section, "toolbar-nomask",
          "UseMaskColor off: the magenta of the strip shows as it is; the checked and hot backgrounds only "
          "around the images",
          OnForm(p, s.Picture()), 3);
  }
  {
    Scene s(p);
    s.Build(ktInternetExplorer, {{"A", ""}, {"", "", ktSeparator}, {"", "", ktPlaceholder, true, false, 40},
                                 {"B", ""}, {"", "", ktSeparator}, {"", "", ktSeparator}, {"C", ""}});
    g.Add(section, "toolbar-separators",
          "Separators are 8 pixels with a sunken 2-pixel line; a placeholder of width 40 is plain face; neither "
          "uses an image, so A, B and C show the first three images",
          OnForm(p, s.Picture()), 3);
  }
  {
    Scene s(p);
    s.Build(ktInternetExplorer, StandardButtons(), false, 300, /*picture=*/false);
    g.Add(section, "toolbar-nopicture",
          "No picture: the buttons are 0 pixels high and the control keeps its minimum height of 7 pixels",
          OnForm(p, s.Picture()), 3);
  }
}

}  // namespace

const Register kToolbar(10, RenderToolbar);

}  // namespace korvel::gallery
