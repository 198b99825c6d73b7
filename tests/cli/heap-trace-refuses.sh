# Each bad line is told with its number, and nothing is replayed.
{
    printf '# a comment\n\n'
    printf 'a 1 20 # good\n'
    printf 'x 1 20\n'
    printf 'a 1 30\n'
    printf 'f 2\n'
    printf 'r 2 10\n'
    printf 'r 1 0\n'
    printf 'a 2\n'
    printf 'a\n'
    printf 'a 0x2 -1\n'
    printf 'a 3 2147483648\r\n'
    printf 'f 1 20\n'
} >bad.trace
tvbase heap replay bad.trace
echo "status $?"
printf 'a 5 2147483649\nf 18446744073709551616\n%0600d\nfree 5' 7 | tvbase heap stats -
echo "status $?"
seq 1 30 | tvbase heap replay - 2>&1 | tail -n 1
: >empty.trace
tvbase heap replay empty.trace
echo "status $?"
tvbase heap replay missing.trace
echo "status $?"
tvbase heap replay
echo "status $?"
tvbase heap replay bad.trace --rounds 0
echo "status $?"
