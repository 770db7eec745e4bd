// The About form as AboutBox shows it, and with the web link hovered.
#include "framework/about_form.h"
#include "controls/link/link.h"
#include "platform/headless/headless_host.h"
#include "tools/gallery.h"

namespace korvel::gallery {
namespace {

// Frames a form's client area with a caption bar and a raised border.
Image Framed(headless::HeadlessPlatform& p, Form& form) {
  Image client = form.surface().Snapshot();
  const int border = 4, caption = 18;
  Surface frame(p, 0, client.width + 2 * border, client.height + 2 * border + caption);
  frame.SetBackColor(0x8000000F);
  Rect rc{0, 0, frame.Width(), frame.Height()};
  p.gdi().DrawEdge(frame.hDC(), &rc, EDGE_RAISED, BF_RECT);
  frame.Line(static_cast<float>(border - 1), static_cast<float>(border - 1),
             static_cast<float>(frame.Width() - border), static_cast<float>(border + caption - 2), 0x80000002u, true,
             true);
  frame.SetForeColor(0x80000009);
  auto bold = std::make_shared<Font>("Arial", 8);
  bold->SetBold(true);
  frame.SetFont(bold);
  frame.SetCurrentX(border + 4);
  frame.SetCurrentY(border + 1);
  frame.Print(form.Caption());
  for (int y = 0; y < client.height; ++y)
    for (int x = 0; x < client.width; ++x)
      p.gdi().SetPixel(frame.hDC(), border + x, border + caption + y, client.At(x, y));
  return frame.Snapshot();
}

void RenderAbout(headless::HeadlessPlatform& p, Gallery& g) {
  headless::HeadlessHost host(p);
  AboutForm form(host, p);
  g.Add("About box", "about", "The About form that AboutBox shows on every control", Framed(p, form), 2);
  form.MouseMove(0, 0, 100, 158);
  g.Add("About box", "about-hover", "The same form with the pointer over the web link", Framed(p, form), 2);
  form.MouseMove(0, 0, 5, 5);
}

const Register kAbout(90, RenderAbout);

}  // namespace
}  // namespace korvel::gallery
