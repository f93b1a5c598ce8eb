"""The Debian packages of what is built: what is in them, what they want, and that they run unpacked.

They are packed from the build folder as it is, without a compilation; tools/package packs a release
in the same way.
"""
import os
import pathlib
import re
import subprocess
import tempfile
import unittest

SOURCES = pathlib.Path(os.environ["LABELCUT_SOURCES"])
BUILD = pathlib.Path(os.environ["LABELCUT_BUILD"])
CPACK = pathlib.Path(os.environ["LABELCUT_CMAKE"]).with_name("cpack")
ROOT = LIBRARIES = None  # setUpModule

SIZES = (16, 24, 32, 48, 64, 128, 256)
# Files of each package, with LIB for the folder of libraries; headers and documents come beside.
RUNTIME = {
    "usr/bin/labelcut",
    "LIB/labelcut/document_worker",
    "LIB/labelcut/drawing.so",
    "LIB/labelcut/pages.so",
    "LIB/labelcut/pdf_engine.so",
    "LIB/labelcut/plugins/cut_options.so",
    "usr/share/applications/org.labelcut.Labelcut.desktop",
    "usr/share/bash-completion/completions/labelcut",
    "usr/share/fish/vendor_completions.d/labelcut.fish",
    "usr/share/zsh/vendor-completions/_labelcut",
    "usr/share/icons/hicolor/scalable/apps/org.labelcut.Labelcut.svg",
    *(f"usr/share/icons/hicolor/{size}x{size}/apps/org.labelcut.Labelcut.png" for size in SIZES),
    "usr/share/labelcut/samples/labels.pdf",
    "usr/share/labelcut/samples/labels.ps",
    "usr/share/labelcut/samples/roll.ppd",
    "usr/share/labelcut/samples/tape.ppd",
    "usr/share/man/man1/labelcut.1.gz",
    "usr/share/metainfo/org.labelcut.Labelcut.metainfo.xml",
}
DEV = {
    "LIB/cmake/Labelcut/LabelcutConfig.cmake",
    "LIB/cmake/Labelcut/LabelcutConfigVersion.cmake",
    "LIB/liblabelcut_printing.a",
    "LIB/liblabelcut_property_list.a",
    "LIB/liblabelcut_toolkit.a",
}


def output(*command, **more):
    done = subprocess.run(command, text=True, capture_output=True, timeout=300, **more)
    if done.returncode:
        raise AssertionError(f"{command}: status {done.returncode}\n{done.stdout}{done.stderr}")
    return done.stdout


def setUpModule():
    global ROOT, LIBRARIES
    folder = tempfile.TemporaryDirectory()
    unittest.addModuleCleanup(folder.cleanup)
    ROOT = pathlib.Path(folder.name)
    output(CPACK, "--config", BUILD / "CPackConfig.cmake", "-B", ROOT / "packages")
    for name in ("labelcut", "labelcut-dev"):
        output("dpkg-deb", "-x", package(name), ROOT / name)
    [engine] = (ROOT / "labelcut").rglob("pdf_engine.so")
    LIBRARIES = str(engine.parent.parent.relative_to(ROOT / "labelcut"))


def package(name):
    [path] = (ROOT / "packages").glob(f"{name}_*.deb")
    return path


def field(name, of):
    return output("dpkg-deb", "-f", package(of), name).strip()


def files(name):
    """Of an unpacked package, without its documents."""
    tree = ROOT / name
    paths = {str(path.relative_to(tree)) for path in tree.rglob("*") if not path.is_dir()}
    return {path for path in paths if not path.startswith("usr/share/doc/")}


def in_libraries(names):
    return {name.replace("LIB", LIBRARIES, 1) for name in names}


def labelcut(*arguments):
    return output(ROOT / "labelcut/usr/bin/labelcut", *arguments, cwd="/")


class Runtime(unittest.TestCase):
    def test_holds_the_program_and_what_the_desktop_takes_and_nothing_else(self):
        self.assertEqual(files("labelcut"), in_libraries(RUNTIME))
        documents = ROOT / "labelcut/usr/share/doc/labelcut"
        for name in ("copyright", "changelog.gz", "changelog.Debian.gz", "panels.md"):
            self.assertGreater((documents / name).stat().st_size, 0, name)

    def test_wants_what_it_is_linked_to_and_ghostscript(self):
        wanted = {re.split("[ (:]", part)[0] for part in field("Depends", "labelcut").split(", ")}
        self.assertLessEqual({"ghostscript", "libc6", "libcups2", "libpoppler-cpp0v5",
                              "libqpdf29", "libqt6core6", "libqt6svg6", "libqt6uitools6",
                              "libqt6widgets6", "libseccomp2"}, wanted)
        self.assertEqual({name for name in wanted if name.endswith("-dev")}, set())

    def test_carries_no_symbols_for_debuggers(self):
        for name in in_libraries({"usr/bin/labelcut", "LIB/labelcut/document_worker",
                                  "LIB/labelcut/drawing.so", "LIB/labelcut/pages.so",
                                  "LIB/labelcut/pdf_engine.so",
                                  "LIB/labelcut/plugins/cut_options.so"}):
            sections = output("readelf", "--wide", "--sections", ROOT / "labelcut" / name)
            self.assertNotIn(".debug_info", sections, name)

    def test_runs_from_where_it_is_unpacked(self):
        version = field("Version", "labelcut").rsplit("-", 1)[0]
        self.assertEqual(labelcut("--version"), f"labelcut {version}\n")
        samples = ROOT / "labelcut/usr/share/labelcut/samples"
        options = labelcut("options", "--ppd", samples / "tape.ppd")
        self.assertEqual(len(re.findall("^Kv", options, re.MULTILINE)), 6)
        # The library that reads documents is found, too.
        job = ROOT / "job.ps"
        labelcut("print", samples / "labels.pdf", "--ppd", samples / "tape.ppd",
                 "--set", "KvHalfCut=ON", "-o", job)
        self.assertIn(b"%%BeginFeature: *KvHalfCut ON", job.read_bytes())


class Dev(unittest.TestCase):
    def test_holds_all_headers_of_the_platform_with_its_libraries_and_nothing_else(self):
        headers = {f"usr/include/labelcut/{path.relative_to(SOURCES)}"
                   for path in (SOURCES / "platform").rglob("*.h")}
        self.assertEqual(files("labelcut-dev"), in_libraries(DEV) | headers)

    def test_has_whole_examples(self):
        examples = ROOT / "labelcut-dev/usr/share/doc/labelcut-dev/examples"
        listed = {path.name for path in examples.rglob("*") if path.is_file()}
        self.assertLessEqual({"CMakeLists.txt", "example_panel.json", "proof_panel.cpp",
                              "proof_panel.h"}, listed)

    def test_wants_what_its_headers_include(self):
        wanted = {re.split("[ (:]", part)[0] for part in field("Depends", "labelcut-dev").split(", ")}
        self.assertEqual(wanted, {"libcups2-dev", "libfmt-dev", "libicu-dev", "qt6-base-dev",
                                  "qt6-svg-dev", "qt6-tools-dev"})


if __name__ == "__main__":
    unittest.main()
