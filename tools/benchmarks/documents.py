"""Performance: documents of as many pages as wanted."""


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
