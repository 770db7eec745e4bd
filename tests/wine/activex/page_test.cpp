// The toolbar's Buttons page through IPropertyPage: its page information, loading
// the selected toolbar through Customize, the fields mirrored by real controls,
// typing into the key box marking the page dirty for the page site, Apply writing
// the list back to the toolbar, and the Add button.
#include "ax_site.h"

using namespace axtest;

namespace {

class PageSite : public IPropertyPageSite {
 public:
  std::vector<DWORD> status;
  STDMETHODIMP QueryInterface(REFIID riid, void** out) override {
    if (IsEqualIID(riid, IID_IUnknown) || IsEqualIID(riid, IID_IPropertyPageSite)) {
      *out = static_cast<IPropertyPageSite*>(this);
      return S_OK;
    }
    *out = nullptr;
    return E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return 2; }
  STDMETHODIMP_(ULONG) Release() override { return 1; }
  STDMETHODIMP OnStatusChange(DWORD flags) override {
    status.push_back(flags);
    return S_OK;
  }
  STDMETHODIMP GetLocaleID(LCID* lcid) override { *lcid = LOCALE_USER_DEFAULT; return S_OK; }
  STDMETHODIMP GetPageContainer(IUnknown** out) override { *out = nullptr; return E_NOTIMPL; }
  STDMETHODIMP TranslateAccelerator(MSG*) override { return S_FALSE; }
};

std::vector<HWND> Children(HWND parent, const wchar_t* cls) {
  std::vector<HWND> out;
  for (HWND c = GetWindow(parent, GW_CHILD); c; c = GetWindow(c, GW_HWNDNEXT)) {
    wchar_t name[64] = {};
    GetClassNameW(c, name, 64);
    if (_wcsicmp(name, cls) == 0) out.push_back(c);
  }
  return out;
}

std::wstring Text(HWND w) {
  wchar_t buf[256] = {};
  GetWindowTextW(w, buf, 256);
  return buf;
}

std::string Keys(IDispatch* toolbar) {
  Bag bag;
  IPersistPropertyBag* p = nullptr;
  toolbar->QueryInterface(IID_IPersistPropertyBag, reinterpret_cast<void**>(&p));
  if (!p) return "(no bag)";
  p->Save(&bag, FALSE, TRUE);
  p->Release();
  std::string s;
  for (auto& i : bag.items)
    if (i.first.find(L"_Key") != std::wstring::npos && V_VT(&i.second) == VT_BSTR)
      s += (s.empty() ? "" : " ") + Narrow(V_BSTR(&i.second));
  return s;
}

}  // namespace

int main() {
  OleInitialize(nullptr);
  // A toolbar with two buttons, loaded at design time.
  Site site;
  site.user_mode = false;
  IDispatch* tb = Create(L"KorvelUI99.KorvelToolbar");
  IOleObject* ole = nullptr;
  if (tb) tb->QueryInterface(IID_IOleObject, reinterpret_cast<void**>(&ole));
  if (ole) ole->SetClientSite(&site);
  Bag load;
  VARIANT v = VI2(2);
  load.Write(L"ButtonCount", &v);
  VariantClear(&v);
  v = VStr(L"a");
  load.Write(L"Button1_Key", &v);
  VariantClear(&v);
  v = VStr(L"b");
  load.Write(L"Button2_Key", &v);
  VariantClear(&v);
  IPersistPropertyBag* pb = nullptr;
  if (tb) tb->QueryInterface(IID_IPersistPropertyBag, reinterpret_cast<void**>(&pb));
  Check(pb && pb->Load(&load, nullptr) == S_OK && Keys(tb) == "a b", "a toolbar with the buttons a and b");
  if (pb) pb->Release();

  IPropertyPage* page = nullptr;
  HRESULT hr = CoCreateInstance(CLSID_ktButtons, nullptr, CLSCTX_INPROC_SERVER, IID_IPropertyPage, reinterpret_cast<void**>(&page));
  Check(SUCCEEDED(hr) && page, "the Buttons page created by its class identifier (" + Hex(hr) + ")");
  if (!page || !tb) return Summary();
  PROPPAGEINFO info{};
  Check(page->GetPageInfo(&info) == S_OK && info.pszTitle && std::wstring(info.pszTitle) == L"Buttons" &&
            info.size.cx == 340 && info.size.cy == 200,
        "GetPageInfo: \"Buttons\", 340 x 200");
  CoTaskMemFree(info.pszTitle);
  PageSite page_site;
  page->SetPageSite(&page_site);
  IUnknown* object = tb;
  Check(page->SetObjects(1, &object) == S_OK, "SetObjects with the toolbar");

  WNDCLASSW wc{};
  wc.lpfnWndProc = DefWindowProcW;
  wc.hInstance = GetModuleHandleW(nullptr);
  wc.lpszClassName = L"KorvelTestFrame";
  RegisterClassW(&wc);
  HWND frame = CreateWindowExW(0, wc.lpszClassName, L"frame", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 400, 300, nullptr,
                               nullptr, wc.hInstance, nullptr);
  RECT rc{0, 0, 340, 200};
  Check(page->Activate(frame, &rc, FALSE) == S_OK && page->Show(SW_SHOW) == S_OK, "Activate and Show on a frame window");
  HWND pw = GetWindow(frame, GW_CHILD);
  std::vector<HWND> edits = pw ? Children(pw, L"Edit") : std::vector<HWND>{};
  std::vector<HWND> buttons = pw ? Children(pw, L"Button") : std::vector<HWND>{};
  Check(edits.size() == 3, "three edit boxes: key, tool tip and width (got " + std::to_string(edits.size()) + ")");
  Check(edits.size() == 3 && Text(edits[0]) == L"a", "the key box shows the first button's key");
  Check(page->IsPageDirty() == S_FALSE, "the page is not dirty after loading");
  if (edits.size() == 3) SetWindowTextW(edits[0], L"first");
  Check(page->IsPageDirty() == S_OK, "typing into the key box makes the page dirty");
  Check(!page_site.status.empty() && page_site.status.back() == (PROPPAGESTATUS_DIRTY | PROPPAGESTATUS_VALIDATE),
        "the page site hears of it");
  const HRESULT applied = page->Apply();
  const std::string keys = Keys(tb);
  Check(applied == S_OK && keys == "first b", "Apply writes the list back to the toolbar: " + keys);
  Check(page->IsPageDirty() == S_FALSE, "the page is clean after Apply");

  HWND add = nullptr;
  for (HWND b : buttons)
    if (Text(b) == L"&Add") add = b;
  Check(add != nullptr, "the Add button");
  if (add && edits.size() == 3) {
    SendMessageW(add, BM_CLICK, 0, 0);
    Check(Text(edits[0]).empty(), "after Add the key box is empty");
    SetWindowTextW(edits[0], L"c");
    const HRESULT applied = page->Apply();
    const std::string keys = Keys(tb);
    // With the first item current, the page puts the new item in front of it.
    Check(applied == S_OK && keys == "c first b", "Add, a key and Apply give a third button in front: " + keys);
  }
  Check(page->Deactivate() == S_OK && !IsWindow(pw), "Deactivate removes the page window");
  page->SetObjects(0, nullptr);
  page->SetPageSite(nullptr);
  page->Release();
  DestroyWindow(frame);
  if (ole) {
    ole->SetClientSite(nullptr);
    ole->Release();
  }
  tb->Release();
  OleUninitialize();
  return Summary();
}
