# What cannot be written is told.
head -c 100000 /dev/zero | tr '\0' a >in.txt
tvbase recode in.txt >/dev/full
echo "status $?"
echo a | tvbase recode -o /dev/full
echo "status $?"
tvbase list >/dev/full
echo "status $?"
printf 'old\n' >out.txt
(
    ulimit -f 8
    trap '' XFSZ
    tvbase recode -o out.txt in.txt
    echo "status $?"
)
cat out.txt
ls
