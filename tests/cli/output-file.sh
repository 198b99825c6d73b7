# -o replaces the file, keeps its permissions, and follows a link; input and output may be one.
printf '\xE9\n' >text
chmod 640 text
ln -s text link
tvbase recode -f ansi_1252 -o link text
cat text
stat -c '%A %N' text link
tvbase recode -t ansi_1252 -o new text
od -An -t x1 new
tvbase recode -o /dev/stdout text | cat
tvbase recode -o - text
ls
