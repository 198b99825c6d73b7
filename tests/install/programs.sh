#!/usr/bin/env bash
# Programs of different kinds on the installed libraries: in C, one that catches what is thrown,
# and one that opens the library while running. They lie beside the libraries and are built
# before the tree is moved.
#
#     tests/install/programs.sh BUILD_DIR CC CXX
set -euo pipefail
build=$1 cc=$2 cxx=$3
here=$(cd "$(dirname "$0")" && pwd)/programs
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
DESTDIR='' cmake --install "$build" --prefix "$work/first" >/dev/null

pc=$(find "$work/first" -name tvosbase.pc)
export PKG_CONFIG_PATH=${pc%/*}
libdir=$(realpath "$(pkg-config --variable=libdir tvosbase)")
mkdir -p "$work/first/bin"
cd "$work/first/bin"
read -ra flags < <(pkg-config --cflags --libs tvosbase)
flags+=(-Wall -Wextra -Wpedantic -Werror "-Wl,-rpath,\$ORIGIN/$(realpath --relative-to=. "$libdir")")
"$cc" -std=c99 "$here/plain.c" -o plain "${flags[@]}"
"$cxx" -std=c++17 -O2 "$here/thrown.cpp" -o thrown "${flags[@]}"
"$cc" -std=c99 -D_DEFAULT_SOURCE "$here/opened.c" -o opened -ldl

mv "$work/first" "$work/moved"
cd "$work/moved/bin"
: >"$work/empty"
./plain
./thrown "$work"
./opened "$work/moved/${libdir#"$(realpath "$work")/first/"}/libTvOsBase.so.1"
