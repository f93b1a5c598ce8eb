// Test support: a system-version query that answers, or fails, as it is told.
#pragma once

#include <vector>

#include "platform/toolkit/gestalt.h"

namespace labelcut::test {

class FakeSystem : public PDESystem {
public:
    FakeSystem() = default;
    FakeSystem(std::int32_t majorVersion, std::int32_t minorVersion, std::int32_t bugFixVersion)
        : major(majorVersion)
        , minor(minorVersion)
        , bugFix(bugFixVersion) {}

    std::int32_t major = 0;
    std::int32_t minor = 0;
    std::int32_t bugFix = 0;
    bool majorFails = false;
    bool minorFails = false;
    bool bugFixFails = false;
    mutable std::vector<std::uint32_t> asked;

    OSStatus gestalt(std::uint32_t selector, std::int32_t* value) const override {
        asked.push_back(selector);
        switch (selector) {
        case kSystemVersionMajor:
            return answer(majorFails, major, value);
        case kSystemVersionMinor:
            return answer(minorFails, minor, value);
        case kSystemVersionBugFix:
            return answer(bugFixFails, bugFix, value);
        default:
            return kPMInvalidParameter;
        }
    }

private:
    static OSStatus answer(bool fails, std::int32_t number, std::int32_t* value) {
        if (fails)
            return kPMGeneralError;
        *value = number;
        return noErr;
    }
};

/// Makes a system the asked one for as long as this lives.
class SystemInForce {
public:
    explicit SystemInForce(const PDESystem* system) { setGestaltSystem(system); }
    ~SystemInForce() { setGestaltSystem(nullptr); }
    SystemInForce(const SystemInForce&) = delete;
    SystemInForce& operator=(const SystemInForce&) = delete;
};

} // namespace labelcut::test
