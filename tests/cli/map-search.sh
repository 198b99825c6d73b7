# --map comes before the environment; a named file must be there, and be a map file.
cp "$ROOT/data/codepage.map" good.map
printf 'no map' >bad.map
printf '\xD6\xD0\n' >text
TVBASE_MAP=bad.map tvbase recode -f 936 --map good.map text
TVBASE_MAP=bad.map tvbase recode -f 936 text
echo "status $?"
TVBASE_MAP=missing.map tvbase recode -f 936 text
echo "status $?"
tvbase recode -f 936 --map missing.map text
echo "status $?"
tvbase recode -f 936 --map . text
echo "status $?"
cp good.map $'good\xFF.map'
tvbase recode -f 936 --map $'good\xFF.map' text
echo "status $?"
tvbase map check $'good\xFF.map'
echo "status $?"
tvbase map info $'good\xFF.map' | head -n 1
