"""Performance: runs a program in pinned surroundings and measures it in three ways.

instructions  callgrind's, all threads of the process itself, none of its children
memory        largest resident set that wait4() reports, without valgrind; see launch.c
wall time     from just before fork() to the end of the process, medians, programs taking turns
"""
import os
import re
import shutil
import signal
import statistics
import subprocess
import tempfile
from dataclasses import dataclass, field
from pathlib import Path

HERE = Path(__file__).resolve().parent
BUILD = HERE.parent.parent / "build/bench"
BIN = BUILD / "bin"
SCRATCH = BUILD / "scratch"
PROFILES = BUILD / "profiles"
FONTS = [f"DejaVu{style}.ttf" for style in ("Sans", "Sans-Bold", "SansMono", "SansMono-Bold",
                                            "Serif", "Serif-Bold")]
PATIENCE = 300  # seconds that one program may take under callgrind


@dataclass(frozen=True)
class Program:
    """One measured program."""
    arguments: tuple
    environment: tuple = ()       # (name, value) beside the pinned ones
    first_paint: str = ""         # "any", or how the title of the window that counts begins
    callgrind: tuple = ()         # further arguments of callgrind


@dataclass
class Surroundings:
    """Fonts, folders and environment of every program, and what must be stopped at the end."""
    folder: Path = field(default_factory=lambda: Path(tempfile.mkdtemp(prefix="labelcut-bench-")))

    def __post_init__(self):
        # cupsd's filters and backends run as another user.
        self.folder.chmod(0o711)
        for path in (SCRATCH, PROFILES):
            path.mkdir(parents=True, exist_ok=True)
        fonts = BUILD / "fonts"
        fonts.mkdir(exist_ok=True)
        for name in FONTS:
            if not (fonts / name).exists():
                shutil.copy(Path("/usr/share/fonts/truetype/dejavu") / name, fonts / name)
        (BUILD / "fonts.conf").write_text(
            '<?xml version="1.0"?>\n<!DOCTYPE fontconfig SYSTEM "fonts.dtd">\n<fontconfig>\n'
            f"<dir>{fonts}</dir><cachedir>{BUILD}/fonts-cache</cachedir>\n"
            + "".join(f"<alias><family>{generic}</family><prefer><family>{name}</family></prefer>"
                      "</alias>\n" for generic, name in
                      (("sans-serif", "DejaVu Sans"), ("serif", "DejaVu Serif"),
                       ("monospace", "DejaVu Sans Mono"))) + "</fontconfig>\n")

    def environment(self, program):
        home = SCRATCH / "home"
        shutil.rmtree(home, ignore_errors=True)
        runtime = home / "run"
        runtime.mkdir(parents=True, mode=0o700)
        values = {
            "PATH": "/usr/sbin:/usr/bin:/sbin:/bin", "LANG": "C.UTF-8", "HOME": str(home),
            "TMPDIR": str(home), "XDG_RUNTIME_DIR": str(runtime),
            "XDG_CONFIG_HOME": f"{home}/config", "XDG_DATA_HOME": f"{home}/data",
            "XDG_CACHE_HOME": f"{home}/cache", "XDG_CONFIG_DIRS": f"{home}/none",
            "XDG_DATA_DIRS": "/usr/share",
            "FONTCONFIG_FILE": str(BUILD / "fonts.conf"), "QT_QPA_PLATFORM": "offscreen",
            "QT_HASH_SEED": "0", "DBUS_SESSION_BUS_ADDRESS": "unix:path=/nonexistent",
            # No print service unless a row names one.
            "CUPS_SERVER": "/nonexistent/cups.sock",
        }
        if program.first_paint:
            values["LABELCUT_BENCH_PRELOAD"] = str(BUILD / "lib/bench_first_paint.so")
            if program.first_paint != "any":
                values["LABELCUT_BENCH_WINDOW"] = program.first_paint
        values.update(program.environment)
        return values

    def close(self):
        shutil.rmtree(self.folder, ignore_errors=True)


class Failed(Exception):
    """A program that did not do what was to be measured."""


def run(surroundings, program, prefix, preload=False):
    """Runs it, behind what is to start it, to its end."""
    environment = surroundings.environment(program)
    if preload and "LABELCUT_BENCH_PRELOAD" in environment:
        environment["LD_PRELOAD"] = environment["LABELCUT_BENCH_PRELOAD"]
    arguments = [str(argument) for argument in (*prefix, *program.arguments)]
    with open(SCRATCH / "output", "wb") as output, open(SCRATCH / "errors", "wb") as errors:
        process = subprocess.Popen(arguments, env=environment, stdin=subprocess.DEVNULL,
                                   stdout=output, stderr=errors, cwd=SCRATCH,
                                   start_new_session=True)
        try:
            return process.wait(PATIENCE)
        except BaseException:
            # The launcher's child too: the session is theirs alone.
            os.killpg(process.pid, signal.SIGKILL)
            process.wait()
            raise


def check(program, status):
    if status != 0:
        text = (SCRATCH / "errors").read_text("utf-8", "replace")[-2000:]
        raise Failed(f"{' '.join(map(str, program.arguments))} ended with {status}: {text}")


def start(surroundings, program):
    """Runs it to its end. Gives wall milliseconds and the largest resident set in KiB."""
    result = SCRATCH / "result"
    result.unlink(missing_ok=True)
    check(program, run(surroundings, program, (BIN / "bench_launch", result)))
    status, nanoseconds, memory = map(int, result.read_text("ascii").split())
    check(program, os.waitstatus_to_exitcode(status))
    return nanoseconds / 1e6, memory


def totals(file):
    """The instructions in one of callgrind's files."""
    found = re.findall(r"^(?:totals|summary): (\d+)", file.read_text("utf-8", "replace"), re.M)
    return max(map(int, found), default=0)


def callgrind(surroundings, program, name):
    """Runs it once under callgrind. Gives its files: {what a dump was called, or "": path}."""
    out = PROFILES / f"callgrind.{name}"
    for old in PROFILES.glob(f"callgrind.{name}*"):
        if old == out or re.fullmatch(r"[.-][0-9.-]+", old.name[len(out.name):]):
            old.unlink()
    check(program, run(surroundings, program,
                       ("valgrind", "--tool=callgrind", "--quiet", f"--callgrind-out-file={out}",
                        "--compress-strings=no", "--compress-pos=no", *program.callgrind), True))
    files = {}
    for file in sorted(PROFILES.glob(f"callgrind.{name}*")):
        if file != out and not re.fullmatch(r"[.-][0-9.-]+", file.name[len(out.name):]):
            continue
        with open(file, encoding="utf-8", errors="replace") as text:
            head = text.read(4096)
        trigger = re.search(r"^desc: Trigger: Client Request: (.*)$", head, re.M)
        files[trigger.group(1) if trigger else file.name[len(out.name):]] = file
    return files


def instructions(surroundings, program, name, repetitions=2):
    """Instructions of each repetition, the whole process."""
    counts = []
    for _ in range(repetitions):
        counts.append(sum(totals(file) for file in callgrind(surroundings, program, name).values()))
    return counts


def wall_and_memory(surroundings, programs, runs=11):
    """Runs the programs in turn. Gives {name: (median milliseconds, median KiB)}."""
    milliseconds = {name: [] for name in programs}
    memory = {name: [] for name in programs}
    for turn in range(runs + 1):
        for name, program in programs.items():
            wall, resident = start(surroundings, program)
            if turn > 0:  # the first fills the page cache and the font cache
                milliseconds[name].append(wall)
                memory[name].append(resident)
    return {name: (statistics.median(milliseconds[name]), statistics.median(memory[name]))
            for name in programs}
