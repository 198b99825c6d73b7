# A lead byte before a line end, a 0 byte or the end of the file is damage.
printf '\xD6\xD0\xD6\n\xD6\0x\xD6' >drawing.txt
tvbase recode -f ansi_936 drawing.txt | od -An -c
exit ${PIPESTATUS[0]}
