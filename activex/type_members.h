// The members of one dual interface or event dispinterface as the type library
// describes them: dispatch id, kind, name and parameter types (aliases such as
// OLE_COLOR and enumerations resolved to their base types). Both the IDispatch
// path and the generated vtable adapters find a member here and convert its
// arguments with these types.
#pragma once
#include <string>
#include <vector>

#include <windows.h>
#include <oaidl.h>

namespace korvel::activex {

struct ParamType {
  VARTYPE vt = VT_EMPTY;   // base type: VT_I2, VT_I4, VT_UI4, VT_BOOL, VT_BSTR, VT_DISPATCH, VT_VARIANT, VT_SAFEARRAY...
  VARTYPE array_elem = 0;  // element type of VT_SAFEARRAY
  bool byref = false;      // passed by reference ([in, out] or [out, retval])
};

struct MemberParam {
  std::wstring name;
  ParamType type;
  bool retval = false;
  bool optional = false;
  bool has_default = false;
  VARIANT def{};  // the declared default value (owned)
};

struct Member {
  MEMBERID id = 0;
  INVOKEKIND kind = INVOKE_FUNC;
  std::wstring wname;
  std::string name;
  std::vector<MemberParam> params;  // including the [out, retval] one, last
  int InputCount() const;
  const MemberParam* RetVal() const;
};

class TypeMembers {
 public:
  // Reads the functions of info (a TKIND_INTERFACE, or a TKIND_DISPATCH without a
  // dual side, such as an event interface).
  explicit TypeMembers(ITypeInfo* info);
  ~TypeMembers();
  TypeMembers(const TypeMembers&) = delete;
  TypeMembers& operator=(const TypeMembers&) = delete;

  // The member an IDispatch call reaches (flags as given to Invoke).
  const Member* Find(MEMBERID id, WORD flags) const;
  const Member* Find(const std::string& name, INVOKEKIND kind) const;
  // The dispatch id of a member name (any kind), or DISPID_UNKNOWN.
  MEMBERID IdOf(const std::string& name) const;
  const std::vector<Member>& All() const { return members_; }

 private:
  std::vector<Member> members_;
};

}  // namespace korvel::activex
