// The library's resource form: a form that is never shown, holding one picture
// box, GradPic, a 64 x 1 strip painted on load with a left-to-right gradient from
// the selection highlight colour to the button face colour. The bar stretches
// that strip over its inside.
#pragma once
#include <memory>

#include "framework/form.h"
#include "framework/surface.h"

namespace korvel {

class ResForm : public Form {
 public:
  // Loads the form: builds GradPic and paints its gradient.
  ResForm(Host& host, Platform& platform);
  ~ResForm() override;

  // The picture box with the gradient strip.
  Surface& GradPic() { return *grad_pic_; }

  // The one loaded resource form of a platform, loaded on first use and kept while
  // any holder keeps the returned reference; when the last holder lets go it is
  // unloaded, and the next use loads it afresh (painted with the colours of then).
  static std::shared_ptr<ResForm> Shared(Platform& platform);

  static constexpr int kGradWidth = 64;
  static constexpr int kGradHeight = 1;

 private:
  std::unique_ptr<Surface> grad_pic_;
};

}  // namespace korvel
