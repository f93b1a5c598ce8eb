// The dialog: what its buttons do, presets and printing.
#include <QComboBox>
#include <QFileDialog>
#include <QInputDialog>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QSpinBox>
#include <QTabWidget>
#include <QToolButton>

#include "host/dialog/features_page.h"
#include "host/dialog/message_bar.h"
#include "host/dialog/pages_page.h"
#include "host/dialog/print_dialog.h"
#include "host/presets/preset_match.h"
#include "host/texts/host_text.h"

namespace labelcut {

PrinterIdentity PrintDialog::identity() const {
    const PrinterChoice& printer = mModel.printer();
    return printer.isQueue() ? PrinterIdentity::forQueue(printer.queue)
                             : PrinterIdentity::forPpd(mModel.ppd());
}

void PrintDialog::refreshPresets() {
    const QString current = mPresetList->currentText();
    mPresetList->clear();
    const PresetList list = mPresets.list(identity());
    for (const Preset& preset : list.presets)
        mPresetList->addItem(preset.name);
    mPresetList->setCurrentIndex(mPresetList->findText(current));
    mPresetList->setEnabled(mPresetList->count() > 0);
    mRemovePreset->setEnabled(mPresetList->currentIndex() >= 0);
    for (const QString& problem : list.problems)
        tell(problem);
}

void PrintDialog::applyPreset(const QString& name) {
    const Result<Preset> preset = mPresets.load(identity(), name);
    if (!preset) {
        tell(preset.error().sentence);
        return;
    }
    const PresetMatch match = matchPreset(mModel.ppd(), *preset);
    Marks wanted;
    for (const ppd::Setting& setting : match.applicable)
        wanted.insert(setting.keyword, setting.choice);
    for (const QString& sentence : mModel.chooseAll(wanted))
        tell(sentence);
    for (const QString& sentence : describe(mModel.ppd(), match.missing))
        tell(sentence);
    mCopies->setValue(match.copies);
    mRemovePreset->setEnabled(true);
}

void PrintDialog::savePreset() {
    auto* ask = new QInputDialog(this);
    ask->setAttribute(Qt::WA_DeleteOnClose);
    ask->setWindowTitle(hostText("SavePreset"));
    ask->setLabelText(hostText("PresetName"));
    ask->setTextValue(mPresetList->currentText());
    connect(ask, &QInputDialog::textValueSelected, this, [this](const QString& text) {
        mModel.save();
        Preset preset;
        preset.name = text.trimmed();
        preset.copies = mModel.copies();
        for (const OptionChoice& choice : mModel.jobChoices()) {
            if (choice.key == QLatin1String("PageSize"))
                preset.pageSize = choice.choice;
            else
                preset.options.insert(choice.key, choice.choice);
        }
        const Result<PresetStore::Notes> saved = mPresets.save(identity(), preset, Overwrite::Yes);
        const QStringList sentences = saved ? *saved : QStringList{saved.error().sentence};
        for (const QString& sentence : sentences)
            tell(sentence);
        refreshPresets();
        mPresetList->setCurrentIndex(mPresetList->findText(preset.name));
        mRemovePreset->setEnabled(mPresetList->currentIndex() >= 0);
    });
    ask->open();
}

void PrintDialog::removePreset() {
    const Result<Preset> preset = mPresets.load(identity(), mPresetList->currentText());
    const Result<PresetStore::Notes> removed =
        mPresets.remove(identity(), mPresetList->currentText());
    if (!removed) {
        tell(removed.error().sentence);
        return;
    }
    mPresetList->setCurrentIndex(-1);
    refreshPresets();
    if (!preset)
        return;
    mMessages->show(QStringLiteral("preset"), MessageBar::Kind::Information,
                    hostText("PresetRemoved").arg(preset->name),
                    {{hostText("Undo"), [this, kept = *preset] {
                          const auto saved = mPresets.save(identity(), kept, Overwrite::No);
                          if (!saved)
                              tell(saved.error().sentence);
                          mMessages->remove(QStringLiteral("preset"));
                          refreshPresets();
                      }}});
}

bool PrintDialog::isReadyToPrint() {
    if (mPagesPage && !mPagesPage->isRangeValid()) {
        mTabs->setCurrentWidget(mPagesPage);
        tell(hostText("RangeHint"));
        return false;
    }
    if (!mModel.shouldPrint())
        return false;
    refresh();
    return mModel.conflicts().empty();
}

void PrintDialog::print() {
    mMessages->remove(QStringLiteral("run"));
    if (mRun.isBusy() || !isReadyToPrint())
        return;
    PrintOrder order = PrintOrder::from(mModel);
    if (order.printer.isQueue()) {
        startRun(std::move(order));
        return;
    }
    auto* chooser = new QFileDialog(this, hostText("PrintIntoFile"));
    chooser->setAttribute(Qt::WA_DeleteOnClose);
    chooser->setAcceptMode(QFileDialog::AcceptSave);
    chooser->setDefaultSuffix(QStringLiteral("ps"));
    chooser->selectFile(QStringLiteral("labels.ps"));
    connect(chooser, &QFileDialog::fileSelected, this, [this, order](const QString& path) {
        PrintOrder chosen = order;
        chosen.outputPath = path;
        startRun(std::move(chosen));
    });
    chooser->open();
}

void PrintDialog::startRun(PrintOrder order) {
    setRunning(true);
    mRun.start(order);
}

void PrintDialog::runProgressed(const QString& sentence, int percent) {
    mSentence->setText(sentence);
    mProgress->setRange(0, percent < 0 ? 0 : 100);
    mProgress->setValue(percent);
    mCancel->setText(hostText(mRun.isSent() ? "Close" : "Cancel"));
}

void PrintDialog::setRunning(bool running) {
    mProgress->setVisible(running);
    mTabs->setEnabled(!running);
    mPrinters->setEnabled(!running);
    mChooseFiles->setEnabled(!running);
    mCopies->setEnabled(!running);
    mPrint->setEnabled(!running);
    mReset->setEnabled(!running);
    mCancel->setText(hostText("Cancel"));
}

void PrintDialog::runEnded() {
    setRunning(false);
    refresh();
}

} // namespace labelcut
