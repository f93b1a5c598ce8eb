// The automation driver on its own: lines from a file or standard input, answers on standard
// output.
#include <QApplication>
#include <QFile>

#include <cstdio>

#include "host/script/panel_script.h"

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QFile in;
    QFile out;
    const QStringList arguments = application.arguments();
    if (arguments.size() > 1)
        in.setFileName(arguments[1]);
    const bool opened =
        arguments.size() > 1 ? in.open(QIODevice::ReadOnly) : in.open(stdin, QIODevice::ReadOnly);
    if (!opened || !out.open(stdout, QIODevice::WriteOnly)) {
        std::fputs("panel_script_driver: cannot read or write\n", stderr);
        return 2;
    }
    const labelcut::PluginSearch plugins =
        labelcut::loadPlugins(QStringLiteral(LABELCUT_PLUGIN_DIR));
    return labelcut::runPanelScript(in, out, plugins);
}
