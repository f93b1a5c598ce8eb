// Fuzzing: lines of the automation protocol, against the real plug-in in its shared object. The
// whole input is a script; of its files only two small printers are opened.
#include <QApplication>
#include <QBuffer>
#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <optional>

#include "host/panels/plugin_loader.h"
#include "host/script/panel_script.h"
#include "tools/fuzzing/support/application.h"
#include "tools/fuzzing/support/bytes.h"
#include "tools/fuzzing/support/property.h"

using namespace labelcut;
using fuzz::require;

namespace {

constexpr int kMostLines = 24;

/// The line with files sought among the small printers; nothing when it names one beyond their
/// folder, such as a device that would be read without end.
std::optional<QByteArray> withinPrinters(const QByteArray& line) {
    QJsonObject object = QJsonDocument::fromJson(line).object();
    bool isChanged = false;
    for (const char* name : {"ppd", "resources"}) {
        const QString path = object.value(QLatin1String(name)).toString();
        if (path.isEmpty() || path.startsWith(u":/"))
            continue;
        if (path.contains(u'/'))
            return std::nullopt;
        object.insert(QLatin1String(name), QStringLiteral(LABELCUT_FUZZ_PRINTERS "/") + path);
        isChanged = true;
    }
    return isChanged ? QJsonDocument(object).toJson(QJsonDocument::Compact) : line;
}

QList<QByteArray> linesOf(const QByteArray& script) {
    QList<QByteArray> lines;
    for (const QByteArray& line : script.split('\n').mid(0, kMostLines))
        if (const std::optional<QByteArray> harmless = withinPrinters(line))
            lines.append(*harmless);
    return lines;
}

QByteArray bytesOf(const QJsonObject& answer) {
    return QJsonDocument(answer).toJson(QJsonDocument::Compact);
}

void checkAnswer(const QJsonObject& answer) {
    require(answer.value(QStringLiteral("ok")).isBool(), "every answer says whether it is good");
    const QString error = answer.value(QStringLiteral("error")).toString();
    require(answer.value(QStringLiteral("ok")).toBool() == error.isEmpty(),
            "exactly a refused line names an error");
    require(error.isEmpty() || answer.size() == 2, "a refused line answers nothing else");
}

/// What `state` says: what was called and resized is told once only.
QJsonObject stateOf(PanelScript& script) {
    QJsonObject state = script.carryOut(R"({"do":"state"})");
    checkAnswer(state);
    state.remove(QStringLiteral("calls"));
    state.remove(QStringLiteral("resized"));
    return state;
}

void checkControls(const QJsonObject& controls) {
    for (const QJsonValue control : controls) {
        if (!control.isObject())
            continue;
        const QJsonValue state = control.toObject().value(QStringLiteral("state"));
        require(state.isUndefined() || state.toInt(-2) >= -1, "a box has a state");
    }
}

void checkState(const QJsonObject& state) {
    if (!state.value(QStringLiteral("ok")).toBool())
        return;
    checkControls(state.value(QStringLiteral("controls")).toObject());
    const QJsonObject popUp = state.value(QStringLiteral("popup")).toObject();
    const QJsonArray entries = popUp.value(QStringLiteral("entries")).toArray();
    const QJsonValue selected = popUp.value(QStringLiteral("selected"));
    require(!selected.isDouble() ||
                std::ranges::any_of(entries,
                                    [&](const QJsonValue& entry) {
                                        return entry.toObject().value(QStringLiteral("tag")) ==
                                               selected;
                                    }),
            "the selected entry is one of the pop-up");
    const int tape = state.value(QStringLiteral("tapeState")).toInt(-1);
    require(tape == 0 || tape == 1, "a tape's state is 0 or 1");
}

bool isOpening(const QByteArray& line) {
    const QJsonValue act = QJsonDocument::fromJson(line).object().value(QStringLiteral("do"));
    return act == QLatin1String("open") || act == QLatin1String("quit");
}

/// Line by line: answers are whole, and a refused line leaves everything as it was.
void checkLines(const PluginSearch& plugins, const QList<QByteArray>& lines) {
    PanelScript script(plugins);
    QJsonObject before = stateOf(script);
    for (const QByteArray& line : lines) {
        if (line.trimmed().isEmpty() || script.hasQuit())
            continue;
        const QJsonObject answer = script.carryOut(line);
        checkAnswer(answer);
        require(!bytesOf(answer).contains('\n'), "an answer is one line");
        const QJsonObject after = stateOf(script);
        checkState(after);
        if (!answer.value(QStringLiteral("ok")).toBool() && !isOpening(line))
            require(after == before, "a refused line changes nothing");
        before = after;
    }
}

/// As one script: a line of answer for each line that is not blank, until the end or "quit".
void checkScript(const PluginSearch& plugins, const QList<QByteArray>& lines) {
    QByteArray script = lines.join('\n');
    QByteArray answers;
    QBuffer in(&script);
    QBuffer out(&answers);
    in.open(QIODevice::ReadOnly);
    out.open(QIODevice::WriteOnly);
    const int status = runPanelScript(in, out, plugins);

    int refused = 0;
    for (const QByteArray& answer : answers.split('\n')) {
        if (answer.isEmpty())
            continue;
        const QJsonDocument document = QJsonDocument::fromJson(answer);
        require(document.isObject(), "an answer is an object");
        checkAnswer(document.object());
        refused += document.object().value(QStringLiteral("ok")).toBool() ? 0 : 1;
    }
    require(status == (refused > 0 ? 1 : 0), "the status tells of a refused line");
    const auto asked = std::ranges::count_if(
        lines, [](const QByteArray& line) { return !line.trimmed().isEmpty(); });
    const bool hasQuit = std::ranges::any_of(lines, isOpening);
    require(answers.count('\n') == asked || (hasQuit && answers.count('\n') < asked),
            "every line has its answer");
}

const PluginSearch& plugins() {
    static const PluginSearch* const search = [] {
        fuzz::application();
        auto* made = new PluginSearch(loadPlugins(QStringLiteral(LABELCUT_PLUGIN_DIR)));
        require(made->loaded.size() == 1, "there is the plug-in to drive");
        // The plug-in asks for the system's version once a process; no input decides the answer.
        PanelScript(*made).carryOut(R"({"do":"open"})");
        return made;
    }();
    return *search;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QList<QByteArray> lines = linesOf(fuzz::Bytes(data, size).rest());
    // Either shows a crash; one of the two is enough for each script.
    if (size % 4 == 0)
        checkScript(plugins(), lines);
    else
        checkLines(plugins(), lines);
    return 0;
}
