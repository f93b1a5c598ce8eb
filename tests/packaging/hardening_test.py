"""What users run is built to make an attacker's work hard.

As a test it builds a small program and plug-in with the release's own flags, and the same without
any hardening to see that each lack is seen. With a build folder and files as arguments it looks at
those instead.
"""
import json
import os
import pathlib
import platform
import subprocess
import sys
import tempfile
import unittest


def readelf(path, *options):
    return subprocess.run(["readelf", "--wide", *options, path], check=True, text=True,
                          capture_output=True, env=dict(os.environ, LC_ALL="C")).stdout


def calls(path):
    """The functions of other libraries that it calls, without versions."""
    return {line.split()[7].split("@")[0] for line in readelf(path, "--dyn-syms").splitlines()
            if len(line.split()) > 7}


def weaknesses(path):
    """What the file lacks."""
    headers = readelf(path, "--file-header", "--program-headers", "--dynamic")
    stack = [line for line in headers.splitlines() if "GNU_STACK" in line]
    functions = calls(path)
    content = pathlib.Path(path).read_bytes()
    lacks = {
        "position independence": "Type:" in headers and "DYN (" not in headers,
        "a stack that is no code": len(stack) != 1 or "E" in stack[0].split()[6],
        "read-only relocations": "GNU_RELRO" not in headers,
        "binding at start": "BIND_NOW" not in headers,
        "pages of either code or data": any(
            "LOAD" in line and "RWE" in line for line in headers.splitlines()),
        "a search path of the system's only": "RPATH" in headers or "RUNPATH" in headers,
        "stack protection": "__stack_chk_fail" not in functions,
        "checked copies": not any(name.endswith("_chk") for name in functions),
    }
    if platform.machine() == "x86_64":
        # "endbr64", where jumps may arrive; a few come with the compiler's own start-up code.
        lacks["protected jumps"] = content.count(b"\xf3\x0f\x1e\xfa") < 10
    return [what for what, lacking in lacks.items() if lacking]


class Hardening(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.build = pathlib.Path(folder.name)
        self.source = pathlib.Path(__file__).with_name("hardening")

    def run_quietly(self, *command):
        done = subprocess.run(command, text=True, capture_output=True)
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)

    def test_releases_are_hardened(self):
        cmake = os.environ["LABELCUT_CMAKE"]
        self.run_quietly(cmake, "-S", self.source, "-B", self.build, "-DCMAKE_BUILD_TYPE=Release",
                         f"-DCMAKE_CXX_COMPILER={os.environ['LABELCUT_CXX']}")
        self.run_quietly(cmake, "--build", self.build)
        for name in ("probe", "libprobe_module.so"):
            self.assertEqual(weaknesses(self.build / name), [], name)

    def test_each_weakness_is_seen(self):
        weak = self.build / "weak"
        self.run_quietly(
            os.environ["LABELCUT_CXX"], "-std=c++20", "-O2", "-U_FORTIFY_SOURCE", "-fno-pie",
            "-no-pie", "-fno-stack-protector", "-fcf-protection=none"
            if platform.machine() == "x86_64" else "-O2", "-Wl,-z,norelro,-z,lazy,-z,execstack",
            "-Wl,-rpath,/nonexistent", self.source / "probe.cpp", "-o", weak)
        seen = weaknesses(weak)
        for what in ("position independence", "a stack that is no code", "read-only relocations",
                     "binding at start", "a search path of the system's only", "stack protection",
                     "checked copies"):
            self.assertIn(what, seen)
        if platform.machine() == "x86_64":
            self.assertIn("protected jumps", seen)


def unprotected_sources(folder):
    """Of a build folder, the sources that are compiled without checked copies or a stack guard."""
    entries = json.loads(pathlib.Path(folder, "compile_commands.json").read_text())
    return [entry["file"] for entry in entries
            if not {"-D_FORTIFY_SOURCE=2", "-fstack-protector-strong"} <= set(entry["command"].split())]


def main():
    names = [name for name in sys.argv[1:] if not name.startswith("-")]
    if not names:
        unittest.main()
    folder, *files = names
    weak = {name: weaknesses(name) for name in files}
    # A file without a copy whose size is known calls no checked one; its commands tell instead.
    if any("checked copies" not in lacks for lacks in weak.values()):
        weak = {name: [what for what in lacks if what != "checked copies"]
                for name, lacks in weak.items()}
    weak |= {name: ["checked copies or stack protection"] for name in unprotected_sources(folder)}
    for name, lacks in weak.items():
        print(f"{name}: {', '.join(lacks) + ' missing' if lacks else 'hardened'}")
    sys.exit(any(weak.values()))


if __name__ == "__main__":
    main()
