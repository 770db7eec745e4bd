// The host of a control that sits on one of the library's own forms or pages (the
// About form's links, a page's spin box): always at run time, ambient font and
// colours from the form, message boxes and modal forms passed to the outer host.
// Events go to the form's handler; property changes are of no interest to a form.
#pragma once
#include <functional>
#include <string>
#include <vector>

#include "framework/control.h"
#include "framework/host.h"

namespace korvel {

class ChildHost : public Host {
 public:
  ChildHost(Host& outer, Platform& platform, std::string name, FontRef ambient_font, OleColor back_color,
            Hwnd parent)
      : outer_(outer), platform_(platform), name_(std::move(name)), font_(std::move(ambient_font)),
        back_color_(back_color), parent_(parent) {}

  // Receives the control's events (name, arguments).
  std::function<void(const std::string&, std::vector<Variant>&)> on_event;
  void Attach(Control* control) { control_ = control; }

  bool UserMode() override { return true; }
  FontRef AmbientFont() override { return font_; }
  OleColor AmbientBackColor() override { return back_color_; }
  OleColor AmbientForeColor() override { return 0x80000012; }
  std::string AmbientDisplayName() override { return name_; }
  std::string ExtenderName() override { return name_; }
  bool ExtenderVisible() override { return visible_; }
  void SetExtenderVisible(bool v) override { visible_ = v; }
  std::int32_t ExtenderAlign() override { return 0; }
  void SetExtenderAlign(std::int32_t) override {}
  bool ExtenderEnabled() override { return enabled_; }
  void SetExtenderEnabled(bool e) override { enabled_ = e; }
  Hwnd ParentWindow() override { return parent_; }
  void PropertyChanged(const std::string&) override {}
  void RaiseEvent(const std::string& name, std::vector<Variant>& args) override {
    if (on_event) on_event(name, args);
  }
  void SetControlSize(std::int32_t width_twips, std::int32_t height_twips) override {
    if (!control_) return;
    control_->SetExtentPixels(width_twips / platform_.TwipsPerPixelX(), height_twips / platform_.TwipsPerPixelY());
    control_->Resize();
  }
  std::int32_t MsgBox(const std::string& prompt, std::int32_t buttons, const std::string& title) override {
    return outer_.MsgBox(prompt, buttons, title);
  }
  void ShowModal(Form& form) override { outer_.ShowModal(form); }

 private:
  Host& outer_;
  Platform& platform_;
  std::string name_;
  FontRef font_;
  OleColor back_color_;
  Hwnd parent_;
  Control* control_ = nullptr;
  bool visible_ = true;
  bool enabled_ = true;
};

}  // namespace korvel
