"""The manual page says what there is: no option more, none less."""
import os
import pathlib
import re
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


if __name__ == "__main__":
    unittest.main()
