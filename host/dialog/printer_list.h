// The dialog: the list of printers.
#pragma once

#include <optional>
#include <vector>

#include "host/dialog/eliding_combo_box.h"
#include "host/printers/printer_ref.h"

namespace labelcut {

/// A printer as the list shows it.
struct ListedPrinter {
    PrinterRef ref;
    QString title;
    bool operator==(const ListedPrinter&) const = default;
};

/// Queues by their titles, then PPD files, then an entry that leads to one more PPD file: the list
/// can always be opened.
class PrinterList : public ElidingComboBox {
    Q_OBJECT
public:
    explicit PrinterList(QWidget* parent = nullptr);

    /// @param queues  in any order; shown by title as the user's language sorts, numbers by value.
    /// @param files   shown in this order.
    void setPrinters(std::vector<ListedPrinter> queues, const std::vector<ListedPrinter>& files);
    /// Shows which one is chosen. @param printer  nothing: none.
    void setCurrent(const std::optional<PrinterRef>& printer);
    bool isOpen() const;

    QSize minimumSizeHint() const override { return wholeMinimumSizeHint(); }
    void showPopup() override;

Q_SIGNALS:
    void aboutToOpen();
    /// The user's choice.
    void printerChosen(const labelcut::PrinterRef& printer);
    void anotherFileWanted();

private:
    void entryActivated(int index);

    /// As the entries show them, from the first on.
    std::vector<ListedPrinter> mPrinters;
    std::optional<PrinterRef> mCurrent;
};

} // namespace labelcut
