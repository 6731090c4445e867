#!/usr/bin/env bash
# Installs the build into a folder of its own, moves nothing by hand, and builds consumers there:
# one with CMake's package, one with pkg-config. The library runs from where it is installed.
#
#   install_test.sh BUILD_FOLDER SOURCE_FOLDER
set -euo pipefail
build=$1 source=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cmake --install "$build" --prefix "$work/root" >"$work/log" 2>&1 || { cat "$work/log"; exit 1; }
library=$(find "$work/root" -name libveltgeneral.so)
[ "$(objdump -p "$library" | sed -n 's/ *SONAME *//p')" = libveltgeneral.so.1 ]
# The core library needs the C and C++ libraries and nothing else.
extra=$(objdump -p "$library" | sed -n 's/ *NEEDED *//p' |
        grep -vE '^(libc|libm|libstdc\+\+|libgcc_s|ld-linux.*|libasan|libubsan|libtsan)\.so' || true)
[ -z "$extra" ] || { echo "needs more than it should: $extra"; exit 1; }

expect() {
  local said
  said=$("$@" "$work/file.txt")
  [ "$said" = $'perch\xc3\xa9\r' ] || { echo "said: $said"; exit 1; }
}

cmake -S "$source/tests/install/consumer" -B "$work/consumer" -DCMAKE_PREFIX_PATH="$work/root" \
      -DCMAKE_CXX_FLAGS="${CONSUMER_FLAGS:-}" >"$work/log" 2>&1 &&
  cmake --build "$work/consumer" >>"$work/log" 2>&1 || { cat "$work/log"; exit 1; }
expect "$work/consumer/consumer"

pc=$(dirname "$(find "$work/root" -name veltgeneral.pc)")
flags=$(PKG_CONFIG_PATH=$pc pkg-config --cflags --libs veltgeneral)
# shellcheck disable=SC2086
g++ -std=c++20 ${CONSUMER_FLAGS:-} "$source/tests/install/consumer/consumer.cpp" $flags \
    -o "$work/by_pkg_config"
expect env LD_LIBRARY_PATH="$(dirname "$library")" "$work/by_pkg_config"
