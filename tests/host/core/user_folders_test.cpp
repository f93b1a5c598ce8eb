// Where the user's own files are.
#include "host/core/user_folders.h"

#include <gtest/gtest.h>

#include <pwd.h>
#include <unistd.h>

#include "host/core/file_name.h"
#include "tests/support/surroundings.h"

namespace labelcut {

namespace {

QString text(const char* plain) {
    return QString::fromLatin1(plain);
}

/// What the system's list of users says of whoever runs this.
QString homeOfAccount() {
    const passwd* entry = getpwuid(getuid());
    return nameFromBytes(entry ? entry->pw_dir : "");
}

} // namespace

TEST(UserFoldersTest, ConfigurationIsWhereTheDesktopSays) {
    const test::Environment home("HOME", "/somewhere");
    const test::Environment config("XDG_CONFIG_HOME", "/else\xE4where");
    EXPECT_EQ(homeFolder(), text("/somewhere"));
    EXPECT_EQ(bytesOfName(*configurationFolder()), "/else\xE4where");
}

TEST(UserFoldersTest, WhatIsNoAbsoluteNameCountsAsNotSaid) {
    const test::Environment home("HOME", "/somewhere");
    for (const char* name : {"", "foo", "./foo", "../foo", "~/foo"}) {
        const test::Environment config("XDG_CONFIG_HOME", name);
        EXPECT_EQ(configurationFolder(), text("/somewhere/.config")) << name;
    }
}

TEST(UserFoldersTest, AHomeThatIsNotSaidIsLookedUp) {
    ASSERT_TRUE(homeOfAccount().startsWith(u'/'));
    const test::Environment config("XDG_CONFIG_HOME", "");
    for (const char* name : {"", "foo", "."}) {
        const test::Environment home("HOME", name);
        EXPECT_EQ(homeFolder(), homeOfAccount()) << name;
        EXPECT_EQ(configurationFolder(), homeOfAccount() + text("/.config")) << name;
    }
}

TEST(UserFoldersTest, EveryLibraryReadsTheSameFromTheEnvironment) {
    const test::Environment home("HOME", "foo");
    const test::Environment config("XDG_CONFIG_HOME", "foo");
    const test::Environment cache("XDG_CACHE_HOME", "/cache");
    const test::Environment data("XDG_DATA_HOME", "./data");
    mendFoldersInEnvironment();
    EXPECT_EQ(qgetenv("HOME"), bytesOfName(homeOfAccount()));
    EXPECT_FALSE(qEnvironmentVariableIsSet("XDG_CONFIG_HOME"));
    EXPECT_FALSE(qEnvironmentVariableIsSet("XDG_DATA_HOME"));
    EXPECT_EQ(qgetenv("XDG_CACHE_HOME"), "/cache");
}

} // namespace labelcut
