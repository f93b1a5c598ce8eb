// Other makers' PPDs: each is opened with every panel and with the dialog's own pages.
//   foreign_ppd_check < LIST       paths, one a line
//
// A printer without any of our options must leave the cut-options panel empty and hidden; nothing
// that libcups opens may be refused. Each path is printed before it is opened, so that a crash has
// a name.
#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QLineEdit>

#include <cstdio>
#include <string>

#include "host/dialog/features_page.h"
#include "host/dialog/job_model.h"

namespace labelcut::test {

namespace {

struct Tally {
    int opened = 0;
    int refusedByLibcups = 0;
    int failed = 0;
    int widgets = 0;
};

class Check {
public:
    void check(const QString& path) {
        // libcups decides; the opened file is then all that our own code has.
        ppd_file_t* theirs = openWithLibcups(path);
        ppd::OpenError error;
        ppd::File ours = ppd::openFile(path, &error);
        if (!theirs) {
            ++mTally.refusedByLibcups;
            std::printf("%s: refused by libcups itself\n", qPrintable(path));
            if (ours)
                fail(path, QStringLiteral("opened although libcups refuses it"));
            return;
        }
        ppd::Closer()(theirs);
        if (!ours)
            return fail(path, QStringLiteral("refused: %1").arg(error.reason));
        ++mTally.opened;
        useIn(path, std::move(ours));
    }
    const Tally& tally() const { return mTally; }

private:
    static ppd_file_t* openWithLibcups(const QString& path);
    void fail(const QString& path, const QString& what) {
        ++mTally.failed;
        std::printf("%s: %s\n", qPrintable(path), qPrintable(what));
    }

    void useIn(const QString& path, ppd::File file) {
        JobModel model;
        FoundPrinter found;
        found.ref = PpdFileRef{path};
        found.ppd = std::move(file);
        ppd::markDefaults(found.ppd.get());
        model.adopt(
            std::make_unique<OpenedPrinter>(std::move(found), Settings(), mPlugins, mSystem));
        for (const PanelSet::Entry& entry : model.panels()) {
            if (!entry.keys.isEmpty())
                fail(path, QStringLiteral("a panel claims %1").arg(entry.keys.join(u' ')));
            checkPanel(path, model, entry);
        }
        if (model.panels().empty())
            fail(path, QStringLiteral("there is no panel"));
        FeaturesPage page(model);
        if (const QString problem = page.problem().sentence; !problem.isEmpty())
            fail(path, QStringLiteral("the features page says: %1").arg(problem));
        mTally.widgets += static_cast<int>(page.findChildren<QWidget*>().size());
    }

    void checkPanel(const QString& path, JobModel& model, const PanelSet::Entry& entry) {
        if (!entry.panel->shouldHide())
            fail(path, QStringLiteral("a panel wants to be seen"));
        const QWidget* view = model.showPanel(entry);
        if (!view)
            return fail(path, QStringLiteral("a panel has no view"));
        for (const auto* widget : view->findChildren<QWidget*>()) {
            const bool isControl =
                qobject_cast<const QCheckBox*>(widget) || qobject_cast<const QLineEdit*>(widget);
            if (isControl && !widget->isHidden())
                fail(path, QStringLiteral("shows %1").arg(widget->objectName()));
        }
    }

    const PluginSearch mPlugins = loadPlugins(QStringLiteral(LABELCUT_PLUGIN_DIR));
    const HostSystem mSystem{};
    Tally mTally;
};

ppd_file_t* Check::openWithLibcups(const QString& path) {
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
    return ppdOpenFile(QFile::encodeName(path).constData());
#pragma GCC diagnostic pop
}

} // namespace

} // namespace labelcut::test

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    labelcut::test::Check check;
    QFile list;
    if (!list.open(stdin, QIODevice::ReadOnly))
        return 2;
    while (!list.atEnd()) {
        const QByteArray path = list.readLine().trimmed();
        if (path.isEmpty())
            continue;
        std::fprintf(stderr, "%s\n", path.constData());
        check.check(QFile::decodeName(path));
    }
    const labelcut::test::Tally& tally = check.tally();
    std::printf("%d opened, %d refused by libcups itself, %d complaints, %d widgets on features "
                "pages\n",
                tally.opened, tally.refusedByLibcups, tally.failed, tally.widgets);
    return tally.failed == 0 && tally.opened > 0 ? 0 : 1;
}
