// Tests of the cut-options shared objects: what they show to others, and what they keep.
#include <QProcess>
#include <QRegularExpression>

#include "tests/host/panels/core_fixtures.h"

namespace labelcut::test {
namespace {

constexpr char kFirst[] = LABELCUT_PLUGIN_DIR "/cut_options.so";
constexpr char kSecond[] = LABELCUT_SECOND_BUILD;

/// The symbols of a shared object, "TYPE name" each.
QStringList symbols(const char* file, const QStringList& arguments) {
    QProcess nm;
    nm.start(QStringLiteral(LABELCUT_NM), arguments + QStringList{QString::fromUtf8(file)});
    EXPECT_TRUE(nm.waitForFinished(60'000));
    EXPECT_EQ(nm.exitCode(), 0) << nm.readAllStandardError().toStdString();
    static const QRegularExpression entry(QStringLiteral("^[0-9a-f]* *([A-Za-z]) (.*)$"));
    QStringList all;
    for (const QString& line : QString::fromUtf8(nm.readAllStandardOutput()).split(u'\n')) {
        const QRegularExpressionMatch match = entry.match(line);
        if (match.hasMatch())
            all.append(match.captured(1) + u' ' + match.captured(2));
    }
    EXPECT_FALSE(all.isEmpty()) << file;
    return all;
}

class SharedObject : public testing::TestWithParam<const char*> {};

// A symbol that is shown could be taken by another plug-in in place of its own.
TEST_P(SharedObject, ShowsOnlyWhatAQtPluginMust) {
    QStringList shown;
    for (const QString& symbol :
         symbols(GetParam(), {QStringLiteral("-D"), QStringLiteral("--defined-only")})) {
        shown.append(symbol.mid(2));
    }
    shown.sort();
    EXPECT_EQ(shown.join(u'\n').toStdString(), "qt_plugin_instance\nqt_plugin_query_metadata_v2");
}

TEST_P(SharedObject, SharesNoVariableWithTheWholeProcess) {
    for (const QString& symbol : symbols(GetParam(), {QStringLiteral("-C")}))
        EXPECT_FALSE(symbol.startsWith(u'u')) << symbol.toStdString();
}

TEST_P(SharedObject, HasItsOwnNotificationCentreSystemAndVersionCache) {
    const QStringList all = symbols(GetParam(), {QStringLiteral("-C")});
    for (const char* variable :
         {"NotificationCentre::defaultCentre()::centre", "runningOnLeopardOrLater()::cached"}) {
        const QStringList found = all.filter(QLatin1String(variable));
        ASSERT_FALSE(found.isEmpty()) << variable;
        for (const QString& symbol : found)
            EXPECT_TRUE(symbol.front().isLower()) << symbol.toStdString() << " is not local";
    }
    EXPECT_FALSE(all.filter(QStringLiteral("setGestaltSystem")).isEmpty());
}

INSTANTIATE_TEST_SUITE_P(Builds, SharedObject, testing::Values(kFirst, kSecond),
                         [](const auto& build) {
                             return build.index == 0 ? std::string("First") : std::string("Second");
                         });

TEST(SecondBuild, HasNoClassOfTheFirst) {
    const QStringList first = symbols(kFirst, {QStringLiteral("-C")});
    const QStringList second = symbols(kSecond, {QStringLiteral("-C")});
    for (const char* name : {"BasePDE13_v400_", "OptionPDE13_v400_", "OptionView13_v400_",
                             "KVSGRVOptions13PlugIn13_v400_", "PDEUtilsMethod13"})
        EXPECT_FALSE(first.filter(QLatin1String(name)).isEmpty()) << name;
    EXPECT_TRUE(second.filter(QStringLiteral("13_v400_")).isEmpty());
    EXPECT_TRUE(second.filter(QStringLiteral("PDEUtilsMethod13::")).isEmpty());
    EXPECT_FALSE(second.filter(QStringLiteral("OptionPDE13_v401_")).isEmpty());
}

} // namespace
} // namespace labelcut::test
