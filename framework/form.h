// A form of the library (the About form, the resource form): a top-level drawing
// surface with a caption. Forms are loaded when built and unloaded when closed.
#pragma once
#include <memory>
#include <string>

#include "framework/host.h"
#include "framework/platform.h"
#include "framework/surface.h"

namespace korvel {

class Form {
 public:
  Form(Host& host, Platform& platform, std::string caption, int width, int height);
  virtual ~Form();
  Form(const Form&) = delete;
  Form& operator=(const Form&) = delete;

  const std::string& Caption() const { return caption_; }
  Surface& surface() { return *surface_; }
  Host& host() { return host_; }
  Platform& platform() { return platform_; }
  bool Loaded() const { return loaded_; }
  // Closes the form (the host's modal loop ends when the shown form unloads).
  void Unload();
  // Draws the form's client area and everything on it.
  virtual void Paint() {}

 protected:
  Host& host_;
  Platform& platform_;

 private:
  std::string caption_;
  std::unique_ptr<Surface> surface_;
  bool loaded_ = true;
};

}  // namespace korvel
