# What a text reads as: text, 17 digits, bits, characters used, shortest text that reads back.
tvbase num parse 0.1 12.5mm 9007199254740993 1e 0x10 1e-400
echo "status $?"
tvbase num parse -- -0 -1e400 +.5e1
echo "status $?"
tvbase num parse inf 1
echo "status $?"
printf '2.2250738585072011e-308\n' | tvbase num parse
