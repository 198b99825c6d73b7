# Completion as a user meets it: an interactive bash on a terminal of its own, TAB pressed.
[ -z "$TV_SANITIZED" ] || exit 77 # one build is enough for that
loader=/usr/share/bash-completion/bash_completion
[ -r "$loader" ] && command -v python3 >/dev/null || exit 77
export LOADER=$loader COMPLETION=$ROOT/tools/tvbase/completion.bash
timeout 120 python3 - <<'PYTHON'
import os
import pty
import re
import select
import sys
import time

try:
    pid, terminal = pty.fork()
except OSError:
    sys.exit(77)
if pid == 0:
    os.environ.update(TERM="dumb", PS1="", HOME=os.getcwd(), HISTFILE="/dev/null", INPUTRC="/dev/null")
    os.execvp("bash", ["bash", "--norc", "--noprofile", "-i"])


def read_until(mark, seconds=30):
    seen, end = b"", time.monotonic() + seconds
    while mark not in seen and time.monotonic() < end:
        if select.select([terminal], [], [], 0.2)[0]:
            try:
                seen += os.read(terminal, 4096)
            except OSError:
                break
    return seen.decode(errors="replace")


def type_line(text, mark):
    os.write(terminal, text.encode())
    return read_until(mark)


# The echoed command holds no mark, what it prints does.
type_line("stty cols 200; bind 'set enable-bracketed-paste off'; bind 'set bell-style none'; PS1=; "
          'source "$LOADER" 2>/dev/null; source "$COMPLETION"; echo rea""dy\n', b"ready\r\n")
for typed in ("tvbase rec", "tvbase recode --on-un", "tvbase recode --on-unmappable sk", "tvbase recode --from=ansi_125",
              "tvbase recode -f ansi_93", "tvbase heap re", "tvbase angle --style surv", "tvbase chart mac_",
              "tvbase recode note"):
    # TAB completes the word; Ctrl-A and a command in front print the line as it is then.
    os.write(terminal, (typed + "\t").encode())
    os.write(terminal, b"|\x01printf '<%s>\\n' '\x05'; echo do\"\"ne\n")
    seen = read_until(b"done\r\n")
    line = re.findall(r"^<(.*)\|>", seen, re.M)
    print(f"{typed} -> {line[-1] if line else seen!r}")
os.write(terminal, b"exit\n")
os.close(terminal)
os.waitpid(pid, 0)
PYTHON
