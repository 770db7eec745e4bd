// Registration of the server by regsvr32: exactly the keys and values of every
// class and the type library, and nothing of them left after unregistration.
// The server is left registered, as the test run found it.
#include <set>

#include "ax_test.h"

using namespace axtest;

namespace {

struct ClassRow {
  const wchar_t* name;
  const CLSID* clsid;
  int bitmap;
  const IID* dual;
  const IID* events;
};

// The classes the server can create, with their toolbox bitmap ids.
const ClassRow kRows[] = {
    {L"KorvelToolbar", &CLSID_KorvelToolbar, 30000, &IID__KorvelToolbar, &DIID___KorvelToolbar},
    {L"KorvelLink", &CLSID_KorvelLink, 30006, &IID__KorvelLink, &DIID___KorvelLink},
    {L"KorvelBar", &CLSID_KorvelBar, 30012, &IID__KorvelBar, &DIID___KorvelBar},
    {L"KorvelDivider", &CLSID_KorvelDivider, 30013, &IID__KorvelDivider, &DIID___KorvelDivider},
    {L"KorvelMiniSlider", &CLSID_KorvelMiniSlider, 30015, &IID__KorvelMiniSlider, &DIID___KorvelMiniSlider},
};
// OLEMISC_RECOMPOSEONRESIZE | CANTLINKINSIDE | INSIDEOUT | ACTIVATEWHENVISIBLE | SETCLIENTSITEFIRST
constexpr DWORD kMisc = 0x1 | 0x10 | 0x80 | 0x100 | 0x20000;

std::wstring Guid(const GUID& g) {
  wchar_t b[64];
  StringFromGUID2(g, b, 64);
  return b;
}

bool KeyExists(const std::wstring& key) {
  HKEY h;
  if (RegOpenKeyExW(HKEY_CLASSES_ROOT, key.c_str(), 0, KEY_READ, &h) != ERROR_SUCCESS) return false;
  RegCloseKey(h);
  return true;
}

// Subkey names and "name=value" strings of a key (the default value's name is "").
bool ReadKey(const std::wstring& key, std::set<std::wstring>& subkeys, std::set<std::wstring>& values) {
  subkeys.clear();
  values.clear();
  HKEY h;
  if (RegOpenKeyExW(HKEY_CLASSES_ROOT, key.c_str(), 0, KEY_READ, &h) != ERROR_SUCCESS) return false;
  wchar_t name[512];
  for (DWORD i = 0;; ++i) {
    DWORD n = 512;
    if (RegEnumKeyExW(h, i, name, &n, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) break;
    subkeys.insert(name);
  }
  for (DWORD i = 0;; ++i) {
    DWORD n = 512, type = 0;
    BYTE data[2048];
    DWORD size = sizeof data;
    if (RegEnumValueW(h, i, name, &n, nullptr, &type, data, &size) != ERROR_SUCCESS) break;
    std::wstring v = type == REG_SZ ? std::wstring(reinterpret_cast<wchar_t*>(data)) : L"<type " + std::to_wstring(type) + L">";
    values.insert(std::wstring(name) + L"=" + v);
  }
  RegCloseKey(h);
  return true;
}

void ExpectKey(const std::wstring& key, std::set<std::wstring> subkeys, std::set<std::wstring> values) {
  std::set<std::wstring> s, v;
  bool found = ReadKey(key, s, v);
  Check(found, "HKCR\\" + Narrow(key) + " exists");
  if (!found) return;
  std::wstring got, want;
  for (auto& x : s) got += L"[" + x + L"]";
  for (auto& x : v) got += L"{" + x + L"}";
  for (auto& x : subkeys) want += L"[" + x + L"]";
  for (auto& x : values) want += L"{" + x + L"}";
  Check(_wcsicmp(got.c_str(), want.c_str()) == 0,
        "HKCR\\" + Narrow(key) + " holds exactly " + Narrow(want) + (got == want ? "" : " (got " + Narrow(got) + ")"));
}

int Run(const std::wstring& command) {
  STARTUPINFOW si{};
  si.cb = sizeof si;
  PROCESS_INFORMATION pi{};
  std::wstring cmd = command;
  if (!CreateProcessW(nullptr, cmd.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &si, &pi)) return -1;
  WaitForSingleObject(pi.hProcess, 60000);
  DWORD code = 1;
  GetExitCodeProcess(pi.hProcess, &code);
  CloseHandle(pi.hProcess);
  CloseHandle(pi.hThread);
  return static_cast<int>(code);
}

#ifdef _WIN64
const wchar_t* kPlatformKey = L"win64";
#else
const wchar_t* kPlatformKey = L"win32";
#endif

void ExpectRegistered(const std::wstring& path) {
  const std::wstring libid = Guid(LIBID_KorvelUI99);
  for (const ClassRow& r : kRows) {
    const std::wstring clsid = Guid(*r.clsid);
    const std::wstring key = L"CLSID\\" + clsid;
    const std::wstring progid = std::wstring(L"KorvelUI99.") + r.name, versioned = progid + L".1";
    const std::wstring description = std::wstring(L"KorvelUI - ") + r.name;
    ExpectKey(key,
              {L"InprocServer32", L"ProgID", L"VersionIndependentProgID", L"TypeLib", L"Version", L"Control",
               L"MiscStatus", L"ToolboxBitmap32"},
              {L"=" + description});
    ExpectKey(key + L"\\InprocServer32", {}, {L"=" + path, L"ThreadingModel=Apartment"});
    ExpectKey(key + L"\\ProgID", {}, {L"=" + versioned});
    ExpectKey(key + L"\\VersionIndependentProgID", {}, {L"=" + progid});
    ExpectKey(key + L"\\TypeLib", {}, {L"=" + libid});
    ExpectKey(key + L"\\Version", {}, {L"=1.0"});
    ExpectKey(key + L"\\Control", {}, {});
    ExpectKey(key + L"\\MiscStatus", {L"1"}, {L"=0"});
    ExpectKey(key + L"\\MiscStatus\\1", {}, {L"=" + std::to_wstring(kMisc)});
    ExpectKey(key + L"\\ToolboxBitmap32", {}, {L"=" + path + L", " + std::to_wstring(r.bitmap)});
    ExpectKey(progid, {L"CLSID", L"CurVer"}, {L"=" + description});
    ExpectKey(progid + L"\\CLSID", {}, {L"=" + clsid});
    ExpectKey(progid + L"\\CurVer", {}, {L"=" + versioned});
    ExpectKey(versioned, {L"CLSID"}, {L"=" + description});
    ExpectKey(versioned + L"\\CLSID", {}, {L"=" + clsid});
    // The type library's registration names both interfaces of the class.
    Check(KeyExists(L"Interface\\" + Guid(*r.dual)), Narrow(std::wstring(L"Interface of _") + r.name) + " registered");
    Check(KeyExists(L"Interface\\" + Guid(*r.events)), Narrow(std::wstring(L"Interface of __") + r.name) + " registered");
    CLSID c{};
    Check(SUCCEEDED(CLSIDFromProgID(progid.c_str(), &c)) && IsEqualCLSID(c, *r.clsid), "CLSIDFromProgID(" + Narrow(progid) + ")");
    Check(SUCCEEDED(CLSIDFromProgID(versioned.c_str(), &c)) && IsEqualCLSID(c, *r.clsid), "CLSIDFromProgID(" + Narrow(versioned) + ")");
  }
  // The toolbar's Buttons page.
  const std::wstring page = L"CLSID\\" + Guid(CLSID_ktButtons);
  ExpectKey(page, {L"InprocServer32"}, {L"=KorvelUI - KorvelToolbar Buttons"});
  ExpectKey(page + L"\\InprocServer32", {}, {L"=" + path, L"ThreadingModel=Apartment"});
  std::set<std::wstring> s, v;
  Check(ReadKey(L"TypeLib\\" + libid + L"\\1.0\\0\\" + kPlatformKey, s, v) && v.count(L"=" + path) == 1,
        "type library registered with the server's path under " + Narrow(kPlatformKey));
  ITypeLib* tl = nullptr;
  HRESULT hr = LoadRegTypeLib(LIBID_KorvelUI99, 1, 0, LOCALE_NEUTRAL, &tl);
  Check(SUCCEEDED(hr), "LoadRegTypeLib finds the library");
  if (tl) tl->Release();
}

void ExpectUnregistered() {
  const std::wstring libid = Guid(LIBID_KorvelUI99);
  for (const ClassRow& r : kRows) {
    const std::wstring progid = std::wstring(L"KorvelUI99.") + r.name;
    Check(!KeyExists(L"CLSID\\" + Guid(*r.clsid)), "CLSID key of " + Narrow(r.name) + " removed");
    Check(!KeyExists(progid), Narrow(progid) + " removed");
    Check(!KeyExists(progid + L".1"), Narrow(progid) + ".1 removed");
    Check(!KeyExists(L"Interface\\" + Guid(*r.dual)), "Interface of _" + Narrow(r.name) + " removed");
    Check(!KeyExists(L"Interface\\" + Guid(*r.events)), "Interface of __" + Narrow(r.name) + " removed");
  }
  Check(!KeyExists(L"CLSID\\" + Guid(CLSID_ktButtons)), "CLSID key of the ktButtons page removed");
  Check(!KeyExists(L"TypeLib\\" + libid + L"\\1.0"), "type library version key removed");
  ITypeLib* tl = nullptr;
  HRESULT hr = LoadRegTypeLib(LIBID_KorvelUI99, 1, 0, LOCALE_NEUTRAL, &tl);
  Check(FAILED(hr), "LoadRegTypeLib no longer finds the library");
  if (tl) tl->Release();
  // Classes the server cannot create yet are not registered at all.
  Check(!KeyExists(L"CLSID\\" + Guid(CLSID_KorvelColor)), "no key for a class the server cannot create");
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::printf("usage: registration_test <server path>\n");
    return 2;
  }
  CoInitialize(nullptr);
  const std::wstring path = ServerPath(argv[1]);

  Check(Run(L"regsvr32 /u /s \"" + path + L"\"") == 0, "regsvr32 /u /s succeeds");
  ExpectUnregistered();
  Check(Run(L"regsvr32 /s \"" + path + L"\"") == 0, "regsvr32 /s succeeds");
  ExpectRegistered(path);
  Check(Run(L"regsvr32 /u /s \"" + path + L"\"") == 0, "regsvr32 /u /s succeeds again");
  ExpectUnregistered();
  // Registration twice over leaves the same keys.
  Check(Run(L"regsvr32 /s \"" + path + L"\"") == 0, "regsvr32 /s registers again");
  Check(Run(L"regsvr32 /s \"" + path + L"\"") == 0, "regsvr32 /s over an existing registration");
  ExpectRegistered(path);

  CoUninitialize();
  return Summary();
}
