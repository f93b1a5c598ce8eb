"""Performance: documents of as many pages as wanted, and pictures."""
import struct
import zlib


def pdf(pages):
    """The bytes of a PDF of so many labels of 24 x 50 mm, each with a line of text."""
    kids = " ".join(f"{4 + 2 * n} 0 R" for n in range(pages))
    objects = ["<</Type/Catalog/Pages 2 0 R>>", f"<</Type/Pages/Count {pages}/Kids[{kids}]>>",
               "<</Type/Font/Subtype/Type1/BaseFont/Helvetica>>"]
    for n in range(pages):
        text = f"BT /F 10 Tf 5 60 Td (Label {n + 1}) Tj ET"
        objects.append("<</Type/Page/Parent 2 0 R/MediaBox[0 0 68 142]/Resources<</Font<</F 3 0 R>>>>"
                       f"/Contents {5 + 2 * n} 0 R>>")
        objects.append(f"<</Length {len(text)}>>stream\n{text}\nendstream")
    out, places = "%PDF-1.4\n", []
    for number, body in enumerate(objects, 1):
        places.append(len(out))
        out += f"{number} 0 obj\n{body}\nendobj\n"
    table = "".join(f"{place:010} 00000 n \n" for place in places)
    return (f"{out}xref\n0 {len(objects) + 1}\n0000000000 65535 f \n{table}"
            f"trailer\n<</Size {len(objects) + 1}/Root 1 0 R>>\nstartxref\n{len(out)}\n%%EOF\n"
            ).encode("ascii")


def png(width, height):
    """The bytes of a picture of many colours."""
    lines = b"".join(b"\0" + bytes((x * y * shade) & 255 for x in range(width) for shade in (1, 3, 7))
                     for y in range(height))

    def chunk(name, body):
        return (struct.pack(">I", len(body)) + name + body
                + struct.pack(">I", zlib.crc32(name + body)))

    return (b"\x89PNG\r\n\x1a\n"
            + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0))
            + chunk(b"IDAT", zlib.compress(lines)) + chunk(b"IEND", b""))
