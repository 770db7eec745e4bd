// Events through the connection point of the event interface, in order and with
// their arguments, received by a sink of our own; property changes reaching
// IPropertyNotifySink::OnChanged with the member's dispatch id.
#include "ax_test.h"

using namespace axtest;

namespace {

ITypeInfo* EventInfo(REFIID iid) {
  ITypeLib* tl = nullptr;
  if (FAILED(LoadRegTypeLib(LIBID_KorvelUI99, 1, 0, LOCALE_NEUTRAL, &tl))) return nullptr;
  ITypeInfo* info = nullptr;
  tl->GetTypeInfoOfGuid(iid, &info);
  tl->Release();
  return info;
}

std::string Join(const std::vector<std::string>& v) {
  std::string s;
  for (auto& x : v) s += (s.empty() ? "" : " ") + x;
  return s;
}

std::string Join(const std::vector<DISPID>& v) {
  std::string s;
  for (auto x : v) s += (s.empty() ? "" : " ") + std::to_string(x);
  return s;
}

void ExpectCalls(Sink& sink, const std::vector<std::string>& want, const std::string& what) {
  Check(sink.calls == want, what + ": " + Join(want) + " (got " + Join(sink.calls) + ")");
  sink.calls.clear();
}

void ExpectChanged(Sink& sink, const std::vector<DISPID>& want, const std::string& what) {
  Check(sink.changed == want, what + ": OnChanged " + Join(want) + " (got " + Join(sink.changed) + ")");
  sink.changed.clear();
}

void MiniSliderEvents() {
  IDispatch* d = CreateNew(L"KorvelUI99.KorvelMiniSlider");
  Check(d != nullptr, "KorvelMiniSlider created");
  if (!d) return;
  Sink sink(DIID___KorvelMiniSlider);
  sink.info = EventInfo(DIID___KorvelMiniSlider);

  IProvideClassInfo2* pci = nullptr;
  GUID source{};
  Check(SUCCEEDED(d->QueryInterface(IID_IProvideClassInfo2, reinterpret_cast<void**>(&pci))) &&
            SUCCEEDED(pci->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &source)) && IsEqualIID(source, DIID___KorvelMiniSlider),
        "IProvideClassInfo2 names __KorvelMiniSlider as the default source");
  if (pci) {
    ITypeInfo* ci = nullptr;
    TYPEATTR* attr = nullptr;
    Check(SUCCEEDED(pci->GetClassInfo(&ci)) && ci && SUCCEEDED(ci->GetTypeAttr(&attr)) && attr &&
              IsEqualCLSID(attr->guid, CLSID_KorvelMiniSlider) && attr->typekind == TKIND_COCLASS,
          "GetClassInfo gives the KorvelMiniSlider coclass");
    if (attr) ci->ReleaseTypeAttr(attr);
    if (ci) ci->Release();
    pci->Release();
  }

  IConnectionPoint* events = nullptr;
  IConnectionPoint* notify = nullptr;
  DWORD c1 = Connect(d, DIID___KorvelMiniSlider, static_cast<IDispatch*>(&sink), &events);
  DWORD c2 = Connect(d, IID_IPropertyNotifySink, static_cast<IDispatch*>(&sink), &notify);
  Check(c1 != 0 && c2 != 0, "advised on the event interface and on IPropertyNotifySink");

  Put(d, L"Value", VI4(30));
  ExpectCalls(sink, {"Change(3:30)"}, "Value = 30 raises Change(30)");
  ExpectChanged(sink, {0}, "Value = 30");
  Put(d, L"Max", VI4(50));
  ExpectCalls(sink, {}, "Max raises no event");
  ExpectChanged(sink, {2}, "Max = 50");
  Put(d, L"Value", VI4(70));
  Put(d, L"Value", VI4(-5));
  Put(d, L"Value", VI4(20));
  ExpectCalls(sink, {"Change(3:50)", "Change(3:0)", "Change(3:20)"}, "three assignments raise Change in order, clamped");
  ExpectChanged(sink, {0, 0, 0}, "three assignments of Value");
  Put(d, L"Min", VI4(1));
  Put(d, L"ForeColor", VI4(0xFF));
  Put(d, L"BackColor", VI4(0));
  Put(d, L"Enabled", VBool(false));
  ExpectChanged(sink, {1, 3, 4, 5}, "Min, ForeColor, BackColor, Enabled");

  IOleControl* oc = nullptr;
  if (SUCCEEDED(d->QueryInterface(IID_IOleControl, reinterpret_cast<void**>(&oc)))) {
    oc->FreezeEvents(TRUE);
    Put(d, L"Value", VI4(10));
    ExpectCalls(sink, {}, "no event while events are frozen");
    oc->FreezeEvents(FALSE);
    Put(d, L"Value", VI4(11));
    ExpectCalls(sink, {"Change(3:11)"}, "events flow again after thawing");
    oc->Release();
  }
  sink.changed.clear();

  IEnumConnectionPoints* en = nullptr;
  IConnectionPointContainer* cpc = nullptr;
  std::vector<IID> iids;
  if (SUCCEEDED(d->QueryInterface(IID_IConnectionPointContainer, reinterpret_cast<void**>(&cpc))) &&
      SUCCEEDED(cpc->EnumConnectionPoints(&en))) {
    IConnectionPoint* p = nullptr;
    ULONG got = 0;
    while (en->Next(1, &p, &got) == S_OK && got == 1) {
      IID iid{};
      p->GetConnectionInterface(&iid);
      iids.push_back(iid);
      p->Release();
    }
    en->Release();
  }
  Check(iids.size() == 2 && IsEqualIID(iids[0], DIID___KorvelMiniSlider) && IsEqualIID(iids[1], IID_IPropertyNotifySink),
        "the container enumerates the event point and the property-notify point");
  IConnectionPoint* none = nullptr;
  Check(cpc && cpc->FindConnectionPoint(DIID___KorvelLink, &none) == CONNECT_E_NOCONNECTION && !none,
        "no connection point for another class's events");
  if (cpc) cpc->Release();

  Check(events && events->Unadvise(c1) == S_OK, "Unadvise");
  Check(events && events->Unadvise(c1) == CONNECT_E_NOCONNECTION, "a second Unadvise of the cookie fails");
  Put(d, L"Value", VI4(12));
  ExpectCalls(sink, {}, "no event after Unadvise");
  if (notify) notify->Unadvise(c2);
  if (events) events->Release();
  if (notify) notify->Release();
  if (sink.info) sink.info->Release();
  d->Release();
}

void NotifyIds(const wchar_t* progid, const IID& events_iid,
               std::vector<std::pair<const wchar_t*, VARIANT>> puts, std::vector<DISPID> want) {
  IDispatch* d = CreateNew(progid);
  Check(d != nullptr, Narrow(progid) + " created");
  if (!d) return;
  Sink sink(events_iid);
  IConnectionPoint* notify = nullptr;
  DWORD cookie = Connect(d, IID_IPropertyNotifySink, static_cast<IDispatch*>(&sink), &notify);
  for (auto& [name, v] : puts) Put(d, name, v, name == std::wstring(L"Font") ? DISPATCH_PROPERTYPUTREF : DISPATCH_PROPERTYPUT);
  ExpectChanged(sink, want, Narrow(progid));
  ExpectCalls(sink, {}, Narrow(progid) + " raises no event for these");
  if (notify) {
    notify->Unadvise(cookie);
    notify->Release();
  }
  d->Release();
}

}  // namespace

int main() {
  CoInitialize(nullptr);
  MiniSliderEvents();
  IDispatch* font = nullptr;
  FONTDESC fd{sizeof(FONTDESC), const_cast<LPOLESTR>(L"Arial"), {{100000, 0}}, 400, 0, FALSE, FALSE, FALSE};
  OleCreateFontIndirect(&fd, IID_IDispatch, reinterpret_cast<void**>(&font));
  NotifyIds(L"KorvelUI99.KorvelLink", DIID___KorvelLink,
            {{L"Caption", VStr(L"a")}, {L"URL", VStr(L"b")}, {L"Enabled", VBool(false)}, {L"ForeColor", VI4(1)},
             {L"BackColor", VI4(2)}, {L"Font", VDisp(font)}, {L"HoverColor", VI4(3)}},
            {1, 0, 2, 3, 4, 5, 6});
  NotifyIds(L"KorvelUI99.KorvelDivider", DIID___KorvelDivider,
            {{L"Caption", VStr(L"a")}, {L"Default_", VStr(L"b")}, {L"Font", VDisp(font)}}, {1, 1, 2});
  NotifyIds(L"KorvelUI99.KorvelBar", DIID___KorvelBar, {{L"Value", VI2(5)}}, {0});
  if (font) font->Release();
  CoUninitialize();
  return Summary();
}
