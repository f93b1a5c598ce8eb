"""Reads llvm-cov's export of a summary and prints, by folder of ours, what was reached.

    llvm-cov export -summary-only … | coverage_by_folder.py ROOT

Folders of which nothing was reached, and those of the tests and targets themselves, are left out.
"""
import collections
import json
import os
import pathlib
import sys

OTHERS = ("build", "tests", "fuzzing", "benchmarks")


def share(counts):
    return f"{100 * counts['covered'] / counts['count']:5.1f} %" if counts["count"] else "      -"


def main(root):
    root = pathlib.Path(root).resolve()
    folders = collections.defaultdict(lambda: {"lines": collections.Counter(),
                                               "branches": collections.Counter()})
    for entry in json.load(sys.stdin)["data"][0]["files"]:
        path = pathlib.Path(os.path.normpath(entry["filename"]))
        if not path.is_relative_to(root):
            continue
        folder = path.relative_to(root).parent
        if folder.parts and folder.parts[0] in OTHERS:
            continue
        for kind, sums in folders[str(folder)].items():
            sums.update({name: entry["summary"][kind][name] for name in ("count", "covered")})
    print(f"{'folder':20} {'lines':>16} {'branches':>16}")
    for folder, kinds in sorted(folders.items()):
        if kinds["lines"]["covered"]:
            print(f"{folder:20}" + "".join(
                f" {kinds[kind]['covered']:5}/{kinds[kind]['count']:<5}{share(kinds[kind])}"
                for kind in ("lines", "branches")))


if __name__ == "__main__":
    main(*sys.argv[1:])
