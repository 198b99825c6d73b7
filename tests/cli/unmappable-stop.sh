# Stopping tells file, line, column and bytes, and writes what came before.
printf 'one\ntwo \xE4\xB8\xAD \xE2\x88\x85 three\n' >drawing.txt
tvbase recode -t ansi_936 --on-unmappable=stop drawing.txt | od -An -t x1
exit ${PIPESTATUS[0]}
