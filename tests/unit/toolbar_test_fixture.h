// Shared pieces of the KorvelToolbar tests: an image strip drawn in code, a
// fixture that places a toolbar with a given button list, and readers for pixels,
// events and platform calls.
#pragma once
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "controls/toolbar/toolbar.h"
#include "framework/arith.h"
#include "framework/errors.h"
#include "platform/headless/headless_host.h"
#include "platform/headless/headless_platform.h"

namespace toolbar_test {

using namespace korvel;
using namespace korvel::headless;

constexpr ColorRef kFace = Rgb(192, 192, 192);     // COLOR_BTNFACE
constexpr ColorRef kShadow = Rgb(128, 128, 128);   // COLOR_BTNSHADOW
constexpr ColorRef kHilite = Rgb(255, 255, 255);   // COLOR_BTNHIGHLIGHT
constexpr ColorRef kHot = Rgb(224, 224, 224);      // halfway between highlight and face, 223.5 to even
constexpr ColorRef kMagenta = Rgb(255, 0, 255);
constexpr ColorRef kWhite = Rgb(255, 255, 255);
// The left half of image k (1-based) below the mask rows.
inline ColorRef ImageColor(int k) {
  static const ColorRef colors[] = {Rgb(255, 0, 0), Rgb(0, 128, 0), Rgb(0, 0, 255), Rgb(255, 255, 0),
                                    Rgb(0, 128, 128), Rgb(128, 0, 0), Rgb(0, 0, 128), Rgb(128, 128, 0)};
  return colors[(k - 1) % 8];
}

// Pixel (px, py) of image k of the test strip: rows 0-3 magenta (the mask colour),
// below them the left half in the image's colour and the right half white.
inline ColorRef StripPixel(int k, int px, int py, int size = 16) {
  if (py < 4) return kMagenta;
  return px < size / 2 ? ImageColor(k) : kWhite;
}

inline Image StripImage(int images, int size = 16) {
  Image img(images * size, size);
  for (int k = 1; k <= images; ++k)
    for (int y = 0; y < size; ++y)
      for (int x = 0; x < size; ++x) img.At((k - 1) * size + x, y) = StripPixel(k, x, y, size);
  return img;
}

inline PictureRef Strip(int images, int size = 16) { return Picture::FromImage(StripImage(images, size)); }

// The embossed (disabled) strip on button face: shadow where the strip is not
// white, highlight one pixel down and right of such pixels, face elsewhere.
inline ColorRef DisabledPixel(int X, int Y, int images, int size = 16) {
  auto dark = [&](int x, int y) {
    if (x < 0 || y < 0 || x >= images * size || y >= size) return false;
    return StripPixel(x / size + 1, x % size, y, size) != kWhite;
  };
  if (dark(X, Y)) return kShadow;
  if (dark(X - 1, Y - 1)) return kHilite;
  return kFace;
}

struct Item {
  std::string key;
  std::string tip;
  std::int32_t style = ktButton;
  bool enabled = true;
  bool value = false;
  std::int16_t width = 1;
};

inline Item Button(std::string key, std::string tip = "") { return Item{std::move(key), std::move(tip)}; }
inline Item Check(std::string key, bool value = false, std::string tip = "") {
  return Item{std::move(key), std::move(tip), ktCheck, true, value};
}
inline Item Separator() { return Item{"", "", ktSeparator}; }
inline Item Placeholder(std::int16_t width) { return Item{"", "", ktPlaceholder, true, false, width}; }
inline Item Disabled(Item i) {
  i.enabled = false;
  return i;
}

class ToolbarTest : public ::testing::Test {
 protected:
  // Replaces the button list through Customize (at design time).
  void Apply(KorvelToolbar& tb, const std::vector<Item>& items) {
    bool mode = host.user_mode;
    host.user_mode = false;
    std::int16_t count = static_cast<std::int16_t>(items.size());
    std::vector<std::string> key, tip;
    std::vector<std::int32_t> style;
    std::vector<bool> enabled, value;
    std::vector<std::int16_t> width;
    for (const auto& i : items) {
      key.push_back(i.key);
      tip.push_back(i.tip);
      style.push_back(i.style);
      enabled.push_back(i.enabled);
      value.push_back(i.value);
      width.push_back(i.width);
    }
    tb.Customize(true, count, key, tip, style, enabled, value, width);
    host.user_mode = mode;
  }

  // A new toolbar placed at design time with the strip and the items, then
  // switched to run time (or left at design time) and repainted; records cleared.
  std::unique_ptr<KorvelToolbar> Make(const std::vector<Item>& items, int images = 4, bool user_mode = true,
                                      std::int32_t border = ktInternetExplorer, int width = 200) {
    host.user_mode = false;
    auto tb = std::make_unique<KorvelToolbar>(host, platform);
    host.PlaceNew(*tb, width, 10);
    if (images > 0) tb->SetPicture(Strip(images));
    tb->SetBorderStyle(border);
    Apply(*tb, items);
    host.user_mode = user_mode;
    tb->Resize();
    host.ClearRecords();
    platform.log().Clear();
    return tb;
  }

  ColorRef Area(KorvelToolbar& tb, int x, int y) { return platform.raster().GetPixel(tb.ButtonArea().hDC(), x, y); }
  ColorRef Ctl(KorvelToolbar& tb, int x, int y) { return platform.raster().GetPixel(tb.UserControl().hDC(), x, y); }
  ColorRef Pic(Surface& s, int x, int y) { return platform.raster().GetPixel(s.hDC(), x, y); }
  ColorRef Sys(int index) { return platform.raster().GetSysColor(index); }
  static std::string N(Handle h) { return std::to_string(static_cast<long long>(h)); }

  // Events as Name(arg, arg, ...), strings quoted; checks the declared argument types.
  std::vector<std::string> Events() {
    std::vector<std::string> out;
    for (const auto& e : host.events) out.push_back(Describe(e));
    return out;
  }
  static std::string Describe(const RecordedEvent& e) {
    std::string s = e.name + "(";
    for (std::size_t i = 0; i < e.args.size(); ++i) {
      const Variant& a = e.args[i];
      if (i) s += ", ";
      bool text = i == 0 || e.name == "Hover";
      EXPECT_EQ(a.Type(), text ? VarType::String : VarType::Long) << e.name << " argument " << i;
      s += text ? "\"" + a.ToString() + "\"" : std::to_string(a.ToLong());
    }
    return s + ")";
  }
  // From now on events are logged among the platform calls, in order.
  void InterleaveEvents() {
    host.on_event = [this](RecordedEvent& e) { platform.log().Add("event " + Describe(e)); };
  }
  // The user calls and events logged since the last clear.
  std::vector<std::string> Calls() {
    std::vector<std::string> out;
    for (const auto& c : platform.log().calls) out.push_back(c);
    platform.log().Clear();
    return out;
  }
  // The snapshot of ButtonArea.
  Image AreaImage(KorvelToolbar& tb) { return tb.ButtonArea().Snapshot(); }

  using Strings = std::vector<std::string>;
  HeadlessPlatform platform;
  HeadlessHost host{platform};
};

// The run-time error number a statement raises (0 for none).
template <class F>
std::int32_t ErrorOf(F&& f) {
  try {
    f();
  } catch (const RuntimeError& e) {
    return e.Number();
  }
  return 0;
}

}  // namespace toolbar_test
