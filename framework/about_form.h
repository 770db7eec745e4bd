// The About form every control shows from AboutBox.
#pragma once
#include "framework/form.h"

namespace korvel {

inline constexpr int kVersionMajor = 1;
inline constexpr int kVersionMinor = 0;

class AboutForm : public Form {
 public:
  AboutForm(Host& host, Platform& platform);
  ~AboutForm() override;
};

}  // namespace korvel
