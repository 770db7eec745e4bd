// The shared routines: colours, edges, masking, gradients, list strings, key names,
// dialogs, documents and processes.
#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdio>
#include <fstream>

#include "framework/brightmoor.h"
#include "framework/surface.h"
#include "platform/headless/headless_platform.h"

using namespace korvel;
using namespace korvel::headless;

namespace {

std::string Nul(const char* s, std::size_t n) { return std::string(s, n); }

}  // namespace

// ---- colours ----

TEST(TranslateSysColor, PassesRgbAndLooksUpSystemColours) {
  HeadlessPlatform p;
  EXPECT_EQ(TranslateSysColor(p, 0x00123456), 0x00123456u);
  EXPECT_EQ(TranslateSysColor(p, 0), 0u);
  EXPECT_EQ(TranslateSysColor(p, 0x8000000F), Rgb(192, 192, 192));  // COLOR_BTNFACE
  EXPECT_EQ(TranslateSysColor(p, 0x8000000D), Rgb(0, 0, 128));      // COLOR_HIGHLIGHT
  p.raster().SetSysColor(COLOR_BTNFACE, Rgb(1, 2, 3));
  EXPECT_EQ(TranslateSysColor(p, 0x8000000F), Rgb(1, 2, 3));
}

TEST(BlendColors, PercentageEqualsFraction) {
  HeadlessPlatform p;
  ColorRef a = Rgb(255, 0, 100), b = Rgb(0, 200, 51);
  EXPECT_EQ(BlendColors(p, a, b, 50), BlendColors(p, a, b, 0.5f));
  // 255*.5 = 127.5 -> 128, 200*.5 = 100, 100*.5+51*.5 = 75.5 -> 76 (halves to even)
  EXPECT_EQ(BlendColors(p, a, b, 0.5f), Rgb(128, 100, 76));
}

TEST(BlendColors, AmountOfOneGivesTheFirstColour) {
  HeadlessPlatform p;
  EXPECT_EQ(BlendColors(p, Rgb(10, 20, 30), Rgb(200, 100, 50), 1), Rgb(10, 20, 30));
  EXPECT_EQ(BlendColors(p, Rgb(10, 20, 30), Rgb(200, 100, 50), 0), Rgb(200, 100, 50));
}

TEST(BlendColors, HotTrackingColourOfTheClassicScheme) {
  HeadlessPlatform p;
  // Highlight (255,255,255) and face (192,192,192): 223.5 rounds to even 224.
  EXPECT_EQ(BlendColors(p, 0x80000014, 0x8000000F, 0.5f), Rgb(224, 224, 224));
}

TEST(BlendColors, HalvesRoundToEven) {
  HeadlessPlatform p;
  // 1*.5 + 0*.5 = 0.5 -> 0; 3*.5 = 1.5 -> 2; 5*.5 = 2.5 -> 2
  EXPECT_EQ(BlendColors(p, Rgb(1, 3, 5), Rgb(0, 0, 0), 0.5f), Rgb(0, 2, 2));
}

// ---- edges ----

TEST(NormalizeRect, SwapsReversedSides) {
  Rect r{10, 20, 2, 5};
  NormalizeRect(r);
  EXPECT_EQ(r, (Rect{2, 5, 10, 20}));
  Rect ok{1, 2, 3, 4};
  NormalizeRect(ok);
  EXPECT_EQ(ok, (Rect{1, 2, 3, 4}));
}

TEST(DrawEdgeRect, PassesRectFlagsAndSoftEdge) {
  HeadlessPlatform p;
  Surface s(p, 0, 20, 20);
  p.RecordGdiCalls(true);
  p.log().Clear();
  Hdc dc = s.hDC();
  DrawEdgeRect(p, dc, Rect{1, 2, 10, 12}, BDR_RAISEDINNER, false);
  DrawEdgeRect(p, dc, Rect{1, 2, 10, 12}, EDGE_ETCHED, true);
  DrawEdgeRect(p, dc, Rect{1, 2, 10, 12}, -static_cast<std::int32_t>(BDR_SUNKENOUTER), true);
  auto calls = p.log().Matching("DrawEdge(");
  ASSERT_EQ(calls.size(), 3u);
  std::string d = std::to_string(dc);
  EXPECT_EQ(calls[0].substr(0, calls[0].find(" =")), "DrawEdge(" + d + ", (1, 2, 10, 12), 4, 0xF)");
  EXPECT_EQ(calls[1].substr(0, calls[1].find(" =")), "DrawEdge(" + d + ", (1, 2, 10, 12), 6, 0x80F)");
  EXPECT_EQ(calls[2].substr(0, calls[2].find(" =")), "DrawEdge(" + d + ", (1, 2, 10, 12), 2, 0x180F)");
}

TEST(DrawEdgeRect, RightToLeftRectangleDrawsTheSameEdge) {
  HeadlessPlatform p;
  Surface a(p, 0, 16, 16), b(p, 0, 16, 16);
  DrawEdgeRect(p, a.hDC(), Rect{2, 3, 13, 12}, EDGE_ETCHED, true);
  DrawEdgeRect(p, b.hDC(), Rect{13, 12, 2, 3}, EDGE_ETCHED, true);
  EXPECT_EQ(a.Snapshot(), b.Snapshot());
  p.RecordGdiCalls(true);
  p.log().Clear();
  DrawEdgeRect(p, b.hDC(), Rect{13, 3, 2, 12}, BDR_SUNKENOUTER, false);
  auto calls = p.log().Matching("DrawEdge(");
  ASSERT_EQ(calls.size(), 1u);
  EXPECT_NE(calls[0].find("(2, 3, 13, 12), 2, 0xF)"), std::string::npos) << calls[0];
}

// ---- masking ----

namespace {
Image Strip() {
  Image img(8, 4, Rgb(255, 0, 255));
  img.At(1, 1) = Rgb(10, 20, 30);
  img.At(2, 1) = Rgb(0, 0, 0);
  img.At(3, 2) = Rgb(255, 255, 255);
  img.At(6, 3) = Rgb(254, 0, 255);  // close to magenta but not magenta
  img.At(7, 0) = Rgb(128, 128, 128);
  return img;
}
}  // namespace

TEST(MaskOutColor, MakesTheCallsInItsOrderAndDeletesTheMaskWhileSelected) {
  HeadlessPlatform p;
  Surface src(p, 0, 8, 4), dst(p, 0, 8, 4), mask(p, 0, 8, 4);
  src.SetPicture(Picture::FromImage(Strip()));
  p.RecordGdiCalls(true);
  p.log().Clear();
  MaskOutColor(p, src.hDC(), dst.hDC(), mask.hDC(), 0xFF00FF, 0, 0, 8, 4);
  const auto& c = p.log().calls;
  ASSERT_EQ(c.size(), 8u);
  std::string s = std::to_string(src.hDC()), d = std::to_string(dst.hDC()), m = std::to_string(mask.hDC());
  std::string bmp = c[0].substr(c[0].find("= ") + 2);
  EXPECT_EQ(c[0], "CreateBitmap(8, 4, 1, 1, null) = " + bmp);
  EXPECT_EQ(c[1].substr(0, c[1].find(" =")), "SelectObject(" + m + ", " + bmp + ")");
  EXPECT_EQ(c[2], "SetBkColor(" + s + ", 0xFF00FF) = 0xFFFFFF");
  EXPECT_EQ(c[3], "BitBlt(" + m + ", 0, 0, 8, 4, " + s + ", 0, 0, 0xCC0020) = 1");
  EXPECT_EQ(c[4], "SetBkColor(" + s + ", 0xFFFFFF) = 0xFF00FF");
  // The bitmap is still selected into the mask DC, so the deletion does not take.
  EXPECT_EQ(c[5], "DeleteObject(" + bmp + ") = 0");
  EXPECT_EQ(c[6], "BitBlt(" + d + ", 0, 0, 8, 4, " + m + ", 0, 0, 0x330008) = 1");
  EXPECT_EQ(c[7], "BitBlt(" + d + ", 0, 0, 8, 4, " + s + ", 0, 0, 0x8800C6) = 1");
  // The mask DC keeps drawing on the monochrome bitmap: white where magenta was.
  EXPECT_EQ(p.raster().GetPixel(mask.hDC(), 0, 0), 0xFFFFFFu);
  EXPECT_EQ(p.raster().GetPixel(mask.hDC(), 1, 1), 0x000000u);
  EXPECT_EQ(p.raster().GetPixel(mask.hDC(), 6, 3), 0x000000u);
  ASSERT_TRUE(p.raster().DcBitmap(mask.hDC())->mono);
}

TEST(MaskOutColor, DestinationHoldsTheImageWithMaskPixelsBlack) {
  HeadlessPlatform p;
  Surface src(p, 0, 8, 4), dst(p, 0, 8, 4), mask(p, 0, 8, 4);
  src.SetPicture(Picture::FromImage(Strip()));
  MaskOutColor(p, src.hDC(), dst.hDC(), mask.hDC(), 0xFF00FF, 0, 0, 8, 4);
  Image want = Strip();
  for (auto& px : want.pixels)
    if (px == Rgb(255, 0, 255)) px = 0;
  EXPECT_EQ(dst.Snapshot(), want);
}

TEST(ReplaceMaskColor, ReplacesOnlyMaskPixelsWithTheBackground) {
  HeadlessPlatform p;
  Surface src(p, 0, 8, 4), target(p, 0, 8, 4), w1(p, 0, 8, 4), w2(p, 0, 8, 4);
  src.SetPicture(Picture::FromImage(Strip()));
  ReplaceMaskColor(p, src, target, w1, w2, 0xFF00FF, 0x8000000F);
  Image want = Strip();
  for (auto& px : want.pixels)
    if (px == Rgb(255, 0, 255)) px = Rgb(192, 192, 192);
  EXPECT_EQ(target.Snapshot(), want);
  EXPECT_EQ(target.DrawMode(), R2_COPYPEN);
  EXPECT_EQ(w1.Picture(), nullptr);
  EXPECT_EQ(w2.Picture(), nullptr);
}

TEST(ReplaceMaskColor, WorksWithAnyBackgroundColour) {
  HeadlessPlatform p;
  Surface src(p, 0, 8, 4), target(p, 0, 8, 4), w1(p, 0, 8, 4), w2(p, 0, 8, 4);
  src.SetPicture(Picture::FromImage(Strip()));
  ReplaceMaskColor(p, src, target, w1, w2, 0xFF00FF, Rgb(224, 224, 224));
  Image got = target.Snapshot();
  EXPECT_EQ(got.At(0, 0), Rgb(224, 224, 224));
  EXPECT_EQ(got.At(1, 1), Rgb(10, 20, 30));
  EXPECT_EQ(got.At(2, 1), Rgb(0, 0, 0));
  EXPECT_EQ(got.At(3, 2), Rgb(255, 255, 255));
  EXPECT_EQ(got.At(6, 3), Rgb(254, 0, 255));
  EXPECT_EQ(got.At(7, 0), Rgb(128, 128, 128));
}

// ---- gradient ----

TEST(PaintGradient, DrawsFiftyBandsLeftToRight) {
  HeadlessPlatform p;
  Surface s(p, 0, 100, 3);
  p.RecordGdiCalls(true);
  p.log().Clear();
  PaintGradient(p, &s, 1, Rgb(0, 0, 128), Rgb(192, 192, 192));
  EXPECT_EQ(p.log().Matching("Rectangle(").size(), 50u);
  Image img = s.Snapshot();
  EXPECT_EQ(img.At(0, 0), Rgb(0, 0, 128));  // t = 0
  // band 1 (t = 0.02): 192*.02 = 3.84 -> 4; 128*.98 + 192*.02 = 129.28 -> 129
  EXPECT_EQ(img.At(3, 1), Rgb(4, 4, 129));
  // the last band, t = 0.98: 188.16 -> 188, 125.44 + 3.84 ... blue 128*.02+192*.98 = 190.72 -> 191
  EXPECT_EQ(img.At(99, 2), Rgb(188, 188, 191));
}

TEST(PaintGradient, TopToBottomAndNoSurface) {
  HeadlessPlatform p;
  Surface s(p, 0, 2, 50);
  PaintGradient(p, &s, 2, Rgb(0, 0, 0), Rgb(100, 100, 100));
  Image img = s.Snapshot();
  EXPECT_EQ(img.At(0, 0), Rgb(0, 0, 0));
  EXPECT_EQ(img.At(1, 49), Rgb(98, 98, 98));
  PaintGradient(p, nullptr, 1, 0, 0);  // an object that is not a surface: nothing
}

// ---- strings ----

TEST(ListStrings, GetListItemAndCountOccurrences) {
  EXPECT_EQ(GetListItem("A|B|C", "|", 3), "C");
  EXPECT_EQ(GetListItem("A|B|C", "|", 1), "A");
  EXPECT_EQ(GetListItem("A|B|C", "|", 2), "B");
  EXPECT_EQ(GetListItem("A", "|", 1), "A");
  EXPECT_EQ(GetListItem("A||B", "|", 2), "");
  EXPECT_EQ(GetListItem(" x | y ", "|", 2), " y ");  // items are not trimmed
  EXPECT_EQ(CountOccurrences("A||B", "|"), 2);
  EXPECT_EQ(CountOccurrences("", "|"), 0);
  EXPECT_EQ(CountOccurrences("aaaa", "aa"), 2);  // non-overlapping
  EXPECT_EQ(CountOccurrences("abc", "x"), 0);
}

TEST(ListStrings, MidRangeAndReplaceRange) {
  EXPECT_EQ(MidRange("Hello", 2, 4), "ell");
  EXPECT_EQ(MidRange("Hello", 3, 2), "");
  EXPECT_EQ(ReplaceRange("Hello", 2, 4, "ipp"), "Hippo");
  EXPECT_EQ(ReplaceRange("Hello", 1, 1, ""), "ello");
}

TEST(ListStrings, ReplaceAllWithEmptyFindReturnsTheText) {
  bool cs = true;
  EXPECT_EQ(ReplaceAll("a|b", "", "x", cs), "a|b");
}

TEST(ListStrings, ReplaceAllResumesAfterTheReplacement) {
  bool cs = true;
  EXPECT_EQ(ReplaceAll("Text|*.txt|All|*.*", "|", std::string(1, '\0'), cs), Nul("Text\0*.txt\0All\0*.*", 18));
  // A replacement that contains the find string does not loop.
  EXPECT_EQ(ReplaceAll("a|b", "|", "||", cs), "a||b");
  EXPECT_EQ(ReplaceAll("aaa", "a", "aa", cs), "aaaaaa");
}

TEST(ListStrings, ReplaceAllCaseSensitivity) {
  bool cs = true;
  EXPECT_EQ(ReplaceAll("Tab tab TAB", "tab", "x", cs), "Tab x TAB");
  bool ci = false;
  EXPECT_EQ(ReplaceAll("Tab tab TAB", "tab", "x", ci), "x x x");
}

TEST(ListStrings, StripAtNull) {
  EXPECT_EQ(StripAtNull(std::string("abc\0def", 7)), "abc");
  EXPECT_EQ(StripAtNull("abc"), "abc");
  EXPECT_EQ(StripAtNull(std::string("\0x", 2)), "");
}

TEST(IsValidKeyName, RejectsAndAccepts) {
  for (const char* bad : {"", " A", "A ", "1A", "A-B", "A[1]", "[A", "A]", "_A", "A B", "é"})
    EXPECT_FALSE(IsValidKeyName(bad)) << bad;
  for (const char* good : {"a", "Z9", "A_1", "Open", "btn_Save2"}) EXPECT_TRUE(IsValidKeyName(good)) << good;
}

// ---- dialogs ----

TEST(Dialogs, OpenFillsTheRecordAndConvertsTheFilter) {
  HeadlessPlatform p;
  DialogAnswer a;
  a.confirm = true;
  a.file = "C:\\docs\\a.txt";
  a.file_title = "a.txt";
  p.headless_dialogs().answers.push_back(a);
  std::string title;
  std::string path = ShowOpenDialog(p, 77, "Text|*.txt|All|*.*", "Open file...", title);
  EXPECT_EQ(path, "C:\\docs\\a.txt");
  EXPECT_EQ(title, "a.txt");
  const OPENFILENAMEA& o = p.headless_dialogs().last_ofn;
  EXPECT_EQ(o.lStructSize, 76u);
  EXPECT_EQ(o.hwndOwner, 77u);
  EXPECT_EQ(o.nFilterIndex, 1u);
  EXPECT_EQ(o.nMaxFile, 255u);
  EXPECT_EQ(o.nMaxFileTitle, 255u);
  EXPECT_EQ(o.Flags, 0x1804u);
  EXPECT_EQ(o.lpstrDefExt, nullptr);
  EXPECT_EQ(p.headless_dialogs().last_filter, Nul("Text\0*.txt\0All\0*.*\0\0", 20));
  EXPECT_EQ(p.headless_dialogs().last_file_buffer, std::string(255, ' '));
}

TEST(Dialogs, SaveKeepsFileMustExistAndPassesTheExtension) {
  HeadlessPlatform p;
  std::string title = "unchanged";
  EXPECT_EQ(ShowSaveDialog(p, 0, "txt", "", "Save file as...", title), "");  // cancelled
  EXPECT_EQ(title, "unchanged");
  EXPECT_EQ(p.log().calls.back(),
            "GetSaveFileNameA(size 76, owner 0, filter \"\\0\\0\", index 1, max 255/255, title \"Save file as...\", "
            "flags 0x1806, ext \"txt\")");
}

TEST(Dialogs, ColourCancelledIsMinusOneAndBlackIsZero) {
  HeadlessPlatform p;
  EXPECT_EQ(ShowColorDialog(p, 5), -1);
  DialogAnswer a;
  a.confirm = true;
  a.color = 0;
  p.headless_dialogs().answers.push_back(a);
  EXPECT_EQ(ShowColorDialog(p, 5), 0);
  const CHOOSECOLORA& c = p.headless_dialogs().last_cc;
  EXPECT_EQ(c.lStructSize, 36u);
  EXPECT_EQ(c.hwndOwner, 5u);
  EXPECT_EQ(c.hInstance, p.ModuleInstance());
  EXPECT_EQ(c.Flags, 0u);
  EXPECT_EQ(p.headless_dialogs().last_custom_colors, std::vector<ColorRef>(16, 0));
}

TEST(Dialogs, FolderWithoutAPathGivesEmptyText) {
  HeadlessPlatform p;
  p.headless_shell().next_folder = "";  // a virtual folder such as the printers
  EXPECT_EQ(BrowseForFolder(p, 3, "Choose a folder."), "");
  p.headless_shell().next_folder = "/home/user";
  EXPECT_EQ(BrowseForFolder(p, 3, "Choose a folder."), "/home/user");
  EXPECT_EQ(BrowseForFolder(p, 3, "Choose a folder."), "");  // cancelled
  EXPECT_EQ(p.log().Matching("SHBrowseForFolderA(")[0],
            "SHBrowseForFolderA(owner 3, root 0, title \"Choose a folder.\", flags 0x1)");
}

// ---- system ----

TEST(OpenDocument, CallsShellExecuteWithParametersAndDirectoryOne) {
  HeadlessPlatform p;
  OpenDocument(p, "mailto:sales@example.com");
  ASSERT_EQ(p.log().calls.size(), 1u);
  EXPECT_EQ(p.log().calls[0], "ShellExecuteA(0, \"open\", \"mailto:sales@example.com\", \"1\", \"1\", 1)");
}

TEST(RunAndWait, StartsTheProcessAndWaitsForItsEnd) {
  HeadlessPlatform p;
  std::string marker = ::testing::TempDir() + "korvel_run_and_wait_" + std::to_string(getpid());
  std::remove(marker.c_str());
  RunAndWait(p, "sleep 0.3; echo done > '" + marker + "'");
  // The marker exists as soon as RunAndWait returns: the call blocked until the end.
  std::ifstream in(marker);
  std::string text;
  in >> text;
  EXPECT_EQ(text, "done");
  std::remove(marker.c_str());
  auto calls = p.log().calls;
  ASSERT_EQ(calls.size(), 3u);
  EXPECT_EQ(calls[0], "CreateProcessA(null, \"sleep 0.3; echo done > '" + marker + "'\", 1, 0x20, cb 68)");
  EXPECT_EQ(calls[1].substr(0, 20), "WaitForSingleObject(");
  EXPECT_NE(calls[1].find(", 0xFFFFFFFF)"), std::string::npos);
  EXPECT_EQ(calls[2].substr(0, 12), "CloseHandle(");
}
