# Names in any script, whatever the locale; also names that are not UTF-8.
printf '\xE9\n' >图纸.txt
tvbase recode -f ansi_1252 -o чертёж.txt 图纸.txt
cat чертёж.txt
cp чертёж.txt $'latin\xE9.txt'
tvbase recode -o $'out\xE8.txt' $'latin\xE9.txt'
cat $'out\xE8.txt'
