# Behind -- everything is a name or a text, also after others, and also where it is the name of a
# subcommand or of an option.
printf 'a\n' >-b.txt
printf 'c\n' >list
printf 'd\n' >d.txt
tvbase recode d.txt -- -b.txt list
tvbase recode -f 1252 -- -b.txt
tvbase recode d.txt -t 1252 -- -b.txt
tvbase recode d.txt --report -- -b.txt
tvbase num parse 12.5mm -- -1e400 -.5
tvbase num format -f -p 1 2 -- -3
tvbase escapes decode a -- '-\U+00B0' --
tvbase breaks -m a -- -b --
tvbase bigfont gbcbig -- info
# The value of an option may be so, too.
printf 'e\n' | tvbase recode -o --
cat -- --
tvbase recode --from -- d.txt
echo "status $?"
tvbase list -- x 2>&1 | tail -n 1
# What takes an argument for each conversion takes it as it stands.
tvbase format '%s|%d' -- -5
