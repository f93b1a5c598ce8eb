// The dialog: the list of printers.
#include "host/dialog/printer_list.h"

#include <QAbstractItemView>
#include <QCollator>
#include <QTextDocument>

#include <algorithm>
#include <utility>

#include "host/texts/host_text.h"

namespace labelcut {

namespace {

/// Characters that the list has room for; a longer title is told by its tool tip.
constexpr int kTitleLength = 24;

void sortByTitle(std::vector<ListedPrinter>& printers) {
    // Without a language there are no rules but those of bytes.
    QCollator order(QLocale().language() == QLocale::C ? QLocale(QLocale::English) : QLocale());
    order.setNumericMode(true);
    order.setCaseSensitivity(Qt::CaseInsensitive);
    std::vector<std::pair<QCollatorSortKey, ListedPrinter>> keyed;
    keyed.reserve(printers.size());
    for (ListedPrinter& printer : printers) {
        QCollatorSortKey key = order.sortKey(printer.title);
        keyed.emplace_back(std::move(key), std::move(printer));
    }
    std::ranges::stable_sort(keyed, [](const auto& left, const auto& right) {
        return left.first.compare(right.first) < 0;
    });
    printers.clear();
    for (auto& [key, printer] : keyed)
        printers.push_back(std::move(printer));
}

} // namespace

PrinterList::PrinterList(QWidget* parent)
    : ElidingComboBox(parent) {
    setObjectName(QStringLiteral("printers"));
    setMinimumContentsLength(kTitleLength);
    setSizeAdjustPolicy(AdjustToMinimumContentsLengthWithIcon);
    setPlaceholderText(hostText("LookingForPrinters"));
    connect(this, &QComboBox::activated, this, &PrinterList::entryActivated);
    setPrinters({}, {});
}

void PrinterList::setPrinters(std::vector<ListedPrinter> queues,
                              const std::vector<ListedPrinter>& files) {
    sortByTitle(queues);
    queues.insert(queues.end(), files.begin(), files.end());
    if (std::exchange(mPrinters, queues) == queues && count() > 0)
        return;
    clear();
    for (const ListedPrinter& printer : mPrinters) {
        addItem(printer.title);
        setItemData(count() - 1, Qt::convertFromPlainText(printer.title, Qt::WhiteSpaceNormal),
                    Qt::ToolTipRole);
    }
    if (count() > 0)
        insertSeparator(count());
    addItem(hostText("ChoosePpd"));
    setCurrent(mCurrent);
}

void PrinterList::setCurrent(const std::optional<PrinterRef>& printer) {
    mCurrent = printer;
    const auto found = std::ranges::find_if(
        mPrinters, [&](const ListedPrinter& listed) { return printer && listed.ref == *printer; });
    setCurrentIndex(found == mPrinters.end() ? -1 : static_cast<int>(found - mPrinters.begin()));
}

bool PrinterList::isOpen() const {
    return view()->isVisible();
}

void PrinterList::showPopup() {
    Q_EMIT aboutToOpen();
    ElidingComboBox::showPopup();
}

void PrinterList::entryActivated(int index) {
    // What is chosen is shown once it is in force.
    setCurrent(mCurrent);
    if (index == count() - 1)
        Q_EMIT anotherFileWanted();
    else
        Q_EMIT printerChosen(mPrinters[static_cast<std::size_t>(index)].ref);
}

} // namespace labelcut
