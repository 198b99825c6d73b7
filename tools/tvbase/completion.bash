# bash completion of tvbase: subcommands, options and their values, as --help tells them.

# The words of one section of the help of a command: _tvbase_section Options tvbase list
_tvbase_section() {
    local section=$1
    shift
    "$@" --help 2>/dev/null | awk -v "wanted=$section:" '
        /^[A-Z][a-z]*:$/ { inside = $0 == wanted; next }
        /^$/ { inside = 0 }
        inside'
}

_tvbase_subcommands() { _tvbase_section Subcommands "$@" | awk '/^  [a-z]/ { print $1 }'; }

_tvbase_options() { _tvbase_section Options "$@" | awk '/^  -/ { gsub(",", "\n", $1); print $1 }'; }

# The values of an option, where there are only some: _tvbase_values --style tvbase angle
_tvbase_values() {
    local option=$1
    shift
    local line
    line=$(_tvbase_section Options "$@" | awk -v "option=$option" '
        /^  -/ { found = index("," $1 ",", "," option ",") }
        found && /^  -/ { print; exit }')
    case $line in
    *' CP '*) _tvbase_pages "$1" ;;
    *'One of '*) tr -d , <<<"${line##*One of }" | tr ' ' '\n' ;;
    *) awk '$2 ~ /[|]/ { gsub("[|]", "\n", $2); print $2 }' <<<"$line" ;;
    esac
}

_tvbase_pages() { "$1" list 2>/dev/null | awk 'NR > 1 { print $3 }'; }

_tvbase() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    local command=("${COMP_WORDS[0]/#\~/$HOME}") word words
    # --from=ansi comes as three words.
    [ "$current" != = ] || current=
    [ "$previous" != = ] || previous=${COMP_WORDS[COMP_CWORD - 2]}

    for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
        _tvbase_subcommands "${command[@]}" | grep -qxF -e "$word" || break
        command+=("$word")
    done
    case $previous in
    -*) words=$(_tvbase_values "$previous" "${command[@]}") ;;
    esac
    if [ -z "$words" ]; then
        case $current in
        -*) words=$(_tvbase_options "${command[@]}") ;;
        *) words=$(_tvbase_subcommands "${command[@]}") ;;
        esac
    fi
    if [ -z "$words" ] && _tvbase_section Positionals "${command[@]}" | grep -qw CP; then
        words=$(_tvbase_pages "${command[0]}")
    fi
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
}

# Where nothing else is known, files.
complete -o default -F _tvbase tvbase
