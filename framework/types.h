// Plain value types shared by the whole library: colours, rectangles, handles.
// No platform header is included here; the Win32 backend maps these onto its own.
#pragma once
#include <cstdint>

namespace korvel {

// A 32-bit OLE colour: 0x00BBGGRR, or 0x800000NN for system colour NN.
using OleColor = std::uint32_t;
// An RGB colour as the platform stores it (0x00BBGGRR).
using ColorRef = std::uint32_t;

// Opaque platform handles. The headless backend hands out small numbers, the
// Win32 backend real handle values.
using Handle = std::uintptr_t;
using Hdc = Handle;
using Hwnd = Handle;
using Hgdiobj = Handle;
using Hbitmap = Handle;
using Hfont = Handle;

struct Rect {
  std::int32_t left = 0, top = 0, right = 0, bottom = 0;
  friend bool operator==(const Rect&, const Rect&) = default;
};

struct Point {
  std::int32_t x = 0, y = 0;
  friend bool operator==(const Point&, const Point&) = default;
};

constexpr ColorRef Rgb(int r, int g, int b) {
  return static_cast<ColorRef>((r & 0xFF) | ((g & 0xFF) << 8) | ((b & 0xFF) << 16));
}
constexpr int RedOf(ColorRef c) { return static_cast<int>(c & 0xFF); }
constexpr int GreenOf(ColorRef c) { return static_cast<int>((c >> 8) & 0xFF); }
constexpr int BlueOf(ColorRef c) { return static_cast<int>((c >> 16) & 0xFF); }

}  // namespace korvel
