#include "framework/brightmoor.h"

#include <cmath>
#include <utility>
#include <vector>

#include "framework/arith.h"
#include "framework/surface.h"

namespace korvel {

// ---- colours and drawing ----

ColorRef TranslateSysColor(Platform& p, OleColor color) {
  if (static_cast<std::int32_t>(color) >= 0) return color;
  return p.gdi().GetSysColor(static_cast<int>(color - 0x80000000u));
}

ColorRef BlendColors(Platform& p, OleColor a, OleColor b, float amount) {
  if (amount > 1) amount = amount / 100;
  ColorRef ca = TranslateSysColor(p, a);
  ColorRef cb = TranslateSysColor(p, b);
  auto mix = [amount](int x, int y) {
    return static_cast<int>(RoundHalfEven(static_cast<double>(x) * amount + static_cast<double>(y) * (1 - amount)));
  };
  int r = mix(RedOf(ca), RedOf(cb));
  int g = mix(GreenOf(ca), GreenOf(cb));
  int bl = mix(BlueOf(ca), BlueOf(cb));
  return static_cast<ColorRef>(r + g * 256 + bl * 65536);
}

void NormalizeRect(Rect& rc) {
  if (rc.left > rc.right) std::swap(rc.left, rc.right);
  if (rc.top > rc.bottom) std::swap(rc.top, rc.bottom);
}

void DrawEdgeRect(Platform& p, Hdc dc, const Rect& rc, std::int32_t edge, bool fill) {
  Rect r = rc;
  NormalizeRect(r);
  std::uint32_t flags = fill ? (BF_RECT | BF_MIDDLE) : BF_RECT;
  // A negative edge carries the soft flag: one signed argument holds both.
  if (edge < 0) {
    flags |= BF_SOFT;
    edge = -edge;
  }
  p.gdi().DrawEdge(dc, &r, static_cast<std::uint32_t>(edge), flags);
}

void DrawDisabledPicture(Platform& p, const PictureRef& picture, Hdc dc, int x, int y, int cx, int cy) {
  if (!picture) return;
  Gdi& gdi = p.gdi();
  gdi.DrawStateA(dc, 0, picture->HandleFor(gdi), std::string(), x, y, cx, cy, DST_BITMAP | DSS_DISABLED);
}

void MaskOutColor(Platform& p, Hdc src, Hdc dst, Hdc mask, OleColor transparent, std::int16_t x, std::int16_t y,
                  std::int16_t width, std::int16_t height) {
  Gdi& gdi = p.gdi();
  Hbitmap bmp = gdi.CreateBitmap(width, height, 1, 1, nullptr);
  gdi.SelectObject(mask, bmp);
  ColorRef old_bk = gdi.SetBkColor(src, transparent);
  gdi.BitBlt(mask, 0, 0, width, height, src, x, y, SRCCOPY);
  gdi.SetBkColor(src, old_bk);
  // Deleted while still selected into the mask DC, so the DC keeps using it.
  gdi.DeleteObject(bmp);
  gdi.BitBlt(dst, x, y, width, height, mask, 0, 0, NOTSRCCOPY);
  gdi.BitBlt(dst, x, y, width, height, src, x, y, SRCAND);
}

void ReplaceMaskColor(Platform& p, Surface& source, Surface& target, Surface& image_work, Surface& mask_work,
                      OleColor mask_color, OleColor back_color) {
  Gdi& gdi = p.gdi();
  float sw = target.ScaleWidth();
  float sh = target.ScaleHeight();
  int w = static_cast<int>(RoundHalfEven(sw));
  int h = static_cast<int>(RoundHalfEven(sh));
  gdi.BitBlt(target.hDC(), 0, 0, w, h, source.hDC(), 0, 0, SRCCOPY);
  MaskOutColor(p, target.hDC(), image_work.hDC(), mask_work.hDC(), mask_color, 0, 0, CInt(w), CInt(h));
  gdi.BitBlt(target.hDC(), 0, 0, w, h, mask_work.hDC(), 0, 0, SRCCOPY);
  target.SetDrawMode(R2_MASKPEN);
  target.Line(0, 0, sw - 1, sh - 1, back_color, true, true);
  target.SetDrawMode(R2_COPYPEN);
  gdi.BitBlt(target.hDC(), 0, 0, w, h, image_work.hDC(), 0, 0, SRCINVERT);
  image_work.SetPicture(nullptr);
  mask_work.SetPicture(nullptr);
}

void PaintGradient(Platform& p, Surface* surface, std::int16_t direction, OleColor color1, OleColor color2) {
  (void)p;
  if (!surface) return;
  float sw = surface->ScaleWidth();
  float sh = surface->ScaleHeight();
  int r1 = RedOf(color1), g1 = GreenOf(color1), b1 = BlueOf(color1);
  int r2 = RedOf(color2), g2 = GreenOf(color2), b2 = BlueOf(color2);
  const float step = 0.02f;
  const float last = 0.98f;
  for (float t = 0; t <= last; t += step) {
    auto mix = [t](int a, int b) {
      return static_cast<int>(RoundHalfEven(static_cast<double>(a) * (1 - static_cast<double>(t)) +
                                            static_cast<double>(b) * static_cast<double>(t)));
    };
    OleColor c = static_cast<OleColor>(mix(r1, r2) + mix(g1, g2) * 256 + mix(b1, b2) * 65536);
    if (direction == 1)
      surface->Line(sw * t, 0, sw * (t + step), sh, c, true, true);
    else if (direction == 2)
      surface->Line(0, sh * t, sw, sh * (t + step), c, true, true);
    else
      surface->Line(sw * t, sh * t, sw * (t + step), sh * (t - step), c, true, true);
  }
}

// ---- strings ----

std::int32_t CountOccurrences(const std::string& text, const std::string& find) {
  if (find.empty()) return 0;
  std::int32_t count = 0;
  std::int32_t pos = InStr(1, text, find);
  while (pos > 0) {
    ++count;
    pos = InStr(pos + static_cast<std::int32_t>(find.size()), text, find);
  }
  return count;
}

std::string MidRange(const std::string& text, std::int32_t first, std::int32_t last) {
  return Mid(text, first, last - first + 1);
}

std::string ReplaceRange(const std::string& text, std::int32_t first, std::int32_t last,
                         const std::string& replacement) {
  return Left(text, first - 1) + replacement + Mid(text, last + 1);
}

std::string GetListItem(const std::string& list, const std::string& separator, std::int16_t index) {
  if (InStr(1, list, separator) == 0) return list;
  std::int32_t start = 1;
  for (std::int32_t i = 1; i <= index - 1; ++i) start = InStr(start, list, separator) + 1;
  if (index == CountOccurrences(list, separator) + 1) return Mid(list, start);
  return MidRange(list, start, InStr(start, list, separator) - 1);
}

std::string ReplaceAll(const std::string& text, const std::string& find, const std::string& replacement,
                       bool& case_sensitive) {
  if (find.empty()) return text;
  std::string result = text;
  auto search = [&](std::int32_t from) {
    return case_sensitive ? InStr(from, result, find) : InStrText(from, result, find);
  };
  std::int32_t pos = search(1);
  while (pos > 0) {
    result = ReplaceRange(result, pos, pos + static_cast<std::int32_t>(find.size()) - 1, replacement);
    pos = search(pos + static_cast<std::int32_t>(replacement.size()));
  }
  return result;
}

std::string StripAtNull(const std::string& text) {
  std::size_t nul = text.find('\0');
  return nul == std::string::npos ? text : text.substr(0, nul);
}

bool IsValidKeyName(const std::string& name) {
  if (name.empty()) return false;
  if (Trim(name).size() != name.size()) return false;
  std::string up = UCase(name);
  auto letter = [](char c) { return c >= 'A' && c <= 'Z'; };
  auto digit = [](char c) { return c >= '0' && c <= '9'; };
  // "[" and "]" are excluded by name as well as by the pattern.
  if (!letter(up[0]) || up[0] == '[' || up[0] == ']') return false;
  for (std::size_t i = 1; i < up.size(); ++i) {
    char c = up[i];
    if (!(letter(c) || digit(c) || c == '_') || c == '[' || c == ']') return false;
  }
  return true;
}

// ---- common dialogs ----

namespace {

std::string FilterForDialog(const std::string& filter) {
  bool binary = true;
  return ReplaceAll(filter, "|", std::string(1, '\0'), binary) + std::string(2, '\0');
}

std::string FileDialog(Platform& p, bool save, Hwnd owner, const std::string& default_extension,
                       const std::string& filter, const std::string& title, std::string& file_title) {
  std::string filter_text = FilterForDialog(filter);
  std::vector<char> file(256, ' ');
  std::vector<char> title_buf(256, ' ');
  file[255] = '\0';
  title_buf[255] = '\0';
  OPENFILENAMEA ofn;
  ofn.lStructSize = 76;
  ofn.hwndOwner = owner;
  ofn.hInstance = 0;
  ofn.lpstrFilter = filter_text.c_str();
  ofn.nFilterIndex = 1;
  ofn.lpstrFile = file.data();
  ofn.nMaxFile = 255;
  ofn.lpstrFileTitle = title_buf.data();
  ofn.nMaxFileTitle = 255;
  ofn.lpstrTitle = title.c_str();
  ofn.Flags = save ? (OFN_HIDEREADONLY | OFN_PATHMUSTEXIST | OFN_FILEMUSTEXIST | OFN_OVERWRITEPROMPT)
                   : (OFN_HIDEREADONLY | OFN_PATHMUSTEXIST | OFN_FILEMUSTEXIST);
  ofn.lpstrDefExt = save ? default_extension.c_str() : nullptr;
  bool ok = save ? p.dialogs().GetSaveFileNameA(&ofn) : p.dialogs().GetOpenFileNameA(&ofn);
  if (!ok) return "";
  file_title = StripAtNull(std::string(title_buf.data(), 255));
  return StripAtNull(std::string(file.data(), 255));
}

}  // namespace

std::string ShowOpenDialog(Platform& p, Hwnd owner, const std::string& filter, const std::string& title,
                           std::string& file_title) {
  return FileDialog(p, false, owner, "", filter, title, file_title);
}

std::string ShowSaveDialog(Platform& p, Hwnd owner, const std::string& default_extension,
                           const std::string& filter, const std::string& title, std::string& file_title) {
  return FileDialog(p, true, owner, default_extension, filter, title, file_title);
}

std::int32_t ShowColorDialog(Platform& p, Hwnd owner) {
  ColorRef custom[16] = {};
  CHOOSECOLORA cc;
  cc.lStructSize = 36;
  cc.hwndOwner = owner;
  cc.hInstance = p.ModuleInstance();
  cc.rgbResult = 0;
  cc.lpCustColors = custom;
  cc.Flags = 0;
  if (p.dialogs().ChooseColorA(&cc)) return static_cast<std::int32_t>(cc.rgbResult);
  return -1;
}

std::string BrowseForFolder(Platform& p, Hwnd owner, const std::string& title) {
  BROWSEINFOA bi;
  bi.hwndOwner = owner;
  bi.pidlRoot = 0;
  bi.pszDisplayName = nullptr;
  bi.lpszTitle = title.c_str();
  bi.ulFlags = BIF_RETURNONLYFSDIRS;
  Handle list = p.shell().SHBrowseForFolderA(&bi);
  std::vector<char> path(513, ' ');
  path[512] = '\0';
  // The item list is not released afterwards.
  if (p.shell().SHGetPathFromIDListA(list, path.data())) return StripAtNull(std::string(path.data(), 512));
  return "";
}

// ---- system ----

void OpenDocument(Platform& p, const std::string& target) {
  // Parameters and directory are both the text "1".
  p.shell().ShellExecuteA(0, "open", target, "1", "1", SW_SHOWNORMAL);
}

void RunAndWait(Platform& p, const std::string& command_line) {
  STARTUPINFOA si;
  si.cb = 68;
  PROCESS_INFORMATION pi;
  p.kernel().CreateProcessA(nullptr, command_line, true, NORMAL_PRIORITY_CLASS, &si, &pi);
  p.kernel().WaitForSingleObject(pi.hProcess, INFINITE);
  p.kernel().CloseHandle(pi.hProcess);
}

}  // namespace korvel
