// The gallery's shared pieces: the picture collection and the registry of
// renderers. Each control adds a gallery_<name>.cpp that registers its renderer.
#pragma once
#include <functional>
#include <string>
#include <vector>

#include "framework/image.h"
#include "platform/headless/headless_platform.h"

namespace korvel::gallery {

class Gallery {
 public:
  explicit Gallery(std::string dir) : dir_(std::move(dir)) {}
  // Adds one picture under a section heading, scaled up by zoom (whole pixels).
  void Add(const std::string& section, const std::string& name, const std::string& caption, const Image& img,
           int zoom = 2);
  bool WriteIndex();
  std::size_t Count() const { return entries_.size(); }

 private:
  struct Entry {
    std::string section, file, caption;
  };
  std::string dir_;
  std::vector<Entry> entries_;
  bool failed_ = false;
};

using Renderer = std::function<void(headless::HeadlessPlatform&, Gallery&)>;

// Registers a renderer; order is the number's order (foundation 0, controls after).
struct Register {
  Register(int order, Renderer renderer);
};

// An image strip of four 16 x 16 images on a magenta (mask colour) background.
Image DemoStrip();

}  // namespace korvel::gallery
