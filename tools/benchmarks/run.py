#!/usr/bin/env python3
"""Performance: runs rows beside their peers and writes the table; tools/bench builds and calls it.

    run.py [--runs N] [ROW…]     every row without one named; --list names them
"""
import argparse
import fcntl
import subprocess
import sys
import time

from harness import BUILD, Surroundings
from report import CURVE_HEAD, machine, table
from rows import ROWS, Bench

LEAST_RUNS = 11


def revision():
    def git(*arguments):
        return subprocess.run(["git", "-C", BUILD.parent.parent, *arguments], capture_output=True,
                              text=True, check=False).stdout.strip()
    return git("rev-parse", "--short", "HEAD") + (" and changes" if git(
        "status", "--porcelain", "--untracked-files=no") else "")


def text_of(bench, lines, names):
    cpu, system = machine()
    parts = [f"Rows {', '.join(names)} at {revision()}, on 2 cores of {cpu}, {system}, Qt 6.4.2; "
             f"wall times are medians of {bench.runs} runs in turn.\n"]
    if lines:
        parts.append(table(lines))
    if bench.curves:
        parts.append("\n".join([CURVE_HEAD, *bench.curves]) + "\n")
    for name, phases in bench.profiles:
        parts.append(f"Where the instructions of `{name}` go, each line with all that it calls; "
                     "some lie within others.\n\n| | instructions |\n| --- | --- |\n"
                     + "\n".join(phases) + "\n")
    return "\n".join(parts)


def main():
    parser = argparse.ArgumentParser(description="Measures Labelcut beside its peers.")
    parser.add_argument("rows", nargs="*", metavar="ROW", help=", ".join(ROWS))
    parser.add_argument("--runs", type=int, default=LEAST_RUNS, help="wall-time runs of each")
    arguments = parser.parse_args()
    unknown = [row for row in arguments.rows if row not in ROWS]
    if unknown:
        parser.error(f"there is no row {unknown[0]}; there are {', '.join(ROWS)}")
    names = arguments.rows or list(ROWS)
    turn = open(BUILD / "lock", "w", encoding="ascii")
    fcntl.flock(turn, fcntl.LOCK_EX)  # two runs at once would share the scratch folder
    surroundings = Surroundings()
    started = time.monotonic()
    bench = Bench(surroundings, max(arguments.runs, LEAST_RUNS), lambda text: print(
        f"[{time.monotonic() - started:5.0f} s] {text}", file=sys.stderr, flush=True))
    lines = []
    try:
        for name in names:
            try:
                lines += ROWS[name](bench)
            finally:
                bench.close()
    finally:
        surroundings.close()
    text = text_of(bench, lines, names)
    (BUILD / "table.md").write_text(text, encoding="utf-8")
    print(text)


if __name__ == "__main__":
    main()
