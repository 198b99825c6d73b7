# Whatever a block's edge cuts comes out as if it had not been cut.
check() { # page, text with escapes of printf
    printf "$2" | tvbase recode -f "$1" >plain
    for offset in -15 -14 -13 -12 -11 -10 -9 -8 -7 -6 -5 -4 -3 -2 -1 0 1; do
        head -c $((65536 + offset)) /dev/zero | tr '\0' a >padding
        { cat padding && printf "$2"; } | tvbase recode -f "$1" | tail -c +$((65537 + offset)) >cut
        cmp -s plain cut || echo "$1 $2 differs at offset $offset"
        { cat padding && printf "$2"; } | tvbase recode -f "$1" | head -c $((65536 + offset)) | cmp -s - padding ||
            echo "$1 $2 changes the text before it at offset $offset"
    done
    echo "$1 $(wc -c <plain) bytes"
}
check ansi_1252 '\\U+00B0.\n'
check ansi_1252 '\\M+1815F.\n'
check ansi_1252 '\\U+00B'
check ansi_1252 '\\'
check ansi_1252 '\\U+D83D\\U+DE00.\n'
check ansi_1252 '\\U+D83D\\U+0041.\n'
check ansi_1252 '\\U+D83D.\n'
check ansi_936 '\xD6\xD0\xCE\xC4.\n'
check ansi_932 '\x95\x5C\x95\x5C\\U+00B0.\n'
check utf8 '\xC3\xA9.\n'
check utf8 '\xE4\xB8\xAD.\n'
check utf8 '\xF0\x9F\x98\x80.\n'
check utf8 '\\U+00B0\\M+1815F.\n'
