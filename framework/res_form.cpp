#include "framework/res_form.h"

#include <map>
#include <string>
#include <vector>

#include "framework/brightmoor.h"

namespace korvel {

namespace {

// The shared form belongs to no control, so it is not tied to any control's host:
// it answers its own few host questions (it is never shown and raises nothing).
class ResourceHost : public Host {
 public:
  bool UserMode() override { return true; }
  FontRef AmbientFont() override { return std::make_shared<Font>(); }
  OleColor AmbientBackColor() override { return 0x8000000F; }
  OleColor AmbientForeColor() override { return 0x80000012; }
  std::string AmbientDisplayName() override { return "ResForm"; }
  std::string ExtenderName() override { return "ResForm"; }
  bool ExtenderVisible() override { return false; }
  void SetExtenderVisible(bool) override {}
  std::int32_t ExtenderAlign() override { return 0; }
  void SetExtenderAlign(std::int32_t) override {}
  bool ExtenderEnabled() override { return true; }
  void SetExtenderEnabled(bool) override {}
  Hwnd ParentWindow() override { return 0; }
  void PropertyChanged(const std::string&) override {}
  void RaiseEvent(const std::string&, std::vector<Variant>&) override {}
  void SetControlSize(std::int32_t, std::int32_t) override {}
  std::int32_t MsgBox(const std::string&, std::int32_t, const std::string&) override { return 1; }
  void ShowModal(Form&) override {}
};

struct SharedEntry {
  std::unique_ptr<ResourceHost> host;
  std::weak_ptr<ResForm> form;
};

std::map<Platform*, SharedEntry>& SharedForms() {
  static std::map<Platform*, SharedEntry> forms;
  return forms;
}

}  // namespace

ResForm::ResForm(Host& host, Platform& platform) : Form(host, platform, "ResForm", 120, 40) {
  grad_pic_ = std::make_unique<Surface>(platform, surface().hWnd(), kGradWidth, kGradHeight);
  // Form load: the highlight-to-button-face strip.
  PaintGradient(platform, grad_pic_.get(), 1, TranslateSysColor(platform, 0x8000000D),
                TranslateSysColor(platform, 0x8000000F));
}

ResForm::~ResForm() = default;

std::shared_ptr<ResForm> ResForm::Shared(Platform& platform) {
  SharedEntry& entry = SharedForms()[&platform];
  if (auto form = entry.form.lock()) return form;
  if (!entry.host) entry.host = std::make_unique<ResourceHost>();
  auto form = std::make_shared<ResForm>(*entry.host, platform);
  entry.form = form;
  return form;
}

}  // namespace korvel
