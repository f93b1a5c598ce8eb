#!/usr/bin/env python3
"""The sample cupboard's scribe: writes roll.ppd and tape.ppd, two printers that do not exist.

    make_ppds.py            writes the files beside this script
    make_ppds.py --check    fails when the files beside it are not what it would write

Every option, choice, group and parameter is translated. Titles of the cut options are those of
the panel's own string table. Each choice's code leaves its trace in PostScript's userdict, so a
job can be run through any interpreter and asked what was set.
"""
import json
import sys
from dataclasses import dataclass
from pathlib import Path

HERE = Path(__file__).resolve().parent
TABLE = json.loads((HERE.parent / "plugins/cut_options/resources/strings.json").read_text("utf-8"))["texts"]
LANGUAGES = ("en", "de", "fr", "es", "ja", "zh_CN")


def texts(*by_language):
    """One text for all languages, or one for each."""
    if len(by_language) == 1:
        by_language *= len(LANGUAGES)
    return dict(zip(LANGUAGES, by_language, strict=True))


def widened(pattern, value):
    return {language: text.format(value) for language, text in pattern.items()}


@dataclass(frozen=True)
class Choice:
    keyword: str
    title: dict
    code: str


@dataclass(frozen=True)
class Option:
    keyword: str
    title: dict
    choices: tuple
    default: str
    kind: str = "PickOne"
    order: int = 50
    parameter: str = ""  # name of the length that a custom choice asks for
    longest: int = 0     # its largest value in points


@dataclass(frozen=True)
class Group:
    keyword: str
    title: dict
    options: tuple


@dataclass(frozen=True)
class Size:
    keyword: str
    title: dict
    width: int   # millimetres, across the tape
    length: int  # millimetres, along it


@dataclass(frozen=True)
class Printer:
    file: str
    purpose: str
    model: str
    attributes: tuple  # (keyword, value)
    sizes: tuple
    default_size: str
    widest: int        # millimetres
    groups: tuple
    constraints: tuple = ()  # pairs of "*Keyword CHOICE"


# --- what the two printers have in common ------------------------------------------------------

OFF = texts("Off", "Aus", "Non", "No", "オフ", "关")
ON = texts("On", "Ein", "Oui", "Sí", "オン", "开")
CUSTOM = texts("Custom", "Eigene Länge", "Personnalisée", "Personalizado", "カスタム", "自定义")
LENGTH = texts("Length", "Länge", "Longueur", "Longitud", "長さ", "长度")
PAGE_SIZE = texts("Label size", "Etikettengröße", "Taille de l’étiquette", "Tamaño de etiqueta",
                  "ラベルサイズ", "标签尺寸")
CONTINUOUS = texts("{} mm continuous", "{} mm endlos", "{} mm continu", "{} mm continua",
                   "{} mm 連続", "{} mm 连续")
TAPE = texts("{} mm tape", "{} mm Band", "Ruban {} mm", "Cinta de {} mm", "{} mm テープ",
             "{} mm 标签带")
DIE_CUT = texts("{} mm die-cut", "{} mm vorgestanzt", "{} mm prédécoupée", "{} mm troquelada",
                "{} mm 型抜き", "{} mm 模切")
ADDRESS = texts("{} mm address", "{} mm Adressetikett", "{} mm adresse", "{} mm dirección",
                "{} mm 宛名", "{} mm 地址")


def trace(keyword, value):
    """PostScript that remembers a setting and can be run anywhere."""
    return f"userdict /Labelcut{keyword} {value} put"


def named(keyword):
    return keyword.removeprefix("Kv")


def switch(keyword, text_key, default="OFF"):
    return Option(keyword, TABLE[text_key],
                  (Choice("OFF", OFF, trace(named(keyword), "false")),
                   Choice("ON", ON, trace(named(keyword), "true"))), default)


def pick(keyword, title, default, *choices):
    return Option(keyword, title, tuple(Choice(name, label, trace(keyword, f"/{name}"))
                                        for name, label in choices), default)


CUT_COUNT = Option("KvCutLabel", TABLE["RS_CutAtEvery"],
                   tuple(Choice(str(n), texts(str(n)), trace("CutLabel", n))
                         for n in range(1, 100)), "1", order=40)
MIRROR = switch("KvMirror", "RS_MirrorPrinting")
REMOVE_BLANK = switch("KvRemoveBlkSpace", "RS_RemoveBlkSpace")

DENSITY = pick(
    "Density", texts("Print density", "Druckdichte", "Densité d’impression",
                     "Densidad de impresión", "印刷濃度", "打印浓度"), "Medium",
    ("VeryLight", texts("Very light", "Sehr hell", "Très claire", "Muy clara", "とても薄い", "很淡")),
    ("Light", texts("Light", "Hell", "Claire", "Clara", "薄い", "淡")),
    ("Medium", texts("Medium", "Mittel", "Moyenne", "Media", "標準", "中")),
    ("Dark", texts("Dark", "Dunkel", "Foncée", "Oscura", "濃い", "浓")),
    ("VeryDark", texts("Very dark", "Sehr dunkel", "Très foncée", "Muy oscura", "とても濃い", "很浓")))
QUALITY = pick(
    "Quality", texts("Quality", "Qualität", "Qualité", "Calidad", "品質", "质量"), "Normal",
    ("Draft", texts("Draft", "Entwurf", "Brouillon", "Borrador", "下書き", "草稿")),
    ("Normal", texts("Normal", "Standard", "Normale", "Normal", "標準", "普通")),
    ("Best", texts("Best", "Beste", "Supérieure", "Óptima", "高品質", "最佳")))
RESOLUTION = Option(
    "Resolution", texts("Resolution", "Auflösung", "Résolution", "Resolución", "解像度", "分辨率"),
    tuple(Choice(f"{dpi}dpi", texts(f"{dpi} dpi"), f"<</HWResolution[{dpi} {dpi}]>>setpagedevice")
          for dpi in (180, 360)), "360dpi", order=20)
FEED = Option(
    "FeedLength", texts("Feed after printing", "Vorschub nach dem Druck",
                        "Avance après impression", "Avance tras imprimir", "印刷後の送り",
                        "打印后走带"),
    (Choice("NoFeed", texts("None", "Keiner", "Aucune", "Ninguno", "なし", "无"),
            trace("FeedLength", 0)),
     Choice("Short", texts("Short", "Kurz", "Courte", "Corto", "短い", "短"),
            trace("FeedLength", 14)),
     Choice("Long", texts("Long", "Lang", "Longue", "Largo", "長い", "长"),
            trace("FeedLength", 57))), "NoFeed", parameter="Length", longest=288)

PRINT_GROUP = Group(
    "Printing", texts("Printing", "Druck", "Impression", "Impresión", "印刷", "打印"),
    (DENSITY, QUALITY, RESOLUTION, FEED))
INSTALLED = Group(
    "InstallableOptions",
    texts("Installed Options", "Installiertes Zubehör", "Options installées",
          "Opciones instaladas", "装着オプション", "已安装的选件"),
    (Option("LabelTray",
            texts("Label tray", "Etikettenablage", "Bac à étiquettes", "Bandeja de etiquetas",
                  "ラベルトレイ", "标签托盘"),
            (Choice("False", texts("Not installed", "Nicht installiert", "Non installé",
                                   "No instalada", "なし", "未安装"), ""),
             Choice("True", texts("Installed", "Installiert", "Installé", "Instalada", "あり",
                                  "已安装"), "")), "False", kind="Boolean"),))


def sized(keyword, pattern, width, length, shown=None):
    return Size(keyword, widened(pattern, shown or f"{width} x {length}"), width, length)


# --- the printers ------------------------------------------------------------------------------

ROLL = Printer(
    file="roll.ppd", purpose="a printer for labels on a roll", model="Labelcut Roll Sample",
    attributes=(("KvTapeType", "RV"),),
    sizes=(sized("W62x29", CONTINUOUS, 62, 29), sized("W62", CONTINUOUS, 62, 100, "62"),
           sized("W50x100", CONTINUOUS, 50, 100), sized("DC24", DIE_CUT, 24, 24),
           sized("DC40x30", DIE_CUT, 40, 30), sized("AV50x25", ADDRESS, 50, 25)),
    default_size="W62x29", widest=62,
    groups=(Group("CutOptions", TABLE["OP_PANEL_NAME"],
                  (CUT_COUNT, switch("KvCutAtEnd", "RS_CutAtEnd", "OFF"), MIRROR,
                   switch("KvAutoTapeCut", "RS_AutoTapeCut", "ON"), REMOVE_BLANK)),
            PRINT_GROUP, INSTALLED))

TAPE_PRINTER = Printer(
    file="tape.ppd", purpose="a printer for tape in cassettes", model="Labelcut Tape Sample",
    attributes=(("KvTapeType", "SG"), ("KvAutoCutObjHidden", "False")),
    sizes=tuple(sized(f"T{mm}", TAPE, mm, 50, str(mm)) for mm in (6, 9, 12, 18, 24, 36))
    + (sized("DC24", DIE_CUT, 24, 24), sized("AV24x48", ADDRESS, 24, 48)),
    default_size="T24", widest=36,
    groups=(Group("CutOptions", TABLE["OP_PANEL_NAME"],
                  (MIRROR, switch("KvAutoTapeCut", "RS_AutoTapeCut", "ON"),
                   switch("KvHalfCut", "RS_HalfCut"), switch("KvChainPrint", "RS_ChainPrinting"),
                   switch("KvSpecialTape", "RS_SpecialTape"), REMOVE_BLANK)),
            PRINT_GROUP, INSTALLED),
    constraints=tuple(("*KvSpecialTape ON", f"*{excluded} ON")
                      for excluded in ("KvAutoTapeCut", "KvHalfCut", "KvChainPrint")))


# --- the file ----------------------------------------------------------------------------------

def points(millimetres):
    return round(millimetres * 72 / 25.4)


MARGIN = 3  # points that the print head cannot reach, on every side


def header(printer):
    nick = f"{printer.model}, 1.0"
    lines = ['*PPD-Adobe: "4.3"',
             f"*% Sample cupboard: {printer.purpose}. It does not exist; made by make_ppds.py.",
             '*FormatVersion: "4.3"', '*FileVersion: "1.0"', "*LanguageVersion: English",
             "*LanguageEncoding: ISOLatin1",
             f'*cupsLanguages: "{" ".join(LANGUAGES[1:])}"',
             f'*PCFileName: "LC{Path(printer.file).stem.upper()}.PPD"',
             '*Manufacturer: "Labelcut"', f'*ModelName: "{printer.model}"',
             f'*ShortNickName: "{printer.model}"', f'*NickName: "{nick}"',
             f'*Product: "({printer.model})"', '*PSVersion: "(3010.000) 0"',
             f'*1284DeviceID: "MFG:Labelcut;MDL:{printer.model};CMD:POSTSCRIPT;"',
             '*LanguageLevel: "3"', "*ColorDevice: False", "*DefaultColorSpace: Gray",
             "*FileSystem: False", '*Throughput: "10"', "*LandscapeOrientation: Plus90",
             "*TTRasterizer: Type42"]
    return lines + [f'*{keyword}: "{value}"' for keyword, value in printer.attributes]


def open_ui(keyword, title, kind, section, order, default):
    return [f"*OpenUI *{keyword}/{title['en']}: {kind}",
            f"*OrderDependency: {order} {section} *{keyword}", f"*Default{keyword}: {default}"]


def page_sizes(printer):
    lines = []
    for keyword in ("PageSize", "PageRegion"):
        lines += open_ui(keyword, PAGE_SIZE, "PickOne", "AnySetup", 10, printer.default_size)
        lines += [f"*{keyword} {s.keyword}/{s.title['en']}: "
                  f'"<</PageSize[{points(s.width)} {points(s.length)}]/ImagingBBox null>>'
                  'setpagedevice"' for s in printer.sizes]
        lines.append(f"*CloseUI: *{keyword}")
    lines.append(f"*DefaultImageableArea: {printer.default_size}")
    lines += [f"*ImageableArea {s.keyword}/{s.title['en']}: \"{MARGIN} {MARGIN} "
              f'{points(s.width) - MARGIN} {points(s.length) - MARGIN}"' for s in printer.sizes]
    lines.append(f"*DefaultPaperDimension: {printer.default_size}")
    lines += [f"*PaperDimension {s.keyword}/{s.title['en']}: "
              f'"{points(s.width)} {points(s.length)}"' for s in printer.sizes]
    return lines + custom_size(printer)


def custom_size(printer):
    widest, longest = points(printer.widest), points(1000)
    margins = " ".join([str(MARGIN)] * 4)
    return [f'*MaxMediaWidth: "{widest}"', f'*MaxMediaHeight: "{longest}"',
            f"*HWMargins: {margins}", "*VariablePaperSize: True",
            "*NonUIOrderDependency: 10 AnySetup *CustomPageSize",
            '*CustomPageSize True: "pop pop pop <</PageSize[5 -2 roll]/ImagingBBox null>>'
            'setpagedevice"',
            f"*ParamCustomPageSize Width: 1 points {points(6)} {widest}",
            f"*ParamCustomPageSize Height: 2 points {points(12)} {longest}",
            "*ParamCustomPageSize WidthOffset: 3 points 0 0",
            "*ParamCustomPageSize HeightOffset: 4 points 0 0",
            "*ParamCustomPageSize Orientation: 5 int 0 0"]


def option_lines(option):
    lines = open_ui(option.keyword, option.title, option.kind, "AnySetup", option.order,
                    option.default)
    lines += [f'*{option.keyword} {c.keyword}/{c.title["en"]}: "{c.code}"' for c in option.choices]
    lines.append(f"*CloseUI: *{option.keyword}")
    if option.parameter:
        lines += [f'*Custom{option.keyword} True/{CUSTOM["en"]}: '
                  f'"userdict exch /Labelcut{option.keyword} exch put"',
                  f"*ParamCustom{option.keyword} {option.parameter}/{LENGTH['en']}: "
                  f"1 points 0 {option.longest}"]
    return lines


def group_lines(group):
    lines = [f"*OpenGroup: {group.keyword}/{group.title['en']}"]
    for option in group.options:
        lines += option_lines(option)
    return lines + [f"*CloseGroup: {group.keyword}"]


def translation(language, printer):
    def say(keyword, name, title):
        return f'*{language}.{keyword} {name}/{title[language]}: ""'

    lines = [say("Translation", keyword, PAGE_SIZE) for keyword in ("PageSize", "PageRegion")]
    lines += [say(keyword, s.keyword, s.title) for keyword in ("PageSize", "PageRegion")
              for s in printer.sizes]
    for group in printer.groups:
        lines.append(say("Translation", group.keyword, group.title))
        for option in group.options:
            lines.append(say("Translation", option.keyword, option.title))
            lines += [say(option.keyword, c.keyword, c.title) for c in option.choices]
            if option.parameter:
                lines += [say(f"Custom{option.keyword}", "True", CUSTOM),
                          say(f"ParamCustom{option.keyword}", option.parameter, LENGTH)]
    return lines


FONTS = ("Courier", "Courier-Bold", "Helvetica", "Helvetica-Bold", "Times-Roman", "Times-Bold")


def ppd(printer):
    lines = header(printer) + page_sizes(printer)
    for group in printer.groups:
        lines += group_lines(group)
    for one, other in printer.constraints:
        lines += [f"*UIConstraints: {one} {other}", f"*UIConstraints: {other} {one}"]
    lines.append("*DefaultFont: Helvetica")
    lines += [f'*Font {font}: Standard "(001.000)" Standard ROM' for font in FONTS]
    for language in LANGUAGES[1:]:
        lines += translation(language, printer)
    return "\n".join(lines) + "\n"


def main():
    check = sys.argv[1:] == ["--check"]
    if sys.argv[1:] and not check:
        raise SystemExit(__doc__)
    for printer in (ROLL, TAPE_PRINTER):
        target, text = HERE / printer.file, ppd(printer)
        if not check:
            target.write_text(text, encoding="utf-8")
        elif target.read_text("utf-8") != text:
            raise SystemExit(f"{target.name} is out of date: run {Path(__file__).name}")


if __name__ == "__main__":
    main()
