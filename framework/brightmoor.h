// BrightmoorLibrary: the stateless routines the controls and property pages share.
// Every routine works only on its arguments; those that draw or call the system
// take the platform first.
#pragma once
#include <cstdint>
#include <string>

#include "framework/picture.h"
#include "framework/platform.h"
#include "framework/types.h"

namespace korvel {

class Surface;

// ---- colours and drawing ----
ColorRef TranslateSysColor(Platform& p, OleColor color);
ColorRef BlendColors(Platform& p, OleColor a, OleColor b, float amount);
void NormalizeRect(Rect& rc);
void DrawEdgeRect(Platform& p, Hdc dc, const Rect& rc, std::int32_t edge, bool fill);
void DrawDisabledPicture(Platform& p, const PictureRef& picture, Hdc dc, int x, int y, int cx, int cy);
void MaskOutColor(Platform& p, Hdc src, Hdc dst, Hdc mask, OleColor transparent, std::int16_t x, std::int16_t y,
                  std::int16_t width, std::int16_t height);
void ReplaceMaskColor(Platform& p, Surface& source, Surface& target, Surface& image_work, Surface& mask_work,
                      OleColor mask_color, OleColor back_color);
// surface may be null (an object that is not a drawing surface): nothing is drawn.
void PaintGradient(Platform& p, Surface* surface, std::int16_t direction, OleColor color1, OleColor color2);

// ---- strings ----
std::int32_t CountOccurrences(const std::string& text, const std::string& find);
std::string GetListItem(const std::string& list, const std::string& separator, std::int16_t index);
std::string MidRange(const std::string& text, std::int32_t first, std::int32_t last);
std::string ReplaceRange(const std::string& text, std::int32_t first, std::int32_t last,
                         const std::string& replacement);
std::string ReplaceAll(const std::string& text, const std::string& find, const std::string& replacement,
                       bool& case_sensitive);
std::string StripAtNull(const std::string& text);
bool IsValidKeyName(const std::string& name);

// ---- common dialogs ----
std::string ShowOpenDialog(Platform& p, Hwnd owner, const std::string& filter, const std::string& title,
                           std::string& file_title);
std::string ShowSaveDialog(Platform& p, Hwnd owner, const std::string& default_extension,
                           const std::string& filter, const std::string& title, std::string& file_title);
std::int32_t ShowColorDialog(Platform& p, Hwnd owner);
std::string BrowseForFolder(Platform& p, Hwnd owner, const std::string& title);

// ---- system ----
void OpenDocument(Platform& p, const std::string& target);
void RunAndWait(Platform& p, const std::string& command_line);

}  // namespace korvel
