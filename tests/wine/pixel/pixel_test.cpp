// The raster scenarios (tests/common/raster_scenarios.h) drawn with the real GDI
// through Win32Gdi and compared pixel for pixel with the golden pictures of the
// headless raster. The process's system colours are set to the table the goldens
// were drawn with and restored at the end. Each scenario counts once: its checks
// (return values, rectangles, single pixels) and its picture. On a difference the
// program prints both pictures as legend grids.
//
// Scenarios drawn with a font (is_text: DrawText, DrawState of text) are not
// compared: the headless raster draws with its own metrics font, whose glyphs no
// real font has.
//
// Usage: pixel_test <golden folder>. Prints "N passed, N failed".
#include <cstdio>
#include <string>
#include <vector>

#include "platform/win32/win32_platform.h"
#include "tests/common/golden_file.h"
#include "tests/common/raster_scenarios.h"

#ifndef NOMINMAX
#define NOMINMAX
#endif
#define WIN32_LEAN_AND_MEAN
// The portable headers come first; from here on the platform's macros carry the
// same constants.
#include <windows.h>

namespace {

using korvel::test::RasterScenario;

int passed = 0, failed = 0;

void Report(bool ok, const std::string& what) {
  std::printf("%s: %s\n", ok ? "ok" : "FAILED", what.c_str());
  std::fflush(stdout);
  ok ? ++passed : ++failed;
}

// Scenarios whose picture is not compared, each with the reason (printed when the
// scenario is passed over). None at present: every scenario without text draws the
// same pixels on both backends.
struct Exclusion {
  std::string name;
  std::string why;
};
const std::vector<Exclusion> kExcluded = {};

const std::string* ExclusionReason(const std::string& name) {
  for (const Exclusion& e : kExcluded)
    if (name == e.name) return &e.why;
  return nullptr;
}

bool RunScenario(korvel::Gdi& gdi, const RasterScenario& s, const std::string& folder) {
  korvel::test::ScenarioChecks checks;
  korvel::Hdc dc = s.draw(gdi, checks);
  if (!dc) {
    Report(false, s.name + ": no device context");
    return false;
  }
  std::vector<korvel::ColorRef> px = korvel::test::ReadPixels(gdi, dc, s.width, s.height);
  korvel::test::Golden golden;
  std::string error;
  if (!korvel::test::LoadGolden(folder + "/" + s.file, &golden, &error)) {
    Report(false, s.name + ": " + error);
    return false;
  }
  bool ok = true;
  for (const auto& f : checks.Failures()) {
    std::printf("  %s: %s\n", s.name.c_str(), f.c_str());
    ok = false;
  }
  korvel::test::PictureDiff d = korvel::test::ComparePictures(px, s.width, s.height, golden, s.legend);
  if (d.size_differs) {
    std::printf("  %s: drawn %dx%d, golden %dx%d\n", s.name.c_str(), s.width, s.height, golden.width,
                golden.height);
    ok = false;
  } else if (d.differing) {
    std::printf("  %s: %d pixels differ:%s\n", s.name.c_str(), d.differing, d.first.c_str());
    std::printf("  real GDI:\n%s  golden (%s):\n%s", d.got_grid.c_str(), s.file.c_str(), d.golden_grid.c_str());
    ok = false;
  }
  Report(ok, s.name + " (" + std::to_string(checks.Count()) + " checks, " + std::to_string(s.width) + "x" +
                 std::to_string(s.height) + " pixels" +
                 (d.differing ? ", " + std::to_string(d.differing) + " differ" : std::string()) + ")");
  return ok;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::printf("usage: pixel_test <golden folder>\n0 passed, 1 failed\n");
    return 1;
  }
  std::string folder = argv[1];

  // The system colours the goldens use: the classic table with distinct window and
  // frame colours.
  const int count = korvel::kSysColorCount;
  auto table = korvel::test::DistinctSysColors();
  std::vector<INT> indices(count);
  std::vector<COLORREF> wanted(count), saved(count);
  for (int i = 0; i < count; ++i) {
    indices[i] = i;
    wanted[i] = table[i];
    saved[i] = ::GetSysColor(i);
  }
  Report(::SetSysColors(count, indices.data(), wanted.data()) != FALSE, "SetSysColors with the golden table");
  int wrong = 0;
  for (int i = 0; i < count; ++i)
    if (::GetSysColor(i) != wanted[i]) {
      std::printf("  system colour %d is %s, expected %s\n", i, korvel::test::HexColor(::GetSysColor(i)).c_str(),
                  korvel::test::HexColor(wanted[i]).c_str());
      ++wrong;
    }
  Report(wrong == 0, "GetSysColor answers the golden table");

  korvel::win32::Win32Gdi gdi;
  int compared = 0, matched = 0, skipped_text = 0, excluded = 0;
  for (const RasterScenario& s : korvel::test::RasterScenarios()) {
    if (s.is_text) {
      std::printf("skipped: %s (drawn with a font)\n", s.name.c_str());
      ++skipped_text;
      continue;
    }
    if (const std::string* why = ExclusionReason(s.name)) {
      std::printf("excluded: %s (%s)\n", s.name.c_str(), why->c_str());
      ++excluded;
      continue;
    }
    ++compared;
    if (RunScenario(gdi, s, folder)) ++matched;
  }
  std::printf("%d scenarios compared, %d matched; %d text scenarios skipped, %d excluded\n", compared, matched,
              skipped_text, excluded);
  Report(compared > 0 && compared + skipped_text + excluded == static_cast<int>(korvel::test::RasterScenarios().size()),
         "every scenario was compared, skipped as text or excluded");

  Report(::SetSysColors(count, indices.data(), saved.data()) != FALSE, "the system colours are restored");
  std::printf("%d passed, %d failed\n", passed, failed);
  return failed == 0 ? 0 : 1;
}
