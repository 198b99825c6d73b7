# Damaged input does not keep the file from being replaced, but makes the exit status 1.
for way in escape skip stop; do
    printf 'old\n' >out.txt
    printf 'a\xE9b\n' | tvbase recode --on-unmappable=$way -o out.txt
    echo "status $?"
    cat out.txt
done
ls
