# The installed tool finds the installed map file, wherever the tree is moved to.
build=$(dirname "$(dirname "$(command -v tvbase)")")
for component in runtime tools; do
    cmake --install "$build" --prefix "$PWD/first" --component $component >/dev/null
done
mv first second
ls second/share/bash-completion/completions second/share/man/man1
second/bin/tvbase map info | sed -n "s#^file *$PWD/##p"
printf '\xD6\xD0\n' | second/bin/tvbase recode -f ansi_936
