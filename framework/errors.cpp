#include "framework/errors.h"

namespace korvel {

std::string ErrorText(std::int32_t number) {
  switch (number) {
    case kErrOverflow: return "Overflow";
    case kErrDivisionByZero: return "Division by zero";
    case kErrTypeMismatch: return "Type mismatch";
    case kErrInvalidPropertyValue: return "Invalid property value";
    case kErrNoSuchMember: return "Object doesn't support this property or method";
    case kErrArgumentNotOptional: return "Argument not optional";
    case kErrWrongArgumentCount: return "Wrong number of arguments or invalid property assignment";
    default: return "Application-defined or object-defined error";
  }
}

RuntimeError::RuntimeError(std::int32_t number) : RuntimeError(number, ErrorText(number)) {}

}  // namespace korvel
