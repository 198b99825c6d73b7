# Bytes of a code page become UTF-8, which is the default of the side left out.
printf 'caf\xE9 45\xB0\n' | tvbase recode -f ansi_1252
printf '\xD6\xD0\xCE\xC4 abc\n' | tvbase recode --from ansi_936 --to utf8
printf '\x95\x5C\x8E\xA6 \xB1\n' | tvbase recode -f ansi_932
