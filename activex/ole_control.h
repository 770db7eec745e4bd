// The COM object of one control: a korvel::Control behind the OLE control
// protocol. IDispatch and the dual interface go through the type library's member
// descriptions to Control::Invoke by name; events leave through a connection point
// for the class's event interface, property changes through IPropertyNotifySink;
// persistence is IPersistPropertyBag and IPersistStreamInit; in-place activation,
// IViewObject2 drawing and the ambient/extender reads make it hostable.
//
// QueryInterface answers the same way for the whole life of the object.
#pragma once
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "activex/classes.h"
#include "activex/ole_variant.h"
#include "activex/type_members.h"
#include "framework/control.h"

#include <windows.h>
#include <ocidl.h>
#include <objsafe.h>
#include <olectl.h>

namespace korvel::activex {

class OleHost;
class ConnectionPoint;

// The dual-interface adapter of a class (generated): it forwards IUnknown and
// IDispatch to its owner, and each vtable method to OleControl::CallVtbl.
class DualBase {
 public:
  virtual ~DualBase() = default;
  virtual IDispatch* Dispatch() = 0;
};

// The type information of one class, read once from the module's type library.
struct ClassTypes {
  ITypeInfo* coclass = nullptr;
  ITypeInfo* dispatch = nullptr;   // the dual interface's dispatch side (IDispatch::GetTypeInfo)
  ITypeInfo* vtable = nullptr;     // its interface side
  ITypeInfo* events = nullptr;
  std::unique_ptr<TypeMembers> members;
  std::unique_ptr<TypeMembers> event_members;
};
// Loads the module's type library (REGKIND_NONE) on first use.
ITypeLib* ModuleTypeLib();
const ClassTypes* TypesOf(const ClassInfo& cls);
void ReleaseAllTypes();

class OleControl final : public IConnectionPointContainer,
                   public IProvideClassInfo2,
                   public ISpecifyPropertyPages,
                   public IObjectSafety,
                   public IPersistPropertyBag,
                   public IPersistStreamInit,
                   public IOleObject,
                   public IOleInPlaceObject,
                   public IOleInPlaceActiveObject,
                   public IOleControl,
                   public IViewObject2,
                   public ISupportErrorInfo {
 public:
  // Creates an object of cls and returns the interface asked for.
  static HRESULT Create(const ClassInfo& cls, IUnknown* outer, REFIID riid, void** out);

  // ---- IUnknown ----
  STDMETHODIMP QueryInterface(REFIID riid, void** out) override;
  STDMETHODIMP_(ULONG) AddRef() override;
  STDMETHODIMP_(ULONG) Release() override;

  // ---- IDispatch (reached through the dual adapter) ----
  HRESULT GetTypeInfoCount(UINT* count);
  HRESULT GetTypeInfo(UINT index, LCID lcid, ITypeInfo** info);
  HRESULT GetIDsOfNames(REFIID riid, LPOLESTR* names, UINT count, LCID lcid, DISPID* ids);
  HRESULT Invoke(DISPID id, REFIID riid, LCID lcid, WORD flags, DISPPARAMS* params, VARIANT* result,
                 EXCEPINFO* excep, UINT* arg_err);
  // A vtable method of the dual interface: args holds the address of each
  // parameter in declaration order (the [out, retval] pointer included).
  HRESULT CallVtbl(const char* name, INVOKEKIND kind, void* const* args, int count);

  // ---- IConnectionPointContainer ----
  STDMETHODIMP EnumConnectionPoints(IEnumConnectionPoints** out) override;
  STDMETHODIMP FindConnectionPoint(REFIID riid, IConnectionPoint** out) override;
  // ---- IProvideClassInfo2 ----
  STDMETHODIMP GetClassInfo(ITypeInfo** out) override;
  STDMETHODIMP GetGUID(DWORD kind, GUID* out) override;
  // ---- ISpecifyPropertyPages ----
  STDMETHODIMP GetPages(CAUUID* pages) override;
  // ---- IObjectSafety ----
  STDMETHODIMP GetInterfaceSafetyOptions(REFIID riid, DWORD* supported, DWORD* enabled) override;
  STDMETHODIMP SetInterfaceSafetyOptions(REFIID riid, DWORD mask, DWORD enabled) override;
  // ---- IPersist, IPersistPropertyBag, IPersistStreamInit ----
  STDMETHODIMP GetClassID(CLSID* out) override;
  STDMETHODIMP InitNew() override;
  STDMETHODIMP Load(IPropertyBag* bag, IErrorLog* log) override;
  STDMETHODIMP Save(IPropertyBag* bag, BOOL clear_dirty, BOOL save_all) override;
  STDMETHODIMP IsDirty() override;
  STDMETHODIMP Load(LPSTREAM stream) override;
  STDMETHODIMP Save(LPSTREAM stream, BOOL clear_dirty) override;
  STDMETHODIMP GetSizeMax(ULARGE_INTEGER* size) override;
  // ---- IOleObject ----
  STDMETHODIMP SetClientSite(IOleClientSite* site) override;
  STDMETHODIMP GetClientSite(IOleClientSite** site) override;
  STDMETHODIMP SetHostNames(LPCOLESTR app, LPCOLESTR obj) override;
  STDMETHODIMP Close(DWORD save_option) override;
  STDMETHODIMP SetMoniker(DWORD which, IMoniker* mk) override;
  STDMETHODIMP GetMoniker(DWORD assign, DWORD which, IMoniker** mk) override;
  STDMETHODIMP InitFromData(IDataObject* data, BOOL creation, DWORD reserved) override;
  STDMETHODIMP GetClipboardData(DWORD reserved, IDataObject** data) override;
  STDMETHODIMP DoVerb(LONG verb, LPMSG msg, IOleClientSite* site, LONG index, HWND parent, LPCRECT pos) override;
  STDMETHODIMP EnumVerbs(IEnumOLEVERB** verbs) override;
  STDMETHODIMP Update() override;
  STDMETHODIMP IsUpToDate() override;
  STDMETHODIMP GetUserClassID(CLSID* out) override;
  STDMETHODIMP GetUserType(DWORD form, LPOLESTR* type) override;
  STDMETHODIMP SetExtent(DWORD aspect, SIZEL* size) override;
  STDMETHODIMP GetExtent(DWORD aspect, SIZEL* size) override;
  STDMETHODIMP Advise(IAdviseSink* sink, DWORD* cookie) override;
  STDMETHODIMP Unadvise(DWORD cookie) override;
  STDMETHODIMP EnumAdvise(IEnumSTATDATA** out) override;
  STDMETHODIMP GetMiscStatus(DWORD aspect, DWORD* status) override;
  STDMETHODIMP SetColorScheme(LOGPALETTE* pal) override;
  // ---- IOleWindow, IOleInPlaceObject, IOleInPlaceActiveObject ----
  STDMETHODIMP GetWindow(HWND* wnd) override;
  STDMETHODIMP ContextSensitiveHelp(BOOL enter) override;
  STDMETHODIMP InPlaceDeactivate() override;
  STDMETHODIMP UIDeactivate() override;
  STDMETHODIMP SetObjectRects(LPCRECT pos, LPCRECT clip) override;
  STDMETHODIMP ReactivateAndUndo() override;
  STDMETHODIMP TranslateAccelerator(LPMSG msg) override;
  STDMETHODIMP OnFrameWindowActivate(BOOL activate) override;
  STDMETHODIMP OnDocWindowActivate(BOOL activate) override;
  STDMETHODIMP ResizeBorder(LPCRECT border, IOleInPlaceUIWindow* window, BOOL frame) override;
  STDMETHODIMP EnableModeless(BOOL enable) override;
  // ---- IOleControl ----
  STDMETHODIMP GetControlInfo(CONTROLINFO* info) override;
  STDMETHODIMP OnMnemonic(MSG* msg) override;
  STDMETHODIMP OnAmbientPropertyChange(DISPID id) override;
  STDMETHODIMP FreezeEvents(BOOL freeze) override;
  // ---- IViewObject2 ----
  STDMETHODIMP Draw(DWORD aspect, LONG index, void* aspect_info, DVTARGETDEVICE* device, HDC target_dc, HDC dc,
                    LPCRECTL bounds, LPCRECTL wbounds, BOOL(STDMETHODCALLTYPE* cont)(ULONG_PTR), ULONG_PTR arg) override;
  STDMETHODIMP GetColorSet(DWORD aspect, LONG index, void* aspect_info, DVTARGETDEVICE* device, HDC target_dc,
                           LOGPALETTE** colors) override;
  STDMETHODIMP Freeze(DWORD aspect, LONG index, void* aspect_info, DWORD* cookie) override;
  STDMETHODIMP Unfreeze(DWORD cookie) override;
  STDMETHODIMP SetAdvise(DWORD aspects, DWORD flags, IAdviseSink* sink) override;
  STDMETHODIMP GetAdvise(DWORD* aspects, DWORD* flags, IAdviseSink** sink) override;
  STDMETHODIMP GetExtent(DWORD aspect, LONG index, DVTARGETDEVICE* device, LPSIZEL size) override;
  // ---- ISupportErrorInfo ----
  STDMETHODIMP InterfaceSupportsErrorInfo(REFIID riid) override;

  // ---- for the host ----
  const ClassInfo& Class() const { return cls_; }
  const ClassTypes& Types() const { return *types_; }
  Control& control() { return *control_; }
  ObjectBridge& bridge() { return bridge_; }
  IOleClientSite* ClientSite() { return site_; }
  ConnectionPoint& EventPoint() { return *event_point_; }
  ConnectionPoint& NotifyPoint() { return *notify_point_; }
  bool EventsFrozen() const { return freeze_count_ > 0; }
  void MarkDirty() { dirty_ = true; }
  // The control asks for a new size (pixels).
  void RequestSize(int width_px, int height_px);
  // Repaints the control and tells the view's advise sink.
  void Invalidate();

 private:
  OleControl(const ClassInfo& cls, const ClassTypes& types);
  ~OleControl();
  HRESULT Init();
  // Runs Control::Invoke for a member with the arguments given in declaration
  // order (VARIANTs, by reference or not); fills result and excep.
  HRESULT CallMember(const Member& m, VARIANT* const* args, int count, VARIANT* result, EXCEPINFO* excep,
                     UINT* arg_err);
  HRESULT Fail(const std::string& source, std::int32_t number, const std::string& description, EXCEPINFO* excep);
  void ApplyExtent();
  HRESULT ActivateInPlace(IOleClientSite* site, HWND parent, bool ui);
  void RouteMouse(unsigned msg, std::uintptr_t wparam, std::intptr_t lparam);
  // The window-message handler of one of the control's surfaces (none for a
  // surface that does not take the control's mouse input).
  std::function<bool(unsigned, std::uintptr_t, std::intptr_t)> MouseRoute(Surface& surface);

  LONG refs_ = 1;
  const ClassInfo& cls_;
  const ClassTypes* types_;
  std::unique_ptr<OleHost> host_;
  std::unique_ptr<Control> control_;
  std::unique_ptr<DualBase> dual_;
  ObjectBridge bridge_;
  ConnectionPoint* event_point_ = nullptr;
  ConnectionPoint* notify_point_ = nullptr;
  IOleClientSite* site_ = nullptr;
  IOleInPlaceSite* inplace_site_ = nullptr;
  IOleAdviseHolder* advise_holder_ = nullptr;
  IAdviseSink* view_sink_ = nullptr;
  DWORD view_aspects_ = 0, view_flags_ = 0;
  SIZEL extent_{};  // HIMETRIC
  bool initialised_ = false;
  bool dirty_ = false;
  bool inplace_active_ = false;
  bool ui_active_ = false;
  int freeze_count_ = 0;
  bool captured_ = false;
};

// Objects and locks alive in the server (DllCanUnloadNow).
void ServerLock();
void ServerUnlock();
LONG ServerLocks();
HMODULE ServerModule();

}  // namespace korvel::activex
