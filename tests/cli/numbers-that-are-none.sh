# A column goes on behind what is no number.
printf '1\nabc\n2x\n3\n' | tvbase length
