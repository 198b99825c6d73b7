# "-" and no file at all are standard input; pieces that arrive late are put together.
printf 'a\n' >a.txt
printf 'b\n' | tvbase recode a.txt - a.txt
(printf '\xD6' && sleep 0.1 && printf '\xD0\n') | tvbase recode -f 936
tvbase recode -f 936 <(printf '\xCE\xC4\n')
printf '' | tvbase recode
