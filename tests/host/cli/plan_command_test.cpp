// The command line: "labelcut plan", what would be printed and cut.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "tests/support/job_fixtures.h"
#include "tests/support/program.h"

namespace labelcut::test {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace {

constexpr QSizeF kTape(68, 142);

class PlanCommandTest : public testing::Test {
protected:
    static Outcome plan(const QStringList& files, const char* more, const QString& ppd = kTapePpd) {
        return run(QStringList{QStringLiteral("plan")} + files +
                   QStringList{QStringLiteral("--ppd"), ppd} + words(more));
    }
    /// What is told where nothing goes wrong.
    static std::string told(const QStringList& files, const char* more,
                            const QString& ppd = kTapePpd) {
        const Outcome outcome = plan(files, more, ppd);
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.err, "");
        return outcome.out;
    }
    static QJsonObject json(const QStringList& files, const char* more,
                            const QString& ppd = kTapePpd) {
        const auto bytes = QByteArray::fromStdString(told(files, more, ppd));
        QJsonParseError error;
        const QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
        EXPECT_EQ(error.error, QJsonParseError::NoError) << bytes.toStdString();
        return document.object();
    }
    /// The sample printer for tape without what its panel is about.
    QString plainPpd() const {
        return mFolder.file(QStringLiteral("plain.ppd"), contentOf(kTapePpd).replace("Kv", "Xx"));
    }

    Folder mFolder;
};

} // namespace

TEST_F(PlanCommandTest, LabelsCutsAndTapeAreToldInPlainWords) {
    EXPECT_EQ(told({kLabels}, "--set KvHalfCut=ON --pages 1-3"),
              "Plan of \"" + kLabels.toStdString() +
                  "\" for \"Labelcut Tape Sample, 1.0\", T24, 24 × 50.1 mm:\n"
                  "  lead  blank tape, half cut\n"
                  "  1-3   pages 1-3, 24 × 50.1 mm, half cut after each, full cut after the last\n"
                  "  end   full cut\n"
                  "3 labels: 1 full cut, 3 half cuts, 0 cuts by hand.\n"
                  "At least 150.3 mm of 24 mm tape; the blank lead is waste, how long it is the "
                  "printer's description does not say.\n");
}

TEST_F(PlanCommandTest, OrderCopiesAndFilesAreToldWithTheirLabels) {
    const QString one = mFolder.pdf(QStringLiteral("one.pdf"), {kTape, kTape});
    const QString two = mFolder.pdf(QStringLiteral("two.pdf"), {kTape, kTape, {68, 100}});
    EXPECT_THAT(told({one, two}, "--reverse --copies 2 --set KvAutoTapeCut=OFF"),
                HasSubstr("  1      page 5 (page 3 of \"two.pdf\"), copy 1, 24 × 35.3 mm, no cut\n"
                          "  2-3    pages 4-3 (pages 2-1 of \"two.pdf\"), copy 1, 24 × 50.1 mm, no "
                          "cut\n"
                          "  4-5    pages 2-1 (pages 2-1 of \"one.pdf\"), copy 1, 24 × 50.1 mm, no "
                          "cut\n"
                          "  6      page 5 (page 3 of \"two.pdf\"), copy 2,"));
    EXPECT_THAT(told({one}, "--no-collate --copies 3"),
                HasSubstr("  1-3   page 1, copies 1-3, 24 × 50.1 mm, full cut after each\n"
                          "  4-6   page 2, copies 1-3, "));
}

TEST_F(PlanCommandTest, APageThatLosesAnEdgeIsToldWithTheWaysOut) {
    const QString file = mFolder.pdf(QStringLiteral("a.pdf"), {kTape, {68, 216}, {68, 220}});
    const std::string sentence = told({file}, "");
    EXPECT_THAT(sentence, HasSubstr("page 2, 24 × 76.2 mm, cut off by 26.1 mm at the length"));
    EXPECT_THAT(sentence, AllOf(HasSubstr("--fit scale"), HasSubstr("--fit turn"),
                                HasSubstr("--fit actual")));
    EXPECT_THAT(told({file}, "--fit actual"), Not(HasSubstr("--fit")));
    EXPECT_THAT(told({file}, "--fit scale"),
                AllOf(HasSubstr("page 2, 24 × 76.2 mm, scaled to 63 %"), Not(HasSubstr("--fit"))));
    EXPECT_THAT(told({file}, "--fit turn"), HasSubstr("page 2, 24 × 76.2 mm, turned, cut off by "
                                                      "52.2 mm at the width"));
}

TEST_F(PlanCommandTest, APrinterOfWhichNoPanelSpeaksHasLabelsAndNoCuts) {
    const QString ppd = plainPpd();
    EXPECT_THAT(told({kLabels}, "", ppd),
                AllOf(HasSubstr("What is cut is not known: no panel of this printer says it.\n"
                                "601.1 mm of 24 mm labels.\n"),
                      HasSubstr("  1-12   pages 1-12, 24 × 50.1 mm\n"), Not(HasSubstr("lead"))));
    const QJsonObject plan = json({kLabels}, "--json", ppd);
    EXPECT_FALSE(plan[QLatin1String("cutsKnown")].toBool(true));
    for (const char* name : {"lead", "medium", "mirrored", "removesBlankSpace"})
        EXPECT_TRUE(plan[QLatin1String(name)].isNull()) << name;
    EXPECT_TRUE(plan[QLatin1String("labels")][0][QLatin1String("cutAfter")].isNull());
    const QJsonObject figures = plan[QLatin1String("figures")].toObject();
    for (const char* name : {"fullCuts", "halfCuts", "handCuts", "hasWaste"})
        EXPECT_TRUE(figures[QLatin1String(name)].isNull()) << name;
    EXPECT_EQ(figures[QLatin1String("labels")].toInt(), 12);
}

TEST_F(PlanCommandTest, ChainedMirroredAndSpecialTapeAreNamed) {
    EXPECT_THAT(told({kLabels}, "--set KvChainPrint=ON --set KvMirror=ON"),
                AllOf(HasSubstr("mm, mirrored:\n"),
                      HasSubstr("lead   none: label 1 follows the last one of the job before\n"),
                      HasSubstr("end    no cut: the last label stays in the printer")));
    EXPECT_THAT(told({kLabels}, "--set KvSpecialTape=ON --set KvAutoTapeCut=OFF"),
                AllOf(HasSubstr("end    cut by hand\n"), HasSubstr("24 mm special tape")));
}

TEST_F(PlanCommandTest, AJobOfMillionsOfLabelsIsToldShortly) {
    const std::string text = told({kLabels}, "--copies 9999");
    EXPECT_LT(text.size(), 100'000U);
    EXPECT_THAT(text, AllOf(HasSubstr("and 118788 more labels; --json lists more of them\n"),
                            HasSubstr("119988 labels: 119989 full cuts")));
    const QJsonObject plan = json({kLabels}, "--copies 9999 --json");
    EXPECT_EQ(plan[QLatin1String("labels")].toArray().size(), 100'000);
    EXPECT_TRUE(plan[QLatin1String("labelsCutOff")].toBool());
    EXPECT_EQ(plan[QLatin1String("figures")][QLatin1String("labels")].toInt(), 119'988);
}

TEST_F(PlanCommandTest, TheExampleOfTheDocumentationIsWhatIsWritten) {
    const QByteArray text = contentOf(QStringLiteral(LABELCUT_SAMPLES "/../docs/plan.md"));
    const qsizetype start = text.indexOf("```json\n") + 8;
    const QByteArray example = text.mid(start, text.indexOf("```", start) - start);
    EXPECT_EQ(told({kLabels}, "--pages 2 --json"), example.toStdString());
}

TEST_F(PlanCommandTest, WhatATerminalWouldActOnIsNotWritten) {
    const QString ppd = mFolder.file(
        QStringLiteral("p.ppd"), contentOf(kTapePpd).replace("Tape Sample, 1.0", "Ta\x1bpe, 1.0"));
    for (const char* more : {"", "--json"})
        EXPECT_THAT(plan({kLabels}, more, ppd).out, Not(HasSubstr("\x1b"))) << more;
}

TEST_F(PlanCommandTest, WhereThereIsNoPlanASentenceSaysWhy) {
    struct Row {
        QString file;
        const char* more;
        int status;
        const char* sentence;
    };
    const Row rows[] = {
        {kLabels, "--pages 13-", 1, "13-"},
        {kLabels, "--fit large", 2, "--fit large"},
        {kLabels, "--pages 3,,4", 2, "--pages 3,,4"},
        {kLabels, "--copies 0", 2, "--copies 0"},
        {kLabels, "--set KvHalfCut=MAYBE", 1, "MAYBE"},
        {mFolder.path(QStringLiteral("none.pdf")), "", 1, "none.pdf"},
        {mFolder.file(QStringLiteral("bad.pdf"), "%PDF-1.4\nnothing"), "", 1, "bad.pdf"},
        {mFolder.encryptedPdf(QStringLiteral("locked.pdf")), "", 1, "locked.pdf"},
    };
    for (const Row& row : rows) {
        const Outcome outcome = plan({row.file}, row.more);
        EXPECT_EQ(outcome.status, row.status) << row.more << outcome.err;
        EXPECT_EQ(outcome.out, "");
        EXPECT_THAT(outcome.err, AllOf(StartsWith("labelcut: "), HasSubstr(row.sentence)));
        EXPECT_EQ(std::ranges::count(outcome.err, '\n'), 1) << outcome.err;
    }
}

} // namespace labelcut::test
