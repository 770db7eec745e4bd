// Late binding: a member of an object called by its name, the way a host's script
// or a property page reaches a control ("Customize" on the selected toolbar). Names
// are the type library's and compare without regard to case. Arguments come in the
// declared order; a by-reference argument may be replaced by the callee.
#pragma once
#include <string>
#include <vector>

#include "framework/arith.h"
#include "framework/errors.h"
#include "framework/variant.h"

namespace korvel {

enum class InvokeKind { Method, PropertyGet, PropertyPut, PropertyPutRef };

class Automation {
 public:
  virtual ~Automation() = default;
  // Runs the member and returns its result (empty for a method without one). An
  // unknown name or kind raises error 438; a wrong argument type raises error 13;
  // a missing required argument raises error 449, one too many error 450.
  virtual Variant Invoke(const std::string& name, InvokeKind kind, std::vector<Variant>& args) = 0;
};

// One late-bound call being matched against the members of an interface:
//   MemberCall call{name, kind, args};
//   if (call.Get("Caption")) return Caption();
//   if (call.Put("Caption")) { SetCaption(call.Value().ToString()); return {}; }
// A match checks the argument count (449 when short, 450 when long).
class MemberCall {
 public:
  MemberCall(const std::string& name, InvokeKind kind, std::vector<Variant>& args)
      : name_(name), kind_(kind), args_(args) {}

  // Property get with index arguments.
  bool Get(const char* member, std::size_t indexes = 0) const { return Match(member, InvokeKind::PropertyGet, indexes); }
  // Property let (put) and set (put by reference): the indexes and the new value.
  bool Put(const char* member, std::size_t indexes = 0) const { return Match(member, InvokeKind::PropertyPut, indexes + 1); }
  bool PutRef(const char* member, std::size_t indexes = 0) const {
    return Match(member, InvokeKind::PropertyPutRef, indexes + 1);
  }
  bool Method(const char* member, std::size_t arg_count = 0) const { return Match(member, InvokeKind::Method, arg_count); }

  // The value assigned by a put (the last argument).
  const Variant& Value() const { return args_.back(); }
  Variant& Arg(std::size_t i) { return args_.at(i); }

 private:
  bool Match(const char* member, InvokeKind kind, std::size_t count) const {
    if (kind != kind_ || CompareText(name_, member) != 0) return false;
    if (args_.size() < count) throw RuntimeError(kErrArgumentNotOptional);
    if (args_.size() > count) throw RuntimeError(kErrWrongArgumentCount);
    return true;
  }

  const std::string& name_;
  InvokeKind kind_;
  std::vector<Variant>& args_;
};

}  // namespace korvel
