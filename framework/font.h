// The font object (the platform's standard font) with the members the controls use.
// Fonts are shared by reference: a control that keeps a font keeps the same object
// the host gave it.
#pragma once
#include <cstdint>
#include <memory>
#include <string>

namespace korvel {

class Font {
 public:
  // A new font object has the platform's default face and size.
  Font() = default;
  Font(std::string name, double size) : name_(std::move(name)), size_(size) {}

  // Name is the default member: assigning one font to another's default member
  // copies only the name.
  const std::string& Name() const { return name_; }
  void SetName(std::string name) { name_ = std::move(name); }
  double Size() const { return size_; }
  void SetSize(double size) { size_ = size; }
  // Bold is derived from the weight: heavier than 550 reads as bold; setting it
  // sets the weight to 700 or 400.
  bool Bold() const { return weight_ > 550; }
  void SetBold(bool b) { weight_ = b ? 700 : 400; }
  bool Italic() const { return italic_; }
  void SetItalic(bool b) { italic_ = b; }
  bool Underline() const { return underline_; }
  void SetUnderline(bool b) { underline_ = b; }
  bool Strikethrough() const { return strikethrough_; }
  void SetStrikethrough(bool b) { strikethrough_ = b; }
  std::int16_t Weight() const { return weight_; }
  void SetWeight(std::int16_t w) { weight_ = w; }
  std::int16_t Charset() const { return charset_; }
  void SetCharset(std::int16_t c) { charset_ = c; }

  std::shared_ptr<Font> Clone() const { return std::make_shared<Font>(*this); }
  friend bool operator==(const Font&, const Font&) = default;

 private:
  std::string name_ = "MS Sans Serif";
  double size_ = 8.25;
  std::int16_t weight_ = 400;
  std::int16_t charset_ = 0;
  bool italic_ = false;
  bool underline_ = false;
  bool strikethrough_ = false;
};

using FontRef = std::shared_ptr<Font>;

}  // namespace korvel
