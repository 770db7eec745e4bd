#include "framework/arith.h"

#include <cmath>
#include <cstdio>
#include <limits>

#include "framework/errors.h"

namespace korvel {

double RoundHalfEven(double v) { return std::nearbyint(v); }  // default FE_TONEAREST

std::int32_t CLng(double v) {
  if (std::isnan(v)) throw RuntimeError(kErrOverflow);
  double r = RoundHalfEven(v);
  if (r < -2147483648.0 || r > 2147483647.0) throw RuntimeError(kErrOverflow);
  return static_cast<std::int32_t>(r);
}

std::int16_t CInt(double v) {
  if (std::isnan(v)) throw RuntimeError(kErrOverflow);
  double r = RoundHalfEven(v);
  if (r < -32768.0 || r > 32767.0) throw RuntimeError(kErrOverflow);
  return static_cast<std::int16_t>(r);
}

std::int16_t Store16(std::int32_t v) {
  return static_cast<std::int16_t>(static_cast<std::uint16_t>(static_cast<std::uint32_t>(v) & 0xFFFFu));
}

std::int32_t IntDiv(double a, double b) {
  std::int32_t ia = CLng(a);
  std::int32_t ib = CLng(b);
  if (ib == 0) throw RuntimeError(kErrDivisionByZero);
  if (ia == std::numeric_limits<std::int32_t>::min() && ib == -1) throw RuntimeError(kErrOverflow);
  return ia / ib;  // C++ truncates toward zero
}

double FloatDiv(double a, double b) {
  if (b == 0.0) throw RuntimeError(kErrDivisionByZero);
  return a / b;
}

namespace {
char Up(char c) { return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c; }
char Low(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; }
}  // namespace

std::string UCase(std::string_view s) {
  std::string r(s);
  for (char& c : r) c = Up(c);
  return r;
}

std::string LCase(std::string_view s) {
  std::string r(s);
  for (char& c : r) c = Low(c);
  return r;
}

std::string LTrim(std::string_view s) {
  std::size_t b = 0;
  while (b < s.size() && s[b] == ' ') ++b;
  return std::string(s.substr(b));
}

std::string RTrim(std::string_view s) {
  std::size_t e = s.size();
  while (e > 0 && s[e - 1] == ' ') --e;
  return std::string(s.substr(0, e));
}

std::string Trim(std::string_view s) { return LTrim(RTrim(s)); }

int CompareText(std::string_view a, std::string_view b) {
  std::size_t n = std::min(a.size(), b.size());
  for (std::size_t i = 0; i < n; ++i) {
    unsigned char ca = static_cast<unsigned char>(Up(a[i]));
    unsigned char cb = static_cast<unsigned char>(Up(b[i]));
    if (ca != cb) return ca < cb ? -1 : 1;
  }
  if (a.size() == b.size()) return 0;
  return a.size() < b.size() ? -1 : 1;
}

static std::int32_t InStrImpl(std::int32_t start, std::string_view text, std::string_view find, bool text_compare) {
  if (start < 1) start = 1;
  if (static_cast<std::size_t>(start) > text.size() + 1) return 0;
  if (find.empty()) return start;
  std::string t = text_compare ? UCase(text) : std::string(text);
  std::string f = text_compare ? UCase(find) : std::string(find);
  std::size_t p = t.find(f, static_cast<std::size_t>(start - 1));
  return p == std::string::npos ? 0 : static_cast<std::int32_t>(p + 1);
}

std::int32_t InStr(std::int32_t start, std::string_view text, std::string_view find) {
  return InStrImpl(start, text, find, false);
}

std::int32_t InStrText(std::int32_t start, std::string_view text, std::string_view find) {
  return InStrImpl(start, text, find, true);
}

std::string Mid(std::string_view text, std::int32_t start, std::int32_t length) {
  if (start < 1) start = 1;
  std::size_t b = static_cast<std::size_t>(start - 1);
  if (b >= text.size()) return {};
  if (length < 0) return std::string(text.substr(b));
  return std::string(text.substr(b, static_cast<std::size_t>(length)));
}

std::string Left(std::string_view text, std::int32_t length) {
  if (length <= 0) return {};
  return std::string(text.substr(0, static_cast<std::size_t>(length)));
}

std::string Right(std::string_view text, std::int32_t length) {
  if (length <= 0) return {};
  std::size_t n = std::min(text.size(), static_cast<std::size_t>(length));
  return std::string(text.substr(text.size() - n));
}

std::string CStr(std::int32_t v) { return std::to_string(v); }

std::string CStr(double v) {
  if (v == std::floor(v) && std::fabs(v) < 1e15) {
    return std::to_string(static_cast<long long>(v));
  }
  char buf[64];
  std::snprintf(buf, sizeof buf, "%.15G", v);
  return buf;
}

}  // namespace korvel
