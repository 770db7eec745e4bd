// Persistence of every control: saved into a property bag of our own, loaded into a
// new instance, saved again - the two bags are equal; the same through
// IPersistStreamInit with the two streams byte for byte equal; dirty state.
#include "ax_test.h"

using namespace axtest;

namespace {

struct Setting {
  const wchar_t* name;
  VARIANT value;
  WORD flags = DISPATCH_PROPERTYPUT;
};

IDispatch* g_font = nullptr;

std::vector<std::wstring> Names(const std::vector<Setting>& s) {
  std::vector<std::wstring> n;
  for (auto& x : s) n.push_back(x.name);
  return n;
}

// The values of the given members, as text, for comparing two instances.
std::string Values(IDispatch* d, const std::vector<std::wstring>& names) {
  std::string s;
  for (auto& n : names) {
    CallResult r;
    Get(d, n.c_str(), r);
    VARIANT t;
    VariantInit(&t);
    if (V_VT(&r.value) == VT_DISPATCH) {
      IFont* f = nullptr;
      BSTR fn = nullptr;
      if (V_DISPATCH(&r.value) && SUCCEEDED(V_DISPATCH(&r.value)->QueryInterface(IID_IFont, reinterpret_cast<void**>(&f)))) {
        f->get_Name(&fn);
        f->Release();
      }
      s += Narrow(n) + "=font " + (fn ? Narrow(fn) : std::string()) + ";";
      SysFreeString(fn);
      continue;
    }
    VariantChangeType(&t, &r.value, 0, VT_BSTR);
    s += Narrow(n) + "=" + (V_VT(&t) == VT_BSTR ? Narrow(V_BSTR(&t)) : std::string("?")) + ";";
    VariantClear(&t);
  }
  return s;
}

std::vector<BYTE> StreamBytes(IStream* s) {
  HGLOBAL mem = nullptr;
  GetHGlobalFromStream(s, &mem);
  STATSTG st{};
  s->Stat(&st, STATFLAG_NONAME);
  std::vector<BYTE> out(static_cast<size_t>(st.cbSize.QuadPart));
  const BYTE* p = static_cast<const BYTE*>(GlobalLock(mem));
  if (p && !out.empty()) memcpy(out.data(), p, out.size());
  GlobalUnlock(mem);
  return out;
}

void RoundTrip(const wchar_t* progid, std::vector<Setting> settings, const std::vector<std::wstring>& expect_keys) {
  const std::string cls = Narrow(progid);
  const std::vector<std::wstring> names = Names(settings);
  IDispatch* a = Create(progid);
  Check(a != nullptr, cls + " created");
  if (!a) return;
  IPersistPropertyBag* pa = nullptr;
  a->QueryInterface(IID_IPersistPropertyBag, reinterpret_cast<void**>(&pa));
  Check(pa && pa->InitNew() == S_OK, cls + ": InitNew");
  Check(pa && pa->InitNew() == E_UNEXPECTED, cls + ": a second InitNew is refused");
  IPersistStreamInit* sa = nullptr;
  a->QueryInterface(IID_IPersistStreamInit, reinterpret_cast<void**>(&sa));
  Check(sa && sa->IsDirty() == S_FALSE, cls + ": a new instance is not dirty");
  for (auto& s : settings) Check(Put(a, s.name, s.value, s.flags) == S_OK, cls + ": set " + Narrow(s.name));
  Check(sa && sa->IsDirty() == S_OK, cls + ": dirty after property changes");
  const std::string values_a = Values(a, names);

  // ---- property bag ----
  Bag bag1, bag2;
  CLSID clsid{};
  Check(pa && pa->GetClassID(&clsid) == S_OK, cls + ": GetClassID");
  Check(pa && pa->Save(&bag1, TRUE, TRUE) == S_OK, cls + ": Save into a property bag");
  Check(sa && sa->IsDirty() == S_FALSE, cls + ": saving with clear-dirty clears it");
  std::vector<std::wstring> keys;
  for (auto& i : bag1.items) keys.push_back(i.first);
  std::string want_keys, got_keys;
  for (auto& k : expect_keys) want_keys += Narrow(k) + " ";
  for (auto& k : keys) got_keys += Narrow(k) + " ";
  Check(keys == expect_keys, cls + ": the bag holds " + want_keys + "(got " + got_keys + ")");

  IDispatch* b = nullptr;
  CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, reinterpret_cast<void**>(&b));
  IPersistPropertyBag* pb = nullptr;
  if (b) b->QueryInterface(IID_IPersistPropertyBag, reinterpret_cast<void**>(&pb));
  Check(pb && pb->Load(&bag1, nullptr) == S_OK, cls + ": Load into a new instance");
  Check(pb && pb->Save(&bag2, TRUE, TRUE) == S_OK, cls + ": Save the loaded instance");
  Check(!bag1.items.empty() && bag1.Text() == bag2.Text(), cls + ": the two bags are equal: " + bag1.Text() +
                                                               (bag1.Text() == bag2.Text() ? "" : " vs " + bag2.Text()));
  Check(b && Values(b, names) == values_a, cls + ": the loaded instance reads " + values_a);
  Check(pb && pb->Load(&bag1, nullptr) == E_UNEXPECTED, cls + ": a second Load is refused");

  // ---- stream ----
  IStream *s1 = nullptr, *s2 = nullptr;
  CreateStreamOnHGlobal(nullptr, TRUE, &s1);
  CreateStreamOnHGlobal(nullptr, TRUE, &s2);
  ULARGE_INTEGER max{};
  Check(sa && sa->GetSizeMax(&max) == S_OK, cls + ": GetSizeMax");
  Check(sa && sa->Save(s1, TRUE) == S_OK, cls + ": Save into a stream");
  const std::vector<BYTE> bytes1 = StreamBytes(s1);
  Check(bytes1.size() == max.QuadPart && bytes1.size() > 4, cls + ": the stream holds GetSizeMax bytes (" + std::to_string(bytes1.size()) + ")");
  IDispatch* c = nullptr;
  CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, reinterpret_cast<void**>(&c));
  IPersistStreamInit* sc = nullptr;
  if (c) c->QueryInterface(IID_IPersistStreamInit, reinterpret_cast<void**>(&sc));
  LARGE_INTEGER zero{};
  s1->Seek(zero, STREAM_SEEK_SET, nullptr);
  Check(sc && sc->Load(s1) == S_OK, cls + ": Load from the stream into a new instance");
  Check(sc && sc->Save(s2, TRUE) == S_OK, cls + ": Save it into a second stream");
  Check(StreamBytes(s2) == bytes1, cls + ": the two streams are byte for byte equal");
  Check(c && Values(c, names) == values_a, cls + ": the instance loaded from the stream reads the same values");

  for (IUnknown* u : std::initializer_list<IUnknown*>{sc, c, s1, s2, pb, b, sa, pa, a})
    if (u) u->Release();
}

}  // namespace

int main() {
  CoInitialize(nullptr);
  FONTDESC fd{sizeof(FONTDESC), const_cast<LPOLESTR>(L"Courier New"), {{120000, 0}}, 700, 0, TRUE, FALSE, FALSE};
  OleCreateFontIndirect(&fd, IID_IDispatch, reinterpret_cast<void**>(&g_font));
  Check(g_font != nullptr, "a standard font");

  RoundTrip(L"KorvelUI99.KorvelLink",
            {{L"Caption", VStr(L"Home \"page\"")}, {L"URL", VStr(L"http://example.test/")}, {L"Enabled", VBool(false)},
             {L"ForeColor", VI4(0x112233)}, {L"BackColor", VI4(static_cast<long>(0x80000005))},
             {L"HoverColor", VI4(0x00FF00)}, {L"Font", VDisp(g_font), DISPATCH_PROPERTYPUTREF}},
            {L"Font", L"Caption", L"URL", L"Enabled", L"BackColor", L"ForeColor", L"HoverColor"});
  RoundTrip(L"KorvelUI99.KorvelDivider",
            {{L"Caption", VStr(L"General")}, {L"Font", VDisp(g_font), DISPATCH_PROPERTYPUTREF}}, {L"Caption", L"Font"});
  RoundTrip(L"KorvelUI99.KorvelMiniSlider",
            {{L"Max", VI4(500)}, {L"Min", VI4(-20)}, {L"Value", VI4(300)}, {L"ForeColor", VI4(0x80)},
             {L"BackColor", VI4(0xFFFFFF)}},
            {L"Min", L"Max", L"Value", L"ForeColor", L"BackColor"});
  // The bar persists nothing; its value is set at run time only.
  {
    IDispatch* bar = Create(L"KorvelUI99.KorvelBar");
    IPersistPropertyBag* p = nullptr;
    if (bar) bar->QueryInterface(IID_IPersistPropertyBag, reinterpret_cast<void**>(&p));
    Bag bag;
    Check(p && p->InitNew() == S_OK && Put(bar, L"Value", VI2(40)) == S_OK && p->Save(&bag, TRUE, TRUE) == S_OK &&
              bag.items.empty(),
          "KorvelBar: saves no key");
    IDispatch* bar2 = Create(L"KorvelUI99.KorvelBar");
    IPersistPropertyBag* p2 = nullptr;
    if (bar2) bar2->QueryInterface(IID_IPersistPropertyBag, reinterpret_cast<void**>(&p2));
    Check(p2 && p2->Load(&bag, nullptr) == S_OK && GetLong(bar2, L"Value") == 0, "KorvelBar: a loaded bar at run time reads 0");
    for (IUnknown* u : std::initializer_list<IUnknown*>{p2, bar2, p, bar})
      if (u) u->Release();
  }
  if (g_font) g_font->Release();
  CoUninitialize();
  return Summary();
}
