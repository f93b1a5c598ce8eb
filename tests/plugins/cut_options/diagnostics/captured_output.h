// Test support: what a call writes to a descriptor or to the system log.
#pragma once

#include "platform/toolkit/system_log.h"

#include <QStringList>

#include <cstdio>
#include <memory>
#include <string>

#include <unistd.h>

namespace labelcut::test {

/// A file without a name that is gone when closed.
class ScratchFile {
public:
    int fd() const { return fileno(mFile.get()); }
    std::string content() const {
        std::string text;
        char buffer[256];
        off_t at = 0;
        for (ssize_t n = 0; (n = pread(fd(), buffer, sizeof buffer, at)) > 0; at += n)
            text.append(buffer, static_cast<std::size_t>(n));
        return text;
    }

private:
    struct Closer {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    std::unique_ptr<std::FILE, Closer> mFile{std::tmpfile()};
};

/// What `call` writes to standard error.
template<typename Call>
std::string standardErrorOf(Call call) {
    const ScratchFile file;
    std::fflush(stderr);
    const int before = dup(STDERR_FILENO);
    dup2(file.fd(), STDERR_FILENO);
    call();
    std::fflush(stderr);
    dup2(before, STDERR_FILENO);
    close(before);
    return file.content();
}

/// While one lives, system log lines are kept instead of written.
class LogLines : public SystemLogSink {
public:
    LogLines()
        : mBefore(setSystemLogSink(this)) {}
    ~LogLines() override { setSystemLogSink(mBefore); }
    void write(const QString& line) override { lines += line; }

    QStringList lines;

private:
    SystemLogSink* mBefore;
};

} // namespace labelcut::test
