# The output engine's own rules, with plain and numbered arguments.
tvbase format '%5d|%-5d|%05d' 42 42 -42
tvbase format '%.2d %x %b %X' 5 255 5 255
tvbase format '%s: %.3s' wall abcdef
tvbase format '%2$s %1$d' 7 door
tvbase format '%*.*f|' 8 2 12.5
tvbase format '%.1f %e %g' 2.5 12345.678 0.5
tvbase format '%.20q0 %.20q*' 66.5 2048 66.5
tvbase format '%c%c 100%%' é x
tvbase format '[%s] %s' -x --help
tvbase format 'no conversions'
