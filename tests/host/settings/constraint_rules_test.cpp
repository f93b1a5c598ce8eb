// Settings: constraints mean what libcups makes of them, and take time in proportion to their
// number.
#include "host/settings/constraint_rules.h"

#include <gtest/gtest.h>

#include <cups/cups.h>

#include <random>
#include <set>
#include <string>
#include <thread>

#include "host/settings/conflict_resolver.h"
#include "host/settings/constraints.h"
#include "tests/support/conflicting_lines.h"
#include "tests/support/job_fixtures.h"

#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

namespace labelcut::ppd {

using test::circle;
using test::longSearch;
using test::optionLines;
using test::switches;

namespace {

QByteArray number(int i) {
    return QByteArray::number(i);
}

QByteArray chain(int count) {
    QByteArray lines = switches(count);
    for (int i = 0; i + 1 < count; ++i)
        lines += "*UIConstraints: *O" + number(i) + " ON *O" + number(i + 1) + " ON\n";
    return lines;
}

File allOn(const QByteArray& lines, int count) {
    File file = test::printerWith(lines);
    for (int i = 0; i < count; ++i)
        EXPECT_TRUE(markOption(file.get(), QByteArray("O" + number(i)).constData(), "ON"));
    return file;
}

/// A PPD of a few options, and constraints of both kinds among them, some with ways out.
class RandomPpd {
public:
    explicit RandomPpd(unsigned seed)
        : mRandom(seed) {
        mLines = "*OpenGroup: InstallableOptions/Installed\n" +
                 optionLines("Unit", {"False", "True"}) + "*CloseGroup: InstallableOptions\n";
        mLines += "*OpenUI *PageRegion: PickOne\n*DefaultPageRegion: P\n*PageRegion P: \"\"\n"
                  "*CloseUI: *PageRegion\n";
        for (int i = 0; i < kOptions; ++i)
            mLines += optionLines("O" + number(i), {"OFF", "A", "B", "None"});
        for (int i = upTo(8); i >= 0; --i)
            addOld();
        for (int i = upTo(8); i >= 0; --i)
            addNew(i);
    }
    const QByteArray& lines() const { return mLines; }
    QByteArray keyword() {
        const int i = upTo(kOptions + 2);
        return i < kOptions ? "O" + number(i) : i == kOptions ? "Unit" : "PageSize";
    }
    QByteArray choiceFor(const QByteArray& keyword) {
        if (keyword == "PageSize")
            return "P";
        if (keyword == "Unit")
            return upTo(2) ? "True" : "False";
        return QByteArrayList{"OFF", "a", "B", "None"}.at(upTo(4));
    }

private:
    static constexpr int kOptions = 5;

    int upTo(int end) { return static_cast<int>(mRandom() % static_cast<unsigned>(end)); }
    QByteArray part() {
        QByteArray name = keyword();
        const bool hasChoice = upTo(4) > 0;
        const QByteArray choice = upTo(20) ? choiceFor(name) : "Unknown";
        if (name == "PageSize" && upTo(2))
            name = "PageRegion";
        return "*" + name + (hasChoice ? " " + choice : QByteArray());
    }
    void addOld() {
        const QByteArray one = part();
        const QByteArray other = part();
        mLines += "*UIConstraints: " + one + " " + other + '\n';
        if (upTo(2))
            mLines += "*UIConstraints: " + other + " " + one + '\n';
    }
    void addNew(int i) {
        const bool hasResolver = upTo(2) == 1;
        QByteArray parts = part();
        for (int more = upTo(3); more > 0; --more)
            parts += " " + part();
        mLines += "*cupsUIConstraints" + (hasResolver ? " R" + number(i) : QByteArray()) + ": \"" +
                  parts + "\"\n";
        QByteArray way;
        for (int more = 1 + upTo(3); more > 0; --more) {
            const QByteArray name = keyword();
            way += "*" + name + " " + choiceFor(name) + " ";
        }
        if (hasResolver && upTo(8))
            mLines += "*cupsUIResolver R" + number(i) + ": \"" + way.trimmed() + "\"\n";
    }

    std::mt19937 mRandom;
    QByteArray mLines;
};

/// The PPD as libcups alone sees it, with the same marks.
class Oracle {
public:
    Oracle(const QByteArray& lines, ppd_file_t* same) {
        // Without the list that leads to ours, libcups makes its own.
        mFile = test::printerWith(lines);
        mOurs = std::exchange(mFile->cups_uiconstraints, nullptr);
        for (ppd_option_t* o = ppdFirstOption(same); o; o = ppdNextOption(same))
            if (const ppd_choice_t* choice = findMarkedChoice(same, o->keyword))
                ppdMarkOption(mFile.get(), o->keyword, choice->choice);
    }
    ~Oracle() {
        delete static_cast<ConstraintRules*>(cupsArrayUserData(mOurs));
        cupsArrayDelete(mOurs);
    }
    Oracle(const Oracle&) = delete;
    Oracle& operator=(const Oracle&) = delete;

    int conflicts() { return ppdConflicts(mFile.get()); }
    std::set<std::string> conflicted() {
        std::set<std::string> keywords;
        for (ppd_option_t* o = ppdFirstOption(mFile.get()); o; o = ppdNextOption(mFile.get()))
            if (o->conflicted)
                keywords.insert(o->keyword);
        return keywords;
    }
    std::optional<Settings> resolution(const QByteArray& keyword, const QByteArray& choice) {
        int count = 0;
        cups_option_t* list = nullptr;
        const bool found = cupsResolveConflicts(mFile.get(), keyword.constData(),
                                                choice.constData(), &count, &list) != 0;
        Settings settings;
        for (int i = 0; i < count; ++i)
            settings.push_back({QString::fromUtf8(list[i].name), QString::fromUtf8(list[i].value)});
        cupsFreeOptions(count, list);
        return found ? std::optional(settings) : std::nullopt;
    }

private:
    File mFile;
    cups_array_t* mOurs = nullptr;
};

std::set<std::string> conflicted(ppd_file_t* file) {
    std::set<std::string> keywords;
    for (ppd_option_t* o = ppdFirstOption(file); o; o = ppdNextOption(file))
        if (o->conflicted)
            keywords.insert(o->keyword);
    return keywords;
}

} // namespace

TEST(ConstraintRulesTest, ConflictsAndWaysOutAreThoseOfLibcups) {
    int resolved = 0;
    int unresolved = 0;
    for (unsigned seed = 0; seed < 300; ++seed) {
        RandomPpd random(seed);
        const File file = test::printerWith(random.lines());
        ASSERT_TRUE(file) << random.lines().toStdString();
        for (int i = 0; i < 6; ++i) {
            const QByteArray keyword = random.keyword();
            const QByteArray choice = random.choiceFor(keyword);
            ASSERT_TRUE(markOption(file.get(), keyword.constData(), choice.constData()));
            Oracle oracle(random.lines(), file.get());
            const int count = oracle.conflicts();
            // First what marking alone has left, then what a look at everything gives.
            ASSERT_EQ(conflicted(file.get()), oracle.conflicted()) << random.lines().toStdString();
            ASSERT_EQ(conflicts(file.get()), count) << random.lines().toStdString();
            ASSERT_EQ(conflicted(file.get()), oracle.conflicted());
            const ResolvingData data = resolvingData(file.get());
            ConflictResolver resolver(data, {keyword.constData(), choice.constData()});
            const auto expected = oracle.resolution(keyword, choice);
            ASSERT_EQ(resolver.resolved(), expected)
                << seed << ' ' << keyword.toStdString() << '=' << choice.toStdString() << '\n'
                << random.lines().toStdString();
            ++(expected ? resolved : unresolved);
        }
    }
    EXPECT_GT(resolved, 300);
    EXPECT_GT(unresolved, 100);
}

TEST(ConstraintRulesTest, AConstraintOfOneOptionNamesItOnce) {
    const File file = allOn(switches(3) + "*UIConstraints: *O0 ON *O0 ON\n"
                                          "*UIConstraints: *O1 ON *O2 ON\n",
                            3);
    const auto found = findConflicts(file.get());
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(describe(file.get(), found[0]).toStdString(),
              "“O0: ON (O0=ON)” cannot be chosen: the printer’s description (PPD) excludes it.");
    EXPECT_EQ(describe(file.get(), found[1]).toStdString(),
              "“O1: ON (O1=ON)” and “O2: ON (O2=ON)” exclude each other.");
    EXPECT_FALSE(proposeResolution(file.get(), found[0].front()));
}

TEST(ConstraintRulesTest, APaperThatIsConstrainedByItsTwinIsNamed) {
    const File file = allOn("*OpenUI *PageRegion: PickOne\n*PageRegion P: \"\"\n*CloseUI: "
                            "*PageRegion\n" +
                                switches(1) + "*UIConstraints: *PageRegion P *O0 ON\n",
                            1);
    const auto found = findConflicts(file.get());
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found.front().size(), 2U);
}

TEST(ConstraintRulesTest, AMarkComparesTheConstraintsOfItsOptionAlone) {
    for (const int count : {100, 4'000}) {
        const File file = test::printerWith(chain(count));
        ConstraintRules rules(file.get());
        EXPECT_EQ(rules.rules().size(), static_cast<std::size_t>(count - 1));
        rules.update(*findOption(file.get(), "O50"));
        EXPECT_EQ(rules.comparisons(), 2);
        rules.update();
        EXPECT_EQ(rules.comparisons(), 2 + count - 1) << "each once";
    }
}

TEST(ConstraintRulesTest, ManyConflictsAreFoundInOneWalk) {
    constexpr int kCount = 5'000;
    const File file = allOn(chain(kCount), kCount);
    EXPECT_EQ(findConflicts(file.get()).size(), static_cast<std::size_t>(kCount - 1));
}

TEST(ConstraintRulesTest, WaysOutThatLeadInACircleAreSeenThroughInOneWalk) {
    for (const int count : {20, 2'000}) {
        const File file = allOn(circle(count), count);
        const ResolvingData data = resolvingData(file.get());
        ConflictResolver resolver(data, {"O0", "ON"});
        EXPECT_FALSE(resolver.resolved());
        EXPECT_FALSE(resolver.gaveUp());
        EXPECT_LE(resolver.steps(), 3 * count);
    }
}

TEST(ConstraintRulesTest, ASearchForAWayOutEndsAtItsLimit) {
    constexpr int kCount = 1'200;
    const File file = allOn(longSearch(kCount), kCount);
    const ResolvingData data = resolvingData(file.get());
    ConflictResolver resolver(data, {"O0", "ON"});
    EXPECT_FALSE(resolver.resolved());
    EXPECT_TRUE(resolver.gaveUp());
    EXPECT_LE(resolver.steps(), kMaxResolvingSteps + kCount);
    const Setting wanted{QStringLiteral("O0"), QStringLiteral("ON")};
    bool gaveUp = false;
    EXPECT_FALSE(proposeResolution(file.get(), wanted, {}, &gaveUp));
    EXPECT_TRUE(gaveUp);
    EXPECT_EQ(gaveUpSentence().toStdString(), "No way out was found within 500,000 steps.");
    const File few = allOn(circle(20), 20);
    gaveUp = false;
    EXPECT_FALSE(proposeResolution(few.get(), wanted, {}, &gaveUp));
    EXPECT_FALSE(gaveUp) << "there is none";
}

TEST(ConstraintRulesTest, ASearchIsOfItsMomentOnAnyThreadAndOutlivesThePpd) {
    for (unsigned seed = 0; seed < 100; ++seed) {
        RandomPpd random(seed);
        File file = test::printerWith(random.lines());
        for (int i = 0; i < 6; ++i) {
            const QByteArray keyword = random.keyword();
            markOption(file.get(), keyword.constData(), random.choiceFor(keyword).constData());
        }
        const QByteArray keyword = random.keyword();
        const Setting wanted{QString::fromLatin1(keyword),
                             QString::fromLatin1(random.choiceFor(keyword))};
        const auto expected = proposeResolution(file.get(), wanted);
        const ResolutionSearch search = resolutionSearch(file.get(), wanted, {});
        EXPECT_EQ(search, resolutionSearch(file.get(), wanted, {}));
        markDefaults(file.get());
        file.reset();
        Resolution found;
        std::thread([&] { found = run(search); }).join();
        EXPECT_EQ(found.changes, expected) << random.lines().toStdString();
    }
}

TEST(ConstraintRulesTest, SearchesDifferByMarksWishesAndPpds) {
    const QByteArray lines = chain(3);
    const File file = allOn(lines, 3);
    const File other = allOn(lines, 3);
    const Setting wanted{QStringLiteral("O0"), QStringLiteral("ON")};
    const Setting another{QStringLiteral("O1"), QStringLiteral("ON")};
    const ResolutionSearch search = resolutionSearch(file.get(), wanted, {});
    EXPECT_NE(search, resolutionSearch(other.get(), wanted, {}));
    EXPECT_NE(search, resolutionSearch(file.get(), another, {}));
    EXPECT_NE(search, resolutionSearch(file.get(), wanted, {another}));
    ASSERT_TRUE(markOption(file.get(), "O2", "OFF"));
    EXPECT_NE(search, resolutionSearch(file.get(), wanted, {}));
    ASSERT_TRUE(markOption(file.get(), "O2", "ON"));
    EXPECT_EQ(search, resolutionSearch(file.get(), wanted, {}));
}

TEST(ConstraintRulesTest, ACancelledSearchEndsAtOnceAndHasNoWayOut) {
    constexpr int kCount = 120;
    const File file = allOn(longSearch(kCount), kCount);
    const ResolvingData data = resolvingData(file.get());
    CancelFlag cancel;
    cancel.cancel();
    ConflictResolver resolver(data, {"O0", "ON"}, &cancel);
    EXPECT_FALSE(resolver.resolved());
    EXPECT_FALSE(resolver.gaveUp());
    EXPECT_LE(resolver.steps(), 5'000 + kCount) << "one look at the constraints";
}

} // namespace labelcut::ppd
