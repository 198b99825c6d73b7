# From the converters: the shipped tables. From the texts of a dump: the same file again.
tvbase map make -o converters.map --title shipped
for page in 932 936 949 950; do
    tvbase map dump ansi_$page >$page.txt
    tvbase map dump --map converters.map $page | cmp - $page.txt
done
head -n 3 932.txt
tvbase map make -o texts.map --title shipped --table 932=932.txt --table ansi_936=936.txt \
    --table ansi_949=949.txt --table ansi_950=950.txt
cmp converters.map texts.map && echo same
tvbase map check texts.map
