// Settings: the text of a PPD, looked through before libcups makes a record of it.
#include "host/settings/ppd_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QFile>

#include <string>

#include "host/settings/ppd_view.h"
#include "tests/support/job_fixtures.h"

namespace labelcut::ppd {

using testing::HasSubstr;

namespace {

constexpr char kStart[] = "*PPD-Adobe: \"4.3\"\n*NickName: \"X\"\n";
constexpr char kOption[] = "*OpenUI *Cut/Cut: PickOne\n*DefaultCut: OFF\n*Cut OFF/Off: \"\"\n"
                           "*Cut ON/On: \"<</CutMedia 4>>\n setpagedevice\"\n*End\n*CloseUI: *Cut";

/// What is told of a text, "REASON in line N"; empty when it is whole and within the limits.
std::string faultOf(const QByteArray& text) {
    const test::Folder folder;
    OpenError error;
    const File file = openFile(folder.file(QStringLiteral("x.ppd"), text), &error);
    if (file)
        return {};
    return error.reason.toStdString() + " in line " + std::to_string(error.line);
}

QByteArray options(int count) {
    QByteArray text;
    for (int i = 0; i < count; ++i) {
        const QByteArray name = "O" + QByteArray::number(i);
        text += "*OpenUI *" + name + ": PickOne\n*" + name + " A: \"\"\n*CloseUI: *" + name + "\n";
    }
    return text;
}

QByteArray repeated(int count, const QByteArray& before, const QByteArray& after) {
    QByteArray text;
    for (int i = 0; i < count; ++i)
        text += before + QByteArray::number(i) + after;
    return text;
}

} // namespace

TEST(PpdTextTest, ATextThatIsWholeIsTaken) {
    const QByteArray whole = QByteArray(kStart) + kOption;
    EXPECT_EQ(faultOf(whole), "") << "the last line needs no end";
    EXPECT_EQ(faultOf(whole + '\n'), "");
    EXPECT_EQ(faultOf(whole + "\n*% a comment: \"of any kind"), "");
    EXPECT_EQ(faultOf(whole + "\n*Font: \"a\n b\"\n*End"), "");
    EXPECT_EQ(faultOf(QByteArray(whole).replace('\n', '\r')), "");
    EXPECT_EQ(faultOf(QByteArray(whole).replace('\n', "\r\n") + "\r\n\x1a"), "");
    EXPECT_EQ(faultOf(QByteArray(kStart) + "*OpenGroup: G/Group\n" + kOption + "\n*CloseGroup: G"),
              "");
    EXPECT_EQ(faultOf(QByteArray(kStart) + "*OpenUI *Lost/Never closed: PickOne\n" + kOption), "")
        << "only the end counts";
    EXPECT_EQ(faultOf(whole + "\n*%APLWORKSET START\n*OpenUI *Data: \""), "");
}

TEST(PpdTextTest, ATextThatEndsInTheMiddleIsRefused) {
    const QByteArray option = kStart + QByteArray("*OpenUI *Cut/Cut: PickOne\n");
    const struct {
        QByteArray text;
        const char* fault;
    } rows[] = {
        {option, "its text ends within the option “Cut”, which begins in line 3"},
        {option + "*Cut ON/On: \"\"", "within the option “Cut”, which begins in line 3"},
        {option + "*Cut ON/On: \"<<\n/Cut", "within the quoted value that begins in line 4"},
        {option + "*Cut ON/On: \"\"\n*CloseU", "in the middle of the statement in line 5"},
        {option + "*Cut ON/On: \"\"\n*CloseUI:", "in the middle of the statement in line 5"},
        {option + "*Cut ON/On: \"\"\n*CloseUI: *Cu", "in the middle of the statement in line 5"},
        {kStart + QByteArray("*JCLOpenUI *JCLA/A: PickOne"),
         "option “JCLA”, which begins in line 3"},
        {kStart + QByteArray("*OpenGroup: Out/Output\n") + kOption + '\n',
         "its text ends within the group “Out”, which begins in line 3"},
        {kStart + QByteArray("*DefaultFont:"), "in the middle of the statement in line 3"},
    };
    for (const auto& row : rows)
        EXPECT_THAT(faultOf(row.text), HasSubstr(row.fault)) << row.text.toStdString();
}

TEST(PpdTextTest, NoCutWithinAnOptionOfTheSampleIsTaken) {
    QFile sample(QStringLiteral(LABELCUT_SAMPLES "/tape.ppd"));
    ASSERT_TRUE(sample.open(QIODevice::ReadOnly));
    const QByteArray text = sample.readAll();
    int cuts = 0;
    for (qsizetype at = text.indexOf("*OpenUI"); at > 0; at = text.indexOf("*OpenUI", at + 1)) {
        const qsizetype end = text.indexOf("*CloseUI", at);
        for (qsizetype cut = at + 8; cut < end; cut += 7, ++cuts) {
            TextWalk walk;
            walk.take({text.constData(), static_cast<std::size_t>(cut)});
            EXPECT_TRUE(walk.end()) << text.mid(at, cut - at).toStdString();
        }
    }
    EXPECT_GT(cuts, 100);
}

TEST(PpdTextTest, ALimitIsNamedByWhoeverGoesBeyondIt) {
    const QByteArray start(kStart);
    EXPECT_EQ(faultOf(start + options(kMaxOptions)), "");
    EXPECT_THAT(faultOf(start + options(kMaxOptions + 1)), HasSubstr("more than 10,000 options"));
    const QByteArray choices = repeated(kMaxChoices, "*Cut C", ": \"\"\n");
    const QByteArray open = start + "*OpenUI *Cut: PickOne\n";
    EXPECT_EQ(faultOf(open + choices + "*CloseUI: *Cut\n"), "");
    EXPECT_THAT(faultOf(open + choices + "*Cut A: \"\"\n*CloseUI: *Cut\n"),
                HasSubstr("more than 100,000 choices"));
    for (const char* constraint : {"*UIConstraints: *Cut ON *C", "*cupsUIConstraints: \"*Cut *C"}) {
        const QByteArray end = QByteArray(constraint).contains('"') ? " A\"\n" : " A\n";
        const QByteArray many = start + kOption + '\n' + repeated(kMaxConstraints, constraint, end);
        EXPECT_EQ(faultOf(many), "");
        EXPECT_THAT(faultOf(many + constraint + end), HasSubstr("more than 50,000 constraints"));
    }
    EXPECT_THAT(faultOf(start + QByteArray(kMaxTextBytes, '\n')),
                HasSubstr("more than 16,777,216 bytes"));
}

TEST(PpdTextTest, WhatTakesLibcupsLongIsRefusedBeforeItReads) {
    const QByteArray start(kStart);
    const char* sentence = "more than 150,000,000 comparisons of names";
    const QByteArray rows[] = {
        repeated(30'000, "*Other", ": \"x\"\n") + options(6'000),
        repeated(20'000, "*PaperDimension S", ": \"1 1\"\n"),
        repeated(20'000, "*A: \"x\"\n*B: \"", "\"\n"),
        repeated(20'000, "*OpenGroup: G", "/G\n*CloseGroup: G\n"),
        "*OpenUI *Cut: PickOne\n" + repeated(20'000, "*Cut C", ": \"\"\n") + "*CloseUI: *Cut\n" +
            repeated(20'000, "*de.Cut C", "/T: \"\"\n"),
    };
    for (const QByteArray& row : rows)
        EXPECT_THAT(faultOf(start + row), HasSubstr(sentence)) << row.left(60).toStdString();
}

TEST(PpdTextTest, WhatLibcupsSaysAgainstATextComesFirst) {
    EXPECT_THAT(faultOf("no PPD\n*OpenUI *Cut"), HasSubstr("Missing asterisk"));
    OpenError error;
    EXPECT_FALSE(openFile(QStringLiteral("/nonexistent/x.ppd"), &error));
    EXPECT_FALSE(error.reason.isEmpty());
    EXPECT_FALSE(openFile(QStringLiteral("/nonexistent/x.ppd"), nullptr));
}

} // namespace labelcut::ppd
