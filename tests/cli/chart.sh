# Grids of single bytes, of marks and of lead bytes, and what stands behind a lead byte.
tvbase chart 1252
tvbase chart ansi_874
tvbase chart iso8859_8
tvbase chart shift_jis 2>&1
tvbase chart ansi_932
tvbase chart ansi_932 --lead 83
tvbase chart gb2312 --lead b0 | head -n 14 | tail -n 2
tvbase chart ascii | tail -n 9

for lead in A1 zz 8 083; do
    tvbase chart ansi_932 --lead "$lead" >/dev/null
    echo "status $?"
done
tvbase chart utf8
echo "status $?"
tvbase chart ansi_1252 --lead 81
echo "status $?"
tvbase chart ansi_936 --map missing.map
echo "status $?"
