// Text for the headless backend: a deterministic metrics font for tests and
// FreeType with TrueType fonts for pictures people look at.
#pragma once
#include <memory>
#include <string>

#include "framework/platform.h"
#include "platform/headless/raster.h"

namespace korvel::headless {

class TextRenderer {
 public:
  virtual ~TextRenderer() = default;
  virtual Size Measure(const LOGFONTA& lf, const std::string& text) = 0;
  // Draws text with its top-left corner at (x, y) in color.
  virtual void Draw(BitmapObj& target, int x, int y, const LOGFONTA& lf, const std::string& text,
                    ColorRef color) = 0;
};

// The metrics font: every character (UTF-8 code point) is W pixels wide and every
// line H pixels high, with W = (5 x |lfHeight| + 5) / 11 (at least 1) and
// H = |lfHeight| + 2; an lfHeight of 0 counts as -11 (8 points). A character other
// than a space is drawn as a solid block from (x + 1, y + 3), W - 2 wide and H - 6
// high; underline is the row H - 2, strikeout the row H / 2.
class MetricsTextRenderer : public TextRenderer {
 public:
  static int CharWidth(const LOGFONTA& lf);
  static int LineHeight(const LOGFONTA& lf);
  Size Measure(const LOGFONTA& lf, const std::string& text) override;
  void Draw(BitmapObj& target, int x, int y, const LOGFONTA& lf, const std::string& text, ColorRef color) override;
};

// FreeType rendering with Debian's TrueType fonts (Liberation, falling back to
// DejaVu). Returns nothing when no font file can be opened.
std::unique_ptr<TextRenderer> MakeFreeTypeTextRenderer();

// Number of code points of UTF-8 text.
int CodePointCount(const std::string& text);

}  // namespace korvel::headless
