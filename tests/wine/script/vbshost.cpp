// A small VBScript host for black-box tests of the controls.
//
//   korvel_vbshost <script.vbs> [Name=ProgID ...]
//
// Each Name=ProgID creates the object, initialises it as a new instance and adds it
// to the script as the named item Name; its events reach the script as `Sub Name_Event(arguments)`. The script also
// sees `Host` with `Host.Echo text` (prints a line) and `Host.Quit code`.
//
// The exit code is the script's Quit code, 0 when it ends without one, 2 after a
// script error (printed with its line and column) and 3 when the host itself fails.
// A script that stops early never prints its last line, so every test script ends
// with `Host.Echo "END OF SCRIPT"`. The host's own last line says both:
//   "exit code 0, sentinel last"   (or "..., sentinel missing")
// and a test passes only on exactly that line with code 0.
#include <activscp.h>
#include <ocidl.h>
#include <oleauto.h>
#include <windows.h>

#include <cstdio>
#include <string>
#include <vector>

namespace {

std::string Narrow(const wchar_t* w) {
  if (!w) return {};
  int n = WideCharToMultiByte(CP_UTF8, 0, w, -1, nullptr, 0, nullptr, nullptr);
  std::string s(n > 0 ? n - 1 : 0, '\0');
  if (n > 1) WideCharToMultiByte(CP_UTF8, 0, w, -1, s.data(), n, nullptr, nullptr);
  return s;
}

std::wstring Widen(const std::string& s) {
  int n = MultiByteToWideChar(CP_UTF8, 0, s.c_str(), -1, nullptr, 0);
  std::wstring w(n > 0 ? n - 1 : 0, L'\0');
  if (n > 1) MultiByteToWideChar(CP_UTF8, 0, s.c_str(), -1, w.data(), n);
  return w;
}

constexpr const char* kSentinel = "END OF SCRIPT";
int g_exit_code = 0;
std::string g_last_line;
bool g_quit = false;
IActiveScript* g_engine = nullptr;

// Minimal IUnknown reference counting for the host's own objects, which live on
// the stack of main for the whole run.
#define KORVEL_STATIC_REFCOUNT                      \
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; } \
  ULONG STDMETHODCALLTYPE Release() override { return 1; }

// `Host`: Echo and Quit.
class HostObject : public IDispatch {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** out) override {
    if (riid == IID_IUnknown || riid == IID_IDispatch) {
      *out = static_cast<IDispatch*>(this);
      return S_OK;
    }
    *out = nullptr;
    return E_NOINTERFACE;
  }
  KORVEL_STATIC_REFCOUNT
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* n) override {
    *n = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override {
    HRESULT hr = S_OK;
    for (UINT i = 0; i < count; ++i) {
      if (_wcsicmp(names[i], L"Echo") == 0 && i == 0) {
        ids[i] = 1;
      } else if (_wcsicmp(names[i], L"Quit") == 0 && i == 0) {
        ids[i] = 2;
      } else {
        ids[i] = DISPID_UNKNOWN;
        hr = DISP_E_UNKNOWNNAME;
      }
    }
    return hr;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* params, VARIANT* result,
                                   EXCEPINFO* excep, UINT*) override {
    if (result) VariantInit(result);
    if (id == 1) {
      std::string line;
      for (UINT i = params->cArgs; i-- > 0;) {
        VARIANT v;
        VariantInit(&v);
        if (SUCCEEDED(VariantChangeType(&v, &params->rgvarg[i], VARIANT_ALPHABOOL, VT_BSTR))) {
          if (!line.empty()) line += " ";
          line += Narrow(v.bstrVal);
        }
        VariantClear(&v);
      }
      std::printf("%s\n", line.c_str());
      g_last_line = line;
      std::fflush(stdout);
      return S_OK;
    }
    if (id == 2) {
      int code = 0;
      if (params->cArgs > 0) {
        VARIANT v;
        VariantInit(&v);
        if (SUCCEEDED(VariantChangeType(&v, &params->rgvarg[params->cArgs - 1], 0, VT_I4))) code = v.lVal;
      }
      g_exit_code = code;
      g_quit = true;
      // Stops the script where it stands: the engine ends a script on an error from
      // a call, and the site ignores that error once Quit has been asked for.
      if (excep) {
        *excep = EXCEPINFO{};
        excep->scode = E_ABORT;
        excep->bstrDescription = SysAllocString(L"Quit");
      }
      return DISP_E_EXCEPTION;
    }
    return DISP_E_MEMBERNOTFOUND;
  }
};

// Receives one named item's events and calls `Sub Name_Event` in the script.
class EventSink final : public IDispatch {
 public:
  EventSink(std::wstring item, IID events, ITypeInfo* event_info)
      : item_(std::move(item)), events_(events), info_(event_info) {}
  ~EventSink() {
    if (info_) info_->Release();
  }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** out) override {
    if (riid == IID_IUnknown || riid == IID_IDispatch || riid == events_) {
      *out = static_cast<IDispatch*>(this);
      return S_OK;
    }
    *out = nullptr;
    return E_NOINTERFACE;
  }
  KORVEL_STATIC_REFCOUNT
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* n) override {
    *n = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID lcid, WORD, DISPPARAMS* params, VARIANT* result,
                                   EXCEPINFO*, UINT*) override {
    if (result) VariantInit(result);
    BSTR name = nullptr;
    UINT got = 0;
    if (!info_ || FAILED(info_->GetNames(id, &name, 1, &got)) || got == 0) return S_OK;
    std::wstring handler = item_ + L"_" + name;
    SysFreeString(name);
    IDispatch* script = nullptr;
    if (!g_engine || FAILED(g_engine->GetScriptDispatch(nullptr, &script)) || !script) return S_OK;
    LPOLESTR names[1] = {const_cast<LPOLESTR>(handler.c_str())};
    DISPID sub = DISPID_UNKNOWN;
    if (SUCCEEDED(script->GetIDsOfNames(IID_NULL, names, 1, lcid, &sub))) {
      // The arguments go on as they came, by-reference ones too, so a Sub can
      // change them.
      DISPPARAMS dp = {params->rgvarg, nullptr, params->cArgs, 0};
      VARIANT r;
      VariantInit(&r);
      EXCEPINFO ei{};
      script->Invoke(sub, IID_NULL, lcid, DISPATCH_METHOD, &dp, &r, &ei, nullptr);
      VariantClear(&r);
      SysFreeString(ei.bstrSource);
      SysFreeString(ei.bstrDescription);
      SysFreeString(ei.bstrHelpFile);
    }
    script->Release();
    return S_OK;
  }

 private:
  std::wstring item_;
  IID events_;
  ITypeInfo* info_;
};

struct NamedItem {
  std::wstring name;
  IDispatch* object = nullptr;
  ITypeInfo* class_info = nullptr;
  EventSink* sink = nullptr;
  IConnectionPoint* point = nullptr;
  DWORD cookie = 0;
};

std::vector<NamedItem> g_items;
HostObject g_host_object;

class Site : public IActiveScriptSite {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** out) override {
    if (riid == IID_IUnknown || riid == __uuidof(IActiveScriptSite)) {
      *out = static_cast<IActiveScriptSite*>(this);
      return S_OK;
    }
    *out = nullptr;
    return E_NOINTERFACE;
  }
  KORVEL_STATIC_REFCOUNT
  HRESULT STDMETHODCALLTYPE GetLCID(LCID* lcid) override {
    *lcid = LOCALE_USER_DEFAULT;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetItemInfo(LPCOLESTR name, DWORD mask, IUnknown** unk, ITypeInfo** info) override {
    if (unk) *unk = nullptr;
    if (info) *info = nullptr;
    if (_wcsicmp(name, L"Host") == 0) {
      if (mask & SCRIPTINFO_IUNKNOWN) {
        *unk = static_cast<IDispatch*>(&g_host_object);
      }
      return S_OK;
    }
    for (NamedItem& item : g_items) {
      if (_wcsicmp(name, item.name.c_str()) != 0) continue;
      if (mask & SCRIPTINFO_IUNKNOWN) {
        item.object->AddRef();
        *unk = item.object;
      }
      if ((mask & SCRIPTINFO_ITYPEINFO) && item.class_info) {
        item.class_info->AddRef();
        *info = item.class_info;
      }
      return S_OK;
    }
    return TYPE_E_ELEMENTNOTFOUND;
  }
  HRESULT STDMETHODCALLTYPE GetDocVersionString(BSTR* version) override {
    *version = SysAllocString(L"1");
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE OnScriptTerminate(const VARIANT*, const EXCEPINFO*) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnStateChange(SCRIPTSTATE) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnScriptError(IActiveScriptError* error) override {
    if (g_quit) return S_OK;  // the interruption that Quit asked for
    EXCEPINFO ei{};
    error->GetExceptionInfo(&ei);
    if (ei.pfnDeferredFillIn) ei.pfnDeferredFillIn(&ei);
    DWORD context = 0;
    ULONG line = 0;
    LONG column = 0;
    error->GetSourcePosition(&context, &line, &column);
    std::printf("script error at line %lu, column %ld: 0x%08lx %s\n", static_cast<unsigned long>(line + 1),
                static_cast<long>(column), static_cast<unsigned long>(ei.scode ? ei.scode : ei.wCode),
                Narrow(ei.bstrDescription).c_str());
    std::fflush(stdout);
    SysFreeString(ei.bstrSource);
    SysFreeString(ei.bstrDescription);
    SysFreeString(ei.bstrHelpFile);
    g_exit_code = 2;
    g_quit = true;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE OnEnterScript() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnLeaveScript() override { return S_OK; }
};

int Fail(const char* what, HRESULT hr) {
  std::printf("host failure: %s (0x%08lx)\n", what, static_cast<unsigned long>(hr));
  std::fflush(stdout);
  return 3;
}

// Connects item's default source interface to a sink that calls the script.
void Connect(NamedItem& item) {
  IProvideClassInfo2* pci2 = nullptr;
  IProvideClassInfo* pci = nullptr;
  GUID events = GUID_NULL;
  if (SUCCEEDED(item.object->QueryInterface(IID_IProvideClassInfo2, reinterpret_cast<void**>(&pci2)))) {
    pci2->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &events);
    pci2->GetClassInfo(&item.class_info);
    pci2->Release();
  } else if (SUCCEEDED(item.object->QueryInterface(IID_IProvideClassInfo, reinterpret_cast<void**>(&pci)))) {
    pci->GetClassInfo(&item.class_info);
    pci->Release();
  }
  if (!item.class_info || events == GUID_NULL) return;
  ITypeLib* lib = nullptr;
  UINT index = 0;
  ITypeInfo* event_info = nullptr;
  if (SUCCEEDED(item.class_info->GetContainingTypeLib(&lib, &index))) {
    lib->GetTypeInfoOfGuid(events, &event_info);
    lib->Release();
  }
  IConnectionPointContainer* cpc = nullptr;
  if (FAILED(item.object->QueryInterface(IID_IConnectionPointContainer, reinterpret_cast<void**>(&cpc)))) {
    if (event_info) event_info->Release();
    return;
  }
  if (SUCCEEDED(cpc->FindConnectionPoint(events, &item.point))) {
    item.sink = new EventSink(item.name, events, event_info);
    event_info = nullptr;
    if (FAILED(item.point->Advise(static_cast<IDispatch*>(item.sink), &item.cookie))) item.cookie = 0;
  }
  cpc->Release();
  if (event_info) event_info->Release();
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  if (argc < 2) {
    std::printf("usage: korvel_vbshost script.vbs [Name=ProgID ...]\n");
    return 3;
  }
  std::string source;
  if (FILE* f = _wfopen(argv[1], L"rb")) {
    char buf[4096];
    size_t n;
    while ((n = std::fread(buf, 1, sizeof buf, f)) > 0) source.append(buf, n);
    std::fclose(f);
  } else {
    return Fail("cannot read the script", E_FAIL);
  }

  HRESULT hr = OleInitialize(nullptr);
  if (FAILED(hr)) return Fail("OleInitialize", hr);

  for (int i = 2; i < argc; ++i) {
    std::wstring arg = argv[i];
    size_t eq = arg.find(L'=');
    if (eq == std::wstring::npos) return Fail("an argument is not Name=ProgID", E_INVALIDARG);
    NamedItem item;
    item.name = arg.substr(0, eq);
    CLSID clsid;
    hr = CLSIDFromProgID(arg.substr(eq + 1).c_str(), &clsid);
    if (FAILED(hr)) return Fail("CLSIDFromProgID", hr);
    hr = CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, reinterpret_cast<void**>(&item.object));
    if (FAILED(hr)) return Fail("CoCreateInstance", hr);
    // Placed as a running form places a new control: initialised as a new instance.
    IPersistPropertyBag* ppb = nullptr;
    IPersistStreamInit* psi = nullptr;
    if (SUCCEEDED(item.object->QueryInterface(IID_IPersistPropertyBag, reinterpret_cast<void**>(&ppb)))) {
      ppb->InitNew();
      ppb->Release();
    } else if (SUCCEEDED(item.object->QueryInterface(IID_IPersistStreamInit, reinterpret_cast<void**>(&psi)))) {
      psi->InitNew();
      psi->Release();
    }
    g_items.push_back(item);
  }
  for (NamedItem& item : g_items) Connect(item);

  CLSID vbs;
  hr = CLSIDFromProgID(L"VBScript", &vbs);
  if (FAILED(hr)) return Fail("the VBScript engine is not registered", hr);
  hr = CoCreateInstance(vbs, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IActiveScript), reinterpret_cast<void**>(&g_engine));
  if (FAILED(hr)) return Fail("creating the VBScript engine", hr);
  IActiveScriptParse* parse = nullptr;
  hr = g_engine->QueryInterface(__uuidof(IActiveScriptParse), reinterpret_cast<void**>(&parse));
  if (FAILED(hr)) return Fail("IActiveScriptParse", hr);
  Site site;
  if (FAILED(hr = g_engine->SetScriptSite(&site))) return Fail("SetScriptSite", hr);
  if (FAILED(hr = parse->InitNew())) return Fail("InitNew", hr);
  g_engine->AddNamedItem(L"Host", SCRIPTITEM_ISVISIBLE);
  for (NamedItem& item : g_items) g_engine->AddNamedItem(item.name.c_str(), SCRIPTITEM_ISVISIBLE | SCRIPTITEM_ISSOURCE);

  std::wstring code = Widen(source);
  EXCEPINFO ei{};
  hr = parse->ParseScriptText(code.c_str(), nullptr, nullptr, nullptr, 0, 0, SCRIPTTEXT_ISVISIBLE, nullptr, &ei);
  if (SUCCEEDED(hr) && !g_quit) hr = g_engine->SetScriptState(SCRIPTSTATE_CONNECTED);
  if (FAILED(hr) && !g_quit) {
    std::printf("script did not run (0x%08lx)\n", static_cast<unsigned long>(hr));
    g_exit_code = 2;
  }

  for (NamedItem& item : g_items) {
    if (item.point) {
      if (item.cookie) item.point->Unadvise(item.cookie);
      item.point->Release();
    }
    if (item.class_info) item.class_info->Release();
    item.object->Release();
    delete item.sink;
  }
  g_engine->Close();
  parse->Release();
  g_engine->Release();
  g_engine = nullptr;
  OleUninitialize();
  std::printf("exit code %d, sentinel %s\n", g_exit_code, g_last_line == kSentinel ? "last" : "missing");
  std::fflush(stdout);
  if (g_exit_code == 0 && g_last_line != kSentinel) g_exit_code = 4;
  return g_exit_code;
}
