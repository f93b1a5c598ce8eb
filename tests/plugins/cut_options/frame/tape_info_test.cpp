// Tests of the tape information: the record from page format and ticket, and its arithmetic.
#include "plugins/cut_options/frame/tape_info.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>

#include <cmath>
#include <cstring>
#include <limits>
#include <span>

#include "platform/toolkit/property_list.h"
#include "tests/support/fake_host.h"
#include "tests/support/ppd_builder.h"

namespace labelcut::test {
namespace {

const QString kTicket = QStringLiteral("org.labelcut.print.PrintSettingsTicket.SgE5");
const QString kName = QStringLiteral("SgPaperName2");

QByteArray ticketFor(const QVariant& name) {
    return propertyListToXml({{kName, name}, {QStringLiteral("Other"), 7}});
}

/// A record full of what no call may leave behind.
TapeInfo used() {
    return {7.5, 42, QStringLiteral("left over")};
}

class Tape : public testing::Test {
protected:
    // libcups reads no such name from a file.
    Tape() { std::strcpy(pageSize("DCE")->name, "DC\xC3\xA9"); }

    ppd_size_t* pageSize(const char* name) {
        for (ppd_size_t& size : std::span(ppd->sizes, static_cast<std::size_t>(ppd->num_sizes)))
            if (std::strcmp(size.name, name) == 0)
                return &size;
        return nullptr;
    }
    OSStatus read() { return GetTapeInfo(&session, &settings, &format, ppd.get(), &info); }
    OSStatus readPaper(const QString& name, double points = 283.4646) {
        format.choose(name, points);
        info = used();
        return read();
    }

    ppd::File ppd = PpdBuilder()
                        .size("W62", 176, 283)
                        .size("DC24", 68, 68)
                        .size("AV100", 176, 283)
                        .size("DC", 68, 68)
                        .size("dc24", 68, 68)
                        .size("Dc24", 68, 68)
                        .size("XDC24", 68, 68)
                        .size("D", 68, 68)
                        .size("AX100", 68, 68)
                        .size("DCE", 68, 68)
                        .open();
    FakeSession session;
    FakeSettings settings;
    FakePageFormat format;
    TapeInfo info = used();
};

TEST_F(Tape, StateIsOneExactlyForPapersOfThePpdThatBeginDCOrAV) {
    struct Case {
        QString name;
        std::int32_t state;
    };
    const Case cases[] = {
        {QStringLiteral("DC24"), 1},  {QStringLiteral("AV100"), 1}, {QStringLiteral("DC"), 1},
        {QStringLiteral("DCé"), 1},   {QStringLiteral("W62"), 0},   {QStringLiteral("dc24"), 0},
        {QStringLiteral("Dc24"), 0},  {QStringLiteral("XDC24"), 0}, {QStringLiteral("D"), 0},
        {QStringLiteral("AX100"), 0}, {QStringLiteral("DC12"), 0},  {QStringLiteral("DC2"), 0},
        {QStringLiteral("DC245"), 0}, {QStringLiteral("AV"), 0},    {QStringLiteral("DC24 "), 0},
        {QStringLiteral("av100"), 0}, {QStringLiteral("AV10"), 0},  {QStringLiteral(""), 0},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(readPaper(c.name), noErr);
        EXPECT_EQ(info.tapeState, c.state) << c.name.toStdString();
        EXPECT_EQ(info.paperName, c.name);
        EXPECT_NEAR(info.height, 100.0, 0.001);
    }
}

TEST_F(Tape, StateIsZeroWithoutPpdAndWithoutPageSizes) {
    ppd.reset();
    EXPECT_EQ(readPaper(QStringLiteral("DC24")), noErr);
    EXPECT_EQ(info.tapeState, 0);
    EXPECT_EQ(info.paperName, QStringLiteral("DC24"));
    ppd = PpdBuilder().open();
    EXPECT_EQ(readPaper(QStringLiteral("DC24")), noErr);
    EXPECT_EQ(info.tapeState, 0);
}

TEST_F(Tape, IsAtItsDefaultsWhenThePageFormatCannotBeAsked) {
    settings.values.insert(kTicket, ticketFor(QStringLiteral("DC24")));
    format.choose(QStringLiteral("DC24"));
    format.status = -4711;
    EXPECT_EQ(read(), -4711);
    EXPECT_EQ(info.height, 100.0);
    EXPECT_EQ(info.tapeState, 0);
    EXPECT_EQ(info.paperName, std::nullopt);

    info = used();
    EXPECT_EQ(GetTapeInfo(nullptr, &settings, nullptr, ppd.get(), &info), kPMInvalidParameter);
    EXPECT_EQ(info.height, 100.0);
    EXPECT_EQ(info.tapeState, 0);
    EXPECT_EQ(info.paperName, std::nullopt);
}

TEST_F(Tape, IsAtItsDefaultsWithoutPaper) {
    settings.values.insert(kTicket, ticketFor(QStringLiteral("DC24")));
    EXPECT_EQ(read(), noErr);
    EXPECT_EQ(info.height, 100.0);
    EXPECT_EQ(info.tapeState, 0);
    EXPECT_EQ(info.paperName, std::nullopt) << "the ticket is not asked";
}

TEST_F(Tape, TakesTheNameFromTheTicketWhenThePaperHasNoneAndNeverAState) {
    settings.values.insert(kTicket, ticketFor(QStringLiteral("DC24")));
    EXPECT_EQ(readPaper(QString()), noErr);
    EXPECT_EQ(info.paperName, QStringLiteral("DC24"));
    EXPECT_EQ(info.tapeState, 0);
    EXPECT_NEAR(info.height, 100.0, 0.001);

    format.choose(QStringLiteral("AV100"), 144);
    format.chosen->nameStatus = -17;
    EXPECT_EQ(read(), noErr) << "a failing name is not an error";
    EXPECT_EQ(info.paperName, QStringLiteral("DC24"));
    EXPECT_EQ(info.tapeState, 0);
    EXPECT_EQ(info.height, 144.0 / 72.0 / 0.0393701);
}

TEST_F(Tape, PrefersThePageFormatsNameToTheTickets) {
    settings.values.insert(kTicket, ticketFor(QStringLiteral("DC24")));
    EXPECT_EQ(readPaper(QStringLiteral("W62")), noErr);
    EXPECT_EQ(info.paperName, QStringLiteral("W62"));
    EXPECT_EQ(info.tapeState, 0);
}

TEST_F(Tape, HasNoNameWhenNeitherHasOne) {
    EXPECT_EQ(readPaper(QString()), noErr);
    EXPECT_EQ(info.paperName, std::nullopt);
    EXPECT_EQ(GetTapeInfo(nullptr, nullptr, &format, nullptr, &info), noErr);
    EXPECT_EQ(info.paperName, std::nullopt);
}

TEST_F(Tape, KeepsTheNameWhenTheHeightCannotBeRead) {
    format.choose(QStringLiteral("DC24"), 144);
    format.chosen->heightStatus = -99;
    EXPECT_EQ(read(), -99);
    EXPECT_EQ(info.paperName, QStringLiteral("DC24"));
    EXPECT_EQ(info.height, 100.0);
    EXPECT_EQ(info.tapeState, 0);

    format.chosen->name = QString();
    settings.values.insert(kTicket, ticketFor(QStringLiteral("AV100")));
    EXPECT_EQ(read(), -99);
    EXPECT_EQ(info.paperName, QStringLiteral("AV100"));
}

TEST_F(Tape, OfHeightZeroKeepsDefaultHeightAndState) {
    for (const double zero : {0.0, -0.0}) {
        EXPECT_EQ(readPaper(QStringLiteral("DC24"), zero), noErr);
        EXPECT_EQ(info.height, 100.0);
        EXPECT_EQ(info.tapeState, 0);
        EXPECT_EQ(info.paperName, QStringLiteral("DC24"));
    }
}

TEST_F(Tape, PassesOnAHeightThatIsNoNumber) {
    EXPECT_EQ(readPaper(QStringLiteral("DC24"), std::numeric_limits<double>::quiet_NaN()), noErr);
    EXPECT_TRUE(std::isnan(info.height));
    EXPECT_EQ(info.tapeState, 1);
}

TEST_F(Tape, HeightIsPointsToInchesToMillimetresInThatOrder) {
    for (const double points : {283.4646, 1.0, 68.0, 72.0, 176.5, 4000.0, 1e-3, -72.0}) {
        EXPECT_EQ(readPaper(QStringLiteral("W62"), points), noErr);
        const double inches = points / 72.0;
        EXPECT_EQ(info.height, inches / 0.0393701) << points;
    }
}

TEST_F(Tape, NameBeyond255BytesIsKeptAndHasNoState) {
    for (const int length : {255, 256, 5000}) {
        const QString name = QStringLiteral("DC") + QString(length - 2, u'9');
        EXPECT_EQ(readPaper(name), noErr);
        EXPECT_EQ(info.paperName, name);
        EXPECT_EQ(info.tapeState, 0);
    }
}

TEST(FixedLengthPaper, BeginsDCOrAV) {
    for (const char* name : {"DC", "DC24", "AV", "AV100"})
        EXPECT_TRUE(isFixedLengthPaper(name)) << name;
    for (const char* name : {"", "D", "A", "dc24", "av", "DV", "AC", "XDC", " DC", "W62"})
        EXPECT_FALSE(isFixedLengthPaper(name)) << name;
}

OSStatus readTicket(const QVariant& value, TapeInfo& info) {
    FakeSettings settings;
    if (value.isValid())
        settings.values.insert(kTicket, value);
    info = used();
    return GetTapeInfo2(nullptr, &settings, &info);
}

TEST(Ticket, GivesTheNameOfTheMediumAndTouchesNothingElse) {
    TapeInfo info;
    for (const QString& name : {QStringLiteral("DC24"), QStringLiteral("Étiquette <&>"),
                                QStringLiteral(""), QString(5000, u'x')}) {
        EXPECT_EQ(readTicket(ticketFor(name), info), noErr);
        EXPECT_EQ(info.paperName, name);
        EXPECT_EQ(info.height, 7.5);
        EXPECT_EQ(info.tapeState, 42);
    }
}

TEST(Ticket, IgnoresItsFirstArgument) {
    FakeSettings settings;
    settings.values.insert(kTicket, ticketFor(QStringLiteral("DC24")));
    TapeInfo info;
    const int anything = 0;
    EXPECT_EQ(GetTapeInfo2(&anything, &settings, &info), noErr);
    EXPECT_EQ(info.paperName, QStringLiteral("DC24"));
}

TEST(Ticket, ClearsTheNameWithoutSettingsAndWithoutTicket) {
    TapeInfo info = used();
    EXPECT_EQ(GetTapeInfo2(nullptr, nullptr, &info), noErr);
    EXPECT_EQ(info.paperName, std::nullopt);
    EXPECT_EQ(readTicket(QVariant(), info), noErr);
    EXPECT_EQ(info.paperName, std::nullopt);

    FakeSettings other;
    other.values.insert(QStringLiteral("org.labelcut.print.PrintSettingsTicket.SgE4"),
                        ticketFor(QStringLiteral("DC24")));
    info = used();
    EXPECT_EQ(GetTapeInfo2(nullptr, &other, &info), noErr);
    EXPECT_EQ(info.paperName, std::nullopt) << "under another key";
}

QByteArray inPlist(const QByteArray& body) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?><plist version=\"1.0\">" + body + "</plist>";
}

TEST(Ticket, ThatIsNoneGivesNoNameInBoundedTime) {
    const QByteArray good = ticketFor(QStringLiteral("DC24"));
    QByteArray bomb = "<?xml version=\"1.0\"?><!DOCTYPE plist [<!ENTITY a \"aaaaaaaaaaaaaaaa\">";
    for (char c = 'b'; c <= 'z'; ++c) {
        const QByteArray inner = QByteArray("&") + static_cast<char>(c - 1) + ';';
        bomb += QByteArray("<!ENTITY ") + c + " \"" + inner.repeated(16) + "\">";
    }
    bomb += "]><plist version=\"1.0\"><dict><key>SgPaperName2</key><string>&z;</string></dict>"
            "</plist>";
    constexpr qsizetype kDeep = 1'000'000;
    struct Case {
        const char* what;
        QVariant value;
    };
    const Case cases[] = {
        {"no bytes", QByteArray()},
        {"not XML", QByteArray("SgPaperName2 = DC24")},
        {"binary", QByteArray("bplist00\x00\xFF\xFE", 11)},
        {"cut off", good.chopped(10)},
        {"something behind", good + "<plist/>"},
        {"entity bomb", bomb},
        {"deep arrays",
         inPlist(QByteArray("<array>").repeated(kDeep) + QByteArray("</array>").repeated(kDeep))},
        {"deep, never closed",
         QByteArray("<plist version=\"1.0\">") + QByteArray("<array>").repeated(kDeep)},
        {"deep unknown elements", QByteArray("<x>").repeated(kDeep)},
        {"a list at the top", inPlist("<array><string>SgPaperName2</string></array>")},
        {"a text at the top", inPlist("<string>SgPaperName2</string>")},
        {"two values at the top", inPlist("<dict/><dict/>")},
        {"an empty dictionary", inPlist("<dict/>")},
        {"a number for a name", ticketFor(24)},
        {"bytes for a name", ticketFor(QByteArray("DC24"))},
        {"a truth value for a name", ticketFor(true)},
        {"a list for a name", ticketFor(QVariantList{QStringLiteral("DC24")})},
        {"a dictionary for a name", ticketFor(QVariantMap{{kName, QStringLiteral("DC24")}})},
        {"another key's case",
         propertyListToXml({{QStringLiteral("sgpapername2"), QStringLiteral("DC24")}})},
        {"text instead of bytes", QString::fromUtf8(good)},
        {"a dictionary instead of bytes", QVariantMap{{kName, QStringLiteral("DC24")}}},
        {"a number instead of bytes", 24},
        {"50 MB of a name", inPlist("<dict><key>SgPaperName2</key><string>" +
                                    QByteArray(50'000'000, 'D') + "</string></dict>")},
        {"50 MB of blanks", QByteArray(50'000'000, ' ') + good},
        {"50 MB of zeros", QByteArray(50'000'000, '\0')},
    };
    for (const Case& c : cases) {
        ASSERT_FALSE(good.isEmpty());
        TapeInfo info;
        QElapsedTimer timer;
        timer.start();
        EXPECT_EQ(readTicket(c.value, info), noErr) << c.what;
        EXPECT_LT(timer.elapsed(), 5000) << c.what;
        EXPECT_EQ(info.paperName, std::nullopt) << c.what;
    }
}

TEST(TicketFromSession, GivesTheStoredNumber) {
    struct Case {
        QVariant value;
        std::int32_t number;
    };
    const Case cases[] = {
        {5, 5},
        {-5, -5},
        {0, 0},
        {42U, 42},
        {qlonglong{1} << 31, std::numeric_limits<std::int32_t>::min()},
        {(qlonglong{1} << 40) + 9, 9},
        {qulonglong{7}, 7},
        {std::numeric_limits<qulonglong>::max(), -1},
        {QVariant::fromValue<long>(-8), -8},
        {QVariant::fromValue<unsigned long>(8), 8},
        {QVariant::fromValue(std::numeric_limits<unsigned long>::max()), -1},
        {QVariant::fromValue<short>(-9), -9},
        {QVariant::fromValue<unsigned short>(65535), 65535},
        {QVariant::fromValue<char>('A'), 65},
        {QVariant::fromValue<signed char>(-10), -10},
        {QVariant::fromValue<unsigned char>(200), 200},
        {3.7, 3},
        {-3.7, -3},
        {2.5F, 2},
        {1e300, std::numeric_limits<std::int32_t>::max()},
        {-1e300, std::numeric_limits<std::int32_t>::min()},
        {std::numeric_limits<double>::quiet_NaN(), 0},
    };
    FakeSession session;
    for (const Case& c : cases) {
        session.values.insert(kTicket, c.value);
        std::int32_t number = 77;
        EXPECT_EQ(GetTicketFromSession(&session, kTicket, &number), noErr);
        EXPECT_EQ(number, c.number) << c.value.typeName();
    }
}

TEST(TicketFromSession, FailsWhenThereIsNothingAndLeavesTheNumber) {
    FakeSession session;
    std::int32_t number = 77;
    EXPECT_EQ(GetTicketFromSession(nullptr, kTicket, &number), -30891);
    EXPECT_EQ(GetTicketFromSession(&session, kTicket, &number), -30891);
    session.values.insert(kTicket, 5);
    EXPECT_EQ(GetTicketFromSession(&session, QStringLiteral("another key"), &number), -30891);
    session.status = kPMGeneralError;
    EXPECT_EQ(GetTicketFromSession(&session, kTicket, &number), -30891);
    EXPECT_EQ(number, 77);
}

TEST(TicketFromSession, LeavesTheNumberWhenTheDataIsNone) {
    FakeSession session;
    for (const QVariant& value : {QVariant(QStringLiteral("12")), QVariant(QByteArray("12")),
                                  QVariant(QVariantList{12}), QVariant(true)}) {
        session.values.insert(kTicket, value);
        std::int32_t number = 77;
        EXPECT_EQ(GetTicketFromSession(&session, kTicket, &number), noErr);
        EXPECT_EQ(number, 77) << value.typeName();
    }
}

class Pages : public testing::Test {
protected:
    Pages() {
        settings.first = 3;
        settings.last = 0xFFFFFFFF;
    }
    FakeSettings settings;
    FirstAndLastPage range{88, 99};
    const QString wroteFirst = QStringLiteral("first 3 0");
    const QString wroteLast = QStringLiteral("last 4294967295 0");
};

TEST_F(Pages, AreReadAndWrittenBackUnlocked) {
    EXPECT_EQ(GetTapeInfo3(&settings, &range), noErr);
    EXPECT_EQ(range.first, 3U);
    EXPECT_EQ(range.last, 0xFFFFFFFFU);
    EXPECT_EQ(settings.log, (QStringList{wroteFirst, wroteLast}));
}

TEST_F(Pages, GoOnWithoutAFirstPage) {
    settings.firstStatus = -1;
    EXPECT_EQ(GetTapeInfo3(&settings, &range), noErr);
    EXPECT_EQ(range.first, 0U);
    EXPECT_EQ(range.last, 0xFFFFFFFFU);
    EXPECT_EQ(settings.log, QStringList{wroteLast});
}

TEST_F(Pages, KeepTheFirstThatCouldNotBeWrittenBack) {
    settings.setFirstStatus = -2;
    EXPECT_EQ(GetTapeInfo3(&settings, &range), noErr);
    EXPECT_EQ(range.first, 3U);
    EXPECT_EQ(range.last, 0xFFFFFFFFU);
}

TEST_F(Pages, EndWithTheErrorOfTheLastPage) {
    settings.lastStatus = -3;
    EXPECT_EQ(GetTapeInfo3(&settings, &range), -3);
    EXPECT_EQ(range.first, 3U);
    EXPECT_EQ(range.last, 0U);
    EXPECT_EQ(settings.log, QStringList{wroteFirst});
}

TEST_F(Pages, AnswerTheStatusOfTheLastWrite) {
    settings.setLastStatus = -4;
    EXPECT_EQ(GetTapeInfo3(&settings, &range), -4);
    EXPECT_EQ(range.last, 0xFFFFFFFFU);
}

TEST_F(Pages, AreZeroWithoutSettings) {
    EXPECT_EQ(GetTapeInfo3(nullptr, &range), kPMInvalidParameter);
    EXPECT_EQ(range.first, 0U);
    EXPECT_EQ(range.last, 0U);
}

TEST(RoundDouble, RoundsHalfAwayFromZero) {
    constexpr long kMax = std::numeric_limits<long>::max();
    constexpr long kMin = std::numeric_limits<long>::min();
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    struct Case {
        double x;
        long rounded;
    };
    const Case cases[] = {
        {0.0, 0},
        {-0.0, 0},
        {0.4999, 0},
        {-0.4999, 0},
        {0.49999999999999994, 0},
        {-0.49999999999999994, 0},
        {0.5, 1},
        {-0.5, -1},
        {1.0, 1},
        {1.5, 2},
        {-1.5, -2},
        {2.49, 2},
        {-2.49, -2},
        {2.5, 3},
        {-2.5, -3},
        {2.51, 3},
        {3.5, 4},
        {-3.5, -4},
        {4503599627370495.5, 4503599627370496},
        {-4503599627370495.5, -4503599627370496},
        {9007199254740993.0, 9007199254740992},
        {9223372036854774784.0, 9223372036854774784},
        {9223372036854775808.0, kMax},
        {-9223372036854775808.0, kMin},
        {1e300, kMax},
        {-1e300, kMin},
        {kInfinity, kMax},
        {-kInfinity, kMin},
        {std::numeric_limits<double>::quiet_NaN(), 0},
    };
    for (const Case& c : cases)
        EXPECT_EQ(RoundDouble(c.x), c.rounded) << c.x;
}

TEST(Conversions, UseTheFactorAsItIsWritten) {
    EXPECT_EQ(MiriToInch(1.0), 0.0393701);
    EXPECT_EQ(MiriToInch(25.4), 25.4 * 0.0393701);
    EXPECT_NE(MiriToInch(25.4), 1.0) << "deliberately not 1/25.4";
    EXPECT_EQ(MiriToInch(0.0), 0.0);
    EXPECT_EQ(MiriToInch(-10.0), -10.0 * 0.0393701);
    EXPECT_EQ(InchToMiri(1.0), 1.0 / 0.0393701);
    EXPECT_NE(InchToMiri(1.0), 25.4);
    EXPECT_EQ(InchToMiri(0.0393701), 1.0);
    EXPECT_EQ(InchToMiri(0.0), 0.0);
}

} // namespace
} // namespace labelcut::test
