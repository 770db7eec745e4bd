#include "tests/common/raster_scenarios.h"

#include <cstdio>
#include <cstring>

#include "framework/image.h"

namespace korvel::test {

std::array<ColorRef, kSysColorCount> ClassicColors() {
  return {
      Rgb(192, 192, 192),  // 0 scroll bar
      Rgb(0, 128, 128),    // 1 desktop
      Rgb(0, 0, 128),      // 2 active caption
      Rgb(128, 128, 128),  // 3 inactive caption
      Rgb(192, 192, 192),  // 4 menu
      Rgb(255, 255, 255),  // 5 window
      Rgb(0, 0, 0),        // 6 window frame
      Rgb(0, 0, 0),        // 7 menu text
      Rgb(0, 0, 0),        // 8 window text
      Rgb(255, 255, 255),  // 9 caption text
      Rgb(192, 192, 192),  // 10 active border
      Rgb(192, 192, 192),  // 11 inactive border
      Rgb(128, 128, 128),  // 12 application workspace
      Rgb(0, 0, 128),      // 13 highlight
      Rgb(255, 255, 255),  // 14 highlight text
      Rgb(192, 192, 192),  // 15 button face
      Rgb(128, 128, 128),  // 16 button shadow
      Rgb(128, 128, 128),  // 17 grey text
      Rgb(0, 0, 0),        // 18 button text
      Rgb(192, 192, 192),  // 19 inactive caption text
      Rgb(255, 255, 255),  // 20 button highlight
      Rgb(0, 0, 0),        // 21 3D dark shadow
      Rgb(223, 223, 223),  // 22 3D light
      Rgb(0, 0, 0),        // 23 info text
      Rgb(255, 255, 225),  // 24 info background
      Rgb(192, 192, 192),  // 25 (unused)
      Rgb(0, 0, 255),      // 26 hot-tracked item
      Rgb(16, 132, 208),   // 27 gradient active caption
      Rgb(181, 181, 181),  // 28 gradient inactive caption
      Rgb(0, 0, 128),      // 29 menu highlight
      Rgb(192, 192, 192),  // 30 menu bar
  };
}

std::array<ColorRef, kSysColorCount> DistinctSysColors() {
  auto c = ClassicColors();
  c[COLOR_WINDOW] = Rgb(255, 255, 192);
  c[COLOR_WINDOWFRAME] = Rgb(64, 0, 0);
  return c;
}

std::vector<LegendEntry> SysLegend() {
  auto c = DistinctSysColors();
  return {
      {'.', "CANVAS", kCanvas},
      {'F', "BTNFACE", c[COLOR_BTNFACE]},
      {'S', "BTNSHADOW", c[COLOR_BTNSHADOW]},
      {'H', "BTNHIGHLIGHT", c[COLOR_BTNHIGHLIGHT]},
      {'D', "3DDKSHADOW", c[COLOR_3DDKSHADOW]},
      {'L', "3DLIGHT", c[COLOR_3DLIGHT]},
      {'W', "WINDOW", c[COLOR_WINDOW]},
      {'K', "WINDOWFRAME", c[COLOR_WINDOWFRAME]},
  };
}

void ScenarioChecks::Check(bool ok, const std::string& what) {
  ++count_;
  if (!ok) failures_.push_back(what);
}

std::vector<ColorRef> ReadPixels(Gdi& gdi, Hdc dc, int width, int height) {
  std::vector<ColorRef> px;
  px.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) px.push_back(gdi.GetPixel(dc, x, y));
  return px;
}

Hdc NewSurface(Gdi& gdi, int width, int height, ColorRef fill) {
  Hdc dc = gdi.CreateCompatibleDC(0);
  gdi.SelectObject(dc, gdi.CreateBitmapFromImage(Image(width, height, fill)));
  return dc;
}

namespace {

constexpr ColorRef kRed = Rgb(255, 0, 0), kGreen = Rgb(0, 255, 0), kBlue = Rgb(0, 0, 255);
constexpr ColorRef kYellow = Rgb(255, 255, 0), kGrey = Rgb(128, 128, 128), kWhite = Rgb(255, 255, 255);
constexpr ColorRef kBlack = Rgb(0, 0, 0), kDark = Rgb(0, 0, 200), kBrick = Rgb(200, 0, 0);
constexpr ColorRef kInk = Rgb(0, 0, 128), kPaper = Rgb(255, 224, 224);

std::string Hex(ColorRef c) { return HexColor(c); }

std::string RectText(const Rect& r) {
  char buf[64];
  std::snprintf(buf, sizeof buf, "(%d,%d)-(%d,%d)", r.left, r.top, r.right, r.bottom);
  return buf;
}

void CheckPixel(Gdi& gdi, Hdc dc, int x, int y, ColorRef want, ScenarioChecks& checks, const std::string& what) {
  ColorRef got = gdi.GetPixel(dc, x, y);
  checks.Check(got == want, "pixel (" + std::to_string(x) + "," + std::to_string(y) + ") " + what + ": " + Hex(got) +
                                ", expected " + Hex(want));
}

std::vector<LegendEntry> BlitLegend() {
  return {{'r', "RED", kRed},       {'g', "GREEN", kGreen}, {'b', "BLUE", kBlue},  {'y', "YELLOW", kYellow},
          {'s', "GREY", kGrey},     {'W', "WHITE", kWhite}, {'K', "BLACK", kBlack}, {'d', "DARKBLUE", kDark},
          {'k', "BRICK", kBrick}};
}

std::vector<LegendEntry> CanvasBlitLegend() {
  auto legend = BlitLegend();
  legend.push_back({'.', "CANVAS", kCanvas});
  return legend;
}

std::vector<LegendEntry> StateLegend() {
  auto l = SysLegend();
  l.push_back({'r', "RED", kRed});
  l.push_back({'n', "INK", kInk});
  return l;
}

// ---- DrawEdge: a 12 x 12 canvas with the edge drawn on (1, 1)-(11, 11) ----

struct EdgeCase {
  const char* file;
  const char* what;
  std::uint32_t edge;
  std::uint32_t flags;
  bool result;
};

const EdgeCase kEdgeCases[] = {
    // Every edge type as a full rectangle, without and with the middle.
    {"edge_raisedouter_rect.txt", "BDR_RAISEDOUTER, BF_RECT", BDR_RAISEDOUTER, BF_RECT, true},
    {"edge_sunkenouter_rect.txt", "BDR_SUNKENOUTER, BF_RECT", BDR_SUNKENOUTER, BF_RECT, true},
    {"edge_raisedinner_rect.txt", "BDR_RAISEDINNER, BF_RECT", BDR_RAISEDINNER, BF_RECT, true},
    {"edge_sunkeninner_rect.txt", "BDR_SUNKENINNER, BF_RECT", BDR_SUNKENINNER, BF_RECT, true},
    {"edge_raised_rect.txt", "EDGE_RAISED, BF_RECT", EDGE_RAISED, BF_RECT, true},
    {"edge_sunken_rect.txt", "EDGE_SUNKEN, BF_RECT", EDGE_SUNKEN, BF_RECT, true},
    {"edge_etched_rect.txt", "EDGE_ETCHED, BF_RECT", EDGE_ETCHED, BF_RECT, true},
    {"edge_bump_rect.txt", "EDGE_BUMP, BF_RECT", EDGE_BUMP, BF_RECT, true},
    {"edge_raisedouter_middle.txt", "BDR_RAISEDOUTER, BF_RECT | BF_MIDDLE", BDR_RAISEDOUTER, BF_RECT | BF_MIDDLE, true},
    {"edge_sunkeninner_middle.txt", "BDR_SUNKENINNER, BF_RECT | BF_MIDDLE", BDR_SUNKENINNER, BF_RECT | BF_MIDDLE, true},
    {"edge_raised_middle.txt", "EDGE_RAISED, BF_RECT | BF_MIDDLE", EDGE_RAISED, BF_RECT | BF_MIDDLE, true},
    {"edge_sunken_middle.txt", "EDGE_SUNKEN, BF_RECT | BF_MIDDLE", EDGE_SUNKEN, BF_RECT | BF_MIDDLE, true},
    {"edge_etched_middle.txt", "EDGE_ETCHED, BF_RECT | BF_MIDDLE", EDGE_ETCHED, BF_RECT | BF_MIDDLE, true},
    {"edge_bump_middle.txt", "EDGE_BUMP, BF_RECT | BF_MIDDLE", EDGE_BUMP, BF_RECT | BF_MIDDLE, true},
    // Both outer lines at once: FALSE and no middle.
    {"edge_bothouter_middle.txt", "BDR_OUTER, BF_RECT | BF_MIDDLE", BDR_OUTER, BF_RECT | BF_MIDDLE, false},
    // Single sides and corners.
    {"edge_raised_left.txt", "EDGE_RAISED, BF_LEFT", EDGE_RAISED, BF_LEFT, true},
    {"edge_raised_top.txt", "EDGE_RAISED, BF_TOP", EDGE_RAISED, BF_TOP, true},
    {"edge_raised_right.txt", "EDGE_RAISED, BF_RIGHT", EDGE_RAISED, BF_RIGHT, true},
    {"edge_raised_bottom.txt", "EDGE_RAISED, BF_BOTTOM", EDGE_RAISED, BF_BOTTOM, true},
    {"edge_raised_topleft.txt", "EDGE_RAISED, BF_TOPLEFT", EDGE_RAISED, BF_TOPLEFT, true},
    {"edge_raised_bottomright.txt", "EDGE_RAISED, BF_BOTTOMRIGHT", EDGE_RAISED, BF_BOTTOMRIGHT, true},
    {"edge_sunken_topright.txt", "EDGE_SUNKEN, BF_TOPRIGHT", EDGE_SUNKEN, BF_TOPRIGHT, true},
    {"edge_sunken_bottomleft.txt", "EDGE_SUNKEN, BF_BOTTOMLEFT", EDGE_SUNKEN, BF_BOTTOMLEFT, true},
    // Soft, flat and mono colours.
    {"edge_raised_soft.txt", "EDGE_RAISED, BF_RECT | BF_SOFT", EDGE_RAISED, BF_RECT | BF_SOFT, true},
    {"edge_sunken_soft.txt", "EDGE_SUNKEN, BF_RECT | BF_SOFT", EDGE_SUNKEN, BF_RECT | BF_SOFT, true},
    {"edge_raised_flat.txt", "EDGE_RAISED, BF_RECT | BF_FLAT | BF_MIDDLE", EDGE_RAISED, BF_RECT | BF_FLAT | BF_MIDDLE, true},
    {"edge_sunken_mono.txt", "EDGE_SUNKEN, BF_RECT | BF_MONO | BF_MIDDLE", EDGE_SUNKEN, BF_RECT | BF_MONO | BF_MIDDLE, true},
    {"edge_bothouter_mono.txt", "BDR_OUTER, BF_RECT | BF_MONO | BF_MIDDLE", BDR_OUTER, BF_RECT | BF_MONO | BF_MIDDLE, true},
    // Diagonals.
    {"edge_diag.txt", "EDGE_RAISED, BF_DIAGONAL", EDGE_RAISED, BF_DIAGONAL, true},
    {"edge_diag_endtopright.txt", "EDGE_RAISED, BF_DIAGONAL_ENDTOPRIGHT", EDGE_RAISED, BF_DIAGONAL_ENDTOPRIGHT, true},
    {"edge_diag_endtopleft.txt", "EDGE_RAISED, BF_DIAGONAL_ENDTOPLEFT", EDGE_RAISED, BF_DIAGONAL_ENDTOPLEFT, true},
    {"edge_diag_endbottomleft.txt", "EDGE_RAISED, BF_DIAGONAL_ENDBOTTOMLEFT", EDGE_RAISED, BF_DIAGONAL_ENDBOTTOMLEFT, true},
    {"edge_diag_endbottomright.txt", "EDGE_RAISED, BF_DIAGONAL_ENDBOTTOMRIGHT", EDGE_RAISED, BF_DIAGONAL_ENDBOTTOMRIGHT, true},
    {"edge_diag_endtopright_middle.txt", "EDGE_SUNKEN, BF_DIAGONAL_ENDTOPRIGHT | BF_MIDDLE", EDGE_SUNKEN, BF_DIAGONAL_ENDTOPRIGHT | BF_MIDDLE, true},
    {"edge_diag_endbottomleft_middle.txt", "EDGE_SUNKEN, BF_DIAGONAL_ENDBOTTOMLEFT | BF_MIDDLE", EDGE_SUNKEN, BF_DIAGONAL_ENDBOTTOMLEFT | BF_MIDDLE, true},
};

std::string EdgeComment(const char* what) {
  return std::string("DrawEdge ") + what + " on (1,1)-(11,11) of a 12x12 canvas";
}

std::string NameOf(const std::string& file) { return file.substr(0, file.find('.')); }

void AddEdges(std::vector<RasterScenario>& out) {
  for (const EdgeCase& c : kEdgeCases) {
    RasterScenario s;
    s.name = NameOf(c.file);
    s.file = c.file;
    s.comment = EdgeComment(c.what);
    s.width = s.height = 12;
    s.legend = SysLegend();
    s.draw = [c](Gdi& gdi, ScenarioChecks& checks) {
      Hdc dc = NewSurface(gdi, 12, 12, kCanvas);
      Rect rc{1, 1, 11, 11};
      bool ok = gdi.DrawEdge(dc, &rc, c.edge, c.flags);
      checks.Check(ok == c.result, std::string("DrawEdge returns ") + (c.result ? "TRUE" : "FALSE"));
      checks.Check(rc == (Rect{1, 1, 11, 11}), "the rectangle is untouched without BF_ADJUST: " + RectText(rc));
      return dc;
    };
    out.push_back(std::move(s));
  }
  // With BF_ADJUST the middle fills the rectangle that remains inside the lines:
  // the same picture as without it.
  RasterScenario s;
  s.name = "edge_raised_middle_adjust";
  s.file = "edge_raised_middle.txt";
  s.comment = EdgeComment("EDGE_RAISED, BF_RECT | BF_MIDDLE");
  s.width = s.height = 12;
  s.legend = SysLegend();
  s.draw = [](Gdi& gdi, ScenarioChecks& checks) {
    Hdc dc = NewSurface(gdi, 12, 12, kCanvas);
    Rect rc{1, 1, 11, 11};
    gdi.DrawEdge(dc, &rc, EDGE_RAISED, BF_RECT | BF_ADJUST | BF_MIDDLE);
    checks.Check(rc == (Rect{3, 3, 9, 9}), "BF_ADJUST leaves (3,3)-(9,9): " + RectText(rc));
    return dc;
  };
  out.push_back(std::move(s));
}

// ---- BitBlt with each raster operation, colour and monochrome both ways ----

struct Rop {
  const char* name;
  std::uint32_t code;
};
const Rop kRops[] = {{"srccopy", SRCCOPY},   {"notsrccopy", NOTSRCCOPY}, {"srcand", SRCAND},
                     {"srcinvert", SRCINVERT}, {"srcpaint", SRCPAINT},   {"blackness", BLACKNESS},
                     {"whiteness", WHITENESS}};

// An 8 x 4 colour destination: rows yellow (0-1) and grey (2-3).
Hdc YellowGreyTarget(Gdi& gdi) {
  Hdc dst = NewSurface(gdi, 8, 4, kYellow);
  for (int x = 0; x < 8; ++x) gdi.SetPixel(dst, x, 2, kGrey), gdi.SetPixel(dst, x, 3, kGrey);
  return dst;
}

void AddBlits(std::vector<RasterScenario>& out) {
  for (const Rop& rop : kRops) {
    RasterScenario s;
    s.name = std::string("blit_c2c_") + rop.name;
    s.file = s.name + ".txt";
    s.comment = std::string("BitBlt ") + rop.name +
                ": source columns red, green, blue, white; destination rows yellow (0-1), grey (2-3)";
    s.width = 8;
    s.height = 4;
    s.legend = BlitLegend();
    s.draw = [rop](Gdi& gdi, ScenarioChecks& checks) {
      Hdc src = ColourSource(gdi);
      Hdc dst = YellowGreyTarget(gdi);
      checks.Check(gdi.BitBlt(dst, 0, 0, 8, 4, src, 0, 0, rop.code), "BitBlt returns TRUE");
      return dst;
    };
    out.push_back(std::move(s));
  }
  for (const Rop& rop : kRops) {
    RasterScenario s;
    s.name = std::string("blit_c2m_") + rop.name;
    s.file = s.name + ".txt";
    s.comment = std::string("BitBlt ") + rop.name +
                " colour to mono: source columns red, green, blue, white with background blue;\n"
                "destination monochrome, rows white (0-1), black (2-3)";
    s.width = 8;
    s.height = 4;
    s.legend = BlitLegend();
    s.draw = [rop](Gdi& gdi, ScenarioChecks& checks) {
      Hdc src = ColourSource(gdi);
      gdi.SetBkColor(src, kBlue);  // blue becomes white, everything else black
      Hdc dst = MonoSurface(gdi, false);
      checks.Check(gdi.BitBlt(dst, 0, 0, 8, 4, src, 0, 0, rop.code), "BitBlt returns TRUE");
      return dst;
    };
    out.push_back(std::move(s));
  }
  for (const Rop& rop : kRops) {
    RasterScenario s;
    s.name = std::string("blit_m2c_") + rop.name;
    s.file = s.name + ".txt";
    s.comment = std::string("BitBlt ") + rop.name +
                " mono to colour: source 2x2 checker starting white; destination text colour\n"
                "brick (200,0,0), background dark blue (0,0,200), rows yellow (0-1), grey (2-3)";
    s.width = 8;
    s.height = 4;
    s.legend = BlitLegend();
    s.draw = [rop](Gdi& gdi, ScenarioChecks& checks) {
      Hdc src = MonoSurface(gdi, true);
      Hdc dst = YellowGreyTarget(gdi);
      gdi.SetTextColor(dst, kBrick);  // black source pixels
      gdi.SetBkColor(dst, kDark);     // white source pixels
      checks.Check(gdi.BitBlt(dst, 0, 0, 8, 4, src, 0, 0, rop.code), "BitBlt returns TRUE");
      return dst;
    };
    out.push_back(std::move(s));
  }
}

// ---- Pen draw modes on lines and boxes ----

void AddPens(std::vector<RasterScenario>& out) {
  for (int mode : {R2_COPYPEN, R2_MASKPEN}) {
    RasterScenario s;
    s.name = mode == R2_COPYPEN ? "pen_copypen" : "pen_maskpen";
    s.file = s.name + ".txt";
    s.comment = std::string(mode == R2_COPYPEN ? "R2_COPYPEN" : "R2_MASKPEN") +
                " on cyan: magenta pen, yellow brush; Rectangle(2,2,8,7),\n"
                "lines (0,9)-(9,0) and (0,0)-(9,4)";
    s.width = s.height = 10;
    s.legend = {{'c', "CYAN", Rgb(0, 255, 255)},   {'m', "MAGENTA", Rgb(255, 0, 255)},
                {'y', "YELLOW", Rgb(255, 255, 0)}, {'b', "BLUE", Rgb(0, 0, 255)},
                {'g', "GREEN", Rgb(0, 255, 0)},    {'r', "RED", Rgb(255, 0, 0)}};
    s.draw = [mode](Gdi& gdi, ScenarioChecks&) {
      Hdc dc = NewSurface(gdi, 10, 10, Rgb(0, 255, 255));
      gdi.SetROP2(dc, mode);
      Handle pen = gdi.CreatePen(PS_SOLID, 1, Rgb(255, 0, 255));
      Handle brush = gdi.CreateSolidBrush(Rgb(255, 255, 0));
      Hgdiobj op = gdi.SelectObject(dc, pen);
      Hgdiobj ob = gdi.SelectObject(dc, brush);
      gdi.Rectangle(dc, 2, 2, 8, 7);
      gdi.MoveToEx(dc, 0, 9, nullptr);
      gdi.LineTo(dc, 9, 0);
      gdi.MoveToEx(dc, 0, 0, nullptr);
      gdi.LineTo(dc, 9, 4);
      gdi.SelectObject(dc, op);
      gdi.SelectObject(dc, ob);
      gdi.DeleteObject(pen);
      gdi.DeleteObject(brush);
      return dc;
    };
    out.push_back(std::move(s));
  }
}

// ---- StretchBlt ----

// A 3 x 3 source of nine colours.
Hdc NineColours(Gdi& gdi) {
  Hdc s = NewSurface(gdi, 3, 3, kWhite);
  const ColorRef c[9] = {kRed, kGreen, kBlue, kYellow, kGrey, kWhite, kBlack, kDark, kBrick};
  for (int y = 0; y < 3; ++y)
    for (int x = 0; x < 3; ++x) gdi.SetPixel(s, x, y, c[y * 3 + x]);
  return s;
}

void AddStretches(std::vector<RasterScenario>& out) {
  {
    RasterScenario s;
    s.name = "stretch_enlarge";
    s.file = "stretch_enlarge.txt";
    s.comment =
        "StretchBlt SRCCOPY of 3x3 (rows: red green blue / yellow grey white / black darkblue brick)\nto (1,1) 8x8";
    s.width = s.height = 10;
    s.legend = CanvasBlitLegend();
    s.draw = [](Gdi& gdi, ScenarioChecks& checks) {
      Hdc src = NineColours(gdi);
      Hdc dst = NewSurface(gdi, 10, 10, kCanvas);
      checks.Check(gdi.StretchBlt(dst, 1, 1, 8, 8, src, 0, 0, 3, 3, SRCCOPY), "StretchBlt returns TRUE");
      return dst;
    };
    out.push_back(std::move(s));
  }
  {
    RasterScenario s;
    s.name = "stretch_mirror";
    s.file = "stretch_mirror.txt";
    s.comment = "StretchBlt SRCCOPY of the 3x3 nine colours to x=8, y=1, cx=-8, cy=8";
    s.width = s.height = 10;
    s.legend = CanvasBlitLegend();
    s.draw = [](Gdi& gdi, ScenarioChecks& checks) {
      Hdc src = NineColours(gdi);
      Hdc dst = NewSurface(gdi, 10, 10, kCanvas);
      // Negative destination width: column 8 takes source column 0, going left.
      checks.Check(gdi.StretchBlt(dst, 8, 1, -8, 8, src, 0, 0, 3, 3, SRCCOPY), "StretchBlt returns TRUE");
      return dst;
    };
    out.push_back(std::move(s));
  }
  {
    RasterScenario s;
    s.name = "stretch_shrink";
    s.file = "stretch_shrink.txt";
    s.comment =
        "StretchBlt SRCCOPY of 8x8 (columns red yellow white green white blue white white, row 4 black)\nto (1,1) "
        "3x3";
    s.width = s.height = 5;
    s.legend = CanvasBlitLegend();
    s.draw = [](Gdi& gdi, ScenarioChecks& checks) {
      // 8 x 8 source: colour by column, with one black row; BLACKONWHITE ANDs the
      // pixels that land on one destination pixel.
      Hdc src = NewSurface(gdi, 8, 8, kWhite);
      const ColorRef cols[8] = {kRed, kYellow, kWhite, kGreen, kWhite, kBlue, kWhite, kWhite};
      for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 8; ++x) gdi.SetPixel(src, x, y, y == 4 ? kBlack : cols[x]);
      Hdc dst = NewSurface(gdi, 5, 5, kCanvas);
      checks.Check(gdi.StretchBlt(dst, 1, 1, 3, 3, src, 0, 0, 8, 8, SRCCOPY), "StretchBlt returns TRUE");
      // Columns 0-2 -> 0, 3-4 -> 1, 5-7 -> 2; rows likewise (row 4 is black).
      CheckPixel(gdi, dst, 1, 1, kRed & kYellow & kWhite, checks, "red AND yellow AND white");
      CheckPixel(gdi, dst, 2, 1, kGreen & kWhite, checks, "green AND white");
      CheckPixel(gdi, dst, 3, 1, kBlue & kWhite & kWhite, checks, "blue AND white AND white");
      CheckPixel(gdi, dst, 2, 2, kBlack, checks, "the black row");
      CheckPixel(gdi, dst, 3, 3, kBlue, checks, "blue");
      return dst;
    };
    out.push_back(std::move(s));
  }
  {
    RasterScenario s;
    s.name = "stretch_mono_enlarge";
    s.file = "stretch_mono_enlarge.txt";
    s.comment =
        "StretchBlt SRCCOPY of the top-left 4x4 of a 2x2 mono checker (white first) to (1,1) 8x8;\n"
        "text colour brick, background dark blue";
    s.width = s.height = 10;
    s.legend = CanvasBlitLegend();
    s.draw = [](Gdi& gdi, ScenarioChecks& checks) {
      Hdc src = MonoSurface(gdi, true);
      Hdc dst = NewSurface(gdi, 10, 10, kCanvas);
      gdi.SetTextColor(dst, kBrick);
      gdi.SetBkColor(dst, kDark);
      checks.Check(gdi.StretchBlt(dst, 1, 1, 8, 8, src, 0, 0, 4, 4, SRCCOPY), "StretchBlt returns TRUE");
      return dst;
    };
    out.push_back(std::move(s));
  }
}

// ---- DrawState of a bitmap ----

void AddStateBitmaps(std::vector<RasterScenario>& out) {
  {
    RasterScenario s;
    s.name = "state_bitmap_normal";
    s.file = "state_bitmap_normal.txt";
    s.comment =
        "DrawState DST_BITMAP DSS_NORMAL of a 6x6 bitmap (white, black L, red dot, one (250,250,250)\n"
        "pixel) at (2,2) on BTNFACE";
    s.width = s.height = 10;
    s.legend = StateLegend();
    s.legend.push_back({'w', "NEARWHITE", Rgb(250, 250, 250)});
    s.draw = [](Gdi& gdi, ScenarioChecks& checks) {
      Hdc dc = NewSurface(gdi, 10, 10, gdi.GetSysColor(COLOR_BTNFACE));
      Hbitmap b = StateSmallBitmap(gdi);
      checks.Check(gdi.DrawStateA(dc, 0, b, "", 2, 2, 0, 0, DST_BITMAP | DSS_NORMAL), "DrawState returns TRUE");
      return dc;
    };
    out.push_back(std::move(s));
  }
  {
    RasterScenario s;
    s.name = "state_bitmap_disabled";
    s.file = "state_bitmap_disabled.txt";
    s.comment =
        "DrawState DST_BITMAP DSS_DISABLED of the 6x6 bitmap (white, black L, red dot, one\n"
        "(250,250,250) pixel) at (2,2) on BTNFACE";
    s.width = s.height = 10;
    s.legend = StateLegend();
    s.draw = [](Gdi& gdi, ScenarioChecks& checks) {
      Hdc dc = NewSurface(gdi, 10, 10, gdi.GetSysColor(COLOR_BTNFACE));
      gdi.SetTextColor(dc, kRed);
      gdi.SetBkColor(dc, kInk);
      Hbitmap b = StateSmallBitmap(gdi);
      checks.Check(gdi.DrawStateA(dc, 0, b, "", 2, 2, 0, 0, DST_BITMAP | DSS_DISABLED), "DrawState returns TRUE");
      // Every pixel that is not pure white counts as image: shadow at (x, y), highlight
      // one pixel down and right where the shadow does not cover it.
      CheckPixel(gdi, dc, 5, 4, gdi.GetSysColor(COLOR_3DSHADOW), checks, "the near-white pixel is shadow");
      CheckPixel(gdi, dc, 7, 4, gdi.GetSysColor(COLOR_3DHILIGHT), checks, "below right of the red dot is highlight");
      CheckPixel(gdi, dc, 2, 2, gdi.GetSysColor(COLOR_BTNFACE), checks, "white is background");
      // The DC's colours are restored.
      ColorRef bk = gdi.GetBkColor(dc);
      checks.Check(bk == kInk, "the background colour is restored: " + Hex(bk));
      return dc;
    };
    out.push_back(std::move(s));
  }
}

// ---- Text (depends on the font's glyphs) ----

Hfont SmallFont(Gdi& gdi, Hdc dc) {
  LOGFONTA lf;
  lf.lfHeight = -8;  // characters 4 x 10, drawn as 2 x 4 blocks from (1, 3)
  std::strcpy(lf.lfFaceName, "Metrics");
  Hfont f = gdi.CreateFontIndirectA(lf);
  gdi.SelectObject(dc, f);
  return f;
}

struct TextCase {
  const char* file;
  const char* text;
  Rect rc;
  std::uint32_t format;
  int height;  // the return value
};

const TextCase kTextCases[] = {
    {"text_center_vcenter.txt", "abc", {1, 1, 23, 13}, DT_CENTER | DT_VCENTER | DT_SINGLELINE, 11},
    {"text_right_bottom.txt", "abc", {1, 1, 23, 13}, DT_RIGHT | DT_BOTTOM | DT_SINGLELINE, 12},
    {"text_ellipsis.txt", "abcdefgh", {1, 1, 23, 13}, DT_END_ELLIPSIS | DT_SINGLELINE, 10},
    {"text_prefix.txt", "a&bc&&", {1, 1, 23, 13}, DT_SINGLELINE, 10},
    {"text_noprefix.txt", "a&b", {1, 1, 23, 13}, DT_SINGLELINE | DT_NOPREFIX, 10},
    {"text_clipped.txt", "abcdefgh", {1, 1, 23, 13}, DT_SINGLELINE | DT_CENTER, 10},
    {"text_wordbreak.txt", "ab cd efghij", {1, 1, 23, 23}, DT_WORDBREAK, 30},
};

void AddTexts(std::vector<RasterScenario>& out) {
  {
    RasterScenario s;
    s.name = "state_text";
    s.file = "state_text.txt";
    s.comment =
        "DrawState DST_TEXT \"ab\" DSS_NORMAL at (1,0) in ink, then \"a\" DSS_DISABLED at (1,1);\n"
        "metrics font lfHeight -8 (4x10 cells), transparent";
    s.width = s.height = 12;
    s.is_text = true;
    s.legend = StateLegend();
    s.draw = [](Gdi& gdi, ScenarioChecks& checks) {
      Hdc dc = NewSurface(gdi, 12, 12, gdi.GetSysColor(COLOR_BTNFACE));
      SmallFont(gdi, dc);
      gdi.SetTextColor(dc, kInk);
      gdi.SetBkMode(dc, TRANSPARENT);
      checks.Check(gdi.DrawStateA(dc, 0, 0, "ab", 1, 0, 0, 0, DST_TEXT | DSS_NORMAL), "DrawState normal returns TRUE");
      checks.Check(gdi.DrawStateA(dc, 0, 0, "a", 1, 1, 0, 0, DST_TEXT | DSS_DISABLED),
                   "DrawState disabled returns TRUE");
      return dc;
    };
    out.push_back(std::move(s));
  }
  for (const TextCase& c : kTextCases) {
    RasterScenario s;
    s.name = NameOf(c.file);
    s.file = c.file;
    s.comment = std::string("DrawText \"") + c.text + "\" in " + RectText(c.rc) +
                ", opaque paper background, ink text, metrics font lfHeight -8 (4x10 cells)";
    s.width = 24;
    s.height = c.rc.bottom + 1;
    s.is_text = true;
    s.legend = SysLegend();
    s.legend.push_back({'n', "INK", kInk});
    s.legend.push_back({'p', "PAPER", kPaper});
    s.draw = [c](Gdi& gdi, ScenarioChecks& checks) {
      Hdc dc = NewSurface(gdi, 24, c.rc.bottom + 1, kCanvas);
      SmallFont(gdi, dc);
      gdi.SetTextColor(dc, kInk);
      gdi.SetBkColor(dc, kPaper);
      Rect rc = c.rc;
      int h = gdi.DrawTextA(dc, c.text, &rc, c.format);
      checks.Check(h == c.height, "DrawText returns " + std::to_string(c.height) + ": " + std::to_string(h));
      checks.Check(rc == c.rc, "the rectangle is untouched: " + RectText(rc));
      return dc;
    };
    out.push_back(std::move(s));
  }
}

}  // namespace

Hdc ColourSource(Gdi& gdi) {
  Hdc s = NewSurface(gdi, 8, 4, kWhite);
  const ColorRef cols[4] = {kRed, kGreen, kBlue, kWhite};
  for (int y = 0; y < 4; ++y)
    for (int x = 0; x < 8; ++x) gdi.SetPixel(s, x, y, cols[x % 4]);
  return s;
}

Hdc MonoSurface(Gdi& gdi, bool checker) {
  Hdc dc = gdi.CreateCompatibleDC(0);
  Hbitmap b = gdi.CreateBitmap(8, 4, 1, 1, nullptr);
  gdi.SelectObject(dc, b);
  for (int y = 0; y < 4; ++y)
    for (int x = 0; x < 8; ++x)
      gdi.SetPixel(dc, x, y, checker ? ((((x / 2) + (y / 2)) & 1) ? kBlack : kWhite) : (y < 2 ? kWhite : kBlack));
  return dc;
}

Hbitmap StateSmallBitmap(Gdi& gdi) {
  Hdc s = NewSurface(gdi, 6, 6, kWhite);
  for (int y = 1; y < 5; ++y) gdi.SetPixel(s, 1, y, kBlack);
  for (int x = 1; x < 5; ++x) gdi.SetPixel(s, x, 4, kBlack);
  gdi.SetPixel(s, 4, 1, kRed);
  gdi.SetPixel(s, 3, 2, Rgb(250, 250, 250));
  Hbitmap placeholder = gdi.CreateBitmap(1, 1, 1, 32, nullptr);
  Hbitmap b = gdi.SelectObject(s, placeholder);
  gdi.DeleteDC(s);
  gdi.DeleteObject(placeholder);
  return b;
}

const std::vector<RasterScenario>& RasterScenarios() {
  static const std::vector<RasterScenario> all = [] {
    std::vector<RasterScenario> v;
    AddEdges(v);
    AddBlits(v);
    AddPens(v);
    AddStretches(v);
    AddStateBitmaps(v);
    AddTexts(v);
    return v;
  }();
  return all;
}

const RasterScenario* FindScenario(const std::string& name) {
  for (const auto& s : RasterScenarios())
    if (s.name == name) return &s;
  return nullptr;
}

}  // namespace korvel::test
