// Kernel calls on the real platform.
#pragma once
#include "framework/platform.h"

namespace korvel::win32 {

class Win32Kernel : public Kernel {
 public:
  bool CreateProcessA(const char* application, const std::string& command_line, bool inherit_handles,
                      std::uint32_t creation_flags, const STARTUPINFOA* startup, PROCESS_INFORMATION* info) override;
  std::uint32_t WaitForSingleObject(Handle object, std::uint32_t milliseconds) override;
  bool CloseHandle(Handle object) override;
  std::uint32_t GetFileAttributesA(const std::string& path) override;
};

}  // namespace korvel::win32
