// Fuzzing: edits of every kind in a field that a formatter watches, against the formatter's own
// verdicts; and the formatter's conversions.
#include <QApplication>
#include <QClipboard>
#include <QFocusEvent>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QLineEdit>

#include <algorithm>
#include <vector>

#include "platform/toolkit/int_value.h"
#include "platform/toolkit/text_encoding.h"
#include "plugins/cut_options/fields/calendar_format.h"
#include "plugins/cut_options/fields/interface_fields.h"
#include "plugins/cut_options/fields/pde_formatter.h"
#include "plugins/cut_options/fields/vetted_edit.h"
#include "tests/plugins/cut_options/fields/recorder.h"
#include "tests/plugins/cut_options/fields/refusals.h"
#include "tools/fuzzing/support/application.h"
#include "tools/fuzzing/support/bytes.h"
#include "tools/fuzzing/support/property.h"

using namespace labelcut;
using fuzz::Bytes;
using fuzz::require;
using test::Question;
using test::Recorder;
using test::Refusals;

namespace {

constexpr int kMostEdits = 60;

/// What a user sees of a field.
struct Sight {
    QString text;
    int caret = 0;
    TextRange selection;
    bool operator==(const Sight&) const = default;
};

class Field {
public:
    explicit Field(Bytes& bytes)
        : mBytes(bytes)
        , mFormatter(PDEFormatter::initWithStyle(bytes.below(14)))
        , mEdit(bytes.flag() ? createTextField(nullptr) : new QLineEdit) {
        if (bytes.flag())
            mFormatter->setMinValue(bytes.below(30));
        if (bytes.flag())
            mFormatter->setMaxValue(bytes.below(300));
        if (bytes.flag())
            mFormatter->setMaxLength(1 + bytes.below(8));
        for (int i = bytes.below(3); i > 0; --i)
            mFormatter->addInvalidCharacter(bytes.string());
        attachFormatter(mEdit.get(), std::make_unique<Recorder>(*mFormatter, mLog));
        const auto count = [this] { ++mTold; };
        QObject::connect(mEdit.get(), &QLineEdit::textChanged, mEdit.get(), count);
        QObject::connect(mEdit.get(), &QLineEdit::textEdited, mEdit.get(), count);
    }

    void play() {
        for (int i = 0; i < kMostEdits && !mBytes.atEnd(); ++i) {
            moveAround();
            const Sight before = sight();
            mLog.clear();
            mRefusals.take();
            mTold = 0;
            mSelectsFirst = false;
            mCommitsElsewhere = false;
            edit();
            checkEdit(before);
            checkText();
        }
    }

private:
    Sight sight() const {
        const int start =
            mEdit->hasSelectedText() ? mEdit->selectionStart() : mEdit->cursorPosition();
        return {
            mEdit->text(),
            mEdit->cursorPosition(),
            {static_cast<std::size_t>(start), static_cast<std::size_t>(mEdit->selectionLength())}};
    }

    void moveAround() {
        const int size = static_cast<int>(mEdit->text().size());
        switch (mBytes.below(5)) {
        case 0:
            return mEdit->setCursorPosition(mBytes.below(size + 1));
        case 1: {
            const int start = mBytes.below(size + 1);
            return mEdit->setSelection(start, mBytes.below(size - start + 1));
        }
        case 2: {
            const int end = mBytes.below(size + 1);
            return mEdit->setSelection(end, -mBytes.below(end + 1));
        }
        case 3:
            return mEdit->end(false);
        default:
            return;
        }
    }

    void press(int key, Qt::KeyboardModifiers modifiers, const QString& text) {
        for (const QEvent::Type phase : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(phase, key, modifiers, text);
            QApplication::sendEvent(mEdit.get(), &event);
        }
    }

    void commit() {
        QInputMethodEvent event;
        mCommitsElsewhere = mBytes.flag();
        if (mCommitsElsewhere)
            event.setCommitString(mBytes.string(), 4 - mBytes.below(9), mBytes.below(4));
        else
            event.setCommitString(mBytes.string());
        QApplication::sendEvent(mEdit.get(), &event);
    }

    void edit() {
        switch (mBytes.below(12)) {
        case 0:
        case 1:
            return press(0, Qt::NoModifier, QString(QLatin1Char(static_cast<char>(mBytes.byte()))));
        case 2:
            return press(0, Qt::NoModifier, mBytes.string().left(1));
        case 3:
            return mEdit->insert(mBytes.string());
        case 4:
            QApplication::clipboard()->setText(mBytes.string());
            return mEdit->paste();
        case 5:
            return commit();
        case 6: {
            // Deleting a word selects it first.
            mSelectsFirst = mBytes.flag();
            return press(mBytes.flag() ? Qt::Key_Backspace : Qt::Key_Delete,
                         mSelectsFirst ? Qt::ControlModifier : Qt::NoModifier, {});
        }
        case 7:
            return mEdit->cut();
        case 8:
            return mEdit->undo();
        case 9:
            return mEdit->redo();
        case 10: {
            QFocusEvent out(QEvent::FocusOut);
            QApplication::sendEvent(mEdit.get(), &out);
            return;
        }
        default:
            return press(Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"));
        }
    }

    void checkEdit(const Sight& before) {
        const QStringList heard = mRefusals.take();
        require(mLog.size() <= 1, "a formatter is asked at most once an edit");
        if (mLog.empty()) {
            require(heard.isEmpty(), "nobody beeps unasked");
            return;
        }
        const Question& asked = mLog.front();
        require(!asked.isAltered, "a formatter changes no proposal");
        require(asked.original == before.text, "the text before is the one that was seen");
        require(mSelectsFirst || mCommitsElsewhere || asked.originalRange == before.selection,
                "the selection before is the one that was seen");
        if (asked.isAccepted) {
            require(mEdit->text() == asked.proposed, "an accepted edit is applied");
            require(heard.isEmpty(), "an accepted edit is silent");
        } else {
            require(sight() == before, "a refused edit leaves text, caret and selection");
            require(mTold == 0, "nobody is told of a refused edit");
            require(heard.size() == 2 && heard.front() == u"beep",
                    "a refusal is one beep and one notification");
        }
        checkAgain(asked);
    }

    /// The formatter on its own comes to the same verdict.
    void checkAgain(const Question& asked) {
        QString proposed = asked.proposed;
        TextRange range = asked.proposedRange;
        const bool isAccepted = mFormatter->isPartialStringValid(&proposed, &range, asked.original,
                                                                 asked.originalRange, nullptr);
        require(isAccepted == asked.isAccepted, "a formatter says the same again");
        mRefusals.take();
    }

    /// What no sequence of accepted edits can break. Bounds of other styles are left out: a
    /// deletion is never vetted and may join digits.
    void checkText() {
        const QString text = mEdit->text();
        const auto fresh = PDEFormatter::initWithStyle(mFormatter->textStyle());
        require(test::append(*fresh, QString(), text), "the text has the style's characters only");
        mRefusals.take();
        const qsizetype length =
            encodedLength(text, TextEncoding::SystemDefault).value_or(text.size());
        const std::int32_t most = mFormatter->maxLength();
        require(most == 0 || length <= most, "the text is no longer than its limit");
        const bool isBounded = mFormatter->textStyle() == kStyleNumber && most == 0;
        require(!isBounded || !mFormatter->isValidityMaxValue() ||
                    intValue(text) <= mFormatter->maxValue(),
                "the number is no larger than its limit");
    }

    Bytes& mBytes;
    std::unique_ptr<PDEFormatter> mFormatter;
    std::vector<Question> mLog;
    Refusals mRefusals;
    int mTold = 0;
    bool mSelectsFirst = false;
    bool mCommitsElsewhere = false;
    std::unique_ptr<QLineEdit> mEdit;
};

void checkConversions(Bytes& bytes) {
    const QString format = bytes.string();
    const QString text = bytes.string();
    const auto formatter = PDEFormatter::initWithFormatString(format, bytes.below(14));
    QVariant value;
    require(formatter->getObjectValue(&value, text, nullptr), "every text has a value");
    require(value.typeId() == QMetaType::QString, "a value is a text");
    require(value.toString() == formatter->stringForObjectValue(text),
            "a value is the text that is shown for it");

    formatter->setTextStyle(kStyleDate);
    const auto seconds = static_cast<qint64>(bytes.word() % 400'000'000'000ULL) - 100'000'000'000;
    const QDateTime date = QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC);
    formatter->setCalendarDate(date);
    QVariantMap locale;
    locale.insert(QLatin1String(kCalendarMonthNames), QStringList(bytes.below(14), bytes.string()));
    locale.insert(QLatin1String(kCalendarAMPMDesignation), bytes.string());
    locale.insert(QLatin1String(kCalendarLocaleName), bytes.string());
    formatter->setCalendarLocale(locale);
    const std::optional<QString> shown = formatter->stringForObjectValue({});
    require(shown.has_value(), "a date is shown");
    require(format.contains(u'%') || shown == format, "a format without directives is the text");
    require(shown->size() <= (format.size() + 1) * 300, "a date stays bounded");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::application();
    Bytes bytes(data, size);
    if (bytes.below(4) == 3)
        checkConversions(bytes);
    else
        Field(bytes).play();
    return 0;
}
