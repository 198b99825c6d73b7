# A locale with a decimal comma, and one where the small letter of I is another one, change nothing
# but what asks for the system's language.
[ -z "$TV_SANITIZED" ] || exit 77 # one build is enough for that
[ -e /usr/share/i18n/locales/de_DE ] && command -v localedef >/dev/null || exit 77
mkdir locales
for locale in de_DE tr_TR; do
    localedef -c -i $locale -f UTF-8 "$PWD/locales/$locale.UTF-8" >/dev/null 2>&1 || exit 77
done
export LOCPATH=$PWD/locales

commands() {
    cat <<'LINES'
num format 0.5 1e23 1,5
num format -f --precision 3 2.0005
num parse 1.25mm 1,25
length --style architectural 66.5
angle --style minutes --in-degrees 45.5125
format '%5d|%.2f|%g|%s' 42 1.5 0.25 ä
scan '%d,%lf' '3, 12.5'
list
list --json
list --languages
chart MAC_ROMAN
chart ANSI_1254 --json
recode -f ANSI_1254 --report notes.txt
escapes encode 'I ı İ i'
escapes list '\U+0130'
breaks 'İstanbul, 1,5 m'
bigfont GBCBIG EXTFONT2
map info --map codepage.map
map make -o made.map
recode -f missing_page notes.txt
--help
heap stats
LINES
}
cp "$SAMPLES/ansi_1254.txt" notes.txt
cp "$ROOT/data/codepage.map" codepage.map
for locale in C C.UTF-8 de_DE.UTF-8 tr_TR.UTF-8; do
    commands | while IFS= read -r line; do
        echo "\$ tvbase $line"
        LC_ALL=$locale bash -c "tvbase $line" 2>&1
        echo "status $?"
    done >"$locale.txt"
done
for locale in C.UTF-8 de_DE.UTF-8 tr_TR.UTF-8; do
    diff -a C.txt $locale.txt && echo "$locale: same"
done
LC_ALL=de_DE.UTF-8 python3 -c 'import locale; locale.setlocale(locale.LC_ALL, ""); print("1%s5" % locale.localeconv()["decimal_point"])'
wc -l <C.txt
