#include "framework/about_form.h"

#include "controls/link/link.h"
#include "framework/arith.h"

namespace korvel {

namespace {
constexpr int kFormWidth = 372;
constexpr int kFormHeight = 236;
const Rect kWebRect{12, 150, 360, 166};
const Rect kEMailRect{12, 168, 360, 184};
}  // namespace

Image KorvelLogoImage() {
  Image img(48, 48, Rgb(192, 192, 192));
  auto box = [&](int x0, int y0, int x1, int y1, ColorRef c) {
    for (int y = y0; y <= y1; ++y)
      for (int x = x0; x <= x1; ++x)
        if (x >= 0 && y >= 0 && x < 48 && y < 48) img.At(x, y) = c;
  };
  // A raised navy tile with a white K and a gold stripe.
  box(2, 2, 45, 45, Rgb(0, 0, 128));
  box(2, 2, 45, 2, Rgb(64, 96, 200));
  box(2, 2, 2, 45, Rgb(64, 96, 200));
  box(3, 45, 45, 45, Rgb(0, 0, 64));
  box(45, 3, 45, 45, Rgb(0, 0, 64));
  box(12, 10, 17, 37, Rgb(255, 255, 255));
  for (int i = 0; i < 14; ++i) {
    box(18 + i, 23 - i, 22 + i, 24 - i, Rgb(255, 255, 255));  // upper arm
    box(18 + i, 24 + i, 22 + i, 25 + i, Rgb(255, 255, 255));  // lower arm
  }
  box(6, 40, 41, 42, Rgb(255, 192, 0));
  return img;
}

AboutForm::AboutForm(Host& host, Platform& platform)
    : Form(host, platform, "About KorvelUI99...", kFormWidth, kFormHeight),
      arial_(std::make_shared<Font>("Arial", 8)),
      arial_bold_(std::make_shared<Font>("Arial", 10)) {
  arial_bold_->SetBold(true);
  KorvelUILogo = ImageBox{"KorvelUILogo", Picture::FromImage(KorvelLogoImage()), Rect{12, 12, 60, 60}};
  VersionLabel = Label{"VersionLabel", "Version 1.0", Rect{72, 12, 360, 30}, arial_bold_};
  CreditsLabel = Label{"CreditsLabel",
                       "KorvelUI99 is a set of free controls that help you build interfaces that are easy to "
                       "use. You may use them in any program, free or commercial, and hand them out with it. "
                       "They come as they are, without warranty of any kind.",
                       Rect{72, 36, 360, 120}, arial_};
  VisitLabel = Label{"Label1", "Visit the web site for even more goodies!", Rect{12, 130, 360, 146}, arial_};
  VisitLabel.alignment = DT_CENTER;
  OKButton = CommandButton{"OKButton", "OK", Rect{146, 196, 226, 222}, arial_, true, nullptr};
  OKButton.on_click = [this] { Unload(); };

  auto make_link = [&](std::unique_ptr<ChildHost>& h, std::unique_ptr<KorvelLink>& link, const char* name,
                       const Rect& rc, const char* url) {
    h = std::make_unique<ChildHost>(host, platform, name, arial_, surface().BackColor(), surface().hWnd());
    link = std::make_unique<KorvelLink>(*h, platform);
    h->Attach(link.get());
    link->InitProperties();
    link->UserControl().Move(rc.left, rc.top, rc.right - rc.left, rc.bottom - rc.top);
    link->SetURL(url);
    link->Resize();
  };
  make_link(web_host_, web_link_, "WebLink", kWebRect, kWebSite);
  make_link(email_host_, email_link_, "EMailLink", kEMailRect, kEMail);
  Load();
}

AboutForm::~AboutForm() = default;

void AboutForm::Load() {
  VersionLabel.caption = "Version " + CStr(kVersionMajor) + "." + CStr(kVersionMinor);
  Paint();
}

void AboutForm::Paint() {
  Surface& s = surface();
  s.Cls();
  KorvelUILogo.Paint(s);
  VersionLabel.Paint(s);
  CreditsLabel.Paint(s);
  VisitLabel.Paint(s);
  OKButton.Paint(s);
  Gdi& gdi = platform_.gdi();
  for (KorvelLink* link : {web_link_.get(), email_link_.get()}) {
    Surface& ls = link->UserControl();
    gdi.BitBlt(s.hDC(), ls.Left(), ls.Top(), ls.Width(), ls.Height(), ls.hDC(), 0, 0, SRCCOPY);
  }
}

KorvelLink* AboutForm::LinkAt(float x, float y) {
  Hwnd captured = platform_.user().GetCapture();
  for (KorvelLink* link : {web_link_.get(), email_link_.get()}) {
    Surface& ls = link->UserControl();
    if (captured == ls.hWnd()) return link;
  }
  for (KorvelLink* link : {web_link_.get(), email_link_.get()}) {
    Surface& ls = link->UserControl();
    if (x >= ls.Left() && x < ls.Left() + ls.Width() && y >= ls.Top() && y < ls.Top() + ls.Height()) return link;
  }
  return nullptr;
}

void AboutForm::RouteMouse(int kind, int button, int shift, float x, float y) {
  if (KorvelLink* link = LinkAt(x, y)) {
    float lx = x - static_cast<float>(link->UserControl().Left());
    float ly = y - static_cast<float>(link->UserControl().Top());
    if (kind == 0) link->MouseMove(button, shift, lx, ly);
    if (kind == 1) link->MouseDown(button, shift, lx, ly);
    if (kind == 2) link->MouseUp(button, shift, lx, ly);
  }
  Paint();
}

void AboutForm::MouseMove(int button, int shift, float x, float y) { RouteMouse(0, button, shift, x, y); }

void AboutForm::MouseDown(int button, int shift, float x, float y) {
  ok_pressed_ = button == 1 && OKButton.Contains(x, y);
  RouteMouse(1, button, shift, x, y);
}

void AboutForm::MouseUp(int button, int shift, float x, float y) {
  RouteMouse(2, button, shift, x, y);
  if (ok_pressed_ && OKButton.Contains(x, y) && OKButton.on_click) OKButton.on_click();
  ok_pressed_ = false;
}

}  // namespace korvel
