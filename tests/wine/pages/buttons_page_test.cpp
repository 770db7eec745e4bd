// The Buttons page of the toolbar as a COM property page: created by its class id,
// given a page site and a toolbar of the test's own (an IDispatch that answers
// Customize with SAFEARRAYs as the toolbar does), activated in a real window and
// driven through its real child controls. Checks the registration of the page
// class, the controls the page makes, both directions of keeping them in step with
// the page, the message boxes, the status changes the site hears, and the exact
// arrays the toolbar receives when the page is applied.
#include <cstdio>
#include <cwchar>
#include <string>
#include <type_traits>
#include <vector>

#include <windows.h>
#include <commctrl.h>
#include <ocidl.h>
#include <olectl.h>
#include <prsht.h>

#include "korvelui99.h"

namespace {

int passed = 0, failed = 0;

void Check(bool ok, const std::string& what) {
  std::printf("%s: %s\n", ok ? "ok" : "FAILED", what.c_str());
  std::fflush(stdout);
  ok ? ++passed : ++failed;
}

std::string Narrow(const std::wstring& w) {
  std::string s;
  for (wchar_t c : w) s += c < 128 ? static_cast<char>(c) : '?';
  return s;
}

std::string Hex(long v) {
  char b[16];
  std::snprintf(b, sizeof b, "0x%08lX", static_cast<unsigned long>(v));
  return b;
}

std::wstring Guid(const GUID& g) {
  wchar_t b[64];
  StringFromGUID2(g, b, 64);
  return b;
}

std::wstring ServerPath(const char* arg) {
  std::wstring w;
  for (const char* p = arg; *p; ++p) w += *p == '/' ? L'\\' : static_cast<wchar_t>(*p);
  if (arg[0] == '/') w = L"Z:" + w;
  return w;
}

std::wstring Text(HWND w) {
  wchar_t b[512] = {};
  GetWindowTextW(w, b, 512);
  return b;
}

std::wstring ClassOf(HWND w) {
  wchar_t b[128] = {};
  GetClassNameW(w, b, 128);
  return b;
}

// ---------------------------------------------------------------------------
// Registry
// ---------------------------------------------------------------------------

bool KeyExists(const std::wstring& key) {
  HKEY h;
  if (RegOpenKeyExW(HKEY_CLASSES_ROOT, key.c_str(), 0, KEY_READ, &h) != ERROR_SUCCESS) return false;
  RegCloseKey(h);
  return true;
}

// "[sub][sub]{name=value}{...}" of a key, in the registry's order.
std::wstring KeyText(const std::wstring& key) {
  HKEY h;
  if (RegOpenKeyExW(HKEY_CLASSES_ROOT, key.c_str(), 0, KEY_READ, &h) != ERROR_SUCCESS) return L"<missing>";
  std::wstring out;
  wchar_t name[512];
  for (DWORD i = 0;; ++i) {
    DWORD n = 512;
    if (RegEnumKeyExW(h, i, name, &n, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) break;
    out += L"[" + std::wstring(name) + L"]";
  }
  for (DWORD i = 0;; ++i) {
    DWORD n = 512, type = 0;
    BYTE data[2048];
    DWORD size = sizeof data;
    if (RegEnumValueW(h, i, name, &n, nullptr, &type, data, &size) != ERROR_SUCCESS) break;
    out += L"{" + std::wstring(name) + L"=" +
           (type == REG_SZ ? std::wstring(reinterpret_cast<wchar_t*>(data)) : L"<type>") + L"}";
  }
  RegCloseKey(h);
  return out;
}

// ---------------------------------------------------------------------------
// The page site
// ---------------------------------------------------------------------------

class Site : public IPropertyPageSite {
 public:
  std::vector<DWORD> status;
  LONG refs = 1;

  STDMETHODIMP QueryInterface(REFIID riid, void** out) override {
    if (IsEqualIID(riid, IID_IUnknown) || IsEqualIID(riid, IID_IPropertyPageSite)) {
      *out = static_cast<IPropertyPageSite*>(this);
      AddRef();
      return S_OK;
    }
    *out = nullptr;
    return E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return static_cast<ULONG>(++refs); }
  STDMETHODIMP_(ULONG) Release() override { return static_cast<ULONG>(--refs); }
  STDMETHODIMP OnStatusChange(DWORD flags) override {
    status.push_back(flags);
    return S_OK;
  }
  STDMETHODIMP GetLocaleID(LCID* lcid) override {
    *lcid = LOCALE_USER_DEFAULT;
    return S_OK;
  }
  STDMETHODIMP GetPageContainer(IUnknown** out) override {
    *out = nullptr;
    return E_NOTIMPL;
  }
  STDMETHODIMP TranslateAccelerator(MSG*) override { return S_FALSE; }
};

// ---------------------------------------------------------------------------
// The toolbar of the test
// ---------------------------------------------------------------------------

struct Item {
  std::wstring key, tip;
  long style;
  bool enabled, value;
  short width;
};

// What one Customize call brought.
struct Received {
  bool update = false;
  short count = -1;
  VARTYPE vt[8] = {};
  LONG lower[6] = {};
  std::vector<std::wstring> keys, tips;
  std::vector<long> styles;
  std::vector<bool> enableds, values;
  std::vector<short> widths;
};

VARTYPE ElementType(VARTYPE vt) { return static_cast<VARTYPE>(vt & VT_TYPEMASK); }

// Element i of an array as a VARIANT (typed arrays read through a reference).
VARIANT ElementOf(SAFEARRAY* sa, VARTYPE elem, LONG i) {
  VARIANT v;
  VariantInit(&v);
  if (elem == VT_VARIANT) {
    SafeArrayGetElement(sa, &i, &v);
    return v;
  }
  void* p = nullptr;
  SafeArrayPtrOfIndex(sa, &i, &p);
  VARIANT ref;
  VariantInit(&ref);
  V_VT(&ref) = static_cast<VARTYPE>(elem | VT_BYREF);
  V_BYREF(&ref) = p;
  VariantCopyInd(&v, &ref);
  return v;
}

// A toolbar as the page sees it: one member, Customize (dispatch id 8), that reads
// and replaces the whole button list. With type information it describes itself
// with the toolbar's interface from the registered type library.
class FakeToolbar : public IDispatch {
 public:
  FakeToolbar(bool typed, bool has_customize) : typed_(typed), has_customize_(has_customize) {}
  std::vector<Item> items;
  std::vector<Received> calls;
  std::vector<std::wstring> names;
  LONG refs = 1;

  STDMETHODIMP QueryInterface(REFIID riid, void** out) override {
    if (IsEqualIID(riid, IID_IUnknown) || IsEqualIID(riid, IID_IDispatch)) {
      *out = static_cast<IDispatch*>(this);
      AddRef();
      return S_OK;
    }
    *out = nullptr;
    return E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return static_cast<ULONG>(++refs); }
  STDMETHODIMP_(ULONG) Release() override { return static_cast<ULONG>(--refs); }
  STDMETHODIMP GetTypeInfoCount(UINT* n) override {
    *n = typed_ ? 1 : 0;
    return S_OK;
  }
  STDMETHODIMP GetTypeInfo(UINT index, LCID, ITypeInfo** out) override {
    *out = nullptr;
    if (!typed_ || index != 0) return DISP_E_BADINDEX;
    ITypeLib* tl = nullptr;
    HRESULT hr = LoadRegTypeLib(LIBID_KorvelUI99, 1, 0, LOCALE_NEUTRAL, &tl);
    if (FAILED(hr)) return hr;
    hr = tl->GetTypeInfoOfGuid(IID__KorvelToolbar, out);
    tl->Release();
    return hr;
  }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* n, UINT count, LCID, DISPID* ids) override {
    for (UINT i = 0; i < count; ++i) ids[i] = DISPID_UNKNOWN;
    if (count < 1) return E_INVALIDARG;
    names.push_back(n[0]);
    if (!has_customize_ || _wcsicmp(n[0], L"Customize") != 0) return DISP_E_UNKNOWNNAME;
    ids[0] = 8;
    return S_OK;
  }
  STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* p, VARIANT*, EXCEPINFO*, UINT*) override {
    if (id != 8 || !(flags & DISPATCH_METHOD)) return DISP_E_MEMBERNOTFOUND;
    if (p->cNamedArgs != 0) return DISP_E_NONAMEDARGS;
    if (p->cArgs != 8) return DISP_E_BADPARAMCOUNT;
    VARIANT* a[8];
    for (int i = 0; i < 8; ++i) a[i] = &p->rgvarg[7 - i];  // declaration order
    Received r;
    for (int i = 0; i < 8; ++i) r.vt[i] = V_VT(a[i]);
    calls.push_back(r);
    Received& c = calls.back();
    if (V_VT(a[0]) == VT_BOOL)
      c.update = V_BOOL(a[0]) != VARIANT_FALSE;
    else if (V_VT(a[0]) == (VT_BYREF | VT_BOOL))
      c.update = *V_BOOLREF(a[0]) != VARIANT_FALSE;
    else
      return DISP_E_TYPEMISMATCH;
    if (V_VT(a[1]) != (VT_BYREF | VT_I2)) return DISP_E_TYPEMISMATCH;
    for (int i = 2; i < 8; ++i)
      if ((V_VT(a[i]) & (VT_BYREF | VT_ARRAY)) != (VT_BYREF | VT_ARRAY)) return DISP_E_TYPEMISMATCH;
    c.count = *V_I2REF(a[1]);

    // What came in: every array as it is.
    for (int i = 2; i < 8; ++i) {
      SAFEARRAY* sa = *V_ARRAYREF(a[i]);
      LONG lo = 0, hi = -1;
      if (sa) {
        SafeArrayGetLBound(sa, 1, &lo);
        SafeArrayGetUBound(sa, 1, &hi);
      }
      c.lower[i - 2] = lo;
      const VARTYPE elem = ElementType(V_VT(a[i]));
      for (LONG k = lo; sa && k <= hi; ++k) {
        VARIANT v = ElementOf(sa, elem, k);
        VARIANT s;
        VariantInit(&s);
        switch (i) {
          case 2:
          case 3:
            VariantChangeType(&s, &v, 0, VT_BSTR);
            (i == 2 ? c.keys : c.tips).push_back(V_VT(&s) == VT_BSTR && V_BSTR(&s) ? V_BSTR(&s) : L"?");
            break;
          case 4:
            VariantChangeType(&s, &v, 0, VT_I4);
            c.styles.push_back(V_I4(&s));
            break;
          case 5:
          case 6:
            VariantChangeType(&s, &v, 0, VT_BOOL);
            (i == 5 ? c.enableds : c.values).push_back(V_BOOL(&s) != VARIANT_FALSE);
            break;
          default:
            VariantChangeType(&s, &v, 0, VT_I2);
            c.widths.push_back(V_I2(&s));
            break;
        }
        VariantClear(&s);
        VariantClear(&v);
      }
    }

    if (c.update) {
      // Apply: the toolbar takes the list as given.
      items.clear();
      for (int i = 0; i < c.count; ++i) {
        auto at = static_cast<size_t>(i);
        items.push_back(Item{at < c.keys.size() ? c.keys[at] : L"", at < c.tips.size() ? c.tips[at] : L"",
                             at < c.styles.size() ? c.styles[at] : 0, at < c.enableds.size() && c.enableds[at],
                             at < c.values.size() && c.values[at], at < c.widths.size() ? c.widths[at] : short{1}});
      }
      return S_OK;
    }
    // Fetch: the count, and each array re-created with indices 1 to count.
    const auto n = static_cast<ULONG>(items.size());
    *V_I2REF(a[1]) = static_cast<short>(n);
    for (int i = 2; i < 8; ++i) {
      SAFEARRAY** pp = V_ARRAYREF(a[i]);
      const VARTYPE elem = ElementType(V_VT(a[i]));
      if (*pp) SafeArrayDestroy(*pp);
      *pp = SafeArrayCreateVector(elem, 1, n);
      for (ULONG k = 0; k < n; ++k) {
        const Item& it = items[k];
        LONG index = static_cast<LONG>(k) + 1;
        VARIANT v;
        VariantInit(&v);
        switch (i) {
          case 2: V_VT(&v) = VT_BSTR; V_BSTR(&v) = SysAllocString(it.key.c_str()); break;
          case 3: V_VT(&v) = VT_BSTR; V_BSTR(&v) = SysAllocString(it.tip.c_str()); break;
          case 4: V_VT(&v) = VT_I4; V_I4(&v) = it.style; break;
          case 5: V_VT(&v) = VT_BOOL; V_BOOL(&v) = it.enabled ? VARIANT_TRUE : VARIANT_FALSE; break;
          case 6: V_VT(&v) = VT_BOOL; V_BOOL(&v) = it.value ? VARIANT_TRUE : VARIANT_FALSE; break;
          default: V_VT(&v) = VT_I2; V_I2(&v) = it.width; break;
        }
        if (elem == VT_VARIANT)
          SafeArrayPutElement(*pp, &index, &v);
        else if (elem == VT_BSTR)
          SafeArrayPutElement(*pp, &index, V_BSTR(&v));
        else
          SafeArrayPutElement(*pp, &index, &v.bVal);
        VariantClear(&v);
      }
    }
    return S_OK;
  }

 private:
  bool typed_;
  bool has_customize_;
};

template <class T>
std::string Join(const std::vector<T>& v) {
  std::string s;
  for (size_t i = 0; i < v.size(); ++i) {
    if (i) s += ",";
    if constexpr (std::is_same_v<T, std::wstring>)
      s += "\"" + Narrow(v[i]) + "\"";
    else if constexpr (std::is_same_v<T, bool>)
      s += v[i] ? "T" : "F";
    else
      s += std::to_string(v[i]);
  }
  return "{" + s + "}";
}

std::string VtList(const Received& r) {
  std::string s;
  for (int i = 0; i < 8; ++i) s += (i ? "," : "") + Hex(r.vt[i]);
  return s;
}

std::string Contents(const Received& r) {
  return "count " + std::to_string(r.count) + " keys " + Join(r.keys) + " tips " + Join(r.tips) + " styles " +
         Join(r.styles) + " enabled " + Join(r.enableds) + " values " + Join(r.values) + " widths " +
         Join(r.widths);
}

// The declared types of Customize's arguments: UpdateControl by value, the count
// and the six arrays by reference.
constexpr VARTYPE kArr = VT_BYREF | VT_ARRAY;
const VARTYPE kTypedVts[8] = {VT_BOOL,     VT_BYREF | VT_I2, kArr | VT_BSTR, kArr | VT_BSTR,
                              kArr | VT_I4, kArr | VT_BOOL,  kArr | VT_BOOL, kArr | VT_I2};

std::string Expected(const VARTYPE (&vts)[8]) {
  Received r;
  for (int i = 0; i < 8; ++i) r.vt[i] = vts[i];
  return VtList(r);
}

// ---------------------------------------------------------------------------
// Message boxes: a watcher thread finds the box by its title, reads it and closes it
// ---------------------------------------------------------------------------

struct BoxWatch {
  std::wstring title;
  std::wstring text;
  HWND owner = nullptr;
  bool found = false;
  HANDLE thread = nullptr;
};

DWORD WINAPI WatchProc(void* arg) {
  auto* w = static_cast<BoxWatch*>(arg);
  for (int i = 0; i < 500 && !w->found; ++i) {
    HWND box = FindWindowW(L"#32770", w->title.c_str());
    if (box && IsWindowVisible(box)) {
      wchar_t buf[1024] = {};
      GetDlgItemTextW(box, 0xFFFF, buf, 1024);  // the message's static text
      w->text = buf;
      w->owner = GetWindow(box, GW_OWNER);
      w->found = true;
      PostMessageW(box, WM_COMMAND, IDOK, 0);
      break;
    }
    Sleep(10);
  }
  return 0;
}

void StartWatch(BoxWatch& w, const wchar_t* title) {
  w.title = title;
  w.found = false;
  w.text.clear();
  w.owner = nullptr;
  w.thread = CreateThread(nullptr, 0, WatchProc, &w, 0, nullptr);
}

void EndWatch(BoxWatch& w) {
  if (!w.thread) return;
  // Keep this thread's messages moving while the watcher finishes.
  for (int i = 0; i < 600; ++i) {
    if (WaitForSingleObject(w.thread, 0) == WAIT_OBJECT_0) break;
    MSG m;
    while (PeekMessageW(&m, nullptr, 0, 0, PM_REMOVE)) {
      TranslateMessage(&m);
      DispatchMessageW(&m);
    }
    Sleep(10);
  }
  CloseHandle(w.thread);
  w.thread = nullptr;
}

void Pump() {
  MSG m;
  while (PeekMessageW(&m, nullptr, 0, 0, PM_REMOVE)) {
    TranslateMessage(&m);
    DispatchMessageW(&m);
  }
}

// ---------------------------------------------------------------------------
// The page's controls
// ---------------------------------------------------------------------------

constexpr int kFirst = 1000;
enum Field {
  ButtonCaptionLabel, CurButtonLabel, SelectorFrame, LeftButton, AddButton, RemoveButton, RightButton,
  KeyLabel, KeyBox, TipLabel, TipBox, StyleLabel, StyleList, EnabledCheck, WidthLabel, WidthBox, ValueCheck,
  ApplyLabel, kFieldCount
};

struct Expect {
  const char* name;
  const wchar_t* cls;
  const wchar_t* text;  // nullptr: not compared here
  RECT rc;
  DWORD type;  // BS_* / CBS_* / SS_* type bits, or ~0u for an edit
  bool tabstop;
};

const Expect kControls[kFieldCount] = {
    {"ButtonCaptionLabel", L"Static", L"Button:", {8, 14, 56, 27}, SS_LEFTNOWORDWRAP, false},
    {"CurButtonLabel", L"Static", nullptr, {60, 14, 100, 27}, SS_LEFTNOWORDWRAP, false},
    {"SelectorFrame", L"Button", L"", {144, 4, 332, 42}, BS_GROUPBOX, false},
    {"LeftButton", L"Button", L"<", {152, 12, 176, 34}, BS_PUSHBUTTON, true},
    {"AddButton", L"Button", L"&Add", {180, 12, 236, 34}, BS_PUSHBUTTON, true},
    {"RemoveButton", L"Button", L"&Remove", {240, 12, 296, 34}, BS_PUSHBUTTON, true},
    {"RightButton", L"Button", L">", {300, 12, 324, 34}, BS_PUSHBUTTON, true},
    {"KeyLabel", L"Static", L"&Key:", {8, 54, 92, 67}, SS_LEFTNOWORDWRAP, false},
    {"KeyBox", L"Edit", nullptr, {96, 50, 332, 71}, ~0u, true},
    {"TipLabel", L"Static", L"&ToolTipText:", {8, 80, 92, 93}, SS_LEFTNOWORDWRAP, false},
    {"TipBox", L"Edit", nullptr, {96, 76, 332, 97}, ~0u, true},
    {"StyleLabel", L"Static", L"&Style:", {8, 106, 92, 119}, SS_LEFTNOWORDWRAP, false},
    {"StyleList", L"ComboBox", nullptr, {96, 102, 220, 123}, CBS_DROPDOWNLIST, true},
    {"EnabledCheck", L"Button", L"&Enabled", {236, 104, 332, 121}, BS_AUTOCHECKBOX, true},
    {"WidthLabel", L"Static", L"&Width:", {8, 132, 92, 145}, SS_LEFTNOWORDWRAP, false},
    {"WidthBox", L"Edit", nullptr, {96, 128, 150, 149}, ~0u, true},
    {"ValueCheck", L"Button", L"&Value", {236, 130, 332, 147}, BS_AUTOCHECKBOX, true},
    {"ApplyLabel", L"Static", L"Click Apply to update control.", {8, 176, 332, 190}, SS_LEFTNOWORDWRAP, false},
};

HWND g_page = nullptr;

HWND Ctl(Field f) { return GetDlgItem(g_page, kFirst + f); }

// The enabled state of the six fields that follow the style, as one text.
std::string EnabledStates() {
  std::string s;
  const std::pair<Field, const char*> fields[] = {{StyleList, "Style"}, {KeyBox, "Key"},     {TipBox, "Tip"},
                                                  {EnabledCheck, "En"}, {ValueCheck, "Val"}, {WidthBox, "Width"}};
  for (auto& [f, name] : fields) s += std::string(s.empty() ? "" : " ") + name + (IsWindowEnabled(Ctl(f)) ? "1" : "0");
  return s;
}

// What the controls show of the current item, as one text.
std::string Shown() {
  std::string s = "#" + Narrow(Text(Ctl(CurButtonLabel))) + " key \"" + Narrow(Text(Ctl(KeyBox))) + "\" tip \"" +
                  Narrow(Text(Ctl(TipBox))) + "\" style " +
                  std::to_string(SendMessageW(Ctl(StyleList), CB_GETCURSEL, 0, 0)) + " enabled " +
                  std::to_string(SendMessageW(Ctl(EnabledCheck), BM_GETCHECK, 0, 0)) + " value " +
                  std::to_string(SendMessageW(Ctl(ValueCheck), BM_GETCHECK, 0, 0)) + " width \"" +
                  Narrow(Text(Ctl(WidthBox))) + "\"";
  return s;
}

void Type(Field f, const wchar_t* text) {
  SetWindowTextW(Ctl(f), text);  // the edit tells its parent with EN_CHANGE
  Pump();
}

void Click(Field f) {
  SendMessageW(Ctl(f), BM_CLICK, 0, 0);
  Pump();
}

void Pick(Field f, int index) {
  SendMessageW(Ctl(f), CB_SETCURSEL, static_cast<WPARAM>(index), 0);
  SendMessageW(g_page, WM_COMMAND, MAKEWPARAM(kFirst + f, CBN_SELCHANGE), reinterpret_cast<LPARAM>(Ctl(f)));
  Pump();
}

RECT RectIn(HWND parent, HWND w) {
  RECT r;
  GetWindowRect(w, &r);
  MapWindowPoints(nullptr, parent, reinterpret_cast<POINT*>(&r), 2);
  return r;
}

std::string RectText(const RECT& r) {
  return "(" + std::to_string(r.left) + "," + std::to_string(r.top) + "," + std::to_string(r.right) + "," +
         std::to_string(r.bottom) + ")";
}

void CheckControls() {
  for (int i = 0; i < kFieldCount; ++i) {
    const Expect& e = kControls[i];
    HWND c = GetDlgItem(g_page, kFirst + i);
    Check(c != nullptr, std::string(e.name) + " is a child control with id " + std::to_string(kFirst + i));
    if (!c) continue;
    Check(_wcsicmp(ClassOf(c).c_str(), e.cls) == 0,
          std::string(e.name) + " is a " + Narrow(e.cls) + " (got " + Narrow(ClassOf(c)) + ")");
    if (e.text)
      Check(Text(c) == e.text, std::string(e.name) + " reads \"" + Narrow(e.text) + "\" (got \"" + Narrow(Text(c)) + "\")");
    RECT r = RectIn(g_page, c);
    const bool combo = i == StyleList;
    const bool rect_ok = r.left == e.rc.left && r.top == e.rc.top && r.right == e.rc.right &&
                         (combo || r.bottom == e.rc.bottom);
    Check(rect_ok, std::string(e.name) + " at " + RectText(e.rc) + (combo ? " (closed height aside)" : "") + " (got " +
                       RectText(r) + ")");
    const DWORD style = static_cast<DWORD>(GetWindowLongW(c, GWL_STYLE));
    if (e.type != ~0u) {
      const DWORD mask = _wcsicmp(e.cls, L"Static") == 0 ? SS_TYPEMASK : _wcsicmp(e.cls, L"Button") == 0 ? BS_TYPEMASK : 3u;
      Check((style & mask) == e.type, std::string(e.name) + " has type style " + Hex(e.type) + " (got " + Hex(style & mask) + ")");
    }
    Check(((style & WS_TABSTOP) != 0) == e.tabstop, std::string(e.name) + (e.tabstop ? " is" : " is not") + " a tab stop");
    Check((style & WS_VISIBLE) != 0, std::string(e.name) + " is visible");
  }
  HWND list = Ctl(StyleList);
  std::string items;
  const LRESULT n = SendMessageW(list, CB_GETCOUNT, 0, 0);
  for (LRESULT k = 0; k < n; ++k) {
    wchar_t b[64] = {};
    SendMessageW(list, CB_GETLBTEXT, static_cast<WPARAM>(k), reinterpret_cast<LPARAM>(b));
    items += (k ? "|" : "") + Narrow(b);
  }
  Check(items == "0 - Button|1 - Check|2 - Separator|3 - Placeholder", "StyleList holds the four styles (got " + items + ")");
}

IPropertyPage* NewPage() {
  IPropertyPage* page = nullptr;
  HRESULT hr = CoCreateInstance(CLSID_ktButtons, nullptr, CLSCTX_INPROC_SERVER, IID_IPropertyPage,
                                reinterpret_cast<void**>(&page));
  Check(SUCCEEDED(hr) && page, "CoCreateInstance(ktButtons, IPropertyPage) " + Hex(hr));
  return page;
}

LRESULT CALLBACK FrameProc(HWND w, UINT m, WPARAM wp, LPARAM lp) { return DefWindowProcW(w, m, wp, lp); }

// ---------------------------------------------------------------------------
// The platform's own property frame (OleCreatePropertyFrame) around the page
// ---------------------------------------------------------------------------

struct FrameWatch {
  bool found = false;
  std::wstring title, tab, label, key;
  bool key_enabled = true;
  RECT page_rect{}, dialog_rect{};
  HANDLE thread = nullptr;
};

BOOL CALLBACK FindSheet(HWND w, LPARAM lp) {
  if (!IsWindowVisible(w) || _wcsicmp(ClassOf(w).c_str(), L"#32770") != 0) return TRUE;
  if (Text(w).find(L"Toolbar1") == std::wstring::npos) return TRUE;
  *reinterpret_cast<HWND*>(lp) = w;
  return FALSE;
}

BOOL CALLBACK FindPage(HWND w, LPARAM lp) {
  if (_wcsicmp(ClassOf(w).c_str(), L"KorvelPropertyPage") != 0) return TRUE;
  *reinterpret_cast<HWND*>(lp) = w;
  return FALSE;
}

DWORD WINAPI FrameWatchProc(void* arg) {
  auto* w = static_cast<FrameWatch*>(arg);
  for (int i = 0; i < 500 && !w->found; ++i) {
    Sleep(10);
    HWND sheet = nullptr;
    EnumWindows(FindSheet, reinterpret_cast<LPARAM>(&sheet));
    if (!sheet) continue;
    HWND page = nullptr;
    EnumChildWindows(sheet, FindPage, reinterpret_cast<LPARAM>(&page));
    if (!page || !IsWindowVisible(page)) continue;
    w->title = Text(sheet);
    HWND tab = FindWindowExW(sheet, nullptr, L"SysTabControl32", nullptr);
    wchar_t buf[128] = {};
    TCITEMW item{};
    item.mask = TCIF_TEXT;
    item.pszText = buf;
    item.cchTextMax = 128;
    if (tab) SendMessageW(tab, TCM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item));
    w->tab = buf;
    w->label = Text(GetDlgItem(page, kFirst + CurButtonLabel));
    w->key = Text(GetDlgItem(page, kFirst + KeyBox));
    w->key_enabled = IsWindowEnabled(GetDlgItem(page, kFirst + KeyBox)) != FALSE;
    w->page_rect = RectIn(GetParent(page), page);
    GetClientRect(GetParent(page), &w->dialog_rect);
    w->found = true;
    PostMessageW(sheet, PSM_PRESSBUTTON, PSBTN_CANCEL, 0);
  }
  return 0;
}

void PlatformFrame(HWND owner, FakeToolbar& toolbar) {
  FrameWatch watch;
  const size_t calls = toolbar.calls.size();
  watch.thread = CreateThread(nullptr, 0, FrameWatchProc, &watch, 0, nullptr);
  IUnknown* objs[] = {&toolbar};
  CLSID pages[] = {CLSID_ktButtons};
  HRESULT hr = OleCreatePropertyFrame(owner, 0, 0, L"Toolbar1", 1, objs, 1, pages, LOCALE_USER_DEFAULT, 0, nullptr);
  WaitForSingleObject(watch.thread, 10000);
  CloseHandle(watch.thread);
  Check(hr == S_OK, "OleCreatePropertyFrame with the Buttons page " + Hex(hr));
  Check(watch.found, "the frame shows the page window (frame \"" + Narrow(watch.title) + "\")");
  Check(watch.tab == L"Buttons", "the frame's tab reads \"Buttons\" (got \"" + Narrow(watch.tab) + "\")");
  Check(watch.label == L"1" && watch.key == L"FileOpen" && !watch.key_enabled,
        "the page in the frame shows the toolbar's first item, a separator (got #" + Narrow(watch.label) + " \"" +
            Narrow(watch.key) + "\"" + (watch.key_enabled ? " enabled" : " disabled") + ")");
  // The frame activates the page with its page dialog's client rectangle at that
  // moment and never moves it afterwards.
  Check(watch.page_rect.left == 0 && watch.page_rect.top == 0 && watch.page_rect.right >= 340 &&
            watch.page_rect.bottom >= 200,
        "the page sits at the top left of the frame's page dialog, at least 340 x 200 (got " +
            RectText(watch.page_rect) + " in " + RectText(watch.dialog_rect) + ")");
  Check(toolbar.calls.size() == calls + 1 && !toolbar.calls.back().update,
        "the frame's SetObjects fetched the list once");
  Check(toolbar.refs == 1, "the frame let the page and the toolbar go");
}

// ---------------------------------------------------------------------------
// A real toolbar, when the server has one
// ---------------------------------------------------------------------------

// A client site at design time: the ambient UserMode is False.
class DesignSite : public IOleClientSite, public IDispatch {
 public:
  LONG refs = 1;
  STDMETHODIMP QueryInterface(REFIID riid, void** out) override {
    if (IsEqualIID(riid, IID_IUnknown) || IsEqualIID(riid, IID_IOleClientSite)) {
      *out = static_cast<IOleClientSite*>(this);
    } else if (IsEqualIID(riid, IID_IDispatch)) {
      *out = static_cast<IDispatch*>(this);
    } else {
      *out = nullptr;
      return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return static_cast<ULONG>(++refs); }
  STDMETHODIMP_(ULONG) Release() override { return static_cast<ULONG>(--refs); }
  STDMETHODIMP SaveObject() override { return S_OK; }
  STDMETHODIMP GetMoniker(DWORD, DWORD, IMoniker** m) override {
    *m = nullptr;
    return E_NOTIMPL;
  }
  STDMETHODIMP GetContainer(IOleContainer** c) override {
    *c = nullptr;
    return E_NOINTERFACE;
  }
  STDMETHODIMP ShowObject() override { return S_OK; }
  STDMETHODIMP OnShowWindow(BOOL) override { return S_OK; }
  STDMETHODIMP RequestNewObjectLayout() override { return E_NOTIMPL; }
  STDMETHODIMP GetTypeInfoCount(UINT* n) override {
    *n = 0;
    return S_OK;
  }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return DISP_E_UNKNOWNNAME; }
  STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result, EXCEPINFO*, UINT*) override {
    if (id != DISPID_AMBIENT_USERMODE || !result) return DISP_E_MEMBERNOTFOUND;
    VariantInit(result);
    V_VT(result) = VT_BOOL;
    V_BOOL(result) = VARIANT_FALSE;
    return S_OK;
  }
};

// Customize(False, ...) on a real toolbar from the test: the keys it holds.
std::vector<std::wstring> ToolbarKeys(IDispatch* toolbar, short* count) {
  std::vector<std::wstring> keys;
  VARIANT_BOOL update = VARIANT_FALSE;
  short n = 0;
  SAFEARRAY* arrays[6] = {SafeArrayCreateVector(VT_BSTR, 1, 0), SafeArrayCreateVector(VT_BSTR, 1, 0),
                          SafeArrayCreateVector(VT_I4, 1, 0),   SafeArrayCreateVector(VT_BOOL, 1, 0),
                          SafeArrayCreateVector(VT_BOOL, 1, 0), SafeArrayCreateVector(VT_I2, 1, 0)};
  const VARTYPE elems[6] = {VT_BSTR, VT_BSTR, VT_I4, VT_BOOL, VT_BOOL, VT_I2};
  VARIANT args[8];
  for (auto& a : args) VariantInit(&a);
  V_VT(&args[7]) = VT_BOOL;
  V_BOOL(&args[7]) = update;
  V_VT(&args[6]) = VT_BYREF | VT_I2;
  V_I2REF(&args[6]) = &n;
  for (int i = 0; i < 6; ++i) {
    V_VT(&args[5 - i]) = static_cast<VARTYPE>(VT_BYREF | VT_ARRAY | elems[i]);
    V_ARRAYREF(&args[5 - i]) = &arrays[i];
  }
  DISPPARAMS dp{args, nullptr, 8, 0};
  DISPID id = DISPID_UNKNOWN;
  LPOLESTR name = const_cast<LPOLESTR>(L"Customize");
  toolbar->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id);
  HRESULT hr = toolbar->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &dp, nullptr, nullptr, nullptr);
  Check(SUCCEEDED(hr), "the test's own Customize(False) on the toolbar " + Hex(hr));
  *count = n;
  if (arrays[0]) {
    LONG lo = 0, hi = -1;
    SafeArrayGetLBound(arrays[0], 1, &lo);
    SafeArrayGetUBound(arrays[0], 1, &hi);
    for (LONG k = lo; k <= hi; ++k) {
      BSTR b = nullptr;
      SafeArrayGetElement(arrays[0], &k, &b);
      keys.push_back(b ? b : L"");
      SysFreeString(b);
    }
  }
  for (auto* a : arrays)
    if (a) SafeArrayDestroy(a);
  return keys;
}

void RealToolbar(HWND frame, Site& site, BoxWatch& watch) {
  CLSID cls{};
  if (FAILED(CLSIDFromProgID(L"KorvelUI99.KorvelToolbar", &cls))) {
    std::printf("note: KorvelUI99.KorvelToolbar is not registered by this server; the page is not tried against a "
                "real toolbar\n");
    return;
  }
  IDispatch* toolbar = nullptr;
  HRESULT hr = CoCreateInstance(cls, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, reinterpret_cast<void**>(&toolbar));
  Check(SUCCEEDED(hr) && toolbar, "CoCreateInstance(KorvelUI99.KorvelToolbar) " + Hex(hr));
  if (!toolbar) return;
  DesignSite design;
  IOleObject* ole = nullptr;
  if (SUCCEEDED(toolbar->QueryInterface(IID_IOleObject, reinterpret_cast<void**>(&ole))) && ole) {
    Check(SUCCEEDED(ole->SetClientSite(&design)), "the toolbar takes a design-time client site");
  }
  IPersistStreamInit* init = nullptr;
  if (SUCCEEDED(toolbar->QueryInterface(IID_IPersistStreamInit, reinterpret_cast<void**>(&init))) && init) {
    Check(SUCCEEDED(init->InitNew()), "the toolbar starts new");
    init->Release();
  }
  IPropertyPage* page = NewPage();
  if (page) {
    page->SetPageSite(&site);
    IUnknown* objs[] = {toolbar};
    Check(page->SetObjects(1, objs) == S_OK, "the page takes the real toolbar");
    RECT rc{10, 10, 350, 210};
    Check(page->Activate(frame, &rc, TRUE) == S_OK, "the page activates over the real toolbar");
    page->Show(SW_SHOW);
    g_page = FindWindowExW(frame, nullptr, L"KorvelPropertyPage", nullptr);
    Check(EnabledStates() == "Style0 Key0 Tip0 En0 Val0 Width0",
          "a new toolbar has no buttons: every field is off (got " + EnabledStates() + ")");
    Click(AddButton);
    Type(KeyBox, L"Cut");
    Type(TipBox, L"Cut text");
    Click(AddButton);
    Type(KeyBox, L"Paste");
    Check(page->Apply() == S_OK, "Apply on the real toolbar");
    short count = -1;
    std::vector<std::wstring> keys = ToolbarKeys(toolbar, &count);
    Check(count == 2 && Join(keys) == "{\"Cut\",\"Paste\"}",
          "the real toolbar holds the page's two buttons (got " + std::to_string(count) + " " + Join(keys) + ")");
    page->Deactivate();
    page->SetObjects(0, nullptr);
    page->SetPageSite(nullptr);
    page->Release();
    g_page = nullptr;
  }
  // A new page loads what the toolbar now holds.
  if (IPropertyPage* again = NewPage()) {
    IUnknown* objs[] = {toolbar};
    again->SetObjects(1, objs);
    RECT rc{10, 10, 350, 210};
    again->Activate(frame, &rc, TRUE);
    again->Show(SW_SHOW);
    g_page = FindWindowExW(frame, nullptr, L"KorvelPropertyPage", nullptr);
    Check(Shown() == "#1 key \"Cut\" tip \"Cut text\" style 0 enabled 1 value 0 width \"1\"",
          "a new page over the real toolbar shows its first button (got " + Shown() + ")");
    Click(RightButton);
    Check(Shown() == "#2 key \"Cut\" tip \"Cut text\" style 0 enabled 1 value 0 width \"1\"",
          "and moves it right (got " + Shown() + ")");
    again->Deactivate();
    again->SetObjects(0, nullptr);
    again->Release();
    g_page = nullptr;
  }
  (void)watch;
  if (ole) {
    ole->SetClientSite(nullptr);
    ole->Close(OLECLOSE_NOSAVE);
    ole->Release();
  }
  toolbar->Release();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::printf("usage: buttons_page_test <server path>\n");
    return 2;
  }
  CoInitialize(nullptr);
  const std::wstring path = ServerPath(argv[1]);
  const std::wstring page_key = L"CLSID\\" + Guid(CLSID_ktButtons);

  // ---- registration ----
  // The server is registered by the test run; registered here when it is not, and
  // then unregistered at the end.
  HMODULE server = nullptr;
  bool registered_here = false;
  if (!KeyExists(page_key)) {
    server = LoadLibraryW(path.c_str());
    auto reg = server ? reinterpret_cast<HRESULT(STDAPICALLTYPE*)()>(reinterpret_cast<void*>(GetProcAddress(server, "DllRegisterServer"))) : nullptr;
    registered_here = reg && SUCCEEDED(reg());
    std::printf("note: the page class was not registered; registered by the test: %s\n", registered_here ? "yes" : "no");
  }
  Check(KeyText(page_key) == L"[InprocServer32]{=KorvelUI - KorvelToolbar Buttons}",
        "HKCR\\CLSID\\{BE516F82-...} holds the description and only InprocServer32 (got " + Narrow(KeyText(page_key)) + ")");
  const std::wstring inproc = KeyText(page_key + L"\\InprocServer32");
  Check(_wcsicmp(inproc.c_str(), (L"{=" + path + L"}{ThreadingModel=Apartment}").c_str()) == 0,
        "InprocServer32 names the server, apartment-threaded (got " + Narrow(inproc) + ")");
  Check(!KeyExists(L"KorvelUI99.ktButtons"), "a page has no ProgID");

  WNDCLASSW wc{};
  wc.lpfnWndProc = FrameProc;
  wc.hInstance = GetModuleHandleW(nullptr);
  wc.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
  wc.lpszClassName = L"PageTestFrame";
  RegisterClassW(&wc);
  HWND frame = CreateWindowExW(0, L"PageTestFrame", L"Buttons page test", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 50, 50, 480,
                               320, nullptr, nullptr, wc.hInstance, nullptr);
  Check(frame != nullptr, "a frame window on the display");
  Pump();

  Site site;
  FakeToolbar toolbar(true, true);
  toolbar.items = {{L"Open", L"Open file", 0, true, false, 1},
                   {L"Bold", L"Bold text", 1, true, true, 1},
                   {L"Gap", L"", 3, true, false, 40}};
  BoxWatch watch;

  IPropertyPage* page = NewPage();
  if (!page) {
    std::printf("%d passed, %d failed\n", passed, failed);
    return 1;
  }

  // ---- the object ----
  {
    IUnknown* probe = nullptr;
    Check(page->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(&probe)) == S_OK && probe, "IUnknown");
    if (probe) probe->Release();
    Check(page->QueryInterface(IID_IPropertyPage2, reinterpret_cast<void**>(&probe)) == E_NOINTERFACE && !probe,
          "no IPropertyPage2");
    PROPPAGEINFO info{};
    info.cb = sizeof info;
    HRESULT hr = page->GetPageInfo(&info);
    Check(hr == S_OK, "GetPageInfo " + Hex(hr));
    Check(info.pszTitle && std::wstring(info.pszTitle) == L"Buttons", "the page's title is \"Buttons\"");
    Check(info.size.cx == 340 && info.size.cy == 200,
          "the page is 340 x 200 (got " + std::to_string(info.size.cx) + " x " + std::to_string(info.size.cy) + ")");
    Check(!info.pszDocString && !info.pszHelpFile && info.dwHelpContext == 0, "no document string or help");
    CoTaskMemFree(info.pszTitle);
    CoTaskMemFree(info.pszDocString);
    CoTaskMemFree(info.pszHelpFile);
    Check(page->Help(L"") == E_NOTIMPL, "Help is not implemented");
    RECT rc{0, 0, 10, 10};
    Check(page->Show(SW_SHOW) == E_UNEXPECTED, "Show before Activate is E_UNEXPECTED");
    Check(page->Move(&rc) == E_UNEXPECTED, "Move before Activate is E_UNEXPECTED");
    Check(page->Deactivate() == E_UNEXPECTED, "Deactivate before Activate is E_UNEXPECTED");
    Check(page->SetObjects(1, nullptr) == E_POINTER, "SetObjects without the array is E_POINTER");
    Check(page->GetPageInfo(nullptr) == E_POINTER, "GetPageInfo(NULL) is E_POINTER");
  }

  // ---- selection: the page fetches the list ----
  Check(page->SetPageSite(&site) == S_OK, "SetPageSite");
  {
    IUnknown* objs[] = {&toolbar};
    Check(page->SetObjects(1, objs) == S_OK, "SetObjects with the toolbar");
  }
  Check(Join(toolbar.names) == "{\"Customize\"}", "the page asks for Customize by name (got " + Join(toolbar.names) + ")");
  Check(toolbar.calls.size() == 1, "one Customize call on selection (got " + std::to_string(toolbar.calls.size()) + ")");
  if (!toolbar.calls.empty()) {
    const Received& r = toolbar.calls[0];
    Check(!r.update, "the call fetches (UpdateControl False)");
    Check(VtList(r) == Expected(kTypedVts), "fetch argument types " + Expected(kTypedVts) + " (got " + VtList(r) + ")");
    Check(Contents(r) == "count 0 keys {} tips {} styles {} enabled {} values {} widths {}",
          "the page sends a count of 0 and empty arrays (got " + Contents(r) + ")");
    bool lower_one = true;
    for (LONG lo : r.lower) lower_one = lower_one && lo == 1;
    Check(lower_one, "the page's arrays start at 1");
  }
  Check(page->IsPageDirty() == S_FALSE, "a freshly loaded page is not dirty");
  Check(site.status.empty(), "loading tells the site nothing");

  // ---- activation ----
  RECT at{10, 10, 350, 210};
  Check(page->Activate(frame, &at, TRUE) == S_OK, "Activate in the frame");
  Check(page->Activate(frame, &at, TRUE) == E_UNEXPECTED, "a second Activate is E_UNEXPECTED");
  g_page = FindWindowExW(frame, nullptr, L"KorvelPropertyPage", nullptr);
  Check(g_page != nullptr, "the page window is a child of the frame");
  if (!g_page) {
    std::printf("%d passed, %d failed\n", passed, failed);
    return 1;
  }
  Check(!IsWindowVisible(g_page), "the page stays hidden until Show");
  Check(page->Show(SW_SHOW) == S_OK && IsWindowVisible(g_page), "Show(SW_SHOW) shows it");
  Check(RectText(RectIn(frame, g_page)) == "(10,10,350,210)", "the page sits at the rectangle given (got " +
                                                                   RectText(RectIn(frame, g_page)) + ")");
  Check((GetWindowLongW(g_page, GWL_EXSTYLE) & WS_EX_CONTROLPARENT) != 0, "the page window is a control parent");
  CheckControls();
  Pump();

  Check(Shown() == "#1 key \"Open\" tip \"Open file\" style 0 enabled 1 value 0 width \"1\"",
        "item 1 shown (got " + Shown() + ")");
  Check(EnabledStates() == "Style1 Key1 Tip1 En1 Val0 Width0", "a button: key, tip and enabled on (got " + EnabledStates() + ")");

  // ---- the user edits: controls -> page ----
  Type(KeyBox, L"FileOpen");
  Check(page->IsPageDirty() == S_OK, "typing a key makes the page dirty");
  Check(site.status.size() == 1 && site.status[0] == PROPPAGESTATUS_DIRTY,
        "the site hears PROPPAGESTATUS_DIRTY once (got " + std::to_string(site.status.size()) + " calls)");
  Type(TipBox, L"Open file");  // the same text: no change
  Check(site.status.size() == 1, "the site hears nothing more while the page stays dirty");

  // Right and Left move the current item; it stays current.
  Click(RightButton);
  Check(Shown() == "#2 key \"FileOpen\" tip \"Open file\" style 0 enabled 1 value 0 width \"1\"",
        "Right moves item 1 to place 2 (got " + Shown() + ")");
  Click(EnabledCheck);
  Check(SendMessageW(Ctl(EnabledCheck), BM_GETCHECK, 0, 0) == BST_UNCHECKED, "clicking Enabled clears it");
  Click(RightButton);
  Check(Shown() == "#3 key \"FileOpen\" tip \"Open file\" style 0 enabled 0 value 0 width \"1\"",
        "Right again: place 3, with Enabled as it was left (got " + Shown() + ")");
  Click(RightButton);
  Check(Text(Ctl(CurButtonLabel)) == L"3", "Right on the last item does nothing");

  Pick(StyleList, 2);
  Check(SendMessageW(Ctl(StyleList), CB_GETCURSEL, 0, 0) == 2, "StyleList shows 2 - Separator");
  Check(EnabledStates() == "Style1 Key0 Tip0 En0 Val0 Width0",
        "a separator: every field but the style off (got " + EnabledStates() + ")");
  Pick(StyleList, 3);
  Check(EnabledStates() == "Style1 Key0 Tip0 En0 Val0 Width1", "a placeholder: only the width on (got " + EnabledStates() + ")");
  Pick(StyleList, 1);
  Check(EnabledStates() == "Style1 Key1 Tip1 En1 Val1 Width0", "a check: value on too (got " + EnabledStates() + ")");
  Click(ValueCheck);
  Check(SendMessageW(Ctl(ValueCheck), BM_GETCHECK, 0, 0) == BST_CHECKED, "clicking Value checks it");
  Pick(StyleList, 2);
  Check(EnabledStates() == "Style1 Key0 Tip0 En0 Val0 Width0", "separator again (got " + EnabledStates() + ")");

  Click(LeftButton);
  Check(Shown() == "#2 key \"FileOpen\" tip \"Open file\" style 2 enabled 0 value 1 width \"1\"",
        "Left moves it back to place 2 (got " + Shown() + ")");
  Click(LeftButton);
  Check(Text(Ctl(CurButtonLabel)) == L"1", "Left again: place 1");
  Click(LeftButton);
  Check(Text(Ctl(CurButtonLabel)) == L"1", "Left on item 1 does nothing");

  // ---- Add: page -> controls ----
  Click(AddButton);
  Check(Text(Ctl(CurButtonLabel)) == L"1", "Add with item 1 current puts the new item in front (CurButtonLabel reads 1)");
  Check(Shown() == "#1 key \"\" tip \"\" style 0 enabled 1 value 0 width \"1\"",
        "the new item has the defaults (got " + Shown() + ")");
  Check(EnabledStates() == "Style1 Key1 Tip1 En1 Val0 Width0", "a new button's fields (got " + EnabledStates() + ")");

  // ---- an invalid key ----
  Type(KeyBox, L"2nd");
  StartWatch(watch, L"Invalid key");
  Click(AddButton);
  EndWatch(watch);
  Check(watch.found, "Add with the key \"2nd\" shows the \"Invalid key\" message box");
  Check(watch.text ==
            L"This is an invalid key name.  Use only letters, numbers, and underscores ( _ ) in the name, and start "
            L"the name with a letter.",
        "its text (got \"" + Narrow(watch.text) + "\")");
  Check(watch.owner == frame, "the message box is owned by the page's top-level window");
  Check(Shown() == "#1 key \"2nd\" tip \"\" style 0 enabled 1 value 0 width \"1\"", "the page stays on item 1 (got " +
                                                                                     Shown() + ")");
  Check(GetFocus() == Ctl(KeyBox), "the focus goes to KeyBox");
  {
    DWORD s = 0, e = 0;
    SendMessageW(Ctl(KeyBox), EM_GETSEL, reinterpret_cast<WPARAM>(&s), reinterpret_cast<LPARAM>(&e));
    Check(s == 0 && e == 3, "KeyBox's whole text is selected (got " + std::to_string(s) + "-" + std::to_string(e) + ")");
  }
  Type(KeyBox, L"Save");
  Type(TipBox, L"Save file");
  Click(RightButton);
  Check(Shown() == "#2 key \"Save\" tip \"Save file\" style 0 enabled 1 value 0 width \"1\"",
        "a valid key moves right (got " + Shown() + ")");

  // ---- keyboard ----
  {
    SetFocus(Ctl(KeyBox));
    MSG m{Ctl(KeyBox), WM_KEYDOWN, VK_TAB, 0, 0, {0, 0}};
    HRESULT hr = page->TranslateAccelerator(&m);
    Check(hr == S_OK, "TranslateAccelerator takes Tab in the page " + Hex(hr));
    Check(GetFocus() == Ctl(TipBox), "Tab moves from KeyBox to TipBox");
    MSG alt_k{Ctl(TipBox), WM_SYSCHAR, 'k', 0x20000000, 0, {0, 0}};
    hr = page->TranslateAccelerator(&alt_k);
    Check(hr == S_OK && GetFocus() == Ctl(KeyBox), "Alt+K, the mnemonic of \"&Key:\", moves to KeyBox " + Hex(hr));
    DWORD s = 0, e = 0;
    SendMessageW(Ctl(KeyBox), EM_GETSEL, reinterpret_cast<WPARAM>(&s), reinterpret_cast<LPARAM>(&e));
    Check(s == 0 && e == 4, "with its text \"Save\" selected (got " + std::to_string(s) + "-" + std::to_string(e) + ")");
    MSG outside{frame, WM_KEYDOWN, VK_TAB, 0, 0, {0, 0}};
    Check(page->TranslateAccelerator(&outside) == S_FALSE, "a key for another window is left to the frame");
    MSG mouse{Ctl(KeyBox), WM_MOUSEMOVE, 0, 0, 0, {0, 0}};
    Check(page->TranslateAccelerator(&mouse) == S_FALSE, "a mouse message is no accelerator");
    Check(page->TranslateAccelerator(nullptr) == E_POINTER, "TranslateAccelerator(NULL) is E_POINTER");
  }

  // ---- Apply ----
  const size_t before = toolbar.calls.size();
  Check(page->Apply() == S_OK, "Apply");
  Check(toolbar.calls.size() == before + 1, "Apply makes one Customize call");
  if (toolbar.calls.size() == before + 1) {
    const Received& r = toolbar.calls.back();
    Check(r.update, "the call applies (UpdateControl True)");
    Check(VtList(r) == Expected(kTypedVts), "apply argument types (got " + VtList(r) + ")");
    Check(Contents(r) ==
              "count 4 keys {\"FileOpen\",\"Save\",\"Bold\",\"Gap\"} tips {\"Open file\",\"Save file\",\"Bold "
              "text\",\"\"} styles {2,0,1,3} enabled {F,T,T,T} values {T,F,T,F} widths {1,1,1,40}",
          "the toolbar receives the page's list (got " + Contents(r) + ")");
    bool lower_one = true;
    for (LONG lo : r.lower) lower_one = lower_one && lo == 1;
    Check(lower_one, "every array starts at 1");
  }
  Check(page->IsPageDirty() == S_FALSE, "the page is clean after Apply");
  Check(site.status.size() == 1, "Apply tells the site nothing");
  Click(RemoveButton);
  Check(Shown() == "#2 key \"Bold\" tip \"Bold text\" style 1 enabled 1 value 1 width \"1\"",
        "Remove takes item 2 away and shows the next (got " + Shown() + ")");
  Check(page->IsPageDirty() == S_OK && site.status.size() == 2 && site.status[1] == PROPPAGESTATUS_DIRTY,
        "Remove makes the page dirty again and the site hears it");

  // ---- Move, Show, Deactivate ----
  RECT moved{20, 30, 360, 230};
  Check(page->Move(&moved) == S_OK && RectText(RectIn(frame, g_page)) == "(20,30,360,230)", "Move");
  Check(page->Show(SW_HIDE) == S_OK && !IsWindowVisible(g_page), "Show(SW_HIDE)");
  HWND old_page = g_page;
  Check(page->Deactivate() == S_OK, "Deactivate");
  Check(!IsWindow(old_page), "the page window is gone");
  g_page = nullptr;

  // ---- reactivation keeps the page's state ----
  Check(page->Activate(frame, &at, TRUE) == S_OK, "Activate again");
  g_page = FindWindowExW(frame, nullptr, L"KorvelPropertyPage", nullptr);
  page->Show(SW_SHOW);
  Check(Shown() == "#2 key \"Bold\" tip \"Bold text\" style 1 enabled 1 value 1 width \"1\"",
        "the new window shows where the page was (got " + Shown() + ")");
  Check(EnabledStates() == "Style1 Key1 Tip1 En1 Val1 Width0", "with the enabled states of a check (got " +
                                                                   EnabledStates() + ")");
  Click(LeftButton);
  Check(Shown() == "#1 key \"Bold\" tip \"Bold text\" style 1 enabled 1 value 1 width \"1\"",
        "Left in the new window moves it to place 1 (got " + Shown() + ")");
  Check(page->Deactivate() == S_OK, "Deactivate again");
  g_page = nullptr;

  // ---- two toolbars ----
  {
    FakeToolbar second(true, true);
    const size_t first_calls = toolbar.calls.size();
    IUnknown* objs[] = {&toolbar, &second};
    StartWatch(watch, L"Too many controls selected");
    Check(page->SetObjects(2, objs) == S_OK, "SetObjects with two toolbars");
    EndWatch(watch);
    Check(watch.found && watch.text ==
                             L"You can only edit one toolbar at a time.  Any changes you make will only affect one "
                             L"toolbar.",
          "two selected toolbars: the \"Too many controls selected\" message (got \"" + Narrow(watch.text) + "\")");
    Check(toolbar.calls.size() == first_calls + 1 && second.calls.empty(), "the page loads the first one only");
    Check(page->SetObjects(0, nullptr) == S_OK, "SetObjects(0) lets the objects go");
    Check(second.refs == 1, "the second toolbar is released");
  }

  // ---- an object without Customize ----
  {
    FakeToolbar other(true, false);
    other.items = toolbar.items;
    IUnknown* objs[] = {&other};
    Check(page->SetObjects(1, objs) == S_OK, "SetObjects with an object that has no Customize");
    Check(page->Activate(frame, &at, TRUE) == S_OK, "Activate over it");
    g_page = FindWindowExW(frame, nullptr, L"KorvelPropertyPage", nullptr);
    Check(EnabledStates() == "Style0 Key0 Tip0 En0 Val0 Width0", "an empty list: every field off (got " + EnabledStates() + ")");
    Check(page->Apply() == S_OK, "Apply on it is harmless");
    Check(other.calls.empty(), "nothing was invoked on it");
    page->Deactivate();
    g_page = nullptr;
    page->SetObjects(0, nullptr);
    Check(other.refs == 1, "it is released");
  }

  Check(page->SetPageSite(nullptr) == S_OK && site.refs == 1, "SetPageSite(NULL) releases the site");
  Check(page->Release() == 0, "the last Release frees the page");
  Check(toolbar.refs == 1, "the toolbar is released");

  // ---- an object without type information: everything by reference ----
  {
    FakeToolbar plain(false, true);
    plain.items = {{L"One", L"First", 1, true, true, 1}};
    IPropertyPage* p2 = NewPage();
    if (p2) {
      IUnknown* objs[] = {&plain};
      Check(p2->SetObjects(1, objs) == S_OK, "SetObjects with an object without type information");
      const VARTYPE fetch[8] = {VT_BYREF | VT_BOOL, VT_BYREF | VT_I2, kArr | VT_VARIANT, kArr | VT_VARIANT,
                                kArr | VT_VARIANT,  kArr | VT_VARIANT, kArr | VT_VARIANT, kArr | VT_VARIANT};
      Check(plain.calls.size() == 1 && VtList(plain.calls[0]) == Expected(fetch),
            "fetch: every argument by reference, the empty arrays as VARIANT arrays (got " +
                (plain.calls.empty() ? std::string("no call") : VtList(plain.calls[0])) + ")");
      Check(p2->Apply() == S_OK, "Apply");
      const VARTYPE apply[8] = {VT_BYREF | VT_BOOL, VT_BYREF | VT_I2, kArr | VT_BSTR, kArr | VT_BSTR,
                                kArr | VT_I4,       kArr | VT_BOOL,   kArr | VT_BOOL, kArr | VT_I2};
      Check(plain.calls.size() == 2 && VtList(plain.calls[1]) == Expected(apply),
            "apply: the arrays typed by their items (got " +
                (plain.calls.size() < 2 ? std::string("no call") : VtList(plain.calls[1])) + ")");
      if (plain.calls.size() == 2)
        Check(Contents(plain.calls[1]) ==
                  "count 1 keys {\"One\"} tips {\"First\"} styles {1} enabled {T} values {T} widths {1}",
              "the list comes back as fetched (got " + Contents(plain.calls[1]) + ")");
      Check(p2->Release() == 0, "the second page is freed");
      Check(plain.refs == 1, "the object is released");
    }
  }

  // ---- the platform's property frame ----
  PlatformFrame(frame, toolbar);

  // ---- a real toolbar ----
  RealToolbar(frame, site, watch);

  DestroyWindow(frame);
  if (registered_here && server) {
    auto unreg = reinterpret_cast<HRESULT(STDAPICALLTYPE*)()>(reinterpret_cast<void*>(GetProcAddress(server, "DllUnregisterServer")));
    if (unreg) unreg();
  }
  CoUninitialize();
  std::printf("%d passed, %d failed\n", passed, failed);
  return failed == 0 ? 0 : 1;
}
