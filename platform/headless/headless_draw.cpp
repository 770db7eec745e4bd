// USER's drawing calls and stretched copies on the raster: DrawEdge, DrawStateA,
// DrawTextA and StretchBlt.
#include "platform/headless/headless_gdi.h"

namespace korvel::headless {

bool HeadlessGdi::DrawEdge(Hdc, Rect*, std::uint32_t, std::uint32_t) { return false; }

bool HeadlessGdi::DrawStateA(Hdc, Handle, Handle, const std::string&, int, int, int, int, std::uint32_t) {
  return false;
}

int HeadlessGdi::DrawTextA(Hdc, const std::string&, Rect*, std::uint32_t) { return 0; }

bool HeadlessGdi::StretchBlt(Hdc, int, int, int, int, Hdc, int, int, int, int, std::uint32_t) { return false; }

}  // namespace korvel::headless
