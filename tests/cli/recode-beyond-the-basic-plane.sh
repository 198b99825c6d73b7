# Four bytes of UTF-8 are two escapes in a code page, and come back.
printf 'x\xF0\x9F\x98\x80y\n' | tvbase recode -t ansi_1252 -o escaped
cat escaped
tvbase recode -f ansi_1252 escaped | od -An -t x1
# A surrogate alone has no form in UTF-8 but its escape.
printf '%s\n' '\U+D83D \U+DE00 \U+DE00\U+D83D \U+D83D\U+0041' | tvbase recode -f ansi_1252 --report
