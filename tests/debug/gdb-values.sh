#!/usr/bin/env bash
# What gdb shows of the program's values at its stop, and of its core file afterwards.
#
#     tests/debug/gdb-values.sh GDB PROGRAM PRINTERS
set -euo pipefail
"$1" -nx -batch -ex 'set disable-randomization off' -ex run "$(command -v true)" 2>&1 </dev/null |
    grep -q 'exited normally' || exit 77 # no process may be traced here
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export LC_ALL=C.UTF-8

common=(-nx -batch -ex "source $3")
"$1" "${common[@]}" -ex 'break show' -ex 'set disable-randomization off' -ex run \
    -ex 'echo @values\n' -x "$here/values.gdb" -ex 'echo @end\n' \
    -ex "generate-core-file $work/core" -ex kill "$2" > "$work/live" 2>&1 </dev/null ||
    { cat "$work/live"; exit 1; }
"$1" "${common[@]}" -ex 'echo @values\n' -x "$here/values.gdb" -ex 'echo @end\n' \
    "$2" "$work/core" > "$work/dead" 2>&1 </dev/null || { cat "$work/dead"; exit 1; }

status=0
for run in live dead; do
    sed -n '/@values$/,/^@end/ { /@values$/d; /^@end/d; p }' "$work/$run" > "$work/$run.values"
    diff -u "$here/values.out" "$work/$run.values" || { echo "($run; all it said:)"; cat "$work/$run"; status=1; }
done
exit $status
