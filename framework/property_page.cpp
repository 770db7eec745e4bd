#include "framework/property_page.h"

#include <memory>
#include <type_traits>

namespace korvel {

namespace {

template <class... F>
struct Overloaded : F... {
  using F::operator()...;
};
template <class... F>
Overloaded(F...) -> Overloaded<F...>;

}  // namespace

PageFieldInfo Describe(const PageField& field) {
  return std::visit(
      Overloaded{
          [](Label* f) { return PageFieldInfo{"Label", f->name, f->caption, f->rect, true}; },
          [](Frame* f) { return PageFieldInfo{"Frame", f->name, f->caption, f->rect, true}; },
          [](TextBox* f) { return PageFieldInfo{"TextBox", f->name, f->Text(), f->rect, f->Enabled()}; },
          [](ComboBox* f) { return PageFieldInfo{"ComboBox", f->name, f->Text(), f->rect, f->Enabled()}; },
          [](CheckBox* f) { return PageFieldInfo{"CheckBox", f->name, f->caption, f->rect, f->Enabled()}; },
          [](CommandButton* f) {
            return PageFieldInfo{"CommandButton", f->name, f->caption, f->rect, f->enabled};
          },
      },
      field);
}

PropertyPage::PropertyPage(Host& host, Platform& platform, std::string caption, int width, int height)
    : host_(host), platform_(platform), caption_(std::move(caption)),
      surface_(std::make_unique<Surface>(platform, 0, width, height)) {}

PropertyPage::~PropertyPage() = default;

void PropertyPage::SetSelectedControls(std::vector<Automation*> objects) {
  selected_ = std::move(objects);
  // Loading the fields raises their Change and Click events; the page is not
  // changed by being loaded.
  loading_ = true;
  SelectionChanged();
  loading_ = false;
}

void PropertyPage::Apply() {
  ApplyChanges();
  SetChanged(false);
}

void PropertyPage::SetChanged(bool changed) {
  if (loading_ || changed == changed_) return;
  changed_ = changed;
  if (on_status_change) on_status_change(changed_);
}

void PropertyPage::AddField(PageField field) {
  std::visit(
      [this](auto* f) {
        if constexpr (std::is_base_of_v<FocusableField, std::remove_pointer_t<decltype(f)>>)
          f->SetFocusScope(&focus_);
      },
      field);
  fields_.push_back(field);
}

void PropertyPage::Paint() {
  Surface& s = *surface_;
  s.Cls();
  for (const PageField& field : fields_) std::visit([&s](auto* f) { f->Paint(s); }, field);
}

}  // namespace korvel
