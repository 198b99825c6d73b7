printf 'ab\nc\xE4\xB8d\n' >drawing.txt
tvbase recode --on-unmappable=stop drawing.txt
