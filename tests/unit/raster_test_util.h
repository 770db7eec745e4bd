// Shared set-up for the raster tests: a headless GDI with the metrics font and the
// distinct system colours the golden pictures use, and the shared scenarios
// (tests/common/raster_scenarios.h) drawn on it and compared with their goldens.
#pragma once
#include <memory>
#include <string>
#include <vector>

#include "platform/headless/headless_gdi.h"
#include "tests/common/raster_scenarios.h"
#include "tests/unit/golden.h"

namespace korvel::test {

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

// Draws the shared scenario of that name on a fresh raster: every check it makes
// holds, the picture has the scenario's size, and its pixels (read through
// GetPixel) match the golden file.
inline ::testing::AssertionResult DrawsGolden(const std::string& name) {
  const RasterScenario* s = FindScenario(name);
  if (!s) return ::testing::AssertionFailure() << "no scenario " << name;
  Raster r;
  ScenarioChecks checks;
  Hdc dc = s->draw(r.gdi, checks);
  if (!checks.Failures().empty()) {
    auto failure = ::testing::AssertionFailure() << name << ":";
    for (const auto& f : checks.Failures()) failure << "\n  " << f;
    return failure;
  }
  if (r.Width(dc) != s->width || r.Height(dc) != s->height)
    return ::testing::AssertionFailure() << name << ": the picture is " << r.Width(dc) << "x" << r.Height(dc)
                                         << ", the scenario says " << s->width << "x" << s->height;
  return MatchesGolden(s->file, s->comment, ReadPixels(r.gdi, dc, s->width, s->height), s->width, s->height,
                       s->legend);
}

}  // namespace korvel::test
