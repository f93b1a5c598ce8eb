// Test support: plug-ins that behave in one way each, good or bad.
//
// Their panels count on the application object what they hear, so that tests can see it after they
// are gone.
#include "tests/host/panels/plugins/behaving_plugin.h"

#include <QCoreApplication>

#include <stdexcept>

namespace labelcut::test {

namespace {

void count(const char* what) {
    qApp->setProperty(what, qApp->property(what).toInt() + 1);
}

class Panel : public PDEPanel {
public:
    Panel(std::shared_ptr<PDEPluginCallback> host, QString key)
        : mHost(std::move(host))
        , mKey(std::move(key)) {}
    ~Panel() override { count("panelsGone"); }

    QWidget* panelView() override { return orThrow<QWidget*>(nullptr); }
    QString panelName() override {
        return QLatin1String(kBehaviour.data(), qsizetype(kBehaviour.size()));
    }
    QString panelKind() override { return QStringLiteral("org.labelcut.test"); }
    std::optional<QStringList> supportedPPDOptionKeys() override {
        if (kBehaviour == "throws_asked" && mKey == QLatin1String("KvHalfCut"))
            throw std::runtime_error("no keywords today");
        if (kBehaviour == "says_no_keywords")
            return std::nullopt;
        return QStringList{mKey, QStringLiteral("KvNobodyHas")};
    }
    void willShow() override { orThrow(true); }
    bool shouldHide() override { return orThrow(true); }
    bool shouldPrint() override {
        count("askedToPrint");
        return orThrow(kBehaviour != "forbids_printing");
    }
    bool shouldShowHelp() override { return orThrow(true); }
    void printWindowWillClose(bool) override { orThrow(true); }
    void PPDOptionKeyValueDidChange(const QString& key, const QString& choice) override {
        count("heard");
        orThrow(true);
        const QString wanted = QLatin1String(kBehaviour == "wants_on" ? "ON" : "OFF");
        const bool insists = kBehaviour == "wants_on" || kBehaviour == "wants_off";
        if (insists && key == mKey && choice != wanted)
            mHost->willChangePPDOptionKeyValue(key, wanted);
    }
    bool saveValuesAndReturnError(QString* error) override {
        count("saved");
        return orThrow(isDone(error));
    }
    bool restoreValuesAndReturnError(QString* error) override {
        count("restored");
        return orThrow(isDone(error));
    }
    std::optional<QVariantMap> summaryInfo() override {
        return orThrow(std::optional<QVariantMap>());
    }
    QVariantMap inspect() const override { return orThrow(QVariantMap()); }

private:
    template<typename Answer>
    static Answer orThrow(Answer answer) {
        if (kBehaviour == "throws_in_use")
            throw std::runtime_error("broken in use");
        if (kBehaviour == "throws_numbers_in_use")
            throw 7;
        return answer;
    }
    static bool isDone(QString* error) {
        if (kBehaviour != "cannot_save")
            return true;
        if (error)
            *error = QStringLiteral("The tape is stuck in the panel.");
        return false;
    }

    std::shared_ptr<PDEPluginCallback> mHost;
    QString mKey;
};

class Principal : public PDEPlugin {
public:
    bool initWithBundle(std::shared_ptr<const PDEBundle> bundle) override {
        if (kBehaviour == "throws_on_bundle")
            throw 7;
        return bundle && kBehaviour != "refuses";
    }
    PDEPanelArray* PDEPanelsForType(const QString& type,
                                    std::shared_ptr<PDEPluginCallback> hostInfo) override {
        if (kBehaviour == "throws_creating")
            throw std::runtime_error("no panels today");
        if (kBehaviour == "gives_nothing" || type != QLatin1String(kPDEPrinterModuleType))
            return nullptr;
        if (kBehaviour == "offers_none")
            return &mPanels;
        mPanels.push_back(std::make_unique<Panel>(hostInfo, QStringLiteral("KvMirror")));
        if (kBehaviour == "has_a_hole")
            mPanels.push_back(nullptr);
        mPanels.push_back(std::make_unique<Panel>(hostInfo, QStringLiteral("KvHalfCut")));
        return &mPanels;
    }

private:
    PDEPanelArray mPanels;
};

} // namespace

void construct() {
    if (kBehaviour == "throws_an_error")
        throw std::runtime_error("out of order");
    if (kBehaviour == "throws_a_number")
        throw 7;
    count("constructed");
}

std::unique_ptr<PDEPlugin> createPrincipal() {
    if (kBehaviour == "has_no_principal")
        return nullptr;
    return std::make_unique<Principal>();
}

} // namespace labelcut::test
