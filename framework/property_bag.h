// The property bag a host hands a control to load from and save into, and its text
// form: one "Key = Value" per line, the way a form file stores a control.
#pragma once
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "framework/variant.h"

namespace korvel {

// A host may hand over a bag of its own: the ActiveX layer derives from this class
// and reads and writes through the container's property bag.
class PropertyBag {
 public:
  virtual ~PropertyBag() = default;
  // The stored value of key name, or def when the key is absent. Keys compare
  // without regard to case.
  virtual Variant ReadProperty(const std::string& name, const Variant& def = Variant()) const;
  // Stores value under name; when the value equals def the key is left out of the
  // bag, since reading it back with the same default gives the same value.
  virtual void WriteProperty(const std::string& name, const Variant& value, const Variant& def);
  // Stores value under name unconditionally.
  virtual void WriteProperty(const std::string& name, const Variant& value);

  bool Contains(const std::string& name) const;
  void Remove(const std::string& name);
  void Clear() {
    entries_.clear();
    index_.clear();
  }
  std::size_t Size() const { return entries_.size(); }
  // The keys in the order they were first written.
  std::vector<std::string> Keys() const;
  const std::vector<std::pair<std::string, Variant>>& Entries() const { return entries_; }

  // Text form. Strings are quoted with doubled quotes and may hold any UTF-8 text;
  // control characters are joined in as Chr$(n). Colours and other values of eight
  // hex digits are written as &H...&, booleans as -1 'True / 0 'False, fonts as a
  // BeginProperty block, pictures as the base64 of their file bytes.
  std::string ToText() const;
  // Parses the text form; a line that cannot be parsed is skipped (its key is then
  // absent, as a form file with a damaged line loads).
  static PropertyBag FromText(const std::string& text);

 private:
  std::vector<std::pair<std::string, Variant>>::iterator Find(const std::string& name);
  std::vector<std::pair<std::string, Variant>>::const_iterator Find(const std::string& name) const;

  std::vector<std::pair<std::string, Variant>> entries_;
  // Position of each key in entries_, by its upper-cased name: a lookup costs the
  // same in a bag of ten keys and in one of thousands.
  std::unordered_map<std::string, std::size_t> index_;
};

std::string Base64Encode(const std::vector<std::uint8_t>& bytes);
std::optional<std::vector<std::uint8_t>> Base64Decode(const std::string& text);

}  // namespace korvel
