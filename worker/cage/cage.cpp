// Worker's cage: resource limits, and the order in which the cage closes.
#include "worker/cage/cage.h"

#include <sys/prctl.h>
#include <sys/resource.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "worker/cage/path_rules.h"
#include "worker/cage/system_calls.h"

#if defined(__SANITIZE_ADDRESS__)
#define LABELCUT_SHADOW_MEMORY
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define LABELCUT_SHADOW_MEMORY
#endif
#endif

namespace labelcut::worker {

namespace {

#ifdef LABELCUT_SHADOW_MEMORY
// AddressSanitizer reserves terabytes, which it never touches.
constexpr bool kMemoryCanBeLimited = false;
#else
constexpr bool kMemoryCanBeLimited = true;
#endif

/// No process of ours needs more: files, their copies, and the libraries' own.
constexpr rlim_t kOpenFiles = 4096;

bool limit(__rlimit_resource_t resource, rlim_t most) {
    rlimit now{};
    if (getrlimit(resource, &now) != 0)
        return false;
    const rlim_t value = now.rlim_max == RLIM_INFINITY || most < now.rlim_max ? most : now.rlim_max;
    const rlimit wanted{value, value};
    return setrlimit(resource, &wanted) == 0;
}

bool limitResources(const Cage& cage) {
    // A file that grows too large refuses bytes instead of ending the process.
    std::signal(SIGXFSZ, SIG_IGN);
    return limit(RLIMIT_CORE, 0) && limit(RLIMIT_FSIZE, cage.output) &&
           limit(RLIMIT_NOFILE, kOpenFiles) &&
           (!kMemoryCanBeLimited || limit(RLIMIT_DATA, cage.memory));
}

std::string reason(const char* part) {
    return std::string(part) + ": " + std::strerror(errno);
}

std::string inHome(const char* variable, const char* usual, const char* below) {
    const char* own = std::getenv(variable);
    if (own && *own == '/')
        return std::string(own) + below;
    const char* home = std::getenv("HOME");
    return home && *home == '/' ? std::string(home) + usual + below : std::string();
}

} // namespace

std::optional<std::string> closeCage(const Cage& cage) {
    if (!limitResources(cage))
        return reason("setrlimit");
    // What is started cannot gain rights; both filters ask for it.
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0)
        return reason("PR_SET_NO_NEW_PRIVS");
    if (!closePaths(cage))
        return reason("Landlock");
    if (!filterSystemCalls(cage))
        return reason("seccomp");
    return std::nullopt;
}

std::vector<std::string> libraryFolders() {
    std::vector<std::string> all{
        "/usr/lib",
        "/usr/lib32",
        "/usr/lib64",
        "/lib",
        "/lib64",
        "/usr/local/lib",
        "/etc/ld.so.cache",
        "/etc/ld.so.preload",
        "/etc/fonts",
        "/etc/ghostscript",
        "/etc/papersize",
        "/usr/share/color",
        "/usr/share/fontconfig",
        "/usr/share/fonts",
        "/usr/share/ghostscript",
        "/usr/share/poppler",
        "/usr/share/X11/fonts",
        "/usr/share/zoneinfo",
        "/usr/local/share/fonts",
        "/var/cache/fontconfig",
        "/var/lib/ghostscript",
        "/dev/null",
        "/dev/urandom",
    };
    for (std::string own : {inHome("XDG_DATA_HOME", "/.local/share", "/fonts"),
                            inHome("XDG_CONFIG_HOME", "/.config", "/fontconfig"),
                            inHome("XDG_CACHE_HOME", "/.cache", "/fontconfig"),
                            inHome("", "", "/.fonts"), inHome("", "", "/.fonts.conf")}) {
        if (!own.empty())
            all.push_back(std::move(own));
    }
    for (const char* variable : {"FONTCONFIG_FILE", "FONTCONFIG_PATH"}) {
        const char* path = std::getenv(variable);
        if (path && *path == '/')
            all.emplace_back(path);
    }
    return all;
}

} // namespace labelcut::worker
