// The list of printers.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QSignalSpy>
#include <QToolTip>

#include "host/dialog/printer_list.h"
#include "tests/host/dialog/dialog_fixtures.h"

namespace labelcut::test {

using testing::ElementsAre;

namespace {

ListedPrinter queue(const char* title) {
    return {QueueRef{QString::fromUtf8(title) + QStringLiteral("-queue")},
            QString::fromUtf8(title)};
}

class PrinterListTest : public testing::Test {
protected:
    std::vector<std::string> entries() const {
        std::vector<std::string> all;
        for (int i = 0; i < mList.count(); ++i) {
            if (!mList.itemText(i).isEmpty())
                all.push_back(mList.itemText(i).toStdString());
        }
        return all;
    }
    QString toolTip() {
        QHelpEvent event(QEvent::ToolTip, QPoint(5, 5), mList.mapToGlobal(QPoint(5, 5)));
        QApplication::sendEvent(&mList, &event);
        return QToolTip::text();
    }

    Offscreen mOffscreen;
    PrinterList mList;
};

} // namespace

TEST_F(PrinterListTest, QueuesAreSortedByWhatIsShownAndNumbersByTheirValue) {
    mList.setPrinters({queue("Printer 10"), queue("äther"), queue("zebra"), queue("Printer 9"),
                       queue("Banner (aaa)"), queue("printer 1")},
                      {{PpdFileRef{QStringLiteral("/a.ppd")}, QStringLiteral("A file")}});
    EXPECT_THAT(entries(), ElementsAre("äther", "Banner (aaa)", "printer 1", "Printer 9",
                                       "Printer 10", "zebra", "A file", "Choose a PPD file…"));
}

TEST_F(PrinterListTest, WithoutPrintersItLeadsToAPpdFile) {
    EXPECT_THAT(entries(), ElementsAre("Choose a PPD file…"));
    EXPECT_EQ(mList.currentIndex(), -1) << "which is no printer";
    QSignalSpy wanted(&mList, &PrinterList::anotherFileWanted);
    mList.show();
    choose(mList, 0);
    EXPECT_EQ(wanted.count(), 1);
    EXPECT_EQ(mList.currentIndex(), -1);
}

TEST_F(PrinterListTest, WhatIsChosenIsShownOnlyOnceItIsSaidToBeInForce) {
    mList.setPrinters({queue("one"), queue("two")}, {});
    mList.setCurrent(QueueRef{QStringLiteral("one-queue")});
    QSignalSpy chosen(&mList, &PrinterList::printerChosen);
    mList.show();
    choose(mList, 1);
    ASSERT_EQ(chosen.count(), 1);
    EXPECT_EQ(chosen.front().front().value<PrinterRef>(),
              PrinterRef(QueueRef{QStringLiteral("two-queue")}));
    EXPECT_EQ(mList.currentText().toStdString(), "one");
    // The one in force stays so when others come.
    mList.setPrinters({queue("a new one"), queue("one"), queue("two")}, {});
    EXPECT_EQ(mList.currentText().toStdString(), "one");
}

TEST_F(PrinterListTest, ATitleThatIsTooLongCanBeReadUnderThePointer) {
    const QByteArray title = "The printer " + QByteArray("in the hall ").repeated(10);
    mList.setPrinters({queue("short"), queue(title.constData())}, {});
    mList.resize(200, mList.sizeHint().height());
    mList.show();
    mList.setCurrent(QueueRef{QStringLiteral("short-queue")});
    EXPECT_EQ(toolTip(), QString());
    mList.setCurrent(QueueRef{QString::fromUtf8(title) + QStringLiteral("-queue")});
    EXPECT_TRUE(toolTip().contains(QStringLiteral("in the hall in the hall")));
    QToolTip::hideText();
    EXPECT_TRUE(mList.itemData(1, Qt::ToolTipRole).toString().contains(QStringLiteral("hall")));
}

} // namespace labelcut::test
