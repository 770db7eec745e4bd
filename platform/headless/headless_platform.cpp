#include "platform/headless/headless_platform.h"

#include "platform/headless/recording_gdi.h"

#include <signal.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <utility>

extern char** environ;

namespace korvel::headless {

std::vector<std::string> CallLog::Matching(const std::string& prefix) const {
  std::vector<std::string> out;
  for (const auto& c : calls)
    if (c.compare(0, prefix.size(), prefix) == 0) out.push_back(c);
  return out;
}

std::string Hex(std::uint32_t v) {
  char buf[16];
  std::snprintf(buf, sizeof buf, "0x%X", v);
  return buf;
}

std::string Quote(const std::string& s) {
  std::string out = "\"";
  for (char c : s) {
    if (c == '\0') out += "\\0";
    else out += c;
  }
  return out + "\"";
}

static std::string Str(long long v) { return std::to_string(v); }

// ---- User ----

Hwnd HeadlessUser::NewWindow(Hwnd parent, const std::string& class_name) {
  Hwnd h = next_window_++;
  HeadlessWindow w;
  w.parent = parent;
  w.class_name = class_name;
  windows_.emplace(h, std::move(w));
  return h;
}

HeadlessWindow* HeadlessUser::Window(Hwnd wnd) {
  auto it = windows_.find(wnd);
  return it == windows_.end() ? nullptr : &it->second;
}

Hwnd HeadlessUser::SetCapture(Hwnd wnd) {
  log_.Add("SetCapture(" + Str(static_cast<long long>(wnd)) + ")");
  return std::exchange(capture_, wnd);
}

bool HeadlessUser::ReleaseCapture() {
  log_.Add("ReleaseCapture()");
  capture_ = 0;
  return true;
}

bool HeadlessUser::GetCursorPos(Point* pt) {
  log_.Add("GetCursorPos()");
  if (pt) *pt = cursor;
  return pt != nullptr;
}

Hwnd HeadlessUser::SetParent(Hwnd child, Hwnd parent) {
  log_.Add("SetParent(" + Str(static_cast<long long>(child)) + ", " + Str(static_cast<long long>(parent)) + ")");
  HeadlessWindow* w = Window(child);
  if (!w) return 0;
  return std::exchange(w->parent, parent);
}

std::int32_t HeadlessUser::GetWindowLongA(Hwnd wnd, std::int32_t index) {
  log_.Add("GetWindowLongA(" + Str(static_cast<long long>(wnd)) + ", " + Str(index) + ")");
  HeadlessWindow* w = Window(wnd);
  if (!w) return 0;
  if (index == GWL_EXSTYLE) return static_cast<std::int32_t>(w->ex_style);
  if (index == GWL_STYLE) return static_cast<std::int32_t>(w->style);
  return w->user_data;
}

std::int32_t HeadlessUser::SetWindowLongA(Hwnd wnd, std::int32_t index, std::int32_t value) {
  log_.Add("SetWindowLongA(" + Str(static_cast<long long>(wnd)) + ", " + Str(index) + ", " +
           Hex(static_cast<std::uint32_t>(value)) + ")");
  HeadlessWindow* w = Window(wnd);
  if (!w) return 0;
  std::uint32_t v = static_cast<std::uint32_t>(value);
  if (index == GWL_EXSTYLE) return static_cast<std::int32_t>(std::exchange(w->ex_style, v));
  if (index == GWL_STYLE) return static_cast<std::int32_t>(std::exchange(w->style, v));
  return std::exchange(w->user_data, value);
}

bool HeadlessUser::SetWindowPos(Hwnd wnd, Hwnd after, int x, int y, int cx, int cy, std::uint32_t flags) {
  log_.Add("SetWindowPos(" + Str(static_cast<long long>(wnd)) + ", " + Str(static_cast<long long>(after)) + ", " +
           Str(x) + ", " + Str(y) + ", " + Str(cx) + ", " + Str(cy) + ", " + Hex(flags) + ")");
  HeadlessWindow* w = Window(wnd);
  if (!w) return false;
  if (!(flags & SWP_NOMOVE)) w->rect.left = x, w->rect.top = y;
  if (!(flags & SWP_NOSIZE)) w->rect.right = w->rect.left + cx, w->rect.bottom = w->rect.top + cy;
  else w->rect.right = w->rect.left + (w->rect.right - w->rect.left);
  if (flags & SWP_SHOWWINDOW) w->visible = true;
  return true;
}

std::intptr_t HeadlessUser::SendMessageA(Hwnd wnd, std::uint32_t msg, std::uintptr_t wparam, std::intptr_t lparam) {
  log_.Add("SendMessageA(" + Str(static_cast<long long>(wnd)) + ", " + Hex(msg) + ", " +
           Str(static_cast<long long>(wparam)) + ", " + Str(static_cast<long long>(lparam)) + ")");
  HeadlessWindow* w = Window(wnd);
  if (!w || !w->on_message) return 0;
  return w->on_message(msg, wparam, lparam);
}

bool HeadlessUser::InvalidateRect(Hwnd wnd, const Rect* rc, bool erase) {
  std::string r = rc ? "(" + Str(rc->left) + ", " + Str(rc->top) + ", " + Str(rc->right) + ", " + Str(rc->bottom) + ")"
                     : "null";
  log_.Add("InvalidateRect(" + Str(static_cast<long long>(wnd)) + ", " + r + ", " + (erase ? "1" : "0") + ")");
  return Window(wnd) != nullptr;
}

Hwnd HeadlessUser::CreateWindowExA(std::uint32_t ex_style, const std::string& class_name, const std::string& title,
                                   std::uint32_t style, int x, int y, int cx, int cy, Hwnd parent, Handle menu) {
  log_.Add("CreateWindowExA(" + Hex(ex_style) + ", " + Quote(class_name) + ", " + Quote(title) + ", " + Hex(style) +
           ", " + Str(x) + ", " + Str(y) + ", " + Str(cx) + ", " + Str(cy) + ", " +
           Str(static_cast<long long>(parent)) + ", " + Str(static_cast<long long>(menu)) + ")");
  Hwnd h = NewWindow(parent, class_name);
  HeadlessWindow* w = Window(h);
  w->title = title;
  w->style = style;
  w->ex_style = ex_style;
  w->rect = Rect{x, y, x + cx, y + cy};
  w->visible = (style & 0x10000000u) != 0;  // WS_VISIBLE
  return h;
}

bool HeadlessUser::DestroyWindow(Hwnd wnd) {
  log_.Add("DestroyWindow(" + Str(static_cast<long long>(wnd)) + ")");
  return windows_.erase(wnd) > 0;
}

bool HeadlessUser::SystemParametersInfoA(std::uint32_t action, std::uint32_t param, void* data,
                                         std::uint32_t win_ini) {
  std::string size = "";
  if (action == SPI_GETNONCLIENTMETRICS && data)
    size = ", cbSize " + Str(static_cast<NONCLIENTMETRICSA*>(data)->cbSize);
  log_.Add("SystemParametersInfoA(" + Str(action) + ", " + Str(param) + size + ", " + Str(win_ini) + ")");
  if (action != SPI_GETNONCLIENTMETRICS || !data) return false;
  auto* ncm = static_cast<NONCLIENTMETRICSA*>(data);
  if (ncm->cbSize != sizeof(NONCLIENTMETRICSA)) return false;
  ncm->iBorderWidth = 1;
  ncm->iScrollWidth = ncm->iScrollHeight = 16;
  ncm->iCaptionWidth = ncm->iCaptionHeight = 18;
  ncm->lfCaptionFont = message_font;
  ncm->lfCaptionFont.lfWeight = 700;
  ncm->lfSmCaptionFont = ncm->lfCaptionFont;
  ncm->lfMenuFont = message_font;
  ncm->lfStatusFont = message_font;
  ncm->lfMessageFont = message_font;
  return true;
}

// ---- Shell ----

Handle HeadlessShell::ShellExecuteA(Hwnd wnd, const std::string& verb, const std::string& file,
                                    const std::string& parameters, const std::string& directory, int show) {
  log_.Add("ShellExecuteA(" + Str(static_cast<long long>(wnd)) + ", " + Quote(verb) + ", " + Quote(file) + ", " +
           Quote(parameters) + ", " + Quote(directory) + ", " + Str(show) + ")");
  return 42;  // greater than 32: success
}

Handle HeadlessShell::SHBrowseForFolderA(BROWSEINFOA* bi) {
  log_.Add("SHBrowseForFolderA(owner " + Str(static_cast<long long>(bi->hwndOwner)) + ", root " +
           Str(static_cast<long long>(bi->pidlRoot)) + ", title " + Quote(bi->lpszTitle ? bi->lpszTitle : "") +
           ", flags " + Hex(bi->ulFlags) + ")");
  if (!next_folder) return 0;
  Handle h = next_item_++;
  items_[h] = *next_folder;
  next_folder.reset();
  return h;
}

bool HeadlessShell::SHGetPathFromIDListA(Handle idlist, char* path) {
  log_.Add("SHGetPathFromIDListA(" + Str(static_cast<long long>(idlist)) + ")");
  auto it = items_.find(idlist);
  if (it == items_.end() || it->second.empty()) return false;
  std::size_t n = std::min<std::size_t>(it->second.size(), 259);
  std::memcpy(path, it->second.data(), n);
  path[n] = '\0';
  return true;
}

// ---- Kernel ----

bool HeadlessKernel::CreateProcessA(const char* application, const std::string& command_line, bool inherit_handles,
                                    std::uint32_t creation_flags, const STARTUPINFOA* startup,
                                    PROCESS_INFORMATION* info) {
  log_.Add("CreateProcessA(" + std::string(application ? Quote(application) : "null") + ", " + Quote(command_line) +
           ", " + (inherit_handles ? "1" : "0") + ", " + Hex(creation_flags) + ", cb " +
           Str(startup ? startup->cb : 0) + ")");
  pid_t pid = 0;
  const char* argv[] = {"/bin/sh", "-c", command_line.c_str(), nullptr};
  if (posix_spawn(&pid, "/bin/sh", nullptr, nullptr, const_cast<char**>(argv), environ) != 0) {
    if (info) *info = PROCESS_INFORMATION{};
    return false;
  }
  Handle h = next_handle_++;
  processes_[h] = pid;
  if (info) {
    info->hProcess = h;
    info->hThread = next_handle_++;
    info->dwProcessId = static_cast<std::uint32_t>(pid);
  }
  return true;
}

std::uint32_t HeadlessKernel::WaitForSingleObject(Handle object, std::uint32_t milliseconds) {
  log_.Add("WaitForSingleObject(" + Str(static_cast<long long>(object)) + ", " + Hex(milliseconds) + ")");
  auto it = processes_.find(object);
  if (it == processes_.end()) return 0xFFFFFFFF;  // WAIT_FAILED: an invalid handle returns at once
  int status = 0;
  waitpid(it->second, &status, 0);
  it->second = -1;
  return 0;  // WAIT_OBJECT_0
}

bool HeadlessKernel::CloseHandle(Handle object) {
  log_.Add("CloseHandle(" + Str(static_cast<long long>(object)) + ")");
  return processes_.erase(object) > 0;
}

std::uint32_t HeadlessKernel::GetFileAttributesA(const std::string& path) {
  log_.Add("GetFileAttributesA(" + Quote(path) + ")");
  struct stat st {};
  if (stat(path.c_str(), &st) != 0) return 0xFFFFFFFF;
  return S_ISDIR(st.st_mode) ? 0x10 : 0x80;  // FILE_ATTRIBUTE_DIRECTORY : FILE_ATTRIBUTE_NORMAL
}

// ---- Dialogs ----

bool HeadlessDialogs::FileDialog(const char* name, OPENFILENAMEA* ofn) {
  last_ofn = *ofn;
  last_filter.clear();
  if (ofn->lpstrFilter) {
    const char* p = ofn->lpstrFilter;
    while (!(p[0] == '\0' && p[1] == '\0')) last_filter += *p++;
    last_filter += std::string(2, '\0');
  }
  last_file_buffer = ofn->lpstrFile ? std::string(ofn->lpstrFile) : "";
  log_.Add(std::string(name) + "(size " + Str(ofn->lStructSize) + ", owner " +
           Str(static_cast<long long>(ofn->hwndOwner)) + ", filter " + Quote(last_filter) + ", index " +
           Str(ofn->nFilterIndex) + ", max " + Str(ofn->nMaxFile) + "/" + Str(ofn->nMaxFileTitle) + ", title " +
           Quote(ofn->lpstrTitle ? ofn->lpstrTitle : "") + ", flags " + Hex(ofn->Flags) + ", ext " +
           (ofn->lpstrDefExt ? Quote(ofn->lpstrDefExt) : "null") + ")");
  if (answers.empty()) return false;
  DialogAnswer a = answers.front();
  answers.pop_front();
  if (!a.confirm) return false;
  auto put = [](char* buf, std::uint32_t max, const std::string& s) {
    if (!buf || max == 0) return;
    std::size_t n = std::min<std::size_t>(s.size(), max - 1);
    std::memcpy(buf, s.data(), n);
    buf[n] = '\0';
  };
  put(ofn->lpstrFile, ofn->nMaxFile, a.file);
  put(ofn->lpstrFileTitle, ofn->nMaxFileTitle, a.file_title);
  return true;
}

bool HeadlessDialogs::GetOpenFileNameA(OPENFILENAMEA* ofn) { return FileDialog("GetOpenFileNameA", ofn); }
bool HeadlessDialogs::GetSaveFileNameA(OPENFILENAMEA* ofn) { return FileDialog("GetSaveFileNameA", ofn); }

bool HeadlessDialogs::ChooseColorA(korvel::CHOOSECOLORA* cc) {
  last_cc = *cc;
  last_custom_colors.assign(cc->lpCustColors, cc->lpCustColors + 16);
  log_.Add("ChooseColorA(size " + Str(cc->lStructSize) + ", owner " + Str(static_cast<long long>(cc->hwndOwner)) +
           ", instance " + Hex(static_cast<std::uint32_t>(cc->hInstance)) + ", flags " + Hex(cc->Flags) + ")");
  if (answers.empty()) return false;
  DialogAnswer a = answers.front();
  answers.pop_front();
  if (!a.confirm) return false;
  cc->rgbResult = a.color;
  return true;
}

std::int32_t HeadlessDialogs::ChooseFontA(korvel::CHOOSEFONTA* cf) {
  last_cf = *cf;
  if (cf->lpLogFont) last_lf = *cf->lpLogFont;
  log_.Add("ChooseFontA(size " + Str(cf->lStructSize) + ", owner " + Str(static_cast<long long>(cf->hwndOwner)) +
           ", points " + Str(cf->iPointSize) + ", flags " + Hex(cf->Flags) + ", color " + Hex(cf->rgbColors) + ")");
  if (answers.empty()) return 0;
  DialogAnswer a = answers.front();
  answers.pop_front();
  if (!a.confirm) return 0;
  if (cf->lpLogFont) *cf->lpLogFont = a.font;
  cf->iPointSize = a.point_size;
  cf->nFontType = a.font_type;
  cf->rgbColors = a.color;
  return a.result;
}

// ---- Platform and surfaces ----

HeadlessPlatform::HeadlessPlatform(bool freetype)
    : gdi_([freetype]() -> std::unique_ptr<TextRenderer> {
        if (freetype)
          if (auto ft = MakeFreeTypeTextRenderer()) return ft;
        return std::make_unique<MetricsTextRenderer>();
      }()),
      user_(log_), shell_(log_), kernel_(log_), dialogs_(log_) {
  user_.message_font.lfHeight = -11;
  user_.message_font.lfWeight = 400;
  std::strcpy(user_.message_font.lfFaceName, "Tahoma");
}

HeadlessPlatform::~HeadlessPlatform() = default;

Gdi& HeadlessPlatform::gdi() { return record_gdi_ ? *recorder_ : static_cast<Gdi&>(gdi_); }

void HeadlessPlatform::RecordGdiCalls(bool on) {
  if (!recorder_) recorder_ = std::make_unique<RecordingGdi>(gdi_, log_);
  record_gdi_ = on;
}

std::unique_ptr<SurfaceSite> HeadlessPlatform::CreateSurfaceSite(Hwnd parent, int width, int height) {
  return std::make_unique<HeadlessSurfaceSite>(*this, parent, width, height);
}

HeadlessSurfaceSite::HeadlessSurfaceSite(HeadlessPlatform& platform, Hwnd parent, int width, int height)
    : platform_(platform) {
  HeadlessGdi& gdi = platform_.raster();
  dc_ = gdi.CreateCompatibleDC(0);
  width_ = std::max(0, width);
  height_ = std::max(0, height);
  bitmap_ = gdi.CreateBitmap(std::max(1, width_), std::max(1, height_), 1, 32, nullptr);
  original_ = gdi.SelectObject(dc_, bitmap_);
  wnd_ = platform_.headless_user().NewWindow(parent, "Surface");
}

HeadlessSurfaceSite::~HeadlessSurfaceSite() {
  HeadlessGdi& gdi = platform_.raster();
  gdi.SelectObject(dc_, original_);
  gdi.DeleteDC(dc_);
  gdi.DeleteObject(bitmap_);
  platform_.headless_user().DestroyWindow(wnd_);
}

void HeadlessSurfaceSite::Move(int left, int top, int width, int height) {
  left_ = left;
  top_ = top;
  width = std::max(0, width);
  height = std::max(0, height);
  if (width == width_ && height == height_) return;
  // A new persistent image, keeping the old content at the top left. It replaces
  // whatever bitmap the DC held, as resizing a persistent surface does.
  HeadlessGdi& gdi = platform_.raster();
  Hbitmap fresh = gdi.CreateBitmap(std::max(1, width), std::max(1, height), 1, 32, nullptr);
  BitmapObj* nb = gdi.Bitmap(fresh);
  if (BitmapObj* ob = gdi.Bitmap(bitmap_)) {
    for (int y = 0; y < std::min(nb->height, ob->height); ++y)
      for (int x = 0; x < std::min(nb->width, ob->width); ++x) nb->At(x, y) = ob->At(x, y);
  }
  gdi.SelectObject(dc_, fresh);
  gdi.DeleteObject(bitmap_);
  bitmap_ = fresh;
  width_ = width;
  height_ = height;
}

void HeadlessSurfaceSite::SetVisible(bool visible) {
  visible_ = visible;
  if (HeadlessWindow* w = platform_.headless_user().Window(wnd_)) w->visible = visible;
}

}  // namespace korvel::headless
