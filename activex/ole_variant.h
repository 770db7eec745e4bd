// Conversions between the platform's VARIANT and the core's Variant: numbers,
// booleans, strings (UTF-16 <-> UTF-8), colours, font and picture objects and
// one-dimensional arrays. A font handed in by a container comes back out as the
// same object as long as the control keeps it.
#pragma once
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "framework/variant.h"

#include <windows.h>
#include <oaidl.h>
#include <ocidl.h>
#include <olectl.h>

namespace korvel::activex {

std::wstring Widen(const std::string& utf8);
std::string Narrow(const wchar_t* utf16, int length = -1);
BSTR AllocBstr(const std::string& utf8);

// Keeps the pairing of core fonts and pictures with the platform's objects.
class ObjectBridge {
 public:
  ObjectBridge() = default;
  ~ObjectBridge();
  ObjectBridge(const ObjectBridge&) = delete;
  ObjectBridge& operator=(const ObjectBridge&) = delete;

  // VT_DISPATCH holding a standard font or picture -> the core object (a font the
  // bridge made or was handed keeps its identity). Anything else: error 13.
  FontRef FontFrom(IDispatch* disp);
  PictureRef PictureFrom(IDispatch* disp);
  // The core object -> an AddRef'ed IDispatch of a standard font or picture.
  IDispatch* ToOle(const FontRef& font);
  IDispatch* ToOle(const PictureRef& picture);

  // VARIANT (by reference or not) -> Variant. Error 13 for what has no core form.
  Variant FromOle(const VARIANT& v);
  // Variant -> VARIANT (VariantInit'ed by the caller). Error 13 where impossible;
  // array elements become elem_vt (VT_VARIANT when 0).
  void ToOle(const Variant& v, VARIANT* out, VARTYPE array_elem_vt = 0);

 private:
  void Prune();
  std::vector<std::pair<std::weak_ptr<Font>, IDispatch*>> fonts_;
  std::vector<std::pair<std::weak_ptr<Picture>, IDispatch*>> pictures_;
};

}  // namespace korvel::activex
