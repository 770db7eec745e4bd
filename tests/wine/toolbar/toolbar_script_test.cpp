// KorvelToolbar from VBScript in a container: a script host of our own on the
// VBScript engine adds the toolbar, loaded at run time and active in a real window,
// as the named item Toolbar; the script drives it by name and its handlers
// Sub Toolbar_Hover, Toolbar_Click and Toolbar_RightClick collect the events that
// real pointer input raises afterwards.

#include "../activex/script_engine.h"
#include "toolbar_com.h"

using namespace axtest;
using namespace tbtest;

namespace {

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

  ToolbarSite site;
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
