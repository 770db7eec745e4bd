// The About form every control shows from AboutBox: the logo, the version, a word
// about the library and its terms, and two links, one to the web site and one to
// write an e-mail. Each AboutBox call builds a fresh form and unloads it afterwards.
#pragma once
#include <memory>

#include "framework/child_host.h"
#include "framework/form.h"
#include "framework/widgets.h"

namespace korvel {

class KorvelLink;

inline constexpr int kVersionMajor = 1;
inline constexpr int kVersionMinor = 0;

class AboutForm : public Form {
 public:
  static constexpr const char* kWebSite = "http://www.korvelui.example/";
  static constexpr const char* kEMail = "mailto:support@korvelui.example";

  // Builds and loads the form.
  AboutForm(Host& host, Platform& platform);
  ~AboutForm() override;

  void Paint() override;
  // Mouse input in form coordinates (pixels); the links and the OK button take it.
  void MouseMove(int button, int shift, float x, float y);
  void MouseDown(int button, int shift, float x, float y);
  void MouseUp(int button, int shift, float x, float y);

  // ---- constituents ----
  ImageBox KorvelUILogo;
  Label VersionLabel;
  Label CreditsLabel;
  Label VisitLabel;
  CommandButton OKButton;
  KorvelLink& WebLink() { return *web_link_; }
  KorvelLink& EMailLink() { return *email_link_; }

 private:
  void Load();
  KorvelLink* LinkAt(float x, float y);
  void RouteMouse(int kind, int button, int shift, float x, float y);

  FontRef arial_;
  FontRef arial_bold_;
  std::unique_ptr<ChildHost> web_host_, email_host_;
  std::unique_ptr<KorvelLink> web_link_, email_link_;
  bool ok_pressed_ = false;
};

// The library's logo, 48 x 48 pixels.
Image KorvelLogoImage();

}  // namespace korvel
