// What a control reaches of its host: ambient properties, the extender, property
// change notification, event raising, screen metrics, message boxes and modal forms.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "framework/font.h"
#include "framework/types.h"
#include "framework/variant.h"

namespace korvel {

class Form;

class Host {
 public:
  virtual ~Host() = default;

  // ---- ambient properties ----
  // False while the form is being designed, true at run time.
  virtual bool UserMode() = 0;
  virtual FontRef AmbientFont() = 0;
  virtual OleColor AmbientBackColor() = 0;
  virtual OleColor AmbientForeColor() = 0;
  virtual std::string AmbientDisplayName() = 0;

  // ---- extender ----
  virtual std::string ExtenderName() = 0;
  virtual bool ExtenderVisible() = 0;
  virtual void SetExtenderVisible(bool visible) = 0;
  virtual std::int32_t ExtenderAlign() = 0;
  virtual void SetExtenderAlign(std::int32_t align) = 0;
  virtual bool ExtenderEnabled() = 0;
  virtual void SetExtenderEnabled(bool enabled) = 0;
  // The window of the form that holds the control (0 when there is none).
  virtual Hwnd ParentWindow() = 0;

  // ---- notifications and events ----
  // Marks property name as changed; an empty name marks the whole control.
  virtual void PropertyChanged(const std::string& name) = 0;
  // Raises a declared event synchronously; by-reference arguments may come back changed.
  virtual void RaiseEvent(const std::string& name, std::vector<Variant>& args) = 0;

  // ---- extent ----
  // The control asks for a new size of its own (twips); the host answers with Resize.
  virtual void SetControlSize(std::int32_t width_twips, std::int32_t height_twips) = 0;

  // ---- user interface ----
  // The host's message box: returns the button pressed.
  virtual std::int32_t MsgBox(const std::string& prompt, std::int32_t buttons, const std::string& title) = 0;
  // Shows form modally with no owner and returns when it is closed.
  virtual void ShowModal(Form& form) = 0;
};

// Raises an event with arguments given in place.
template <class... A>
void RaiseEvent(Host& host, const std::string& name, A&&... args) {
  std::vector<Variant> v{Variant(std::forward<A>(args))...};
  host.RaiseEvent(name, v);
}

}  // namespace korvel
