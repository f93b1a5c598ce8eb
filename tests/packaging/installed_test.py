"""What "cmake --install" makes is whole, and works wherever it lies."""
import json
import os
import pathlib
import re
import shutil
import subprocess
import tempfile
import unittest

SOURCES = pathlib.Path(os.environ["LABELCUT_SOURCES"])
BUILD = pathlib.Path(os.environ["LABELCUT_BUILD"])
CMAKE = os.environ["LABELCUT_CMAKE"]
ROOT = STAGED = None  # setUpModule


def cached(name):
    return re.search(rf"^{name}:\w+=(.*)$", (BUILD / "CMakeCache.txt").read_text(), re.MULTILINE)[1]


def install(*arguments, **environment):
    subprocess.run([CMAKE, "--install", BUILD, *arguments], check=True, stdout=subprocess.DEVNULL,
                   env=dict(os.environ, **environment))


def setUpModule():
    global ROOT, STAGED
    folder = tempfile.TemporaryDirectory()
    unittest.addModuleCleanup(folder.cleanup)
    ROOT = pathlib.Path(folder.name)
    install(DESTDIR=str(ROOT / "stage"))
    STAGED = ROOT / "stage" / cached("CMAKE_INSTALL_PREFIX").lstrip("/")


def plugins_of(tree):
    [plugin] = tree.glob("lib*/**/labelcut/plugins/cut_options.so")
    return plugin.parent


def labelcut(tree, *arguments, folder="/", status=0):
    """Runs it with neither display nor print service. @return both streams."""
    environment = {name: value for name, value in os.environ.items()
                   if name not in ("DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "QT_PLUGIN_PATH")}
    done = subprocess.run([tree / "bin/labelcut", *arguments], text=True, cwd=folder,
                          capture_output=True, env=dict(environment, LC_ALL="C.UTF-8"), timeout=120)
    if done.returncode != status:
        raise AssertionError(f"{arguments}: status {done.returncode}\n{done.stdout}{done.stderr}")
    return done


def keywords(tree, ppd=None, **more):
    """What the panels of an installed tree claim, and what it complains of."""
    done = labelcut(tree, "options", "--json", "--ppd",
                    ppd or tree / "share/labelcut/samples/tape.ppd", **more)
    return sorted(option["keyword"] for option in json.loads(done.stdout)["options"]), done.stderr


SIX = ["KvAutoTapeCut", "KvChainPrint", "KvHalfCut", "KvMirror", "KvRemoveBlkSpace", "KvSpecialTape"]

# What the example panel claims.
QUALITY = """*OpenUI *PrintQuality/Print quality: PickOne
*DefaultPrintQuality: Normal
*PrintQuality Draft/Draft: ""
*PrintQuality Normal/Normal: ""
*CloseUI: *PrintQuality
"""


class Staged(unittest.TestCase):
    def test_every_file_is_there(self):
        for name in [
                "bin/labelcut",
                "share/applications/org.labelcut.Labelcut.desktop",
                "share/metainfo/org.labelcut.Labelcut.metainfo.xml",
                "share/icons/hicolor/scalable/apps/org.labelcut.Labelcut.svg",
                *(f"share/icons/hicolor/{size}x{size}/apps/org.labelcut.Labelcut.png"
                  for size in (16, 24, 32, 48, 64, 128, 256)),
                "share/man/man1/labelcut.1.gz",
                "share/bash-completion/completions/labelcut",
                "share/zsh/vendor-completions/_labelcut",
                "share/fish/vendor_completions.d/labelcut.fish",
                "share/doc/labelcut/copyright",
                "share/doc/labelcut/panels.md",
                "share/labelcut/samples/labels.pdf",
                "include/labelcut/platform/dialog/pde_plugin.h",
                "include/labelcut/platform/printing/ppd_lookup.h"]:
            with self.subTest(name=name):
                self.assertGreater((STAGED / name).stat().st_size, 0)

    def test_nothing_outside_the_prefix_and_nothing_of_the_build_folder(self):
        files = [path for path in (ROOT / "stage").rglob("*") if path.is_file()]
        for path in files:
            self.assertTrue(path.is_relative_to(STAGED), path)
            content = path.read_bytes()
            # Only packages strip what is compiled of its names for debuggers.
            if not content.startswith((b"\x7fELF", b"!<arch>")):
                self.assertFalse(str(SOURCES).encode() in content, path)

    def test_pictures_have_the_size_of_their_folder(self):
        for picture in STAGED.glob("share/icons/hicolor/*/apps/*.png"):
            size = int(picture.parent.parent.name.split("x")[0])
            header = picture.read_bytes()[:24]
            self.assertEqual(header[:8], b"\x89PNG\r\n\x1a\n")
            self.assertEqual(header[16:24], size.to_bytes(4, "big") * 2)

    def test_the_desktop_file_starts_the_program_that_is_installed(self):
        entry = (STAGED / "share/applications/org.labelcut.Labelcut.desktop").read_text("utf-8")
        self.assertIn("\nExec=labelcut dialog %F\n", entry)
        self.assertIn("\nIcon=org.labelcut.Labelcut\n", entry)
        types = set(re.search("^MimeType=(.*)$", entry, re.MULTILINE)[1].strip(";").split(";"))
        metainfo = (STAGED / "share/metainfo/org.labelcut.Labelcut.metainfo.xml").read_text("utf-8")
        self.assertEqual(types, set(re.findall("<mediatype>(.*)</mediatype>", metainfo)))
        self.assertIn("<launchable type=\"desktop-id\">org.labelcut.Labelcut.desktop<", metainfo)
        version = re.search(r"<release version=\"([^\"]+)\"", metainfo)[1]
        self.assertEqual(labelcut(STAGED, "--version").stdout, f"labelcut {version}\n")
        for language in ("de", "fr", "es", "ja", "zh_CN"):
            for key in ("GenericName", "Comment", "Keywords"):
                self.assertIn(f"\n{key}[{language}]=", entry)
            self.assertIn(f"<summary xml:lang=\"{language}\">", metainfo)

    def test_the_versions_agree(self):
        version = labelcut(STAGED, "--version").stdout.split()[1]
        self.assertIn(f"## {version} ", (SOURCES / "CHANGELOG.md").read_text("utf-8"))
        self.assertTrue((SOURCES / "packaging/linux/changelog.Debian").read_text("utf-8")
                        .startswith(f"labelcut ({version}-"))

    def test_the_program_finds_its_plugin(self):
        self.assertEqual(keywords(STAGED), (SIX, ""))

    def test_it_prints_pictures_and_takes_scripts(self):
        samples = STAGED / "share/labelcut/samples"
        tape = ["--ppd", samples / "tape.ppd"]
        labelcut(STAGED, "print", samples / "labels.pdf", *tape, "--set", "KvHalfCut=ON", "-o",
                 ROOT / "job.ps")
        self.assertIn(b"%%BeginFeature: *KvHalfCut ON", (ROOT / "job.ps").read_bytes())
        labelcut(STAGED, "snapshot", *tape, "-o", ROOT / "panel.png")
        self.assertEqual((ROOT / "panel.png").read_bytes()[:4], b"\x89PNG")
        script = ROOT / "script.jsonl"
        script.write_text(json.dumps({"do": "open", "ppd": str(samples / "tape.ppd")}) + "\n")
        answer = labelcut(STAGED, "panel-script", script).stdout
        self.assertTrue(json.loads(answer)["ok"])


class Moved(unittest.TestCase):
    """The same tree somewhere else."""

    def setUp(self):
        self.tree = ROOT / "else where"
        shutil.copytree(STAGED, self.tree)
        self.addCleanup(shutil.rmtree, self.tree)

    def test_the_program_finds_the_plugin_beside_it(self):
        self.assertEqual(keywords(self.tree), (SIX, ""))
        plugin = plugins_of(self.tree) / "cut_options.so"
        plugin.write_bytes(b"damaged")
        none, said = keywords(self.tree)
        self.assertEqual(none, [])
        self.assertIn(f"\"{plugin}\" is left out", said)

    def test_without_what_reads_documents_it_says_so_and_writes_nothing(self):
        samples = self.tree / "share/labelcut/samples"
        picture = ROOT / "a.svg"
        picture.write_text("<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 1 1'/>")
        for name, document, words in (
                ("drawing.so", picture, "drawing.so” cannot be loaded"),
                ("pdf_engine.so", samples / "labels.pdf", "pdf_engine.so” cannot be loaded"),
                ("document_worker", samples / "labels.pdf", "document_worker” cannot be started")):
            [part] = self.tree.glob(f"lib*/**/labelcut/{name}")
            part.unlink()
            said = labelcut(self.tree, "print", document, "--ppd", samples / "tape.ppd",
                            "-o", ROOT / "none.ps", status=1).stderr
            self.assertIn(words, said)
            self.assertIn("Install Labelcut anew", said)
            self.assertEqual(said.count("\n"), 1, said)
            self.assertFalse((ROOT / "none.ps").exists())

    def test_another_prefix_does_as_well(self):
        install("--prefix", str(ROOT / "prefix"))
        self.assertEqual(keywords(ROOT / "prefix"), (SIX, ""))

    def test_a_link_to_the_program_does_as_well(self):
        (ROOT / "bin").mkdir()
        (ROOT / "share").symlink_to(self.tree / "share")
        (ROOT / "bin/labelcut").symlink_to(self.tree / "bin/labelcut")
        self.assertEqual(keywords(ROOT), (SIX, ""))

    def test_the_current_folder_is_never_searched(self):
        # Whatever the current folder holds would be loaded or complained of.
        here = ROOT / "current"
        for folder in ("", "plugins", "labelcut/plugins", "lib/labelcut/plugins",
                       plugins_of(STAGED).relative_to(STAGED)):
            (here / folder).mkdir(parents=True, exist_ok=True)
            (here / folder / "planted.so").write_bytes(b"no plug-in")
        (here / "bin").mkdir()
        self.assertEqual(keywords(self.tree, folder=here), (SIX, ""))
        shutil.rmtree(plugins_of(self.tree))
        for folder in (here, here / "bin"):
            self.assertNotIn("planted", keywords(self.tree, folder=folder)[1])


class ForAuthorsOfPanels(unittest.TestCase):
    def test_the_installed_example_builds_and_its_panel_is_loaded(self):
        # Sanitizers and profiles want the whole process built with them, which a third party's
        # panel is not.
        flags = os.environ["LABELCUT_INSTRUMENTED"]
        build = ROOT / "example"
        tree = ROOT / "for authors"
        shutil.copytree(STAGED, tree)
        subprocess.run([CMAKE, "-S", tree / "share/doc/labelcut-dev/examples", "-B", build,
                        "-G", "Ninja", f"-DCMAKE_PREFIX_PATH={tree}", f"-DCMAKE_CXX_FLAGS={flags}",
                        f"-DCMAKE_CXX_COMPILER={os.environ['LABELCUT_CXX']}"],
                       check=True, stdout=subprocess.DEVNULL)
        subprocess.run([CMAKE, "--build", build], check=True, stdout=subprocess.DEVNULL)
        subprocess.run([CMAKE, "--install", build], check=True, stdout=subprocess.DEVNULL)
        self.assertTrue((plugins_of(tree) / "example_panel.so").is_file())
        ppd = ROOT / "quality.ppd"
        ppd.write_text((tree / "share/labelcut/samples/tape.ppd").read_text("utf-8") + QUALITY)
        self.assertEqual(keywords(tree, ppd), (sorted([*SIX, "PrintQuality"]), ""))

    def test_every_installed_header_compiles_and_the_toolkit_links(self):
        project = ROOT / "every header"
        project.mkdir()
        include = STAGED / "include/labelcut"
        headers = sorted(str(path.relative_to(include)) for path in include.rglob("*.h"))
        self.assertGreater(len(headers), 20)
        (project / "main.cpp").write_text(
            "".join(f'#include "{header}"\n' for header in headers) +
            "int main() { return &labelcut::loadInterfaceFile == nullptr; }\n")
        (project / "CMakeLists.txt").write_text(
            "cmake_minimum_required(VERSION 3.25)\n"
            "project(every_header LANGUAGES CXX)\n"
            "find_package(Labelcut 0.1 REQUIRED)\n"
            "add_executable(every_header main.cpp)\n"
            "target_link_libraries(every_header PRIVATE Labelcut::Toolkit)\n")
        flags = os.environ["LABELCUT_INSTRUMENTED"]
        configure = [CMAKE, "-S", project, "-B", project / "build", "-G", "Ninja",
                     f"-DCMAKE_PREFIX_PATH={STAGED}", f"-DCMAKE_CXX_FLAGS={flags}",
                     f"-DCMAKE_CXX_COMPILER={os.environ['LABELCUT_CXX']}"]
        for command in (configure, [CMAKE, "--build", project / "build"]):
            done = subprocess.run(command, text=True, capture_output=True)
            self.assertEqual(done.returncode, 0, done.stdout + done.stderr)


if __name__ == "__main__":
    unittest.main()
