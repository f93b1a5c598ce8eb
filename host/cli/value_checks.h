// The command line: values of a certain kind.
#pragma once

#include <CLI/CLI.hpp>

namespace labelcut {

/// Takes plain decimal whole numbers, without sign or leading zeros.
/// @param option  as it is typed, such as "--copies". @param lowest  0 or more.
CLI::Validator wholeNumber(const char* option, int lowest, int highest);

/// Takes the words of fitNamed(). @param option  as it is typed.
CLI::Validator fit(const char* option);

/// Takes decimal numbers with or without a fraction.
/// @param option  as it is typed. @param highest  both ends are allowed.
CLI::Validator number(const char* option, double lowest, double highest);

} // namespace labelcut
