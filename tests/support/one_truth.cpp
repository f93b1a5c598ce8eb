// Tests of the dialog: what is marked, shown, summed up and sent must be the same.
#include "tests/support/one_truth.h"

#include <gtest/gtest.h>

#include <QAbstractSpinBox>
#include <QGroupBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPointer>

#include "host/dialog/option_editor.h"
#include "tests/host/dialog/dialog_fixtures.h"

namespace labelcut::test {

namespace {

const QString kPageSize = QStringLiteral("PageSize");

QString valueOf(const Settings& marks, const QString& keyword) {
    return choiceFor(marks, keyword).value_or(QString());
}

struct Tick {
    const char* control;
    const char* keyword;
    bool excludedBySpecialTape;
};

constexpr Tick kTicks[] = {
    {"mCutAndEndChkBx", "KvCutAtEnd", false},
    {"mMirrorPrintChkBx", "KvMirror", false},
    {"mAutoCutChkBx", "KvAutoTapeCut", true},
    {"mCutEveryChkBx", "KvAutoTapeCut", true},
    {"mHalfCutChkBx", "KvHalfCut", true},
    {"mChainPrintChkBx", "KvChainPrint", true},
    {"mSpecialTapeChkBx", "KvSpecialTape", false},
    {"mRemoveBlkSpaceChkBx", "KvRemoveBlkSpace", false},
};

void comparePanel(const PrintDialog& dialog, const Settings& marks) {
    const bool special = valueOf(marks, QStringLiteral("KvSpecialTape")) == u"ON";
    for (const Tick& tick : kTicks) {
        const auto* box = dialog.findChild<QCheckBox*>(QLatin1String(tick.control));
        if (!box || box->isHidden() || (special && tick.excludedBySpecialTape))
            continue;
        EXPECT_EQ(box->checkState() == Qt::Checked,
                  valueOf(marks, QLatin1String(tick.keyword)) == u"ON")
            << tick.control;
    }
    const auto* count = dialog.findChild<QLineEdit*>(QStringLiteral("mCutEveryTxBx"));
    if (count && !count->isHidden()) {
        EXPECT_EQ(count->text().toStdString(),
                  valueOf(marks, QStringLiteral("KvCutLabel")).toStdString());
    }
}

void compareFields(const PrintDialog& dialog, const Settings& marks) {
    for (const QComboBox* box : dialog.tabs().currentWidget()->findChildren<QComboBox*>()) {
        if (!box->objectName().startsWith(QStringLiteral("choices-")))
            continue;
        // What cannot be taken stays in the field to be put right, and Print refuses.
        const auto* editor = qobject_cast<OptionEditor*>(box->parentWidget());
        if (editor && !editor->problem().isEmpty())
            continue;
        const QString keyword = box->objectName().mid(8);
        const QString mark = valueOf(marks, keyword);
        const bool custom = mark.startsWith(QStringLiteral("Custom.")) || mark.startsWith(u'{');
        EXPECT_EQ(box->currentData().toString().toStdString(),
                  custom ? "Custom" : mark.toStdString())
            << keyword.toStdString();
    }
}

/// The keywords of the summary's entries, in its order.
QStringList summedUp(const Settings& marks) {
    QStringList keys;
    for (const char* keyword : {"KvCutLabel", "KvAutoTapeCut", "KvCutAtEnd", "KvHalfCut",
                                "KvSpecialTape", "KvChainPrint", "KvMirror", "KvRemoveBlkSpace"}) {
        if (choiceFor(marks, QLatin1String(keyword)))
            keys << QLatin1String(keyword);
    }
    if (keys.contains(QStringLiteral("KvCutLabel")))
        keys.removeOne(QStringLiteral("KvAutoTapeCut"));
    const QString paper = valueOf(marks, kPageSize);
    if (paper.startsWith(QStringLiteral("DC")) || paper.startsWith(QStringLiteral("AV")))
        keys.removeOne(QStringLiteral("KvRemoveBlkSpace"));
    return keys;
}

void compareSummary(const JobModel& model, const Settings& marks) {
    const QStringList keys = summedUp(marks);
    const std::vector<SummaryEntry> entries = panelSummary(model);
    ASSERT_EQ(entries.size(), static_cast<std::size_t>(keys.size()));
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const QString& key = keys[static_cast<qsizetype>(i)];
        const bool counts = key == u"KvCutLabel";
        const bool on = valueOf(marks, counts ? QStringLiteral("KvAutoTapeCut") : key) == u"ON";
        const QString yes =
            counts ? valueOf(marks, key) + QStringLiteral(" labels") : QStringLiteral("Yes");
        EXPECT_EQ(entries[i].value.toStdString(), (on ? yes : QStringLiteral("No")).toStdString())
            << key.toStdString();
    }
}

/// The summary's labels as they are read, against what the model says.
void compareSummaryPage(PrintDialog& dialog) {
    QStringList shown;
    for (const QLabel* label : part<QGroupBox>(dialog, "summary")->findChildren<QLabel*>())
        shown << label->text();
    QStringList expected;
    for (const SummaryGroup& group : wholeSummary(dialog.model())) {
        expected << group.heading;
        for (const auto& [title, value] : group.lines)
            expected << title << value;
    }
    EXPECT_EQ(shown.join(u'\n').toStdString(), expected.join(u'\n').toStdString());
}

/// What follows each of the command's options of that name.
QStringList argumentsOf(const QStringList& words, const QString& option) {
    QStringList found;
    for (qsizetype i = 0; i + 1 < words.size(); ++i) {
        if (words[i] == option)
            found << words[i + 1];
    }
    return found;
}

/// "keyword=choice" for each choice of the job.
QStringList pairsOf(const JobModel& model) {
    QStringList pairs;
    for (const Setting& choice : model.jobSettings())
        pairs << choice.keyword + u'=' + choice.choice;
    return pairs;
}

void compareJob(const JobModel& model, const Settings& marks) {
    const QStringList pairs = pairsOf(model);
    for (const Setting& choice : model.jobSettings())
        EXPECT_EQ(choice.choice.toStdString(), valueOf(marks, choice.keyword).toStdString())
            << choice.keyword.toStdString();
    for (const QString& key : model.panelKeywords() + keywordsOf(model.changedMarks()))
        EXPECT_TRUE(pairs.contains(key + u'=' + valueOf(marks, key))) << key.toStdString();
}

void compareCommands(PrintDialog& dialog) {
    const JobModel& model = dialog.model();
    const QStringList pairs = pairsOf(model);
    const QString command = part<QPlainTextEdit>(dialog, "commandLabelcut")->toPlainText();
    EXPECT_EQ(command.toStdString(), labelcutCommand(model).toStdString());
    const QStringList words = shellWords(command);
    QStringList said = argumentsOf(words, QStringLiteral("--set"));
    for (const QString& paper : argumentsOf(words, QStringLiteral("--page-size")))
        said.prepend(kPageSize + u'=' + paper);
    EXPECT_EQ(said.join(u' ').toStdString(), pairs.join(u' ').toStdString());
    if (!queueOf(model).isEmpty()) {
        const QString lp = part<QPlainTextEdit>(dialog, "commandLp")->toPlainText();
        EXPECT_EQ(argumentsOf(shellWords(lp), QStringLiteral("-o")).join(u' ').toStdString(),
                  pairs.join(u' ').toStdString());
    }
}

void comparePage(PrintDialog& dialog, const Settings& marks) {
    compareFields(dialog, marks);
    const auto* summary = dialog.findChild<QGroupBox*>(QStringLiteral("summary"));
    if (!summary || !dialog.tabs().currentWidget()->isAncestorOf(summary))
        return;
    compareSummaryPage(dialog);
    compareCommands(dialog);
}

/// Only a page in sight is kept up to date: the others are looked at one after the other. While
/// something is being typed that would end it, and only the page in sight is compared.
void comparePages(PrintDialog& dialog, const Settings& marks) {
    comparePage(dialog, marks);
    QTabWidget& tabs = dialog.tabs();
    const QPointer<QWidget> focus = dialog.focusWidget();
    if (qobject_cast<QLineEdit*>(focus) || qobject_cast<QAbstractSpinBox*>(focus))
        return;
    const int inSight = tabs.currentIndex();
    for (int i = 0; i < tabs.count(); ++i) {
        tabs.setCurrentIndex(i);
        comparePage(dialog, marks);
    }
    tabs.setCurrentIndex(inSight);
    if (focus)
        focus->setFocus();
}

} // namespace

void expectOneTruth(PrintDialog& dialog) {
    JobModel& model = dialog.model();
    const Settings marks = model.marks();
    comparePanel(dialog, marks);
    comparePages(dialog, marks);
    compareSummary(model, marks);
    compareJob(model, marks);
    EXPECT_EQ(part<QLabel>(dialog, "sentence")->text().toStdString(),
              jobSentence(model).toStdString());
    // What a panel still had to write would show now.
    model.save();
    EXPECT_EQ(model.marks(), marks);
}

QStringList shellWords(const QString& command) {
    QStringList words;
    QString word;
    bool quoted = false;
    bool any = false;
    for (qsizetype i = 0; i < command.size(); ++i) {
        const QChar c = command[i];
        if (c == u'\'') {
            quoted = !quoted;
            any = true;
        } else if (!quoted && c == u'\\') {
            word += command[++i];
        } else if (!quoted && c == u' ') {
            if (any)
                words << word;
            word.clear();
            any = false;
        } else {
            word += c;
            any = true;
        }
    }
    if (any)
        words << word;
    return words;
}

} // namespace labelcut::test
