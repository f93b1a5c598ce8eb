// The print dialog's extension interface: which version of it the host offers.
#pragma once

#include <cstdint>

#include "platform/printing/status.h"

namespace labelcut {

/// Selectors of PDESystem::gestalt(), four-character codes.
inline constexpr std::uint32_t kSystemVersionMajor = 0x73797331;  // 'sys1'
inline constexpr std::uint32_t kSystemVersionMinor = 0x73797332;  // 'sys2'
inline constexpr std::uint32_t kSystemVersionBugFix = 0x73797333; // 'sys3'

/// The system-version query. A host answers with the version of the extension interface it offers.
class PDESystem {
public:
    virtual ~PDESystem() = default;

    /// @param selector  one of the codes above.
    /// @param value     receives the answer; untouched on failure; must not be null.
    /// @return noErr, or a status that says the query failed.
    virtual OSStatus gestalt(std::uint32_t selector, std::int32_t* value) const = 0;
};

} // namespace labelcut
