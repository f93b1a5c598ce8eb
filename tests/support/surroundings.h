// Test support: surroundings of this process that are worse than usual, each for as long as its
// object lives.
#pragma once

#include <QByteArray>
#include <QString>

#include <sys/resource.h>
#include <sys/types.h>

namespace labelcut::test {

/// An environment variable has another value.
class Environment {
public:
    Environment(const char* name, const QByteArray& value);
    ~Environment();
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;

private:
    const char* mName;
    QByteArray mBefore;
};

/// No file of this process, and of the programs it starts, grows beyond so many bytes, as on a full
/// disk.
class FullDisk {
public:
    explicit FullDisk(rlim_t bytes);
    ~FullDisk();
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

private:
    rlimit mBefore{};
};

/// The process has the rights of nobody, even when the tests run as root, for whom no file is
/// unreadable.
class Unprivileged {
public:
    Unprivileged();
    ~Unprivileged();
    Unprivileged(const Unprivileged&) = delete;
    Unprivileged& operator=(const Unprivileged&) = delete;

private:
    uid_t mUser;
};

} // namespace labelcut::test
