// The dialog: choices that are kept under a name.
#include "host/dialog/preset_bar.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QInputDialog>
#include <QLabel>
#include <QPushButton>
#include <QToolButton>

#include "host/dialog/line_icons.h"
#include "host/dialog/message_bar.h"
#include "host/settings/secret_setting.h"
#include "host/settings/setting_match.h"
#include "host/texts/host_text.h"

namespace labelcut {

namespace {

const QString kPresetMessage = QStringLiteral("preset");

} // namespace

PresetBar::PresetBar(JobModel& model, MessageBar& messages, QWidget* parent)
    : QWidget(parent)
    , mModel(model)
    , mMessages(messages)
    , mList(new QComboBox)
    , mSave(new QPushButton(hostText("SavePreset")))
    , mRemove(new QToolButton) {
    mList->setObjectName(QStringLiteral("presets"));
    mList->setMinimumContentsLength(12);
    mList->setEnabled(false);
    mList->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    mList->setPlaceholderText(hostText("NoPreset"));
    connect(mList, &QComboBox::activated, this, [this] { apply(mList->currentText()); });
    mSave->setObjectName(QStringLiteral("savePreset"));
    mSave->setEnabled(false);
    connect(mSave, &QPushButton::clicked, this, &PresetBar::askForName);
    mRemove->setObjectName(QStringLiteral("removePreset"));
    mRemove->setEnabled(false);
    mRemove->setFocusPolicy(Qt::StrongFocus);
    mRemove->setIcon(lineIcon(LineIcon::Remove));
    mRemove->setToolTip(hostText("RemovePreset"));
    mRemove->setAccessibleName(hostText("RemovePreset"));
    connect(mRemove, &QToolButton::clicked, this, &PresetBar::remove);
    auto* label = new QLabel(hostText("Preset"));
    label->setBuddy(mList);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(label);
    row->addWidget(mList);
    row->addWidget(mSave);
    row->addWidget(mRemove);
}

PrinterIdentity PresetBar::identity() const {
    return identityOf(*mModel.printer());
}

void PresetBar::tell(const QStringList& sentences) {
    for (const QString& sentence : sentences)
        mMessages.add(QStringLiteral("told"), sentence);
}

void PresetBar::reload() {
    mName.clear();
    list(QString());
}

void PresetBar::list(const QString& chosen) {
    mList->clear();
    const PresetList list = mStore.list(identity());
    for (const Preset& preset : list.presets)
        mList->addItem(preset.name);
    mList->setEnabled(mList->count() > 0);
    show(chosen);
    tell(list.problems);
}

/// @param name  of the preset whose choices those of the job are; empty: of none.
void PresetBar::show(const QString& name) {
    mList->setCurrentIndex(mList->findText(name));
    mRemove->setEnabled(mList->currentIndex() >= 0);
    if (mList->currentIndex() < 0)
        return;
    mName = name;
    mMade = JobSnapshot::of(mModel);
}

void PresetBar::refresh(const JobSnapshot& now) {
    mSave->setEnabled(mModel.hasPrinter());
    const bool isInForce = now.choices == mMade.choices && now.handling == mMade.handling;
    if (!isInForce && mList->currentIndex() >= 0)
        show(QString());
}

void PresetBar::apply(const QString& name) {
    const Result<Preset> preset = mStore.load(identity(), name);
    if (!preset) {
        show(QString());
        tell({preset.error().sentence});
        return;
    }
    const SettingMatch match = matchSettings(mModel.ppd(), preset->settings());
    tell(mModel.chooseAll(match.applicable, *preset));
    tell(describe(mModel.ppd(), match.missing));
    show(name);
}

void PresetBar::askForName() {
    auto* ask = new QInputDialog(this);
    ask->setAttribute(Qt::WA_DeleteOnClose);
    ask->setWindowTitle(hostText("SavePresetTitle"));
    ask->setLabelText(hostText("PresetName"));
    ask->setTextValue(mName);
    connect(ask, &QInputDialog::textValueSelected, this, &PresetBar::keep);
    ask->open();
}

void PresetBar::keep(const QString& name) {
    mModel.save();
    Settings settings = mModel.jobSettings();
    const QStringList secrets = takeSecrets(mModel.ppd(), settings);
    const Preset preset = Preset::of(name.trimmed(), settings, mModel.handling());
    const Result<Preset> before = mStore.load(identity(), preset.name);
    const Result<PresetStore::Notes> saved = mStore.save(identity(), preset, Overwrite::Yes);
    tell(saved ? *saved : QStringList{saved.error().sentence});
    if (saved) {
        for (const QString& title : secrets)
            tell({hostText("PasswordNotKept").arg(title)});
    }
    list(preset.name);
    if (saved && before && *before != preset)
        offerBack(hostText("PresetReplaced").arg(preset.name), *before);
}

void PresetBar::remove() {
    const QString name = mList->currentText();
    const Result<Preset> preset = mStore.load(identity(), name);
    const Result<PresetStore::Notes> removed = mStore.remove(identity(), name);
    if (!removed) {
        tell({removed.error().sentence});
        return;
    }
    list(QString());
    if (preset)
        offerBack(hostText("PresetRemoved").arg(name), *preset);
}

/// Nothing is asked before; this takes it back.
void PresetBar::offerBack(const QString& sentence, const Preset& preset) {
    mMessages.show(kPresetMessage, MessageBar::Kind::Information, sentence,
                   {{hostText("Undo"), [this, preset] {
                         const auto saved = mStore.save(identity(), preset, Overwrite::Yes);
                         if (!saved)
                             tell({saved.error().sentence});
                         mMessages.remove(kPresetMessage);
                         list(QString());
                     }}});
}

} // namespace labelcut
