#include "tests/common/golden_file.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>

namespace korvel::test {

namespace {

bool ParseHex(const std::string& s, ColorRef* c) {
  if (s.size() != 7 || s[0] != '#') return false;
  char* end = nullptr;
  unsigned long v = std::strtoul(s.c_str() + 1, &end, 16);
  if (*end) return false;
  *c = Rgb(static_cast<int>((v >> 16) & 0xFF), static_cast<int>((v >> 8) & 0xFF), static_cast<int>(v & 0xFF));
  return true;
}

}  // namespace

std::string HexColor(ColorRef c) {
  char buf[8];
  std::snprintf(buf, sizeof buf, "#%02X%02X%02X", RedOf(c), GreenOf(c), BlueOf(c));
  return buf;
}

bool LoadGolden(const std::string& path, Golden* out, std::string* error) {
  std::ifstream in(path);
  if (!in) {
    *error = "cannot open " + path;
    return false;
  }
  Golden g;
  std::map<char, ColorRef> colors;
  std::string line;
  bool sized = false;
  while (std::getline(in, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (line.empty() || line[0] == '#') continue;
    if (line.rfind("legend ", 0) == 0) {
      std::istringstream ls(line.substr(7));
      std::string ch, name, hex;
      ls >> ch >> name >> hex;
      ColorRef c;
      if (ch.size() != 1 || !ParseHex(hex, &c)) {
        *error = "bad legend line: " + line;
        return false;
      }
      g.legend.push_back({ch[0], name, c});
      colors[ch[0]] = c;
      continue;
    }
    if (line.rfind("size ", 0) == 0) {
      std::istringstream ls(line.substr(5));
      ls >> g.width >> g.height;
      sized = g.width > 0 && g.height > 0;
      continue;
    }
    if (!sized) {
      *error = "row before size: " + line;
      return false;
    }
    if (static_cast<int>(line.size()) != g.width) {
      *error = "row of wrong width: " + line;
      return false;
    }
    for (char ch : line) {
      auto it = colors.find(ch);
      if (it == colors.end()) {
        *error = std::string("character not in the legend: ") + ch;
        return false;
      }
      g.px.push_back(it->second);
    }
  }
  if (!sized || static_cast<int>(g.px.size()) != g.width * g.height) {
    *error = "wrong number of rows in " + path;
    return false;
  }
  *out = std::move(g);
  return true;
}

std::string RenderGrid(const std::vector<ColorRef>& px, int width, int height,
                       const std::vector<LegendEntry>& legend) {
  std::string s;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      ColorRef c = px[static_cast<std::size_t>(y) * width + x];
      char ch = '?';
      for (const auto& e : legend)
        if (e.color == c) {
          ch = e.ch;
          break;
        }
      s += ch;
    }
    s += '\n';
  }
  return s;
}

bool SaveGolden(const std::string& path, const std::string& comment, const Golden& g) {
  std::ofstream out(path);
  if (!out) return false;
  std::istringstream cs(comment);
  std::string line;
  while (std::getline(cs, line)) out << "# " << line << "\n";
  for (const auto& e : g.legend) out << "legend " << e.ch << " " << e.name << " " << HexColor(e.color) << "\n";
  out << "size " << g.width << " " << g.height << "\n";
  out << RenderGrid(g.px, g.width, g.height, g.legend);
  return static_cast<bool>(out);
}

Golden GoldenOf(const std::vector<ColorRef>& px, int width, int height, const std::vector<LegendEntry>& legend) {
  Golden g;
  g.width = width;
  g.height = height;
  g.px = px;
  const std::string spare = "0123456789abcdefghijklmnopqrstuvwxyz";
  std::size_t next = 0;
  for (ColorRef c : px) {
    bool known = false;
    for (const auto& e : g.legend) known = known || e.color == c;
    if (known) continue;
    const LegendEntry* found = nullptr;
    for (const auto& e : legend)
      if (e.color == c) {
        found = &e;
        break;
      }
    if (found) g.legend.push_back(*found);
    else g.legend.push_back({next < spare.size() ? spare[next++] : '?', "RGB", c});
  }
  return g;
}

PictureDiff ComparePictures(const std::vector<ColorRef>& px, int width, int height, const Golden& golden,
                            const std::vector<LegendEntry>& extra_legend) {
  PictureDiff d;
  if (golden.width != width || golden.height != height ||
      px.size() != static_cast<std::size_t>(width) * static_cast<std::size_t>(height)) {
    d.size_differs = true;
    return d;
  }
  std::vector<LegendEntry> all = golden.legend;
  for (const auto& e : extra_legend) all.push_back(e);
  std::ostringstream where;
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) {
      std::size_t k = static_cast<std::size_t>(y) * width + x;
      if (px[k] != golden.px[k]) {
        if (d.differing < 8)
          where << " (" << x << "," << y << ") got " << HexColor(px[k]) << " want " << HexColor(golden.px[k]) << ";";
        ++d.differing;
      }
    }
  if (d.differing) {
    d.first = where.str();
    d.got_grid = RenderGrid(px, width, height, all);
    d.golden_grid = RenderGrid(golden.px, width, height, all);
  }
  return d;
}

}  // namespace korvel::test
