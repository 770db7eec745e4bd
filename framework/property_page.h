// A property page of the library: a caption, the objects the host has selected,
// the page's fields on a surface of its own, and the two moments the host drives
// (SelectionChanged when the selection is given, ApplyChanges when the user applies).
// The page marks itself changed; the page site hears of every change of that state,
// so that it can enable its Apply button.
//
// The fields are plain models with names, captions, rectangles and enabled states:
// a dialog of the platform can mirror them one for one, and Paint draws them for a
// picture of the page.
#pragma once
#include <functional>
#include <string>
#include <variant>
#include <vector>

#include "framework/automation.h"
#include "framework/host.h"
#include "framework/page_widgets.h"
#include "framework/platform.h"
#include "framework/surface.h"
#include "framework/widgets.h"

namespace korvel {

// One field of a page, by kind.
using PageField = std::variant<Label*, Frame*, TextBox*, ComboBox*, CheckBox*, CommandButton*>;

// What a dialog needs to mirror a field.
struct PageFieldInfo {
  std::string kind;  // "Label", "Frame", "TextBox", "ComboBox", "CheckBox", "CommandButton"
  std::string name;
  std::string caption;  // a label's, frame's, check box's or button's caption; a text box's text
  Rect rect;
  bool enabled = true;
  bool operator==(const PageFieldInfo&) const = default;
};
PageFieldInfo Describe(const PageField& field);

class PropertyPage {
 public:
  PropertyPage(Host& host, Platform& platform, std::string caption, int width, int height);
  virtual ~PropertyPage();
  PropertyPage(const PropertyPage&) = delete;
  PropertyPage& operator=(const PropertyPage&) = delete;

  const std::string& Caption() const { return caption_; }
  Host& host() { return host_; }
  Platform& platform() { return platform_; }
  Surface& surface() { return *surface_; }

  // ---- what the host drives ----
  // The host hands the page its selection and the page loads it (SelectionChanged).
  // The page is unchanged afterwards: what loading the fields marks does not count.
  void SetSelectedControls(std::vector<Automation*> objects);
  // The user applies the page: ApplyChanges, and the page is unchanged again.
  void Apply();

  // ---- attributes ----
  const std::vector<Automation*>& SelectedControls() const { return selected_; }
  bool Changed() const { return changed_; }
  // Marks the page changed (or unchanged); the site hears of it when the state differs.
  void SetChanged(bool changed);
  // The page site: called with the new state each time Changed changes.
  std::function<void(bool changed)> on_status_change;

  // ---- fields ----
  const std::vector<PageField>& Fields() const { return fields_; }
  // The field that holds the keyboard focus (nullptr when none).
  const void* FocusOwner() const { return focus_.owner; }
  // Clears the surface and draws every field in the order they were added.
  virtual void Paint();

 protected:
  // ---- overridables ----
  virtual void SelectionChanged() {}
  virtual void ApplyChanges() {}

  // Adds a field to the page (the order is the drawing and tab order).
  void AddField(PageField field);

  Host& host_;
  Platform& platform_;

 private:
  std::string caption_;
  std::unique_ptr<Surface> surface_;
  std::vector<Automation*> selected_;
  std::vector<PageField> fields_;
  FocusScope focus_;
  bool changed_ = false;
  bool loading_ = false;
};

}  // namespace korvel
