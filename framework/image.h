// A plain 32-bit pixel image (0x00BBGGRR per pixel, row 0 at the top), the portable
// content of a picture object. Decoders for .bmp and .ico files live beside it.
#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "framework/types.h"

namespace korvel {

struct Image {
  std::int32_t width = 0;
  std::int32_t height = 0;
  std::vector<ColorRef> pixels;  // width * height
  // For icons: true where the pixel is transparent (the AND mask is set).
  std::vector<bool> transparent;

  Image() = default;
  Image(std::int32_t w, std::int32_t h, ColorRef fill = 0)
      : width(w), height(h), pixels(static_cast<std::size_t>(w) * static_cast<std::size_t>(h), fill) {}
  ColorRef At(std::int32_t x, std::int32_t y) const { return pixels[static_cast<std::size_t>(y) * width + x]; }
  ColorRef& At(std::int32_t x, std::int32_t y) { return pixels[static_cast<std::size_t>(y) * width + x]; }
  friend bool operator==(const Image&, const Image&) = default;
};

// Decodes a Windows bitmap file (1, 4, 8, 24 and 32 bits, uncompressed or RLE8/RLE4
// not supported: those fail). Returns nothing for data that is not a bitmap.
std::optional<Image> DecodeBmp(const std::vector<std::uint8_t>& data);
// Decodes the first (largest-first order as stored) image of an icon file.
std::optional<Image> DecodeIco(const std::vector<std::uint8_t>& data);
// Encodes an image as a 24-bit bitmap file.
std::vector<std::uint8_t> EncodeBmp(const Image& image);

}  // namespace korvel
