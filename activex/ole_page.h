// The COM object of a property page: a korvel::PropertyPage behind IPropertyPage.
// The objects the property frame selects are reached by name through their
// IDispatch; the page's fields are mirrored one for one by the platform's own
// controls (static, group box, edit, drop-down list, check box, push button) in a
// window of the page, and what the user does in them goes back to the fields.
#pragma once
#include <memory>
#include <vector>

#include "activex/classes.h"
#include "activex/ole_variant.h"
#include "framework/automation.h"
#include "framework/property_page.h"

#include <windows.h>
#include <ocidl.h>

namespace korvel::activex {

// A selected object seen by the page: members by name through IDispatch, with
// every argument passed by reference so that the callee's changes come back.
class DispatchAutomation : public Automation {
 public:
  DispatchAutomation(IDispatch* object, ObjectBridge& bridge);
  ~DispatchAutomation() override;
  Variant Invoke(const std::string& name, InvokeKind kind, std::vector<Variant>& args) override;

 private:
  IDispatch* object_;
  ObjectBridge& bridge_;
};

class PageHost;

class OlePage final : public IPropertyPage {
 public:
  static HRESULT Create(const ClassInfo& cls, IUnknown* outer, REFIID riid, void** out);

  STDMETHODIMP QueryInterface(REFIID riid, void** out) override;
  STDMETHODIMP_(ULONG) AddRef() override;
  STDMETHODIMP_(ULONG) Release() override;
  STDMETHODIMP SetPageSite(IPropertyPageSite* site) override;
  STDMETHODIMP Activate(HWND parent, LPCRECT rect, BOOL modal) override;
  STDMETHODIMP Deactivate() override;
  STDMETHODIMP GetPageInfo(PROPPAGEINFO* info) override;
  STDMETHODIMP SetObjects(ULONG count, IUnknown** objects) override;
  STDMETHODIMP Show(UINT cmd) override;
  STDMETHODIMP Move(LPCRECT rect) override;
  STDMETHODIMP IsPageDirty() override;
  STDMETHODIMP Apply() override;
  STDMETHODIMP Help(LPCOLESTR dir) override;
  STDMETHODIMP TranslateAccelerator(MSG* msg) override;

  // The page window's WM_COMMAND from one of the mirrored controls.
  void OnCommand(int id, int code);

 private:
  explicit OlePage(const ClassInfo& cls);
  ~OlePage();
  // Brings every mirrored control in line with its field.
  void Sync();

  LONG refs_ = 1;
  const ClassInfo& cls_;
  ObjectBridge bridge_;
  std::unique_ptr<PageHost> host_;
  std::unique_ptr<PropertyPage> page_;
  std::vector<std::unique_ptr<DispatchAutomation>> objects_;
  IPropertyPageSite* site_ = nullptr;
  HWND window_ = nullptr;
  std::vector<HWND> controls_;  // one per field, in the page's field order
  HFONT font_ = nullptr;
  bool syncing_ = false;
};

}  // namespace korvel::activex
