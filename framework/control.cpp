#include "framework/control.h"

#include "framework/about_form.h"
#include "framework/arith.h"
#include "framework/errors.h"

namespace korvel {

Control::Control(Host& host, Platform& platform)
    : host_(host), platform_(platform), surface_(std::make_unique<Surface>(platform, host.ParentWindow(), 1, 1)) {}

Control::~Control() = default;

void Control::AboutBox() {
  // Each call builds a fresh form and drops it afterwards.
  auto form = std::make_unique<AboutForm>(host_, platform_);
  host_.ShowModal(*form);
  form.reset();
}

Variant Control::Invoke(const std::string& name, InvokeKind kind, std::vector<Variant>& args) {
  if (MemberCall(name, kind, args).Method("AboutBox")) {
    AboutBox();
    return {};
  }
  throw RuntimeError(kErrNoSuchMember);
}

std::int32_t Control::Width() { return surface_->Width() * platform_.TwipsPerPixelX(); }
std::int32_t Control::Height() { return surface_->Height() * platform_.TwipsPerPixelY(); }

void Control::SetWidth(std::int32_t twips) { host_.SetControlSize(twips, Height()); }
void Control::SetHeight(std::int32_t twips) { host_.SetControlSize(Width(), twips); }

void Control::SetExtentPixels(int width, int height) {
  surface_->Move(surface_->Left(), surface_->Top(), width, height);
}

}  // namespace korvel
