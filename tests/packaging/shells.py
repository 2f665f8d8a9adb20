"""What bash, zsh and fish offer when the tabulator key is pressed after a line.

Each shell is the real one, with its own completion system and with the file under test, in a home
without configuration. offers(line) returns the words in the order of the alphabet.
"""

import os
import pty
import re
import select
import shlex
import signal
import subprocess
import tempfile
import time
from pathlib import Path

PATIENCE = 30  # seconds


def environment(home):
    return {"HOME": str(home), "PATH": os.environ["PATH"], "LANG": "C.UTF-8", "TERM": "xterm",
            "XDG_CONFIG_HOME": str(home), "XDG_DATA_HOME": str(home), "XDG_RUNTIME_DIR": str(home)}


def bare(words):
    """Without the "--name=" that some shells put before a value, and sorted."""
    return sorted({re.sub(r"^--[\w-]+=(?=.)", "", word) for word in words if word})


class Bash:
    """Calls the function that the file registers, with the words as readline splits them."""

    DRIVER = """
source /usr/share/bash-completion/bash_completion
source "$1"
COMP_LINE=$2 COMP_POINT=${#2} COMP_TYPE=9 COMP_KEY=9
shift 2
COMP_WORDS=("$@") COMP_CWORD=$(($# - 1))
function=$(complete -p tockwise | sed -E 's/.* -F ([^ ]+).*/\\1/')
compopt() { :; } # only there while readline completes
"$function" tockwise "${COMP_WORDS[-1]}" "${COMP_WORDS[-2]}"
printf '%s\\n' "${COMPREPLY[@]}"
"""

    def __init__(self, share, folder):
        self.file = share / "bash-completion/completions/tockwise"
        self.folder = folder

    @staticmethod
    def split(line):
        """As readline does: '=' and ':' are words of their own."""
        words = []
        for word in shlex.split(line):
            words += [part for part in re.split(r"([=:]+)", word) if part]
        return words + [""] if line.endswith((" ", "=", ":")) else words

    def offers(self, line):
        done = subprocess.run(
            ["bash", "--norc", "-c", self.DRIVER, "bash", str(self.file), line, *self.split(line)],
            cwd=self.folder, env=environment(self.folder), capture_output=True, encoding="utf-8",
            timeout=PATIENCE, check=False)
        if done.stderr:
            raise AssertionError(f"bash: {done.stderr}")
        return bare(word.rstrip() for word in done.stdout.splitlines())

    def close(self):
        pass


class Fish:
    def __init__(self, share, folder):
        self.file = share / "fish/vendor_completions.d/tockwise.fish"
        self.folder = folder

    def offers(self, line):
        done = subprocess.run(
            ["fish", "--no-config", "-c", "source $argv[1]; complete -C $argv[2]",
             str(self.file), line],
            cwd=self.folder, env=environment(self.folder), capture_output=True, encoding="utf-8",
            timeout=PATIENCE, check=False)
        if done.stderr:
            raise AssertionError(f"fish: {done.stderr}")
        return bare(word.split("\t")[0] for word in done.stdout.splitlines())

    def close(self):
        pass


class Zsh:
    """An interactive shell on a terminal of its own: its completion runs in the line editor only.
    What it would show goes to a file as well, through a compadd in front of the real one."""

    SETUP = """
PS1='' PS2=''
fpath=({functions} $fpath)
autoload -Uz compinit; compinit -u -D
setopt no_auto_list no_auto_menu no_beep no_list_ambiguous
bindkey -e; bindkey '^I' complete-word
compadd() {{
  local -a found
  if (( ${{@[(I)-[OAD]*]}} && ${{@[(I)-[OAD]*]}} < ${{@[(i)--]}} )); then
    builtin compadd "$@"; return
  fi
  builtin compadd -A found "$@"
  (( $#found )) && print -rl -- $found >>{answers}
  builtin compadd "$@"
}}
finished() {{ print -r -- '== done' >>{answers} }}
report() {{ comppostfuncs=(finished); zle complete-word }} # they are called once
zle -N report; bindkey '^I' report
print -r -- '== ready' >>{answers}
"""

    def __init__(self, share, folder):
        self.folder = folder
        self.answers = folder / ".answers"
        setup = folder / ".setup.zsh"
        setup.write_text(self.SETUP.format(functions=share / "zsh/site-functions",
                                           answers=self.answers), encoding="utf-8")
        self.process, self.terminal = pty.fork()
        if self.process == 0:
            os.chdir(folder)
            os.execvpe("zsh", ["zsh", "-f", "-i"], environment(folder))
        self.type(f"source {setup}\n")
        self.read("== ready")

    def type(self, text):
        os.write(self.terminal, text.encode())

    def read(self, end):
        """The lines of the answers until end."""
        deadline = time.monotonic() + PATIENCE
        shown = b""
        while time.monotonic() < deadline:
            ready, _, _ = select.select([self.terminal], [], [], 0.02)
            if ready: # what it shows is taken away, or the shell would wait for its terminal
                shown += os.read(self.terminal, 4096)
            lines = []
            if self.answers.exists():
                lines = self.answers.read_text(encoding="utf-8").splitlines()
            if end in lines:
                self.answers.unlink()
                return lines[:lines.index(end)]
        raise AssertionError(f"zsh does not answer; it shows {shown.decode(errors='replace')}")

    def offers(self, line):
        self.type(f"\x15{line}\t") # Ctrl-U empties the line
        return bare(word.rstrip() for word in self.read("== done"))

    def close(self):
        os.kill(self.process, signal.SIGKILL)
        os.waitpid(self.process, 0)
        os.close(self.terminal)


def make_folder():
    """A folder to complete in: two documents, another file and a folder."""
    folder = Path(tempfile.mkdtemp(prefix="tockwise-shell-"))
    for name in ("home.tockwise", "work.tockwise", "page.html"):
        (folder / name).touch()
    (folder / "older").mkdir()
    return folder
