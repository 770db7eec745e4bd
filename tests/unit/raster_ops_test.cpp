// Further raster operations checked against golden pictures (the shared scenarios
// of the "ops" family): line directions, draw modes, rectangles with and without
// pen or brush, FillRect, pattern and clipped blits, monochrome targets, more
// StretchBlt shapes, DrawState's other states and DrawEdge shapes. The same
// pictures are checked against the real GDI under Wine.
#include <gtest/gtest.h>

#include <set>

#include "tests/unit/raster_test_util.h"

namespace korvel::test {
namespace {

std::vector<std::string> OpsScenarioNames() {
  std::vector<std::string> names;
  for (const auto& s : RasterScenarios())
    if (s.family == "ops") names.push_back(s.name);
  return names;
}

TEST(RasterOps, EveryScenarioHasAUniqueNameAndAFamily) {
  std::set<std::string> names;
  for (const auto& s : RasterScenarios()) {
    EXPECT_TRUE(names.insert(s.name).second) << s.name;
    EXPECT_FALSE(s.family.empty()) << s.name;
  }
  EXPECT_FALSE(OpsScenarioNames().empty());
}

class OpsGolden : public ::testing::TestWithParam<std::string> {};

TEST_P(OpsGolden, MatchesPicture) { EXPECT_TRUE(DrawsGolden(GetParam())); }

INSTANTIATE_TEST_SUITE_P(Raster, OpsGolden, ::testing::ValuesIn(OpsScenarioNames()),
                         [](const ::testing::TestParamInfo<std::string>& info) { return info.param; });

}  // namespace
}  // namespace korvel::test
