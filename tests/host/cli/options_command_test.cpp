// The command line: "labelcut options", what the panels offer.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "tests/support/job_fixtures.h"
#include "tests/support/program.h"

namespace labelcut::test {

using testing::HasSubstr;

namespace {

QJsonObject optionsOf(const QString& ppd) {
    const Outcome outcome =
        run({QStringLiteral("options"), QStringLiteral("--json"), QStringLiteral("--ppd"), ppd});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.err, "");
    QJsonParseError error;
    const auto document = QJsonDocument::fromJson(QByteArray::fromStdString(outcome.out), &error);
    EXPECT_EQ(error.error, QJsonParseError::NoError) << outcome.out;
    return document.object();
}

QStringList keywordsOf(const QJsonObject& all) {
    QStringList keywords;
    const QJsonArray options = all.value(QStringLiteral("options")).toArray();
    for (const auto& option : options)
        keywords << option[QStringLiteral("keyword")].toString();
    return keywords;
}

} // namespace

TEST(OptionsCommandTest, TheTapePrintersOptionsAreListedInThePanelsOrder) {
    const QJsonObject all = optionsOf(kTapePpd);
    EXPECT_EQ(all.value(QStringLiteral("printer")).toString(),
              QStringLiteral("Labelcut Tape Sample, 1.0"));
    EXPECT_EQ(keywordsOf(all).join(u' '),
              QStringLiteral("KvMirror KvAutoTapeCut KvHalfCut KvChainPrint KvSpecialTape "
                             "KvRemoveBlkSpace"));
    const QJsonValue halfCut = all.value(QStringLiteral("options")).toArray().at(2);
    EXPECT_EQ(QJsonDocument(halfCut.toObject()).toJson(QJsonDocument::Compact).toStdString(),
              R"({"choices":[{"keyword":"OFF","title":"Off"},{"keyword":"ON","title":"On"}],)"
              R"("current":"OFF","default":"OFF","keyword":"KvHalfCut","title":"Half cut"})");
}

TEST(OptionsCommandTest, TheRollPrintersOptionsAreListedWithEveryCount) {
    const QJsonObject all = optionsOf(kRollPpd);
    EXPECT_EQ(keywordsOf(all).join(u' '),
              QStringLiteral("KvCutLabel KvCutAtEnd KvMirror KvAutoTapeCut KvRemoveBlkSpace"));
    const QJsonValue cut = all.value(QStringLiteral("options")).toArray().at(0);
    EXPECT_EQ(cut[QStringLiteral("choices")].toArray().size(), 99);
    EXPECT_EQ(cut[QStringLiteral("current")].toString(), QStringLiteral("1"));
}

TEST(OptionsCommandTest, PeopleReadTheSame) {
    const Outcome outcome = run({QStringLiteral("options"), QStringLiteral("--ppd"), kTapePpd});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.out,
                HasSubstr("KvAutoTapeCut (Auto cut), default ON\n    OFF (Off), *ON (On)\n"
                          "KvHalfCut (Half cut), default OFF\n    *OFF (Off), ON (On)\n"));
}

TEST(OptionsCommandTest, TitlesAreInTheUsersLanguage) {
    Start wanted;
    wanted.arguments = {QStringLiteral("options"), QStringLiteral("--ppd"), kTapePpd};
    wanted.environment = {{QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8")},
                          {QStringLiteral("LANG"), QStringLiteral("de_DE.UTF-8")},
                          {QStringLiteral("LC_MESSAGES"), QStringLiteral("de_DE.UTF-8")}};
    wanted.environment[QStringLiteral("LC_ALL")] = QString();
    const Outcome outcome = run(wanted);
    EXPECT_THAT(outcome.out, HasSubstr("KvHalfCut (Halbschnitt), default OFF\n    *OFF (Aus)"));
}

TEST(OptionsCommandTest, APrinterWithoutTheOptionsSaysSo) {
    const Folder folder;
    QByteArray bytes = contentOf(kTapePpd);
    bytes.replace("Kv", "Xx");
    const QString path = folder.file(QStringLiteral("plain.ppd"), bytes);
    const Outcome text = run({QStringLiteral("options"), QStringLiteral("--ppd"), path});
    EXPECT_EQ(text.status, 0);
    EXPECT_EQ(text.out, "\"Labelcut Tape Sample, 1.0\" offers none of the panels' options.\n");
    EXPECT_EQ(keywordsOf(optionsOf(path)), QStringList());
}

TEST(OptionsCommandTest, AnOptionWithoutDefaultHasNone) {
    const Folder folder;
    QByteArray bytes = contentOf(kTapePpd);
    bytes.replace("*DefaultKvHalfCut: OFF", "*DefaultKvHalfCut: Maybe");
    const QJsonObject all = optionsOf(folder.file(QStringLiteral("p.ppd"), bytes));
    const QJsonValue halfCut = all.value(QStringLiteral("options")).toArray().at(2);
    EXPECT_TRUE(halfCut[QStringLiteral("default")].isNull());
}

TEST(OptionsCommandTest, APpdThatCannotBeUsedIsNamedWithLineAndReason) {
    const Folder folder;
    QByteArray longLine = contentOf(kTapePpd);
    longLine.replace("*PCFileName:", "*Comment: \"" + QByteArray(300, 'x') + "\"\n*PCFileName:");
    struct Row {
        QString path;
        const char* sentence;
    };
    const Row rows[] = {
        {folder.path(QStringLiteral("none.ppd")), "none.ppd” does not exist"},
        {folder.path(QStringLiteral(".")), "is no file"},
        {folder.file(QStringLiteral("empty.ppd"), ""), "empty.ppd” is no usable PPD: "},
        {folder.file(QStringLiteral("text.ppd"), "hello\n"),
         "text.ppd” is no usable PPD: Missing asterisk in column 1 in line 1;"},
        {folder.file(QStringLiteral("long.ppd"), longLine),
         "long.ppd” is no usable PPD: Line longer than the maximum allowed (255 characters) in "
         "line 8;"},
        {folder.file(QStringLiteral("quote.ppd"), contentOf(kTapePpd).replace("4.3\"", "4.3")),
         "quote.ppd” is no usable PPD: "},
        {folder.file(QStringLiteral("half.ppd"),
                     contentOf(kTapePpd).left(contentOf(kTapePpd).indexOf("*KvHalfCut ON"))),
         "half.ppd” is no usable PPD: its text ends within the option “KvHalfCut”, which begins in "
         "line "},
        {folder.file(QStringLiteral("many.ppd"),
                     "*PPD-Adobe: \"4.3\"\n" +
                         QByteArray("*UIConstraints: *A B *C D\n").repeated(50'001)),
         "many.ppd” is no usable PPD: it has more than 50,000 constraints;"},
        {QStringLiteral(LABELCUT_PROGRAM), "is no usable PPD: "},
    };
    for (const Row& row : rows) {
        const Outcome outcome = run({QStringLiteral("options"), QStringLiteral("--ppd"), row.path});
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.out, "");
        EXPECT_THAT(outcome.err, HasSubstr(row.sentence));
        EXPECT_EQ(std::ranges::count(outcome.err, '\n'), 1) << outcome.err;
    }
}

} // namespace labelcut::test
