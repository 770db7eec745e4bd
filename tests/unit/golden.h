// Golden pixel pictures for the raster tests, kept as text under
// KORVEL_TEST_DATA/raster/ (the format is in tests/common/golden_file.h). Running
// the tests with KORVEL_UPDATE_GOLDEN=1 writes the files from what the raster draws
// instead of comparing.
#pragma once
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "framework/types.h"
#include "tests/common/golden_file.h"

namespace korvel::test {

// Full path of a file under the raster golden folder.
std::string GoldenPath(const std::string& name);

// Compares a picture with the golden file name (under the raster folder). With
// KORVEL_UPDATE_GOLDEN=1 in the environment it writes the file and succeeds.
::testing::AssertionResult MatchesGolden(const std::string& name, const std::string& comment,
                                         const std::vector<ColorRef>& px, int width, int height,
                                         const std::vector<LegendEntry>& legend);

}  // namespace korvel::test
