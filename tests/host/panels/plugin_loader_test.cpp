// Tests of the plug-in loader: what it takes, and what it lists with a reason instead.
#include "host/panels/plugin_loader.h"

#include <QFileInfo>

#include <link.h>

#include <algorithm>
#include <cstring>

#include "tests/host/panels/core_fixtures.h"
#include "tests/support/expected_warnings.h"

namespace labelcut::test {
namespace {

TEST(PluginLoader, TakesAGoodPluginWithWhatItSaysOfItself) {
    takeCount("constructed");
    const PluginFolder folder{"good"};
    const PluginSearch search = folder.load();
    ASSERT_EQ(search.loaded.size(), 1U);
    EXPECT_TRUE(search.refused.empty());
    const LoadedPlugin& plugin = search.loaded.front();
    EXPECT_EQ(plugin.file, folder.filePath(QStringLiteral("good.so")));
    EXPECT_EQ(plugin.metadata.id, QStringLiteral("org.labelcut.test"));
    EXPECT_EQ(plugin.metadata.version, QStringLiteral("1.2"));
    EXPECT_EQ(plugin.metadata.interfaceVersion, 3);
    EXPECT_EQ(plugin.metadata.oldestCompatible, 3);
    EXPECT_EQ(plugin.metadata.resources, QStringLiteral("texts"));
    EXPECT_EQ(plugin.bundleRoot, folder.filePath(QStringLiteral("texts")));
    ASSERT_TRUE(plugin.factory);
    EXPECT_TRUE(plugin.factory->create(HostSystem()));
    EXPECT_EQ(takeCount("constructed"), 1);
}

TEST(PluginLoader, TakesTheCutOptionsPlugin) {
    const PluginSearch search = loadPlugins(QStringLiteral(LABELCUT_PLUGIN_DIR));
    EXPECT_TRUE(search.refused.empty());
    ASSERT_EQ(search.loaded.size(), 1U);
    EXPECT_EQ(search.loaded.front().metadata.id, QStringLiteral("org.labelcut.cut-options"));
    EXPECT_EQ(search.loaded.front().bundleRoot, QStringLiteral(":/labelcut/13_v400"));
    EXPECT_TRUE(QFile::exists(search.loaded.front().bundleRoot + QStringLiteral("/OptionPDE.ui")));
}

TEST(PluginLoader, GivesAnEmptySearchForNoFolderAnEmptyOneAndNoName) {
    const PluginFolder empty;
    PluginFolder current{"good"};
    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(current.path()));
    for (const QString& folder :
         {empty.path(), empty.filePath(QStringLiteral("missing")), QStringLiteral(""), QString(),
          current.filePath(QStringLiteral("good.so"))}) {
        const PluginSearch search = loadPlugins(folder);
        EXPECT_TRUE(search.loaded.empty()) << '"' << folder.toStdString() << '"';
        EXPECT_TRUE(search.refused.empty()) << '"' << folder.toStdString() << '"';
    }
    QDir::setCurrent(before);
}

/// A file that is refused, and what its reason says.
struct Refusal {
    const char* file;
    const char* reason;
};

TEST(PluginLoader, ListsEachUnusableFileWithItsReasonAndLoadsTheRest) {
    PluginFolder folder{"good",
                        "other_iid",
                        "older",
                        "newer",
                        "newer_silent",
                        "no_panels",
                        "no_plugin",
                        "throws_an_error",
                        "throws_a_number",
                        "without_id",
                        "without_version",
                        "misses_a_symbol",
                        "newer_compatible"};
    const QByteArray good = bytesOf(folder.filePath(QStringLiteral("good.so")));
    folder.write(QStringLiteral("cut_header.so"), good.left(100));
    folder.write(QStringLiteral("cut_few.so"), good.left(4));
    folder.write(QStringLiteral("empty.so"), QByteArray());
    folder.write(QStringLiteral("text.so"), "this is no shared object\n");
    folder.write(QStringLiteral("zeros.so"), QByteArray(4096, '\0'));
    folder.write(QStringLiteral("good.txt"), good);
    folder.write(QStringLiteral("readme"), "no plug-in");
    ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral("folder.so")));
    ASSERT_TRUE(QFile::link(folder.filePath(QStringLiteral("nowhere")),
                            folder.filePath(QStringLiteral("dangling.so"))));

    const Refusal refusals[] = {
        {"cut_few.so", "not a plug-in, or it is damaged"},
        {"cut_header.so", "not a plug-in, or it is damaged"},
        {"empty.so", "not a plug-in, or it is damaged"},
        {"misses_a_symbol.so", "isDefinedNowhere"},
        {"newer.so", "it needs version 4 of the interface, this is 3"},
        {"newer_silent.so", "it needs version 4 of the interface, this is 3"},
        {"no_panels.so", "its root object offers no panels"},
        {"no_plugin.so", "not a plug-in, or it is damaged"},
        {"older.so", "it was built for version 2 of the interface, this is 3"},
        {"other_iid.so", "“org.labelcut.SomethingElse/1”"},
        {"text.so", "not a plug-in, or it is damaged"},
        {"throws_a_number.so", "its constructor failed"},
        {"throws_an_error.so", "its constructor failed: out of order"},
        {"without_id.so", "its metadata has no “id”"},
        {"without_version.so", "it was built for version 0 of the interface, this is 3"},
        {"zeros.so", "not a plug-in, or it is damaged"},
    };
    // The toolkit's own words, once for every look at it.
    const ExpectedWarning emptyFile(QStringLiteral("empty\\.so: failed to map to memory"));
    const PluginSearch search = folder.load();
    QStringList refused;
    for (const RefusedPlugin& plugin : search.refused)
        refused.append(QFileInfo(plugin.file).fileName() + QStringLiteral(": ") + plugin.reason);
    ASSERT_EQ(search.refused.size(), std::size(refusals)) << refused.join(u'\n').toStdString();
    for (std::size_t i = 0; i < std::size(refusals); ++i) {
        EXPECT_EQ(search.refused[i].file, folder.filePath(QLatin1String(refusals[i].file)));
        EXPECT_TRUE(search.refused[i].reason.contains(QString::fromUtf8(refusals[i].reason)))
            << refusals[i].file << ": " << search.refused[i].reason.toStdString();
    }
    ASSERT_EQ(search.loaded.size(), 2U);
    EXPECT_TRUE(search.loaded[0].file.endsWith(QLatin1String("/good.so")));
    EXPECT_TRUE(search.loaded[1].file.endsWith(QLatin1String("/newer_compatible.so")));
    EXPECT_EQ(search.loaded[1].bundleRoot, QStringLiteral(":/somewhere"))
        << "a resource path is taken as it is";
}

/// Where what is loaded of a shared object ends in its file; symbols for debuggers stand behind.
qsizetype endOfLoadedPart(const QByteArray& object) {
    ElfW(Ehdr) header;
    std::memcpy(&header, object.constData(), sizeof header);
    qsizetype end = 0;
    for (std::size_t i = 0; i < header.e_phnum; ++i) {
        ElfW(Phdr) segment;
        std::memcpy(&segment,
                    object.constData() + header.e_phoff + std::size_t{header.e_phentsize} * i,
                    sizeof segment);
        if (segment.p_type == PT_LOAD)
            end = std::max(end, static_cast<qsizetype>(segment.p_offset + segment.p_filesz));
    }
    return end;
}

TEST(PluginLoader, RefusesAPluginThatIsCutOffAnywhereInWhatIsLoaded) {
    const QByteArray good = bytesOf(QStringLiteral(LABELCUT_TEST_PLUGIN_DIR "/good.so"));
    const qsizetype end = endOfLoadedPart(good);
    ASSERT_GT(end, 4096);
    ASSERT_LE(end, good.size());
    for (qsizetype length = 1; length < end; length += std::min<qsizetype>(499, end - length)) {
        PluginFolder folder;
        folder.write(QStringLiteral("cut.so"), good.left(length));
        const PluginSearch search = folder.load();
        EXPECT_EQ(search.refused.size(), 1U) << length << " of " << end;
        EXPECT_TRUE(search.loaded.empty()) << length << " of " << end;
    }
    PluginFolder stripped;
    stripped.write(QStringLiteral("stripped.so"), good.left(end));
    EXPECT_EQ(stripped.load().loaded.size(), 1U) << "what is needed is all there";
}

// What does not fit by its metadata is never run.
TEST(PluginLoader, RunsNothingOfAPluginThatDoesNotFit) {
    takeCount("constructed");
    const PluginFolder folder{"other_iid", "older", "newer", "without_id"};
    EXPECT_EQ(folder.load().refused.size(), 4U);
    EXPECT_EQ(takeCount("constructed"), 0);
}

TEST(PluginLoader, GoesByFileNameWhateverTheOrderOfCopying) {
    PluginFolder folder;
    const QString good = QStringLiteral(LABELCUT_TEST_PLUGIN_DIR "/good.so");
    for (const char* name : {"m.so", "z.so", "a.so"})
        folder.copy(good, QLatin1String(name));
    QStringList names;
    for (const LoadedPlugin& plugin : folder.load().loaded)
        names.append(QFileInfo(plugin.file).fileName());
    EXPECT_EQ(names, (QStringList{QStringLiteral("a.so"), QStringLiteral("m.so"),
                                  QStringLiteral("z.so")}));
}

TEST(PluginLoader, FindsAPluginAgain) {
    const PluginFolder folder{"good"};
    const PluginSearch first = folder.load();
    const PluginSearch second = folder.load();
    ASSERT_EQ(second.loaded.size(), 1U);
    EXPECT_EQ(first.loaded.front().factory, second.loaded.front().factory);
}

TEST(PluginFolderPath, IsBesideTheProgramOrTheInstallFolderAndNeverTheCurrentOne) {
    const QDir beside(QCoreApplication::applicationDirPath() +
                      QStringLiteral("/../lib/labelcut/plugins"));
    ASSERT_TRUE(beside.exists()) << "tests run from a build tree";
    EXPECT_EQ(pluginFolder(), beside.canonicalPath());
    EXPECT_TRUE(QDir::isAbsolutePath(pluginFolder()));
}

} // namespace
} // namespace labelcut::test
