# Numbers that begin with a minus sign are no options, wherever they stand.
tvbase length -.5 -5 -1e3 -0.25 -.5e1
tvbase length -.5 --style fractional -.25 1.5
tvbase length --style decimal --precision 1 -- -.5 -5
tvbase angle --style radians -.5 -5 -1e-3
tvbase angle --in-degrees --style degrees --precision 1 --base -.5 -.5
tvbase num format -.5 -5 -1e3
tvbase num format -f -p 2 -.5 -5
tvbase num parse -.5 -5 ' -.5' '  -.5'
tvbase format '%.1f %d %.1f %s' -.5 -5 -1e3 -.x
tvbase format -.5
tvbase scan '%lf %d' '-.5 -5'
# What begins so and is no number is still none.
tvbase length -.5x
echo "status $?"
tvbase length -.x
echo "status $?"
