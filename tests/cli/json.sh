# The tables as JSON hold what the tables show.
tvbase list --json | head -n 3
tvbase list --json | tail -n 2
tvbase list --json | python3 -c '
import json, sys
for row in json.load(sys.stdin):
    print("%2d  %6u  %-9s  %s" % (row["id"], row["number"], row["name"], row["text"]))' >again
tvbase list | tail -n +2 | cmp - again && echo same

tvbase list --languages --json | head -n 3
tvbase list --languages --json | python3 -c '
import json, sys
for row in json.load(sys.stdin):
    print("%04X  %7d  %6s  %5s  %-7s  %s" % (row["id"], row["charset"], row["number"] or "-", row["index"] or "-",
                                             "R to L" if row["rightToLeft"] else "-", row["language"] or "-"))' >again
tvbase list --languages | tail -n +2 | cmp - again && echo same

tvbase chart 1251 --json | python3 -c '
import json, sys
chart = json.load(sys.stdin)
characters = chart["characters"]
print(chart["name"], chart["lead"], chart["leadBytes"], len(characters))
for row in characters:
    assert row["character"] == chr(row["unit"]), row
    assert row["character"] == bytes([row["code"]]).decode("cp1251"), row'
tvbase chart ansi_932 --json | python3 -c '
import json, sys
chart = json.load(sys.stdin)
print(chart["leadBytes"][0], chart["leadBytes"][-1], len(chart["leadBytes"]), len(chart["characters"]))'
tvbase chart ansi_932 --lead 83 --json | head -n 5
