"""Files of every name and kind, as the program meets them: read, written, told, and never lost.

    file_names_test.py PROGRAM SAMPLES      SAMPLES is the folder with tape.ppd and labels.pdf
"""
import gzip
import json
import os
import pathlib
import signal
import socket
import stat
import subprocess
import sys
import tempfile
import threading
import time
import unittest

PROGRAM = SAMPLES = None  # main
# What a file system takes and a text does not.
ODD_NAMES = (b"a\xe4b", b"a\xe5b", b"two\nlines", b"q'u\"o`t$e\\", b"\xff" * 251, "Größe 漢".encode(),
             b" -o |x", b"\xed\xb2\x80", b"\xef\xbb\xbfmark")
# Refusals come at once; what waits for the other end of a pipe never comes.
SOON = 30  # seconds


class Folder(unittest.TestCase):
    """Each test has a folder of its own, with a home in it; all paths are bytes."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = os.fsencode(folder.name)
        self.labels = self.copied("labels.pdf")
        self.ppd = self.copied("tape.ppd")
        os.mkdir(self.path(b"home"))
        os.mkdir(self.path(b"work"))

    def path(self, name):
        return os.path.join(self.folder, name)

    def file(self, name, content):
        pathlib.Path(os.fsdecode(self.path(name))).write_bytes(content)
        return self.path(name)

    def copied(self, sample):
        return self.file(sample.encode(), (SAMPLES / sample).read_bytes())

    def content(self, path):
        with open(path, "rb") as file:
            return file.read()

    def environment(self, **changes):
        environment = {name: value for name, value in os.environb.items()
                       if not name.startswith((b"XDG_", b"CUPS_", b"DISPLAY", b"WAYLAND"))}
        environment |= {b"HOME": self.path(b"home"), b"LC_ALL": b"C.UTF-8",
                        b"CUPS_SERVER": b"/nonexistent/cups.sock"}
        for name, value in changes.items():
            environment[name.encode()] = value
        return {name: value for name, value in environment.items() if value is not None}

    def run_program(self, *arguments, status=0, cwd=b"work", stdin=subprocess.DEVNULL, **environment):
        """@return both streams as bytes."""
        done = subprocess.run([PROGRAM, *arguments], cwd=self.path(cwd), stdin=stdin,
                              env=self.environment(**environment), capture_output=True, timeout=SOON)
        self.assertEqual(done.returncode, status, (arguments, done.stdout, done.stderr))
        return done

    def refused(self, *arguments, says, status=1, **more):
        """It fails with one line of UTF-8 on standard error that holds every text of `says`."""
        done = self.run_program(*arguments, status=status, **more)
        lines = done.stderr.decode().splitlines()
        self.assertEqual(len(lines), 1, lines)
        for text in says:
            self.assertIn(text, lines[0])
        return lines[0]

    def print_into(self, output, *more, ppd=None, labels=None):
        return ("print", labels or self.labels, "--ppd", ppd or self.ppd, "-o", output, *more)

    def snapshot_into(self, output, ppd=None):
        return ("snapshot", "--ppd", ppd or self.ppd, "-o", output)

    def save_preset(self, name="Shelf"):
        return ("presets", "save", "--ppd", self.ppd, "--set", "KvHalfCut=ON", name)


class AnyName(Folder):
    def test_a_ppd_is_read(self):
        for name in ODD_NAMES:
            ppd = self.file(name + b".ppd", self.content(self.ppd))
            done = self.run_program("options", "--ppd", ppd, "--json")
            self.assertEqual(done.stderr, b"", name)
            self.assertIn("KvHalfCut", [o["keyword"] for o in json.loads(done.stdout)["options"]])

    def test_a_document_is_printed(self):
        for name in ODD_NAMES:
            labels = self.file(name, self.content(self.labels))
            done = self.run_program(*self.print_into(b"out.ps", labels=labels))
            self.assertEqual(done.stderr, b"", name)
            self.assertTrue(self.content(self.path(b"work/out.ps")).startswith(b"%!PS"), name)

    def test_a_job_is_written_into_exactly_that_file(self):
        for name in ODD_NAMES:
            self.run_program(*self.print_into(self.path(b"work/" + name + b".ps")))
        self.assertEqual(sorted(os.listdir(self.path(b"work"))),
                         sorted(name + b".ps" for name in ODD_NAMES))
        for name in ODD_NAMES:
            self.assertTrue(self.content(self.path(b"work/" + name + b".ps")).startswith(b"%!PS"))

    def test_a_job_is_reported_in_whole_characters_and_lines(self):
        plain = self.run_program(*self.print_into(b"plain.ps")).stdout.decode()
        odd = self.run_program(*self.print_into(b"a\xe4\n.ps")).stdout.decode()
        self.assertIn("a\ufffd\ufffd.ps", odd)
        self.assertEqual(odd.replace("a\ufffd\ufffd.ps", "plain.ps"), plain)

    def test_a_picture_is_written_into_exactly_that_file(self):
        for name in ODD_NAMES[:5]:
            output = self.path(b"work/" + name + b".png")
            self.assertEqual(self.run_program(*self.snapshot_into(output)).stderr, b"")
            self.assertTrue(self.content(output).startswith(b"\x89PNG"), name)

    def test_a_script_is_read(self):
        for name in ODD_NAMES[:5]:
            script = self.file(name, b'{"do":"quit"}\n')
            self.assertEqual(self.run_program("panel-script", script).stdout, b'{"ok":true}\n')

    def test_presets_are_kept_below_a_folder_of_any_name(self):
        for name in ODD_NAMES[:5]:
            config = self.path(name)
            self.run_program(*self.save_preset(), XDG_CONFIG_HOME=config)
            self.assertEqual(len(os.listdir(config + b"/labelcut/presets")), 1)
            listed = self.run_program("presets", "list", "--ppd", self.ppd, XDG_CONFIG_HOME=config)
            self.assertEqual(listed.stdout, b"Shelf\n")
            self.assertFalse(self.run_program("presets", "list", "--ppd", self.ppd).stdout)

    def test_names_count_from_a_current_folder_of_any_name(self):
        os.mkdir(self.path(b"in \xe4"))
        self.file(b"in \xe4/p.ppd", self.content(self.ppd))
        self.run_program(*self.print_into(b"out.ps", ppd=b"p.ppd"), cwd=b"in \xe4")
        self.assertTrue(self.content(self.path(b"in \xe4/out.ps")).startswith(b"%!PS"))

    def test_a_name_that_is_not_there_is_told_on_one_line(self):
        self.refused("options", "--ppd", self.path(b"no\xe4\n.ppd"),
                     says=["no\ufffd\ufffd.ppd” does not exist"])
        self.refused(self.path(b"no\xe4"), status=2, says=["neither a command nor a file", "no\ufffd"])


class InUse(Folder):
    def expect_kept(self, kept, arguments):
        """Of every name that leads to `kept`, the output is refused, and nothing changes."""
        before = self.content(kept)
        names = [kept, os.path.join(self.folder, b"work", b"..", os.path.basename(kept)),
                 self.path(b"hard"), self.path(b"soft"), self.path(b"soft of soft")]
        if not os.path.exists(names[1]):
            del names[1]
        os.link(kept, self.path(b"hard"))
        os.symlink(kept, self.path(b"soft"))
        os.symlink(b"soft", self.path(b"soft of soft"))
        for name in names:
            self.refused(*arguments(name), says=["would replace", os.path.basename(kept).decode(),
                                                 os.path.basename(name).decode()])
            self.assertEqual(self.content(kept), before)
        for link in (b"hard", b"soft", b"soft of soft"):
            os.unlink(self.path(link))

    def test_a_job_replaces_no_document_of_its_own(self):
        self.expect_kept(self.labels, self.print_into)

    def test_a_job_replaces_no_further_document(self):
        more = self.copied("labels.ps")
        self.expect_kept(more, lambda output: self.print_into(output, more))

    def test_a_job_does_not_replace_its_ppd(self):
        self.expect_kept(self.ppd, self.print_into)

    def test_a_job_does_not_replace_the_presets(self):
        self.run_program(*self.save_preset())
        folder = self.path(b"home/.config/labelcut/presets")
        [name] = os.listdir(folder)
        self.expect_kept(os.path.join(folder, name), self.print_into)

    def test_a_picture_does_not_replace_the_ppd(self):
        self.expect_kept(self.ppd, self.snapshot_into)

    def test_a_file_that_is_not_in_use_is_replaced_through_a_link(self):
        older = self.file(b"older", b"older")
        os.symlink(b"older", self.path(b"link"))
        self.run_program(*self.print_into(self.path(b"link")))
        self.assertTrue(self.content(older).startswith(b"%!PS"))
        self.assertTrue(os.path.islink(self.path(b"link")))


class OtherPlaces(Folder):
    def full_device(self):
        """A device of the test's own where that may be made; else the system's, which then nobody
        could replace."""
        try:
            os.mknod(self.path(b"full"), stat.S_IFCHR | 0o666, os.makedev(1, 7))
            return self.path(b"full")
        except PermissionError:
            return b"/dev/full"

    def test_a_device_that_is_full_is_told_and_stays_a_device(self):
        full = self.full_device()
        os.symlink(full, self.path(b"link"))
        for output in (full, self.path(b"link")):
            for arguments in (self.print_into(output), self.snapshot_into(output)):
                self.refused(*arguments, says=[os.path.basename(output).decode(), "No space left"])
                self.assertTrue(stat.S_ISCHR(os.stat(full).st_mode))

    def test_a_pipe_is_written_to_and_stays_a_pipe(self):
        os.mkfifo(self.path(b"pipe"))
        for arguments, start, end in ((self.print_into(self.path(b"pipe")), b"%!PS", b"%%EOF\n"),
                                      (self.snapshot_into(self.path(b"pipe")), b"\x89PNG", b"\x42\x60\x82")):
            got = []
            # Slowly enough that the pipe is full in between.
            def read():
                with open(self.path(b"pipe"), "rb", buffering=0) as pipe:
                    while piece := pipe.read(5000):
                        got.append(piece)
            reader = threading.Thread(target=read)
            reader.start()
            self.run_program(*arguments)
            reader.join(SOON)
            whole = b"".join(got)
            self.assertTrue(whole.startswith(start) and whole.endswith(end), whole[-40:])
            self.assertTrue(stat.S_ISFIFO(os.stat(self.path(b"pipe")).st_mode))

    def test_a_reader_that_leaves_is_told(self):
        os.mkfifo(self.path(b"pipe"))
        def leave():
            os.close(os.open(self.path(b"pipe"), os.O_RDONLY))
        reader = threading.Thread(target=leave)
        reader.start()
        self.refused(*self.print_into(self.path(b"pipe")), says=["pipe” cannot be written", "Broken pipe"])
        reader.join(SOON)

    def test_waiting_for_a_reader_can_be_ended(self):
        os.mkfifo(self.path(b"pipe"))
        temporaries = self.path(b"home")
        with subprocess.Popen([PROGRAM, *self.print_into(self.path(b"pipe"))],
                              stderr=subprocess.PIPE, env=self.environment(TMPDIR=temporaries)) as program:
            deadline = time.monotonic() + SOON
            while not os.listdir(temporaries) and time.monotonic() < deadline:
                time.sleep(0.02)
            time.sleep(2)
            self.assertIsNone(program.poll(), "it waits")
            told = time.monotonic()
            program.send_signal(signal.SIGTERM)
            self.assertEqual(program.wait(SOON), -signal.SIGTERM)
            self.assertLess(time.monotonic() - told, 2)
            self.assertIn(b"nothing is printed", program.stderr.read())
        self.assertEqual(os.listdir(temporaries), [])

    def test_a_socket_is_no_place_to_write_and_stays(self):
        place = self.path(b"socket")
        with socket.socket(socket.AF_UNIX) as listener:
            listener.bind(place)
            self.refused(*self.print_into(place), says=["socket” cannot be written"])
            self.assertTrue(stat.S_ISSOCK(os.stat(place).st_mode))

    def test_a_folder_and_places_that_are_not_there_are_named(self):
        os.symlink(b"gone/out.ps", self.path(b"dangling"))
        os.symlink(b"loop", self.path(b"loop"))
        for output, says in ((b".", ["is a folder"]),
                             (b"gone/out.ps", ["gone/out.ps", "No such file or directory"]),
                             (self.labels + b"/out.ps", ["out.ps", "Not a directory"]),
                             (self.path(b"dangling"), ["is a link to", "gone/out.ps"]),
                             (self.path(b"loop"), ["loop", "symbolic links"])):
            self.refused(*self.print_into(output), says=says)
            self.refused(*self.snapshot_into(output), says=says)
        self.assertTrue(os.path.islink(self.path(b"loop")))

    def test_a_link_to_nothing_yet_makes_what_it_leads_to(self):
        os.symlink(b"work/out.ps", self.path(b"link"))
        self.run_program(*self.print_into(self.path(b"link")))
        self.assertTrue(self.content(self.path(b"work/out.ps")).startswith(b"%!PS"))

    def test_nothing_lies_beside_the_output(self):
        self.run_program(*self.print_into(b"x" * 255))
        self.assertEqual(os.listdir(self.path(b"work")), [b"x" * 255])


class NoFile(Folder):
    """What stands where a file should be read."""

    def places(self):
        os.mkfifo(self.path(b"pipe"))
        os.mkdir(self.path(b"folder"))
        os.symlink(b"/dev/zero", self.path(b"zero"))
        os.symlink(b"pipe", self.path(b"link to pipe"))
        return [self.path(name) for name in (b"pipe", b"folder", b"zero", b"link to pipe")]

    def test_a_ppd_is_refused_by_name(self):
        for place in self.places():
            name = os.path.basename(place).decode()
            for arguments in (("options", "--ppd", place), self.print_into(b"o.ps", ppd=place),
                              self.snapshot_into(b"o.png", ppd=place),
                              ("presets", "list", "--ppd", place)):
                self.refused(*arguments, says=[name + "” is no file"])
        self.assertEqual(os.listdir(self.path(b"work")), [])

    def test_a_ppd_of_a_script_is_refused_by_name(self):
        for place in self.places():
            script = self.file(b"script", b'{"do":"open","ppd":"%s"}\n' % place)
            answer = self.run_program("panel-script", script, status=1).stdout.decode()
            self.assertIn(f'{os.path.basename(place).decode()}\\" cannot be opened', answer)

    def test_a_script_is_refused_by_name(self):
        for place in self.places():
            self.refused("panel-script", place, says=[f'The script "{place.decode()}"'])

    def test_a_script_on_standard_input_may_come_through_a_pipe_and_ends_where_a_line_does_not(self):
        for lines in (b'{"do":"quit"}\n', b'{"do":"quit"}'):
            done = subprocess.run([PROGRAM, "panel-script"], input=lines, env=self.environment(),
                                  capture_output=True, timeout=SOON)
            self.assertEqual((done.returncode, done.stdout), (0, b'{"ok":true}\n'))
        done = subprocess.run([PROGRAM, "panel-script"], input=b"x" * (40 << 20),
                              env=self.environment(), capture_output=True, timeout=SOON)
        self.assertEqual(done.returncode, 1)
        self.assertIn(b"this line has more than 16777216 bytes", done.stdout)
        self.assertEqual(done.stdout.count(b"\n"), 1)

    def test_a_ppd_has_a_largest_size_packed_or_not(self):
        ppd = self.content(self.ppd)
        large = ppd + b"*% filled\n" * (17 << 20 >> 3)
        self.refused("options", "--ppd", self.file(b"large.ppd", large),
                     says=["large.ppd” is no usable PPD", "more than 16,777,216 bytes"])
        self.refused("options", "--ppd", self.file(b"bomb.ppd", gzip.compress(large, 1)),
                     says=["bomb.ppd” is no usable PPD", "more than 16,777,216 bytes"])
        self.run_program("options", "--ppd", self.file(b"packed.ppd", gzip.compress(ppd)))

    def test_presets_whose_lock_is_no_file_are_refused_by_name(self):
        self.run_program(*self.save_preset())
        folder = self.path(b"home/.config/labelcut/presets")
        [name] = os.listdir(folder)
        before = self.content(os.path.join(folder, name))
        lock = os.path.join(folder, name + b".lock")
        for make, remove in ((os.mkfifo, os.unlink), (os.mkdir, os.rmdir),
                             (lambda path: os.symlink(self.path(b"elsewhere"), path), os.unlink)):
            make(lock)
            self.refused(*self.save_preset("Drawer"), says=[os.fsdecode(lock), "Remove it"])
            self.assertEqual(self.content(os.path.join(folder, name)), before)
            self.assertFalse(os.path.exists(self.path(b"elsewhere")))
            remove(lock)
        self.run_program(*self.save_preset("Drawer"))

    def test_a_preset_file_that_is_a_pipe_is_told(self):
        self.run_program(*self.save_preset())
        folder = self.path(b"home/.config/labelcut/presets")
        [name] = os.listdir(folder)
        os.unlink(os.path.join(folder, name))
        os.mkfifo(os.path.join(folder, name))
        listed = self.run_program("presets", "list", "--ppd", self.ppd)
        self.assertIn(b"it is no regular file", listed.stderr)


class Homes(Folder):
    def everything(self):
        return sorted(os.path.join(root, name)[len(self.path(b"work")):]
                      for root, folders, files in os.walk(self.path(b"work"))
                      for name in folders + files)

    def test_a_configuration_folder_without_a_slash_in_front_is_ignored(self):
        for folder in (b"foo", b"./foo", b"../foo", b""):
            self.run_program(*self.save_preset(f"of [{folder.decode()}]"), XDG_CONFIG_HOME=folder)
            self.assertEqual(self.everything(), [])
        self.assertFalse(os.path.exists(self.path(b"foo")))
        listed = self.run_program("presets", "list", "--ppd", self.ppd)
        self.assertEqual(listed.stdout.count(b"of ["), 4)

    def test_no_library_writes_into_the_current_folder(self):
        for variable in ("XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME",
                         "XDG_RUNTIME_DIR"):
            self.run_program(*self.snapshot_into(self.path(b"panel.png")), **{variable: b"foo"})
            self.assertEqual(self.everything(), [], variable)


if __name__ == "__main__":
    PROGRAM, SAMPLES = map(pathlib.Path, sys.argv[1:3])
    unittest.main(argv=[sys.argv[0], "-v"])
