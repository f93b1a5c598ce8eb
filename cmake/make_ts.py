#!/usr/bin/env python3
"""The house's interpreter: turns JSON tables into Qt Linguist files, one for each language.

    make_ts.py OUTDIR NAME TABLE…   joins the tables and writes OUTDIR/NAME_<language>.ts
    make_ts.py --languages TABLE…   prints the languages of the tables

Texts are looked up by id, so compile with `lrelease -idbased`, never with -compress, which drops
what a lookup by id needs. Errors are: a key that lacks a language, an empty text, a translation
whose places (%1, %2 …) are not those of the English text, a key that stands in the tables twice,
tables of different languages.
"""
import json
import re
import sys
from pathlib import Path
from xml.sax.saxutils import escape, quoteattr


def unique_keys(pairs):
    keys = [key for key, _ in pairs]
    twice = sorted({key for key in keys if keys.count(key) > 1})
    if twice:
        raise SystemExit(f"more than once: {', '.join(twice)}")
    return dict(pairs)


def places(text):
    return sorted(set(re.findall(r"%\d+", text)))


def check_entry(key, texts, languages):
    unknown = set(texts) - set(languages)
    if unknown:
        raise SystemExit(f"{key} has texts in unknown languages: {', '.join(sorted(unknown))}")
    for language in languages:
        if not texts.get(language, "").strip():
            raise SystemExit(f"{key} has no text in {language}")
        if places(texts[language]) != places(texts["en"]):
            raise SystemExit(f"{key} has other places in {language} than in English")


def read_tables(paths):
    tables = [json.loads(path.read_text(encoding="utf-8"), object_pairs_hook=unique_keys)
              for path in paths]
    languages = tables[0]["languages"]
    if any(table["languages"] != languages for table in tables):
        raise SystemExit(f"not of the same languages: {', '.join(map(str, paths))}")
    texts = unique_keys([pair for table in tables for pair in table["texts"].items()])
    for key, by_language in texts.items():
        check_entry(key, by_language, languages)
    return languages, texts


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
    if len(arguments) > 1 and arguments[0] == "--languages":
        print("\n".join(read_tables([Path(path) for path in arguments[1:]])[0]))
        return
    if len(arguments) < 3:
        raise SystemExit(__doc__)
    languages, texts = read_tables([Path(path) for path in arguments[2:]])
    outdir = Path(arguments[0])
    outdir.mkdir(parents=True, exist_ok=True)
    for language in languages:
        target = outdir / f"{arguments[1]}_{language}.ts"
        target.write_text(ts_document(language, texts), encoding="utf-8")


if __name__ == "__main__":
    main()
