// The server's entry points: the class factory of every class in the class table,
// unloading, and self-registration of the classes and the type library.
// Korvel headers come before the platform's (they define the platform's constants).
#include "platform/win32/win32_platform.h"
#include <string>

#include "activex/classes.h"
#include "activex/ole_control.h"
#include "korvelui99.h"

#include <olectl.h>

namespace korvel::activex {

namespace {

HMODULE g_module = nullptr;
LONG g_locks = 0;

class ClassFactory : public IClassFactory {
 public:
  explicit ClassFactory(const ClassInfo& cls) : cls_(cls) { ServerLock(); }
  virtual ~ClassFactory() { ServerUnlock(); }
  STDMETHODIMP QueryInterface(REFIID riid, void** out) override {
    if (!out) return E_POINTER;
    if (IsEqualIID(riid, IID_IUnknown) || IsEqualIID(riid, IID_IClassFactory)) {
      *out = static_cast<IClassFactory*>(this);
      AddRef();
      return S_OK;
    }
    *out = nullptr;
    return E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return static_cast<ULONG>(InterlockedIncrement(&refs_)); }
  STDMETHODIMP_(ULONG) Release() override {
    LONG n = InterlockedDecrement(&refs_);
    if (n == 0) delete this;
    return static_cast<ULONG>(n);
  }
  STDMETHODIMP CreateInstance(IUnknown* outer, REFIID riid, void** out) override {
    try {
      return cls_.create_instance(cls_, outer, riid, out);
    } catch (...) {
      if (out) *out = nullptr;
      return E_UNEXPECTED;
    }
  }
  STDMETHODIMP LockServer(BOOL lock) override {
    if (lock)
      ServerLock();
    else
      ServerUnlock();
    return S_OK;
  }

 private:
  LONG refs_ = 1;
  const ClassInfo& cls_;
};

std::wstring GuidText(const GUID& g) {
  wchar_t buf[64];
  StringFromGUID2(g, buf, 64);
  return buf;
}

std::wstring ModulePath() {
  wchar_t path[MAX_PATH];
  DWORD n = GetModuleFileNameW(g_module, path, MAX_PATH);
  return std::wstring(path, n);
}

// Creates HKCR\key (and its parents) and sets its default value (when value is
// given) and a named value.
bool SetKey(const std::wstring& key, const wchar_t* value, const wchar_t* name = nullptr,
            const wchar_t* named_value = nullptr) {
  HKEY h = nullptr;
  if (RegCreateKeyExW(HKEY_CLASSES_ROOT, key.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, &h, nullptr) != ERROR_SUCCESS)
    return false;
  bool ok = true;
  if (value)
    ok = RegSetValueExW(h, nullptr, 0, REG_SZ, reinterpret_cast<const BYTE*>(value),
                        static_cast<DWORD>((wcslen(value) + 1) * sizeof(wchar_t))) == ERROR_SUCCESS;
  if (ok && name)
    ok = RegSetValueExW(h, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(named_value),
                        static_cast<DWORD>((wcslen(named_value) + 1) * sizeof(wchar_t))) == ERROR_SUCCESS;
  RegCloseKey(h);
  return ok;
}

std::wstring ProgId(const ClassInfo& c) { return std::wstring(L"KorvelUI99.") + c.name; }
std::wstring VersionedProgId(const ClassInfo& c) { return ProgId(c) + L".1"; }

bool RegisterClassKeys(const ClassInfo& c, const std::wstring& path) {
  const std::wstring clsid = GuidText(*c.clsid);
  const std::wstring key = L"CLSID\\" + clsid;
  bool ok = SetKey(key, c.description);
  ok = ok && SetKey(key + L"\\InprocServer32", path.c_str(), L"ThreadingModel", L"Apartment");
  if (c.kind == ClassKind::PropertyPage) return ok;
  const std::wstring progid = ProgId(c), versioned = VersionedProgId(c);
  const std::wstring libid = GuidText(LIBID_KorvelUI99);
  const std::wstring misc = std::to_wstring(c.misc_status);
  const std::wstring bitmap = path + L", " + std::to_wstring(c.toolbox_bitmap);
  ok = ok && SetKey(key + L"\\ProgID", versioned.c_str());
  ok = ok && SetKey(key + L"\\VersionIndependentProgID", progid.c_str());
  ok = ok && SetKey(key + L"\\TypeLib", libid.c_str());
  ok = ok && SetKey(key + L"\\Version", L"1.0");
  ok = ok && SetKey(key + L"\\Control", nullptr);
  ok = ok && SetKey(key + L"\\MiscStatus", L"0");
  ok = ok && SetKey(key + L"\\MiscStatus\\1", misc.c_str());
  ok = ok && SetKey(key + L"\\ToolboxBitmap32", bitmap.c_str());
  ok = ok && SetKey(progid, c.description);
  ok = ok && SetKey(progid + L"\\CLSID", clsid.c_str());
  ok = ok && SetKey(progid + L"\\CurVer", versioned.c_str());
  ok = ok && SetKey(versioned, c.description);
  ok = ok && SetKey(versioned + L"\\CLSID", clsid.c_str());
  return ok;
}

void UnregisterClassKeys(const ClassInfo& c) {
  const std::wstring key = L"CLSID\\" + GuidText(*c.clsid);
  RegDeleteTreeW(HKEY_CLASSES_ROOT, key.c_str());
  if (c.kind == ClassKind::PropertyPage) return;
  RegDeleteTreeW(HKEY_CLASSES_ROOT, ProgId(c).c_str());
  RegDeleteTreeW(HKEY_CLASSES_ROOT, VersionedProgId(c).c_str());
}

#ifdef _WIN64
constexpr SYSKIND kSysKind = SYS_WIN64;
#else
constexpr SYSKIND kSysKind = SYS_WIN32;
#endif

}  // namespace

void ServerLock() { InterlockedIncrement(&g_locks); }
void ServerUnlock() { InterlockedDecrement(&g_locks); }
LONG ServerLocks() { return g_locks; }
HMODULE ServerModule() { return g_module; }

Platform& ServerPlatform() {
  static auto* platform = new win32::Win32Platform(reinterpret_cast<Handle>(g_module));
  return *platform;
}

}  // namespace korvel::activex

using namespace korvel::activex;

extern "C" {

BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID) {
  if (reason == DLL_PROCESS_ATTACH) {
    g_module = instance;
    DisableThreadLibraryCalls(instance);
  }
  return TRUE;
}

STDAPI DllGetClassObject(REFCLSID clsid, REFIID riid, LPVOID* out) {
  if (!out) return E_POINTER;
  *out = nullptr;
  const ClassInfo* cls = FindClass(clsid);
  if (!cls) return CLASS_E_CLASSNOTAVAILABLE;
  auto* factory = new (std::nothrow) ClassFactory(*cls);
  if (!factory) return E_OUTOFMEMORY;
  HRESULT hr = factory->QueryInterface(riid, out);
  factory->Release();
  return hr;
}

STDAPI DllCanUnloadNow() {
  if (ServerLocks() != 0) return S_FALSE;
  ReleaseAllTypes();
  return S_OK;
}

STDAPI DllRegisterServer() {
  try {
    const std::wstring path = ModulePath();
    ITypeLib* tl = nullptr;
    HRESULT hr = LoadTypeLibEx(path.c_str(), REGKIND_NONE, &tl);
    if (FAILED(hr)) return SELFREG_E_TYPELIB;
    hr = RegisterTypeLib(tl, const_cast<LPOLESTR>(path.c_str()), nullptr);
    tl->Release();
    if (FAILED(hr)) return SELFREG_E_TYPELIB;
    for (int i = 0; i < ClassCount(); ++i)
      if (!RegisterClassKeys(Classes()[i], path)) return SELFREG_E_CLASS;
    return S_OK;
  } catch (...) {
    return E_UNEXPECTED;
  }
}

STDAPI DllUnregisterServer() {
  try {
    for (int i = 0; i < ClassCount(); ++i) UnregisterClassKeys(Classes()[i]);
    UnRegisterTypeLib(LIBID_KorvelUI99, 1, 0, LOCALE_NEUTRAL, kSysKind);
    return S_OK;
  } catch (...) {
    return E_UNEXPECTED;
  }
}

}  // extern "C"
