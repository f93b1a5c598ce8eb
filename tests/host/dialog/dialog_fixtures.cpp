// Tests of the dialog: real windows on printers of the tests' own, and hands to use them.
#include "tests/host/dialog/dialog_fixtures.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QFile>
#include <QSettings>
#include <QStyle>
#include <QStyleOptionButton>
#include <QTest>

namespace labelcut::test {

const PluginSearch& plugins() {
    static const PluginSearch search = loadPlugins(QStringLiteral(LABELCUT_PLUGIN_DIR));
    return search;
}

const PDESystem& hostSystem() {
    static const HostSystem system;
    return system;
}

PrivateHome::PrivateHome() {
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, path(QStringLiteral("config")));
}

QString extendedPpd(const PrivateHome& home, const QByteArray& more) {
    QFile sample(kTapePpd);
    QFile changed(home.path(QStringLiteral("extended.ppd")));
    if (!sample.open(QIODevice::ReadOnly) || !changed.open(QIODevice::WriteOnly))
        qFatal("no PPD to test with");
    changed.write(sample.readAll() + more);
    return changed.fileName();
}

QString conflictingPpd(const PrivateHome& home) {
    QByteArray constraints;
    for (const char* pair : {"*KvHalfCut ON *Quality Draft", "*Quality Draft *KvHalfCut ON",
                             "*Density Dark *Quality Best", "*Quality Best *Density Dark"})
        constraints += QByteArray("*UIConstraints: ") + pair + '\n';
    return extendedPpd(home, constraints);
}

std::unique_ptr<OpenedPrinter> openedPpd(const QString& path, const Settings& wanted) {
    Result<FoundPrinter> found = findPpdFile(path);
    if (!found)
        qFatal("%s", qPrintable(found.error().sentence));
    return std::make_unique<OpenedPrinter>(std::move(*found), wanted, plugins(), hostSystem());
}

QString queueOf(const JobModel& model) {
    const QString* queue = model.hasPrinter() ? queueName(model.printer()->ref()) : nullptr;
    return queue ? *queue : QString();
}

CupsConnection noService() {
    return CupsConnection(*ServiceAddress::fromText(QStringLiteral("/nonexistent/cups.sock")));
}

void lookAtEveryPage(PrintDialog& dialog) {
    QTabWidget& tabs = dialog.tabs();
    for (int i = tabs.count() - 1; i >= 0; --i)
        tabs.setCurrentIndex(i);
}

std::unique_ptr<PrintDialog> openDialog(const DialogRequest& request,
                                        const CupsConnection& service) {
    auto dialog = std::make_unique<PrintDialog>(request, plugins(), hostSystem(), service);
    dialog->show();
    dialog->activateWindow();
    if (!QTest::qWaitForWindowActive(dialog.get()))
        qFatal("the dialog does not come to the front");
    if (request.ppdPath.isEmpty())
        settle();
    else
        settleWithPrinter(*dialog);
    lookAtEveryPage(*dialog);
    return dialog;
}

std::unique_ptr<PrintDialog> openDialog(const QString& ppd, const Settings& choices) {
    DialogRequest request;
    request.files = {kLabels};
    request.ppdPath = ppd;
    request.choices = choices;
    auto dialog = openDialog(request);
    turnUntil([&] { return dialog->model().pageCount() > 0; });
    settleWithFix(*dialog);
    return dialog;
}

void settle() {
    for (int i = 0; i < 4; ++i) {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
    }
}

void settleWithPrinter(const PrintDialog& dialog) {
    turnUntil([&] { return !dialog.awaitsPrinter(); });
    settle();
}

void settleWithFix(PrintDialog& dialog) {
    settle();
    turnUntil([&] { return !dialog.model().isSearchingFix(); });
    settle();
}

bool isUsable(const QWidget& widget) {
    return widget.isVisible() && widget.isEnabled() && !widget.visibleRegion().isEmpty();
}

void click(QWidget& widget) {
    QPoint at = widget.rect().center();
    if (const auto* box = qobject_cast<QCheckBox*>(&widget)) {
        QStyleOptionButton option;
        option.initFrom(box);
        at = box->style()->subElementRect(QStyle::SE_CheckBoxIndicator, &option, box).center();
    }
    QTest::mouseClick(&widget, Qt::LeftButton, Qt::NoModifier, at);
    settle();
}

void type(QLineEdit& field, const QString& text) {
    field.setFocus();
    field.selectAll();
    if (text.isEmpty())
        QTest::keyClick(&field, Qt::Key_Delete);
    else
        QTest::keyClicks(&field, text);
    settle();
}

void choose(QComboBox& box, int index) {
    box.setFocus();
    box.showPopup();
    settle();
    box.view()->setCurrentIndex(box.model()->index(index, box.modelColumn(), box.rootModelIndex()));
    QTest::keyClick(box.view(), Qt::Key_Return);
    settle();
}

void choose(QComboBox& box, const QString& data) {
    const int index = box.findData(data);
    if (index < 0)
        qFatal("no entry \"%s\"", qPrintable(data));
    choose(box, index);
}

void openTab(PrintDialog& dialog, int index) {
    QTabBar& bar = *dialog.tabs().tabBar();
    QTest::mouseClick(&bar, Qt::LeftButton, Qt::NoModifier, bar.tabRect(index).center());
    settle();
}

QComboBox& optionBox(const PrintDialog& dialog, const char* keyword) {
    return *part<QComboBox>(dialog, (QByteArray("choices-") + keyword).constData());
}

QPushButton* offer(const MessageBar& bar, const QString& start) {
    for (QPushButton* button : bar.findChildren<QPushButton*>()) {
        if (button->isVisible() && button->text().startsWith(start))
            return button;
    }
    return nullptr;
}

} // namespace labelcut::test
