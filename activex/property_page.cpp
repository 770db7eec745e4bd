// Korvel headers come before the platform's (they define the platform's constants).
#include "activex/property_page.h"

#include <cstring>
#include <type_traits>

#include "activex/ole_control.h"
#include "framework/errors.h"

namespace korvel::activex {

Platform& ServerPlatform();

namespace {

template <class... F>
struct Overloaded : F... {
  using F::operator()...;
};
template <class... F>
Overloaded(F...) -> Overloaded<F...>;

// ---------------------------------------------------------------------------
// Late binding through IDispatch
// ---------------------------------------------------------------------------

WORD DispatchFlags(InvokeKind kind) {
  switch (kind) {
    case InvokeKind::Method: return DISPATCH_METHOD;
    case InvokeKind::PropertyGet: return DISPATCH_PROPERTYGET;
    case InvokeKind::PropertyPut: return DISPATCH_PROPERTYPUT;
    case InvokeKind::PropertyPutRef: return DISPATCH_PROPERTYPUTREF;
  }
  return DISPATCH_METHOD;
}

// The platform type of a core value that is not an array.
VARTYPE NaturalType(VarType t) {
  switch (t) {
    case VarType::Integer: return VT_I2;
    case VarType::Long: return VT_I4;
    case VarType::Single: return VT_R4;
    case VarType::Double: return VT_R8;
    case VarType::String: return VT_BSTR;
    case VarType::Boolean: return VT_BOOL;
    case VarType::Font:
    case VarType::Picture: return VT_DISPATCH;
    default: return VT_VARIANT;
  }
}

// The element type an undeclared array goes as: the type its items share, or
// VARIANT when they differ or there are none.
VARTYPE ElementTypeOf(const Variant& v) {
  const VariantArray& a = v.ToArray();
  if (a.items.empty()) return VT_VARIANT;
  const VarType first = a.items.front().Type();
  for (const Variant& item : a.items)
    if (item.Type() != first) return VT_VARIANT;
  return NaturalType(first);
}

// The run-time error a failed Invoke stands for.
RuntimeError ErrorOf(HRESULT hr, EXCEPINFO& excep) {
  if (hr == DISP_E_EXCEPTION) {
    if (excep.pfnDeferredFillIn) excep.pfnDeferredFillIn(&excep);
    std::int32_t number = 440;  // Automation error
    if (excep.wCode)
      number = excep.wCode;
    else if (HRESULT_FACILITY(excep.scode) == FACILITY_CONTROL)
      number = HRESULT_CODE(excep.scode);
    std::string text = excep.bstrDescription
                           ? Narrow(excep.bstrDescription, static_cast<int>(SysStringLen(excep.bstrDescription)))
                           : std::string();
    if (text.empty()) text = number == 440 ? "Automation error" : ErrorText(number);
    return RuntimeError(number, text);
  }
  switch (hr) {
    case DISP_E_MEMBERNOTFOUND:
    case DISP_E_UNKNOWNNAME: return RuntimeError(kErrNoSuchMember);
    case DISP_E_TYPEMISMATCH: return RuntimeError(kErrTypeMismatch);
    case DISP_E_OVERFLOW: return RuntimeError(kErrOverflow);
    case DISP_E_PARAMNOTFOUND:
    case DISP_E_PARAMNOTOPTIONAL: return RuntimeError(kErrArgumentNotOptional);
    case DISP_E_BADPARAMCOUNT: return RuntimeError(kErrWrongArgumentCount);
    default: return RuntimeError(440, "Automation error");
  }
}

// The VARIANTs of one call: they own what the arguments hold and free it at the end.
struct CallArgs {
  explicit CallArgs(size_t n) : values(n), passed(n) {
    for (auto& v : values) VariantInit(&v);
    for (auto& v : passed) VariantInit(&v);
  }
  ~CallArgs() {
    for (auto& v : values) VariantClear(&v);
    // passed holds references to values, or shallow copies of them: nothing of its own.
  }
  CallArgs(const CallArgs&) = delete;
  CallArgs& operator=(const CallArgs&) = delete;
  std::vector<VARIANT> values;  // in declaration order
  std::vector<VARIANT> passed;  // what the callee receives, in declaration order
};

}  // namespace

DispatchAutomation::DispatchAutomation(IDispatch* object) : object_(object) {
  if (object_) object_->AddRef();
}

DispatchAutomation::~DispatchAutomation() {
  members_.reset();
  if (object_) object_->Release();
}

const Member* DispatchAutomation::Describe(DISPID id, InvokeKind kind) {
  if (!types_read_) {
    types_read_ = true;
    UINT count = 0;
    ITypeInfo* info = nullptr;
    if (SUCCEEDED(object_->GetTypeInfoCount(&count)) && count > 0 &&
        SUCCEEDED(object_->GetTypeInfo(0, LOCALE_USER_DEFAULT, &info)) && info) {
      // A dual interface is read on its interface side, where by-reference
      // parameters and return values keep their declared form.
      TYPEATTR* attr = nullptr;
      if (SUCCEEDED(info->GetTypeAttr(&attr)) && attr) {
        const bool dual = attr->typekind == TKIND_DISPATCH && (attr->wTypeFlags & TYPEFLAG_FDUAL);
        info->ReleaseTypeAttr(attr);
        HREFTYPE ref = 0;
        ITypeInfo* side = nullptr;
        if (dual && SUCCEEDED(info->GetRefTypeOfImplType(static_cast<UINT>(-1), &ref)) &&
            SUCCEEDED(info->GetRefTypeInfo(ref, &side)) && side) {
          info->Release();
          info = side;
        }
      }
      members_ = std::make_unique<TypeMembers>(info);
      info->Release();
    }
  }
  return members_ ? members_->Find(id, DispatchFlags(kind)) : nullptr;
}

Variant DispatchAutomation::Invoke(const std::string& name, InvokeKind kind, std::vector<Variant>& args) {
  if (!object_) throw RuntimeError(kErrNoSuchMember);
  std::wstring wname = Widen(name);
  LPOLESTR names[] = {wname.data()};
  DISPID id = DISPID_UNKNOWN;
  if (FAILED(object_->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id)))
    throw RuntimeError(kErrNoSuchMember);

  const Member* member = Describe(id, kind);
  std::vector<const MemberParam*> declared;
  if (member)
    for (const MemberParam& p : member->params)
      if (!p.retval) declared.push_back(&p);

  const size_t n = args.size();
  const bool put = kind == InvokeKind::PropertyPut || kind == InvokeKind::PropertyPutRef;
  CallArgs call(n);
  std::vector<bool> byref(n, false);
  for (size_t i = 0; i < n; ++i) {
    const MemberParam* p = i < declared.size() ? declared[i] : nullptr;
    VARIANT& value = call.values[i];
    VARIANT& passed = call.passed[i];
    const bool is_put_value = put && i + 1 == n;
    if (p) {
      const VARTYPE want = p->type.vt;
      if (want == VT_SAFEARRAY) {
        Variant array = args[i].IsEmpty() ? Variant::Array({}, 1) : args[i];
        bridge_.ToOle(array, &value, p->type.array_elem ? p->type.array_elem : static_cast<VARTYPE>(VT_VARIANT));
      } else {
        bridge_.ToOle(args[i], &value);
        if ((want == VT_DISPATCH || want == VT_UNKNOWN) && V_VT(&value) == VT_EMPTY) {
          V_VT(&value) = want;
          V_UNKNOWN(&value) = nullptr;
        } else if (want != VT_VARIANT && want != VT_DISPATCH && want != VT_UNKNOWN && V_VT(&value) != want) {
          if (FAILED(VariantChangeType(&value, &value, 0, want))) throw RuntimeError(kErrTypeMismatch);
        }
      }
      byref[i] = p->type.byref && !is_put_value;
      if (byref[i] && want == VT_VARIANT) {
        V_VT(&passed) = VT_BYREF | VT_VARIANT;
        V_VARIANTREF(&passed) = &value;
      } else if (byref[i]) {
        V_VT(&passed) = static_cast<VARTYPE>(VT_BYREF | V_VT(&value));
        V_BYREF(&passed) = &value.bVal;  // every member of the value's union starts here
      } else {
        passed = value;
      }
    } else {
      // Undeclared: a variable of the value's own type, passed by reference.
      if (args[i].Type() == VarType::Array)
        bridge_.ToOle(args[i], &value, ElementTypeOf(args[i]));
      else
        bridge_.ToOle(args[i], &value);
      byref[i] = !is_put_value;
      if (!byref[i]) {
        passed = value;
      } else if (V_VT(&value) == VT_EMPTY) {
        V_VT(&passed) = VT_BYREF | VT_VARIANT;
        V_VARIANTREF(&passed) = &value;
      } else {
        V_VT(&passed) = static_cast<VARTYPE>(VT_BYREF | V_VT(&value));
        V_BYREF(&passed) = &value.bVal;
      }
    }
  }

  // The callee takes its arguments last first.
  std::vector<VARIANT> reversed(call.passed.rbegin(), call.passed.rend());
  DISPID named = DISPID_PROPERTYPUT;
  DISPPARAMS params{};
  params.rgvarg = reversed.empty() ? nullptr : reversed.data();
  params.cArgs = static_cast<UINT>(n);
  if (put && n > 0) {
    params.rgdispidNamedArgs = &named;
    params.cNamedArgs = 1;
  }
  VARIANT result;
  VariantInit(&result);
  EXCEPINFO excep{};
  UINT arg_err = 0;
  HRESULT hr = object_->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DispatchFlags(kind), &params, &result, &excep,
                               &arg_err);
  if (FAILED(hr)) {
    RuntimeError error = ErrorOf(hr, excep);
    SysFreeString(excep.bstrSource);
    SysFreeString(excep.bstrDescription);
    SysFreeString(excep.bstrHelpFile);
    VariantClear(&result);
    throw error;
  }
  SysFreeString(excep.bstrSource);
  SysFreeString(excep.bstrDescription);
  SysFreeString(excep.bstrHelpFile);

  // By-reference arguments come back with what the callee left in them.
  for (size_t i = 0; i < n; ++i) {
    if (!byref[i]) continue;
    try {
      args[i] = bridge_.FromOle(call.values[i]);
    } catch (const RuntimeError&) {
      // A value with no core form leaves the argument as it was.
    }
  }
  Variant r;
  try {
    r = bridge_.FromOle(result);
  } catch (...) {
    VariantClear(&result);
    throw;
  }
  VariantClear(&result);
  return r;
}

// ---------------------------------------------------------------------------
// The page's host
// ---------------------------------------------------------------------------

FontRef PageHost::AmbientFont() {
  if (!font_) font_ = std::make_shared<Font>();
  return font_;
}

std::int32_t PageHost::MsgBox(const std::string& prompt, std::int32_t buttons, const std::string& title) {
  std::wstring p = Widen(prompt), t = Widen(title);
  return MessageBoxW(window_, p.c_str(), t.c_str(), static_cast<UINT>(buttons));
}

// ---------------------------------------------------------------------------
// The page object
// ---------------------------------------------------------------------------

namespace {

constexpr wchar_t kPageClass[] = L"KorvelPropertyPage";
// Room for the drop-down part of a list below its closed box.
constexpr int kDropDownHeight = 120;

LRESULT CALLBACK PageProc(HWND wnd, UINT msg, WPARAM wp, LPARAM lp) {
  if (msg == WM_NCCREATE)
    SetWindowLongPtrW(wnd, GWLP_USERDATA,
                      reinterpret_cast<LONG_PTR>(reinterpret_cast<CREATESTRUCTW*>(lp)->lpCreateParams));
  auto* page = reinterpret_cast<OlePropertyPage*>(GetWindowLongPtrW(wnd, GWLP_USERDATA));
  if (page) return page->OnMessage(wnd, msg, wp, lp);
  return DefWindowProcW(wnd, msg, wp, lp);
}

bool RegisterPageClass() {
  WNDCLASSW existing{};
  if (GetClassInfoW(ServerModule(), kPageClass, &existing)) return true;
  WNDCLASSW wc{};
  wc.lpfnWndProc = PageProc;
  wc.hInstance = ServerModule();
  wc.hCursor = LoadCursor(nullptr, IDC_ARROW);
  wc.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
  wc.lpszClassName = kPageClass;
  return RegisterClassW(&wc) != 0;
}

std::wstring WindowText(HWND wnd) {
  int n = GetWindowTextLengthW(wnd);
  std::wstring s(static_cast<size_t>(n) + 1, L'\0');
  n = GetWindowTextW(wnd, s.data(), n + 1);
  s.resize(static_cast<size_t>(n > 0 ? n : 0));
  return s;
}

void SetTextIfDifferent(HWND wnd, const std::string& text) {
  std::wstring w = Widen(text);
  if (WindowText(wnd) != w) SetWindowTextW(wnd, w.c_str());
}

void SetEnabledIfDifferent(HWND wnd, bool enabled) {
  if ((IsWindowEnabled(wnd) != FALSE) != enabled) EnableWindow(wnd, enabled ? TRUE : FALSE);
}

// The field that holds a focus owner, as the page's focus scope names it.
const void* FocusKey(const PageField& f) {
  return std::visit(
      [](auto* p) -> const void* {
        if constexpr (std::is_base_of_v<FocusableField, std::remove_pointer_t<decltype(p)>>)
          return static_cast<const FocusableField*>(p);
        else
          return nullptr;
      },
      f);
}

// Where the page's focus is: the owner and, for a text box, its selection.
struct FocusState {
  const void* owner = nullptr;
  std::int32_t sel_start = 0, sel_length = 0;
  bool operator==(const FocusState&) const = default;
};

FocusState FocusOf(const PropertyPage& page) {
  FocusState s;
  s.owner = page.FocusOwner();
  for (const PageField& f : page.Fields()) {
    if (FocusKey(f) != s.owner || !s.owner) continue;
    if (auto* const* tb = std::get_if<TextBox*>(&f)) {
      s.sel_start = (*tb)->SelStart();
      s.sel_length = (*tb)->SelLength();
    }
  }
  return s;
}

}  // namespace

OlePropertyPage::OlePropertyPage(const ClassInfo& cls) : cls_(cls) {
  ServerLock();
  page_ = cls_.create_page(host_, ServerPlatform());
  page_->on_status_change = [this](bool changed) {
    if (changed && site_) site_->OnStatusChange(PROPPAGESTATUS_DIRTY);
  };
}

OlePropertyPage::~OlePropertyPage() {
  if (window_) {
    SetWindowLongPtrW(window_, GWLP_USERDATA, 0);
    DestroyWindow(window_);
    window_ = nullptr;
  }
  page_.reset();
  objects_.clear();
  if (site_) site_->Release();
  ServerUnlock();
}

HRESULT OlePropertyPage::Create(const ClassInfo& cls, IUnknown* outer, REFIID riid, void** out) {
  if (!out) return E_POINTER;
  *out = nullptr;
  if (outer) return CLASS_E_NOAGGREGATION;
  if (!cls.create_page) return E_UNEXPECTED;
  OlePropertyPage* obj = nullptr;
  try {
    obj = new OlePropertyPage(cls);
  } catch (...) {
    return E_OUTOFMEMORY;
  }
  HRESULT hr = obj->QueryInterface(riid, out);
  obj->Release();
  return hr;
}

// ---- IUnknown ----

STDMETHODIMP OlePropertyPage::QueryInterface(REFIID riid, void** out) {
  if (!out) return E_POINTER;
  if (IsEqualIID(riid, IID_IUnknown) || IsEqualIID(riid, IID_IPropertyPage)) {
    *out = static_cast<IPropertyPage*>(this);
    AddRef();
    return S_OK;
  }
  *out = nullptr;
  return E_NOINTERFACE;
}

STDMETHODIMP_(ULONG) OlePropertyPage::AddRef() { return static_cast<ULONG>(InterlockedIncrement(&refs_)); }

STDMETHODIMP_(ULONG) OlePropertyPage::Release() {
  LONG n = InterlockedDecrement(&refs_);
  if (n == 0) delete this;
  return static_cast<ULONG>(n);
}

// ---- IPropertyPage ----

STDMETHODIMP OlePropertyPage::SetPageSite(IPropertyPageSite* site) {
  if (site) site->AddRef();
  if (site_) site_->Release();
  site_ = site;
  return S_OK;
}

STDMETHODIMP OlePropertyPage::Activate(HWND parent, LPCRECT rect, BOOL) {
  try {
    if (window_) return E_UNEXPECTED;
    if (!RegisterPageClass()) return E_FAIL;
    RECT r{0, 0, page_->surface().Width(), page_->surface().Height()};
    if (rect) r = *rect;
    window_ = CreateWindowExW(WS_EX_CONTROLPARENT, kPageClass, L"", WS_CHILD, r.left, r.top, r.right - r.left,
                              r.bottom - r.top, parent, nullptr, ServerModule(), this);
    if (!window_) return E_FAIL;
    host_.SetWindow(window_);
    CreateControls();
    SyncControls();
    return S_OK;
  } catch (...) {
    return E_UNEXPECTED;
  }
}

STDMETHODIMP OlePropertyPage::Deactivate() {
  try {
    if (!window_) return E_UNEXPECTED;
    HWND w = window_;
    window_ = nullptr;
    controls_.clear();
    host_.SetWindow(nullptr);
    SetWindowLongPtrW(w, GWLP_USERDATA, 0);
    DestroyWindow(w);
    return S_OK;
  } catch (...) {
    return E_UNEXPECTED;
  }
}

STDMETHODIMP OlePropertyPage::GetPageInfo(PROPPAGEINFO* info) {
  if (!info) return E_POINTER;
  try {
    std::wstring title = Widen(page_->Caption());
    auto* text = static_cast<LPOLESTR>(CoTaskMemAlloc((title.size() + 1) * sizeof(wchar_t)));
    if (!text) return E_OUTOFMEMORY;
    std::memcpy(text, title.c_str(), (title.size() + 1) * sizeof(wchar_t));
    info->cb = sizeof(PROPPAGEINFO);
    info->pszTitle = text;
    info->size.cx = page_->surface().Width();
    info->size.cy = page_->surface().Height();
    info->pszDocString = nullptr;
    info->pszHelpFile = nullptr;
    info->dwHelpContext = 0;
    return S_OK;
  } catch (...) {
    return E_UNEXPECTED;
  }
}

STDMETHODIMP OlePropertyPage::SetObjects(ULONG count, IUnknown** objects) {
  if (count > 0 && !objects) return E_POINTER;
  try {
    std::vector<std::unique_ptr<DispatchAutomation>> adapters;
    std::vector<Automation*> selected;
    for (ULONG i = 0; i < count; ++i) {
      IDispatch* disp = nullptr;
      if (objects[i]) objects[i]->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&disp));
      if (disp) {
        adapters.push_back(std::make_unique<DispatchAutomation>(disp));
        disp->Release();
        selected.push_back(adapters.back().get());
      } else {
        selected.push_back(nullptr);  // an object the page cannot reach
      }
    }
    page_->SetSelectedControls(std::move(selected));
    // The old objects go once the page holds the new ones.
    objects_.swap(adapters);
    SyncControls();
    return S_OK;
  } catch (...) {
    return E_UNEXPECTED;
  }
}

STDMETHODIMP OlePropertyPage::Show(UINT cmd_show) {
  if (!window_) return E_UNEXPECTED;
  ShowWindow(window_, static_cast<int>(cmd_show));
  return S_OK;
}

STDMETHODIMP OlePropertyPage::Move(LPCRECT rect) {
  if (!rect) return E_POINTER;
  if (!window_) return E_UNEXPECTED;
  MoveWindow(window_, rect->left, rect->top, rect->right - rect->left, rect->bottom - rect->top, TRUE);
  return S_OK;
}

STDMETHODIMP OlePropertyPage::IsPageDirty() { return page_->Changed() ? S_OK : S_FALSE; }

STDMETHODIMP OlePropertyPage::Apply() {
  try {
    page_->Apply();
    SyncControls();
    return S_OK;
  } catch (...) {
    return E_UNEXPECTED;
  }
}

STDMETHODIMP OlePropertyPage::Help(LPCOLESTR) { return E_NOTIMPL; }

STDMETHODIMP OlePropertyPage::TranslateAccelerator(MSG* msg) {
  if (!msg) return E_POINTER;
  try {
    // Keys for the page's controls: tab, arrows and mnemonics move among them.
    if (!window_ || msg->message < WM_KEYFIRST || msg->message > WM_KEYLAST) return S_FALSE;
    if (msg->hwnd != window_ && !IsChild(window_, msg->hwnd)) return S_FALSE;
    return IsDialogMessageW(window_, msg) ? S_OK : S_FALSE;
  } catch (...) {
    return E_UNEXPECTED;
  }
}

// ---- the page window ----

void OlePropertyPage::CreateControls() {
  font_ = static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT));
  controls_.clear();
  const std::vector<PageField>& fields = page_->Fields();
  for (size_t i = 0; i < fields.size(); ++i) {
    const PageFieldInfo d = korvel::Describe(fields[i]);
    const wchar_t* cls = L"STATIC";
    DWORD style = WS_CHILD | WS_VISIBLE;
    DWORD ex_style = 0;
    int height = d.rect.bottom - d.rect.top;
    std::string text = d.caption;
    std::visit(Overloaded{
                   [&](Label* f) {
                     cls = L"STATIC";
                     if (f->alignment == DT_CENTER)
                       style |= SS_CENTER;
                     else if (f->alignment == DT_RIGHT)
                       style |= SS_RIGHT;
                     else
                       style |= f->word_wrap ? SS_LEFT : SS_LEFTNOWORDWRAP;
                   },
                   [&](Frame*) {
                     cls = L"BUTTON";
                     style |= BS_GROUPBOX;
                   },
                   [&](TextBox*) {
                     cls = L"EDIT";
                     style |= ES_AUTOHSCROLL | WS_TABSTOP;
                     ex_style |= WS_EX_CLIENTEDGE;
                   },
                   [&](ComboBox*) {
                     cls = L"COMBOBOX";
                     style |= CBS_DROPDOWNLIST | WS_VSCROLL | WS_TABSTOP;
                     height += kDropDownHeight;
                     text.clear();
                   },
                   [&](CheckBox*) {
                     cls = L"BUTTON";
                     style |= BS_AUTOCHECKBOX | WS_TABSTOP;
                   },
                   [&](CommandButton* f) {
                     cls = L"BUTTON";
                     style |= (f->is_default ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON) | WS_TABSTOP;
                   },
               },
               fields[i]);
    if (!d.enabled) style |= WS_DISABLED;
    std::wstring wtext = Widen(text);
    HWND c = CreateWindowExW(ex_style, cls, wtext.c_str(), style, d.rect.left, d.rect.top, d.rect.right - d.rect.left,
                             height, window_, reinterpret_cast<HMENU>(static_cast<INT_PTR>(kFirstFieldId + i)),
                             ServerModule(), nullptr);
    controls_.push_back(c);
    if (!c) continue;
    SendMessageW(c, WM_SETFONT, reinterpret_cast<WPARAM>(font_), FALSE);
  }
}

void OlePropertyPage::SyncControls() {
  if (!window_) return;
  // The controls' own notifications while they are set are not the user's.
  struct Syncing {
    bool& flag;
    explicit Syncing(bool& f) : flag(f) { flag = true; }
    ~Syncing() { flag = false; }
  } syncing(syncing_);
  const std::vector<PageField>& fields = page_->Fields();
  for (size_t i = 0; i < fields.size() && i < controls_.size(); ++i) {
    HWND c = controls_[i];
    if (!c) continue;
    std::visit(Overloaded{
                   [&](Label* f) { SetTextIfDifferent(c, f->caption); },
                   [&](Frame* f) { SetTextIfDifferent(c, f->caption); },
                   [&](TextBox* f) {
                     SetTextIfDifferent(c, f->Text());
                     SetEnabledIfDifferent(c, f->Enabled());
                   },
                   [&](ComboBox* f) {
                     // The items, when the list's items differ from the field's.
                     bool same = SendMessageW(c, CB_GETCOUNT, 0, 0) == f->ListCount();
                     for (std::int32_t k = 0; same && k < f->ListCount(); ++k) {
                       LRESULT len = SendMessageW(c, CB_GETLBTEXTLEN, static_cast<WPARAM>(k), 0);
                       std::wstring item(static_cast<size_t>(len > 0 ? len : 0) + 1, L'\0');
                       SendMessageW(c, CB_GETLBTEXT, static_cast<WPARAM>(k), reinterpret_cast<LPARAM>(item.data()));
                       item.resize(static_cast<size_t>(len > 0 ? len : 0));
                       same = item == Widen(f->List(k));
                     }
                     if (!same) {
                       SendMessageW(c, CB_RESETCONTENT, 0, 0);
                       for (std::int32_t k = 0; k < f->ListCount(); ++k) {
                         std::wstring item = Widen(f->List(k));
                         SendMessageW(c, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(item.c_str()));
                       }
                     }
                     if (SendMessageW(c, CB_GETCURSEL, 0, 0) != f->ListIndex())
                       SendMessageW(c, CB_SETCURSEL, static_cast<WPARAM>(f->ListIndex()), 0);
                     SetEnabledIfDifferent(c, f->Enabled());
                   },
                   [&](CheckBox* f) {
                     SetTextIfDifferent(c, f->caption);
                     const WPARAM want = f->Value() == vbChecked   ? BST_CHECKED
                                         : f->Value() == vbGrayed ? BST_INDETERMINATE
                                                                  : BST_UNCHECKED;
                     if (static_cast<WPARAM>(SendMessageW(c, BM_GETCHECK, 0, 0)) != want)
                       SendMessageW(c, BM_SETCHECK, want, 0);
                     SetEnabledIfDifferent(c, f->Enabled());
                   },
                   [&](CommandButton* f) {
                     SetTextIfDifferent(c, f->caption);
                     SetEnabledIfDifferent(c, f->enabled);
                   },
               },
               fields[i]);
  }
}

void OlePropertyPage::OnCommand(int id, int code, HWND control) {
  if (syncing_ || !window_) return;
  const std::vector<PageField>& fields = page_->Fields();
  const int index = id - kFirstFieldId;
  if (index < 0 || static_cast<size_t>(index) >= fields.size() || static_cast<size_t>(index) >= controls_.size() ||
      controls_[static_cast<size_t>(index)] != control)
    return;
  const PageField& field = fields[static_cast<size_t>(index)];
  const FocusState before = FocusOf(*page_);
  bool user_action = false;  // a click or a choice: the page may move the focus
  bool handled = false;      // the field heard of it: the controls follow
  std::visit(Overloaded{
                 [&](Label*) {},
                 [&](Frame*) {},
                 [&](TextBox* f) {
                   if (code == EN_SETFOCUS) {
                     f->SetFocus();
                   } else if (code == EN_CHANGE) {
                     // What the user typed; a disabled box takes nothing and gets its
                     // text back below.
                     handled = true;
                     if (f->Enabled()) f->SetText(Narrow(WindowText(control).c_str()));
                     DWORD start = 0, end = 0;
                     SendMessageW(control, EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
                     f->SetSelStart(static_cast<std::int32_t>(start));
                     f->SetSelLength(static_cast<std::int32_t>(end - start));
                   }
                 },
                 [&](ComboBox* f) {
                   if (code == CBN_SETFOCUS) {
                     f->SetFocus();
                   } else if (code == CBN_SELCHANGE) {
                     f->Choose(static_cast<std::int32_t>(SendMessageW(control, CB_GETCURSEL, 0, 0)));
                     user_action = handled = true;
                   }
                 },
                 [&](CheckBox* f) {
                   if (code == BN_CLICKED) {
                     f->Toggle();
                     user_action = handled = true;
                   }
                 },
                 [&](CommandButton* f) {
                   if (code == BN_CLICKED) {
                     f->Click();
                     user_action = handled = true;
                   }
                 },
             },
             field);
  // Other notifications (EN_UPDATE before EN_CHANGE, focus) leave the controls alone.
  if (!handled || !window_) return;  // (or the page was deactivated meanwhile)
  SyncControls();
  // The page moved the focus (a key to correct): the real focus and selection follow.
  const FocusState after = FocusOf(*page_);
  if (user_action && after.owner && !(after == before)) {
    for (size_t i = 0; i < fields.size() && i < controls_.size(); ++i) {
      if (FocusKey(fields[i]) != after.owner || !controls_[i]) continue;
      SetFocus(controls_[i]);
      if (std::holds_alternative<TextBox*>(fields[i]))
        SendMessageW(controls_[i], EM_SETSEL, static_cast<WPARAM>(after.sel_start),
                     static_cast<LPARAM>(after.sel_start + after.sel_length));
    }
  }
}

LRESULT OlePropertyPage::OnMessage(HWND wnd, UINT msg, WPARAM wp, LPARAM lp) {
  try {
    switch (msg) {
      case WM_COMMAND:
        if (lp) {
          // Keep the object alive while a message box of the page is up.
          AddRef();
          OnCommand(LOWORD(wp), HIWORD(wp), reinterpret_cast<HWND>(lp));
          Release();
          return 0;
        }
        break;
      case WM_NEXTDLGCTL: {
        // Moving among the controls as a dialog does: to the control given
        // (LOWORD(lp) set) or to the next or previous tab stop; an edit box that
        // gets the focus this way has its text selected.
        HWND target = LOWORD(lp) ? reinterpret_cast<HWND>(wp) : GetNextDlgTabItem(wnd, GetFocus(), wp != 0);
        if (target && IsChild(wnd, target)) {
          if (SendMessageW(target, WM_GETDLGCODE, 0, 0) & DLGC_HASSETSEL) SendMessageW(target, EM_SETSEL, 0, -1);
          SetFocus(target);
        }
        return 0;
      }
      case WM_NCDESTROY:
        SetWindowLongPtrW(wnd, GWLP_USERDATA, 0);
        if (wnd == window_) {
          window_ = nullptr;
          controls_.clear();
          host_.SetWindow(nullptr);
        }
        break;
      default: break;
    }
  } catch (...) {
    // Nothing leaves the window procedure.
  }
  return DefWindowProcW(wnd, msg, wp, lp);
}

}  // namespace korvel::activex
