// UTF-8 text of the core to and from the platform's wide strings.
#pragma once
#include <cstddef>
#include <string>

#include "framework/platform.h"

struct tagLOGFONTW;

namespace korvel::win32 {

std::wstring Widen(const std::string& text);
// Converts count wide characters (up to the first NUL when count is negative).
std::string Narrow(const wchar_t* text, int count = -1);
// Copies text into a fixed buffer of size bytes, cut at a character boundary so
// that the NUL always fits.
void CopyToBuffer(const std::string& text, char* buffer, std::size_t size);

// The core's font record and the platform's wide one, field by field (face names
// as UTF-8 in the core).
::tagLOGFONTW WidenFont(const LOGFONTA& a);
LOGFONTA NarrowFont(const ::tagLOGFONTW& w);

}  // namespace korvel::win32
