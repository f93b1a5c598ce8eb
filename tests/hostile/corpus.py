"""Hostile documents: what one is, and what makers of several kinds share."""
import collections.abc
import dataclasses
import pathlib
import random
import zlib

PRINTS = "prints"
REFUSED = "refused"
EITHER = "either"

KIB, MIB, GIB = 1 << 10, 1 << 20, 1 << 30

# The colour of the neighbours that no document may show: one that nothing else in the corpus has.
CANARY = (0xC8, 0x14, 0x5A)
CANARY_NAME = "#%02x%02x%02x" % CANARY


@dataclasses.dataclass(frozen=True)
class Document:
    """`expected`: whether the program prints it, refuses it, or may do either.
    `contents`: called with the path that the document gets; gives its bytes, or None when it has
    made the file itself.
    `endless`: work on it need not end by itself, so that the user ends it.
    `grows`: it is written on while it is read.
    `shows_canary`: it has a picture of that colour of its own, which is drawn."""
    name: str
    expected: str
    contents: collections.abc.Callable[[pathlib.Path], bytes | None]
    endless: bool = False
    grows: bool = False
    shows_canary: bool = False

    def make(self, folder):
        path = folder / self.name
        contents = self.contents(path)
        if contents is not None:
            path.write_bytes(contents)
        return path


def neighbours(document):
    """The folder of files that no document has a right to, of the document of that path."""
    return document.parent / "neighbours"


def noise(size, seed):
    return random.Random(seed).randbytes(size)


def _joined_checksums(first, second, length_of_second):
    """The Adler-32 of two byte strings in a row, from their own."""
    prime = 65521
    low = (first % 65536 + second % 65536 - 1) % prime
    high = (first // 65536 + second // 65536 + length_of_second * (first % 65536 - 1)) % prime
    return high * 65536 + low


def deflated(piece, count, head=b"", tail=b""):
    """What zlib.compress() gives for `head + piece * count + tail`, as to its meaning, without
    those many bytes ever being made."""
    compressor = zlib.compressobj(9, zlib.DEFLATED, -zlib.MAX_WBITS)

    def packed(data):
        return compressor.compress(data) + compressor.flush(zlib.Z_FULL_FLUSH)

    stream = b"\x78\xda" + packed(head) + packed(piece) * count + compressor.compress(tail) + \
        compressor.flush()
    checksum, checksum_of_piece = zlib.adler32(head), zlib.adler32(piece)
    for _ in range(count):
        checksum = _joined_checksums(checksum, checksum_of_piece, len(piece))
    checksum = _joined_checksums(checksum, zlib.adler32(tail), len(tail))
    return stream + checksum.to_bytes(4, "big")
