// Test support: a plug-in that behaves in one way, good or bad, chosen when it is compiled.
//
// Its panels count on the application object what they hear, so that tests can see it after they
// are gone.
#include <QCoreApplication>
#include <QObject>

#include <stdexcept>
#include <string_view>

#include "platform/dialog/pde_plugin.h"

#ifdef HAS_OTHER_IID
#define TEST_IID "org.labelcut.SomethingElse/1"
#else
#define TEST_IID LabelcutPDEPlugin_iid
#endif

namespace labelcut::test {

#ifdef MISSES_A_SYMBOL
extern int isDefinedNowhere();
#endif

namespace {

constexpr std::string_view kBehaviour = BEHAVIOUR;

void count(const char* what) {
    qApp->setProperty(what, qApp->property(what).toInt() + 1);
}

class Panel : public PDEPanel {
public:
    Panel(std::shared_ptr<PDEPluginCallback> host, QString key)
        : mHost(std::move(host))
        , mKey(std::move(key)) {}
    ~Panel() override { count("panelsGone"); }

    QWidget* panelView() override { return nullptr; }
    QString panelName() override { return QLatin1String(BEHAVIOUR); }
    QString panelKind() override { return QStringLiteral("org.labelcut.test"); }
    std::optional<QStringList> supportedPPDOptionKeys() override {
        if (kBehaviour == "throws_asked" && mKey == QLatin1String("KvHalfCut"))
            throw std::runtime_error("no keywords today");
        if (kBehaviour == "says_no_keywords")
            return std::nullopt;
        return QStringList{mKey, QStringLiteral("KvNobodyHas")};
    }
    void willShow() override {}
    bool shouldHide() override { return true; }
    bool shouldPrint() override {
        count("askedToPrint");
        return kBehaviour != "forbids_printing";
    }
    bool shouldShowHelp() override { return false; }
    void printWindowWillClose(bool) override {}
    void PPDOptionKeyValueDidChange(const QString&, const QString&) override { count("heard"); }
    bool saveValuesAndReturnError(QString*) override {
        count("saved");
        return true;
    }
    bool restoreValuesAndReturnError(QString*) override {
        count("restored");
        return true;
    }
    std::optional<QVariantMap> summaryInfo() override { return std::nullopt; }

private:
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

#ifdef OFFERS_NO_PANELS
class Root : public QObject {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID TEST_IID FILE "plugin.json")
};
#else
class Root : public QObject, public PDEPluginFactory {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID TEST_IID FILE "plugin.json")
    Q_INTERFACES(labelcut::PDEPluginFactory)
public:
    Root() {
        if (kBehaviour == "throws_an_error")
            throw std::runtime_error("out of order");
        if (kBehaviour == "throws_a_number")
            throw 7;
#ifdef MISSES_A_SYMBOL
        isDefinedNowhere();
#endif
        count("constructed");
    }
    std::unique_ptr<PDEPlugin> create(const PDESystem&) override {
        if (kBehaviour == "has_no_principal")
            return nullptr;
        return std::make_unique<Principal>();
    }
};
#endif

} // namespace labelcut::test

#include "behaving_plugin.moc"
