"""What the program's own help says there is."""
import functools
import os
import re
import subprocess

PROGRAM = os.environ["LABELCUT_PROGRAM"]


@functools.cache
def help_of(command=None):
    arguments = [PROGRAM, *([command] if command else []), "--help"]
    return subprocess.run(arguments, check=True, text=True, stdout=subprocess.PIPE).stdout


def commands():
    listed = help_of().split("Subcommands:")[1]
    return sorted(re.findall(r"^  ([a-z][a-z-]*)  ", listed, re.MULTILINE))


def options(command=None):
    """Short and long names, as in "-p,--printer QUEUE"."""
    names = set()
    for line in help_of(command).split("Subcommands:")[0].splitlines():
        match = re.match(r"\s+((?:-\w,)?--[\w-]+)", line)
        if match:
            names.update(match[1].split(","))
    return sorted(names)
