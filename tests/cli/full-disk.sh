# What cannot be written is told.
head -c 100000 /dev/zero | tr '\0' a >in.txt
tvbase recode in.txt >/dev/full
echo "status $?"
echo a | tvbase recode -o /dev/full
echo "status $?"
tvbase list >/dev/full
echo "status $?"
