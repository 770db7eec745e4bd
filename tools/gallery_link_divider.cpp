// Gallery pictures of the link (normal, hovered, disabled) and the divider
// (across with and without a caption, and down).
#include "controls/divider/divider.h"
#include "controls/link/link.h"
#include "platform/headless/headless_host.h"
#include "tools/gallery.h"

namespace korvel::gallery {

namespace {

void RenderLinkDivider(headless::HeadlessPlatform& p, Gallery& g) {
  const std::string link_section = "Link (KorvelLink)";
  {
    headless::HeadlessHost host(p);
    KorvelLink link(host, p);
    host.PlaceNew(link, 140, 20);
    link.SetURL("http://www.example.com");
    g.Add(link_section, "link-normal", "A link to a web address on the button face, mouse away: highlight colour",
          link.UserControl().Snapshot(), 3);
    link.MouseMove(0, 0, 70, 10);
    g.Add(link_section, "link-hover", "The same link with the mouse over it: hover colour (red), underlined",
          link.UserControl().Snapshot(), 3);
    link.MouseMove(0, 0, 300, 10);
  }
  {
    headless::HeadlessHost host(p);
    KorvelLink link(host, p);
    host.PlaceNew(link, 140, 20);
    link.SetURL("  mailto:sales@example.com ");
    link.SetEnabled(false);
    g.Add(link_section, "link-disabled", "A disabled mailto: link: grey text, the address without its prefix",
          link.UserControl().Snapshot(), 3);
  }
  {
    headless::HeadlessHost host(p);
    KorvelLink link(host, p);
    host.PlaceNew(link, 140, 20);
    g.Add(link_section, "link-empty", "A new link with neither caption nor URL", link.UserControl().Snapshot(), 3);
  }

  const std::string divider_section = "Divider (KorvelDivider)";
  {
    headless::HeadlessHost host(p);
    KorvelDivider divider(host, p);
    host.PlaceNew(divider, 200, 24);
    divider.SetCaption("Connection settings");
    g.Add(divider_section, "divider-caption", "Across, 200 x 24, with a caption sitting on the etched line",
          divider.UserControl().Snapshot(), 3);
  }
  {
    headless::HeadlessHost host(p);
    KorvelDivider divider(host, p);
    host.PlaceNew(divider, 200, 24);
    g.Add(divider_section, "divider-plain", "Across, 200 x 24, no caption: the line in the middle",
          divider.UserControl().Snapshot(), 3);
  }
  {
    headless::HeadlessHost host(p);
    KorvelDivider divider(host, p);
    host.PlaceNew(divider, 10, 80);
    g.Add(divider_section, "divider-vertical", "Down, 10 x 80: shadow and highlight columns in the middle",
          divider.UserControl().Snapshot(), 3);
  }
}

}  // namespace

const Register kLinkDivider(20, RenderLinkDivider);

}  // namespace korvel::gallery
