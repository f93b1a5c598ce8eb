// Input fields: puts a formatter in charge of a line edit.
//
// Once attached, the formatter vets what a user can do to the text: typing, pasting, dropping,
// cutting, undo, redo, and what an input method commits (its preedit is not text yet). A refused
// edit is not applied: text, caret and selection stay, and no textEdited or textChanged is sent.
// insert(), paste() and the like count as the user's even when a program calls them; setText() and
// a completer's choice are the program's and never vetted.
#pragma once

#include <memory>

#include "plugins/cut_options/fields/formatter.h"

class QLineEdit;

namespace labelcut {

/// @param edit       the line edit, which owns the formatter from now on; must not be null. A
///                   formatter attached before is deleted, any other validator replaced.
/// @param formatter  must not be null.
void attachFormatter(QLineEdit* edit, std::unique_ptr<Formatter> formatter);

/// The formatter attached to `edit`, or null.
Formatter* attachedFormatter(const QLineEdit* edit);

} // namespace labelcut
