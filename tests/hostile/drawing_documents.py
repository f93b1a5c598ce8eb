"""Hostile documents: SVG."""
import base64
import gzip

from corpus import CANARY, CANARY_NAME, EITHER, MIB, PRINTS, REFUSED, Document, neighbours
from picture_documents import GRAY, black_png, flat_png

NAMESPACE = "xmlns='http://www.w3.org/2000/svg'"
LINKS = "xmlns:xlink='http://www.w3.org/1999/xlink'"
SQUARE = "<rect x='2' y='2' width='9' height='9'/>"


def svg(inside, before="", attributes="viewBox='0 0 20 20'", names=f"{NAMESPACE} {LINKS}"):
    return f"{before}<svg {names} {attributes}>{inside}</svg>".encode()


def picture(link, attribute="xlink:href"):
    return f"<image width='20' height='20' {attribute}='{link}'/>"


def data_link(png):
    return "data:image/png;base64," + base64.b64encode(png).decode()


def showing(name, link, **more):
    """A drawing that would have another file's picture; `link`: what the drawing's path gives."""
    return Document(name, EITHER, lambda document: svg(picture(link(document)) + SQUARE, **more))


def canary(document):
    return neighbours(document) / "canary.png"


def undeclared(name, link, **more):
    """The same, but nothing declares the prefix: no reader that knows of prefixes gets through."""
    return Document(name, EITHER, lambda document: svg(picture(link(document)) + SQUARE,
                                                       names=NAMESPACE, **more))


def plain_link(document):
    """As SVG 2 writes it."""
    return svg(picture(canary(document), "href") + SQUARE, names=NAMESPACE)


def other_prefix(document):
    text = svg(picture(canary(document), "x:href") + SQUARE,
               names=f"{NAMESPACE} xmlns:x='http://www.w3.org/1999/xlink'")
    return text.replace(b"<image", b"<s:image xmlns:s='http://www.w3.org/2000/svg'")


def style_sheet(link):
    return f'<?xml-stylesheet type="text/css" href="{link}"?>'


STYLED = "<rect class='canary' width='20' height='20' fill='#000'/>"


def pipe(document):
    return neighbours(document) / "pipe"


def entities(levels, each):
    lines = "".join(f"<!ENTITY e{level + 1} '{f'&e{level};' * each}'>" for level in range(levels))
    return f"<!DOCTYPE svg [<!ENTITY e0 'xxxxxxxxxx'>{lines}]>"


def uses(levels, each):
    """Every group draws the one before so many times."""
    groups = f"<g id='u0'>{SQUARE}</g>"
    for level in range(levels):
        again = f"<use xlink:href='#u{level}' x='1'/>" * each
        groups += f"<g id='u{level + 1}'>{again}</g>"
    return f"<defs>{groups}</defs><use xlink:href='#u{levels}'/>"


def box(value):
    return lambda _: svg(SQUARE, attributes=f"viewBox='{value}'")


def drawing(inside):
    return lambda _: svg(inside)


LONG_PATH = "M0 0" + "l1 1l-1 -1" * (1 * MIB)
DEPTH = 100_000

DOCUMENTS = [
    # What it has no right to.
    Document("svg_own_picture.svg", PRINTS, lambda _: svg(picture(data_link(flat_png(CANARY)))),
             shows_canary=True),
    showing("svg_picture_by_path.svg", canary),
    showing("svg_picture_by_address.svg", lambda document: canary(document).as_uri()),
    showing("svg_picture_in_the_current_folder.svg", lambda _: "canary.png"),
    showing("svg_picture_beside_the_document.svg", lambda _: "neighbours/canary.png"),
    showing("svg_picture_from_the_network.svg", lambda _: "http://127.0.0.1:9/canary.png"),
    showing("svg_picture_is_a_drawing.svg", lambda document: neighbours(document) / "canary.svg"),
    undeclared("svg_picture_by_undeclared_prefix.svg", canary),
    undeclared("svg_picture_in_the_current_folder_undeclared.svg", lambda _: "canary.png"),
    Document("svg_picture_by_plain_link.svg", EITHER, plain_link),
    Document("svg_picture_by_other_prefix.svg", EITHER, other_prefix),
    Document("svg_style_sheet.svg", EITHER, lambda document: svg(
        STYLED, style_sheet(neighbours(document) / "canary.css"))),
    Document("svg_style_sheet_in_the_current_folder.svg", EITHER,
             lambda _: svg(STYLED, style_sheet("canary.css"))),
    Document("svg_style_sheet_imported.svg", EITHER, lambda document: svg(
        f"<style>@import url('{neighbours(document) / 'canary.css'}');</style>{STYLED}")),
    Document("svg_entity_of_another_file.svg", EITHER, lambda document: svg(
        "<text y='9' font-size='4'>&e;</text>" + SQUARE,
        f"<!DOCTYPE svg [<!ENTITY e SYSTEM '{neighbours(document) / 'canary.txt'}'>]>")),
    Document("svg_part_of_another_file.svg", EITHER, lambda document: svg(
        f"<use xlink:href='{neighbours(document) / 'canary.svg'}#part'/>{SQUARE}")),
    Document("svg_font_of_another_file.svg", EITHER, lambda document: svg(
        f"<style>@font-face {{ font-family: x; src: url('{neighbours(document) / 'canary.txt'}') }}"
        f"</style><text y='9' font-size='4' font-family='x'>x</text>{SQUARE}")),
    showing("svg_picture_is_itself.svg", lambda document: document),
    undeclared("svg_picture_is_itself_undeclared.svg", lambda document: document),
    Document("svg_style_sheet_is_itself.svg", EITHER,
             lambda document: svg(STYLED, style_sheet(document))),
    undeclared("svg_picture_is_a_pipe.svg", pipe),
    Document("svg_style_sheet_is_a_pipe.svg", EITHER,
             lambda document: svg(STYLED, style_sheet(pipe(document)))),
    undeclared("svg_picture_is_a_device.svg", lambda _: "/dev/zero"),
    Document("svg_style_sheet_is_a_device.svg", EITHER,
             lambda _: svg(STYLED, style_sheet("/dev/zero"))),
    # More than it looks.
    Document("svg_entities_10_to_the_9.svg", EITHER,
             lambda _: svg("<text y='9'>&e9;</text>", entities(9, 10))),
    Document("svg_entity_of_1_mib_1000_times.svg", EITHER, lambda _: svg(
        f"<text y='9'>{'&e;' * 1000}</text>", f"<!DOCTYPE svg [<!ENTITY e '{'x' * MIB}'>]>")),
    Document("svg_entity_is_itself.svg", REFUSED, lambda _: svg(
        "<text>&a;</text>", "<!DOCTYPE svg [<!ENTITY a '&b;'><!ENTITY b '&a;'>]>")),
    Document("svg_uses_10_to_the_10.svg", EITHER, lambda _: svg(uses(10, 10)), endless=True),
    Document("svg_use_of_itself.svg", EITHER, drawing("<g id='a'><use xlink:href='#a'/></g>" + SQUARE)),
    Document("svg_uses_in_a_circle.svg", EITHER, drawing(
        "<g id='a'><use xlink:href='#b'/></g><g id='b'><use xlink:href='#a'/></g>" + SQUARE)),
    Document("svg_picture_bomb.svg", EITHER,
             lambda _: svg(picture(data_link(black_png(50_000, 50_000, 1, GRAY, 6250))) + SQUARE)),
    Document("svg_1000_large_pictures.svg", EITHER, endless=True, contents=lambda _: svg(
        picture(data_link(black_png(5000, 5000, 1, GRAY, 625))) * 1000)),
    Document("svg_dashes_without_end.svg", EITHER, endless=True, contents=drawing(
        "<path d='M0 0L1e6 1e6' stroke='#000' stroke-dasharray='0.00001'/>")),
    Document("svg_compressed.svgz", REFUSED, lambda _: gzip.compress(svg(SQUARE), mtime=0)),
    Document("svg_compressed_bomb.svgz", REFUSED,
             lambda _: gzip.compress(svg(" " * (64 * MIB)), mtime=0)),
    # Depth and length.
    Document("svg_100000_groups_deep.svg", EITHER, drawing("<g>" * DEPTH + SQUARE + "</g>" * DEPTH)),
    Document("svg_100000_unknown_elements_deep.svg", EITHER,
             drawing("<x>" * DEPTH + SQUARE + "</x>" * DEPTH)),
    Document("svg_100000_switches_deep.svg", EITHER,
             drawing("<switch>" * DEPTH + SQUARE + "</switch>" * DEPTH)),
    Document("svg_transforms_100000.svg", EITHER,
             drawing(f"<g transform='{'scale(2) rotate(1) ' * DEPTH}'>{SQUARE}</g>")),
    Document("svg_path_of_10_mib.svg", EITHER, lambda _: svg(f"<path d='{LONG_PATH}'/>"),
             endless=True),
    Document("svg_attribute_of_10_mib.svg", EITHER,
             lambda _: svg(f"<g id='{'x' * (10 * MIB)}'>{SQUARE}</g>")),
    Document("svg_text_of_4_mib.svg", EITHER, endless=True,
             contents=lambda _: svg(f"<text y='9'>{'words ' * (4 * MIB // 6)}</text>")),
    Document("svg_100000_gradients_in_a_row.svg", EITHER, lambda _: svg("<defs>" + "".join(
        f"<linearGradient id='g{number}' xlink:href='#g{number + 1}'/>" for number in range(DEPTH)) +
        "</defs><rect width='9' height='9' fill='url(#g0)'/>"), endless=True),
    # Circles and numbers beyond sense.
    Document("svg_gradient_is_itself.svg", EITHER, drawing(
        "<linearGradient id='a' xlink:href='#a'/><rect width='9' height='9' fill='url(#a)'/>")),
    Document("svg_gradients_in_a_circle.svg", EITHER, drawing(
        "<linearGradient id='a' xlink:href='#b'/><linearGradient id='b' xlink:href='#a'/>"
        "<rect width='9' height='9' fill='url(#a)'/>")),
    Document("svg_pattern_is_itself.svg", EITHER, drawing(
        "<pattern id='a' width='1' height='1'><rect width='1' height='1' fill='url(#a)'/></pattern>"
        "<rect width='9' height='9' fill='url(#a)'/>")),
    Document("svg_huge_box.svg", EITHER, box("0 0 1e300 1e300")),
    Document("svg_box_beyond_range.svg", EITHER, box("-1e308 -1e308 1e309 1e309")),
    Document("svg_box_of_no_numbers.svg", EITHER, box("nan nan nan inf")),
    Document("svg_box_without_area.svg", EITHER, box("0 0 0 0")),
    Document("svg_negative_box.svg", EITHER, box("0 0 -9 -9")),
    Document("svg_box_of_a_line.svg", EITHER, box("0 0 1e-300 1e300")),
    Document("svg_coordinates_of_no_numbers.svg", EITHER, drawing(
        "<path d='M nan inf L 1e999 -1e999 A nan 0 inf 9 9 9 9 z'/>"
        "<circle cx='nan' cy='1e308' r='1e308'/><ellipse rx='-1' ry='inf'/>")),
    Document("svg_arc_of_10_to_the_300.svg", EITHER,
             drawing("<path d='M0 0A1e300 1e-300 1e300 1 1 1e300 1e300z' stroke='#000'/>")),
    Document("svg_line_of_10_to_the_300.svg", EITHER,
             drawing("<path d='M0 0L9 9' stroke='#000' stroke-width='1e300'/>")),
    Document("svg_letters_of_10_to_the_30.svg", EITHER,
             drawing("<text y='9' font-size='1e30'>x</text>")),
    Document("svg_scaled_by_10_to_the_300.svg", EITHER,
             drawing(f"<g transform='scale(1e300) translate(1e300,1e300)'>{SQUARE}</g>")),
    # Less than it should be, and more.
    Document("svg_cut_off.svg", REFUSED, lambda _: svg(SQUARE * 99)[:600]),
    Document("svg_empty.svg", EITHER, lambda _: f"<svg {NAMESPACE}/>".encode()),
    Document("svg_animated_without_end.svg", EITHER, drawing(
        "<rect width='9' height='9'><animateTransform attributeName='transform' type='rotate' "
        "begin='0' dur='0.000001s' repeatCount='indefinite' values='0 0 0; 360 0 0'/></rect>")),
]


def make_neighbours(folder):
    """Files that drawings and programs would like to have; none is to be opened."""
    (folder / "canary.png").write_bytes(flat_png(CANARY))
    (folder / "canary.css").write_text(f"rect {{ fill: {CANARY_NAME} }} "
                                       f".canary {{ fill: {CANARY_NAME} }}\n")
    (folder / "canary.txt").write_text("CANARY\n")
    (folder / "canary.svg").write_bytes(
        svg(f"<rect id='part' width='20' height='20' fill='{CANARY_NAME}'/>"))
