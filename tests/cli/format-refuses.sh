# Arguments that do not go with the format.
for arguments in '%d' '%d x' '%f x' 'a b' '%0$d 1'; do
    tvbase format $arguments
    echo "status $?"
done
