// The COM object of one property page of the library: IPropertyPage over a
// korvel::PropertyPage. The page's fields become real child controls of a page
// window (static texts, edit boxes, drop-down lists, check boxes, push buttons and
// group boxes) and the two are kept in step: what the user does in a control goes
// to its field (raising the field's Change or Click), and after every such event
// the controls take the fields' texts, checks, list indexes and enabled states.
//
// The objects the frame selects are reached by name through their IDispatch
// (DispatchAutomation), so a page calls a control's members the way a script does.
//
// The child control of field i (in the page's field order) has the control id
// kFirstFieldId + i.
#pragma once
#include <memory>
#include <string>
#include <vector>

// Korvel headers come before the platform's (they define the platform's constants).
#include "framework/automation.h"
#include "framework/host.h"
#include "framework/property_page.h"
#include "activex/classes.h"
#include "activex/ole_variant.h"
#include "activex/type_members.h"

#include <windows.h>
#include <ocidl.h>
#include <olectl.h>

namespace korvel::activex {

inline constexpr int kFirstFieldId = 1000;

// An object reached through IDispatch by member name: GetIDsOfNames, then Invoke.
// Arguments go in declaration order; where the object describes the member in its
// type information, each argument takes the declared type and a by-reference
// parameter gets a by-reference argument (arrays as SAFEARRAYs of the declared
// element type). Without type information every argument is passed by reference,
// as a variable of its own type. By-reference arguments come back into args.
// Failures raise the run-time error the call reports (438 for an unknown name,
// 13 for a type mismatch, the object's own number for an exception it raises).
class DispatchAutomation : public Automation {
 public:
  explicit DispatchAutomation(IDispatch* object);
  ~DispatchAutomation() override;
  DispatchAutomation(const DispatchAutomation&) = delete;
  DispatchAutomation& operator=(const DispatchAutomation&) = delete;

  Variant Invoke(const std::string& name, InvokeKind kind, std::vector<Variant>& args) override;
  IDispatch* object() const { return object_; }

 private:
  // The member as the object's type information describes it, or null.
  const Member* Describe(DISPID id, InvokeKind kind);

  IDispatch* object_;
  ObjectBridge bridge_;
  bool types_read_ = false;
  std::unique_ptr<TypeMembers> members_;
};

// The host a page sees: design time, message boxes owned by the page window.
class PageHost : public Host {
 public:
  void SetWindow(HWND window) { window_ = window; }

  bool UserMode() override { return false; }
  FontRef AmbientFont() override;
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
  Hwnd ParentWindow() override { return reinterpret_cast<Hwnd>(window_); }
  // A page is no control: it has no properties, events or extent of its own.
  void PropertyChanged(const std::string&) override {}
  void RaiseEvent(const std::string&, std::vector<Variant>&) override {}
  void SetControlSize(std::int32_t, std::int32_t) override {}
  // MessageBoxW owned by the page window (the frame's window is disabled meanwhile).
  std::int32_t MsgBox(const std::string& prompt, std::int32_t buttons, const std::string& title) override;
  // The library's pages open no forms of their own; a form asked for is not shown.
  void ShowModal(Form&) override {}

 private:
  HWND window_ = nullptr;
  FontRef font_;
};

class OlePropertyPage final : public IPropertyPage {
 public:
  // Creates the page of cls (a ClassKind::PropertyPage row) and returns the
  // interface asked for.
  static HRESULT Create(const ClassInfo& cls, IUnknown* outer, REFIID riid, void** out);

  // ---- IUnknown ----
  STDMETHODIMP QueryInterface(REFIID riid, void** out) override;
  STDMETHODIMP_(ULONG) AddRef() override;
  STDMETHODIMP_(ULONG) Release() override;
  // ---- IPropertyPage ----
  STDMETHODIMP SetPageSite(IPropertyPageSite* site) override;
  STDMETHODIMP Activate(HWND parent, LPCRECT rect, BOOL modal) override;
  STDMETHODIMP Deactivate() override;
  STDMETHODIMP GetPageInfo(PROPPAGEINFO* info) override;
  STDMETHODIMP SetObjects(ULONG count, IUnknown** objects) override;
  STDMETHODIMP Show(UINT cmd_show) override;
  STDMETHODIMP Move(LPCRECT rect) override;
  STDMETHODIMP IsPageDirty() override;
  STDMETHODIMP Apply() override;
  STDMETHODIMP Help(LPCOLESTR help_dir) override;
  STDMETHODIMP TranslateAccelerator(MSG* msg) override;

  // The page window's procedure (public for the window class).
  LRESULT OnMessage(HWND wnd, UINT msg, WPARAM wp, LPARAM lp);

 private:
  explicit OlePropertyPage(const ClassInfo& cls);
  ~OlePropertyPage();
  void CreateControls();
  // A control told the page what the user did (WM_COMMAND).
  void OnCommand(int id, int code, HWND control);
  // The controls take the fields' state.
  void SyncControls();

  LONG refs_ = 1;
  const ClassInfo& cls_;
  PageHost host_;
  std::unique_ptr<PropertyPage> page_;
  IPropertyPageSite* site_ = nullptr;
  std::vector<std::unique_ptr<DispatchAutomation>> objects_;
  HWND window_ = nullptr;
  HFONT font_ = nullptr;
  std::vector<HWND> controls_;  // one per field, in field order
  bool syncing_ = false;
};

}  // namespace korvel::activex
