# The manual page has no fault that mandoc knows, and tells of each subcommand and option that
# --help tells of, with what they take, and of no other.
page=$ROOT/docs/tvbase.1
# Which other pages are there is the machine's affair.
mandoc -T lint "$page" 2>&1 | grep -v 'mandoc\.db lacks\|referenced manual not found'

section() { # of the help of a command
    tvbase $2 --help | awk -v "wanted=$1:" '/^[A-Z][a-z]*:$/ { inside = $0 == wanted; next } /^$/ { inside = 0 } inside'
}
walk() {
    local names name
    section Options "$1" | awk -v "command=$1" '/^  -/ {
        taken = substr($0, 3, 31) ~ /^[^ ]+ [^ (]/ ? " " $2 : ""
        n = split($1, names, ","); for (i = 1; i <= n; ++i) print command, names[i] taken }'
    names=$(section Subcommands "$1" | awk '/^  [a-z]/ { print $1 }')
    [ -n "$names" ] || echo "$1"
    for name in $names; do
        walk "${1:+$1 }$name"
    done
}
# -h and --help are told of once.
walk '' | grep -vE '^.+ (-h|--help)$' | sort >help.txt
awk '
    /^\.Ss / { command = substr($0, 5); print command }
    /^\.Sh / { command = "" }
    /^\.It Fl / {
        taken = ""
        for (i = 2; i <= NF; ++i) if ($i == "Ar" || $i == "Cm") break
        for (; i <= NF; ++i) if ($i != "Ar" && $i != "Cm" && $i != "Ns") taken = taken $i
        for (i = 2; i < NF; ++i) if ($i == "Fl") print command, "-" $(i + 1) (taken == "" ? "" : " " taken) }' "$page" | sort >page.txt
[ -s help.txt ] && diff help.txt page.txt && echo same
