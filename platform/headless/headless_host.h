// A host for tests, tools and the gallery: ambient and extender values a test sets,
// and a record of everything the control told its host (events with their
// arguments, PropertyChanged names, message boxes, modal forms, size requests).
#pragma once
#include <functional>
#include <string>
#include <vector>

#include "framework/control.h"
#include "framework/host.h"

namespace korvel::headless {

struct RecordedEvent {
  std::string name;
  std::vector<Variant> args;
};

struct RecordedMsgBox {
  std::string prompt;
  std::int32_t buttons;
  std::string title;
};

class HeadlessHost : public Host {
 public:
  explicit HeadlessHost(Platform& platform) : platform_(platform) {}

  // ---- what a test sets ----
  bool user_mode = true;
  FontRef ambient_font = std::make_shared<Font>("MS Sans Serif", 8.25);
  OleColor ambient_back_color = 0x8000000F;
  OleColor ambient_fore_color = 0x80000012;
  std::string display_name = "Control1";
  std::string name = "Control1";
  bool visible = true;
  std::int32_t align = 0;
  bool enabled = true;
  Hwnd parent_window = 0;
  std::int32_t msgbox_result = 1;  // vbOK
  // Called with the form while it is shown modally (the form is loaded throughout).
  std::function<void(Form&)> on_show_modal;
  // Called for each event as it is raised, after it is recorded (may change by-reference arguments).
  std::function<void(RecordedEvent&)> on_event;

  // ---- what a test reads ----
  std::vector<RecordedEvent> events;
  std::vector<std::string> property_changes;  // "" for the unnamed form
  std::vector<RecordedMsgBox> msgboxes;
  std::vector<std::string> modal_forms;  // captions, in order
  std::vector<std::pair<std::int32_t, std::int32_t>> size_requests;  // twips

  // The control whose size requests this host answers (with SetExtentPixels and Resize).
  void Attach(Control* control) { control_ = control; }
  // Drives a new instance: Initialize was run by the constructor's owner;
  // this runs InitProperties, sizes it, Resize and Paint.
  void PlaceNew(Control& control, int width, int height);
  // Drives a loaded instance: ReadProperties, size, Resize and Paint.
  void Load(Control& control, const PropertyBag& bag, int width, int height);
  // Changes the control's extent as the host does and runs Resize.
  void Size(Control& control, int width, int height);
  void ClearRecords();

  // ---- Host ----
  bool UserMode() override { return user_mode; }
  FontRef AmbientFont() override { return ambient_font; }
  OleColor AmbientBackColor() override { return ambient_back_color; }
  OleColor AmbientForeColor() override { return ambient_fore_color; }
  std::string AmbientDisplayName() override { return display_name; }
  std::string ExtenderName() override { return name; }
  bool ExtenderVisible() override { return visible; }
  void SetExtenderVisible(bool v) override { visible = v; }
  std::int32_t ExtenderAlign() override { return align; }
  void SetExtenderAlign(std::int32_t a) override { align = a; }
  bool ExtenderEnabled() override { return enabled; }
  void SetExtenderEnabled(bool e) override { enabled = e; }
  Hwnd ParentWindow() override { return parent_window; }
  void PropertyChanged(const std::string& n) override { property_changes.push_back(n); }
  void RaiseEvent(const std::string& n, std::vector<Variant>& args) override;
  void SetControlSize(std::int32_t width_twips, std::int32_t height_twips) override;
  std::int32_t MsgBox(const std::string& prompt, std::int32_t buttons, const std::string& title) override;
  void ShowModal(Form& form) override;

 private:
  Platform& platform_;
  Control* control_ = nullptr;
  int resize_depth_ = 0;
};

}  // namespace korvel::headless
