// The variant the host passes property values in: 16- and 32-bit integers, booleans
// (-1/0), colours (32-bit), strings, single and double, font and picture objects.
// Conversions follow the host language's coercion rules; a value that cannot be
// converted raises error 13 (type mismatch), one out of range error 6 (overflow).
#pragma once
#include <cstdint>
#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "framework/font.h"
#include "framework/picture.h"
#include "framework/types.h"

namespace korvel {

enum class VarType { Empty, Integer, Long, Single, Double, String, Boolean, Font, Picture, Array };

class Variant;
// A one-dimensional array passed by value, with its lower bound (the controls' list
// arrays start at 1).
struct VariantArray {
  std::int32_t lower_bound = 1;
  std::vector<Variant> items;
};

class Variant {
 public:
  Variant() = default;
  static Variant Integer(std::int16_t v) { return Variant(Data{v}); }
  static Variant Long(std::int32_t v) { return Variant(Data{v}); }
  static Variant Color(OleColor v) { return Variant(Data{static_cast<std::int32_t>(v)}); }
  static Variant Single(float v) { return Variant(Data{v}); }
  static Variant Double(double v) { return Variant(Data{v}); }
  static Variant Bool(bool v) { return Variant(Data{BoolTag{v}}); }
  static Variant String(std::string v) { return Variant(Data{std::move(v)}); }
  static Variant Object(FontRef f) { return Variant(Data{std::move(f)}); }
  static Variant Object(PictureRef p) { return Variant(Data{std::move(p)}); }
  static Variant Array(std::vector<Variant> items, std::int32_t lower_bound = 1);

  // Convenience constructors for literals.
  Variant(std::int16_t v) : data_(v) {}
  Variant(std::int32_t v) : data_(v) {}
  Variant(bool v) : data_(BoolTag{v}) {}
  Variant(double v) : data_(v) {}
  Variant(float v) : data_(v) {}
  Variant(const char* v) : data_(std::string(v)) {}
  Variant(std::string v) : data_(std::move(v)) {}
  Variant(FontRef v) : data_(std::move(v)) {}
  Variant(PictureRef v) : data_(std::move(v)) {}

  VarType Type() const;
  bool IsEmpty() const { return Type() == VarType::Empty; }
  bool IsNumeric() const;  // integer, long, single, double or boolean

  std::int16_t ToInteger() const;
  std::int32_t ToLong() const;
  OleColor ToColor() const { return static_cast<OleColor>(ToLong()); }
  float ToSingle() const;
  double ToDouble() const;
  bool ToBool() const;
  std::string ToString() const;
  FontRef ToFont() const;        // error 13 unless a font object (an empty variant gives nothing)
  PictureRef ToPicture() const;  // error 13 unless a picture object (an empty variant gives nothing)
  // Error 13 unless an array. An empty variant gives an empty array with lower bound 1.
  const VariantArray& ToArray() const;

  // Value equality as the host compares a written value with its default: numbers
  // by value, strings exactly, objects by identity.
  friend bool operator==(const Variant& a, const Variant& b);

 private:
  struct BoolTag {
    bool v;
    friend bool operator==(BoolTag, BoolTag) = default;
  };
  using Data = std::variant<std::monostate, std::int16_t, std::int32_t, float, double, std::string, BoolTag,
                            FontRef, PictureRef, std::shared_ptr<const VariantArray>>;
  explicit Variant(Data d) : data_(std::move(d)) {}
  double NumericValue() const;  // error 13 when not numeric

  Data data_;
};

}  // namespace korvel
