// Random edits on a real line edit, checked against the vetting function called directly.
#include "plugins/cut_options/fields/pde_formatter.h"
#include "plugins/cut_options/fields/vetted_edit.h"
#include "tests/plugins/cut_options/fields/recorder.h"
#include "tests/plugins/cut_options/fields/refusals.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QTest>

#include <random>
#include <vector>

using namespace labelcut;
using labelcut::test::Question;
using labelcut::test::Recorder;
using labelcut::test::Refusals;

namespace {

/// A field under random edits.
class RandomField {
public:
    explicit RandomField(unsigned seed)
        : mRandom(seed) {
        mStyle = below(14);
        mFormatter = configured();
        if (below(2))
            mFormatter->setMinValue(below(30));
        if (below(2))
            mFormatter->setMaxValue(below(300));
        if (below(2))
            mFormatter->setMaxLength(1 + below(6));
        attachFormatter(&mEdit, std::make_unique<Recorder>(*mFormatter, mLog));
    }

    std::string description() const {
        return "style " + std::to_string(mStyle) + ", text \"" + mEdit.text().toStdString() + "\"";
    }

    /// One random edit, with all that must hold for it.
    void edit() {
        moveAround();
        const QString before = mEdit.text();
        const int caret = mEdit.cursorPosition();
        const TextRange selection = selected();
        mLog.clear();
        mRefusals.take();
        const std::optional<QString> inserted = apply();

        ASSERT_LE(mLog.size(), 1u) << "asked at most once an edit";
        if (mLog.empty()) {
            ASSERT_EQ(mRefusals.take(), QStringList());
            return;
        }
        const Question& asked = mLog.front();
        ASSERT_FALSE(asked.isAltered);
        ++(asked.isAccepted ? accepted : refused);
        ASSERT_EQ(asked.original, before);
        ASSERT_EQ(asked.originalRange, selection);
        ASSERT_EQ(asked.proposedRange.length, 0u) << "an edit leaves a caret";
        if (inserted)
            checkProposal(asked, *inserted);
        checkVerdict(asked);
        if (asked.isAccepted) {
            ASSERT_EQ(mEdit.text(), asked.proposed);
            ASSERT_EQ(static_cast<std::size_t>(mEdit.cursorPosition()),
                      asked.proposedRange.location);
        } else {
            ASSERT_EQ(mEdit.text(), before);
            ASSERT_EQ(mEdit.cursorPosition(), caret);
            ASSERT_EQ(selected(), selection);
        }
    }

    /// With no invalid strings and settings that stay, from an empty field: whatever edits were
    /// accepted, no character of the text is one that the style refuses. Length and range are left
    /// out, since they look at the whole text, which deletions shorten.
    void checkCharacters() {
        const QString text = mEdit.text();
        const auto fresh = PDEFormatter::initWithStyle(mStyle);
        ASSERT_TRUE(test::append(*fresh, QString(), text)) << text.toStdString();
        mRefusals.take();
    }

    int accepted = 0;
    int refused = 0;

private:
    int below(int limit) { return static_cast<int>(mRandom() % static_cast<unsigned long>(limit)); }

    std::unique_ptr<PDEFormatter> configured() { return PDEFormatter::initWithStyle(mStyle); }

    TextRange selected() const {
        const int start = mEdit.hasSelectedText() ? mEdit.selectionStart() : mEdit.cursorPosition();
        return {static_cast<std::size_t>(start), static_cast<std::size_t>(mEdit.selectionLength())};
    }

    void moveAround() {
        const int size = static_cast<int>(mEdit.text().size());
        switch (below(4)) {
        case 0:
            mEdit.setCursorPosition(below(size + 1));
            break;
        case 1: {
            const int start = below(size + 1);
            mEdit.setSelection(start, below(2) ? size - start : -start);
            break;
        }
        case 2:
            mEdit.end(false);
            break;
        default:
            break;
        }
    }

    QString randomText(int most) {
        static const QString kAlphabet =
            QStringLiteral("0123456789019.. aBdxZ$+-:/%\"#~_*é日\u00AD");
        QString text;
        for (int i = 1 + below(most); i > 0; --i)
            text += kAlphabet[below(static_cast<int>(kAlphabet.size()))];
        return text;
    }

    /// @return what was inserted over the selection; nothing for an edit of another kind.
    std::optional<QString> apply() {
        switch (below(9)) {
        case 0:
        case 1:
        case 2: {
            const QString text = randomText(1);
            QTest::keyClicks(&mEdit, text.at(0) < QChar(0x80) ? text : QStringLiteral("5"));
            return text.at(0) < QChar(0x80) ? text : QStringLiteral("5");
        }
        case 3: {
            const QString text = randomText(4);
            QApplication::clipboard()->setText(text);
            mEdit.paste();
            return text;
        }
        case 4: {
            const QString text = randomText(3);
            QInputMethodEvent event;
            event.setCommitString(text);
            QApplication::sendEvent(&mEdit, &event);
            return text;
        }
        case 5:
            QTest::keyClick(&mEdit, below(2) ? Qt::Key_Backspace : Qt::Key_Delete);
            return std::nullopt;
        case 6:
            mEdit.cut();
            return std::nullopt;
        case 7:
            mEdit.undo();
            return std::nullopt;
        default:
            mEdit.redo();
            return std::nullopt;
        }
    }

    static void checkProposal(const Question& asked, const QString& inserted) {
        QString expected = asked.original;
        expected.replace(static_cast<qsizetype>(asked.originalRange.location),
                         static_cast<qsizetype>(asked.originalRange.length), inserted);
        ASSERT_EQ(asked.proposed, expected);
        ASSERT_EQ(asked.proposedRange.location,
                  asked.originalRange.location + static_cast<std::size_t>(inserted.size()));
    }

    void checkVerdict(const Question& asked) {
        const QStringList heard = mRefusals.take();
        QString proposed = asked.proposed;
        TextRange range = asked.proposedRange;
        const bool direct = mFormatter->isPartialStringValid(&proposed, &range, asked.original,
                                                             asked.originalRange, nullptr);
        ASSERT_EQ(asked.isAccepted, direct);
        ASSERT_EQ(heard, mRefusals.take());
        ASSERT_EQ(heard.size(), direct ? 0 : 2) << "one beep and one notification for a refusal";
    }

    std::mt19937 mRandom;
    int mStyle = 0;
    std::unique_ptr<PDEFormatter> mFormatter;
    std::vector<Question> mLog;
    Refusals mRefusals;
    QLineEdit mEdit;
};

TEST(VettingProperty, HoldsForRandomStylesBoundsLimitsAndEdits) {
    int accepted = 0;
    int refused = 0;
    for (unsigned seed = 0; seed < 600; ++seed) {
        RandomField field(seed);
        for (int round = 0; round < 40; ++round) {
            SCOPED_TRACE(testing::Message()
                         << "seed " << seed << ", edit " << round << ", " << field.description());
            field.edit();
            field.checkCharacters();
            if (testing::Test::HasFatalFailure())
                return;
        }
        accepted += field.accepted;
        refused += field.refused;
    }
    EXPECT_GT(accepted, 3000);
    EXPECT_GT(refused, 3000);
}

TEST(VettingQuestion, IsNotAskedOfATextThatStays) {
    const auto formatter = PDEFormatter::initWithStyle(kStyleDecimal);
    std::vector<Question> log;
    QLineEdit edit;
    attachFormatter(&edit, std::make_unique<Recorder>(*formatter, log));
    QTest::keyClicks(&edit, QStringLiteral("15"));
    EXPECT_EQ(log.size(), 2u);
    QTest::keyClick(&edit, Qt::Key_Return);
    EXPECT_EQ(log.size(), 2u) << "Return changes nothing";
}

TEST(VettingQuestion, NamesTheStretchThatACommitReplacesAndTheCaretBehindIt) {
    const auto formatter = PDEFormatter::initWithStyle(kStyleDecimal);
    struct Case {
        int replaceLength;
        const char* proposed;
        TextRange replaced;
    };
    // Of a length below zero nothing is replaced.
    for (const Case& c : {Case{1, "1775", {1, 1}}, Case{0, "177.5", {1, 0}},
                          Case{-1, "177.5", {1, 0}}, Case{-9, "177.5", {1, 0}}}) {
        SCOPED_TRACE(c.replaceLength);
        std::vector<Question> log;
        QLineEdit edit(QStringLiteral("1.5"));
        attachFormatter(&edit, std::make_unique<Recorder>(*formatter, log));
        QInputMethodEvent event;
        event.setCommitString(QStringLiteral("77"), -2, c.replaceLength);
        QApplication::sendEvent(&edit, &event);
        ASSERT_EQ(log.size(), 1u);
        EXPECT_EQ(log[0].proposed.toStdString(), c.proposed);
        EXPECT_EQ(log[0].proposedRange, (TextRange{3, 0}));
        EXPECT_EQ(log[0].originalRange, c.replaced);
        EXPECT_EQ(edit.text().toStdString(), c.proposed);
    }
}

} // namespace
