// The command line: application objects for commands that show or draw widgets.
#include "host/cli/application.h"

namespace labelcut {

namespace {

QtMessageHandler usualHandler = nullptr;

void handleMessage(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    if (!message.startsWith(QLatin1String("QStandardPaths: XDG_RUNTIME_DIR not set")))
        usualHandler(type, context, message);
}

} // namespace

void dropRuntimeFolderNotice() {
    if (!usualHandler)
        usualHandler = qInstallMessageHandler(handleMessage);
}

void useOffscreenWithoutDisplay() {
    const bool hasDisplay =
        !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
    if (!hasDisplay && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
}

void useLanguage(const QString& language) {
    const QByteArray name = language.toUtf8();
    qputenv("LANGUAGE", name);
    qputenv("LC_ALL", name + ".UTF-8");
    qputenv("LANG", name + ".UTF-8");
}

} // namespace labelcut
