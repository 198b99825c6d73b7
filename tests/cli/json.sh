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

printf '%s\n' 'my font.SHX;2' 'odd.shx;7' >fonts.ini
tvbase bigfont --json --ini fonts.ini
tvbase bigfont --json gbcbig none.shx | python3 -m json.tool --compact
tvbase num parse --json 12.5mm -1e400
tvbase num parse --json x | python3 -m json.tool
tvbase escapes list --json 'é\U+00B0' '\M+1955C\M+1F040\U+000A' | tee list.json
python3 -m json.tool list.json >/dev/null && echo valid
tvbase breaks --json '(a b' $'\xff' '' $'"\n'
tvbase breaks --json --marked a
echo "status $?"
cp "$ROOT/data/codepage.map" codepage.map
tvbase map info --json codepage.map
printf 'no map file' >broken.map
tvbase map info --json broken.map | python3 -m json.tool
# Every --help that tells of --json gives JSON, also where there is nothing to show.
for command in list 'list -l' 'chart 1251' 'escapes list' 'num parse' bigfont breaks 'heap stats' info 'map info'; do
    arguments=$([ "$command" != bigfont ] || echo gbcbig)
    tvbase $command --json $arguments --map codepage.map </dev/null >shown 2>/dev/null ||
        tvbase $command --json $arguments </dev/null >shown
    python3 -m json.tool shown >/dev/null && echo "$command: valid"
done
