#!/usr/bin/env bash
# Builds the two libraries with link-time optimisation, and looks whether they start, end and keep
# their calls to themselves as the others do: the programs of BUILD are run with them.
#
#     link-time-optimised.sh SOURCE BUILD FOLDER [GDB]
set -euo pipefail
source=$1 build=$2 folder=$3 gdb=${4:-}

cmake --preset lto -S "$source" -B "$folder" -DTVOSBASE_BUILD_TOOLS=OFF > /dev/null
cmake --build "$folder" --target TvOsBase > "$folder/said" 2>&1 || { cat "$folder/said"; exit 1; }
! grep -i 'warning:' "$folder/said"

failed=0
step() { # NAME COMMAND...
    name=$1
    shift
    "$@" > "$folder/said" 2>&1 && return
    echo "$name: status $?"
    cat "$folder/said"
    failed=1
}
exports() { # LIST LIBRARY
    diff <(cut -f1 "$1" | sort -u) <(nm -D --defined-only "$2" | awk '{ print $NF }' | sort -u)
}
step exports exports "$source/abi/exports.txt" "$folder/lib/libTvOsBase.so"
step exports exports "$source/abi/platform-exports.txt" "$folder/lib/libTvPlatformBase.so"
[ -z "$gdb" ] || step start "$source/tests/debug/gdb-startup.sh" "$gdb" "$build/bin/debug_Debuggee" "$folder/lib"

export LD_LIBRARY_PATH=$folder/lib GLIBC_TUNABLES=glibc.malloc.tcache_count=0
for program in First Last UnderlinkedFirst UnderlinkedLast Program; do
    step "$program" "$build/bin/unit_StaticUser$program"
done
step interposition "$build/bin/unit_InterpositionProgram" "$build/lib/libunit_EveryArea.so"
step unload "$build/bin/unit_LibraryUnloadTest" \
    "$folder/lib/libTvOsBase.so" "$folder/lib/libTvPlatformBase.so" "$build/lib/libunit_EveryArea.so"
exit $failed
