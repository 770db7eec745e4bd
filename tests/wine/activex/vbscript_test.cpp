// The controls from VBScript, as a black box: a small script host of our own on
// the VBScript engine adds four controls as named items, forwards their events to
// "Sub <Item>_<Event>" in the script, runs the script and reads back what it
// collected. The script ends with a sentinel, so a script that stops early fails.

#include "script_engine.h"

using namespace axtest;

namespace {

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
