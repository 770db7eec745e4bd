// A container no one here wrote: Wine's ATL (atl.dll, loaded at run time) hosts the
// mini slider in an "AtlAxWin" window by its ProgID, activates it in place, and the
// control answers by name through the IDispatch ATL hands out.
#include "ax_test.h"

using namespace axtest;

namespace {

using AxWinInit = BOOL(WINAPI*)();
using AxGetControl = HRESULT(WINAPI*)(HWND, IUnknown**);

void Pump(int ms) {
  const DWORD end = GetTickCount() + static_cast<DWORD>(ms);
  MSG msg;
  while (GetTickCount() < end) {
    while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
      TranslateMessage(&msg);
      DispatchMessageW(&msg);
    }
    Sleep(5);
  }
}

}  // namespace

int main() {
  OleInitialize(nullptr);
  HMODULE atl = LoadLibraryW(L"atl.dll");
  auto init = atl ? reinterpret_cast<AxWinInit>(GetProcAddress(atl, "AtlAxWinInit")) : nullptr;
  auto get = atl ? reinterpret_cast<AxGetControl>(GetProcAddress(atl, "AtlAxGetControl")) : nullptr;
  Check(init && get, "Wine's atl.dll with AtlAxWinInit and AtlAxGetControl");
  if (!init || !get) return Summary();
  Check(init() != FALSE, "AtlAxWinInit");
  HWND top = CreateWindowExW(0, L"STATIC", L"atl host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 300, 200, nullptr,
                             nullptr, GetModuleHandleW(nullptr), nullptr);
  HWND host = CreateWindowExW(0, L"AtlAxWin", L"KorvelUI99.KorvelMiniSlider", WS_CHILD | WS_VISIBLE, 10, 10, 120, 16,
                              top, nullptr, GetModuleHandleW(nullptr), nullptr);
  Check(host != nullptr, "an AtlAxWin window for KorvelUI99.KorvelMiniSlider");
  Pump(100);
  IUnknown* unk = nullptr;
  Check(host && get(host, &unk) == S_OK && unk, "ATL created the control");
  IDispatch* d = nullptr;
  if (unk) unk->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&d));
  if (d) {
    Check(GetLong(d, L"Max") == 100, "the hosted slider was initialised as new (Max 100)");
    Check(Put(d, L"Value", VI4(40)) == S_OK && GetLong(d, L"Value") == 40, "Value round trip through ATL's host");
    IOleInPlaceObject* ipo = nullptr;
    HWND child = nullptr;
    d->QueryInterface(IID_IOleInPlaceObject, reinterpret_cast<void**>(&ipo));
    Check(ipo && ipo->GetWindow(&child) == S_OK && child && GetParent(child) == host,
          "ATL activated the control in place: its window is a child of the host window");
    if (ipo) ipo->Release();
    d->Release();
  }
  if (unk) unk->Release();
  if (host) DestroyWindow(host);
  DestroyWindow(top);
  Pump(50);
  OleUninitialize();
  return Summary();
}
