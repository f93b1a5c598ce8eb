#!/usr/bin/env python3
"""Changes one thing at a time in the plug-in's sources and asks whether a test notices.

    tools/mutate [--mutants N] [--seed S] [--list] [--known] [FOLDER…]

Without a folder all of FOLDERS are taken; every one gets its share of the N mutants. A mutant is a
copy of one source with a number one off, a comparison turned, && and || exchanged, a condition
negated, true and false exchanged, a statement left out, or two neighbours exchanged. It is built
and run against the tests of its folder only. Which mutants are taken depends on the seed and on
their own text, so that a change elsewhere takes the others along unchanged.

Survivors that no test can notice stand in equivalents.json with the reason; --known makes those
too, otherwise only what is new is reported. Exit status: 0 nothing new survived, 1 something did,
2 the unchanged sources do not pass.

Everything happens in a copy of the tree, in build/mutants; the sources themselves are only read.
"""
import argparse
import dataclasses
import hashlib
import json
import math
import os
import pathlib
import re
import resource
import shutil
import signal
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
WORK = ROOT / "build" / "mutants"
TREE = WORK / "tree"
BUILD = WORK / "out"
KNOWN = pathlib.Path(__file__).resolve().parent / "equivalents.json"

# folder of sources -> folders of its tests, each with the tests to take there.
FOLDERS = {
    "plugins/cut_options/frame": [("tests/plugins/cut_options/frame", ".")],
    "plugins/cut_options/object": [("tests/plugins/cut_options/frame", "."),
                                   ("tests/host/panels", "host_panels_plugin_object")],
    "plugins/cut_options/options": [("tests/plugins/cut_options/options", ".")],
    "plugins/cut_options/preview": [("tests/plugins/cut_options/preview", ".")],
    "plugins/cut_options/fields": [("tests/plugins/cut_options/fields", ".")],
    "plugins/cut_options/diagnostics": [("tests/plugins/cut_options/diagnostics", ".")],
    "platform/toolkit": [("tests/platform/toolkit", "."), ("tests/platform/toolkit_ui", "."),
                         ("tests/platform/printing", "property_list")],
}
TEST_LIMIT = 60  # seconds beyond ten times of what the unchanged sources take
MEMORY_LIMIT = 6 << 30  # bytes, for mutants that never stop to allocate


@dataclasses.dataclass(frozen=True)
class Mutant:
    file: str
    kind: str
    start: int  # bytes from the file's start
    end: int
    text: str  # what stands there instead
    line: int
    old: str  # the lines it touches, before and after
    new: str

    def key(self):
        return (self.file, self.kind, self.old, self.new)


def blanked(text):
    """The text with comments, literals and preprocessor lines as blanks, at the same positions."""
    pattern = re.compile(
        r'//[^\n]*|/\*.*?\*/|R"([^(\s]*)\(.*?\)\1"|"(?:\\.|[^"\\\n])*"|'
        r"(?<![0-9a-fA-F])'(?:\\.|[^'\\\n])*'|^[ \t]*#(?:\\\n|[^\n])*", re.S | re.M)
    return pattern.sub(lambda m: re.sub(r"[^\n]", " ", m.group(0)), text)


def closing(text, opening):
    """Where the parenthesis at `opening` closes; -1: nowhere."""
    depth = 0
    for i in range(opening, len(text)):
        depth += (text[i] == "(") - (text[i] == ")")
        if depth == 0:
            return i
    return -1


NUMBER = re.compile(r"(?<![\w.'])(0[xX][0-9a-fA-F]+|\d[\d']*(?:\.\d+)?)([uUlL]*)(?![\w.'])")
TURNED = {"==": ["!="], "!=": ["=="], "<": ["<=", ">="], "<=": ["<", ">"], ">": [">=", "<="],
          ">=": [">", "<"]}


def one_off(literal, step):
    if literal.lower().startswith("0x"):
        return hex(int(literal, 16) + step) if int(literal, 16) + step >= 0 else "-1"
    if "." in literal:
        return repr(float(literal) + step)
    return str(int(literal.replace("'", ""), 8 if re.fullmatch("0[0-7]+", literal) else 10) + step)


def expression_mutants(code):
    """Yields (kind, start, end, replacement)."""
    for match in NUMBER.finditer(code):
        for step in (1, -1):
            yield "number", match.start(), match.end(), one_off(match[1], step) + match[2]
    for match in re.finditer(r"(?<= )(==|!=|<=|>=|<|>)(?=[ \n])", code):
        for other in TURNED[match[1]]:
            yield "comparison", match.start(), match.end(), other
    for match in re.finditer(r"(?<= )(&&|\|\|)(?=[ \n])", code):
        yield "connective", match.start(), match.end(), "||" if match[1] == "&&" else "&&"
    for match in re.finditer(r"\b(true|false)\b", code):
        yield "truth", match.start(), match.end(), "false" if match[1] == "true" else "true"
    for match in re.finditer(r"\b(?:if|while) \(", code):
        opening = match.end() - 1
        end = closing(code, opening)
        condition = code[opening + 1:end]
        if end > 0 and ";" not in condition and not re.search(r"[^=!<>]=[^=]", condition):
            yield "condition", opening + 1, opening + 1, "!("
            # The closing half is put in by make().


HEADER = re.compile(r"\s*(?:(?:\} )?else\b.*|(?:(?:\} )?else )?(?:if|for|while)(?: constexpr)? \(.*\))$", re.S)
CALL = re.compile(r"(?:\+\+|--|delete |return\b|continue;|break;|\*?[\w:]+(?:<[^;]*?>)?(?:->|\.|\(|\[|\+\+|--| [-+*/|&^]?= ))")


def statements(code):
    """Statements that are neither declarations nor blocks: (start, end, indent, under a header)."""
    found, depth_start = [], None
    lines, position = code.split("\n"), 0
    before, header_open, start = ";", False, None
    for line in lines:
        text = line.strip()
        if text and start is None:
            head = re.split(r"[(=\[.]|->", text)[0].strip()
            words = len(head.split())
            fresh = before[-1] in ";{}:" or header_open
            declares = words > 1 and not re.match(r"(?:delete|return)\b", text)
            if fresh and line.startswith("    ") and CALL.match(text) and not declares:
                start, indent, under = position + len(line) - len(line.lstrip()), \
                    len(line) - len(line.lstrip()), header_open
        if start is not None:
            piece = code[start:position + len(line)]
            level = piece.count("(") - piece.count(")") + piece.count("{") - piece.count("}")
            if level == 0 and piece.rstrip().endswith(";"):
                found.append((start, start + len(piece.rstrip()), indent, under))
                start = None
            elif level < 0:
                start = None
        if text:
            pending = getattr(statements, "pending", "")
            pending = text if before[-1] in ";{}:" or not pending else pending + " " + text
            statements.pending = pending
            header_open = bool(HEADER.match(pending)) and pending.count("(") == pending.count(")")
            before = text
            if header_open:
                before = ";"  # what follows begins anew
        position += len(line) + 1
    return found


def statement_mutants(code):
    found = statements(code)
    for start, end, _, under in found:
        text = code[start:end]
        if under or not text.startswith("return"):
            yield "left out", start, end, "{}"
    for (start, end, indent, under), (start2, end2, indent2, _) in zip(found, found[1:]):
        first, second = code[start:end], code[start2:end2]
        if indent != indent2 or under or code[end:start2].strip() or first == second or \
                re.match(r"return|continue|break", first) or re.match(r"return|continue|break", second):
            continue
        yield "exchanged", start, end2, None


def make(path, text):
    """All mutants of a source."""
    code = blanked(text)
    for kind, start, end, replacement in [*expression_mutants(code), *statement_mutants(code)]:
        if kind == "condition":
            end = closing(code, start - 1)
            replacement = "!(" + text[start:end] + ")"
        elif kind == "exchanged":
            # The two statements keep what stands between them.
            first_end = next(e for s, e, _, _ in statements(code) if s == start)
            second_start = next(s for s, e, _, _ in statements(code) if e == end)
            replacement = text[second_start:end] + text[first_end:second_start] + text[start:first_end]
        line_start = text.rfind("\n", 0, start) + 1
        line_end = text.find("\n", end)
        old = " ".join(text[line_start:line_end].split())
        new = " ".join((text[line_start:start] + replacement + text[end:line_end]).split())
        if old != new:
            yield Mutant(path, kind, start, end, replacement, text.count("\n", 0, start) + 1, old, new)


def mutants_of(folder):
    found, seen = [], set()
    for path in sorted((TREE / folder).rglob("*.cpp")):
        name = str(path.relative_to(TREE))
        for mutant in make(name, path.read_text()):
            if mutant.key() not in seen:
                seen.add(mutant.key())
                found.append(mutant)
    return found


def sample(mutants, count, seed):
    """The same few every time: those with the smallest digests."""
    def digest(mutant):
        return hashlib.sha256(repr((seed, mutant.key())).encode()).digest()
    return sorted(sorted(mutants, key=digest)[:count], key=lambda m: (m.file, m.start))


def copy_tree():
    """Brings the copy up to date; what is the same keeps its time."""
    kept = set()
    for folder, folders, files in os.walk(ROOT):
        here = pathlib.Path(folder)
        if here == ROOT:
            folders[:] = [name for name in folders if name not in ("build", ".git", ".cache")]
            files = [name for name in files if name != ".git"]  # what a worktree has instead
        for name in files:
            source = here / name
            target = TREE / source.relative_to(ROOT)
            kept.add(target)
            if not target.exists() or target.read_bytes() != source.read_bytes():
                target.parent.mkdir(parents=True, exist_ok=True)
                shutil.copy(source, target)
    for path in TREE.rglob("*"):
        if path.is_file() and path not in kept:
            path.unlink()


def run(command, limit=None, **more):
    """True: it ended well within `limit` seconds. None: it did not end. What it says is in `said`."""
    # A group, not a session: the whole run keeps the priority that its caller gave it.
    process = subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                               errors="replace", process_group=0, **more)
    try:
        run.said, _ = process.communicate(timeout=limit)
    except subprocess.TimeoutExpired:
        os.killpg(process.pid, signal.SIGKILL)
        run.said, _ = process.communicate()
        return None
    except BaseException:  # the user has had enough: nothing goes on alone
        os.killpg(process.pid, signal.SIGKILL)
        raise
    return process.returncode == 0


def build(folder):
    targets = [f"{tests}/all" if only == "." else f"{only}_test"
               for tests, only in FOLDERS[folder]]
    return run(["ninja", "-C", str(BUILD), "-j", str(os.cpu_count()), *targets])


def test(folder, limit):
    environment = dict(os.environ, GTEST_FAIL_FAST="1", GTEST_BRIEF="1")
    for tests, only in FOLDERS[folder]:
        passed = run(["ctest", "--test-dir", str(BUILD / tests), "-R", only, "--stop-on-failure",
                      "--output-on-failure", "-j", str(os.cpu_count()), "--no-tests=error"],
                     limit, env=environment,
                     preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_AS,
                                                           (MEMORY_LIMIT, MEMORY_LIMIT)))
        if not passed:
            return passed
    return True


def configure():
    BUILD.mkdir(parents=True, exist_ok=True)
    if not (BUILD / "build.ninja").exists():
        if not run(["cmake", "-S", str(TREE), "-B", str(BUILD), "-G", "Ninja", "--log-level=WARNING",
                    "-DCMAKE_BUILD_TYPE=None", "-DCMAKE_CXX_FLAGS=-O0 -w"]):
            sys.exit(run.said)


def judge(mutant, folder, limit):
    """noticed, not built, or survived. The copy is as before afterwards."""
    path = TREE / mutant.file
    original = path.read_text()
    try:
        path.write_text(original[:mutant.start] + mutant.text + original[mutant.end:])
        if not build(folder):
            return "not built"
        passed = test(folder, limit)
        return "survived" if passed else "timed out" if passed is None else "noticed"
    finally:
        path.write_text(original)


def shares(found, count):
    """How many of `count` mutants each folder gives: by the root of what it has."""
    roots = {folder: math.sqrt(len(mutants)) for folder, mutants in found.items()}
    return {folder: min(len(found[folder]), math.ceil(count * root / (sum(roots.values()) or 1)))
            for folder, root in roots.items()}


def main():
    os.environ["CCACHE_DISABLE"] = "1"  # no mutant is worth keeping
    signal.signal(signal.SIGTERM, lambda *_: sys.exit("stopped"))
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--mutants", type=int, default=180)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--list", action="store_true", help="only say which mutants would be made")
    parser.add_argument("--known", action="store_true", help="also make those of equivalents.json")
    parser.add_argument("folders", nargs="*", metavar="FOLDER", help=", ".join(FOLDERS))
    options = parser.parse_args()
    unknown = [folder for folder in options.folders if folder.rstrip("/") not in FOLDERS]
    if unknown:
        parser.error(f"no such folder: {', '.join(unknown)}; there are {', '.join(FOLDERS)}")
    folders = [folder.rstrip("/") for folder in options.folders] or list(FOLDERS)

    copy_tree()
    entries = json.loads(KNOWN.read_text()) if KNOWN.exists() else []
    known = {(e["file"], e["kind"], e["old"], e["new"]): e["why"] for e in entries}
    found = {folder: mutants_of(folder) for folder in folders}
    count = shares(found, options.mutants)
    if options.list:
        for folder in folders:
            for mutant in sample(found[folder], count[folder], options.seed):
                print(f"{mutant.file}:{mutant.line}: {mutant.kind}\n  - {mutant.old}\n  + {mutant.new}")
        return 0
    configure()

    new, rows, began = [], [], time.monotonic()
    for folder in folders:
        if not build(folder):
            print(run.said)
            return 2
        before = time.monotonic()
        if not test(folder, 600):
            print(run.said)
            return 2
        limit = TEST_LIMIT + 10 * (time.monotonic() - before)
        tally = dict.fromkeys(("noticed", "timed out", "survived", "known", "not built"), 0)
        for mutant in sample(found[folder], count[folder], options.seed):
            if mutant.key() in known and not options.known:
                tally["known"] += 1
                continue
            began_one = time.monotonic()
            verdict = judge(mutant, folder, limit)
            if verdict == "survived" and mutant.key() in known:
                verdict = "known"
            tally[verdict] += 1
            print(f"{verdict:9} {time.monotonic() - began_one:5.1f} s  {mutant.file}:{mutant.line}: "
                  f"{mutant.kind}: {mutant.new[:100]}", flush=True)
            if verdict == "survived":
                new.append(mutant)
        rows.append((folder, len(found[folder]), tally))

    print(f"\n{'folder':18}{'possible':>9}{'made':>6}{'noticed':>9}{'of them by time':>17}"
          f"{'equivalent':>12}{'survived':>10}{'not built':>11}")
    total = [0] * 7
    for folder, possible, tally in rows:
        made = sum(tally.values()) - tally["not built"]
        row = [possible, made, tally["noticed"] + tally["timed out"], tally["timed out"],
               tally["known"], tally["survived"], tally["not built"]]
        total = [a + b for a, b in zip(total, row)]
        print("{:18}{:9}{:6}{:9}{:17}{:12}{:10}{:11}".format(folder, *row))
    print("{:18}{:9}{:6}{:9}{:17}{:12}{:10}{:11}".format("all", *total))
    print(f"{time.monotonic() - began:.0f} s")
    if new:
        print("\nNo test notices:")
    for mutant in new:
        print(json.dumps({"file": mutant.file, "kind": mutant.kind, "old": mutant.old,
                          "new": mutant.new, "why": ""}, indent=1, ensure_ascii=False) +
              f",  # line {mutant.line}")
    return 1 if new else 0


if __name__ == "__main__":
    sys.exit(main())
