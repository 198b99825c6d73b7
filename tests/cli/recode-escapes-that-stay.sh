# Escapes for an ASCII character stay, and so does one without a character.
printf '%s\n' '\U+0000 \U+005CU+0041 \M+10000 \M+1F040 \U+007f \U+0080' \
    '\\U+0055+4E2D \U\U+002B4E2D \U+4\U+00452D' |
    tvbase recode -f ansi_1252 -o wide --report
cat wide
tvbase recode -t ansi_1252 wide
tvbase recode -f ansi_1252 -t ansi_936 <<<'\\U+0055+4E2D \\u+004D+15C4E \U+000A'
