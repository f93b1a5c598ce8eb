"""Performance: the rows of the table. Each says what exactly is inside its figures.

A row is a function that takes a Bench and gives Lines. Every comparison is made within one run.
"""
import re
import subprocess
import tempfile
from pathlib import Path

import documents
import ppds
from harness import (BIN, HERE, PROFILES, SCRATCH, Program, callgrind, instructions, totals,
                     wall_and_memory)
from report import Line, curve
from service import Display, PrivateCupsd, SilentServer

LABELS = HERE.parent.parent / "samples/labels.pdf"
TIMES = 20              # kTimes of parts.cpp
MIB = 1024              # KiB
INSTRUCTIONS = "instructions"


class Bench:
    """The run: its surroundings, and its printers, which are made when a row first wants them."""

    def __init__(self, surroundings, runs, say):
        self.surroundings = surroundings
        self.runs = runs
        self.say = say
        self.curves = []
        self.profiles = []
        self._servers = []

    def ppd(self, name="standard", **shape):
        path = SCRATCH / f"{name}.ppd"
        path.write_text(ppds.ppd(**shape), encoding="utf-8")
        return path

    def document(self, pages):
        path = SCRATCH / f"labels-{pages}.pdf"
        path.write_bytes(documents.pdf(pages))
        return path

    def text(self, labels):
        path = SCRATCH / "labels.txt"
        path.write_text("".join(f"Shelf {n}\nfragile\f" for n in range(labels)), "utf-8")
        return path

    def picture(self):
        path = SCRATCH / "label.png"
        path.write_bytes(documents.png(400, 800))
        return path

    def cupsd(self, queues=1):
        names = ["Bench", *(f"Bench{n}" for n in range(2, queues + 1))]
        return self._keep(PrivateCupsd(self._folder(), dict.fromkeys(names, self.ppd())))

    def silent(self):
        return self._keep(SilentServer(self._folder()))

    def display(self):
        return self._keep(Display())

    def _folder(self):
        folder = Path(tempfile.mkdtemp(dir=self.surroundings.folder))
        folder.chmod(0o711)  # cupsd's filters run as another user
        return folder

    def _keep(self, server):
        self._servers.append(server)
        return server

    def close(self):
        while self._servers:
            self._servers.pop().close()

    def instructions(self, name, program, repetitions=2):
        """The larger of the repetitions."""
        counts = instructions(self.surroundings, program, name, repetitions)
        self.say(f"{name}: {' '.join(f'{count:,}' for count in counts)} instructions")
        return max(counts)

    def dumps(self, name, program):
        found = callgrind(self.surroundings, program, name)
        self.say(f"{name}: {len(found)} dumps")
        return found

    def wall_and_memory(self, programs):
        found = wall_and_memory(self.surroundings, programs, self.runs)
        for name, (milliseconds, kib) in found.items():
            self.say(f"{name}: {milliseconds:.1f} ms, {kib / MIB:.1f} MiB")
        return found


def inclusive(file, pattern=None):
    """What functions took together with all they called: {name: instructions}."""
    text = subprocess.run(["callgrind_annotate", "--inclusive=yes", "--threshold=100",
                           "--show-percs=no", str(file)], capture_output=True, text=True,
                          check=True).stdout
    found = {}
    for count, name in re.findall(r"^\s*([\d,]+)\s+(?:\S*?):(\S.*)$", text, re.M):
        name = re.sub(r" \[[^\]]*\]$", "", name)
        if pattern is None or re.search(pattern, name):
            found[name] = max(found.get(name, 0), int(count.replace(",", "")))
    return found


# Work that a start-up consists of, by the function under which all of it happens. Some happens
# within another: they do not add up to the whole.
PHASES = (
    ("dynamic linking at the start", r"^_dl_start$"),
    ("dynamic linking of plug-ins", r"^_dl_open$"),
    ("application object", r"^QApplication::QApplication\("),
    ("font start-up", r"^FcInit$|^QFontconfigDatabase::populateFontDatabase"),
    ("command line", r"^CLI::App::parse\("),
    ("plug-ins found and loaded", r"^labelcut::loadPlugins"),
    ("dialog constructed", r"^labelcut::PrintDialog::PrintDialog"),
    ("window's frame", r"^labelcut::PrintDialog::buildWindow"),
    ("PPD read", r"^ppdOpen2?(File)?$|^ppdOpenFile$"),
    ("panels created", r"^labelcut::PanelSet::PanelSet"),
    ("tabs built", r"^labelcut::PrintDialog::rebuildTabs"),
    ("panel's view loaded and shown", r"^labelcut::JobModel::showPanel"),
    ("  QUiLoader", r"^QUiLoader::load\(|^QFormBuilder::load\(|^QAbstractFormBuilder::load\("),
    ("features page", r"^labelcut::FeaturesPage::FeaturesPage"),
    ("summary page", r"^labelcut::SummaryPage::refresh"),
    ("pages page", r"^labelcut::PagesPage::PagesPage"),
    ("dialog's refresh", r"^labelcut::PrintDialog::refresh\("),
    ("stand-in icons of the style", r"^QCommonStyle::standardIcon"),
    ("pictures decoded (PNG)", r"^png_read_image$"),
    ("pictures read (SVG)", r"^QSvgTinyDocument::load|^QSvgRenderer::load"),
    ("translations", r"^QTranslator::load\("),
    ("settings files", r"^QSettings::QSettings\("),
    ("shown: layout, polish", r"^QWidget::setVisible\("),
    ("painted", r"^QWidgetRepaintManager::paintAndFlush|^QWidgetPrivate::drawWidget\("),
)


def phases(file):
    names = inclusive(file)
    lines = []
    for title, pattern in PHASES:
        took = max((count for name, count in names.items() if re.search(pattern, name)), default=0)
        if took:
            lines.append(f"| {title} | {took / 1e6:.2f} M |")
    return lines


# --- rows --------------------------------------------------------------------------------------

def dialog(bench):
    """From the start of the process to the end of its window's first paint, when the process is
    ended at once: in Qt programs behind QBackingStore::flush(), in GTK's at the frame clock's
    "after-paint". Qt runs offscreen; GTK, which cannot, on Xvfb, whose own work is not counted,
    and GTK 4 with its cairo renderer. Labelcut shows the cut-options panel, with a document whose
    pages are counted meanwhile on a second thread, which is counted as far as it gets."""
    ppd = bench.ppd()
    queue = bench.cupsd().environment()
    programs = {
        "dialog": Program((BIN / "labelcut", "dialog", "--ppd", ppd, LABELS), (), "any"),
        "floor": Program((BIN / "bench_empty_window",), (), "any"),
        "qt": Program((BIN / "bench_qt_print_dialog", "Bench"), queue, "any"),
        "qt-ppd": Program((BIN / "bench_qt_print_dialog", "Bench", "--ppd"), queue,
                          "Printer Properties"),
    }
    shown_on = (("DISPLAY", bench.display().name), ("GDK_BACKEND", "x11"),
                ("GSK_RENDERER", "cairo"), ("GTK_A11Y", "none"), ("NO_AT_BRIDGE", "1"),
                ("GSETTINGS_BACKEND", "memory"), ("GIO_USE_VFS", "local"))
    for version in ("3", "4"):
        programs[f"gtk{version}"] = Program((BIN / f"bench_gtk{version}_print_dialog",),
                                            (*queue, *shown_on))
    measured = bench.wall_and_memory(programs)
    cost = {name: bench.instructions(name, program, 1 if name.startswith("gtk") else 2)
            for name, program in programs.items()}
    bench.profiles.append(("dialog", phases(PROFILES / "callgrind.dialog")))
    bench.profiles.append(("floor", phases(PROFILES / "callgrind.floor")))
    work = "dialog, start to first paint"
    lines = [Line(work, cost["dialog"], INSTRUCTIONS, against, cost[name], goal)
             for name, against, goal in (("qt-ppd", "Qt's dialog with its PPD page", 0.6),
                                         ("gtk4", "GTK 4's dialog", 0.25),
                                         ("floor", "empty Qt window (floor)", 1.4),
                                         ("qt", "Qt's dialog", 0), ("gtk3", "GTK 3's dialog", 0))]
    lines += [Line(f"{work}, wall time", measured["dialog"][0], "ms", against, measured[name][0])
              for name, against in (("floor", "floor"), ("qt", "Qt's dialog"),
                                    ("qt-ppd", "Qt's dialog with its PPD page"),
                                    ("gtk3", "GTK 3's dialog"), ("gtk4", "GTK 4's dialog"))]
    lines += [Line("dialog, peak memory", measured["dialog"][1] / MIB, "MiB", against,
                   measured[name][1] / MIB, goal)
              for name, against, goal in (("floor", "floor", 1.25), ("qt", "Qt's dialog", 0),
                                          ("gtk4", "GTK 4's dialog", 0))]
    return lines


def parts(bench, name, ppd, collect=("--collect-atstart=no",)):
    """Gives {part: (instructions each, heap calls each, heap bytes each)} of bench_parts."""
    dumps = bench.dumps(f"parts-{name}", Program((BIN / "bench_parts", "panel", ppd), (), "",
                                                 collect))
    found = {}
    for line in (SCRATCH / "output").read_text("utf-8").splitlines():
        match = re.fullmatch(r"([\w-]+) (\d+) (\d+) (\d+)", line)
        if match:
            part, times, calls, octets = match.group(1), *map(int, match.groups()[1:])
            found[part] = (totals(dumps[part]) / times, calls / times, octets / times)
    return found


def dearest_click(found, prefix="click-"):
    return max((cost[0], part) for part, cost in found.items() if part.startswith(prefix))


def panel(bench):
    """Inside one process that runs Qt's widgets and shows a window with a label.

    keywords  the plug-in folder searched, the plug-in loaded (dlopen and all), the panel created
              and asked for its keywords, on a PPD that is open already; no view
    view      the view built from its interface file, laid out for the printer, all controls set,
              put into the shown window (load); then laid out and painted there (show)
    click     QCheckBox::click() on a real host: the panel's rules, refresh, what it writes, the
              host marking it. The dearest of all checkboxes that a user could click, mean of 20
              clicks after two. Painting is not in it, nor what the dialog around does (see the
              last row). Heap calls are malloc, calloc and realloc; bytes what they asked for.
    refresh   restoreValuesAndReturnError(): all marks reread, all controls set
    """
    floor = bench.instructions("floor", Program((BIN / "bench_empty_window",), (), "any"), 1)
    tape = parts(bench, "tape", bench.ppd())
    roll = parts(bench, "roll", bench.ppd("roll", family="RV"))
    many = parts(bench, "roll-10000", bench.ppd("roll-10000", family="RV", counts=10000))
    opened = tape["ppd-open"][0]
    view = tape["view-load"][0] + tape["view-show"][0]
    (click, which), (click_roll, which_roll) = dearest_click(tape), dearest_click(roll)
    click_last, which_last = dearest_click(roll, "last-click-")
    lines = [
        Line("plug-in loaded, panel created, keywords reported", tape["keywords"][0], INSTRUCTIONS,
             "ppdOpenFile", opened, 1.3, "without the opening of the PPD"),
        Line("the same and the PPD opened", tape["keywords"][0] + opened, INSTRUCTIONS,
             "ppdOpenFile", opened),
        Line("panel's view loaded, laid out, first shown", view, INSTRUCTIONS, "floor", floor, 0.15,
             f"load {tape['view-load'][0] / 1e6:.1f} M, show {tape['view-show'][0] / 1e6:.1f} M"),
        Line("one click, tape", click, INSTRUCTIONS, goal=60_000, note=which),
        Line("one click, roll with 99 counts", click_roll, INSTRUCTIONS, goal=60_000,
             note=which_roll),
        Line("one click, the last of 99 counts chosen", click_last, INSTRUCTIONS, goal=60_000,
             note=which_last),
        Line("one click, the last of 10,000 counts chosen",
             dearest_click(many, "last-click-")[0], INSTRUCTIONS, "of 99 counts", click_last, 1.1),
        Line("  its heap calls", many[which_last][1], "calls", "of 99 counts", roll[which_last][1],
             1.0),
        Line("  its heap bytes", many[which_last][2], "bytes", "of 99 counts", roll[which_last][2],
             1.0),
        Line("full refresh, the last of 10,000 counts chosen", many["last-refresh"][0],
             INSTRUCTIONS, "of 99 counts", roll["last-refresh"][0], 1.1),
    ]
    for name, found, dearest in (("tape", tape, click), ("roll", roll, click_roll)):
        cheapest = min(cost[0] for part, cost in found.items() if part.startswith("click-"))
        lines.append(Line(f"full refresh of all controls, {name}", found["refresh"][0], INSTRUCTIONS,
                          "one click (the cheapest)", cheapest, 5,
                          f"{found['refresh'][0] / dearest:.1f} × the dearest"))
    dumps = bench.dumps("dialog-click", Program((BIN / "bench_parts", "dialog", bench.ppd(), LABELS),
                                                callgrind=("--collect-atstart=no",)))
    lines.append(Line("one click in the whole dialog, until it is idle",
                      totals(dumps["dialog-click"]) / TIMES, INSTRUCTIONS, "one click, panel alone",
                      tape["click-mMirrorPrintChkBx"][0], 0,
                      "mirror; model, summary, conflicts and all pages included, painting not"))
    return lines


def preview(bench):
    """Only what happens inside the view's paintEvent, of which the painter's begin and end are
    part, and inside that of a widget that shows the same picture, as pixels, with one
    drawPixmap(). Mean of 20 repaints; the picture had been shown before."""
    collect = ("--toggle-collect=labelcut::OptionView13_v400_::paintEvent(QPaintEvent*)",
               "--toggle-collect=labelcut::bench::BlitView::paintEvent(QPaintEvent*)")
    dumps = bench.dumps("preview", Program((BIN / "bench_parts", "redraw", bench.ppd()), (), "",
                                           collect))
    return [Line("preview's redraw", totals(dumps["redraw-preview"]) / TIMES, INSTRUCTIONS, against,
                 totals(dumps[name]) / TIMES, goal)
            for name, against, goal in (("redraw-blit", "the same picture blitted", 1.5),
                                        ("redraw-opaque", "the same without transparency", 0))]


def options(bench):
    """Whole processes against the private scheduler's queue; its own work is not in the
    instructions but in the wall time. With --ppd no scheduler is asked."""
    queue = bench.cupsd().environment()
    ppd = bench.ppd()
    programs = {
        "options": Program((BIN / "labelcut", "options", "-p", "Bench"), queue),
        "lpoptions": Program(("/usr/bin/lpoptions", "-p", "Bench", "-l"), queue),
        "options-ppd": Program((BIN / "labelcut", "options", "--ppd", ppd)),
        "ppd-open": Program((BIN / "bench_ppd_open", ppd)),
    }
    measured = bench.wall_and_memory(programs)
    cost = {name: bench.instructions(name, program) for name, program in programs.items()}
    lines = []
    for name, title, goal in (("options", "`labelcut options -p QUEUE`", 0.6),
                              ("options-ppd", "`labelcut options --ppd FILE`", 0)):
        lines.append(Line(f"{title}, wall time", measured[name][0], "ms", "`lpoptions -l`",
                          measured["lpoptions"][0], goal))
        lines.append(Line(title, cost[name], INSTRUCTIONS, "`lpoptions -l`", cost["lpoptions"]))
        lines.append(Line(f"{title}, peak memory", measured[name][1] / MIB, "MiB", "`lpoptions -l`",
                          measured["lpoptions"][1] / MIB))
    lines.append(Line("a process that opens the PPD, wall time", measured["ppd-open"][0], "ms"))
    return lines


def printing(bench):
    """`labelcut print` of the sample document into a file. Ghostscript, which converts it, is a
    process of its own and never counted; JobDocument::prepare(), which reads the PDF within ours,
    is subtracted. Beside it stands a whole process that opens the PPD with libcups, marks the
    defaults and writes the same bytes. "Its work" is without start and end of the process and
    without reading arguments: everything below OpenedPrinter::open() and writePostScript(), beside
    ppdOpenFile() and the writing alone."""
    ppd = bench.ppd()
    out = SCRATCH / "job.ps"
    program = Program((BIN / "labelcut", "print", LABELS, "--ppd", ppd, "-o", out))
    whole = bench.instructions("print", program)
    names = inclusive(PROFILES / "callgrind.print")

    def below(pattern):
        return max((count for name, count in names.items() if re.search(pattern, name)), default=0)

    prepare = below(r"^labelcut::JobDocument::prepare\(")
    work = below(r"^labelcut::OpenedPrinter::open\(") + below(r"^labelcut::writePostScript\(")
    peer_program = Program((BIN / "bench_ppd_open", ppd, out, SCRATCH / "copy.ps"))
    peer = bench.instructions("ppd-open-and-write", peer_program)
    inside = sum(inclusive(PROFILES / "callgrind.ppd-open-and-write", r"^main$").values())
    bench.profiles.append(("print", phases(PROFILES / "callgrind.print") + [
        f"| document read | {prepare / 1e6:.2f} M |",
        f"| printer opened | {below('^labelcut::OpenedPrinter::open') / 1e6:.2f} M |",
        f"| job written | {below('^labelcut::writePostScript') / 1e6:.2f} M |"]))
    return [Line("`labelcut print` to a file, whole process", whole - prepare, INSTRUCTIONS,
                 "process: ppdOpenFile, bytes written", peer, 2,
                 f"{whole / 1e6:.1f} M with the reading of the document"),
            Line("`labelcut print` to a file, its work", work, INSTRUCTIONS,
                 "ppdOpenFile, bytes written", inside, 2)]


def plan(bench):
    """`labelcut plan` of 1,600 pages, told as text and as JSON, beside `qpdf --show-npages` of the
    same file. Instructions are the command's own process's; the worker, which reads the document
    with qpdf's library in its cage, is a process of its own and only in the wall time."""
    document = bench.document(1600)
    ppd = bench.ppd()
    programs = {"plan": Program((BIN / "labelcut", "plan", document, "--ppd", ppd)),
                "plan-json": Program((BIN / "labelcut", "plan", document, "--ppd", ppd, "--json")),
                "npages": Program(("/usr/bin/qpdf", "--show-npages", document))}
    measured = bench.wall_and_memory(programs)
    cost = {name: bench.instructions(name, program) for name, program in programs.items()}
    lines = []
    for name, title in (("plan", "`labelcut plan` of 1,600 pages"),
                        ("plan-json", "`labelcut plan --json` of 1,600 pages")):
        lines.append(Line(title, cost[name], INSTRUCTIONS, "`qpdf --show-npages`", cost["npages"],
                          1.5, "without the worker's process"))
        lines.append(Line(f"{title}, wall time", measured[name][0], "ms", "`qpdf --show-npages`",
                          measured["npages"][0]))
    return lines


def cage(bench):
    """The documents of a job read by the worker in its cage, beside the same libraries doing the
    same within the process that asks: whole processes from start to end, wall time. What `labelcut
    print` takes with the one, beside what it would take with the other."""
    samples = {"PDF": LABELS, "text": bench.text(40), "picture": bench.picture()}
    programs = {f"{way} {kind}": Program((BIN / "bench_read_document", way, path))
                for kind, path in samples.items() for way in ("caged", "bare")}
    programs["print"] = Program((BIN / "labelcut", "print", LABELS, "--ppd", bench.ppd(), "-o",
                                 SCRATCH / "job.ps"))
    measured = bench.wall_and_memory(programs)
    lines = []
    for kind in samples:
        caged, bare = (measured[f"{way} {kind}"][0] for way in ("caged", "bare"))
        lines.append(Line(f"a document read in the cage, {kind}, wall time", caged, "ms",
                          "without the cage", bare, 0, f"{caged - bare:+.1f} ms (at most 15)"))
    whole = measured["print"][0]
    cost = measured["caged PDF"][0] - measured["bare PDF"][0]
    lines.append(Line("`labelcut print` of the sample, wall time", whole, "ms",
                      "without the cage's cost", whole - cost, 1.15))
    return lines


def service(bench):
    """`labelcut dialog FILE` against a scheduler, from the start to the first paint, when the
    queues are not known yet. Instructions are the window's thread's only; those of the second
    thread, which asks the service, grow with what it is told. Wall time includes both."""
    programs = {name: Program((BIN / "labelcut", "dialog", LABELS), server.environment(), "any",
                              ("--separate-threads=yes",))
                for name, server in (("one-queue", bench.cupsd()),
                                     ("1000-queues", bench.cupsd(1000)),
                                     ("silent", bench.silent()))}
    measured = bench.wall_and_memory(programs)
    cost = {}
    for name, program in programs.items():
        dumps = bench.dumps(f"service-{name}", program)
        cost[name] = totals(next(file for key, file in dumps.items() if key.endswith("-01")))
    lines = []
    for name, title in (("1000-queues", "first paint with 1,000 queues"),
                        ("silent", "first paint with a silent server")):
        lines.append(Line(title, cost[name], INSTRUCTIONS, "with one queue", cost["one-queue"],
                          1.02, "the window's thread"))
        lines.append(Line(f"{title}, wall time", measured[name][0], "ms", "with one queue",
                          measured["one-queue"][0], 1.1))
    return lines


def curves(bench):
    """Whole processes, everything included that reading larger input costs, ppdOpenFile with the
    rest: the dialog to its first paint over options, choices and page sizes of the PPD;
    `labelcut print` over the document's pages and over the labels that come out of one page; and
    what the worker does with pages, text, one endless line and form feeds, without its cage.
    Those without libcups are what is ours of large PPDs: `labelcut options`, and `labelcut print`
    that names a conflict and looks for a way out, each without ppdOpen2(), whose time grows with
    the square and which limits bound. Exponent 1 is linear."""
    def dialog_of(name, ppd):
        return bench.instructions(name, Program((BIN / "labelcut", "dialog", "--ppd", ppd, LABELS),
                                                (), "any"), 1)

    def print_of(name, document, copies):
        return bench.instructions(name, Program((BIN / "labelcut", "print", document, "--ppd",
                                                 bench.ppd(), "-n", copies, "-o",
                                                 SCRATCH / "job.ps")), 1)

    def reading_of(name, document):
        return bench.instructions(name, Program((BIN / "bench_read_document", "bare", document)), 1)

    def text_of(name, text):
        path = SCRATCH / f"{name}.txt"
        path.write_text(text, "utf-8")
        return reading_of(name, path)

    def ours(name, ppd, *command):
        """The command without libcups' own reading of the PPD."""
        program = Program((BIN / "labelcut", *command, "--ppd", ppd), (), "any")
        whole = bench.instructions(name, program, 1)
        return whole - max(inclusive(PROFILES / f"callgrind.{name}", r"^ppdOpen2$").values())

    def options_of(name, **shape):
        return ours(name, bench.ppd("curve", **shape), "options")

    def conflict_of(name, **shape):
        setting = "Ring0=ON" if "ring" in shape else "Option1=Choice1"
        return ours(name, bench.ppd("curve", **shape), "print", LABELS, "-o", SCRATCH / "job.ps",
                    "--set", setting)

    measured = (
        ("options (`options`, without libcups)", (100, 1000, 3000, 9000),
         lambda n: options_of("curve-many-options", options=n)),
        ("choices of one option (`options`, without libcups)", (100, 1000, 10000, 90000),
         lambda n: options_of("curve-many-choices", family="RV", counts=n)),
        ("constraints (a conflict, without libcups)", (100, 1000, 10000),
         lambda n: conflict_of("curve-constraints", constraints=n)),
        ("constraints in a circle (a conflict, without libcups)", (100, 400, 1600, 6400),
         lambda n: conflict_of("curve-ring", ring=n)),
        ("options (dialog)", (20, 40, 80, 160, 320),
         lambda n: dialog_of("curve-options", bench.ppd("curve", options=n))),
        ("choices of one option (dialog)", (100, 500, 1000, 2000, 4000),
         lambda n: dialog_of("curve-choices", bench.ppd("curve", family="RV", counts=n))),
        ("choices of every further option (dialog)", (5, 10, 20, 40, 80),
         lambda n: dialog_of("curve-all-choices", bench.ppd("curve", choices=n))),
        ("page sizes (dialog)", (8, 16, 32, 64, 128),
         lambda n: dialog_of("curve-sizes", bench.ppd("curve", sizes=n))),
        ("pages (print)", (1, 25, 100, 400, 1600),
         lambda n: print_of("curve-pages", bench.document(n), 1)),
        ("pages (worker)", (1, 25, 100, 400, 1600),
         lambda n: reading_of("curve-worker-pages", bench.document(n))),
        ("bytes of text (worker)", (1 << 14, 1 << 16, 1 << 18, 1 << 20, 1 << 22),
         lambda n: text_of("curve-text", "lorem ipsum\n" * (n // 12))),
        ("bytes of text in one line (worker)", (1 << 14, 1 << 16, 1 << 18, 1 << 20),
         lambda n: text_of("curve-line", "lorem ipsum " * (n // 12))),
        ("form feeds (worker)", (100, 1000, 10000),
         lambda n: text_of("curve-feeds", "\f" * n)),
        ("labels of one page (print)", (1, 10, 100, 1000, 9999),
         lambda n: print_of("curve-labels", bench.document(1), n)),
    )
    for name, sizes, cost in measured:
        bench.curves.append(curve(name, sizes, [cost(size) for size in sizes]))
    return []


ROWS = {"dialog": dialog, "panel": panel, "preview": preview, "options": options,
        "print": printing, "plan": plan, "cage": cage, "service": service, "curves": curves}
