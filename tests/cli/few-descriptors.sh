# One free descriptor is enough for an output file: input comes from the standard one.
# What the sanitizers open cannot be foreseen.
printf 'text\n' >in.txt
(
    exec 3>&- 4>&- 5>&- 6>&- 7>&- 8>&- 9>&-
    [ -n "$TV_SANITIZED" ] || ulimit -n 4
    tvbase recode -o out.txt <in.txt
    echo "status $?"
)
cat out.txt
ls
