# The sample drawing texts, to UTF-8 and back.
"$ROOT/scripts/recode-samples" "$(command -v tvbase)"
