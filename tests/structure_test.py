"""The house keeps its order: what may include and link what, and that nothing runs in a circle.

    structure_test.py SOURCES PPD_HEADER      PPD_HEADER is cups/ppd.h
"""
import pathlib
import re
import sys
import unittest

# In each part of the tree a folder builds on those that stand before it.
ORDER = {
    "platform": "printing dialog toolkit",
    "plugins/cut_options": "diagnostics fields preview frame options object",
    "worker": "protocol cage kinds pdf drawing pages program",
    "host": "texts core settings service documents panels printers job plan presets script snapshot "
            "strip dialog cli",
}
# Parts of the tree, or folders of them, that the folders of a part may build on besides.
BELOW = {"platform": [], "plugins/cut_options": ["platform"], "worker": [],
         "host": ["platform", "worker/protocol"]}
# What reads documents: nobody but the worker. Panels' own pictures are part of their plug-ins.
DOCUMENT_LIBRARIES = re.compile(r"#include <(qpdf/.*|QImageReader|QPdfWriter|QPdfDocument|QSvg\w*|"
                                r"poppler.*|ghostscript.*)>")
# Each of these libraries is read by one module of the worker, so that another can take its place.
MODULE_OF_LIBRARY = {"qpdf/": "worker/pdf", "poppler": "worker/pages"}
MAY_READ_PICTURES = {"platform/toolkit/picture.cpp"}
# The deprecated calls of libcups, so that another library can take their place.
MAY_CALL_PPD = {"platform/printing/ppd_lookup.cpp", "host/settings/ppd_calls.cpp"}
# Answers of a print service are read in one place, which looks at them first. Whoever talks to a
# print service does so by these, and no function of the library that sends or reads by itself.
MAY_READ_IPP = {"host/service/ipp_answer.cpp"}
MAY_TALK_HTTP = {"host/service/ipp_exchange.cpp"}
# Of <cups/http.h>: what only has words for a number.
NEVER_TALKS = {"httpStatus"}
# Of <cups/cups.h>: settings, and lists in memory. Everything else there may ask a server.
ASKS_NOBODY = {"cupsEncryption", "cupsFreeOptions", "cupsResolveConflicts", "cupsServer", "cupsUser"}

SOURCES = PPD_HEADER = None  # main


def code_files(*parts):
    return sorted(path for part in parts for path in (SOURCES / part).rglob("*")
                  if path.suffix in (".cpp", ".h"))


def name_of(path):
    return path.relative_to(SOURCES).as_posix()


def code_of(path):
    """Without comments."""
    text = path.read_text("utf-8")
    return re.sub(r"/\*.*?\*/", "", re.sub(r"//[^\n]*", "", text), flags=re.DOTALL)


def includes_of(path):
    return re.findall(r'^#include "([^"]+)"', path.read_text("utf-8"), re.MULTILINE)


def part_of(folder):
    return next((part for part in ORDER if folder == part or folder.startswith(part + "/")), None)


def allowed(folder, other):
    """Whether what is in `folder` may build on what is in `other`; both relative to the sources."""
    part = part_of(folder)
    if folder == other:
        return True
    if part_of(other) != part:
        return part_of(other) in BELOW[part] or other in BELOW[part]
    order = ORDER[part].split()
    first, second = (name.removeprefix(part + "/") for name in (other, folder))
    return first in order and second in order and order.index(first) < order.index(second)


def circle(graph):
    """The first circle of a graph as a list of its nodes, or None."""
    done, path = set(), []

    def visit(node):
        if node in path:
            return path[path.index(node):] + [node]
        if node in done:
            return None
        path.append(node)
        for following in sorted(graph.get(node, ())):
            found = visit(following)
            if found:
                return found
        path.pop()
        done.add(node)
        return None

    return next(filter(None, map(visit, sorted(graph))), None)


def declared(header, prefix):
    """The functions with this prefix that a header of libcups declares."""
    text = PPD_HEADER.with_name(header).read_text("utf-8")
    return set(re.findall(rf"\b({prefix}[A-Z]\w*)\s*\(", text))


def cmake_files():
    return sorted(path for part in ORDER for path in (SOURCES / part).rglob("CMakeLists.txt"))


def without_comments(cmake):
    return re.sub(r"#[^\n]*", "", cmake.read_text("utf-8"))


def targets():
    """The folder of every target of ours that something else may link."""
    made = r"\b(?:labelcut_(?:worker_)?library|add_library|labelcut_plugin_object)\(\s*(\w+)"
    return {target: name_of(cmake.parent) for cmake in cmake_files()
            for target in re.findall(made, without_comments(cmake))}


def links(cmake):
    """What a file links, whatever its target."""
    text = without_comments(cmake)
    lists = re.findall(r"\bLINK\b([^()]*)\)", text)
    lists += re.findall(r"target_link_libraries\(\s*\w+([^()]*)\)", text)
    return {word for words in lists for word in words.split()}


class Structure(unittest.TestCase):
    def test_every_folder_of_sources_has_a_place_in_the_order(self):
        for path in code_files(*ORDER):
            folder = name_of(path.parent)
            part = part_of(folder)
            self.assertIn(folder.removeprefix(part + "/"), ORDER[part].split(), name_of(path))

    def test_folders_include_only_what_stands_before_them(self):
        for path in code_files("platform", "plugins", "worker", "host"):
            for include in includes_of(path):
                folder, other = name_of(path.parent), pathlib.PurePosixPath(include).parent.as_posix()
                self.assertTrue((SOURCES / include).is_file(), f"{name_of(path)}: {include}")
                self.assertTrue(allowed(folder, other), f"{name_of(path)} includes {include}")

    def test_files_include_each_other_in_no_circle(self):
        files = code_files("platform", "plugins", "worker", "host", "tests", "tools")
        graph = {name_of(path): set(includes_of(path)) for path in files}
        self.assertIsNone(circle(graph))

    def test_libraries_are_linked_only_along_the_order(self):
        folders = targets()
        self.assertGreater(len(folders), 20)
        for cmake in cmake_files():
            for target in links(cmake) & folders.keys():
                self.assertTrue(allowed(name_of(cmake.parent), folders[target]),
                                f"{name_of(cmake)} links {target}")

    def test_the_build_takes_the_folders_of_the_host_in_this_order(self):
        folders = re.search(r"foreach\(folder([^)]*)\)", without_comments(SOURCES / "host/CMakeLists.txt"))
        self.assertEqual(folders[1].split(), ORDER["host"].split())

    def test_documents_are_read_by_the_worker_alone(self):
        self.assertTrue(any(DOCUMENT_LIBRARIES.search(path.read_text("utf-8"))
                            for path in code_files("worker")))
        reading = {name_of(path) for path in code_files("platform", "plugins", "host")
                   if DOCUMENT_LIBRARIES.search(path.read_text("utf-8"))}
        self.assertEqual(reading, MAY_READ_PICTURES)

    def test_a_library_that_reads_documents_is_known_to_one_module(self):
        for library, folder in MODULE_OF_LIBRARY.items():
            known = {name_of(path.parent) for path in code_files(*ORDER)
                     if re.search(rf"#include [<\"]{library}", path.read_text("utf-8"))}
            self.assertEqual(known, {folder}, library)

    def test_the_program_is_linked_to_no_library_that_reads_documents(self):
        for cmake in cmake_files():
            if name_of(cmake).startswith("host/"):
                self.assertFalse(links(cmake) & {"Qt6::Svg", "PkgConfig::QPDF", "PkgConfig::POPPLER",
                                                 "Qt6::Pdf"}, cmake)

    def test_two_files_alone_call_the_deprecated_functions_for_ppds(self):
        functions = set(re.findall(r"\b(ppd[A-Z]\w*)\s*\(", PPD_HEADER.read_text("utf-8")))
        self.assertGreater(len(functions), 30)
        calling = {name_of(path) for path in code_files("platform", "plugins", "host")
                   if functions & set(re.findall(r"\b(ppd[A-Z]\w*)\s*\(", code_of(path)))}
        self.assertEqual(calling, MAY_CALL_PPD)


    def calling(self, functions):
        """The files that call one of these, each with what it calls."""
        calls = {name_of(path): functions & set(re.findall(r"\b(\w+)\s*\(", code_of(path)))
                 for path in code_files("platform", "plugins", "worker", "host")}
        return {name: called for name, called in calls.items() if called}

    def test_answers_are_read_in_one_place(self):
        reading = {name for name in declared("ipp.h", "ipp") if re.match("ipp(File)?Read", name)}
        self.assertLessEqual({"ippRead", "ippReadFile", "ippReadIO"}, reading)
        self.assertEqual(self.calling(reading).keys(), MAY_READ_IPP)

    def test_one_file_talks_to_servers(self):
        talking = declared("http.h", "http") - NEVER_TALKS
        self.assertLessEqual({"httpGet", "httpRead2", "httpUpdate"}, talking)
        self.assertEqual(self.calling(talking).keys(), MAY_TALK_HTTP)

    def test_nothing_of_the_library_asks_servers_by_itself(self):
        asking = (declared("cups.h", "cups") | declared("ppd.h", "cups")) - ASKS_NOBODY
        self.assertLessEqual({"cupsDoRequest", "cupsGetDests", "cupsGetNamedDest", "cupsGetDefault",
                              "cupsGetPPD", "cupsGetResponse", "cupsPrintFile"}, asking)
        self.assertEqual(self.calling(asking), {})


class TheChecksThemselves(unittest.TestCase):
    def test_arrows_point_one_way(self):
        self.assertTrue(allowed("host/job", "host/core"))
        self.assertFalse(allowed("host/core", "host/job"))
        self.assertTrue(allowed("host/job", "platform/printing"))
        self.assertFalse(allowed("platform/printing", "host/core"))
        self.assertFalse(allowed("host/cli", "plugins/cut_options/options"))
        self.assertFalse(allowed("plugins/cut_options/options", "host/core"))
        self.assertFalse(allowed("host/job", "host/elsewhere"))
        self.assertTrue(allowed("host/documents", "worker/protocol"))
        self.assertFalse(allowed("host/documents", "worker/pdf"))
        self.assertFalse(allowed("worker/protocol", "host/core"))

    def test_a_circle_is_found(self):
        self.assertIsNone(circle({"a": {"b", "c"}, "b": {"c"}}))
        self.assertEqual(circle({"a": {"b"}, "b": {"c"}, "c": {"b"}}), ["b", "c", "b"])


if __name__ == "__main__":
    SOURCES, PPD_HEADER = map(pathlib.Path, sys.argv[1:3])
    unittest.main(argv=[sys.argv[0], "-v"])
