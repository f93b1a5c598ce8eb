#!/usr/bin/env python3
"""Makes documents that mean harm, or are damaged, of every kind that is printed and of none.

    make_documents.py                 lists them, each with what the program has to do with it
    make_documents.py FOLDER NAME…    makes some in a folder

They are the same ones every time, but for the paths of other files that some of them name.
"""
import os
import pathlib
import sys

import drawing_documents
import pdf_documents
import picture_documents
import postscript_documents
import text_documents
from corpus import neighbours

DOCUMENTS = {document.name: document for kind in (
    pdf_documents, postscript_documents, picture_documents, drawing_documents, text_documents)
    for document in kind.DOCUMENTS}


def make(name, folder):
    """@return the document's path; its neighbours are in a folder beside it."""
    beside = neighbours(folder / name)
    beside.mkdir(exist_ok=True)
    drawing_documents.make_neighbours(beside)
    if not (beside / "pipe").exists():
        os.mkfifo(beside / "pipe")
    return DOCUMENTS[name].make(folder)


def main(arguments):
    if not arguments:
        for document in DOCUMENTS.values():
            print(document.expected, document.name, "endless" if document.endless else "")
        return
    folder = pathlib.Path(arguments[0]).absolute()
    folder.mkdir(parents=True, exist_ok=True)
    for name in arguments[1:]:
        print(make(name, folder))


if __name__ == "__main__":
    main(sys.argv[1:])
