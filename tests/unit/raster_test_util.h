// Shared set-up for the raster tests: a headless GDI with the metrics font, a
// distinct colour for every system colour an edge can use, and surfaces to draw on.
#pragma once
#include <memory>
#include <string>
#include <vector>

#include "platform/headless/headless_gdi.h"
#include "tests/unit/golden.h"

namespace korvel::test {

// Classic colours, except that the window and frame colours differ from the 3D
// ones so that every edge colour can be told apart in a picture.
inline std::array<ColorRef, kSysColorCount> DistinctSysColors() {
  auto c = headless::ClassicSysColors();
  c[COLOR_WINDOW] = Rgb(255, 255, 192);
  c[COLOR_WINDOWFRAME] = Rgb(64, 0, 0);
  return c;
}

inline constexpr ColorRef kCanvas = Rgb(0, 128, 128);

inline std::vector<LegendEntry> SysLegend() {
  auto c = DistinctSysColors();
  return {
      {'.', "CANVAS", kCanvas},
      {'F', "BTNFACE", c[COLOR_BTNFACE]},
      {'S', "BTNSHADOW", c[COLOR_BTNSHADOW]},
      {'H', "BTNHIGHLIGHT", c[COLOR_BTNHIGHLIGHT]},
      {'D', "3DDKSHADOW", c[COLOR_3DDKSHADOW]},
      {'L', "3DLIGHT", c[COLOR_3DLIGHT]},
      {'W', "WINDOW", c[COLOR_WINDOW]},
      {'K', "WINDOWFRAME", c[COLOR_WINDOWFRAME]},
  };
}

struct Raster {
  headless::HeadlessGdi gdi{std::make_unique<headless::MetricsTextRenderer>()};
  Raster() { gdi.SetSysColors(DistinctSysColors()); }
  std::vector<ColorRef> Pixels(Hdc dc) { return gdi.DcBitmap(dc)->px; }
  int Width(Hdc dc) { return gdi.DcBitmap(dc)->width; }
  int Height(Hdc dc) { return gdi.DcBitmap(dc)->height; }
  ::testing::AssertionResult Matches(Hdc dc, const std::string& name, const std::string& comment,
                                     const std::vector<LegendEntry>& legend) {
    return MatchesGolden(name, comment, Pixels(dc), Width(dc), Height(dc), legend);
  }
};

}  // namespace korvel::test
