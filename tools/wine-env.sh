# Shared by the scripts that run the Windows build under Wine (sourced, not run):
# a virtual X server, a private prefix under build/ with a persistent wineserver,
# registration of the control server, and cleanup of everything started. The caller
# sets root (the repository) before sourcing and calls wine_start_display.

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

# A virtual display for the programs that create windows.
wine_start_display() {
  display=":$((90 + RANDOM % 100))"
  Xvfb "$display" -screen 0 1024x768x24 -nolisten tcp >/dev/null 2>&1 &
  started_xvfb=$!
  export DISPLAY="$display"
}

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
