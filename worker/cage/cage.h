// Worker's cage: what a process that reads documents may still do.
//
// Built of three things that hold at once and that programs started from within inherit: resource
// limits (setrlimit), the kernel's filter of system calls (seccomp, by libseccomp), and the
// kernel's rules for paths (Landlock, where the kernel has it: Linux 5.13). A process in the cage
// has no network, starts no second process, sends no signals to others, and cannot leave.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "worker/protocol/message.h"

namespace labelcut::worker {

struct Cage {
    /// Files and folders that may be opened for reading, with all below them. What is not there is
    /// passed over. Without any, and without `workFolder` and `program`, nothing can be opened at
    /// all, whatever the kernel knows of paths.
    std::vector<std::string> readable;
    /// The only program that the process may turn into, absolute; empty: none.
    std::string program;
    /// A folder in which files may be made, written, read and removed; borrowed; -1: none.
    int workFolder = -1;
    /// Whether the process may have threads; second processes it never has.
    bool hasThreads = false;
    /// Bytes of memory that the process may write to; libraries' code does not count.
    std::uint64_t memory = kMemoryLimit;
    /// Bytes of each file that it writes.
    std::uint64_t output = kOutputLimit;
};

/// Closes the cage around this process, for good. @return why the system refuses; then nothing may
/// be read. A kernel without Landlock is no reason.
std::optional<std::string> closeCage(const Cage& cage);

/// The folders that libraries read while they draw or interpret: code, fonts, and what
/// Ghostscript and fontconfig bring with them; of the user's own files the fonts only.
std::vector<std::string> libraryFolders();

} // namespace labelcut::worker
