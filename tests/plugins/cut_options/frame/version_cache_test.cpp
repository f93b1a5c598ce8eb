// Tests of the principal object: what the first version test answers holds for the process.
#include "plugins/cut_options/object/principal_object.h"

#include <gtest/gtest.h>

#include "tests/plugins/cut_options/frame/fake_system.h"
#include "tests/support/fake_host.h"

namespace labelcut::test {
namespace {

/// What the process is told first: version FIRST_MINOR of 10, or nothing when FIRST_FAILS.
FakeSystem firstSystem() {
    FakeSystem system(10, FIRST_MINOR, 0);
    system.majorFails = system.minorFails = system.bugFixFails = FIRST_FAILS;
    return system;
}

TEST(VersionCache, KeepsTheFirstAnswerWhateverTheSystemSaysLater) {
    const FakeSystem first = firstSystem();
    const bool answer = !FIRST_FAILS && FIRST_MINOR >= 5;
    const FakeSystem opposite = answer ? FakeSystem(10, 4, 0) : FakeSystem(11, 0, 0);
    auto bundle = std::make_shared<ResourceBundle>(QStringLiteral(LABELCUT_BUNDLE_DIR));
    KVSGRVOptions13PlugIn13_v400_ plugin;
    {
        const SystemInForce inForce(&first);
        EXPECT_EQ(plugin.initWithBundle(bundle), answer);
        EXPECT_EQ(first.asked.size(), 3U);
    }

    const SystemInForce inForce(&opposite);
    EXPECT_EQ(systemIsLeopardOrLater(), !answer) << "the test itself is not cached";
    opposite.asked.clear();
    KVSGRVOptions13PlugIn13_v400_ later;
    EXPECT_EQ(later.initWithBundle(bundle), answer);
    EXPECT_EQ(plugin.initWithBundle(bundle), answer);
    EXPECT_EQ(KVSGRVOptions13PlugIn13_v400_::runningOnLeopardOrLater(), answer);
    EXPECT_TRUE(opposite.asked.empty());
}

} // namespace
} // namespace labelcut::test
