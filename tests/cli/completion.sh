# What is offered for the last word of a command line.
source "$ROOT/tools/tvbase/completion.bash"
complete -p tvbase
offer() {
    COMP_WORDS=("$@")
    COMP_CWORD=$(($# - 1))
    COMPREPLY=()
    _tvbase
    echo "$*| ${COMPREPLY[*]}"
}
offer tvbase ''
offer tvbase --v
offer tvbase re
offer tvbase heap ''
offer tvbase map make --t
offer tvbase recode --
offer tvbase recode -f ansi_9
offer tvbase recode --from = iso8859_1
offer tvbase recode --to =
offer tvbase recode --on-unmappable ''
offer tvbase recode --on-unmappable stop --re
offer tvbase angle --style ''
offer tvbase length --style de
offer tvbase chart mac
offer tvbase map dump big
offer tvbase list ''
offer tvbase recode map ''
offer missing-program ''
