// The dialog: the window, from the press of Print to the end of the job.
#include <QFileDialog>
#include <QPushButton>

#include <utility>

#include "host/dialog/document_row.h"
#include "host/dialog/job_footer.h"
#include "host/dialog/message_bar.h"
#include "host/dialog/page_stack.h"
#include "host/dialog/print_dialog.h"
#include "host/presets/preset_store.h"
#include "host/texts/host_text.h"

namespace labelcut {

namespace {
const QString kRunMessage = QStringLiteral("run");
const QString kTypingMessage = QStringLiteral("typing");
} // namespace

void PrintDialog::connectRun() {
    connect(&mRun, &PrintRun::progressed, this, [this](const QString& sentence, int percent) {
        if (mRun.isSent())
            mFooter->showCancelling(sentence);
        else
            mFooter->showProgress(sentence, percent);
    });
    connect(&mRun, &PrintRun::reported, mFooter, &JobFooter::showReport);
    connect(&mRun, &PrintRun::refused, mFooter, &JobFooter::showRefusal);
    connect(&mRun, &PrintRun::documentChanged, mDocument, &DocumentRow::documentChanged);
    connect(&mRun, &PrintRun::failed, this, [this](const QString& sentence) {
        if (mRun.wasSent())
            mOffer.noteLost(mPrinted);
        else if (mPart == PrintPart::Others)
            mOffer.noteChecked(mPrinted);
        setRunning(false);
        mMessages->show(kRunMessage, MessageBar::Kind::Warning, sentence);
    });
    connect(&mRun, &PrintRun::finished, this,
            [this](const QString&, bool isOver) { runEnded(isOver); });
}

/// A job that went through, or was left to itself, closes the window; a label that was printed to
/// be checked keeps it for the others.
void PrintDialog::runEnded(bool isOver) {
    const bool isChecked = isOver && mPart == PrintPart::First;
    if (isChecked)
        mOffer.noteChecked(mPrinted);
    setRunning(false);
    if (!isChecked)
        accept();
}

Order PrintDialog::orderNow() const {
    Order order = mModel.order();
    order.shown = mDocument->digests();
    return order;
}

void PrintDialog::print(PrintPart part, bool isHeld) {
    mFocusBefore = focusWidget();
    // What is being typed somewhere is taken first.
    mFooter->printButton().setFocus();
    mMessages->remove(kRunMessage);
    if (mRun.isBusy() || !isReadyToPrint())
        return;
    Order now = orderNow();
    // The button may still offer what was changed in this very moment.
    if (part == PrintPart::Others && mOffer.kindFor(now) != PrintOffer::Kind::Others)
        return;
    mPrinted = std::move(now);
    mPart = part;
    const std::optional<JobPlan> plan = mModel.plan();
    const std::optional<Order> order =
        part == PrintPart::All ? mPrinted : (plan ? partOf(mPrinted, *plan, part) : std::nullopt);
    if (!order)
        return;
    if (queueName(order->printer))
        startRun(*order, isHeld);
    else
        printIntoFile(*order);
}

void PrintDialog::printIntoFile(Order order) {
    order.inUse << PresetStore().filePath(identityOf(*mModel.printer()));
    auto* chooser = new QFileDialog(this, hostText("PrintIntoFile"));
    chooser->setAttribute(Qt::WA_DeleteOnClose);
    chooser->setAcceptMode(QFileDialog::AcceptSave);
    chooser->setDefaultSuffix(QStringLiteral("ps"));
    chooser->setNameFilters({hostText("PostScriptFiles") + QStringLiteral(" (*.ps)"),
                             hostText("AllFiles") + QStringLiteral(" (*)")});
    chooser->selectFile(QStringLiteral("labels.ps"));
    connect(chooser, &QFileDialog::fileSelected, this, [this, order](const QString& path) {
        Order chosen = order;
        chosen.outputPath = path;
        startRun(chosen, false);
    });
    chooser->open();
}

bool PrintDialog::isReadyToPrint() {
    const QString problem = mPages->showProblem();
    if (!problem.isEmpty()) {
        mMessages->show(kTypingMessage, MessageBar::Kind::Warning, problem);
        return false;
    }
    mMessages->remove(kTypingMessage);
    if (!mModel.shouldPrint()) {
        mMessages->show(kRunMessage, MessageBar::Kind::Warning, hostText("PanelRefuses"));
        return false;
    }
    refresh();
    return mModel.conflicts().empty();
}

/// What was said about typing goes as soon as all that is typed can be taken.
void PrintDialog::forgetMendedTyping() {
    if (mPages->problem().sentence.isEmpty())
        mMessages->remove(kTypingMessage);
}

void PrintDialog::startRun(const Order& order, bool isHeld) {
    mOffer.forget();
    mFooter->setOffer(PrintOffer::Kind::All);
    mRun.start(order, isHeld);
    setRunning(true);
}

void PrintDialog::setRunning(bool running) {
    for (QWidget* part : std::initializer_list<QWidget*>{mHeader, mColumn, mPages, mMessages})
        part->setEnabled(!running);
    mFooter->setRunning(running, {mModel.labelCount(), mPart == PrintPart::Others ? 1 : 0});
    refresh();
    if (running)
        return;
    // Back to where the user can mend what went wrong, or try once more.
    const bool isBefore = mFocusBefore && mFocusBefore->isVisible() && mFocusBefore->isEnabled() &&
                          !mFooter->isAncestorOf(mFocusBefore);
    (isBefore ? mFocusBefore.data() : &mFooter->printButton())->setFocus();
}

} // namespace labelcut
