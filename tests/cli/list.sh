tvbase list
