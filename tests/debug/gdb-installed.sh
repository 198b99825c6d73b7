#!/usr/bin/env bash
# gdb finds the printers of an installed library by itself, without debug information in
# the library; in a tree that was moved it finds them as soon as it is pointed to them.
#
#     tests/debug/gdb-installed.sh GDB PROGRAM BUILD_DIR
set -euo pipefail
"$1" -nx -batch -ex 'set disable-randomization off' -ex run "$(command -v true)" 2>&1 </dev/null |
    grep -q 'exited normally' || exit 77 # no process may be traced here
work=$(realpath "$(mktemp -d)")
trap 'rm -rf "$work"' EXIT
export LC_ALL=C.UTF-8

DESTDIR='' cmake --install "$3" --prefix "$work/first" --strip >/dev/null
script=$(cd "$work/first" && find . -name 'libTvOsBase.so.*-gdb.py')
library=$(cd "$work/first" && find . -name 'libTvOsBase.so.*.*.*' -not -name '*.py')
case $script in
./share/gdb/auto-load"$work/first/${library#./}"-gdb.py) ;;
*) echo "The script for $library lies at $script"; exit 1 ;;
esac

# shows PREFIX GDB-ARGUMENTS: the values of a run on the library under PREFIX
shows() {
    local prefix=$1
    shift
    "$gdb" -nx -batch "$@" -ex 'set disable-randomization off' \
        -ex "set environment LD_LIBRARY_PATH $(dirname "$prefix/$library")" -ex 'break show' -ex run \
        -ex 'print values.latin' -ex 'print $tv_heap(values.unit)' "$program" 2>&1 </dev/null
}

gdb=$1 program=$2 status=0
expect() {
    grep -qxF "\$1 = \"Ø 30 \\\"x\\\"\" (code page 1252, shared by 2)" <<<"$2" &&
        grep -qxF "\$2 = \"24-byte pool, page 8191, block 2, unit 0\"" <<<"$2" ||
        { echo "$1:"; echo "$2"; status=1; }
}
expect "installed" "$(shows "$work/first" -iex "add-auto-load-scripts-directory $work/first/share/gdb/auto-load" \
    -iex "add-auto-load-safe-path $work/first")"
mv "$work/first" "$work/moved"
expect "moved" "$(shows "$work/moved" -iex "source $work/moved/share/tvosbase/gdb/tvosbase.py")"
exit $status
