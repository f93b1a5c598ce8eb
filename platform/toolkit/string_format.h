// Toolkit: string formats, "%@" and the C conversions over a typed argument list.
//
//   %[n$][flags][width][.precision][length]conversion
//
// Flags are - + # 0 and the blank (' is read and ignored: no grouping); width and precision are
// digits or *; lengths are hh h l ll q L z t j. Conversions and what they take:
//
//   @          anything: its description, "(null)" for nothing
//   d i D      an integer, signed; o O u U x X  the same, unsigned
//   f F e E g G a A  a real number
//   c C        an integer: the character of that code; s S  a text; p  a pointer, in hexadecimal
//   %          no argument: a percent sign
//
// A format is never trusted. Whatever it holds, only the given arguments are read, and
//  - a directive that finds no argument, an unknown or unfinished one, and %n are printed as they
//    are written, and take no argument;
//  - numbers become each other as the conversion asks (a real number for %d is cut towards zero and
//    saturates); for any other mismatch the argument's description is printed;
//  - an integer without a length modifier is shown whole, with one it is cut to that length;
//  - width and precision end at kMaxFieldWidth; they count UTF-16 units of texts, and a precision
//    never cuts a surrogate pair in two;
//  - arguments left over are ignored.
// Numbers look the same in every locale, and as the C library prints them in "C".
#pragma once

#include <QString>
#include <QVariant>

#include <array>
#include <concepts>
#include <cstdint>
#include <optional>
#include <span>
#include <type_traits>
#include <variant>

class QObject;

namespace labelcut {

/// Fields are never made wider, and numbers never more precise, than this.
inline constexpr int kMaxFieldWidth = 1000;

/// Anything that says what it is.
template<typename T>
concept Describable = requires(const T& object) {
    { object.description() } -> std::convertible_to<QString>;
};

/// One argument of a format: an integer, a real number, a pointer, or anything with a description.
/// Texts and descriptions are copied when the argument is made.
class FormatArgument {
public:
    /// Integers keep their width, so that a negative one shows the right digits when unsigned.
    using Value = std::variant<int, unsigned, long long, unsigned long long, double, const void*,
                               std::optional<QString>>;

    template<std::integral T>
    FormatArgument(T value)
        : mValue(widened(value)) {}
    template<std::floating_point T>
    FormatArgument(T value)
        : mValue(static_cast<double>(value)) {}
    template<typename T>
    requires std::is_enum_v<T> FormatArgument(T value)
        : FormatArgument(static_cast<std::underlying_type_t<T>>(value)) {}
    FormatArgument(std::nullptr_t)
        : mValue(std::optional<QString>()) {}
    FormatArgument(const QString& text)
        : mValue(std::optional(text)) {}
    FormatArgument(const std::optional<QString>& text)
        : mValue(text) {}
    /// A C string in the system's default encoding, malformed bytes shown as U+FFFD; null is
    /// nothing.
    FormatArgument(const char* text);
    /// "<Class: 0xaddress>", with the object's name if it has one; null is nothing.
    FormatArgument(const QObject* object);
    FormatArgument(const QVariant& value);
    FormatArgument(const void* pointer)
        : mValue(pointer) {}
    template<Describable T>
    FormatArgument(const T* object)
        : mValue(object ? std::optional<QString>(object->description()) : std::nullopt) {}
    template<Describable T>
    FormatArgument(const T& object)
        : FormatArgument(&object) {}

    const Value& value() const { return mValue; }
    /// What "%@" prints, or nothing.
    std::optional<QString> description() const;

private:
    template<std::integral T>
    static Value widened(T value) {
        constexpr bool fitsInt =
            sizeof(T) < sizeof(int) || (sizeof(T) == sizeof(int) && std::is_signed_v<T>);
        if constexpr (fitsInt)
            return static_cast<int>(value);
        else if constexpr (sizeof(T) == sizeof(unsigned))
            return static_cast<unsigned>(value);
        else if constexpr (std::is_signed_v<T>)
            return static_cast<long long>(value);
        else
            return static_cast<unsigned long long>(value);
    }

    Value mValue;
};

/// The format filled with the arguments.
/// @param format     any text, see above.
/// @param arguments  taken from first to last; directives with n$ take the n-th and leave the order
///                   of the others alone.
QString formatArguments(const QString& format, std::span<const FormatArgument> arguments);

/// Arguments of any types as a list, which lives until the end of the call it is written into.
template<typename... Args>
std::array<FormatArgument, sizeof...(Args)> formatArgumentList(const Args&... args) {
    return {FormatArgument(args)...};
}

/// formatArguments() of a list written out.
template<typename... Args>
QString stringWithFormat(const QString& format, const Args&... args) {
    return formatArguments(format, formatArgumentList(args...));
}

} // namespace labelcut
