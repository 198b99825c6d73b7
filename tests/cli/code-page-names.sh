# Id, number and description in any case name the same code page.
for name in 39 936 ansi_936 ANSI_936 Ansi_936 gb2312 31 20936; do
    printf '\xD6\xD0' | tvbase recode -f $name
done
echo
for name in utf8 UTF-8 utf_8 45 65001; do
    printf 'ok ' | tvbase recode -f $name
done
echo
printf '\xA1' | tvbase recode -f 28596 | od -An -t x1
printf '\xA1' | tvbase recode -f 28586 | od -An -t x1
