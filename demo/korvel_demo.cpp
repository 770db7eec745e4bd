// korvel_demo: a small Windows program that uses the library the way an application
// does. It opens a form (a top-level window in the classic grey) and places the
// controls on it by ProgID, setting their properties by name at run time:
//   - a KorvelToolbar across the top, built at design time (an image strip drawn here,
//     five buttons through Customize), saved into a property bag and loaded at run
//     time into a container of our own;
//   - a KorvelLink, a KorvelDivider, a KorvelBar at 60 and a KorvelMiniSlider, each
//     hosted by the platform's ATL container (atl.dll).
// When the form has painted, it saves a picture of the form's client area, then shows
// the About box, saves a picture of it and closes it. It needs no user: it prints what
// it did and exits non-zero if any step failed.
//
//   korvel_demo.exe <form picture> [<About picture>]
// A path ending in ".png" gets a PNG file, any other a 24-bit BMP file.
#include <windows.h>
#include <ocidl.h>
#include <olectl.h>

#include <cstdio>
#include <cwchar>
#include <string>
#include <utility>
#include <vector>

namespace {

int failures = 0;

void Say(bool ok, const char* what, HRESULT hr = S_OK) {
  if (ok)
    std::printf("ok: %s\n", what);
  else
    std::printf("FAILED: %s (0x%08lX)\n", what, static_cast<unsigned long>(hr));
  std::fflush(stdout);
  if (!ok) ++failures;
}

// ---- pictures: a 24-bit capture written as BMP or PNG ----

struct Picture {
  int width = 0, height = 0;
  std::vector<BYTE> rgb;  // top-down rows of R, G, B
};

// Copies width x height pixels at (x, y) of src into a 24-bit DIB.
Picture Capture(HDC src, int x, int y, int width, int height) {
  Picture pic;
  if (width <= 0 || height <= 0) return pic;
  BITMAPINFO bi{};
  bi.bmiHeader.biSize = sizeof bi.bmiHeader;
  bi.bmiHeader.biWidth = width;
  bi.bmiHeader.biHeight = -height;
  bi.bmiHeader.biPlanes = 1;
  bi.bmiHeader.biBitCount = 24;
  bi.bmiHeader.biCompression = BI_RGB;
  void* bits = nullptr;
  HBITMAP bmp = CreateDIBSection(src, &bi, DIB_RGB_COLORS, &bits, nullptr, 0);
  if (!bmp || !bits) return pic;
  HDC mem = CreateCompatibleDC(src);
  HGDIOBJ old = SelectObject(mem, bmp);
  const BOOL copied = BitBlt(mem, 0, 0, width, height, src, x, y, SRCCOPY);
  GdiFlush();
  if (copied) {
    pic.width = width;
    pic.height = height;
    pic.rgb.resize(static_cast<size_t>(width) * height * 3);
    const int stride = (width * 3 + 3) & ~3;
    for (int row = 0; row < height; ++row)
      for (int col = 0; col < width; ++col) {
        const BYTE* p = static_cast<const BYTE*>(bits) + row * stride + col * 3;
        BYTE* q = &pic.rgb[(static_cast<size_t>(row) * width + col) * 3];
        q[0] = p[2];
        q[1] = p[1];
        q[2] = p[0];
      }
  }
  SelectObject(mem, old);
  DeleteDC(mem);
  DeleteObject(bmp);
  return pic;
}

bool WriteAll(const std::wstring& path, const std::vector<BYTE>& data) {
  HANDLE f = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (f == INVALID_HANDLE_VALUE) return false;
  DWORD written = 0;
  const BOOL ok = WriteFile(f, data.data(), static_cast<DWORD>(data.size()), &written, nullptr);
  CloseHandle(f);
  return ok && written == data.size();
}

void Put16(std::vector<BYTE>& v, unsigned x) {
  v.push_back(static_cast<BYTE>(x));
  v.push_back(static_cast<BYTE>(x >> 8));
}
void Put32(std::vector<BYTE>& v, unsigned long x) {
  for (int i = 0; i < 4; ++i) v.push_back(static_cast<BYTE>(x >> (8 * i)));
}
void Put32Be(std::vector<BYTE>& v, unsigned long x) {
  for (int i = 3; i >= 0; --i) v.push_back(static_cast<BYTE>(x >> (8 * i)));
}

std::vector<BYTE> EncodeBmp(const Picture& pic) {
  const int stride = (pic.width * 3 + 3) & ~3;
  const unsigned long image = static_cast<unsigned long>(stride) * pic.height;
  std::vector<BYTE> v;
  v.push_back('B');
  v.push_back('M');
  Put32(v, 54 + image);
  Put32(v, 0);
  Put32(v, 54);
  Put32(v, 40);
  Put32(v, static_cast<unsigned long>(pic.width));
  Put32(v, static_cast<unsigned long>(pic.height));  // bottom-up
  Put16(v, 1);
  Put16(v, 24);
  Put32(v, BI_RGB);
  Put32(v, image);
  Put32(v, 2835);
  Put32(v, 2835);
  Put32(v, 0);
  Put32(v, 0);
  for (int row = pic.height - 1; row >= 0; --row) {
    for (int col = 0; col < pic.width; ++col) {
      const BYTE* q = &pic.rgb[(static_cast<size_t>(row) * pic.width + col) * 3];
      v.push_back(q[2]);
      v.push_back(q[1]);
      v.push_back(q[0]);
    }
    for (int pad = pic.width * 3; pad < stride; ++pad) v.push_back(0);
  }
  return v;
}

unsigned long Crc32(const BYTE* p, size_t n, unsigned long crc = 0) {
  crc = ~crc & 0xFFFFFFFFUL;
  for (size_t i = 0; i < n; ++i) {
    crc ^= p[i];
    for (int k = 0; k < 8; ++k) crc = (crc >> 1) ^ (0xEDB88320UL & (0UL - (crc & 1)));
  }
  return ~crc & 0xFFFFFFFFUL;
}

void Chunk(std::vector<BYTE>& png, const char* type, const std::vector<BYTE>& data) {
  Put32Be(png, static_cast<unsigned long>(data.size()));
  std::vector<BYTE> body(type, type + 4);
  body.insert(body.end(), data.begin(), data.end());
  png.insert(png.end(), body.begin(), body.end());
  Put32Be(png, Crc32(body.data(), body.size()));
}

// A PNG of 8-bit RGB rows, compressed with stored deflate blocks (no compression
// library needed; the pictures are small).
std::vector<BYTE> EncodePng(const Picture& pic) {
  std::vector<BYTE> raw;
  for (int row = 0; row < pic.height; ++row) {
    raw.push_back(0);  // filter: none
    const BYTE* q = &pic.rgb[static_cast<size_t>(row) * pic.width * 3];
    raw.insert(raw.end(), q, q + static_cast<size_t>(pic.width) * 3);
  }
  std::vector<BYTE> z = {0x78, 0x01};
  for (size_t at = 0; at < raw.size() || at == 0; at += 65535) {
    const size_t n = raw.size() - at < 65535 ? raw.size() - at : 65535;
    z.push_back(at + n >= raw.size() ? 1 : 0);
    Put16(z, static_cast<unsigned>(n));
    Put16(z, static_cast<unsigned>(~n & 0xFFFF));
    z.insert(z.end(), raw.begin() + static_cast<std::ptrdiff_t>(at), raw.begin() + static_cast<std::ptrdiff_t>(at + n));
    if (raw.empty()) break;
  }
  unsigned long a = 1, b = 0;
  for (BYTE c : raw) {
    a = (a + c) % 65521;
    b = (b + a) % 65521;
  }
  Put32Be(z, (b << 16) | a);
  std::vector<BYTE> png = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
  std::vector<BYTE> header;
  Put32Be(header, static_cast<unsigned long>(pic.width));
  Put32Be(header, static_cast<unsigned long>(pic.height));
  header.insert(header.end(), {8, 2, 0, 0, 0});
  Chunk(png, "IHDR", header);
  Chunk(png, "IDAT", z);
  Chunk(png, "IEND", {});
  return png;
}

bool Save(const Picture& pic, const std::wstring& path) {
  if (pic.width <= 0) return false;
  const bool png = path.size() > 4 && _wcsicmp(path.c_str() + path.size() - 4, L".png") == 0;
  return WriteAll(path, png ? EncodePng(pic) : EncodeBmp(pic));
}

// ---- late binding by name ----

HRESULT Invoke(IDispatch* d, const wchar_t* name, WORD flags, std::vector<VARIANT> args = {}) {
  DISPID id = DISPID_UNKNOWN;
  LPOLESTR n = const_cast<LPOLESTR>(name);
  HRESULT hr = d->GetIDsOfNames(IID_NULL, &n, 1, LOCALE_USER_DEFAULT, &id);
  if (SUCCEEDED(hr)) {
    std::vector<VARIANT> rev(args.rbegin(), args.rend());
    DISPID put = DISPID_PROPERTYPUT;
    DISPPARAMS dp{rev.empty() ? nullptr : rev.data(), nullptr, static_cast<UINT>(rev.size()), 0};
    if (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) {
      dp.rgdispidNamedArgs = &put;
      dp.cNamedArgs = 1;
    }
    VARIANT result;
    VariantInit(&result);
    EXCEPINFO excep{};
    hr = d->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &dp,
                   (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) ? nullptr : &result, &excep, nullptr);
    VariantClear(&result);
    SysFreeString(excep.bstrSource);
    SysFreeString(excep.bstrDescription);
    SysFreeString(excep.bstrHelpFile);
  }
  for (auto& a : args) VariantClear(&a);
  return hr;
}

VARIANT VStr(const wchar_t* s) { VARIANT x; VariantInit(&x); V_VT(&x) = VT_BSTR; V_BSTR(&x) = SysAllocString(s); return x; }
VARIANT VI4(long v) { VARIANT x; VariantInit(&x); V_VT(&x) = VT_I4; V_I4(&x) = v; return x; }
VARIANT VBool(bool v) { VARIANT x; VariantInit(&x); V_VT(&x) = VT_BOOL; V_BOOL(&x) = v ? VARIANT_TRUE : VARIANT_FALSE; return x; }
VARIANT VDisp(IDispatch* d) { VARIANT x; VariantInit(&x); V_VT(&x) = VT_DISPATCH; V_DISPATCH(&x) = d; if (d) d->AddRef(); return x; }
VARIANT VRef(VARTYPE vt, void* where) { VARIANT x; VariantInit(&x); V_VT(&x) = static_cast<VARTYPE>(vt | VT_BYREF); V_BYREF(&x) = where; return x; }

bool SetProp(IDispatch* d, const char* control, const wchar_t* name, VARIANT v, WORD flags = DISPATCH_PROPERTYPUT) {
  const HRESULT hr = Invoke(d, name, flags, {v});
  char what[160];
  std::snprintf(what, sizeof what, "%s.%ls set by name", control, name);
  Say(SUCCEEDED(hr), what, hr);
  return SUCCEEDED(hr);
}

// ---- the toolbar's image strip: five 16 x 16 images drawn on magenta ----

IPictureDisp* MakeStrip() {
  constexpr int kCount = 5;
  HDC screen = GetDC(nullptr);
  HDC dc = CreateCompatibleDC(screen);
  BITMAPINFO bi{};
  bi.bmiHeader.biSize = sizeof bi.bmiHeader;
  bi.bmiHeader.biWidth = 16 * kCount;
  bi.bmiHeader.biHeight = 16;
  bi.bmiHeader.biPlanes = 1;
  bi.bmiHeader.biBitCount = 24;
  bi.bmiHeader.biCompression = BI_RGB;
  void* bits = nullptr;
  HBITMAP bmp = CreateDIBSection(screen, &bi, DIB_RGB_COLORS, &bits, nullptr, 0);
  ReleaseDC(nullptr, screen);
  if (!bmp) {
    DeleteDC(dc);
    return nullptr;
  }
  HGDIOBJ old_bmp = SelectObject(dc, bmp);
  HBRUSH magenta = CreateSolidBrush(RGB(255, 0, 255));
  RECT all{0, 0, 16 * kCount, 16};
  FillRect(dc, &all, magenta);
  DeleteObject(magenta);
  HPEN black = CreatePen(PS_SOLID, 1, RGB(0, 0, 0));
  HGDIOBJ old_pen = SelectObject(dc, black);
  auto brush = [&](COLORREF c) {
    HBRUSH b = CreateSolidBrush(c);
    DeleteObject(SelectObject(dc, b));
  };
  SelectObject(dc, GetStockObject(WHITE_BRUSH));

  // 1 New: a white page with its corner folded.
  brush(RGB(255, 255, 255));
  POINT page[] = {{3, 1}, {10, 1}, {13, 4}, {13, 14}, {3, 14}};
  Polygon(dc, page, 5);
  MoveToEx(dc, 10, 1, nullptr);
  LineTo(dc, 10, 4);
  LineTo(dc, 14, 4);

  // 2 Open: a yellow folder.
  brush(RGB(255, 255, 0));
  POINT back[] = {{17, 4}, {21, 4}, {22, 3}, {26, 3}, {27, 4}, {29, 4}, {29, 13}, {17, 13}};
  Polygon(dc, back, 8);
  brush(RGB(192, 192, 0));
  POINT front[] = {{17, 13}, {19, 7}, {31, 7}, {29, 13}};
  Polygon(dc, front, 4);

  // 3 Save: a blue disk with a white label and a grey shutter.
  brush(RGB(0, 0, 128));
  Rectangle(dc, 33, 1, 47, 15);
  SelectObject(dc, GetStockObject(NULL_PEN));
  brush(RGB(255, 255, 255));
  Rectangle(dc, 36, 2, 45, 8);
  brush(RGB(192, 192, 192));
  Rectangle(dc, 37, 10, 44, 15);
  brush(RGB(0, 0, 128));
  Rectangle(dc, 38, 11, 40, 14);
  SelectObject(dc, black);

  // 4 Bold: a heavy black B.
  HFONT bold = CreateFontW(-14, 0, 0, 0, FW_BLACK, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                           CLIP_DEFAULT_PRECIS, NONANTIALIASED_QUALITY, VARIABLE_PITCH, L"Arial");
  HGDIOBJ old_font = SelectObject(dc, bold);
  SetBkMode(dc, TRANSPARENT);
  SetTextColor(dc, RGB(0, 0, 0));
  RECT b_cell{48, 0, 64, 16};
  DrawTextW(dc, L"B", 1, &b_cell, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
  SelectObject(dc, old_font);
  DeleteObject(bold);

  // 5 Help: a blue circle with a white question mark.
  brush(RGB(0, 0, 255));
  SelectObject(dc, GetStockObject(NULL_PEN));
  Ellipse(dc, 65, 1, 79, 15);
  HFONT help = CreateFontW(-12, 0, 0, 0, FW_BOLD, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                           CLIP_DEFAULT_PRECIS, NONANTIALIASED_QUALITY, VARIABLE_PITCH, L"Arial");
  old_font = SelectObject(dc, help);
  SetTextColor(dc, RGB(255, 255, 255));
  RECT q_cell{64, 0, 79, 16};
  DrawTextW(dc, L"?", 1, &q_cell, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
  SelectObject(dc, old_font);
  DeleteObject(help);

  DeleteObject(SelectObject(dc, GetStockObject(WHITE_BRUSH)));
  SelectObject(dc, old_pen);
  DeleteObject(black);
  SelectObject(dc, old_bmp);
  DeleteDC(dc);

  PICTDESC pd{};
  pd.cbSizeofstruct = sizeof pd;
  pd.picType = PICTYPE_BITMAP;
  pd.bmp.hbitmap = bmp;
  IPictureDisp* pic = nullptr;
  if (FAILED(OleCreatePictureIndirect(&pd, IID_IPictureDisp, TRUE, reinterpret_cast<void**>(&pic)))) {
    DeleteObject(bmp);
    return nullptr;
  }
  return pic;
}

// ---- a container of our own for the toolbar: a site that answers UserMode, and a
// property bag that holds what the design-time toolbar saved ----

class Bag : public IPropertyBag {
 public:
  ~Bag() {
    for (auto& i : items_) VariantClear(&i.second);
  }
  STDMETHODIMP QueryInterface(REFIID riid, void** out) override {
    if (IsEqualIID(riid, IID_IUnknown) || IsEqualIID(riid, IID_IPropertyBag)) {
      *out = static_cast<IPropertyBag*>(this);
      return S_OK;
    }
    *out = nullptr;
    return E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return 2; }
  STDMETHODIMP_(ULONG) Release() override { return 1; }
  STDMETHODIMP Read(LPCOLESTR name, VARIANT* v, IErrorLog*) override {
    for (auto& i : items_)
      if (_wcsicmp(i.first.c_str(), name) == 0) return VariantCopy(v, &i.second);
    return E_INVALIDARG;
  }
  STDMETHODIMP Write(LPCOLESTR name, VARIANT* v) override {
    for (auto& i : items_)
      if (_wcsicmp(i.first.c_str(), name) == 0) {
        VariantClear(&i.second);
        return VariantCopy(&i.second, v);
      }
    VARIANT c;
    VariantInit(&c);
    const HRESULT hr = VariantCopy(&c, v);
    items_.emplace_back(name, c);
    return hr;
  }
  size_t size() const { return items_.size(); }

 private:
  std::vector<std::pair<std::wstring, VARIANT>> items_;
};

class Site : public IOleClientSite, public IOleInPlaceSite, public IOleControlSite, public IDispatch {
 public:
  HWND window = nullptr;
  RECT pos{0, 0, 0, 0};
  bool user_mode = true;
  IOleInPlaceObject* inplace = nullptr;

  STDMETHODIMP QueryInterface(REFIID riid, void** out) override {
    if (IsEqualIID(riid, IID_IUnknown) || IsEqualIID(riid, IID_IOleClientSite)) *out = static_cast<IOleClientSite*>(this);
    else if (IsEqualIID(riid, IID_IOleWindow) || IsEqualIID(riid, IID_IOleInPlaceSite)) *out = static_cast<IOleInPlaceSite*>(this);
    else if (IsEqualIID(riid, IID_IOleControlSite)) *out = static_cast<IOleControlSite*>(this);
    else if (IsEqualIID(riid, IID_IDispatch)) *out = static_cast<IDispatch*>(this);
    else {
      *out = nullptr;
      return E_NOINTERFACE;
    }
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return 2; }
  STDMETHODIMP_(ULONG) Release() override { return 1; }
  // IOleClientSite
  STDMETHODIMP SaveObject() override { return E_NOTIMPL; }
  STDMETHODIMP GetMoniker(DWORD, DWORD, IMoniker** m) override { *m = nullptr; return E_NOTIMPL; }
  STDMETHODIMP GetContainer(IOleContainer** c) override { *c = nullptr; return E_NOINTERFACE; }
  STDMETHODIMP ShowObject() override { return S_OK; }
  STDMETHODIMP OnShowWindow(BOOL) override { return S_OK; }
  STDMETHODIMP RequestNewObjectLayout() override { return E_NOTIMPL; }
  // IOleInPlaceSite
  STDMETHODIMP GetWindow(HWND* w) override { *w = window; return window ? S_OK : E_FAIL; }
  STDMETHODIMP ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }
  STDMETHODIMP CanInPlaceActivate() override { return window ? S_OK : S_FALSE; }
  STDMETHODIMP OnInPlaceActivate() override { return S_OK; }
  STDMETHODIMP OnUIActivate() override { return S_OK; }
  STDMETHODIMP GetWindowContext(IOleInPlaceFrame** f, IOleInPlaceUIWindow** d, LPRECT p, LPRECT c,
                                LPOLEINPLACEFRAMEINFO) override {
    *f = nullptr;
    *d = nullptr;
    *p = pos;
    *c = pos;
    return S_OK;
  }
  STDMETHODIMP Scroll(SIZE) override { return E_NOTIMPL; }
  STDMETHODIMP OnUIDeactivate(BOOL) override { return S_OK; }
  STDMETHODIMP OnInPlaceDeactivate() override { return S_OK; }
  STDMETHODIMP DiscardUndoState() override { return S_OK; }
  STDMETHODIMP DeactivateAndUndo() override { return S_OK; }
  // The control asks for another size (the toolbar chooses its own height): grant it.
  STDMETHODIMP OnPosRectChange(LPCRECT r) override {
    if (!r) return E_POINTER;
    pos = *r;
    if (inplace) inplace->SetObjectRects(&pos, &pos);
    return S_OK;
  }
  // IOleControlSite
  STDMETHODIMP OnControlInfoChanged() override { return S_OK; }
  STDMETHODIMP LockInPlaceActive(BOOL) override { return S_OK; }
  STDMETHODIMP GetExtendedControl(IDispatch** d) override { *d = nullptr; return E_NOTIMPL; }
  STDMETHODIMP TransformCoords(POINTL*, POINTF*, DWORD) override { return E_NOTIMPL; }
  STDMETHODIMP TranslateAccelerator(MSG*, DWORD) override { return S_FALSE; }
  STDMETHODIMP OnFocus(BOOL) override { return S_OK; }
  STDMETHODIMP ShowPropertyFrame() override { return E_NOTIMPL; }
  // IDispatch: the ambient properties (UserMode only; the rest take their defaults)
  STDMETHODIMP GetTypeInfoCount(UINT* n) override { *n = 0; return S_OK; }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
  STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* r, EXCEPINFO*, UINT*) override {
    if (!r) return E_POINTER;
    VariantInit(r);
    if (id == DISPID_AMBIENT_USERMODE) {
      V_VT(r) = VT_BOOL;
      V_BOOL(r) = user_mode ? VARIANT_TRUE : VARIANT_FALSE;
      return S_OK;
    }
    return DISP_E_MEMBERNOTFOUND;
  }
};

IDispatch* CreateByProgId(const wchar_t* progid) {
  CLSID clsid;
  IDispatch* d = nullptr;
  if (SUCCEEDED(CLSIDFromProgID(progid, &clsid)))
    CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, reinterpret_cast<void**>(&d));
  return d;
}

// The buttons, as a developer types them into the toolbar's Buttons page.
struct ButtonItem {
  const wchar_t* key;
  const wchar_t* tip;
  long style;  // 0 button, 1 check, 2 separator, 3 placeholder
  bool value;
};
const ButtonItem kButtons[] = {
    {L"New", L"New document", 0, false}, {L"Open", L"Open a document", 0, false},
    {L"Save", L"Save the document", 0, false}, {L"", L"", 2, false},
    {L"Bold", L"Bold text", 1, true}, {L"", L"", 2, false},
    {L"Help", L"About this demo", 0, false},
};
constexpr int kButtonCount = sizeof kButtons / sizeof kButtons[0];

// Customize(True, count, keys, tips, styles, enabled, values, widths) by name, with
// 1-based arrays passed by reference.
HRESULT CustomizeButtons(IDispatch* d) {
  short count = kButtonCount;
  auto vec = [](VARTYPE vt) { return SafeArrayCreateVector(vt, 1, kButtonCount); };
  SAFEARRAY *key = vec(VT_BSTR), *tip = vec(VT_BSTR), *style = vec(VT_I4), *enabled = vec(VT_BOOL),
            *value = vec(VT_BOOL), *width = vec(VT_I2);
  for (LONG i = 1; i <= kButtonCount; ++i) {
    const ButtonItem& b = kButtons[i - 1];
    BSTR k = SysAllocString(b.key), t = SysAllocString(b.tip);
    SafeArrayPutElement(key, &i, k);
    SafeArrayPutElement(tip, &i, t);
    SysFreeString(k);
    SysFreeString(t);
    LONG s = b.style;
    SafeArrayPutElement(style, &i, &s);
    VARIANT_BOOL e = VARIANT_TRUE, v = b.value ? VARIANT_TRUE : VARIANT_FALSE;
    SafeArrayPutElement(enabled, &i, &e);
    SafeArrayPutElement(value, &i, &v);
    SHORT w = 1;
    SafeArrayPutElement(width, &i, &w);
  }
  // VRef variants do not own what they point at: Invoke's VariantClear leaves them alone.
  const HRESULT hr = Invoke(d, L"Customize", DISPATCH_METHOD,
                            {VBool(true), VRef(VT_I2, &count), VRef(VT_ARRAY | VT_BSTR, &key),
                             VRef(VT_ARRAY | VT_BSTR, &tip), VRef(VT_ARRAY | VT_I4, &style),
                             VRef(VT_ARRAY | VT_BOOL, &enabled), VRef(VT_ARRAY | VT_BOOL, &value),
                             VRef(VT_ARRAY | VT_I2, &width)});
  for (SAFEARRAY* sa : {key, tip, style, enabled, value, width}) SafeArrayDestroy(sa);
  return hr;
}

// The toolbar at design time: its image strip and buttons, saved into bag.
bool DesignToolbar(Bag& bag) {
  Site design;
  design.user_mode = false;
  IDispatch* d = CreateByProgId(L"KorvelUI99.KorvelToolbar");
  Say(d != nullptr, "KorvelUI99.KorvelToolbar created by ProgID on a design-time site");
  if (!d) return false;
  IOleObject* ole = nullptr;
  d->QueryInterface(IID_IOleObject, reinterpret_cast<void**>(&ole));
  if (ole) ole->SetClientSite(&design);
  IPersistPropertyBag* persist = nullptr;
  d->QueryInterface(IID_IPersistPropertyBag, reinterpret_cast<void**>(&persist));
  if (persist) persist->InitNew();
  bool ok = persist != nullptr;
  IPictureDisp* strip = MakeStrip();
  Say(strip != nullptr, "an image strip of five 16 x 16 images on magenta (OleCreatePictureIndirect)");
  ok = ok && strip && SetProp(d, "Toolbar", L"Picture", VDisp(strip), DISPATCH_PROPERTYPUTREF);
  if (strip) strip->Release();
  const HRESULT hr = CustomizeButtons(d);
  Say(SUCCEEDED(hr), "Toolbar.Customize by name: New, Open, Save, |, Bold (checked), |, Help", hr);
  ok = ok && SUCCEEDED(hr);
  const HRESULT saved = persist ? persist->Save(&bag, TRUE, TRUE) : E_NOINTERFACE;
  Say(SUCCEEDED(saved), "the design-time toolbar saved into a property bag", saved);
  ok = ok && SUCCEEDED(saved);
  if (persist) persist->Release();
  if (ole) {
    ole->Close(OLECLOSE_NOSAVE);
    ole->SetClientSite(nullptr);
    ole->Release();
  }
  d->Release();
  return ok;
}

struct Placed {
  IDispatch* dispatch = nullptr;
  IOleObject* ole = nullptr;
};

// The toolbar at run time: loaded from bag on a site of the form, activated in place.
Placed RunToolbar(Site& site, Bag& bag) {
  Placed p;
  p.dispatch = CreateByProgId(L"KorvelUI99.KorvelToolbar");
  if (!p.dispatch) {
    Say(false, "KorvelUI99.KorvelToolbar created at run time");
    return p;
  }
  p.dispatch->QueryInterface(IID_IOleObject, reinterpret_cast<void**>(&p.ole));
  if (p.ole) p.ole->SetClientSite(&site);
  IPersistPropertyBag* persist = nullptr;
  HRESULT hr = p.dispatch->QueryInterface(IID_IPersistPropertyBag, reinterpret_cast<void**>(&persist));
  if (persist) {
    hr = persist->Load(&bag, nullptr);
    persist->Release();
  }
  Say(SUCCEEDED(hr), "the toolbar loaded from the bag at run time", hr);
  p.dispatch->QueryInterface(IID_IOleInPlaceObject, reinterpret_cast<void**>(&site.inplace));
  hr = p.ole ? p.ole->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, &site, 0, site.window, &site.pos) : E_NOINTERFACE;
  Say(SUCCEEDED(hr), "the toolbar activated in place across the top of the form", hr);
  return p;
}

// ---- the platform's ATL container for the other controls ----

using AtlAxWinInitFn = BOOL(WINAPI*)();
using AtlAxCreateControlFn = HRESULT(WINAPI*)(LPCOLESTR, HWND, IStream*, IUnknown**);
using AtlAxGetControlFn = HRESULT(WINAPI*)(HWND, IUnknown**);

template <class F>
F Proc(HMODULE module, const char* name) {
  return module ? reinterpret_cast<F>(reinterpret_cast<void*>(GetProcAddress(module, name))) : nullptr;
}

struct Atl {
  AtlAxCreateControlFn create = nullptr;
  AtlAxGetControlFn get_control = nullptr;
};

struct Hosted {
  HWND holder = nullptr;
  IUnknown* container = nullptr;
  IDispatch* dispatch = nullptr;
};

Hosted Host(const Atl& atl, HWND form, const wchar_t* progid, int x, int y, int w, int h) {
  Hosted hosted;
  hosted.holder = CreateWindowExW(0, L"STATIC", L"", WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN, x, y, w, h, form,
                                  nullptr, GetModuleHandleW(nullptr), nullptr);
  HRESULT hr = atl.create(progid, hosted.holder, nullptr, &hosted.container);
  IUnknown* control = nullptr;
  if (SUCCEEDED(hr)) hr = atl.get_control(hosted.holder, &control);
  if (control) {
    hr = control->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&hosted.dispatch));
    control->Release();
  }
  char what[160];
  std::snprintf(what, sizeof what, "%ls created by ProgID in the ATL container at %d,%d %d x %d", progid, x, y, w, h);
  Say(hosted.dispatch != nullptr, what, hr);
  return hosted;
}

void Unhost(Hosted& h) {
  if (h.dispatch) {
    IOleObject* ole = nullptr;
    if (SUCCEEDED(h.dispatch->QueryInterface(IID_IOleObject, reinterpret_cast<void**>(&ole)))) {
      ole->Close(OLECLOSE_NOSAVE);
      ole->Release();
    }
    h.dispatch->Release();
  }
  if (h.container) h.container->Release();
  if (h.holder) DestroyWindow(h.holder);
  h = Hosted{};
}

// ---- the form ----

void Pump(int ms) {
  const DWORD end = GetTickCount() + static_cast<DWORD>(ms);
  MSG msg;
  do {
    while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
      TranslateMessage(&msg);
      DispatchMessageW(&msg);
    }
    Sleep(10);
  } while (static_cast<LONG>(GetTickCount() - end) < 0);
}

HWND MakeLabel(HWND form, const wchar_t* text, int x, int y, int w, int h) {
  HWND label = CreateWindowExW(0, L"STATIC", text, WS_CHILD | WS_VISIBLE | SS_LEFT, x, y, w, h, form, nullptr,
                               GetModuleHandleW(nullptr), nullptr);
  SendMessageW(label, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)), FALSE);
  return label;
}

// The classic grey for the duration of the demo (the controls draw in the system
// colours); the old colours come back at the end.
class ClassicColors {
 public:
  ClassicColors() {
    for (int i = 0; i < kCount; ++i) old_[i] = GetSysColor(kIndex[i]);
    SetSysColors(kCount, kIndex, kClassic);
  }
  ~ClassicColors() { SetSysColors(kCount, kIndex, old_); }

 private:
  static constexpr int kCount = 5;
  static constexpr int kIndex[kCount] = {COLOR_BTNFACE, COLOR_BTNSHADOW, COLOR_BTNHIGHLIGHT, COLOR_3DDKSHADOW,
                                         COLOR_3DLIGHT};
  static constexpr COLORREF kClassic[kCount] = {RGB(192, 192, 192), RGB(128, 128, 128), RGB(255, 255, 255),
                                                RGB(0, 0, 0), RGB(223, 223, 223)};
  COLORREF old_[kCount]{};
};

// ---- the About box: found, captured and closed from a timer while it is modal ----

struct AboutWatch {
  HWND form = nullptr;
  std::wstring path;
  int tries = 0;
  bool captured = false;
  bool closed = false;
  std::wstring caption;
  int width = 0, height = 0;
};
AboutWatch about_watch;

BOOL CALLBACK FindAbout(HWND w, LPARAM p) {
  if (w != about_watch.form && IsWindowVisible(w) && (GetWindowLongW(w, GWL_STYLE) & WS_CAPTION) == WS_CAPTION) {
    *reinterpret_cast<HWND*>(p) = w;
    return FALSE;
  }
  return TRUE;
}

void CALLBACK AboutTimer(HWND, UINT, UINT_PTR id, DWORD) {
  ++about_watch.tries;
  HWND about = nullptr;
  EnumThreadWindows(GetCurrentThreadId(), FindAbout, reinterpret_cast<LPARAM>(&about));
  if (!about) {
    if (about_watch.tries > 40) KillTimer(nullptr, id);  // the watchdog ends the program
    return;
  }
  KillTimer(nullptr, id);
  RedrawWindow(about, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
  Sleep(100);
  wchar_t text[128] = {};
  GetWindowTextW(about, text, 128);
  about_watch.caption = text;
  // Its client area: without a window manager nothing draws the frame of a
  // top-level window on the virtual display.
  RECT client{};
  GetClientRect(about, &client);
  about_watch.width = client.right;
  about_watch.height = client.bottom;
  HDC dc = GetDC(about);
  Picture pic = Capture(dc, 0, 0, about_watch.width, about_watch.height);
  ReleaseDC(about, dc);
  about_watch.captured = Save(pic, about_watch.path);
  // Closed as the user closes it: the window's close box.
  about_watch.closed = PostMessageW(about, WM_CLOSE, 0, 0) != FALSE;
}

DWORD WINAPI Watchdog(void*) {
  Sleep(60000);
  std::printf("FAILED: the demo did not finish within 60 seconds\n");
  std::fflush(stdout);
  ExitProcess(3);
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  if (argc < 2) {
    std::printf("usage: korvel_demo <form picture .bmp|.png> [<About picture>]\n");
    return 2;
  }
  const std::wstring form_path = argv[1];
  std::wstring about_path;
  if (argc > 2) {
    about_path = argv[2];
  } else {
    const size_t dot = form_path.find_last_of(L'.');
    about_path = dot == std::wstring::npos ? form_path + L"-about" : form_path.substr(0, dot) + L"-about" + form_path.substr(dot);
  }
  CloseHandle(CreateThread(nullptr, 0, Watchdog, nullptr, 0, nullptr));

  HRESULT hr = OleInitialize(nullptr);
  Say(SUCCEEDED(hr), "OLE initialised (single-threaded apartment)", hr);
  ClassicColors classic;

  HMODULE atl_dll = LoadLibraryW(L"atl.dll");
  auto init = Proc<AtlAxWinInitFn>(atl_dll, "AtlAxWinInit");
  Atl atl{Proc<AtlAxCreateControlFn>(atl_dll, "AtlAxCreateControl"), Proc<AtlAxGetControlFn>(atl_dll, "AtlAxGetControl")};
  const bool have_atl = init && atl.create && atl.get_control && init();
  Say(have_atl, "the platform's ATL container (atl.dll) is there");

  // The form: 420 x 230 of client area in the button-face grey.
  WNDCLASSW wc{};
  wc.lpfnWndProc = DefWindowProcW;
  wc.hInstance = GetModuleHandleW(nullptr);
  wc.hCursor = LoadCursorW(nullptr, MAKEINTRESOURCEW(32512));  // the arrow
  wc.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
  wc.lpszClassName = L"KorvelDemoForm";
  RegisterClassW(&wc);
  const DWORD style = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX | WS_CLIPCHILDREN;
  constexpr int kClientW = 420, kClientH = 230;
  RECT frame{0, 0, kClientW, kClientH};
  AdjustWindowRectEx(&frame, style, FALSE, 0);
  HWND form = CreateWindowExW(0, wc.lpszClassName, L"KorvelUI99 demo", style, 40, 40, frame.right - frame.left,
                              frame.bottom - frame.top, nullptr, nullptr, wc.hInstance, nullptr);
  Say(form != nullptr, "the form: a top-level window, 420 x 230 client area");
  if (!form) return 1;
  ShowWindow(form, SW_SHOW);
  UpdateWindow(form);
  Pump(100);
  about_watch.form = form;

  // The toolbar: designed, saved, then loaded at run time across the top.
  Bag bag;
  Placed toolbar;
  Site toolbar_site;
  toolbar_site.window = form;
  toolbar_site.pos = RECT{0, 0, kClientW, 28};
  if (DesignToolbar(bag)) toolbar = RunToolbar(toolbar_site, bag);

  // The other controls, hosted by ATL, their properties set by name.
  std::vector<Hosted> hosted;
  HWND labels[2] = {};
  if (have_atl) {
    Hosted link = Host(atl, form, L"KorvelUI99.KorvelLink", 16, 44, 220, 20);
    if (link.dispatch) {
      SetProp(link.dispatch, "Link", L"Caption", VStr(L"Visit the KorvelUI99 home page"));
      SetProp(link.dispatch, "Link", L"URL", VStr(L"http://www.example.com/"));
    }
    hosted.push_back(link);
    Hosted divider = Host(atl, form, L"KorvelUI99.KorvelDivider", 16, 76, 388, 24);
    if (divider.dispatch) SetProp(divider.dispatch, "Divider", L"Caption", VStr(L"Progress"));
    hosted.push_back(divider);
    labels[0] = MakeLabel(form, L"Copying files:", 16, 112, 80, 16);
    Hosted bar = Host(atl, form, L"KorvelUI99.KorvelBar", 100, 110, 304, 18);
    if (bar.dispatch) SetProp(bar.dispatch, "Bar", L"Value", VI4(60));
    hosted.push_back(bar);
    Hosted divider2 = Host(atl, form, L"KorvelUI99.KorvelDivider", 16, 144, 388, 24);
    if (divider2.dispatch) SetProp(divider2.dispatch, "Divider", L"Caption", VStr(L"Volume"));
    hosted.push_back(divider2);
    labels[1] = MakeLabel(form, L"Level:", 16, 180, 80, 16);
    Hosted slider = Host(atl, form, L"KorvelUI99.KorvelMiniSlider", 100, 182, 200, 12);
    if (slider.dispatch) {
      SetProp(slider.dispatch, "MiniSlider", L"Max", VI4(100));
      SetProp(slider.dispatch, "MiniSlider", L"Value", VI4(35));
    }
    hosted.push_back(slider);
  }

  // Let everything paint, then take the picture of the client area.
  Pump(300);
  RedrawWindow(form, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
  Pump(500);
  {
    RECT client{};
    GetClientRect(form, &client);
    HDC dc = GetDC(form);
    Picture pic = Capture(dc, 0, 0, client.right, client.bottom);
    ReleaseDC(form, dc);
    const bool saved = Save(pic, form_path);
    char what[400];
    std::snprintf(what, sizeof what, "the form's client area (%d x %d) saved to %ls", pic.width, pic.height,
                  form_path.c_str());
    Say(saved, what);
  }

  // The About box, shown by the link as a developer's Help menu would.
  if (!hosted.empty() && hosted[0].dispatch) {
    about_watch.path = about_path;
    SetTimer(nullptr, 0, 250, AboutTimer);
    hr = Invoke(hosted[0].dispatch, L"AboutBox", DISPATCH_METHOD);
    Say(SUCCEEDED(hr), "Link.AboutBox shown (modal) and returned", hr);
    char what[400];
    std::snprintf(what, sizeof what, "the About box \"%ls\" (client area %d x %d) saved to %ls",
                  about_watch.caption.c_str(), about_watch.width, about_watch.height, about_path.c_str());
    Say(about_watch.captured, what);
    Say(about_watch.closed, "the About box closed with WM_CLOSE");
  } else {
    Say(false, "no control to show the About box");
  }

  for (auto& h : hosted) Unhost(h);
  if (toolbar.ole) {
    toolbar.ole->Close(OLECLOSE_NOSAVE);
    toolbar.ole->SetClientSite(nullptr);
    toolbar.ole->Release();
  }
  if (toolbar_site.inplace) toolbar_site.inplace->Release();
  if (toolbar.dispatch) toolbar.dispatch->Release();
  for (HWND l : labels)
    if (l) DestroyWindow(l);
  DestroyWindow(form);
  OleUninitialize();
  std::printf("korvel_demo: %s\n", failures == 0 ? "done" : "FAILED");
  return failures == 0 ? 0 : 1;
}
