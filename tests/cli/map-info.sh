cp "$ROOT/data/codepage.map" codepage.map
tvbase map info codepage.map
tvbase map info --map codepage.map | head -n 1
TVBASE_MAP=codepage.map tvbase map info | head -n 1
tvbase map check codepage.map
