"""Checks the sources of a build folder with clang: its warnings are errors, and clang-tidy's, too.

    tidy.py FOLDER [--tests]

The folder is built already, by g++ (CMake's preset dev). Without --tests only what ships is checked.

Most of clang-tidy's time goes into the headers of Qt, so that the sources of a target are linted
together, as one source that includes them, without precompiled headers. Where that finds anything,
halves of them are linted, and so on down to each alone, and only that counts: two sources may use
one name for two things.
What clang says of a main file only, such as a constant that nobody uses, is found by a compilation
of each source, whose headers are precompiled once.

A source is checked again when its own bytes, those of a header of this tree that it includes, its
compile command or the configuration changed: all of them are the key of its stamp.
"""
import collections
import concurrent.futures
import hashlib
import json
import os
import pathlib
import shlex
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
# What clang does not know of a command of g++.
ONLY_GCC = {"-fno-gnu-unique", "-Winvalid-pch", "-MD"}
# `headers` is the file that g++ takes precompiled, or None.
Source = collections.namedtuple("Source", "path target flags headers stamp")


def own_dependencies(build):
    """For every object file, the files of this tree that it was made from."""
    listing = subprocess.run(["ninja", "-C", build, "-t", "deps"], check=True, text=True,
                             stdout=subprocess.PIPE).stdout
    dependencies, target = {}, None
    for line in listing.splitlines():
        if line and not line.startswith(" "):
            target = line.split(":")[0]
            dependencies[target] = set()
        elif line.strip():
            path = pathlib.Path(build, line.strip()).resolve()
            if path.is_relative_to(ROOT) and not path.is_relative_to(ROOT / "build"):
                dependencies[target].add(path)
    return dependencies


def is_wanted(source, with_tests):
    if not source.is_relative_to(ROOT) or source.is_relative_to(ROOT / "build"):
        return False
    return with_tests or source.relative_to(ROOT).parts[0] not in ("tests", "tools")


def parsed(command):
    """Of a command of g++: the flags that clang takes too, and the header that comes precompiled."""
    words = iter(shlex.split(command.partition("c++ ")[2]))
    flags, headers = [], None
    for word in words:
        if word in ("-o", "-c", "-MT", "-MF", "-x"):
            next(words)
        elif word == "-include":
            headers = next(words)
        elif word not in ONLY_GCC:
            flags.append(word)
    return flags, headers


def key_of(entry, headers):
    digest = hashlib.sha256()
    for tool in (ROOT / ".clang-tidy", pathlib.Path(__file__)):
        digest.update(tool.read_bytes())
    digest.update(entry["command"].encode())
    for path in sorted(headers | {pathlib.Path(entry["file"])}):
        digest.update(str(path.relative_to(ROOT)).encode() + b"\0" + path.read_bytes())
    return digest.hexdigest()


def object_of(entry):
    """The object file that a compile command writes, relative to the build folder."""
    words = shlex.split(entry["command"])
    return words[words.index("-o") + 1]


def sources_of(build, entries, stamps, with_tests):
    """Each source once, however many targets compile it."""
    dependencies = own_dependencies(build)
    sources = {}
    for entry in entries:
        path, made = pathlib.Path(entry["file"]), object_of(entry)
        if not is_wanted(path, with_tests) or path in sources:
            continue
        if made not in dependencies:
            sys.exit(f"{made} is not built; build the folder first")
        flags, headers = parsed(entry["command"])
        sources[path] = Source(path, made.partition(".dir/")[0], flags, headers,
                               stamps / key_of(entry, dependencies[made]))
    return list(sources.values())


def complaint(*command):
    """What a tool says, if it says anything or fails; else an empty text."""
    run = subprocess.run(command, text=True, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
    if run.returncode == 0 and not run.stdout.strip():
        return ""
    return run.stdout.strip() or run.stderr.strip() or f"{command[0]} fails"


def tidy(path, flags):
    return complaint("clang-tidy", "--quiet", str(path), "--", *flags)


def lint(sources, folder):
    """Complaints of clang-tidy about sources of one target."""
    if len(sources) == 1:
        return [tidy(sources[0].path, sources[0].flags)]
    together = folder / (sources[0].target.replace("/", "-") + ".cpp")
    together.write_text("".join(f'#include "{source.path}"\n' for source in sources))
    if not tidy(together, sources[0].flags):
        return []
    middle = len(sources) // 2
    return lint(sources[:middle], folder) + lint(sources[middle:], folder)


def compile_alone(source, precompiled):
    header = precompiled.get(source.headers)
    flags = ["-include-pch", str(header)] if header else []
    return [complaint("clang++", "-fsyntax-only", *source.flags, *flags, str(source.path))]


def precompile(entries, wanted, folder):
    """For clang++, by the header that g++ takes precompiled, the file that clang++ takes."""
    precompiled = {}
    for entry in entries:
        header = entry["file"].removesuffix(".cxx")
        if header in wanted:
            flags, _ = parsed(entry["command"])
            target = folder / (hashlib.sha256(header.encode()).hexdigest()[:12] + ".pch")
            found = complaint("clang++", *flags, "-Wno-pragma-system-header-outside-header",
                              "-x", "c++-header", header, "-o", str(target))
            if found:
                sys.exit(found)
            precompiled[header] = target
    return precompiled


def main(build, *options):
    build = str(pathlib.Path(build).resolve())
    folder = pathlib.Path(build, "tidy")
    folder.mkdir(exist_ok=True)
    entries = json.loads(pathlib.Path(build, "compile_commands.json").read_text())
    sources = sources_of(build, entries, folder, "--tests" in options)
    pending = [source for source in sources if not source.stamp.exists()]
    print(f"{len(sources)} sources, {len(pending)} to check", flush=True)
    targets = collections.defaultdict(list)
    for source in pending:
        targets[source.target].append(source)
    precompiled = precompile(entries, {source.headers for source in pending}, folder)
    failed = 0
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        runs = {pool.submit(lint, group, folder): group for group in targets.values()}
        runs |= {pool.submit(compile_alone, source, precompiled): [source] for source in pending}
        unclean = set()
        for run in concurrent.futures.as_completed(runs):
            for found in filter(None, run.result()):
                unclean |= set(source.path for source in runs[run])
                failed += 1
                print(found, flush=True)
    for source in pending:
        if source.path not in unclean:
            source.stamp.write_text("")
    if failed:
        print(f"clang found something in {failed} sources")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
