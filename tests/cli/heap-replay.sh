# The form of the table; times and resident bytes are the machine's.
for i in $(seq 1000); do echo "a $i $i"; done >requests.trace
for i in $(seq 1 2 1000); do echo "f $i"; done >>requests.trace
echo 'r 2 4000' >>requests.trace
tvbase heap replay requests.trace --rounds 3 | sed -E 's/[0-9]+\.[0-9]+/TIME/; s/ +-?[0-9]+ +-?[0-9]+$/ BYTES BYTES/; s/ +/ /g'
tvbase heap replay - --json <requests.trace | python3 -c '
import json, sys
replay = json.load(sys.stdin)
print(replay["operations"], replay["bytesAtPeak"], replay["bytesAtEnd"])
for heap in "heap", "malloc":
    print(heap, *replay[heap], replay[heap]["nanosecondsPerOperation"] > 0)'
