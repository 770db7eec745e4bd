#include "platform/headless/text_renderer.h"

#include <ft2build.h>
#include FT_FREETYPE_H

#include <cstdlib>
#include <cstring>
#include <map>
#include <string>

#include "framework/arith.h"

namespace korvel::headless {

namespace {

// Decodes UTF-8 into code points; a malformed byte counts as one code point.
std::vector<std::uint32_t> Decode(const std::string& s) {
  std::vector<std::uint32_t> out;
  for (std::size_t i = 0; i < s.size();) {
    auto c = static_cast<unsigned char>(s[i]);
    int n = c < 0x80 ? 1 : (c >> 5) == 6 ? 2 : (c >> 4) == 14 ? 3 : (c >> 3) == 30 ? 4 : 1;
    std::uint32_t cp = n == 1 ? c : c & (0x7F >> n);
    if (i + n > s.size()) n = 1, cp = c;
    for (int k = 1; k < n; ++k) cp = (cp << 6) | (static_cast<unsigned char>(s[i + k]) & 0x3F);
    out.push_back(cp);
    i += static_cast<std::size_t>(n);
  }
  return out;
}

int PixelHeight(const LOGFONTA& lf) {
  int h = std::abs(lf.lfHeight);
  return h == 0 ? 11 : h;
}

void Put(BitmapObj& t, int x, int y, ColorRef c) {
  if (!t.Inside(x, y)) return;
  if (t.mono) {
    int sum = RedOf(c) + GreenOf(c) + BlueOf(c);
    c = sum >= 384 ? kWhite : kBlack;
  }
  t.At(x, y) = c;
}

}  // namespace

int CodePointCount(const std::string& text) { return static_cast<int>(Decode(text).size()); }

int MetricsTextRenderer::CharWidth(const LOGFONTA& lf) { return std::max(1, (5 * PixelHeight(lf) + 5) / 11); }
int MetricsTextRenderer::LineHeight(const LOGFONTA& lf) { return PixelHeight(lf) + 2; }

Size MetricsTextRenderer::Measure(const LOGFONTA& lf, const std::string& text) {
  return Size{CharWidth(lf) * CodePointCount(text), LineHeight(lf)};
}

void MetricsTextRenderer::Draw(BitmapObj& t, int x, int y, const LOGFONTA& lf, const std::string& text,
                               ColorRef color) {
  int w = CharWidth(lf), h = LineHeight(lf);
  auto cps = Decode(text);
  for (std::size_t i = 0; i < cps.size(); ++i) {
    int cx = x + static_cast<int>(i) * w;
    if (cps[i] != ' ')
      for (int yy = y + 3; yy < y + h - 3; ++yy)
        for (int xx = cx + 1; xx < cx + w - 1; ++xx) Put(t, xx, yy, color);
  }
  int total = w * static_cast<int>(cps.size());
  if (lf.lfUnderline)
    for (int xx = x; xx < x + total; ++xx) Put(t, xx, y + h - 2, color);
  if (lf.lfStrikeOut)
    for (int xx = x; xx < x + total; ++xx) Put(t, xx, y + h / 2, color);
}

namespace {

class FreeTypeTextRenderer : public TextRenderer {
 public:
  FreeTypeTextRenderer() { ok_ = FT_Init_FreeType(&lib_) == 0; }
  ~FreeTypeTextRenderer() override {
    for (auto& [k, f] : faces_) FT_Done_Face(f);
    if (ok_) FT_Done_FreeType(lib_);
  }
  bool ok() { return ok_ && Face(LOGFONTA{}) != nullptr; }

  Size Measure(const LOGFONTA& lf, const std::string& text) override {
    FT_Face face = Face(lf);
    if (!face) return Size{};
    int width = 0;
    for (std::uint32_t cp : Decode(text)) {
      if (FT_Load_Char(face, cp, FT_LOAD_DEFAULT) == 0) width += static_cast<int>((face->glyph->advance.x + 32) >> 6);
    }
    return Size{width, LineHeight(face)};
  }

  void Draw(BitmapObj& t, int x, int y, const LOGFONTA& lf, const std::string& text, ColorRef color) override {
    FT_Face face = Face(lf);
    if (!face) return;
    int ascent = static_cast<int>((face->size->metrics.ascender + 32) >> 6);
    int pen_x = x;
    for (std::uint32_t cp : Decode(text)) {
      if (FT_Load_Char(face, cp, FT_LOAD_RENDER | FT_LOAD_TARGET_NORMAL) != 0) continue;
      FT_GlyphSlot g = face->glyph;
      const FT_Bitmap& bm = g->bitmap;
      for (unsigned row = 0; row < bm.rows; ++row)
        for (unsigned col = 0; col < bm.width; ++col) {
          int a = bm.buffer[row * static_cast<unsigned>(bm.pitch) + col];
          if (a == 0) continue;
          int px = pen_x + g->bitmap_left + static_cast<int>(col);
          int py = y + ascent - g->bitmap_top + static_cast<int>(row);
          if (!t.Inside(px, py)) continue;
          if (t.mono) {
            if (a >= 128) Put(t, px, py, color);
            continue;
          }
          ColorRef d = t.At(px, py);
          auto mix = [a](int s, int dd) { return (s * a + dd * (255 - a) + 127) / 255; };
          t.At(px, py) = Rgb(mix(RedOf(color), RedOf(d)), mix(GreenOf(color), GreenOf(d)), mix(BlueOf(color), BlueOf(d)));
        }
      pen_x += static_cast<int>((g->advance.x + 32) >> 6);
    }
    int h = LineHeight(face);
    if (lf.lfUnderline)
      for (int xx = x; xx < pen_x; ++xx) Put(t, xx, y + ascent + 1, color);
    if (lf.lfStrikeOut)
      for (int xx = x; xx < pen_x; ++xx) Put(t, xx, y + h / 2, color);
  }

 private:
  static int LineHeight(FT_Face face) {
    return static_cast<int>((face->size->metrics.ascender - face->size->metrics.descender + 32) >> 6);
  }

  FT_Face Face(const LOGFONTA& lf) {
    bool bold = lf.lfWeight > 550;
    bool italic = lf.lfItalic != 0;
    std::string name = UCase(lf.lfFaceName);
    bool serif = name.find("TIMES") != std::string::npos || name.find("SERIF") == 0 ||
                 name.find("GEORGIA") != std::string::npos;
    bool mono = name.find("COURIER") != std::string::npos || name.find("MONO") != std::string::npos ||
                name.find("CONSOLE") != std::string::npos;
    std::string family = mono ? "Mono" : serif ? "Serif" : "Sans";
    std::string style = bold && italic ? "BoldItalic" : bold ? "Bold" : italic ? "Italic" : "Regular";
    int px = PixelHeight(lf);
    std::string key = family + style + std::to_string(px);
    if (auto it = faces_.find(key); it != faces_.end()) {
      FT_Set_Pixel_Sizes(it->second, 0, static_cast<FT_UInt>(px));
      return it->second;
    }
    const std::string dejavu_style = bold && italic ? "-BoldOblique" : bold ? "-Bold" : italic ? "-Oblique" : "";
    std::string candidates[] = {
        "/usr/share/fonts/truetype/liberation/Liberation" + family + "-" + style + ".ttf",
        "/usr/share/fonts/truetype/dejavu/DejaVu" + family + dejavu_style + ".ttf",
        "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf",
    };
    for (const auto& path : candidates) {
      FT_Face face = nullptr;
      if (FT_New_Face(lib_, path.c_str(), 0, &face) == 0) {
        FT_Set_Pixel_Sizes(face, 0, static_cast<FT_UInt>(px));
        faces_[key] = face;
        return face;
      }
    }
    return nullptr;
  }

  bool ok_ = false;
  FT_Library lib_ = nullptr;
  std::map<std::string, FT_Face> faces_;
};

}  // namespace

std::unique_ptr<TextRenderer> MakeFreeTypeTextRenderer() {
  auto r = std::make_unique<FreeTypeTextRenderer>();
  if (!r->ok()) return nullptr;
  return r;
}

}  // namespace korvel::headless
