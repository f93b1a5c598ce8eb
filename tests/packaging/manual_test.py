"""The manual page and every help say what there is, no option more, none less, with examples."""
import os
import pathlib
import re
import shutil
import subprocess
import tempfile
import unittest

import help_text

PAGE = pathlib.Path(os.environ["LABELCUT_BUILD"], "packaging/linux/labelcut.1").read_text("utf-8")


def plain(roff):
    """Without fonts and escapes."""
    return re.sub(r"\\f.|\"", "", roff).replace("\\-", "-")


def sections():
    """The text under "OPTIONS" and under every "labelcut COMMAND"."""
    found = {}
    for part in re.split(r"^\.S[HS] ", PAGE, flags=re.MULTILINE)[1:]:
        heading, _, body = part.partition("\n")
        heading = plain(heading)
        if heading == "OPTIONS":
            found[None] = body
        elif heading.startswith("labelcut "):
            words = re.findall(r" ([a-z][a-z-]*)(?= |$)", heading)
            found[" ".join(words)] = body
    return found


def options(body):
    names = set()
    for tag in re.findall(r"^\.TP\n\.BR? (.*)$", body, re.MULTILINE):
        names.update(re.findall(r"(?<![\w-])--?\w[\w-]*", plain(tag)))
    return sorted(names)


def manual_examples():
    """Every line of an example that starts the program."""
    blocks = re.findall(r"^\.EX\n(.*?)^\.EE$", PAGE, re.MULTILINE | re.DOTALL)
    lines = "".join(blocks).replace("\\-", "-").replace("\\(aq", "'").splitlines()
    return [line for line in lines if re.search(r"(^|\| )labelcut ", line)]


class Manual(unittest.TestCase):
    def test_every_command_has_its_section(self):
        self.assertGreaterEqual(len(help_text.all_commands()), 5)
        self.assertEqual(sorted(filter(None, sections())), sorted(help_text.all_commands()))

    def test_every_command_is_in_the_synopsis(self):
        synopsis = plain(PAGE.split(".SH SYNOPSIS")[1].split(".SH ")[0])
        for name in " ".join(help_text.all_commands()).split():
            self.assertRegex(synopsis, rf"(?<![\w-]){name}(?![\w-])")

    def test_options_are_those_of_the_help(self):
        for command in [None, *help_text.all_commands()]:
            with self.subTest(command=command):
                self.assertIn("--help", help_text.options(command))
                self.assertEqual(options(sections()[command]), help_text.options(command))

    def test_values_are_named_as_in_the_help(self):
        """"--printer QUEUE" there is "--printer QUEUE" here."""
        for command in help_text.all_commands():
            body = plain(sections()[command])
            for option, value in re.findall(r"(--[\w-]+) ([A-Z][A-Z=-]+)\b",
                                            help_text.help_of(command)):
                with self.subTest(command=command, option=option):
                    if value not in ("FLOAT", "INT", "TEXT", "REQUIRED"):
                        self.assertRegex(body, f"{option} {value}\\b")

    def test_ranges_and_languages_are_those_of_the_program(self):
        for low, high in re.findall(r"in \[([\d.]+) - ([\d.]+)\]", help_text.help_of("print") +
                                    help_text.help_of("snapshot")):
            low, high = (re.sub(r"\.0*$", "", number) for number in (low, high))
            self.assertIn(f"from {low} to {high}", plain(PAGE))


class Examples(unittest.TestCase):
    def setUp(self):
        """A folder with what the examples name, and neither a display nor a print service."""
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        samples = pathlib.Path(os.environ["LABELCUT_SOURCES"], "samples")
        for name in ("labels.pdf", "tape.ppd"):
            shutil.copy(samples / name, self.folder)
        (self.folder / "script.jsonl").write_text('{"do":"open","ppd":"tape.ppd"}\n', "utf-8")
        (self.folder / "labelcut").symlink_to(help_text.PROGRAM)
        kept = {name: value for name, value in os.environ.items()
                if name not in ("DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "LPDEST", "PRINTER")}
        self.environment = dict(kept, PATH=f"{self.folder}:{os.environ['PATH']}",
                                HOME=str(self.folder), XDG_CONFIG_HOME=str(self.folder))

    def carry_out(self, line):
        line = line.replace("/tmp/", f"{self.folder}/")
        return subprocess.run(["sh", "-c", line], cwd=self.folder, env=self.environment, text=True,
                              stdin=subprocess.DEVNULL, capture_output=True, timeout=60)

    def test_every_help_ends_with_some_of_its_command(self):
        for command in [None, *help_text.all_commands()]:
            with self.subTest(command=command):
                examples = help_text.examples(command)
                self.assertTrue(examples)
                start = f"labelcut {command}" if command else "labelcut"
                for line in examples:
                    self.assertRegex(line, rf"(^|\| ){start}( |$)")

    def test_the_manual_has_all_of_every_help(self):
        manual = manual_examples()
        for command in [None, *help_text.all_commands()]:
            for line in help_text.examples(command):
                self.assertIn(line, manual)

    def test_the_program_understands_each(self):
        for line in manual_examples():
            with self.subTest(line=line):
                done = self.carry_out(line)
                self.assertIn(done.returncode, (0, 1), done.stderr)

    def test_those_that_need_neither_a_queue_nor_a_display_nor_a_preset_succeed(self):
        lines = [line for line in manual_examples()
                 if ("tape.ppd" in line or "script" in line or "--help" in line) and
                 not re.search("--preset|dialog", line)]
        self.assertGreaterEqual(len(lines), 6)
        for line in lines:
            with self.subTest(line=line):
                done = self.carry_out(line)
                self.assertEqual(done.returncode, 0, done.stderr)

    def test_a_line_that_is_not_understood_would_be_noticed(self):
        self.assertEqual(self.carry_out("labelcut print labels.pdf --prniter Tape").returncode, 2)


if __name__ == "__main__":
    unittest.main()
