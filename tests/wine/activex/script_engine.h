// A script host of our own on the VBScript engine, for the black-box tests: the
// engine's identifiers, a site that answers named items, a forwarder that calls
// "Sub <Item>_<Event>" in the script for each event of an item, and a reader of a
// script variable. Wine's own script host connects no events, so the tests host
// the engine themselves.
#pragma once
#include <activscp.h>

#include "ax_test.h"

namespace axtest {

const CLSID kVBScript = {0xB54F3741, 0x5B07, 0x11CF, {0xA4, 0xB0, 0x00, 0xAA, 0x00, 0x4A, 0x55, 0xE8}};
// IActiveScriptParse (its 64-bit form on win64); the import library lacks both.
#ifdef _WIN64
const IID kParseIid = {0xC7EF7658, 0xE1EE, 0x480E, {0x97, 0xEA, 0xD5, 0x2C, 0xB4, 0xD7, 0x6D, 0x17}};
#else
const IID kParseIid = {0xBB1A2AE2, 0xA4F9, 0x11CF, {0x8F, 0x20, 0x00, 0x80, 0x5F, 0x2C, 0xD0, 0x64}};
#endif

struct Item {
  std::wstring name;
  IDispatch* object = nullptr;
  ITypeInfo* coclass = nullptr;
};

class Host : public IActiveScriptSite {
 public:
  std::vector<Item> items;
  std::string error;
  STDMETHODIMP QueryInterface(REFIID riid, void** out) override {
    if (IsEqualIID(riid, IID_IUnknown) || IsEqualIID(riid, IID_IActiveScriptSite)) {
      *out = static_cast<IActiveScriptSite*>(this);
      return S_OK;
    }
    *out = nullptr;
    return E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return 2; }
  STDMETHODIMP_(ULONG) Release() override { return 1; }
  STDMETHODIMP GetLCID(LCID* lcid) override { *lcid = LOCALE_USER_DEFAULT; return S_OK; }
  STDMETHODIMP GetItemInfo(LPCOLESTR name, DWORD mask, IUnknown** unk, ITypeInfo** ti) override {
    for (Item& i : items) {
      if (_wcsicmp(i.name.c_str(), name) != 0) continue;
      if ((mask & SCRIPTINFO_IUNKNOWN) && unk) {
        *unk = i.object;
        i.object->AddRef();
      }
      if ((mask & SCRIPTINFO_ITYPEINFO) && ti) {
        *ti = i.coclass;
        if (i.coclass) i.coclass->AddRef();
      }
      return S_OK;
    }
    return TYPE_E_ELEMENTNOTFOUND;
  }
  STDMETHODIMP GetDocVersionString(BSTR*) override { return E_NOTIMPL; }
  STDMETHODIMP OnScriptTerminate(const VARIANT*, const EXCEPINFO*) override { return S_OK; }
  STDMETHODIMP OnStateChange(SCRIPTSTATE) override { return S_OK; }
  STDMETHODIMP OnScriptError(IActiveScriptError* e) override {
    EXCEPINFO ex{};
    e->GetExceptionInfo(&ex);
    DWORD ctx = 0;
    ULONG line = 0;
    LONG col = 0;
    e->GetSourcePosition(&ctx, &line, &col);
    error = "line " + std::to_string(line + 1) + " column " + std::to_string(col) + ": " +
            (ex.bstrDescription ? Narrow(ex.bstrDescription) : Hex(ex.scode));
    SysFreeString(ex.bstrSource);
    SysFreeString(ex.bstrDescription);
    SysFreeString(ex.bstrHelpFile);
    return S_OK;
  }
  STDMETHODIMP OnEnterScript() override { return S_OK; }
  STDMETHODIMP OnLeaveScript() override { return S_OK; }
};

// Receives one control's events and calls Sub <item>_<event> in the script.
class Forwarder : public IDispatch {
 public:
  Forwarder(std::wstring item, ITypeInfo* events, IActiveScript* engine) : item_(std::move(item)), events_(events), engine_(engine) {}
  STDMETHODIMP QueryInterface(REFIID riid, void** out) override {
    if (IsEqualIID(riid, IID_IUnknown) || IsEqualIID(riid, IID_IDispatch)) {
      *out = static_cast<IDispatch*>(this);
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
  STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* dp, VARIANT* result, EXCEPINFO*, UINT*) override {
    BSTR name = nullptr;
    UINT got = 0;
    if (FAILED(events_->GetNames(id, &name, 1, &got)) || !got) return S_OK;
    std::wstring sub = item_ + L"_" + name;
    SysFreeString(name);
    IDispatch* script = nullptr;
    if (FAILED(engine_->GetScriptDispatch(nullptr, &script)) || !script) return S_OK;
    DISPID sid = DISPID_UNKNOWN;
    LPOLESTR n = sub.data();
    if (SUCCEEDED(script->GetIDsOfNames(IID_NULL, &n, 1, LOCALE_USER_DEFAULT, &sid)))
      script->Invoke(sid, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, dp, result, nullptr, nullptr);
    script->Release();
    return S_OK;
  }

 private:
  std::wstring item_;
  ITypeInfo* events_;
  IActiveScript* engine_;
};

std::wstring ScriptString(IActiveScript* engine, const wchar_t* name) {
  IDispatch* script = nullptr;
  if (FAILED(engine->GetScriptDispatch(nullptr, &script)) || !script) return L"<no script dispatch>";
  DISPID id = DISPID_UNKNOWN;
  LPOLESTR n = const_cast<LPOLESTR>(name);
  std::wstring out = L"<" + std::wstring(name) + L" missing>";
  if (SUCCEEDED(script->GetIDsOfNames(IID_NULL, &n, 1, LOCALE_USER_DEFAULT, &id))) {
    VARIANT v, s;
    VariantInit(&v);
    VariantInit(&s);
    DISPPARAMS none{nullptr, nullptr, 0, 0};
    if (SUCCEEDED(script->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none, &v, nullptr, nullptr)) &&
        SUCCEEDED(VariantChangeType(&s, &v, 0, VT_BSTR)))
      out.assign(V_BSTR(&s), SysStringLen(V_BSTR(&s)));
    VariantClear(&v);
    VariantClear(&s);
  }
  script->Release();
  return out;
}

}  // namespace axtest
