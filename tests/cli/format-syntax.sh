# Each argument goes to the conversion that takes it, however odd the format.
tvbase format '%0*d|%-0*d|' 5 42 5 42
tvbase format '%*5d|' 3
tvbase format '%--5d|'
tvbase format '%+-8.1f|%-+08.1f|' 2.5 2.5
tvbase format '%.*5d|' 3
tvbase format '%lld|%#x'
tvbase format '%1$*2$d|%1$-*2$d|' 42 5
tvbase format '%qx%q$' 
