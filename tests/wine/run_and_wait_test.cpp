// RunAndWait on the real platform: the process really starts, and the call returns
// only when it has ended. Prints "N passed, N failed".
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

#include "framework/brightmoor.h"
#include "platform/win32/win32_kernel.h"

namespace {

// Only the kernel is reached by RunAndWait; the other services are not part of this test.
class KernelOnlyPlatform : public korvel::Platform {
 public:
  korvel::Gdi& gdi() override { std::abort(); }
  korvel::User& user() override { std::abort(); }
  korvel::Shell& shell() override { std::abort(); }
  korvel::Kernel& kernel() override { return kernel_; }
  korvel::Dialogs& dialogs() override { std::abort(); }
  std::unique_ptr<korvel::SurfaceSite> CreateSurfaceSite(korvel::Hwnd, int, int) override { std::abort(); }
  int TwipsPerPixelX() override { return 15; }
  int TwipsPerPixelY() override { return 15; }
  korvel::Handle ModuleInstance() override { return 0; }

 private:
  korvel::win32::Win32Kernel kernel_;
};

int passed = 0, failed = 0;
void Check(bool ok, const char* what) {
  std::printf("%s: %s\n", ok ? "ok" : "FAILED", what);
  ok ? ++passed : ++failed;
}

}  // namespace

int main() {
  KernelOnlyPlatform p;
  const std::string marker = "korvel_run_and_wait.txt";
  std::remove(marker.c_str());
  // ping waits about a second before the file is written: a call that did not wait
  // would find no file.
  korvel::RunAndWait(p, "cmd /c ping -n 2 127.0.0.1 >nul & echo done> " + marker);
  std::ifstream in(marker);
  std::string text;
  in >> text;
  Check(text == "done", "the launched command had finished when RunAndWait returned");
  in.close();
  std::remove(marker.c_str());

  // A command that cannot start: the wait on the invalid handle returns at once.
  korvel::RunAndWait(p, "korvel-no-such-program.exe");
  Check(true, "a failed launch returns");

  korvel::PROCESS_INFORMATION pi;
  korvel::STARTUPINFOA si;
  si.cb = 68;
  bool started = p.kernel().CreateProcessA(nullptr, "cmd /c exit 3", true, korvel::NORMAL_PRIORITY_CLASS, &si, &pi);
  Check(started && pi.hProcess != 0, "CreateProcessA starts cmd with the 32-bit record size");
  Check(p.kernel().WaitForSingleObject(pi.hProcess, korvel::INFINITE) == 0, "the wait ends with WAIT_OBJECT_0");
  Check(p.kernel().CloseHandle(pi.hProcess), "the process handle closes");
  p.kernel().CloseHandle(pi.hThread);

  std::printf("%d passed, %d failed\n", passed, failed);
  return failed == 0 ? 0 : 1;
}
