#!/usr/bin/env bash
# The Windows side of the tests: cross-builds the win64 and win32 presets with
# mingw-w64 and runs their tests under Wine with a private prefix under build/ and a
# virtual X server. The control server is registered with regsvr32 before the tests
# and unregistered afterwards. The win32 build must always compile and link; its
# tests run only where 32-bit Wine is installed.
set -euo pipefail
cd "$(dirname "$0")/.."
root="$PWD"

echo "== checking packages for the Windows build"
tools/deps.sh windows

export WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml="
started_xvfb=""
registered=""  # the server registered in the current prefix, to unregister on exit
unregister() {
  if [ -n "$registered" ]; then
    timeout 120 wine regsvr32 /u /s "$registered" >/dev/null 2>&1 || true
    registered=""
  fi
}
cleanup() {
  unregister
  wineserver -k >/dev/null 2>&1 || true
  if [ -n "$started_xvfb" ]; then kill "$started_xvfb" >/dev/null 2>&1 || true; fi
}
trap cleanup EXIT

# A virtual display for the tests that create windows.
display=":$((90 + RANDOM % 100))"
Xvfb "$display" -screen 0 1024x768x24 -nolisten tcp >/dev/null 2>&1 &
started_xvfb=$!
export DISPLAY="$display"

prepare_prefix() {  # $1 = prefix folder, $2 = win32|win64
  export WINEPREFIX="$1" WINEARCH="$2"
  if [ ! -f "$WINEPREFIX/system.reg" ]; then
    echo "== creating the Wine prefix $WINEPREFIX"
    mkdir -p "$WINEPREFIX"
    timeout 300 wineboot -i >/dev/null 2>&1 || true
    timeout 60 wine reg add 'HKCU\Software\Wine\WineDbg' /v ShowCrashDialog /t REG_DWORD /d 0 /f >/dev/null 2>&1 || true
  fi
  wineserver -p >/dev/null 2>&1 || true
  # Start Wine's own helper processes now, outside the test runner: started by the
  # first test they would keep the runner's output pipes open until its timeout.
  timeout 120 wineboot >/dev/null 2>&1 || true
}

# Registers build/<preset>/activex/KorvelUI99.ocx in the current prefix.
register() {  # $1 = preset
  local ocx="$root/build/$1/activex/KorvelUI99.ocx"
  if [ ! -f "$ocx" ]; then
    echo "== $ocx was not built"
    return 1
  fi
  local path
  path="$(winepath -w "$ocx" 2>/dev/null)"
  echo "== regsvr32 /s $path"
  if ! timeout 120 wine regsvr32 /s "$path" >/dev/null 2>&1; then
    echo "== regsvr32 failed"
    return 1
  fi
  registered="$path"
}

status=0

echo "== building win64 (x86_64-w64-mingw32)"
cmake --preset win64 >/dev/null
cmake --build --preset win64
prepare_prefix "$root/build/wine64-prefix" win64
register win64 || status=1
echo "== running the win64 tests under Wine"
ctest --preset win64 --timeout 300 || status=1
unregister
wineserver -k >/dev/null 2>&1 || true

# The 32-bit server is what the library is for: it must build everywhere.
echo "== building win32 (i686-w64-mingw32)"
cmake --preset win32 >/dev/null
cmake --build --preset win32 || status=1
if dpkg-query -W -f='${Status}' wine32:i386 2>/dev/null | grep -q "install ok installed"; then
  prepare_prefix "$root/build/wine32-prefix" win32
  register win32 || status=1
  echo "== running the win32 tests under Wine"
  ctest --preset win32 --timeout 300 || status=1
  unregister
else
  echo "== win32 built, but its tests NOT run: 32-bit Wine (wine32:i386) is not installed on"
  echo "   this machine; a 64-bit-only Wine cannot run them (it exits 0 without running anything)."
fi
exit $status
