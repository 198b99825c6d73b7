try() {
    printf "$1" >pairs.txt
    tvbase map make -o new.map --table ansi_936=pairs.txt
    echo "status $?"
}
try '8140 4E02\n0x8141, 0x4E04 # comment\n\n# all\n'
tvbase map dump --map new.map 936
rm new.map
try '8140\n'
try '# first\n8140 4E02 1\n'
try '8140 XY\n'
try '8140 4E02\n8140 4E03\n'
try '4040 4E02\n'
try '8100 4E02\n'
try '8140 D800\n'
try '8140 12345\n'
tvbase map make -o new.map --table ansi_1252=pairs.txt
echo "status $?"
tvbase map make -o new.map --table ansi_936
echo "status $?"
tvbase map make -o new.map --table ansi_936=missing.txt
echo "status $?"
tvbase map dump ansi_1252
echo "status $?"
ls
