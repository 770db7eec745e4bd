// The toolbar through the server: its keyed members (the default member Value with
// its key), the design-time-only properties, Customize with its by-reference count
// and arrays in both directions (IDispatch and the dual vtable), the default font,
// a picture by reference, and persistence of its buttons.
#include "ax_site.h"

using namespace axtest;

namespace {

SAFEARRAY* Strings(std::vector<const wchar_t*> items) {
  SAFEARRAY* sa = SafeArrayCreateVector(VT_BSTR, 1, static_cast<ULONG>(items.size()));
  for (LONG i = 0; i < static_cast<LONG>(items.size()); ++i) {
    LONG at = i + 1;
    BSTR b = SysAllocString(items[static_cast<size_t>(i)]);
    SafeArrayPutElement(sa, &at, b);
    SysFreeString(b);
  }
  return sa;
}

template <class T>
SAFEARRAY* Values(VARTYPE vt, std::vector<T> items) {
  SAFEARRAY* sa = SafeArrayCreateVector(vt, 1, static_cast<ULONG>(items.size()));
  for (LONG i = 0; i < static_cast<LONG>(items.size()); ++i) {
    LONG at = i + 1;
    T v = items[static_cast<size_t>(i)];
    SafeArrayPutElement(sa, &at, &v);
  }
  return sa;
}

std::string ArrayText(SAFEARRAY* sa) {
  if (!sa) return "(none)";
  VARTYPE vt = 0;
  SafeArrayGetVartype(sa, &vt);
  LONG lo = 0, hi = -1;
  SafeArrayGetLBound(sa, 1, &lo);
  SafeArrayGetUBound(sa, 1, &hi);
  std::string s = std::to_string(vt) + "[" + std::to_string(lo) + "]";
  for (LONG i = lo; i <= hi; ++i) {
    void* p = nullptr;
    SafeArrayPtrOfIndex(sa, &i, &p);
    VARIANT ref, c;
    VariantInit(&ref);
    VariantInit(&c);
    V_VT(&ref) = static_cast<VARTYPE>(vt | VT_BYREF);
    V_BYREF(&ref) = p;
    VariantChangeType(&c, &ref, 0, VT_BSTR);
    s += " " + (V_VT(&c) == VT_BSTR ? Narrow(V_BSTR(&c)) : std::string("?"));
    VariantClear(&c);
  }
  return s;
}

VARIANT Ref(VARTYPE vt, void* p) {
  VARIANT v;
  VariantInit(&v);
  V_VT(&v) = static_cast<VARTYPE>(vt | VT_BYREF);
  V_BYREF(&v) = p;
  return v;
}

// Invoke with arguments that must not be cleared afterwards (references).
HRESULT Call(IDispatch* d, const wchar_t* name, WORD flags, std::vector<VARIANT> args, VARIANT* result = nullptr) {
  std::vector<VARIANT> rev(args.rbegin(), args.rend());
  DISPID put = DISPID_PROPERTYPUT;
  DISPPARAMS dp{rev.data(), nullptr, static_cast<UINT>(rev.size()), 0};
  if (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) {
    dp.rgdispidNamedArgs = &put;
    dp.cNamedArgs = 1;
  }
  EXCEPINFO ex{};
  UINT err = 0;
  HRESULT hr = d->Invoke(IdOf(d, name), IID_NULL, 0, flags, &dp, result, &ex, &err);
  SysFreeString(ex.bstrSource);
  SysFreeString(ex.bstrDescription);
  SysFreeString(ex.bstrHelpFile);
  return hr;
}

bool KeyedBool(IDispatch* d, const wchar_t* name, const wchar_t* key, bool* out) {
  VARIANT k = VStr(key), r;
  VariantInit(&r);
  HRESULT hr = Call(d, name, DISPATCH_PROPERTYGET, {k}, &r);
  VariantClear(&k);
  bool ok = SUCCEEDED(hr) && V_VT(&r) == VT_BOOL;
  if (ok) *out = V_BOOL(&r) != VARIANT_FALSE;
  VariantClear(&r);
  return ok;
}

}  // namespace

int main() {
  OleInitialize(nullptr);
  Site site;
  site.user_mode = false;  // the toolbar's buttons are set up at design time
  IOleObject* ole = nullptr;
  IDispatch* tb = Place(L"KorvelUI99.KorvelToolbar", site, &ole);
  Check(tb != nullptr, "KorvelToolbar placed on a site at design time");
  if (!tb) return Summary();
  Check(IdOf(tb, L"Value") == 0 && IdOf(tb, L"Customize") == 8 && IdOf(tb, L"GetDefaultFont") == 9 && IdOf(tb, L"ToolTipText") == 6,
        "the toolbar's dispatch ids");
  Check(Join(site.extender.puts) == "Align=1", "a new toolbar aligns itself to the top through the extender (got " +
                                                   Join(site.extender.puts) + ")");
  Check(GetLong(tb, L"BorderStyle") == 3, "a new toolbar has BorderStyle 3");
  Check(Put(tb, L"BorderStyle", VI4(1)) == S_OK && GetLong(tb, L"BorderStyle") == 1, "BorderStyle at design time");

  // Customize(True, ...) sets two buttons.
  short count = 2;
  SAFEARRAY* keys = Strings({L"a", L"b"});
  SAFEARRAY* tips = Strings({L"Tip A", L"Tip B"});
  SAFEARRAY* styles = Values<long>(VT_I4, {0, 1});
  SAFEARRAY* enabled = Values<VARIANT_BOOL>(VT_BOOL, {VARIANT_TRUE, VARIANT_FALSE});
  SAFEARRAY* values = Values<VARIANT_BOOL>(VT_BOOL, {VARIANT_FALSE, VARIANT_TRUE});
  SAFEARRAY* widths = Values<short>(VT_I2, {1, 1});
  HRESULT hr = Call(tb, L"Customize", DISPATCH_METHOD,
                    {VBool(true), Ref(VT_I2, &count), Ref(VT_ARRAY | VT_BSTR, &keys), Ref(VT_ARRAY | VT_BSTR, &tips),
                     Ref(VT_ARRAY | VT_I4, &styles), Ref(VT_ARRAY | VT_BOOL, &enabled), Ref(VT_ARRAY | VT_BOOL, &values),
                     Ref(VT_ARRAY | VT_I2, &widths)});
  Check(hr == S_OK, "Customize(True, 2, ...) through IDispatch (" + Hex(hr) + ")");
  bool b = false;
  Check(KeyedBool(tb, L"Enabled", L"a", &b) && b, "Enabled(\"a\") is True");
  Check(KeyedBool(tb, L"Enabled", L"b", &b) && !b, "Enabled(\"b\") is False");
  Check(KeyedBool(tb, L"Value", L"b", &b) && b, "Value(\"b\") is True");
  {
    VARIANT k = VStr(L"b"), r;
    VariantInit(&r);
    DISPPARAMS dp{&k, nullptr, 1, 0};
    hr = tb->Invoke(DISPID_VALUE, IID_NULL, 0, DISPATCH_PROPERTYGET, &dp, &r, nullptr, nullptr);
    Check(hr == S_OK && V_VT(&r) == VT_BOOL && V_BOOL(&r) == VARIANT_TRUE, "the default member with the key \"b\" reads Value");
    VariantClear(&r);
    VariantClear(&k);
  }
  {
    VARIANT k = VStr(L"b"), r;
    VariantInit(&r);
    hr = Call(tb, L"Style", DISPATCH_PROPERTYGET, {k}, &r);
    Check(hr == S_OK && V_VT(&r) == VT_I4 && V_I4(&r) == 1, "Style(\"b\") is 1 (check)");
    VariantClear(&r);
    VariantClear(&k);
  }
  // Enabled("b") = True: the key and the assigned value.
  hr = Call(tb, L"Enabled", DISPATCH_PROPERTYPUT, {VStr(L"b"), VBool(true)});
  Check(hr == S_OK && KeyedBool(tb, L"Enabled", L"b", &b) && b, "Enabled(\"b\") = True");

  // Customize(False, ...) hands the buttons back through the references.
  short count_out = 0;
  SAFEARRAY *k2 = nullptr, *t2 = nullptr, *s2 = nullptr, *e2 = nullptr, *v2 = nullptr, *w2 = nullptr;
  hr = Call(tb, L"Customize", DISPATCH_METHOD,
            {VBool(false), Ref(VT_I2, &count_out), Ref(VT_ARRAY | VT_BSTR, &k2), Ref(VT_ARRAY | VT_BSTR, &t2),
             Ref(VT_ARRAY | VT_I4, &s2), Ref(VT_ARRAY | VT_BOOL, &e2), Ref(VT_ARRAY | VT_BOOL, &v2), Ref(VT_ARRAY | VT_I2, &w2)});
  Check(hr == S_OK && count_out == 2, "Customize(False) returns the count 2 by reference (got " + std::to_string(count_out) + ")");
  Check(ArrayText(k2) == "8[1] a b", "... the keys: " + ArrayText(k2));
  Check(ArrayText(t2) == "8[1] Tip A Tip B", "... the tool tips: " + ArrayText(t2));
  Check(ArrayText(s2) == "3[1] 0 1", "... the styles: " + ArrayText(s2));
  Check(ArrayText(e2) == "11[1] -1 -1", "... the enabled flags: " + ArrayText(e2));
  Check(ArrayText(v2) == "11[1] 0 -1", "... the values: " + ArrayText(v2));
  Check(ArrayText(w2) == "2[1] 1 1", "... the placeholder widths: " + ArrayText(w2));
  for (SAFEARRAY* sa : {k2, t2, s2, e2, v2, w2})
    if (sa) SafeArrayDestroy(sa);

  // The same through the dual interface's vtable.
  _KorvelToolbar* early = nullptr;
  if (SUCCEEDED(tb->QueryInterface(IID__KorvelToolbar, reinterpret_cast<void**>(&early))) && early) {
    short n = 0;
    SAFEARRAY *a = nullptr, *c = nullptr, *d = nullptr, *e = nullptr, *f = nullptr, *g = nullptr;
    hr = early->Customize(VARIANT_FALSE, &n, &a, &c, &d, &e, &f, &g);
    Check(hr == S_OK && n == 2 && ArrayText(a) == "8[1] a b", "Customize(False) through the vtable: " + ArrayText(a));
    for (SAFEARRAY* sa : {a, c, d, e, f, g})
      if (sa) SafeArrayDestroy(sa);
    BSTR key = SysAllocString(L"b");
    VARIANT_BOOL v = 0;
    Check(early->get_Value(key, &v) == S_OK && v == VARIANT_TRUE, "get_Value(\"b\") through the vtable");
    SysFreeString(key);
    IFontDisp* font = nullptr;
    Check(early->GetDefaultFont(&font) == S_OK && font, "GetDefaultFont through the vtable");
    if (font) font->Release();
    early->Release();
  } else {
    Check(false, "QueryInterface for _KorvelToolbar");
  }

  // A picture by reference (a 32 x 16 bitmap strip).
  {
    HDC screen = GetDC(nullptr);
    HBITMAP bmp = CreateCompatibleBitmap(screen, 32, 16);
    ReleaseDC(nullptr, screen);
    PICTDESC pd{};
    pd.cbSizeofstruct = sizeof pd;
    pd.picType = PICTYPE_BITMAP;
    pd.bmp.hbitmap = bmp;
    IDispatch* pic = nullptr;
    OleCreatePictureIndirect(&pd, IID_IDispatch, TRUE, reinterpret_cast<void**>(&pic));
    Check(pic != nullptr, "a standard picture of a bitmap");
    if (pic) {
      hr = Put(tb, L"Picture", VDisp(pic), DISPATCH_PROPERTYPUTREF);
      Check(hr == S_OK, "Set Picture at design time (" + Hex(hr) + ")");
      CallResult r;
      Get(tb, L"Picture", r);
      IUnknown *x = nullptr, *y = nullptr;
      if (V_VT(&r.value) == VT_DISPATCH && V_DISPATCH(&r.value))
        V_DISPATCH(&r.value)->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(&x));
      pic->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(&y));
      Check(r.hr == S_OK && x && x == y, "Picture reads back the same picture object");
      if (x) x->Release();
      if (y) y->Release();
      pic->Release();
    }
  }

  // Persistence of the buttons.
  Bag bag1, bag2;
  IPersistPropertyBag* p1 = nullptr;
  tb->QueryInterface(IID_IPersistPropertyBag, reinterpret_cast<void**>(&p1));
  Check(p1 && p1->Save(&bag1, TRUE, TRUE) == S_OK, "Save the toolbar into a bag");
  const VARIANT* n = bag1.Find(L"ButtonCount");
  const VARIANT* k = bag1.Find(L"Button2_Key");
  Check(n && k && V_VT(k) == VT_BSTR && std::wstring(V_BSTR(k)) == L"b", "the bag holds ButtonCount and Button2_Key = b: " + bag1.Text());
  IDispatch* tb2 = Create(L"KorvelUI99.KorvelToolbar");
  IPersistPropertyBag* p2 = nullptr;
  if (tb2) tb2->QueryInterface(IID_IPersistPropertyBag, reinterpret_cast<void**>(&p2));
  Check(p2 && p2->Load(&bag1, nullptr) == S_OK && p2->Save(&bag2, TRUE, TRUE) == S_OK && bag1.Text() == bag2.Text(),
        "loaded into a new toolbar and saved again, the bags are equal");
  Check(tb2 && KeyedBool(tb2, L"Value", L"b", &b) && b, "the loaded toolbar's Value(\"b\") is True");

  // At run time the design-time-only properties keep their values, without an error.
  site.user_mode = true;
  IOleControl* oc = nullptr;
  tb->QueryInterface(IID_IOleControl, reinterpret_cast<void**>(&oc));
  if (oc) {
    oc->OnAmbientPropertyChange(DISPID_AMBIENT_USERMODE);
    oc->Release();
  }
  Check(Put(tb, L"BorderStyle", VI4(2)) == S_OK && GetLong(tb, L"BorderStyle") == 1,
        "BorderStyle is not changed at run time, and no error is raised");

  for (IUnknown* u : std::initializer_list<IUnknown*>{p2, tb2, p1})
    if (u) u->Release();
  for (SAFEARRAY* sa : {keys, tips, styles, enabled, values, widths}) SafeArrayDestroy(sa);
  if (ole) {
    ole->SetClientSite(nullptr);
    ole->Release();
  }
  tb->Release();
  OleUninitialize();
  return Summary();
}
