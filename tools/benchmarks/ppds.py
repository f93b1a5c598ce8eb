"""Performance: the printer descriptions that every program of a run is given.

The standard printer is a tape printer of 39 options: page size and region, resolution, the tape
family's six cut options and 30 more, in English only. (A translated PPD is several times as large;
it would make reading it dearer for everybody and so every ratio against reading it easier.)
"""

STANDARD_OPTIONS = 39
TAPE_CUTS = ("KvMirror", "KvAutoTapeCut", "KvHalfCut", "KvChainPrint", "KvSpecialTape",
             "KvRemoveBlkSpace")
ROLL_CUTS = ("KvCutAtEnd", "KvMirror", "KvAutoTapeCut", "KvRemoveBlkSpace")
GROUP = 12   # further options in one group


def option(keyword, text, choices, default, kind="PickOne", order=50):
    lines = [f"*OpenUI *{keyword}/{text}: {kind}", f"*OrderDependency: {order} AnySetup *{keyword}",
             f"*Default{keyword}: {default}"]
    lines += [f'*{keyword} {name}/{title}: "{code}"' for name, title, code in choices]
    return lines + [f"*CloseUI: *{keyword}"]


def trace(keyword, value):
    return f"userdict /Bench{keyword} {value} put"


def switch(keyword):
    return option(keyword, keyword.removeprefix("Kv"),
                  (("OFF", "Off", trace(keyword, "false")), ("ON", "On", trace(keyword, "true"))),
                  "OFF")


def page_sizes(count):
    sizes = [(f"T{n}", f"{n} mm tape", 17 + n, 142 + n) for n in range(1, count + 1)]
    lines = []
    for keyword in ("PageSize", "PageRegion"):
        lines += option(keyword, "Label size",
                        [(name, text, f"<</PageSize[{width} {length}]/ImagingBBox null>>setpagedevice")
                         for name, text, width, length in sizes], sizes[0][0], order=10)
    lines.append(f"*DefaultImageableArea: {sizes[0][0]}")
    lines += [f'*ImageableArea {name}/{text}: "3 3 {width - 3} {length - 3}"'
              for name, text, width, length in sizes]
    lines.append(f"*DefaultPaperDimension: {sizes[0][0]}")
    return lines + [f'*PaperDimension {name}/{text}: "{width} {length}"'
                    for name, text, width, length in sizes]


def choices_of(keyword, count):
    return [(f"Choice{n}", f"Choice {n} of {count}", trace(keyword, n)) for n in range(1, count + 1)]


def plain_constraints(count):
    """Among the further options; the defaults break each."""
    return [f"*UIConstraints: *Option{1 + n % 20} Choice1 *Option{21 + n // 20 % 7} Choice1"
            for n in range(count)]


def circle(count):
    """Options of which each excludes the next, with ways out that break the constraint after."""
    lines = []
    for n in range(count):
        following = (n + 1) % count
        lines += option(f"Ring{n}", f"Ring {n}", (("OFF", "Off", ""), ("ON", "On", "")), "ON")
        lines += [f'*cupsUIConstraints Way{n}: "*Ring{n} ON *Ring{following} ON"',
                  f'*cupsUIResolver Way{n}: "*Ring{following} ON"']
    return lines


def ppd(family="SG", options=STANDARD_OPTIONS, sizes=8, choices=5, counts=99, constraints=0, ring=0):
    """The text of a PPD.

    family   "SG" for tape, "RV" for a roll, whose KvCutLabel offers `counts` counts
    options  how many in all, page size and region included
    choices  of each option that is no cut option
    constraints  and ring: see plain_constraints() and circle()
    """
    lines = ['*PPD-Adobe: "4.3"', '*FormatVersion: "4.3"', '*FileVersion: "1.0"',
             "*LanguageVersion: English", "*LanguageEncoding: ISOLatin1",
             '*PCFileName: "LCBENCH.PPD"', '*Manufacturer: "Labelcut"',
             '*ModelName: "Labelcut Bench"', '*ShortNickName: "Labelcut Bench"',
             '*NickName: "Labelcut Bench, 1.0"', '*Product: "(Labelcut Bench)"',
             '*PSVersion: "(3010.000) 0"', '*LanguageLevel: "3"', "*ColorDevice: False",
             "*DefaultColorSpace: Gray", "*FileSystem: False", f'*KvTapeType: "{family}"']
    if family == "SG":
        lines.append('*KvAutoCutObjHidden: "False"')
    lines += page_sizes(sizes)
    cuts = TAPE_CUTS if family == "SG" else ROLL_CUTS
    lines.append("*OpenGroup: CutOptions/Cut Options")
    if family == "RV":
        lines += option("KvCutLabel", "Cut at every",
                        [(str(n), str(n), trace("KvCutLabel", n)) for n in range(1, counts + 1)], "1")
    for keyword in cuts:
        lines += switch(keyword)
    lines.append("*CloseGroup: CutOptions")
    done = 2 + len(cuts) + (family == "RV")
    lines += option("Resolution", "Resolution",
                    [(f"{dpi}dpi", f"{dpi} dpi", f"<</HWResolution[{dpi} {dpi}]>>setpagedevice")
                     for dpi in (180, 360)], "360dpi", order=20)
    for number in range(1, options - done):
        if number % GROUP == 1:
            lines.append(f"*OpenGroup: Group{number}/Further options from {number}")
        keyword = f"Option{number}"
        lines += option(keyword, f"Further option {number}", choices_of(keyword, choices), "Choice1")
        if number % GROUP == 0 or number == options - done - 1:
            lines.append(f"*CloseGroup: Group{number - (number - 1) % GROUP}")
    lines += plain_constraints(constraints) + circle(ring)
    lines.append("*DefaultFont: Helvetica")
    lines.append('*Font Helvetica: Standard "(001.000)" Standard ROM')
    return "\n".join(lines) + "\n"
