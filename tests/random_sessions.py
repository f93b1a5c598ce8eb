#!/usr/bin/env python3
"""Random sessions of the panel script, checked against what must always hold.

usage: random_sessions.py [--sessions N] [--seed S] [--keep-going] COMMAND [ARGUMENT...]

COMMAND is a panel script that reads its lines from standard input (`labelcut panel-script`). One
process plays all sessions. Every session opens a generated PPD and acts on the panel at random;
after each act the state is read and compared with what the PPD, the checkboxes and the earlier
state demand. A session depends on its number and the seed only, so a failure can be repeated with
`--only NUMBER`.
"""
import argparse
import json
import os
import random
import subprocess
import sys
import tempfile

KEYWORDS = ["KvCutLabel", "KvCutAtEnd", "KvMirror", "KvAutoTapeCut", "KvHalfCut", "KvChainPrint",
            "KvSpecialTape", "KvRemoveBlkSpace"]
BOXES = ["mCutEveryChkBx", "mCutAndEndChkBx", "mMirrorPrintChkBx", "mAutoCutChkBx", "mHalfCutChkBx",
         "mChainPrintChkBx", "mSpecialTapeChkBx", "mRemoveBlkSpaceChkBx"]
SELECTIONS = ["mCutEvery_Selection", "mCutEnd_Selection", "mMirror_Selection", "mAutoCut_Selection",
              "mHalfCut_Selection", "mChainPrint_Selection", "mSpecialTape_Selection",
              "mRemoveBlkSpace_Selection"]
KEYWORD_OF = dict(zip(BOXES, KEYWORDS))
BOX_OF = dict(zip(KEYWORDS, BOXES))
SELECTION_OF = dict(zip(KEYWORDS, SELECTIONS))
COUNT_CONTROLS = ["mCutEveryTxBx", "mCutEveryStpr", "mCutEveryStr"]

FIELDS = {
    "open": {"accepted", "panels"}, "name": {"text"}, "kind": {"text"}, "keys": {"keys"},
    "view": {"loaded", "size"}, "shouldHide": {"value"}, "shouldShowHelp": {"value"},
    "shouldPrint": {"value"}, "save": {"value"}, "restore": {"value"},
    "summary": {"summary", "order"}, "localize": {"text"},
    "state": {"controls", "popup", "preview", "selections", "marked", "tapeState", "usb",
              "autoCutShown", "isRV", "panelSize", "calls", "resized"},
}
PLACED = {"enabled", "hidden", "x", "below", "width", "height"}
CONTROL_FIELDS = {name: PLACED | {"state", "title"} for name in BOXES}
CONTROL_FIELDS.update({"mCutEveryTxBx": PLACED | {"text"}, "mCutEveryStpr": PLACED | {"value"},
                       "mCutEveryStr": PLACED | {"text", "grey"}})

# What the entry of a tag sets: checkbox -> state.
def entry_states(tag):
    if tag in (1, 2, 3):
        return {"mCutEveryChkBx": int(tag == 3), "mCutAndEndChkBx": int(tag == 2),
                "mMirrorPrintChkBx": 0}
    if tag == 12:
        return {"mSpecialTapeChkBx": 1, "mMirrorPrintChkBx": 0}
    n = tag - 4
    return {"mAutoCutChkBx": n >> 2 & 1, "mHalfCutChkBx": n >> 1 & 1, "mChainPrintChkBx": n & 1,
            "mSpecialTapeChkBx": 0, "mMirrorPrintChkBx": 0}


class Failure(Exception):
    pass


class Printer:
    """A generated PPD and what is in it."""

    def __init__(self, rng, path):
        self.family = rng.choice(["RV", "SG", "SG", "RV", "rv", None])
        self.auto_cut_hidden = rng.choice(["False", "False", "True", "false", None])
        self.choices = {}
        self.defaults = {}
        self.sizes = ["T24", "DC24", "AV100"]
        lines = [b'*PPD-Adobe: "4.3"', b'*FormatVersion: "4.3"', b'*LanguageVersion: English',
                 b'*LanguageEncoding: None', b'*PCFileName: "TEST.PPD"', b'*Manufacturer: "Test"',
                 b'*ModelName: "Test"', b'*NickName: "Test"', b'*Product: "(Test)"',
                 b'*PSVersion: "(3010.000) 0"', b'*LanguageLevel: "3"']
        if self.family is not None:
            lines.append(b'*KvTapeType: "%s"' % self.family.encode())
        if self.auto_cut_hidden is not None:
            lines.append(b'*KvAutoCutObjHidden: "%s"' % self.auto_cut_hidden.encode())
        lines += [b'*OpenUI *PageSize/Size: PickOne', b'*DefaultPageSize: T24']
        for size in self.sizes:
            lines.append(b'*PageSize %s: "<</PageSize[68 283]>>setpagedevice"' % size.encode())
        lines.append(b'*CloseUI: *PageSize')
        for size in self.sizes:
            lines.append(b'*ImageableArea %s: "0 0 68 283"' % size.encode())
            lines.append(b'*PaperDimension %s: "68 283"' % size.encode())
        for keyword in KEYWORDS:
            if rng.random() < 0.75:
                self._option(rng, keyword, lines)
        with open(path, "wb") as out:
            out.write(b"\n".join(lines) + b"\n")
        self.path = path

    def _option(self, rng, keyword, lines):
        if keyword == "KvCutLabel":
            first, last = rng.choice([(1, 99), (1, 99), (2, 10), (1, 1), (5, 20), (0, 3)])
            choices = [str(n) for n in range(first, last + 1)]
            if rng.random() < 0.1:
                choices = rng.choice([["1", "2", "5", "10"], ["FEW", "MANY"], ["9", "8", "7"]])
        else:
            choices = rng.choice([["OFF", "ON"]] * 7 + [["OFF", "ON", "THIRD"], ["ON", "OFF"],
                                                        ["OFF"], ["ON"]])
        default = rng.choice(choices + ["NEVER", ""] if rng.random() < 0.2 else choices)
        text = rng.choice([b"", b"/Text", b"/Text " + keyword.encode(), b"/Tom & Co", b"/bad \xff",
                           b"/RS_Labels", b"/" + b"W" * 70, b"/Summary Display Order"])
        name = keyword.encode()
        lines.append(b"*OpenUI *%s%s: PickOne" % (name, text))
        lines.append(b"*OrderDependency: 20 AnySetup *%s" % name)
        if default:
            lines.append(b"*Default%s: %s" % (name, default.encode()))
        for choice in choices:
            lines.append(b'*%s %s/%s: "%%"' % (name, choice.encode(),
                                               rng.choice([b"Word", b"bad \xff", b"Choice"])))
        lines.append(b"*CloseUI: *%s" % name)
        self.choices[keyword] = choices
        self.defaults[keyword] = default

    @property
    def is_rv(self):
        return self.family == "RV"

    @property
    def shows_auto_cut(self):
        return "KvAutoTapeCut" in self.choices and self.auto_cut_hidden == "False"

    def shows(self, box):
        keyword = KEYWORD_OF[box]
        return self.shows_auto_cut if keyword == "KvAutoTapeCut" else keyword in self.choices

    def marked_index(self, keyword, marked):
        if marked[keyword] is None:
            return -1
        return self.choices[keyword].index(marked[keyword])

    def marked_or_default(self, keyword, marked):
        """The choice that rereading selects, or None."""
        index = self.marked_index(keyword, marked)
        if index >= 0:
            return self.choices[keyword][index]
        default = self.defaults[keyword]
        return default if default in self.choices[keyword] else None


def int_value(text):
    text = text.lstrip()
    sign = -1 if text.startswith("-") else 1
    digits = ""
    for c in text.lstrip("+-") if text[:2] not in ("--", "++", "+-", "-+") else "":
        if c not in "0123456789":
            break
        digits += c
    return max(-2**31, min(2**31 - 1, sign * int(digits or 0)))


class Driver:
    def __init__(self, command):
        self.folder = tempfile.TemporaryDirectory(prefix="random-sessions-")
        self.errors = open(os.path.join(self.folder.name, "stderr"), "w+b")
        environment = dict(os.environ, XDG_RUNTIME_DIR=self.folder.name, LANGUAGE="",
                           LC_ALL="C.UTF-8")
        environment.setdefault("QT_QPA_PLATFORM", "offscreen")
        os.chmod(self.folder.name, 0o700)
        self.process = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                        stderr=self.errors, env=environment)
        self.refusals = 0
        self.lines = 0

    def send(self, act):
        self.process.stdin.write(json.dumps(act).encode() + b"\n")
        self.process.stdin.flush()
        line = self.process.stdout.readline()
        self.lines += 1
        if not line:
            raise Failure("the script died, status %s" % self.process.wait())
        answer = json.loads(line)
        if answer.get("ok") is False:
            self.refusals += 1
            if set(answer) != {"ok", "error"} or not answer["error"]:
                raise Failure("a refusal without its fields: %s" % answer)
        elif answer.get("ok") is not True:
            raise Failure("an answer without ok: %s" % answer)
        elif set(answer) != FIELDS.get(act["do"], set()) | {"ok"}:
            raise Failure("%s answered with the fields %s" % (act["do"], sorted(answer)))
        return answer

    def finish(self):
        self.process.stdin.close()
        status = self.process.wait(timeout=60)
        self.errors.seek(0)
        noise = self.errors.read()
        if status != (1 if self.refusals else 0):
            raise Failure("exit status %d after %d refusals" % (status, self.refusals))
        if noise:
            raise Failure("standard error is not empty: %r" % noise[:2000])


def expect(condition, what):
    if not condition:
        raise Failure(what)


class Session:
    def __init__(self, driver, printer, rng):
        self.driver = driver
        self.printer = printer
        self.rng = rng
        self.trace = []
        self.paper = None
        self.settings = rng.random() < 0.95
        self.state = None
        self.loaded = False
        self.initialised = False

    def act(self, **act):
        self.trace.append(act)
        return self.driver.send(act)

    def ok(self, **act):
        answer = self.act(**act)
        expect(answer["ok"], "refused: %s" % answer.get("error"))
        return answer

    # What the state must be.

    def look(self, expected_calls=None, marks=None):
        """Reads the state. `marks`: keyword -> mark that the act itself made from outside."""
        old = self.state
        new = self.driver.send({"do": "state"})
        expect(new["ok"], "no state")
        self.check_fields(new)
        if old is not None:
            wanted = dict(old["marked"], **(marks or {}))
            for keyword, choice in new["calls"]:
                expect(keyword in KEYWORDS, "sent a strange keyword %s" % keyword)
                if choice in self.printer.choices.get(keyword, []):
                    wanted[keyword] = choice
            expect(new["marked"] == wanted, "marked %s, wanted %s" % (new["marked"], wanted))
        if expected_calls is not None:
            expect(new["calls"] == expected_calls,
                   "sent %s, wanted %s" % (new["calls"], expected_calls))
        if self.loaded:
            self.check_picture(new)
            self.check_count_pair(new)
        expect(new["isRV"] == self.printer.is_rv, "family")
        expect(new["autoCutShown"] == int(self.printer.shows_auto_cut), "autoCutShown")
        expect(new["resized"] == 0, "resized without a key window")
        self.state = new
        return new

    def check_fields(self, state):
        expect(set(state["controls"]) == set(CONTROL_FIELDS), "controls")
        for name, control in state["controls"].items():
            if self.loaded:
                expect(set(control) == CONTROL_FIELDS[name], "fields of %s" % name)
            else:
                expect(control is None, "%s before the view" % name)
        expect(set(state["marked"]) == set(KEYWORDS), "marked")
        expect(set(state["selections"]) == set(SELECTIONS) | {"mAutoCut_CutEvery_Selection"},
               "selections")
        if self.loaded:
            expect(set(state["popup"]) == {"entries", "selected"}, "popup")
            expect(set(state["preview"]) == {"slot", "image", "x", "below"}, "preview")
            expect(len(state["panelSize"]) == 2, "panelSize")
        else:
            expect(state["popup"] is None and state["preview"] is None and
                   state["panelSize"] is None, "a view before it was asked for")

    def on(self, state, box):
        control = state["controls"][box]
        return not control["hidden"] and control["state"] == 1

    def combination(self, state):
        special = self.on(state, "mSpecialTapeChkBx")
        cut = not special and (self.on(state, "mCutEveryChkBx") or self.on(state, "mAutoCutChkBx"))
        half = not special and self.on(state, "mHalfCutChkBx")
        chain = not special and self.on(state, "mChainPrintChkBx")
        return special, cut, half, chain

    def target_tag(self, state):
        special, cut, half, chain = self.combination(state)
        if self.printer.is_rv:
            return 3 if cut else 2 if self.on(state, "mCutAndEndChkBx") else 1
        return 12 if special else 4 + 4 * cut + 2 * half + chain

    def check_picture(self, state):
        special, cut, half, chain = self.combination(state)
        end, mirror = self.on(state, "mCutAndEndChkBx"), self.on(state, "mMirrorPrintChkBx")
        word = {False: "Off", True: "On"}
        if self.printer.is_rv:
            slot = (2 if cut else 1 if end else 0) + 3 * mirror
            name = "EveryEndMirror" + word[cut] + word[end and not cut] + word[mirror]
        elif special:
            slot, name = 16 + mirror, "SPMROn" + word[mirror]
        else:
            slot = 8 * cut + 4 * half + 2 * chain + mirror
            name = "AHCM" + word[cut] + word[half] + word[chain] + word[mirror]
        expect((state["preview"]["slot"], state["preview"]["image"]) == (slot, name),
               "the picture is %s, wanted %s" % (state["preview"], name))

    def check_count_pair(self, state):
        field, stepper, label = (state["controls"][name] for name in COUNT_CONTROLS)
        expect(field["enabled"] == stepper["enabled"], "a count pair taken apart")
        if self.initialised:
            expect(label["grey"] != field["enabled"], "the count's label")

    def check_layout(self, state):
        below, dropped = 38, 0
        where = {}
        if self.printer.shows("mCutEveryChkBx"):
            where = {"mCutEveryChkBx": 38, "mCutEveryTxBx": 68, "mCutEveryStpr": 69,
                     "mCutEveryStr": 62}
            below = 90
        else:
            dropped = 52
        for box in ["mAutoCutChkBx", "mCutAndEndChkBx", "mHalfCutChkBx", "mSpecialTapeChkBx",
                    "mChainPrintChkBx", "mMirrorPrintChkBx", "mRemoveBlkSpaceChkBx"]:
            if self.printer.shows(box):
                where[box] = below
                below += 26
            else:
                dropped += 26
        for name, control in state["controls"].items():
            expect(control["hidden"] == (name not in where), "%s hidden" % name)
            if name in where:
                expect(control["below"] == where[name], "%s below %s" % (name, control["below"]))
        expect(state["panelSize"][1] == max(150, 262 - dropped), "the panel's height")
        expect(state["preview"]["below"] == 130, "the preview's place")
        auto, half, chain = (self.printer.shows(box) for box in
                             ["mAutoCutChkBx", "mHalfCutChkBx", "mChainPrintChkBx"])
        rv = self.printer.is_rv
        kept = {1: rv, 2: self.printer.shows("mCutAndEndChkBx"),
                3: self.printer.shows("mCutEveryChkBx"), 4: not rv, 5: chain, 6: half,
                7: half and chain, 8: auto, 9: auto and chain, 10: auto and half,
                11: auto and half and chain, 12: self.printer.shows("mSpecialTapeChkBx")}
        expect(state["popup"]["entries"] == [{"tag": tag, "title": ""} for tag in range(1, 13)
                                             if kept[tag]], "the pop-up's entries")

    def check_rules(self, state):
        """After every act that ends with the rules."""
        controls = state["controls"]
        special = controls["mSpecialTapeChkBx"]
        every = controls["mCutEveryChkBx"]
        excludes = not special["hidden"] and special["state"] == 1
        if not special["hidden"] and special["state"] in (0, 1):
            for box in ["mAutoCutChkBx", "mChainPrintChkBx", "mHalfCutChkBx", "mCutEveryChkBx"]:
                expect(controls[box]["enabled"] != excludes, "%s under special tape" % box)
        if excludes or every["state"] == 0:
            expect(not controls["mCutEveryTxBx"]["enabled"], "the count is enabled")
        elif every["state"] == 1:
            expect(controls["mCutEveryTxBx"]["enabled"], "the count is disabled")
        fixed = self.paper is not None and self.paper[0] is not None and \
            self.paper[0][:2] in ("DC", "AV")
        expect(controls["mRemoveBlkSpaceChkBx"]["enabled"] != fixed, "remove blank space")

    def check_pop_up_follows(self, state):
        tags = [entry["tag"] for entry in state["popup"]["entries"]]
        target = self.target_tag(state)
        if target in tags:
            expect(state["popup"]["selected"] == target,
                   "the pop-up shows %s, wanted %s" % (state["popup"]["selected"], target))

    def check_full_refresh(self, state):
        self.check_rules(state)
        tag = state["popup"]["selected"]
        if tag is None:
            return
        for box, wanted in entry_states(tag).items():
            expect(state["controls"][box]["state"] == wanted, "%s after entry %s" % (box, tag))

    def tape_state(self):
        if self.paper is None or self.paper[0] is None or self.paper[1] == 0:
            return 0
        return int(self.paper[0] in self.printer.sizes and self.paper[0][:2] in ("DC", "AV"))

    # The acts.

    def sent(self, keyword, index):
        choices = self.printer.choices.get(keyword)
        if choices is None or not 0 <= index < len(choices):
            return []
        return [[keyword, choices[index]]]

    def click(self):
        box = self.rng.choice(BOXES)
        before = self.state["controls"][box]
        answer = self.act(do="click", control=box)
        usable = before["enabled"] and not before["hidden"]
        expect(answer["ok"] == usable, "a click on %s" % before)
        if not usable:
            return self.look([])
        keyword = "KvAutoTapeCut" if box == "mCutEveryChkBx" else KEYWORD_OF[box]
        state = self.look(self.sent(keyword, 1 if before["state"] == 0 else 0))
        self.check_rules(state)
        self.check_pop_up_follows(state)
        return state

    def count(self):
        how = self.rng.choice(["enter", "enter", "type", "step"])
        field = self.state["controls"]["mCutEveryTxBx"]
        usable = field["enabled"] and not field["hidden"]
        choices = self.printer.choices.get("KvCutLabel")
        low, high = (int_value(choices[0]), int_value(choices[-1])) if choices else (1, 99)

        def clamped(n):
            return low if n < low else min(n, high)

        def calls(n):
            return self.sent("KvCutLabel", clamped(n) - low)

        if how == "step":
            n = self.rng.choice([-5, 0, 1, 2, 3, 7, 42, 99, 100, 2**31 - 1, -2**31])
            answer, wanted = self.act(do="step", value=n), calls(n)
        elif how == "enter":
            text = self.rng.choice(["1", "7", "12", "99", "100", "abc", "-3", " 5", "+6", "3x",
                                    "99999999999", "0"])
            answer, wanted = self.act(do="enter", text=text), calls(int_value(text))
        else:
            answer, wanted = self.act(do="type", text=self.rng.choice(["5", "12", "150", "x"])), None
        expect(answer["ok"] == usable, "%s while the field is %s" % (how, field))
        state = self.look(wanted if usable else [])
        if usable:
            self.check_rules(state)
            self.check_pop_up_follows(state)
            marked = state["marked"]["KvCutLabel"]
            if marked is not None:
                expect(state["controls"]["mCutEveryTxBx"]["text"] == marked, "the count shown")
                expect(state["controls"]["mCutEveryStpr"]["value"] == int_value(marked),
                       "the stepper")

    def popup(self):
        tag = self.rng.randrange(0, 14)
        tags = [entry["tag"] for entry in self.state["popup"]["entries"]]
        answer = self.act(do="popup", tag=tag)
        expect(answer["ok"] == (tag in tags), "entry %d of %s" % (tag, tags))
        before = self.state
        state = self.look([])
        if tag in tags:
            wanted = dict({box: before["controls"][box]["state"] for box in BOXES},
                          **entry_states(tag))
            for box in BOXES:
                expect(state["controls"][box]["state"] == wanted[box], "%s by entry" % box)
            expect(state["popup"]["selected"] == tag, "the chosen entry")
            expect(state["selections"] == before["selections"], "selections by entry")
            self.check_rules(state)

    def set_state(self):
        box = self.rng.choice(BOXES)
        wanted = self.rng.choice([-1, 0, 1])
        self.ok(do="set", control=box, state=wanted)
        before = self.state
        state = self.look([])
        expect(state["controls"][box] == dict(before["controls"][box], state=wanted), "set")

    def save(self):
        self.ok(do="save")
        before = self.state
        state = self.look(self.saved_calls(before) if self.settings else [])
        for box in BOXES:
            expect(state["controls"][box]["state"] == before["controls"][box]["state"],
                   "saving changed %s" % box)
        expect(state["tapeState"] == self.tape_state(), "tape state")
        expect(state["controls"]["mRemoveBlkSpaceChkBx"]["enabled"] == (self.tape_state() == 0),
               "remove blank space after saving")

    def saved_calls(self, before):
        controls, printer, calls = before["controls"], self.printer, []
        special = controls["mSpecialTapeChkBx"]
        excluded = not special["hidden"] and special["state"] != 0
        for keyword in KEYWORDS:
            if keyword not in printer.choices:
                continue
            choices = printer.choices[keyword]
            state = controls[BOX_OF[keyword]]["state"]
            if keyword == "KvCutLabel":
                if not printer.shows_auto_cut and "KvAutoTapeCut" in printer.choices:
                    calls.append(["KvAutoTapeCut", "ON" if state == 1 and not excluded else "OFF"])
                state = printer.marked_index(keyword, before["marked"])
            elif keyword == "KvAutoTapeCut" and not printer.shows_auto_cut:
                continue
            elif keyword in ("KvAutoTapeCut", "KvHalfCut", "KvChainPrint") and excluded:
                state = 0
            calls.append([keyword, choices[max(0, min(state, len(choices) - 1))]])
        return calls

    def restore(self):
        self.ok(do="restore")
        state = self.look([])
        self.check_full_refresh(state)
        for keyword in KEYWORDS:
            wanted = self.printer.marked_or_default(keyword, state["marked"]) \
                if keyword in self.printer.choices else None
            expect(state["selections"][SELECTION_OF[keyword]] == wanted, "%s reread" % keyword)

    def will_show(self):
        self.ok(do="willShow")
        state = self.look(None if not self.initialised else [])
        self.initialised = True
        self.check_count_pair(state)
        self.check_full_refresh(state)

    def outside(self):
        how = self.rng.choice(["mark", "hostChange", "unmark", "notify"])
        keyword = self.rng.choice(KEYWORDS)
        choices = self.printer.choices.get(keyword, [])
        choice = self.rng.choice(choices + ["no such"])
        before = self.state
        selections = dict(before["selections"])
        if how == "unmark":
            answer = self.act(do="unmark", key=keyword)
            expect(answer["ok"] == (keyword in self.printer.choices), "unmark")
            state = self.look([], {keyword: None} if answer["ok"] else {})
        elif how == "notify":
            key, told = self.rng.choice([(keyword, choice), (None, choice), (keyword, None)])
            self.ok(do="notify", key=key, choice=told)
            if key and told:
                selections[SELECTION_OF[key]] = told if told in choices else None
            state = self.look([])
        else:
            answer = self.act(do=how, key=keyword, choice=choice)
            expect(answer["ok"] == (choice in choices), how)
            state = self.look([], {keyword: choice} if answer["ok"] else {})
            if answer["ok"] and how == "hostChange":
                selections[SELECTION_OF[keyword]] = choice
        expect(state["selections"] == selections, "selections after %s" % how)
        expect(state["controls"] == before["controls"], "controls after %s" % how)

    def change_paper(self):
        before = self.state
        if self.rng.random() < 0.25:
            self.paper = None
            self.ok(do="paper", none=True)
        else:
            self.paper = self.random_paper()
            self.ok(do="paper", name=self.paper[0], height=self.paper[1])
        state = self.look([])
        expect(state["controls"] == before["controls"], "controls after a paper")

    def random_paper(self):
        return (self.rng.choice(["DC24", "AV100", "T24", "DC99", "dc24", "", None]),
                self.rng.choice([283.5, 68, 0]))

    def should_print(self):
        before = self.state
        expect(self.ok(do="shouldPrint")["value"] is True, "shouldPrint")
        wanted = []
        for keyword, choices in self.printer.choices.items():
            default = self.printer.defaults[keyword]
            if before["marked"][keyword] is None and default in choices:
                wanted.append([keyword, default])
        state = self.look(wanted)
        expect(state["selections"] == before["selections"], "selections after shouldPrint")

    def summary(self):
        answer = self.ok(do="summary")
        titles = set(answer["order"]) - {"Summary Display Order"}
        expect(set(answer["summary"]) == titles, "titles of the summary: %s" % answer)
        expect(all(isinstance(text, str) for text in answer["summary"].values()), "its values")
        selections = self.state["selections"]
        entries = sum(selections[name] is not None for name in SELECTIONS)
        entries -= selections["mAutoCut_Selection"] is not None and \
            selections["mCutEvery_Selection"] is not None
        entries -= selections["mRemoveBlkSpace_Selection"] is not None and \
            self.state["tapeState"] != 0
        expect(len(answer["order"]) == entries, "%d entries" % entries)
        before = self.state
        expect(self.look([])["controls"] == before["controls"], "controls after a summary")

    def harmless(self):
        what = self.rng.choice(["name", "kind", "shouldHide", "shouldShowHelp", "close", "view",
                                "localize"])
        before = self.state
        self.ok(do=what, **({"key": "RS_Labels"} if what == "localize" else {}))
        expect(self.look([]) == dict(before, calls=[]), "%s changed something" % what)

    def play(self, acts):
        extra = {"uri": self.rng.choice(["usb://x/y", "ipp://x/", "KVSGUSB:x", None])}
        if self.rng.random() < 0.5:
            self.paper = self.random_paper()
            extra["paper"] = {"name": self.paper[0], "height": self.paper[1]}
        if self.rng.random() < 0.2:
            extra["marks"] = "none"
        if self.rng.random() < 0.3:
            extra["ticket"] = self.rng.choice(["", "no list", "<plist><dict/></plist>"])
        answer = self.ok(do="open", ppd=self.printer.path, settings=self.settings, **extra)
        expect(answer["accepted"] is True and answer["panels"] == 1, "opened: %s" % answer)
        self.look([])
        keys = self.ok(do="keys")["keys"]
        wanted = [k for k in KEYWORDS if k in self.printer.choices]
        if "KvCutLabel" in wanted and "KvAutoTapeCut" not in wanted:
            wanted.insert(1, "KvAutoTapeCut")
        expect(keys == wanted, "keys %s" % keys)
        self.look()
        expect(self.ok(do="view")["loaded"] is True, "view")
        self.loaded = True
        self.check_layout(self.look([]))
        self.will_show()
        if self.rng.random() < 0.8:
            self.restore()
        choices = [self.click] * 6 + [self.count] * 3 + [self.popup] * 3 + [
            self.set_state, self.save, self.save, self.restore, self.will_show, self.outside,
            self.outside, self.change_paper, self.should_print, self.summary, self.harmless]
        for _ in range(acts):
            self.rng.choice(choices)()
        self.check_layout(self.state)


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--sessions", type=int, default=2000)
    parser.add_argument("--seed", type=int, default=20240)
    parser.add_argument("--acts", type=int, default=12, help="acts a session")
    parser.add_argument("--only", type=int, help="play this session alone")
    parser.add_argument("command", nargs=argparse.REMAINDER)
    arguments = parser.parse_args()
    if not arguments.command:
        parser.error("a command is missing")
    driver = Driver(arguments.command)
    ppd = os.path.join(driver.folder.name, "printer.ppd")
    numbers = [arguments.only] if arguments.only is not None else range(arguments.sessions)
    for number in numbers:
        rng = random.Random(arguments.seed * 1000003 + number)
        session = Session(driver, Printer(rng, ppd), rng)
        try:
            session.play(arguments.acts)
        except Failure as failure:
            print("session %d (seed %d): %s" % (number, arguments.seed, failure))
            for act in session.trace:
                print("  " + json.dumps(act))
            with open(ppd, "rb") as text:
                print(text.read().decode("utf-8", "replace"))
            driver.process.kill()
            return 1
    try:
        driver.finish()
    except Failure as failure:
        print(failure)
        return 1
    print("%d sessions, %d lines, %d refusals: all as it must be" %
          (len(numbers), driver.lines, driver.refusals))
    return 0


if __name__ == "__main__":
    sys.exit(main())
