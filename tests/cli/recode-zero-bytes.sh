# A 0 byte goes through, in every direction.
printf 'a\0\xE9\0\0b' | tvbase recode -f ansi_1252 -o wide
od -An -t x1 wide
tvbase recode -t ansi_1252 wide | od -An -t x1
printf '\xD6\xD0\0' | tvbase recode -f ansi_936 -t ansi_950 | od -An -t x1
