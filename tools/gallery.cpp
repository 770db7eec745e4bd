// The gallery: renders the library's drawing and its controls, in their
// interesting states, to PNG files and one index.html that shows them with captions.
//
//   korvel_gallery <output folder>
#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "framework/brightmoor.h"
#include "framework/surface.h"
#include "platform/headless/headless_platform.h"
#include "platform/headless/png_writer.h"
#include "tools/gallery.h"

using namespace korvel;
using namespace korvel::headless;


namespace korvel::gallery {

namespace {
Image Zoom(const Image& img, int z) {
  Image out(img.width * z, img.height * z);
  for (int y = 0; y < out.height; ++y)
    for (int x = 0; x < out.width; ++x) out.At(x, y) = img.At(x / z, y / z);
  return out;
}

std::vector<std::pair<int, Renderer>>& Registry() {
  static std::vector<std::pair<int, Renderer>> r;
  return r;
}
}  // namespace

Register::Register(int order, Renderer renderer) { Registry().emplace_back(order, std::move(renderer)); }

void Gallery::Add(const std::string& section, const std::string& name, const std::string& caption, const Image& img,
                  int zoom) {
  Image out = zoom == 1 ? img : Zoom(img, zoom);
  std::string file = name + ".png";
  if (!WritePng(out, dir_ + "/" + file)) {
    std::fprintf(stderr, "gallery: cannot write %s/%s\n", dir_.c_str(), file.c_str());
    failed_ = true;
  }
  entries_.push_back(Entry{section, file, caption});
}

bool Gallery::WriteIndex() {
  std::ofstream html(dir_ + "/index.html");
  html << "<!DOCTYPE html>\n<html><head><meta charset=\"utf-8\"><title>KorvelUI99 gallery</title>\n"
          "<style>body{font-family:sans-serif;background:#f4f4f4;margin:24px}"
          "h1{font-size:22px}h2{font-size:17px;margin-top:28px;border-bottom:1px solid #ccc}"
          "figure{display:inline-block;margin:8px 16px 8px 0;vertical-align:top;background:#fff;"
          "padding:8px;border:1px solid #ddd}figcaption{font-size:13px;margin-top:6px;max-width:420px}"
          "img{image-rendering:pixelated}</style></head><body>\n"
          "<h1>KorvelUI99 gallery</h1>\n<p>Every picture is drawn by the library's own code on its headless "
          "backend (classic system colours; text through FreeType). Pictures are shown enlarged, whole "
          "pixels kept.</p>\n";
  std::string section;
  for (const auto& e : entries_) {
    if (e.section != section) {
      section = e.section;
      html << "<h2>" << section << "</h2>\n";
    }
    html << "<figure><img src=\"" << e.file << "\" alt=\"" << e.caption << "\"><figcaption>" << e.caption
         << "</figcaption></figure>\n";
  }
  html << "</body></html>\n";
  return html.good() && !failed_;
}

// An image strip of four 16 x 16 images on a magenta background.
Image DemoStrip() {
  Image img(64, 16, Rgb(255, 0, 255));
  auto box = [&](int x0, int y0, int x1, int y1, ColorRef c) {
    for (int y = y0; y <= y1; ++y)
      for (int x = x0; x <= x1; ++x) img.At(x, y) = c;
  };
  // a page
  box(3, 1, 11, 14, Rgb(0, 0, 0));
  box(4, 2, 10, 13, Rgb(255, 255, 255));
  box(6, 5, 9, 5, Rgb(0, 0, 128));
  box(6, 8, 9, 8, Rgb(0, 0, 128));
  // a folder
  box(17, 4, 30, 13, Rgb(128, 128, 0));
  box(18, 5, 29, 12, Rgb(255, 255, 0));
  box(17, 3, 22, 4, Rgb(128, 128, 0));
  // a disk
  box(34, 2, 45, 13, Rgb(0, 0, 0));
  box(36, 3, 43, 7, Rgb(255, 255, 255));
  box(37, 10, 42, 13, Rgb(128, 128, 128));
  // a red circle
  for (int y = 0; y < 16; ++y)
    for (int x = 0; x < 16; ++x) {
      int dx = x - 8, dy = y - 8;
      if (dx * dx + dy * dy <= 36) img.At(48 + x, y) = Rgb(192, 0, 0);
      if (dx * dx + dy * dy <= 9) img.At(48 + x, y) = Rgb(255, 128, 128);
    }
  return img;
}

namespace {
void RenderFoundation(HeadlessPlatform& p, Gallery& g) {
  // Edges: each edge type as DrawEdgeRect draws it, filled.
  {
    Surface s(p, 0, 6 * 40 + 10, 50);
    s.SetBackColor(0x8000000F);
    const std::int32_t edges[] = {BDR_RAISEDOUTER, BDR_SUNKENOUTER, BDR_RAISEDINNER, EDGE_ETCHED, EDGE_RAISED,
                                  EDGE_SUNKEN};
    for (int i = 0; i < 6; ++i) DrawEdgeRect(p, s.hDC(), Rect{10 + i * 40, 10, 40 + i * 40, 40}, edges[i], true);
    g.Add("Shared drawing", "edges", "DrawEdgeRect: raised outer, sunken outer, raised inner, etched, raised, sunken",
          s.Snapshot(), 2);
  }
  // Gradient from the highlight colour to the button face.
  {
    Surface s(p, 0, 200, 24);
    PaintGradient(p, &s, 1, TranslateSysColor(p, 0x8000000D), TranslateSysColor(p, 0x8000000F));
    g.Add("Shared drawing", "gradient", "PaintGradient, left to right, highlight to button face", s.Snapshot(), 2);
  }
  // The strip as given, masked onto the button face, and disabled.
  {
    PictureRef strip = Picture::FromImage(DemoStrip());
    Surface src(p, 0, 64, 16), target(p, 0, 64, 16), work1(p, 0, 64, 16), work2(p, 0, 64, 16);
    src.SetPicture(strip);
    g.Add("Shared drawing", "strip", "An image strip of four 16 x 16 images with magenta as its mask colour",
          src.Snapshot(), 4);
    ReplaceMaskColor(p, src, target, work1, work2, 0xFF00FF, 0x8000000F);
    g.Add("Shared drawing", "strip-masked", "ReplaceMaskColor: magenta replaced by the button face colour",
          target.Snapshot(), 4);
    Surface disabled(p, 0, 68, 17);
    DrawDisabledPicture(p, strip, disabled.hDC(), 0, 0, 64, 16);
    g.Add("Shared drawing", "strip-disabled",
          "DrawDisabledPicture: the same strip in the disabled style; every pixel that is not white counts "
          "as image, so the magenta background is embossed too",
          disabled.Snapshot(), 4);
    Image white = DemoStrip();
    for (auto& px : white.pixels)
      if (px == Rgb(255, 0, 255)) px = Rgb(255, 255, 255);
    Surface disabled_white(p, 0, 68, 17);
    DrawDisabledPicture(p, Picture::FromImage(white), disabled_white.hDC(), 0, 0, 64, 16);
    g.Add("Shared drawing", "strip-disabled-white",
          "DrawDisabledPicture of the strip on a white background: only the images are embossed",
          disabled_white.Snapshot(), 4);
  }
}

}  // namespace

const Register kFoundation(0, RenderFoundation);

void RenderAll(HeadlessPlatform& p, Gallery& g) {
  auto r = Registry();
  std::stable_sort(r.begin(), r.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
  for (auto& [order, render] : r) render(p, g);
}

}  // namespace korvel::gallery

int main(int argc, char** argv) {
  std::string dir = argc > 1 ? argv[1] : "gallery";
  mkdir(dir.c_str(), 0755);
  korvel::headless::HeadlessPlatform platform(/*freetype=*/true);
  korvel::gallery::Gallery gallery(dir);
  korvel::gallery::RenderAll(platform, gallery);
  if (!gallery.WriteIndex()) return 1;
  std::printf("gallery: %zu pictures in %s/index.html\n", gallery.Count(), dir.c_str());
  return 0;
}
