#!/usr/bin/env python3
"""Texts by key: sources and tables fit together, and translations fill in what English does.

    text_keys_test.py SOURCE_TREE
"""
import json
import pathlib
import re
import sys
import unittest

TREE = pathlib.Path(sys.argv.pop(1))
LITERAL = re.compile(r'"((?:[^"\\]|\\.)*)"')
# A sentence, or the greater part of one: three words behind each other.
PROSE = re.compile(r"(?:^|[^\w%])[A-Za-z']{2,} [a-z']+ [a-z']+")
QUOTES = {"en": "“”", "de": "„“", "fr": "«»", "es": "«»", "ja": "「」", "zh_CN": "“”"}


def without_comments(source):
    """Nor quotes that are characters."""
    return re.sub(r"(?m)//[^\n\"]*$|^\s*///?.*$|'\\?\"'", "", source)


def called(source, name):
    """The arguments of each call of `name`, and where it ends."""
    for call in re.finditer(re.escape(name) + r"\(", source):
        depth, end, quoted = 1, call.end(), False
        while depth:
            character = source[end]
            if character == "\\":
                end += 1
            elif character == '"':
                quoted = not quoted
            elif not quoted and character in "()":
                depth += 1 if character == "(" else -1
            end += 1
        yield source[call.end():end - 1], end


class Room:
    """A table of texts, perhaps in several files, and the sources that use it."""

    def __init__(self, function, folder, tables):
        paths = sorted(TREE.glob(folder))
        self.function = function
        self.sources = {path: without_comments(path.read_text(encoding="utf-8"))
                        for path in paths if path.suffix in (".cpp", ".h")}
        self.tables = [json.loads(path.read_text(encoding="utf-8"))
                       for path in sorted(TREE.glob(tables))]
        self.texts = {key: texts for table in self.tables for key, texts in table["texts"].items()}

    def literals(self):
        return {literal for source in self.sources.values() for literal in LITERAL.findall(source)}

    def named(self):
        """Keys in calls of the function, and those that are marked as keys."""
        return {key for source in self.sources.values() for name in (self.function, "QT_TRID_NOOP")
                for arguments, _ in called(source, name) for key in LITERAL.findall(arguments)}


ROOMS = [Room("hostText", "host/**/*", "host/*/texts.json")]
# Where every sentence is for people who print, not for those who write commands or panels.
TRANSLATED = ("host/core", "host/dialog", "host/documents", "host/job", "host/panels",
              "host/presets", "host/printers", "host/service", "host/settings")


class TextKeys(unittest.TestCase):
    def test_rooms_are_found(self):
        for room in ROOMS:
            self.assertGreater(len(room.texts), 20, room.function)
            self.assertGreater(len(room.named()), 20, room.function)

    def test_no_key_stands_in_two_tables(self):
        for room in ROOMS:
            self.assertEqual(len(room.texts), sum(len(table["texts"]) for table in room.tables))

    def test_keys_of_the_sources_exist(self):
        for room in ROOMS:
            self.assertEqual(room.named() - set(room.texts), set())

    def test_keys_of_the_tables_are_used(self):
        for room in ROOMS:
            self.assertEqual(set(room.texts) - room.literals(), set())

    def test_every_language_has_every_text_with_its_places(self):
        for room in ROOMS:
            for table in room.tables:
                self.assertEqual(table["languages"], list(QUOTES))
            for key, texts in room.texts.items():
                self.assertEqual(list(texts), list(QUOTES), key)
                places = set(re.findall(r"%\d", texts["en"]))
                for language, text in texts.items():
                    self.assertNotEqual(text.strip(), "", key)
                    self.assertEqual(set(re.findall(r"%\d", text)), places, (key, language))

    def test_quotes_are_those_of_the_language(self):
        for room in ROOMS:
            for key, texts in room.texts.items():
                for language, text in texts.items():
                    found = set(re.findall("[\"“”„«»「」]", text))
                    self.assertLessEqual(found, set(QUOTES[language]), (key, language))

    def test_sentences_stand_in_tables_only(self):
        for room in ROOMS:
            for path, source in room.sources.items():
                if not str(path.relative_to(TREE)).startswith(TRANSLATED):
                    continue
                for arguments, _ in called(source, "QStringLiteral"):
                    text = "".join(LITERAL.findall(arguments))
                    self.assertIsNone(PROSE.search(text), f"{path}: {text}")

    def test_all_places_are_filled_in_at_once(self):
        for room in ROOMS:
            for path, source in room.sources.items():
                for arguments, end in called(source, ".arg"):
                    self.assertFalse(source[end:].lstrip().startswith(".arg("),
                                     f"{path}: .arg({arguments}) and another")


if __name__ == "__main__":
    unittest.main()
