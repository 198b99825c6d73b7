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

# must_see <mistake> <words of the report>
must_see() {
    if output=$(run "$1"); then
        echo "$1 was not seen"
        failed=1
    elif ! echo "$output" | grep -Eq "$2"; then
        echo "$1 was told of otherwise than by '$2': $output"
        failed=1
    fi
}

if [ "$tool" = valgrind ]; then
    wrong_access='Invalid write'
    leak='definitely lost'
else
    wrong_access='AddressSanitizer: (use-after-poison|unknown-crash)'
    leak='pooled units leaked' # what leak checking cannot look into, the program counts
fi
for mistake in overrun underrun page-overrun use-after-free use-after-resize; do
    must_see $mistake "$wrong_access"
done
must_see leak "$leak"
exit $failed
