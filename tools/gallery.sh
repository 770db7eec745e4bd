#!/usr/bin/env bash
# The main job: builds the library and renders the gallery, every control in its
# interesting states, to gallery/index.html. Where Wine is present, the demo runs too.
set -euo pipefail
cd "$(dirname "$0")/.."
out="${1:-gallery}"

echo "== checking packages"
tools/deps.sh headless

echo "== building (optimised)"
cmake --preset release >/dev/null
cmake --build --preset release --target korvel_gallery

echo "== rendering the gallery into $out/"
build/release/tools/korvel_gallery "$out"

if [ -x tools/wine-demo.sh ] && command -v wine >/dev/null 2>&1; then
  echo "== the demo under Wine"
  tools/wine-demo.sh "$out"
fi
echo "Open $out/index.html to look at it."
