#!/usr/bin/env bash
# The demo under Wine: builds the win64 control server and korvel_demo.exe, registers
# the server in a private prefix under build/, runs the demo on a virtual X server and
# keeps its pictures (the form and the About box, as Windows draws them) in the
# gallery folder, with a section "Under Wine" in its index.html. Unregisters the
# server and ends everything it started.
#   tools/wine-demo.sh [gallery folder]
set -euo pipefail
cd "$(dirname "$0")/.."
root="$PWD"
out="${1:-gallery}"

echo "== checking packages for the Windows build"
tools/deps.sh windows

echo "== building win64: the control server and the demo"
cmake --preset win64 >/dev/null
cmake --build --preset win64 --target korvel_ocx korvel_demo

. tools/wine-env.sh
wine_start_display
prepare_prefix "$root/build/wine64-prefix" win64
register win64

mkdir -p "$out"
outabs="$(cd "$out" && pwd)"
rm -f "$out/wine-demo.png" "$out/wine-about.png"
form="$(winepath -w "$outabs/wine-demo.png" 2>/dev/null)"
about="$(winepath -w "$outabs/wine-about.png" 2>/dev/null)"
echo "== running korvel_demo.exe"
status=0
timeout 120 wine "$root/build/win64/demo/korvel_demo.exe" "$form" "$about" || status=$?
unregister
if [ "$status" -ne 0 ]; then
  echo "== korvel_demo.exe failed (exit code $status)"
  exit 1
fi
for f in wine-demo.png wine-about.png; do
  if [ ! -s "$out/$f" ]; then
    echo "== $out/$f was not written"
    exit 1
  fi
done

# The section in the gallery's page, replacing the one of an earlier run.
index="$out/index.html"
if [ -f "$index" ]; then
  sed -i '/<!-- wine-demo -->/,/<!-- \/wine-demo -->/d' "$index"
  section='<!-- wine-demo -->\n<h2>Under Wine</h2>\n<p>The same controls in a real Windows program (build/win64/demo/korvel_demo.exe) under Wine: placed on a form by ProgID, their properties set by name at run time, drawn by Windows GDI. Pictures at their real size.</p>\n<figure><img src="wine-demo.png" alt="korvel_demo form" style="image-rendering:auto"><figcaption>The demo form: a KorvelToolbar loaded from a design-time property bag (image strip drawn by the program; Bold checked), a KorvelLink, KorvelDividers with captions, a KorvelBar at 60 and a KorvelMiniSlider at 35 of 100.</figcaption></figure>\n<figure><img src="wine-about.png" alt="About box" style="image-rendering:auto"><figcaption>Link.AboutBox: the About box (its client area), captured and closed by the program.</figcaption></figure>\n<!-- /wine-demo -->'
  sed -i "s|</body></html>|$section\n</body></html>|" "$index"
  echo "== added the section \"Under Wine\" to $index"
fi
echo "== wrote $out/wine-demo.png and $out/wine-about.png"
