// The keys that the dialog announces by underlining: none stands for two things on one page.
#include <gtest/gtest.h>

#include <QKeySequence>
#include <QLabel>
#include <QMap>

#include "host/texts/host_text.h"
#include "tests/host/dialog/dialog_fixtures.h"

namespace labelcut::test {

namespace {

/// Who answers to which key, among what can be seen now.
QMap<QString, QStringList> keysOn(const PrintDialog& dialog) {
    QMap<QString, QStringList> keys;
    const auto add = [&](const QString& text) {
        const QKeySequence key = QKeySequence::mnemonic(text);
        if (!key.isEmpty())
            keys[key.toString()] << text;
    };
    for (const QLabel* label : dialog.findChildren<QLabel*>()) {
        if (label->isVisible() && label->buddy())
            add(label->text());
    }
    for (const QAbstractButton* button : dialog.findChildren<QAbstractButton*>()) {
        if (button->isVisible())
            add(button->text());
    }
    return keys;
}

} // namespace

/// Run once for each language; the environment says which.
TEST(MnemonicsTest, EachKeyStandsForOneThing) {
    const Offscreen offscreen;
    const PrivateHome home;
    const auto dialog = openDialog(kTapePpd, {{QStringLiteral("KvHalfCut"), QStringLiteral("ON")}});
    EXPECT_EQ(hostText("Close").toStdString(), qgetenv("LABELCUT_WORD_FOR_CLOSE").toStdString())
        << "the language is not the one that was asked for";
    for (int tab = 0; tab < dialog->tabs().count(); ++tab) {
        openTab(*dialog, tab);
        const QMap<QString, QStringList> keys = keysOn(*dialog);
        EXPECT_GE(keys.size(), 8) << "page " << tab;
        for (auto key = keys.cbegin(); key != keys.cend(); ++key)
            EXPECT_EQ(key->size(), 1) << key.key().toStdString() << " on page " << tab << ": "
                                      << key->join(QStringLiteral(" | ")).toStdString();
    }
}

} // namespace labelcut::test
