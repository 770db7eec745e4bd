#include "tests/unit/golden.h"

#include <cstdlib>

namespace korvel::test {

std::string GoldenPath(const std::string& name) { return std::string(KORVEL_TEST_DATA) + "/raster/" + name; }

::testing::AssertionResult MatchesGolden(const std::string& name, const std::string& comment,
                                         const std::vector<ColorRef>& px, int width, int height,
                                         const std::vector<LegendEntry>& legend) {
  std::string path = GoldenPath(name);
  const char* update = std::getenv("KORVEL_UPDATE_GOLDEN");
  if (update && std::string(update) == "1") {
    // Only the colours that occur are written, plus any unnamed ones by value.
    if (!SaveGolden(path, comment, GoldenOf(px, width, height, legend)))
      return ::testing::AssertionFailure() << "cannot write " << path;
    return ::testing::AssertionSuccess();
  }
  Golden g;
  std::string error;
  if (!LoadGolden(path, &g, &error)) return ::testing::AssertionFailure() << error;
  PictureDiff d = ComparePictures(px, width, height, g, legend);
  if (d.size_differs)
    return ::testing::AssertionFailure() << name << ": size " << width << "x" << height << ", golden " << g.width
                                         << "x" << g.height;
  if (d.differing == 0) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << name << ": " << d.differing << " pixels differ:" << d.first << "\ngot:\n"
                                       << d.got_grid << "golden:\n"
                                       << d.golden_grid;
}

}  // namespace korvel::test
