# 80 of 1252 has no character; as in the library it becomes the character of its value.
printf 'price 5 \x80\n' >drawing.txt
tvbase recode -f ansi_1252 drawing.txt | od -An -t x1
exit ${PIPESTATUS[0]}
