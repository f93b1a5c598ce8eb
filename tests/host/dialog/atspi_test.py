#!/usr/bin/env python3
"""What a screen reader learns of the dialog, asked through the desktop's accessibility bus.

    atspi_test.py PROGRAM PPD DOCUMENT

Starts a bus and a virtual screen of its own when it is not inside them yet. Fails with a line for
each thing that is missing.
"""
import os
import subprocess
import sys

DEBIAN_PYTHON = "/usr/bin/python3"  # which its packages are installed for


def enter_private_session():
    """Runs this script again inside a bus and a screen of its own."""
    reading, writing = os.pipe()
    screen = subprocess.Popen(["Xvfb", "-displayfd", str(writing), "-screen", "0", "1280x1024x24",
                               "-nolisten", "tcp", "-noreset"], pass_fds=[writing])
    os.close(writing)
    try:
        with os.fdopen(reading) as pipe:
            number = pipe.readline().strip()
        environment = dict(os.environ, LABELCUT_SESSION="1", DISPLAY=f":{number}",
                           QT_QPA_PLATFORM="xcb", QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1",
                           LC_ALL="C.UTF-8", LANGUAGE="en", CUPS_SERVER="/nonexistent/cups.sock")
        for name in ("AT_SPI_BUS_ADDRESS", "WAYLAND_DISPLAY", "XAUTHORITY"):
            environment.pop(name, None)
        return subprocess.run(["dbus-run-session", "--", DEBIAN_PYTHON, *sys.argv],
                              env=environment, check=False).returncode
    finally:
        screen.terminate()
        screen.wait()


def is_chosen(tab):
    """The page in front; the toolkit says so in either way."""
    state = tab.getState()
    return state.contains(pyatspi.STATE_SELECTED) or state.contains(pyatspi.STATE_FOCUSED)


def labels_of(node):
    return [relation.getTarget(0).name for relation in node.getRelationSet()
            if relation.getRelationType() == pyatspi.RELATION_LABELLED_BY]


CONTROLS = {"push button", "check box", "radio button", "combo box", "text", "password text",
            "spin button", "page tab", "progress bar"}


def names_of(node):
    """What tells the control from others of its kind; empty: nothing does."""
    # The toolkit gives what is chosen as a pop-up's name; what it is for is said by its label.
    is_value = node.getRoleName() == "combo box" and \
        node.name in [entry.name for entry in everything(node) if entry != node]
    names = labels_of(node) + ([] if is_value else [node.name])
    return [name for name in names if name.strip()]


def value_of(node):
    """What stands in a field, as it is read out."""
    if node.getRoleName() == "combo box":
        return node.name
    if node.getRoleName() == "spin button":
        return str(node.queryValue().currentValue)
    text = node.queryText()
    return text.getText(0, text.characterCount)


class Check:
    def __init__(self, window, program):
        self.window = window
        self.program = program
        self.problems = []
        self.announced = []

    def expect(self, truth, problem):
        if not truth:
            self.problems.append(problem)

    def hear(self, event):
        try:
            if event.source and event.source.getRoleName() in ("alert", "notification"):
                self.announced.append(event.source.name)
        except GLib.GError:
            pass  # a part of the window that is gone since

    def names_and_roles(self):
        """Every control that is seen, on every page, has a name or a label."""
        tabs = [node for node in everything(self.window) if node.getRoleName() == "page tab"]
        names = [tab.name for tab in tabs]
        self.expect({"Cut Options", "Printer Features", "Summary"} <= set(names),
                    f"pages: {names}")
        for tab in tabs:
            press(tab)
            until(lambda tab=tab: is_chosen(tab), f"page {tab.name}")
            for node in everything(self.window):
                if node.getRoleName() in CONTROLS and shows(node):
                    self.expect(names_of(node), f"{tab.name}: a {node.getRoleName()} "
                                               f"\"{node.name}\" without a name")
                    self.expect(node.getState().contains(pyatspi.STATE_FOCUSABLE)
                                or not node.getState().contains(pyatspi.STATE_ENABLED)
                                or node.getRoleName() in ("page tab", "progress bar"),
                                f"{tab.name}: {names_of(node)} cannot have the focus")
            self.expect(not any(node.getRoleName() == "unknown" and shows(node)
                                for node in everything(self.window)),
                        f"{tab.name}: a part without a role")
        press(tabs[0])
        until(lambda: is_chosen(tabs[0]), "the first page")

    def roles(self):
        for role, name in (("check box", "Half cut"), ("check box", "Auto cut"),
                           ("push button", "Print"), ("push button", "Cancel"),
                           ("push button", "Save"), ("label", "12 labels on 24 mm tape")):
            until(lambda role=role, name=name: find(self.window, role, name),
                  f"a {role} \"{name}\"")
        labelled = [label for node in everything(self.window)
                    if node.getRoleName() in ("combo box", "spin button")
                    for label in labels_of(node)]
        for label in ("Printer:", "Copies:", "Preset:"):
            self.expect(label in labelled, f"no field is labelled \"{label}\": {labelled}")

    def fields(self):
        """Name, role and value of the fields, those of custom values included."""
        for line in ("choose FeedLength Custom.72", "choose PageSize Custom.72x144",
                     "choose Quality Draft"):
            self.order(line)
        until(lambda: find(self.window, "label", "12 labels on 25.4"), "the chosen label size")
        tabs = [node for node in everything(self.window) if node.getRoleName() == "page tab"]
        wanted = {0: [("radio button", "All", None), ("combo box", "Label size:", "Custom"),
                      ("text", "Range of labels", ""), ("text", "Width", "25.4 mm"),
                      ("text", "Height", "50.8 mm")],
                  1: [("combo box", "Quality", "Draft"), ("combo box", "Print density", "Medium"),
                      ("combo box", "Feed after printing", "Custom"),
                      ("text", "Feed after printing: Length", "25.4 mm")]}
        for index, fields in wanted.items():
            press(tabs[index])
            until(lambda index=index: is_chosen(tabs[index]), f"page {tabs[index].name}")
            shown = [node for node in everything(self.window) if shows(node)]
            for role, name, value in fields:
                found = [node for node in shown if node.getRoleName() == role
                         and name in names_of(node)]
                self.expect(found, f"no {role} \"{name}\": " + str(
                    [names_of(node) for node in shown if node.getRoleName() == role]))
                for node in found if value is not None else []:
                    self.expect(value_of(node) == value,
                                f"{name}: {value_of(node)} instead of {value}")
        self.names_and_roles()
        press(find(self.window, "push button", "Printer's defaults"))
        until(lambda: find(self.window, "label", "12 labels on 24 mm tape"), "the defaults")

    def order(self, line):
        self.program.stdin.write(f"{line}\n".encode())
        self.program.stdin.flush()

    def a_click(self):
        """A checkbox's state, the preview's description and the sentence follow a click."""
        box = find(self.window, "check box", "Half cut")
        preview = next(node for node in everything(self.window)
                       if node.name == "Preview of the cut")
        before = preview.description
        self.expect(before, "the preview has no description")
        self.expect(not box.getState().contains(pyatspi.STATE_CHECKED), "half cut is on at first")
        press(box)
        until(lambda: box.getState().contains(pyatspi.STATE_CHECKED), "half cut is ticked")
        until(lambda: preview.description != before, "the preview's description changes")
        until(lambda: "half cut" in find(self.window, "label", "12 labels on").name,
              "the sentence names half cut")
        press(find(self.window, "push button", "Undo"))
        until(lambda: not box.getState().contains(pyatspi.STATE_CHECKED), "undo unticks it")

    def a_message(self):
        sentence = "Something happened to the printer."
        self.order(f"tell {sentence}")
        alert = until(lambda: find(self.window, "alert", sentence), "the message is an alert")
        self.expect(shows(alert), "the alert does not show")
        until(lambda: any(name.startswith(sentence) for name in self.announced),
              "the message is announced")


def main():
    if "LABELCUT_SESSION" not in os.environ:
        return enter_private_session()
    program = subprocess.Popen(sys.argv[1:4], stdin=subprocess.PIPE)
    try:
        check = Check(window_of(program.pid, "Print Labels"), program)
        for kind in ("object:state-changed:showing", "object:announcement"):
            pyatspi.Registry.registerEventListener(check.hear, kind)
        check.roles()
        check.names_and_roles()
        check.fields()
        check.a_click()
        check.a_message()
        for problem in check.problems:
            print(problem, file=sys.stderr)
        return 1 if check.problems else 0
    finally:
        program.kill()
        program.wait()


if __name__ == "__main__":
    if "LABELCUT_SESSION" in os.environ:
        import pyatspi
        from gi.repository import GLib
        sys.dont_write_bytecode = True
        sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "..", "support"))
        from accessible_window import everything, find, press, shows, until, window_of
    sys.exit(main())
