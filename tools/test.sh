#!/usr/bin/env bash
# Runs every test: the headless unit tests under AddressSanitizer and
# UndefinedBehaviorSanitizer, then the Windows tests under Wine where they exist.
set -euo pipefail
cd "$(dirname "$0")/.."

echo "== checking packages"
tools/deps.sh headless

echo "== building the headless tests (sanitizers on)"
cmake --preset headless >/dev/null
cmake --build --preset headless

echo "== running the headless tests"
ctest --preset headless --timeout 300
status=0

if [ -x tools/wine-tests.sh ]; then
  echo "== the Windows build under Wine"
  tools/wine-tests.sh || status=$?
fi
exit $status
