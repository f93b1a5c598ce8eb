"""Runs clang-tidy over the sources of a build folder, and over each only once.

    tidy.py FOLDER [--tests]

The folder is built already. Without --tests only what ships is linted.

A source is linted again when its own bytes, those of a header of this tree that it includes, its
compile command or the configuration changed: all of them are the key of its stamp.
"""
import concurrent.futures
import hashlib
import json
import os
import pathlib
import shlex
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent


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


def object_of(entry):
    """The object file that a compile command writes, relative to the build folder."""
    words = shlex.split(entry["command"])
    return words[words.index("-o") + 1]


def is_wanted(source, with_tests):
    if not source.is_relative_to(ROOT) or source.is_relative_to(ROOT / "build"):
        return False
    return with_tests or source.relative_to(ROOT).parts[0] not in ("tests", "tools")


def key_of(entry, headers):
    digest = hashlib.sha256()
    digest.update((ROOT / ".clang-tidy").read_bytes())
    digest.update(entry["command"].encode())
    for path in sorted(headers | {pathlib.Path(entry["file"])}):
        digest.update(str(path.relative_to(ROOT)).encode() + b"\0" + path.read_bytes())
    return digest.hexdigest()


def lint(build, entry, stamp):
    run = subprocess.run(["clang-tidy", "--quiet", "-p", build, entry["file"]], text=True,
                         stdout=subprocess.PIPE, stderr=subprocess.PIPE)
    if run.returncode == 0 and not run.stdout.strip():
        stamp.write_text("")
        return None
    return run.stdout.strip() or run.stderr.strip()


def main(build, *options):
    build = str(pathlib.Path(build).resolve())
    stamps = pathlib.Path(build, "tidy")
    stamps.mkdir(exist_ok=True)
    dependencies = own_dependencies(build)
    wanted = {}
    for entry in json.loads(pathlib.Path(build, "compile_commands.json").read_text()):
        source = pathlib.Path(entry["file"])
        target = object_of(entry)
        if not is_wanted(source, "--tests" in options):
            continue
        if target not in dependencies:
            sys.exit(f"{target} is not built; build the folder first")
        headers = dependencies[target]
        wanted[str(source)] = (entry, stamps / key_of(entry, headers))
    pending = [item for item in wanted.values() if not item[1].exists()]
    print(f"{len(wanted)} sources, {len(pending)} to lint", flush=True)
    failed = 0
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        runs = [pool.submit(lint, build, entry, stamp) for entry, stamp in pending]
        for run in concurrent.futures.as_completed(runs):
            if run.result():
                failed += 1
                print(run.result(), flush=True)
    if failed:
        print(f"clang-tidy found something in {failed} sources")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
