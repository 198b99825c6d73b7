# From one code page straight into another.
printf '\xCF\xF0\xE8\xE2\xE5\xF2\n' | tvbase recode -f ansi_1251 -t dos866 | od -An -t x1
printf '\x88\x9F\n' | tvbase recode -f ansi_932 -t ansi_936 | od -An -t x1
