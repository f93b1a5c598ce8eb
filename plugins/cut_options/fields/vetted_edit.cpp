// Input fields: puts a formatter in charge of a line edit.
#include "plugins/cut_options/fields/vetted_edit.h"

#include <QEvent>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QScopedValueRollback>
#include <QSignalBlocker>
#include <QValidator>

#include <algorithm>
#include <optional>
#include <utility>

namespace labelcut {

namespace {

/// A line edit asks its validator after it has changed its text and before it tells anybody. What
/// the text was before is therefore kept here, and followed while the text is still that one.
class VettingValidator : public QValidator {
public:
    VettingValidator(QLineEdit* edit, std::unique_ptr<Formatter> formatter)
        : QValidator(edit)
        , mEdit(edit)
        , mFormatter(std::move(formatter)) {
        remember(current());
        connect(edit, &QLineEdit::cursorPositionChanged, this, &VettingValidator::follow);
        connect(edit, &QLineEdit::selectionChanged, this, &VettingValidator::follow);
        connect(edit, &QLineEdit::textEdited, this, &VettingValidator::tidySelection);
        edit->installEventFilter(this);
    }

    Formatter* formatter() const { return mFormatter.get(); }
    State validate(QString& input, int& caret) const override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Snapshot {
        QString text;
        int caret = 0;
        TextRange selection;
        /// Whether an undone edit could be redone.
        bool canRedo = false;
    };

    Snapshot current() const;
    void remember(const Snapshot& snapshot) const;
    void follow();
    void tidySelection();
    int commitOrigin() const;
    std::optional<TextRange> replacedBy(const QInputMethodEvent& event) const;
    TextRange caretBehindCommit(const QString& input) const;
    void letCommit(QInputMethodEvent& event) const;
    bool isEdit(const QString& input) const;
    State refuse(QString& input, int& caret) const;
    void stepBack() const;
    void restoreSelection() const;

    QLineEdit* mEdit;
    std::unique_ptr<Formatter> mFormatter;
    mutable Snapshot mBefore;
    /// The text that redoing everything leads to.
    mutable QString mNewest;
    mutable bool mIsRestoring = false;
    bool mIsCommitting = false;
    /// What the input method at work replaces, where that is not the selection: a stretch of the
    /// text without the selected part.
    std::optional<TextRange> mReplaced;
    mutable bool mHasRefused = false;
};

VettingValidator::Snapshot VettingValidator::current() const {
    const int caret = std::min(mEdit->cursorPosition(), static_cast<int>(mEdit->text().size()));
    const int start = mEdit->hasSelectedText() ? std::max(0, mEdit->selectionStart()) : caret;
    return {mEdit->text(),
            caret,
            {static_cast<std::size_t>(start), static_cast<std::size_t>(mEdit->selectionLength())},
            mEdit->isRedoAvailable()};
}

void VettingValidator::remember(const Snapshot& snapshot) const {
    mBefore = snapshot;
    if (!snapshot.canRedo)
        mNewest = snapshot.text;
}

void VettingValidator::follow() {
    if (!mIsCommitting && mEdit->text() == mBefore.text)
        remember(current());
}

/// A line edit's redo can leave a selection that begins before the text, and the next edit would
/// then damage the text.
void VettingValidator::tidySelection() {
    if (mEdit->hasSelectedText() && mEdit->selectionStart() < 0)
        mEdit->deselect();
}

/// Where a commit's replacement is counted from: a selected part goes first.
int VettingValidator::commitOrigin() const {
    return mBefore.selection.length > 0 ? static_cast<int>(mBefore.selection.location)
                                        : mBefore.caret;
}

/// What an input method replaces away from the caret, as far as it lies in the text.
std::optional<TextRange> VettingValidator::replacedBy(const QInputMethodEvent& event) const {
    if (event.replacementStart() == 0 && event.replacementLength() == 0)
        return std::nullopt;
    const auto kept = mBefore.text.size() - static_cast<qsizetype>(mBefore.selection.length);
    const auto start =
        std::clamp<qsizetype>(qsizetype{commitOrigin()} + event.replacementStart(), 0, kept);
    const auto length = std::clamp<qsizetype>(event.replacementLength(), 0, kept - start);
    return TextRange{static_cast<std::size_t>(start), static_cast<std::size_t>(length)};
}

/// Where a caret stands that follows the committed text; the line edit keeps its own where it was.
TextRange VettingValidator::caretBehindCommit(const QString& input) const {
    const auto kept = mBefore.text.size() - static_cast<qsizetype>(mBefore.selection.length) -
                      static_cast<qsizetype>(mReplaced->length);
    const auto inserted = std::max<qsizetype>(0, input.size() - kept);
    return {mReplaced->location + static_cast<std::size_t>(inserted), 0};
}

/// Hands the event to the line edit; a replacement that leaves the text is cut to it, which the
/// line edit would otherwise lengthen by blanks that it never takes back.
void VettingValidator::letCommit(QInputMethodEvent& event) const {
    if (!mReplaced) {
        mEdit->event(&event);
        return;
    }
    QInputMethodEvent within(event.preeditString(), event.attributes());
    within.setCommitString(event.commitString(),
                           static_cast<int>(mReplaced->location) - commitOrigin(),
                           static_cast<int>(mReplaced->length));
    mEdit->event(&within);
    event.setAccepted(within.isAccepted());
}

/// What an input method does is let through in one piece: the line edit tells of the caret halfway,
/// and leaves a selection behind where it takes back a commit that replaced text.
bool VettingValidator::eventFilter(QObject*, QEvent* event) {
    if (event->type() != QEvent::InputMethod)
        return false;
    mHasRefused = false;
    {
        auto& commit = *static_cast<QInputMethodEvent*>(event);
        const QScopedValueRollback committing(mIsCommitting, true);
        const QScopedValueRollback replacing(mReplaced, replacedBy(commit));
        letCommit(commit);
    }
    if (mHasRefused && mEdit->text() == mBefore.text)
        restoreSelection();
    follow();
    return true;
}

/// Whether the line edit is in the middle of an edit, rather than asking about a text it has had
/// for long, as it does when it loses focus.
bool VettingValidator::isEdit(const QString& input) const {
    const bool replacesItself = mBefore.selection.length > 0 && !mEdit->hasSelectedText();
    return input != mBefore.text || replacesItself;
}

QValidator::State VettingValidator::validate(QString& input, int& caret) const {
    if (mIsRestoring || input != mEdit->text())
        return Acceptable;
    // A line edit's redo can put the caret behind the text; what is set here is where it goes.
    caret = std::min(caret, static_cast<int>(input.size()));
    if (!isEdit(input)) {
        remember(current()); // an undo can change the selection alone, without a signal
        return Acceptable;
    }
    // Setting a text forgets all edits; every edit of the user's leaves one to undo or redo.
    const bool isUsers = mEdit->isUndoAvailable() || mEdit->isRedoAvailable();
    QString proposed = input;
    TextRange range =
        mReplaced ? caretBehindCommit(input) : TextRange{static_cast<std::size_t>(caret), 0};
    const bool isAccepted = !isUsers || mFormatter->isPartialStringValid(
                                            &proposed, &range, mBefore.text,
                                            mReplaced.value_or(mBefore.selection), nullptr);
    if (!isAccepted)
        return refuse(input, caret);
    remember(current());
    return Acceptable;
}

/// A line edit takes back a refused edit by itself, but not a refused undo or redo: that is done
/// here, while its signals sleep, and the line edit then finds an unchanged text.
QValidator::State VettingValidator::refuse(QString& input, int& caret) const {
    mHasRefused = true;
    // A plain edit leaves nothing to redo; of redos only the last one does.
    const bool isLastRedo = mBefore.canRedo && input == mNewest;
    if (!mEdit->isRedoAvailable() && !isLastRedo) {
        mBefore.canRedo = false;
        mNewest = mBefore.text;
        return Invalid;
    }
    const QScopedValueRollback restoring(mIsRestoring, true);
    const QSignalBlocker quiet(mEdit);
    stepBack();
    restoreSelection();
    mBefore.canRedo = mEdit->isRedoAvailable();
    if (!mBefore.canRedo)
        mNewest = mBefore.text;
    input = mBefore.text;
    caret = mBefore.caret;
    return Acceptable;
}

/// Brings the old text back, keeping the edits that can be undone where that is possible.
void VettingValidator::stepBack() const {
    if (mEdit->isRedoAvailable()) {
        mEdit->redo();
        if (mEdit->text() == mBefore.text)
            return;
        mEdit->undo();
    }
    mEdit->undo();
    if (mEdit->text() != mBefore.text)
        mEdit->setText(mBefore.text);
}

void VettingValidator::restoreSelection() const {
    const int start = static_cast<int>(mBefore.selection.location);
    const int length = static_cast<int>(mBefore.selection.length);
    if (length == 0)
        mEdit->setCursorPosition(mBefore.caret);
    else if (mBefore.caret == start)
        mEdit->setSelection(start + length, -length);
    else
        mEdit->setSelection(start, length);
}

const VettingValidator* validatorOf(const QLineEdit* edit) {
    return edit ? dynamic_cast<const VettingValidator*>(edit->validator()) : nullptr;
}

} // namespace

void attachFormatter(QLineEdit* edit, std::unique_ptr<Formatter> formatter) {
    delete validatorOf(edit);
    edit->setValidator(new VettingValidator(edit, std::move(formatter)));
}

Formatter* attachedFormatter(const QLineEdit* edit) {
    const VettingValidator* validator = validatorOf(edit);
    return validator ? validator->formatter() : nullptr;
}

} // namespace labelcut
