// Korvel headers come before the platform's (they define the platform's constants).
#include "framework/about_form.h"
#include "framework/form.h"
#include "platform/win32/win32_platform.h"
#include "activex/ole_host.h"

#include "activex/connection_point.h"
#include "activex/ole_control.h"

#include <olectl.h>

namespace korvel::activex {

namespace {

// Reads one ambient property from the client site; false when there is none.
bool ReadAmbient(IOleClientSite* site, DISPID id, VARIANT* out) {
  VariantInit(out);
  if (!site) return false;
  IDispatch* disp = nullptr;
  if (FAILED(site->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&disp))) || !disp) return false;
  DISPPARAMS none{nullptr, nullptr, 0, 0};
  HRESULT hr = disp->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none, out, nullptr, nullptr);
  disp->Release();
  if (FAILED(hr)) {
    VariantClear(out);
    return false;
  }
  return true;
}

bool ToType(VARIANT* v, VARTYPE vt) { return SUCCEEDED(VariantChangeType(v, v, 0, vt)); }

}  // namespace

void OleHost::ReadAmbients() {
  IOleClientSite* site = owner_.ClientSite();
  VARIANT v;
  // No site, or a site without the ambient: run time.
  user_mode_ = true;
  if (ReadAmbient(site, DISPID_AMBIENT_USERMODE, &v) && ToType(&v, VT_BOOL)) user_mode_ = V_BOOL(&v) != VARIANT_FALSE;
  VariantClear(&v);
  back_color_ = 0x8000000F;
  if (ReadAmbient(site, DISPID_AMBIENT_BACKCOLOR, &v) && ToType(&v, VT_I4)) back_color_ = static_cast<OleColor>(V_I4(&v));
  VariantClear(&v);
  fore_color_ = 0x80000012;
  if (ReadAmbient(site, DISPID_AMBIENT_FORECOLOR, &v) && ToType(&v, VT_I4)) fore_color_ = static_cast<OleColor>(V_I4(&v));
  VariantClear(&v);
  display_name_.clear();
  if (ReadAmbient(site, DISPID_AMBIENT_DISPLAYNAME, &v) && ToType(&v, VT_BSTR))
    display_name_ = Narrow(V_BSTR(&v), static_cast<int>(SysStringLen(V_BSTR(&v))));
  VariantClear(&v);
  font_.reset();
  if (ReadAmbient(site, DISPID_AMBIENT_FONT, &v) && (V_VT(&v) == VT_DISPATCH || V_VT(&v) == VT_UNKNOWN) && V_UNKNOWN(&v)) {
    try {
      IDispatch* disp = nullptr;
      if (SUCCEEDED(V_UNKNOWN(&v)->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&disp))) && disp) {
        // A copy: the ambient font is the container's, not the control's.
        FontRef f = owner_.bridge().FontFrom(disp);
        font_ = f ? f->Clone() : nullptr;
        disp->Release();
      }
    } catch (...) {
    }
  }
  VariantClear(&v);
}

FontRef OleHost::AmbientFont() {
  if (!font_) font_ = std::make_shared<Font>("MS Sans Serif", 8.25);
  return font_;
}

IDispatch* OleHost::Extender() {
  IOleClientSite* site = owner_.ClientSite();
  if (!site) return nullptr;
  IOleControlSite* cs = nullptr;
  if (FAILED(site->QueryInterface(IID_IOleControlSite, reinterpret_cast<void**>(&cs))) || !cs) return nullptr;
  IDispatch* ext = nullptr;
  if (FAILED(cs->GetExtendedControl(&ext))) ext = nullptr;
  cs->Release();
  return ext;
}

bool OleHost::ReadExtender(const wchar_t* name, VARIANT* out) {
  VariantInit(out);
  IDispatch* ext = Extender();
  if (!ext) return false;
  DISPID id = DISPID_UNKNOWN;
  LPOLESTR n = const_cast<LPOLESTR>(name);
  HRESULT hr = ext->GetIDsOfNames(IID_NULL, &n, 1, LOCALE_USER_DEFAULT, &id);
  if (SUCCEEDED(hr)) {
    DISPPARAMS none{nullptr, nullptr, 0, 0};
    hr = ext->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none, out, nullptr, nullptr);
  }
  ext->Release();
  if (FAILED(hr)) VariantClear(out);
  return SUCCEEDED(hr);
}

void OleHost::WriteExtender(const wchar_t* name, VARIANT value) {
  IDispatch* ext = Extender();
  if (!ext) return;
  DISPID id = DISPID_UNKNOWN;
  LPOLESTR n = const_cast<LPOLESTR>(name);
  if (SUCCEEDED(ext->GetIDsOfNames(IID_NULL, &n, 1, LOCALE_USER_DEFAULT, &id))) {
    DISPID put = DISPID_PROPERTYPUT;
    DISPPARAMS params{&value, &put, 1, 1};
    ext->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYPUT, &params, nullptr, nullptr, nullptr);
  }
  ext->Release();
}

std::string OleHost::ExtenderName() {
  VARIANT v;
  std::string name;
  if (ReadExtender(L"Name", &v) && ToType(&v, VT_BSTR)) name = Narrow(V_BSTR(&v), static_cast<int>(SysStringLen(V_BSTR(&v))));
  VariantClear(&v);
  return name;
}

bool OleHost::ExtenderVisible() {
  VARIANT v;
  bool r = visible_;
  if (ReadExtender(L"Visible", &v) && ToType(&v, VT_BOOL)) r = V_BOOL(&v) != VARIANT_FALSE;
  VariantClear(&v);
  return r;
}

void OleHost::SetExtenderVisible(bool visible) {
  visible_ = visible;
  VARIANT v;
  VariantInit(&v);
  V_VT(&v) = VT_BOOL;
  V_BOOL(&v) = visible ? VARIANT_TRUE : VARIANT_FALSE;
  WriteExtender(L"Visible", v);
}

std::int32_t OleHost::ExtenderAlign() {
  VARIANT v;
  std::int32_t r = align_;
  if (ReadExtender(L"Align", &v) && ToType(&v, VT_I4)) r = V_I4(&v);
  VariantClear(&v);
  return r;
}

void OleHost::SetExtenderAlign(std::int32_t align) {
  align_ = align;
  VARIANT v;
  VariantInit(&v);
  V_VT(&v) = VT_I4;
  V_I4(&v) = align;
  WriteExtender(L"Align", v);
}

bool OleHost::ExtenderEnabled() {
  VARIANT v;
  bool r = enabled_;
  if (ReadExtender(L"Enabled", &v) && ToType(&v, VT_BOOL)) r = V_BOOL(&v) != VARIANT_FALSE;
  VariantClear(&v);
  return r;
}

void OleHost::SetExtenderEnabled(bool enabled) {
  enabled_ = enabled;
  VARIANT v;
  VariantInit(&v);
  V_VT(&v) = VT_BOOL;
  V_BOOL(&v) = enabled ? VARIANT_TRUE : VARIANT_FALSE;
  WriteExtender(L"Enabled", v);
}

void OleHost::PropertyChanged(const std::string& name) {
  owner_.MarkDirty();
  const DISPID id = name.empty() ? DISPID_UNKNOWN : owner_.Types().members->IdOf(name);
  for (IUnknown* unk : owner_.NotifyPoint().Sinks()) {
    static_cast<IPropertyNotifySink*>(unk)->OnChanged(id);
    unk->Release();
  }
}

void OleHost::RaiseEvent(const std::string& name, std::vector<Variant>& args) {
  if (owner_.EventsFrozen()) return;
  const TypeMembers* events = owner_.Types().event_members.get();
  const Member* m = events ? events->Find(name, INVOKE_FUNC) : nullptr;
  if (!m) return;
  std::vector<IUnknown*> sinks = owner_.EventPoint().Sinks();
  if (sinks.empty()) return;
  const size_t n = std::min(args.size(), m->params.size());
  // Values in declaration order; by-reference ones are passed as references to
  // them, so a sink can change them.
  std::vector<VARIANT> values(n), passed(n);
  for (size_t i = 0; i < n; ++i) {
    VariantInit(&values[i]);
    VariantInit(&passed[i]);
    try {
      owner_.bridge().ToOle(args[i], &values[i]);
    } catch (...) {
    }
    const ParamType& t = m->params[i].type;
    if (t.vt != VT_VARIANT && t.vt != VT_SAFEARRAY) VariantChangeType(&values[i], &values[i], 0, t.vt);
    if (t.byref) {
      if (t.vt == VT_VARIANT) {
        V_VT(&passed[i]) = VT_BYREF | VT_VARIANT;
        V_VARIANTREF(&passed[i]) = &values[i];
      } else {
        V_VT(&passed[i]) = static_cast<VARTYPE>(V_VT(&values[i]) | VT_BYREF);
        V_BYREF(&passed[i]) = &values[i].bVal;  // the value sits at the start of the union
      }
    } else {
      passed[i] = values[i];  // shares the value; cleared once, through values
    }
  }
  std::vector<VARIANT> reversed(passed.rbegin(), passed.rend());
  DISPPARAMS params{reversed.empty() ? nullptr : reversed.data(), nullptr, static_cast<UINT>(n), 0};
  for (IUnknown* unk : sinks) {
    auto* disp = static_cast<IDispatch*>(unk);
    VARIANT result;
    VariantInit(&result);
    disp->Invoke(m->id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &params, &result, nullptr, nullptr);
    VariantClear(&result);
    unk->Release();
  }
  for (size_t i = 0; i < n; ++i) {
    if (m->params[i].type.byref) {
      try {
        args[i] = owner_.bridge().FromOle(values[i]);
      } catch (...) {
      }
    }
    VariantClear(&values[i]);
  }
}

void OleHost::SetControlSize(std::int32_t width_twips, std::int32_t height_twips) {
  if (resize_depth_ > 4) return;
  ++resize_depth_;
  Platform& p = owner_.control().platform();
  owner_.RequestSize(width_twips / p.TwipsPerPixelX(), height_twips / p.TwipsPerPixelY());
  --resize_depth_;
}

std::int32_t OleHost::MsgBox(const std::string& prompt, std::int32_t buttons, const std::string& title) {
  std::wstring p = Widen(prompt), t = Widen(title);
  return MessageBoxW(parent_, p.c_str(), t.c_str(), static_cast<UINT>(buttons));
}

// ---- modal forms ----

namespace {

constexpr wchar_t kModalClass[] = L"KorvelModalForm";

struct ModalState {
  Form* form;
};

LRESULT CALLBACK ModalProc(HWND wnd, UINT msg, WPARAM wp, LPARAM lp) {
  auto* state = reinterpret_cast<ModalState*>(GetWindowLongPtrW(wnd, GWLP_USERDATA));
  try {
    switch (msg) {
      case WM_NCCREATE:
        SetWindowLongPtrW(wnd, GWLP_USERDATA,
                          reinterpret_cast<LONG_PTR>(reinterpret_cast<CREATESTRUCTW*>(lp)->lpCreateParams));
        break;
      case WM_CLOSE:
        if (state) state->form->Unload();
        return 0;
      default: break;
    }
  } catch (...) {
  }
  return DefWindowProcW(wnd, msg, wp, lp);
}

void RegisterModalClass() {
  static bool done = false;
  if (done) return;
  WNDCLASSW wc{};
  wc.lpfnWndProc = ModalProc;
  wc.hInstance = ServerModule();
  wc.hCursor = LoadCursor(nullptr, IDC_ARROW);
  wc.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
  wc.lpszClassName = kModalClass;
  RegisterClassW(&wc);
  done = true;
}

int ButtonOf(WPARAM wp) {
  int b = 0;
  if (wp & MK_LBUTTON) b |= 1;
  if (wp & MK_RBUTTON) b |= 2;
  if (wp & MK_MBUTTON) b |= 4;
  return b;
}

int ShiftOf(WPARAM wp) {
  int s = 0;
  if (wp & MK_SHIFT) s |= 1;
  if (wp & MK_CONTROL) s |= 2;
  if (GetKeyState(VK_MENU) < 0) s |= 4;
  return s;
}

}  // namespace

void OleHost::ShowModal(Form& form) {
  RegisterModalClass();
  Surface& s = form.surface();
  const int w = s.Width(), h = s.Height();
  const DWORD style = WS_POPUP | WS_CAPTION | WS_SYSMENU;
  RECT rc{0, 0, w, h};
  AdjustWindowRectEx(&rc, style, FALSE, WS_EX_DLGMODALFRAME);
  const int cx = rc.right - rc.left, cy = rc.bottom - rc.top;
  const int x = (GetSystemMetrics(SM_CXSCREEN) - cx) / 2, y = (GetSystemMetrics(SM_CYSCREEN) - cy) / 2;
  ModalState state{&form};
  std::wstring caption = Widen(form.Caption());
  HWND top = CreateWindowExW(WS_EX_DLGMODALFRAME, kModalClass, caption.c_str(), style, x, y, cx, cy, nullptr,
                             nullptr, ServerModule(), &state);
  if (!top) return;
  auto* site = dynamic_cast<win32::Win32SurfaceSite*>(&s.site());
  auto* about = dynamic_cast<AboutForm*>(&form);
  if (site) {
    site->on_message = [&form, about, site](unsigned msg, std::uintptr_t wp, std::intptr_t lp) -> bool {
      const float mx = static_cast<float>(static_cast<short>(LOWORD(lp)));
      const float my = static_cast<float>(static_cast<short>(HIWORD(lp)));
      if (!about) return false;
      switch (msg) {
        case WM_MOUSEMOVE: about->MouseMove(ButtonOf(wp), ShiftOf(wp), mx, my); break;
        case WM_LBUTTONDOWN:
        case WM_RBUTTONDOWN:
        case WM_MBUTTONDOWN:
          SetCapture(reinterpret_cast<HWND>(site->Window()));
          about->MouseDown(msg == WM_LBUTTONDOWN ? 1 : msg == WM_RBUTTONDOWN ? 2 : 4, ShiftOf(wp), mx, my);
          break;
        case WM_LBUTTONUP:
        case WM_RBUTTONUP:
        case WM_MBUTTONUP:
          ReleaseCapture();
          about->MouseUp(msg == WM_LBUTTONUP ? 1 : msg == WM_RBUTTONUP ? 2 : 4, ShiftOf(wp), mx, my);
          break;
        default: return false;
      }
      (void)form;
      return true;
    };
    site->SetParentWindow(reinterpret_cast<Hwnd>(top));
  }
  s.Move(0, 0, w, h);
  form.Paint();
  ShowWindow(top, SW_SHOW);
  UpdateWindow(top);
  // The modal loop: until the form unloads (its OK button, or the window closed).
  MSG msg;
  while (form.Loaded()) {
    BOOL got = GetMessageW(&msg, nullptr, 0, 0);
    if (got == 0) {
      PostQuitMessage(static_cast<int>(msg.wParam));
      break;
    }
    if (got < 0) break;
    TranslateMessage(&msg);
    DispatchMessageW(&msg);
  }
  if (site) {
    site->on_message = nullptr;
    site->SetParentWindow(0);
  }
  DestroyWindow(top);
}

}  // namespace korvel::activex
