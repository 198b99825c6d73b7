# A text that is not UTF-8 is complained of; the others are shown.
printf 'x y\n\xff\n\xe4\xb8\nz z\n' | tvbase breaks -m
echo "status $?"
