// Test support: a plug-in whose panel writes down what it can see of a job, right before that is
// printed, into the file that LABELCUT_WITNESS names.
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QObject>

#include "platform/dialog/pde_plugin.h"
#include "platform/printing/ppd_lookup.h"

namespace labelcut::test {

namespace {

QJsonObject seenPaper(const PMPageFormat* format) {
    const PMPaper* paper = nullptr;
    QString name;
    double points = 0;
    if (PMGetPageFormatPaper(format, &paper) != noErr || !paper)
        return {};
    PMPaperGetPPDPaperName(paper, &name);
    PMPaperGetHeight(paper, &points);
    return {{QStringLiteral("name"), name}, {QStringLiteral("points"), points}};
}

QJsonObject seenPrinter(const PMPrinter* printer) {
    PMURL uri;
    PMPrinterState state = PMPrinterState::Idle;
    const bool hasUri = PMPrinterCopyDeviceURI(printer, &uri) == noErr;
    PMPrinterGetState(printer, &state);
    return {{QStringLiteral("uri"), hasUri ? CFURLGetString(uri).value_or(QString()) : QString()},
            {QStringLiteral("state"), static_cast<int>(state)}};
}

QJsonObject seenMarks(ppd_file_t* ppd) {
    QJsonObject marks;
    for (const char* keyword :
         {"PageSize", "KvCutLabel", "KvCutAtEnd", "KvMirror", "KvAutoTapeCut", "KvHalfCut",
          "KvChainPrint", "KvSpecialTape", "KvRemoveBlkSpace", "Quality", "Density"}) {
        if (const ppd_choice_t* choice = ppd::findMarkedChoice(ppd, keyword))
            marks.insert(QLatin1String(keyword), QString::fromUtf8(choice->choice));
    }
    return marks;
}

class WitnessPanel : public PDEPanel {
public:
    explicit WitnessPanel(std::shared_ptr<PDEPluginCallback> host)
        : mHost(std::move(host)) {}

    QWidget* panelView() override { return nullptr; }
    QString panelName() override { return QStringLiteral("Witness"); }
    QString panelKind() override { return QStringLiteral("org.labelcut.test.witness"); }
    std::optional<QStringList> supportedPPDOptionKeys() override { return std::nullopt; }
    void willShow() override {}
    bool shouldHide() override { return false; }
    bool shouldShowHelp() override { return false; }
    void printWindowWillClose(bool) override {}
    void PPDOptionKeyValueDidChange(const QString&, const QString&) override {}
    bool saveValuesAndReturnError(QString*) override { return true; }
    bool restoreValuesAndReturnError(QString*) override { return true; }
    std::optional<QVariantMap> summaryInfo() override { return std::nullopt; }

    bool shouldPrint() override {
        QFile file(qEnvironmentVariable("LABELCUT_WITNESS"));
        return file.open(QIODevice::WriteOnly) && file.write(QJsonDocument(seen()).toJson()) > 0;
    }

private:
    QJsonObject seen() const {
        std::uint32_t first = 0;
        std::uint32_t last = 0;
        PMGetFirstPage(mHost->printSettings(), &first);
        PMGetLastPage(mHost->printSettings(), &last);
        QByteArray settings;
        PMPrintSettingsCreateDataRepresentation(mHost->printSettings(), PMDataFormat::XMLDefault,
                                                &settings);
        QVariant session;
        PMSessionGetDataFromSession(mHost->printSession(), QStringLiteral("witness"), &session);
        return {{QStringLiteral("paper"), seenPaper(mHost->pageFormat())},
                {QStringLiteral("printer"), seenPrinter(mHost->printer())},
                {QStringLiteral("marks"), seenMarks(mHost->ppdFile())},
                {QStringLiteral("pages"), QJsonArray{double(first), double(last)}},
                {QStringLiteral("hasSession"), mHost->printSession() != nullptr},
                {QStringLiteral("session"), session.toString()},
                {QStringLiteral("settings"), QString::fromUtf8(settings)}};
    }

    std::shared_ptr<PDEPluginCallback> mHost;
};

class WitnessPlugin : public PDEPlugin {
public:
    bool initWithBundle(std::shared_ptr<const PDEBundle>) override { return true; }
    PDEPanelArray* PDEPanelsForType(const QString&,
                                    std::shared_ptr<PDEPluginCallback> host) override {
        mPanels.clear();
        mPanels.push_back(std::make_unique<WitnessPanel>(std::move(host)));
        return &mPanels;
    }

private:
    PDEPanelArray mPanels;
};

} // namespace

class WitnessFactory : public QObject, public PDEPluginFactory {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID LabelcutPDEPlugin_iid FILE "witness.json")
    Q_INTERFACES(labelcut::PDEPluginFactory)
public:
    std::unique_ptr<PDEPlugin> create(const PDESystem&) override {
        return std::make_unique<WitnessPlugin>();
    }
};

} // namespace labelcut::test

#include "witness_plugin.moc"
