# "undefined" is the code page of the environment's locale.
printf '\xD6\xD0\n' | LC_ALL=zh_CN.UTF-8 tvbase recode -f undefined
printf '\xE9\n' | LC_ALL=ru_RU.UTF-8 tvbase recode -f 0
