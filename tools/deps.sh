#!/usr/bin/env bash
# Installs the Debian packages a part of the build needs, only those missing.
#   tools/deps.sh headless   compilers, CMake, GoogleTest, Google Benchmark, FreeType, libpng, fonts
#   tools/deps.sh windows    mingw-w64 cross compilers, widl, Wine, Xvfb
set -euo pipefail

headless=(cmake ninja-build g++ pkg-config googletest libgtest-dev libgmock-dev libbenchmark-dev
          libfreetype-dev libpng-dev fonts-liberation fonts-dejavu-core)
windows=(g++-mingw-w64-x86-64-posix g++-mingw-w64-i686-posix mingw-w64-tools wine wine64 libwine-dev
         xvfb xauth)

want=()
for group in "$@"; do
  case "$group" in
    headless) want+=("${headless[@]}") ;;
    windows) want+=("${windows[@]}") ;;
    *) echo "deps: unknown group '$group'" >&2; exit 2 ;;
  esac
done

missing=()
for p in "${want[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  echo "deps: all packages for '$*' are present"
  exit 0
fi

sudo=""
if [ "$(id -u)" -ne 0 ]; then sudo="sudo"; fi
echo "deps: installing ${missing[*]}"
$sudo apt-get update -qq
DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
echo "deps: installed ${#missing[@]} package(s)"
