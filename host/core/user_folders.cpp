// Core: where the user's own files are.
#include "host/core/user_folders.h"

#include <QByteArray>

#include <pwd.h>
#include <unistd.h>

#include <vector>

#include "host/core/file_name.h"

namespace labelcut {

namespace {

/// A home below which nothing can be made, not even by root, for users without one.
constexpr char kNoHome[] = "/dev/null";
/// Bytes for a user's entry where the system does not say how long one may be.
constexpr long kUsualEntry = 16'384;

std::optional<QByteArray> absolute(const QByteArray& name) {
    return name.startsWith('/') && name != kNoHome ? std::optional(name) : std::nullopt;
}

std::optional<QByteArray> homeOfAccount() {
    const long size = sysconf(_SC_GETPW_R_SIZE_MAX);
    std::vector<char> texts(static_cast<std::size_t>(size > 0 ? size : kUsualEntry));
    passwd entry{};
    passwd* found = nullptr;
    if (getpwuid_r(getuid(), &entry, texts.data(), texts.size(), &found) != 0 || !found)
        return std::nullopt;
    return absolute(found->pw_dir);
}

std::optional<QByteArray> home() {
    const auto named = absolute(qgetenv("HOME"));
    return named ? named : homeOfAccount();
}

} // namespace

std::optional<QString> homeFolder() {
    const auto name = home();
    return name ? std::optional(nameFromBytes(*name)) : std::nullopt;
}

std::optional<QString> configurationFolder() {
    if (const auto named = absolute(qgetenv("XDG_CONFIG_HOME")))
        return nameFromBytes(*named);
    const auto below = homeFolder();
    return below ? std::optional(*below + QStringLiteral("/.config")) : std::nullopt;
}

void mendFoldersInEnvironment() {
    for (const char* variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME",
                                 "XDG_STATE_HOME", "XDG_RUNTIME_DIR"}) {
        if (!qgetenv(variable).startsWith('/'))
            qunsetenv(variable);
    }
    qputenv("HOME", home().value_or(kNoHome));
}

} // namespace labelcut
