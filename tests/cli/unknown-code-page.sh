for name in ansi_1525 cp1252 windows-1251 ansi936 gbk Shift_JIS big5x latin-1 iso8859_11 xyzzy '' 999 47 -- ; do
    tvbase recode -f "$name" </dev/null
    echo "status $?"
done
