# User-defined characters become escapes, which is no damage.
printf '\xF0\x40 \xFA\x41\n' | tvbase recode -f ansi_932 --report
