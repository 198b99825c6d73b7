# Ended by a signal, the tool leaves the old file and nothing beside it.
printf 'old\n' >out.txt
mkfifo pipe
tvbase recode -o out.txt pipe &
exec 3>pipe
printf 'text\n' >&3
sleep 0.3
kill -TERM $!
wait $! 2>/dev/null
echo "status $?"
exec 3>&-
cat out.txt
ls
