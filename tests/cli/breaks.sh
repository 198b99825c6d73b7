# Class, break and punctuation of each character; with --marked the text alone.
tvbase breaks '(a-b) 12%'
tvbase breaks $'e\xcc\x81 ‹中、文›…$5 \r\nไทย' ''
tvbase breaks $'\xf0\x9d\x9f\x8e\xf0\xa0\x80\x80\xf3\xa0\x87\xb0'
echo 'Marked:'
tvbase breaks --marked 'Fire door, self-closing' '一层平面图，中心 (A-1) 3.5m' $'one\ntwo\xe2\x80\xa8three' ' a' ''
printf 'Tür links\r\n12 x 34\n' | tvbase breaks -m
tvbase breaks -m -- '-a -b'
