// KorvelToolbar on the headless backend: rebuilding the state pictures, painting,
// a hover change, layout and loading, with the pixels each one writes.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

#include "controls/toolbar/toolbar.h"
#include "platform/headless/headless_host.h"
#include "platform/headless/headless_platform.h"

using namespace korvel;
using namespace korvel::headless;

namespace {

// A strip of n 16 x 16 images: a coloured square on magenta in each cell.
PictureRef Strip(int n) {
  Image img(16 * n, 16, Rgb(255, 0, 255));
  for (int k = 0; k < n; ++k)
    for (int y = 4; y < 12; ++y)
      for (int x = 4; x < 12; ++x) img.At(16 * k + x, y) = Rgb((k * 37) & 255, (k * 91) & 255, 128);
  return Picture::FromImage(std::move(img));
}

// A toolbar placed at design time with n buttons (every eighth a separator) and
// a strip of images, then switched to run time.
struct Bench {
  HeadlessPlatform platform;
  HeadlessHost host{platform};
  KorvelToolbar tb{host, platform};

  Bench(int buttons, int images, int width = 800) {
    host.user_mode = false;
    host.PlaceNew(tb, width, 10);
    tb.SetPicture(Strip(images));
    std::int16_t count = static_cast<std::int16_t>(buttons);
    std::vector<std::string> key, tip;
    std::vector<std::int32_t> style;
    std::vector<bool> enabled, value;
    std::vector<std::int16_t> w;
    for (int i = 1; i <= buttons; ++i) {
      key.push_back("B" + std::to_string(i));
      tip.push_back("");
      style.push_back(i % 8 == 0 ? ktSeparator : ktButton);
      enabled.push_back(true);
      value.push_back(false);
      w.push_back(1);
    }
    tb.Customize(true, count, key, tip, style, enabled, value, w);
    host.user_mode = true;
  }
  std::uint64_t Writes() { return platform.raster().PixelWrites(); }
};

// Rebuilding the state pictures from a strip of n images (a design-time MaskColor
// assignment on a toolbar without buttons: the rebuild and its layout).
void BM_RebuildStatePictures(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  Bench b(0, n);
  b.host.user_mode = false;
  std::uint64_t w0 = b.Writes();
  for (auto _ : state) b.tb.SetMaskColor(0x00FF00FF);
  state.counters["pixels_written"] =
      benchmark::Counter(static_cast<double>(b.Writes() - w0) / static_cast<double>(state.iterations()));
  state.SetComplexityN(n);
}
BENCHMARK(BM_RebuildStatePictures)->Arg(16)->Arg(64)->Arg(256)->Complexity(benchmark::oN);

// A full paint: the border and every one of 32 items.
void BM_FullPaint(benchmark::State& state) {
  Bench b(32, 32);
  std::uint64_t w0 = b.Writes();
  for (auto _ : state) {
    b.tb.Paint();
    b.tb.PaintButtons();
  }
  state.counters["pixels_written"] =
      benchmark::Counter(static_cast<double>(b.Writes() - w0) / static_cast<double>(state.iterations()));
}
BENCHMARK(BM_FullPaint);

// The pointer moving from one button onto the next: two cells redrawn.
void BM_HoverChange(benchmark::State& state) {
  Bench b(32, 32);
  const float first = 11, second = 33;
  b.tb.MouseMove(0, 0, first, 11);
  bool on_first = true;
  std::uint64_t w0 = b.Writes();
  for (auto _ : state) {
    b.tb.MouseMove(0, 0, on_first ? second : first, 11);
    on_first = !on_first;
  }
  state.counters["pixels_written"] =
      benchmark::Counter(static_cast<double>(b.Writes() - w0) / static_cast<double>(state.iterations()));
  state.counters["cell_pixels"] = benchmark::Counter(22.0 * 22.0);
}
BENCHMARK(BM_HoverChange);

// Layout (Resize) of n items, which repaints the row.
void BM_Layout(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  Bench b(n, 16);
  for (auto _ : state) b.tb.Resize();
  state.SetComplexityN(n);
}
BENCHMARK(BM_Layout)->Arg(10)->Arg(100)->Arg(1000)->Complexity(benchmark::oN);

// Loading a toolbar of n buttons from a property bag (every button with a key and
// a tip, so that each group holds two keys besides its defaults).
void BM_ReadProperties(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  PropertyBag bag;
  {
    Bench b(n, 16);
    b.tb.WriteProperties(bag);
  }
  HeadlessPlatform platform;
  HeadlessHost host{platform};
  KorvelToolbar tb{host, platform};
  host.Attach(&tb);
  tb.SetExtentPixels(800, 28);
  for (auto _ : state) tb.ReadProperties(bag);
  state.counters["bag_keys"] = benchmark::Counter(static_cast<double>(bag.Size()));
  state.SetComplexityN(n);
}
BENCHMARK(BM_ReadProperties)->Arg(10)->Arg(100)->Arg(1000)->Complexity(benchmark::oAuto);

}  // namespace
