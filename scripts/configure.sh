# shellcheck shell=bash
# The one configure step of the run and test commands. Source it.
#
#   orv_configure NAME [CMAKE ARGS...]   configure build/NAME (RelWithDebInfo unless
#                                        the arguments name another type); its
#                                        output goes to build/NAME.configure.log and
#                                        is shown only when configuring fails
#   orv_toolchain ARCH                   the cmake argument for MinGW's i686 or x86_64

orv_configure() {
  local name=$1
  shift
  local root
  root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
  mkdir -p "$root/build"
  echo "== configure $name"
  cmake -S "$root" -B "$root/build/$name" -DCMAKE_BUILD_TYPE=RelWithDebInfo "$@" \
    >"$root/build/$name.configure.log" 2>&1 ||
    { cat "$root/build/$name.configure.log"; return 1; }
}

orv_toolchain() {
  local root
  root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
  printf '%s\n' "-DCMAKE_TOOLCHAIN_FILE=$root/cmake/toolchain-$1-mingw.cmake"
}
