# On a terminal a line says how far it is, but not in the first second, and not elsewhere.
script -qec true /dev/null >/dev/null 2>&1 || exit 77 # no terminal to be had
slow() { # seconds
    printf 'one\n' && sleep "$1" && printf 'two\n' && sleep 0.1
}
watched() {
    slow "$1" >pipe &
    script -qec 'tvbase recode -o out pipe' /dev/null | sed -E 's/[0-9]+ MB.s/N MB\/s/' | od -An -c
    wait
}
mkfifo pipe
watched 0
watched 1.2
slow 1.2 | tvbase recode
