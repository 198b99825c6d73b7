# Columns count characters, whatever their bytes; escapes count as they stand.
printf 'x\n\xE4\xB8\xAD\xC3\xA9\xF0\x9F\x98\x80\\U+00B0\xFF\n' >drawing.txt
tvbase recode --on-unmappable=stop drawing.txt
echo "status $?"
printf '\xD6\xD0\xCE\xC4\x80\n' >drawing.txt
tvbase recode -f ansi_936 --on-unmappable=stop drawing.txt
echo "status $?"
printf '\xD6\xD0\xCE\xC4\xA8\xA6\n' >drawing.txt
tvbase recode -f ansi_936 -t ansi_1253 --on-unmappable=skip drawing.txt
echo "status $?"
