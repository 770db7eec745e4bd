#include "framework/about_form.h"

namespace korvel {

AboutForm::AboutForm(Host& host, Platform& platform) : Form(host, platform, "About KorvelUI99...", 360, 240) {}

AboutForm::~AboutForm() = default;

}  // namespace korvel
