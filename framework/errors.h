// Run-time errors of the library: an exception inside the core that carries the
// platform's error number and text. It never crosses the COM boundary: the ActiveX
// layer turns it into DISP_E_EXCEPTION with the number and description.
#pragma once
#include <cstdint>
#include <stdexcept>
#include <string>

namespace korvel {

enum ErrorNumber : std::int32_t {
  kErrOverflow = 6,
  kErrDivisionByZero = 11,
  kErrTypeMismatch = 13,
  kErrInvalidPropertyValue = 380,
  kErrNoSuchMember = 438,
  kErrArgumentNotOptional = 449,
  kErrWrongArgumentCount = 450,
};

class RuntimeError : public std::runtime_error {
 public:
  RuntimeError(std::int32_t number, const std::string& description)
      : std::runtime_error(description), number_(number) {}
  explicit RuntimeError(std::int32_t number);

  std::int32_t Number() const { return number_; }
  std::string Description() const { return what(); }

 private:
  std::int32_t number_;
};

// The platform's text for the error numbers the library raises.
std::string ErrorText(std::int32_t number);

// Runs one statement and ignores any run-time error it raises: the
// "errors are ignored, go on with the next statement" rule of the controls.
template <class F>
void IgnoreErrors(F&& statement) {
  try {
    statement();
  } catch (const RuntimeError&) {
  }
}

}  // namespace korvel
