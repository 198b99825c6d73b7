# What is the same everywhere, as text and as JSON; and what the environment decides.
tvbase info | cut -c 1-12 | tr -d ' '
tvbase info | sed -n '1p; s#^\(library  *\).*/\(libTvOsBase\.so\).*#\1\2#p; s#^\(map file  *\)/.*/#\1#p'
tvbase info | grep -cE '^kernels     (plain|sse2|avx2|avx512)$'
LC_ALL=zh_CN.UTF-8 tvbase info | grep -E '^(code page|language)'
tvbase info --json | python3 -c '
import json, sys
info = json.load(sys.stdin)
print(*info)
print(info["version"], info["codePage"], info["codePageName"], info["language"])'
cp "$ROOT/data/codepage.map" mine.map
tvbase info --map mine.map | grep '^map file'
TVBASE_MAP=missing.map tvbase info
echo "status $?"
