#!/bin/sh
# heap_mistakes.sh <program> <tool>: under the memory tool (asan or valgrind) each
# deliberate mistake with pooled memory must be reported, and right use must not.
program=$1
tool=$2
failed=0

run() {
    if [ "$tool" = valgrind ]; then
        valgrind -q --error-exitcode=9 --leak-check=full "$program" "$1" 2>&1
    else
        "$program" "$1" 2>&1
    fi
}

for right in none whole-unit; do
    if ! output=$(run $right); then
        echo "$right was reported: $output"
        failed=1
    fi
done
for mistake in overrun underrun page-overrun use-after-free use-after-resize leak; do
    if output=$(run $mistake); then
        echo "$mistake was not seen"
        failed=1
    fi
done
exit $failed
