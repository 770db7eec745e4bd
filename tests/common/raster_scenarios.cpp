#include "tests/common/raster_scenarios.h"

#include <cstdio>
#include <cstring>

#include "framework/image.h"
#include "framework/sys_colors.h"

namespace korvel::test {

std::array<ColorRef, kSysColorCount> ClassicColors() { return ClassicSysColors(); }

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


// ---- Further operations: line directions, draw modes, rectangles, fills,
// pattern blits, clipped blits, monochrome targets, more stretches, states ----

constexpr ColorRef kCyan = Rgb(0, 255, 255), kMagenta = Rgb(255, 0, 255), kTeal = Rgb(0, 128, 128);
constexpr std::uint32_t kPatCopy = 0x00F00021, kPatInvert = 0x005A0049, kDstInvert = 0x00550009;

std::vector<LegendEntry> OpsLegend() {
  auto l = BlitLegend();
  l.push_back({'c', "CYAN", kCyan});
  l.push_back({'m', "MAGENTA", kMagenta});
  l.push_back({'.', "TEAL", kTeal});
  return l;
}

RasterScenario Op(const std::string& name, const std::string& comment, int width, int height,
                  std::function<Hdc(Gdi&, ScenarioChecks&)> draw) {
  RasterScenario s;
  s.name = name;
  s.file = name + ".txt";
  s.comment = comment;
  s.width = width;
  s.height = height;
  s.legend = OpsLegend();
  s.draw = std::move(draw);
  return s;
}

void Line(Gdi& gdi, Hdc dc, int x0, int y0, int x1, int y1) {
  gdi.MoveToEx(dc, x0, y0, nullptr);
  gdi.LineTo(dc, x1, y1);
}

// A 16 x 8 surface: columns 0-7 yellow, 8-15 teal.
Hdc TwoColumns(Gdi& gdi) {
  Hdc dc = NewSurface(gdi, 16, 8, kYellow);
  for (int y = 0; y < 8; ++y)
    for (int x = 8; x < 16; ++x) gdi.SetPixel(dc, x, y, kTeal);
  return dc;
}

void AddOps(std::vector<RasterScenario>& out) {
  out.push_back(Op("line_directions",
                   "LineTo with a black 1-pixel pen on white, all eight directions with 2:1 slopes (the\n"
                   "midpoint ties): (0,0)-(8,4), (19,0)-(11,4), (8,9)-(0,5), (11,9)-(19,5), (0,10)-(4,18),\n"
                   "(19,10)-(15,18), (9,18)-(5,10), (10,18)-(14,10)",
                   20, 20, [](Gdi& gdi, ScenarioChecks& checks) {
                     Hdc dc = NewSurface(gdi, 20, 20, kWhite);
                     Handle pen = gdi.CreatePen(PS_SOLID, 1, kBlack);
                     Hgdiobj old = gdi.SelectObject(dc, pen);
                     Line(gdi, dc, 0, 0, 8, 4);
                     Line(gdi, dc, 19, 0, 11, 4);
                     Line(gdi, dc, 8, 9, 0, 5);
                     Line(gdi, dc, 11, 9, 19, 5);
                     Line(gdi, dc, 0, 10, 4, 18);
                     Line(gdi, dc, 19, 10, 15, 18);
                     Line(gdi, dc, 9, 18, 5, 10);
                     Line(gdi, dc, 10, 18, 14, 10);
                     Point pos{};
                     gdi.MoveToEx(dc, 0, 0, &pos);
                     checks.Check(pos.x == 14 && pos.y == 10, "LineTo leaves the position at its end point");
                     gdi.SelectObject(dc, old);
                     gdi.DeleteObject(pen);
                     return dc;
                   }));
  out.push_back(Op("line_shallow_steep",
                   "LineTo in red on white: (0,0)-(15,2), (15,4)-(0,6), (1,8)-(3,15), (6,15)-(4,8),\n"
                   "(8,8)-(15,15) (diagonal), (15,9)-(9,15), and one-pixel lines (12,2)-(13,2), (13,4)-(13,5)",
                   16, 16, [](Gdi& gdi, ScenarioChecks&) {
                     Hdc dc = NewSurface(gdi, 16, 16, kWhite);
                     Handle pen = gdi.CreatePen(PS_SOLID, 1, kRed);
                     Hgdiobj old = gdi.SelectObject(dc, pen);
                     Line(gdi, dc, 0, 0, 15, 2);
                     Line(gdi, dc, 15, 4, 0, 6);
                     Line(gdi, dc, 1, 8, 3, 15);
                     Line(gdi, dc, 6, 15, 4, 8);
                     Line(gdi, dc, 8, 8, 15, 15);
                     Line(gdi, dc, 15, 9, 9, 15);
                     Line(gdi, dc, 12, 2, 13, 2);
                     Line(gdi, dc, 13, 4, 13, 5);
                     gdi.SelectObject(dc, old);
                     gdi.DeleteObject(pen);
                     return dc;
                   }));
  for (int half = 0; half < 2; ++half) {
    std::string name = half == 0 ? "rop2_modes_1_8" : "rop2_modes_9_16";
    std::string range = half == 0 ? "1 (R2_BLACK) to 8" : "9 to 16 (R2_WHITE)";
    out.push_back(Op(name,
                     "LineTo with a magenta pen in draw modes " + range +
                         ", one mode per row from the top,\nacross columns yellow (0-7) and teal (8-15)",
                     16, 8, [half](Gdi& gdi, ScenarioChecks& checks) {
                       Hdc dc = TwoColumns(gdi);
                       Handle pen = gdi.CreatePen(PS_SOLID, 1, kMagenta);
                       Hgdiobj old = gdi.SelectObject(dc, pen);
                       for (int i = 0; i < 8; ++i) {
                         int mode = half * 8 + i + 1;
                         gdi.SetROP2(dc, mode);
                         Line(gdi, dc, 0, i, 16, i);
                       }
                       checks.Check(gdi.SetROP2(dc, R2_COPYPEN) == half * 8 + 8, "SetROP2 returns the previous mode");
                       gdi.SelectObject(dc, old);
                       gdi.DeleteObject(pen);
                       return dc;
                     }));
  }
  out.push_back(Op("rect_pens_brushes",
                   "Rectangle on teal: NULL_PEN with a yellow brush (1,1,6,5); black pen with NULL_BRUSH\n"
                   "(6,6,11,11); black pen, yellow brush with the corners given backwards (10,4,7,1); a 1x1\n"
                   "(1,7,2,8), a 2x2 (3,7,5,9) and a 0x2 (5,10,5,12) with the pen; NULL_PEN 2x2 (1,10,3,12)\n"
                   "and 3x2 (7,12,10,14)",
                   12, 14, [](Gdi& gdi, ScenarioChecks& checks) {
                     Hdc dc = NewSurface(gdi, 12, 14, kTeal);
                     Handle pen = gdi.CreatePen(PS_SOLID, 1, kBlack);
                     Handle brush = gdi.CreateSolidBrush(kYellow);
                     Hgdiobj old_pen = gdi.SelectObject(dc, gdi.GetStockObject(NULL_PEN));
                     Hgdiobj old_brush = gdi.SelectObject(dc, brush);
                     checks.Check(gdi.Rectangle(dc, 1, 1, 6, 5), "Rectangle without a pen returns TRUE");
                     gdi.SelectObject(dc, pen);
                     gdi.SelectObject(dc, gdi.GetStockObject(NULL_BRUSH));
                     gdi.Rectangle(dc, 6, 6, 11, 11);
                     gdi.SelectObject(dc, brush);
                     gdi.Rectangle(dc, 10, 4, 7, 1);
                     gdi.Rectangle(dc, 1, 7, 2, 8);
                     gdi.Rectangle(dc, 3, 7, 5, 9);
                     gdi.Rectangle(dc, 5, 10, 5, 12);
                     gdi.SelectObject(dc, gdi.GetStockObject(NULL_PEN));
                     gdi.Rectangle(dc, 1, 10, 3, 12);
                     gdi.Rectangle(dc, 7, 12, 10, 14);
                     gdi.SelectObject(dc, old_pen);
                     gdi.SelectObject(dc, old_brush);
                     gdi.DeleteObject(pen);
                     gdi.DeleteObject(brush);
                     return dc;
                   }));
  out.push_back(Op("fillrect_cases",
                   "FillRect on teal: red brush (1,1)-(5,4); the BTNSHADOW system brush (COLOR_BTNSHADOW + 1)\n"
                   "(6,1)-(11,4); blue partly outside (-2,6)-(3,14); green with the corners backwards\n"
                   "(10,10)-(7,7); yellow empty (5,5)-(5,9)",
                   12, 12, [](Gdi& gdi, ScenarioChecks&) {
                     Hdc dc = NewSurface(gdi, 12, 12, kTeal);
                     Handle red = gdi.CreateSolidBrush(kRed), blue = gdi.CreateSolidBrush(kBlue);
                     Handle green = gdi.CreateSolidBrush(kGreen), yellow = gdi.CreateSolidBrush(kYellow);
                     Rect a{1, 1, 5, 4}, b{6, 1, 11, 4}, c{-2, 6, 3, 14}, d{10, 10, 7, 7}, e{5, 5, 5, 9};
                     gdi.FillRect(dc, &a, red);
                     gdi.FillRect(dc, &b, static_cast<Handle>(COLOR_BTNSHADOW + 1));
                     gdi.FillRect(dc, &c, blue);
                     gdi.FillRect(dc, &d, green);
                     gdi.FillRect(dc, &e, yellow);
                     for (Handle h : {red, blue, green, yellow}) gdi.DeleteObject(h);
                     return dc;
                   }));
  out.push_back(Op("blit_patterns",
                   "BitBlt without a source, red brush selected, on columns yellow (0-7) and teal (8-15):\n"
                   "rows 0-1 PATCOPY, rows 2-3 PATINVERT, rows 4-5 DSTINVERT, rows 6-7 untouched",
                   16, 8, [](Gdi& gdi, ScenarioChecks& checks) {
                     Hdc dc = TwoColumns(gdi);
                     Handle brush = gdi.CreateSolidBrush(kRed);
                     Hgdiobj old = gdi.SelectObject(dc, brush);
                     checks.Check(gdi.BitBlt(dc, 0, 0, 16, 2, 0, 0, 0, kPatCopy), "PATCOPY returns TRUE");
                     checks.Check(gdi.BitBlt(dc, 0, 2, 16, 2, 0, 0, 0, kPatInvert), "PATINVERT returns TRUE");
                     checks.Check(gdi.BitBlt(dc, 0, 4, 16, 2, 0, 0, 0, kDstInvert), "DSTINVERT returns TRUE");
                     gdi.SelectObject(dc, old);
                     gdi.DeleteObject(brush);
                     return dc;
                   }));
  out.push_back(Op("blit_clipped",
                   "BitBlt SRCCOPY of the 8x4 colour source (columns red, green, blue, white) to a teal 12x10:\n"
                   "6x6 from source (-2,-1) to (1,1); 4x2 from (6,2) to (8,7) (half outside the source);\n"
                   "3x3 from (0,0) to (-1,8) (partly outside the destination)",
                   12, 10, [](Gdi& gdi, ScenarioChecks&) {
                     Hdc src = ColourSource(gdi);
                     Hdc dst = NewSurface(gdi, 12, 10, kTeal);
                     gdi.BitBlt(dst, 1, 1, 6, 6, src, -2, -1, SRCCOPY);
                     gdi.BitBlt(dst, 8, 7, 4, 2, src, 6, 2, SRCCOPY);
                     gdi.BitBlt(dst, -1, 8, 3, 3, src, 0, 0, SRCCOPY);
                     return dst;
                   }));
  out.push_back(Op("blit_mono_to_mono",
                   "BitBlt mono to mono: the 2x2 checker (white first) onto rows white (0-1), black (2-3):\n"
                   "columns 0-3 SRCCOPY, columns 4-7 SRCINVERT; destination colours red text, blue background",
                   8, 4, [](Gdi& gdi, ScenarioChecks&) {
                     Hdc src = MonoSurface(gdi, true);
                     Hdc dst = MonoSurface(gdi, false);
                     gdi.SetTextColor(dst, kRed);
                     gdi.SetBkColor(dst, kBlue);
                     gdi.BitBlt(dst, 0, 0, 4, 4, src, 0, 0, SRCCOPY);
                     gdi.BitBlt(dst, 4, 0, 4, 4, src, 4, 0, SRCINVERT);
                     return dst;
                   }));
  out.push_back(Op("mono_colours",
                   "Colours on an 8x4 monochrome bitmap (black): row 0 SetPixel of grey (128,128,128),\n"
                   "(127,127,127), (255,128,0), (0,255,255), (200,0,0), (255,255,0), (64,64,255), (0,0,255);\n"
                   "row 1 the same colours as 1-pixel pens; row 2 as brushes (FillRect 1x1); row 3 pure white\n"
                   "then black by SetPixel",
                   8, 4, [](Gdi& gdi, ScenarioChecks&) {
                     Hdc dc = gdi.CreateCompatibleDC(0);
                     gdi.SelectObject(dc, gdi.CreateBitmap(8, 4, 1, 1, nullptr));
                     const ColorRef cs[8] = {Rgb(128, 128, 128), Rgb(127, 127, 127), Rgb(255, 128, 0),
                                             Rgb(0, 255, 255),   Rgb(200, 0, 0),     Rgb(255, 255, 0),
                                             Rgb(64, 64, 255),   Rgb(0, 0, 255)};
                     for (int x = 0; x < 8; ++x) {
                       gdi.SetPixel(dc, x, 0, cs[x]);
                       Handle pen = gdi.CreatePen(PS_SOLID, 1, cs[x]);
                       Hgdiobj old = gdi.SelectObject(dc, pen);
                       Line(gdi, dc, x, 1, x + 1, 1);
                       gdi.SelectObject(dc, old);
                       gdi.DeleteObject(pen);
                       Handle brush = gdi.CreateSolidBrush(cs[x]);
                       Rect r{x, 2, x + 1, 3};
                       gdi.FillRect(dc, &r, brush);
                       gdi.DeleteObject(brush);
                       gdi.SetPixel(dc, x, 3, x < 4 ? kWhite : kBlack);
                     }
                     return dc;
                   }));
  out.push_back(Op("stretch_colour_to_mono",
                   "StretchBlt SRCCOPY of the 8x4 colour source (columns red, green, blue, white) with\n"
                   "background blue to a black 8x8 monochrome bitmap at (0,0) 8x8",
                   8, 8, [](Gdi& gdi, ScenarioChecks&) {
                     Hdc src = ColourSource(gdi);
                     gdi.SetBkColor(src, kBlue);
                     Hdc dst = gdi.CreateCompatibleDC(0);
                     gdi.SelectObject(dst, gdi.CreateBitmap(8, 8, 1, 1, nullptr));
                     gdi.StretchBlt(dst, 0, 0, 8, 8, src, 0, 0, 8, 4, SRCCOPY);
                     return dst;
                   }));
  out.push_back(Op("stretch_mono_shrink",
                   "StretchBlt SRCCOPY of the 8x4 mono checker (white first) to (1,1) 3x2 and (5,1) 4x1 on teal;\n"
                   "text colour brick, background dark blue",
                   10, 4, [](Gdi& gdi, ScenarioChecks&) {
                     Hdc src = MonoSurface(gdi, true);
                     Hdc dst = NewSurface(gdi, 10, 4, kTeal);
                     gdi.SetTextColor(dst, kBrick);
                     gdi.SetBkColor(dst, kDark);
                     gdi.StretchBlt(dst, 1, 1, 3, 2, src, 0, 0, 8, 4, SRCCOPY);
                     gdi.StretchBlt(dst, 5, 1, 4, 1, src, 0, 0, 8, 4, SRCCOPY);
                     return dst;
                   }));
  out.push_back(Op("stretch_rops_flips",
                   "StretchBlt of the 3x3 nine colours on teal 12x12: SRCINVERT to (1,1) 5x5; SRCAND\n"
                   "to (7,1) 4x4 from source x=2 width -3 (mirrored source); SRCCOPY to (1,11) 6x-4 (upside\n"
                   "down); SRCCOPY to (8,7) 1x4 (one column) and (10,7) 2x1",
                   12, 12, [](Gdi& gdi, ScenarioChecks&) {
                     Hdc src = NineColours(gdi);
                     Hdc dst = NewSurface(gdi, 12, 12, kTeal);
                     gdi.StretchBlt(dst, 1, 1, 5, 5, src, 0, 0, 3, 3, SRCINVERT);
                     gdi.StretchBlt(dst, 7, 1, 4, 4, src, 2, 0, -3, 3, SRCAND);
                     gdi.StretchBlt(dst, 1, 11, 6, -4, src, 0, 0, 3, 3, SRCCOPY);
                     gdi.StretchBlt(dst, 8, 7, 1, 4, src, 0, 0, 3, 3, SRCCOPY);
                     gdi.StretchBlt(dst, 10, 7, 2, 1, src, 0, 0, 3, 3, SRCCOPY);
                     return dst;
                   }));
  out.push_back(Op("stretch_shrink_uneven",
                   "StretchBlt SRCCOPY of the 8x4 colour source (columns red, green, blue, white) to (0,0) 5x3\n"
                   "and (6,0) 3x3 of the same colour source, mirrored (x=8, cx=-3), on teal 10x4",
                   10, 4, [](Gdi& gdi, ScenarioChecks&) {
                     Hdc src = ColourSource(gdi);
                     Hdc dst = NewSurface(gdi, 10, 4, kTeal);
                     gdi.StretchBlt(dst, 0, 0, 5, 3, src, 0, 0, 8, 4, SRCCOPY);
                     gdi.StretchBlt(dst, 9, 0, -3, 3, src, 0, 0, 8, 4, SRCCOPY);
                     return dst;
                   }));
  out.push_back(Op("state_bitmap_mono_union",
                   "DrawState of the 6x6 bitmap (white, black L, red dot, one (250,250,250) pixel) on teal\n"
                   "14x16: DSS_MONO with a blue brush at (1,1); DSS_UNION with a red brush at (8,1) and\n"
                   "(8,8) (the dither counts from the image's corner), and with no brush at (1,8)",
                   14, 16, [](Gdi& gdi, ScenarioChecks& checks) {
                     Hdc dc = NewSurface(gdi, 14, 16, kTeal);
                     Hbitmap b = StateSmallBitmap(gdi);
                     Handle blue = gdi.CreateSolidBrush(kBlue), red = gdi.CreateSolidBrush(kRed);
                     checks.Check(gdi.DrawStateA(dc, blue, b, "", 1, 1, 0, 0, DST_BITMAP | DSS_MONO),
                                  "DSS_MONO returns TRUE");
                     checks.Check(gdi.DrawStateA(dc, red, b, "", 8, 1, 0, 0, DST_BITMAP | DSS_UNION),
                                  "DSS_UNION returns TRUE");
                     gdi.DrawStateA(dc, red, b, "", 8, 8, 0, 0, DST_BITMAP | DSS_UNION);
                     gdi.DrawStateA(dc, 0, b, "", 1, 8, 0, 0, DST_BITMAP | DSS_UNION);
                     gdi.DeleteObject(blue);
                     gdi.DeleteObject(red);
                     return dc;
                   }));
  out.push_back(Op("state_bitmap_sized",
                   "DrawState DST_BITMAP of the 6x6 bitmap on teal 12x10: DSS_NORMAL at (1,1) sized 4x3;\n"
                   "DSS_DISABLED at (6,1) sized 5x8",
                   12, 10, [](Gdi& gdi, ScenarioChecks&) {
                     Hdc dc = NewSurface(gdi, 12, 10, kTeal);
                     Hbitmap b = StateSmallBitmap(gdi);
                     gdi.DrawStateA(dc, 0, b, "", 1, 1, 4, 3, DST_BITMAP | DSS_NORMAL);
                     gdi.DrawStateA(dc, 0, b, "", 6, 1, 5, 8, DST_BITMAP | DSS_DISABLED);
                     return dc;
                   }));
  out.push_back(Op("mask_colour_replace",
                   "A colour is replaced through a monochrome mask: an 8x6 picture (rows red, green, with a\n"
                   "magenta block at (2,1)-(6,5) and blue columns 6-7) is copied to the target; the mask is\n"
                   "the picture with background magenta; the work image is white, then NOTSRCCOPY mask and\n"
                   "SRCAND picture; the mask goes to the target (SRCCOPY, black text, white background), a\n"
                   "yellow box is drawn on it with R2_MASKPEN, and the work image SRCINVERT on top",
                   8, 6, [](Gdi& gdi, ScenarioChecks&) {
                     Hdc source = NewSurface(gdi, 8, 6, kRed);
                     for (int y = 0; y < 6; ++y)
                       for (int x = 0; x < 8; ++x) {
                         ColorRef c = (y % 2) ? kGreen : kRed;
                         if (x >= 6) c = kBlue;
                         if (x >= 2 && x < 6 && y >= 1 && y < 5) c = kMagenta;
                         gdi.SetPixel(source, x, y, c);
                       }
                     Hdc target = NewSurface(gdi, 8, 6, kWhite);
                     Hdc work = NewSurface(gdi, 8, 6, kWhite);
                     Hdc mask = gdi.CreateCompatibleDC(0);
                     gdi.BitBlt(target, 0, 0, 8, 6, source, 0, 0, SRCCOPY);
                     Hbitmap bmp = gdi.CreateBitmap(8, 6, 1, 1, nullptr);
                     gdi.SelectObject(mask, bmp);
                     ColorRef old_bk = gdi.SetBkColor(target, kMagenta);
                     gdi.BitBlt(mask, 0, 0, 8, 6, target, 0, 0, SRCCOPY);
                     gdi.SetBkColor(target, old_bk);
                     // Deleted while still selected: the DC keeps using it on both backends (the
                     // return value differs: the headless GDI refuses, Wine defers the deletion
                     // and answers TRUE), so only the picture is compared.
                     gdi.DeleteObject(bmp);
                     gdi.BitBlt(work, 0, 0, 8, 6, mask, 0, 0, NOTSRCCOPY);
                     gdi.BitBlt(work, 0, 0, 8, 6, target, 0, 0, SRCAND);
                     gdi.BitBlt(target, 0, 0, 8, 6, mask, 0, 0, SRCCOPY);
                     gdi.SetROP2(target, R2_MASKPEN);
                     Handle pen = gdi.CreatePen(PS_SOLID, 1, kYellow);
                     Handle brush = gdi.CreateSolidBrush(kYellow);
                     Hgdiobj op = gdi.SelectObject(target, pen);
                     Hgdiobj ob = gdi.SelectObject(target, brush);
                     gdi.Rectangle(target, 0, 0, 8, 6);
                     gdi.SelectObject(target, op);
                     gdi.SelectObject(target, ob);
                     gdi.DeleteObject(pen);
                     gdi.DeleteObject(brush);
                     gdi.SetROP2(target, R2_COPYPEN);
                     gdi.BitBlt(target, 0, 0, 8, 6, work, 0, 0, SRCINVERT);
                     return target;
                   }));
  // DrawEdge on shapes the other edge pictures do not have.
  struct EdgeShape {
    const char* name;
    const char* what;
    Rect rc;
    std::uint32_t edge;
    std::uint32_t flags;
  };
  const EdgeShape shapes[] = {
      {"edge_small_middle", "EDGE_RAISED, BF_RECT | BF_MIDDLE on (1,1)-(4,4)", {1, 1, 4, 4}, EDGE_RAISED,
       BF_RECT | BF_MIDDLE},
      {"edge_diag_wide", "EDGE_RAISED, BF_DIAGONAL_ENDTOPRIGHT | BF_MIDDLE on (1,1)-(13,7)", {1, 1, 13, 7},
       EDGE_RAISED, BF_DIAGONAL_ENDTOPRIGHT | BF_MIDDLE},
      {"edge_diag_tall", "EDGE_SUNKEN, BF_DIAGONAL_ENDBOTTOMRIGHT | BF_MIDDLE on (1,1)-(6,13)", {1, 1, 6, 13},
       EDGE_SUNKEN, BF_DIAGONAL_ENDBOTTOMRIGHT | BF_MIDDLE},
      {"edge_diag_soft", "EDGE_RAISED, BF_DIAGONAL_ENDTOPLEFT | BF_SOFT on (1,1)-(11,11)", {1, 1, 11, 11},
       EDGE_RAISED, BF_DIAGONAL_ENDTOPLEFT | BF_SOFT},
      {"edge_diag_mono", "EDGE_BUMP, BF_DIAGONAL_ENDBOTTOMLEFT | BF_MONO | BF_MIDDLE on (1,1)-(11,11)",
       {1, 1, 11, 11}, EDGE_BUMP, BF_DIAGONAL_ENDBOTTOMLEFT | BF_MONO | BF_MIDDLE},
      {"edge_diag_flat", "EDGE_ETCHED, BF_DIAGONAL_ENDTOPRIGHT | BF_FLAT | BF_MIDDLE on (1,1)-(11,11)",
       {1, 1, 11, 11}, EDGE_ETCHED, BF_DIAGONAL_ENDTOPRIGHT | BF_FLAT | BF_MIDDLE},
      {"edge_etched_soft_left_bottom", "EDGE_ETCHED, BF_LEFT | BF_BOTTOM | BF_SOFT | BF_MIDDLE on (1,1)-(11,11)",
       {1, 1, 11, 11}, EDGE_ETCHED, BF_LEFT | BF_BOTTOM | BF_SOFT | BF_MIDDLE},
  };
  for (const EdgeShape& e : shapes) {
    RasterScenario s;
    s.name = e.name;
    s.file = std::string(e.name) + ".txt";
    s.comment = std::string("DrawEdge ") + e.what + " of a 14x14 canvas";
    s.width = s.height = 14;
    s.legend = SysLegend();
    s.draw = [e](Gdi& gdi, ScenarioChecks&) {
      Hdc dc = NewSurface(gdi, 14, 14, kCanvas);
      Rect rc = e.rc;
      gdi.DrawEdge(dc, &rc, e.edge, e.flags);
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
    auto add = [&v](void (*fill)(std::vector<RasterScenario>&), const char* family) {
      std::size_t first = v.size();
      fill(v);
      for (std::size_t i = first; i < v.size(); ++i) v[i].family = family;
    };
    add(AddEdges, "edge");
    add(AddBlits, "blit");
    add(AddPens, "pen");
    add(AddStretches, "stretch");
    add(AddStateBitmaps, "state");
    add(AddTexts, "text");
    add(AddOps, "ops");
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
