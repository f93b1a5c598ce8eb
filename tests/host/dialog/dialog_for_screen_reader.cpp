// The dialog as another program sees it: opened with what makes every part of it speak.
//
//   dialog_for_screen_reader PPD DOCUMENT
//
// Each line on standard input is obeyed: "tell TEXT" makes the dialog say something, "choose
// KEYWORD CHOICE" chooses, "quit" ends it.
#include <QApplication>
#include <QSocketNotifier>

#include <iostream>
#include <string>

#include "host/dialog/print_dialog.h"

namespace {

/// @param setting  "KEYWORD CHOICE"
void choose(labelcut::JobModel& model, const QString& setting) {
    if (!model.choose(setting.section(u' ', 0, 0), setting.section(u' ', 1)))
        qFatal("the printer has no %s", qPrintable(setting));
}

void obey(labelcut::PrintDialog& dialog) {
    std::string line;
    if (!std::getline(std::cin, line) || line == "quit")
        dialog.close();
    else if (line.starts_with("tell "))
        Q_EMIT dialog.model().told(QString::fromStdString(line.substr(5)));
    else if (line.starts_with("choose "))
        choose(dialog.model(), QString::fromStdString(line.substr(7)));
}

} // namespace

int main(int argc, char** argv) {
    using namespace labelcut;
    // Otherwise nobody can tell whether more than a line has come.
    std::ios::sync_with_stdio(false);
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    const PluginSearch plugins = loadPlugins(QStringLiteral(LABELCUT_PLUGIN_DIR));
    const HostSystem system;
    DialogRequest request;
    request.ppdPath = arguments.value(1);
    request.files = {arguments.value(2)};
    PrintDialog dialog(request, plugins, system);
    dialog.show();
    const QSocketNotifier input(0, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &dialog, [&dialog] {
        // Lines that came together are read together, and announced once.
        do
            obey(dialog);
        while (std::cin && std::cin.rdbuf()->in_avail() > 0);
    });
    return QApplication::exec() == 0 ? 0 : 1;
}
