# Escapes are read in either letter case and become characters; what only looks like one stays.
printf '%s\n' '\U+00B0 \u+00b0 \M+1815F \m+1815f' '\U+00G0 \U00B0 \U+0B0 \M+6815F \M+ \' | tvbase recode -f ansi_1252
