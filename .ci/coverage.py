#!/usr/bin/env python3
"""Gathers what the tests of a build folder have reached into FOLDER/report.

    coverage.py FOLDER

FOLDER was built with the preset "coverage" and its tests have run. There are then, in
FOLDER/report: folders.txt (lines and branches by folder), files.txt (by file, with the lines that
were not reached) and index.html (the sources themselves).

The branches that the compiler makes for exceptions that a call might throw are left out
(--exclude-throw-branches): nearly every line of Qt code has one, and nearly all stand for a memory
that is exhausted. Code that gcc calls unreachable is left out as well, and so are the tests' second
builds of the plug-in's sources: gcc numbers the branches of two builds of one line differently, and
their sum would count exceptions again. Nothing else is.
"""
import collections
import json
import pathlib
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
FOLDERS = ("plugins", "platform", "host")


def gather(build, report):
    command = ["gcovr", "--root", str(ROOT), "--object-directory", str(build),
               "--exclude-throw-branches", "--exclude-unreachable-branches",
               "--exclude", ".*_autogen/.*", "--exclude-directories", ".*second_build.*",
               "--txt", str(report / "files.txt"), "--html-details", str(report / "index.html"),
               "--json-summary", str(report / "summary.json")]
    for folder in FOLDERS:
        command += ["--filter", f"{ROOT}/{folder}/"]
    subprocess.run([*command, str(build)], check=True, cwd=ROOT, stdout=subprocess.DEVNULL)
    return json.loads((report / "summary.json").read_text())["files"]


def share(covered, total):
    return f"{covered:6} of {total:6}  {100 * covered / total:5.1f} %" if total else f"{'-':>25}"


def table(files):
    sums = collections.defaultdict(collections.Counter)
    for entry in files:
        folder = str(pathlib.PurePath(entry["filename"]).parent)
        for name in {folder, "plug-in" if folder.split("/")[0] in FOLDERS[:5] else None, "all"} - {None}:
            for key in ("line_covered", "line_total", "branch_covered", "branch_total"):
                sums[name][key] += entry[key]
    yield f"{'folder':20}{'lines':>25}  {'branches':>25}"
    for name in sorted(sums, key=lambda n: (n == "all", n == "plug-in", n)):
        s = sums[name]
        yield (f"{name:20}{share(s['line_covered'], s['line_total'])}  "
               f"{share(s['branch_covered'], s['branch_total'])}")


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    build = pathlib.Path(sys.argv[1]).resolve()
    report = build / "report"
    report.mkdir(exist_ok=True)
    lines = "\n".join(table(gather(build, report))) + "\n"
    (report / "folders.txt").write_text(lines)
    print(lines, end="")


if __name__ == "__main__":
    main()
