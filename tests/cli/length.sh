# Distances in every style, from arguments and from a column.
tvbase length 66.5
tvbase length --style decimal --precision 2 66.5 -0.5
tvbase length --style scientific 66.5
tvbase length --style engineering --precision 2 66
tvbase length --style architectural --precision 4 66.5
tvbase length --style architectural --compact 66.5
tvbase length --style architectural --no-zero-feet 0.5
tvbase length --style architectural --stacked --stack-height 2 66.5
tvbase length --style fractional --precision 3 2.25
tvbase length --style fractional --stacked --stack-hash 2.25
tvbase length --style engineering --precision 2 --no-zero-inches 60
tvbase length --no-leading-zero --no-trailing-zeros 0.5
tvbase length --precision 2 --max-length 6 123.456 1234.56
printf '66\r\n\n -2.25 \n' | tvbase length --style engineering --precision 2
