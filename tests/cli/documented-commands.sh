# Every command of docs/tvbase.md and every example of --help, on the files that they name: what
# is said behind the command, how it ends, and how its output begins.
[ -z "$TV_SANITIZED" ] || exit 77 # one build is enough for that
prepare() {
    rm -rf folder && mkdir folder && cd folder || exit 1
    cp "$SAMPLES/ansi_936.txt" notes.txt
    tvbase recode -f ansi_936 -o notes.utf8 notes.txt
    cp "$ROOT/data/codepage.map" codepage.map
    tvbase map dump ansi_936 >pairs.txt
    printf 'ours.shx;5\n' >BIGFONT.INI
    printf 'a 1 20\nr 1 300\nf 1\n' >requests.trace
}
run() { # COMMAND TEXT-BEHIND-IT
    prepare
    echo "\$ $1${2:+     $2}"
    (eval "$1") >../shown 2>&1
    local status=$?
    [ $status -eq 0 ] || echo "status $status"
    case $1 in
    *info* | *heap* | *'map check') ;; # of this machine
    *) head -n 4 ../shown | cut -c 1-100 ;;
    esac
    cd ..
}
echo "# docs/tvbase.md"
grep '^    tvbase' "$ROOT/docs/tvbase.md" | while IFS= read -r line; do
    line=${line#    }
    case $line in
    *'  # '*) run "$(sed 's/ *  # .*//' <<<"$line")" "# ${line#*  # }" ;;
    *) run "$line" ;;
    esac
done

commands() { # of a command, and of those below it
    echo "$1"
    tvbase $1 --help | awk '/^[A-Z][a-z]*:$/ { inside = $0 == "Subcommands:"; next } /^$/ { inside = 0 }
        inside && /^  [a-z]/ { print $1 }' | while IFS= read -r name; do
        commands "${1:+$1 }$name"
    done
}
echo "# --help"
commands '' | while IFS= read -r command; do
    tvbase $command --help | sed -n '/^Example/,/^$/s/^  tvbase/tvbase/p'
done | sort -u | while IFS= read -r line; do
    case $line in
    *'      '*) run "${line%%      *}" "# ${line##*      }" ;;
    *) run "$line" ;;
    esac
done
