#include "framework/picture.h"

#include <fstream>
#include <iterator>

#include "framework/platform.h"

namespace korvel {

std::int32_t PixelsToHimetric(std::int32_t pixels) {
  // MulDiv rounding: (pixels * 2540 + 48) / 96
  std::int64_t n = static_cast<std::int64_t>(pixels) * 2540;
  return static_cast<std::int32_t>((n + (n >= 0 ? 48 : -48)) / 96);
}

std::int32_t HimetricToPixels(std::int32_t himetric) {
  std::int64_t n = static_cast<std::int64_t>(himetric) * 96;
  return static_cast<std::int32_t>((n + (n >= 0 ? 1270 : -1270)) / 2540);
}

Picture::Picture(PictureType type, Image image, std::vector<std::uint8_t> file_bytes)
    : type_(type), image_(std::move(image)), file_bytes_(std::move(file_bytes)) {
  if (file_bytes_.empty()) file_bytes_ = EncodeBmp(image_);
}

Picture::~Picture() {
  if (owner_ && handle_) owner_->DeleteObject(handle_);
}

std::shared_ptr<Picture> Picture::FromBytes(const std::vector<std::uint8_t>& bytes) {
  if (auto bmp = DecodeBmp(bytes)) return std::make_shared<Picture>(PictureType::Bitmap, std::move(*bmp), bytes);
  if (auto ico = DecodeIco(bytes)) return std::make_shared<Picture>(PictureType::Icon, std::move(*ico), bytes);
  return nullptr;
}

std::shared_ptr<Picture> Picture::FromImage(Image image) {
  return std::make_shared<Picture>(PictureType::Bitmap, std::move(image));
}

std::shared_ptr<Picture> Picture::Load(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) return nullptr;
  std::vector<std::uint8_t> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  return FromBytes(bytes);
}

Handle Picture::HandleFor(Gdi& gdi) const {
  if (owner_ != &gdi) {
    if (owner_ && handle_) owner_->DeleteObject(handle_);
    owner_ = &gdi;
    handle_ = gdi.CreateBitmapFromImage(image_);
  }
  return handle_;
}

}  // namespace korvel
