// The classic system colour scheme (the grey 3D look): the colours a headless
// surface starts with, and the ones the Wine tests set so that real drawing can be
// compared with it.
#pragma once
#include <array>

#include "framework/types.h"
#include "framework/winconst.h"

namespace korvel {

std::array<ColorRef, kSysColorCount> ClassicSysColors();

}  // namespace korvel
