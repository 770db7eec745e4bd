// Gallery pictures of the percentage bar and the mini slider.
#include <memory>
#include <string>

#include "controls/bar/bar.h"
#include "controls/minislider/minislider.h"
#include "platform/headless/headless_host.h"
#include "tools/gallery.h"

using namespace korvel;
using namespace korvel::headless;

namespace korvel::gallery {

namespace {

// Puts a control's picture on a piece of button-face form with a margin, as it sits
// on a dialog.
Image OnForm(HeadlessPlatform& p, const Image& img, int margin = 8) {
  Image out(img.width + 2 * margin, img.height + 2 * margin, p.raster().GetSysColor(COLOR_BTNFACE));
  for (int y = 0; y < img.height; ++y)
    for (int x = 0; x < img.width; ++x) out.At(x + margin, y + margin) = img.At(x, y);
  return out;
}

Image Bar(HeadlessPlatform& p, bool user_mode, int value, int w = 160, int h = 18) {
  HeadlessHost host(p);
  host.user_mode = user_mode;
  KorvelBar bar(host, p);
  bar.Initialize();
  host.PlaceNew(bar, w, h);
  bar.SetValue(static_cast<std::int16_t>(value));
  return bar.UserControl().Snapshot();
}

Image Slider(HeadlessPlatform& p, int min, int max, int value, int w = 160, int h = 12) {
  HeadlessHost host(p);
  KorvelMiniSlider s(host, p);
  host.PlaceNew(s, w, h);
  s.SetMax(max);
  s.SetMin(min);
  s.SetValue(value);
  return s.UserControl().Snapshot();
}

void RenderBarSlider(HeadlessPlatform& p, Gallery& g) {
  const std::string bar = "Bar (KorvelBar)";
  g.Add(bar, "bar-0", "Run time, Value = 0: the sunken frame around button face", OnForm(p, Bar(p, true, 0)), 3);
  g.Add(bar, "bar-37", "Run time, Value = 37: the gradient shows up to x = 58, button face from 59",
        OnForm(p, Bar(p, true, 37)), 3);
  g.Add(bar, "bar-100", "Run time, Value = 100: the whole gradient but the one button-face column at x = 157",
        OnForm(p, Bar(p, true, 100)), 3);
  g.Add(bar, "bar-design", "Design time: always 100 %, assignments to Value ignored (20 was assigned)",
        OnForm(p, Bar(p, false, 20)), 3);
  g.Add(bar, "bar-small",
        "Run time, 60 x 10, Value = 75: narrower than the 64-pixel strip, the stretched copy merges source "
        "columns with AND (the device context's default stretch mode), which leaves a few darker columns",
        OnForm(p, Bar(p, true, 75, 60, 10)), 3);
  g.Add(bar, "bar-wide", "Run time, 300 x 22, Value = 64", OnForm(p, Bar(p, true, 64, 300, 22)), 2);

  const std::string slider = "Mini slider (KorvelMiniSlider)";
  g.Add(slider, "minislider-min", "Value = Min (0 of 0..100): background fill only",
        OnForm(p, Slider(p, 0, 100, 0)), 3);
  g.Add(slider, "minislider-mid", "Value = 50 of 0..100: bar to x = 79, background from 80",
        OnForm(p, Slider(p, 0, 100, 50)), 3);
  g.Add(slider, "minislider-max", "Value = Max (100 of 0..100): bar fill only", OnForm(p, Slider(p, 0, 100, 100)),
        3);
  g.Add(slider, "minislider-empty", "Min = Max = 50: an empty range shows as a full bar",
        OnForm(p, Slider(p, 50, 50, 50)), 3);
}

}  // namespace

const Register kBarSlider(30, RenderBarSlider);

}  // namespace korvel::gallery
