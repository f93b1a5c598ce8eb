"""What the program's own help says there is."""
import functools
import os
import re
import subprocess

PROGRAM = os.environ["LABELCUT_PROGRAM"]


@functools.cache
def help_of(command=None):
    """@param command  such as "print" or "presets list"; None: the program's."""
    arguments = [PROGRAM, *(command or "").split(), "--help"]
    return subprocess.run(arguments, check=True, text=True, stdout=subprocess.PIPE).stdout


def commands(above=None):
    """The names of the commands right below another."""
    listed = help_of(above).partition("Subcommands:")[2].partition("Examples:")[0]
    return sorted(re.findall(r"^  ([a-z][a-z-]*)  ", listed, re.MULTILINE))


def all_commands(above=None):
    """As they are typed, "presets list" among them, with the commands above them."""
    found = []
    for name in commands(above):
        command = f"{above} {name}" if above else name
        found += [command, *all_commands(command)]
    return found


def options(command=None):
    """Short and long names, as in "-p,--printer QUEUE"."""
    names = set()
    for line in help_of(command).split("Subcommands:")[0].splitlines():
        match = re.match(r"\s+((?:-\w,)?--[\w-]+)", line)
        if match:
            names.update(match[1].split(","))
    return sorted(names)


def examples(command=None):
    """The lines at the end of a command's help, as they are typed."""
    return [line.strip() for line in help_of(command).partition("\nExamples:\n")[2].splitlines()]
