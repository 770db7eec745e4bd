#include "platform/headless/headless_host.h"

#include "framework/form.h"

namespace korvel::headless {

void HeadlessHost::RaiseEvent(const std::string& n, std::vector<Variant>& args) {
  events.push_back(RecordedEvent{n, args});
  if (on_event) {
    on_event(events.back());
    args = events.back().args;
  }
}

void HeadlessHost::SetControlSize(std::int32_t width_twips, std::int32_t height_twips) {
  size_requests.emplace_back(width_twips, height_twips);
  if (!control_) return;
  // The host answers a size change with another Resize; a control that keeps
  // asking is stopped after a few rounds, as a real host would stop repainting.
  if (resize_depth_ > 8) return;
  ++resize_depth_;
  control_->SetExtentPixels(width_twips / platform_.TwipsPerPixelX(), height_twips / platform_.TwipsPerPixelY());
  control_->Resize();
  --resize_depth_;
}

std::int32_t HeadlessHost::MsgBox(const std::string& prompt, std::int32_t buttons, const std::string& title) {
  msgboxes.push_back(RecordedMsgBox{prompt, buttons, title});
  return msgbox_result;
}

void HeadlessHost::ShowModal(Form& form) {
  modal_forms.push_back(form.Caption());
  if (on_show_modal) on_show_modal(form);
}

void HeadlessHost::PlaceNew(Control& control, int width, int height) {
  Attach(&control);
  control.InitProperties();
  Size(control, width, height);
  control.Paint();
}

void HeadlessHost::Load(Control& control, const PropertyBag& bag, int width, int height) {
  Attach(&control);
  control.ReadProperties(bag);
  Size(control, width, height);
  control.Paint();
}

void HeadlessHost::Size(Control& control, int width, int height) {
  control.SetExtentPixels(width, height);
  control.Resize();
}

void HeadlessHost::ClearRecords() {
  events.clear();
  property_changes.clear();
  msgboxes.clear();
  modal_forms.clear();
  size_requests.clear();
}

}  // namespace korvel::headless
