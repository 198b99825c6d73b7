#!/usr/bin/env bash
# Installs the build tree into a folder, moves that folder, and builds the consumer
# against it twice: through the CMake package and through pkg-config.
#
#     tests/install/consumers.sh BUILD_DIR CXX SANITIZER_FLAGS
set -euo pipefail
build=$1 cxx=$2 sanitize=$3
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cmake --install "$build" --prefix "$work/first" >/dev/null
mv "$work/first" "$work/moved"
prefix=$work/moved

echo "CMake package"
cmake -G Ninja -S "$here/consumer" -B "$work/cmake" -DCMAKE_PREFIX_PATH="$prefix" \
    -DCMAKE_CXX_COMPILER="$cxx" -DCMAKE_CXX_FLAGS="$sanitize" >/dev/null
cmake --build "$work/cmake" >/dev/null
"$work/cmake/consumer"

echo "pkg-config"
pc=$(dirname "$(find "$prefix" -name tvosbase.pc)")
export PKG_CONFIG_PATH=$pc
libdir=$(pkg-config --variable=libdir tvosbase)
# shellcheck disable=SC2046,SC2086
"$cxx" -std=c++17 $sanitize "$here/consumer/main.cpp" -o "$work/by-pkg-config" \
    -DMAP_FILE="\"$(pkg-config --variable=mapfile tvosbase)\"" \
    $(pkg-config --cflags --libs tvosbase) -Wl,-rpath,"$libdir"
"$work/by-pkg-config"
