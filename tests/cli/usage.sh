tvbase
echo "status $?"
tvbase recode --no-such-option
echo "status $?"
tvbase recode --on-unmappable=never
echo "status $?"
tvbase nothing
echo "status $?"
tvbase map
echo "status $?"
