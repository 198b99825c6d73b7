# 100 MB go through a process that may have 40 MB of data. (Sanitizers need more for themselves.)
[ -n "$TV_SANITIZED" ] || ulimit -d 40000
for i in 1 2 3 4; do cat "$SAMPLES/ansi_936.txt"; done >some
for i in 1 2 3 4 5 6 7 8 9 10; do cat some some >more && mv more some; done
for i in 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20 21 22 23 24 25 26 27 28 29 30 31 32 33 34 35 36 37 38 39 40; do cat some; done >large
wc -c <large
tvbase recode -f ansi_936 large | tvbase recode -t ansi_936 | cmp - large && echo same
