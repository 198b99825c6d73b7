# Every --help shows an example.
tvbase --version
for command in '' recode list map 'map info' 'map check' 'map dump' 'map make' \
    escapes 'escapes encode' 'escapes decode' 'escapes list' \
    num 'num format' 'num parse' length angle format scan bigfont chart breaks \
    heap 'heap stats' 'heap replay' info; do
    tvbase $command --help >help.txt || echo "status $?"
    grep -A 3 '^Example' help.txt
done
