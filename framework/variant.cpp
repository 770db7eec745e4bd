#include "framework/variant.h"

#include <cerrno>
#include <cmath>
#include <cctype>
#include <cstdio>
#include <cstdlib>

#include "framework/arith.h"
#include "framework/errors.h"

namespace korvel {
namespace {

// Parses a number the way the host's string-to-number coercion does: surrounding
// blanks allowed, decimal or &H hex; anything else is a type mismatch.
double ParseNumber(const std::string& text) {
  std::string s = Trim(text);
  if (s.empty()) throw RuntimeError(kErrTypeMismatch);
  if (s.size() > 2 && s[0] == '&' && (s[1] == 'H' || s[1] == 'h')) {
    std::string hex = s.substr(2);
    if (!hex.empty() && hex.back() == '&') hex.pop_back();
    if (hex.empty() || hex.size() > 8) throw RuntimeError(kErrTypeMismatch);
    char* end = nullptr;
    unsigned long v = std::strtoul(hex.c_str(), &end, 16);
    if (*end) throw RuntimeError(kErrTypeMismatch);
    if (hex.size() <= 4) return static_cast<std::int16_t>(v);
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(v));
  }
  for (char c : s)
    if (!(std::isdigit(static_cast<unsigned char>(c)) || c == '.' || c == '-' || c == '+' || c == 'e' || c == 'E'))
      throw RuntimeError(kErrTypeMismatch);
  char* end = nullptr;
  errno = 0;
  double v = std::strtod(s.c_str(), &end);
  if (*end || end == s.c_str()) throw RuntimeError(kErrTypeMismatch);
  if (errno == ERANGE) throw RuntimeError(kErrOverflow);
  return v;
}

}  // namespace

VarType Variant::Type() const {
  switch (data_.index()) {
    case 0: return VarType::Empty;
    case 1: return VarType::Integer;
    case 2: return VarType::Long;
    case 3: return VarType::Single;
    case 4: return VarType::Double;
    case 5: return VarType::String;
    case 6: return VarType::Boolean;
    case 7: return VarType::Font;
    case 8: return VarType::Picture;
    default: return VarType::Array;
  }
}

bool Variant::IsNumeric() const {
  VarType t = Type();
  return t == VarType::Integer || t == VarType::Long || t == VarType::Single || t == VarType::Double ||
         t == VarType::Boolean;
}

double Variant::NumericValue() const {
  switch (Type()) {
    case VarType::Empty: return 0;
    case VarType::Integer: return std::get<std::int16_t>(data_);
    case VarType::Long: return std::get<std::int32_t>(data_);
    case VarType::Single: return std::get<float>(data_);
    case VarType::Double: return std::get<double>(data_);
    case VarType::Boolean: return std::get<BoolTag>(data_).v ? -1 : 0;
    case VarType::String: return ParseNumber(std::get<std::string>(data_));
    default: throw RuntimeError(kErrTypeMismatch);
  }
}

std::int16_t Variant::ToInteger() const { return CInt(NumericValue()); }
std::int32_t Variant::ToLong() const { return CLng(NumericValue()); }

float Variant::ToSingle() const {
  double v = NumericValue();
  if (std::fabs(v) > 3.402823466e38) throw RuntimeError(kErrOverflow);
  return static_cast<float>(v);
}

double Variant::ToDouble() const { return NumericValue(); }

bool Variant::ToBool() const {
  if (Type() == VarType::String) {
    std::string s = Trim(std::get<std::string>(data_));
    if (CompareText(s, "True") == 0) return true;
    if (CompareText(s, "False") == 0) return false;
    return ParseNumber(s) != 0;
  }
  return NumericValue() != 0;
}

std::string Variant::ToString() const {
  switch (Type()) {
    case VarType::Empty: return "";
    case VarType::Integer: return CStr(static_cast<std::int32_t>(std::get<std::int16_t>(data_)));
    case VarType::Long: return CStr(std::get<std::int32_t>(data_));
    case VarType::Single: {
      char buf[32];
      std::snprintf(buf, sizeof buf, "%.7G", static_cast<double>(std::get<float>(data_)));
      return buf;
    }
    case VarType::Double: return CStr(std::get<double>(data_));
    case VarType::String: return std::get<std::string>(data_);
    case VarType::Boolean: return std::get<BoolTag>(data_).v ? "True" : "False";
    case VarType::Font: {
      // The font's default member is its name.
      const FontRef& f = std::get<FontRef>(data_);
      if (!f) throw RuntimeError(kErrTypeMismatch);
      return f->Name();
    }
    default: throw RuntimeError(kErrTypeMismatch);
  }
}

FontRef Variant::ToFont() const {
  if (Type() == VarType::Empty) return nullptr;
  if (Type() != VarType::Font) throw RuntimeError(kErrTypeMismatch);
  return std::get<FontRef>(data_);
}

PictureRef Variant::ToPicture() const {
  if (Type() == VarType::Empty) return nullptr;
  if (Type() != VarType::Picture) throw RuntimeError(kErrTypeMismatch);
  return std::get<PictureRef>(data_);
}

Variant Variant::Array(std::vector<Variant> items, std::int32_t lower_bound) {
  auto a = std::make_shared<VariantArray>();
  a->lower_bound = lower_bound;
  a->items = std::move(items);
  return Variant(Data{std::shared_ptr<const VariantArray>(std::move(a))});
}

const VariantArray& Variant::ToArray() const {
  static const VariantArray kEmpty;
  if (Type() == VarType::Empty) return kEmpty;
  if (Type() != VarType::Array) throw RuntimeError(kErrTypeMismatch);
  return *std::get<std::shared_ptr<const VariantArray>>(data_);
}

bool operator==(const Variant& a, const Variant& b) {
  VarType ta = a.Type(), tb = b.Type();
  if (ta == VarType::Array || tb == VarType::Array) {
    if (ta != tb) return false;
    const VariantArray& x = a.ToArray();
    const VariantArray& y = b.ToArray();
    return x.lower_bound == y.lower_bound && x.items == y.items;
  }
  if (ta == VarType::Font || tb == VarType::Font || ta == VarType::Picture || tb == VarType::Picture)
    return a.data_ == b.data_;
  if (ta == VarType::String && tb == VarType::String) return std::get<std::string>(a.data_) == std::get<std::string>(b.data_);
  if (ta == VarType::String || tb == VarType::String) {
    // Mixed: a string and a number compare as numbers when the string is numeric.
    try {
      return a.NumericValue() == b.NumericValue();
    } catch (const RuntimeError&) {
      return false;
    }
  }
  return a.NumericValue() == b.NumericValue();
}

}  // namespace korvel
