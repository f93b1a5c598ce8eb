// Tests of two builds of the cut-options plug-in in one process: each asks its own system.
#include "tests/host/panels/two_builds.h"

namespace labelcut::test {
namespace {

TEST(TwoBuildsOnTwoSystems, EachKeepItsOwnAnswerToTheVersionTest) {
    const TwoBuilds builds;
    const HostSystem oldSystem({10, 4, 11});
    const HostSystem newSystem({11, 0, 0});
    auto bundle = std::make_shared<ResourceBundle>(builds.first().bundleRoot);

    // Each principal object is made with a system; the second comes before the first is asked.
    const auto first = builds.first().factory->create(oldSystem);
    const auto second = builds.second().factory->create(newSystem);
    EXPECT_FALSE(first->initWithBundle(bundle));
    EXPECT_TRUE(second->initWithBundle(bundle));

    // From now on the answers hold, whatever system is offered.
    EXPECT_FALSE(builds.first().factory->create(newSystem)->initWithBundle(bundle));
    EXPECT_TRUE(builds.second().factory->create(oldSystem)->initWithBundle(bundle));
}

} // namespace
} // namespace labelcut::test
