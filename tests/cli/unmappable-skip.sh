# Leaving out tells what and counts it; the exit status says that something is missing.
printf 'two \xE4\xB8\xAD \xF0\x9F\x98\x80 three \\U+20AC\n' >drawing.txt
tvbase recode -t ansi_1252 --on-unmappable=skip --report drawing.txt
