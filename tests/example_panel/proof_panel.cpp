// Example: a plug-in of a third party, with one panel; proof_panel.h explains it.
#include "tests/example_panel/proof_panel.h"

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <span>
#include <utility>

#include "platform/printing/ppd_lookup.h"

namespace example {

namespace {

constexpr char kQuality[] = "PrintQuality";
constexpr char kDraft[] = "Draft";
constexpr char kMirror[] = "KvMirror";
constexpr char kOff[] = "OFF";
constexpr char kOn[] = "ON";

} // namespace

ProofPanel::ProofPanel(std::shared_ptr<labelcut::PDEPluginCallback> host)
    : mHost(std::move(host)) {}

ProofPanel::~ProofPanel() {
    delete mView;
}

// Claimed only where the printer has it: a host asks once, after the panel was made.
std::optional<QStringList> ProofPanel::supportedPPDOptionKeys() {
    QStringList keys;
    if (labelcut::ppd::findOption(mHost->ppdFile(), kQuality))
        keys.append(QLatin1String(kQuality));
    return keys;
}

QWidget* ProofPanel::panelView() {
    if (!mView)
        buildView();
    return mView;
}

void ProofPanel::buildView() {
    mView = new QWidget;
    auto* column = new QVBoxLayout(mView);
    mQuality = new QComboBox;
    mQuality->setObjectName(QStringLiteral("quality"));
    mQuality->setAccessibleName(QStringLiteral("Print quality"));
    column->addWidget(mQuality);
    auto* proof = new QPushButton(QStringLiteral("Quick proof"));
    proof->setObjectName(QStringLiteral("proof"));
    column->addWidget(proof);
    mMirrorNote = new QLabel(QStringLiteral("Labels will be mirrored."));
    mMirrorNote->setObjectName(QStringLiteral("mirrorNote"));
    column->addWidget(mMirrorNote);

    // The texts are for people, the keywords behind them for the host.
    if (const ppd_option_t* option = labelcut::ppd::findOption(mHost->ppdFile(), kQuality)) {
        for (const ppd_choice_t& choice :
             std::span(option->choices, static_cast<std::size_t>(option->num_choices)))
            mQuality->addItem(QString::fromUtf8(choice.text), QString::fromUtf8(choice.choice));
    }
    // `activated` is the user's doing alone; what refresh() selects sends nothing back.
    QObject::connect(mQuality, &QComboBox::activated, mView, [this] {
        choose(QLatin1String(kQuality), mQuality->currentData().toString());
    });
    QObject::connect(proof, &QPushButton::clicked, mView, [this] { makeQuickProof(); });
    refresh();
}

void ProofPanel::makeQuickProof() {
    choose(QLatin1String(kQuality), QLatin1String(kDraft));
    choose(QLatin1String(kMirror), QLatin1String(kOff));
}

void ProofPanel::choose(const QString& key, const QString& choice) {
    mHost->willChangePPDOptionKeyValue(key, choice);
    refresh();
}

QString ProofPanel::current(const char* key) const {
    const ppd_choice_t* marked = labelcut::ppd::findMarkedChoice(mHost->ppdFile(), key);
    return marked ? QString::fromUtf8(marked->choice) : QString();
}

void ProofPanel::refresh() {
    if (!mView)
        return;
    mQuality->setCurrentIndex(mQuality->findData(current(kQuality)));
    mMirrorNote->setVisible(current(kMirror) == QLatin1String(kOn));
}

void ProofPanel::PPDOptionKeyValueDidChange(const QString& key, const QString& choice) {
    mHeard.append(key + u'=' + choice);
    refresh();
}

// Every choice was sent when the user made it, so nothing is left to be written.
bool ProofPanel::saveValuesAndReturnError(QString*) {
    return true;
}

bool ProofPanel::restoreValuesAndReturnError(QString*) {
    refresh();
    return true;
}

std::optional<QVariantMap> ProofPanel::summaryInfo() {
    const QString title = QStringLiteral("Print quality");
    return QVariantMap{{title, current(kQuality)},
                       {QLatin1String(labelcut::kSummaryDisplayOrder), QStringList{title}}};
}

void ProofPanel::printWindowWillClose(bool) {}

QVariantMap ProofPanel::inspect() const {
    return {{QStringLiteral("heard"), mHeard}};
}

// A plug-in with pictures or texts reads them from the bundle; this one only keeps it.
bool ProofPlugin::initWithBundle(std::shared_ptr<const labelcut::PDEBundle> bundle) {
    mBundle = std::move(bundle);
    return true;
}

labelcut::PDEPanelArray*
ProofPlugin::PDEPanelsForType(const QString& type,
                              std::shared_ptr<labelcut::PDEPluginCallback> hostInfo) {
    mPanels.clear();
    if (type == QLatin1String(labelcut::kPDEPrinterModuleType))
        mPanels.push_back(std::make_unique<ProofPanel>(std::move(hostInfo)));
    return &mPanels;
}

std::unique_ptr<labelcut::PDEPlugin> ProofFactory::create(const labelcut::PDESystem&) {
    return std::make_unique<ProofPlugin>();
}

} // namespace example
