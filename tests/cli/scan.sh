# Values by conversion, tabs between; a text that does not match ends with 1.
tvbase scan '%d,%lf' '3, 12.5'
tvbase scan '%i %x %b %n' '0x1F ff 101'
tvbase scan '%s %3c%*d%d' 'word a b7 8'
tvbase scan '%5f' 1.5e3
printf '1 a\n2 b\n' | tvbase scan '%d %s'
tvbase scan '%d %d' '12 x'
echo "status $?"
tvbase scan '%d' ''
echo "status $?"
