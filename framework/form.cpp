#include "framework/form.h"

namespace korvel {

Form::Form(Host& host, Platform& platform, std::string caption, int width, int height)
    : host_(host), platform_(platform), caption_(std::move(caption)),
      surface_(std::make_unique<Surface>(platform, 0, width, height)) {}

Form::~Form() = default;

void Form::Unload() { loaded_ = false; }

}  // namespace korvel
