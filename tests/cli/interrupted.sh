# Ended by a signal, the tool leaves the old file and nothing beside it.
ulimit -c 0
printf 'old\n' >out.txt
mkfifo pipe
for signal in INT TERM HUP QUIT; do
    env --default-signal tvbase recode -o out.txt pipe &
    exec 3>pipe
    printf 'text\n' >&3
    sleep 0.3
    ls | grep -c '^out.txt\.......$'
    kill -$signal $!
    wait $! 2>/dev/null
    echo "$signal: status $?"
    exec 3>&-
done
cat out.txt
ls
