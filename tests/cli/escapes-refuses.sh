# What makes no sense, what is damaged, and what needs the map file.
tvbase escapes
echo "status $?"
tvbase escapes encode -p ansi_1252 x
echo "status $?"
tvbase escapes encode -p ansi_923 x
echo "status $?"
tvbase escapes encode $'a\xFFb' ok
echo "status $?"
printf 'ok\n\303\n' | tvbase escapes encode
echo "status $?"
tvbase escapes decode --map missing.map '\U+00B0'
echo "status $?"
head -c 256 "$ROOT/data/codepage.map" >short.map
tvbase escapes decode --map short.map '\M+1955C'
echo "status $?"
