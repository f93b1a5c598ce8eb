// Answers that would hurt a reader that trusts them, given to every request.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QBuffer>

#include "host/service/cups_connection.h"
#include "tests/support/answer_proxy.h"

namespace labelcut {

namespace {

using test::AnswerProxy;
using testing::HasSubstr;

constexpr CallLimits kLimits{30'000, nullptr};
const QString kTape = QStringLiteral("tape");

JobRequest tapeJob() {
    JobRequest request;
    request.queue = kTape;
    return request;
}

template<typename T>
Error errorOf(const Result<T>& result) {
    return result ? Error{ErrorKind::Other, QStringLiteral("(no error)")} : result.error();
}

Error send(const CupsConnection& service) {
    QByteArray document = "%!PS\nshowpage\n";
    QBuffer buffer(&document);
    buffer.open(QIODevice::ReadOnly);
    return errorOf(service.sendDocument(1, tapeJob(), buffer, {}, kLimits));
}

/// Every request that is answered in IPP, by its error.
struct Call {
    const char* name;
    Error (*run)(const CupsConnection& service);
};

constexpr Call kCalls[] = {
    {"listQueues", [](const CupsConnection& s) { return errorOf(s.listQueues(kLimits)); }},
    {"defaultQueue", [](const CupsConnection& s) { return errorOf(s.defaultQueue(kLimits)); }},
    {"queueAttributes",
     [](const CupsConnection& s) { return errorOf(s.queueAttributes(kTape, kLimits)); }},
    {"validateJob",
     [](const CupsConnection& s) { return errorOf(s.validateJob(tapeJob(), kLimits)); }},
    {"createJob", [](const CupsConnection& s) { return errorOf(s.createJob(tapeJob(), kLimits)); }},
    {"sendDocument", send},
    {"jobAttributes", [](const CupsConnection& s) { return errorOf(s.jobAttributes(1, kLimits)); }},
    {"cancelJob", [](const CupsConnection& s) { return errorOf(s.cancelJob(1, {}, kLimits)); }},
};

/// Answers each request alike. @param groups  of the IPP answer. @param status  its status.
AnswerProxy::Change answering(const QByteArray& groups, int status = 0) {
    return [=](const AnswerProxy::Exchange& asked) {
        return AnswerProxy::Reply{test::httpWithIpp(test::ippAnswer(status, asked.id, groups))};
    };
}

CupsConnection to(const AnswerProxy& server) {
    return CupsConnection({QStringLiteral("127.0.0.1"), server.port()});
}

void expectRefused(const AnswerProxy& server, const char* words) {
    for (const Call& call : kCalls) {
        const Error error = call.run(to(server));
        EXPECT_EQ(error.kind, ErrorKind::NotAPrintService) << call.name;
        EXPECT_THAT(error.sentence.toStdString(), HasSubstr(words)) << call.name;
        EXPECT_THAT(error.sentence.toStdString(), HasSubstr(server.address().toStdString()))
            << call.name;
    }
}

} // namespace

TEST(HostileAnswers, OfCollectionsWithinEachOtherAreRefusedByName) {
    for (const int depth : {kMaxAnswerDepth + 1, 10'000}) {
        const AnswerProxy server({}, answering(test::nestedCollections(depth)));
        expectRefused(server, "nested too deeply");
    }
}

TEST(HostileAnswers, ThatSayOfThemselvesThatTheyFailAreLookedAtTheSameWay) {
    const AnswerProxy server({}, answering(test::nestedCollections(10'000), 0x0406));
    expectRefused(server, "nested too deeply");
}

TEST(HostileAnswers, OfVeryManyPartsAreRefusedByName) {
    const AnswerProxy server({}, answering(QByteArray(5'000'000, '\x04')));
    expectRefused(server, "more than any print service needs");
}

TEST(HostileAnswers, ToAnotherRequestAreRefusedByName) {
    for (const int status : {0, 0x0406}) {
        const AnswerProxy server({}, [=](const AnswerProxy::Exchange& asked) {
            QByteArray other = asked.id;
            other[0] = static_cast<char>(other.at(0) ^ 1);
            return AnswerProxy::Reply{test::httpWithIpp(test::ippAnswer(status, other))};
        });
        expectRefused(server, "belongs to another request");
    }
}

TEST(HostileAnswers, OfTheGreatestDepthAreStillRead) {
    const AnswerProxy server({}, answering(test::nestedCollections(kMaxAnswerDepth)));
    const auto queue = to(server).queueAttributes(kTape, kLimits);
    ASSERT_TRUE(queue) << queue.error().sentence.toStdString();
    EXPECT_EQ(queue->attributes.size(), 1);
}

} // namespace labelcut
