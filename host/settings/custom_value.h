// Settings: values that the user gives where a PPD allows custom ones.
#pragma once

#include <QString>

#include <cups/ppd.h>

#include "host/settings/ppd_calls.h"

namespace labelcut {

/// Whether it is written as such: "Custom.VALUE", or "{NAME=VALUE …}" for several parameters.
bool isCustomValue(const QString& choice);

/// Whether the option, which has a custom choice, takes the value: a number, measure (points, or
/// with pt, in, ft, mm, cm or m behind it) or text within the bounds that the PPD gives, a paper
/// within those of custom papers, or all parameters of several.
/// @param ppd     not null. @param option  one of its options.
/// @param choice  a custom value as it is written.
bool takesCustomValue(ppd_file_t* ppd, const ppd_option_t& option, const QString& choice);

} // namespace labelcut
