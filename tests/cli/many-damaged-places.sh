# Ten places of a file are described, the rest counted; the next file begins anew.
for i in 1 2 3 4 5 6 7 8 9 10 11 12; do printf '%d\x80\n' $i; done >first.txt
printf '\x81' >second.txt
tvbase recode -f ansi_1253 first.txt second.txt >/dev/null
