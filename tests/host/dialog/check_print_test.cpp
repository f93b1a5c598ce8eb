// One label to check, then the others.
#include "host/dialog/check_print.h"

#include <gtest/gtest.h>

namespace labelcut::test {

namespace {

/// A job of some of five pages.
struct Job {
    Order order;
    JobPlan plan;
};

Job job(const QString& pages, int copies = 1, bool isReversed = false, bool isCollated = true) {
    Order order;
    order.amount.pages = *parsePageSelection(pages);
    order.amount.copies = copies;
    order.amount.isReversed = isReversed;
    order.amount.isCollated = isCollated;
    PlanInput input;
    DocumentPages document;
    document.measures.assign(5, QSizeF(10, 10));
    document.ofFiles = {5};
    input.document = std::make_shared<const DocumentPages>(document);
    input.pages = order.amount.pages;
    input.copies = copies;
    input.isReversed = isReversed;
    input.isCollated = isCollated;
    return {order, JobPlan(input)};
}

/// The page of each label, in the order that they come out.
std::vector<int> labelsOf(const JobPlan& plan) {
    std::vector<int> pages;
    for (std::int64_t i = 0; i < plan.labels(); ++i)
        pages.push_back(plan.pageAt(i));
    return pages;
}

std::vector<int> labelsOf(const Job& job, PrintPart part) {
    const std::optional<Order> order = partOf(job.order, job.plan, part);
    if (!order)
        return {};
    PlanInput input = job.plan.input();
    input.pages = order->amount.pages;
    input.copies = order->amount.copies;
    input.isReversed = order->amount.isReversed;
    input.isCollated = order->amount.isCollated;
    std::vector<int> pages = labelsOf(JobPlan(input));
    pages.erase(pages.begin(), pages.begin() + order->labelsBefore);
    return pages;
}

} // namespace

TEST(CheckPrintTest, FirstAndOthersAreTheWholeInItsOrder) {
    int checked = 0;
    for (const char* pages : {"1-", "1", "2-4", "1,3,5", "4-9", "3-", "5"}) {
        for (const int copies : {1, 2, 3}) {
            for (const bool isReversed : {false, true}) {
                for (const bool isCollated : {false, true}) {
                    const Job whole = job(QLatin1String(pages), copies, isReversed, isCollated);
                    if (!canCheck(whole.plan))
                        continue;
                    ++checked;
                    std::vector<int> parts = labelsOf(whole, PrintPart::First);
                    EXPECT_EQ(parts.size(), 1U) << pages;
                    for (const int page : labelsOf(whole, PrintPart::Others))
                        parts.push_back(page);
                    EXPECT_EQ(parts, labelsOf(whole.plan))
                        << pages << " x " << copies << (isReversed ? " reversed" : "");
                }
            }
        }
    }
    EXPECT_EQ(checked, 7 * 3 * 2 * 2 - 2 * 2 * 2) << "all but two single labels";
}

TEST(CheckPrintTest, OneLabelHasNoOthers) {
    const Job one = job(QStringLiteral("2"));
    EXPECT_FALSE(canCheck(one.plan));
    EXPECT_FALSE(partOf(one.order, one.plan, PrintPart::First));
    EXPECT_FALSE(partOf(one.order, one.plan, PrintPart::Others));
}

TEST(CheckPrintTest, TheOfferHoldsForTheSameOrderOnly) {
    const Order whole = job(QStringLiteral("1-")).order;
    PrintOffer offer;
    EXPECT_EQ(offer.kindFor(whole), PrintOffer::Kind::All);
    offer.noteChecked(whole);
    EXPECT_EQ(offer.kindFor(whole), PrintOffer::Kind::Others);
    EXPECT_EQ(offer.kindFor(std::nullopt), PrintOffer::Kind::All);
    Order other = whole;
    other.amount.copies = 2;
    EXPECT_EQ(offer.kindFor(other), PrintOffer::Kind::All);
    other = whole;
    other.shown = {"another content"};
    EXPECT_EQ(offer.kindFor(other), PrintOffer::Kind::All);
    other = whole;
    other.printer = QueueRef{QStringLiteral("another")};
    EXPECT_EQ(offer.kindFor(other), PrintOffer::Kind::All);
    offer.noteLost(whole);
    EXPECT_EQ(offer.kindFor(whole), PrintOffer::Kind::Again);
    offer.forget();
    EXPECT_EQ(offer.kindFor(whole), PrintOffer::Kind::All);
}

} // namespace labelcut::test
