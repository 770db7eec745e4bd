#include "activex/ole_variant.h"

#include <cstring>

#include "framework/errors.h"

namespace korvel::activex {

std::wstring Widen(const std::string& utf8) {
  if (utf8.empty()) return {};
  int n = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), nullptr, 0);
  std::wstring w(static_cast<size_t>(n), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), w.data(), n);
  return w;
}

std::string Narrow(const wchar_t* utf16, int length) {
  if (!utf16) return {};
  if (length < 0) length = static_cast<int>(wcslen(utf16));
  if (length == 0) return {};
  int n = WideCharToMultiByte(CP_UTF8, 0, utf16, length, nullptr, 0, nullptr, nullptr);
  std::string s(static_cast<size_t>(n), '\0');
  WideCharToMultiByte(CP_UTF8, 0, utf16, length, s.data(), n, nullptr, nullptr);
  return s;
}

BSTR AllocBstr(const std::string& utf8) {
  std::wstring w = Widen(utf8);
  return SysAllocStringLen(w.data(), static_cast<UINT>(w.size()));
}

namespace {

void CopyFontToOle(const Font& f, IFont* ole) {
  BSTR name = AllocBstr(f.Name());
  ole->put_Name(name);
  SysFreeString(name);
  CY size;
  size.int64 = static_cast<LONGLONG>(f.Size() * 10000.0 + 0.5);
  ole->put_Size(size);
  ole->put_Weight(f.Weight());
  ole->put_Italic(f.Italic());
  ole->put_Underline(f.Underline());
  ole->put_Strikethrough(f.Strikethrough());
  ole->put_Charset(f.Charset());
}

void CopyFontFromOle(IFont* ole, Font& f) {
  BSTR name = nullptr;
  if (SUCCEEDED(ole->get_Name(&name)) && name) f.SetName(Narrow(name, static_cast<int>(SysStringLen(name))));
  SysFreeString(name);
  CY size{};
  if (SUCCEEDED(ole->get_Size(&size))) f.SetSize(static_cast<double>(size.int64) / 10000.0);
  SHORT weight = 400, charset = 0;
  if (SUCCEEDED(ole->get_Weight(&weight))) f.SetWeight(weight);
  if (SUCCEEDED(ole->get_Charset(&charset))) f.SetCharset(charset);
  BOOL b = FALSE;
  if (SUCCEEDED(ole->get_Italic(&b))) f.SetItalic(b != FALSE);
  if (SUCCEEDED(ole->get_Underline(&b))) f.SetUnderline(b != FALSE);
  if (SUCCEEDED(ole->get_Strikethrough(&b))) f.SetStrikethrough(b != FALSE);
}

// A bitmap picture that cannot be saved as a file: its pixels, read from the handle.
PictureRef PictureOfBitmap(IPicture* ole) {
  SHORT type = PICTYPE_NONE;
  OLE_HANDLE handle = 0;
  if (FAILED(ole->get_Type(&type)) || type != PICTYPE_BITMAP || FAILED(ole->get_Handle(&handle)) || !handle)
    return nullptr;
  HBITMAP bmp = reinterpret_cast<HBITMAP>(static_cast<UINT_PTR>(handle));
  BITMAP info{};
  if (!GetObjectW(bmp, sizeof info, &info) || info.bmWidth <= 0 || info.bmHeight <= 0) return nullptr;
  BITMAPINFO bi{};
  bi.bmiHeader.biSize = sizeof bi.bmiHeader;
  bi.bmiHeader.biWidth = info.bmWidth;
  bi.bmiHeader.biHeight = -info.bmHeight;  // top-down
  bi.bmiHeader.biPlanes = 1;
  bi.bmiHeader.biBitCount = 32;
  bi.bmiHeader.biCompression = BI_RGB;
  std::vector<DWORD> bits(static_cast<size_t>(info.bmWidth) * static_cast<size_t>(info.bmHeight));
  HDC dc = GetDC(nullptr);
  const int rows = GetDIBits(dc, bmp, 0, static_cast<UINT>(info.bmHeight), bits.data(), &bi, DIB_RGB_COLORS);
  ReleaseDC(nullptr, dc);
  if (rows != info.bmHeight) return nullptr;
  Image image(info.bmWidth, info.bmHeight);
  for (size_t i = 0; i < bits.size(); ++i) {
    const DWORD d = bits[i];  // 0x00RRGGBB in memory order B, G, R
    image.pixels[i] = ((d >> 16) & 0xFF) | (d & 0xFF00) | ((d & 0xFF) << 16);
  }
  return Picture::FromImage(std::move(image));
}

}  // namespace

ObjectBridge::~ObjectBridge() {
  for (auto& p : fonts_) p.second->Release();
  for (auto& p : pictures_) p.second->Release();
}

void ObjectBridge::Prune() {
  for (auto it = fonts_.begin(); it != fonts_.end();) {
    if (it->first.expired()) {
      it->second->Release();
      it = fonts_.erase(it);
    } else {
      ++it;
    }
  }
  for (auto it = pictures_.begin(); it != pictures_.end();) {
    if (it->first.expired()) {
      it->second->Release();
      it = pictures_.erase(it);
    } else {
      ++it;
    }
  }
}

FontRef ObjectBridge::FontFrom(IDispatch* disp) {
  if (!disp) return nullptr;
  IFont* ole = nullptr;
  if (FAILED(disp->QueryInterface(IID_IFont, reinterpret_cast<void**>(&ole))) || !ole)
    throw RuntimeError(kErrTypeMismatch);
  Prune();
  for (auto& p : fonts_) {
    IUnknown* a = nullptr;
    IUnknown* b = nullptr;
    p.second->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(&a));
    disp->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(&b));
    bool same = a && a == b;
    if (a) a->Release();
    if (b) b->Release();
    if (same) {
      FontRef f = p.first.lock();
      CopyFontFromOle(ole, *f);
      ole->Release();
      return f;
    }
  }
  auto f = std::make_shared<Font>();
  CopyFontFromOle(ole, *f);
  ole->Release();
  disp->AddRef();
  fonts_.emplace_back(f, disp);
  return f;
}

IDispatch* ObjectBridge::ToOle(const FontRef& font) {
  if (!font) return nullptr;
  Prune();
  for (auto& p : fonts_) {
    if (p.first.lock() == font) {
      IFont* ole = nullptr;
      if (SUCCEEDED(p.second->QueryInterface(IID_IFont, reinterpret_cast<void**>(&ole)))) {
        CopyFontToOle(*font, ole);
        ole->Release();
      }
      p.second->AddRef();
      return p.second;
    }
  }
  FONTDESC fd{};
  fd.cbSizeofstruct = sizeof fd;
  std::wstring name = Widen(font->Name());
  fd.lpstrName = name.data();
  fd.cySize.int64 = static_cast<LONGLONG>(font->Size() * 10000.0 + 0.5);
  fd.sWeight = font->Weight();
  fd.sCharset = font->Charset();
  fd.fItalic = font->Italic();
  fd.fUnderline = font->Underline();
  fd.fStrikethrough = font->Strikethrough();
  IDispatch* disp = nullptr;
  if (FAILED(OleCreateFontIndirect(&fd, IID_IDispatch, reinterpret_cast<void**>(&disp))) || !disp)
    throw RuntimeError(kErrTypeMismatch);
  disp->AddRef();
  fonts_.emplace_back(font, disp);
  return disp;
}

PictureRef ObjectBridge::PictureFrom(IDispatch* disp) {
  if (!disp) return nullptr;
  IPicture* ole = nullptr;
  if (FAILED(disp->QueryInterface(IID_IPicture, reinterpret_cast<void**>(&ole))) || !ole)
    throw RuntimeError(kErrTypeMismatch);
  Prune();
  for (auto& p : pictures_) {
    IUnknown* a = nullptr;
    IUnknown* b = nullptr;
    p.second->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(&a));
    disp->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(&b));
    bool same = a && a == b;
    if (a) a->Release();
    if (b) b->Release();
    if (same) {
      ole->Release();
      return p.first.lock();
    }
  }
  // The picture's file bytes, read back into the core's picture.
  PictureRef result;
  IStream* stream = nullptr;
  if (SUCCEEDED(CreateStreamOnHGlobal(nullptr, TRUE, &stream))) {
    LONG size = 0;
    if (SUCCEEDED(ole->SaveAsFile(stream, TRUE, &size)) && size > 0) {
      HGLOBAL mem = nullptr;
      GetHGlobalFromStream(stream, &mem);
      const auto* bytes = static_cast<const std::uint8_t*>(GlobalLock(mem));
      if (bytes) {
        result = Picture::FromBytes(std::vector<std::uint8_t>(bytes, bytes + size));
        GlobalUnlock(mem);
      }
    }
    stream->Release();
  }
  if (!result) result = PictureOfBitmap(ole);
  ole->Release();
  if (!result) throw RuntimeError(kErrTypeMismatch);
  disp->AddRef();
  pictures_.emplace_back(result, disp);
  return result;
}

IDispatch* ObjectBridge::ToOle(const PictureRef& picture) {
  if (!picture) return nullptr;
  Prune();
  for (auto& p : pictures_) {
    if (p.first.lock() == picture) {
      p.second->AddRef();
      return p.second;
    }
  }
  const auto& bytes = picture->FileBytes();
  IDispatch* disp = nullptr;
  HGLOBAL mem = GlobalAlloc(GMEM_MOVEABLE, bytes.size() ? bytes.size() : 1);
  if (mem) {
    void* dst = GlobalLock(mem);
    if (dst && !bytes.empty()) std::memcpy(dst, bytes.data(), bytes.size());
    GlobalUnlock(mem);
    IStream* stream = nullptr;
    if (SUCCEEDED(CreateStreamOnHGlobal(mem, TRUE, &stream))) {
      OleLoadPicture(stream, static_cast<LONG>(bytes.size()), FALSE, IID_IPictureDisp, reinterpret_cast<void**>(&disp));
      stream->Release();
    } else {
      GlobalFree(mem);
    }
  }
  if (!disp) throw RuntimeError(kErrTypeMismatch);
  disp->AddRef();
  pictures_.emplace_back(picture, disp);
  return disp;
}

Variant ObjectBridge::FromOle(const VARIANT& in) {
  VARIANT v;
  VariantInit(&v);
  if (FAILED(VariantCopyInd(&v, const_cast<VARIANT*>(&in)))) throw RuntimeError(kErrTypeMismatch);
  struct Guard {
    VARIANT* v;
    ~Guard() { VariantClear(v); }
  } guard{&v};
  if (V_VT(&v) & VT_ARRAY) {
    SAFEARRAY* sa = V_ARRAY(&v);
    if (!sa) return Variant::Array({}, 1);  // an array not yet dimensioned
    if (SafeArrayGetDim(sa) != 1) throw RuntimeError(kErrTypeMismatch);
    LONG lo = 0, hi = -1;
    SafeArrayGetLBound(sa, 1, &lo);
    SafeArrayGetUBound(sa, 1, &hi);
    VARTYPE elem = V_VT(&v) & VT_TYPEMASK;
    std::vector<Variant> items;
    for (LONG i = lo; i <= hi; ++i) {
      VARIANT e;
      VariantInit(&e);
      if (elem == VT_VARIANT) {
        SafeArrayGetElement(sa, &i, &e);
      } else {
        // An element of a typed array, read through a by-reference variant.
        void* p = nullptr;
        SafeArrayPtrOfIndex(sa, &i, &p);
        VARIANT ref;
        VariantInit(&ref);
        V_VT(&ref) = static_cast<VARTYPE>(elem | VT_BYREF);
        V_BYREF(&ref) = p;
        VariantCopyInd(&e, &ref);
      }
      try {
        items.push_back(FromOle(e));
      } catch (...) {
        VariantClear(&e);
        throw;
      }
      VariantClear(&e);
    }
    return Variant::Array(std::move(items), lo);
  }
  switch (V_VT(&v)) {
    case VT_EMPTY: return Variant();
    case VT_NULL: throw RuntimeError(94, "Invalid use of Null");
    case VT_I1: return Variant::Integer(V_I1(&v));
    case VT_UI1: return Variant::Integer(V_UI1(&v));
    case VT_I2: return Variant::Integer(V_I2(&v));
    case VT_UI2: return Variant::Long(V_UI2(&v));
    case VT_I4: return Variant::Long(V_I4(&v));
    case VT_INT: return Variant::Long(V_INT(&v));
    case VT_UI4: return Variant::Color(V_UI4(&v));
    case VT_UINT: return Variant::Color(V_UINT(&v));
    case VT_R4: return Variant::Single(V_R4(&v));
    case VT_R8: return Variant::Double(V_R8(&v));
    case VT_BOOL: return Variant::Bool(V_BOOL(&v) != VARIANT_FALSE);
    case VT_BSTR: return Variant::String(Narrow(V_BSTR(&v), static_cast<int>(SysStringLen(V_BSTR(&v)))));
    case VT_DISPATCH:
    case VT_UNKNOWN: {
      IUnknown* unk = V_UNKNOWN(&v);
      if (!unk) return Variant::Object(FontRef());  // Nothing
      IDispatch* disp = nullptr;
      if (FAILED(unk->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&disp))) || !disp)
        throw RuntimeError(kErrTypeMismatch);
      IUnknown* probe = nullptr;
      Variant result;
      if (SUCCEEDED(unk->QueryInterface(IID_IFont, reinterpret_cast<void**>(&probe)))) {
        probe->Release();
        result = Variant::Object(FontFrom(disp));
      } else if (SUCCEEDED(unk->QueryInterface(IID_IPicture, reinterpret_cast<void**>(&probe)))) {
        probe->Release();
        result = Variant::Object(PictureFrom(disp));
      } else {
        disp->Release();
        throw RuntimeError(kErrTypeMismatch);
      }
      disp->Release();
      return result;
    }
    default: {
      // Currency, dates, decimals: as a double where the platform can convert.
      VARIANT d;
      VariantInit(&d);
      if (FAILED(VariantChangeType(&d, &v, 0, VT_R8))) throw RuntimeError(kErrTypeMismatch);
      return Variant::Double(V_R8(&d));
    }
  }
}

void ObjectBridge::ToOle(const Variant& v, VARIANT* out, VARTYPE array_elem_vt) {
  VariantInit(out);
  switch (v.Type()) {
    case VarType::Empty: return;
    case VarType::Integer: V_VT(out) = VT_I2; V_I2(out) = v.ToInteger(); return;
    case VarType::Long: V_VT(out) = VT_I4; V_I4(out) = v.ToLong(); return;
    case VarType::Single: V_VT(out) = VT_R4; V_R4(out) = v.ToSingle(); return;
    case VarType::Double: V_VT(out) = VT_R8; V_R8(out) = v.ToDouble(); return;
    case VarType::Boolean: V_VT(out) = VT_BOOL; V_BOOL(out) = v.ToBool() ? VARIANT_TRUE : VARIANT_FALSE; return;
    case VarType::String: V_VT(out) = VT_BSTR; V_BSTR(out) = AllocBstr(v.ToString()); return;
    case VarType::Font: V_VT(out) = VT_DISPATCH; V_DISPATCH(out) = ToOle(v.ToFont()); return;
    case VarType::Picture: V_VT(out) = VT_DISPATCH; V_DISPATCH(out) = ToOle(v.ToPicture()); return;
    case VarType::Array: {
      const VariantArray& a = v.ToArray();
      VARTYPE elem = array_elem_vt ? array_elem_vt : VT_VARIANT;
      SAFEARRAY* sa = SafeArrayCreateVector(elem, a.lower_bound, static_cast<ULONG>(a.items.size()));
      if (!sa) throw RuntimeError(kErrTypeMismatch);
      for (size_t i = 0; i < a.items.size(); ++i) {
        VARIANT e, c;
        VariantInit(&c);
        ToOle(a.items[i], &e);
        LONG index = a.lower_bound + static_cast<LONG>(i);
        HRESULT hr = elem == VT_VARIANT ? VariantCopy(&c, &e) : VariantChangeType(&c, &e, 0, elem);
        VariantClear(&e);
        if (FAILED(hr)) {
          SafeArrayDestroy(sa);
          throw RuntimeError(kErrTypeMismatch);
        }
        if (elem == VT_VARIANT)
          SafeArrayPutElement(sa, &index, &c);
        else if (elem == VT_BSTR)
          SafeArrayPutElement(sa, &index, V_BSTR(&c));
        else if (elem == VT_DISPATCH || elem == VT_UNKNOWN)
          SafeArrayPutElement(sa, &index, V_UNKNOWN(&c));
        else
          SafeArrayPutElement(sa, &index, &c.bVal);  // the value sits at the start of the union
        VariantClear(&c);
      }
      V_VT(out) = static_cast<VARTYPE>(VT_ARRAY | elem);
      V_ARRAY(out) = sa;
      return;
    }
  }
}

}  // namespace korvel::activex
