# A signal that is ignored, as nohup has it, ends nothing.
printf 'old\n' >out.txt
mkfifo pipe
env --ignore-signal=HUP,INT,QUIT,TERM tvbase recode -o out.txt pipe &
exec 3>pipe
printf 'te' >&3
sleep 0.3
for signal in HUP INT QUIT TERM; do
    kill -$signal $!
done
printf 'xt\n' >&3
exec 3>&-
wait $!
echo "status $?"
cat out.txt
ls
