// Endurance: what a process holds, and whether it holds more the longer it runs.
#include "tests/endurance/process_figures.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>

#include <malloc.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace labelcut::test {

namespace {

/// The caches that fill in the beginning fill within this part of a run.
constexpr double kWarmUp = 0.1;
constexpr int kSamples = 100;

// AddressSanitizer keeps what was freed, and has an allocator without figures; it finds leaks
// itself.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool kMeasuresMemory = false;
#else
constexpr bool kMeasuresMemory = true;
#endif

int entriesOf(const char* folder) {
    return static_cast<int>(
        QDir(QLatin1String(folder))
            .entryList(QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot)
            .size());
}

long long residentBytes() {
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().split(' ').value(1).toLongLong() * sysconf(_SC_PAGESIZE);
}

QStringList& warnings() {
    static QStringList kept;
    return kept;
}

void keep(QtMsgType type, const QMessageLogContext&, const QString& message) {
    if (type != QtDebugMsg && type != QtInfoMsg &&
        !message.startsWith(QStringLiteral("This plugin does not support ")) &&
        !warnings().contains(message))
        warnings().append(message);
}

} // namespace

ProcessFigures ProcessFigures::now() {
    malloc_trim(0);
    const struct mallinfo2 heap = mallinfo2();
    ProcessFigures figures;
    figures.resident = residentBytes();
    figures.heap = static_cast<long long>(heap.uordblks + heap.hblkhd);
    // The folder that is being listed is open itself.
    figures.descriptors = entriesOf("/proc/self/fd") - 1;
    figures.threads = entriesOf("/proc/self/task");
    return figures;
}

GrowthRecord::GrowthRecord(QString what, long long rounds)
    : mWhat(std::move(what))
    , mRounds(rounds)
    , mEvery(std::max(1LL, rounds / kSamples)) {}

void GrowthRecord::sample(long long round) {
    mSamples.push_back({round, ProcessFigures::now()});
}

const GrowthRecord::Sample& GrowthRecord::at(double part) const {
    const auto wanted = std::llround(part * static_cast<double>(mRounds));
    const auto reached = [wanted](const Sample& sample) { return sample.round >= wanted; };
    const auto found = std::ranges::find_if(mSamples, reached);
    return found == mSamples.end() ? mSamples.back() : *found;
}

/// By least squares over what was sampled behind the warm-up.
double GrowthRecord::slope(Figure figure) const {
    double count = 0;
    double x = 0;
    double y = 0;
    double xx = 0;
    double xy = 0;
    for (const Sample& sample : mSamples) {
        if (sample.round < at(kWarmUp).round)
            continue;
        const auto round = static_cast<double>(sample.round);
        const auto value = static_cast<double>(sample.figures.*figure);
        count += 1;
        x += round;
        y += value;
        xx += round * round;
        xy += round * value;
    }
    const double divisor = count * xx - x * x;
    return divisor == 0 ? 0 : (count * xy - x * y) / divisor;
}

void GrowthRecord::print() const {
    std::printf("%10s %14s %14s %12s %8s\n", qPrintable(mWhat + u's'), "resident KiB", "heap KiB",
                "descriptors", "threads");
    for (const double part : {0.0, kWarmUp, 0.5, 1.0}) {
        const auto& [round, figures] = at(part);
        std::printf("%10lld %14lld %14lld %12d %8d\n", round, figures.resident / 1024,
                    figures.heap / 1024, figures.descriptors, figures.threads);
    }
    std::printf("fitted behind the first tenth: heap %+.3f, resident %+.3f bytes a %s\n",
                slope(&ProcessFigures::heap), slope(&ProcessFigures::resident), qPrintable(mWhat));
}

QStringList GrowthRecord::judge(const Bounds& bounds) const {
    print();
    QStringList complaints;
    const auto judgeMemory = [&](const char* name, Figure figure, double bound) {
        const double perRound = slope(figure);
        const double inAll = perRound * static_cast<double>(mRounds) * (1 - kWarmUp);
        if (kMeasuresMemory && perRound > bound && inAll > bounds.noise)
            complaints.append(QStringLiteral("%1 grows by %2 bytes with every %3; %4 are allowed.")
                                  .arg(QLatin1String(name), QString::number(perRound), mWhat,
                                       QString::number(bound)));
    };
    judgeMemory("The heap", &ProcessFigures::heap, bounds.heapPerRound);
    judgeMemory("Resident memory", &ProcessFigures::resident, bounds.residentPerRound);
    const ProcessFigures& warm = at(kWarmUp).figures;
    const ProcessFigures& last = mSamples.back().figures;
    const auto judgeCount = [&](const char* name, int before, int after) {
        if (after > before)
            complaints.append(
                QStringLiteral("There are %1 %2 at the end and were %3 before.")
                    .arg(QString::number(after), QLatin1String(name), QString::number(before)));
    };
    judgeCount("open descriptors", warm.descriptors, last.descriptors);
    judgeCount("threads", warm.threads, last.threads);
    return complaints;
}

OwnTemporaryFolder::OwnTemporaryFolder() {
    QByteArray path = QFile::encodeName(QDir::tempPath()) + "/labelcut-soak-XXXXXX";
    if (!mkdtemp(path.data()))
        qFatal("no temporary folder");
    mPath = QFile::decodeName(path);
    qputenv("TMPDIR", path);
    qputenv("XDG_RUNTIME_DIR", path);
}

OwnTemporaryFolder::~OwnTemporaryFolder() {
    QDir(mPath).removeRecursively();
}

QStringList OwnTemporaryFolder::entries() const {
    QStringList found;
    QDirIterator paths(mPath, QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot,
                       QDirIterator::Subdirectories);
    while (paths.hasNext())
        found.append(paths.next());
    return found;
}

int report(const QStringList& complaints) {
    for (const QString& sentence : complaints)
        std::printf("%s\n", qPrintable(sentence));
    std::printf(complaints.isEmpty() ? "Nothing grows and nothing is left behind.\n" : "FAILED\n");
    return complaints.isEmpty() ? 0 : 1;
}

void keepWarnings() {
    qInstallMessageHandler(keep);
}

QStringList keptWarnings() {
    return warnings();
}

} // namespace labelcut::test
