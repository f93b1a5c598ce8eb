// States of printers in words.
#include "host/printers/printer_state.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace labelcut {

using testing::HasSubstr;

namespace {

Queue queue(PMPrinterState state, bool isAccepting, const QStringList& reasons = {},
            const QString& message = {}) {
    Queue one;
    one.name = QStringLiteral("tape");
    one.state = state;
    one.isAccepting = isAccepting;
    one.stateReasons = reasons;
    one.stateMessage = message;
    return one;
}

struct Row {
    PMPrinterState state;
    bool isAccepting;
    const char* reasons;
    const char* message;
    const char* expected;
    bool needsAttention;
};

} // namespace

class StateSentenceTest : public testing::TestWithParam<Row> {};

TEST_P(StateSentenceTest, SaysStateAndConsequence) {
    const Row& row = GetParam();
    const QStringList reasons = QString::fromLatin1(row.reasons).split(u',', Qt::SkipEmptyParts);
    const Queue one = queue(row.state, row.isAccepting, reasons, QString::fromUtf8(row.message));
    EXPECT_EQ(stateSentence(one).toStdString(), row.expected);
    EXPECT_EQ(needsAttention(one), row.needsAttention);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, StateSentenceTest,
    testing::Values(
        Row{PMPrinterState::Idle, true, "", "", "Ready.", false},
        Row{PMPrinterState::Idle, true, "none", "", "Ready.", false},
        Row{PMPrinterState::Processing, true, "", "", "Printing: jobs wait for their turn.", false},
        Row{PMPrinterState::Stopped, true, "paused", "",
            "Paused: jobs are held until it is resumed.", true},
        Row{PMPrinterState::Idle, false, "", "",
            "Takes no jobs: choose another printer, or let this one accept jobs again.", true},
        Row{PMPrinterState::Stopped, false, "", "",
            "Paused, and takes no jobs: choose another printer, or have this one resumed and let "
            "it accept jobs again.",
            true},
        Row{PMPrinterState::Stopped, true, "paused", "Paused for cleaning",
            "Paused: jobs are held until it is resumed. Paused for cleaning.", true},
        Row{PMPrinterState::Stopped, true, "paused", "Paused",
            "Paused: jobs are held until it is resumed.", true},
        Row{PMPrinterState::Stopped, false, "paused", " stopped.",
            "Paused, and takes no jobs: choose another printer, or have this one resumed and let "
            "it accept jobs again.",
            true},
        Row{PMPrinterState::Idle, true, "", "Idle", "Ready.", false},
        Row{PMPrinterState::Idle, true, "", "Paused", "Paused.", false},
        Row{PMPrinterState::Processing, true, "", "Processing.",
            "Printing: jobs wait for their turn.", false},
        Row{PMPrinterState::Idle, true, "media-empty-error", "", "Paper or tape is used up.", true},
        Row{PMPrinterState::Idle, true, "media-low-warning,cover-open-error", "",
            "Paper or tape is nearly used up. A cover is open.", true},
        Row{PMPrinterState::Processing, true, "media-jam", "",
            "Printing: jobs wait for their turn. Paper or tape is jammed.", false},
        Row{PMPrinterState::Idle, true, "offline-report", "",
            "The printer is switched off or offline.", false},
        Row{PMPrinterState::Idle, true, "com.example-cutter_blunt-warning", "",
            "The printer says: com.example cutter blunt.", false},
        Row{PMPrinterState::Idle, true, "", "Out of tape!", "Out of tape!", false},
        Row{PMPrinterState::Idle, true, "cover-open-error", "A cover is open.", "A cover is open.",
            true}));

TEST(PrinterStateTest, EverySeverityOfAKnownReasonIsTheSame) {
    for (const char* ending : {"", "-error", "-warning", "-report"})
        EXPECT_EQ(reasonText(QStringLiteral("door-open") + QLatin1String(ending)),
                  QStringLiteral("A door is open"));
}

TEST(PrinterStateTest, AQueueThatIsGoneIsNamed) {
    EXPECT_THAT(goneSentence(QStringLiteral("tape")).toStdString(), HasSubstr("“tape” is gone"));
}

} // namespace labelcut
