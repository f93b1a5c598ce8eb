"""A program under supervision: how long it works, what it and all that it starts take and leave."""
import ctypes
import dataclasses
import os
import pathlib
import resource
import signal
import struct
import subprocess
import time

LOOK = 0.05  # seconds between two looks at what runs
READ_OF_MESSAGES = 64 << 10  # bytes

_libc = ctypes.CDLL(None, use_errno=True)


def _checked(result):
    if result < 0:
        raise OSError(ctypes.get_errno(), os.strerror(ctypes.get_errno()))
    return result


def become_parent_of_orphans():
    """From now on whatever outlives its parent, and descends from this process, is its child."""
    pr_set_child_subreaper = 36
    _checked(_libc.prctl(pr_set_child_subreaper, 1, 0, 0, 0))


class OpenedFiles:
    """Notes which files of a folder anybody opens, for as long as it lives."""
    _IN_OPEN, _IN_ISDIR, _IN_NONBLOCK = 0x20, 0x40000000, 0o4000

    def __init__(self, folder):
        self._file = _checked(_libc.inotify_init1(self._IN_NONBLOCK))
        _checked(_libc.inotify_add_watch(self._file, os.fsencode(folder), self._IN_OPEN))

    def names(self):
        found, head = set(), struct.Struct("iIII")
        try:
            data = os.read(self._file, 1 << 20)
        except BlockingIOError:
            return found
        while data:
            _, mask, _, length = head.unpack_from(data)
            name = data[head.size:head.size + length].rstrip(b"\0")
            if not mask & self._IN_ISDIR:
                found.add(os.fsdecode(name))
            data = data[head.size + length:]
        return found

    def close(self):
        os.close(self._file)


def _numbers_of(process):
    """What the kernel tells of one in /proc/…/stat behind its name and state; empty: it has gone."""
    try:
        after_name = pathlib.Path("/proc", str(process), "stat").read_bytes().rpartition(b")")[2]
    except OSError:
        return []
    return [int(field) for field in after_name.split()[1:]]


def descendants(ancestor):
    """The numbers of all processes below one, those that have ended and wait for nobody included."""
    children = {}
    for entry in os.listdir("/proc"):
        numbers = _numbers_of(entry) if entry.isdigit() else []
        if numbers:
            children.setdefault(numbers[0], []).append(int(entry))
    found, waiting = [], [ancestor]
    while waiting:
        below = children.get(waiting.pop(), [])
        found += below
        waiting += below
    return found


def memory_of(processes):
    """What cannot be dropped: no pages of files, which programs share. Bytes."""
    total = 0
    for process in processes:
        try:
            status = pathlib.Path("/proc", str(process), "status").read_text()
        except OSError:
            continue
        for line in status.splitlines():
            if line.startswith(("RssAnon:", "RssShmem:", "VmSwap:")):
                total += int(line.split()[1]) * 1024
    return total


def work_of(processes):
    """The processor time that they, and the children they have taken leave of, have used. Seconds."""
    ticks = sum(sum(_numbers_of(process)[10:14]) for process in processes)
    return ticks / os.sysconf("SC_CLK_TCK")


def reap_orphans(but):
    """Takes leave of children that have ended, except of one that somebody else waits for."""
    for process in descendants(os.getpid()):
        if process == but:
            continue
        try:
            os.waitpid(process, os.WNOHANG)
        except ChildProcessError:
            pass  # not ours, but its parent's


@dataclasses.dataclass
class Outcome:
    status: int | None = None      # as subprocess has it; None: it did not end in time
    messages: str = ""             # standard error
    seconds: float = 0             # until it ended, or was told to
    seconds_to_go: float = 0       # from then to the end of all that it started
    peak: int = 0                  # of all together, bytes
    cancelled: bool = False        # it was told to end, because it was still at work


class SupervisedRun:
    """Runs in a process of its own that has called become_parent_of_orphans()."""

    def __init__(self, arguments, environment, folder, messages, limits):
        """`messages`: the path of a file for them. `limits`: by names of the module resource."""
        self.outcome = Outcome()
        self._messages = messages
        self._work = 0
        self._begin = time.monotonic()

        def prepare():
            signal.signal(signal.SIGINT, signal.SIG_DFL)  # shells have it ignored in the background
            for limit, most in limits.items():
                resource.setrlimit(limit, (most, most))

        with open(messages, "wb") as file:
            self._process = subprocess.Popen(
                arguments, env=environment, cwd=folder, stdin=subprocess.DEVNULL,
                stdout=subprocess.DEVNULL, stderr=file, preexec_fn=prepare)

    def wait(self, seconds, work=float("inf")):
        """Until it has ended, so many seconds are over, or it has used so many of processor time:
        on a busy machine that takes longer. @return whether the program has ended."""
        end = time.monotonic() + seconds
        while self._process.poll() is None and time.monotonic() < end and self._work < work:
            self._look()
        return self._process.poll() is not None

    def cancel(self):
        self.outcome.cancelled = True
        self._process.send_signal(signal.SIGINT)

    def finish(self, grace):
        """Ends what has not ended within so many seconds from now. @return the outcome."""
        now = time.monotonic()
        self.outcome.seconds = now - self._begin
        while self._running() and time.monotonic() < now + grace:
            self._look()
        self.outcome.seconds_to_go = time.monotonic() - now
        self.outcome.status = self._process.poll()
        with open(self._messages, "rb") as file:
            self.outcome.messages = file.read(READ_OF_MESSAGES).decode("utf-8", "replace")
        for process in self._running():
            os.kill(process, signal.SIGKILL)
        self._process.wait()
        while self._running():
            time.sleep(LOOK)
        return self.outcome

    def _look(self):
        processes = descendants(os.getpid())
        self.outcome.peak = max(self.outcome.peak, memory_of(processes))
        self._work = work_of(processes)
        try:
            self._process.wait(LOOK)
        except subprocess.TimeoutExpired:
            pass

    def _running(self):
        self._process.poll()
        reap_orphans(but=self._process.pid)
        return descendants(os.getpid())
