// KorvelToolbar through COM under Wine: created by its ProgID, every member and
// event reachable by name and through the dual vtable (Customize's by-reference
// arrays, the keyed properties, the picture and the default font), built at design
// time with an image strip, three buttons, a separator and a placeholder, saved into
// a property bag, loaded at run time into a container of our own and activated in
// a real window; then real pointer input: hover, press, drag off and back, release,
// right click, with the events in order, the tip as a top-level window 32 pixels
// below the pointer, and the pixels of the hot, pressed, checked and disabled cells
// as the toolbar draws them everywhere.
#include "toolbar_com.h"

#include <functional>

using namespace axtest;
using namespace tbtest;

namespace {

std::string ArrayText(SAFEARRAY* sa) {
  if (!sa) return "(null)";
  VARTYPE vt = 0;
  SafeArrayGetVartype(sa, &vt);
  LONG lo = 0, hi = -1;
  SafeArrayGetLBound(sa, 1, &lo);
  SafeArrayGetUBound(sa, 1, &hi);
  std::string s = std::to_string(vt) + "[" + std::to_string(lo) + "]";
  for (LONG i = lo; i <= hi; ++i) {
    s += i == lo ? ":" : ",";
    if (vt == VT_BSTR) {
      BSTR b = nullptr;
      SafeArrayGetElement(sa, &i, &b);
      s += Narrow(b ? b : L"");
      SysFreeString(b);
    } else if (vt == VT_I4) {
      LONG v = 0;
      SafeArrayGetElement(sa, &i, &v);
      s += std::to_string(v);
    } else if (vt == VT_I2) {
      SHORT v = 0;
      SafeArrayGetElement(sa, &i, &v);
      s += std::to_string(v);
    } else if (vt == VT_BOOL) {
      VARIANT_BOOL v = 0;
      SafeArrayGetElement(sa, &i, &v);
      s += v ? "T" : "F";
    }
  }
  return s;
}

const std::string kFetched[] = {"8[1]:A,B,,C,", "8[1]:Alpha,Beta,,Gamma,", "3[1]:0,0,2,1,3", "11[1]:T,T,T,T,T",
                                "11[1]:F,F,F,T,F", "2[1]:1,1,1,1,40"};

// ---- checks by name ----

void Members(IDispatch* d) {
  const std::pair<const wchar_t*, DISPID> ids[] = {
      {L"BorderStyle", 1}, {L"Picture", 2},     {L"MaskColor", 3}, {L"UseMaskColor", 4},    {L"Enabled", 5},
      {L"Value", 0},       {L"ToolTipText", 6}, {L"Style", 7},     {L"AboutBox", -552},     {L"Customize", 8},
      {L"GetDefaultFont", 9}};
  std::string wrong;
  for (auto& [name, id] : ids)
    if (IdOf(d, name) != id) wrong += Narrow(name) + "=" + std::to_string(IdOf(d, name)) + " ";
  Check(wrong.empty(), "every member of _KorvelToolbar has its dispatch id by name " + wrong);
  ITypeInfo* info = nullptr;
  IProvideClassInfo2* pci = nullptr;
  std::string events;
  if (SUCCEEDED(d->QueryInterface(IID_IProvideClassInfo2, reinterpret_cast<void**>(&pci)))) {
    GUID g{};
    pci->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &g);
    Check(IsEqualGUID(g, DIID___KorvelToolbar), "the default source is __KorvelToolbar");
    pci->Release();
  }
  ITypeLib* tl = nullptr;
  if (SUCCEEDED(LoadRegTypeLib(LIBID_KorvelUI99, 1, 0, LOCALE_NEUTRAL, &tl))) {
    tl->GetTypeInfoOfGuid(DIID___KorvelToolbar, &info);
    tl->Release();
  }
  if (info) {
    for (const wchar_t* n : {L"Click", L"RightClick", L"Hover"}) {
      LPOLESTR name = const_cast<LPOLESTR>(n);
      MEMBERID id = 0;
      info->GetIDsOfNames(&name, 1, &id);
      events += Narrow(n) + "=" + std::to_string(id) + " ";
    }
    info->Release();
  }
  Check(events == "Click=-600 RightClick=1 Hover=2 ", "the events by name: " + events);
}

// The cells' pixels, read from a device context at the area's origin.
using PixelOf = std::function<COLORREF(int, int)>;

std::string ExpectImage(const PixelOf& px, int x, int at, int k, COLORREF back) {
  for (int py = 0; py < 16; ++py)
    for (int pxl = 0; pxl < 16; ++pxl) {
      COLORREF want = StripPixel(k, pxl, py);
      if (want == kMagenta) want = back;
      COLORREF got = px(x + at + pxl, at + py);
      if (got != want) {
        char b[96];
        std::snprintf(b, sizeof b, "image %d at %d,%d: %06lX, want %06lX", k, pxl, py, got, want);
        return b;
      }
    }
  return "";
}

std::string ExpectRing(const PixelOf& px, int x, COLORREF top_left, COLORREF bottom_right) {
  for (int i = 0; i < 21; ++i) {
    if (px(x + i, 0) != top_left || px(x, i) != top_left) return "top/left edge at " + std::to_string(i);
    if (px(x + 1 + i, 21) != bottom_right || px(x + 21, 1 + i) != bottom_right)
      return "bottom/right edge at " + std::to_string(i);
  }
  return "";
}

std::string ExpectSolid(const PixelOf& px, int x1, int y1, int x2, int y2, COLORREF c) {
  for (int y = y1; y <= y2; ++y)
    for (int x = x1; x <= x2; ++x)
      if (px(x, y) != c) return "solid at " + std::to_string(x) + "," + std::to_string(y);
  return "";
}

std::string ExpectDisabled(const PixelOf& px, int x, int src) {
  for (int py = 0; py < 17; ++py)
    for (int pxl = 0; pxl < 17; ++pxl)
      if (px(x + 3 + pxl, 3 + py) != DisabledPixel(src + pxl, py))
        return "disabled block at " + std::to_string(pxl) + "," + std::to_string(py);
  return "";
}

std::string All(std::initializer_list<std::string> parts) {
  std::string s;
  for (auto& p : parts)
    if (!p.empty()) s += (s.empty() ? "" : "; ") + p;
  return s;
}

void Run(const std::wstring& server) {
  (void)server;
  ClassicColors colors;
  std::printf("system colours %s for the test\n", colors.changed() ? "set to the classic ones" : "already classic");

  // ---- registration and creation by ProgID ----
  CLSID clsid{};
  Check(SUCCEEDED(CLSIDFromProgID(L"KorvelUI99.KorvelToolbar", &clsid)) && IsEqualCLSID(clsid, CLSID_KorvelToolbar),
        "ProgID KorvelUI99.KorvelToolbar names {BE516F7A-863D-11D2-BF9B-8AF16ECF9476}");

  // ---- design time: the strip, the border and the buttons ----
  ToolbarSite design;
  design.user_mode = false;
  IOleObject* ole = nullptr;
  IDispatch* d = Place(design, &ole);
  Check(d != nullptr, "KorvelToolbar created by ProgID on a design-time site");
  if (!d) return;
  Members(d);

  ISpecifyPropertyPages* pages = nullptr;
  if (SUCCEEDED(d->QueryInterface(IID_ISpecifyPropertyPages, reinterpret_cast<void**>(&pages)))) {
    CAUUID list{};
    HRESULT hr = pages->GetPages(&list);
    Check(hr == S_OK && list.cElems == 1 && IsEqualGUID(list.pElems[0], CLSID_ktButtons),
          "ISpecifyPropertyPages lists the ktButtons page {BE516F82-863D-11D2-BF9B-8AF16ECF9476} only");
    CoTaskMemFree(list.pElems);
    pages->Release();
  } else {
    Check(false, "ISpecifyPropertyPages");
  }

  Check(GetLong(d, L"BorderStyle") == 3, "a new toolbar has BorderStyle 3 (ktInternetExplorer)");
  IPictureDisp* strip = MakeStrip();
  Check(strip != nullptr, "a 48 x 16 strip as an IPictureDisp from OleCreatePictureIndirect");
  Check(Put(d, L"Picture", VDisp(strip), DISPATCH_PROPERTYPUTREF) == S_OK, "Set Picture = strip (putref by name)");
  {
    CallResult r;
    Get(d, L"Picture", r);
    IPicture* p = nullptr;
    OLE_XSIZE_HIMETRIC w = 0;
    OLE_YSIZE_HIMETRIC h = 0;
    if (r.hr == S_OK && V_VT(&r.value) == VT_DISPATCH && V_DISPATCH(&r.value) &&
        SUCCEEDED(V_DISPATCH(&r.value)->QueryInterface(IID_IPicture, reinterpret_cast<void**>(&p)))) {
      p->get_Width(&w);
      p->get_Height(&h);
      p->Release();
    }
    Check(V_VT(&r.value) == VT_DISPATCH && V_DISPATCH(&r.value) == static_cast<IDispatch*>(strip),
          "Picture reads back the same picture object");
    Check(w == MulDiv(48, 2540, 96) && h == MulDiv(16, 2540, 96),
          "... 48 x 16 pixels (" + std::to_string(w) + " x " + std::to_string(h) + " HIMETRIC)");
  }

  HRESULT hr = CustomizeItems(d);
  Check(hr == S_OK, "Customize(True, 5, arrays...) by name with by-reference arrays: " + Hex(hr));

  // Fetched back by name: a count and six fresh 1-based arrays.
  {
    short n = 0;
    SAFEARRAY *k = nullptr, *t = nullptr, *s = nullptr, *e = nullptr, *v = nullptr, *w = nullptr;
    hr = CustomizeByName(d, false, n, k, t, s, e, v, w);
    const std::string got[] = {ArrayText(k), ArrayText(t), ArrayText(s), ArrayText(e), ArrayText(v), ArrayText(w)};
    std::string all;
    bool same = true;
    for (int i = 0; i < 6; ++i) {
      all += got[i] + " ";
      same = same && got[i] == kFetched[i];
    }
    Check(hr == S_OK && n == 5 && same, "Customize(False, ...) by name fetches 5 buttons: " + all);
    for (SAFEARRAY* sa : {k, t, s, e, v, w})
      if (sa) SafeArrayDestroy(sa);
  }

  // The same through the dual interface's vtable.
  _KorvelToolbar* tb = nullptr;
  d->QueryInterface(IID__KorvelToolbar, reinterpret_cast<void**>(&tb));
  Check(tb != nullptr, "QueryInterface(_KorvelToolbar)");
  if (tb) {
    short n = 0;
    SAFEARRAY *k = nullptr, *t = nullptr, *s = nullptr, *e = nullptr, *v = nullptr, *w = nullptr;
    hr = tb->Customize(VARIANT_FALSE, &n, &k, &t, &s, &e, &v, &w);
    const std::string got[] = {ArrayText(k), ArrayText(t), ArrayText(s), ArrayText(e), ArrayText(v), ArrayText(w)};
    bool same = true;
    for (int i = 0; i < 6; ++i) same = same && got[i] == kFetched[i];
    Check(hr == S_OK && n == 5 && same, "Customize through the vtable fills short* and the SAFEARRAY**s alike");
    for (SAFEARRAY* sa : {k, t, s, e, v, w})
      if (sa) SafeArrayDestroy(sa);

    BSTR c = SysAllocString(L"C");
    VARIANT_BOOL b = VARIANT_FALSE;
    hr = tb->get_Value(c, &b);
    Check(hr == S_OK && b == VARIANT_TRUE, "get_Value(\"C\") through the vtable: True");
    BSTR a = SysAllocString(L"A");
    VARIANT_BOOL before = VARIANT_FALSE, after = VARIANT_TRUE, back = VARIANT_FALSE;
    HRESULT g1 = tb->get_Enabled(a, &before);
    HRESULT p1 = tb->put_Enabled(a, VARIANT_FALSE);
    HRESULT g2 = tb->get_Enabled(a, &after);
    HRESULT p2 = tb->put_Enabled(a, VARIANT_TRUE);
    tb->get_Enabled(a, &back);
    SysFreeString(a);
    Check(g1 == S_OK && p1 == S_OK && g2 == S_OK && p2 == S_OK && before == VARIANT_TRUE && after == VARIANT_FALSE &&
              back == VARIANT_TRUE,
          "put_Enabled/get_Enabled(\"A\") through the vtable: True, False, True again");
    ktStyle st = ktButton;
    hr = tb->get_Style(c, &st);
    Check(hr == S_OK && st == ktCheck, "get_Style(\"C\") through the vtable: ktCheck");
    SysFreeString(c);
    IFontDisp* font = nullptr;
    hr = tb->GetDefaultFont(&font);
    IFont* f = nullptr;
    BSTR fname = nullptr;
    if (font && SUCCEEDED(font->QueryInterface(IID_IFont, reinterpret_cast<void**>(&f)))) {
      f->get_Name(&fname);
      f->Release();
    }
    NONCLIENTMETRICSW ncm{};
    ncm.cbSize = offsetof(NONCLIENTMETRICSW, lfMessageFont) + sizeof(LOGFONTW);
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, ncm.cbSize, &ncm, 0);
    // A font object reports the face it realises: compare with one made from the name.
    FONTDESC fd{sizeof(FONTDESC), ncm.lfMessageFont.lfFaceName, {{80000, 0}}, 400, 0, FALSE, FALSE, FALSE};
    IFont* expected = nullptr;
    BSTR ename = nullptr;
    if (SUCCEEDED(OleCreateFontIndirect(&fd, IID_IFont, reinterpret_cast<void**>(&expected)))) {
      expected->get_Name(&ename);
      expected->Release();
    }
    Check(hr == S_OK && fname && ename && wcscmp(fname, ename) == 0,
          "GetDefaultFont through the vtable: an IFontDisp of the message font (" +
              Narrow(fname ? fname : L"(none)") + ")");
    SysFreeString(fname);
    SysFreeString(ename);
    if (font) font->Release();
    IPictureDisp* again = nullptr;
    hr = tb->get_Picture(&again);
    Check(hr == S_OK && again == strip, "get_Picture through the vtable: the strip");
    if (again) again->Release();
    hr = tb->putref_Picture(strip);
    Check(hr == S_OK, "putref_Picture through the vtable: " + Hex(hr));
  }
  {
    CallResult r;
    InvokeId(d, IdOf(d, L"GetDefaultFont"), DISPATCH_METHOD, {}, r);
    IFont* f = nullptr;
    Check(r.hr == S_OK && V_VT(&r.value) == VT_DISPATCH && V_DISPATCH(&r.value) &&
              SUCCEEDED(V_DISPATCH(&r.value)->QueryInterface(IID_IFont, reinterpret_cast<void**>(&f))),
          "GetDefaultFont by name: a font object");
    if (f) f->Release();
  }

  // ---- saved at design time ----
  Bag saved;
  {
    IPersistPropertyBag* p = nullptr;
    d->QueryInterface(IID_IPersistPropertyBag, reinterpret_cast<void**>(&p));
    Check(p && p->Save(&saved, TRUE, TRUE) == S_OK, "saved into a property bag at design time");
    if (p) p->Release();
  }
  std::printf("bag: %s\n", saved.Text().c_str());
  const VARIANT* count_item = saved.Find(L"ButtonCount");
  const VARIANT* tip_item = saved.Find(L"Button4_ToolTipText");
  Check(count_item && V_VT(count_item) == VT_I2 && V_I2(count_item) == 5, "the bag holds ButtonCount 5");
  Check(tip_item && V_VT(tip_item) == VT_BSTR && wcscmp(V_BSTR(tip_item), L"Gamma") == 0,
        "the bag holds Button4_ToolTipText \"Gamma\"");
  Check(saved.Find(L"Picture") != nullptr, "the bag holds the Picture");
  if (tb) tb->Release();
  Unplace(d, ole);

  // ---- run time: loaded into a container and activated in place ----
  ToolbarSite site;
  site.window = MakeWindow();
  d = Place(site, &ole, &saved);
  if (!d || !ole) return;
  Sink sink(DIID___KorvelToolbar);
  {
    ITypeLib* tl = nullptr;
    if (SUCCEEDED(LoadRegTypeLib(LIBID_KorvelUI99, 1, 0, LOCALE_NEUTRAL, &tl))) {
      tl->GetTypeInfoOfGuid(DIID___KorvelToolbar, &sink.info);
      tl->Release();
    }
  }
  IConnectionPoint* point = nullptr;
  DWORD cookie = Connect(d, DIID___KorvelToolbar, static_cast<IDispatch*>(&sink), &point);
  Check(cookie != 0, "a sink advised on __KorvelToolbar");

  // The persistence round trip: saving the loaded toolbar gives the same bag.
  {
    Bag again;
    IPersistPropertyBag* p = nullptr;
    d->QueryInterface(IID_IPersistPropertyBag, reinterpret_cast<void**>(&p));
    if (p) {
      p->Save(&again, TRUE, TRUE);
      p->Release();
    }
    Check(again.Text() == saved.Text(), "save, load, save: equal bags");
    const VARIANT* pa = saved.Find(L"Picture");
    const VARIANT* pb = again.Find(L"Picture");
    IPicture *a = nullptr, *b = nullptr;
    OLE_XSIZE_HIMETRIC wa = 0, wb = 1;
    if (pa && V_VT(pa) == VT_DISPATCH && V_DISPATCH(pa)) V_DISPATCH(pa)->QueryInterface(IID_IPicture, reinterpret_cast<void**>(&a));
    if (pb && V_VT(pb) == VT_DISPATCH && V_DISPATCH(pb)) V_DISPATCH(pb)->QueryInterface(IID_IPicture, reinterpret_cast<void**>(&b));
    if (a) a->get_Width(&wa);
    if (b) b->get_Width(&wb);
    Check(a && b && wa == wb, "... and the picture comes back the same width");
    if (a) a->Release();
    if (b) b->Release();
  }

  hr = ole->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, &site, 0, site.window, &site.pos);
  Check(hr == S_OK, "DoVerb(OLEIVERB_INPLACEACTIVATE) at run time");
  Pump(100);
  Check(site.pos_changes.empty(), "200 x 28 is the toolbar's own height: no size request");
  IOleInPlaceObject* ipo = nullptr;
  d->QueryInterface(IID_IOleInPlaceObject, reinterpret_cast<void**>(&ipo));
  HWND control = nullptr;
  if (ipo) ipo->GetWindow(&control);
  Check(control && GetParent(control) == site.window, "the control's window is a child of the container");
  HWND area = control ? ChildWindowFromPointEx(control, POINT{20, 10}, CWP_SKIPINVISIBLE) : nullptr;
  if (area == control) area = nullptr;
  RECT ar{};
  if (area) {
    GetWindowRect(area, &ar);
    MapWindowPoints(nullptr, control, reinterpret_cast<POINT*>(&ar), 2);
  }
  Check(area && ar.left == 9 && ar.top == 3 && ar.right - ar.left == 188 && ar.bottom - ar.top == 22,
        "the button area is a child window at 9,3 188 x 22 (got " + std::to_string(ar.left) + "," +
            std::to_string(ar.top) + " " + std::to_string(ar.right - ar.left) + " x " +
            std::to_string(ar.bottom - ar.top) + ")");
  if (!area) return;
  POINT origin{0, 0};
  ClientToScreen(area, &origin);
  HDC adc = GetDC(area);
  PixelOf px = [&](int x, int y) { return GetPixel(adc, x, y); };
  auto Events = [&] {
    std::string s = Join(sink.calls);
    sink.calls.clear();
    return s;
  };

  // Resting cells at run time: A normal, C checked.
  Check(All({ExpectSolid(px, 0, 0, 21, 2, kFace), ExpectImage(px, 0, 3, 1, kFace)}) == "",
        "resting button A: face with image 1 at (3, 3) " +
            All({ExpectSolid(px, 0, 0, 21, 2, kFace), ExpectImage(px, 0, 3, 1, kFace)}));
  const std::string checked = All({ExpectRing(px, 52, kShadow, kHilite), ExpectSolid(px, 53, 1, 72, 3, kHot),
                                   ExpectImage(px, 52, 4, 3, kHot)});
  Check(checked.empty(), "checked check C: sunken, hot background, active image 3 at (4, 4) " + checked);
  Check(ExpectSolid(px, 74, 0, 113, 21, kFace).empty(), "the placeholder: 40 pixels of face");

  // Hover over A.
  sink.calls.clear();
  PointerTo(origin.x + 11, origin.y + 11);
  Check(Events() == "Hover(8:A,8:Alpha)", "pointer over A: Hover(\"A\", \"Alpha\")");
  const std::string hot = All({ExpectRing(px, 0, kHilite, kShadow), ExpectImage(px, 0, 3, 1, kFace)});
  Check(hot.empty(), "hot A: raised edge, image at (3, 3) " + hot);
  HWND tipw = FindTip();
  RECT tr{};
  if (tipw) GetWindowRect(tipw, &tr);
  Check(tipw && GetAncestor(tipw, GA_PARENT) == GetDesktopWindow() && IsWindowVisible(tipw),
        "the tip is a visible top-level window");
  Check(tipw && tr.left == origin.x + 11 && tr.top == origin.y + 11 + 32,
        "... at the pointer's x, 32 pixels below it (" + std::to_string(tr.left) + "," + std::to_string(tr.top) + ")");
  Check(tipw && (GetWindowLongW(tipw, GWL_EXSTYLE) & WS_EX_TOOLWINDOW) && GetForegroundWindow() != tipw &&
            GetActiveWindow() != tipw,
        "... a tool window, never activated");
  POINT inside_tip{tr.left + 2, tr.top + 2};
  Check(tipw && WindowFromPoint(inside_tip) == tipw, "... on top: WindowFromPoint inside it finds the tip");
  std::printf("tip ex-style 0x%08lX, %ld x %ld\n", static_cast<unsigned long>(GetWindowLongW(tipw, GWL_EXSTYLE)),
              tr.right - tr.left, tr.bottom - tr.top);

  // To B, press, drag off and back, release.
  PointerTo(origin.x + 30, origin.y + 10);
  Check(Events() == "Hover(8:B,8:Beta)", "pointer over B: Hover(\"B\", \"Beta\")");
  Buttons(MOUSEEVENTF_LEFTDOWN);
  Check(Events().empty(), "pressing B raises nothing");
  const std::string pressed = All({ExpectRing(px, 22, kShadow, kHilite), ExpectSolid(px, 23, 1, 42, 3, kFace),
                                   ExpectImage(px, 22, 4, 2, kFace)});
  Check(pressed.empty(), "pressed B: sunken, image at (4, 4) " + pressed);
  PointerTo(origin.x + 30, origin.y + 60);
  const std::string off = All({ExpectRing(px, 22, kHilite, kShadow), ExpectImage(px, 22, 3, 2, kFace)});
  Check(Events().empty() && off.empty(), "dragged off B: raised again, no event " + off);
  PointerTo(origin.x + 31, origin.y + 12);
  Check(Events().empty() && ExpectRing(px, 22, kShadow, kHilite).empty(), "dragged back: sunken again, no event");
  Buttons(MOUSEEVENTF_LEFTUP);
  // Releasing the capture makes the system send a move at the pointer: the button
  // still under it is hot again.
  const std::string released = Events();
  Check(released == "Click(8:B,3:31,3:25) Hover(8:,8:) Hover(8:B,8:Beta)",
        "release on B: Click(\"B\", 31, 25) at the lower-left corner, Hover(\"\", \"\"), then B hot again (" +
            released + ")");
  Check(tipw && IsWindowVisible(tipw), "... with its tip");
  PointerTo(origin.x + 30, origin.y + 60);
  const std::string left = Events();
  Check(left == "Hover(8:,8:)", "the pointer leaves the toolbar: Hover(\"\", \"\") (" + left + ")");
  Check(tipw && !IsWindowVisible(tipw), "... and the tip is hidden");

  // Right click on A.
  PointerTo(origin.x + 5, origin.y + 8);
  Buttons(MOUSEEVENTF_RIGHTDOWN);
  Buttons(MOUSEEVENTF_RIGHTUP);
  Check(Events() == "Hover(8:A,8:Alpha) RightClick(8:A,3:9,3:25)", "right click on A: RightClick(\"A\", 9, 25)");
  PointerTo(origin.x + 150, origin.y + 150);
  Events();

  // Keyed properties at run time.
  {
    CallResult r;
    InvokeId(d, IdOf(d, L"Enabled"), DISPATCH_PROPERTYPUT, {VStr(L"B"), VBool(false)}, r);
    Check(r.hr == S_OK, "Enabled(\"B\") = False at run time");
    CallResult g;
    InvokeId(d, IdOf(d, L"Enabled"), DISPATCH_PROPERTYGET, {VStr(L"B")}, g);
    Check(g.hr == S_OK && V_VT(&g.value) == VT_BOOL && V_BOOL(&g.value) == VARIANT_FALSE, "Enabled(\"B\") reads False");
    Pump(50);
    const std::string disabled = All({ExpectSolid(px, 22, 0, 43, 2, kFace), ExpectDisabled(px, 22, 17)});
    Check(disabled.empty(), "disabled B: the embossed block from column 17 at (3, 3) " + disabled);
    CallResult v;
    InvokeId(d, DISPID_VALUE, DISPATCH_PROPERTYGET, {VStr(L"C")}, v);
    Check(v.hr == S_OK && V_VT(&v.value) == VT_BOOL && V_BOOL(&v.value) == VARIANT_TRUE,
          "Value(\"C\") (the default member) reads True");
    CallResult p;
    InvokeId(d, DISPID_VALUE, DISPATCH_PROPERTYPUT, {VStr(L"C"), VBool(false)}, p);
    CallResult v2;
    InvokeId(d, IdOf(d, L"Value"), DISPATCH_PROPERTYGET, {VStr(L"C")}, v2);
    Check(p.hr == S_OK && V_BOOL(&v2.value) == VARIANT_FALSE, "Value(\"C\") = False at run time reads back False");
    Pump(50);
    Check(All({ExpectSolid(px, 52, 0, 73, 2, kFace), ExpectImage(px, 52, 3, 3, kFace)}).empty(),
          "unchecked C is drawn as a resting button");
  }
  // A click on the check toggles it back.
  PointerTo(origin.x + 60, origin.y + 10);
  Buttons(MOUSEEVENTF_LEFTDOWN);
  Buttons(MOUSEEVENTF_LEFTUP);
  const std::string on_c = Events();
  Check(on_c == "Hover(8:C,8:Gamma) Click(8:C,3:61,3:25) Hover(8:,8:) Hover(8:C,8:Gamma)", "a click on C: Click(\"C\", 61, 25) (" + on_c + ")");
  {
    CallResult v;
    InvokeId(d, IdOf(d, L"Value"), DISPATCH_PROPERTYGET, {VStr(L"C")}, v);
    Check(V_VT(&v.value) == VT_BOOL && V_BOOL(&v.value) == VARIANT_TRUE, "... and checks it");
  }
  // The disabled B raises nothing.
  PointerTo(origin.x + 30, origin.y + 10);
  Buttons(MOUSEEVENTF_LEFTDOWN);
  Buttons(MOUSEEVENTF_LEFTUP);
  const std::string on_disabled = Events();
  Check(on_disabled == "Hover(8:B,8:Beta) Hover(8:,8:) Hover(8:B,8:Beta)", "a click on disabled B: hover only (" + on_disabled + ")");
  PointerTo(origin.x + 150, origin.y + 150);
  Events();

  // Design-time-only BorderStyle, and the tip text declared as a boolean.
  Check(Put(d, L"BorderStyle", VI4(1)) == S_OK && GetLong(d, L"BorderStyle") == 3,
        "BorderStyle = 1 at run time is ignored without an error");
  {
    CallResult r;
    InvokeId(d, IdOf(d, L"ToolTipText"), DISPATCH_PROPERTYGET, {VStr(L"A")}, r);
    Check(r.hr == DISP_E_EXCEPTION && r.excep.scode == static_cast<SCODE>(0x800A000D),
          "ToolTipText(\"A\") (\"Alpha\" as a Boolean): DISP_E_EXCEPTION, scode 0x800A000D (13): " + Hex(r.hr) + " " +
              Hex(r.excep.scode));
    CallResult e;
    InvokeId(d, IdOf(d, L"ToolTipText"), DISPATCH_PROPERTYGET, {VStr(L"nope")}, e);
    Check(e.hr == S_OK && V_VT(&e.value) == VT_BOOL && V_BOOL(&e.value) == VARIANT_FALSE,
          "ToolTipText of an unknown key reads False");
  }

  // IViewObject::Draw shows the same pixels as the window.
  {
    IViewObject* view = nullptr;
    d->QueryInterface(IID_IViewObject, reinterpret_cast<void**>(&view));
    HDC screen = GetDC(nullptr);
    HDC mem = CreateCompatibleDC(screen);
    HBITMAP bmp = CreateCompatibleBitmap(screen, 200, 28);
    HGDIOBJ old = SelectObject(mem, bmp);
    RECTL bounds{0, 0, 200, 28};
    hr = view ? view->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, mem, &bounds, nullptr, nullptr, 0) : E_FAIL;
    std::string diff;
    for (int y = 0; y < 22 && diff.empty(); ++y)
      for (int x = 0; x < 188 && diff.empty(); ++x)
        if (GetPixel(mem, 9 + x, 3 + y) != GetPixel(adc, x, y)) diff = std::to_string(x) + "," + std::to_string(y);
    Check(hr == S_OK && diff.empty(), "IViewObject::Draw composes the button area over the control as shown " + diff);
    SelectObject(mem, old);
    DeleteObject(bmp);
    DeleteDC(mem);
    ReleaseDC(nullptr, screen);
    if (view) view->Release();
  }
  ReleaseDC(area, adc);

  if (ipo) {
    Check(ipo->InPlaceDeactivate() == S_OK && !IsWindow(area), "deactivated: the area's window is gone");
    ipo->Release();
  }
  if (point) {
    point->Unadvise(cookie);
    point->Release();
  }
  if (sink.info) sink.info->Release();
  Unplace(d, ole);
  if (strip) strip->Release();
  DestroyWindow(site.window);
}

}  // namespace

int main(int argc, char** argv) {
  OleInitialize(nullptr);
  Run(argc > 1 ? ServerPath(argv[1]) : L"");
  OleUninitialize();
  return Summary();
}
