# A byte that is no UTF-8 is kept as the character of its value, and told of.
printf 'a\xFFb\nc\xE4\xB8d\xC0\xAF\xED\xA0\x80\xF4\x90\x80\x80e\xE4' >drawing.txt
tvbase recode drawing.txt
