// Settings: the lists in libcups' records of a PPD, and its way of comparing names.
#pragma once

#include <QByteArray>

#include <cups/ppd.h>

#include <cstddef>
#include <span>
#include <string_view>

namespace labelcut::ppd {

/// Empty for no file.
inline std::span<ppd_group_t> groupsOf(const ppd_file_t* file) {
    return file ? std::span(file->groups, static_cast<std::size_t>(file->num_groups))
                : std::span<ppd_group_t>();
}

inline std::span<ppd_option_t> optionsOf(const ppd_group_t& group) {
    return {group.options, static_cast<std::size_t>(group.num_options)};
}

inline std::span<ppd_choice_t> choicesOf(const ppd_option_t& option) {
    return {option.choices, static_cast<std::size_t>(option.num_choices)};
}

inline std::span<ppd_size_t> sizesOf(const ppd_file_t& file) {
    return {file.sizes, static_cast<std::size_t>(file.num_sizes)};
}

/// Without regard to the case of ASCII letters.
inline bool isSameName(std::string_view a, std::string_view b) {
    return a.size() == b.size() && qstrnicmp(a.data(), static_cast<qsizetype>(a.size()), b.data(),
                                             static_cast<qsizetype>(b.size())) == 0;
}

} // namespace labelcut::ppd
