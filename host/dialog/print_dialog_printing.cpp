// The dialog: the window, from the press of Print to the end of the job.
#include <QFileDialog>
#include <QPushButton>

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
        mFooter->showProgress(sentence, percent, mRun.isSent());
    });
    connect(&mRun, &PrintRun::documentChanged, mDocument, &DocumentRow::documentChanged);
    connect(&mRun, &PrintRun::failed, this, [this](const QString& sentence) {
        setRunning(false);
        mMessages->show(kRunMessage, MessageBar::Kind::Warning, sentence);
    });
    connect(&mRun, &PrintRun::finished, this, [this] {
        setRunning(false);
        accept();
    });
}

void PrintDialog::print() {
    mFocusBefore = focusWidget();
    // What is being typed somewhere is taken first.
    mFooter->printButton().setFocus();
    mMessages->remove(kRunMessage);
    if (mRun.isBusy() || !isReadyToPrint())
        return;
    Order order = mModel.order();
    order.shown = mDocument->digests();
    if (queueName(order.printer)) {
        startRun(order);
        return;
    }
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
        startRun(chosen);
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

void PrintDialog::startRun(const Order& order) {
    mRun.start(order);
    setRunning(true);
}

void PrintDialog::setRunning(bool running) {
    for (QWidget* part : std::initializer_list<QWidget*>{mHeader, mColumn, mPages, mMessages})
        part->setEnabled(!running);
    mFooter->setRunning(running);
    refresh();
    if (running)
        return;
    // Back to where the user can mend what went wrong, or try once more.
    const bool isBefore = mFocusBefore && mFocusBefore->isVisible() && mFocusBefore->isEnabled() &&
                          !mFooter->isAncestorOf(mFocusBefore);
    (isBefore ? mFocusBefore.data() : &mFooter->printButton())->setFocus();
}

} // namespace labelcut
