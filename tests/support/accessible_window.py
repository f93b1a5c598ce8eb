"""Test support: a program's window as a screen reader finds it on the accessibility bus."""
import time

import pyatspi
from gi.repository import GLib

PATIENCE = 30.0  # seconds; the machine may be busy


def until(condition, what):
    """The first true answer of `condition`; events are heard meanwhile."""
    end = time.monotonic() + PATIENCE
    while time.monotonic() < end:
        answer = condition()
        if answer:
            return answer
        time.sleep(0.05)
        hear_events()
    raise SystemExit(f"never: {what}")


def hear_events():
    context = GLib.MainContext.default()
    while context.iteration(False):
        pass


def everything(node):
    yield node
    for index in range(node.childCount):
        child = node.getChildAtIndex(index)
        if child is not None:
            yield from everything(child)


def shows(node):
    return node.getState().contains(pyatspi.STATE_SHOWING)


def find(root, role, name):
    """By the start of its name; None: there is none."""
    for node in everything(root):
        if node.getRoleName() == role and node.name.startswith(name):
            return node
    return None


def press(node):
    node.queryAction().doAction(0)


def window_of(process, title):
    """The window of that title of the process of that number, once it is there."""
    desktop = pyatspi.Registry.getDesktop(0)

    def window():
        for application in desktop:
            if application is None or application.get_process_id() != process:
                continue
            for top in application:
                if top is not None and top.name == title:
                    return top
        return None

    return until(window, f"the window \"{title}\" appears on the bus")
