# Inputs follow each other; one that cannot be read does not hide the others.
printf '\xE9\n' >one.txt
printf '\xE8\n' >two.txt
mkdir folder
tvbase recode -f ansi_1252 one.txt missing.txt folder two.txt
