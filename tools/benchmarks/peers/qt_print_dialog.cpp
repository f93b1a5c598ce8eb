// Performance: Qt's own print dialog on a queue.
//   qt_print_dialog QUEUE         the dialog
//   qt_print_dialog QUEUE --ppd   also presses "Properties" and turns to the page that lists the
//                                 options of the queue's PPD, before that window is first painted
#include <QApplication>
#include <QComboBox>
#include <QPrintDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <QPushButton>
#include <QTabWidget>
#include <QTimer>

#include <cstdio>
#include <cstring>

namespace {

/// Turns to the page with the PPD's options as soon as a window that has one is shown.
class PageTurner : public QObject {
public:
    bool eventFilter(QObject* watched, QEvent* event) override {
        auto* window = qobject_cast<QDialog*>(watched);
        if (event->type() == QEvent::Show && window && !qobject_cast<QPrintDialog*>(window))
            turn(*window);
        return false;
    }

private:
    static void turn(const QDialog& window) {
        auto* tabs = window.findChild<QTabWidget*>();
        auto* page = window.findChild<QWidget*>(QStringLiteral("cupsPropertiesPage"));
        if (!tabs || !page || tabs->indexOf(page) < 0)
            qFatal("the properties have no page of PPD options");
        tabs->setCurrentWidget(page);
        std::fprintf(stderr, "%d options\n", int(page->findChildren<QComboBox*>().size()));
    }
};

void pressProperties(const QPrintDialog& dialog) {
    for (auto* button : dialog.findChildren<QPushButton*>()) {
        if (button->text().remove(u'&').startsWith(QLatin1String("Properties"))) {
            button->click();
            return;
        }
    }
    qFatal("the dialog has no Properties");
}

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    if (argc < 2)
        qFatal("which queue?");
    const bool showsPpd = argc > 2 && std::strcmp(argv[2], "--ppd") == 0;
    const QPrinterInfo info = QPrinterInfo::printerInfo(QString::fromLocal8Bit(argv[1]));
    if (info.isNull())
        qFatal("there is no such queue");
    QPrinter printer(info);
    QPrintDialog dialog(&printer);
    PageTurner turner;
    if (showsPpd) {
        application.installEventFilter(&turner);
        QTimer::singleShot(0, &dialog, [&dialog] { pressProperties(dialog); });
    }
    dialog.show();
    return QApplication::exec();
}
