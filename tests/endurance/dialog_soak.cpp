// Endurance: the print dialog opened, used a little and closed, again and again in one process.
//   dialog_soak DIALOGS [SEED]
#include <QApplication>
#include <QElapsedTimer>
#include <QPixmapCache>
#include <QSpinBox>
#include <QTest>

#include <cstdio>
#include <random>

#include "tests/endurance/process_figures.h"
#include "tests/host/dialog/dialog_fixtures.h"
#include "tests/support/private_cupsd.h"

namespace labelcut::test {

namespace {

/// A window is some hundred widgets: whoever forgets one forgets far more than this.
constexpr GrowthRecord::Bounds kBounds{64, 256, 2.0 * 1024 * 1024};
/// One dialog in so many opens on a queue of a print service.
constexpr int kQueueEvery = 10;
/// Milliseconds for threads of calls that were given up.
constexpr int kThreadsEnd = 5'000;

class User {
public:
    explicit User(unsigned seed)
        : mRandom(seed) {}

    void use(PrintDialog& dialog) {
        for (int acts = 0; acts < 3; ++acts)
            act(dialog);
        QTest::keyClick(&dialog, Qt::Key_Escape);
    }

private:
    int below(int count) { return std::uniform_int_distribution(0, count - 1)(mRandom); }

    void act(PrintDialog& dialog) {
        switch (below(5)) {
        case 0: {
            const auto boxes = dialog.findChildren<QCheckBox*>();
            for (QCheckBox* box : boxes) {
                if (isUsable(*box) && below(2) == 0)
                    return click(*box);
            }
            return;
        }
        case 1:
            part<QSpinBox>(dialog, "copies")->setValue(1 + below(20));
            return settle();
        case 2:
            return openTab(dialog, below(dialog.tabs().count()));
        case 3: {
            QComboBox& box = optionBox(dialog, "PageSize");
            QTest::keyClick(&box, below(2) ? Qt::Key_Down : Qt::Key_Up);
            return settle();
        }
        default: {
            auto* entries = dialog.findChild<QComboBox*>(QStringLiteral("mOptionPopUpButton"));
            if (entries && isUsable(*entries))
                QTest::keyClick(entries, Qt::Key_Down);
            return settle();
        }
        }
    }

    std::mt19937 mRandom;
};

/// Opens one and waits until printer and pages are there. @return what went wrong.
QString openAndUse(User& user, const DialogRequest& request, const CupsConnection& service) {
    const auto dialog = openDialog(request, service);
    if (!turnUntil([&] { return dialog->model().hasPrinter(); }))
        return QStringLiteral("A dialog did not get its printer.");
    lookAtEveryPage(*dialog);
    if (!turnUntil([&] { return dialog->model().pageCount() > 0; }))
        return QStringLiteral("A dialog did not count its labels.");
    user.use(*dialog);
    return dialog->isVisible() ? QStringLiteral("A dialog did not close.") : QString();
}

/// Threads of calls that were given up end by themselves, soon.
void waitForThreads(int wanted) {
    turnUntil([&] { return ProcessFigures::now().threads <= wanted; }, kThreadsEnd);
}

QStringList soak(int dialogs, unsigned seed, const OwnTemporaryFolder& temporary) {
    QStringList complaints;
    GrowthRecord record(QStringLiteral("dialog"), dialogs);
    const PrivateHome home;
    PrivateCupsd cups;
    if (!cups.start() || !cups.addQueue(QStringLiteral("Tape"), kTapePpd))
        return {QStringLiteral("The print service of the test did not start.")};
    const CupsConnection service(*ServiceAddress::fromText(cups.socketPath()));
    DialogRequest byHand;
    byHand.files = {kLabels};
    byHand.ppdPath = kTapePpd;
    DialogRequest onQueue;
    onQueue.files = {kLabels};
    onQueue.queue = QStringLiteral("Tape");

    User user(seed);
    record.sample(0);
    // Those that the first dialog started for good.
    int threads = 0;
    QElapsedTimer timer;
    timer.start();
    for (int round = 1; round <= dialogs && complaints.isEmpty(); ++round) {
        const bool queue = round % kQueueEvery == 0;
        const QString wrong =
            openAndUse(user, queue ? onQueue : byHand, queue ? service : noService());
        if (!wrong.isEmpty())
            complaints.append(wrong);
        settle();
        if (round == 1) {
            turnFor(kThreadsEnd);
            threads = ProcessFigures::now().threads;
        }
        if (record.isDue(round)) {
            waitForThreads(threads);
            record.sample(round);
        }
    }
    std::printf("%d dialogs, every %dth on a queue, in %lld s\n", dialogs, kQueueEvery,
                static_cast<long long>(timer.elapsed() / 1000));
    complaints += record.judge(kBounds);
    for (const QString& path : temporary.entries()) {
        // The service's and the user's folders go with this function.
        if (!path.startsWith(cups.folder()) && !path.startsWith(home.path({})))
            complaints.append(QStringLiteral("Left behind: %1").arg(path));
    }
    return complaints;
}

} // namespace

} // namespace labelcut::test

int main(int argc, char** argv) {
    using namespace labelcut::test;
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const OwnTemporaryFolder temporary;
    const QApplication application(argc, argv);
    keepWarnings();
    // The toolkit's cache keeps the names of pictures that were forgotten, some 13 KB a window:
    // styles draw controls anew for each window's palette. It would hide what is the dialog's own.
    QPixmapCache::setCacheLimit(0);
    const int dialogs = application.arguments().value(1).toInt();
    if (dialogs < 1) {
        std::fprintf(stderr, "usage: dialog_soak DIALOGS [SEED]\n");
        return 2;
    }
    const unsigned seed = application.arguments().value(2, QStringLiteral("1")).toUInt();
    return report(soak(dialogs, seed, temporary) + keptWarnings());
}
