"""Hostile documents: PDF."""
import zlib

from corpus import CANARY, EITHER, GIB, MIB, PRINTS, REFUSED, Document, deflated, neighbours, noise

HEADER = b"%PDF-1.5\n"
SQUARE = b"9 9 20 20 re f\n"
BLANKS = b" " * (16 * MIB)


def stream(data, extra=b""):
    return b"<< /Length %d %s >>\nstream\n%s\nendstream" % (len(data), extra, data)


def flate(data, extra=b""):
    return stream(data, b"/Filter /FlateDecode " + extra)


def pdf(objects, trailer=b"", table=True):
    """Objects 1, 2, …, of which the first is the catalog. `table`: with where they are."""
    out, places = [HEADER], []
    size = len(HEADER)
    for number, body in enumerate(objects, 1):
        places.append(size)
        out.append(b"%d 0 obj\n%s\nendobj\n" % (number, body))
        size += len(out[-1])
    if table:
        out.append(b"xref\n0 %d\n0000000000 65535 f \n" % (len(objects) + 1))
        out += [b"%010d 00000 n \n" % place for place in places]
    out.append(b"trailer\n<< /Size %d /Root 1 0 R %s >>\nstartxref\n%d\n%%%%EOF\n"
               % (len(objects) + 1, trailer, size if table else 0))
    return b"".join(out)


CATALOG = b"<< /Type /Catalog /Pages 2 0 R >>"
ONE_KID = b"<< /Type /Pages /Kids [3 0 R] /Count 1 >>"
# A page that has to be laid out on the label, and one that is as large as the label.
BOX = b"/MediaBox [0 0 595 842]"
BOX_OF_LABEL = b"/MediaBox [0 0 68 142]"


def page(extra=b"/Contents 4 0 R", box=BOX):
    return b"<< /Type /Page /Parent 2 0 R %s %s >>" % (box, extra)


def label(content=SQUARE, extra=b"", box=BOX, more=(), trailer=b""):
    """A PDF of one page. `content`: bytes of the content stream, or a whole stream object.
    `more`: objects from number 5 on."""
    body = content if content.startswith(b"<<") else stream(content)
    contents = b"" if b"/Contents" in extra else b"/Contents 4 0 R "
    return pdf([CATALOG, ONE_KID, page(contents + extra, box), body, *more], trailer)


def pages(count):
    kids = b" ".join(b"%d 0 R" % (4 + number) for number in range(count))
    return pdf([CATALOG, b"<< /Type /Pages /Count %d /Kids [%s] >>" % (count, kids), stream(SQUARE),
                *[page(b"/Contents 3 0 R")] * count])


def compressed_twice(size):
    once = deflated(BLANKS, size // len(BLANKS), tail=SQUARE)
    return stream(zlib.compress(once, 9), b"/Filter [/FlateDecode /FlateDecode]")


def with_packed_pages(packed, extra=b""):
    """The node of all pages lies in an object stream, whose compressed bytes these are."""
    bodies = {1: CATALOG, 3: page(), 4: stream(SQUARE),
              5: flate(packed, b"/Type /ObjStm /N 1 /First 4 " + extra)}
    out, places = HEADER, {}
    for number, body in bodies.items():
        places[number] = len(out)
        out += b"%d 0 obj\n%s\nendobj\n" % (number, body)
    rows = b"\0" * 9
    for number in range(1, 7):
        kind, place = (2, 5) if number == 2 else (1, places.get(number, len(out)))
        rows += bytes([kind]) + place.to_bytes(6, "big") + b"\0\0"
    table = stream(rows, b"/Type /XRef /Size 7 /W [1 6 2] /Root 1 0 R")
    return out + b"6 0 obj\n%s\nendobj\nstartxref\n%d\n%%%%EOF\n" % (table, len(out))


def with_table_bomb():
    """The cross-reference stream has 1 GiB of entries."""
    body = pdf([CATALOG, ONE_KID, page(), stream(SQUARE)], table=False)
    body = body[:body.index(b"trailer")]
    entries = deflated(b"\0" * (16 * MIB), 64)
    table = flate(entries, b"/Type /XRef /Size %d /W [1 2 1] /Root 1 0 R" % (GIB // 4))
    return body + b"5 0 obj\n%s\nendobj\nstartxref\n%d\n%%%%EOF\n" % (table, len(body))


def with_tables_in_a_circle():
    """Two cross-reference tables, each of which names the other as the earlier one."""
    body = label()
    body = body[:body.index(b"trailer")]
    first = body.index(b"xref\n")

    def trailer(previous):
        return b"trailer\n<< /Size 5 /Root 1 0 R /Prev %010d >>\n" % previous

    second = len(body + trailer(0))
    return body + trailer(second) + b"xref\n0 0\n" + trailer(first) + \
        b"startxref\n%d\n%%%%EOF\n" % second


def with_entries(count):
    """Its table says that it has so many entries."""
    return label().replace(b"xref\n0 5\n", b"xref\n0 %d\n" % count)


def page_tree(depth):
    """A page below so many nodes of one kid each."""
    nodes = [b"<< /Type /Pages /Parent %d 0 R /Kids [%d 0 R] /Count 1 >>" % (number - 1, number + 1)
             for number in range(2, depth + 2)]
    leaf = b"<< /Type /Page /Parent %d 0 R %s /Contents %d 0 R >>" % (depth + 1, BOX, depth + 3)
    return pdf([CATALOG, *nodes, leaf, stream(SQUARE)])


def form(content, forms=b"", more=b""):
    return stream(content, b"/Type /XObject /Subtype /Form /BBox [0 0 68 142] "
                           b"/Resources << /XObject << %s >> %s >>" % (forms, more))


def forms_times_ten(levels):
    """Each form draws the next one ten times."""
    drawn = [form(b"/F Do\n" * 10, b"/F %d 0 R" % (6 + level)) for level in range(levels)]
    return label(b"/F Do", b"/Resources << /XObject << /F 5 0 R >> >>", more=[*drawn, form(SQUARE)])


def image(width, height, data, extra=b""):
    return flate(data, b"/Type /XObject /Subtype /Image /Width %d /Height %d /BitsPerComponent 1 "
                       b"/ColorSpace /DeviceGray %s" % (width, height, extra))


def with_image(body):
    return label(b"60 0 0 60 4 4 cm /I Do", b"/Resources << /XObject << /I 5 0 R >> >>", more=[body])


def with_annotation(appearance, *more):
    return label(extra=b"/Annots [5 0 R]", more=[
        b"<< /Type /Annot /Subtype /Stamp /F 4 /Rect [5 5 40 40] /AP << /N 6 0 R >> >>",
        appearance, *more])


def with_content_elsewhere(document):
    """The content is in another file, as PDF allows it."""
    other = bytes(neighbours(document) / "canary_content")
    colour = b" ".join(b"%.3f" % (part / 255) for part in CANARY)
    (neighbours(document) / "canary_content").write_bytes(colour + b" rg 0 0 68 142 re f\n")
    return label(b"<< /Length 0 /F << /Type /Filespec /F (%s) /UF (%s) >> >>\nstream\n\nendstream"
                 % (other, other))


def whole():
    """A document like those of every day, to be cut off."""
    return pages(20)


NESTED = 1_000_000
ENCRYPTED = b"/Encrypt << /Filter /%s /V %d /R %d /Length 40 /P -4 /O <" + b"6f" * 32 + b"> /U <" + \
    b"75" * 32 + b"> >> /ID [<00112233445566778899aabbccddeeff> <00112233445566778899aabbccddeeff>]"

DOCUMENTS = [
    # More than it looks.
    Document("pdf_8_gib_of_blanks_compressed_twice.pdf", REFUSED,
             lambda _: label(compressed_twice(8 * GIB))),
    Document("pdf_8_gib_of_blanks_on_a_label.pdf", EITHER, endless=True,
             contents=lambda _: label(compressed_twice(8 * GIB), box=BOX_OF_LABEL)),
    Document("pdf_object_stream_of_2_gib.pdf", REFUSED,
             lambda _: with_packed_pages(deflated(BLANKS, 128, head=b"2 0 " + ONE_KID))),
    Document("pdf_content_of_1_gib.pdf", EITHER,
             lambda _: label(flate(deflated(BLANKS, 64, tail=SQUARE)))),
    Document("pdf_content_of_1_gib_in_parts.pdf", EITHER, lambda _: label(
        flate(deflated(BLANKS, 8, tail=SQUARE)), b"/Contents [%s]" % (b"4 0 R " * 8))),
    Document("pdf_form_of_1_gib.pdf", EITHER, endless=True, contents=lambda _: label(
        b"/F Do", b"/Resources << /XObject << /F 5 0 R >> >>",
        more=[flate(deflated(BLANKS, 64, tail=SQUARE),
                    b"/Type /XObject /Subtype /Form /BBox [0 0 68 142]")])),
    Document("pdf_appearance_of_1_gib.pdf", EITHER, endless=True, contents=lambda _: with_annotation(
        flate(deflated(BLANKS, 64, tail=SQUARE),
              b"/Type /XObject /Subtype /Form /BBox [0 0 68 142]"))),
    Document("pdf_operators_of_1_gib.pdf", EITHER, endless=True,
             contents=lambda _: label(flate(deflated(b"q Q\n" * (4 * MIB), 64, tail=SQUARE)))),
    Document("pdf_table_of_1_gib.pdf", EITHER, lambda _: with_table_bomb()),
    Document("pdf_image_of_100000_by_100000.pdf", EITHER, endless=True,
             contents=lambda _: with_image(image(100_000, 100_000,
                                                 deflated(b"\0" * 12_500_000, 100)))),
    Document("pdf_filtered_1000_times.pdf", EITHER,
             lambda _: label(stream(SQUARE, b"/Filter [%s]" % (b"/ASCIIHexDecode " * 1000)))),
    Document("pdf_rows_of_2_gib.pdf", EITHER, lambda _: label(flate(
        zlib.compress(SQUARE), b"/DecodeParms << /Predictor 12 /Columns 2147483647 >>"))),
    Document("pdf_forms_drawn_10_to_the_10_times.pdf", EITHER, lambda _: forms_times_ten(10),
             endless=True),
    Document("pdf_100001_pages.pdf", REFUSED, lambda _: pages(100_001)),
    Document("pdf_20000_pages.pdf", PRINTS, lambda _: pages(20_000), endless=True),
    Document("pdf_200_pages.pdf", PRINTS, lambda _: pages(200)),
    # Circles.
    Document("pdf_table_before_itself.pdf", EITHER,
             lambda _: label(trailer=b"/Prev %d" % label().index(b"xref\n"))),
    Document("pdf_tables_in_a_circle.pdf", EITHER, lambda _: with_tables_in_a_circle()),
    Document("pdf_kids_to_itself.pdf", EITHER, lambda _: pdf(
        [CATALOG, b"<< /Type /Pages /Kids [2 0 R] /Count 1 >>"])),
    Document("pdf_page_tree_in_a_circle.pdf", EITHER, lambda _: pdf(
        [CATALOG, b"<< /Type /Pages /Kids [3 0 R 5 0 R] /Count 2 >>", page(), stream(SQUARE),
         b"<< /Type /Pages /Parent 2 0 R /Kids [2 0 R 3 0 R] /Count 2 >>"])),
    Document("pdf_page_is_its_own_parent.pdf", EITHER, lambda _: pdf(
        [CATALOG, ONE_KID, b"<< /Type /Page /Parent 3 0 R /Contents 4 0 R >>", stream(SQUARE)])),
    Document("pdf_page_tree_10000_deep.pdf", EITHER, lambda _: page_tree(10_000)),
    Document("pdf_appearance_draws_itself.pdf", EITHER,
             lambda _: with_annotation(form(b"/F Do", b"/F 6 0 R"))),
    Document("pdf_appearances_in_a_circle.pdf", EITHER, lambda _: with_annotation(
        form(b"/F Do", b"/F 7 0 R"), form(b"/F Do", b"/F 6 0 R"))),
    Document("pdf_form_draws_itself.pdf", EITHER, lambda _: label(
        b"/F Do", b"/Resources << /XObject << /F 5 0 R >> >>",
        more=[form(b"/F Do " + SQUARE, b"/F 5 0 R")])),
    Document("pdf_resources_in_a_circle.pdf", EITHER, lambda _: label(
        SQUARE, b"/Resources 5 0 R",
        more=[b"<< /XObject 6 0 R /Font 5 0 R >>", b"<< /F 5 0 R /G 6 0 R >>"])),
    Document("pdf_pattern_paints_itself.pdf", EITHER, lambda _: label(
        b"/Pattern cs /P scn 0 0 60 60 re f", b"/Resources << /Pattern << /P 5 0 R >> >>",
        more=[stream(b"/Pattern cs /P scn 0 0 5 5 re f",
                     b"/Type /Pattern /PatternType 1 /PaintType 1 /TilingType 1 /BBox [0 0 5 5] "
                     b"/XStep 5 /YStep 5 /Resources << /Pattern << /P 5 0 R >> >>")])),
    Document("pdf_pattern_of_tiny_steps.pdf", EITHER, endless=True, contents=lambda _: label(
        b"/Pattern cs /P scn 0 0 60 60 re f", b"/Resources << /Pattern << /P 5 0 R >> >>",
        more=[stream(b"0 0 1 1 re f",
                     b"/Type /Pattern /PatternType 1 /PaintType 1 /TilingType 1 /BBox [0 0 1 1] "
                     b"/XStep 0.00001 /YStep 0.00001 /Resources << >>")])),
    Document("pdf_length_is_its_own_stream.pdf", EITHER, lambda _: label(
        b"<< /Length 4 0 R >>\nstream\n%s\nendstream" % SQUARE)),
    Document("pdf_object_stream_extends_itself.pdf", EITHER, lambda _: with_packed_pages(
        zlib.compress(b"2 0 " + ONE_KID), b"/Extends 5 0 R")),
    Document("pdf_object_is_itself.pdf", EITHER,
             lambda _: label(extra=b"/Rotate 5 0 R", more=[b"5 0 R"])),
    # Numbers beyond sense.
    Document("pdf_negative_count.pdf", EITHER, lambda _: label().replace(b"/Count 1", b"/Count -9")),
    Document("pdf_count_of_2_to_the_31.pdf", EITHER,
             lambda _: label().replace(b"/Count 1 ", b"/Count 2147483648 ")),
    Document("pdf_huge_page.pdf", EITHER, lambda _: label(box=b"/MediaBox [0 0 1%s 1%s]"
                                                          % (b"0" * 30, b"0" * 30))),
    Document("pdf_page_of_no_numbers.pdf", EITHER, lambda _: label(
        box=b"/MediaBox [0 nan inf 1e300]")),
    Document("pdf_page_of_long_numbers.pdf", EITHER, lambda _: label(
        box=b"/MediaBox [-0.0 --5 %s .]" % (b"9" * 5000))),
    Document("pdf_page_without_area.pdf", EITHER, lambda _: label(box=b"/MediaBox [0 0 0 0]")),
    Document("pdf_unit_of_10_to_the_300.pdf", EITHER, lambda _: label(extra=b"/UserUnit 1e300")),
    Document("pdf_unit_of_many_digits.pdf", EITHER,
             lambda _: label(extra=b"/UserUnit 1%s" % (b"0" * 300))),
    Document("pdf_negative_length.pdf", EITHER,
             lambda _: label(b"<< /Length -15 >>\nstream\n%s\nendstream" % SQUARE)),
    Document("pdf_length_of_2_to_the_62.pdf", EITHER,
             lambda _: label(b"<< /Length %d >>\nstream\n%s\nendstream" % (1 << 62, SQUARE))),
    Document("pdf_previous_table_far_away.pdf", EITHER, lambda _: label(trailer=b"/Prev %d" % 10**18)),
    Document("pdf_table_of_2000000000_entries.pdf", EITHER, lambda _: with_entries(2_000_000_000)),
    Document("pdf_last_object_number.pdf", EITHER,
             lambda _: label(extra=b"/Rotate 2147483647 0 R /Group 99999999999999999999 0 R")),
    # Depth and length.
    Document("pdf_arrays_1000000_deep.pdf", EITHER,
             lambda _: label(extra=b"/A " + b"[" * NESTED + b"]" * NESTED)),
    Document("pdf_dictionaries_1000000_deep.pdf", EITHER,
             lambda _: label(extra=b"/A " + b"<</B" * NESTED + b" 0 " + b">>" * NESTED)),
    Document("pdf_content_1000000_deep.pdf", EITHER, endless=True,
             contents=lambda _: label(b"q " * NESTED + SQUARE)),
    Document("pdf_content_arrays_1000000_deep.pdf", EITHER, endless=True,
             contents=lambda _: label(b"[" * NESTED + b" TJ\n" + SQUARE)),
    Document("pdf_string_without_end.pdf", EITHER,
             lambda _: label(extra=b"/A (" + b"(" * 2 * MIB)),
    Document("pdf_name_of_4_mib.pdf", EITHER, lambda _: label(extra=b"/" + b"N" * (4 * MIB) + b" 0")),
    Document("pdf_contents_of_200000_parts.pdf", EITHER, contents=lambda _: label(
        extra=b"/Contents [%s]" % (b"4 0 R " * 200_000))),
    # Less than it should be.
    *[Document(f"pdf_cut_off_at_{percent}_percent.pdf", EITHER,
               lambda _, percent=percent: whole()[:len(whole()) * percent // 100])
      for percent in (10, 30, 50, 70, 90, 99)],
    Document("pdf_header_only.pdf", REFUSED, lambda _: HEADER),
    Document("pdf_header_at_byte_1000.pdf", EITHER, lambda _: noise(1000, 1) + label()),
    Document("pdf_noise_after_the_header.pdf", REFUSED, lambda _: HEADER + noise(2 * MIB, 2)),
    Document("pdf_without_pages.pdf", REFUSED,
             lambda _: pdf([CATALOG, b"<< /Type /Pages /Kids [] /Count 0 >>"])),
    Document("pdf_without_catalog.pdf", REFUSED, lambda _: pdf([b"null"])),
    Document("pdf_kids_of_other_kinds.pdf", EITHER, lambda _: pdf(
        [CATALOG, b"<< /Type /Pages /Kids [null 1 (x) /N [] 99 0 R 4 0 R] /Count 7 >>", b"null",
         stream(SQUARE)])),
    Document("pdf_noise_as_content.pdf", EITHER, lambda _: label(noise(MIB, 3))),
    Document("pdf_noise_as_compressed_content.pdf", EITHER, lambda _: label(flate(noise(MIB, 4)))),
    Document("pdf_noise_as_picture.pdf", EITHER, lambda _: with_image(stream(
        noise(MIB, 5), b"/Type /XObject /Subtype /Image /Width 900 /Height 900 /BitsPerComponent 8 "
                       b"/ColorSpace /DeviceRGB /Filter /JPXDecode"))),
    Document("pdf_noise_as_font.pdf", EITHER, lambda _: label(
        b"BT /F 10 Tf 5 60 Td (Label) Tj ET", b"/Resources << /Font << /F 5 0 R >> >>",
        more=[b"<< /Type /Font /Subtype /TrueType /BaseFont /X /FirstChar 0 /LastChar 255 "
              b"/FontDescriptor 6 0 R >>",
              b"<< /Type /FontDescriptor /FontName /X /Flags 32 /FontFile2 7 0 R >>",
              flate(zlib.compress(noise(MIB, 6)))])),
    # What it has no right to.
    Document("pdf_encrypted.pdf", REFUSED,
             lambda _: label(trailer=ENCRYPTED % (b"Standard", 1, 2))),
    Document("pdf_encrypted_in_no_known_way.pdf", REFUSED,
             lambda _: label(trailer=ENCRYPTED % (b"Nonsense", 99, 99))),
    Document("pdf_content_in_another_file.pdf", EITHER, with_content_elsewhere),
    Document("pdf_starts_a_program.pdf", EITHER, lambda document: label().replace(
        b"/Type /Catalog", b"/Type /Catalog /OpenAction << /S /Launch /F (%s) >>"
        % bytes(neighbours(document) / "canary.txt"))),
]
