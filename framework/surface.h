// A drawing surface of a control: the control's own area or one of its picture
// boxes. It keeps the host's drawing-surface semantics (clear, line and box, point,
// printing at the current position, text measurement, picture painting, draw modes)
// on top of the platform's device-context calls, in pixel scale. The image is
// persistent: a repaint of the window shows the last drawn state.
#pragma once
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "framework/font.h"
#include "framework/picture.h"
#include "framework/platform.h"

namespace korvel {

// FillStyle values used by the controls.
inline constexpr int vbFSSolid = 0;
inline constexpr int vbFSTransparent = 1;

class Surface {
 public:
  Surface(Platform& platform, Hwnd parent, int width, int height);
  ~Surface();
  Surface(const Surface&) = delete;
  Surface& operator=(const Surface&) = delete;

  Platform& platform() { return platform_; }
  // The platform's side of the surface (its image and window).
  SurfaceSite& site() { return *site_; }

  // ---- attributes ----
  Hdc hDC() { return site_->Dc(); }
  Hwnd hWnd() { return site_->Window(); }
  float ScaleWidth() { return static_cast<float>(site_->PixelWidth()); }
  float ScaleHeight() { return static_cast<float>(site_->PixelHeight()); }
  int Left() { return site_->Left(); }
  int Top() { return site_->Top(); }
  int Width() { return site_->PixelWidth(); }
  int Height() { return site_->PixelHeight(); }
  void Move(int left, int top, int width, int height);
  bool Visible() { return site_->Visible(); }
  void SetVisible(bool v) { site_->SetVisible(v); }
  const std::string& ToolTipText() const { return tool_tip_text_; }
  void SetToolTipText(const std::string& t);
  int MousePointer() const { return mouse_pointer_; }
  void SetMousePointer(int p);

  OleColor ForeColor() const { return fore_color_; }
  void SetForeColor(OleColor c) { fore_color_ = c; }
  OleColor BackColor() const { return back_color_; }
  // Setting the background colour clears the surface to it, as the host's surfaces do.
  void SetBackColor(OleColor c);
  OleColor FillColor() const { return fill_color_; }
  void SetFillColor(OleColor c) { fill_color_ = c; }
  int FillStyle() const { return fill_style_; }
  void SetFillStyle(int s) { fill_style_ = s; }
  int DrawMode() const { return draw_mode_; }
  void SetDrawMode(int m) { draw_mode_ = m; }
  int DrawWidth() const { return draw_width_; }
  void SetDrawWidth(int w) { draw_width_ = w < 1 ? 1 : w; }
  bool AutoRedraw() const { return auto_redraw_; }
  void SetAutoRedraw(bool b) { auto_redraw_ = b; }
  bool FontTransparent() const { return font_transparent_; }
  void SetFontTransparent(bool b) { font_transparent_ = b; }
  float CurrentX() const { return current_x_; }
  void SetCurrentX(float x) { current_x_ = x; }
  float CurrentY() const { return current_y_; }
  void SetCurrentY(float y) { current_y_ = y; }

  // The surface font is an object of its own; Font() hands out that object, and
  // SetFont makes the given object the surface font (by reference).
  const FontRef& Font() const { return font_; }
  void SetFont(FontRef f);
  bool FontUnderline() const { return font_->Underline(); }
  void SetFontUnderline(bool u) { font_->SetUnderline(u); }

  // The background picture: setting it clears the image and draws the picture at
  // (0, 0); clearing it leaves the background colour.
  const PictureRef& Picture() const { return picture_; }
  void SetPicture(PictureRef p);

  // ---- operations (coordinates in pixels) ----
  void Cls();
  // Line from (x1, y1) to (x2, y2) in color (the fore colour when not given); the
  // last point is not drawn. With box: the rectangle with both corners, outlined,
  // filled by FillStyle/FillColor; with box and fill: filled in the line colour.
  void Line(float x1, float y1, float x2, float y2, std::optional<OleColor> color = std::nullopt,
            bool box = false, bool fill = false);
  void PSet(float x, float y, std::optional<OleColor> color = std::nullopt);
  // Prints text at CurrentX/CurrentY; afterwards CurrentX is 0 and CurrentY is one
  // text height lower.
  void Print(const std::string& text);
  float TextWidth(const std::string& text);
  float TextHeight(const std::string& text);
  void PaintPicture(const PictureRef& picture, float x, float y);
  void PaintPicture(const PictureRef& picture, float x, float y, float width, float height);
  void Refresh() { site_->Refresh(); }

  // The current image (for tests and the gallery).
  Image Snapshot();

 private:
  ColorRef Translate(OleColor c);
  void SelectCurrentFont();

  Platform& platform_;
  std::unique_ptr<SurfaceSite> site_;
  FontRef font_;
  PictureRef picture_;
  Hfont hfont_ = 0;
  Hfont old_font_ = 0;
  LOGFONTA selected_lf_{};
  bool font_selected_ = false;
  std::string tool_tip_text_;
  int mouse_pointer_ = 0;
  OleColor fore_color_ = 0x80000012;  // button text
  OleColor back_color_ = 0x8000000F;  // button face
  OleColor fill_color_ = 0;
  int fill_style_ = vbFSTransparent;
  int draw_mode_ = R2_COPYPEN;
  int draw_width_ = 1;
  bool auto_redraw_ = false;
  bool font_transparent_ = true;
  float current_x_ = 0;
  float current_y_ = 0;
};

// A font object's platform description at the screen's 96 pixels per inch.
LOGFONTA LogFontOf(const Font& font);

}  // namespace korvel
