// The headless backend's device-context model: bitmaps (32-bit colour or 1-bit
// monochrome), pens, brushes, fonts and device contexts with GDI's semantics for
// selection, colours, draw modes and raster operations.
#pragma once
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "framework/platform.h"

namespace korvel::headless {

inline constexpr ColorRef kWhite = 0xFFFFFF;
inline constexpr ColorRef kBlack = 0x000000;

struct BitmapObj {
  int width = 0;
  int height = 0;
  bool mono = false;  // 1 bit per pixel: pixels hold only kBlack or kWhite
  std::vector<ColorRef> px;
  Hdc selected_in = 0;  // the DC it is selected into, 0 when free
  ColorRef At(int x, int y) const { return px[static_cast<std::size_t>(y) * width + x]; }
  ColorRef& At(int x, int y) { return px[static_cast<std::size_t>(y) * width + x]; }
  bool Inside(int x, int y) const { return x >= 0 && y >= 0 && x < width && y < height; }
};

struct PenObj {
  int style = PS_SOLID;
  int width = 1;
  ColorRef color = 0;
};

struct BrushObj {
  bool null = false;
  ColorRef color = 0;
};

struct FontObj {
  LOGFONTA lf;
};

struct DcObj {
  Hbitmap bitmap = 0;
  Handle pen = 0;
  Handle brush = 0;
  Hfont font = 0;
  ColorRef bk_color = kWhite;
  ColorRef text_color = kBlack;
  int bk_mode = OPAQUE;
  int rop2 = R2_COPYPEN;
  Point pos;
};

// Visits the pixels of a one-pixel pen line from (x0, y0) towards (x1, y1), the last
// point excluded, in the order LineTo draws them: the midpoint rule along the major
// axis, where a point exactly halfway between two pixels takes the one with the
// smaller coordinate (whichever way the line runs, so a line and its reverse cover
// the same pixels apart from the end points).
template <typename F>
void WalkLine(int x0, int y0, int x1, int y1, F&& plot) {
  const int adx = x1 > x0 ? x1 - x0 : x0 - x1, ady = y1 > y0 ? y1 - y0 : y0 - y1;
  const int sx = x0 < x1 ? 1 : -1, sy = y0 < y1 ? 1 : -1;
  const bool x_major = adx > ady;
  const int major = x_major ? adx : ady, minor = x_major ? ady : adx;
  // Stepping towards smaller coordinates already at the halfway point.
  const int bias = (x_major ? sy : sx) < 0 ? 1 : 0;
  int err = 2 * minor - major;
  int x = x0, y = y0;
  for (int i = 0; i < major; ++i) {
    plot(x, y);
    if (err + bias > 0) {
      if (x_major) y += sy;
      else x += sx;
      err += 2 * minor - 2 * major;
    } else {
      err += 2 * minor;
    }
    if (x_major) x += sx;
    else y += sy;
  }
}

// Applies a binary raster operation (R2_*) to a pen colour and a destination colour.
ColorRef ApplyRop2(int rop2, ColorRef pen, ColorRef dst);
// Applies a ternary raster operation (the high word of a BitBlt code) to pattern,
// source and destination colours.
ColorRef ApplyRop3(std::uint32_t rop, ColorRef pattern, ColorRef src, ColorRef dst);

}  // namespace korvel::headless
