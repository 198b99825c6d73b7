# Escapes for the character 0 and for the backslash stay, and so does one without a character.
printf '%s\n' '\U+0000 \U+005CU+0041 \M+10000 \M+1F040' | tvbase recode -f ansi_1252 -o wide --report
cat wide
tvbase recode -t ansi_1252 wide
