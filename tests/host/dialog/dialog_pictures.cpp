// Pictures every page and state of the dialog, and finds what is cut off in them.
//
//   dialog_pictures FOLDER [light|dark|double|german|righttoleft|largefont]…
//
// Each look is made by a process of its own. The program fails when a text does not fit into its
// widget, when two widgets overlap, or when a panel can only be seen by scrolling.
#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QProcess>
#include <QProgressBar>
#include <QScrollArea>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTextStream>

#include <map>

#include "host/dialog/strip_pane.h"
#include "host/snapshot/snapshot.h"
#include "tests/host/dialog/dialog_fixtures.h"
#include "tests/support/private_cupsd.h"

namespace labelcut::test {

namespace {

/// What is different from one look to the next.
struct Look {
    bool dark = false;
    const char* scale = "1";
    const char* language = "en";
    Qt::LayoutDirection direction = Qt::LeftToRight;
    double font = 1;
};

const std::map<QString, Look>& looks() {
    static const std::map<QString, Look> all = {
        {QStringLiteral("light"), {}},
        {QStringLiteral("dark"), {.dark = true}},
        {QStringLiteral("double"), {.scale = "2"}},
        {QStringLiteral("german"), {.language = "de"}},
        {QStringLiteral("righttoleft"), {.direction = Qt::RightToLeft}},
        {QStringLiteral("largefont"), {.font = 1.5}},
    };
    return all;
}

QStringList lookNames() {
    QStringList names;
    for (const auto& [name, look] : looks())
        names << name;
    return names;
}

QString nameOf(const QWidget& widget) {
    return QStringLiteral("%1 \"%2\"")
        .arg(QLatin1String(widget.metaObject()->className()), widget.objectName());
}

QString textOf(const QWidget& widget) {
    if (const auto* label = qobject_cast<const QLabel*>(&widget))
        return label->text();
    const auto* button = qobject_cast<const QAbstractButton*>(&widget);
    return button ? button->text() : QString();
}

bool isCutOff(const QWidget& widget) {
    const auto* label = qobject_cast<const QLabel*>(&widget);
    if (label && label->wordWrap())
        return widget.height() < label->heightForWidth(widget.width());
    // A panel may set its rows closer than the style would.
    return widget.width() < widget.sizeHint().width() ||
           widget.height() < widget.fontMetrics().height();
}

/// Where something looks wrong in what is on the screen, a sentence each.
QStringList flawsOf(PrintDialog& dialog) {
    QStringList flaws;
    for (const QWidget* widget : dialog.findChildren<QWidget*>()) {
        if (widget->isVisible() && !textOf(*widget).isEmpty() && isCutOff(*widget))
            flaws << QStringLiteral("%1: \"%2\" is cut off (%3 x %4)")
                         .arg(nameOf(*widget), textOf(*widget))
                         .arg(widget->width())
                         .arg(widget->height());
    }
    const QWidget* shown = dialog.tabs().currentWidget();
    if (!shown)
        return flaws;
    for (const auto* page : shown->findChildren<QScrollArea*>()) {
        if (page->horizontalScrollBar()->isVisible() ||
            (dialog.tabs().currentIndex() == 0 && page->verticalScrollBar()->isVisible()))
            flaws << QStringLiteral("the page can only be seen by scrolling");
    }
    return flaws;
}

class Camera {
public:
    explicit Camera(QString prefix)
        : mPrefix(std::move(prefix)) {}

    void take(PrintDialog& dialog, const QString& name) {
        settle();
        const auto* strip = dialog.findChild<StripPane*>();
        turnUntil([strip] { return !strip->isDrawing(); });
        const QString path = mPrefix + name + QStringLiteral(".png");
        if (!dialog.grab().save(path))
            note(name, QStringLiteral("cannot be written to ") + path);
        for (const QString& flaw : flawsOf(dialog))
            note(name, flaw);
    }
    void takeTabs(PrintDialog& dialog, const QString& name) {
        const QSize before = dialog.size();
        for (int i = 0; i < dialog.tabs().count(); ++i) {
            dialog.tabs().setCurrentIndex(i);
            take(dialog, QStringLiteral("%1-%2").arg(name).arg(i));
        }
        if (dialog.size() != before)
            note(name, QStringLiteral("the window changes its size with the page"));
        dialog.tabs().setCurrentIndex(0);
    }
    bool isContent() const { return mContent; }

private:
    void note(const QString& name, const QString& flaw) {
        mContent = false;
        QTextStream(stderr) << mPrefix.section(u'/', -1) << name << ": " << flaw << '\n';
    }

    QString mPrefix;
    bool mContent = true;
};

void takePrintersByPpd(Camera& camera, const PrivateHome& home) {
    const auto tape = openDialog(kTapePpd);
    camera.takeTabs(*tape, QStringLiteral("tape"));
    part<QProgressBar>(*tape, "progress")->show();
    camera.take(*tape, QStringLiteral("running"));
    camera.takeTabs(*openDialog(kRollPpd), QStringLiteral("roll"));
    camera.take(*openDialog(kTapePpd, {{QStringLiteral("KvSpecialTape"), QStringLiteral("ON")}}),
                QStringLiteral("special-tape"));
    camera.take(
        *openDialog(conflictingPpd(home), {{QStringLiteral("Density"), QStringLiteral("Dark")},
                                           {QStringLiteral("Quality"), QStringLiteral("Best")}}),
        QStringLiteral("conflict"));
    Settings unknown;
    for (int i = 0; i < 7; ++i)
        unknown.push_back({QStringLiteral("Unknown%1").arg(i), QStringLiteral("ON")});
    camera.take(*openDialog(kTapePpd, unknown), QStringLiteral("told"));

    const auto paper = openDialog(kTapePpd);
    choose(optionBox(*paper, "PageSize"), QStringLiteral("Custom"));
    camera.take(*paper, QStringLiteral("custom-paper"));
    const auto custom = openDialog(kTapePpd);
    openTab(*custom, kFeaturesTab);
    choose(optionBox(*custom, "FeedLength"), QStringLiteral("Custom"));
    camera.take(*custom, QStringLiteral("custom"));
    type(*optionBox(*custom, "FeedLength").parentWidget()->findChild<QLineEdit*>(),
         QStringLiteral("9999"));
    click(*part<QPushButton>(*custom, "print"));
    camera.take(*custom, QStringLiteral("custom-refused"));
}

void takeEmptyStates(Camera& camera) {
    const PrivateHome home;
    DialogRequest nothing;
    const auto none = openDialog(nothing);
    turnUntil([&] { return !none->printerMessages().texts().isEmpty(); });
    camera.take(*none, QStringLiteral("no-printer"));
    DialogRequest printer;
    printer.ppdPath = kTapePpd;
    camera.take(*openDialog(printer), QStringLiteral("no-document"));
}

/// A job of a paused queue from Print to its end, then one label to check.
void takeJob(Camera& camera, PrintDialog& dialog, PrivateCupsd& service, const QString& queue) {
    const auto& hold = *part<QPushButton>(dialog, "holdJob");
    const QString holds = hold.text();
    click(*part<QPushButton>(dialog, "print"));
    turnUntil([&] { return hold.isVisible(); });
    camera.take(dialog, QStringLiteral("job-waits"));
    click(*part<QPushButton>(dialog, "holdJob"));
    turnUntil([&] { return hold.text() != holds; });
    camera.take(dialog, QStringLiteral("job-held"));
    click(*part<QPushButton>(dialog, "cancelJob"));
    turnUntil([&] { return part<QPushButton>(dialog, "print")->isEnabled(); });
    camera.take(dialog, QStringLiteral("job-cancelled"));
    if (!service.resume(queue))
        qFatal("the queue stays paused");
    dialog.findChild<QAction*>(QStringLiteral("printCheck"))->trigger();
    turnUntil([&] { return part<QPushButton>(dialog, "print")->isEnabled(); });
    camera.take(dialog, QStringLiteral("job-checked"));
}

void takePausedQueue(Camera& camera) {
    PrivateCupsd service;
    const QString queue = QStringLiteral("shipping");
    if (!service.start() || !service.addQueue(queue, kTapePpd) || !service.pause(queue))
        qFatal("the print service does not start: %s", qPrintable(service.errorLog()));
    DialogRequest request;
    request.files = {kLabels};
    request.queue = queue;
    const auto dialog =
        openDialog(request, CupsConnection(*ServiceAddress::fromText(service.socketPath())));
    turnUntil([&] {
        return dialog->model().pageCount() > 0 && !dialog->printerMessages().texts().isEmpty();
    });
    camera.take(*dialog, QStringLiteral("paused"));
    openTab(*dialog, kSummaryTab);
    camera.take(*dialog, QStringLiteral("paused-summary"));
    openTab(*dialog, 0);
    takeJob(camera, *dialog, service, queue);
}

int takeAll(const QString& folder, const QString& name) {
    const Look& look = looks().at(name);
    setSnapshotLook(look.dark);
    QApplication::setLayoutDirection(look.direction);
    QFont font = QApplication::font();
    font.setPointSizeF(font.pointSizeF() * look.font);
    QApplication::setFont(font);
    const PrivateHome home;
    Camera camera(folder + u'/' + name + u'-');
    takePrintersByPpd(camera, home);
    takeEmptyStates(camera);
    takePausedQueue(camera);
    return camera.isContent() ? 0 : 1;
}

/// Describes a screen that has room for the window at any scale, which the platform's own has not.
void writeScreen(const QString& path) {
    const QJsonObject screen{{QStringLiteral("name"), QStringLiteral("large")},
                             {QStringLiteral("x"), 0},
                             {QStringLiteral("y"), 0},
                             {QStringLiteral("width"), 2400},
                             {QStringLiteral("height"), 1800},
                             {QStringLiteral("logicalDpi"), 96},
                             {QStringLiteral("logicalBaseDpi"), 96},
                             {QStringLiteral("dpr"), 1}};
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        qFatal("%s cannot be written", qPrintable(path));
    file.write(
        QJsonDocument(QJsonObject{{QStringLiteral("screens"), QJsonArray{screen}}}).toJson());
}

/// Every look in a process of its own: language and scale are fixed when a program starts.
int takeInProcesses(const QString& folder, const QStringList& names) {
    int failures = 0;
    const QTemporaryDir scratch;
    const QString screen = scratch.filePath(QStringLiteral("screen.json"));
    writeScreen(screen);
    for (const QString& name : names) {
        const Look& look = looks().at(name);
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"),
                           QStringLiteral("offscreen:configfile=") + screen);
        environment.insert(QStringLiteral("QT_SCALE_FACTOR"), QLatin1String(look.scale));
        environment.insert(QStringLiteral("LANGUAGE"), QLatin1String(look.language));
        environment.insert(QStringLiteral("LC_ALL"),
                           look.language == QLatin1String("en")
                               ? QStringLiteral("C.UTF-8")
                               : QLatin1String(look.language) + QStringLiteral(".UTF-8"));
        environment.insert(QStringLiteral("LABELCUT_LOOK"), name);
        QProcess process;
        process.setProcessEnvironment(environment);
        process.setProcessChannelMode(QProcess::ForwardedChannels);
        process.start(QCoreApplication::applicationFilePath(), {folder});
        if (!process.waitForFinished(300'000) || process.exitStatus() != QProcess::NormalExit ||
            process.exitCode() != 0) {
            QTextStream(stderr) << name << ": something is wrong\n";
            ++failures;
        }
    }
    return failures == 0 ? 0 : 1;
}

/// The folder, then looks: no options, and no look that does not exist.
bool isWrong(const QStringList& arguments) {
    return arguments.front().startsWith(u'-') ||
           std::any_of(arguments.begin() + 1, arguments.end(),
                       [](const QString& name) { return looks().count(name) == 0; });
}

int usage() {
    QTextStream(stderr) << "Usage: dialog_pictures FOLDER [" << lookNames().join(u'|') << "]...\n";
    return 2;
}

} // namespace

} // namespace labelcut::test

int main(int argc, char** argv) {
    using namespace labelcut::test;
    const QString look = qEnvironmentVariable("LABELCUT_LOOK");
    if (look.isEmpty()) {
        const QCoreApplication application(argc, argv);
        QStringList names = QCoreApplication::arguments().mid(1);
        if (names.isEmpty() || isWrong(names))
            return usage();
        const QString folder = names.takeFirst();
        QDir().mkpath(folder);
        return takeInProcesses(folder, names.isEmpty() ? lookNames() : names);
    }
    const QApplication application(argc, argv);
    return takeAll(QCoreApplication::arguments().value(1), look);
}
