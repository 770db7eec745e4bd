// The raster pictures both backends draw: every scenario draws through the Gdi
// interface only and leaves its result in a device context, whose pixels are read
// back through Gdi::GetPixel. The headless tests compare them with the golden
// files; the program run under Wine draws the same scenarios with the real GDI and
// compares them with the same files.
#pragma once
#include <array>
#include <functional>
#include <string>
#include <vector>

#include "framework/platform.h"
#include "tests/common/golden_file.h"

namespace korvel::test {

// The classic system colour scheme (the headless backend's default table).
std::array<ColorRef, kSysColorCount> ClassicColors();

// Classic colours, except that the window and frame colours differ from the 3D
// ones so that every edge colour can be told apart in a picture. The goldens are
// drawn with this table.
std::array<ColorRef, kSysColorCount> DistinctSysColors();

inline constexpr ColorRef kCanvas = Rgb(0, 128, 128);

// Characters for the canvas and the system colours of DistinctSysColors.
std::vector<LegendEntry> SysLegend();

// What a scenario checks besides its picture (return values, adjusted rectangles,
// single pixels, restored DC state), each with a description.
class ScenarioChecks {
 public:
  void Check(bool ok, const std::string& what);
  int Count() const { return count_; }
  const std::vector<std::string>& Failures() const { return failures_; }

 private:
  int count_ = 0;
  std::vector<std::string> failures_;
};

struct RasterScenario {
  std::string name;     // e.g. "edge_raised_rect"
  std::string family;   // edge, blit, pen, stretch, state, text, or ops (the further
                        // operations checked against the platform)
  std::string file;     // the golden file under the raster folder
  std::string comment;  // the golden file's comment: what was drawn
  int width = 0;        // the picture's size
  int height = 0;
  bool is_text = false;  // drawn with a font: the picture depends on the font's glyphs
  std::vector<LegendEntry> legend;
  // Draws the scenario and returns the DC that holds the picture (width x height).
  std::function<Hdc(Gdi&, ScenarioChecks&)> draw;
};

// Every scenario, in a fixed order; names are unique.
const std::vector<RasterScenario>& RasterScenarios();
// The scenario of that name (nullptr when there is none).
const RasterScenario* FindScenario(const std::string& name);

// The pixels of dc's bitmap, row by row, through GetPixel.
std::vector<ColorRef> ReadPixels(Gdi& gdi, Hdc dc, int width, int height);

// ---- pieces of the scenarios, for the tests that check more than the picture ----
// A memory DC holding a new 32-bit bitmap of width x height filled with fill.
Hdc NewSurface(Gdi& gdi, int width, int height, ColorRef fill);
// An 8 x 4 colour surface: columns red, green, blue, white (twice).
Hdc ColourSource(Gdi& gdi);
// An 8 x 4 monochrome bitmap in a DC: a checker of 2 x 2 squares starting white, or
// rows white (0-1) and black (2-3).
Hdc MonoSurface(Gdi& gdi, bool checker);
// A free 6 x 6 32-bit bitmap: white, with a black L, a red dot at (4,1) and one
// (250,250,250) pixel at (3,2).
Hbitmap StateSmallBitmap(Gdi& gdi);

}  // namespace korvel::test
