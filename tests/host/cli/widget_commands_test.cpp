// The command line: the dialog, the panel's script and its pictures.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QFile>
#include <QImage>
#include <QProcess>

#include <unistd.h>

#include "tests/support/job_fixtures.h"
#include "tests/support/program.h"

namespace labelcut::test {

using testing::HasSubstr;
using testing::StartsWith;

namespace {

class WidgetCommandsTest : public testing::Test {
protected:
    /// "labelcut snapshot --ppd PPD -o OUTPUT MORE…".
    Outcome snapshot(const QString& output, const char* more = "",
                     const QString& ppd = kTapePpd) const {
        return run(QStringList{QStringLiteral("snapshot"), QStringLiteral("--ppd"), ppd,
                               QStringLiteral("-o"), output} +
                   words(more));
    }
    QImage picture(const char* more) const {
        const QString path = mFolder.path(QStringLiteral("panel.png"));
        QFile::remove(path);
        const Outcome outcome = snapshot(path, more);
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        EXPECT_EQ(outcome.out + outcome.err, "");
        return QImage(path);
    }
    static void expectRefusal(const Outcome& outcome, const char* sentence) {
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.out, "");
        EXPECT_THAT(outcome.err, StartsWith("labelcut: "));
        EXPECT_THAT(outcome.err, HasSubstr(sentence));
        EXPECT_EQ(std::ranges::count(outcome.err, '\n'), 1) << outcome.err;
    }

    Folder mFolder;
};

} // namespace

TEST_F(WidgetCommandsTest, WithoutADisplayTheDialogNamesTheOtherWay) {
    for (const char* arguments : {"", "dialog", "dialog some.pdf --printer shelf"})
        expectRefusal(run(words(arguments)), "There is no display to open the dialog on");
}

TEST_F(WidgetCommandsTest, APrinterThatTheDialogCannotOpenIsToldOnStandardErrorAsWell) {
    const QString text = mFolder.file(QStringLiteral("text.ppd"), "hello\n");
    struct Row {
        const char* option;
        QString printer;
        const char* sentence;
    };
    const Row rows[] = {
        {"--ppd", QStringLiteral("/nonexistent.ppd"), "nonexistent.ppd” does not exist"},
        {"--ppd", text, "text.ppd” is no usable PPD"},
        {"--printer", QStringLiteral("NoSuchQueue"), "print service"},
    };
    for (const Row& row : rows) {
        QProcess dialog;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        environment.insert(QStringLiteral("CUPS_SERVER"), QStringLiteral("/nonexistent/cups.sock"));
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), mFolder.path(QString()));
        dialog.setProcessEnvironment(environment);
        dialog.start(QStringLiteral(LABELCUT_PROGRAM),
                     {QStringLiteral("dialog"), QLatin1String(row.option), row.printer, kLabels});
        dialog.setReadChannel(QProcess::StandardError);
        QByteArray told;
        while (!told.contains("labelcut: ") && dialog.waitForReadyRead(30000))
            told += dialog.readAllStandardError();
        EXPECT_EQ(dialog.state(), QProcess::Running) << "the window stays";
        dialog.terminate();
        EXPECT_TRUE(dialog.waitForFinished(30000)) << row.option;
        told += dialog.readAllStandardError();
        EXPECT_THAT(told.toStdString(), HasSubstr(row.sentence));
        EXPECT_EQ(told.count("labelcut: "), 1) << told.toStdString();
    }
}

TEST_F(WidgetCommandsTest, AScriptIsCarriedOutLineByLine) {
    const QString open = QStringLiteral("{\"do\":\"open\",\"ppd\":\"%1\"}\n").arg(kTapePpd);
    const QString script = mFolder.file(QStringLiteral("script"), open.toUtf8());
    const Outcome outcome = run({QStringLiteral("panel-script"), script});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(std::ranges::count(outcome.out, '\n'), 1);
    EXPECT_THAT(outcome.out, HasSubstr("\"ok\":true"));
}

TEST_F(WidgetCommandsTest, AScriptThatIsNotThereIsNamed) {
    const QString script = mFolder.path(QStringLiteral("none"));
    expectRefusal(run({QStringLiteral("panel-script"), script}), "none\" cannot be read (");
}

TEST_F(WidgetCommandsTest, APictureIsAsItWasAskedFor) {
    const QImage plain = picture("");
    ASSERT_FALSE(plain.isNull());
    EXPECT_NEAR(picture("--scale 2").width(), 2 * plain.width(), 2);
    for (const char* other : {"--dark", "--language de", "--set KvHalfCut=ON"})
        EXPECT_NE(picture(other), plain) << other;
    EXPECT_EQ(picture("--language en"), plain);
}

TEST_F(WidgetCommandsTest, APictureThatCannotBeTakenIsOneSentence) {
    const QString output = mFolder.path(QStringLiteral("panel.png"));
    expectRefusal(snapshot(output, "", mFolder.path(QStringLiteral("none.ppd"))),
                  "none.ppd” does not exist");
    expectRefusal(snapshot(output, "--set KvHalfCut=MAYBE"), "MAYBE");
    expectRefusal(snapshot(output, "--set Nonsense=ON"), "Nonsense");
    EXPECT_FALSE(QFile::exists(output));
    expectRefusal(snapshot(mFolder.path(QStringLiteral("no/folder/panel.png"))),
                  "no/folder/panel.png” cannot be written (");
}

TEST_F(WidgetCommandsTest, AReportThatCannotBeWrittenIsAFailure) {
    struct Row {
        std::function<void()> prepare;
        const char* err;
    };
    const Row rows[] = {
        // Nor does it go into a file that is opened in its place.
        {[] { close(STDOUT_FILENO); },
         "labelcut: The command was carried out, but its report cannot be written to standard "
         "output \\((Bad file descriptor|Input/output error)\\); make room there\\.\n"},
        // A reader that went away knows.
        {[] {
             int ends[2];
             if (pipe(ends) != 0 || dup2(ends[1], STDOUT_FILENO) < 0)
                 _exit(99);
             close(ends[0]);
         },
         ""},
    };
    const QString open = QStringLiteral("{\"do\":\"open\",\"ppd\":\"%1\"}\n").arg(kTapePpd);
    const QString script = mFolder.file(QStringLiteral("script"), open.toUtf8());
    for (const Row& row : rows) {
        for (const QStringList& arguments :
             {QStringList{QStringLiteral("options"), QStringLiteral("--ppd"), kTapePpd},
              QStringList{QStringLiteral("panel-script"), script}}) {
            Start start;
            start.arguments = arguments;
            start.prepare = row.prepare;
            const Outcome outcome = run(start);
            EXPECT_EQ(outcome.status, 1) << arguments.front().toStdString();
            EXPECT_THAT(outcome.err, testing::MatchesRegex(row.err))
                << arguments.front().toStdString();
        }
    }
}

} // namespace labelcut::test
