# A file-size limit is told as an error, also when only the close meets it; the old file stays.
head -c 100000 /dev/zero | tr '\0' a >large.txt
head -c 9000 large.txt >small.txt
for name in out.txt $'out\xFF.txt'; do
    printf 'old\n' >"$name"
    for size in large small; do
        (
            ulimit -f 8
            tvbase recode -o "$name" $size.txt
            echo "status $?"
        )
    done
    cat "$name"
done
(
    ulimit -f 8
    tvbase recode large.txt >direct.txt
    echo "status $?"
)
ls
