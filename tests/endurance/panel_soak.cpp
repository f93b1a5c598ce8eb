// Endurance: one panel under the hands of a user who does not stop.
//   panel_soak ACTS [SEED]
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QTest>
#include <QWheelEvent>

#include <array>
#include <cstdio>
#include <functional>
#include <random>
#include <vector>

#include "host/panels/panel_host.h"
#include "tests/endurance/process_figures.h"
#include "tests/support/ppd_builder.h"

namespace labelcut::test {

namespace {

/// An act is a few hundred instructions of bookkeeping: a byte of growth for each would be a leak
/// of one small block in some dozens.
constexpr GrowthRecord::Bounds kBounds{0.25, 1.0, 512.0 * 1024};
/// The window is painted once in so many acts, as for a fast user.
constexpr int kActsPerFrame = 8;

constexpr std::array kKeywords = {"KvCutAtEnd",   "KvMirror",      "KvAutoTapeCut",   "KvHalfCut",
                                  "KvChainPrint", "KvSpecialTape", "KvRemoveBlkSpace"};
constexpr std::array kPapers = {"T24", "DC24", "AV100"};

/// A printer that offers all there is, so that every control is on the panel.
PanelHostSetup printer() {
    PpdBuilder builder = PpdBuilder::tapePrinter();
    builder.counts(1, 99, "1").onOff("KvCutAtEnd");
    PanelHostSetup setup;
    setup.ppd = builder.open();
    ppd::markDefaults(setup.ppd.get());
    setup.deviceURI = QStringLiteral("usb://Test/Printer?serial=1");
    return setup;
}

class Panel {
public:
    explicit Panel(const PluginSearch& plugins, unsigned seed)
        : mHost(printer())
        , mSet(mHost, plugins.loaded, mSystem)
        , mRandom(seed) {
        if (mSet.entries().size() != 1)
            qFatal("the cut-options panel was not loaded");
        mPanel = mSet.entries().front().panel;
        mView = mPanel->panelView();
        mPanel->willShow();
        mSet.restore();
        mView->show();
        mBoxes = mView->findChildren<QCheckBox*>();
        mCount = mView->findChild<QLineEdit*>(QStringLiteral("mCutEveryTxBx"));
        mStepper = mView->findChild<QWidget*>(QStringLiteral("mCutEveryStpr"));
        mPopUp = mView->findChild<QComboBox*>(QStringLiteral("mOptionPopUpButton"));
        if (mBoxes.size() != 8 || !mCount || !mStepper || !mPopUp)
            qFatal("the panel has not all of its controls");
        mActs = {[this] { ticksABox(); },      [this] { ticksABox(); }, [this] { typesACount(); },
                 [this] { typesACount(); },    [this] { steps(); },     [this] { takesAnEntry(); },
                 [this] { hearsOfAChange(); }, [this] { mSet.save(); }, [this] { mSet.restore(); },
                 [this] { changesPaper(); },   [this] { looks(); },     [this] { asksToPrint(); }};
    }

    void act(long long round) {
        mActs[below(mActs.size())]();
        if (round % kActsPerFrame == 0)
            QCoreApplication::processEvents();
        mHost.takeChanges();
    }
    long long changes() const { return mChanges; }

private:
    std::size_t below(std::size_t count) {
        return std::uniform_int_distribution<std::size_t>(0, count - 1)(mRandom);
    }
    void ticksABox() {
        QCheckBox* box = mBoxes[static_cast<qsizetype>(below(8))];
        const int before = static_cast<int>(box->checkState());
        QTest::keyClick(box, Qt::Key_Space);
        mChanges += before != static_cast<int>(box->checkState());
    }
    void typesACount() {
        if (!mCount->isEnabled())
            return;
        mCount->selectAll();
        QTest::keyClicks(mCount, QString::number(below(130)));
        if (below(2) == 0)
            QTest::keyClick(mCount, Qt::Key_Return);
    }
    void steps() {
        const bool up = below(2) == 0;
        if (below(2) == 0) {
            QTest::keyClick(mCount, up ? Qt::Key_Up : Qt::Key_Down);
            return;
        }
        QWheelEvent turn({2, 2}, mStepper->mapToGlobal(QPointF(2, 2)), {}, {0, up ? 120 : -120},
                         Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(mStepper, &turn);
    }
    void takesAnEntry() {
        const Qt::Key keys[] = {Qt::Key_Down, Qt::Key_Up, Qt::Key_Home, Qt::Key_End};
        QTest::keyClick(mPopUp, keys[below(4)]);
    }
    void hearsOfAChange() {
        const std::size_t which = below(kKeywords.size() + 1);
        if (which == kKeywords.size())
            mHost.changeFromOutside(QStringLiteral("KvCutLabel"), QString::number(1 + below(99)));
        else
            mHost.changeFromOutside(QLatin1String(kKeywords[which]),
                                    below(2) ? QStringLiteral("ON") : QStringLiteral("OFF"));
    }
    void changesPaper() {
        const QString name = QLatin1String(kPapers[below(kPapers.size())]);
        mHost.changeFromOutside(QStringLiteral("PageSize"), name);
        mHost.pageFormat().setPaper(HostPaper::fromMarkedPageSize(mHost.ppd()));
        mHost.settings().setTicketPaperName(name);
    }
    void looks() {
        mPanel->summaryInfo();
        mPanel->inspect();
        mPanel->panelName();
    }
    void asksToPrint() {
        mHost.settings().setPageRange(1, kLastPageOfAll, false);
        mPanel->shouldPrint();
    }

    HostSystem mSystem;
    PanelHost mHost;
    PanelSet mSet;
    std::mt19937 mRandom;
    PDEPanel* mPanel = nullptr;
    QWidget* mView = nullptr;
    QList<QCheckBox*> mBoxes;
    QLineEdit* mCount = nullptr;
    QWidget* mStepper = nullptr;
    QComboBox* mPopUp = nullptr;
    std::vector<std::function<void()>> mActs;
    long long mChanges = 0;
};

int soak(long long acts, unsigned seed) {
    const OwnTemporaryFolder temporary;
    GrowthRecord record(QStringLiteral("act"), acts);
    QStringList complaints;
    QElapsedTimer timer;
    timer.start();
    {
        const PluginSearch plugins = loadPlugins(QStringLiteral(LABELCUT_PLUGIN_DIR));
        Panel panel(plugins, seed);
        record.sample(0);
        for (long long round = 1; round <= acts; ++round) {
            panel.act(round);
            if (record.isDue(round))
                record.sample(round);
        }
        if (panel.changes() == 0)
            complaints.append(QStringLiteral("No act changed anything: this measures nothing."));
    }
    std::printf("%lld acts on one panel in %lld s\n", acts,
                static_cast<long long>(timer.elapsed() / 1000));
    complaints += record.judge(kBounds);
    for (const QString& path : temporary.entries())
        complaints.append(QStringLiteral("Left behind: %1").arg(path));
    complaints += keptWarnings();
    return report(complaints);
}

} // namespace

} // namespace labelcut::test

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    labelcut::test::keepWarnings();
    const long long acts = application.arguments().value(1).toLongLong();
    if (acts < 1) {
        std::fprintf(stderr, "usage: panel_soak ACTS [SEED]\n");
        return 2;
    }
    return labelcut::test::soak(acts,
                                application.arguments().value(2, QStringLiteral("1")).toUInt());
}
