// The controls from VBScript, as a black box: a small script host of our own on
// the VBScript engine adds four controls as named items, forwards their events to
// "Sub <Item>_<Event>" in the script, runs the script and reads back what it
// collected. The script ends with a sentinel, so a script that stops early fails.
#include <activscp.h>

#include "ax_test.h"

using namespace axtest;

namespace {

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

const wchar_t kScript[] = LR"vbs(
Dim log, errors, done
log = ""
errors = ""
Sub Expect(ok, what)
  If Not ok Then errors = errors & what & "; "
End Sub
Sub Slider_Change(NewValue)
  log = log & "Change(" & NewValue & ")"
End Sub

Slider.Max = 500
Slider.Min = -20
Slider.Value = 300
Expect Slider.Value = 300, "Slider.Value"
Expect Slider = 300, "the slider's default member reads Value"
Slider.Value = 7
Expect Slider.Value = 7, "Slider.Value again"
Slider.ForeColor = &H8000000F
Expect Slider.ForeColor = &H8000000F, "ForeColor keeps a system colour"
Expect TypeName(Slider.Value) = "Long", "Value is a Long"
Expect TypeName(Slider.Enabled) = "Boolean", "Enabled is a Boolean"
Expect Slider.Enabled = True, "Enabled is True"

Link.Caption = "Home"
Expect Link.Caption = "Home", "Link.Caption"
Link.URL = "http://example.test/"
Expect Link = "http://example.test/", "the link's default member reads URL"
Link.HoverColor = RGB(0, 255, 0)
Expect Link.HoverColor = 65280, "Link.HoverColor"
Expect TypeName(Link.Font) = "IFontDisp" Or TypeName(Link.Font) = "Font" Or TypeName(Link.Font) = "Object", "Link.Font is an object: " & TypeName(Link.Font)

Divider.Caption = "General"
Expect Divider = "General", "the divider's default member reads the caption"
Set Divider.Font = Link.Font
Expect Divider.Font.Name = Link.Font.Name, "Set Divider.Font = Link.Font"

Bar.Value = 37
Expect Bar.Value = 37, "Bar.Value"
Expect TypeName(Bar.Value) = "Integer", "Bar.Value is an Integer"

On Error Resume Next
Err.Clear
Bar.Value = 40000
Expect Err.Number = 6, "40000 into Bar.Value raises 6, got " & Err.Number
Expect Err.Description = "Overflow", "with the description Overflow, got " & Err.Description
Err.Clear
Slider.Value = "lots"
Expect Err.Number = 13, "a text into Slider.Value raises 13, got " & Err.Number
Err.Clear
Slider.NoSuchMember = 1
Expect Err.Number = 438, "an unknown member raises 438, got " & Err.Number
Err.Clear
On Error GoTo 0
Expect Bar.Value = 37, "the failed assignment left Bar.Value alone"
done = "done"
)vbs";

}  // namespace

int main() {
  CoInitialize(nullptr);
  Host host;
  const wchar_t* progids[][2] = {{L"Slider", L"KorvelUI99.KorvelMiniSlider"},
                                 {L"Link", L"KorvelUI99.KorvelLink"},
                                 {L"Divider", L"KorvelUI99.KorvelDivider"},
                                 {L"Bar", L"KorvelUI99.KorvelBar"}};
  for (auto& p : progids) {
    Item it;
    it.name = p[0];
    it.object = CreateNew(p[1]);
    Check(it.object != nullptr, Narrow(p[1]) + " created for the script");
    if (!it.object) return Summary();
    IProvideClassInfo* pci = nullptr;
    if (SUCCEEDED(it.object->QueryInterface(IID_IProvideClassInfo, reinterpret_cast<void**>(&pci)))) {
      pci->GetClassInfo(&it.coclass);
      pci->Release();
    }
    host.items.push_back(it);
  }

  IActiveScript* engine = nullptr;
  IActiveScriptParse* parse = nullptr;
  HRESULT hr = CoCreateInstance(kVBScript, nullptr, CLSCTX_INPROC_SERVER, IID_IActiveScript, reinterpret_cast<void**>(&engine));
  Check(SUCCEEDED(hr) && engine, "the VBScript engine");
  if (!engine) return Summary();
  engine->QueryInterface(kParseIid, reinterpret_cast<void**>(&parse));
  Check(parse != nullptr, "the engine's IActiveScriptParse");
  if (!parse) return Summary();
  engine->SetScriptSite(&host);
  parse->InitNew();
  for (Item& i : host.items) engine->AddNamedItem(i.name.c_str(), SCRIPTITEM_ISVISIBLE | SCRIPTITEM_ISSOURCE);

  // Events: the host advises each control and calls the script's handlers.
  ITypeLib* tl = nullptr;
  LoadRegTypeLib(LIBID_KorvelUI99, 1, 0, LOCALE_NEUTRAL, &tl);
  ITypeInfo* slider_events = nullptr;
  if (tl) tl->GetTypeInfoOfGuid(DIID___KorvelMiniSlider, &slider_events);
  Forwarder forward(L"Slider", slider_events, engine);
  IConnectionPoint* point = nullptr;
  DWORD cookie = Connect(host.items[0].object, DIID___KorvelMiniSlider, static_cast<IDispatch*>(&forward), &point);
  Check(cookie != 0, "the host advised the slider's events");

  EXCEPINFO ex{};
  hr = parse->ParseScriptText(kScript, nullptr, nullptr, nullptr, 0, 0, 0, nullptr, &ex);
  Check(SUCCEEDED(hr), "the script parsed and ran (" + Hex(hr) + ")");
  engine->SetScriptState(SCRIPTSTATE_CONNECTED);
  Check(host.error.empty(), "no script error" + (host.error.empty() ? std::string() : ": " + host.error));
  Check(ScriptString(engine, L"done") == L"done", "the script ran to its last line");
  const std::wstring errors = ScriptString(engine, L"errors");
  Check(errors.empty(), "every expectation of the script held" + (errors.empty() ? std::string() : ": " + Narrow(errors)));
  const std::wstring log = ScriptString(engine, L"log");
  Check(log == L"Change(300)Change(7)", "Slider_Change ran for each assignment, in order: " + Narrow(log));

  if (point) {
    point->Unadvise(cookie);
    point->Release();
  }
  engine->Close();
  parse->Release();
  engine->Release();
  if (slider_events) slider_events->Release();
  if (tl) tl->Release();
  for (Item& i : host.items) {
    if (i.coclass) i.coclass->Release();
    i.object->Release();
  }
  CoUninitialize();
  return Summary();
}
