"""Completion offers what there is, in each shell, as the shell itself would."""
import os
import pathlib
import pty
import re
import select
import shlex
import subprocess
import tempfile
import time
import unittest

import help_text

SOURCES = pathlib.Path(os.environ["LABELCUT_SOURCES"])
SCRIPTS = SOURCES / "packaging/linux"
PPD = SOURCES / "samples/tape.ppd"

KEYWORDS = SETTINGS = FOLDER = ENVIRONMENT = None  # setUpModule


def setUpModule():
    global KEYWORDS, SETTINGS, FOLDER, ENVIRONMENT
    listed = subprocess.run([help_text.PROGRAM, "options", "--ppd", PPD], check=True, text=True,
                            stdout=subprocess.PIPE).stdout
    rows = re.findall(r"^(\w+) \(.*\n    (.*)$", listed, re.MULTILINE)
    KEYWORDS = sorted(keyword for keyword, _ in rows)
    SETTINGS = sorted(f"{keyword}={re.match(r'[*]?(.+?)(?: [(]|$)', choice)[1]}"
                      for keyword, choices in rows for choice in choices.split(", "))
    FOLDER = tempfile.TemporaryDirectory()
    unittest.addModuleCleanup(FOLDER.cleanup)
    # A print service that knows two queues.
    programs = pathlib.Path(FOLDER.name, "programs")
    programs.mkdir()
    lpstat = programs / "lpstat"
    lpstat.write_text('#!/bin/sh\n[ "$1" = -e ] && printf "Roll\\nTape\\n"\n')
    lpstat.chmod(0o755)
    (programs / "labelcut").symlink_to(help_text.PROGRAM)
    ENVIRONMENT = dict(os.environ, PATH=f"{programs}:{os.environ['PATH']}", HOME=FOLDER.name,
                       TERM="dumb", XDG_CONFIG_HOME=FOLDER.name, XDG_DATA_HOME=FOLDER.name)


def run(*arguments):
    return subprocess.run(arguments, check=True, text=True, stdout=subprocess.PIPE, cwd=FOLDER.name,
                          env=ENVIRONMENT, timeout=60).stdout


class Shell:
    """An interactive shell with a terminal, for what only such a shell does."""

    def __init__(self, *arguments):
        self.pid, self.terminal = pty.fork()
        if self.pid == 0:
            os.chdir(FOLDER.name)
            os.execvpe(arguments[0], arguments, dict(ENVIRONMENT, COLUMNS="400", LINES="100"))
        self.seen = ""

    def type(self, text):
        os.write(self.terminal, text.encode())

    def wait_for(self, pattern, seconds=60):
        """What came, up to the end of the pattern."""
        deadline = time.monotonic() + seconds
        while not (match := re.search(pattern, self.seen)):
            ready, _, _ = select.select([self.terminal], [], [], deadline - time.monotonic())
            if not ready:
                raise AssertionError(f"{pattern!r} did not come:\n{self.seen}")
            self.seen += os.read(self.terminal, 65536).decode(errors="replace")
        come, self.seen = self.seen[:match.end()], self.seen[match.end():]
        return come

    def close(self):
        os.close(self.terminal)
        os.waitpid(self.pid, 0)


def bash(line):
    """What the completion function offers at the end of a line, split as bash splits it."""
    breaks = r"""([^\s"'><=;|&(:@]+|[><=;|&(:@]+)"""
    words = re.findall(breaks, line) + ([""] if line.endswith(" ") else [])
    script = (f"source {shlex.quote(str(SCRIPTS / 'labelcut.bash'))}\n"
              f"COMP_LINE={shlex.quote(line)} COMP_POINT={len(line)}\n"
              f"COMP_WORDS=({' '.join(map(shlex.quote, words))}) COMP_CWORD={len(words) - 1}\n"
              "_labelcut labelcut\n"
              'printf "%s\\n" "${COMPREPLY[@]}"\n')
    return sorted(filter(None, run("bash", "--norc", "-c", script).splitlines()))


class Bash(unittest.TestCase):
    def test_commands_and_documents(self):
        self.assertEqual(bash("labelcut "), sorted(help_text.commands() + os.listdir(FOLDER.name)))
        self.assertEqual(bash("labelcut pri"), ["print"])
        self.assertEqual(bash("labelcut presets "), help_text.commands("presets"))

    def test_options_are_those_of_the_help(self):
        for command in [None, *help_text.all_commands()]:
            with self.subTest(command=command):
                line = f"labelcut {command} -" if command else "labelcut -"
                self.assertEqual(bash(line), help_text.options(command))

    def test_queues(self):
        self.assertEqual(bash("labelcut print --printer "), ["Roll", "Tape"])
        self.assertEqual(bash("labelcut print -p T"), ["Tape"])
        self.assertEqual(bash("labelcut print --printer=R"), ["Roll"])

    def test_keywords_and_choices_of_the_printer_that_was_named(self):
        for printer in (f"--ppd {PPD}", f"--ppd={PPD}"):
            line = f"labelcut print {printer} --set "
            self.assertEqual(bash(line), [f"{keyword}=" for keyword in KEYWORDS])
            # Bash itself keeps what stands in front of the equals sign.
            self.assertEqual(bash(line + "KvHalfCut="), ["OFF", "ON"])
            self.assertEqual(bash(line + "KvHalfCut=OF"), ["OFF"])
            self.assertEqual(bash(line + "NoSuchThing="), [])
        self.assertEqual(bash(f"labelcut print --ppd {PPD} -s KvHalfCut=ON -s KvHalfCut=OF"), ["OFF"])
        self.assertEqual(bash("labelcut print --set "), [])
        self.assertEqual(bash("labelcut print --ppd /nonexistent --set "), [])

    def test_presets_of_the_printer_that_was_named(self):
        run("labelcut", "presets", "save", "Shelf labels", "--ppd", PPD, "--set", "KvHalfCut=ON")
        self.addCleanup(run, "labelcut", "presets", "remove", "Shelf labels", "--ppd", PPD)
        for line in ("print --ppd {} --preset ", "print --ppd {} --preset Sh",
                     "presets show --ppd {} ", "presets remove --ppd {} Sh"):
            self.assertEqual(bash("labelcut " + line.format(PPD)), ["Shelf\\ labels"], line)

    def test_presets_of_the_default_printer(self):
        """A program that says its arguments shows that no printer is named to it."""
        program = pathlib.Path(FOLDER.name, "programs/echo")
        program.write_text('#!/bin/sh\necho "$@"\n')
        program.chmod(0o755)
        self.assertEqual(bash(f"{program} print --preset "), ["presets\\ list\\ --timeout\\ 2"])
        self.assertEqual(bash(f"{program} print --printer Roll --preset "),
                         ["presets\\ list\\ --timeout\\ 2\\ --printer\\ Roll"])
        program.unlink()

    def test_nothing_that_a_ppd_says_is_carried_out(self):
        ppd = pathlib.Path(FOLDER.name, "hostile.ppd")
        ppd.write_text(PPD.read_text("utf-8").replace("*PageSize T24/",
                                                      "*PageSize $(touch${IFS}gone)/"), "utf-8")
        offered = bash(f"labelcut print --ppd {ppd} --page-size ")
        self.assertEqual([name for name in offered if "touch" in name],
                         [r"\$\(touch\$\{IFS\}gone\)"])
        self.assertFalse(pathlib.Path(FOLDER.name, "gone").exists())

    def test_papers_and_languages(self):
        papers = bash(f"labelcut snapshot --ppd {PPD} --page-size ")
        self.assertEqual(papers, sorted(re.findall(r"^\*PageSize ([^/:]+)", PPD.read_text("utf-8"),
                                                   re.MULTILINE)))
        self.assertEqual(bash("labelcut snapshot --language zh"), ["zh_CN"])

    def test_files(self):
        pathlib.Path(FOLDER.name, "my-labels.pdf").touch()
        for line in ("my-l", "--printer Tape my-l", "other.pdf my-l", "print my-l", "dialog my-l", "panel-script my-l", "options --ppd my-l",
                     "print -o my-l"):
            self.assertEqual(bash(f"labelcut {line}"), ["my-labels.pdf"], line)

    def test_in_a_shell_with_a_terminal(self):
        pathlib.Path(FOLDER.name, "two words.pdf").touch()
        shell = Shell("bash", "--norc", "-i")
        self.addCleanup(shell.close)
        shell.type(f"source {shlex.quote(str(SCRIPTS / 'labelcut.bash'))}; PS1=; "
                   "bind 'set bell-style none'; echo rea''dy\r")
        shell.wait_for("ready")
        shell.type(f"labelcut pri\ttwo\t--ppd {PPD} --set KvHalf\tOF\t--op\x01echo \r")
        # The first line is what was typed, the second what the shell made of it.
        shell.wait_for(r"\nlabelcut print two words\.pdf --ppd \S+ --set KvHalfCut=OFF --op\r")


def fish(line):
    offered = run("fish", "--no-config", "-c",
                  f"source {SCRIPTS / 'labelcut.fish'}; complete -C {shlex.quote(line)}")
    return sorted(row.split("\t")[0] for row in offered.splitlines())


class Fish(unittest.TestCase):
    def test_commands_and_documents(self):
        pathlib.Path(FOLDER.name, "my-labels.pdf").touch()
        offered = fish("labelcut ")
        self.assertIn("my-labels.pdf", offered)
        self.assertEqual([word for word in offered if not pathlib.Path(FOLDER.name, word).exists()],
                         help_text.commands())
        self.assertEqual(fish("labelcut presets "), help_text.commands("presets"))

    def test_options_are_those_of_the_help(self):
        for command in [None, *help_text.all_commands()]:
            with self.subTest(command=command):
                line = f"labelcut {command} -" if command else "labelcut -"
                self.assertEqual(fish(line), help_text.options(command))

    def test_queues(self):
        self.assertEqual(fish("labelcut print --printer "), ["Roll", "Tape"])

    def test_keywords_and_choices_of_the_printer_that_was_named(self):
        self.assertEqual(fish(f"labelcut print --ppd {PPD} --set "), SETTINGS)
        self.assertEqual(fish(f"labelcut print --ppd={PPD} --set KvHalfCut="),
                         ["KvHalfCut=OFF", "KvHalfCut=ON"])


class Zsh(unittest.TestCase):
    def setUp(self):
        self.shell = Shell("zsh", "-f", "-i")
        self.addCleanup(self.shell.close)
        self.shell.type(f"fpath=({SCRIPTS} $fpath); autoload -U compinit; compinit -u -D; PS1=; "
                        "LISTMAX=10000; unsetopt beep always_last_prompt; print rea''dy\r")
        self.shell.wait_for("ready")

    def offered(self, line, sign):
        """Everything on the screen after two tabs, with a sign of it, and that the shell lives on."""
        self.shell.type(line)
        self.shell.wait_for(re.escape(line[-8:]))
        self.shell.type("\t\t")
        screen = self.shell.wait_for(sign)
        time.sleep(0.5)
        self.shell.type("\x15print do''ne\r")
        return screen + self.shell.wait_for(r"\ndone")

    def test_commands_and_documents(self):
        pathlib.Path(FOLDER.name, "zebra.pdf").touch()
        screen = self.offered("labelcut ", "zebra.pdf")
        for command in help_text.commands():
            self.assertRegex(screen, rf"(?<![\w-]){command} +--")

    def test_options_are_those_of_the_help(self):
        for command in [None, *help_text.all_commands()]:
            with self.subTest(command=command):
                line = f"labelcut {command} -" if command else "labelcut -"
                screen = self.offered(line, "--help")
                named = set(re.findall(r"(?<![\w-])(-\w|--\w[\w-]*)(?![\w-])", screen))
                self.assertEqual(sorted(named), help_text.options(command))

    def test_keywords_and_choices_of_the_printer_that_was_named(self):
        screen = self.offered(f"labelcut print --ppd {PPD} --set KvHalfCut=O", "=OFF")
        self.assertIn("KvHalfCut=OFF", screen)
        self.assertIn("KvHalfCut=ON", screen)


if __name__ == "__main__":
    unittest.main()
