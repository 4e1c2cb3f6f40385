#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Ask a shell what it completes, and compare with what the program's help says.

Usage: check_completions.py PROGRAM SHELL COMPLETION-FILE

77 as exit status: the shell is not installed.
"""

import os
import pty
import re
import select
import shutil
import subprocess
import sys
import tempfile
import time

PROGRAM, FILE = (os.path.abspath(sys.argv[i]) for i in (1, 3))
SHELL = sys.argv[2]


def help_of(*words):
    return subprocess.run([PROGRAM, *words, "--help"], check=True, text=True,
                          stdout=subprocess.PIPE).stdout


def options_of(text):
    """The long options that a help text lists."""
    return set(re.findall(r"^  (?:-\w, )?(--[a-z-]+)", text, re.M))


def bash(words):
    script = ('source "$1"; shift; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); _tarvel_batch; '
              'printf "%s\\n" "${COMPREPLY[@]}"')
    split = [part for word in words
             for part in (re.split("(=)", word) if word.startswith("--") else [word])]
    out = subprocess.run(["bash", "--norc", "-c", script, "bash", FILE, *split], check=True,
                         text=True, stdout=subprocess.PIPE).stdout
    return set(out.split("\n")) - {""}


def fish(words):
    out = subprocess.run(
        ["fish", "--no-config", "-c", f"source {FILE}; complete -C '{' '.join(words)}'"],
        check=True, text=True, stdout=subprocess.PIPE, env={**os.environ, "HOME": os.getcwd()}).stdout
    return {line.split("\t")[0] for line in out.splitlines()}


ZSH_SETUP = r"""
PS1= PROMPT= RPROMPT= PROMPT_EOL_MARK=
autoload -Uz compinit && compinit -D -u
zstyle ':completion:*' verbose no
unsetopt zle_bracketed_paste 2>/dev/null; zle_highlight=(none)
_tarvel_show() {
  local -a found
  compadd() {
    local -a taken
    builtin compadd -O taken "$@"
    found+=($taken)
    builtin compadd "$@"
  }
  _main_complete >/dev/null 2>&1
  unfunction compadd
  print -r -- "<<${(j: :)found}>>" >>$TARVEL_FOUND
}
zle -C tarvel-show complete-word _tarvel_show
bindkey '^X' tarvel-show
print ready >>$TARVEL_FOUND
"""


def wait_for(path, text, master):
    end = time.time() + 30
    while time.time() < end:
        if select.select([master], [], [], 0.05)[0]:
            os.read(master, 65536)
        if os.path.exists(path):
            with open(path, encoding="utf-8") as file:
                content = file.read()
            if text in content:
                return content
    raise AssertionError(f"zsh did not answer: {text}")


def zsh(words):
    """What an interactive zsh offers: a widget that notes all matches is bound to a key."""
    functions = os.path.join(os.getcwd(), "functions")
    os.makedirs(functions, exist_ok=True)
    shutil.copy(FILE, os.path.join(functions, "_tarvel-batch"))
    found = os.path.join(os.getcwd(), "found")
    if os.path.exists(found):
        os.unlink(found)
    with open(".zshrc", "w", encoding="utf-8") as file:
        file.write(f"fpath=({functions} $fpath)\n{ZSH_SETUP}")
    pid, master = pty.fork()
    if pid == 0:
        os.environ.update(ZDOTDIR=os.getcwd(), TARVEL_FOUND=found, TERM="vt100")
        os.execvp("zsh", ["zsh", "-i", "--no-globalrcs"])
    try:
        wait_for(found, "ready", master)
        os.write(master, " ".join(words).encode() + b"\x18")
        content = wait_for(found, ">>", master)
    finally:
        os.kill(pid, 9)
        os.waitpid(pid, 0)
        os.close(master)
    return set(re.search(r"<<(.*)>>", content, re.S)[1].split())


ASK = {"bash": bash, "zsh": zsh, "fish": fish}[SHELL]
FAILURES = []


def check(line, wanted, exact=True):
    words = ["tarvel-batch", *line.split(" ")]
    got = ASK(words)
    # zsh shows an option with a value with or without its "=".
    got = {word.removesuffix("=") if word.startswith("--") else word for word in got}
    if (got != wanted) if exact else not wanted <= got:
        FAILURES.append(line)
        print(f"FAILED: {line!r}\n  wanted {sorted(wanted)}\n  got    {sorted(got)}")


def long_options(line, wanted):
    """Completing "--" gives the long options of a verb and no other."""
    got = {word.removesuffix("=") for word in ASK(["tarvel-batch", *line.split(" ")])}
    if {word for word in got if word.startswith("--")} != wanted:
        FAILURES.append(line)
        print(f"FAILED: {line!r}\n  wanted {sorted(wanted)}\n  got    {sorted(got)}")


def main():
    if not shutil.which(SHELL):
        print(f"{SHELL} is not installed")
        return 77
    general = help_of()
    verbs = set(re.findall(r"^  ([a-z][a-z-]+)  ", general, re.M))
    assert {"extract", "clean-tags", "rekey"} <= verbs, verbs
    tags = re.search(r"TAG is one of\n((?:  .*\n)+)", help_of("clean-tags"))[1]
    tags = {tag.strip() for tag in tags.split(",")}
    with tempfile.TemporaryDirectory() as directory:
        os.chdir(directory)
        os.makedirs("somewhere")
        open("some lit.bib" if SHELL == "bash" else "some.bib", "w", encoding="utf-8").close()
        check("clean-", {verb for verb in verbs if verb.startswith("clean-")})
        check("", verbs)
        for verb in sorted(verbs):
            long_options(f"{verb} --", options_of(help_of(verb)))
        long_options("--", options_of(general))
        check("text --style ", {"aps", "acs", "iop", "nature", "wiley", "springer"})
        check("--style n", {"nature"})
        check("--output-dir text cle", {verb for verb in verbs if verb.startswith("clean-")})
        long_options("--output-dir text journals --", options_of(help_of("journals")))
        check("--quiet cle", {verb for verb in verbs if verb.startswith("clean-")})
        check("journals --journal-names ", {"full", "abbreviated"})
        check("clean-tags --keep ", tags, exact=False)
        check("clean-tags --output-dir ", {"somewhere"} if SHELL != "fish" else {"somewhere/"},
              exact=False)
        check("clean-tags so", {"bash": {"some lit.bib", "somewhere"}, "zsh": {"some.bib"},
                                "fish": {"some.bib", "somewhere/"}}[SHELL], exact=False)
        if SHELL == "bash":
            check("clean-tags --keep doi,ti", {"doi,title", "doi,timestamp"})
            check("text --style=na", {"nature"})
        if SHELL == "fish":
            check("clean-tags --keep doi,ti", {"doi,title", "doi,timestamp"}, exact=False)
        os.chdir("/")
    return 1 if FAILURES else 0


if __name__ == "__main__":
    sys.exit(main())
