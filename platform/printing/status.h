// Our printing framework: the status that every call answers with.
#pragma once

#include <cstdint>

namespace labelcut {

/// 0 for success, otherwise one of the codes below or a code of the implementation at hand.
using OSStatus = std::int32_t;

inline constexpr OSStatus noErr = 0;
/// A parameter is missing or makes no sense; also: a null object was asked.
inline constexpr OSStatus kPMInvalidParameter = -50;
/// Something failed that has no code of its own.
inline constexpr OSStatus kPMGeneralError = -30870;
/// A value lies outside the range that it may have.
inline constexpr OSStatus kPMValueOutOfRange = -30874;
/// There is no value under the given key.
inline constexpr OSStatus kPMKeyNotFound = -30893;
/// The session holds no data under the given key.
inline constexpr OSStatus kPMSessionDataNotFound = -30891;

} // namespace labelcut
