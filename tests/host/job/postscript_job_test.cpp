// The job: PostScript for the printer, made without any print service.
#include "host/job/postscript_job.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QFile>

#include "host/settings/constraints.h"
#include "tests/support/job_fixtures.h"

namespace labelcut {

using testing::HasSubstr;

namespace {

const QSizeF kTape(68, 142);

/// One option per section that code can stand in.
constexpr char kSections[] =
    "*OpenUI *InProlog/P: PickOne\n*OrderDependency: 20 Prolog *InProlog\n*DefaultInProlog: A\n"
    "*InProlog A/A: \"userdict /Prolog true put\"\n*CloseUI: *InProlog\n"
    "*OpenUI *InSetup/S: PickOne\n*OrderDependency: 30 DocumentSetup *InSetup\n"
    "*DefaultInSetup: A\n*InSetup A/A: \"userdict /Setup true put\"\n*CloseUI: *InSetup\n"
    "*OpenUI *Late/L: PickOne\n*OrderDependency: 60 AnySetup *Late\n*DefaultLate: A\n"
    "*Late A/A: \"userdict /Late true put\"\n*CloseUI: *Late\n"
    "*OpenUI *Early/E: PickOne\n*OrderDependency: 50 AnySetup *Early\n*DefaultEarly: A\n"
    "*Early A/A: \"userdict /Early true put\"\n*CloseUI: *Early\n"
    "*OpenUI *OnPage/O: PickOne\n*OrderDependency: 20 PageSetup *OnPage\n*DefaultOnPage: A\n"
    "*OnPage A/A: \"userdict /Pages 2 copy known {2 copy get 1 add} {1} ifelse put\"\n"
    "*CloseUI: *OnPage\n";

constexpr char kJobControl[] =
    "*JCLBegin: \"<1B>%-12345X@PJL JOB<0A>\"\n"
    "*JCLToPSInterpreter: \"@PJL ENTER LANGUAGE = POSTSCRIPT <0A>\"\n"
    "*JCLEnd: \"<1B>%-12345X@PJL EOJ<0A><1B>%-12345X\"\n"
    "*JCLOpenUI *JCLKnife/Knife: PickOne\n*OrderDependency: 10 JCLSetup *JCLKnife\n"
    "*DefaultJCLKnife: ON\n*JCLKnife ON/On: \"@PJL SET KNIFE = ON<0A>\"\n*JCLCloseUI: *JCLKnife\n";

class PostScriptJobTest : public testing::Test {
protected:
    /// Three labels on the tape.
    JobDocument labels() const {
        Result<JobDocument> document = JobDocument::prepare(
            {mFolder.pdf(QStringLiteral("labels.pdf"), {kTape, kTape, kTape})}, std::nullopt);
        EXPECT_TRUE(document);
        return std::move(*document);
    }
    PostScriptJob job(ppd_file_t* ppd, const JobDocument& document) const {
        return {ppd, &document, QStringLiteral("Labels"), QStringLiteral("someone"), 1, {}};
    }
    QString output() const { return mFolder.path(QStringLiteral("out.ps")); }
    /// Writes the job. @return its lines.
    QList<QByteArray> written(const PostScriptJob& job) const {
        const Result<qint64> size = writePostScript(job, output());
        EXPECT_TRUE(size) << size.error().sentence.toStdString();
        const QByteArray bytes = test::contentOf(output());
        EXPECT_EQ(bytes.size(), *size);
        return bytes.split('\n');
    }

    test::Folder mFolder;
};

} // namespace

TEST_F(PostScriptJobTest, TheSetupHoldsTheCodeOfEveryMarkedChoice) {
    const ppd::File printer = test::tapePrinter();
    ASSERT_TRUE(ppd::markOption(printer.get(), "KvHalfCut", "ON"));
    const JobDocument document = labels();
    const QList<QByteArray> lines = written(job(printer.get(), document));

    const auto begin = lines.indexOf("%%BeginSetup");
    const auto end = lines.indexOf("%%EndSetup");
    ASSERT_GE(begin, 0);
    EXPECT_EQ(lines.count("%%BeginSetup"), 1);
    EXPECT_GT(begin, lines.indexOf("%%EndProlog"));
    EXPECT_LT(end, lines.indexOf("%%Page: 1 1"));
    const QList<QByteArray> setup = lines.mid(begin, end - begin);
    const auto feature = setup.indexOf("%%BeginFeature: *KvHalfCut ON");
    ASSERT_GE(feature, 0);
    EXPECT_EQ(setup.at(feature + 1), "userdict /LabelcutHalfCut true put");
    for (const char* other :
         {"*KvMirror OFF", "*KvAutoTapeCut ON", "*KvChainPrint OFF", "*KvSpecialTape OFF",
          "*KvRemoveBlkSpace OFF", "*PageSize T24", "*Density Medium", "*Resolution 360dpi"})
        EXPECT_EQ(setup.count(QByteArray("%%BeginFeature: ") + other), 1) << other;
}

TEST_F(PostScriptJobTest, GhostscriptExecutesTheCode) {
    const ppd::File printer = test::tapePrinter();
    const JobDocument document = labels();
    for (const char* choice : {"ON", "OFF"}) {
        ASSERT_TRUE(ppd::markOption(printer.get(), "KvHalfCut", choice));
        written(job(printer.get(), document));
        EXPECT_EQ(test::executed(output(), "userdict /LabelcutHalfCut get =").trimmed(),
                  QByteArray(choice) == "ON" ? QStringLiteral("true") : QStringLiteral("false"));
    }
}

TEST_F(PostScriptJobTest, ThePaperIsThePrintersBusiness) {
    const ppd::File printer = test::tapePrinter();
    ASSERT_TRUE(ppd::markOption(printer.get(), "PageSize", "T36"));
    const JobDocument document = labels();
    written(job(printer.get(), document));
    EXPECT_EQ(test::executed(output(), "currentpagedevice /PageSize get ==").trimmed(),
              QStringLiteral("[102 142]"));
}

TEST_F(PostScriptJobTest, WithoutAMarkedPaperThePagesBringTheirOwn) {
    const ppd::File printer = test::tapePrinter();
    ASSERT_TRUE(ppd::unmarkOption(printer.get(), "PageSize"));
    const JobDocument document = labels();
    written(job(printer.get(), document));
    EXPECT_EQ(test::executed(output(), "currentpagedevice /PageSize get ==").trimmed(),
              QStringLiteral("[68 142]"));
}

TEST_F(PostScriptJobTest, ACustomPaperIsSetWithItsMeasure) {
    const ppd::File printer = test::tapePrinter();
    ASSERT_TRUE(ppd::markOption(printer.get(), "PageSize", "Custom.50x300"));
    const JobDocument document = labels();
    written(job(printer.get(), document));
    EXPECT_EQ(test::executed(output(), "currentpagedevice /PageSize get ==").trimmed(),
              QStringLiteral("[50 300]"));
}

TEST_F(PostScriptJobTest, EachChoiceStandsInTheSectionThatItsOrderNames) {
    const ppd::File printer = test::printerWith(kSections);
    const JobDocument document = labels();
    const QList<QByteArray> lines = written(job(printer.get(), document));
    const auto at = [&](const char* line) { return lines.indexOf(QByteArray(line)); };
    EXPECT_EQ(at("%%BeginProlog") + 2, at("%%BeginFeature: *InProlog A"));
    EXPECT_LT(at("%%BeginFeature: *InProlog A"), at("%%EndProlog"));
    EXPECT_LT(at("%%BeginSetup"), at("%%BeginFeature: *InSetup A"));
    EXPECT_LT(at("%%BeginFeature: *InSetup A"), at("%%BeginFeature: *Early A"));
    EXPECT_LT(at("%%BeginFeature: *Early A"), at("%%BeginFeature: *Late A"));
    EXPECT_LT(at("%%BeginFeature: *Late A"), at("%%EndSetup"));
    EXPECT_EQ(lines.count("%%BeginFeature: *OnPage A"), 3);
    EXPECT_EQ(at("%%BeginPageSetup") + 2, at("%%BeginFeature: *OnPage A"));
    EXPECT_EQ(test::executed(output(), "[/Prolog /Setup /Early /Late /Pages] {userdict exch get "
                                       "=} forall")
                  .split(u'\n', Qt::SkipEmptyParts),
              (QStringList{QStringLiteral("true"), QStringLiteral("true"), QStringLiteral("true"),
                           QStringLiteral("true"), QStringLiteral("3")}));
}

TEST_F(PostScriptJobTest, JobControlStandsAroundThePostScript) {
    const ppd::File printer = test::printerWith(kJobControl);
    const JobDocument document = labels();
    PostScriptJob controlled = job(printer.get(), document);
    controlled.title = QStringLiteral("Etikett \"größer\"\n@PJL SET KNIFE = OFF");
    const Result<qint64> size = writePostScript(controlled, output());
    ASSERT_TRUE(size) << size.error().sentence.toStdString();
    const QByteArray bytes = test::contentOf(output());
    EXPECT_TRUE(bytes.startsWith("\x1b%-12345X@PJL\n@PJL JOB NAME = "));
    const auto knife = bytes.indexOf("\n@PJL SET KNIFE = ON\n");
    EXPECT_GT(knife, 0);
    EXPECT_LT(knife, bytes.indexOf("@PJL ENTER LANGUAGE"));
    EXPECT_LT(bytes.indexOf("@PJL ENTER LANGUAGE"), bytes.indexOf("%!PS-Adobe-3.0"));
    EXPECT_FALSE(bytes.contains("\n@PJL SET KNIFE = OFF")) << "a title is no command";
    EXPECT_TRUE(bytes.endsWith("@PJL EOJ\n\x1b%-12345X"));
}

TEST_F(PostScriptJobTest, WithoutJobControlTheFileIsPostScriptFromEndToEnd) {
    const ppd::File printer = test::tapePrinter();
    const JobDocument document = labels();
    PostScriptJob named = job(printer.get(), document);
    named.title = QStringLiteral("Größe\n%%Pages: 99");
    const QList<QByteArray> lines = written(named);
    EXPECT_EQ(lines.front(), "%!PS-Adobe-3.0");
    EXPECT_EQ(lines.at(1), "%%Title: Gr??e?%%Pages: 99");
    EXPECT_EQ(lines.at(2), "%%For: someone");
    EXPECT_EQ(lines.at(lines.size() - 2), "%%EOF");
    EXPECT_EQ(lines.count("%%Pages: 3"), 1);
    EXPECT_FALSE(lines.join('\n').contains(QFile::encodeName(document.folder())));
}

TEST_F(PostScriptJobTest, ThePrinterMakesTheCopies) {
    const ppd::File printer = test::tapePrinter();
    const JobDocument document = labels();
    PostScriptJob many = job(printer.get(), document);
    many.copies = 4;
    const QList<QByteArray> lines = written(many);
    EXPECT_EQ(lines.count("%%BeginNonPPDFeature: NumCopies 4"), 1);
    EXPECT_EQ(lines.count("%%Page: 3 3"), 1);
    EXPECT_EQ(lines.count("%%Page: 4 4"), 0);
    EXPECT_EQ(test::executed(output(), "currentpagedevice /NumCopies get ==").trimmed(),
              QStringLiteral("4"));
}

TEST_F(PostScriptJobTest, ForAPrinterThatCannotTheJobRepeatsItsPages) {
    const ppd::File printer = test::printerWith("*cupsManualCopies: True\n");
    const JobDocument document = labels();
    PostScriptJob many = job(printer.get(), document);
    many.copies = 4;
    const QList<QByteArray> lines = written(many);
    EXPECT_EQ(lines.join('\n').count("BeginNonPPDFeature"), 0);
    EXPECT_EQ(lines.count("%%Page: 12 12"), 1);
    EXPECT_EQ(test::inkBoxes(output()).size(), 12U);
}

TEST_F(PostScriptJobTest, OnlyThePagesOfTheRangeArePrinted) {
    const ppd::File printer = test::tapePrinter();
    const JobDocument document = labels();
    PostScriptJob some = job(printer.get(), document);
    some.composition.pages = PageSelection({2, 3});
    EXPECT_EQ(written(some).count("%%Pages: 2"), 1);
    some.composition.pages = PageSelection({4, 9});
    const Result<qint64> none = writePostScript(some, output());
    ASSERT_FALSE(none);
    EXPECT_EQ(none.error().sentence,
              QStringLiteral("There is no label in the range 4-9; the document has 3."));
}

TEST_F(PostScriptJobTest, AnUnwritableOutputIsNamedAndLeavesNothing) {
    const ppd::File printer = test::tapePrinter();
    const JobDocument document = labels();
    const Result<qint64> size =
        writePostScript(job(printer.get(), document), QStringLiteral("/dev/full"));
    ASSERT_FALSE(size);
    EXPECT_THAT(size.error().sentence.toStdString(),
                HasSubstr("“/dev/full” cannot be written (No space left on device)"));
}

} // namespace labelcut
