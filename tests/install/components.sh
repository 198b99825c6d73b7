#!/usr/bin/env bash
# What each component of the installation is good for when it is installed by itself, and that
# the three together are all there is.
#
#     tests/install/components.sh BUILD_DIR CXX
set -euo pipefail
build=$1 cxx=$2
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export DESTDIR='' LC_ALL=C

put() { cmake --install "$build" --prefix "$work/$1" "${@:2}" >/dev/null; }
# Names of installed files; those of gdb's auto-load folder hold the prefix.
names() { (cd "$work/$1" && find . -not -type d | sed "s#$work/$1##" | sort); }
wrong() { echo "$1" && exit 1; }

put all
for component in runtime development tools; do
    put $component --component $component
    names $component
done | sort >"$work/each"
names all | diff - "$work/each" || wrong "The components are not disjoint, or are not all there is"

echo "runtime and development build a program"
put both --component runtime
put both --component development
pc=$(find "$work/both" -name tvosbase.pc)
export PKG_CONFIG_PATH=${pc%/*}
read -ra flags < <(pkg-config --cflags --libs tvosbase)
"$cxx" -std=c++17 "$here/consumer/main.cpp" -o "$work/program" "${flags[@]}"

echo "runtime alone runs it"
for unneeded in '*.h' '*.so' '*.cmake' '*.pc' tvbase; do
    [ -z "$(find "$work/runtime" -name "$unneeded")" ] || wrong "runtime holds $unneeded"
done
library=$(find "$work/runtime" -name libTvOsBase.so.1)
LD_LIBRARY_PATH=${library%/*} "$work/program" "$(find "$work/runtime" -name codepage.map)"

echo "runtime and tools recode text"
put tool --component runtime
put tool --component tools
printf '\xD6\xD0\n' | "$work/tool/bin/tvbase" recode -f ansi_936
