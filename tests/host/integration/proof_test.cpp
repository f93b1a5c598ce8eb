// The main job, end to end: choices given on the command line arrive in the job's attributes, in
// the PostScript that reaches the printer, and are executed there. The same choices without a print
// service give the same features.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QRegularExpression>

#include <memory>

#include "host/service/cups_connection.h"
#include "tests/support/job_fixtures.h"
#include "tests/support/private_cupsd.h"
#include "tests/support/program.h"

namespace labelcut::test {

using testing::HasSubstr;

namespace {

/// A printer, choices, and what they must do when the printer executes them.
struct Case {
    const char* name;
    const char* queue;
    QString ppd;
    /// KEYWORD=CHOICE each.
    std::vector<const char*> choices;
    /// PostScript that prints the effect, and what it must print, blanks simplified.
    const char* probe;
    const char* effect;
};

/// Half cut on the printer for tape.
Case halfCut() {
    return {
        "HalfCut", "tape", kTapePpd, {"KvHalfCut=ON"}, "userdict /LabelcutHalfCut get =", "true"};
}

std::vector<Case> cases() {
    std::vector<Case> all{halfCut()};
    all.push_back({"Defaults",
                   "tape",
                   kTapePpd,
                   {},
                   "userdict /LabelcutHalfCut get = userdict /LabelcutAutoTapeCut get =",
                   "false true"});
    all.push_back({"SpecialTape",
                   "tape",
                   kTapePpd,
                   {"KvSpecialTape=ON", "KvAutoTapeCut=OFF", "KvMirror=ON", "PageSize=DC24"},
                   "userdict /LabelcutSpecialTape get = userdict /LabelcutAutoTapeCut get = "
                   "userdict /LabelcutMirror get = currentpagedevice /PageSize get ==",
                   "true false true [68 68]"});
    all.push_back({"EveryTapeChoice",
                   "tape",
                   kTapePpd,
                   {"KvHalfCut=ON", "KvChainPrint=ON", "KvRemoveBlkSpace=ON", "KvMirror=ON",
                    "Density=Dark", "PageSize=T36"},
                   "userdict /LabelcutChainPrint get = userdict /LabelcutRemoveBlkSpace get = "
                   "userdict /LabelcutDensity get = currentpagedevice /PageSize get ==",
                   "true true Dark [102 142]"});
    all.push_back({"CutEveryFive",
                   "roll",
                   kRollPpd,
                   {"KvCutLabel=5", "KvCutAtEnd=ON"},
                   "userdict /LabelcutCutLabel get = userdict /LabelcutCutAtEnd get = "
                   "userdict /LabelcutAutoTapeCut get =",
                   "5 true true"});
    all.push_back({"NoAutoCut",
                   "roll",
                   kRollPpd,
                   {"KvAutoTapeCut=OFF"},
                   "userdict /LabelcutAutoTapeCut get = userdict /LabelcutCutLabel get =",
                   "false 1"});
    return all;
}

/// Keywords that a job must carry for each printer, whatever was asked for.
QStringList panelKeywords(const QString& queue) {
    return words(queue == u"tape" ? "PageSize KvMirror KvAutoTapeCut KvHalfCut KvChainPrint "
                                    "KvSpecialTape KvRemoveBlkSpace"
                                  : "PageSize KvCutLabel KvCutAtEnd KvMirror KvAutoTapeCut "
                                    "KvRemoveBlkSpace");
}

/// The features that PostScript sets and their code, in order: "KvHalfCut ON: userdict …".
QStringList featuresIn(const QByteArray& postScript) {
    QStringList all;
    const QList<QByteArray> lines = postScript.split('\n');
    for (qsizetype i = 0; i + 1 < lines.size(); ++i) {
        if (lines[i].startsWith("%%BeginFeature: *"))
            all << QString::fromUtf8(lines[i].mid(17).trimmed() + ": " + lines[i + 1].trimmed());
    }
    return all;
}

class ProofTest : public testing::TestWithParam<Case> {
protected:
    static void SetUpTestSuite() {
        sService = std::make_unique<PrivateCupsd>();
        ASSERT_TRUE(sService->start()) << sService->errorLog().toStdString();
        ASSERT_TRUE(sService->addQueue(QStringLiteral("tape"), kTapePpd));
        ASSERT_TRUE(sService->addQueue(QStringLiteral("roll"), kRollPpd));
    }
    static void TearDownTestSuite() { sService.reset(); }

    QStringList choices() const {
        QStringList arguments;
        for (const char* choice : GetParam().choices)
            arguments << QStringLiteral("--set") << QString::fromLatin1(choice);
        return arguments;
    }
    /// The sample's pages are larger than a die-cut label.
    QStringList fit() const {
        return choices().contains(QStringLiteral("PageSize=DC24"))
                   ? QStringList{QStringLiteral("--fit"), QStringLiteral("scale")}
                   : QStringList();
    }
    QString queue() const { return QString::fromLatin1(GetParam().queue); }

    /// Prints the sample labels on the queue. @return the job's number, 0 when that failed.
    int printed(const QStringList& more) const {
        Start start;
        start.arguments =
            QStringList{QStringLiteral("print"), kLabels, QStringLiteral("--printer"), queue()} +
            fit() + more;
        start.environment[QStringLiteral("CUPS_SERVER")] = sService->socketPath();
        const Outcome outcome = run(start);
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        static const QRegularExpression job(QStringLiteral(" as job \\w+-(\\d+), with:"));
        const auto match = job.match(QString::fromStdString(outcome.out));
        EXPECT_TRUE(match.hasMatch()) << outcome.out;
        return match.captured(1).toInt();
    }
    JobStatus statusOf(int job) const {
        const CupsConnection service(*ServiceAddress::fromText(sService->socketPath()));
        const Result<JobStatus> status = service.jobAttributes(job, {});
        EXPECT_TRUE(status) << status.error().sentence.toStdString();
        return status ? *status : JobStatus();
    }
    StoredJob storedJob(int job) const {
        const auto stored = sService->waitForJob(job);
        EXPECT_TRUE(stored) << sService->errorLog().right(4000).toStdString();
        return stored.value_or(StoredJob());
    }
    /// Prints without the service. @return the PostScript.
    QByteArray printedWithoutService(const QStringList& more) const {
        const QString output = mFolder.path(QStringLiteral("out.ps"));
        const Outcome outcome =
            run(QStringList{QStringLiteral("print"), kLabels, QStringLiteral("--ppd"),
                            GetParam().ppd, QStringLiteral("-o"), output} +
                fit() + more);
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        return contentOf(output);
    }
    std::string effectOf(const QByteArray& postScript) const {
        const QString path = mFolder.file(QStringLiteral("executed.ps"), postScript);
        return executed(path, GetParam().probe).simplified().toStdString();
    }

    Folder mFolder;

private:
    static std::unique_ptr<PrivateCupsd> sService;
};

std::unique_ptr<PrivateCupsd> ProofTest::sService;

} // namespace

TEST_P(ProofTest, TheChoicesArriveInTheJobInItsPostScriptAndInThePrinter) {
    const int job = printed(choices());
    ASSERT_GT(job, 0);
    const StoredJob stored = storedJob(job);

    const JobStatus status = statusOf(job);
    for (const QString& keyword : panelKeywords(queue()))
        EXPECT_TRUE(status.attributes.contains(keyword)) << keyword.toStdString();
    for (const char* choice : GetParam().choices) {
        const QStringList pair = QString::fromLatin1(choice).split(u'=');
        EXPECT_EQ(status.attributes.value(pair[0]).toStdString(), pair[1].toStdString());
        EXPECT_TRUE(stored.data.contains("%%BeginFeature: *" + pair.join(u' ').toUtf8())) << choice;
    }
    EXPECT_EQ(effectOf(stored.data), GetParam().effect);
}

TEST_P(ProofTest, WithoutAPrintServiceTheSameFeaturesAreSet) {
    const int job = printed(choices());
    ASSERT_GT(job, 0);
    const QByteArray withService = storedJob(job).data;
    const QByteArray without = printedWithoutService(choices());
    QStringList expected = featuresIn(withService);
    QStringList features = featuresIn(without);
    EXPECT_FALSE(features.isEmpty());
    EXPECT_EQ(features.join(u'\n').toStdString(), expected.join(u'\n').toStdString());
    EXPECT_EQ(effectOf(without), GetParam().effect);
    EXPECT_EQ(inkBoxes(mFolder.file(QStringLiteral("with.ps"), withService)).size(), 12U);
    EXPECT_EQ(inkBoxes(mFolder.file(QStringLiteral("without.ps"), without)).size(), 12U);
}

INSTANTIATE_TEST_SUITE_P(Printers, ProofTest, testing::ValuesIn(cases()),
                         [](const auto& row) { return std::string(row.param.name); });

using OneProofTest = ProofTest;

TEST_P(OneProofTest, TitleUserCopiesAndPagesArrive) {
    const int job = printed({QStringLiteral("--copies"), QStringLiteral("2"),
                             QStringLiteral("--pages"), QStringLiteral("3-"),
                             QStringLiteral("--title"), QStringLiteral("Größe & <mehr>")});
    ASSERT_GT(job, 0);
    const StoredJob stored = storedJob(job);
    const JobStatus status = statusOf(job);
    EXPECT_EQ(status.title, QStringLiteral("Größe & <mehr>"));
    EXPECT_EQ(status.attributes.value(QStringLiteral("copies")), QStringLiteral("2"));
    EXPECT_FALSE(status.attributes.contains(QStringLiteral("page-ranges")));
    EXPECT_EQ(status.attributes.value(QStringLiteral("print-scaling")), QStringLiteral("none"));
    EXPECT_TRUE(stored.data.contains("%%Pages: 10")) << "pages 3 to 12 of each copy";
    const QByteArray without =
        printedWithoutService({QStringLiteral("--pages"), QStringLiteral("3-")});
    EXPECT_TRUE(without.contains("%%Pages: 10"));
}

/// Pages behind those of the sample: one that is smaller than the tape of 68 × 142 points, one that
/// fits when it is turned, and one that is just as wide.
TEST_P(OneProofTest, ThePagesLieInTheQueueAsTheyWereLaidOut) {
    const QByteArray page = "<< /Type /Page /Parent 2 0 R /Contents 3 0 R /MediaBox [0 0 ";
    const QString document =
        mFolder.file(QStringLiteral("odd.pdf"),
                     pdfOf({"<< /Type /Catalog /Pages 2 0 R >>",
                            "<< /Type /Pages /Count 3 /Kids [4 0 R 5 0 R 6 0 R] >>",
                            "<< /Length 17 >>\nstream\n0 0 300 300 re f \nendstream",
                            page + "40 30] >>", page + "90 30] >>", page + "68 20] >>"}));
    const int job = printed({document, QStringLiteral("--pages"), QStringLiteral("13-")});
    ASSERT_GT(job, 0);
    const QString stored = mFolder.file(QStringLiteral("stored.ps"), storedJob(job).data);
    EXPECT_EQ(executed(stored, "currentpagedevice /PageSize get ==").simplified(),
              QStringLiteral("[68 142]"));
    const QRectF expected[] = {{14, 56, 40, 30}, {19, 26, 30, 90}, {0, 61, 68, 20}};
    const std::vector<QRectF> boxes = inkBoxes(stored);
    ASSERT_EQ(boxes.size(), std::size(expected));
    for (std::size_t i = 0; i < boxes.size(); ++i) {
        EXPECT_NEAR(boxes[i].left(), expected[i].left(), 0.6) << i;
        EXPECT_NEAR(boxes[i].top(), expected[i].top(), 0.6) << i;
        EXPECT_NEAR(boxes[i].right(), expected[i].right(), 0.6) << i;
        EXPECT_NEAR(boxes[i].bottom(), expected[i].bottom(), 0.6) << i;
    }
}

INSTANTIATE_TEST_SUITE_P(Tape, OneProofTest, testing::Values(halfCut()),
                         [](const auto& row) { return std::string(row.param.name); });

} // namespace labelcut::test
