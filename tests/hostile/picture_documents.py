"""Hostile documents: PNG and JPEG."""
import struct
import zlib

from corpus import EITHER, GIB, KIB, MIB, PRINTS, REFUSED, Document, deflated, noise

SIGNATURE = b"\x89PNG\r\n\x1a\n"
GRAY, RGB, PALETTE, RGBA = 0, 2, 3, 6


def chunk(kind, data, checksum=None):
    if checksum is None:
        checksum = zlib.crc32(kind + data)
    return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", checksum)


def header(width, height, depth=8, colour=GRAY, interlaced=0):
    return struct.pack(">IIBBBBB", width, height, depth, colour, 0, 0, interlaced)


def png(*chunks, head=header(40, 40), data=zlib.compress((b"\0" + b"\x80" * 40) * 40)):
    """`chunks`: what stands between header and picture."""
    return SIGNATURE + chunk(b"IHDR", head) + b"".join(chunks) + chunk(b"IDAT", data) + \
        chunk(b"IEND", b"")


def flat_png(colour, size=40):
    row = b"\0" + bytes(colour) * size
    return png(head=header(size, size, 8, RGB), data=zlib.compress(row * size, 9))


def black_png(width, height, depth, colour, bytes_of_row):
    """As large as it says, and small as a file."""
    rows = 500
    return png(head=header(width, height, depth, colour),
               data=deflated(b"\0" * ((1 + bytes_of_row) * rows), height // rows))


def zeros(size, head=b""):
    return deflated(b"\0" * (16 * MIB), size // (16 * MIB), head=head)


# The head of a colour profile, as far as it is looked at before the rest is read.
PROFILE_OF_1_GIB = struct.pack(">I4sI4s4s4s", GIB + 128, b"none", 0x02400000, b"mntr", b"GRAY",
                               b"XYZ ") + b"\0" * 12 + b"acsp" + b"\0" * 88


def segment(marker, data):
    return b"\xff" + bytes([marker]) + struct.pack(">H", len(data) + 2) + data


START, END = b"\xff\xd8", b"\xff\xd9"
BASELINE, PROGRESSIVE = 0xC0, 0xC2
QUANTIZATION = segment(0xDB, b"\0" + b"\x01" * 64)
# One code each, the bit 0: no difference for the first coefficient, the end of the block for the
# others.
TABLES = segment(0xC4, b"\x00" + b"\x01" + b"\0" * 15 + b"\0") + \
    segment(0xC4, b"\x10" + b"\x01" + b"\0" * 15 + b"\0")
# The same, but that code ends the next 16,384 blocks as well, and as many as 14 bits more say.
TABLES_OF_RUNS = segment(0xC4, b"\x00" + b"\x01" + b"\0" * 15 + b"\0") + \
    segment(0xC4, b"\x10" + b"\x01" + b"\0" * 15 + b"\xe0")


def frame(width, height, kind=BASELINE):
    return segment(kind, struct.pack(">BHHB", 8, height, width, 1) + b"\x01\x11\0")


def scan(first, last, data):
    return segment(0xDA, b"\x01\x01\x00" + bytes([first, last]) + b"\0") + data


def gray_jpeg(width, height, *extra):
    """Two bits a block of 8 x 8."""
    blocks = -(-width // 8) * -(-height // 8)
    return START + b"".join(extra) + QUANTIZATION + frame(width, height) + TABLES + \
        scan(0, 63, b"\0" * -(-blocks // 4)) + END


def jpeg_of_scans(count):
    """25 million points, of which every scan says again that they are gray."""
    blocks = 625 * 625
    runs = -(-blocks // 16384)
    again = scan(1, 63, b"\0" * -(-runs * 15 // 8))
    return START + QUANTIZATION + frame(5000, 5000, PROGRESSIVE) + TABLES_OF_RUNS + \
        scan(0, 0, b"\0" * -(-blocks // 8)) + again * count + END


def exif(next_directory):
    return segment(0xE1, b"Exif\0\0MM\0\x2a\0\0\0\x08" + b"\0\x01" +
                   b"\x01\x12\0\x03\0\0\0\x01\0\x63\0\0" + struct.pack(">I", next_directory))


DOCUMENTS = [
    Document("png_50000_by_50000.png", REFUSED, lambda _: black_png(50_000, 50_000, 1, GRAY, 6250)),
    Document("png_50000_by_50000_in_colour.png", REFUSED,
             lambda _: black_png(50_000, 50_000, 8, RGBA, 200_000)),
    Document("png_5500_by_5500_in_colour.png", EITHER, endless=True,
             contents=lambda _: black_png(5500, 5500, 8, RGBA, 22_000)),
    Document("png_2_to_the_31_wide.png", REFUSED, lambda _: png(head=header(2**31 - 1, 2**31 - 1))),
    Document("png_line_of_1000000_points.png", EITHER,
             lambda _: black_png(1_000_000, 500, 1, GRAY, 125_000)),
    Document("png_without_size.png", REFUSED, lambda _: png(head=header(0, 0))),
    Document("png_depth_of_255.png", REFUSED, lambda _: png(head=header(40, 40, 255))),
    Document("png_interlaced_bomb.png", REFUSED, lambda _: png(
        head=header(50_000, 50_000, 16, RGBA, 1), data=zeros(64 * MIB))),
    Document("png_more_data_than_size.png", EITHER, lambda _: png(data=zeros(GIB)), endless=True),
    Document("png_less_data_than_size.png", EITHER, lambda _: png(data=zlib.compress(b"\0"))),
    Document("png_without_data.png", REFUSED,
             lambda _: SIGNATURE + chunk(b"IHDR", header(40, 40)) + chunk(b"IEND", b"")),
    Document("png_cut_off.png", EITHER, lambda _: flat_png((9, 9, 9), 400)[:700]),
    Document("png_signature_only.png", REFUSED, lambda _: SIGNATURE),
    Document("png_header_of_a_wrong_checksum.png", REFUSED, lambda _: (
        SIGNATURE + chunk(b"IHDR", header(40, 40), 1) + png()[33:])),
    Document("png_data_of_a_wrong_checksum.png", EITHER, lambda _: (
        SIGNATURE + chunk(b"IHDR", header(40, 40)) + chunk(b"IDAT", zlib.compress(b"\0" * 1640), 1) +
        chunk(b"IEND", b""))),
    Document("png_noise_as_data.png", EITHER, lambda _: png(data=noise(MIB, 20))),
    Document("png_chunk_of_2_gib.png", REFUSED, lambda _: (
        SIGNATURE + chunk(b"IHDR", header(40, 40)) + b"\x7f\xff\xff\xffIDAT" + noise(KIB, 21))),
    Document("png_500000_chunks.png", EITHER, lambda _: png(chunk(b"tEXt", b"k\0v") * 500_000)),
    Document("png_profile_of_1_gib.png", EITHER,
             lambda _: png(chunk(b"iCCP", b"profile\0\0" + zeros(GIB, PROFILE_OF_1_GIB)))),
    Document("png_text_of_1_gib.png", EITHER,
             lambda _: png(chunk(b"zTXt", b"Title\0\0" + zeros(GIB)))),
    Document("png_international_text_of_1_gib.png", EITHER,
             lambda _: png(chunk(b"iTXt", b"Title\0\x01\0\0\0" + zeros(GIB)))),
    Document("png_noise_as_profile.png", EITHER,
             lambda _: png(chunk(b"iCCP", b"profile\0\0" + zlib.compress(noise(MIB, 22))))),
    Document("png_without_palette.png", EITHER, lambda _: png(head=header(40, 40, 8, PALETTE))),
    Document("png_animated.png", PRINTS, lambda _: png(
        chunk(b"acTL", struct.pack(">II", 2**31 - 1, 0)),
        *[chunk(b"fcTL", struct.pack(">IIIIIHHBB", number, 2**31 - 1, 2**31 - 1, 0, 0, 0, 0, 0, 0))
          for number in range(1000)])),
    Document("png_points_of_no_measure.png", EITHER,
             lambda _: png(chunk(b"pHYs", struct.pack(">IIB", 2**32 - 1, 0, 1)))),

    Document("jpeg_gray.jpg", PRINTS, lambda _: gray_jpeg(400, 400)),
    Document("jpeg_65535_by_65535_without_data.jpg", REFUSED, lambda _: (
        START + QUANTIZATION + frame(65535, 65535) + TABLES + scan(0, 63, b"") + END)),
    Document("jpeg_50000_by_50000.jpg", REFUSED, lambda _: gray_jpeg(50_000, 50_000)),
    Document("jpeg_65500_by_65500_in_scans.jpg", REFUSED, lambda _: (
        START + QUANTIZATION + frame(65500, 65500, PROGRESSIVE) + TABLES_OF_RUNS +
        scan(0, 0, b"\0" * 16) * 1000 + END)),
    Document("jpeg_without_height.jpg", REFUSED, lambda _: gray_jpeg(400, 0)),
    Document("jpeg_without_data.jpg", REFUSED, lambda _: START + END),
    Document("jpeg_mark_only.jpg", REFUSED, lambda _: START + b"\xff"),
    Document("jpeg_cut_off.jpg", EITHER, lambda _: gray_jpeg(4000, 4000)[:9000]),
    Document("jpeg_100000_scans.jpg", EITHER, lambda _: jpeg_of_scans(100_000), endless=True),
    Document("jpeg_noise_as_data.jpg", EITHER, lambda _: (
        START + QUANTIZATION + frame(4000, 4000) + TABLES +
        scan(0, 63, noise(MIB, 23).replace(b"\xff", b"\xfe")) + END)),
    Document("jpeg_without_tables.jpg", REFUSED, lambda _: (
        START + frame(400, 400) + scan(0, 63, b"\0" * 800) + END)),
    Document("jpeg_2000000_restarts.jpg", EITHER, lambda _: (
        START + QUANTIZATION + frame(400, 400) + TABLES +
        scan(0, 63, b"\xff\xd0\xff\xd3" * 1_000_000) + END)),
    Document("jpeg_exif_in_a_circle.jpg", EITHER, lambda _: gray_jpeg(400, 400, exif(8))),
    Document("jpeg_exif_far_away.jpg", EITHER, lambda _: gray_jpeg(400, 400, exif(0xFFFFFFFF))),
    Document("jpeg_200_profiles.jpg", EITHER, lambda _: gray_jpeg(400, 400, *[
        segment(0xE2, b"ICC_PROFILE\0" + bytes([1 + number, 200]) + noise(60_000, number))
        for number in range(200)])),
]
