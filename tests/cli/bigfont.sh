# The code pages of big fonts, by the built-in list, a file, and the system's language.
tvbase bigfont gbcbig.shx GBCBIG /fonts.d/extfont2 'C:\fonts\gbcbig.shx' unknown.shx '' 日本.shx

echo "# a file"
printf '%s\r\n' '# ours' 'my font.SHX;2' '日本.shx ; 1' 'gbcbig.shx;1' 'odd.shx;7' 'bad.ttf;2' 'none.shx;' >fonts.ini
tvbase bigfont --ini fonts.ini MYFONT.shx 日本 gbcbig odd none
echo "# what it says"
tvbase bigfont --ini fonts.ini

for language in ja_JP zh_TW ko_KR zh_CN de_DE C; do
    echo "# $language"
    LC_ALL=$language.UTF-8 tvbase bigfont unknown.shx visiotc
done

tvbase bigfont --ini missing.ini unknown.shx
echo "status $?"
tvbase bigfont --ini . unknown.shx
echo "status $?"
tvbase bigfont
echo "status $?"
tvbase bigfont 😀.shx
echo "status $?"
