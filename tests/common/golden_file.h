// Golden pixel pictures kept as text: one line per row, one character per pixel,
// and a legend that names each character's colour:
//
//   # free comment (what was drawn)
//   legend H BTNHIGHLIGHT #FFFFFF
//   size 10 8
//   HHHHHHHHHH
//   ...
//
// Colours are written #RRGGBB. Reading, writing, rendering and comparing need no
// test framework, so the headless tests and the programs run under Wine share them.
#pragma once
#include <string>
#include <vector>

#include "framework/types.h"

namespace korvel::test {

struct LegendEntry {
  char ch;
  std::string name;
  ColorRef color;
};

struct Golden {
  int width = 0;
  int height = 0;
  std::vector<ColorRef> px;
  std::vector<LegendEntry> legend;
};

// "#RRGGBB".
std::string HexColor(ColorRef c);
// Reads a golden file; false when it is missing or malformed (error says why).
bool LoadGolden(const std::string& path, Golden* out, std::string* error);
// Writes a golden file.
bool SaveGolden(const std::string& path, const std::string& comment, const Golden& g);
// The picture as rows of legend characters ('?' for a colour the legend lacks).
std::string RenderGrid(const std::vector<ColorRef>& px, int width, int height,
                       const std::vector<LegendEntry>& legend);
// A golden picture of px: the legend holds only the colours that occur, in order of
// appearance, named from legend, and unnamed ones by value ("RGB", characters 0-9a-z).
Golden GoldenOf(const std::vector<ColorRef>& px, int width, int height, const std::vector<LegendEntry>& legend);

// The outcome of comparing a picture with a golden one.
struct PictureDiff {
  bool size_differs = false;
  int differing = 0;        // pixels that differ (when the sizes agree)
  std::string first;        // the first few differences: " (x,y) got #.. want #..;"
  std::string got_grid;     // both pictures as legend grids (the golden's legend,
  std::string golden_grid;  // then the extra one), filled when something differs
};
PictureDiff ComparePictures(const std::vector<ColorRef>& px, int width, int height, const Golden& golden,
                            const std::vector<LegendEntry>& extra_legend);

}  // namespace korvel::test
