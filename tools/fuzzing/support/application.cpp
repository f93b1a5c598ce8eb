// Fuzzing: the one application object of targets that have widgets.
#include "tools/fuzzing/support/application.h"

#include <QApplication>

namespace labelcut::fuzz {

namespace {

void dropMessage(QtMsgType, const QMessageLogContext&, const QString&) {}

QApplication* make() {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // What a broken input makes Qt warn of is no finding, and would slow a run down.
    qInstallMessageHandler(dropMessage);
    static int argumentCount = 1;
    static char name[] = "fuzz";
    static char* arguments[] = {name, nullptr};
    auto* made = new QApplication(argumentCount, arguments);
    QApplication::setStyle(QStringLiteral("fusion"));
    return made;
}

} // namespace

QApplication& application() {
    static QApplication* const instance = make();
    return *instance;
}

} // namespace labelcut::fuzz
