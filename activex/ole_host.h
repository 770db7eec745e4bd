// The host a control sees inside a container: ambient properties read from the
// client site's IDispatch, the extender from IOleControlSite::GetExtendedControl,
// PropertyChanged to the IPropertyNotifySink sinks, events to the event sinks,
// size requests to the in-place site, message boxes and modal forms as real
// windows. Without any site (a script's CreateObject) it behaves as at run time.
#pragma once
#include <string>
#include <vector>

#include "framework/host.h"

#include <windows.h>
#include <ocidl.h>

namespace korvel::activex {

class OleControl;

class OleHost : public Host {
 public:
  explicit OleHost(OleControl& owner) : owner_(owner) {}

  // Reads the ambient properties again (a new site, OnAmbientPropertyChange).
  void ReadAmbients();
  void SetWindow(HWND parent) { parent_ = parent; }

  bool UserMode() override { return user_mode_; }
  FontRef AmbientFont() override;
  OleColor AmbientBackColor() override { return back_color_; }
  OleColor AmbientForeColor() override { return fore_color_; }
  std::string AmbientDisplayName() override { return display_name_; }
  std::string ExtenderName() override;
  bool ExtenderVisible() override;
  void SetExtenderVisible(bool visible) override;
  std::int32_t ExtenderAlign() override;
  void SetExtenderAlign(std::int32_t align) override;
  bool ExtenderEnabled() override;
  void SetExtenderEnabled(bool enabled) override;
  Hwnd ParentWindow() override { return reinterpret_cast<Hwnd>(parent_); }
  void PropertyChanged(const std::string& name) override;
  void RaiseEvent(const std::string& name, std::vector<Variant>& args) override;
  void SetControlSize(std::int32_t width_twips, std::int32_t height_twips) override;
  std::int32_t MsgBox(const std::string& prompt, std::int32_t buttons, const std::string& title) override;
  void ShowModal(Form& form) override;

 private:
  // The extender object of the site (AddRef'ed), or null.
  IDispatch* Extender();
  bool ReadExtender(const wchar_t* name, VARIANT* out);
  void WriteExtender(const wchar_t* name, VARIANT value);

  OleControl& owner_;
  HWND parent_ = nullptr;
  bool user_mode_ = true;
  FontRef font_;
  OleColor back_color_ = 0x8000000F;
  OleColor fore_color_ = 0x80000012;
  std::string display_name_;
  // Extender values kept while no container offers an extender.
  bool visible_ = true;
  bool enabled_ = true;
  std::int32_t align_ = 0;
  int resize_depth_ = 0;
};

}  // namespace korvel::activex
