// Arithmetic and text helpers with the host language's exact rules: rounding to
// nearest with halves to even, 16-bit storage, integer division truncating toward
// zero, and the platform's case-insensitive comparison and trimming.
#pragma once
#include <cstdint>
#include <string>
#include <string_view>

namespace korvel {

// Round to nearest, halves to even (the rule of every float-to-integer conversion).
double RoundHalfEven(double v);

// Float to 32-bit integer: rounded half to even; outside the range raises error 6.
std::int32_t CLng(double v);
// Float or integer to 16-bit integer: rounded half to even; outside raises error 6.
std::int16_t CInt(double v);
// Stores the low 16 bits of a value and sign-extends them (what a 16-bit field
// keeps when a wider integer is written into it without a check).
std::int16_t Store16(std::int32_t v);

// The integer division operator: both operands are rounded to integers first,
// then the quotient truncates toward zero. A zero divisor raises error 11.
std::int32_t IntDiv(double a, double b);
// Float division; a zero divisor raises error 11 (11 even for 0 / 0).
double FloatDiv(double a, double b);

// Boolean as the host stores it: -1 true, 0 false.
constexpr std::int16_t VbBool(bool b) { return b ? -1 : 0; }

// Text helpers. Strings are UTF-8; positions are 1-based as in the host language.
std::string UCase(std::string_view s);
std::string LCase(std::string_view s);
// Removes leading and trailing spaces (only the space character, as the platform's Trim does).
std::string Trim(std::string_view s);
std::string LTrim(std::string_view s);
std::string RTrim(std::string_view s);
// Case-insensitive text comparison (the platform's text compare): <0, 0, >0.
int CompareText(std::string_view a, std::string_view b);
// Position of find in text at or after start (1-based), or 0. Binary compare.
std::int32_t InStr(std::int32_t start, std::string_view text, std::string_view find);
// The same with the case-insensitive text compare.
std::int32_t InStrText(std::int32_t start, std::string_view text, std::string_view find);
// Mid$(text, start, length); length < 0 means "to the end".
std::string Mid(std::string_view text, std::int32_t start, std::int32_t length = -1);
std::string Left(std::string_view text, std::int32_t length);
std::string Right(std::string_view text, std::int32_t length);
// Number to text the way the host's Str/CStr shows it (no leading blank).
std::string CStr(double v);
std::string CStr(std::int32_t v);

}  // namespace korvel
