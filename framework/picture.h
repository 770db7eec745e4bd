// The picture object (the platform's standard picture): a bitmap or an icon with
// its extent in HIMETRIC and a handle. The image content is portable; the handle is
// made by the platform the first time a drawing call needs it.
#pragma once
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "framework/image.h"
#include "framework/types.h"

namespace korvel {

class Gdi;

enum class PictureType : std::int16_t { None = 0, Bitmap = 1, Icon = 3 };

// Pixels <-> HIMETRIC (0.01 mm) at the screen's 96 pixels per inch.
std::int32_t PixelsToHimetric(std::int32_t pixels);
std::int32_t HimetricToPixels(std::int32_t himetric);

class Picture {
 public:
  Picture(PictureType type, Image image, std::vector<std::uint8_t> file_bytes = {});
  ~Picture();
  Picture(const Picture&) = delete;
  Picture& operator=(const Picture&) = delete;

  // Loads a .bmp or .ico file; nothing when the file is missing or not a picture.
  static std::shared_ptr<Picture> Load(const std::string& path);
  static std::shared_ptr<Picture> FromBytes(const std::vector<std::uint8_t>& bytes);
  static std::shared_ptr<Picture> FromImage(Image image);

  PictureType Type() const { return type_; }
  std::int32_t Width() const { return PixelsToHimetric(image_.width); }   // HIMETRIC
  std::int32_t Height() const { return PixelsToHimetric(image_.height); }  // HIMETRIC
  const Image& Pixels() const { return image_; }
  // The bytes the picture is saved as: the file it came from, or a bitmap file.
  const std::vector<std::uint8_t>& FileBytes() const { return file_bytes_; }

  // The platform handle (a bitmap for both kinds: icons are drawn through their
  // image with transparent pixels in the background). Made on first use by gdi and
  // released with the picture.
  Handle HandleFor(Gdi& gdi) const;

 private:
  PictureType type_;
  Image image_;
  std::vector<std::uint8_t> file_bytes_;
  mutable Gdi* owner_ = nullptr;
  mutable Handle handle_ = 0;
};

using PictureRef = std::shared_ptr<Picture>;

}  // namespace korvel
