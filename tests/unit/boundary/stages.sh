#!/bin/sh
# Runs a program and compares what it says with the lines that are expected.
#
#     stages.sh PROGRAM LINE...
set -eu
program=$1
shift
expected=$(printf '%s\n' "$@")
said=$("$program" </dev/null) || { echo "$said"; echo "It failed."; exit 1; }
[ "$said" = "$expected" ] && exit 0
printf 'Expected:\n%s\nIt said:\n%s\n' "$expected" "$said"
exit 1
