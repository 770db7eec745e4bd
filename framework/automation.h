// Late binding: a member of an object called by its name, the way a host's script
// or a property page reaches a control ("Customize" on the selected toolbar). Names
// are the type library's and compare without regard to case. Arguments come in the
// declared order; a by-reference argument may be replaced by the callee.
#pragma once
#include <string>
#include <vector>

#include "framework/variant.h"

namespace korvel {

enum class InvokeKind { Method, PropertyGet, PropertyPut, PropertyPutRef };

class Automation {
 public:
  virtual ~Automation() = default;
  // Runs the member and returns its result (empty for a method without one). An
  // unknown name or kind raises error 438; a wrong argument type raises error 13;
  // a missing required argument raises error 449.
  virtual Variant Invoke(const std::string& name, InvokeKind kind, std::vector<Variant>& args) = 0;
};

}  // namespace korvel
