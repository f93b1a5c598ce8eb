// The worker's protocol: what is sent arrives as it was, and what makes no sense is refused.
#include "worker/protocol/message.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <string>
#include <vector>

namespace labelcut::worker {

namespace {

const Paper kPaper{"T24", 68, 142, 3, 3, 65, 139};

const std::vector<Request>& requests() {
    static const std::vector<Request> all{
        Open{},
        Join{},
        Join{{{3, 5}}, false, 1, kPaper, Fit::Unchanged},
        Join{{{1, 1}, {3, 3}, {5, 7}, {9, UINT32_MAX}},
             true,
             kMostRepeats,
             std::nullopt,
             kLastFit,
             kMostRepeats,
             7},
        Draw{DocumentKind::PlainText, kPaper},
        Interpret{},
        Interpret{Interpret::Target::PostScript, 99, false},
        Measure{},
        Show{},
        Render{},
        Render{7, kLargestSide, kMostPixels / kLargestSide, false},
    };
    return all;
}

const std::vector<Answer>& answers() {
    static const std::vector<Answer> all{
        Progress{},
        Kind{DocumentKind::SVG},
        Opened{},
        Opened{kMostPages, true, true, false},
        Done{},
        Failed{},
        Failed{Problem::Broken, "xref not found", 7},
        Shown{},
        Shown{kMostPages},
        Drawn{},
        Drawn{TextDirection::Upwards},
    };
    return all;
}

template<typename Message, typename Decode>
void expectRefusedButWhole(const std::vector<Message>& messages, Decode decode) {
    for (const Message& message : messages) {
        const std::string bytes = encode(message);
        ASSERT_LE(bytes.size(), kLargestMessage);
        const auto again = decode(bytes);
        ASSERT_TRUE(again);
        EXPECT_EQ(again->index(), message.index());
        EXPECT_EQ(encode(*again), bytes);
        EXPECT_FALSE(decode(bytes + '\0')) << "something behind the last field";
        for (std::size_t size = 0; size < bytes.size(); ++size)
            EXPECT_FALSE(decode(std::string_view(bytes).substr(0, size))) << size;
    }
}

/// The first byte `from` becomes `to`.
std::string changed(std::string bytes, std::size_t at, unsigned char to) {
    bytes.at(at) = static_cast<char>(to);
    return bytes;
}

} // namespace

TEST(MessageTest, EachArrivesWholeOrNotAtAll) {
    expectRefusedButWhole(requests(), decodeRequest);
    expectRefusedButWhole(answers(), decodeAnswer);
}

TEST(MessageTest, ValuesThatAFieldCannotHaveAreRefused) {
    EXPECT_FALSE(decodeRequest(changed(encode(Request(Open{})), 0, 7))) << "no such request";
    EXPECT_FALSE(decodeRequest(changed(encode(Request(Join{})), 5, 2))) << "no truth value";
    for (const std::vector<PageRun>& pages : std::vector<std::vector<PageRun>>{
             {{0, 5}},                  // pages count from 1
             {{5, 4}},                  // backwards
             {{4, 5}, {2, 2}},          // descending
             {{1, 2}, {2, 3}},          // overlapping
             {{1, 2}, {3, 3}},          // touching
             {{1, UINT32_MAX}, {2, 3}}, // behind the last
         }) {
        Join join;
        join.pages = pages;
        EXPECT_FALSE(decodeRequest(encode(Request(join)))) << pages.front().first;
    }
    for (const std::uint32_t repeats : {0U, kMostRepeats + 1}) {
        Join join;
        join.repeats = repeats;
        EXPECT_FALSE(decodeRequest(encode(Request(join)))) << repeats;
        join.repeats = 1;
        join.sets = repeats;
        EXPECT_FALSE(decodeRequest(encode(Request(join)))) << repeats;
    }
    const std::string join = encode(Request(Join{}));
    EXPECT_FALSE(decodeRequest(changed(join, join.size() - 1, 4))) << "no such fit";
    EXPECT_FALSE(decodeRequest(encode(Request(Draw{DocumentKind::PDF, kPaper}))));
    EXPECT_FALSE(decodeRequest(encode(Request(Draw{DocumentKind::PostScript, kPaper}))));
    EXPECT_FALSE(decodeRequest(encode(Request(Interpret{{}, 0, true}))));
    for (const double odd :
         {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()}) {
        Paper paper = kPaper;
        paper.right = odd;
        EXPECT_FALSE(decodeRequest(encode(Request(Draw{DocumentKind::PNG, paper}))));
    }
    EXPECT_FALSE(decodeAnswer(encode(Answer(Opened{0, false, false, true}))));
    EXPECT_FALSE(decodeAnswer(encode(Answer(Opened{kMostPages + 1, false, false, true}))));
    EXPECT_FALSE(decodeAnswer(changed(encode(Answer(Kind{})), 1, 6)));
    EXPECT_FALSE(decodeAnswer(changed(encode(Answer(Failed{})), 1, 14)));
}

TEST(MessageTest, PicturesOfNoMeasureOrOneBeyondAllLimitsAreRefused) {
    for (const Render& odd :
         {Render{0, 1, 1}, Render{1, 0, 1}, Render{1, 1, 0}, Render{1, kLargestSide + 1, 1},
          Render{1, 1, kLargestSide + 1}, Render{1, 4000, 4001}, Render{1, 1U << 31, 1U << 31}})
        EXPECT_FALSE(decodeRequest(encode(Request(odd)))) << odd.width << " x " << odd.height;
    EXPECT_TRUE(decodeRequest(encode(Request(Render{1, 4000, 4000}))));
    EXPECT_FALSE(decodeAnswer(encode(Answer(Shown{0}))));
    EXPECT_FALSE(decodeAnswer(encode(Answer(Shown{kMostPages + 1}))));
    EXPECT_FALSE(decodeAnswer(changed(encode(Answer(Drawn{})), 1, 4))) << "no such direction";
}

TEST(MessageTest, ALongTextIsCutWhereItIsSentAndRefusedWhereItArrives) {
    const std::string longText(kLongestText + 1, 'x');
    const auto answer = decodeAnswer(encode(Answer(Failed{Problem::Broken, longText, 0})));
    ASSERT_TRUE(answer);
    EXPECT_EQ(std::get<Failed>(*answer).detail.size(), kLongestText);
    std::string forged = encode(Answer(Failed{Problem::Broken, longText, 0}));
    forged.insert(forged.size() - sizeof(std::uint32_t), "x");
    const std::uint32_t size = kLongestText + 1;
    forged.replace(2, sizeof size, reinterpret_cast<const char*>(&size), sizeof size);
    EXPECT_FALSE(decodeAnswer(forged));
}

TEST(MessageTest, AsManyPageRunsAsAreTakenFitOneMessage) {
    Join join;
    join.paper = kPaper;
    join.paper->name = std::string(kLongestText, 'x');
    for (std::uint32_t i = 0; i < kMostRuns; ++i)
        join.pages.push_back({2 * i + 1, 2 * i + 1});
    const std::string bytes = encode(Request(join));
    ASSERT_LE(bytes.size(), kLargestMessage);
    ASSERT_TRUE(decodeRequest(bytes));
    EXPECT_EQ(std::get<Join>(*decodeRequest(bytes)).pages.size(), kMostRuns);
    std::string forged = bytes;
    const std::uint32_t count = kMostRuns + 1;
    forged.replace(1, sizeof count, reinterpret_cast<const char*>(&count), sizeof count);
    const std::uint32_t more[] = {9'000, 9'000};
    forged.insert(1 + sizeof count + kMostRuns * sizeof more,
                  std::string(reinterpret_cast<const char*>(more), sizeof more));
    EXPECT_FALSE(decodeRequest(forged));
}

TEST(MessageTest, WhateverIsTakenIsWhatWouldBeSent) {
    std::mt19937 random(1);
    for (int round = 0; round < 200'000; ++round) {
        std::string bytes = encode(answers()[random() % answers().size()]);
        for (unsigned change = random() % 4; change > 0; --change)
            bytes[random() % bytes.size()] = static_cast<char>(random());
        if (const auto answer = decodeAnswer(bytes)) {
            ASSERT_EQ(encode(*answer), bytes);
        }
    }
}

} // namespace labelcut::worker
