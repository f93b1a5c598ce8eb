"""Security: a text is filled in one go, so that what is filled in is never filled again.

QString::arg() replaces the lowest place that is left, and a name such as "%2.pdf" brings one along.
"""
import pathlib
import sys


def end_of_call(text, begin):
    """The position behind the parenthesis that closes the one at `begin`."""
    depth, position, quote = 0, begin, None
    while True:
        c = text[position]
        if quote:
            position += c == "\\"
            quote = None if c == quote else quote
        elif c == '"' or c == "'" and not text[position - 1].isdigit():
            quote = c
        elif c == "(":
            depth += 1
        elif c == ")":
            depth -= 1
            if depth == 0:
                return position + 1
        position += 1


def filled_twice(text):
    found, position = [], text.find(".arg(")
    while position >= 0:
        end = end_of_call(text, position + len(".arg"))
        if text[end:].lstrip().startswith(".arg("):
            found.append(text.count("\n", 0, position) + 1)
        position = text.find(".arg(", position + 1)
    return found


def main(root):
    assert filled_twice('x("%1 %2").arg(f(")", a))\n  .arg(b)') == [1]
    assert filled_twice('x("%1 %2").arg(f(\')\', a), c.arg(b)); y.arg(z)') == []
    bad, seen = [], 0
    for folder in ("host", "platform", "plugins"):
        for source in sorted((root / folder).rglob("*.cpp")) + sorted((root / folder).rglob("*.h")):
            seen += 1
            bad += [f"{source}:{line}: .arg(…).arg(…)" for line in filled_twice(source.read_text())]
    assert seen > 100, seen
    print("\n".join(bad))
    return bool(bad)


sys.exit(main(pathlib.Path(sys.argv[1])))
