// Endurance: what a process holds, and whether it holds more the longer it runs.
#pragma once

#include <QString>
#include <QStringList>

#include <vector>

namespace labelcut::test {

/// What this process holds at one moment, freed memory given back before.
struct ProcessFigures {
    long long resident = 0; ///< Bytes.
    long long heap = 0;     ///< Bytes in use, of all arenas, mapped blocks included.
    int descriptors = 0;
    int threads = 0;

    static ProcessFigures now();
};

/// Samples along a run of so many rounds, and the verdict over them.
class GrowthRecord {
public:
    struct Bounds {
        /// Bytes a round, of heap and of resident memory.
        double heapPerRound;
        double residentPerRound;
        /// Below so many bytes in all a growth is the allocator's noise.
        double noise;
    };

    /// @param what  one round, for people: "act".
    GrowthRecord(QString what, long long rounds);

    /// Whether a sample is due behind that round: once every hundredth of the run, at least one
    /// round apart.
    bool isDue(long long round) const { return round % mEvery == 0 || round == mRounds; }
    void sample(long long round);

    /// Prints the figures. @return a sentence for each thing that is wrong.
    QStringList judge(const Bounds& bounds) const;

private:
    struct Sample {
        long long round;
        ProcessFigures figures;
    };
    using Figure = long long ProcessFigures::*;

    const Sample& at(double part) const;
    double slope(Figure figure) const;
    void print() const;

    QString mWhat;
    long long mRounds;
    long long mEvery;
    std::vector<Sample> mSamples;
};

/// While one lives, temporary files of this process go into a folder of its own. Made before any
/// other object of Qt.
class OwnTemporaryFolder {
public:
    OwnTemporaryFolder();
    ~OwnTemporaryFolder();
    OwnTemporaryFolder(const OwnTemporaryFolder&) = delete;
    OwnTemporaryFolder& operator=(const OwnTemporaryFolder&) = delete;
    /// Paths below it, folders included.
    QStringList entries() const;

private:
    QString mPath;
};

/// Prints the sentences. @return the exit status.
int report(const QStringList& complaints);

/// Keeps warnings of Qt, but for the ones about a platform without a screen.
void keepWarnings();
QStringList keptWarnings();

} // namespace labelcut::test
