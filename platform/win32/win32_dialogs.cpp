// The portable headers come first: their constants share names with <windows.h>'s macros.
#include "platform/win32/win32_platform.h"
#include "platform/win32/win32_text.h"

#include <cstring>
#include <cwchar>
#include <vector>

#ifndef NOMINMAX
#define NOMINMAX
#endif
#define WIN32_LEAN_AND_MEAN
#include <windows.h>
#include <commdlg.h>

namespace korvel::win32 {

namespace {

// A list of NUL-separated texts ended by two NULs (a filter, a multiple selection).
std::size_t DoubleNulLength(const char* s) {
  std::size_t n = 0;
  while (s[n] != '\0' || s[n + 1] != '\0') ++n;
  return n + 2;
}

std::wstring WidenList(const char* s) { return Widen(std::string(s, DoubleNulLength(s))); }

std::wstring WidenOrEmpty(const char* s) { return s ? Widen(s) : std::wstring(); }

// A caller's in/out text buffer of size bytes, as a wide buffer of as many characters
// holding the caller's text up to its NUL.
std::vector<wchar_t> WideBuffer(const char* buffer, std::uint32_t size) {
  std::vector<wchar_t> w(size > 0 ? size : 1, L'\0');
  if (buffer && size > 0) {
    std::wstring text = Widen(std::string(buffer, strnlen(buffer, size)));
    text.copy(w.data(), w.size() - 1);
  }
  return w;
}

// The UTF-8 byte count of the first count characters of text.
std::uint16_t Utf8Offset(const wchar_t* text, std::uint16_t count) {
  return static_cast<std::uint16_t>(Narrow(text, count).size());
}

// The used part of a file buffer: one name, or (multiple selection) a list ended
// by two NULs.
int UsedLength(const std::vector<wchar_t>& w) {
  std::size_t n = std::wcslen(w.data());
  if (n + 1 < w.size() && w[n + 1] != L'\0') {
    while (n + 1 < w.size() && !(w[n] == L'\0' && w[n + 1] == L'\0')) ++n;
  }
  return static_cast<int>(n);
}

void CopyBack(const std::vector<wchar_t>& w, int used, char* buffer, std::uint32_t size) {
  if (!buffer || size == 0) return;
  std::string text = Narrow(w.data(), used);
  std::size_t n = text.size() < size ? text.size() : size - 1;
  text.copy(buffer, n);
  buffer[n] = '\0';
  if (n + 1 < size) buffer[n + 1] = '\0';  // a list keeps its second NUL
}

bool FileDialog(korvel::OPENFILENAMEA* ofn, bool save) {
  if (!ofn) return false;
  std::wstring filter = ofn->lpstrFilter ? WidenList(ofn->lpstrFilter) : std::wstring();
  std::wstring initial_dir = WidenOrEmpty(ofn->lpstrInitialDir);
  std::wstring title = WidenOrEmpty(ofn->lpstrTitle);
  std::wstring def_ext = WidenOrEmpty(ofn->lpstrDefExt);
  std::wstring template_name = WidenOrEmpty(ofn->lpTemplateName);
  std::vector<wchar_t> custom = WideBuffer(ofn->lpstrCustomFilter, ofn->nMaxCustFilter);
  std::vector<wchar_t> file = WideBuffer(ofn->lpstrFile, ofn->nMaxFile);
  std::vector<wchar_t> file_title = WideBuffer(ofn->lpstrFileTitle, ofn->nMaxFileTitle);

  ::OPENFILENAMEW w{};
  w.lStructSize = sizeof w;
  w.hwndOwner = reinterpret_cast<HWND>(ofn->hwndOwner);
  w.hInstance = reinterpret_cast<HINSTANCE>(ofn->hInstance);
  w.lpstrFilter = ofn->lpstrFilter ? filter.c_str() : nullptr;
  w.lpstrCustomFilter = ofn->lpstrCustomFilter ? custom.data() : nullptr;
  w.nMaxCustFilter = ofn->lpstrCustomFilter ? ofn->nMaxCustFilter : 0;
  w.nFilterIndex = ofn->nFilterIndex;
  w.lpstrFile = ofn->lpstrFile ? file.data() : nullptr;
  w.nMaxFile = ofn->lpstrFile ? ofn->nMaxFile : 0;
  w.lpstrFileTitle = ofn->lpstrFileTitle ? file_title.data() : nullptr;
  w.nMaxFileTitle = ofn->lpstrFileTitle ? ofn->nMaxFileTitle : 0;
  w.lpstrInitialDir = ofn->lpstrInitialDir ? initial_dir.c_str() : nullptr;
  w.lpstrTitle = ofn->lpstrTitle ? title.c_str() : nullptr;
  w.Flags = ofn->Flags;
  w.lpstrDefExt = ofn->lpstrDefExt ? def_ext.c_str() : nullptr;
  w.lCustData = ofn->lCustData;
  w.lpfnHook = reinterpret_cast<LPOFNHOOKPROC>(ofn->lpfnHook);
  w.lpTemplateName = ofn->lpTemplateName ? template_name.c_str() : nullptr;

  BOOL ok = save ? ::GetSaveFileNameW(&w) : ::GetOpenFileNameW(&w);
  ofn->Flags = w.Flags;
  ofn->nFilterIndex = w.nFilterIndex;
  if (!ok) return false;
  if (ofn->lpstrFile) {
    CopyBack(file, UsedLength(file), ofn->lpstrFile, ofn->nMaxFile);
    ofn->nFileOffset = Utf8Offset(file.data(), w.nFileOffset);
    ofn->nFileExtension = w.nFileExtension == 0 ? 0 : Utf8Offset(file.data(), w.nFileExtension);
  }
  if (ofn->lpstrFileTitle)
    CopyBack(file_title, static_cast<int>(std::wcslen(file_title.data())), ofn->lpstrFileTitle, ofn->nMaxFileTitle);
  if (ofn->lpstrCustomFilter)
    CopyBack(custom, UsedLength(custom), ofn->lpstrCustomFilter, ofn->nMaxCustFilter);
  return true;
}

}  // namespace

bool Win32Dialogs::GetOpenFileNameA(korvel::OPENFILENAMEA* ofn) { return FileDialog(ofn, false); }

bool Win32Dialogs::GetSaveFileNameA(korvel::OPENFILENAMEA* ofn) { return FileDialog(ofn, true); }

bool Win32Dialogs::ChooseColorA(korvel::CHOOSECOLORA* cc) {
  if (!cc) return false;
  COLORREF custom[16] = {};
  if (cc->lpCustColors)
    for (int i = 0; i < 16; ++i) custom[i] = cc->lpCustColors[i];
  std::wstring template_name = WidenOrEmpty(cc->lpTemplateName);
  ::CHOOSECOLORW w{};
  w.lStructSize = sizeof w;
  w.hwndOwner = reinterpret_cast<HWND>(cc->hwndOwner);
  w.hInstance = reinterpret_cast<HWND>(cc->hInstance);
  w.rgbResult = cc->rgbResult;
  w.lpCustColors = custom;
  w.Flags = cc->Flags;
  w.lCustData = cc->lCustData;
  w.lpfnHook = reinterpret_cast<LPCCHOOKPROC>(cc->lpfnHook);
  w.lpTemplateName = cc->lpTemplateName ? template_name.c_str() : nullptr;
  BOOL ok = ::ChooseColorW(&w);
  // The custom colours are kept even when the dialog is cancelled.
  if (cc->lpCustColors)
    for (int i = 0; i < 16; ++i) cc->lpCustColors[i] = custom[i];
  if (ok) {
    cc->rgbResult = w.rgbResult;
    cc->Flags = w.Flags;
  }
  return ok != FALSE;
}

std::int32_t Win32Dialogs::ChooseFontA(korvel::CHOOSEFONTA* cf) {
  if (!cf) return 0;
  ::LOGFONTW lf{};
  if (cf->lpLogFont) lf = WidenFont(*cf->lpLogFont);
  std::wstring template_name = WidenOrEmpty(cf->lpTemplateName);
  std::vector<wchar_t> style = WideBuffer(cf->lpszStyle, LF_FACESIZE);
  ::CHOOSEFONTW w{};
  w.lStructSize = sizeof w;
  w.hwndOwner = reinterpret_cast<HWND>(cf->hwndOwner);
  w.hDC = reinterpret_cast<HDC>(cf->hDC);
  w.lpLogFont = &lf;
  w.iPointSize = cf->iPointSize;
  w.Flags = cf->Flags;
  w.rgbColors = cf->rgbColors;
  w.lCustData = cf->lCustData;
  w.lpfnHook = reinterpret_cast<LPCFHOOKPROC>(cf->lpfnHook);
  w.lpTemplateName = cf->lpTemplateName ? template_name.c_str() : nullptr;
  w.hInstance = reinterpret_cast<HINSTANCE>(cf->hInstance);
  w.lpszStyle = cf->lpszStyle ? style.data() : nullptr;
  w.nSizeMin = cf->nSizeMin;
  w.nSizeMax = cf->nSizeMax;
  BOOL ok = ::ChooseFontW(&w);
  if (!ok) return 0;
  if (cf->lpLogFont) *cf->lpLogFont = NarrowFont(lf);
  cf->iPointSize = w.iPointSize;
  cf->Flags = w.Flags;
  cf->rgbColors = w.rgbColors;
  cf->nFontType = w.nFontType;
  if (cf->lpszStyle) CopyBack(style, static_cast<int>(std::wcslen(style.data())), cf->lpszStyle, LF_FACESIZE);
  return ok;
}

}  // namespace korvel::win32
