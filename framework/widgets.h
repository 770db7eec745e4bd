// Windowless constituents of the library's forms: labels, an image, a command
// button. Each one keeps its rectangle (pixels, in the form) and draws itself on
// the form's surface with the platform's drawing calls.
#pragma once
#include <functional>
#include <string>

#include "framework/font.h"
#include "framework/picture.h"
#include "framework/surface.h"

namespace korvel {

struct Label {
  std::string name;
  std::string caption;
  Rect rect;
  FontRef font;
  OleColor fore_color = 0x80000012;  // button text
  std::uint32_t alignment = DT_LEFT;  // DT_LEFT, DT_CENTER or DT_RIGHT
  bool word_wrap = true;
  void Paint(Surface& s) const;
};

struct ImageBox {
  std::string name;
  PictureRef picture;
  Rect rect;
  void Paint(Surface& s) const;
};

struct CommandButton {
  std::string name;
  std::string caption;
  Rect rect;
  FontRef font;
  bool is_default = false;  // the default button has a black frame
  std::function<void()> on_click;
  bool enabled = true;  // a disabled button greys its caption and ignores clicks
  // The button is pressed (by the user or by code): Click runs unless it is disabled.
  void Click() {
    if (enabled && on_click) on_click();
  }
  void Paint(Surface& s) const;
  bool Contains(float x, float y) const {
    return x >= rect.left && x < rect.right && y >= rect.top && y < rect.bottom;
  }
};

// A caption as it shows: "&" marks the next character as the mnemonic and "&&"
// stands for one "&".
std::string StripMnemonic(const std::string& caption);

}  // namespace korvel
