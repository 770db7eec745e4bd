// USER's drawing calls and stretched copies on the raster: DrawEdge, DrawStateA,
// DrawTextA and StretchBlt. Each follows the platform's own construction (which
// lines, fills and blits it is made of) so that the pixels come out the same.
#include <algorithm>
#include <map>
#include <cstdlib>
#include <string>
#include <vector>

#include "platform/headless/headless_gdi.h"

namespace korvel::headless {

namespace {

// ---- DrawEdge colour tables, indexed by the edge type's four BDR_ bits ----
// -1: that line is not drawn.
constexpr signed char kLtInnerNormal[16] = {-1, -1, -1, -1, -1, COLOR_BTNHIGHLIGHT, COLOR_BTNHIGHLIGHT, -1,
                                            -1, COLOR_3DDKSHADOW, COLOR_3DDKSHADOW, -1, -1, -1, -1, -1};
constexpr signed char kLtOuterNormal[16] = {
    -1, COLOR_3DLIGHT, COLOR_BTNSHADOW, -1, COLOR_BTNHIGHLIGHT, COLOR_3DLIGHT, COLOR_BTNSHADOW, -1,
    COLOR_3DDKSHADOW, COLOR_3DLIGHT, COLOR_BTNSHADOW, -1, -1, COLOR_3DLIGHT, COLOR_BTNSHADOW, -1};
constexpr signed char kRbInnerNormal[16] = {-1, -1, -1, -1, -1, COLOR_BTNSHADOW, COLOR_BTNSHADOW, -1,
                                            -1, COLOR_3DLIGHT, COLOR_3DLIGHT, -1, -1, -1, -1, -1};
constexpr signed char kRbOuterNormal[16] = {
    -1, COLOR_3DDKSHADOW, COLOR_BTNHIGHLIGHT, -1, COLOR_BTNSHADOW, COLOR_3DDKSHADOW, COLOR_BTNHIGHLIGHT, -1,
    COLOR_3DLIGHT, COLOR_3DDKSHADOW, COLOR_BTNHIGHLIGHT, -1, -1, COLOR_3DDKSHADOW, COLOR_BTNHIGHLIGHT, -1};
constexpr signed char kLtInnerSoft[16] = {-1, -1, -1, -1, -1, COLOR_3DLIGHT, COLOR_3DLIGHT, -1,
                                          -1, COLOR_BTNSHADOW, COLOR_BTNSHADOW, -1, -1, -1, -1, -1};
constexpr signed char kLtOuterSoft[16] = {
    -1, COLOR_BTNHIGHLIGHT, COLOR_3DDKSHADOW, -1, COLOR_3DLIGHT, COLOR_BTNHIGHLIGHT, COLOR_3DDKSHADOW, -1,
    COLOR_BTNSHADOW, COLOR_BTNHIGHLIGHT, COLOR_3DDKSHADOW, -1, -1, COLOR_BTNHIGHLIGHT, COLOR_3DDKSHADOW, -1};
// The soft right/bottom colours are the normal ones.
constexpr signed char kOuterMono[16] = {
    -1, COLOR_WINDOWFRAME, COLOR_WINDOWFRAME, COLOR_WINDOWFRAME, COLOR_WINDOW, COLOR_WINDOWFRAME,
    COLOR_WINDOWFRAME, COLOR_WINDOWFRAME, COLOR_WINDOW, COLOR_WINDOWFRAME, COLOR_WINDOWFRAME, COLOR_WINDOWFRAME,
    COLOR_WINDOW, COLOR_WINDOWFRAME, COLOR_WINDOWFRAME, COLOR_WINDOWFRAME};
constexpr signed char kInnerMono[16] = {-1, -1, -1, -1, -1, COLOR_WINDOW, COLOR_WINDOW, COLOR_WINDOW,
                                        -1, COLOR_WINDOW, COLOR_WINDOW, COLOR_WINDOW, -1, COLOR_WINDOW,
                                        COLOR_WINDOW, COLOR_WINDOW};
constexpr signed char kOuterFlat[16] = {
    -1, COLOR_BTNSHADOW, COLOR_BTNSHADOW, COLOR_BTNSHADOW, COLOR_BTNFACE, COLOR_BTNSHADOW, COLOR_BTNSHADOW,
    COLOR_BTNSHADOW, COLOR_BTNFACE, COLOR_BTNSHADOW, COLOR_BTNSHADOW, COLOR_BTNSHADOW, COLOR_BTNFACE,
    COLOR_BTNSHADOW, COLOR_BTNSHADOW, COLOR_BTNSHADOW};
constexpr signed char kInnerFlat[16] = {-1, -1, -1, -1, -1, COLOR_BTNFACE, COLOR_BTNFACE, COLOR_BTNFACE,
                                        -1, COLOR_BTNFACE, COLOR_BTNFACE, COLOR_BTNFACE, -1, COLOR_BTNFACE,
                                        COLOR_BTNFACE, COLOR_BTNFACE};

// The rectangle shrinks by one pixel per drawn border line.
int EdgeThickness(std::uint32_t type) {
  unsigned i = type & 0xF;
  return (kInnerMono[i] != -1 ? 1 : 0) + (kOuterMono[i] != -1 ? 1 : 0);
}

// FALSE when the type asks for both a raised and a sunken line in one ring (and the
// colours are not the flat or mono ones); the middle is then not filled.
bool EdgeResult(std::uint32_t type, std::uint32_t flags) {
  return !(((type & BDR_INNER) == BDR_INNER || (type & BDR_OUTER) == BDR_OUTER) && !(flags & (BF_FLAT | BF_MONO)));
}

std::vector<std::uint32_t> DecodeUtf8(const std::string& s) {
  std::vector<std::uint32_t> out;
  for (std::size_t i = 0; i < s.size();) {
    auto c = static_cast<unsigned char>(s[i]);
    int n = c < 0x80 ? 1 : (c >> 5) == 6 ? 2 : (c >> 4) == 14 ? 3 : (c >> 3) == 30 ? 4 : 1;
    std::uint32_t cp = n == 1 ? c : c & (0x7Fu >> n);
    if (i + static_cast<std::size_t>(n) > s.size()) n = 1, cp = c;
    for (int k = 1; k < n; ++k) cp = (cp << 6) | (static_cast<unsigned char>(s[i + k]) & 0x3F);
    out.push_back(cp);
    i += static_cast<std::size_t>(n);
  }
  return out;
}

std::string EncodeUtf8(const std::vector<std::uint32_t>& cps, std::size_t from, std::size_t count) {
  std::string out;
  for (std::size_t k = from; k < from + count && k < cps.size(); ++k) {
    std::uint32_t c = cps[k];
    if (c < 0x80) {
      out += static_cast<char>(c);
    } else if (c < 0x800) {
      out += static_cast<char>(0xC0 | (c >> 6));
      out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
      out += static_cast<char>(0xE0 | (c >> 12));
      out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
      out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
      out += static_cast<char>(0xF0 | (c >> 18));
      out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
      out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
      out += static_cast<char>(0x80 | (c & 0x3F));
    }
  }
  return out;
}

// One axis of a stretched copy: for each destination step, the source index it
// takes (stretching), or for each source step the destination index it lands on
// (shrinking). The error term is the platform's midpoint rule: 3*dy - 2*dx to start,
// then 2*dy - 2*dx after a step on the short axis and 2*dy otherwise.
struct Axis {
  bool stretch = false;          // |dst| >= |src|: iterate destination pixels
  std::vector<int> src_of_dst;   // stretching: source offset for each destination pixel
  std::vector<int> dst_of_src;   // shrinking: destination offset for each source pixel
};

Axis MapAxis(int dst_len, int src_len) {
  Axis a;
  int dy = std::abs(dst_len), dx = std::abs(src_len);
  int dst_inc = dst_len < 0 ? -1 : 1, src_inc = src_len < 0 ? -1 : 1;  // mirrored axes step backwards
  if (dx > dy) {
    int err = 3 * dy - 2 * dx, d = 0;
    for (int s = 0; s < dx; ++s) {
      a.dst_of_src.push_back(d * dst_inc);
      if (err > 0) {
        ++d;
        err += 2 * dy - 2 * dx;
      } else {
        err += 2 * dy;
      }
    }
  } else {
    a.stretch = true;
    int err = 3 * dx - 2 * dy, s = 0;
    for (int d = 0; d < dy; ++d) {
      a.src_of_dst.push_back(s * src_inc);
      if (err > 0) {
        ++s;
        err += 2 * dx - 2 * dy;
      } else {
        err += 2 * dx;
      }
    }
  }
  return a;
}

}  // namespace

// ---------------------------------------------------------------------------
// DrawEdge

bool HeadlessGdi::DrawEdge(Hdc dc, Rect* rc, std::uint32_t edge, std::uint32_t flags) {
  if (!rc || !Dc(dc)) return false;
  unsigned idx = edge & (BDR_INNER | BDR_OUTER);
  bool result = EdgeResult(edge, flags);
  int add = EdgeThickness(edge);

  if (flags & BF_DIAGONAL) {
    // Pen lines (the DC's draw mode applies) and a polygon for the middle.
    signed char inner, outer;
    if (flags & BF_MONO) {
      inner = kInnerMono[idx];
      outer = kOuterMono[idx];
    } else if (flags & BF_FLAT) {
      inner = kInnerFlat[idx];
      outer = kOuterFlat[idx];
    } else if (flags & BF_SOFT) {
      inner = (flags & BF_BOTTOM) ? kRbInnerNormal[idx] : kLtInnerSoft[idx];
      outer = (flags & BF_BOTTOM) ? kRbOuterNormal[idx] : kLtOuterSoft[idx];
    } else {
      inner = (flags & BF_BOTTOM) ? kRbInnerNormal[idx] : kLtInnerNormal[idx];
      outer = (flags & BF_BOTTOM) ? kRbOuterNormal[idx] : kLtOuterNormal[idx];
    }
    int width = rc->right - rc->left, height = rc->bottom - rc->top;
    int diam = std::min(width, height);
    int spx = 0, spy = 0, epx = 0, epy = 0;
    switch (flags & BF_RECT) {
      case 0:
      case BF_LEFT:
      case BF_BOTTOM:
      case BF_BOTTOMLEFT:  // ends at the bottom left
        epx = rc->left - 1;
        spx = epx + diam;
        epy = rc->bottom;
        spy = epy - diam;
        break;
      case BF_TOPLEFT:
      case BF_BOTTOMRIGHT:  // ends at the top left
        epx = rc->left - 1;
        spx = epx + diam;
        epy = rc->top - 1;
        spy = epy + diam;
        break;
      default:  // ends at the top right
        spx = rc->left;
        epx = spx + diam;
        spy = rc->bottom - 1;
        epy = spy - diam;
        break;
    }
    auto pen_line = [&](int x0, int y0, int x1, int y1, signed char color) {
      if (color < 0) return;
      ColorRef c = GetSysColor(color);
      WalkLine(x0, y0, x1, y1, [&](int x, int y) { PlotRop2(dc, x, y, c); });
    };
    pen_line(spx, spy, epx, epy, outer);

    Point pts[4];
    switch (flags & (BF_RECT | BF_DIAGONAL)) {
      case BF_DIAGONAL_ENDBOTTOMLEFT:
      case BF_DIAGONAL | BF_BOTTOM:
      case BF_DIAGONAL:
      case BF_DIAGONAL | BF_LEFT:
        pen_line(spx - 1, spy, epx, epy - 1, inner);
        pts[0] = {spx - add, spy};
        pts[1] = {rc->left, rc->top};
        pts[2] = {epx + 1, epy - 1 - add};
        pts[3] = pts[2];
        break;
      case BF_DIAGONAL_ENDBOTTOMRIGHT:
        pen_line(spx - 1, spy, epx, epy + 1, inner);
        pts[0] = {spx - add, spy};
        pts[1] = {rc->left, rc->bottom - 1};
        pts[2] = {epx + 1, epy + 1 + add};
        pts[3] = pts[2];
        break;
      case BF_DIAGONAL | BF_BOTTOM | BF_RIGHT | BF_TOP:
      case BF_DIAGONAL | BF_BOTTOM | BF_RIGHT | BF_TOP | BF_LEFT:
      case BF_DIAGONAL_ENDTOPRIGHT:
      case BF_DIAGONAL | BF_RIGHT | BF_TOP | BF_LEFT:
        pen_line(spx + 1, spy, epx, epy + 1, inner);
        pts[0] = {epx - 1, epy + 1 + add};
        pts[1] = {rc->right - 1, rc->top + add};
        pts[2] = {rc->right - 1, rc->bottom - 1};
        pts[3] = {spx + add, spy};
        break;
      case BF_DIAGONAL_ENDTOPLEFT:
        pen_line(spx, spy - 1, epx + 1, epy, inner);
        pts[0] = {epx + 1 + add, epy + 1};
        pts[1] = {rc->right - 1, rc->top};
        pts[2] = {rc->right - 1, rc->bottom - 1 - add};
        pts[3] = {spx, spy - add};
        break;
      case BF_DIAGONAL | BF_TOP:
      case BF_DIAGONAL | BF_BOTTOM | BF_TOP:
      case BF_DIAGONAL | BF_BOTTOM | BF_TOP | BF_LEFT:
        pen_line(spx + 1, spy - 1, epx, epy, inner);
        pts[0] = {epx - 1, epy + 1};
        pts[1] = {rc->right - 1, rc->top};
        pts[2] = {rc->right - 1, rc->bottom - 1 - add};
        pts[3] = {spx + add, spy - add};
        break;
      default:  // BF_DIAGONAL with BF_RIGHT, BF_RIGHT|BF_LEFT, BF_RIGHT|BF_LEFT|BF_BOTTOM
        pen_line(spx, spy, epx - 1, epy + 1, inner);
        pts[0] = {spx, spy};
        pts[1] = {rc->left, rc->top + add};
        pts[2] = {epx - 1 - add, epy + 1 + add};
        pts[3] = pts[2];
        break;
    }

    if ((flags & BF_MIDDLE) && result) {
      // A convex polygon outlined and filled in one colour: the union of its closed
      // outline and every pixel between the outline's ends on each row.
      ColorRef c = GetSysColor((flags & BF_MONO) ? COLOR_WINDOW : COLOR_BTNFACE);
      std::map<int, std::pair<int, int>> rows;
      auto mark = [&](int x, int y) {
        auto [it, fresh] = rows.try_emplace(y, x, x);
        if (!fresh) {
          it->second.first = std::min(it->second.first, x);
          it->second.second = std::max(it->second.second, x);
        }
      };
      for (int i = 0; i < 4; ++i) {
        const Point& a = pts[i];
        const Point& b = pts[(i + 1) % 4];
        WalkLine(a.x, a.y, b.x, b.y, mark);
        mark(b.x, b.y);
      }
      for (const auto& [y, span] : rows)
        for (int x = span.first; x <= span.second; ++x) PlotRop2(dc, x, y, c);
    }
    if (flags & BF_ADJUST) {
      if (flags & BF_LEFT) rc->left += add;
      if (flags & BF_RIGHT) rc->right -= add;
      if (flags & BF_TOP) rc->top += add;
      if (flags & BF_BOTTOM) rc->bottom -= add;
    }
    return result;
  }

  // Rectangular edges: each line is a one-pixel-wide fill, outer ring first.
  signed char lt_inner, lt_outer, rb_inner, rb_outer;
  if (flags & BF_MONO) {
    lt_inner = rb_inner = kInnerMono[idx];
    lt_outer = rb_outer = kOuterMono[idx];
  } else if (flags & BF_FLAT) {
    lt_inner = rb_inner = kInnerFlat[idx];
    lt_outer = rb_outer = kOuterFlat[idx];
  } else if (flags & BF_SOFT) {
    lt_inner = kLtInnerSoft[idx];
    lt_outer = kLtOuterSoft[idx];
    rb_inner = kRbInnerNormal[idx];
    rb_outer = kRbOuterNormal[idx];
  } else {
    lt_inner = kLtInnerNormal[idx];
    lt_outer = kLtOuterNormal[idx];
    rb_inner = kRbInnerNormal[idx];
    rb_outer = kRbOuterNormal[idx];
  }
  // Where two sides meet, the inner line of the later side starts one pixel in.
  int lb = (flags & BF_BOTTOMLEFT) == BF_BOTTOMLEFT ? 1 : 0;
  int rt = (flags & BF_TOPRIGHT) == BF_TOPRIGHT ? 1 : 0;
  int rb = (flags & BF_BOTTOMRIGHT) == BF_BOTTOMRIGHT ? 1 : 0;
  int lt = (flags & BF_TOPLEFT) == BF_TOPLEFT ? 1 : 0;
  const Rect r = *rc;
  auto fill = [&](int l, int t, int rr, int b, signed char color) {
    if (color < 0 || rr <= l || b <= t) return;
    FillSolid(dc, Rect{l, t, rr, b}, GetSysColor(color), Paint::kPen);
  };
  if (flags & BF_TOP) fill(r.left, r.top, r.right, r.top + 1, lt_outer);
  if (flags & BF_LEFT) fill(r.left, r.top, r.left + 1, r.bottom, lt_outer);
  if (flags & BF_BOTTOM) fill(r.left, r.bottom - 1, r.right, r.bottom, rb_outer);
  if (flags & BF_RIGHT) fill(r.right - 1, r.top, r.right, r.bottom, rb_outer);
  if (flags & BF_TOP) fill(r.left + lt, r.top + 1, r.right - rt, r.top + 2, lt_inner);
  if (flags & BF_LEFT) fill(r.left + 1, r.top + lt, r.left + 2, r.bottom - lb, lt_inner);
  if (flags & BF_BOTTOM) fill(r.left + lb, r.bottom - 2, r.right - rb, r.bottom - 1, rb_inner);
  if (flags & BF_RIGHT) fill(r.right - 2, r.top + rt, r.right - 1, r.bottom - rb, rb_inner);

  if (((flags & BF_MIDDLE) && result) || (flags & BF_ADJUST)) {
    Rect in = r;
    if (flags & BF_LEFT) in.left += add;
    if (flags & BF_RIGHT) in.right -= add;
    if (flags & BF_TOP) in.top += add;
    if (flags & BF_BOTTOM) in.bottom -= add;
    // The middle is a FillRect: a rectangle the lines have turned inside out still
    // covers the pixels PatBlt gives it.
    if ((flags & BF_MIDDLE) && result)
      FillSolid(dc, PatBltArea(in), GetSysColor((flags & BF_MONO) ? COLOR_WINDOW : COLOR_BTNFACE));
    if (flags & BF_ADJUST) *rc = in;
  }
  return result;
}

// ---------------------------------------------------------------------------
// DrawStateA

bool HeadlessGdi::DrawStateA(Hdc dc, Handle brush, Handle data, const std::string& text, int x, int y, int cx,
                             int cy, std::uint32_t flags) {
  DcObj* d = Dc(dc);
  if (!d) return false;
  std::uint32_t opcode = flags & 0xF;
  if (opcode != DST_TEXT && opcode != DST_PREFIXTEXT && opcode != DST_BITMAP) return false;
  bool is_text = opcode == DST_TEXT || opcode == DST_PREFIXTEXT;
  if (is_text && text.empty()) return false;

  if (!cx || !cy) {
    Size s;
    if (is_text) {
      if (!GetTextExtentPoint32A(dc, text, &s)) return false;
    } else {
      BitmapObj* b = Bitmap(data);
      if (!b) return false;
      s = Size{b->width, b->height};
    }
    if (!cx) cx = s.cx;
    if (!cy) cy = s.cy;
  }
  std::uint32_t dt = DT_NOCLIP;
  if (flags & 0x8000) dt |= DT_RIGHT;  // DSS_RIGHT
  if (opcode == DST_TEXT) dt |= DT_NOPREFIX;

  // Puts the image itself into target at rc.
  auto jam = [&](Hdc target, Rect rc) -> bool {
    if (is_text) {
      DrawTextA(target, text, &rc, dt);
      return true;
    }
    Hdc mem = CreateCompatibleDC(target);
    Hgdiobj old = SelectObject(mem, data);
    if (!old) {
      DeleteDC(mem);
      return false;
    }
    bool ok = BitBlt(target, rc.left, rc.top, rc.right - rc.left, rc.bottom - rc.top, mem, 0, 0, SRCCOPY);
    SelectObject(mem, old);
    DeleteDC(mem);
    return ok;
  };

  if ((flags & 0x7FF0) == DSS_NORMAL) return jam(dc, Rect{x, y, x + cx, y + cy});

  // Every other state first reduces the image to a monochrome mask (black where the
  // image is, white elsewhere), then paints the mask's black pixels with brushes.
  ColorRef fg = SetTextColor(dc, kBlack);
  ColorRef bg = SetBkColor(dc, kWhite);
  bool ok = false;
  Hbitmap mask = CreateBitmap(cx, cy, 1, 1, nullptr);
  Hdc mem = CreateCompatibleDC(dc);
  Hgdiobj old_bmp = SelectObject(mem, mask);
  if (old_bmp) {
    FillSolid(mem, Rect{0, 0, cx, cy}, kWhite);
    SetBkColor(mem, kWhite);
    SetTextColor(mem, kBlack);
    Hgdiobj old_font = SelectObject(mem, d->font);
    bool drawn = jam(mem, Rect{0, 0, cx, cy});
    if (old_font) SelectObject(mem, old_font);
    if (drawn) {
      if (flags & DSS_UNION) {
        // Dithers the mask: the 55AA pattern ORed in (white where x + y is odd,
        // counted from the image's top left corner).
        BitmapObj* m = Bitmap(mask);
        for (int j = 0; j < cy; ++j)
          for (int i = 0; i < cx; ++i)
            if (((i + j) & 1) == 1) Plot(*m, i, j, kWhite);
      }
      constexpr std::uint32_t kMaskPaint = 0x00B8074A;  // S ? D : P
      DcObj* dd = Dc(dc);
      Handle saved_brush = dd->brush;
      std::vector<Handle> temp;
      if (flags & (DSS_DISABLED | 0x40 /* DSS_DEFAULT */)) {
        Handle b = CreateSolidBrush(GetSysColor((flags & DSS_DISABLED) ? COLOR_3DHILIGHT : COLOR_3DSHADOW));
        temp.push_back(b);
        dd->brush = b;
        BitBlt(dc, x + 1, y + 1, cx, cy, mem, 0, 0, kMaskPaint);
      }
      Handle paint = brush;
      if (flags & DSS_DISABLED) {
        paint = CreateSolidBrush(GetSysColor(COLOR_3DSHADOW));
        temp.push_back(paint);
      } else if (!paint) {
        paint = GetStockObject(BLACK_BRUSH);
      } else if (paint <= static_cast<Handle>(kSysColorCount)) {
        paint = SysColorBrush(static_cast<int>(paint) - 1);
      }
      Dc(dc)->brush = paint;
      ok = BitBlt(dc, x, y, cx, cy, mem, 0, 0, kMaskPaint);
      Dc(dc)->brush = saved_brush;
      for (Handle h : temp) DeleteObject(h);
    }
    SelectObject(mem, old_bmp);
  }
  DeleteDC(mem);
  DeleteObject(mask);
  SetTextColor(dc, fg);
  SetBkColor(dc, bg);
  return ok;
}

// ---------------------------------------------------------------------------
// DrawTextA

namespace {

constexpr std::uint32_t kPrefix = '&';

bool SoftBreakBefore(const std::vector<std::uint32_t>& s, std::size_t i) {
  return i > 0 && i < s.size() && s[i - 1] == ' ' && s[i] != ' ';
}

}  // namespace

int HeadlessGdi::DrawTextA(Hdc dc, const std::string& text, Rect* rc, std::uint32_t format) {
  DcObj* d = Dc(dc);
  if (!d || !rc) return 0;
  LOGFONTA lf = DcFont(dc);
  auto measure = [&](const std::vector<std::uint32_t>& s, std::size_t n) {
    return text_->Measure(lf, EncodeUtf8(s, 0, n));
  };
  int lh = text_->Measure(lf, std::string()).cy;
  if (format & DT_SINGLELINE) format &= ~DT_WORDBREAK;
  if (text.empty()) {
    if (format & DT_CALCRECT) {
      rc->right = rc->left;
      rc->bottom = (format & DT_SINGLELINE) ? rc->top + lh : rc->top;
    }
    return lh;
  }
  if (format & DT_CALCRECT) format |= DT_NOCLIP;

  const std::vector<std::uint32_t> str = DecodeUtf8(text);
  const int width = rc->right - rc->left;
  int x = rc->left, y = rc->top;
  int max_width = 0;
  std::size_t pos = 0;
  bool last_line = false;
  bool more = true;
  int underline_row = -1;  // offset of the prefix underline below a line's top

  do {
    last_line = !(format & DT_NOCLIP) && y + lh > rc->bottom;
    // Collect one line: prefixes removed, stops at CR/LF unless single-line.
    std::vector<std::uint32_t> line;
    int prefix_offset = -1;
    std::vector<std::size_t> src_index;  // source position of each line character
    while (pos < str.size() && ((str[pos] != '\r' && str[pos] != '\n') || (format & DT_SINGLELINE))) {
      std::size_t remaining = str.size() - pos;
      if ((format & DT_NOPREFIX) || remaining <= 1) {
        src_index.push_back(pos);
        line.push_back(str[pos++]);
        continue;
      }
      if (str[pos] == kPrefix) {
        ++pos;  // the prefix itself is not shown
        if (str[pos] == kPrefix) {
          src_index.push_back(pos);
          line.push_back(str[pos++]);
        } else if (prefix_offset == -1) {
          prefix_offset = static_cast<int>(line.size());
        }
      } else {
        src_index.push_back(pos);
        line.push_back(str[pos++]);
      }
    }
    std::size_t len = line.size();
    Size size = measure(line, len);
    // Characters that fit within the width.
    std::size_t fit = 0;
    while (fit < len && measure(line, fit + 1).cx <= width) ++fit;
    bool line_fits = fit >= len;
    bool word_broken = false;
    if (!line_fits && (format & DT_WORDBREAK)) {
      std::size_t used = 0;
      bool word_fits = true;
      long p = static_cast<long>(fit);
      if (fit == 0) {
        word_fits = false;
      } else if (SoftBreakBefore(line, fit)) {
        --p;
      } else {
        long i = static_cast<long>(fit);
        while (i > 0 && !SoftBreakBefore(line, static_cast<std::size_t>(--i) + 1)) --p;
        --p;
        word_fits = i != 0 || SoftBreakBefore(line, static_cast<std::size_t>(i) + 1);
      }
      if (word_fits) {
        if (!(format & (DT_RIGHT | DT_CENTER)) || line[static_cast<std::size_t>(p)] != ' ') ++p;
        bool next_is_space = static_cast<std::size_t>(p) < len && line[static_cast<std::size_t>(p)] == ' ';
        len = static_cast<std::size_t>(p);
        used = len + (next_is_space ? 1 : 0);
      } else {
        std::size_t q = fit;
        while (q < len && line[q] != ' ') ++q;
        used = q + (q < len ? 1 : 0);
        len = q;
      }
      // Continue after the characters used (mapped back to the source text).
      // (when all of it was used, pos already stands after it)
      if (used < src_index.size()) pos = src_index[used];
      line.resize(len);
      size = measure(line, len);
      line_fits = size.cx <= width;
      word_broken = true;
      if (prefix_offset >= static_cast<int>(len)) prefix_offset = -1;
    }
    bool at_end = pos >= str.size();
    auto remainder_is_newline = [&]() {
      std::size_t n = str.size() - pos;
      if (n == 0) return true;
      if (str[pos] != '\n' && str[pos] != '\r') return false;
      if (n == 1) return true;
      if (str[pos] == str[pos + 1]) return false;
      if (str[pos + 1] != '\r' && str[pos + 1] != '\n') return false;
      return n == 2;
    };
    if ((format & DT_END_ELLIPSIS) && ((last_line && !at_end) || (remainder_is_newline() && !line_fits))) {
      // Cut characters until the text and "..." fit (at least the dots remain).
      std::size_t keep = len;
      const std::vector<std::uint32_t> dots = {'.', '.', '.'};
      for (;;) {
        std::vector<std::uint32_t> trial(line.begin(), line.begin() + static_cast<long>(keep));
        trial.insert(trial.end(), dots.begin(), dots.end());
        size = measure(trial, trial.size());
        if (keep == 0 || size.cx <= width) {
          line = trial;
          break;
        }
        --keep;
      }
      if (prefix_offset >= static_cast<int>(keep)) prefix_offset = -1;
      len = line.size();
    }
    // Step over the line end.
    if (!word_broken && pos < str.size() && (str[pos] == '\r' || str[pos] == '\n')) {
      ++pos;
      if (pos < str.size() && (str[pos] == '\r' || str[pos] == '\n') && str[pos] != str[pos - 1]) ++pos;
    }
    more = pos < str.size();

    if (format & DT_CENTER)
      x = (rc->left + rc->right - size.cx) / 2;
    else if (format & DT_RIGHT)
      x = rc->right - size.cx;
    if (format & DT_SINGLELINE) {
      if (format & DT_VCENTER)
        y = rc->top + (rc->bottom - rc->top) / 2 - size.cy / 2;
      else if (format & DT_BOTTOM)
        y = rc->bottom - size.cy;
    }

    if (!(format & DT_CALCRECT)) {
      const Rect* clip = (format & DT_NOCLIP) ? nullptr : rc;
      std::string run = EncodeUtf8(line, 0, line.size());
      DrawTextRun(dc, x, y, run, clip);
      if (prefix_offset != -1 && prefix_offset < static_cast<int>(line.size())) {
        if (underline_row < 0) underline_row = UnderlineRow(lf);
        int uy = y + underline_row;
        int px = x + measure(line, static_cast<std::size_t>(prefix_offset)).cx;
        int pe = x + measure(line, static_cast<std::size_t>(prefix_offset) + 1).cx - 1;
        bool draw = true;
        if (clip) {
          if (px > clip->right || pe < clip->left || uy < clip->top || uy > clip->bottom) draw = false;
          px = std::max(px, static_cast<int>(clip->left));
          pe = std::min(pe, static_cast<int>(clip->right));
        }
        // A pen line in the text colour, its last point excluded.
        if (draw)
          for (int ux = px; ux < pe; ++ux) PlotRop2(dc, ux, uy, d->text_color);
      }
    } else if (size.cx > max_width) {
      max_width = size.cx;
    }
    y += lh;
  } while (more && !last_line);

  if (format & DT_CALCRECT) {
    rc->right = rc->left + max_width;
    rc->bottom = y;
  }
  int ret = y - rc->top;
  return ret == 0 ? 1 : ret;
}

// ---- DrawText helpers ----

void HeadlessGdi::DrawTextRun(Hdc dc, int x, int y, const std::string& run, const Rect* clip) {
  DcObj* d = Dc(dc);
  BitmapObj* b = d ? Bitmap(d->bitmap) : nullptr;
  if (!b || run.empty()) return;
  LOGFONTA lf = DcFont(dc);
  Size s = text_->Measure(lf, run);
  if (!clip) {
    if (d->bk_mode == OPAQUE) FillSolid(dc, Rect{x, y, x + s.cx, y + s.cy}, d->bk_color, Paint::kNearest);
    text_->Draw(*b, x, y, lf, run, d->text_color);
    return;
  }
  // Drawn on a scratch copy of the area around the text, then copied back inside
  // the clip rectangle only (glyphs may overhang their cells, hence the margin).
  int m = s.cy;
  BitmapObj scratch;
  scratch.width = s.cx + 2 * m;
  scratch.height = s.cy + 2 * m;
  scratch.mono = b->mono;
  scratch.px.assign(static_cast<std::size_t>(scratch.width) * static_cast<std::size_t>(scratch.height), kBlack);
  int ox = x - m, oy = y - m;
  for (int j = 0; j < scratch.height; ++j)
    for (int i = 0; i < scratch.width; ++i)
      if (b->Inside(ox + i, oy + j)) scratch.At(i, j) = b->At(ox + i, oy + j);
  if (d->bk_mode == OPAQUE)
    for (int j = m; j < m + s.cy; ++j)
      for (int i = m; i < m + s.cx; ++i) scratch.At(i, j) = b->mono ? ToMonoNearest(d->bk_color) : d->bk_color;
  text_->Draw(scratch, m, m, lf, run, d->text_color);
  int l = std::max({0, clip->left, ox}), t = std::max({0, clip->top, oy});
  int r = std::min({b->width, clip->right, ox + scratch.width}), bo = std::min({b->height, clip->bottom, oy + scratch.height});
  for (int yy = t; yy < bo; ++yy)
    for (int xx = l; xx < r; ++xx) {
      ColorRef c = scratch.At(xx - ox, yy - oy);
      if (c != b->At(xx, yy)) Plot(*b, xx, yy, c);
    }
}

int HeadlessGdi::UnderlineRow(const LOGFONTA& lf) {
  // The renderer's own underline position (ascent + 1), found by drawing an
  // underlined space.
  LOGFONTA u = lf;
  u.lfUnderline = 1;
  Size s = text_->Measure(u, " ");
  BitmapObj probe;
  probe.width = std::max(1, s.cx);
  probe.height = std::max(1, 2 * s.cy);
  probe.px.assign(static_cast<std::size_t>(probe.width) * static_cast<std::size_t>(probe.height), kBlack);
  text_->Draw(probe, 0, 0, u, " ", kWhite);
  for (int j = 0; j < probe.height; ++j)
    for (int i = 0; i < probe.width; ++i)
      if (probe.At(i, j) != kBlack) return j;
  return s.cy - 2;
}

// ---------------------------------------------------------------------------
// StretchBlt

bool HeadlessGdi::StretchBlt(Hdc dst, int x, int y, int cx, int cy, Hdc src, int xs, int ys, int cxs, int cys,
                             std::uint32_t rop) {
  DcObj* dd = Dc(dst);
  BitmapObj* db = dd ? Bitmap(dd->bitmap) : nullptr;
  if (!db) return false;
  bool uses_source = (((rop >> 2) ^ rop) & 0x330000) != 0;
  if (!uses_source) return BitBlt(dst, std::min(x, x + cx + 1), std::min(y, y + cy + 1), std::abs(cx), std::abs(cy), 0, 0, 0, rop);
  if (cx == cxs && cy == cys && cx > 0 && cy > 0) return BitBlt(dst, x, y, cx, cy, src, xs, ys, rop);
  DcObj* sd = Dc(src);
  BitmapObj* sb = sd ? Bitmap(sd->bitmap) : nullptr;
  if (!sb || !cx || !cy || !cxs || !cys) return false;
  // A one-pixel-wide destination takes one source pixel fewer.
  if (std::abs(cx) == 1 && std::abs(cxs) > 1) cxs += cxs > 0 ? -1 : 1;
  if (std::abs(cy) == 1 && std::abs(cys) > 1) cys += cys > 0 ? -1 : 1;

  ColorRef pattern = 0;
  if (auto it = objects_.find(dd->brush); it != objects_.end())
    if (auto* br = std::get_if<BrushObj>(&it->second)) pattern = br->null ? 0 : br->color;

  // Source pixels converted to the destination's format first.
  auto fetch = [&](int sx, int sy, ColorRef* out) {
    if (!sb->Inside(sx, sy)) return false;
    ColorRef s = sb->At(sx, sy);
    if (!sb->mono && db->mono) s = (s == sd->bk_color) ? kWhite : kBlack;
    else if (sb->mono && !db->mono) s = (s == kWhite) ? dd->bk_color : dd->text_color;
    *out = s;
    return true;
  };

  // The stretched image, |cx| x |cy|, in destination order (index 0 is at x, y and
  // steps go in the destination's direction). Shrinking merges the source pixels
  // that land on one destination pixel with AND (BLACKONWHITE); when both axes
  // enlarge, rows are simply repeated.
  const int w = std::abs(cx), h = std::abs(cy);
  const int sxi = cxs < 0 ? -1 : 1, syi = cys < 0 ? -1 : 1;
  Axis ha = MapAxis(cx, cxs), va = MapAxis(cy, cys);
  std::vector<ColorRef> img(static_cast<std::size_t>(w) * static_cast<std::size_t>(h), 0xFFFFFF);
  std::vector<char> have(img.size(), 0);
  auto put = [&](int dxo, int dyo, ColorRef c) {
    int di = std::abs(dxo), dj = std::abs(dyo);
    if (di >= w || dj >= h) return;
    std::size_t k = static_cast<std::size_t>(dj) * w + di;
    if (have[k]) img[k] &= c;
    else img[k] = c, have[k] = 1;
  };
  auto row = [&](int src_row_offset, int dst_row_offset) {
    int sy = ys + src_row_offset;
    if (ha.stretch) {
      for (int i = 0; i < w; ++i) {
        ColorRef c;
        if (fetch(xs + ha.src_of_dst[static_cast<std::size_t>(i)], sy, &c)) put(i, dst_row_offset, c);
      }
    } else {
      for (int s = 0; s < std::abs(cxs); ++s) {
        ColorRef c;
        if (fetch(xs + s * sxi, sy, &c)) put(ha.dst_of_src[static_cast<std::size_t>(s)], dst_row_offset, c);
      }
    }
  };
  if (va.stretch) {
    for (int j = 0; j < h; ++j) row(va.src_of_dst[static_cast<std::size_t>(j)], j);
  } else {
    for (int s = 0; s < std::abs(cys); ++s) row(s * syi, va.dst_of_src[static_cast<std::size_t>(s)]);
  }
  const int dxi = cx < 0 ? -1 : 1, dyi = cy < 0 ? -1 : 1;
  for (int j = 0; j < h; ++j)
    for (int i = 0; i < w; ++i) {
      std::size_t k = static_cast<std::size_t>(j) * w + i;
      if (!have[k]) continue;
      int tx = x + i * dxi, ty = y + j * dyi;
      if (!db->Inside(tx, ty)) continue;
      Plot(*db, tx, ty, ApplyRop3(rop, PaintColor(dst, pattern, Paint::kBrush, tx, ty), img[k], db->At(tx, ty)));
    }
  return true;
}

}  // namespace korvel::headless
