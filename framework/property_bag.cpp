#include "framework/property_bag.h"

#include <cmath>
#include <cstdio>
#include <cstring>
#include <sstream>

#include "framework/arith.h"
#include "framework/errors.h"

namespace korvel {

std::vector<std::pair<std::string, Variant>>::iterator PropertyBag::Find(const std::string& name) {
  auto at = index_.find(UCase(name));
  return at == index_.end() ? entries_.end() : entries_.begin() + static_cast<std::ptrdiff_t>(at->second);
}

std::vector<std::pair<std::string, Variant>>::const_iterator PropertyBag::Find(const std::string& name) const {
  auto at = index_.find(UCase(name));
  return at == index_.end() ? entries_.end() : entries_.begin() + static_cast<std::ptrdiff_t>(at->second);
}

Variant PropertyBag::ReadProperty(const std::string& name, const Variant& def) const {
  auto it = Find(name);
  return it == entries_.end() ? def : it->second;
}

void PropertyBag::WriteProperty(const std::string& name, const Variant& value, const Variant& def) {
  if (value == def) {
    Remove(name);
    return;
  }
  WriteProperty(name, value);
}

void PropertyBag::WriteProperty(const std::string& name, const Variant& value) {
  auto it = Find(name);
  if (it != entries_.end()) {
    it->second = value;
  } else {
    index_.emplace(UCase(name), entries_.size());
    entries_.emplace_back(name, value);
  }
}

bool PropertyBag::Contains(const std::string& name) const { return Find(name) != entries_.end(); }

void PropertyBag::Remove(const std::string& name) {
  auto it = Find(name);
  if (it == entries_.end()) return;
  entries_.erase(it);
  index_.clear();
  for (std::size_t i = 0; i < entries_.size(); ++i) index_.emplace(UCase(entries_[i].first), i);
}

std::vector<std::string> PropertyBag::Keys() const {
  std::vector<std::string> keys;
  for (const auto& e : entries_) keys.push_back(e.first);
  return keys;
}

// ---- base64 ----

static const char kB64[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

std::string Base64Encode(const std::vector<std::uint8_t>& b) {
  std::string out;
  for (std::size_t i = 0; i < b.size(); i += 3) {
    std::uint32_t n = static_cast<std::uint32_t>(b[i]) << 16;
    if (i + 1 < b.size()) n |= static_cast<std::uint32_t>(b[i + 1]) << 8;
    if (i + 2 < b.size()) n |= b[i + 2];
    out += kB64[(n >> 18) & 63];
    out += kB64[(n >> 12) & 63];
    out += i + 1 < b.size() ? kB64[(n >> 6) & 63] : '=';
    out += i + 2 < b.size() ? kB64[n & 63] : '=';
  }
  return out;
}

std::optional<std::vector<std::uint8_t>> Base64Decode(const std::string& t) {
  std::vector<std::uint8_t> out;
  std::uint32_t acc = 0;
  int bits = 0;
  for (char c : t) {
    if (c == '=') break;
    const char* p = std::strchr(kB64, c);
    if (!p || !*p) return std::nullopt;
    acc = (acc << 6) | static_cast<std::uint32_t>(p - kB64);
    bits += 6;
    if (bits >= 8) {
      bits -= 8;
      out.push_back(static_cast<std::uint8_t>(acc >> bits));
    }
  }
  return out;
}

// ---- text form ----

namespace {

std::string QuoteString(const std::string& s) {
  std::string out;
  bool open = false;
  for (char ch : s) {
    unsigned char c = static_cast<unsigned char>(ch);
    if (c < 0x20 || c == 0x7F) {
      if (open) out += "\"";
      if (!out.empty()) out += " & ";
      out += "Chr$(" + std::to_string(c) + ")";
      open = false;
      continue;
    }
    if (!open) {
      if (!out.empty()) out += " & ";
      out += "\"";
      open = true;
    }
    if (ch == '"') out += "\"\"";
    else out += ch;
  }
  if (open) out += "\"";
  if (out.empty()) out = "\"\"";
  return out;
}

std::string FormatDouble(double v) {
  char buf[40];
  std::snprintf(buf, sizeof buf, "%.17g", v);
  std::string s = buf;
  // Keep a decimal point so the value reads back as a float.
  if (s.find_first_of(".eEn") == std::string::npos) s += ".0";
  return s;
}

std::string FormatValue(const Variant& v, const std::string& indent) {
  switch (v.Type()) {
    case VarType::Empty: return "Empty";
    case VarType::Integer: return std::to_string(v.ToInteger());
    case VarType::Long: {
      std::int32_t n = v.ToLong();
      if (n < 0 || n > 0xFFFF) {
        char buf[20];
        std::snprintf(buf, sizeof buf, "&H%08X&", static_cast<std::uint32_t>(n));
        return buf;
      }
      return std::to_string(n) + "&";
    }
    case VarType::Single: return FormatDouble(v.ToSingle()) + "!";
    case VarType::Double: return FormatDouble(v.ToDouble()) + "#";
    case VarType::String: return QuoteString(v.ToString());
    case VarType::Boolean: return v.ToBool() ? "-1  'True" : "0   'False";
    case VarType::Font: {
      FontRef f = v.ToFont();
      std::ostringstream o;
      o << "BeginProperty Font\n";
      std::string in = indent + "   ";
      o << in << "Name = " << QuoteString(f->Name()) << "\n";
      o << in << "Size = " << FormatDouble(f->Size()) << "\n";
      o << in << "Charset = " << f->Charset() << "\n";
      o << in << "Weight = " << f->Weight() << "\n";
      o << in << "Underline = " << (f->Underline() ? "-1  'True" : "0   'False") << "\n";
      o << in << "Italic = " << (f->Italic() ? "-1  'True" : "0   'False") << "\n";
      o << in << "Strikethrough = " << (f->Strikethrough() ? "-1  'True" : "0   'False") << "\n";
      o << indent << "EndProperty";
      return o.str();
    }
    case VarType::Picture: return "Picture(" + Base64Encode(v.ToPicture()->FileBytes()) + ")";
  }
  return "Empty";
}

// Parses a string expression of quoted parts and Chr$(n) parts joined by "&".
std::optional<std::string> ParseStringExpr(const std::string& s) {
  std::string out;
  std::size_t i = 0;
  bool expect_part = true;
  while (i < s.size()) {
    if (s[i] == ' ') {
      ++i;
      continue;
    }
    if (!expect_part) {
      if (s[i] == '&') {
        expect_part = true;
        ++i;
        continue;
      }
      if (s[i] == '\'') break;  // trailing comment
      return std::nullopt;
    }
    if (s[i] == '"') {
      ++i;
      for (;;) {
        if (i >= s.size()) return std::nullopt;
        if (s[i] == '"') {
          if (i + 1 < s.size() && s[i + 1] == '"') {
            out += '"';
            i += 2;
            continue;
          }
          ++i;
          break;
        }
        out += s[i++];
      }
    } else if (s.compare(i, 5, "Chr$(") == 0) {
      std::size_t close = s.find(')', i);
      if (close == std::string::npos) return std::nullopt;
      int n = std::atoi(s.substr(i + 5, close - i - 5).c_str());
      if (n < 0 || n > 255) return std::nullopt;
      out += static_cast<char>(n);
      i = close + 1;
    } else {
      return std::nullopt;
    }
    expect_part = false;
  }
  if (expect_part) return std::nullopt;
  return out;
}

std::optional<Variant> ParseScalar(std::string s) {
  // Strip a trailing comment that is not inside a string.
  if (!s.empty() && s[0] == '"') {
    auto str = ParseStringExpr(s);
    if (!str) return std::nullopt;
    return Variant::String(*str);
  }
  if (s.compare(0, 5, "Chr$(") == 0) {
    auto str = ParseStringExpr(s);
    if (!str) return std::nullopt;
    return Variant::String(*str);
  }
  std::size_t q = s.find('\'');
  if (q != std::string::npos) s = s.substr(0, q);
  s = Trim(s);
  if (s.empty()) return std::nullopt;
  if (s == "Empty") return Variant();
  if (s.compare(0, 8, "Picture(") == 0 && s.back() == ')') {
    auto bytes = Base64Decode(s.substr(8, s.size() - 9));
    if (!bytes) return std::nullopt;
    PictureRef p = Picture::FromBytes(*bytes);
    if (!p) return std::nullopt;
    return Variant::Object(p);
  }
  if (s.size() > 2 && s[0] == '&' && (s[1] == 'H' || s[1] == 'h')) {
    std::string hex = s.substr(2);
    bool is_long = !hex.empty() && hex.back() == '&';
    if (is_long) hex.pop_back();
    if (hex.empty() || hex.size() > 8) return std::nullopt;
    char* end = nullptr;
    unsigned long v = std::strtoul(hex.c_str(), &end, 16);
    if (*end) return std::nullopt;
    if (!is_long && hex.size() <= 4) return Variant::Integer(static_cast<std::int16_t>(v));
    return Variant::Long(static_cast<std::int32_t>(static_cast<std::uint32_t>(v)));
  }
  char suffix = s.back();
  std::string num = s;
  if (suffix == '&' || suffix == '!' || suffix == '#' || suffix == '%') num.pop_back();
  char* end = nullptr;
  if (suffix == '!' || suffix == '#' || num.find_first_of(".eE") != std::string::npos) {
    double d = std::strtod(num.c_str(), &end);
    if (*end || end == num.c_str()) return std::nullopt;
    if (suffix == '!') return Variant::Single(static_cast<float>(d));
    return Variant::Double(d);
  }
  long long n = std::strtoll(num.c_str(), &end, 10);
  if (*end || end == num.c_str()) return std::nullopt;
  // A boolean is written with its comment: -1 'True / 0 'False.
  if (q != std::string::npos && (n == -1 || n == 0) && suffix != '&') return Variant::Bool(n == -1);
  if (suffix == '&' || n < -32768 || n > 32767) {
    if (n < INT32_MIN || n > INT32_MAX) return std::nullopt;
    return Variant::Long(static_cast<std::int32_t>(n));
  }
  return Variant::Integer(static_cast<std::int16_t>(n));
}

bool SplitKeyValue(const std::string& line, std::string& key, std::string& value) {
  std::size_t eq = line.find('=');
  if (eq == std::string::npos) return false;
  key = Trim(line.substr(0, eq));
  value = Trim(line.substr(eq + 1));
  return !key.empty();
}

}  // namespace

std::string PropertyBag::ToText() const {
  std::string out;
  for (const auto& [key, value] : entries_) out += key + " = " + FormatValue(value, "") + "\n";
  return out;
}

PropertyBag PropertyBag::FromText(const std::string& text) {
  PropertyBag bag;
  std::istringstream in(text);
  std::string line;
  while (std::getline(in, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    std::string key, value;
    if (!SplitKeyValue(line, key, value)) continue;
    if (value == "BeginProperty Font") {
      auto font = std::make_shared<Font>();
      bool ok = true;
      while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (Trim(line) == "EndProperty") break;
        std::string k, v;
        if (!SplitKeyValue(line, k, v)) continue;
        auto parsed = ParseScalar(v);
        if (!parsed) continue;
        try {
          if (CompareText(k, "Name") == 0) font->SetName(parsed->ToString());
          else if (CompareText(k, "Size") == 0) font->SetSize(parsed->ToDouble());
          else if (CompareText(k, "Charset") == 0) font->SetCharset(parsed->ToInteger());
          else if (CompareText(k, "Weight") == 0) font->SetWeight(parsed->ToInteger());
          else if (CompareText(k, "Underline") == 0) font->SetUnderline(parsed->ToBool());
          else if (CompareText(k, "Italic") == 0) font->SetItalic(parsed->ToBool());
          else if (CompareText(k, "Strikethrough") == 0) font->SetStrikethrough(parsed->ToBool());
        } catch (const RuntimeError&) {
          ok = false;
        }
      }
      (void)ok;
      bag.WriteProperty(key, Variant::Object(font));
      continue;
    }
    if (auto v = ParseScalar(value)) bag.WriteProperty(key, *v);
  }
  return bag;
}

}  // namespace korvel
