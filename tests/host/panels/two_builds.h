// Test support: two builds of the cut-options plug-in, loaded side by side.
#pragma once

#include "host/panels/resource_bundle.h"
#include "tests/host/panels/core_fixtures.h"

namespace labelcut::test {

class TwoBuilds {
public:
    TwoBuilds() {
        mFolder.copy(QStringLiteral(LABELCUT_PLUGIN_DIR "/cut_options.so"),
                     QStringLiteral("a_first.so"));
        mFolder.copy(QStringLiteral(LABELCUT_SECOND_BUILD), QStringLiteral("b_second.so"));
        mSearch = mFolder.load();
        EXPECT_EQ(mSearch.loaded.size(), 2U);
        EXPECT_TRUE(mSearch.refused.empty());
    }
    const std::vector<LoadedPlugin>& plugins() const { return mSearch.loaded; }
    const LoadedPlugin& first() const { return mSearch.loaded.at(0); }
    const LoadedPlugin& second() const { return mSearch.loaded.at(1); }

private:
    PluginFolder mFolder;
    PluginSearch mSearch;
};

} // namespace labelcut::test
