# Every character that is not ASCII becomes an escape; double-byte ones that of --page.
tvbase escapes encode '90° Ø40' 'plain \U+00B0' '表中'
printf 'é\n\nx😀\n' | tvbase escapes encode
tvbase escapes encode --page 932 '表 ｱ é'
tvbase escapes encode -p ansi_936 '中é'
tvbase escapes encode -p big5 '中'
tvbase escapes encode -p 949 '가'
