#!/usr/bin/python3
"""Finds or presses a button of a running program's window, as somebody does who cannot see it.

    press_button.py find|press PROCESS WINDOW BUTTON

Waits until the window is there and the button, which is named by the start of its text, can be
pressed.
"""
import os
import sys

sys.dont_write_bytecode = True
sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "support"))
import pyatspi
from accessible_window import find, press, until, window_of


def main():
    deed, process, title, text = sys.argv[1:]
    window = window_of(int(process), title)

    def button():
        found = find(window, "push button", text)
        usable = found is not None and found.getState().contains(pyatspi.STATE_SENSITIVE)
        return found if usable else None

    found = until(button, f"a button \"{text}\" that can be pressed")
    if deed == "press":
        press(found)


if __name__ == "__main__":
    main()
