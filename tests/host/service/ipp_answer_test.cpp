// An answer's bytes before libcups reads them: what passes, and what does not.
#include "host/service/ipp_answer.h"

#include <gtest/gtest.h>

#include <chrono>

#include "tests/support/answer_proxy.h"

namespace labelcut {

namespace {

using test::nestedCollections;

const QByteArray kId("\0\0\0\x01", 4);
const QByteArray kNoName("\0\0", 2);

QByteArray message(const QByteArray& groups) {
    return test::ippAnswer(0, kId, groups);
}

IppShape shapeOf(const QByteArray& bytes) {
    return IppScan().look(bytes);
}

ssize_t append(void* bytes, ipp_uchar_t* buffer, std::size_t size) {
    static_cast<QByteArray*>(bytes)->append(reinterpret_cast<char*>(buffer),
                                            static_cast<qsizetype>(size));
    return static_cast<ssize_t>(size);
}

/// A message of many types as libcups writes it.
QByteArray writtenByCups() {
    const IppMessage all(ippNew());
    ippSetRequestId(all.get(), 7);
    ippSetVersion(all.get(), 2, 0);
    const char* const texts[] = {"one", "", "three"};
    ippAddStrings(all.get(), IPP_TAG_OPERATION, IPP_TAG_KEYWORD, "names", 3, nullptr, texts);
    ippAddInteger(all.get(), IPP_TAG_PRINTER, IPP_TAG_ENUM, "state", 3);
    ippAddBoolean(all.get(), IPP_TAG_PRINTER, "is", 1);
    ippAddRange(all.get(), IPP_TAG_PRINTER, "range", 1, 9);
    ippAddResolution(all.get(), IPP_TAG_PRINTER, "resolution", IPP_RES_PER_INCH, 300, 300);
    ippAddOutOfBand(all.get(), IPP_TAG_PRINTER, IPP_TAG_NOVALUE, "time");
    ippAddString(all.get(), IPP_TAG_PRINTER, IPP_TAG_TEXTLANG, "words", "de", "Größe");
    ippAddSeparator(all.get());
    const IppMessage size(ippNew());
    ippAddInteger(size.get(), IPP_TAG_ZERO, IPP_TAG_INTEGER, "x-dimension", 2400);
    const IppMessage media(ippNew());
    ippAddCollection(media.get(), IPP_TAG_ZERO, "media-size", size.get());
    const ipp_t* both[] = {media.get(), media.get()};
    ippAddCollections(all.get(), IPP_TAG_PRINTER, "media-col-database", 2, both);
    QByteArray bytes;
    while (ippWriteIO(&bytes, append, 1, nullptr, all.get()) != IPP_STATE_DATA) {
    }
    return bytes;
}

} // namespace

TEST(IppScan, PassesWhatTheLibraryWritesAndEndsWhereItEnds) {
    const QByteArray bytes = writtenByCups();
    IppScan scan;
    EXPECT_EQ(scan.look(bytes + "what follows"), IppShape::Whole);
    EXPECT_EQ(scan.length(), bytes.size());
    const IppMessage read = readIpp(bytes, Deadline({10'000, nullptr}));
    ASSERT_TRUE(read);
    EXPECT_EQ(ippGetRequestId(read.get()), 7);
    EXPECT_EQ(ippGetCount(ippFindAttribute(read.get(), "media-col-database", IPP_TAG_ZERO)), 2);
}

TEST(IppScan, SaysTheSameHoweverTheBytesArrive) {
    const QByteArray bytes = writtenByCups();
    IppScan scan;
    for (qsizetype size = 0; size < bytes.size(); ++size)
        ASSERT_EQ(scan.look(QByteArrayView(bytes).first(size)), IppShape::Unfinished) << size;
    EXPECT_EQ(scan.look(bytes), IppShape::Whole);
    EXPECT_EQ(scan.length(), bytes.size());
}

TEST(IppScan, PassesCollectionsUpToTheGreatestDepth) {
    for (const int depth : {1, 2, kMaxAnswerDepth}) {
        const QByteArray bytes = message(nestedCollections(depth));
        EXPECT_EQ(shapeOf(bytes), IppShape::Whole) << depth;
        EXPECT_TRUE(readIpp(bytes, Deadline({10'000, nullptr}))) << depth;
    }
    for (const int depth : {kMaxAnswerDepth + 1, 100, 10'000})
        EXPECT_EQ(shapeOf(message(nestedCollections(depth))), IppShape::TooMuch) << depth;
}

TEST(IppScan, PassesNoMorePartsThanTheLimit) {
    const QByteArray value = "\x21" + kNoName + QByteArray("\0\x04\0\0\0\0", 6);
    const QByteArray first = QByteArray("\x04\x21\0\x01n\0\x04\0\0\0\0", 11);
    // The group, the first value and the end are parts as well.
    EXPECT_EQ(shapeOf(message(first + value.repeated(kMaxAnswerParts - 3))), IppShape::Whole);
    EXPECT_EQ(shapeOf(message(first + value.repeated(kMaxAnswerParts - 2))), IppShape::TooMuch);
    EXPECT_EQ(shapeOf(message(QByteArray("\x04").repeated(kMaxAnswerParts))), IppShape::TooMuch)
        << "each group costs memory";
}

TEST(IppScan, RefusesWhatIsNotBuiltAsItShouldBe) {
    const QByteArray begin("\x04\x34\0\x01n\0\0", 7);
    const QByteArray end("\x37\0\0\0\0", 5);
    struct Row {
        const char* what;
        QByteArray groups;
    };
    const Row rows[] = {
        {"a collection that the message's end closes", begin},
        {"a group within a collection", begin + '\x04' + end},
        {"an end without a beginning", '\x04' + end},
        {"an end with a name", begin + QByteArray("\x37\0\x01n\0\0", 6) + end},
        {"an end with a value", begin + QByteArray("\x37\0\0\0\x01v", 6) + end},
        {"a beginning with a value", QByteArray("\x04\x34\0\x01n\0\x01v", 8) + end},
        {"a member's name outside", QByteArray("\x04\x4a\0\0\0\x01n", 7)},
        {"a member's name with a name", begin + QByteArray("\x4a\0\x01n\0\x01n", 7) + end},
        {"the reserved delimiter", QByteArray("\0", 1)},
        {"a tag that is extended", QByteArray("\x04\x7f\0\0\0\x34\0\x01n\0\0", 11)},
        {"a negative length", QByteArray("\x04\x41\xff\xff", 4) + QByteArray(70'000, 'n')},
        {"a value of negative length",
         QByteArray("\x04\x41\0\x01n\x80\0", 7) + QByteArray(70'000, 'v')},
    };
    for (const Row& row : rows)
        EXPECT_EQ(shapeOf(message(row.groups)), IppShape::Malformed) << row.what;
}

TEST(IppScan, StaysWithWhatItHasFound) {
    IppScan scan;
    const QByteArray deep = message(nestedCollections(kMaxAnswerDepth + 1));
    EXPECT_EQ(scan.look(deep), IppShape::TooMuch);
    EXPECT_EQ(scan.look(deep + deep), IppShape::TooMuch);
}

TEST(ReadIpp, EndsWithItsDeadline) {
    const QByteArray bytes = writtenByCups();
    EXPECT_FALSE(readIpp(bytes, Deadline({0, nullptr})));
    CancelFlag flag;
    flag.cancel();
    EXPECT_FALSE(readIpp(bytes, Deadline({10'000, &flag})));
}

TEST(ReadIpp, GivesNothingForAValueThatIsNoneOfItsType) {
    const QByteArray bytes = message(QByteArray("\x04\x21\0\x01n\0\x01v", 8));
    ASSERT_EQ(shapeOf(bytes), IppShape::Whole);
    EXPECT_FALSE(readIpp(bytes, Deadline({10'000, nullptr})));
}

TEST(ReadIpp, TakesAtMostSecondsForTheWorstThatPasses) {
    // Texts in falling order: the library keeps them sorted, and moves all others for each.
    QByteArray groups("\x04", 1);
    for (int i = kMaxAnswerParts - 2; i > 0; --i)
        groups += QByteArray("\x44\0\x01n\0\x08", 6) + QByteArray::number(10'000'000 + i);
    const QByteArray bytes = message(groups);
    ASSERT_EQ(shapeOf(bytes), IppShape::Whole);
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_TRUE(readIpp(bytes, Deadline({60'000, nullptr})));
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(20));
}

} // namespace labelcut
