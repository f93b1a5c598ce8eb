// The command line: being told to end, by a key, a session that closes or a kill.
#include "host/cli/interruption.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdio>

namespace labelcut::interruption {

namespace {

CancelFlag wanted;
volatile std::sig_atomic_t received = 0;
int announcement = -1;

/// Only calls that are safe within a signal's handler.
void die(int) {
    std::signal(received, SIG_DFL);
    std::raise(received);
}

void handle(int signal) {
    const int before = errno;
    received = signal;
    wanted.cancel();
    const std::uint64_t one = 1;
    // The flag alone is enough for those that look at it.
    static_cast<void>(!write(announcement, &one, sizeof one));
    alarm(kGrace);
    errno = before;
}

void handleOnce(int signal) {
    struct sigaction before {};
    sigaction(signal, nullptr, &before);
    if (before.sa_handler == SIG_IGN)
        return;
    struct sigaction action {};
    action.sa_handler = handle;
    // What is read or written goes on: it is the flag that ends calls. The second one kills.
    action.sa_flags = static_cast<int>(SA_RESTART | SA_RESETHAND);
    sigemptyset(&action.sa_mask);
    sigaction(signal, &action, nullptr);
}

} // namespace

void install() {
    if (announcement < 0)
        announcement = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    std::signal(SIGALRM, die);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        handleOnce(signal);
}

const CancelFlag& flag() {
    return wanted;
}

int descriptor() {
    return announcement;
}

void passOn() {
    if (received == 0)
        return;
    std::fflush(nullptr);
    die(0);
}

} // namespace labelcut::interruption
