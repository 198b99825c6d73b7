# Every damage is named, and the library never reads past the file.
good=$ROOT/data/codepage.map
size=$(stat -c %s "$good")
printf '' >empty.map
printf 'title without the letter\0' >header.map
head -c 300 "$good" >directory.map
head -c $((size - 2)) "$good" >cut.map
# The first code of the first table (932) becomes larger than the second.
first=$(tvbase map info "$good" | awk '/^ansi_932/ { print $2 }')
cp "$good" unsorted.map
printf '\xFF\xFC' | dd of=unsorted.map bs=1 seek=$((first + 2)) conv=notrunc status=none
# The directory entry of 932 (the 35th) points behind the file, then just before its end.
entry=$(($(head -c 4096 "$good" | tr '\n\0' ' \n' | head -n 1 | wc -c) + 4 * 34))
cp "$good" far.map
printf '\xFF\xFF\xFF\x7F' | dd of=far.map bs=1 seek=$entry conv=notrunc status=none
cp "$good" negative.map
printf '\xFF\xFF\xFF\xFF' | dd of=negative.map bs=1 seek=$entry conv=notrunc status=none
cp "$good" missing.map
printf '\0\0\0\0' | dd of=missing.map bs=1 seek=$entry conv=notrunc status=none
for map in *.map; do
    tvbase map check $map
    echo "status $?"
    printf '\x81\x40\n' | tvbase recode -f 932 --map $map
    echo "status $?"
done
