#include "platform/headless/png_writer.h"

#include <png.h>

#include <cstdio>
#include <vector>

namespace korvel::headless {

bool WritePng(const Image& image, const std::string& path) {
  FILE* f = std::fopen(path.c_str(), "wb");
  if (!f) return false;
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png ? png_create_info_struct(png) : nullptr;
  if (!png || !info || setjmp(png_jmpbuf(png))) {
    png_destroy_write_struct(&png, &info);
    std::fclose(f);
    return false;
  }
  png_init_io(png, f);
  png_set_IHDR(png, info, static_cast<png_uint_32>(image.width), static_cast<png_uint_32>(image.height), 8,
               PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  png_write_info(png, info);
  std::vector<png_byte> row(static_cast<std::size_t>(image.width) * 3);
  for (int y = 0; y < image.height; ++y) {
    for (int x = 0; x < image.width; ++x) {
      ColorRef c = image.At(x, y);
      row[x * 3] = static_cast<png_byte>(RedOf(c));
      row[x * 3 + 1] = static_cast<png_byte>(GreenOf(c));
      row[x * 3 + 2] = static_cast<png_byte>(BlueOf(c));
    }
    png_write_row(png, row.data());
  }
  png_write_end(png, nullptr);
  png_destroy_write_struct(&png, &info);
  std::fclose(f);
  return true;
}

bool ReadPng(const std::string& path, Image& image) {
  png_image img{};
  img.version = PNG_IMAGE_VERSION;
  if (!png_image_begin_read_from_file(&img, path.c_str())) return false;
  img.format = PNG_FORMAT_RGB;
  std::vector<png_byte> buf(PNG_IMAGE_SIZE(img));
  if (!png_image_finish_read(&img, nullptr, buf.data(), 0, nullptr)) return false;
  image = Image(static_cast<int>(img.width), static_cast<int>(img.height));
  for (int y = 0; y < image.height; ++y)
    for (int x = 0; x < image.width; ++x) {
      const png_byte* p = &buf[(static_cast<std::size_t>(y) * image.width + x) * 3];
      image.At(x, y) = Rgb(p[0], p[1], p[2]);
    }
  return true;
}

}  // namespace korvel::headless
