#!/usr/bin/env python3
"""Plans of random jobs, compared with a second reckoning that follows docs/plan.md.

usage: plan_reckoning.py [--jobs N] [--seed S] [--only NUMBER] driver DRIVER PLUGINS
       plan_reckoning.py [--jobs N] [--seed S] [--only NUMBER] program LABELCUT

The first asks tests/host/plan/plan_driver.cpp, for all jobs in one process; the second runs
`labelcut plan --json` for each, on PDF files that it makes. A job depends on its number and the
seed only, so that a failure can be repeated with --only.
"""
import argparse
import json
import os
import random
import subprocess
import sys
import tempfile

MM = 25.4 / 72
SMALL = 0.5 / MM + 0.5      # half a millimetre and half a point
STRENGTH = ("none", "half", "hand", "full")
ON_OFF = ("KvCutAtEnd", "KvMirror", "KvAutoTapeCut", "KvHalfCut", "KvChainPrint", "KvSpecialTape",
          "KvRemoveBlkSpace")
MOST_LISTED = 100_000
JOBS_OF_A_PRINTER = 10


def stronger(*cuts):
    return max(cuts, key=STRENGTH.index)


class Printer:
    """A PPD of either family, with some of the options and with label sizes of each kind."""

    def __init__(self, rng, path):
        self.path = path
        self.family = rng.choice(["RV", "SG", "SG", None])
        self.choices = {}
        self.defaults = {}
        self.sizes = {}
        for prefix in ("T", "W", "DC", "AV"):
            for _ in range(2):
                width, length = rng.randint(20, 300), rng.randint(20, 600)
                margins = [rng.choice([0, 3, rng.randint(0, 9)]) for _ in range(4)]
                self.sizes[f"{prefix}{width}x{length}"] = (width, length, *margins)
        present = [keyword for keyword in ("KvCutLabel", *ON_OFF) if rng.random() < 0.7]
        present = present or ["KvMirror"]
        for keyword in present:
            choices = ["OFF", "ON"]
            if keyword == "KvCutLabel":
                first, last = rng.choice([(1, 99), (1, 99), (2, 10), (1, 1), (0, 3), (5, 20)])
                choices = [str(count) for count in range(first, last + 1)]
            self.choices[keyword] = choices
            self.defaults[keyword] = rng.choice(choices)
        self._write(rng)

    def _write(self, rng):
        lines = ['*PPD-Adobe: "4.3"', '*FormatVersion: "4.3"', '*LanguageVersion: English',
                 '*LanguageEncoding: ISOLatin1', '*PCFileName: "PLAN.PPD"', '*Manufacturer: "Test"',
                 '*ModelName: "Plan"', '*NickName: "Plan"', '*Product: "(Plan)"',
                 '*PSVersion: "(3010.000) 0"', '*LanguageLevel: "3"']
        if self.family:
            lines.append(f'*KvTapeType: "{self.family}"')
        hidden = rng.choice(["True", "False", None])
        if hidden:
            lines.append(f'*KvAutoCutObjHidden: "{hidden}"')
        self.default_size = rng.choice(list(self.sizes))
        lines += ["*OpenUI *PageSize/Size: PickOne", f"*DefaultPageSize: {self.default_size}"]
        for name, (width, length, *_) in self.sizes.items():
            lines.append(f'*PageSize {name}: "<</PageSize[{width} {length}]>>setpagedevice"')
        lines += ["*CloseUI: *PageSize", f"*DefaultImageableArea: {self.default_size}"]
        for name, (width, length, left, top, right, bottom) in self.sizes.items():
            lines.append(f'*ImageableArea {name}: "{left} {bottom} {width - right} {length - top}"')
        lines.append(f"*DefaultPaperDimension: {self.default_size}")
        for name, (width, length, *_) in self.sizes.items():
            lines.append(f'*PaperDimension {name}: "{width} {length}"')
        for keyword, choices in self.choices.items():
            lines += [f"*OpenUI *{keyword}/{keyword}: PickOne",
                      f"*OrderDependency: 20 AnySetup *{keyword}",
                      f"*Default{keyword}: {self.defaults[keyword]}"]
            lines += [f'*{keyword} {choice}/{choice}: "%"' for choice in choices]
            lines.append(f"*CloseUI: *{keyword}")
        with open(self.path, "w", encoding="latin-1") as out:
            out.write("\n".join(lines) + "\n")


class Job:
    """What is asked for, at random."""

    def __init__(self, rng, printer):
        self.printer = printer
        # All choices are named, or none: what panels make of some is not what is tested.
        self.names_all = rng.random() < 0.8
        self.choices = dict(printer.defaults)
        self.size = printer.default_size
        if self.names_all:
            self.choices = {keyword: rng.choice(choices)
                            for keyword, choices in printer.choices.items()}
            if "KvCutLabel" in self.choices and rng.random() < 0.7:
                self.choices["KvCutLabel"] = rng.choice(printer.choices["KvCutLabel"][:5])
            self.size = rng.choice(list(printer.sizes))
        self.files = [[self._measure(rng) for _ in range(rng.choice([1, 1, 2, 3, 8]))]
                      for _ in range(rng.choice([1, 1, 1, 2, 3]))]
        self.measures = [measure for file in self.files for measure in file]
        self.pages, self.selected = self._selection(rng)
        self.copies = rng.choice([1, 1, 2, 3, 7])
        self.reverse = rng.random() < 0.4
        self.collate = rng.random() < 0.6
        self.fit = rng.choice(["", "", "actual", "scale", "turn"])

    def _measure(self, rng):
        width, length = self.printer.sizes[self.size][:2]
        kind = rng.random()
        if kind < 0.3:
            return width, length
        if kind < 0.45:
            return length, width
        if kind < 0.75:  # about as large, where it matters by how much
            return (round(max(1, width + rng.uniform(-6, 6)), 3),
                    round(max(1, length + rng.uniform(-9, 9)), 3))
        return round(rng.uniform(5, 700), 2), round(rng.uniform(5, 700), 2)

    def _selection(self, rng):
        count = len(self.measures)
        if rng.random() < 0.4:
            return "", list(range(1, count + 1))
        parts, pages = [], set()
        for _ in range(rng.randint(1, 3)):
            first = rng.randint(1, count + (rng.random() < 0.2))  # none is there behind the last
            last = rng.randint(first, count + 2)
            text, some = rng.choice([(f"{first}", [first]),
                                     (f"{first}-{last}", range(first, last + 1)),
                                     (f"{first}-", range(first, count + 1)),
                                     (f"-{last}", range(1, last + 1))])
            parts.append(text)
            pages.update(some)
        return ",".join(parts), [page for page in range(1, count + 1) if page in pages]

    def line(self):
        """For the driver."""
        settings = [["PageSize", self.size], *([k, v] for k, v in self.choices.items())]
        return json.dumps({"ppd": self.printer.path, "set": settings, "measures": self.measures,
                           "ofFiles": [len(file) for file in self.files], "pages": self.pages,
                           "copies": self.copies, "reverse": self.reverse, "collate": self.collate,
                           "fit": self.fit})

    def arguments(self, files):
        """For the program."""
        words = [*files, "--ppd", self.printer.path, "--json"]
        if self.names_all:
            words += ["--page-size", self.size]
            for keyword, choice in self.choices.items():
                words += ["--set", f"{keyword}={choice}"]
        if self.pages:
            words.append(f"--pages={self.pages}")
        if self.copies > 1:
            words += ["--copies", str(self.copies)]
        words += ["--reverse"] * self.reverse + ["--no-collate"] * (not self.collate)
        if self.fit:
            words += ["--fit", self.fit]
        return words


# --- the reckoning -----------------------------------------------------------------------------

def cuts_of(job):
    """The rules for a job's cuts, from its choices."""
    def on(keyword):
        return job.choices.get(keyword) == "ON"

    roll = job.printer.family == "RV"
    special, half, chain = on("KvSpecialTape"), on("KvHalfCut"), on("KvChainPrint")
    every = int(job.choices.get("KvCutLabel", 0))
    has_auto = "KvAutoTapeCut" in job.choices
    automatic = (on("KvAutoTapeCut") if has_auto else every >= 1) and not special
    found = {"medium": "labels" if job.size[:2] in ("DC", "AV") else "tape",
             "lead": None, "each": "none", "every": 0, "last": None}
    if special and not roll:
        found["medium"] = "special tape"
    found["removes"] = on("KvRemoveBlkSpace") and found["medium"] == "tape"
    found["mirrored"] = on("KvMirror")
    if roll:
        found["every"] = max(every, 1) if automatic else 0
        found["last"] = "full" if on("KvCutAtEnd") else None
    elif special:
        found.update(lead={"is": "blank", "cutAfter": "none"}, last="hand")
    else:
        found["each"] = "half" if half else "none"
        if automatic and (not half or every > 1):
            found["every"] = max(every, 1)
        behind_lead = "half" if half else "full" if automatic else "none"
        found["lead"] = ({"is": "chained", "cutAfter": None} if chain else
                         {"is": "blank", "cutAfter": behind_lead})
        found["last"] = "full" if on("KvCutAtEnd") or (automatic and not chain) else "none"
    return found


def is_noticed(difference, whole):
    return difference > max(whole / 100, SMALL)


def loses_edge(page, label):
    return any(is_noticed(page[i] - label[i], page[i]) for i in (0, 1))


def place_of(page, job):
    """Where a page lies, in points."""
    width, length, left, top, right, bottom = job.printer.sizes[job.size]
    label = (width, length)
    turned = {"": loses_edge(page, label) and not loses_edge(page[::-1], label),
              "actual": False, "turn": True,
              "scale": (page[0] < page[1] and width > length) or
                       (page[0] > page[1] and width < length)}[job.fit]
    lying = page[::-1] if turned else page
    is_same = all(abs(lying[i] - label[i]) <= SMALL for i in (0, 1))
    room = (0, 0, width, length)
    scale = 1
    if job.fit == "scale" and not is_same:
        room = (left, top, width - right - left, length - bottom - top)
        scale = min(1, room[2] / lying[0], room[3] / lying[1])
    size = [side * scale for side in lying]
    return {"turned": turned, "scale": scale,
            "leftMm": (room[0] + (room[2] - size[0]) / 2) * MM,
            "topMm": (room[1] + (room[3] - size[1]) / 2) * MM,
            "lostWidthMm": max(0, size[0] - width) * MM,
            "lostLengthMm": max(0, size[1] - length) * MM,
            "losesEdge": loses_edge(size, label),
            "changesSize": any(is_noticed(lying[i] - size[i], lying[i]) for i in (0, 1))}


def labels_of(job, cuts):
    """(page, copy, cut) of every label."""
    pages = job.selected[::-1] if job.reverse else job.selected
    copies = range(1, job.copies + 1)
    order = ([(page, copy) for copy in copies for page in pages] if job.collate else
             [(page, copy) for page in pages for copy in copies])
    labels = []
    for number, (page, copy) in enumerate(order, 1):
        cut = cuts["each"]
        if cuts["every"] and number % cuts["every"] == 0:
            cut = stronger(cut, "full")
        if number == len(order) and cuts["last"] is not None:
            cut = cuts["last"]
        labels.append((page, copy, cut))
    return labels


def reckoned(job):
    """The plan as docs/plan.md has it."""
    cuts = cuts_of(job)
    assert job.choices, "a printer without any option is none that the panel knows"
    width, length = job.printer.sizes[job.size][:2]
    labels = labels_of(job, cuts)
    pages = []
    numbers = [(file, page) for file, count in enumerate(map(len, job.files), 1)
               for page in range(1, count + 1)]
    for page in job.selected:
        measure = job.measures[page - 1]
        pages.append({"page": page, "file": numbers[page - 1][0],
                      "pageOfFile": numbers[page - 1][1], "widthMm": measure[0] * MM,
                      "lengthMm": measure[1] * MM, "fit": place_of(measure, job)})
    made = [cut for _, _, cut in labels]
    blank = bool(cuts["lead"]) and cuts["lead"]["is"] == "blank"
    if blank:
        made.append(cuts["lead"]["cutAfter"])
    takes_more = blank or cuts["medium"] == "labels"
    meaning = {(False, False): "exactly", (True, False): "at least", (False, True): "at most",
               (True, True): "about"}[takes_more, cuts["removes"]]
    return {"version": 1, "printer": "Plan",
            "label": {"name": job.size, "widthMm": width * MM, "lengthMm": length * MM},
            "cutsKnown": True, "medium": cuts["medium"], "mirrored": cuts["mirrored"],
            "removesBlankSpace": cuts["removes"], "pages": pages, "lead": cuts["lead"],
            "labels": [{"label": number, "page": page, "copy": copy, "cutAfter": cut}
                       for number, (page, copy, cut) in enumerate(labels[:MOST_LISTED], 1)],
            "labelsCutOff": len(labels) > MOST_LISTED,
            "figures": {"labels": len(labels), "fullCuts": made.count("full"),
                        "halfCuts": made.count("half"), "handCuts": made.count("hand"),
                        "lengthMm": length * len(labels) * MM, "lengthIs": meaning,
                        "hasWaste": blank}}


def differences(told, expected, path="plan"):
    """Sentences about what is not the same; lengths may differ by their rounding."""
    if isinstance(expected, dict) and isinstance(told, dict):
        if told.keys() != expected.keys():
            return [f"{path} has {sorted(told)}, not {sorted(expected)}"]
        return [text for key in expected
                for text in differences(told[key], expected[key], f"{path}.{key}")]
    if isinstance(expected, list) and isinstance(told, list):
        if len(told) != len(expected):
            return [f"{path} has {len(told)} entries, not {len(expected)}"]
        return [text for i, both in enumerate(zip(told, expected))
                for text in differences(*both, f"{path}[{i}]")]
    is_rounded = path.endswith(("Mm", ".scale")) and isinstance(told, (int, float))
    if is_rounded and abs(told - expected) <= (0.00006 if path.endswith("scale") else 0.0051):
        return []
    is_same = type(told) is type(expected) and told == expected
    return [] if is_same else [f"{path} is {told!r}, not {expected!r}"]


# --- the jobs ----------------------------------------------------------------------------------

def jobs(count, seed, folder):
    """Of printers that stay for some jobs each."""
    for number in range(count):
        rng = random.Random(f"{seed} {number // JOBS_OF_A_PRINTER}")
        printer = Printer(rng, os.path.join(folder, f"{number // JOBS_OF_A_PRINTER}.ppd"))
        yield number, Job(random.Random(f"{seed} {number} job"), printer)


def large_jobs(printer):
    """As large as jobs may be, about: more labels than are listed."""
    for pages, copies in ((60, 1667), (60, 9999), (1, 9999)):
        job = Job(random.Random(pages), printer)
        job.files = [[(68, 142)] * pages]
        job.measures = job.files[0]
        job.pages, job.selected = "", list(range(1, pages + 1))
        job.copies = copies
        yield job


def pdf(measures, rng):
    """A file whose pages are shown in these measures, some of them turned or with an edge that is
    not shown."""
    objects = ["<</Type/Catalog/Pages 2 0 R>>",
               f"<</Type/Pages/Count {len(measures)}/Kids["
               f"{' '.join(f'{i + 3} 0 R' for i in range(len(measures)))}]>>"]
    for measure in measures:
        turn = rng.choice([0, 0, 90, 180, 270])
        width, length = measure[::-1] if turn in (90, 270) else measure
        box = f"/MediaBox[0 0 {width} {length}]"
        if rng.random() < 0.3:
            box = f"/MediaBox[-5 -7 {width + 9} {length + 4}]/CropBox[0 0 {width} {length}]"
        objects.append(f"<</Type/Page/Parent 2 0 R{box}/Rotate {turn}/Resources<<>>>>")
    body, places = "%PDF-1.4\n", []
    for number, text in enumerate(objects, 1):
        places.append(len(body))
        body += f"{number} 0 obj\n{text}\nendobj\n"
    table = "".join(f"{place:010} 00000 n \n" for place in places)
    return (f"{body}xref\n0 {len(objects) + 1}\n0000000000 65535 f \n{table}"
            f"trailer\n<</Size {len(objects) + 1}/Root 1 0 R>>\nstartxref\n{len(body)}\n%%EOF\n")


class Comparison:
    def __init__(self):
        self.compared = 0
        self.failed = 0

    def compare(self, number, told, job, ending=()):
        """`ending`: what else is wrong."""
        self.compared += 1
        expected = reckoned(job) if job.selected else {}
        found = [*ending, *differences(told, expected)]
        if not found:
            return
        self.failed += 1
        if self.failed <= 5:
            print(f"job {number}: {job.line()}", *found[:5], sep="\n  ")

    def end(self, expected):
        print(f"{self.compared} plans compared, {self.failed} differ")
        return 0 if self.compared == expected and not self.failed else 1


def read_objects(lines):
    """Each object of a stream: it ends with the first line that is "}"."""
    text = ""
    for line in lines:
        text += line
        if line == "}\n":
            yield json.loads(text)
            text = ""


def by_driver(wanted, folder, command):
    printer = Printer(random.Random(1), os.path.join(folder, "large.ppd"))
    wanted += [(f"large {i}", job) for i, job in enumerate(large_jobs(printer))]
    with open(os.path.join(folder, "jobs"), "w+", encoding="utf-8") as lines:
        lines.writelines(job.line() + "\n" for _, job in wanted)
        lines.seek(0)
        comparison = Comparison()
        with subprocess.Popen(command, stdin=lines, stdout=subprocess.PIPE, text=True) as driver:
            for (number, job), told in zip(wanted, read_objects(driver.stdout)):
                comparison.compare(number, told, job)
        return comparison.end(len(wanted)) or driver.returncode


def by_program(wanted, folder, command):
    comparison = Comparison()
    for number, job in wanted:
        rng = random.Random(number)
        files = [os.path.join(folder, f"{i}.pdf") for i in range(len(job.files))]
        for path, measures in zip(files, job.files):
            with open(path, "w", encoding="latin-1") as out:
                out.write(pdf(measures, rng))
        done = subprocess.run([*command, "plan", *job.arguments(files)], capture_output=True,
                              text=True, timeout=60)
        is_right = (done.returncode, bool(done.stderr)) == ((0, False) if job.selected else (1, True))
        ending = [] if is_right else [f"status {done.returncode}, {done.stderr!r}"]
        comparison.compare(number, json.loads(done.stdout or "{}"), job, ending)
    return comparison.end(len(wanted))


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--jobs", type=int, default=100)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--only", type=int)
    parser.add_argument("way", choices=["driver", "program"])
    parser.add_argument("command", nargs="+")
    arguments = parser.parse_args()
    with tempfile.TemporaryDirectory() as folder:
        wanted = [(number, job) for number, job in jobs(arguments.jobs, arguments.seed, folder)
                  if arguments.only in (None, number)]
        way = by_driver if arguments.way == "driver" else by_program
        return way(wanted, folder, arguments.command)


if __name__ == "__main__":
    sys.exit(main())
