# Line and column, escape, code page, unit and character; columns count characters.
tvbase escapes list 'é\U+00B0\u+2300' 'no escape' '\M+1955C \M+1F040 \m+58140'
printf 'a\n\\U+0000\\U+D83D\\U+000A\n' | tvbase escapes list
