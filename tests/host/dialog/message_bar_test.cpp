// Messages in lines.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAccessible>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QToolButton>

#include "tests/host/dialog/dialog_fixtures.h"

namespace labelcut::test {

namespace {

class MessageBarTest : public testing::Test {
protected:
    MessageBarTest() {
        mWindow.resize(500, 300);
        mBar.setParent(&mWindow);
        mWindow.show();
        settle();
    }
    std::vector<std::string> texts() const {
        std::vector<std::string> all;
        for (const QString& text : mBar.texts())
            all.push_back(text.toStdString());
        return all;
    }
    /// What the Tab key reaches in the bar, in its order.
    std::vector<QWidget*> tabStops() const {
        std::vector<QWidget*> stops;
        for (QWidget* next = mBar.nextInFocusChain(); next != &mBar;
             next = next->nextInFocusChain())
            if (mBar.isAncestorOf(next) && (next->focusPolicy() & Qt::TabFocus))
                stops.push_back(next);
        return stops;
    }
    void say(const char* name, const char* text, const std::vector<MessageAction>& actions = {}) {
        mBar.show(QLatin1String(name), MessageBar::Kind::Warning, QString::fromUtf8(text), actions);
        mBar.adjustSize();
        settle();
    }

    Offscreen mOffscreen;
    QWidget mWindow;
    MessageBar mBar;
};

} // namespace

TEST_F(MessageBarTest, ItIsNotThereWithoutAMessage) {
    EXPECT_TRUE(mBar.isHidden());
    say("one", "First.");
    EXPECT_FALSE(mBar.isHidden());
    mBar.remove(QStringLiteral("one"));
    EXPECT_TRUE(mBar.isHidden());
    mBar.remove(QStringLiteral("one"));
}

TEST_F(MessageBarTest, AMessageOfTheSameNameTakesTheOtherOnesPlace) {
    say("one", "First.");
    say("two", "Second.");
    say("one", "Third.");
    EXPECT_THAT(texts(), testing::ElementsAre("Second.", "Third."));
}

TEST_F(MessageBarTest, AMessageThatSaysTheSameStaysAndKeepsTheFocus) {
    say("one", "First.", {{QStringLiteral("Undo"), [] {}}});
    auto* button = mBar.findChild<QPushButton*>();
    button->setFocus();
    say("one", "First.", {{QStringLiteral("Undo"), [] {}}});
    EXPECT_EQ(mBar.findChild<QPushButton*>(), button);
    say("one", "First.", {{QStringLiteral("Redo"), [] {}}});
    EXPECT_EQ(mBar.findChild<QPushButton*>()->text().toStdString(), "Redo");
}

TEST_F(MessageBarTest, AnOfferThatComesLaterLeavesTheOthersInPlaceAndIsReachedAsItIsRead) {
    mWindow.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&mWindow));
    mBar.setFixedWidth(480);
    say("one", "First.", {{QStringLiteral("Undo"), [] {}}});
    say("two", "Second.", {{QStringLiteral("Again"), [] {}}});
    auto* row = mBar.findChild<QWidget*>(QStringLiteral("one"));
    QPushButton* undo = offer(mBar, QStringLiteral("Undo"));
    const QPoint place = undo->mapTo(&mBar, QPoint());
    undo->setFocus();
    say("one", "First.", {{QStringLiteral("Mend"), [] {}}, {QStringLiteral("Undo"), [] {}}});
    EXPECT_EQ(mBar.findChild<QWidget*>(QStringLiteral("one")), row) << "not announced again";
    EXPECT_TRUE(undo->hasFocus());
    EXPECT_EQ(undo->mapTo(&mBar, QPoint()).x(), place.x());
    QPushButton* mend = offer(mBar, QStringLiteral("Mend"));
    ASSERT_TRUE(mend);
    EXPECT_LT(mend->mapTo(&mBar, QPoint()).x(), undo->mapTo(&mBar, QPoint()).x());
    const auto crosses = mBar.findChildren<QToolButton*>();
    const std::vector<QWidget*> expected{mend, undo, crosses.first(),
                                         offer(mBar, QStringLiteral("Again")), crosses.last()};
    EXPECT_EQ(tabStops(), expected);
    say("one", "First.", {{QStringLiteral("Undo"), [] {}}});
    EXPECT_FALSE(offer(mBar, QStringLiteral("Mend")));
    EXPECT_TRUE(undo->hasFocus());
}

TEST_F(MessageBarTest, AnOfferIsTakenAndADismissedMessageGoes) {
    int taken = 0;
    say("one", "First.", {{QStringLiteral("R&D"), [&] { ++taken; }}});
    click(*mBar.findChild<QPushButton*>());
    EXPECT_EQ(taken, 1);
    EXPECT_EQ(mBar.findChild<QPushButton*>()->text().toStdString(), "R&&D") << "no key";
    click(*mBar.findChild<QToolButton*>());
    EXPECT_TRUE(mBar.texts().isEmpty());
}

TEST_F(MessageBarTest, ManySentencesAreShortenedAndAllOfThemStandInTheToolTip) {
    for (int i = 0; i < 9; ++i)
        mBar.add(QStringLiteral("told"), QStringLiteral("Sentence %1.").arg(i));
    mBar.add(QStringLiteral("told"), QStringLiteral("Sentence 3."));
    settle();
    ASSERT_EQ(texts().size(), 1U);
    EXPECT_EQ(mBar.texts().front().split(u'\n').size(), 9) << "none twice";
    for (const QLabel* label : mBar.findChildren<QLabel*>()) {
        if (label->text().isEmpty())
            continue;
        EXPECT_EQ(label->text().split(u'\n').size(), MessageBar::kMaxSentences);
        EXPECT_TRUE(label->text().endsWith(QStringLiteral("6 more")));
        EXPECT_TRUE(label->toolTip().contains(QStringLiteral("Sentence 8.")));
    }
}

TEST_F(MessageBarTest, MarkupIsShownAsItIs) {
    say("one", "<b>&amp;</b>");
    for (const QLabel* label : mBar.findChildren<QLabel*>()) {
        EXPECT_TRUE(label->text().isEmpty() || label->textFormat() == Qt::PlainText)
            << label->text().toStdString();
    }
}

TEST_F(MessageBarTest, AMessageIsAnAlertWhoseNameIsItsText) {
    say("one", "First.");
    auto* row = mBar.findChild<QWidget*>(QStringLiteral("one"));
    ASSERT_TRUE(row);
    QAccessibleInterface* seen = QAccessible::queryAccessibleInterface(row);
    ASSERT_TRUE(seen);
    EXPECT_EQ(seen->role(), QAccessible::AlertMessage);
    EXPECT_EQ(seen->text(QAccessible::Name).toStdString(), "First.");
}

TEST_F(MessageBarTest, WhatIsSaidTwiceStandsThereOnce) {
    say("document", "It cannot be read.");
    say("two", "Second.");
    say("run", "It cannot be read.");
    EXPECT_THAT(texts(), testing::ElementsAre("Second.", "It cannot be read."));
    mBar.remove(QStringLiteral("run"));
    EXPECT_THAT(texts(), testing::ElementsAre("Second."));
}

TEST_F(MessageBarTest, TheFocusGoesBackToWhereItWasWhenItsMessageGoes) {
    const Offscreen offscreen;
    QLineEdit field(&mWindow);
    field.show();
    mWindow.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&mWindow));
    field.setFocus();
    say("one", "First.",
        {{QStringLiteral("Undo"), [this] { mBar.remove(QStringLiteral("one")); }}});
    say("two", "Second.");
    EXPECT_TRUE(field.hasFocus());
    click(*mBar.findChild<QPushButton*>());
    EXPECT_TRUE(field.hasFocus()) << "after an offer";
    click(*mBar.findChild<QToolButton*>());
    EXPECT_TRUE(field.hasFocus()) << "after it was dismissed";
}

} // namespace labelcut::test
