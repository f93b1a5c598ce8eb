#!/usr/bin/env python3
"""The print room's painter: draws the 24 preview pictures of the cut options as SVG.

    draw_pictures.py OUTDIR    writes OUTDIR/NAME.svg (light) and OUTDIR/dark/NAME.svg (dark)
    draw_pictures.py --check   prints the contrast of every pair that must be told apart
    draw_pictures.py --list    prints the names

The grammar, the same in every picture: a strip lies to the left of the printer's mouth, three
labels R, F, G on it, and what happens at a joint between two of them is

    full cut   the strip is parted, scissors stand over the gap
    half cut   a notch from the top, the backing line goes on under it; a blade points into it
    no cut     the strip runs on, a dotted fold line marks the joint
    hand cut   as no cut, with a heavier dashed line and an open hand: the user cuts here

Blank tape that is thrown away is hatched. Everything stands on whole points of a 300 x 84 canvas,
and the large shapes on multiples of three, so that a third of the size is sharp too.
"""
import argparse
import enum
import sys
from dataclasses import dataclass
from pathlib import Path

WIDTH, HEIGHT = 300, 84
STRIP_TOP, LAYER_BOTTOM, STRIP_BOTTOM = 33, 72, 78  # the label layer, then its backing
SHEET_TOP, SHEET_BOTTOM = 30, 81                    # single-layer strips: backing, cloth
LAYER_LETTER_TOP, SHEET_LETTER_TOP = 39, 42         # letters stand in the middle of either
MOUTH_LEFT, MOUTH_TOP = 261, 27
JOINT = 12  # width of the place where two labels meet
NOTCH = 3   # half the width of a half cut
EDGE = 2    # width of outlines


class Cut(enum.Enum):
    NONE = "none"
    HALF = "half"
    FULL = "full"
    HAND = "hand"


@dataclass(frozen=True)
class Palette:
    """Colours by what they stand for."""
    backgrounds: tuple  # dialogs that the picture must stand out from; never drawn
    ink: str
    tape: str           # the label layer of continuous tape
    tape_edge: str      # its outline and its backing line
    tape_fold: str
    label: str          # a die-cut label
    label_edge: str
    backing: str        # the carrier of die-cut labels
    backing_edge: str
    backing_fold: str
    cloth: str          # woven special tape
    thread: str
    cloth_edge: str
    cloth_fold: str
    waste: str          # blank lead that is thrown away
    hatch: str
    cut: str            # scissors, blade, hand
    seam: str           # where cloth is to be cut by hand
    mouth: str
    lip: str
    inside: str         # what can be seen through the mouth


LIGHT = Palette(
    backgrounds=("#f0f0f0", "#ffffff"), ink="#1c1f24",
    tape="#ffd659", tape_edge="#866200", tape_fold="#6b4d00",
    label="#ffffff", label_edge="#4e6178",
    backing="#a9c4df", backing_edge="#4e6178", backing_fold="#33465c",
    cloth="#e9dcf4", thread="#cdb4e2", cloth_edge="#75539a", cloth_fold="#5b3b80",
    waste="#f3f1ec", hatch="#857a62", cut="#c01c28", seam="#8c1020",
    mouth="#4a5361", lip="#2b313b", inside="#dfe4ea")

DARK = Palette(
    backgrounds=("#2b2b2b", "#1e1e1e"), ink="#16181c",
    tape="#f5c842", tape_edge="#b08d2a", tape_fold="#6b4d00",
    label="#f4f6f8", label_edge="#f4f6f8",
    backing="#56738f", backing_edge="#8fabc6", backing_fold="#d5e4f2",
    cloth="#d9c6ea", thread="#b99bd3", cloth_edge="#a583c6", cloth_fold="#5b3b80",
    waste="#4a4842", hatch="#b9b09a", cut="#ff8f86", seam="#6e0a18",
    mouth="#8e99a8", lip="#c3cbd6", inside="#23272e")


# --- shapes ------------------------------------------------------------------------------------

def rect(x0, y0, x1, y1, fill, radius=0):
    corner = f' rx="{radius}" ry="{radius}"' if radius else ""
    return f'<rect x="{x0}" y="{y0}" width="{x1 - x0}" height="{y1 - y0}"{corner} fill="{fill}"/>'


def framed(x0, y0, x1, y1, fill, edge, radius=0):
    """A filled box with its outline inside the given corners."""
    return (rect(x0, y0, x1, y1, edge, radius)
            + rect(x0 + EDGE, y0 + EDGE, x1 - EDGE, y1 - EDGE, fill, max(0, radius - EDGE)))


def polygon(points, fill):
    return f'<polygon points="{" ".join(f"{x},{y}" for x, y in points)}" fill="{fill}"/>'


def path(d, fill):
    return f'<path d="{d}" fill="{fill}"/>'


def stroke(d, colour, width, cap="butt"):
    return (f'<path d="{d}" fill="none" stroke="{colour}" stroke-width="{width}"'
            f' stroke-linecap="{cap}" stroke-linejoin="miter"/>')


def box(x, y, w, h):
    return f"M{x} {y}h{w}v{h}h{-w}z"


def dashes_down(x, y0, y1, width, on, off, colour):
    """A vertical dashed line, its dashes centred between the given ends."""
    count = (y1 - y0 + off) // (on + off)
    first = y0 + (y1 - y0 - count * on - (count - 1) * off) // 2
    return path("".join(box(x, first + i * (on + off), width, on) for i in range(count)), colour)


def hatched(x0, y0, x1, y1, colour, pitch=9, width=2):
    """Diagonal lines that end on the sides of the box: no clipping needed."""
    d = []
    for start in range(x0 - (y1 - y0) + pitch // 2, x1, pitch):
        bottom, top = max(start, x0), min(start + y1 - y0, x1)
        if top - bottom > width:
            d.append(f"M{bottom} {y1 - (bottom - start)}L{top} {y1 - (top - start)}")
    return stroke("".join(d), colour, width)


# --- letters: 27 high, their middle at x = 0; each line with its width, 0 for a filled shape ------

LETTERS = {
    "R": (("M-8 27V3h10a6 6 0 0 1 0 12h-10", 6), ("M-2 15h7l7 12h-7z", 0)),
    "F": (("M-6 27V3h16", 6), ("M-6 14h13", 6)),
    "G": (("M8 8C5 4 3 3 0 3c-5 0-8 4-8 10.5s3 10.5 8 10.5c4 0 7-2 8-5v-4h-8", 6),),
}


def letter(name, middle, top, mirrored, colour):
    flip = " scale(-1 1)" if mirrored else ""
    lines = "".join(stroke(d, colour, width) if width else path(d, colour)
                    for d, width in LETTERS[name])
    return f'<g transform="translate({middle} {top}){flip}">{lines}</g>'


# --- marks -------------------------------------------------------------------------------------

def scissors(x, colour):
    """Points down at x, from the top of the canvas into the gap of a full cut."""
    rings = "".join(f'<circle cx="{x + side * 8}" cy="8" r="6" fill="none" stroke="{colour}"'
                    ' stroke-width="3"/>' for side in (-1, 1))
    blades = "".join(polygon([(x + side * 8, 13), (x + side * 3, 13), (x - side * 4, 27),
                              (x - side * 4, 37), (x + side * 1, 27)], colour) for side in (-1, 1))
    return rings + blades


def blade(x, colour):
    """A small wedge that points into a half cut."""
    return polygon([(x - 6, 18), (x + 6, 18), (x, 30)], colour)


def hand(x, colour):
    """An open hand, palm to the viewer, over the place x."""
    fingers = ((-7, 7), (-1, 3), (5, 4), (11, 9))
    lines = "".join(f"M{x + dx} {top}V20" for dx, top in fingers)
    palm = f"M{x - 9} 17H{x + 13}V24Q{x + 13} 32 {x + 5} 32H{x - 1}Q{x - 5} 32 {x - 8} 28z"
    thumb = f"M{x - 13} 17L{x - 5} 27"
    return (stroke(lines, colour, 4, "round") + stroke(thumb, colour, 5, "round")
            + path(palm, colour))


# --- strips ------------------------------------------------------------------------------------

@dataclass(frozen=True)
class Cell:
    """One label's place on the strip; no letter: the blank lead."""
    left: int
    right: int
    letter: str = ""


@dataclass(frozen=True)
class Run:
    """A piece of strip between two full cuts. `notches` are the middles of its half cuts."""
    left: int
    right: int
    notches: tuple


LEAD = Cell(6, 33)


def joints(cells):
    """The middle of the joint after each cell."""
    return [cell.right + JOINT // 2 for cell in cells]


def runs(cells, cuts, end):
    """The strip's pieces, left to right; `end` is where it leaves the picture, inside the mouth."""
    pieces, left, notches = [], cells[0].left, []
    for cell, middle, cut in zip(cells, joints(cells), cuts):
        if cut is Cut.FULL:
            pieces.append(Run(left, cell.right, tuple(notches)))
            left, notches = cell.right + JOINT, []
        elif cut is Cut.HALF:
            notches.append(middle)
    if left < end:
        pieces.append(Run(left, end, tuple(notches)))
    return pieces


def layer_outline(run, inset):
    """The label layer of a run: a box with a notch from the top at every half cut."""
    top, bottom, half = STRIP_TOP + inset, LAYER_BOTTOM, NOTCH + inset
    points = [(run.left + inset, bottom), (run.left + inset, top)]
    for x in run.notches:
        points += [(x - half, top), (x - half, bottom), (x + half, bottom), (x + half, top)]
    return points + [(run.right - inset, top), (run.right - inset, bottom)]


def draw_tape(run, colours):
    return (rect(run.left, LAYER_BOTTOM, run.right, STRIP_BOTTOM, colours.tape_edge)
            + polygon(layer_outline(run, 0), colours.tape_edge)
            + polygon(layer_outline(run, EDGE), colours.tape))


def draw_backing(run, colours):
    return framed(run.left, SHEET_TOP, run.right, SHEET_BOTTOM, colours.backing,
                  colours.backing_edge)


def draw_cloth(run, colours):
    """Woven ribbon: threads over and under, and a scalloped selvedge instead of an outline."""
    top, bottom = SHEET_TOP + 3, SHEET_BOTTOM - 3
    selvedge = "".join(box(x, y, 3, 3) for x in range(run.left, run.right, 6)
                       for y in (top - 3, bottom))
    over = "".join(box(x + (3 if row % 2 else 0), top + 3 + 3 * row, 3, 3)
                   for row in range((bottom - top - 6) // 3) for x in range(run.left, run.right, 6))
    return (path(selvedge, colours.cloth_edge)
            + rect(run.left, top, run.right, bottom, colours.cloth_edge)
            + rect(run.left + 3, top + 3, run.right, bottom - 3, colours.cloth)
            + path(over, colours.thread))


def draw_lead(lead, cut, top, bottom, colours):
    """Hatching over the blank front, up to where the first joint really parts or folds it."""
    left, middle = lead.left + EDGE, lead.right + JOINT // 2
    right = {Cut.FULL: lead.right - EDGE, Cut.HALF: middle - NOTCH - EDGE}.get(cut, middle - 1)
    return (rect(left, top, right, bottom, colours.waste)
            + hatched(left, top, right, bottom, colours.hatch))


def draw_mark(x, cut, top, bottom, fold, colours):
    """What stands at a joint, over the strip."""
    if cut is Cut.FULL:
        return scissors(x, colours.cut)
    if cut is Cut.HALF:
        return blade(x, colours.cut)
    if cut is Cut.HAND:
        return dashes_down(x - 1, top, bottom, 3, 6, 3, colours.seam) + hand(x, colours.cut)
    return dashes_down(x - 1, top, bottom, 2, 6, 3, fold)


def draw_mouth(colours):
    return (rect(MOUTH_LEFT, MOUTH_TOP, WIDTH, HEIGHT, colours.mouth)
            + rect(MOUTH_LEFT, MOUTH_TOP, MOUTH_LEFT + 6, HEIGHT, colours.lip))


# --- pictures ----------------------------------------------------------------------------------

def place_cells(left, width):
    step = width + JOINT
    return [Cell(left + i * step, left + i * step + width, name) for i, name in enumerate("RFG")]


def letters(cells, top, mirrored, colours):
    """Each label's letter, in the middle of what can be seen of the label."""
    return "".join(letter(c.letter, (c.left + min(c.right, MOUTH_LEFT)) // 2, top, mirrored,
                          colours.ink) for c in cells if c.letter)


def draw_roll(every, at_end, mirrored, colours):
    cells = place_cells(3, 72)
    between = Cut.FULL if every else Cut.NONE
    cuts = [between, between, Cut.FULL if every or at_end else Cut.NONE]
    parts = [draw_backing(run, colours) for run in runs(cells, cuts, MOUTH_LEFT + EDGE)]
    parts += [framed(c.left + 6, SHEET_TOP + 6, c.right - 6, SHEET_BOTTOM - 6, colours.label,
                     colours.label_edge, 9) for c in cells]
    parts += [draw_mark(x, cut, SHEET_TOP + 3, SHEET_BOTTOM - 3, colours.backing_fold, colours)
              for x, cut in zip(joints(cells), cuts)]
    parts.append(draw_mouth(colours))
    return "".join(parts) + letters(cells, SHEET_LETTER_TOP, mirrored, colours)


def draw_waiting(last, colours):
    """The end of the label that stays in the mouth, seen through the printer's wall."""
    x0, x1, top, bottom = MOUTH_LEFT + 6, last.right, STRIP_TOP, STRIP_BOTTOM
    dots = "".join(box(x, y, 3, 2) for x in range(x0 + 2, x1 - 2, 5) for y in (top, bottom - 2))
    return path(dots, colours.inside) + dashes_down(x1 - 2, top, bottom, 2, 3, 3, colours.inside)


def draw_continuous(auto, half, chain, mirrored, colours):
    between = Cut.HALF if half else Cut.FULL if auto else Cut.NONE
    end = Cut.FULL if auto else Cut.NONE
    if chain:
        cells, cuts = place_cells(75, 57), [between, between]
    else:
        cells, cuts = [LEAD] + place_cells(45, 57), [between, between, between, end]
    parts = [draw_tape(run, colours) for run in runs(cells, cuts, MOUTH_LEFT + EDGE)]
    if not chain:
        parts.append(draw_lead(LEAD, between, STRIP_TOP + EDGE, LAYER_BOTTOM, colours))
    parts += [draw_mark(x, cut, STRIP_TOP + 3, LAYER_BOTTOM, colours.tape_fold, colours)
              for x, cut in zip(joints(cells), cuts)]
    if chain and auto:  # the cut that comes when the tape is fed out: the blades are inside
        parts.append(scissors(cells[-1].right, colours.cut))
    parts.append(draw_mouth(colours))
    if chain:
        parts.append(draw_waiting(cells[-1], colours))
    return "".join(parts) + letters(cells, LAYER_LETTER_TOP, mirrored, colours)


def draw_special(mirrored, colours):
    cells = [LEAD] + place_cells(45, 57)
    cuts = [Cut.NONE, Cut.NONE, Cut.NONE, Cut.HAND]
    parts = [draw_cloth(run, colours) for run in runs(cells, cuts, MOUTH_LEFT + EDGE)]
    parts.append(draw_lead(LEAD, Cut.NONE, SHEET_TOP + 6, SHEET_BOTTOM - 6, colours))
    parts += [draw_mark(x, cut, SHEET_TOP + 6, SHEET_BOTTOM - 6, colours.cloth_fold, colours)
              for x, cut in zip(joints(cells), cuts)]
    parts.append(draw_mouth(colours))
    return "".join(parts) + letters(cells, SHEET_LETTER_TOP, mirrored, colours)


def all_pictures():
    """Name and drawing function of every picture, in the order of the panel's slots."""
    word = {False: "Off", True: "On"}
    pictures = {}
    for mirrored in (False, True):
        for every, at_end in ((False, False), (False, True), (True, False)):
            name = f"EveryEndMirror{word[every]}{word[at_end]}{word[mirrored]}"
            pictures[name] = lambda c, a=(every, at_end, mirrored): draw_roll(*a, c)
    for bits in range(16):
        flags = tuple(bool(bits & bit) for bit in (8, 4, 2, 1))
        pictures["AHCM" + "".join(word[f] for f in flags)] = (
            lambda c, a=flags: draw_continuous(*a, c))
    for mirrored in (False, True):
        pictures["SPMROn" + word[mirrored]] = lambda c, m=mirrored: draw_special(m, c)
    return pictures


def document(body):
    lines = body.replace("/><", "/>\n<").replace("</g><", "</g>\n<").replace("><path", ">\n<path")
    return (f'<svg xmlns="http://www.w3.org/2000/svg" width="{WIDTH}" height="{HEIGHT}"'
            f' viewBox="0 0 {WIDTH} {HEIGHT}">\n{lines}\n</svg>\n')


def write_all(outdir):
    for folder, colours in ((outdir, LIGHT), (outdir / "dark", DARK)):
        folder.mkdir(parents=True, exist_ok=True)
        for name, draw in all_pictures().items():
            (folder / f"{name}.svg").write_text(document(draw(colours)), encoding="utf-8")


# --- contrast ----------------------------------------------------------------------------------

def luminance(colour):
    def linear(channel):
        c = channel / 255
        return c / 12.92 if c <= 0.04045 else ((c + 0.055) / 1.055) ** 2.4
    red, green, blue = (linear(int(colour[i:i + 2], 16)) for i in (1, 3, 5))
    return 0.2126 * red + 0.7152 * green + 0.0722 * blue


def contrast(one, other):
    lighter, darker = sorted((luminance(one), luminance(other)), reverse=True)
    return (lighter + 0.05) / (darker + 0.05)


TEXT, GRAPHIC = 4.5, 3.0


def contrast_rules(c):
    """(role, role, colour, colour, least ratio): ink and cuts as text, the rest as graphics."""
    yield from (("ink", role, c.ink, getattr(c, role), TEXT)
                for role in ("tape", "label", "cloth", "thread"))
    for background in c.backgrounds:
        yield "cut", "background", c.cut, background, TEXT
        yield from ((role, "background", getattr(c, role), background, GRAPHIC)
                    for role in ("tape_edge", "backing_edge", "cloth_edge", "mouth"))
    yield from (("seam", role, c.seam, getattr(c, role), TEXT) for role in ("cloth", "thread"))
    yield from (("cloth_fold", role, c.cloth_fold, getattr(c, role), GRAPHIC)
                for role in ("cloth", "thread"))
    yield "tape_fold", "tape", c.tape_fold, c.tape, GRAPHIC
    yield "backing_fold", "backing", c.backing_fold, c.backing, GRAPHIC
    yield "hatch", "waste", c.hatch, c.waste, GRAPHIC
    yield "inside", "mouth", c.inside, c.mouth, GRAPHIC


def check():
    good = True
    for title, colours in (("light", LIGHT), ("dark", DARK)):
        for one, other, a, b, least in contrast_rules(colours):
            ratio = contrast(a, b)
            verdict = "ok" if ratio >= least else "TOO LOW"
            good = good and ratio >= least
            print(f"{title:5}  {one:12} {a} on {other:10} {b}  {ratio:5.2f} >= {least}  {verdict}")
    return good


def main():
    parser = argparse.ArgumentParser(description="Draw the preview pictures.")
    parser.add_argument("outdir", nargs="?", type=Path)
    parser.add_argument("--check", action="store_true", help="print and assert the contrasts")
    parser.add_argument("--list", action="store_true", help="print the pictures' names")
    arguments = parser.parse_args()
    if arguments.list:
        print("\n".join(all_pictures()))
    if arguments.check and not check():
        return 1
    if arguments.outdir:
        write_all(arguments.outdir)
    elif not (arguments.check or arguments.list):
        parser.error("OUTDIR is missing")
    return 0


if __name__ == "__main__":
    sys.exit(main())
