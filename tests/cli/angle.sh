# Angles in every style; the numbers are radians unless said otherwise.
tvbase angle --style radians 1.5
tvbase angle --in-degrees 45
tvbase angle --in-degrees --style degrees --precision 1 45.5 360
tvbase angle --in-degrees --style degrees --precision 1 --degree-escape 45.5
tvbase angle --in-degrees --style minutes 45.5125
tvbase angle --in-degrees --style grads --no-trailing-zeros 45
tvbase angle --in-degrees --style surveyor 90 45 225
tvbase angle --in-degrees --style surveyor --compact 45
tvbase angle --in-degrees --style degrees --precision 0 --base 90 180
tvbase angle --in-degrees --style degrees --precision 0 --base 90 --clockwise 0
