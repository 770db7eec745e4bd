// Korvel headers come before the platform's (they define the platform's constants).
#include "framework/errors.h"
#include "framework/form.h"
#include "activex/ole_page.h"

#include <new>

#include "activex/ole_control.h"

#include <commctrl.h>

namespace korvel::activex {

Platform& ServerPlatform();

// ---- the selected objects ----

DispatchAutomation::DispatchAutomation(IDispatch* object, ObjectBridge& bridge) : object_(object), bridge_(bridge) {
  object_->AddRef();
}

DispatchAutomation::~DispatchAutomation() { object_->Release(); }

Variant DispatchAutomation::Invoke(const std::string& name, InvokeKind kind, std::vector<Variant>& args) {
  std::wstring w = Widen(name);
  LPOLESTR n = w.data();
  DISPID id = DISPID_UNKNOWN;
  if (FAILED(object_->GetIDsOfNames(IID_NULL, &n, 1, LOCALE_USER_DEFAULT, &id))) throw RuntimeError(kErrNoSuchMember);
  WORD flags = DISPATCH_METHOD;
  switch (kind) {
    case InvokeKind::PropertyGet: flags = DISPATCH_PROPERTYGET; break;
    case InvokeKind::PropertyPut: flags = DISPATCH_PROPERTYPUT; break;
    case InvokeKind::PropertyPutRef: flags = DISPATCH_PROPERTYPUTREF; break;
    default: break;
  }
  const size_t count = args.size();
  std::vector<VARIANT> values(count), passed(count);
  for (size_t i = 0; i < count; ++i) {
    bridge_.ToOle(args[i], &values[i]);
    VariantInit(&passed[count - 1 - i]);
    V_VT(&passed[count - 1 - i]) = VT_BYREF | VT_VARIANT;
    V_VARIANTREF(&passed[count - 1 - i]) = &values[i];
  }
  DISPID put = DISPID_PROPERTYPUT;
  DISPPARAMS dp{passed.empty() ? nullptr : passed.data(), nullptr, static_cast<UINT>(count), 0};
  if (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) {
    dp.rgdispidNamedArgs = &put;
    dp.cNamedArgs = 1;
  }
  VARIANT result;
  VariantInit(&result);
  EXCEPINFO excep{};
  const HRESULT hr = object_->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &dp,
                                     flags == DISPATCH_METHOD || flags == DISPATCH_PROPERTYGET ? &result : nullptr,
                                     &excep, nullptr);
  auto clear = [&] {
    for (auto& v : values) VariantClear(&v);
    VariantClear(&result);
    SysFreeString(excep.bstrSource);
    SysFreeString(excep.bstrHelpFile);
  };
  if (FAILED(hr)) {
    std::string description = excep.bstrDescription ? Narrow(excep.bstrDescription) : std::string();
    SysFreeString(excep.bstrDescription);
    excep.bstrDescription = nullptr;
    const std::int32_t number = hr == DISP_E_EXCEPTION      ? static_cast<std::int32_t>(excep.scode & 0xFFFF)
                                : hr == DISP_E_TYPEMISMATCH ? kErrTypeMismatch
                                : hr == DISP_E_MEMBERNOTFOUND ? kErrNoSuchMember
                                                              : 5;
    clear();
    if (description.empty()) throw RuntimeError(number);
    throw RuntimeError(number, description);
  }
  SysFreeString(excep.bstrDescription);
  Variant out;
  try {
    for (size_t i = 0; i < count; ++i) args[i] = bridge_.FromOle(values[i]);
    out = bridge_.FromOle(result);
  } catch (...) {
    clear();
    throw;
  }
  clear();
  return out;
}

// ---- the page's host: design time, message boxes on the page window ----

class PageHost : public Host {
 public:
  HWND window = nullptr;
  bool UserMode() override { return false; }
  FontRef AmbientFont() override { return std::make_shared<Font>("MS Sans Serif", 8.25); }
  OleColor AmbientBackColor() override { return 0x8000000F; }
  OleColor AmbientForeColor() override { return 0x80000012; }
  std::string AmbientDisplayName() override { return {}; }
  std::string ExtenderName() override { return {}; }
  bool ExtenderVisible() override { return true; }
  void SetExtenderVisible(bool) override {}
  std::int32_t ExtenderAlign() override { return 0; }
  void SetExtenderAlign(std::int32_t) override {}
  bool ExtenderEnabled() override { return true; }
  void SetExtenderEnabled(bool) override {}
  Hwnd ParentWindow() override { return reinterpret_cast<Hwnd>(window); }
  void PropertyChanged(const std::string&) override {}
  void RaiseEvent(const std::string&, std::vector<Variant>&) override {}
  void SetControlSize(std::int32_t, std::int32_t) override {}
  std::int32_t MsgBox(const std::string& prompt, std::int32_t buttons, const std::string& title) override {
    std::wstring p = Widen(prompt), t = Widen(title);
    return MessageBoxW(window, p.c_str(), t.c_str(), static_cast<UINT>(buttons));
  }
  void ShowModal(Form& form) override { form.Unload(); }
};

// ---- the page window ----

namespace {

constexpr wchar_t kPageClass[] = L"KorvelPropertyPage";
constexpr int kFirstId = 1000;

LRESULT CALLBACK PageProc(HWND wnd, UINT msg, WPARAM wp, LPARAM lp) {
  try {
    if (msg == WM_NCCREATE)
      SetWindowLongPtrW(wnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(reinterpret_cast<CREATESTRUCTW*>(lp)->lpCreateParams));
    if (msg == WM_COMMAND) {
      if (auto* page = reinterpret_cast<OlePage*>(GetWindowLongPtrW(wnd, GWLP_USERDATA))) {
        page->OnCommand(LOWORD(wp), HIWORD(wp));
        return 0;
      }
    }
  } catch (...) {
  }
  return DefWindowProcW(wnd, msg, wp, lp);
}

void RegisterPageClass() {
  static bool done = false;
  if (done) return;
  WNDCLASSW wc{};
  wc.lpfnWndProc = PageProc;
  wc.hInstance = ServerModule();
  wc.hCursor = LoadCursor(nullptr, IDC_ARROW);
  wc.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
  wc.lpszClassName = kPageClass;
  RegisterClassW(&wc);
  done = true;
}

std::wstring WindowText(HWND w) {
  const int n = GetWindowTextLengthW(w);
  std::wstring s(static_cast<size_t>(n) + 1, L'\0');
  GetWindowTextW(w, s.data(), n + 1);
  s.resize(static_cast<size_t>(n));
  return s;
}

void SetTextIfDifferent(HWND w, const std::string& text) {
  const std::wstring t = Widen(text);
  if (WindowText(w) != t) SetWindowTextW(w, t.c_str());
}

}  // namespace

// ---- the page object ----

OlePage::OlePage(const ClassInfo& cls) : cls_(cls) { ServerLock(); }

OlePage::~OlePage() {
  Deactivate();
  if (site_) site_->Release();
  objects_.clear();
  page_.reset();
  ServerUnlock();
}

HRESULT OlePage::Create(const ClassInfo& cls, IUnknown* outer, REFIID riid, void** out) {
  if (!out) return E_POINTER;
  *out = nullptr;
  if (outer) return CLASS_E_NOAGGREGATION;
  if (!cls.create_page) return E_UNEXPECTED;
  OlePage* obj = new (std::nothrow) OlePage(cls);
  if (!obj) return E_OUTOFMEMORY;
  HRESULT hr = S_OK;
  try {
    obj->host_ = std::make_unique<PageHost>();
    obj->page_ = cls.create_page(*obj->host_, ServerPlatform());
    obj->page_->on_status_change = [obj](bool changed) {
      if (changed && obj->site_) obj->site_->OnStatusChange(PROPPAGESTATUS_DIRTY | PROPPAGESTATUS_VALIDATE);
    };
  } catch (...) {
    hr = E_FAIL;
  }
  if (SUCCEEDED(hr)) hr = obj->QueryInterface(riid, out);
  obj->Release();
  return hr;
}

STDMETHODIMP OlePage::QueryInterface(REFIID riid, void** out) {
  if (!out) return E_POINTER;
  if (IsEqualIID(riid, IID_IUnknown) || IsEqualIID(riid, IID_IPropertyPage)) {
    *out = static_cast<IPropertyPage*>(this);
    AddRef();
    return S_OK;
  }
  *out = nullptr;
  return E_NOINTERFACE;
}

STDMETHODIMP_(ULONG) OlePage::AddRef() { return static_cast<ULONG>(InterlockedIncrement(&refs_)); }

STDMETHODIMP_(ULONG) OlePage::Release() {
  LONG n = InterlockedDecrement(&refs_);
  if (n == 0) delete this;
  return static_cast<ULONG>(n);
}

STDMETHODIMP OlePage::SetPageSite(IPropertyPageSite* site) {
  if (site_) site_->Release();
  site_ = site;
  if (site_) site_->AddRef();
  return S_OK;
}

STDMETHODIMP OlePage::Activate(HWND parent, LPCRECT rect, BOOL) {
  if (!rect) return E_POINTER;
  if (window_) return E_UNEXPECTED;
  try {
    RegisterPageClass();
    window_ = CreateWindowExW(WS_EX_CONTROLPARENT, kPageClass, L"", WS_CHILD | WS_CLIPCHILDREN, rect->left, rect->top,
                              rect->right - rect->left, rect->bottom - rect->top, parent, nullptr, ServerModule(), this);
    if (!window_) return E_FAIL;
    host_->window = window_;
    font_ = static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT));
    const auto& fields = page_->Fields();
    for (size_t i = 0; i < fields.size(); ++i) {
      const PageFieldInfo info = Describe(fields[i]);
      const wchar_t* cls = L"STATIC";
      DWORD style = WS_CHILD | WS_VISIBLE;
      DWORD ex = 0;
      if (info.kind == "Frame") {
        cls = L"BUTTON";
        style |= BS_GROUPBOX;
      } else if (info.kind == "TextBox") {
        cls = L"EDIT";
        style |= WS_TABSTOP | ES_AUTOHSCROLL;
        ex = WS_EX_CLIENTEDGE;
      } else if (info.kind == "ComboBox") {
        cls = L"COMBOBOX";
        style |= WS_TABSTOP | CBS_DROPDOWNLIST | WS_VSCROLL;
      } else if (info.kind == "CheckBox") {
        cls = L"BUTTON";
        style |= WS_TABSTOP | BS_CHECKBOX;
      } else if (info.kind == "CommandButton") {
        cls = L"BUTTON";
        style |= WS_TABSTOP | BS_PUSHBUTTON;
      }
      const int h = info.kind == "ComboBox" ? 160 : info.rect.bottom - info.rect.top;
      HWND c = CreateWindowExW(ex, cls, L"", style, info.rect.left, info.rect.top, info.rect.right - info.rect.left, h,
                               window_, reinterpret_cast<HMENU>(static_cast<INT_PTR>(kFirstId + i)), ServerModule(), nullptr);
      if (c) SendMessageW(c, WM_SETFONT, reinterpret_cast<WPARAM>(font_), FALSE);
      controls_.push_back(c);
    }
    Sync();
    return S_OK;
  } catch (...) {
    return E_FAIL;
  }
}

STDMETHODIMP OlePage::Deactivate() {
  if (window_) DestroyWindow(window_);
  window_ = nullptr;
  host_->window = nullptr;
  controls_.clear();
  return S_OK;
}

STDMETHODIMP OlePage::GetPageInfo(PROPPAGEINFO* info) {
  if (!info) return E_POINTER;
  const std::wstring title = Widen(page_->Caption());
  info->cb = sizeof *info;
  info->pszTitle = static_cast<LPOLESTR>(CoTaskMemAlloc((title.size() + 1) * sizeof(wchar_t)));
  if (info->pszTitle) wcscpy(info->pszTitle, title.c_str());
  info->size.cx = page_->surface().Width();
  info->size.cy = page_->surface().Height();
  info->pszDocString = nullptr;
  info->pszHelpFile = nullptr;
  info->dwHelpContext = 0;
  return S_OK;
}

STDMETHODIMP OlePage::SetObjects(ULONG count, IUnknown** objects) {
  if (count && !objects) return E_POINTER;
  try {
    std::vector<std::unique_ptr<DispatchAutomation>> next;
    for (ULONG i = 0; i < count; ++i) {
      IDispatch* d = nullptr;
      if (objects[i] && SUCCEEDED(objects[i]->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&d))) && d) {
        next.push_back(std::make_unique<DispatchAutomation>(d, bridge_));
        d->Release();
      }
    }
    objects_ = std::move(next);
    std::vector<Automation*> selected;
    for (auto& o : objects_) selected.push_back(o.get());
    // An empty selection (the frame closing) only drops the objects.
    if (!selected.empty()) page_->SetSelectedControls(selected);
    if (window_) Sync();
    return S_OK;
  } catch (...) {
    return E_FAIL;
  }
}

STDMETHODIMP OlePage::Show(UINT cmd) {
  if (!window_) return E_UNEXPECTED;
  ShowWindow(window_, static_cast<int>(cmd));
  return S_OK;
}

STDMETHODIMP OlePage::Move(LPCRECT rect) {
  if (!rect) return E_POINTER;
  if (!window_) return E_UNEXPECTED;
  MoveWindow(window_, rect->left, rect->top, rect->right - rect->left, rect->bottom - rect->top, TRUE);
  return S_OK;
}

STDMETHODIMP OlePage::IsPageDirty() { return page_->Changed() ? S_OK : S_FALSE; }

STDMETHODIMP OlePage::Apply() {
  try {
    page_->Apply();
    if (window_) Sync();
    return S_OK;
  } catch (...) {
    return E_FAIL;
  }
}

STDMETHODIMP OlePage::Help(LPCOLESTR) { return E_NOTIMPL; }

STDMETHODIMP OlePage::TranslateAccelerator(MSG* msg) {
  if (!msg || !window_) return S_FALSE;
  return IsDialogMessageW(window_, msg) ? S_OK : S_FALSE;
}

void OlePage::Sync() {
  syncing_ = true;
  const auto& fields = page_->Fields();
  for (size_t i = 0; i < fields.size() && i < controls_.size(); ++i) {
    HWND c = controls_[i];
    if (!c) continue;
    const PageFieldInfo info = Describe(fields[i]);
    EnableWindow(c, info.enabled);
    if (auto* const* combo = std::get_if<ComboBox*>(&fields[i])) {
      const ComboBox& cb = **combo;
      const auto n = static_cast<std::int32_t>(SendMessageW(c, CB_GETCOUNT, 0, 0));
      bool same = n == cb.ListCount();
      for (std::int32_t k = 0; same && k < n; ++k) {
        wchar_t buf[256] = {};
        SendMessageW(c, CB_GETLBTEXT, static_cast<WPARAM>(k), reinterpret_cast<LPARAM>(buf));
        same = Widen(cb.List(k)) == buf;
      }
      if (!same) {
        SendMessageW(c, CB_RESETCONTENT, 0, 0);
        for (std::int32_t k = 0; k < cb.ListCount(); ++k) {
          std::wstring item = Widen(cb.List(k));
          SendMessageW(c, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(item.c_str()));
        }
      }
      SendMessageW(c, CB_SETCURSEL, static_cast<WPARAM>(cb.ListIndex()), 0);
    } else if (auto* const* check = std::get_if<CheckBox*>(&fields[i])) {
      SetTextIfDifferent(c, info.caption);
      const std::int16_t v = (*check)->Value();
      SendMessageW(c, BM_SETCHECK, v == vbChecked ? BST_CHECKED : v == vbGrayed ? BST_INDETERMINATE : BST_UNCHECKED, 0);
    } else {
      SetTextIfDifferent(c, info.caption);
    }
  }
  syncing_ = false;
}

void OlePage::OnCommand(int id, int code) {
  if (syncing_) return;
  const auto& fields = page_->Fields();
  const int i = id - kFirstId;
  if (i < 0 || static_cast<size_t>(i) >= fields.size() || static_cast<size_t>(i) >= controls_.size()) return;
  HWND c = controls_[static_cast<size_t>(i)];
  const PageField& f = fields[static_cast<size_t>(i)];
  if (auto* const* text = std::get_if<TextBox*>(&f)) {
    if (code != EN_CHANGE) return;
    (*text)->SetText(Narrow(WindowText(c).c_str()));
  } else if (auto* const* combo = std::get_if<ComboBox*>(&f)) {
    if (code != CBN_SELCHANGE) return;
    (*combo)->Choose(static_cast<std::int32_t>(SendMessageW(c, CB_GETCURSEL, 0, 0)));
  } else if (auto* const* check = std::get_if<CheckBox*>(&f)) {
    if (code != BN_CLICKED) return;
    (*check)->Toggle();
  } else if (auto* const* button = std::get_if<CommandButton*>(&f)) {
    if (code != BN_CLICKED || !(*button)->on_click) return;
    (*button)->on_click();
  } else {
    return;
  }
  Sync();
}

}  // namespace korvel::activex
