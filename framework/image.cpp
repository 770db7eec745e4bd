#include "framework/image.h"

#include <cstring>

namespace korvel {
namespace {

std::uint32_t U16(const std::vector<std::uint8_t>& d, std::size_t o) {
  return static_cast<std::uint32_t>(d[o] | (d[o + 1] << 8));
}
std::uint32_t U32(const std::vector<std::uint8_t>& d, std::size_t o) {
  return static_cast<std::uint32_t>(d[o]) | (static_cast<std::uint32_t>(d[o + 1]) << 8) |
         (static_cast<std::uint32_t>(d[o + 2]) << 16) | (static_cast<std::uint32_t>(d[o + 3]) << 24);
}
void Put16(std::vector<std::uint8_t>& d, std::uint32_t v) {
  d.push_back(static_cast<std::uint8_t>(v));
  d.push_back(static_cast<std::uint8_t>(v >> 8));
}
void Put32(std::vector<std::uint8_t>& d, std::uint32_t v) {
  Put16(d, v & 0xFFFF);
  Put16(d, v >> 16);
}

// Decodes a device-independent bitmap that starts with its info header at offset
// `info`, with pixel bits at `bits`. For icons the height is doubled and an AND mask
// follows the colour bits.
std::optional<Image> DecodeDib(const std::vector<std::uint8_t>& d, std::size_t info, std::size_t bits,
                               bool icon) {
  if (info + 16 > d.size()) return std::nullopt;
  std::uint32_t header_size = U32(d, info);
  std::int32_t w, h;
  std::uint32_t bpp, compression = 0, colors_used = 0;
  std::size_t palette;
  int palette_entry = 4;
  if (header_size == 12) {
    w = static_cast<std::int16_t>(U16(d, info + 4));
    h = static_cast<std::int16_t>(U16(d, info + 6));
    bpp = U16(d, info + 10);
    palette = info + 12;
    palette_entry = 3;
  } else if (header_size >= 40) {
    if (info + 40 > d.size()) return std::nullopt;
    w = static_cast<std::int32_t>(U32(d, info + 4));
    h = static_cast<std::int32_t>(U32(d, info + 8));
    bpp = U16(d, info + 14);
    compression = U32(d, info + 16);
    colors_used = U32(d, info + 32);
    palette = info + header_size;
  } else {
    return std::nullopt;
  }
  bool top_down = h < 0;
  if (top_down) h = -h;
  if (icon) h /= 2;
  if (w <= 0 || h <= 0 || w > 32768 || h > 32768) return std::nullopt;
  if (compression != 0 && !(compression == 3 && (bpp == 16 || bpp == 32))) return std::nullopt;
  if (bpp != 1 && bpp != 4 && bpp != 8 && bpp != 24 && bpp != 32) return std::nullopt;
  std::uint32_t ncolors = 0;
  if (bpp <= 8) ncolors = colors_used ? colors_used : (1u << bpp);
  if (ncolors > 256) return std::nullopt;
  std::vector<ColorRef> pal(ncolors);
  for (std::uint32_t i = 0; i < ncolors; ++i) {
    std::size_t o = palette + i * palette_entry;
    if (o + 3 > d.size()) return std::nullopt;
    pal[i] = Rgb(d[o + 2], d[o + 1], d[o]);
  }
  if (icon || bits == 0) bits = palette + ncolors * palette_entry + (compression == 3 && header_size == 40 ? 12 : 0);
  std::size_t stride = ((static_cast<std::size_t>(w) * bpp + 31) / 32) * 4;
  if (bits + stride * h > d.size()) return std::nullopt;
  Image img(w, h);
  for (std::int32_t row = 0; row < h; ++row) {
    std::int32_t y = top_down ? row : h - 1 - row;
    const std::uint8_t* p = d.data() + bits + stride * row;
    for (std::int32_t x = 0; x < w; ++x) {
      ColorRef c = 0;
      switch (bpp) {
        case 1: c = pal[(p[x / 8] >> (7 - x % 8)) & 1]; break;
        case 4: c = pal[std::min<std::uint32_t>((p[x / 2] >> (x % 2 ? 0 : 4)) & 0xF, ncolors - 1)]; break;
        case 8: c = pal[std::min<std::uint32_t>(p[x], ncolors - 1)]; break;
        case 24: c = Rgb(p[x * 3 + 2], p[x * 3 + 1], p[x * 3]); break;
        case 32: c = Rgb(p[x * 4 + 2], p[x * 4 + 1], p[x * 4]); break;
      }
      img.At(x, y) = c;
    }
  }
  if (icon) {
    std::size_t mask = bits + stride * h;
    std::size_t mstride = ((static_cast<std::size_t>(w) + 31) / 32) * 4;
    img.transparent.assign(static_cast<std::size_t>(w) * h, false);
    if (mask + mstride * h <= d.size()) {
      for (std::int32_t row = 0; row < h; ++row) {
        std::int32_t y = h - 1 - row;
        const std::uint8_t* p = d.data() + mask + mstride * row;
        for (std::int32_t x = 0; x < w; ++x)
          img.transparent[static_cast<std::size_t>(y) * w + x] = ((p[x / 8] >> (7 - x % 8)) & 1) != 0;
      }
    }
  }
  return img;
}

}  // namespace

std::optional<Image> DecodeBmp(const std::vector<std::uint8_t>& d) {
  if (d.size() < 26 || d[0] != 'B' || d[1] != 'M') return std::nullopt;
  return DecodeDib(d, 14, U32(d, 10), false);
}

std::optional<Image> DecodeIco(const std::vector<std::uint8_t>& d) {
  if (d.size() < 22 || U16(d, 0) != 0 || U16(d, 2) != 1 || U16(d, 4) == 0) return std::nullopt;
  std::uint32_t offset = U32(d, 6 + 12);
  if (offset >= d.size()) return std::nullopt;
  return DecodeDib(d, offset, 0, true);
}

std::vector<std::uint8_t> EncodeBmp(const Image& img) {
  std::vector<std::uint8_t> d;
  std::size_t stride = ((static_cast<std::size_t>(img.width) * 24 + 31) / 32) * 4;
  std::uint32_t size = static_cast<std::uint32_t>(54 + stride * img.height);
  d.push_back('B');
  d.push_back('M');
  Put32(d, size);
  Put32(d, 0);
  Put32(d, 54);
  Put32(d, 40);
  Put32(d, static_cast<std::uint32_t>(img.width));
  Put32(d, static_cast<std::uint32_t>(img.height));
  Put16(d, 1);
  Put16(d, 24);
  Put32(d, 0);
  Put32(d, static_cast<std::uint32_t>(stride * img.height));
  Put32(d, 3780);
  Put32(d, 3780);
  Put32(d, 0);
  Put32(d, 0);
  for (std::int32_t row = img.height - 1; row >= 0; --row) {
    std::size_t start = d.size();
    for (std::int32_t x = 0; x < img.width; ++x) {
      ColorRef c = img.At(x, row);
      d.push_back(static_cast<std::uint8_t>(BlueOf(c)));
      d.push_back(static_cast<std::uint8_t>(GreenOf(c)));
      d.push_back(static_cast<std::uint8_t>(RedOf(c)));
    }
    while (d.size() - start < stride) d.push_back(0);
  }
  return d;
}

}  // namespace korvel
