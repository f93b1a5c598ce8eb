#!/usr/bin/env python3
"""The house's interpreter: turns strings.json into Qt Linguist files, one for each language.

    make_ts.py OUTDIR [TABLE NAME]  writes OUTDIR/NAME_<language>.ts from the given table; without
                                    one, the panel's own under the name "Localizable"
    make_ts.py --languages          prints the languages of the panel's table

Texts are looked up by id, so compile with `lrelease -idbased`, never with -compress, which drops
what a lookup by id needs. A key that lacks a language, an empty text, or a key that stands in the
table twice is an error.
"""
import json
import sys
from pathlib import Path
from xml.sax.saxutils import escape, quoteattr

PANEL_TABLE = Path(__file__).with_name("strings.json")


def unique_keys(pairs):
    keys = [key for key, _ in pairs]
    twice = sorted({key for key in keys if keys.count(key) > 1})
    if twice:
        raise SystemExit(f"more than once: {', '.join(twice)}")
    return dict(pairs)


def read_table(path):
    table = json.loads(path.read_text(encoding="utf-8"), object_pairs_hook=unique_keys)
    for key, texts in table["texts"].items():
        for language in table["languages"]:
            if not texts.get(language, "").strip():
                raise SystemExit(f"{path.name}: {key} has no text in {language}")
        unknown = set(texts) - set(table["languages"])
        if unknown:
            raise SystemExit(f"{path.name}: {key} has texts in unknown languages: {unknown}")
    return table


def ts_document(language, texts):
    messages = "\n".join(
        f"    <message id={quoteattr(key)}>\n"
        f"      <source>{escape(by_language['en'])}</source>\n"
        f"      <translation>{escape(by_language[language])}</translation>\n"
        "    </message>" for key, by_language in texts.items())
    return ('<?xml version="1.0" encoding="utf-8"?>\n<!DOCTYPE TS>\n'
            f'<TS version="2.1" language="{language}" sourcelanguage="en">\n'
            f"  <context>\n    <name></name>\n{messages}\n  </context>\n</TS>\n")


def main():
    arguments = sys.argv[1:]
    if len(arguments) not in (1, 3):
        raise SystemExit(__doc__)
    path, name = (Path(arguments[1]), arguments[2]) if len(arguments) == 3 else (PANEL_TABLE, "Localizable")
    table = read_table(path)
    if arguments[0] == "--languages":
        print("\n".join(table["languages"]))
        return
    outdir = Path(arguments[0])
    outdir.mkdir(parents=True, exist_ok=True)
    for language in table["languages"]:
        target = outdir / f"{name}_{language}.ts"
        target.write_text(ts_document(language, table["texts"]), encoding="utf-8")


if __name__ == "__main__":
    main()
