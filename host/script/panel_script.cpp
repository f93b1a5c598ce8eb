// The automation driver: plays the host towards the real plug-in, a JSON object a line.
#include "host/script/panel_script.h"

#include <QCoreApplication>
#include <QFileDevice>
#include <QIODevice>
#include <QJsonArray>
#include <QJsonDocument>

#include <map>
#include <utility>

#include "host/panels/resource_bundle.h"
#include "host/script/panel_controls.h"
#include "host/script/script_fields.h"
#include "host/settings/ppd_calls.h"
#include "platform/toolkit/handles.h"

namespace labelcut {

using script::refuse;

/// Everything that one "open" sets up. Members are destroyed last to first: the panel goes with its
/// principal object, before the host that it talks to.
struct PanelScript::Stage {
    HostSystem system;
    std::unique_ptr<PanelHost> host;
    std::shared_ptr<const PDEBundle> bundle;
    std::shared_ptr<PDEPluginCallback> callback;
    std::unique_ptr<PDEPlugin> principal;
    PDEPanel* panel = nullptr;
    /// The panel's view once "view" has asked for it.
    QWidget* view = nullptr;

    ~Stage() {
        if (panel)
            host->removePanel(panel);
    }
};

namespace {

/// A script without line ends, such as a device that never ends, stops here. Bytes.
constexpr qint64 kLongestLine = 16 << 20;

using Stage = PanelScript::Stage;

QJsonValue orNull(const std::optional<QString>& text) {
    return text ? QJsonValue(*text) : QJsonValue();
}

QJsonObject value(bool answer) {
    return {{QStringLiteral("value"), answer}};
}

QJsonObject textAnswer(const QString& text) {
    return {{QStringLiteral("text"), text}};
}

QJsonValue sizeOf(const QWidget* view) {
    if (!view)
        return {};
    const Size size = View(const_cast<QWidget*>(view)).frame().size;
    return QJsonArray{size.width, size.height};
}

std::optional<HostPaper> readPaper(const QJsonObject& object) {
    script::required(object, "name");
    return HostPaper(script::textOrNull(object, "name"), script::number(object, "height"));
}

std::optional<HostPaper> openPaper(const QJsonObject& line) {
    const QJsonValue paper = line.value(QLatin1String("paper"));
    if (paper.isUndefined() || paper.isNull())
        return std::nullopt;
    if (!paper.isObject())
        script::refuseType("paper", "an object or null");
    return readPaper(paper.toObject());
}

ppd::File openPpd(const QJsonObject& line) {
    const std::optional<QString> path = script::textOrNull(line, "ppd");
    if (!path)
        return nullptr;
    ppd::OpenError error;
    ppd::File file = ppd::openFile(*path, &error);
    if (!file)
        refuse(QStringLiteral("the PPD \"%1\" cannot be opened: %2 (line %3)")
                   .arg(*path, error.reason, QString::number(error.line)));
    return file;
}

bool marksDefaults(const QJsonObject& line) {
    const QJsonValue marks = line.value(QLatin1String("marks"));
    if (marks.isUndefined() || marks == QLatin1String("defaults"))
        return true;
    if (marks != QLatin1String("none"))
        script::refuseType("marks", "\"defaults\" or \"none\"");
    return false;
}

bool offersSettings(const QJsonObject& line) {
    const QJsonValue settings = line.value(QLatin1String("settings"));
    if (!settings.isUndefined() && !settings.isBool())
        script::refuseType("settings", "true or false");
    return settings.toBool(true);
}

QString panelType(const QJsonObject& line) {
    if (!line.contains(QLatin1String("type")))
        return QLatin1String(kPDEPrinterModuleType);
    return script::text(line, "type");
}

HostSystem openSystem(const QJsonObject& line) {
    const QJsonValue system = line.value(QLatin1String("system"));
    if (system.isUndefined() || system.isNull())
        return HostSystem();
    const QJsonArray parts = system.toArray();
    if (parts.size() != 3)
        script::refuseType("system", "[major, minor, bugfix] or null");
    const auto part = [&](int i) { return script::integerValue(parts[i], "system"); };
    return HostSystem({part(0), part(1), part(2)});
}

QJsonObject name(Stage& stage, const QJsonObject&) {
    return textAnswer(stage.panel->panelName());
}

QJsonObject kind(Stage& stage, const QJsonObject&) {
    return textAnswer(stage.panel->panelKind());
}

QJsonObject keys(Stage& stage, const QJsonObject&) {
    const std::optional<QStringList> all = stage.panel->supportedPPDOptionKeys();
    return {{QStringLiteral("keys"),
             all ? QJsonValue(QJsonArray::fromStringList(*all)) : QJsonValue()}};
}

QJsonObject view(Stage& stage, const QJsonObject&) {
    stage.view = stage.panel->panelView();
    return {{QStringLiteral("loaded"), stage.view != nullptr},
            {QStringLiteral("size"), sizeOf(stage.view)}};
}

QJsonObject willShow(Stage& stage, const QJsonObject&) {
    stage.panel->willShow();
    return {};
}

QJsonObject shouldHide(Stage& stage, const QJsonObject&) {
    return value(stage.panel->shouldHide());
}

QJsonObject shouldShowHelp(Stage& stage, const QJsonObject&) {
    return value(stage.panel->shouldShowHelp());
}

QJsonObject shouldPrint(Stage& stage, const QJsonObject&) {
    return value(stage.panel->shouldPrint());
}

QJsonObject save(Stage& stage, const QJsonObject&) {
    return value(stage.panel->saveValuesAndReturnError(nullptr));
}

QJsonObject restore(Stage& stage, const QJsonObject&) {
    return value(stage.panel->restoreValuesAndReturnError(nullptr));
}

QJsonObject summary(Stage& stage, const QJsonObject&) {
    std::optional<QVariantMap> summary = stage.panel->summaryInfo();
    if (!summary)
        return {{QStringLiteral("summary"), QJsonValue()}, {QStringLiteral("order"), QJsonValue()}};
    const QStringList order = summary->take(QLatin1String(kSummaryDisplayOrder)).toStringList();
    return {{QStringLiteral("summary"), QJsonObject::fromVariantMap(*summary)},
            {QStringLiteral("order"), QJsonArray::fromStringList(order)}};
}

QJsonObject close(Stage& stage, const QJsonObject&) {
    stage.panel->printWindowWillClose(false);
    return {};
}

QJsonObject notify(Stage& stage, const QJsonObject& line) {
    script::required(line, "key");
    script::required(line, "choice");
    const std::optional<QString> key = script::textOrNull(line, "key");
    const std::optional<QString> choice = script::textOrNull(line, "choice");
    stage.panel->PPDOptionKeyValueDidChange(key.value_or(QString()), choice.value_or(QString()));
    return {};
}

[[noreturn]] void refusePair(const QString& key, const QString& choice) {
    refuse(QStringLiteral("the PPD has no choice \"%2\" of an option \"%1\"").arg(key, choice));
}

QJsonObject hostChange(Stage& stage, const QJsonObject& line) {
    const QString key = script::text(line, "key");
    const QString choice = script::text(line, "choice");
    if (!stage.host->changeFromOutside(key, choice))
        refusePair(key, choice);
    return {};
}

QJsonObject mark(Stage& stage, const QJsonObject& line) {
    const QString key = script::text(line, "key");
    const QString choice = script::text(line, "choice");
    if (!ppd::markOption(stage.host->ppd(), key.toUtf8().constData(), choice.toUtf8().constData()))
        refusePair(key, choice);
    return {};
}

QJsonObject unmark(Stage& stage, const QJsonObject& line) {
    const QString key = script::text(line, "key");
    if (!ppd::unmarkOption(stage.host->ppd(), key.toUtf8().constData()))
        refuse(QStringLiteral("the PPD has no option \"%1\"").arg(key));
    return {};
}

QJsonObject paper(Stage& stage, const QJsonObject& line) {
    const QJsonValue none = line.value(QLatin1String("none"));
    if (!none.isUndefined() && !none.isBool())
        script::refuseType("none", "true or false");
    if (none.toBool())
        stage.host->pageFormat().setPaper(std::nullopt);
    else
        stage.host->pageFormat().setPaper(readPaper(line));
    return {};
}

QJsonObject localize(Stage& stage, const QJsonObject& line) {
    return textAnswer(stage.bundle->localizedStringForKey(script::text(line, "key")));
}

script::PanelControls controls(const Stage& stage) {
    return {stage.view, stage.panel->inspect()};
}

QJsonObject click(Stage& stage, const QJsonObject& line) {
    controls(stage).click(script::text(line, "control"));
    return {};
}

QJsonObject enter(Stage& stage, const QJsonObject& line) {
    controls(stage).enter(script::text(line, "text"));
    return {};
}

QJsonObject type(Stage& stage, const QJsonObject& line) {
    controls(stage).type(script::text(line, "text"));
    return {};
}

QJsonObject step(Stage& stage, const QJsonObject& line) {
    controls(stage).step(script::integer(line, "value"));
    return {};
}

QJsonObject popup(Stage& stage, const QJsonObject& line) {
    controls(stage).choosePopUp(script::integer(line, "tag"));
    return {};
}

QJsonObject set(Stage& stage, const QJsonObject& line) {
    const int state = script::integer(line, "state");
    if (state < -1 || state > 1)
        script::refuseType("state", "-1, 0 or 1");
    controls(stage).setState(script::text(line, "control"), state);
    return {};
}

QJsonObject part(const QVariantMap& inspected, const char* name) {
    return QJsonObject::fromVariantMap(inspected.value(QLatin1String(name)).toMap());
}

/// What the panel says of its picture, and where it is shown; null where it is not.
QJsonValue preview(const script::PanelControls& controls, const QVariantMap& inspected) {
    const QJsonValue place = controls.previewPlace();
    if (!place.isObject())
        return {};
    QJsonObject object = part(inspected, "preview");
    for (const QString& key : place.toObject().keys())
        object.insert(key, place[key]);
    return object;
}

QJsonObject marked(const PanelHost& host, const QStringList& keywords) {
    QJsonObject all;
    for (const QString& keyword : keywords)
        all.insert(keyword, orNull(host.marked(keyword)));
    return all;
}

QJsonArray calls(PanelHost& host) {
    QJsonArray all;
    for (const Setting& change : host.takeChanges())
        all.append(QJsonArray{change.keyword, change.choice});
    return all;
}

QJsonObject state(Stage& stage, const QJsonObject&) {
    const QVariantMap inspected = stage.panel->inspect();
    const script::PanelControls controls(stage.view, inspected);
    const QStringList keywords = inspected.value(QStringLiteral("keywords")).toStringList();
    // What the panel adds of its own stands among the rest.
    QJsonObject answer = part(inspected, "state");
    answer.insert(QStringLiteral("controls"), controls.all());
    answer.insert(QStringLiteral("popup"), controls.popUp());
    answer.insert(QStringLiteral("preview"), preview(controls, inspected));
    answer.insert(QStringLiteral("selections"), part(inspected, "selections"));
    answer.insert(QStringLiteral("marked"), marked(*stage.host, keywords));
    answer.insert(QStringLiteral("panelSize"), sizeOf(stage.view));
    answer.insert(QStringLiteral("calls"), calls(*stage.host));
    answer.insert(QStringLiteral("resized"), stage.host->takeResizes());
    return answer;
}

using Command = QJsonObject (*)(Stage&, const QJsonObject&);

Command commandNamed(const QString& name) {
    static const std::map<QString, Command> commands = {
        {QStringLiteral("name"), &labelcut::name},
        {QStringLiteral("kind"), &kind},
        {QStringLiteral("keys"), &keys},
        {QStringLiteral("view"), &view},
        {QStringLiteral("willShow"), &willShow},
        {QStringLiteral("shouldHide"), &shouldHide},
        {QStringLiteral("shouldShowHelp"), &shouldShowHelp},
        {QStringLiteral("shouldPrint"), &shouldPrint},
        {QStringLiteral("save"), &save},
        {QStringLiteral("restore"), &restore},
        {QStringLiteral("summary"), &summary},
        {QStringLiteral("close"), &close},
        {QStringLiteral("notify"), &notify},
        {QStringLiteral("hostChange"), &hostChange},
        {QStringLiteral("mark"), &mark},
        {QStringLiteral("unmark"), &unmark},
        {QStringLiteral("paper"), &paper},
        {QStringLiteral("localize"), &localize},
        {QStringLiteral("click"), &click},
        {QStringLiteral("enter"), &enter},
        {QStringLiteral("type"), &type},
        {QStringLiteral("step"), &step},
        {QStringLiteral("popup"), &popup},
        {QStringLiteral("set"), &set},
        {QStringLiteral("state"), &state},
    };
    const auto found = commands.find(name);
    return found == commands.end() ? nullptr : found->second;
}

QJsonObject parse(const QByteArray& line) {
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(line, &error);
    if (error.error != QJsonParseError::NoError)
        refuse(QStringLiteral("this line is not JSON: %1").arg(error.errorString()));
    if (!document.isObject())
        refuse(QStringLiteral("this line is not an object"));
    return document.object();
}

/// What follows cannot be told from the rest of the line, so that it ends the script.
QJsonObject tooLong() {
    return {{QStringLiteral("ok"), false},
            {QStringLiteral("error"),
             QStringLiteral("this line has more than %1 bytes").arg(kLongestLine)}};
}

} // namespace

PanelScript::PanelScript(const PluginSearch& plugins)
    : mPlugins(plugins) {}

PanelScript::~PanelScript() = default;

QJsonObject PanelScript::open(const QJsonObject& line) {
    mStage.reset();
    if (mPlugins.loaded.empty())
        refuse(mPlugins.refused.empty()
                   ? QStringLiteral("there is no plug-in; is Labelcut installed completely?")
                   : QStringLiteral("the plug-in \"%1\" cannot be used: %2")
                         .arg(mPlugins.refused.front().file, mPlugins.refused.front().reason));
    const LoadedPlugin& plugin = mPlugins.loaded.front();

    auto stage = std::make_unique<Stage>();
    const bool defaults = marksDefaults(line);
    const QString type = panelType(line);
    const std::optional<QString> ticket = script::textOrNull(line, "ticket");
    const std::optional<QString> resources = script::textOrNull(line, "resources");
    stage->system = openSystem(line);
    PanelHostSetup setup;
    setup.deviceURI = script::textOrNull(line, "uri");
    setup.paper = openPaper(line);
    setup.offersSettings = offersSettings(line);
    setup.ppd = openPpd(line);
    stage->host = std::make_unique<PanelHost>(std::move(setup));
    if (defaults)
        ppd::markDefaults(stage->host->ppd());
    if (ticket)
        stage->host->settings().setValue(QLatin1String(kTicketKey), ticket->toUtf8(), false);

    stage->bundle = std::make_shared<ResourceBundle>(resources.value_or(plugin.bundleRoot));
    stage->principal = plugin.factory->create(stage->system);
    const bool accepted = stage->principal->initWithBundle(stage->bundle);
    QJsonObject answer{{QStringLiteral("accepted"), accepted},
                       {QStringLiteral("panels"), QJsonValue()}};
    mStage = std::move(stage);
    if (!accepted)
        return answer;
    mStage->callback = mStage->host->makeCallback();
    PDEPanelArray* panels = mStage->principal->PDEPanelsForType(type, mStage->callback);
    if (!panels)
        return answer;
    answer.insert(QStringLiteral("panels"), static_cast<int>(panels->size()));
    if (!panels->empty()) {
        mStage->panel = panels->front().get();
        mStage->host->addPanel(mStage->callback, mStage->panel);
    }
    return answer;
}

QJsonObject PanelScript::carryOut(const QByteArray& bytes) {
    QJsonObject answer;
    try {
        const QJsonObject line = parse(bytes);
        const QString act = script::text(line, "do");
        if (act == QLatin1String("open")) {
            answer = open(line);
        } else if (act == QLatin1String("quit")) {
            mQuit = true;
        } else {
            const Command command = commandNamed(act);
            if (!command)
                refuse(QStringLiteral("\"%1\" is not a command").arg(act));
            if (!mStage || !mStage->panel)
                refuse(QStringLiteral("there is no panel; open one first"));
            answer = command(*mStage, line);
        }
        answer.insert(QStringLiteral("ok"), true);
    } catch (const script::Refusal& refusal) {
        answer = {{QStringLiteral("ok"), false}, {QStringLiteral("error"), refusal.reason}};
    }
    QCoreApplication::sendPostedEvents();
    return answer;
}

int runPanelScript(QIODevice& in, QIODevice& out, const PluginSearch& plugins) {
    PanelScript script(plugins);
    int status = 0;
    while (!script.hasQuit()) {
        const QByteArray line = in.readLine(kLongestLine + 1);
        if (line.isEmpty())
            break;
        if (line.trimmed().isEmpty())
            continue;
        const bool isTooLong = line.size() >= kLongestLine && !line.endsWith('\n');
        const QJsonObject answer = isTooLong ? tooLong() : script.carryOut(line);
        if (!answer.value(QLatin1String("ok")).toBool())
            status = 1;
        out.write(QJsonDocument(answer).toJson(QJsonDocument::Compact) + '\n');
        if (auto* file = qobject_cast<QFileDevice*>(&out))
            file->flush();
        if (isTooLong)
            break;
    }
    return status;
}

} // namespace labelcut
