// Shared pieces of the toolbar's Wine tests: the classic colours, the image strip
// drawn in code, a container of our own (client, in-place and control site with an
// extender), placing the toolbar, Customize by name with by-reference arrays, and
// real pointer input.
#pragma once
#include "../activex/ax_site.h"

namespace tbtest {

using namespace axtest;

// ---- the classic colours the cells are drawn in ----

constexpr COLORREF kFace = RGB(192, 192, 192);
constexpr COLORREF kShadow = RGB(128, 128, 128);
constexpr COLORREF kHilite = RGB(255, 255, 255);
constexpr COLORREF kHot = RGB(224, 224, 224);  // halfway between highlight and face, to even
constexpr COLORREF kMagenta = RGB(255, 0, 255);
constexpr COLORREF kWhite = RGB(255, 255, 255);

// ---- the strip: three 16 x 16 images, rows 0-3 magenta, then the left half in the
// image's colour and the right half white ----

inline COLORREF ImageColor(int k) {
  static const COLORREF colors[] = {RGB(255, 0, 0), RGB(0, 128, 0), RGB(0, 0, 255)};
  return colors[(k - 1) % 3];
}

inline COLORREF StripPixel(int k, int px, int py) {
  if (py < 4) return kMagenta;
  return px < 8 ? ImageColor(k) : kWhite;
}

// The embossed strip on button face: shadow where the strip is not white, highlight
// one pixel down and right of such pixels, face elsewhere.
inline COLORREF DisabledPixel(int x, int y) {
  auto dark = [](int sx, int sy) {
    if (sx < 0 || sy < 0 || sx >= 48 || sy >= 16) return false;
    return StripPixel(sx / 16 + 1, sx % 16, sy) != kWhite;
  };
  if (dark(x, y)) return kShadow;
  if (dark(x - 1, y - 1)) return kHilite;
  return kFace;
}

// A 24-bit bottom-up bitmap of the strip as an IPictureDisp that owns it.
inline IPictureDisp* MakeStrip() {
  BITMAPINFO bi{};
  bi.bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
  bi.bmiHeader.biWidth = 48;
  bi.bmiHeader.biHeight = 16;
  bi.bmiHeader.biPlanes = 1;
  bi.bmiHeader.biBitCount = 24;
  bi.bmiHeader.biCompression = BI_RGB;
  void* bits = nullptr;
  HBITMAP bmp = CreateDIBSection(nullptr, &bi, DIB_RGB_COLORS, &bits, nullptr, 0);
  if (!bmp || !bits) return nullptr;
  const int stride = (48 * 3 + 3) & ~3;
  for (int y = 0; y < 16; ++y)
    for (int x = 0; x < 48; ++x) {
      COLORREF c = StripPixel(x / 16 + 1, x % 16, y);
      auto* p = static_cast<BYTE*>(bits) + (15 - y) * stride + x * 3;
      p[0] = GetBValue(c);
      p[1] = GetGValue(c);
      p[2] = GetRValue(c);
    }
  PICTDESC pd{};
  pd.cbSizeofstruct = sizeof pd;
  pd.picType = PICTYPE_BITMAP;
  pd.bmp.hbitmap = bmp;
  IPictureDisp* pic = nullptr;
  if (FAILED(OleCreatePictureIndirect(&pd, IID_IPictureDisp, TRUE, reinterpret_cast<void**>(&pic)))) return nullptr;
  return pic;
}

// ---- a container of our own ----

// The bench's client site, placed as a toolbar is: across a 200-pixel form, named
// Toolbar1, aligned to the top.
class ToolbarSite : public Site {
 public:
  ToolbarSite() {
    pos = {10, 10, 210, 38};
    extender.name = L"Toolbar1";
    extender.align = 1;
  }
};

inline void Pump(int ms) {
  const DWORD end = GetTickCount() + static_cast<DWORD>(ms);
  MSG msg;
  do {
    while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
      TranslateMessage(&msg);
      DispatchMessageW(&msg);
    }
    Sleep(5);
  } while (GetTickCount() < end);
}

inline HWND MakeWindow() {
  WNDCLASSW wc{};
  wc.lpfnWndProc = DefWindowProcW;
  wc.hInstance = GetModuleHandleW(nullptr);
  wc.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
  wc.lpszClassName = L"KorvelToolbarTestContainer";
  RegisterClassW(&wc);
  HWND w = CreateWindowExW(0, wc.lpszClassName, L"container", WS_POPUP | WS_VISIBLE, 100, 100, 400, 200, nullptr,
                           nullptr, wc.hInstance, nullptr);
  Pump(100);
  return w;
}

// Creates the toolbar on site (the site first) and runs InitNew (bag null) or Load.
inline IDispatch* Place(ToolbarSite& site, IOleObject** ole, IPropertyBag* bag = nullptr) {
  IDispatch* d = Create(L"KorvelUI99.KorvelToolbar");
  *ole = nullptr;
  if (!d) return nullptr;
  d->QueryInterface(IID_IOleObject, reinterpret_cast<void**>(ole));
  if (*ole) (*ole)->SetClientSite(&site);
  if (bag) {
    IPersistPropertyBag* p = nullptr;
    if (SUCCEEDED(d->QueryInterface(IID_IPersistPropertyBag, reinterpret_cast<void**>(&p)))) {
      Check(p->Load(bag, nullptr) == S_OK, "IPersistPropertyBag::Load");
      p->Release();
    }
  } else {
    IPersistStreamInit* p = nullptr;
    if (SUCCEEDED(d->QueryInterface(IID_IPersistStreamInit, reinterpret_cast<void**>(&p)))) {
      p->InitNew();
      p->Release();
    }
  }
  return d;
}

inline void Unplace(IDispatch* d, IOleObject* ole) {
  if (ole) {
    ole->Close(OLECLOSE_NOSAVE);
    ole->SetClientSite(nullptr);
    ole->Release();
  }
  if (d) d->Release();
}

inline VARIANT VRef(VARTYPE vt, void* where) {
  VARIANT x;
  VariantInit(&x);
  V_VT(&x) = static_cast<VARTYPE>(vt | VT_BYREF);
  V_BYREF(&x) = where;
  return x;
}

inline SAFEARRAY* Vector(VARTYPE vt, int n) { return SafeArrayCreateVector(vt, 1, static_cast<ULONG>(n)); }

// The button list given to Customize.
struct ButtonItem {
  const wchar_t* key;
  const wchar_t* tip;
  long style;
  bool enabled;
  bool value;
  short width;
};
const ButtonItem kItems[] = {
    {L"A", L"Alpha", 0, true, false, 1},
    {L"B", L"Beta", 0, true, false, 1},
    {L"", L"", 2, true, false, 1},
    {L"C", L"Gamma", 1, true, true, 1},
    {L"", L"", 3, true, false, 40},
};
constexpr int kItemCount = 5;

// Customize through IDispatch with its eight arguments by reference (arrays of
// their declared element types, 1-based), as the Buttons page calls it.
inline HRESULT CustomizeByName(IDispatch* d, bool update, short& count, SAFEARRAY*& key, SAFEARRAY*& tip, SAFEARRAY*& style,
                        SAFEARRAY*& enabled, SAFEARRAY*& value, SAFEARRAY*& width) {
  CallResult r;
  InvokeId(d, IdOf(d, L"Customize"), DISPATCH_METHOD,
           {VBool(update), VRef(VT_I2, &count), VRef(VT_ARRAY | VT_BSTR, &key), VRef(VT_ARRAY | VT_BSTR, &tip),
            VRef(VT_ARRAY | VT_I4, &style), VRef(VT_ARRAY | VT_BOOL, &enabled), VRef(VT_ARRAY | VT_BOOL, &value),
            VRef(VT_ARRAY | VT_I2, &width)},
           r);
  return r.hr;
}

// ---- the classic system colours for the test ----

// Customize(True, 5, ...) by name with kItems in 1-based arrays of the declared types.
inline HRESULT CustomizeItems(IDispatch* d) {
  short count = kItemCount;
  SAFEARRAY *key = Vector(VT_BSTR, kItemCount), *tip = Vector(VT_BSTR, kItemCount), *style = Vector(VT_I4, kItemCount),
            *enabled = Vector(VT_BOOL, kItemCount), *value = Vector(VT_BOOL, kItemCount),
            *width = Vector(VT_I2, kItemCount);
  for (LONG i = 1; i <= kItemCount; ++i) {
    const ButtonItem& it = kItems[i - 1];
    BSTR k = SysAllocString(it.key), t = SysAllocString(it.tip);
    SafeArrayPutElement(key, &i, k);
    SafeArrayPutElement(tip, &i, t);
    SysFreeString(k);
    SysFreeString(t);
    LONG s = it.style;
    SafeArrayPutElement(style, &i, &s);
    VARIANT_BOOL e = it.enabled ? VARIANT_TRUE : VARIANT_FALSE, v = it.value ? VARIANT_TRUE : VARIANT_FALSE;
    SafeArrayPutElement(enabled, &i, &e);
    SafeArrayPutElement(value, &i, &v);
    SHORT w = it.width;
    SafeArrayPutElement(width, &i, &w);
  }
  HRESULT hr = CustomizeByName(d, true, count, key, tip, style, enabled, value, width);
  for (SAFEARRAY* sa : {key, tip, style, enabled, value, width}) SafeArrayDestroy(sa);
  return hr;
}

// The test toolbar built on a design-time site (the strip, kItems) and saved into bag.
inline bool SaveDesigned(IPictureDisp* strip, Bag& bag) {
  ToolbarSite design;
  design.user_mode = false;
  IOleObject* ole = nullptr;
  IDispatch* d = Place(design, &ole);
  if (!d) return false;
  bool ok = Put(d, L"Picture", VDisp(strip), DISPATCH_PROPERTYPUTREF) == S_OK && CustomizeItems(d) == S_OK;
  IPersistPropertyBag* p = nullptr;
  ok = ok && SUCCEEDED(d->QueryInterface(IID_IPersistPropertyBag, reinterpret_cast<void**>(&p))) &&
       p->Save(&bag, TRUE, TRUE) == S_OK;
  if (p) p->Release();
  Unplace(d, ole);
  return ok;
}

class ClassicColors {
 public:
  ClassicColors() {
    const int index[] = {COLOR_BTNFACE, COLOR_BTNSHADOW, COLOR_BTNHIGHLIGHT};
    const COLORREF want[] = {kFace, kShadow, kHilite};
    for (int i = 0; i < 3; ++i) {
      old_[i] = GetSysColor(index[i]);
      changed_ = changed_ || old_[i] != want[i];
    }
    if (changed_) SetSysColors(3, index, want);
  }
  ~ClassicColors() {
    const int index[] = {COLOR_BTNFACE, COLOR_BTNSHADOW, COLOR_BTNHIGHLIGHT};
    if (changed_) SetSysColors(3, index, old_);
  }
  bool changed() const { return changed_; }

 private:
  COLORREF old_[3]{};
  bool changed_ = false;
};

// Moves the real pointer (screen coordinates) and presses or releases buttons.
inline void PointerTo(int x, int y) {
  SetCursorPos(x, y);
  // A move of nothing: the move message at the new position, as a real mouse gives.
  INPUT in{};
  in.type = INPUT_MOUSE;
  in.mi.dwFlags = MOUSEEVENTF_MOVE;
  SendInput(1, &in, sizeof in);
  Pump(60);
}

inline void Buttons(DWORD flags) {
  INPUT in{};
  in.type = INPUT_MOUSE;
  in.mi.dwFlags = flags;
  SendInput(1, &in, sizeof in);
  Pump(60);
}

inline BOOL CALLBACK FindTipWindow(HWND w, LPARAM p) {
  wchar_t cls[64] = {};
  GetClassNameW(w, cls, 64);
  DWORD pid = 0;
  GetWindowThreadProcessId(w, &pid);
  if (pid == GetCurrentProcessId() && wcscmp(cls, L"KorvelSurface") == 0) {
    *reinterpret_cast<HWND*>(p) = w;
    return FALSE;
  }
  return TRUE;
}

// The toolbar's tip: the process's one top-level window of the surface class.
inline HWND FindTip() {
  HWND found = nullptr;
  EnumWindows(FindTipWindow, reinterpret_cast<LPARAM>(&found));
  return found;
}

}  // namespace tbtest
