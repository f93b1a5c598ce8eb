// Example: a panel that sets no option of the printer; supply_panel.h explains it.
#include "tests/second_example_panel/supply_panel.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include <utility>

namespace example {

namespace {

/// The session's entry: the metres that are left (int); absent while the supply is not watched.
const QString kSessionKey = QStringLiteral("com.example.supply-panel.metres");
constexpr int kLongestTape = 30;

} // namespace

SupplyPanel::SupplyPanel(std::shared_ptr<labelcut::PDEPluginCallback> host)
    : mHost(std::move(host)) {}

SupplyPanel::~SupplyPanel() {
    delete mView;
}

QWidget* SupplyPanel::panelView() {
    if (!mView)
        buildView();
    return mView;
}

void SupplyPanel::buildView() {
    mView = new QWidget;
    auto* column = new QVBoxLayout(mView);
    mWatch = new QCheckBox(QStringLiteral("Watch the tape supply"));
    mWatch->setObjectName(QStringLiteral("watchSupply"));
    column->addWidget(mWatch);

    mRow = new QWidget;
    mRow->setObjectName(QStringLiteral("supplyRow"));
    auto* row = new QHBoxLayout(mRow);
    mMetres = new QSpinBox;
    mMetres->setObjectName(QStringLiteral("metresLeft"));
    mMetres->setRange(0, kLongestTape);
    auto* label = new QLabel(QStringLiteral("Metres left:"));
    label->setBuddy(mMetres);
    row->addWidget(label);
    row->addWidget(mMetres);
    mRow->hide();
    column->addWidget(mRow);
    mView->resize(mView->sizeHint());

    QObject::connect(mWatch, &QCheckBox::toggled, mView, [this](bool watched) {
        mRow->setVisible(watched);
        fitView();
    });
    restoreValuesAndReturnError(nullptr);
}

// The size first, then the news: the host reads the size when it is told.
void SupplyPanel::fitView() {
    if (!mHost->respondsToPanelViewDidResize())
        return;
    mView->layout()->activate();
    mView->resize(mView->sizeHint());
    mHost->panelViewDidResize();
}

QString SupplyPanel::helpText() {
    return QStringLiteral("A label printer stops in the middle of a label when its tape ends.\n\n"
                          "Tick “Watch the tape supply” and say how much tape is left. "
                          "Nothing is printed while there is none.");
}

QString SupplyPanel::remark() {
    return isUsedUp() ? QStringLiteral("No tape is left: nothing will be printed.") : QString();
}

bool SupplyPanel::saveValuesAndReturnError(QString* error) {
    const QVariant metres = isWatched() ? QVariant(mMetres->value()) : QVariant();
    if (labelcut::PMSessionSetDataInSession(mHost->printSession(), kSessionKey, metres) ==
        labelcut::noErr)
        return true;
    if (error)
        *error = QStringLiteral("The tape supply cannot be kept.");
    return false;
}

bool SupplyPanel::restoreValuesAndReturnError(QString*) {
    QVariant metres;
    if (!mView || labelcut::PMSessionGetDataFromSession(mHost->printSession(), kSessionKey,
                                                        &metres) != labelcut::noErr)
        return true;
    if (metres.isValid())
        mMetres->setValue(metres.toInt());
    mWatch->setChecked(metres.isValid());
    return true;
}

std::optional<QVariantMap> SupplyPanel::summaryInfo() {
    const QString watch = QStringLiteral("Watch the tape supply");
    const QString left = QStringLiteral("Metres left");
    QVariantMap summary{{watch, isWatched() ? summaryWords().yes : summaryWords().no}};
    QStringList order{watch};
    if (isWatched()) {
        summary.insert(left, QString::number(mMetres->value()));
        order.append(left);
    }
    summary.insert(QLatin1String(labelcut::kSummaryDisplayOrder), order);
    return summary;
}

labelcut::SummaryWords SupplyPanel::summaryWords() {
    return {QStringLiteral("Watched"), QStringLiteral("Not watched")};
}

QVariantMap SupplyPanel::inspect() const {
    const QVariantMap watch{{QStringLiteral("name"), QStringLiteral("watchSupply")},
                            {QStringLiteral("kind"), QStringLiteral("checkBox")}};
    return {{QStringLiteral("controls"), QVariantList{watch}},
            {QStringLiteral("state"), QVariantMap{{QStringLiteral("usedUp"), isUsedUp()}}}};
}

labelcut::PDEPanelArray*
SupplyPlugin::PDEPanelsForType(const QString& type,
                               std::shared_ptr<labelcut::PDEPluginCallback> hostInfo) {
    mPanels.clear();
    if (type == QLatin1String(labelcut::kPDEPrinterModuleType))
        mPanels.push_back(std::make_unique<SupplyPanel>(std::move(hostInfo)));
    return &mPanels;
}

std::unique_ptr<labelcut::PDEPlugin> SupplyFactory::create(const labelcut::PDESystem&) {
    return std::make_unique<SupplyPlugin>();
}

} // namespace example
