// The portable headers come first: their constants share names with <windows.h>'s macros.
#include "platform/win32/win32_platform.h"
#include "platform/win32/win32_text.h"

#ifndef NOMINMAX
#define NOMINMAX
#endif
#define WIN32_LEAN_AND_MEAN
#include <windows.h>
#include <shellapi.h>
#include <shlobj.h>

namespace korvel::win32 {

namespace {

// An empty text is passed as no text.
const wchar_t* OrNull(const std::wstring& s) { return s.empty() ? nullptr : s.c_str(); }

}  // namespace

Handle Win32Shell::ShellExecuteA(Hwnd wnd, const std::string& verb, const std::string& file,
                                 const std::string& parameters, const std::string& directory, int show) {
  std::wstring v = Widen(verb), f = Widen(file), p = Widen(parameters), d = Widen(directory);
  return reinterpret_cast<Handle>(
      ::ShellExecuteW(reinterpret_cast<HWND>(wnd), OrNull(v), f.c_str(), OrNull(p), OrNull(d), show));
}

Handle Win32Shell::SHBrowseForFolderA(korvel::BROWSEINFOA* bi) {
  if (!bi) return 0;
  wchar_t display[MAX_PATH] = {};
  std::wstring title = bi->lpszTitle ? Widen(bi->lpszTitle) : std::wstring();
  ::BROWSEINFOW w{};
  w.hwndOwner = reinterpret_cast<HWND>(bi->hwndOwner);
  w.pidlRoot = reinterpret_cast<PCIDLIST_ABSOLUTE>(bi->pidlRoot);
  w.pszDisplayName = display;
  w.lpszTitle = bi->lpszTitle ? title.c_str() : nullptr;
  w.ulFlags = bi->ulFlags;
  w.lpfn = reinterpret_cast<BFFCALLBACK>(bi->lpfn);
  w.lParam = bi->lParam;
  PIDLIST_ABSOLUTE list = ::SHBrowseForFolderW(&w);
  bi->iImage = w.iImage;
  if (list && bi->pszDisplayName) CopyToBuffer(Narrow(display), bi->pszDisplayName, MAX_PATH);
  return reinterpret_cast<Handle>(list);
}

bool Win32Shell::SHGetPathFromIDListA(Handle idlist, char* path) {
  if (!idlist || !path) return false;
  wchar_t wide[MAX_PATH] = {};
  if (!::SHGetPathFromIDListW(reinterpret_cast<PCIDLIST_ABSOLUTE>(idlist), wide)) return false;
  CopyToBuffer(Narrow(wide), path, MAX_PATH);
  return true;
}

}  // namespace korvel::win32
