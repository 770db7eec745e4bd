// The control model every control follows: the life cycle the host drives, in this
// order for one instance -
//   Initialize; InitProperties or ReadProperties; Resize, Paint; Show/Hide;
//   mouse and key events; WriteProperties; Terminate -
// and the control's own drawing surface, whose extent the host owns.
#pragma once
#include <cstdint>
#include <memory>

#include "framework/automation.h"
#include "framework/host.h"
#include "framework/platform.h"
#include "framework/property_bag.h"
#include "framework/surface.h"

namespace korvel {

// Shift-state bits of mouse and key events.
inline constexpr int vbShiftMask = 1;
inline constexpr int vbCtrlMask = 2;
inline constexpr int vbAltMask = 4;

class Control : public Automation {
 public:
  Control(Host& host, Platform& platform);
  virtual ~Control();
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  // ---- life cycle (overridables) ----
  virtual void Initialize() {}
  virtual void InitProperties() {}
  virtual void ReadProperties(const PropertyBag& bag) { (void)bag; }
  virtual void WriteProperties(PropertyBag& bag) { (void)bag; }
  virtual void Resize() {}
  virtual void Paint() {}
  virtual void Show() {}
  virtual void Hide() {}
  virtual void MouseDown(int button, int shift, float x, float y) { (void)button, (void)shift, (void)x, (void)y; }
  virtual void MouseMove(int button, int shift, float x, float y) { (void)button, (void)shift, (void)x, (void)y; }
  virtual void MouseUp(int button, int shift, float x, float y) { (void)button, (void)shift, (void)x, (void)y; }
  virtual void KeyDown(std::int16_t& key_code, int shift) { (void)key_code, (void)shift; }
  virtual void KeyPress(std::int16_t& key_ascii) { (void)key_ascii; }
  virtual void KeyUp(std::int16_t& key_code, int shift) { (void)key_code, (void)shift; }
  virtual void Terminate() {}

  // The shared About box: a fresh About form shown modally, unloaded afterwards.
  void AboutBox();

  // Late-bound access to the members of the control's dispatch interface, by the
  // type library's names. This base answers "AboutBox" and raises 438 for the rest;
  // each control answers its own members first and passes the others here.
  Variant Invoke(const std::string& name, InvokeKind kind, std::vector<Variant>& args) override;

  // ---- the control's own area ----
  Surface& UserControl() { return *surface_; }
  // The surface whose mouse input the mouse events above receive, in its own
  // pixels: the control's own area, unless a control hands its input to one of its
  // constituent surfaces (a child of its area, shown over it).
  virtual Surface& InputSurface() { return *surface_; }
  Host& host() { return host_; }
  Platform& platform() { return platform_; }

  // Width and height of the control in the host's twips.
  std::int32_t Width();
  std::int32_t Height();
  // Asks the host for a new extent in twips (the host answers with Resize).
  void SetWidth(std::int32_t twips);
  void SetHeight(std::int32_t twips);
  // Called by the host: the control's extent is now width x height pixels. Sizes
  // the surface; the host then calls Resize.
  void SetExtentPixels(int width, int height);

  // Pixel/twip conversion of the host.
  float ScaleXToTwips(float pixels) { return pixels * static_cast<float>(platform_.TwipsPerPixelX()); }
  float ScaleYToTwips(float pixels) { return pixels * static_cast<float>(platform_.TwipsPerPixelY()); }

 protected:
  Host& host_;
  Platform& platform_;
  std::unique_ptr<Surface> surface_;
};

}  // namespace korvel
