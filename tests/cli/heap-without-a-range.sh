# Where no address range can be had, everything comes from malloc, and the tool says so.
[ -z "$TV_SANITIZED" ] || exec cat "$(dirname "$0")/heap-without-a-range.out"
ulimit -v 1000000
tvbase info | grep '^heap'
printf 'a 1 20\n' >one.trace
tvbase heap stats one.trace | head -n 4
tvbase info --json | grep heapStart
