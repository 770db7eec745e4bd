// The toolbar's Buttons page as a designer sees it in the host's property sheet:
// loaded from a toolbar with three buttons and a separator, with a new item turned
// into a separator, after an invalid key, and for a toolbar with no buttons.
#include <string>
#include <vector>

#include "controls/toolbar/kt_buttons.h"
#include "framework/brightmoor.h"
#include "platform/headless/headless_host.h"
#include "tools/gallery.h"

namespace korvel::gallery {
namespace {

// A toolbar as the page sees it: an object that answers Customize.
class SampleToolbar : public Automation {
 public:
  struct Item {
    std::string key, tip;
    std::int32_t style;
    bool enabled, value;
    std::int16_t width;
  };
  std::vector<Item> items;

  Variant Invoke(const std::string&, InvokeKind, std::vector<Variant>& args) override {
    if (args.size() != 8 || args[0].ToBool()) return {};
    std::vector<Variant> k, t, s, e, v, w;
    for (const Item& it : items) {
      k.push_back(Variant::String(it.key));
      t.push_back(Variant::String(it.tip));
      s.push_back(Variant::Long(it.style));
      e.push_back(Variant::Bool(it.enabled));
      v.push_back(Variant::Bool(it.value));
      w.push_back(Variant::Integer(it.width));
    }
    args[1] = Variant::Integer(static_cast<std::int16_t>(items.size()));
    args[2] = Variant::Array(k);
    args[3] = Variant::Array(t);
    args[4] = Variant::Array(s);
    args[5] = Variant::Array(e);
    args[6] = Variant::Array(v);
    args[7] = Variant::Array(w);
    return {};
  }
};

// The page in a property sheet: window caption, one tab, and OK, Cancel and Apply
// (Apply is enabled while the page is changed).
Image InSheet(headless::HeadlessPlatform& p, ktButtons& page) {
  page.Paint();
  Surface& ps = page.surface();
  const int border = 4, caption = 18;
  const int cw = ps.Width() + 20, ch = ps.Height() + 71;
  Surface frame(p, 0, cw + 2 * border, ch + 2 * border + caption);
  frame.SetBackColor(0x8000000F);
  Gdi& gdi = p.gdi();
  Rect outer{0, 0, frame.Width(), frame.Height()};
  gdi.DrawEdge(frame.hDC(), &outer, EDGE_RAISED, BF_RECT);
  frame.Line(static_cast<float>(border - 1), static_cast<float>(border - 1),
             static_cast<float>(frame.Width() - border), static_cast<float>(border + caption - 2), 0x80000002u, true,
             true);
  frame.SetForeColor(0x80000009);
  auto bold = std::make_shared<Font>("Arial", 8);
  bold->SetBold(true);
  frame.SetFont(bold);
  frame.SetCurrentX(border + 4);
  frame.SetCurrentY(border + 1);
  frame.Print("Toolbar1 Properties");

  const int x0 = border, y0 = border + caption;
  // The tab body, then the selected tab over its top edge.
  Rect body{x0 + 8, y0 + 27, x0 + 8 + ps.Width() + 4, y0 + 27 + ps.Height() + 4};
  DrawEdgeRect(p, frame.hDC(), body, static_cast<std::int32_t>(EDGE_RAISED), false);
  Rect tab{x0 + 8, y0 + 8, x0 + 70, y0 + 29};
  gdi.DrawEdge(frame.hDC(), &tab, EDGE_RAISED, BF_LEFT | BF_TOP | BF_RIGHT | BF_MIDDLE);
  Label tab_caption{"Tab", page.Caption(), Rect{tab.left, tab.top + 4, tab.right, tab.bottom}, nullptr};
  tab_caption.alignment = DT_CENTER;
  tab_caption.Paint(frame);
  gdi.BitBlt(frame.hDC(), body.left + 2, body.top + 2, ps.Width(), ps.Height(), ps.hDC(), 0, 0, SRCCOPY);

  const int by = body.bottom + 9;
  CommandButton ok{"OK", "OK", Rect{body.right - 237, by, body.right - 162, by + 23}, nullptr, true, nullptr};
  CommandButton cancel{"Cancel", "Cancel", Rect{body.right - 156, by, body.right - 81, by + 23}, nullptr, false,
                       nullptr};
  CommandButton apply{"Apply", "&Apply", Rect{body.right - 75, by, body.right, by + 23}, nullptr, false, nullptr};
  apply.enabled = page.Changed();
  ok.Paint(frame);
  cancel.Paint(frame);
  apply.Paint(frame);
  return frame.Snapshot();
}

void RenderButtonsPage(headless::HeadlessPlatform& p, Gallery& g) {
  headless::HeadlessHost host(p);
  host.user_mode = false;
  SampleToolbar bar;
  bar.items = {{"New", "New document", 0, true, false, 1},
               {"Open", "Open a document", 0, true, false, 1},
               {"", "", 2, true, false, 1},
               {"Bold", "Bold text", 1, true, true, 1}};
  const char* section = "Toolbar: Buttons property page";
  {
    ktButtons page(host, p);
    page.SetSelectedControls({&bar});
    g.Add(section, "buttons-page", "The page loaded from a toolbar with three buttons and a separator: item 1 shown",
          InSheet(p, page), 2);
    page.RightButton.Click();
    g.Add(section, "buttons-page-moved",
          "After Right: the first button moved to place 2 and stays current; the page is changed, Apply is enabled",
          InSheet(p, page), 2);
  }
  {
    ktButtons page(host, p);
    page.SetSelectedControls({&bar});
    page.RightButton.Click();
    page.AddButton.Click();
    page.StyleList.Choose(2);
    g.Add(section, "buttons-page-separator",
          "A new item after item 2, made a separator: key, tip, check boxes and width are disabled",
          InSheet(p, page), 2);
  }
  {
    ktButtons page(host, p);
    page.SetSelectedControls({&bar});
    page.KeyBox.SetSelStart(0);
    page.KeyBox.SetSelLength(3);
    page.KeyBox.Type("1st");
    page.AddButton.Click();
    g.Add(section, "buttons-page-invalid-key",
          "Add with the key \"1st\": after the \"Invalid key\" message the key box has the focus and its text is "
          "selected",
          InSheet(p, page), 2);
  }
  {
    SampleToolbar empty;
    ktButtons page(host, p);
    page.SetSelectedControls({&empty});
    g.Add(section, "buttons-page-empty", "A toolbar with no buttons: every field is disabled until Add",
          InSheet(p, page), 2);
  }
}

const Register kButtonsPage(60, RenderButtonsPage);

}  // namespace
}  // namespace korvel::gallery
