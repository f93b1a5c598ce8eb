"""Performance: the servers of a run, all of them private: cupsd, one that never answers, an X server."""
import os
import shutil
import socket
import subprocess
import threading
import time
from pathlib import Path

LIMIT = 60  # seconds until a server must be there


def wait_until(condition, what):
    end = time.monotonic() + LIMIT
    while not condition():
        if time.monotonic() > end:
            raise RuntimeError(f"{what} does not start")
        time.sleep(0.01)


def answers(path):
    with socket.socket(socket.AF_UNIX, socket.SOCK_STREAM) as probe:
        return probe.connect_ex(str(path)) == 0


def stop(process):
    process.terminate()
    try:
        process.wait(5)
    except subprocess.TimeoutExpired:
        process.kill()
        process.wait()


class PrivateCupsd:
    """A scheduler in a folder of its own, with queues that print nowhere."""

    def __init__(self, folder, queues):
        """queues: {name: path of a PPD}."""
        self.root = Path(folder)
        for name in ("etc/ppd", "spool/tmp", "cache", "state/certs", "log", "bin/backend"):
            (self.root / name).mkdir(parents=True)
        for name in ("filter", "daemon", "notifier"):
            (self.root / "bin" / name).symlink_to(f"/usr/lib/cups/{name}")
        backend = self.root / "bin/backend/nowhere"
        backend.write_text("#!/bin/sh\ncat ${6:+\"$6\"} >/dev/null\n")
        backend.chmod(0o755)
        self._configure(queues)
        self.socket = self.root / "cups.sock"
        self.process = subprocess.Popen(
            ["/usr/sbin/cupsd", "-f", "-c", self.root / "cupsd.conf", "-s",
             self.root / "cups-files.conf"],
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        try:
            wait_until(lambda: answers(self.socket), "cupsd")
        except BaseException:
            self.close()
            raise

    def _configure(self, queues):
        root = self.root
        (root / "cupsd.conf").write_text(
            f"Listen {root}/cups.sock\nLogLevel error\nBrowsing Off\nDefaultAuthType None\n"
            "MaxLogSize 0\n<Location />\nOrder allow,deny\nAllow all\n</Location>\n"
            "<Policy default>\nJobPrivateAccess all\nJobPrivateValues none\n"
            "SubscriptionPrivateAccess all\nSubscriptionPrivateValues none\n"
            "<Limit All>\nOrder deny,allow\n</Limit>\n</Policy>\n")
        (root / "cups-files.conf").write_text(
            "SystemGroup root\nFileDevice Yes\nSandboxing Relaxed\nSyncOnClose No\n"
            f"AccessLog {root}/log/access_log\nErrorLog {root}/log/error_log\n"
            f"PageLog {root}/log/page_log\nServerRoot {root}/etc\nRequestRoot {root}/spool\n"
            f"TempDir {root}/spool/tmp\nCacheDir {root}/cache\nStateDir {root}/state\n"
            f"ServerBin {root}/bin\n" + ("User lp\nGroup lp\n" if os.geteuid() == 0 else ""))
        for name, ppd in queues.items():
            shutil.copy(ppd, root / f"etc/ppd/{name}.ppd")
        (root / "etc/printers.conf").write_text("".join(
            f"<{'DefaultPrinter' if number == 0 else 'Printer'} {name}>\nInfo {name}\n"
            f"DeviceURI nowhere:/\nState Idle\nAccepting Yes\nShared No\n</{'DefaultPrinter' if number == 0 else 'Printer'}>\n"
            for number, name in enumerate(queues)))

    def environment(self):
        return (("CUPS_SERVER", str(self.socket)), ("CUPS_SERVERROOT", str(self.root / "etc")))

    def close(self):
        stop(self.process)


class SilentServer:
    """Accepts every connection, reads what comes and never answers."""

    def __init__(self, folder):
        self.path = Path(folder) / "silent.sock"
        self.listener = socket.socket(socket.AF_UNIX, socket.SOCK_STREAM)
        self.listener.bind(str(self.path))
        self.listener.listen(64)
        threading.Thread(target=self._serve, daemon=True).start()

    def _serve(self):
        while True:
            try:
                client, _ = self.listener.accept()
            except OSError:
                return
            threading.Thread(target=self._drain, args=(client,), daemon=True).start()

    @staticmethod
    def _drain(client):
        with client:
            try:
                while client.recv(65536):
                    pass
            except OSError:
                return

    def environment(self):
        return (("CUPS_SERVER", str(self.path)),)

    def close(self):
        self.listener.close()


class Display:
    """An X server without a screen, for the toolkit that cannot do without one."""

    def __init__(self):
        reader, writer = os.pipe()
        self.process = subprocess.Popen(
            ["Xvfb", "-displayfd", str(writer), "-screen", "0", "1280x1024x24", "-nolisten", "tcp"],
            pass_fds=(writer,), stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(writer)
        with open(reader, encoding="ascii") as number:
            self.name = ":" + number.readline().strip()
        if self.name == ":":
            raise RuntimeError("Xvfb does not start")

    def close(self):
        stop(self.process)
