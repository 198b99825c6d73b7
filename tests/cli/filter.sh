# What arrives through a pipe is passed on at once.
mkfifo in out
tvbase recode -f ansi_1252 <in >out &
exec 3>in 4<out
printf 'first \xE9\n' >&3
read -r -t 20 line <&4 && echo "$line"
printf 'second \xE9\n' >&3
read -r -t 20 line <&4 && echo "$line"
exec 3>&-
wait
