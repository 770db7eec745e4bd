// Writes an image to a PNG file through libpng.
#pragma once
#include <string>

#include "framework/image.h"

namespace korvel::headless {

bool WritePng(const Image& image, const std::string& path);
// Reads a PNG file written by WritePng (8-bit RGB or RGBA).
bool ReadPng(const std::string& path, Image& image);

}  // namespace korvel::headless
