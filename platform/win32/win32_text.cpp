#include "platform/win32/win32_text.h"

#include <cstring>
#include <cwchar>

#ifndef NOMINMAX
#define NOMINMAX
#endif
#define WIN32_LEAN_AND_MEAN
#include <windows.h>

namespace korvel::win32 {

std::wstring Widen(const std::string& text) {
  if (text.empty()) return std::wstring();
  int n = ::MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), nullptr, 0);
  if (n <= 0) {
    // Not UTF-8: the ANSI code page gives every byte a character.
    n = ::MultiByteToWideChar(CP_ACP, 0, text.data(), static_cast<int>(text.size()), nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(n), L'\0');
    ::MultiByteToWideChar(CP_ACP, 0, text.data(), static_cast<int>(text.size()), wide.data(), n);
    return wide;
  }
  std::wstring wide(static_cast<std::size_t>(n), L'\0');
  ::MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), wide.data(), n);
  return wide;
}

std::string Narrow(const wchar_t* text, int count) {
  if (!text) return std::string();
  if (count < 0) count = static_cast<int>(std::wcslen(text));
  if (count == 0) return std::string();
  int n = ::WideCharToMultiByte(CP_UTF8, 0, text, count, nullptr, 0, nullptr, nullptr);
  std::string out(static_cast<std::size_t>(n > 0 ? n : 0), '\0');
  if (n > 0) ::WideCharToMultiByte(CP_UTF8, 0, text, count, out.data(), n, nullptr, nullptr);
  return out;
}

void CopyToBuffer(const std::string& text, char* buffer, std::size_t size) {
  if (!buffer || size == 0) return;
  std::size_t n = text.size() < size ? text.size() : size - 1;
  // Do not end inside a multi-byte character.
  if (n < text.size())
    while (n > 0 && (static_cast<unsigned char>(text[n]) & 0xC0) == 0x80) --n;
  text.copy(buffer, n);
  buffer[n] = '\0';
}

::LOGFONTW WidenFont(const korvel::LOGFONTA& a) {
  ::LOGFONTW w{};
  w.lfHeight = a.lfHeight;
  w.lfWidth = a.lfWidth;
  w.lfEscapement = a.lfEscapement;
  w.lfOrientation = a.lfOrientation;
  w.lfWeight = a.lfWeight;
  w.lfItalic = a.lfItalic;
  w.lfUnderline = a.lfUnderline;
  w.lfStrikeOut = a.lfStrikeOut;
  w.lfCharSet = a.lfCharSet;
  w.lfOutPrecision = a.lfOutPrecision;
  w.lfClipPrecision = a.lfClipPrecision;
  w.lfQuality = a.lfQuality;
  w.lfPitchAndFamily = a.lfPitchAndFamily;
  Widen(std::string(a.lfFaceName, strnlen(a.lfFaceName, sizeof a.lfFaceName))).copy(w.lfFaceName, LF_FACESIZE - 1);
  return w;
}

korvel::LOGFONTA NarrowFont(const ::LOGFONTW& w) {
  korvel::LOGFONTA a;
  a.lfHeight = w.lfHeight;
  a.lfWidth = w.lfWidth;
  a.lfEscapement = w.lfEscapement;
  a.lfOrientation = w.lfOrientation;
  a.lfWeight = w.lfWeight;
  a.lfItalic = w.lfItalic;
  a.lfUnderline = w.lfUnderline;
  a.lfStrikeOut = w.lfStrikeOut;
  a.lfCharSet = w.lfCharSet;
  a.lfOutPrecision = w.lfOutPrecision;
  a.lfClipPrecision = w.lfClipPrecision;
  a.lfQuality = w.lfQuality;
  a.lfPitchAndFamily = w.lfPitchAndFamily;
  CopyToBuffer(Narrow(w.lfFaceName, static_cast<int>(wcsnlen(w.lfFaceName, LF_FACESIZE))), a.lfFaceName,
               sizeof a.lfFaceName);
  return a;
}

}  // namespace korvel::win32
