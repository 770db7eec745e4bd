// The classes the server can create: one row per control or property page, with
// everything registration and the class factory need. Adding a class is a row here
// (and its dual adapter, which is generated from the type library's header).
//
// ProgIDs: the version-independent ProgID is "KorvelUI99.<Class>", the versioned one
// "KorvelUI99.<Class>.1". The CLSID key names the versioned one under ProgID and the
// other under VersionIndependentProgID; both ProgID keys carry the CLSID, and the
// version-independent one names the versioned one under CurVer.
#pragma once
#include <cstdint>
#include <memory>

#include "framework/control.h"
#include "framework/property_page.h"

#include <windows.h>
#include <ocidl.h>

namespace korvel::activex {

class OleControl;
class DualBase;

enum class ClassKind { Control, PropertyPage };

struct ClassInfo {
  ClassKind kind;
  const wchar_t* name;         // "KorvelLink"
  const CLSID* clsid;
  const IID* dual_iid;         // the default dual interface
  const IID* events_iid;       // the event dispinterface (controls only)
  int toolbox_bitmap;          // resource id 30000 + n, n in the order of the full class list
  DWORD misc_status;           // OLEMISC_* (controls only)
  const wchar_t* description;  // "KorvelUI - KorvelLink"
  // Creates the portable control on its host and platform (controls only).
  std::unique_ptr<Control> (*create_control)(Host& host, Platform& platform);
  // Creates the dual-interface adapter of an object of this class.
  std::unique_ptr<DualBase> (*create_dual)(OleControl& owner);
  // Creates a COM object of the class (the class factory's CreateInstance):
  // OleControl::Create for controls, the page's own object for a property page.
  HRESULT (*create_instance)(const ClassInfo& cls, IUnknown* outer, REFIID riid, void** out);
  // The property pages a control lists in ISpecifyPropertyPages (none yet; the
  // toolbar will list ktButtons once the page's COM object exists).
  // Null-terminated.
  const CLSID* pages[4];
  // Creates the portable page (property pages only).
  std::unique_ptr<PropertyPage> (*create_page)(Host& host, Platform& platform);
};

// The rows, in registration order; ClassCount() of them.
const ClassInfo* Classes();
int ClassCount();
const ClassInfo* FindClass(REFCLSID clsid);

}  // namespace korvel::activex
