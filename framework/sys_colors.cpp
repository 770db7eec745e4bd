#include "framework/sys_colors.h"

namespace korvel {

std::array<ColorRef, kSysColorCount> ClassicSysColors() {
  return {
      Rgb(192, 192, 192),  // 0 scroll bar
      Rgb(0, 128, 128),    // 1 desktop
      Rgb(0, 0, 128),      // 2 active caption
      Rgb(128, 128, 128),  // 3 inactive caption
      Rgb(192, 192, 192),  // 4 menu
      Rgb(255, 255, 255),  // 5 window
      Rgb(0, 0, 0),        // 6 window frame
      Rgb(0, 0, 0),        // 7 menu text
      Rgb(0, 0, 0),        // 8 window text
      Rgb(255, 255, 255),  // 9 caption text
      Rgb(192, 192, 192),  // 10 active border
      Rgb(192, 192, 192),  // 11 inactive border
      Rgb(128, 128, 128),  // 12 application workspace
      Rgb(0, 0, 128),      // 13 highlight
      Rgb(255, 255, 255),  // 14 highlight text
      Rgb(192, 192, 192),  // 15 button face
      Rgb(128, 128, 128),  // 16 button shadow
      Rgb(128, 128, 128),  // 17 grey text
      Rgb(0, 0, 0),        // 18 button text
      Rgb(192, 192, 192),  // 19 inactive caption text
      Rgb(255, 255, 255),  // 20 button highlight
      Rgb(0, 0, 0),        // 21 3D dark shadow
      Rgb(223, 223, 223),  // 22 3D light
      Rgb(0, 0, 0),        // 23 info text
      Rgb(255, 255, 225),  // 24 info background
      Rgb(192, 192, 192),  // 25 (unused)
      Rgb(0, 0, 255),      // 26 hot-tracked item
      Rgb(16, 132, 208),   // 27 gradient active caption
      Rgb(181, 181, 181),  // 28 gradient inactive caption
      Rgb(0, 0, 128),      // 29 menu highlight
      Rgb(192, 192, 192),  // 30 menu bar
  };
}

}  // namespace korvel
