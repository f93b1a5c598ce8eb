// What a document that has taken over its reader might try.
#include "tests/worker/attacker/attack.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <spawn.h>
#include <sys/ptrace.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <map>
#include <vector>

namespace labelcut::test {

namespace {

constexpr off_t kGigabyte = 1 << 30;

std::string outcome(bool succeeded) {
    return succeeded ? "succeeded" : std::string("refused (") + std::strerror(errno) + ")";
}

std::string readFile(const std::string& path, int) {
    return outcome(open(path.c_str(), O_RDONLY) >= 0);
}

std::string writeFile(const std::string& path, int) {
    return outcome(open(path.c_str(), O_WRONLY | O_CREAT, 0600) >= 0);
}

std::string removeFile(const std::string& path, int) {
    return outcome(unlink(path.c_str()) == 0);
}

std::string connectTo(const std::string& port, int) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<in_port_t>(std::stoi(port)));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const int end = socket(AF_INET, SOCK_STREAM, 0);
    return outcome(end >= 0 &&
                   connect(end, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0);
}

std::string connectLocally(const std::string& path, int) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    const int end = socket(AF_UNIX, SOCK_STREAM, 0);
    return outcome(end >= 0 &&
                   connect(end, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0);
}

std::string startShell(const std::string&, int) {
    execl("/bin/sh", "sh", "-c", "echo Error: /shell in succeeded; exit 3", nullptr);
    return outcome(false);
}

std::string startProgram(const std::string& program, int) {
    pid_t child = 0;
    std::string word = program;
    char* words[] = {word.data(), nullptr};
    errno = posix_spawn(&child, program.c_str(), nullptr, nullptr, words, environ);
    return outcome(errno == 0);
}

std::string forkOnce(const std::string&, int) {
    const pid_t child = fork();
    if (child == 0)
        _exit(0);
    return outcome(child > 0);
}

std::string signalParent(const std::string&, int) {
    return outcome(kill(getppid(), SIGTERM) == 0);
}

std::string traceParent(const std::string&, int) {
    return outcome(ptrace(PTRACE_ATTACH, getppid(), nullptr, nullptr) == 0);
}

/// 10 GB, sparse, so that the test's disk does not feel it.
std::string fillDisk(const std::string&, int target) {
    for (int i = 1; i <= 10; ++i) {
        if (pwrite(target, "x", 1, i * kGigabyte - 1) != 1)
            return outcome(false);
    }
    return outcome(true);
}

std::string spin(const std::string&, int);

/// 10 GB, each of them in a file of its own.
std::string scatter(const std::string&, int) {
    for (int i = 0; i < 10; ++i) {
        const int file = open(("scattered" + std::to_string(i)).c_str(), O_WRONLY | O_CREAT, 0600);
        if (file < 0 || ftruncate(file, kGigabyte) != 0)
            return outcome(false);
    }
    return spin({}, -1);
}

std::string eatMemory(const std::string&, int) {
    std::vector<std::vector<char>> all;
    for (int i = 0; i < 160; ++i)
        all.emplace_back(kGigabyte >> 4, 'x');
    return outcome(true);
}

std::string spin(const std::string&, int) {
    const volatile bool isEnough = false;
    while (!isEnough) {
    }
    return outcome(true);
}

std::string spinThroughSignals(const std::string&, int) {
    for (int signal = 1; signal < NSIG; ++signal)
        std::signal(signal, SIG_IGN);
    return spin({}, -1);
}

std::string crash(const std::string&, int) {
    return outcome(raise(SIGSEGV) == 0);
}

std::string babble(const std::string&, int) {
    constexpr int kChannel = 3;
    const std::string nonsense(1000, 'x');
    if (send(kChannel, nonsense.data(), nonsense.size(), 0) < 0)
        return outcome(false);
    return spin({}, -1);
}

std::string escape(const std::string&, int) {
    return outcome(chroot("/") == 0 || setuid(0) == 0 || mkdir("/tmp/escaped", 0700) == 0);
}

} // namespace

std::string carryOutDeed(std::string_view document, int target) {
    static const std::map<std::string_view, std::string (*)(const std::string&, int)> deeds{
        {"read", readFile},
        {"write", writeFile},
        {"remove", removeFile},
        {"connect", connectTo},
        {"connect-locally", connectLocally},
        {"shell", startShell},
        {"program", startProgram},
        {"fork", forkOnce},
        {"signal", signalParent},
        {"trace", traceParent},
        {"fill", fillDisk},
        {"scatter", scatter},
        {"eat", eatMemory},
        {"spin", spin},
        {"spin-through-signals", spinThroughSignals},
        {"crash", crash},
        {"babble", babble},
        {"escape", escape},
    };
    std::string_view line = document.substr(document.find('\n') + 1);
    line = line.substr(0, line.find('\n'));
    const std::string_view name = line.substr(0, line.find(' '));
    const auto deed = deeds.find(name);
    if (deed == deeds.end())
        return "unknown deed";
    line.remove_prefix(std::min(name.size() + 1, line.size()));
    return deed->second(std::string(line), target);
}

} // namespace labelcut::test
