// The command line: "labelcut print" without a print service.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QFile>

#include <sys/resource.h>

#include "tests/support/job_fixtures.h"
#include "tests/support/program.h"

namespace labelcut::test {

using testing::HasSubstr;
using testing::StartsWith;

namespace {

class PrintCommandTest : public testing::Test {
protected:
    QString output() const { return mFolder.path(QStringLiteral("out.ps")); }
    /// "labelcut print FILE --ppd PPD -o out.ps" and more.
    QStringList arguments(const QString& file, const QString& ppd, const char* more = "") const {
        return QStringList{QStringLiteral("print"), file,    QStringLiteral("--ppd"), ppd,
                           QStringLiteral("-o"),    output()} +
               words(more);
    }
    Outcome print(const char* more, const QString& ppd = kTapePpd) const {
        return run(arguments(kLabels, ppd, more));
    }
    /// The features that the output sets, "KvHalfCut=ON" each.
    QStringList features() const {
        QStringList all;
        for (const QByteArray& line : contentOf(output()).split('\n')) {
            if (line.startsWith("%%BeginFeature: *"))
                all << QString::fromUtf8(line.mid(17)).replace(u' ', u'=');
        }
        return all;
    }
    /// The refusal, checked for its form; nothing has been written.
    std::string refusal(const QStringList& arguments) const {
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.status, 1) << outcome.err;
        EXPECT_EQ(outcome.out, "");
        EXPECT_THAT(outcome.err, StartsWith("labelcut: "));
        EXPECT_EQ(std::ranges::count(outcome.err, '\n'), 1) << outcome.err;
        EXPECT_FALSE(QFile::exists(output()));
        return outcome.err;
    }
    std::string refusalOf(const char* more, const QString& ppd = kTapePpd) const {
        return refusal(arguments(kLabels, ppd, more));
    }

    Folder mFolder;
};

} // namespace

TEST_F(PrintCommandTest, TheLabelsArePrintedAndToldInPlainWords) {
    const Outcome outcome = print("--set KvHalfCut=ON");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.out, "Printed 12 labels of \"" + kLabels.toStdString() +
                               "\" for \"Labelcut Tape Sample, 1.0\" into the file \"" +
                               output().toStdString() +
                               "\", with:\n"
                               "  Label size: 24 mm tape (PageSize=T24)\n"
                               "  Mirror printing: Off (KvMirror=OFF)\n"
                               "  Auto cut: On (KvAutoTapeCut=ON)\n"
                               "  Half cut: On (KvHalfCut=ON)\n"
                               "  Chain printing: Off (KvChainPrint=OFF)\n"
                               "  Special tape: Off (KvSpecialTape=OFF)\n"
                               "  Remove blank space: Off (KvRemoveBlkSpace=OFF)\n");
    EXPECT_EQ(executed(output(), "userdict /LabelcutHalfCut get =").trimmed(),
              QStringLiteral("true"));
}

/// Documents of which the libraries that read them have something to say.
TEST_F(PrintCommandTest, LibrariesSayNothingBesideTheSentence) {
    const QByteArray drawing = "<svg xmlns=\"http://www.w3.org/2000/svg\" "
                               "xmlns:xlink=\"http://www.w3.org/1999/xlink\" width=\"10\" "
                               "height=\"10\"><use xlink:href=\"#none\"/>";
    const QString damaged = mFolder.file(QStringLiteral("damaged.svg"), drawing + "<g");
    EXPECT_THAT(refusal(arguments(damaged, kTapePpd)), HasSubstr("damaged SVG drawing"));
    const QString picture = mFolder.file(
        QStringLiteral("damaged.jpg"),
        QByteArray("\xff\xd8\xff\xe0\0\x10JFIF\0\x01\x01\0\0\x01\0\x01\0\0\xff\xc0\0\x11\x08\0"
                   "\x10\0\x10\x03\x01\x22\0\x02\x11\x01\x03\x11\x01garbage",
                   46));
    EXPECT_THAT(refusal(arguments(picture, kTapePpd)), HasSubstr("damaged or too large picture"));
    const QByteArray header("\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0\0\n\0\0\0\n\x08\x02\0\0\0"
                            "\x02\x50\x58\xea",
                            33);
    const QString noData = mFolder.file(QStringLiteral("damaged.png"),
                                        header + QByteArray("\0\0\0\x04IDATnone0000", 16));
    EXPECT_THAT(refusal(arguments(noData, kTapePpd)), HasSubstr("damaged or too large picture"));

    const QString odd = mFolder.file(QStringLiteral("odd.svg"), drawing + "</svg>");
    const Outcome outcome = run(arguments(odd, kTapePpd));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
}

TEST_F(PrintCommandTest, WhatIsAskedIsWhatIsPrintedOnEveryPrinter) {
    struct Row {
        const QString& ppd;
        const char* arguments;
        std::vector<const char*> features;
    };
    const Row rows[] = {
        {kTapePpd, "", {"KvAutoTapeCut=ON", "KvHalfCut=OFF", "PageSize=T24"}},
        {kTapePpd, "--set KvAutoTapeCut=OFF", {"KvAutoTapeCut=OFF"}},
        {kTapePpd,
         "--set KvSpecialTape=ON --set KvAutoTapeCut=OFF",
         {"KvSpecialTape=ON", "KvAutoTapeCut=OFF"}},
        {kTapePpd,
         "--set kvhalfcut=on --set KvChainPrint=ON --set KvMirror=ON",
         {"KvHalfCut=ON", "KvChainPrint=ON", "KvMirror=ON"}},
        {kTapePpd,
         "--fit scale --page-size DC24 --set KvRemoveBlkSpace=ON",
         {"PageSize=DC24", "KvRemoveBlkSpace=ON"}},
        {kTapePpd, "--fit scale --page-size AV24x48", {"PageSize=AV24x48"}},
        {kTapePpd, "--set Density=Dark", {"Density=Dark"}},
        {kRollPpd, "", {"KvCutLabel=1", "KvAutoTapeCut=ON", "KvCutAtEnd=OFF"}},
        {kRollPpd, "--set KvAutoTapeCut=ON", {"KvAutoTapeCut=ON", "KvCutLabel=1"}},
        {kRollPpd, "--set KvAutoTapeCut=OFF", {"KvAutoTapeCut=OFF", "KvCutLabel=1"}},
        {kRollPpd, "--set KvCutLabel=5", {"KvCutLabel=5", "KvAutoTapeCut=ON"}},
        {kRollPpd,
         "--set KvCutLabel=99 --set KvAutoTapeCut=OFF --set KvCutAtEnd=ON",
         {"KvCutLabel=99", "KvAutoTapeCut=OFF", "KvCutAtEnd=ON"}},
    };
    for (const Row& row : rows) {
        const Outcome outcome = print(row.arguments, row.ppd);
        ASSERT_EQ(outcome.status, 0) << row.arguments << outcome.err;
        const QStringList all = features();
        for (const char* feature : row.features)
            EXPECT_EQ(all.count(QString::fromLatin1(feature)), 1)
                << row.arguments << ": " << feature << " in " << all.join(u' ').toStdString();
    }
}

TEST_F(PrintCommandTest, AChoiceThatAPanelWouldTurnAroundStands) {
    // "ON" before "OFF": by position the panel takes the first of them for off.
    QByteArray bytes = contentOf(kRollPpd);
    const auto off = bytes.indexOf("*KvAutoTapeCut OFF/");
    const auto on = bytes.indexOf("*KvAutoTapeCut ON/");
    const auto end = bytes.indexOf("*CloseUI: *KvAutoTapeCut");
    ASSERT_TRUE(off > 0 && on > off && end > on);
    bytes = bytes.left(off) + bytes.mid(on, end - on) + bytes.mid(off, on - off) + bytes.mid(end);
    const QString ppd = mFolder.file(QStringLiteral("turned.ppd"), bytes);
    for (const char* choice : {"KvAutoTapeCut=OFF", "KvAutoTapeCut=ON"}) {
        const Outcome outcome = print((std::string("--set ") + choice).c_str(), ppd);
        ASSERT_EQ(outcome.status, 0) << outcome.err;
        EXPECT_EQ(features().count(QString::fromLatin1(choice)), 1) << choice;
    }
}

TEST_F(PrintCommandTest, ACustomValueOfSeveralPartsArrives) {
    const QString ppd = mFolder.file(QStringLiteral("frame.ppd"), contentOf(kTapePpd) + R"ppd(
*OpenUI *Frame/Frame: PickOne
*OrderDependency: 60 AnySetup *Frame
*DefaultFrame: None
*Frame None: ""
*CloseUI: *Frame
*CustomFrame True: "pop pop"
*ParamCustomFrame Width: 1 points 0 72
*ParamCustomFrame Gap: 2 real 0 1
)ppd");
    const Outcome outcome =
        run(arguments(kLabels, ppd) +
            QStringList{QStringLiteral("--set"), QStringLiteral("Frame={Width=3 Gap=0.5}")});
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_THAT(outcome.out, HasSubstr("Frame={Width=3 Gap=0.5}"));
    EXPECT_TRUE(features().contains(QStringLiteral("CustomFrame=True")));
}

TEST_F(PrintCommandTest, CopiesPagesAndCustomValuesArrive) {
    const Outcome outcome = print("--copies 3 --pages 2-4 --set FeedLength=Custom.30 "
                                  "--page-size Custom.50x300 --fit scale --title Shelf");
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_THAT(outcome.out, HasSubstr("Printed 3 labels (pages 2-4), 3 copies of "));
    EXPECT_THAT(outcome.out, HasSubstr("(PageSize=Custom.50x300)"));
    const QByteArray bytes = contentOf(output());
    EXPECT_TRUE(bytes.contains("\n%%Title: Shelf\n"));
    EXPECT_TRUE(bytes.contains("\n%%Pages: 3\n"));
    EXPECT_TRUE(bytes.contains("\n%%BeginNonPPDFeature: NumCopies 3\n"));
    EXPECT_EQ(executed(output(), "userdict /LabelcutFeedLength get == currentpagedevice /PageSize "
                                 "get ==")
                  .simplified(),
              QStringLiteral("30 [50 300]"));
}

TEST_F(PrintCommandTest, EveryKindOfFileIsPrintedTogether) {
    const QStringList files{
        mFolder.file(QStringLiteral("b.ps"),
                     "%!PS\n<</PageSize[68 142]>>setpagedevice 9 9 20 20 rectfill showpage\n"),
        mFolder.picture(QStringLiteral("c.png"), "PNG", {40, 20}),
        mFolder.picture(QStringLiteral("d.jpg"), "JPEG", {20, 40}),
        mFolder.file(QStringLiteral("e.svg"),
                     "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 10 30'>"
                     "<rect width='10' height='30'/></svg>"),
        mFolder.file(QStringLiteral("f.txt"), "Shelf 4\n")};
    const Outcome outcome = run(arguments(kLabels, kTapePpd) + files);
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.err, "");
    EXPECT_THAT(outcome.out, StartsWith("Printed 17 labels of "));
    const std::vector<QRectF> boxes = inkBoxes(output());
    ASSERT_EQ(boxes.size(), 17U);
    for (std::size_t i = 12; i < boxes.size(); ++i)
        EXPECT_FALSE(boxes[i].isEmpty()) << i;
}

TEST_F(PrintCommandTest, NeitherADisplayNorARuntimeFolderNorALocaleIsNeeded) {
    Start wanted;
    wanted.arguments = arguments(mFolder.file(QStringLiteral("größe.txt"), "Gr\xc3\xb6\xc3\x9f"
                                                                           "e\n"),
                                 kTapePpd);
    wanted.environment = {{QStringLiteral("DISPLAY"), QStringLiteral(":77")},
                          {QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb")}};
    const Outcome outcome = run(wanted);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_THAT(outcome.out, HasSubstr("größe.txt"));
}

TEST_F(PrintCommandTest, AnUnknownOptionOrChoiceIsNamed) {
    EXPECT_THAT(refusalOf("--set KvHalfcutt=ON"),
                HasSubstr("The printer has no option “KvHalfcutt”; did you mean KvHalfCut?"));
    EXPECT_THAT(refusalOf("--set KvHalfCut=MAYBE"),
                HasSubstr("The option KvHalfCut has no choice “MAYBE”; it offers OFF, ON."));
    EXPECT_THAT(refusalOf("--page-size A4"),
                HasSubstr("The option PageSize has no choice “A4”; it offers T6, T9, "));
    EXPECT_THAT(refusalOf("--set KvHalfCut=ON", kRollPpd),
                HasSubstr("The printer has no option “KvHalfCut”;"));
}

TEST_F(PrintCommandTest, AChoiceThatIsExcludedByItselfIsNamedOnce) {
    const QString ppd =
        mFolder.file(QStringLiteral("self.ppd"),
                     contentOf(kTapePpd) + "*UIConstraints: *KvHalfCut ON *KvHalfCut ON\n");
    EXPECT_THAT(refusalOf("--set KvHalfCut=ON", ppd),
                HasSubstr("labelcut: “Half cut: On (KvHalfCut=ON)” cannot be chosen: the printer’s "
                          "description (PPD) excludes it. Ask for another choice of KvHalfCut."));
}

TEST_F(PrintCommandTest, AConflictNamesBothSidesAndTheWayOut) {
    EXPECT_THAT(refusalOf("--set KvSpecialTape=ON"),
                HasSubstr("“Auto cut: On (KvAutoTapeCut=ON)” and “Special tape: On "
                          "(KvSpecialTape=ON)” exclude each other. Add --set KvAutoTapeCut=OFF."));
    EXPECT_THAT(refusalOf("--set KvSpecialTape=ON --set KvHalfCut=ON"),
                HasSubstr("“Half cut: On (KvHalfCut=ON)” and “Special tape: On "
                          "(KvSpecialTape=ON)” exclude each other. Ask for one of them only."));
}

TEST_F(PrintCommandTest, AFileThatCannotBePrintedIsNamed) {
    const auto refused = [&](const QString& file) { return refusal(arguments(file, kTapePpd)); };
    EXPECT_THAT(refused(mFolder.path(QStringLiteral("none.pdf"))), HasSubstr("does not exist"));
    EXPECT_THAT(refused(mFolder.path(QStringLiteral("."))), HasSubstr("is a folder"));
    EXPECT_THAT(refused(mFolder.file(QStringLiteral("empty.pdf"), "")), HasSubstr("is empty"));
    EXPECT_THAT(refused(mFolder.file(QStringLiteral("zip.pdf"), "PK\x03\x04")),
                HasSubstr("zip.pdf” is not a PDF, PostScript, PNG, JPEG, SVG or plain text"));
    EXPECT_THAT(refused(mFolder.file(QStringLiteral("broken.pdf"), "%PDF-1.7\nnothing more")),
                HasSubstr("broken.pdf” is a broken PDF file"));
    EXPECT_THAT(refused(mFolder.encryptedPdf(QStringLiteral("locked.pdf"))),
                HasSubstr("locked.pdf” is encrypted"));
    EXPECT_THAT(refused(mFolder.file(QStringLiteral("wrong.ps"), "%!PS\nnoSuchOperator\n")),
                HasSubstr("/undefined in noSuchOperator"));
}

TEST_F(PrintCommandTest, SeveralRangesArePrinted) {
    const Outcome outcome = print("--pages 1,3,5-7,9-");
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_THAT(outcome.out, HasSubstr("Printed 9 labels (pages 1,3,5-7,9-) of "));
    EXPECT_TRUE(contentOf(output()).contains("\n%%Pages: 9\n"));
}

TEST_F(PrintCommandTest, AnEdgeThatWouldBeLostIsToldWithTheWaysOut) {
    EXPECT_THAT(refusalOf("--page-size DC24 --pages 2"),
                HasSubstr("Page 2 is 24 mm × 50 mm, the label is 24 mm × 24 mm: an edge would be "
                          "lost. Use --fit scale, --fit turn or --fit actual, or another --set "
                          "PageSize=…."));
    EXPECT_THAT(refusalOf("--page-size DC24 --pages 2,4-"),
                HasSubstr("an edge would be lost, as on 10 pages in all. Use --fit"));
    for (const char* fit : {"scale", "turn", "actual"}) {
        const Outcome outcome =
            print((std::string("--page-size DC24 --pages 2 --fit ") + fit).c_str());
        EXPECT_EQ(outcome.status, 0) << fit << ": " << outcome.err;
        const std::vector<QRectF> boxes = inkBoxes(output());
        ASSERT_EQ(boxes.size(), 1U) << fit;
        EXPECT_TRUE(QRectF(-0.5, -0.5, 69, 69).contains(boxes[0])) << fit;
    }
}

TEST_F(PrintCommandTest, OrderAndRepeatsStandInThePages) {
    const Outcome outcome = print("--pages 1-3 --copies 2 --reverse --no-collate");
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_THAT(outcome.out, HasSubstr("Printed 3 labels (pages 1-3), last page first, 2 copies of "
                                       "each page in a row of "));
    const QByteArray bytes = contentOf(output());
    EXPECT_TRUE(bytes.contains("\n%%Pages: 6\n"));
    EXPECT_FALSE(bytes.contains("BeginNonPPDFeature: NumCopies"));
    const std::vector<QRectF> boxes = inkBoxes(output());
    ASSERT_EQ(boxes.size(), 6U);
    for (std::size_t i = 0; i < 6; i += 2)
        EXPECT_EQ(boxes[i], boxes[i + 1]) << i;
}

TEST_F(PrintCommandTest, ARangeBehindTheLastPageIsRefused) {
    EXPECT_THAT(refusalOf("--pages 13-"),
                HasSubstr("There is no label in the range 13-; the document has 12."));
}

TEST_F(PrintCommandTest, ADamagedFileIsPrintedWithAWarning) {
    QByteArray bytes = contentOf(mFolder.pdf(QStringLiteral("a.pdf"), {{68, 142}}));
    bytes.truncate(bytes.indexOf("xref"));
    bytes += "trailer\n<< /Root 1 0 R /Size 6 >>\n";
    const Outcome outcome =
        run(arguments(mFolder.file(QStringLiteral("damaged.pdf"), bytes), kTapePpd));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.err, HasSubstr("damaged.pdf\" was damaged and had to be repaired"));
}

TEST_F(PrintCommandTest, AFullDiskLeavesNoFileAndSaysSo) {
    Start wanted;
    wanted.arguments = arguments(kLabels, kTapePpd);
    // Less than the output has, more than the files on the way to it.
    wanted.prepare = [] {
        const rlimit limit{120 << 10, 120 << 10};
        setrlimit(RLIMIT_FSIZE, &limit);
    };
    const QStringList before = mFolder.entries();
    const Outcome outcome = run(wanted);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err,
                testing::AnyOf(HasSubstr("cannot be written (File too large)"),
                               HasSubstr("cannot be interpreted"), HasSubstr("cut short")));
    EXPECT_EQ(mFolder.entries(), before);
}

TEST_F(PrintCommandTest, AFullDeviceAndAMissingFolderAreNamed) {
    QStringList toFull = arguments(kLabels, kTapePpd);
    toFull.replace(toFull.indexOf(output()), QStringLiteral("/dev/full"));
    EXPECT_THAT(refusal(toFull), HasSubstr("“/dev/full” cannot be written (No space left"));
    QStringList nowhere = arguments(kLabels, kTapePpd);
    nowhere.replace(nowhere.indexOf(output()), mFolder.path(QStringLiteral("no/out.ps")));
    EXPECT_THAT(refusal(nowhere), HasSubstr("no/out.ps” cannot be written (No such file"));
}

TEST_F(PrintCommandTest, AnOlderFileStaysWhenPrintingFails) {
    mFolder.file(QStringLiteral("out.ps"), "older");
    const Outcome outcome = print("--set KvSpecialTape=ON");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(contentOf(output()), "older");
}

TEST_F(PrintCommandTest, AMalformedPpdIsNamedWithItsLine) {
    const QString ppd =
        mFolder.file(QStringLiteral("bad.ppd"), "*PPD-Adobe: \"4.3\"\n*Bad\nworse\n");
    EXPECT_THAT(refusalOf("", ppd),
                HasSubstr("bad.ppd” is no usable PPD: Missing asterisk in column 1 in line 3;"));
}

TEST_F(PrintCommandTest, WithoutAPrintServiceAQueueCannotBeUsed) {
    EXPECT_THAT(refusal({QStringLiteral("print"), kLabels, QStringLiteral("--printer"),
                         QStringLiteral("tape")}),
                HasSubstr("There is no print service at /nonexistent/cups.sock"));
}

} // namespace labelcut::test
