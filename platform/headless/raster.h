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

// Applies a binary raster operation (R2_*) to a pen colour and a destination colour.
ColorRef ApplyRop2(int rop2, ColorRef pen, ColorRef dst);
// Applies a ternary raster operation (the high word of a BitBlt code) to pattern,
// source and destination colours.
ColorRef ApplyRop3(std::uint32_t rop, ColorRef pattern, ColorRef src, ColorRef dst);

}  // namespace korvel::headless
