"""Hostile documents: plain text, and what is no document at all."""
import gzip
import io
import os
import random
import zipfile

from corpus import EITHER, GIB, MIB, PRINTS, REFUSED, Document, neighbours, noise


def utf16(units):
    return b"\xff\xfe" + b"".join(unit.to_bytes(2, "little") for unit in units)


def mixed():
    """Writing of all directions, marks without letters, and what joins and hides them."""
    pieces = ["word ", "\u05d0\u05d1 ", "\u0627\u0644 ", "\u202e", "\u202d", "\u2067", "\u2069",
              "\u202c", "\u0301", "\u200d", "\u200b", "\ufeff", "\u3042", "\U0001f469\u200d",
              "\u0e33", "\u1100\u1161", "\t", "\n"]
    chosen = random.Random(30).choices(pieces, k=50_000)
    return "".join(chosen).encode()


def archive():
    data = io.BytesIO()
    with zipfile.ZipFile(data, "w", zipfile.ZIP_DEFLATED) as file:
        file.writestr(zipfile.ZipInfo("labels.txt"), "labels\n" * 9999)
    return data.getvalue()


def hole(head, size):
    """A file of that size that takes no room on the disk."""
    def make(document):
        document.write_bytes(head)
        os.truncate(document, size)
    return make


DOCUMENTS = [
    Document("text_2_mib_of_form_feeds.txt", REFUSED, lambda _: b"\f" * (2 * MIB)),
    Document("text_4_mib_of_line_ends.txt", EITHER, lambda _: b"\n" * (4 * MIB)),
    Document("text_16_mib_in_one_line.txt", EITHER, lambda _: b"x" * (16 * MIB)),
    Document("text_16_mib_of_words.txt", EITHER, lambda _: b"word " * (16 * MIB // 5)),
    Document("text_16_mib_of_lines.txt", EITHER, lambda _: b"line of text\n" * (16 * MIB // 13)),
    Document("text_16_mib_of_marks_on_one_letter.txt", EITHER,
             lambda _: ("a" + "\u0301" * (8 * MIB)).encode()[:16 * MIB - 1]),
    Document("text_100_kib_of_marks_on_one_letter.txt", EITHER,
             lambda _: ("a" + "\u0301" * 50_000).encode()),
    Document("text_100_kib_in_one_line.txt", PRINTS, lambda _: b"x" * 100_000),
    Document("text_100_kib_of_lines.txt", PRINTS, lambda _: b"line of text\n" * 7_800),
    Document("text_1_mib_of_tabs.txt", EITHER, lambda _: b"\t" * MIB),
    Document("text_turned_300000_times.txt", EITHER,
             lambda _: "\u202ea\u202cb".encode() * 300_000),
    Document("text_turned_20000_deep.txt", EITHER,
             lambda _: ("\u2067\u202ea" * 20_000).encode()),
    Document("text_100000_joined_faces.txt", EITHER,
             lambda _: "\U0001f469\u200d".encode() * 100_000),
    Document("text_1_mib_of_nothing_wide.txt", EITHER, lambda _: "\u200b".encode() * (MIB // 3)),
    Document("text_of_all_writings.txt", EITHER, lambda _: mixed()),
    Document("text_12000_characters.txt", EITHER, lambda _: "".join(
        chr(code) for code in range(0x20, 0x3000)
        if not 0x7F <= code < 0xA0).encode()),
    Document("text_with_zeros.txt", REFUSED, lambda _: b"label\0label\n" * 100),
    Document("text_with_escapes.txt", REFUSED, lambda _: b"\x1b[2J\x1b]0;title\x07label\n"),
    Document("text_in_two_encodings.txt", REFUSED,
             lambda _: "Maß\n".encode() + "Maß\n".encode("latin-1")),
    Document("text_of_halves.txt", EITHER, lambda _: utf16([0xD800, 0x61, 0xDC00, 0xD801] * 999)),
    Document("text_of_an_odd_number_of_bytes.txt", EITHER, lambda _: utf16([0x61] * 99) + b"\0"),
    Document("text_order_mark_only.txt", EITHER, lambda _: b"\xef\xbb\xbf"),
    Document("text_order_mark_of_32_bits.txt", EITHER, lambda _: b"\xff\xfe\0\0" + b"\xff" * 400),
    Document("text_blanks_only.txt", EITHER, lambda _: b" " * MIB),

    Document("odd_empty", REFUSED, lambda _: b""),
    Document("odd_one_letter", PRINTS, lambda _: b"x"),
    Document("odd_one_zero", REFUSED, lambda _: b"\0"),
    Document("odd_program", REFUSED, lambda _: b"\x7fELF\x02\x01\x01" + b"\0" * 9 + noise(MIB, 31)),
    Document("odd_archive.zip", REFUSED, lambda _: archive()),
    Document("odd_compressed_bomb.gz", REFUSED,
             lambda _: gzip.compress(b"\0" * (64 * MIB), mtime=0)),
    Document("odd_noise", REFUSED, lambda _: noise(MIB, 32)),
    Document("odd_hole_of_100_gib", REFUSED, hole(b"", 100 * GIB)),
    Document("odd_hole_of_100_gib.pdf", REFUSED, hole(b"%PDF-1.4\n", 100 * GIB)),
    Document("odd_hole_of_100_gib.ps", REFUSED, hole(b"%!PS\n", 100 * GIB)),
    Document("odd_hole_of_100_gib.png", REFUSED, hole(b"\x89PNG\r\n\x1a\n", 100 * GIB)),
    Document("odd_hole_of_100_gib.svg", REFUSED, hole(b"<svg xmlns='x'>", 100 * GIB)),
    Document("odd_text_that_grows.txt", EITHER, lambda _: b"line of text\n", grows=True),
    Document("odd_program_that_grows.ps", EITHER, lambda _: b"%!PS\nshowpage\n", grows=True),
    Document("odd_folder", REFUSED, lambda document: document.mkdir()),
    Document("odd_pipe", REFUSED, os.mkfifo),
    Document("odd_link_to_itself", REFUSED, lambda document: document.symlink_to(document)),
    Document("odd_link_to_nothing", REFUSED, lambda document: document.symlink_to("nothing")),
    Document("odd_link_to_a_pipe", REFUSED,
             lambda document: document.symlink_to(neighbours(document) / "pipe")),
    Document("odd_link_to_a_device", REFUSED, lambda document: document.symlink_to("/dev/zero")),
]
