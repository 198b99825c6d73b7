# Escapes become their characters; what has none, and what only looks like one, stays.
tvbase escapes decode '90\U+00B0 \u+00d840' '\M+1955C\M+5D6D0\m+2a4a4\M+3B0A1'
tvbase escapes decode '\U+0041\U+005CU+0041' 'x\U+D83D\U+DE00y'
tvbase escapes decode '\U+D83D \U+DE00 \U+0000 \U+000A \U+007F' '\M+1F040 \M+48861'
tvbase escapes decode '\U+00G0 \U00B0 \U+0B \M+6815F \U+'
printf '\\M+1815F\\\n\377\\U+2300\n' | tvbase escapes decode | od -An -t x1
LC_ALL=ja_JP.UTF-8 tvbase escapes decode '\M+0955C'
LC_ALL=en_US.UTF-8 tvbase escapes decode '\M+0955C'
