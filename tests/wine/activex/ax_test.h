// Shared helpers of the control server's tests under Wine: checks that count and
// print "N passed, N failed", the server's path, late-bound calls by name, and a
// property bag and an event sink of our own.
#pragma once
#include <cstdio>
#include <cwchar>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include <windows.h>
#include <ocidl.h>
#include <olectl.h>

#include "korvelui99.h"

namespace axtest {

inline int passed = 0, failed = 0;

inline void Check(bool ok, const std::string& what) {
  std::printf("%s: %s\n", ok ? "ok" : "FAILED", what.c_str());
  std::fflush(stdout);
  ok ? ++passed : ++failed;
}

inline int Summary() {
  std::printf("%d passed, %d failed\n", passed, failed);
  return failed == 0 ? 0 : 1;
}

inline std::string Join(const std::vector<std::string>& v) {
  std::string s;
  for (auto& x : v) s += (s.empty() ? "" : " ") + x;
  return s;
}

inline std::string Hex(HRESULT hr) {
  char buf[16];
  std::snprintf(buf, sizeof buf, "0x%08lX", static_cast<unsigned long>(hr));
  return buf;
}

inline std::string Narrow(const std::wstring& w) {
  std::string s;
  for (wchar_t c : w) s += c < 128 ? static_cast<char>(c) : '?';
  return s;
}

// The server's Windows path from the path CMake passes (a Unix one under Wine).
inline std::wstring ServerPath(const char* arg) {
  std::wstring w;
  for (const char* p = arg; *p; ++p) w += *p == '/' ? L'\\' : static_cast<wchar_t>(*p);
  if (arg[0] == '/') w = L"Z:" + w;
  return w;
}

// ---- late binding ----

inline DISPID IdOf(IDispatch* d, const wchar_t* name) {
  DISPID id = DISPID_UNKNOWN;
  LPOLESTR n = const_cast<LPOLESTR>(name);
  d->GetIDsOfNames(IID_NULL, &n, 1, LOCALE_USER_DEFAULT, &id);
  return id;
}

struct CallResult {
  HRESULT hr = E_FAIL;
  VARIANT value{};
  EXCEPINFO excep{};
  UINT arg_err = 0xFFFFFFFF;
  CallResult() { VariantInit(&value); }
  ~CallResult() {
    VariantClear(&value);
    SysFreeString(excep.bstrSource);
    SysFreeString(excep.bstrDescription);
    SysFreeString(excep.bstrHelpFile);
  }
  CallResult(const CallResult&) = delete;
  CallResult& operator=(const CallResult&) = delete;
};

// Invokes id with args given in declaration order (they are passed reversed).
inline void InvokeId(IDispatch* d, DISPID id, WORD flags, std::vector<VARIANT> args, CallResult& r) {
  std::vector<VARIANT> rev(args.rbegin(), args.rend());
  DISPID put = DISPID_PROPERTYPUT;
  DISPPARAMS dp{rev.empty() ? nullptr : rev.data(), nullptr, static_cast<UINT>(rev.size()), 0};
  if (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) {
    dp.rgdispidNamedArgs = &put;
    dp.cNamedArgs = 1;
  }
  r.hr = d->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &dp,
                   (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) ? nullptr : &r.value, &r.excep, &r.arg_err);
  for (auto& a : args) VariantClear(&a);
}

inline VARIANT VI2(short v) { VARIANT x; VariantInit(&x); V_VT(&x) = VT_I2; V_I2(&x) = v; return x; }
inline VARIANT VI4(long v) { VARIANT x; VariantInit(&x); V_VT(&x) = VT_I4; V_I4(&x) = v; return x; }
inline VARIANT VR8(double v) { VARIANT x; VariantInit(&x); V_VT(&x) = VT_R8; V_R8(&x) = v; return x; }
inline VARIANT VBool(bool v) { VARIANT x; VariantInit(&x); V_VT(&x) = VT_BOOL; V_BOOL(&x) = v ? VARIANT_TRUE : VARIANT_FALSE; return x; }
inline VARIANT VStr(const wchar_t* s) { VARIANT x; VariantInit(&x); V_VT(&x) = VT_BSTR; V_BSTR(&x) = SysAllocString(s); return x; }
inline VARIANT VDisp(IDispatch* d) { VARIANT x; VariantInit(&x); V_VT(&x) = VT_DISPATCH; V_DISPATCH(&x) = d; if (d) d->AddRef(); return x; }

inline HRESULT Put(IDispatch* d, const wchar_t* name, VARIANT v, WORD flags = DISPATCH_PROPERTYPUT) {
  CallResult r;
  InvokeId(d, IdOf(d, name), flags, {v}, r);
  return r.hr;
}

inline void Get(IDispatch* d, const wchar_t* name, CallResult& r) {
  InvokeId(d, IdOf(d, name), DISPATCH_PROPERTYGET, {}, r);
}

inline std::wstring GetString(IDispatch* d, const wchar_t* name) {
  CallResult r;
  Get(d, name, r);
  if (FAILED(r.hr) || V_VT(&r.value) != VT_BSTR) return L"<" + std::wstring(name) + L" failed>";
  return std::wstring(V_BSTR(&r.value), SysStringLen(V_BSTR(&r.value)));
}

inline long GetLong(IDispatch* d, const wchar_t* name, VARTYPE* vt = nullptr) {
  CallResult r;
  Get(d, name, r);
  if (vt) *vt = V_VT(&r.value);
  VARIANT c;
  VariantInit(&c);
  if (FAILED(r.hr) || FAILED(VariantChangeType(&c, &r.value, 0, VT_I4))) return -999999;
  return V_I4(&c);
}

inline IDispatch* Create(const wchar_t* progid) {
  CLSID clsid;
  if (FAILED(CLSIDFromProgID(progid, &clsid))) return nullptr;
  IDispatch* d = nullptr;
  if (FAILED(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, reinterpret_cast<void**>(&d))))
    return nullptr;
  return d;
}

// Creates an instance and runs InitNew, as a container does for a new control.
inline IDispatch* CreateNew(const wchar_t* progid) {
  IDispatch* d = Create(progid);
  if (!d) return nullptr;
  IPersistStreamInit* p = nullptr;
  if (SUCCEEDED(d->QueryInterface(IID_IPersistStreamInit, reinterpret_cast<void**>(&p)))) {
    p->InitNew();
    p->Release();
  }
  return d;
}

// ---- a property bag of our own: names in the order written, values copied ----

class Bag : public IPropertyBag {
 public:
  std::vector<std::pair<std::wstring, VARIANT>> items;
  ~Bag() {
    for (auto& i : items) VariantClear(&i.second);
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
    for (auto& i : items)
      if (_wcsicmp(i.first.c_str(), name) == 0) return VariantCopy(v, &i.second);
    return E_INVALIDARG;
  }
  STDMETHODIMP Write(LPCOLESTR name, VARIANT* v) override {
    for (auto& i : items)
      if (_wcsicmp(i.first.c_str(), name) == 0) {
        VariantClear(&i.second);
        return VariantCopy(&i.second, v);
      }
    VARIANT c;
    VariantInit(&c);
    HRESULT hr = VariantCopy(&c, v);
    items.emplace_back(name, c);
    return hr;
  }
  const VARIANT* Find(const wchar_t* name) const {
    for (auto& i : items)
      if (_wcsicmp(i.first.c_str(), name) == 0) return &i.second;
    return nullptr;
  }
  // A readable form: name=type:value per item.
  std::string Text() const {
    std::string s;
    for (auto& i : items) {
      VARIANT c;
      VariantInit(&c);
      std::string value;
      if (V_VT(&i.second) == VT_DISPATCH) {
        IFont* f = nullptr;
        if (V_DISPATCH(&i.second) &&
            SUCCEEDED(V_DISPATCH(&i.second)->QueryInterface(IID_IFont, reinterpret_cast<void**>(&f)))) {
          BSTR n = nullptr;
          CY size{};
          BOOL bold = FALSE;
          f->get_Name(&n);
          f->get_Size(&size);
          f->get_Bold(&bold);
          value = "font(" + Narrow(n ? n : L"") + "," + std::to_string(size.int64) + "," + (bold ? "bold" : "") + ")";
          SysFreeString(n);
          f->Release();
        } else {
          value = "object";
        }
      } else if (SUCCEEDED(VariantChangeType(&c, const_cast<VARIANT*>(&i.second), 0, VT_BSTR))) {
        value = Narrow(std::wstring(V_BSTR(&c), SysStringLen(V_BSTR(&c))));
      }
      VariantClear(&c);
      s += Narrow(i.first) + "=" + std::to_string(V_VT(&i.second)) + ":" + value + ";";
    }
    return s;
  }
};

// ---- an event sink: records each call as "Name(arg,arg)" using the event type info ----

class Sink : public IDispatch, public IPropertyNotifySink {
 public:
  explicit Sink(IID events) : events_(events) {}
  std::vector<std::string> calls;   // events, with their arguments
  std::vector<DISPID> changed;      // IPropertyNotifySink::OnChanged
  ITypeInfo* info = nullptr;        // the event interface, to name the dispids
  // Applied to the first by-reference argument of the next event, when set.
  std::wstring byref_reply;

  STDMETHODIMP QueryInterface(REFIID riid, void** out) override {
    if (IsEqualIID(riid, IID_IUnknown) || IsEqualIID(riid, IID_IDispatch) || IsEqualIID(riid, events_)) {
      *out = static_cast<IDispatch*>(this);
      return S_OK;
    }
    if (IsEqualIID(riid, IID_IPropertyNotifySink)) {
      *out = static_cast<IPropertyNotifySink*>(this);
      return S_OK;
    }
    *out = nullptr;
    return E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return 2; }
  STDMETHODIMP_(ULONG) Release() override { return 1; }
  STDMETHODIMP GetTypeInfoCount(UINT* n) override { *n = 0; return S_OK; }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
  STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* dp, VARIANT*, EXCEPINFO*, UINT*) override {
    std::string name = std::to_string(id);
    if (info) {
      BSTR n = nullptr;
      UINT got = 0;
      if (SUCCEEDED(info->GetNames(id, &n, 1, &got)) && got) name = Narrow(n);
      SysFreeString(n);
    }
    std::string s = name + "(";
    for (UINT i = 0; i < dp->cArgs; ++i) {
      VARIANT& a = dp->rgvarg[dp->cArgs - 1 - i];
      VARIANT c;
      VariantInit(&c);
      VariantCopyInd(&c, &a);
      VARIANT t;
      VariantInit(&t);
      VariantChangeType(&t, &c, 0, VT_BSTR);
      if (i) s += ",";
      s += std::to_string(V_VT(&a)) + ":" + (V_VT(&t) == VT_BSTR ? Narrow(V_BSTR(&t)) : "?");
      VariantClear(&t);
      VariantClear(&c);
      if ((V_VT(&a) & VT_BYREF) && !byref_reply.empty() && (V_VT(&a) & VT_TYPEMASK) == VT_BSTR) {
        SysFreeString(*V_BSTRREF(&a));
        *V_BSTRREF(&a) = SysAllocString(byref_reply.c_str());
        byref_reply.clear();
      }
    }
    calls.push_back(s + ")");
    return S_OK;
  }
  STDMETHODIMP OnChanged(DISPID id) override {
    changed.push_back(id);
    return S_OK;
  }
  STDMETHODIMP OnRequestEdit(DISPID) override { return S_OK; }

 private:
  IID events_;
};

// Advises sink on obj's connection point for iid; returns the cookie (0 on failure).
inline DWORD Connect(IUnknown* obj, REFIID iid, IUnknown* sink, IConnectionPoint** point) {
  *point = nullptr;
  IConnectionPointContainer* cpc = nullptr;
  if (FAILED(obj->QueryInterface(IID_IConnectionPointContainer, reinterpret_cast<void**>(&cpc)))) return 0;
  DWORD cookie = 0;
  if (SUCCEEDED(cpc->FindConnectionPoint(iid, point)) && *point) (*point)->Advise(sink, &cookie);
  cpc->Release();
  return cookie;
}

}  // namespace axtest
