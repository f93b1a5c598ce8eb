"""Documents that mean harm end soon, take little, are told in one sentence and leave nothing.

Every document is printed into a file by the program itself; unittest's own arguments choose some
("-k svg_", "-k pdf_200_pages").
"""
import concurrent.futures
import os
import pathlib
import resource
import signal
import subprocess
import tempfile
import threading
import unittest

import make_documents
from corpus import CANARY, EITHER, GIB, MIB, PRINTS, REFUSED, neighbours
from supervised_run import OpenedFiles, SupervisedRun, become_parent_of_orphans

PROGRAM = (os.environ["LABELCUT_PROGRAM"],)
PPD = pathlib.Path(os.environ["LABELCUT_SOURCES"]) / "samples/tape.ppd"
# Sanitizers reserve terabytes of addresses, and keep what is freed.
IS_INSTRUMENTED = bool(os.environ["LABELCUT_INSTRUMENTED"])

PATIENCE = 30.0        # seconds that any document may take
WORK = 1.0             # seconds of processor time after which the user ends what has no end
GONE = 2.0             # seconds until then nothing is left of it
MOST_MEMORY = 512 * MIB  # of the program and all that it starts
LIMITS = {
    # What is beyond the program's own limits fails, and takes neither machine nor disk with it.
    resource.RLIMIT_FSIZE: 4 * GIB,
    resource.RLIMIT_CORE: 0,
    **({} if IS_INSTRUMENTED else {resource.RLIMIT_AS: GIB}),
}
GROWTH = 0.005         # seconds between two lines of a document that grows


def environment(folder):
    kept = {name: os.environ[name] for name in
            ("PATH", "ASAN_OPTIONS", "LSAN_OPTIONS", "UBSAN_OPTIONS") if name in os.environ}
    return {**kept, "LC_ALL": "C.UTF-8", "HOME": str(folder / "home"),
            "TMPDIR": str(folder / "temporary"), "XDG_RUNTIME_DIR": str(folder / "runtime"),
            "CUPS_SERVER": "/nonexistent/cups.sock"}


class Growth:
    """A document on which somebody writes."""

    def __init__(self, path):
        self._path = path
        self._ended = threading.Event()
        self._thread = threading.Thread(target=self._write)
        self._thread.start()

    def _write(self):
        with open(self._path, "ab", buffering=0) as file:
            while not self._ended.wait(GROWTH):
                file.write(b"one more line\n")

    def end(self):
        self._ended.set()
        self._thread.join()


def entries(folder):
    return sorted(path.relative_to(folder).as_posix() for path in folder.rglob("*"))


def shows_canary(postscript):
    """Whether the canary's colour, or one very near, is on a page. None: it cannot be drawn."""
    drawn = subprocess.run(["gs", "-q", "-dSAFER", "-dBATCH", "-dNOPAUSE", "-sDEVICE=ppmraw", "-r36",
                            "-sOutputFile=-", postscript], capture_output=True, check=False).stdout
    if not drawn.startswith(b"P6"):
        return None
    points = drawn.rpartition(b"\n255\n")[2]
    return any(all(abs(part - wanted) < 12 for part, wanted in zip(points[at:at + 3], CANARY))
               for at in range(0, len(points), 3))


class Trial:
    """One document is printed in a folder of its own; `complaints` are what went wrong.
    `program`: its name, and arguments before those of printing."""

    def __init__(self, document, folder, program):
        self.document = document
        self.program = program
        self.folder = folder
        for name in ("home", "temporary", "runtime", "documents"):
            (folder / name).mkdir(mode=0o700)
        self.output = folder / "output.ps"
        self.path = make_documents.make(document.name, folder / "documents")
        self.beside = neighbours(self.path)
        self.complaints = []

    def run(self):
        before = entries(self.path.parent)
        opened = OpenedFiles(self.beside)
        run = SupervisedRun(
            [*self.program, "print", "--ppd", PPD, "-o", self.output, self.path,
             "--fit", "scale"],
            environment(self.folder), self.beside, self.folder / "messages", LIMITS)
        growth = Growth(self.path) if self.document.grows else None
        if self.document.endless and not run.wait(PATIENCE, WORK):
            run.cancel()
        elif not self.document.endless:
            run.wait(PATIENCE)
        outcome = run.finish(GONE)
        if growth:
            growth.end()
        names = opened.names()
        opened.close()
        if self._check_end(outcome):
            self._check_answer(outcome)
            self._expect(not entries(self.folder / "temporary"),
                         f"it left {entries(self.folder / 'temporary')[:5]}")
        if not IS_INSTRUMENTED:
            self._expect(outcome.peak <= MOST_MEMORY, f"it took {outcome.peak // MIB} MiB")
        self._expect(not names, f"it opened {sorted(names)}")
        self._expect(entries(self.path.parent) == before, "it changed the folder of documents")
        return outcome

    def _expect(self, holds, complaint):
        if not holds:
            self.complaints.append(complaint)

    def _check_end(self, outcome):
        """@return whether it ended by itself; what it then says and leaves is its own."""
        limit = f"within {GONE:.0f} s of being cancelled" if outcome.cancelled else \
            f"within {PATIENCE:.0f} s"
        self._expect(outcome.status is not None, f"it did not end {limit}")
        if outcome.status is None:
            return False
        self._expect(outcome.seconds_to_go < GONE, f"a process of its own did not end {limit}")
        ends = (-signal.SIGINT,) if outcome.cancelled else (0, 1)
        self._expect(outcome.status in ends, f"its status is {outcome.status}")
        return True

    def _check_answer(self, outcome):
        lines = outcome.messages.splitlines()
        self._expect(len(lines) <= 1, f"it said {len(lines)} lines: {lines[:3]}")
        self._expect(all(line.startswith("labelcut: ") for line in lines),
                     f"it lets others speak: {lines[:2]}")
        self._expect("make room" not in outcome.messages, f"it blamed the disk: {lines[:1]}")
        self._expect(self.output.exists() == (outcome.status == 0),
                     "there is an output" if self.output.exists() else "there is no output")
        if outcome.status == 0:
            self._check_printed()
        elif outcome.status == 1:
            self._expect(self.document.expected in (REFUSED, EITHER), f"refused: {lines[:1]}")
            self._expect(self.document.name in outcome.messages,
                         f"its refusal does not name the document: {lines[:1]}")

    def _check_printed(self):
        self._expect(self.document.expected in (PRINTS, EITHER), "it printed")
        if not self.output.exists():
            return
        with open(self.output, "rb") as file:
            whole = file.read(4) == b"%!PS" and b"%%EOF" in file.read()[-200:]
        self._expect(whole, "its output is not whole")
        if self.document.name.startswith("svg_"):
            found = shows_canary(self.output)
            self._expect(found is self.document.shows_canary,
                         {True: "it shows a neighbour's picture", None: "its output is not drawn",
                          False: "it does not show its own picture"}[found])


def tried(name, program=PROGRAM):
    """In a process of its own. @return outcome and complaints of one document."""
    with tempfile.TemporaryDirectory() as folder:
        trial = Trial(make_documents.DOCUMENTS[name], pathlib.Path(folder), program)
        return trial.run(), trial.complaints


class HostileDocuments(unittest.TestCase):
    """One test a document; see load_tests()."""
    pending = {}

    def check(self, name):
        outcome, complaints = self.pending[name].result()
        if complaints:
            figures = f"{outcome.seconds:.1f} s, {outcome.peak // MIB} MiB, status {outcome.status}"
            self.fail("\n".join(["", *(complaint[:400] for complaint in complaints), figures]))


def _add_test(name):
    method = "test_" + name.replace(".", "_")
    setattr(HostileDocuments, method, lambda self: self.check(name))
    return method


TESTS = {_add_test(name): name for name in make_documents.DOCUMENTS}

# What a program does that behaves; its last argument is the document, the one before the output.
REFUSES = 'echo "labelcut: “${6##*/}” is refused." >&2; exit 1'
WORKS_WITHOUT_END = "while :; do :; done"
PRINTS_A_PAGE = """echo '%!PS
"$COLOUR" 0 0 900 900 rectfill showpage
%%EOF' > "$5" """


class TheChecksThemselves(unittest.TestCase):
    """Programs that are no printing ones behave, or misbehave in one way."""
    pool = None

    def complaints(self, script, document="odd_empty"):
        """What is wrong with a script of the shell."""
        return self.pool.submit(tried, document, ("sh", "-c", script, "sh")).result()[1]

    def assert_complains(self, complaint, script, document="odd_empty"):
        complaints = self.complaints(script, document)
        self.assertEqual(len(complaints), 1, complaints)
        self.assertIn(complaint, complaints[0])

    def test_nothing_is_wrong_with_a_refusal(self):
        self.assertEqual(self.complaints(REFUSES), [])

    def test_nothing_is_wrong_with_a_program_that_goes_when_it_is_cancelled(self):
        self.assertEqual(self.complaints(WORKS_WITHOUT_END, "ps_loop_without_end.ps"), [])

    def test_a_wrong_answer_is_found(self):
        page = PRINTS_A_PAGE.replace('"$COLOUR"', "0")
        self.assertEqual(self.complaints(page, "odd_one_letter"), [])
        self.assert_complains("it printed", page)
        self.assert_complains("refused: ", REFUSES, "odd_one_letter")
        self.assert_complains("its output is not whole", "echo %!PS > $5", "odd_one_letter")
        self.assert_complains("there is no output", "exit 0", "odd_text_that_grows.txt")
        self.assert_complains("there is an output", "> $5; " + REFUSES)

    def test_wrong_messages_are_found(self):
        def saying(words):
            return f"echo {words} >&2; exit 1"

        self.assert_complains("said 2 lines", "echo labelcut: Another. >&2; " + REFUSES)
        self.assert_complains("lets others speak", saying("odd_empty is empty."))
        self.assert_complains("does not name the document", saying("labelcut: It is empty."))
        self.assert_complains("does not name the document", "exit 1")
        self.assert_complains("blamed the disk", saying("labelcut: make room for odd_empty."))

    def test_a_crash_is_found(self):
        self.assert_complains("status is -11", "kill -SEGV $$")
        self.assert_complains("status is 2", "exit 2")

    def test_what_is_left_is_found(self):
        self.assert_complains("it left ['more']", "> $TMPDIR/more; " + REFUSES)
        self.assert_complains("changed the folder of documents", "> ../more; " + REFUSES)
        self.assert_complains("a process of its own did not end", "sleep 9 & " + REFUSES)
        self.assert_complains("a process of its own did not end", "setsid sleep 9 & " + REFUSES)

    def test_a_program_that_ignores_its_cancelling_is_found(self):
        self.assert_complains("within 2 s of being cancelled",
                              "trap '' INT; " + WORKS_WITHOUT_END, "ps_loop_without_end.ps")

    def test_a_neighbour_that_is_read_is_found(self):
        self.assert_complains("it opened ['canary.txt']", "cat canary.txt > /dev/null; " + REFUSES)

    def test_a_neighbour_that_is_shown_is_found(self):
        red, green, blue = (f"{part / 255:.3f}" for part in CANARY)
        page = PRINTS_A_PAGE.replace('"$COLOUR"', f"{red} {green} {blue} setrgbcolor")
        self.assert_complains("shows a neighbour's picture", page, "svg_picture_by_path.svg")
        page = PRINTS_A_PAGE.replace('"$COLOUR"', "0 setgray")
        self.assert_complains("does not show its own picture", page, "svg_own_picture.svg")

    @unittest.skipIf(IS_INSTRUMENTED, "sanitizers take memory of their own")
    def test_memory_is_found_that_processes_take_together(self):
        eats = "python3 -c 'import time; eaten = b\"x\" * (300 << 20); time.sleep(1)'"
        self.assert_complains("it took ", f"{eats} & {eats}; wait; {REFUSES}")


def load_tests(_loader, chosen, _pattern):
    """Begins with all that were chosen, as many at a time as there are processors."""
    pool = concurrent.futures.ProcessPoolExecutor(os.cpu_count(), initializer=become_parent_of_orphans)
    unittest.addModuleCleanup(pool.shutdown, cancel_futures=True)
    TheChecksThemselves.pool = pool
    for suite in chosen:
        for test in suite:
            name = TESTS.get(test.id().rpartition(".")[2])
            if name:
                HostileDocuments.pending[name] = pool.submit(tried, name)
    return chosen


if __name__ == "__main__":
    unittest.main(verbosity=2)
