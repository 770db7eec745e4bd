// Golden pixel pictures for the raster tests, kept as text under
// KORVEL_TEST_DATA/raster/: one line per row, one character per pixel, and a legend
// that names each character's colour:
//
//   # free comment (what was drawn)
//   legend H BTNHIGHLIGHT #FFFFFF
//   size 10 8
//   HHHHHHHHHH
//   ...
//
// Colours are written #RRGGBB. Running the tests with KORVEL_UPDATE_GOLDEN=1 writes
// the files from what the raster draws instead of comparing.
#pragma once
#include <gtest/gtest.h>

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

// Reads a golden file; false when it is missing or malformed (error says why).
bool LoadGolden(const std::string& path, Golden* out, std::string* error);
// Writes a golden file.
bool SaveGolden(const std::string& path, const std::string& comment, const Golden& g);
// The picture as rows of legend characters ('?' for a colour the legend lacks).
std::string RenderGrid(const std::vector<ColorRef>& px, int width, int height,
                       const std::vector<LegendEntry>& legend);
// Full path of a file under the raster golden folder.
std::string GoldenPath(const std::string& name);

// Compares a picture with the golden file name (under the raster folder). With
// KORVEL_UPDATE_GOLDEN=1 in the environment it writes the file and succeeds.
::testing::AssertionResult MatchesGolden(const std::string& name, const std::string& comment,
                                         const std::vector<ColorRef>& px, int width, int height,
                                         const std::vector<LegendEntry>& legend);

}  // namespace korvel::test
