#!/usr/bin/env bash
# install-deps.sh: installs what building and testing Orvalen needs on Debian 12
# (amd64), as root. Each package is checked by a file it installs, so a second
# run finds everything and does no apt at all.
#
# Only amd64 packages: this machine's kernel runs no 32-bit code, so the Windows
# programs are run under wine64 (never add the i386 architecture: its index has
# been seen to break `apt-get update`).
set -euo pipefail

# package  file (a glob) that shows it is installed
wanted=(
  "wine                        /usr/bin/wine"
  "wine64                      /usr/lib/wine/wine64"
  "fonts-wine                  /usr/share/wine/fonts/sserife.fon"
  "xvfb                        /usr/bin/Xvfb"
  "xdotool                     /usr/bin/xdotool"
  "imagemagick                 /usr/bin/import-im6.q16"
  "g++-mingw-w64-i686-win32    /usr/bin/i686-w64-mingw32-g++-win32"
  "g++-mingw-w64-x86-64-win32  /usr/bin/x86_64-w64-mingw32-g++-win32"
  "cmake                       /usr/bin/cmake"
  "g++                         /usr/bin/g++"
  "libgtest-dev                /usr/include/gtest/gtest.h"
  "libbenchmark-dev            /usr/include/benchmark/benchmark.h"
  "googletest                  /usr/src/googletest/CMakeLists.txt"
  "clang                       /usr/bin/clang"
  "libclang-rt-14-dev          /usr/lib/llvm-14/lib/clang/*/lib/linux/libclang_rt.asan-x86_64.a"
)

present() { compgen -G "$1" >/dev/null; }

missing=()
for entry in "${wanted[@]}"; do
  read -r package file <<<"$entry"
  present "$file" || missing+=("$package")
done

# The MinGW compilers come in two thread models; the plain names must be the
# win32 ones (no winpthread DLL to ship).
alternatives_ok() {
  local arch
  for arch in i686 x86_64; do
    [[ "$(readlink -f "/usr/bin/$arch-w64-mingw32-g++")" == *-win32 ]] || return 1
  done
}

if (( ${#missing[@]} == 0 )); then
  if alternatives_ok; then
    echo "install-deps: everything is installed"
  else
    echo "install-deps: note: the MinGW g++ alternatives are not the win32 ones" >&2
  fi
  exit 0
fi

echo "install-deps: missing: ${missing[*]}"
if (( EUID != 0 )); then
  echo "install-deps: must run as root to install them (sudo $0)" >&2
  exit 1
fi
if ! command -v apt-get >/dev/null 2>&1; then
  echo "install-deps: apt-get not found: this script is for Debian 12" >&2
  exit 1
fi

export DEBIAN_FRONTEND=noninteractive
if ! apt-get update; then
  echo "install-deps: apt-get update failed" >&2
  exit 1
fi
if ! apt-get install -y --no-install-recommends "${missing[@]}"; then
  echo "install-deps: apt-get install failed for: ${missing[*]}" >&2
  exit 1
fi

still=()
for entry in "${wanted[@]}"; do
  read -r package file <<<"$entry"
  present "$file" || still+=("$package ($file)")
done
if (( ${#still[@]} > 0 )); then
  echo "install-deps: installed, but still missing: ${still[*]}" >&2
  exit 1
fi
alternatives_ok || echo "install-deps: note: the MinGW g++ alternatives are not the win32 ones" >&2
echo "install-deps: done"
