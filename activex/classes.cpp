// Korvel headers come before the platform's (they define the platform's constants).
#include "controls/bar/bar.h"
#include "controls/divider/divider.h"
#include "controls/link/link.h"
#include "controls/minislider/minislider.h"
#include "controls/toolbar/kt_buttons.h"
#include "controls/toolbar/toolbar.h"
#include "activex/classes.h"

#include "activex/ole_control.h"
#include "activex/ole_page.h"
#include "korvel_duals.h"
#include "korvelui99.h"

namespace korvel::activex {

namespace {

// What every control declares to its container.
constexpr DWORD kControlMisc = OLEMISC_RECOMPOSEONRESIZE | OLEMISC_CANTLINKINSIDE | OLEMISC_INSIDEOUT |
                               OLEMISC_ACTIVATEWHENVISIBLE | OLEMISC_SETCLIENTSITEFIRST;
// ... and the controls that have no window at run time (dialog, tray, joystick).
[[maybe_unused]] constexpr DWORD kInvisibleMisc = kControlMisc | OLEMISC_INVISIBLEATRUNTIME;

// Toolbox bitmap resource ids, one per class of the library in this order:
// toolbar, color, spin, option, tray, dialog, link, joystick, status, tab,
// animation, resize, bar, divider, browsebox, minislider.
constexpr int kBitmapToolbar = 30000;
constexpr int kBitmapLink = 30006;
constexpr int kBitmapBar = 30012;
constexpr int kBitmapDivider = 30013;
constexpr int kBitmapMiniSlider = 30015;

template <class C>
std::unique_ptr<Control> Make(Host& host, Platform& platform) {
  return std::make_unique<C>(host, platform);
}

template <class P>
std::unique_ptr<PropertyPage> MakePage(Host& host, Platform& platform) {
  return std::make_unique<P>(host, platform);
}

const ClassInfo kClasses[] = {
    {ClassKind::Control, L"KorvelToolbar", &CLSID_KorvelToolbar, &IID__KorvelToolbar, &DIID___KorvelToolbar,
     kBitmapToolbar, kControlMisc, L"KorvelUI - KorvelToolbar", Make<KorvelToolbar>, NewDual_KorvelToolbar,
     OleControl::Create, {&CLSID_ktButtons}, nullptr},
    {ClassKind::PropertyPage, L"ktButtons", &CLSID_ktButtons, &IID__ktButtons, nullptr, 0, 0,
     L"KorvelUI - KorvelToolbar Buttons", nullptr, nullptr, OlePage::Create, {}, MakePage<ktButtons>},
    {ClassKind::Control, L"KorvelLink", &CLSID_KorvelLink, &IID__KorvelLink, &DIID___KorvelLink, kBitmapLink,
     kControlMisc, L"KorvelUI - KorvelLink", Make<KorvelLink>, NewDual_KorvelLink, OleControl::Create, {}, nullptr},
    {ClassKind::Control, L"KorvelBar", &CLSID_KorvelBar, &IID__KorvelBar, &DIID___KorvelBar, kBitmapBar,
     kControlMisc, L"KorvelUI - KorvelBar", Make<KorvelBar>, NewDual_KorvelBar, OleControl::Create, {}, nullptr},
    {ClassKind::Control, L"KorvelDivider", &CLSID_KorvelDivider, &IID__KorvelDivider, &DIID___KorvelDivider,
     kBitmapDivider, kControlMisc, L"KorvelUI - KorvelDivider", Make<KorvelDivider>, NewDual_KorvelDivider,
     OleControl::Create, {}, nullptr},
    {ClassKind::Control, L"KorvelMiniSlider", &CLSID_KorvelMiniSlider, &IID__KorvelMiniSlider,
     &DIID___KorvelMiniSlider, kBitmapMiniSlider, kControlMisc, L"KorvelUI - KorvelMiniSlider",
     Make<KorvelMiniSlider>, NewDual_KorvelMiniSlider, OleControl::Create, {}, nullptr},
};

}  // namespace

const ClassInfo* Classes() { return kClasses; }
int ClassCount() { return static_cast<int>(sizeof kClasses / sizeof kClasses[0]); }

const ClassInfo* FindClass(REFCLSID clsid) {
  for (const ClassInfo& c : kClasses)
    if (IsEqualCLSID(clsid, *c.clsid)) return &c;
  return nullptr;
}

}  // namespace korvel::activex
