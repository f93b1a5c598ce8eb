// The automation driver: plays the host towards the real plug-in, a JSON object a line.
// docs/panel-script.md says what every line does and answers.
#pragma once

#include <QJsonObject>

#include <memory>

#include "host/panels/panel_host.h"

class QIODevice;

namespace labelcut {

class PanelScript {
public:
    /// @param plugins  what was found in the plug-in folder; the first that is loaded is driven.
    ///                 Borrowed.
    explicit PanelScript(const PluginSearch& plugins);
    ~PanelScript();
    PanelScript(const PanelScript&) = delete;
    PanelScript& operator=(const PanelScript&) = delete;

    /// Carries out one line. @return the answer, with "ok" in it.
    QJsonObject carryOut(const QByteArray& bytes);
    /// Whether "quit" was carried out.
    bool hasQuit() const { return mQuit; }

    struct Stage;

private:
    QJsonObject open(const QJsonObject& line);

    const PluginSearch& mPlugins;
    std::unique_ptr<Stage> mStage;
    bool mQuit = false;
};

/// Reads lines from `in` and answers on `out`, flushed line by line, until the end or "quit".
/// @return 0, or 1 when any line answered "ok": false.
int runPanelScript(QIODevice& in, QIODevice& out, const PluginSearch& plugins);

} // namespace labelcut
