"""Hostile documents: PostScript."""
from corpus import EITHER, MIB, PRINTS, REFUSED, Document, neighbours, noise

SQUARE = b"9 9 20 20 rectfill\n"


def program(code, show=True):
    return b"%!PS-Adobe-3.0\n" + code + b"\n" + (SQUARE + b"showpage\n" if show else b"")


def reaching(code):
    """A program that does something to a neighbour of its own, which `%s` is."""
    return lambda document: program(code % bytes(neighbours(document) / "canary.txt"))


def string_of_100_mib(document):
    """Of zeros, which take no room on the disk."""
    with open(document, "wb") as file:
        file.write(b"%!PS\n(")
        file.seek(100 * MIB)
        file.write(b") pop\n" + SQUARE + b"showpage\n")


DOCUMENTS = [
    # No end.
    Document("ps_loop_without_end.ps", REFUSED, lambda _: program(b"{} loop"), endless=True),
    Document("ps_pages_without_end.ps", REFUSED, lambda _: program(b"{showpage} loop"), endless=True),
    Document("ps_calls_itself_without_end.ps", REFUSED, lambda _: program(b"/f {f} def f"),
             endless=True),
    Document("ps_output_without_end.ps", REFUSED, endless=True, contents=lambda _: program(
        b"/s 60000 string def { 0 1 59999 { s exch rand 255 and put } for\n"
        b"200 300 8 [200 0 0 300 0 0] {s} image showpage } loop")),
    Document("ps_path_without_end.ps", REFUSED, endless=True,
             contents=lambda _: program(b"0 0 moveto {rand 9 mod rand 9 mod rlineto} loop")),
    Document("ps_messages_without_end.ps", REFUSED, endless=True,
             contents=lambda _: program(b"{(message to whoever listens ) print} loop")),
    Document("ps_stops_no_signal_and_no_error.ps", REFUSED, endless=True,
             contents=lambda _: program(b"{ { {} loop } stopped pop } loop")),
    # Too much.
    Document("ps_memory_without_end.ps", REFUSED,
             lambda _: program(b"-2 vmreclaim [ { 65000 string } loop")),
    Document("ps_memory_without_errors.ps", REFUSED, endless=True,
             contents=lambda _: program(b"/d 9 dict def {{d rand 65000 string put} stopped pop} loop")),
    Document("ps_execution_stack.ps", REFUSED, lambda _: program(b"/f {f 1 pop} def f")),
    Document("ps_operand_stack.ps", REFUSED, lambda _: program(b"{1} loop")),
    Document("ps_dictionary_stack.ps", REFUSED, lambda _: program(b"{9 dict begin} loop")),
    Document("ps_saved_states.ps", EITHER, lambda _: program(b"{gsave} loop"), endless=True),
    Document("ps_string_of_100_mib.ps", EITHER, string_of_100_mib, endless=True),
    Document("ps_procedures_500000_deep.ps", EITHER,
             lambda _: program(b"{" * 500_000 + b"}" * 500_000 + b" pop")),
    Document("ps_huge_page.ps", EITHER,
             lambda _: program(b"<< /PageSize [1e30 1e30] >> setpagedevice")),
    Document("ps_page_without_area.ps", EITHER,
             lambda _: program(b"<< /PageSize [0 0] >> setpagedevice")),
    Document("ps_huge_resolution.ps", EITHER,
             lambda _: program(b"<< /HWResolution [1e9 1e9] >> setpagedevice")),
    Document("ps_copies_without_number.ps", EITHER, endless=True, contents=lambda _: program(
        b"/#copies 2000000000 def << /NumCopies 2000000000 >> setpagedevice")),
    Document("ps_numbers_beyond_range.ps", EITHER,
             lambda _: program(b"1e38 1e38 scale 1e38 1e38 moveto 1e38 1e38 lineto stroke")),
    Document("ps_dashes_without_end.ps", EITHER, endless=True, contents=lambda _: program(
        b"[0.00001] 0 setdash 0 0 moveto 9999 9999 lineto stroke")),
    # Less than a label.
    Document("ps_without_a_page.ps", REFUSED, lambda _: b"%!PS\n"),
    Document("ps_mark_only.ps", REFUSED, lambda _: b"%!"),
    Document("ps_quits_at_once.ps", REFUSED, lambda _: program(b"quit")),
    Document("ps_quits_after_drawing.ps", EITHER, lambda _: program(SQUARE + b"quit")),
    Document("ps_eps_without_showpage.eps", PRINTS, lambda _: (
        b"%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 60 60\n%%EndComments\n" + SQUARE + b"%%EOF\n")),
    Document("ps_eps_with_a_false_size.eps", EITHER, lambda _: (
        b"%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 99 99 -1e99 nan\n%%EndComments\n" + SQUARE +
        b"showpage\n%%EOF\n")),
    Document("ps_cut_off.ps", REFUSED, lambda _: program(b"/f { 1 2", show=False)),
    Document("ps_noise.ps", REFUSED, lambda _: b"%!PS\n" + noise(MIB, 10)),
    Document("ps_binary_tokens.ps", REFUSED, lambda _: b"%!PS\n" + bytes(range(128, 160)) * 4096),
    # What it has no right to.
    Document("ps_reads_a_file.ps", REFUSED, reaching(b"(%s) (r) file 99 string readline")),
    Document("ps_runs_a_file.ps", REFUSED, reaching(b"(%s) run")),
    Document("ps_deletes_a_file.ps", REFUSED, reaching(b"(%s) deletefile")),
    Document("ps_renames_a_file.ps", REFUSED, reaching(b"(%s) (moved) renamefile")),
    Document("ps_writes_a_file.ps", REFUSED, reaching(b"(%s.more) (w) file (x) writestring")),
    Document("ps_starts_a_program.ps", REFUSED, reaching(b"(%%pipe%%touch %s.more) (w) file closefile")),
    Document("ps_output_elsewhere.ps", EITHER,
             reaching(b"<< /OutputFile (%s.more) >> setpagedevice")),
    Document("ps_lifts_its_limits.ps", REFUSED, reaching(
        b"{systemdict /SAFER false put} stopped {userdict /.locksafe {} put} stopped "
        b"(%s) (r) file 99 string readline")),
    Document("ps_reads_the_environment.ps", EITHER,
             lambda _: program(b"(PATH) getenv {print} if (HOME) getenv {print} if")),
]
