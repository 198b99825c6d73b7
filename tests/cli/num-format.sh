# Numbers from the command line and from a column, in every notation.
tvbase num format 0.1000000000000000055511151231257827 1e23 5e-324 -0.0 100000000000000000000
echo "status $?"
tvbase num format -f --precision 3 -- 2.0005 -1e2 0.0004999 99.9996
tvbase num format -e -p 2 12345.678 0
tvbase num format -g -p 4 1234567 0.00001 2.5
printf '1\n2.50\r\n  .5\n1e400\n' | tvbase num format
echo "status $?"
printf '1\nx\n\n3' | tvbase num format -f -p 1
echo "status $?"
tvbase num format -f -e 1
echo "status $?"
tvbase num format -f -p 20 0.1
echo "status $?"
# What stands behind a number is told of, and the others still come.
tvbase num format 1 12.5mm '2 ' '' 3
echo "status $?"
printf '7\n8,5\n9\n' | tvbase num format
echo "status $?"
# The shortest text takes no precision.
tvbase num format -p 3 1.5
echo "status $?"
tvbase num format --precision 3 -g 1.5
echo "status $?"
