# The pools of a program that has asked for nothing, and what a trace leaves in use.
tvbase heap stats | sed -n '2,5p'
tvbase heap stats | tail -n +7 | awk '{ print $1, $2, $3, $4 }' | head -n 6
for i in $(seq 171); do echo "a $i 20"; done >units.trace
echo 'a 0x200 500
r 1 100
a 1000 300 # from malloc' >>units.trace
tvbase heap stats units.trace | sed -n '2,3p'
tvbase heap stats units.trace | awk 'NR > 5 && $4 > 0'
tvbase heap stats --json units.trace | python3 -c '
import json, sys
heap = json.load(sys.stdin)
print(*heap)
print(*[pool for pool in heap["pools"] if pool["blocks"]], sep="\n")
assert 8192 <= heap["residentBytes"] <= heap["blockPages"] * 2**20, heap'
