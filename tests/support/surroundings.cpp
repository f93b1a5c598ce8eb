// Test support: surroundings of this process that are worse than usual.
#include "tests/support/surroundings.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <csignal>

namespace labelcut::test {

namespace {
constexpr uid_t kNobody = 65534;
} // namespace

Environment::Environment(const char* name, const QByteArray& value)
    : mName(name)
    , mBefore(qgetenv(name)) {
    qputenv(name, value);
}

Environment::~Environment() {
    if (mBefore.isNull())
        qunsetenv(mName);
    else
        qputenv(mName, mBefore);
}

FullDisk::FullDisk(rlim_t bytes) {
    std::signal(SIGXFSZ, SIG_IGN);
    getrlimit(RLIMIT_FSIZE, &mBefore);
    const rlimit limit{bytes, mBefore.rlim_max};
    EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
}

FullDisk::~FullDisk() {
    EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &mBefore), 0);
}

Unprivileged::Unprivileged()
    : mUser(geteuid()) {
    EXPECT_TRUE(mUser != 0 || seteuid(kNobody) == 0);
}

Unprivileged::~Unprivileged() {
    EXPECT_TRUE(mUser != 0 || seteuid(mUser) == 0);
}

} // namespace labelcut::test
