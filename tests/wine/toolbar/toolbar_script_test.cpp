// KorvelToolbar from VBScript in a container: a script host of our own on the
// VBScript engine adds the toolbar, loaded at run time and active in a real window,
// as the named item Toolbar; the script drives it by name and its handlers
// Sub Toolbar_Hover, Toolbar_Click and Toolbar_RightClick collect the events that
// real pointer input raises afterwards.
#include <activscp.h>

#include "toolbar_com.h"

using namespace axtest;
using namespace tbtest;

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
Sub Toolbar_Hover(Key, ToolTipText)
  log = log & "Hover(" & Key & "," & ToolTipText & ")"
End Sub
Sub Toolbar_Click(Key, X, Y)
  log = log & "Click(" & Key & "," & X & "," & Y & ")"
End Sub
Sub Toolbar_RightClick(Key, X, Y)
  log = log & "RightClick(" & Key & "," & X & "," & Y & ")"
End Sub

Expect Toolbar.BorderStyle = 3, "BorderStyle is 3 as loaded, got " & Toolbar.BorderStyle
Toolbar.BorderStyle = 1
Expect Toolbar.BorderStyle = 3, "BorderStyle = 1 at run time is ignored"
Expect Not (Toolbar.Picture Is Nothing), "the strip was loaded"
Expect Toolbar.Style("C") = 1, "Style(""C"") is ktCheck, got " & Toolbar.Style("C")
Expect Toolbar.Style("A") = 0, "Style(""A"") is ktButton"
Expect Toolbar.Value("C") = True, "C is checked"
Toolbar.Value("C") = False
Expect Toolbar.Value("C") = False, "Value(""C"") = False at run time"
Toolbar.Value("C") = True
Toolbar.Enabled("A") = False
Expect Toolbar.Enabled("A") = False, "Enabled(""A"") = False at run time"
Toolbar.Enabled("A") = True
Expect Toolbar.Enabled("A") = True, "Enabled(""A"") = True again"
On Error Resume Next
Dim tip
tip = Toolbar.ToolTipText("A")
Expect Err.Number = 13, "ToolTipText(""A"") (""Alpha"" as a Boolean) raises 13, got " & Err.Number
Err.Clear
On Error GoTo 0
done = "done"
)vbs";

}  // namespace

int main() {
  OleInitialize(nullptr);
  ClassicColors colors;
  IPictureDisp* strip = MakeStrip();
  Bag saved;
  Check(strip && SaveDesigned(strip, saved), "the toolbar built at design time and saved into a bag");

  Site site;
  site.window = MakeWindow();
  IOleObject* ole = nullptr;
  IDispatch* toolbar = Place(site, &ole, &saved);
  Check(toolbar && ole && ole->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, &site, 0, site.window, &site.pos) == S_OK,
        "loaded at run time and active in place");
  if (!toolbar || !ole) return Summary();
  Pump(100);
  IOleInPlaceObject* ipo = nullptr;
  toolbar->QueryInterface(IID_IOleInPlaceObject, reinterpret_cast<void**>(&ipo));
  HWND control = nullptr;
  if (ipo) ipo->GetWindow(&control);
  HWND area = control ? ChildWindowFromPointEx(control, POINT{20, 10}, CWP_SKIPINVISIBLE) : nullptr;
  Check(area && area != control, "the button area's window");
  if (!area || area == control) return Summary();
  POINT origin{0, 0};
  ClientToScreen(area, &origin);

  Host host;
  Item item;
  item.name = L"Toolbar";
  item.object = toolbar;
  IProvideClassInfo* pci = nullptr;
  if (SUCCEEDED(toolbar->QueryInterface(IID_IProvideClassInfo, reinterpret_cast<void**>(&pci)))) {
    pci->GetClassInfo(&item.coclass);
    pci->Release();
  }
  host.items.push_back(item);

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
  engine->AddNamedItem(L"Toolbar", SCRIPTITEM_ISVISIBLE | SCRIPTITEM_ISSOURCE);

  ITypeLib* tl = nullptr;
  LoadRegTypeLib(LIBID_KorvelUI99, 1, 0, LOCALE_NEUTRAL, &tl);
  ITypeInfo* events = nullptr;
  if (tl) tl->GetTypeInfoOfGuid(DIID___KorvelToolbar, &events);
  Forwarder forward(L"Toolbar", events, engine);
  IConnectionPoint* point = nullptr;
  DWORD cookie = Connect(toolbar, DIID___KorvelToolbar, static_cast<IDispatch*>(&forward), &point);
  Check(cookie != 0 && events, "the host advised the toolbar's events");

  EXCEPINFO ex{};
  hr = parse->ParseScriptText(kScript, nullptr, nullptr, nullptr, 0, 0, 0, nullptr, &ex);
  Check(SUCCEEDED(hr), "the script parsed and ran (" + Hex(hr) + ")");
  engine->SetScriptState(SCRIPTSTATE_CONNECTED);
  Check(host.error.empty(), "no script error" + (host.error.empty() ? std::string() : ": " + host.error));
  Check(ScriptString(engine, L"done") == L"done", "the script ran to its last line");
  const std::wstring errors = ScriptString(engine, L"errors");
  Check(errors.empty(), "every expectation of the script held" + (errors.empty() ? std::string() : ": " + Narrow(errors)));
  Check(ScriptString(engine, L"log").empty(), "no event while the script drove the toolbar by name");

  // Pointer input: hover A, then B, click B, back to A and a right click.
  PointerTo(origin.x + 11, origin.y + 11);
  PointerTo(origin.x + 30, origin.y + 10);
  Buttons(MOUSEEVENTF_LEFTDOWN);
  Buttons(MOUSEEVENTF_LEFTUP);
  PointerTo(origin.x + 5, origin.y + 8);
  Buttons(MOUSEEVENTF_RIGHTDOWN);
  Buttons(MOUSEEVENTF_RIGHTUP);
  const std::wstring log = ScriptString(engine, L"log");
  // Releasing the capture after the click makes the system send a move at the
  // pointer, which makes B hot again.
  Check(log == L"Hover(A,Alpha)Hover(B,Beta)Click(B,31,25)Hover(,)Hover(B,Beta)Hover(A,Alpha)RightClick(A,9,25)",
        "the script's handlers ran in order with their arguments: " + Narrow(log));
  Check(host.error.empty(), "no script error in the handlers" + (host.error.empty() ? std::string() : ": " + host.error));

  if (point) {
    point->Unadvise(cookie);
    point->Release();
  }
  engine->Close();
  parse->Release();
  engine->Release();
  if (events) events->Release();
  if (tl) tl->Release();
  if (item.coclass) item.coclass->Release();
  if (ipo) ipo->Release();
  Unplace(toolbar, ole);
  if (strip) strip->Release();
  DestroyWindow(site.window);
  OleUninitialize();
  return Summary();
}
