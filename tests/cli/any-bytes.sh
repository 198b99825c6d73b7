# Any bytes in any code page become well-formed UTF-8, and that comes back the same through
# the code page. (The bytes are the tool's own program, without what could be an escape.)
tr -d '\\' <"$(command -v tvbase)" | head -c 200000 >bytes
for page in $(tvbase list | awk 'NR > 1 { print $3 }'); do
    tvbase recode -f $page bytes >wide 2>/dev/null
    tvbase recode wide | cmp - wide || echo "$page gives no UTF-8"
    tvbase recode -t $page wide | tvbase recode -f $page 2>complaints | cmp - wide || echo "$page comes back different"
    [ ! -s complaints ] || echo "$page wrote bytes without a character"
done
