# A link stays a link, also when what it leads to is still to be made.
mkdir folder
ln -s folder/first first
ln -s ../second folder/first
printf 'one\n' | tvbase recode -o first
echo "status $?"
cat second
printf 'two\n' | tvbase recode -o first
echo "status $?"
cat second
stat -c '%N' first folder/first second
ln -s missing/file nowhere
printf 'three\n' | tvbase recode -o nowhere
echo "status $?"
ln -s there here
ln -s here there
printf 'four\n' | tvbase recode -o here
echo "status $?"
ls . folder
