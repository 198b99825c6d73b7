tvbase list --languages
