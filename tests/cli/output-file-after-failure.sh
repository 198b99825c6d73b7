# A failure leaves the old file, and nothing beside it.
printf 'old\n' >out.txt
printf '\xC3\xA9 \xE4\xB8\xAD\n' >in.txt
tvbase recode -t ansi_1252 --on-unmappable=stop -o out.txt in.txt
echo "status $?"
tvbase recode -o out.txt in.txt missing.txt
echo "status $?"
tvbase recode -o missing/out.txt in.txt
echo "status $?"
mkdir folder
tvbase recode -o folder in.txt
echo "status $?"
cat out.txt
ls
