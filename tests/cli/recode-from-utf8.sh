# What the code page lacks becomes an escape; escapes in the text stay.
printf 'caf\xC3\xA9 \xE2\x88\x85 \\U+20AC \\M+1F040\n' | tvbase recode -t ansi_1252 | od -An -c
printf '\xE4\xB8\xAD\xC3\xA9\n' | tvbase recode -t ansi_936 | od -An -c
