// Security: code is loaded from the folder of plug-ins only, and only what not anybody put there.
#include <sys/stat.h>

#include "host/panels/plugin_loader.h"
#include "tests/faults/plugin_tree.h"

namespace labelcut::test {

using testing::HasSubstr;
using testing::Not;

namespace {

const QString kGood = QStringLiteral(LABELCUT_TEST_PLUGIN_DIR "/good.so");
const QString kCutOptions = QStringLiteral(LABELCUT_PLUGIN_DIR "/cut_options.so");

void setMode(const QString& path, mode_t mode) {
    EXPECT_EQ(chmod(QFile::encodeName(path).constData(), mode), 0);
}

Outcome options(const PluginTree& tree, const std::map<QString, QString>& environment = {},
                const QString& folder = {}) {
    return tree.run({QStringLiteral("options"), QStringLiteral("--ppd"), kTapePpd}, environment,
                    folder);
}

std::vector<std::string> reasons(const PluginSearch& search) {
    std::vector<std::string> all;
    for (const RefusedPlugin& refused : search.refused)
        all.push_back(refused.reason.toStdString());
    return all;
}

} // namespace

TEST(PluginSecurityTest, NeitherTheCurrentFolderNorTheEnvironmentAddsAPanel) {
    const PluginTree tree;
    // The same plug-in, wherever somebody could hope that it is looked for.
    const QString lure = tree.path(QStringLiteral("lure"));
    const QByteArray good = contentOf(kCutOptions);
    for (const char* folder : {".", "plugins", "labelcut/plugins", "lib/labelcut/plugins",
                               "platforms", "../lib/labelcut"}) {
        const QString path = lure + u'/' + QLatin1String(folder);
        ASSERT_TRUE(QDir().mkpath(path));
        fileWith(path + QStringLiteral("/cut_options.so"), good);
    }
    const Outcome outcome = options(tree,
                                    {{QStringLiteral("QT_PLUGIN_PATH"), lure},
                                     {QStringLiteral("LABELCUT_PLUGIN_DIR"), lure},
                                     {QStringLiteral("LABELCUT_PLUGINS"), lure},
                                     {QStringLiteral("XDG_DATA_HOME"), lure},
                                     {QStringLiteral("XDG_CONFIG_HOME"), lure},
                                     {QStringLiteral("HOME"), lure},
                                     {QStringLiteral("PWD"), lure}},
                                    lure);
    EXPECT_THAT(outcome.err, HasSubstr("No plug-in was found in"));
    EXPECT_THAT(outcome.out, HasSubstr("offers none of the panels' options"));
    // It would have been found good.
    tree.write(QStringLiteral("cut_options.so"), good);
    EXPECT_THAT(options(tree).out, HasSubstr("KvHalfCut"));
}

TEST(PluginSecurityTest, WhatAnybodyMayWriteIsNotLoaded) {
    const PluginTree tree;
    const QString file = tree.write(QStringLiteral("good.so"), contentOf(kGood));
    ASSERT_EQ(loadPlugins(tree.plugins()).loaded.size(), 1U);

    setMode(file, 0666);
    EXPECT_THAT(reasons(loadPlugins(tree.plugins())),
                testing::ElementsAre(testing::AllOf(HasSubstr("anybody may write to"),
                                                    HasSubstr("good.so"), HasSubstr("chmod o-w"))));
    setMode(file, 0644);
    for (const mode_t open : {mode_t{0777}, mode_t{01777}}) {
        setMode(tree.plugins(), open);
        const PluginSearch search = loadPlugins(tree.plugins());
        EXPECT_TRUE(search.loaded.empty());
        EXPECT_EQ(search.refused.size(), 1U);
    }
    setMode(tree.plugins(), 0755);
    EXPECT_EQ(loadPlugins(tree.plugins()).loaded.size(), 1U);
    EXPECT_THAT(options(tree).err, Not(HasSubstr("anybody")));
}

TEST(PluginSecurityTest, ALinkIsJudgedByWhereItLeads) {
    const PluginTree tree;
    const QString elsewhere = tree.path(QStringLiteral("elsewhere"));
    ASSERT_TRUE(QDir().mkpath(elsewhere));
    const QString real = fileWith(elsewhere + QStringLiteral("/real.so"), contentOf(kGood));
    ASSERT_TRUE(QFile::link(real, tree.plugins() + QStringLiteral("/link.so")));
    EXPECT_EQ(loadPlugins(tree.plugins()).loaded.size(), 1U) << "as packages do it";
    setMode(elsewhere, 0777);
    const PluginSearch search = loadPlugins(tree.plugins());
    EXPECT_TRUE(search.loaded.empty());
    EXPECT_THAT(reasons(search), testing::ElementsAre(HasSubstr("elsewhere")));
}

} // namespace labelcut::test
