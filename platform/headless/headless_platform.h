// The headless platform: GDI on a raster, and services that record every call with
// its arguments and answer from a script (what a dialog returns, where the cursor
// is), so that tests assert the exact calls a control made.
#pragma once
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "framework/platform.h"
#include "platform/headless/headless_gdi.h"

namespace korvel::headless {

// One recorded call, formatted as Name(arg, arg, ...) with numbers in decimal,
// flags in hex (0x...) and text in quotes.
struct CallLog {
  std::vector<std::string> calls;
  void Add(std::string call) { calls.push_back(std::move(call)); }
  // The calls whose name starts with prefix, in order.
  std::vector<std::string> Matching(const std::string& prefix) const;
  void Clear() { calls.clear(); }
};

std::string Hex(std::uint32_t v);
std::string Quote(const std::string& s);

struct HeadlessWindow {
  Hwnd parent = 0;
  std::string class_name;
  std::string title;
  std::uint32_t style = 0;
  std::uint32_t ex_style = 0;
  Rect rect;
  bool visible = true;
  std::int32_t user_data = 0;
  // Messages sent to the window, answered by a handler a test may install.
  std::function<std::intptr_t(std::uint32_t, std::uintptr_t, std::intptr_t)> on_message;
};

class HeadlessUser : public User {
 public:
  explicit HeadlessUser(CallLog& log) : log_(log) {}
  Hwnd SetCapture(Hwnd wnd) override;
  bool ReleaseCapture() override;
  Hwnd GetCapture() override { return capture_; }
  bool GetCursorPos(Point* pt) override;
  Hwnd SetParent(Hwnd child, Hwnd parent) override;
  std::int32_t GetWindowLongA(Hwnd wnd, std::int32_t index) override;
  std::int32_t SetWindowLongA(Hwnd wnd, std::int32_t index, std::int32_t value) override;
  bool SetWindowPos(Hwnd wnd, Hwnd after, int x, int y, int cx, int cy, std::uint32_t flags) override;
  std::intptr_t SendMessageA(Hwnd wnd, std::uint32_t msg, std::uintptr_t wparam, std::intptr_t lparam) override;
  bool InvalidateRect(Hwnd wnd, const Rect* rc, bool erase) override;
  Hwnd CreateWindowExA(std::uint32_t ex_style, const std::string& class_name, const std::string& title,
                       std::uint32_t style, int x, int y, int cx, int cy, Hwnd parent, Handle menu) override;
  bool DestroyWindow(Hwnd wnd) override;
  bool SystemParametersInfoA(std::uint32_t action, std::uint32_t param, void* data, std::uint32_t win_ini) override;

  // ---- script and inspection ----
  Point cursor{0, 0};
  LOGFONTA message_font;  // what SPI_GETNONCLIENTMETRICS reports as the message font
  Hwnd NewWindow(Hwnd parent, const std::string& class_name);
  HeadlessWindow* Window(Hwnd wnd);
  std::size_t WindowCount() const { return windows_.size(); }

 private:
  CallLog& log_;
  Hwnd capture_ = 0;
  std::map<Hwnd, HeadlessWindow> windows_;
  Hwnd next_window_ = 0x10000;
};

class HeadlessShell : public Shell {
 public:
  explicit HeadlessShell(CallLog& log) : log_(log) {}
  Handle ShellExecuteA(Hwnd wnd, const std::string& verb, const std::string& file, const std::string& parameters,
                       const std::string& directory, int show) override;
  Handle SHBrowseForFolderA(BROWSEINFOA* bi) override;
  bool SHGetPathFromIDListA(Handle idlist, char* path) override;

  // The folder the next browse returns: nothing means cancel, "" an item without a path.
  std::optional<std::string> next_folder;

 private:
  CallLog& log_;
  std::map<Handle, std::string> items_;
  Handle next_item_ = 0x5000;
};

class HeadlessKernel : public Kernel {
 public:
  explicit HeadlessKernel(CallLog& log) : log_(log) {}
  // Starts the command line with /bin/sh -c and really waits for it.
  bool CreateProcessA(const char* application, const std::string& command_line, bool inherit_handles,
                      std::uint32_t creation_flags, const STARTUPINFOA* startup, PROCESS_INFORMATION* info) override;
  std::uint32_t WaitForSingleObject(Handle object, std::uint32_t milliseconds) override;
  bool CloseHandle(Handle object) override;
  std::uint32_t GetFileAttributesA(const std::string& path) override;

 private:
  CallLog& log_;
  std::map<Handle, int> processes_;  // handle -> pid
  Handle next_handle_ = 0x7000;
};

// What a scripted common dialog answers.
struct DialogAnswer {
  bool confirm = false;
  std::string file;        // file dialogs: the path written into the file buffer
  std::string file_title;  // file dialogs: the name written into the title buffer
  ColorRef color = 0;      // colour dialog result, font dialog colour
  LOGFONTA font;           // font dialog: the face and style chosen
  std::int32_t point_size = 0;
  std::uint16_t font_type = 0;
  std::int32_t result = 1;  // font dialog return value when confirmed
};

class HeadlessDialogs : public Dialogs {
 public:
  explicit HeadlessDialogs(CallLog& log) : log_(log) {}
  bool GetOpenFileNameA(OPENFILENAMEA* ofn) override;
  bool GetSaveFileNameA(OPENFILENAMEA* ofn) override;
  bool ChooseColorA(CHOOSECOLORA* cc) override;
  std::int32_t ChooseFontA(CHOOSEFONTA* cf) override;

  std::deque<DialogAnswer> answers;  // one per dialog shown; none left means cancel
  // The records as the last dialog received them (buffers copied as text).
  OPENFILENAMEA last_ofn;
  std::string last_filter;  // lpstrFilter up to its double NUL, NULs kept
  std::string last_file_buffer;
  CHOOSECOLORA last_cc;
  std::vector<ColorRef> last_custom_colors;
  CHOOSEFONTA last_cf;
  LOGFONTA last_lf;

 private:
  bool FileDialog(const char* name, OPENFILENAMEA* ofn);
  CallLog& log_;
};

class HeadlessPlatform : public Platform {
 public:
  // With freetype true, text is drawn with FreeType (for pictures people look at);
  // otherwise with the deterministic metrics font.
  explicit HeadlessPlatform(bool freetype = false);
  ~HeadlessPlatform() override;

  // The GDI the controls see: the raster itself, or the recorder in front of it.
  Gdi& gdi() override;
  User& user() override { return user_; }
  Shell& shell() override { return shell_; }
  Kernel& kernel() override { return kernel_; }
  Dialogs& dialogs() override { return dialogs_; }
  std::unique_ptr<SurfaceSite> CreateSurfaceSite(Hwnd parent, int width, int height) override;
  int TwipsPerPixelX() override { return 15; }
  int TwipsPerPixelY() override { return 15; }
  Handle ModuleInstance() override { return 0x10000000; }

  HeadlessGdi& raster() { return gdi_; }
  HeadlessUser& headless_user() { return user_; }
  HeadlessShell& headless_shell() { return shell_; }
  HeadlessKernel& headless_kernel() { return kernel_; }
  HeadlessDialogs& headless_dialogs() { return dialogs_; }
  CallLog& log() { return log_; }
  // From now on every drawing call is recorded in log() as well (tests of call order).
  void RecordGdiCalls(bool on);
  // How often each surface window was asked to show its image (Refresh).
  std::map<Hwnd, int> refreshes;

 private:
  CallLog log_;
  HeadlessGdi gdi_;
  HeadlessUser user_;
  HeadlessShell shell_;
  HeadlessKernel kernel_;
  HeadlessDialogs dialogs_;
  std::unique_ptr<Gdi> recorder_;
  bool record_gdi_ = false;
};

// A headless drawing surface: a 32-bit bitmap in a memory DC and a window record.
class HeadlessSurfaceSite : public SurfaceSite {
 public:
  HeadlessSurfaceSite(HeadlessPlatform& platform, Hwnd parent, int width, int height);
  ~HeadlessSurfaceSite() override;
  Hdc Dc() override { return dc_; }
  Hwnd Window() override { return wnd_; }
  int PixelWidth() override { return width_; }
  int PixelHeight() override { return height_; }
  void Move(int left, int top, int width, int height) override;
  int Left() override { return left_; }
  int Top() override { return top_; }
  void SetVisible(bool visible) override;
  bool Visible() override { return visible_; }
  void Refresh() override { ++platform_.refreshes[wnd_]; }
  void SetToolTipText(const std::string& text) override { tool_tip_ = text; }
  void SetMousePointer(int pointer) override { pointer_ = pointer; }

 private:
  HeadlessPlatform& platform_;
  Hdc dc_ = 0;
  Hbitmap bitmap_ = 0;
  Hgdiobj original_ = 0;
  Hwnd wnd_ = 0;
  int left_ = 0, top_ = 0, width_ = 0, height_ = 0;
  bool visible_ = true;
  std::string tool_tip_;
  int pointer_ = 0;
};

}  // namespace korvel::headless
