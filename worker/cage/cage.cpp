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

/// An absolute path in the environment; empty when there is none.
std::string pathIn(const char* variable) {
    const char* path = std::getenv(variable);
    return path && *path == '/' ? path : "";
}

/// Where the user's own fonts are, and what fontconfig keeps of them.
std::vector<std::string> fontsOfUser() {
    const std::string home = pathIn("HOME");
    std::vector<std::string> all{pathIn("FONTCONFIG_FILE"), pathIn("FONTCONFIG_PATH")};
    if (!home.empty())
        all.insert(all.end(), {home + "/.fonts", home + "/.fonts.conf"});
    const auto add = [&](const char* variable, const char* usual, const char* folder) {
        const std::string own = pathIn(variable);
        if (!own.empty() || !home.empty())
            all.push_back((own.empty() ? home + usual : own) + folder);
    };
    add("XDG_DATA_HOME", "/.local/share", "/fonts");
    add("XDG_CONFIG_HOME", "/.config", "/fontconfig");
    add("XDG_CACHE_HOME", "/.cache", "/fontconfig");
    std::erase(all, "");
    return all;
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
    const std::vector<std::string> own = fontsOfUser();
    all.insert(all.end(), own.begin(), own.end());
    return all;
}

} // namespace labelcut::worker
