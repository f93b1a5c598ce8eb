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
#include "host/settings/secret_setting.h"
#include "host/settings/setting_match.h"
#include "host/texts/host_text.h"

namespace labelcut {

namespace {

/// @return −1 when no tab holds the page.
int indexOfTabWith(const QTabWidget& tabs, const QWidget& page) {
    int index = tabs.count() - 1;
    while (index >= 0 && !tabs.widget(index)->isAncestorOf(&page))
        --index;
    return index;
}

} // namespace

void PrintDialog::refreshPresets(const QString& chosen) {
    mPresetList->clear();
    const PresetList list = mPresets.list(identityOf(*mModel.printer()));
    for (const Preset& preset : list.presets)
        mPresetList->addItem(preset.name);
    mPresetList->setEnabled(mPresetList->count() > 0);
    choosePreset(chosen);
    for (const QString& problem : list.problems)
        tell(problem);
}

/// Shows which preset the choices are those of; none when they have changed since.
void PrintDialog::choosePreset(const QString& name) {
    mPresetList->setCurrentIndex(mPresetList->findText(name));
    mRemovePreset->setEnabled(mPresetList->currentIndex() >= 0);
    if (mPresetList->currentIndex() < 0)
        return;
    mPreset = name;
    mPresetMarks = mModel.marks();
    mPresetCopies = mModel.copies();
}

void PrintDialog::applyPreset(const QString& name) {
    const Result<Preset> preset = mPresets.load(identityOf(*mModel.printer()), name);
    if (!preset) {
        choosePreset(QString());
        tell(preset.error().sentence);
        return;
    }
    const SettingMatch match = matchSettings(mModel.ppd(), preset->settings());
    for (const QString& sentence : mModel.chooseAll(match.applicable, preset->copies))
        tell(sentence);
    for (const QString& sentence : describe(mModel.ppd(), match.missing))
        tell(sentence);
    choosePreset(name);
}

void PrintDialog::savePreset() {
    auto* ask = new QInputDialog(this);
    ask->setAttribute(Qt::WA_DeleteOnClose);
    ask->setWindowTitle(hostText("SavePresetTitle"));
    ask->setLabelText(hostText("PresetName"));
    ask->setTextValue(mPreset);
    connect(ask, &QInputDialog::textValueSelected, this, &PrintDialog::keepPreset);
    ask->open();
}

void PrintDialog::keepPreset(const QString& name) {
    mModel.save();
    Settings settings = mModel.jobSettings();
    const QStringList secrets = takeSecrets(mModel.ppd(), settings);
    const Preset preset = Preset::of(name.trimmed(), settings, mModel.copies());
    const Result<Preset> before = mPresets.load(identityOf(*mModel.printer()), preset.name);
    const Result<PresetStore::Notes> saved =
        mPresets.save(identityOf(*mModel.printer()), preset, Overwrite::Yes);
    for (const QString& sentence : saved ? *saved : QStringList{saved.error().sentence})
        tell(sentence);
    if (saved) {
        for (const QString& title : secrets)
            tell(hostText("PasswordNotKept").arg(title));
    }
    refreshPresets(preset.name);
    if (saved && before && *before != preset)
        offerPresetBack(hostText("PresetReplaced").arg(preset.name), *before);
}

void PrintDialog::removePreset() {
    const QString name = mPresetList->currentText();
    const Result<Preset> preset = mPresets.load(identityOf(*mModel.printer()), name);
    const Result<PresetStore::Notes> removed = mPresets.remove(identityOf(*mModel.printer()), name);
    if (!removed) {
        tell(removed.error().sentence);
        return;
    }
    refreshPresets();
    if (preset)
        offerPresetBack(hostText("PresetRemoved").arg(name), *preset);
}

/// Nothing is asked before; this takes it back.
void PrintDialog::offerPresetBack(const QString& sentence, const Preset& preset) {
    const QString name = QStringLiteral("preset");
    mMessages->show(name, MessageBar::Kind::Information, sentence,
                    {{hostText("Undo"), [this, name, preset] {
                          const auto saved =
                              mPresets.save(identityOf(*mModel.printer()), preset, Overwrite::Yes);
                          if (!saved)
                              tell(saved.error().sentence);
                          mMessages->remove(name);
                          refreshPresets();
                      }}});
}

/// What was said about typing goes as soon as all that is typed can be taken.
void PrintDialog::forgetMendedTyping() {
    const bool isWrong = (mPagesPage && !mPagesPage->problem().isEmpty()) ||
                         (mFeaturesPage && !mFeaturesPage->problem().isEmpty());
    if (!isWrong)
        mMessages->remove(QStringLiteral("typing"));
}

/// Shows the field that cannot be taken as it is.
bool PrintDialog::hasTypingProblem() {
    const QString name = QStringLiteral("typing");
    mMessages->remove(name);
    const std::pair<QWidget*, QString> pages[] = {
        {mPagesPage, mPagesPage ? mPagesPage->problem() : QString()},
        {mFeaturesPage, mFeaturesPage ? mFeaturesPage->problem() : QString()}};
    for (const auto& [page, problem] : pages) {
        if (problem.isEmpty())
            continue;
        mTabs->setCurrentIndex(indexOfTabWith(*mTabs, *page));
        mMessages->show(name, MessageBar::Kind::Warning, problem);
        return true;
    }
    return false;
}

bool PrintDialog::isReadyToPrint() {
    if (hasTypingProblem())
        return false;
    if (!mModel.shouldPrint()) {
        mMessages->show(QStringLiteral("run"), MessageBar::Kind::Warning, hostText("PanelRefuses"));
        return false;
    }
    refresh();
    return mModel.conflicts().empty();
}

void PrintDialog::print() {
    // What is being typed somewhere is taken first.
    mPrint->setFocus();
    mMessages->remove(QStringLiteral("run"));
    if (mRun.isBusy() || !isReadyToPrint())
        return;
    Order order = mModel.order();
    order.shown = mShown;
    if (queueName(order.printer)) {
        startRun(order);
        return;
    }
    auto* chooser = new QFileDialog(this, hostText("PrintIntoFile"));
    chooser->setAttribute(Qt::WA_DeleteOnClose);
    chooser->setAcceptMode(QFileDialog::AcceptSave);
    chooser->setDefaultSuffix(QStringLiteral("ps"));
    chooser->selectFile(QStringLiteral("labels.ps"));
    connect(chooser, &QFileDialog::fileSelected, this, [this, order](const QString& path) {
        Order chosen = order;
        chosen.outputPath = path;
        startRun(chosen);
    });
    chooser->open();
}

void PrintDialog::startRun(const Order& order) {
    mRun.start(order);
    setRunning(true);
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
    mHeader->setEnabled(!running);
    mMessages->setEnabled(!running);
    mCancel->setText(hostText("Cancel"));
    if (running)
        mCancel->setFocus();
    else
        mPrint->setFocus();
    refresh();
}

void PrintDialog::runEnded() {
    setRunning(false);
}

} // namespace labelcut
