printf '%s\n' '\U+00B0 \U+00B0 \U+2205 \U+D83D\U+DE00' | tvbase recode -f ansi_1252 -t ansi_1253 --report
