// The portable headers come first: their constants share names with <windows.h>'s macros.
#include "platform/win32/win32_kernel.h"

#include <vector>

#ifndef NOMINMAX
#define NOMINMAX
#endif
#define WIN32_LEAN_AND_MEAN
#include <windows.h>

namespace korvel::win32 {

bool Win32Kernel::CreateProcessA(const char* application, const std::string& command_line, bool inherit_handles,
                                 std::uint32_t creation_flags, const korvel::STARTUPINFOA* startup,
                                 korvel::PROCESS_INFORMATION* info) {
  ::STARTUPINFOA si{};
  // The controls pass the 32-bit record size (68); the platform's own size is what
  // the 64-bit build must hand over, so the record is sized here.
  si.cb = startup ? sizeof si : 0;
  ::PROCESS_INFORMATION pi{};
  std::vector<char> cmd(command_line.begin(), command_line.end());
  cmd.push_back('\0');  // CreateProcessA may write into the command line
  BOOL ok = ::CreateProcessA(application, cmd.data(), nullptr, nullptr, inherit_handles ? TRUE : FALSE,
                             creation_flags, nullptr, nullptr, &si, &pi);
  if (info) {
    info->hProcess = reinterpret_cast<Handle>(pi.hProcess);
    info->hThread = reinterpret_cast<Handle>(pi.hThread);
    info->dwProcessId = pi.dwProcessId;
    info->dwThreadId = pi.dwThreadId;
  }
  return ok != FALSE;
}

std::uint32_t Win32Kernel::WaitForSingleObject(Handle object, std::uint32_t milliseconds) {
  return ::WaitForSingleObject(reinterpret_cast<HANDLE>(object), milliseconds);
}

bool Win32Kernel::CloseHandle(Handle object) { return ::CloseHandle(reinterpret_cast<HANDLE>(object)) != FALSE; }

std::uint32_t Win32Kernel::GetFileAttributesA(const std::string& path) { return ::GetFileAttributesA(path.c_str()); }

}  // namespace korvel::win32
