#!/usr/bin/env bash
# In which order the library's static objects are built when a program starts.
#
#     tests/debug/gdb-startup.sh GDB PROGRAM [FOLDER]
#
# With a folder, its libraries are used and not those the program was linked with.
set -euo pipefail
"$1" -nx -batch -ex 'set disable-randomization off' -ex run "$(command -v true)" 2>&1 </dev/null |
    grep -q 'exited normally' || exit 77 # no process may be traced here
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

"$1" -nx -batch -ex 'set disable-randomization off' -ex "set environment LD_LIBRARY_PATH ${3:-}" \
    -x "$here/startup.py" "$2" > "$work/said" 2>&1 </dev/null || { cat "$work/said"; exit 1; }
sed -n '/@startup$/,/^@end/ { /@startup$/d; /^@end/d; p }' "$work/said" > "$work/startup"
diff -u "$here/startup.out" "$work/startup" && exit 0
echo "(all it said:)"
cat "$work/said"
exit 1
