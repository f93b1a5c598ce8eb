// Property lists: what is written reads back equal, and nothing hostile is read, slow or harmful.
#include "platform/toolkit/property_list.h"

#include <gtest/gtest.h>

#include <QDateTime>
#include <QElapsedTimer>
#include <QPoint>
#include <QStringEncoder>
#include <QStringList>
#include <QTimeZone>

#include <sys/resource.h>

#include <cmath>
#include <limits>

namespace labelcut {

namespace {

constexpr qint64 kSoon = 2'000; // milliseconds, with a sanitizer and a busy machine in mind

QByteArray inPlist(const QByteArray& inner) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">" + inner +
           "</plist>\n";
}

std::optional<QVariant> read(const QByteArray& inner) {
    return propertyListFromXml(inPlist(inner));
}

QVariant roundTrip(const QVariant& value) {
    const QByteArray xml = propertyListToXml({{QStringLiteral("value"), value}});
    const std::optional<QVariant> back = propertyListFromXml(xml);
    return back ? back->toMap().value(QStringLiteral("value")) : QVariant();
}

QByteArray repeated(const char* text, int times) {
    return QByteArray(text).repeated(times);
}

/// Peak resident memory of this process, in KiB.
long peakMemory() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

} // namespace

TEST(PropertyList, readsEveryType) {
    struct Row {
        const char* xml;
        QVariant value;
    };
    const QDateTime date(QDate(2024, 2, 29), QTime(23, 59, 58), Qt::UTC);
    const Row rows[] = {
        {"<string>24 mm</string>", QStringLiteral("24 mm")},
        {"<string/>", QString()},
        {"<string>a &lt; b &amp; c &#x20AC;</string>", QStringLiteral("a < b & c €")},
        {"<string><![CDATA[<raw>]]> and more</string>", QStringLiteral("<raw> and more")},
        {"<string>one<!-- two -->three</string>", QStringLiteral("onethree")},
        {"<integer>0</integer>", 0LL},
        {"<integer> -12 </integer>", -12LL},
        {"<integer>+7</integer>", 7LL},
        {"<integer>-9223372036854775808</integer>", std::numeric_limits<qlonglong>::min()},
        {"<integer>18446744073709551615</integer>", std::numeric_limits<qulonglong>::max()},
        {"<real>2.5</real>", 2.5},
        {"<real>1e3</real>", 1000.0},
        {"<real>-infinity</real>", -std::numeric_limits<double>::infinity()},
        {"<true/>", true},
        {"<false></false>", false},
        {"<data>\n\tAAEC\n\t/w==\n</data>", QByteArray("\x00\x01\x02\xff", 4)},
        {"<data/>", QByteArray()},
        {"<date>2024-02-29T23:59:58Z</date>", date},
        {"<date>2024-02-29T23:59:58.250Z</date>", date.addMSecs(250)},
        {"<array/>", QVariantList()},
        {"<array><true/> <integer>1</integer></array>", QVariantList({true, 1LL})},
        {"<dict/>", QVariantMap()},
        {"<dict><key>a</key><string>x</string><key>b</key><dict/></dict>",
         QVariantMap(
             {{QStringLiteral("a"), QStringLiteral("x")}, {QStringLiteral("b"), QVariantMap()}})},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.xml);
        const std::optional<QVariant> value = read(row.xml);
        ASSERT_TRUE(value);
        EXPECT_EQ(value->typeId(), row.value.typeId());
        EXPECT_EQ(*value, row.value);
    }
}

TEST(PropertyList, readsDocumentTypeAndOtherEncodings) {
    const QByteArray doctype =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!-- first --><!DOCTYPE plist PUBLIC "
        "\"-//Example//DTD PLIST 1.0//EN\" \"http://127.0.0.1:1/never-fetched.dtd\">\n"
        "<plist><string>\xE2\x82\xAC</string></plist>\n<!-- last -->";
    EXPECT_EQ(propertyListFromXml(doctype), QVariant(QStringLiteral("€")));
    EXPECT_EQ(propertyListFromXml("\xEF\xBB\xBF" + doctype), QVariant(QStringLiteral("€")));

    const QString wide = QStringLiteral("<plist><string>€</string></plist>");
    for (const auto encoding : {QStringConverter::Utf16LE, QStringConverter::Utf16BE}) {
        QStringEncoder encoder(encoding, QStringConverter::Flag::WriteBom);
        const QByteArray bytes = encoder(wide);
        EXPECT_EQ(propertyListFromXml(bytes), QVariant(QStringLiteral("€")));
    }
}

TEST(PropertyList, takesTheLastOfTwoValuesOfOneKey) {
    const auto value = read("<dict><key>k</key><integer>1</integer><key>k</key><true/></dict>");
    ASSERT_TRUE(value);
    EXPECT_EQ(value->toMap(), QVariantMap({{QStringLiteral("k"), true}}));
}

TEST(PropertyList, refusesWhatIsNoList) {
    const QByteArray documents[] = {
        "",
        " ",
        "hello",
        "{ \"json\": true }",
        QByteArray("bplist00\xd1\x01\x02\x00", 12),
        QByteArray("\0\0\0\0\0\0\0\0", 8),
        "<plist>",
        "<plist/>",
        "<plist></plist>",
        "<dict/>",
        "<PLIST><dict/></PLIST>",
        "<html><body/></html>",
        "<plist version=\"2.0\"><dict/></plist>",
        "<plist><dict/></plist><plist><dict/></plist>",
        "<plist><dict/></plist>rest",
        "<plist><dict/></plist",
        "<plist><dict/>",
        "<plist><string>\xC3\x28</string></plist>",
        "<plist><string>\xED\xA0\x80</string></plist>",
        "<plist><string>\xF8\x88\x80\x80\x80</string></plist>",
        "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><plist><string>\xE4</string></plist>",
    };
    for (const QByteArray& document : documents) {
        SCOPED_TRACE(document.toStdString());
        EXPECT_FALSE(propertyListFromXml(document));
    }
}

TEST(PropertyList, refusesWhatBreaksTheGrammar) {
    const char* const inner[] = {
        "<true/><false/>",
        "text",
        "text<true/>",
        "<true/>text",
        "<unknown/>",
        "<Dict/>",
        "<key>k</key>",
        "<true>yes</true>",
        "<integer/>",
        "<integer>1.5</integer>",
        "<integer>0x10</integer>",
        "<integer>18446744073709551616</integer>",
        "<integer>-9223372036854775809</integer>",
        "<integer>1<true/></integer>",
        "<real/>",
        "<real>two</real>",
        "<real>1e999</real>",
        "<data>A</data>",
        "<data>AAE</data>",
        "<data>*&amp;</data>",
        "<date/>",
        "<date>2024-02-30T00:00:00Z</date>",
        "<date>2024-02-28T00:00:00</date>",
        "<date>yesterdayZ</date>",
        "<string><b>bold</b></string>",
        "<string>&undeclared;</string>",
        "<string>&#0;</string>",
        "<string>&#xD800;</string>",
        "<string>a < b</string>",
        "<dict><true/></dict>",
        "<dict><key>k</key></dict>",
        "<dict><key>k</key><key>l</key></dict>",
        "<dict><string>k</string><true/></dict>",
        "<dict>text</dict>",
        "<dict><key>k</key>text<true/></dict>",
        "<array>text</array>",
        "<array><true/></dict>",
        "<array a=\"1\" a=\"2\"/>",
    };
    for (const char* document : inner) {
        SCOPED_TRACE(document);
        EXPECT_FALSE(read(document));
    }
}

TEST(PropertyList, refusesEveryTruncation) {
    const QByteArray whole =
        propertyListToXml({{QStringLiteral("SgPaperName2"), QStringLiteral("DC24 €")},
                           {QStringLiteral("list"), QVariantList({1, 2.5})}});
    ASSERT_TRUE(propertyListFromXml(whole));
    const qsizetype end = whole.lastIndexOf('>');
    for (qsizetype length = 0; length <= end; ++length)
        EXPECT_FALSE(propertyListFromXml(whole.left(length))) << length;
    EXPECT_TRUE(propertyListFromXml(whole.left(end + 1)));
}

TEST(PropertyList, refusesHostileDocumentsSoonAndInLittleMemory) {
    QByteArray laughs = "<?xml version=\"1.0\"?><!DOCTYPE plist [<!ENTITY a \"ha\">";
    for (char c = 'b'; c <= 'z'; ++c) {
        const QByteArray before = QByteArray("&") + char(c - 1) + ";";
        laughs += QByteArray("<!ENTITY ") + c + " \"" + before.repeated(10) + "\">";
    }
    laughs += "]><plist><string>&z;</string></plist>";

    QByteArray attributes = "<plist";
    for (int i = 0; i < 200'000; ++i)
        attributes += " a" + QByteArray::number(i) + "=\">\"";
    attributes += "><true/></plist>";

    struct Row {
        const char* what;
        QByteArray document;
    };
    const Row rows[] = {
        {"nested entities", laughs},
        {"one long entity", "<!DOCTYPE plist [<!ENTITY a \"" + repeated("a", 100'000) +
                                "\">]><plist><string>" + repeated("&a;", 100'000) +
                                "</string></plist>"},
        {"an entity of a local file", "<!DOCTYPE plist [<!ENTITY a SYSTEM \"/etc/hostname\">]>"
                                      "<plist><string>&a;</string></plist>"},
        {"a declared attribute", "<!DOCTYPE plist [<!ATTLIST string a CDATA \"b\">]>"
                                 "<plist><string/></plist>"},
        {"arrays, a million deep", inPlist(repeated("<array>", 1'000'000))},
        {"arrays, half a million deep, within the size", inPlist(repeated("<array>", 500'000))},
        {"arrays, deep and closed",
         inPlist(repeated("<array>", 200'000) + repeated("</array>", 200'000))},
        {"dictionaries, a million deep", inPlist(repeated("<dict><key>k</key>", 1'000'000))},
        {"unknown elements, deep", inPlist(repeated("<a>", 1'000'000))},
        {"more nodes than allowed",
         inPlist("<array>" + repeated("<true/>", kPropertyListMaxNodes) + "</array>")},
        {"many attributes", attributes},
        {"an endless tag", "<plist " + repeated("a", 3'000'000)},
        {"an endless comment", "<plist><!--" + repeated("a", 3'000'000)},
        {"50 MB of text", inPlist("<string>" + repeated("a", 50'000'000) + "</string>")},
        {"50 MB of nothing", repeated(" ", 50'000'000)},
    };
    const long before = peakMemory();
    for (const Row& row : rows) {
        QElapsedTimer timer;
        timer.start();
        EXPECT_FALSE(propertyListFromXml(row.document)) << row.what;
        EXPECT_LT(timer.elapsed(), kSoon) << row.what;
    }
    // UTF-16 copies of the largest admissible document are some 24 MB.
    EXPECT_LT(peakMemory() - before, 96 * 1024);
}

TEST(PropertyList, readsUpToItsLimits) {
    const auto nested = [](int depth) {
        return read(QByteArray("<array>").repeated(depth) + QByteArray("</array>").repeated(depth));
    };
    EXPECT_TRUE(nested(kPropertyListMaxDepth));
    EXPECT_FALSE(nested(kPropertyListMaxDepth + 1));

    const auto wide = [](int nodes) {
        return read("<array>" + repeated("<true/>", nodes - 1) + "</array>");
    };
    EXPECT_TRUE(wide(kPropertyListMaxNodes));
    EXPECT_FALSE(wide(kPropertyListMaxNodes + 1));

    const auto sized = [](qsizetype bytes) {
        const qsizetype around = inPlist("<string></string>").size();
        return read("<string>" + QByteArray(bytes - around, 'a') + "</string>");
    };
    EXPECT_TRUE(sized(kPropertyListMaxBytes));
    EXPECT_FALSE(sized(kPropertyListMaxBytes + 1));
}

TEST(PropertyList, writesWhatReadsBackEqual) {
    const QDateTime date(QDate(1999, 12, 31), QTime(1, 2, 3), Qt::UTC);
    const QVariant values[] = {
        QString(),
        QStringLiteral("plain"),
        QStringLiteral(" blanks \t\n\r\n around \r "),
        QStringLiteral("<&>\"' ]]> &#13; &amp;"),
        QStringLiteral("Größe 24 mm – 漢字 \U0001F3F7"),
        true,
        false,
        0LL,
        1LL,
        -1LL,
        std::numeric_limits<qlonglong>::min(),
        std::numeric_limits<qlonglong>::max(),
        std::numeric_limits<qulonglong>::max(),
        0.0,
        1.0,
        0.1,
        -1.0 / 3.0,
        283.4646,
        1e300,
        std::numeric_limits<double>::denorm_min(),
        std::numeric_limits<double>::max(),
        std::numeric_limits<double>::infinity(),
        -std::numeric_limits<double>::infinity(),
        QByteArray(),
        QByteArray("text"),
        QByteArray("\x00\xff<>&", 5),
        date,
        date.addMSecs(7),
        QVariantList(),
        QVariantList({QVariantList(), QVariantMap(), QStringLiteral("1"), 1LL, 1.0, true}),
        QVariantMap(),
        QVariantMap(
            {{QString(), QStringLiteral("empty key")},
             {QStringLiteral("<key> & 'more'\r"), QVariantMap({{QStringLiteral("k"), 2LL}})}}),
    };
    for (const QVariant& value : values) {
        SCOPED_TRACE(value.toString().toStdString());
        const QVariant back = roundTrip(value);
        EXPECT_EQ(back.typeId(), value.typeId());
        EXPECT_EQ(back, value);
        EXPECT_EQ(propertyListValue(value), value);
    }
    const QVariant nan = roundTrip(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(nan.typeId(), QMetaType::Double);
    EXPECT_TRUE(std::isnan(nan.toDouble()));
}

TEST(PropertyList, writesAWholeSecondWithoutAFraction) {
    const QDateTime whole(QDate(1999, 12, 31), QTime(1, 2, 3), Qt::UTC);
    EXPECT_TRUE(propertyListToXml({{QStringLiteral("value"), whole}})
                    .contains("<date>1999-12-31T01:02:03Z</date>"));
    EXPECT_TRUE(propertyListToXml({{QStringLiteral("value"), whole.addMSecs(4)}})
                    .contains("<date>1999-12-31T01:02:03.004Z</date>"));
}

TEST(PropertyList, bringsOtherTypesIntoItsOwn) {
    struct Row {
        QVariant value, back;
    };
    const QDateTime away(QDate(2024, 7, 1), QTime(12, 0), QTimeZone(2 * 3600));
    const Row rows[] = {
        {5, 5LL},
        {5U, 5LL},
        {5ULL, 5LL},
        {QVariant::fromValue(short(-3)), -3LL},
        {QVariant::fromValue(static_cast<unsigned char>(200)), 200LL},
        {0.5F, 0.5},
        {QStringList({QStringLiteral("a"), QStringLiteral("b")}),
         QVariantList({QStringLiteral("a"), QStringLiteral("b")})},
        {away, away.toUTC()},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.value.typeName());
        const QVariant back = roundTrip(row.value);
        EXPECT_EQ(back.typeId(), row.back.typeId());
        EXPECT_EQ(back, row.back);
        EXPECT_EQ(propertyListValue(row.value), row.back);
    }
}

TEST(PropertyList, replacesCharactersThatXmlCannotHold) {
    const QString bad = QStringLiteral("a") + QChar(0) + QChar(0x1B) + QChar(0xD800) +
                        QStringLiteral("b") + QChar(0xDC00) + QChar(0xFFFE) + QChar(0xFFFF) +
                        QChar(0xD83C);
    const QString good = QStringLiteral("a\uFFFD\uFFFD\uFFFDb\uFFFD\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(roundTrip(bad), QVariant(good));
    EXPECT_EQ(propertyListValue(bad), QVariant(good));
    const auto map = propertyListFromXml(propertyListToXml({{bad, 1}}));
    ASSERT_TRUE(map);
    EXPECT_EQ(map->toMap(), QVariantMap({{good, 1LL}}));
}

TEST(PropertyList, writesNothingThatItCouldNotRead) {
    QVariant deep;
    deep = QVariantList();
    for (int i = 2; i < kPropertyListMaxDepth; ++i)
        deep = QVariantList({deep});
    EXPECT_EQ(roundTrip(deep), deep);

    const QVariant refused[] = {
        QVariant(),
        QDateTime(),
        QDateTime(QDate(10'000, 1, 1), QTime(0, 0), Qt::UTC),
        QVariant::fromValue(QPoint(1, 2)),
        QVariantList({QVariant()}),
        QVariantList({deep}),
        QVariantList(kPropertyListMaxNodes, true),
        QByteArray(kPropertyListMaxBytes, 'a'),
    };
    for (const QVariant& value : refused)
        EXPECT_TRUE(propertyListToXml({{QStringLiteral("value"), value}}).isEmpty())
            << (value.typeName() ? value.typeName() : "invalid");
}

} // namespace labelcut
