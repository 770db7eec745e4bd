// The controls in our own test container, through their dispatch interfaces: each
// is created by ProgID, placed new or loaded from a bag, activated in place in a real
// window and driven by name and by mouse input sent to its window. Events and
// property notifications are asserted in order with their arguments.
// Prints "N passed, N failed".
#include <cstdio>
#include <string>

#include "test_container.h"

using namespace korvel_test;

namespace {

int passed = 0, failed = 0;
void Check(bool ok, const std::wstring& what) {
  std::printf("%s: %ls\n", ok ? "ok" : "FAILED", what.c_str());
  ok ? ++passed : ++failed;
}
std::wstring ToText(const std::wstring& s) { return s; }
std::wstring ToText(const std::vector<std::wstring>& v) {
  std::wstring s;
  for (const auto& x : v) s += (s.empty() ? L"" : L" ") + x;
  return s;
}
std::wstring ToText(const std::vector<DISPID>& v) {
  std::wstring s;
  for (DISPID d : v) s += (s.empty() ? L"" : L" ") + std::to_wstring(d);
  return s;
}

template <class T>
void Equal(const T& got, const T& want, const std::wstring& what) {
  bool ok = got == want;
  Check(ok, what);
  if (!ok) std::printf("    got:  %ls\n    want: %ls\n", ToText(got).c_str(), ToText(want).c_str());
}

// The recorded events as "Name(arg, arg)" strings.
std::vector<std::wstring> Events(Placed& p) {
  std::vector<std::wstring> out;
  for (const Event& e : p.events->events) {
    std::wstring s = e.name + L"(";
    for (size_t i = 0; i < e.args.size(); ++i) s += (i ? L", " : L"") + e.args[i];
    out.push_back(s + L")");
  }
  return out;
}
void Clear(Placed& p) {
  p.events->events.clear();
  p.notify->changed.clear();
}

// ---- persistence: save, load into a new instance, save again: equal bags ----
void RoundTrip(const wchar_t* progid, const std::vector<std::pair<const wchar_t*, VARIANT>>& settings) {
  Placed a;
  a.site->user_mode = false;  // a designer saves the form
  Check(a.Place(progid, nullptr, true), std::wstring(progid) + L": placed new");
  for (const auto& [name, value] : settings) a.Put(name, value);
  PropertyBag* first = a.Save();
  Placed b;
  b.site->user_mode = false;
  Check(b.Place(progid, first, true), std::wstring(progid) + L": loaded from the saved bag");
  PropertyBag* second = b.Save();
  Equal(second->Dump(), first->Dump(), std::wstring(progid) + L": saved again, the bag is the same");
  Check(!first->values.empty() || settings.empty(), std::wstring(progid) + L": the bag holds the settings");
  first->Release();
  second->Release();
}

void MiniSliderThroughDispatch() {
  const wchar_t* id = L"KorvelUI99.KorvelMiniSlider";
  Placed s;
  s.site->pos = {10, 10, 210, 20};  // 200 x 10 pixels
  Check(s.Place(id, nullptr, true), L"slider: placed at run time");
  Check(s.Window() != nullptr, L"slider: in place with a window");
  Clear(s);

  s.Put(L"Max", Long(10));
  s.Put(L"Value", Long(15));
  Equal(s.Get(L"Value"), std::wstring(L"10"), L"slider: Value beyond Max stores Max");
  Equal(Events(s), {L"Change(10)"}, L"slider: and raises Change(Max)");
  Clear(s);
  s.Put(L"Value", Long(10));
  Equal(Events(s), {L"Change(10)"}, L"slider: setting the current value raises Change again");

  Clear(s);
  s.Put(L"Min", Long(20));
  Equal(s.Get(L"Max"), std::wstring(L"20"), L"slider: Min above Max moves Max up");
  Equal(s.Get(L"Value"), std::wstring(L"20"), L"slider: ... and Value");
  Equal(Events(s), {}, L"slider: ... without a Change event");
  Equal(s.notify->changed, {1}, L"slider: PropertyChanged reaches OnChanged with Min's id");

  // Mouse: dragging to the right inner edge gives Max, to the left gives Min.
  s.Put(L"Min", Long(0));
  s.Put(L"Max", Long(100));
  s.Put(L"Value", Long(50));
  s.Put(L"Enabled", Bool(false));  // deliberately leaves the slider responding
  Clear(s);
  s.Mouse(WM_LBUTTONDOWN, 199, 5, MK_LBUTTON);
  s.Mouse(WM_MOUSEMOVE, 0, 5, MK_LBUTTON);
  s.Mouse(WM_LBUTTONUP, 0, 5, 0);
  Equal(Events(s), {L"Click(100)", L"Change(100)", L"Click(0)", L"Change(0)"},
        L"slider: press at the right edge and drag to the left, disabled or not");
  Clear(s);
  s.Mouse(WM_MOUSEMOVE, 120, 5, 0);
  Equal(Events(s), {}, L"slider: moving without a button does nothing");
}

void SliderBagWithoutMax() {
  auto* bag = new PropertyBag();
  VARIANT v = Long(5);
  bag->Write(L"Min", &v);
  Placed s;
  Check(s.Place(L"KorvelUI99.KorvelMiniSlider", bag, true), L"slider: loaded from a bag without Max");
  Equal(s.Get(L"Max"), std::wstring(L"5"), L"slider: a bag without Max loads with Max = Min");
  bag->Release();
}

void BarThroughDispatch() {
  const wchar_t* id = L"KorvelUI99.KorvelBar";
  Placed run;
  Check(run.Place(id, nullptr, true), L"bar: placed at run time");
  run.Put(L"Value", Long(150));
  Equal(run.Get(L"Value"), std::wstring(L"100"), L"bar: Value 150 stores 100");
  run.Put(L"Value", Long(-5));
  Equal(run.Get(L"Value"), std::wstring(L"0"), L"bar: Value -5 stores 0");
  // The default member is Value.
  VARIANT r;
  HRESULT hr = run.Call(L"Value", DISPATCH_PROPERTYGET, {}, &r);
  Check(SUCCEEDED(hr) && r.vt == VT_I2 && r.iVal == 0, L"bar: Value comes back as a 16-bit integer");

  Placed design;
  design.site->user_mode = false;
  Check(design.Place(id, nullptr, true), L"bar: placed at design time");
  design.Put(L"Value", Long(37));
  Equal(design.Get(L"Value"), std::wstring(L"100"), L"bar: at design time it is 100 and ignores assignment");

  // A type that does not convert is refused by the dispatch interface.
  hr = run.Put(L"Value", Str(L"abc"));
  Check(hr == DISP_E_TYPEMISMATCH, L"bar: Value = \"abc\" gives DISP_E_TYPEMISMATCH (" + std::to_wstring(hr) + L")");
}

void DividerThroughDispatch() {
  Placed d;
  Check(d.Place(L"KorvelUI99.KorvelDivider", nullptr, true), L"divider: placed");
  Clear(d);
  d.Put(L"Default_", Str(L"Options"));
  Equal(d.Get(L"Caption"), std::wstring(L"Options"), L"divider: the hidden default member sets Caption");
  Equal(d.notify->changed, {1}, L"divider: PropertyChanged \"Caption\" reaches OnChanged with id 1");
  Equal(Events(d), {}, L"divider: raises no events");
}

void LinkThroughDispatch() {
  Placed l;
  Check(l.Place(L"KorvelUI99.KorvelLink", nullptr, true), L"link: placed");
  l.Put(L"URL", Str(L"  MAILTO:sales  "));
  Equal(l.Get(L"URL"), std::wstring(L"MAILTO:sales"), L"link: the URL is stored trimmed");
  Clear(l);
  // A click released on column 0 opens nothing, and no Click event ever reaches the host.
  l.Mouse(WM_MOUSEMOVE, 0, 0);
  l.Mouse(WM_LBUTTONDOWN, 0, 0, MK_LBUTTON);
  l.Mouse(WM_LBUTTONUP, 0, 0);
  Equal(Events(l), {}, L"link: no Click event reaches the host");
}

void ExtenderAndAmbients() {
  Placed s;
  s.site->extender->name = L"Slider7";
  s.site->display_name = L"Slider7";
  Check(s.Place(L"KorvelUI99.KorvelMiniSlider", nullptr, true), L"ambients: placed");
  bool read_user_mode = false;
  for (DISPID id : s.site->ambient_reads) read_user_mode |= id == DISPID_AMBIENT_USERMODE;
  Check(read_user_mode, L"ambients: the control reads UserMode from the client site");
}

}  // namespace

int main() {
  OleInitialize(nullptr);
  MiniSliderThroughDispatch();
  SliderBagWithoutMax();
  BarThroughDispatch();
  DividerThroughDispatch();
  LinkThroughDispatch();
  ExtenderAndAmbients();
  RoundTrip(L"KorvelUI99.KorvelLink", {{L"Caption", Str(L"Home page")}, {L"URL", Str(L"http://x.example/")},
                                       {L"HoverColor", Long(255)}});
  RoundTrip(L"KorvelUI99.KorvelDivider", {{L"Caption", Str(L"Group")}});
  RoundTrip(L"KorvelUI99.KorvelMiniSlider", {{L"Min", Long(-5)}, {L"Max", Long(40)}, {L"Value", Long(12)},
                                             {L"ForeColor", Long(0x00FF00)}});
  RoundTrip(L"KorvelUI99.KorvelBar", {});
  OleUninitialize();
  std::printf("%d passed, %d failed\n", passed, failed);
  return failed ? 1 : 0;
}
