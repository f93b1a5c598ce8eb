// Worker's cage: which paths may be opened, by Landlock.
//
// The C library has no functions for it; the numbers are those of the kernel's <linux/landlock.h>.
#include "worker/cage/path_rules.h"

#include <elf.h>
#include <fcntl.h>
#include <link.h>
#include <linux/landlock.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <string>

#include "worker/protocol/descriptor.h"

namespace labelcut::worker {

namespace {

constexpr std::uint64_t kRead = LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_READ_DIR;
/// What a rule for a file, instead of a folder, may name.
constexpr std::uint64_t kOfFiles =
    LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_WRITE_FILE | LANDLOCK_ACCESS_FS_EXECUTE;
constexpr std::uint64_t kWork = kRead | LANDLOCK_ACCESS_FS_WRITE_FILE |
                                LANDLOCK_ACCESS_FS_REMOVE_FILE | LANDLOCK_ACCESS_FS_MAKE_REG;
/// Everything that the first version of Landlock knows: what no rule gives is refused.
constexpr std::uint64_t kAll = LANDLOCK_ACCESS_FS_MAKE_SYM * 2 - 1;

bool allowBeneath(int rules, int parent, std::uint64_t access) {
    struct stat info {};
    if (fstat(parent, &info) != 0)
        return false;
    landlock_path_beneath_attr beneath{};
    beneath.allowed_access = S_ISDIR(info.st_mode) ? access : access & kOfFiles;
    beneath.parent_fd = parent;
    return syscall(SYS_landlock_add_rule, rules, LANDLOCK_RULE_PATH_BENEATH, &beneath, 0) == 0;
}

bool allow(int rules, const std::string& path, std::uint64_t access) {
    const Descriptor parent(open(path.c_str(), O_PATH | O_CLOEXEC));
    if (!parent)
        return true;
    return allowBeneath(rules, parent.number(), access);
}

/// The loader that the kernel starts beside every program, as this process names it.
std::string loader() {
    std::string found;
    dl_iterate_phdr(
        [](dl_phdr_info* object, std::size_t, void* path) {
            for (int i = 0; i < object->dlpi_phnum; ++i) {
                if (object->dlpi_phdr[i].p_type == PT_INTERP)
                    *static_cast<std::string*>(path) = reinterpret_cast<const char*>(
                        object->dlpi_addr + object->dlpi_phdr[i].p_vaddr);
            }
            return 1; // the first object is the program itself
        },
        &found);
    return found;
}

bool allowAll(int rules, const Cage& cage) {
    for (const std::string& path : cage.readable) {
        if (!allow(rules, path, kRead))
            return false;
    }
    if (cage.workFolder >= 0 && !allowBeneath(rules, cage.workFolder, kWork))
        return false;
    if (cage.program.empty())
        return true;
    return allow(rules, cage.program, kRead | LANDLOCK_ACCESS_FS_EXECUTE) &&
           allow(rules, loader(), kRead | LANDLOCK_ACCESS_FS_EXECUTE);
}

} // namespace

bool closePaths(const Cage& cage) {
    landlock_ruleset_attr attributes{};
    attributes.handled_access_fs = kAll;
    const Descriptor rules(
        static_cast<int>(syscall(SYS_landlock_create_ruleset, &attributes, sizeof attributes, 0)));
    if (!rules)
        return errno == ENOSYS || errno == EOPNOTSUPP;
    return allowAll(rules.number(), cage) &&
           syscall(SYS_landlock_restrict_self, rules.number(), 0) == 0;
}

} // namespace labelcut::worker
