// Security: texts from elsewhere are shown as they stand, and are never markup, formats, commands
// or instructions to a terminal.
#include <QAccessible>
#include <QAction>
#include <QDir>
#include <QGroupBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QRandomGenerator>
#include <QTextDocument>

#include <unistd.h>

#include "host/core/harmless_text.h"
#include "tests/faults/fault_fixtures.h"

namespace labelcut::test {

using testing::HasSubstr;
using testing::Not;

namespace {

/// A title that would show a picture and take every place of a sentence.
const QString kMarkup = QStringLiteral("<i>x</i><img src=/etc/passwd>%1%2%3%n%s&z");

/// The sample printer with that title wherever the PPD has one.
QString hostilePpd(const QString& path) {
    QString text = QString::fromUtf8(contentOf(kTapePpd));
    static const QRegularExpression titles(
        QStringLiteral("^(\\*(?:OpenUI|OpenGroup|[A-Z][A-Za-z]+) ?\\*?[A-Za-z0-9.]+)/[^:\\n]*:"),
        QRegularExpression::MultilineOption);
    // Translations would come in front of them.
    static const QRegularExpression other(QStringLiteral("^\\*[a-z]{2}(_[A-Z]{2})?\\..*\\n"),
                                          QRegularExpression::MultilineOption);
    text.remove(other);
    text.remove(QRegularExpression(QStringLiteral("^\\*cupsLanguages:.*\\n"),
                                   QRegularExpression::MultilineOption));
    // A colon ends a title in a PPD, and a slash is taken for no other purpose.
    QString markup = kMarkup;
    text.replace(titles, QStringLiteral("\\1/") + markup.replace(u':', u'.') + u':');
    static const QRegularExpression names(
        QStringLiteral("^\\*(NickName|ShortNickName|ModelName): \"[^\"]*\""),
        QRegularExpression::MultilineOption);
    text.replace(names, QStringLiteral("*\\1: \"") + markup + u'"');
    for (const char* pair : {"*Density Dark *Quality Best", "*Quality Best *Density Dark"})
        text += QStringLiteral("*UIConstraints: ") + QLatin1String(pair) + u'\n';
    return fileWith(path, text.toUtf8());
}

/// Whether Qt would take the text for markup where it guesses.
bool isTakenForMarkup(const QString& text) {
    return Qt::mightBeRichText(text);
}

/// Plain text as its author wanted it, however it had to be written.
bool isPlainInDisguise(const QString& text) {
    QTextDocument document;
    document.setHtml(text);
    const QString plain = document.toPlainText();
    return text == Qt::convertFromPlainText(plain, Qt::WhiteSpaceNormal) ||
           text == Qt::convertFromPlainText(plain);
}

void expectPlain(const QWidget& root) {
    for (const QWidget* widget : root.findChildren<QWidget*>()) {
        const std::string who =
            widget->metaObject()->className() + (" " + widget->objectName().toStdString());
        for (const QString& text : {widget->toolTip(), widget->whatsThis(), widget->statusTip()})
            EXPECT_TRUE(!isTakenForMarkup(text) || isPlainInDisguise(text))
                << who << ": " << text.toStdString();
        if (const auto* label = qobject_cast<const QLabel*>(widget)) {
            EXPECT_TRUE(label->textFormat() == Qt::PlainText || !isTakenForMarkup(label->text()))
                << who << ": " << label->text().toStdString();
        }
        if (const auto* box = qobject_cast<const QComboBox*>(widget)) {
            for (int i = 0; i < box->count(); ++i) {
                const QString tip = box->itemData(i, Qt::ToolTipRole).toString();
                EXPECT_TRUE(!isTakenForMarkup(tip) || isPlainInDisguise(tip))
                    << who << ": " << tip.toStdString();
            }
        }
    }
    for (const QAction* action : root.findChildren<QAction*>())
        EXPECT_FALSE(isTakenForMarkup(action->toolTip())) << action->text().toStdString();
}

/// What a shell makes of a command's words; the command itself is not run.
QStringList wordsOf(const QString& command) {
    QProcess shell;
    shell.start(QStringLiteral("sh"),
                {QStringLiteral("-c"), QStringLiteral("printf '%s\\0' ") + command});
    EXPECT_TRUE(shell.waitForFinished());
    EXPECT_EQ(shell.exitCode(), 0) << command.toStdString();
    EXPECT_EQ(shell.readAllStandardError().toStdString(), "") << command.toStdString();
    QStringList words;
    for (const QByteArray& word : shell.readAllStandardOutput().split('\0'))
        words << QString::fromUtf8(word);
    words.removeLast();
    return words;
}

class TextSecurityTest : public testing::Test {
protected:
    std::unique_ptr<PrintDialog> open(const QString& ppd, const QStringList& files) {
        DialogRequest request;
        request.files = files;
        request.ppdPath = ppd;
        if (!mOffscreen)
            mOffscreen.emplace();
        return openDialog(request);
    }

    std::optional<Offscreen> mOffscreen;
    PrivateHome mHome;
};

} // namespace

TEST_F(TextSecurityTest, NoTextIsTakenForMarkupAnywhereInTheWindow) {
    const QString document =
        fileWith(mHome.path(QStringLiteral("<b>%1%2<img src=x>.pdf")), contentOf(kLabels));
    const QString ppd = hostilePpd(mHome.path(QStringLiteral("hostile.ppd")));
    auto dialog = open(ppd, {document, mHome.path(QStringLiteral("<i>gone</i>%1%2.pdf"))});
    ASSERT_TRUE(dialog->model().hasPrinter());
    ASSERT_TRUE(turnUntilTold(*dialog, "<i>gone</i>%1%2.pdf"));
    for (int page = 0; page < dialog->tabs().count(); ++page) {
        openTab(*dialog, page);
        expectPlain(*dialog);
    }
    // A conflict puts titles into sentences, offers and tool tips.
    openTab(*dialog, kFeaturesTab);
    choose(optionBox(*dialog, "Density"), QStringLiteral("Dark"));
    choose(optionBox(*dialog, "Quality"), QStringLiteral("Best"));
    settleWithFix(*dialog);
    ASSERT_THAT(messagesOf(*dialog), HasSubstr(kMarkup.toStdString()));
    expectPlain(*dialog);
    const QString markup = kMarkup;
    EXPECT_TRUE(QAccessible::queryAccessibleInterface(&optionBox(*dialog, "Density"))
                    ->text(QAccessible::Name)
                    .contains(markup));
    EXPECT_TRUE(part<QComboBox>(*dialog, "printers")->currentText().contains(markup));
    EXPECT_THAT(messagesOf(*dialog), Not(HasSubstr("%1\u201d")));
}

TEST_F(TextSecurityTest, NoPlaceOfASentenceIsFilledByAText) {
    // Each place that is still to be filled would take the next text.
    const QString gone = mHome.path(QStringLiteral("%1%2%3%4%n%s%L1.pdf"));
    auto dialog = open(kTapePpd, {gone});
    ASSERT_TRUE(turnUntilTold(*dialog, "%1%2%3%4%n%s%L1.pdf” does not exist"));
    dialog.reset();
    const QString slow = endlessPostScript(mHome.path(QStringLiteral("%1 %2.ps")));
    const Outcome outcome = run({QStringLiteral("print"), gone, QStringLiteral("--ppd"), kTapePpd,
                                 QStringLiteral("-o"), mHome.path(QStringLiteral("o"))});
    EXPECT_THAT(outcome.err, HasSubstr("%1%2%3%4%n%s%L1.pdf” does not exist"));
    const Outcome made = run({QStringLiteral("print"), kLabels, QStringLiteral("--ppd"), kTapePpd,
                              QStringLiteral("-o"), mHome.path(QStringLiteral("%1%2.ps")),
                              QStringLiteral("--title"), QStringLiteral("%1 %n")});
    ASSERT_EQ(made.status, 0) << made.err;
    EXPECT_THAT(made.out, HasSubstr("into the file \"" +
                                    mHome.path(QStringLiteral("%1%2.ps")).toStdString() + "\""));
    EXPECT_TRUE(contentOf(mHome.path(QStringLiteral("%1%2.ps"))).contains("%%Title: %1 %n\n"));
}

TEST_F(TextSecurityTest, CopiedCommandsAreReadByAShellAsTheyAreMeant) {
    QStringList names{
        QStringLiteral("a b.pdf"),     QStringLiteral("'"),         QStringLiteral("\\"),
        QStringLiteral("$(touch x)"),  QStringLiteral("`id`"),      QStringLiteral("-x.pdf"),
        QStringLiteral("~"),           QStringLiteral("*"),         QStringLiteral("=ls"),
        QStringLiteral("#"),           QStringLiteral("a\nb"),      QStringLiteral("a\tb"),
        QStringLiteral("\x1b[201~\n"), QStringLiteral("\u009b31m"), QStringLiteral("!!"),
        QStringLiteral("größe"),       QStringLiteral("{a,b}"),     QStringLiteral("a;b|c&d<e>f"),
        QStringLiteral("%s%n")};
    QRandomGenerator random(20261121);
    const QString letters = QStringLiteral("a '\"\\$`!*?[]{}()<>|&;#~=%-\n\t\r\x1b\x7fé");
    for (int i = 0; i < 60; ++i) {
        QString name;
        for (int length = random.bounded(1, 12); length > 0; --length)
            name += letters[random.bounded(static_cast<int>(letters.size()))];
        names << name;
    }
    const QString folder = mHome.path(QString());
    QStringList files;
    for (const QString& name : names)
        files << folder + name;
    auto dialog = open(kTapePpd, files);
    const QString command = labelcutCommand(dialog->model());
    EXPECT_EQ(wordsOf(command).mid(wordsOf(command).size() - files.size()), files);
    for (const QChar c : command)
        EXPECT_TRUE(c == u'\n' || !isActedOn(c)) << "a terminal would act on it when it is pasted";

    // Names that stand in front of nothing.
    dialog = open(kTapePpd, {QStringLiteral("-"), QStringLiteral("-n"), QStringLiteral("=ls")});
    const QStringList last = wordsOf(labelcutCommand(dialog->model()));
    EXPECT_EQ(last.mid(last.size() - 4),
              (QStringList{QStringLiteral("--"), QStringLiteral("./-"), QStringLiteral("./-n"),
                           QStringLiteral("=ls")}));
    EXPECT_TRUE(labelcutCommand(dialog->model()).endsWith(QStringLiteral("'=ls'")));
}

TEST_F(TextSecurityTest, ATitleIsOneLineAndShowsWhatItIs) {
    const std::pair<const char*, const char*> rows[] = {
        {"plain größe 印 🏷.pdf", "plain größe 印 🏷.pdf"},
        {"a\nb\tc\rd\x1b[31m.pdf", "a�b�c�d�[31m.pdf"},
        {"\u202efdp.exe", "�fdp.exe"},
        {"\u2066a\u2069\u2028b\u2029c\u0085d\u009be", "�a��b�c�d�e"},
        {"\x7f\x01.pdf", "��.pdf"},
        {"\u05d0\u200f\u0627.pdf", "\u05d0\u200f\u0627.pdf"}, // ordinary in its language
    };
    for (const auto& [name, shown] : rows) {
        const QString document = fileWith(mHome.path(QString::fromUtf8(name)), contentOf(kLabels));
        auto dialog = open(kTapePpd, {document});
        EXPECT_EQ(jobTitle(dialog->model().files()).toStdString(), shown);
        const Outcome outcome =
            run({QStringLiteral("print"), document, QStringLiteral("--ppd"), kTapePpd,
                 QStringLiteral("-o"), mHome.path(QStringLiteral("out.ps"))});
        ASSERT_EQ(outcome.status, 0) << outcome.err;
        for (const QChar c : QString::fromStdString(outcome.out))
            EXPECT_TRUE(c == u'\n' || !isActedOn(c)) << shown;
        EXPECT_THAT(outcome.out, HasSubstr(shown));
    }
    EXPECT_EQ(harmless(QString(QChar(0xD800)) + u'a' + QChar(0xDC00)), QStringLiteral("�a�"));
}

TEST_F(TextSecurityTest, ALongTitleDoesNotWidenTheWindow) {
    const QString document =
        fileWith(mHome.path(QString(250, u'w') + QStringLiteral(".pdf")), contentOf(kLabels));
    auto usual = open(kTapePpd, {kLabels});
    const int width = usual->width();
    usual.reset();
    auto dialog = open(kTapePpd, {document});
    turnUntil([&] { return dialog->model().pageCount() > 0; });
    settle();
    EXPECT_EQ(dialog->width(), width);
    EXPECT_TRUE(part<QLabel>(*dialog, "document")->text().contains(QStringLiteral("wwww")));
}

TEST_F(TextSecurityTest, NothingThatIsSaidMovesATerminal) {
    const QString ppd = changedPpd(mHome.path(QStringLiteral("esc.ppd")), "Labelcut Tape Sample",
                                   "\x1b]0;owned\x07\x1b[2J\xc2\x9b");
    const QString gone = mHome.path(QStringLiteral("\x1b[2Jx\nlabelcut: all is well.pdf"));
    const std::vector<QStringList> commands{
        {QStringLiteral("print"), kLabels, QStringLiteral("--ppd"), ppd, QStringLiteral("-o"),
         mHome.path(QStringLiteral("o.ps"))},
        {QStringLiteral("print"), gone, QStringLiteral("--ppd"), kTapePpd, QStringLiteral("-o"),
         mHome.path(QStringLiteral("o.ps"))},
        {QStringLiteral("options"), QStringLiteral("--ppd"), ppd},
        {QStringLiteral("options"), QStringLiteral("--json"), QStringLiteral("--ppd"), ppd},
        {QStringLiteral("options"), QStringLiteral("--ppd"), gone},
        {QStringLiteral("presets"), QStringLiteral("show"), QStringLiteral("--ppd"), ppd,
         QStringLiteral("\x1b[2J")},
        {QStringLiteral("\x1b[2J")},
    };
    for (const QStringList& command : commands) {
        const Outcome outcome = run(command);
        for (const QChar c : QString::fromStdString(outcome.out + outcome.err))
            EXPECT_TRUE(c == u'\n' || c == u'\t' || !isActedOn(c))
                << command.join(u' ').toStdString();
        if (outcome.status != 0) {
            EXPECT_EQ(std::ranges::count(outcome.err, '\n'), 1) << outcome.err;
        }
    }
}

TEST_F(TextSecurityTest, AJobCarriesTitleAndUserAsTheyAre) {
    PrivateCupsd service;
    ASSERT_TRUE(service.start()) << service.errorLog().toStdString();
    ASSERT_TRUE(service.addQueue(QStringLiteral("tape"), kTapePpd));
    const QString own = CupsConnection::userName();
    EXPECT_FALSE(own.isEmpty());
    const auto print = [&](const QString& title, const std::map<QString, QString>& environment) {
        Start start;
        start.arguments = {QStringLiteral("print"),     kLabels,
                           QStringLiteral("--printer"), QStringLiteral("tape"),
                           QStringLiteral("--title"),   title};
        start.environment = environment;
        start.environment[QStringLiteral("CUPS_SERVER")] = service.socketPath();
        const Outcome outcome = run(start);
        EXPECT_EQ(outcome.status, 0) << outcome.err;
    };
    const QString longTitle = QString(300, QChar(0x00E9));
    print(QStringLiteral("a\nb\u202ec"), {{QStringLiteral("USER"), QStringLiteral("somebody")},
                                          {QStringLiteral("LOGNAME"), QStringLiteral("boss")}});
    print(longTitle, {});
    const CupsConnection direct(*ServiceAddress::fromText(service.socketPath()));
    const auto first = direct.jobAttributes(1, {20'000, nullptr});
    ASSERT_TRUE(first);
    EXPECT_EQ(first->title.toStdString(), "a�b�c");
    EXPECT_EQ(first->user.toStdString(), own.toStdString());
    const auto second = direct.jobAttributes(2, {20'000, nullptr});
    ASSERT_TRUE(second);
    EXPECT_EQ(second->title, longTitle.left(127)) << "as much of it as a job can carry";
    // A file says the same of whose it is.
    const QString output = mHome.path(QStringLiteral("out.ps"));
    Start start;
    start.arguments = {QStringLiteral("print"), kLabels, QStringLiteral("--ppd"), kTapePpd,
                       QStringLiteral("-o"),    output};
    start.environment[QStringLiteral("USER")] = QStringLiteral("somebody");
    ASSERT_EQ(run(start).status, 0);
    EXPECT_TRUE(contentOf(output).contains("%%For: " + own.toUtf8() + "\n"));
}

} // namespace labelcut::test
