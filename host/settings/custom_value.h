// Settings: values that the user gives where a PPD allows custom ones.
#pragma once

#include <QString>
#include <QStringList>

#include <cups/ppd.h>

#include <optional>
#include <vector>

#include "host/settings/ppd_calls.h"

namespace labelcut {

/// The choice keyword under which a PPD offers custom values.
inline constexpr QLatin1String kCustom("Custom");

/// Whether it is written as such: "Custom.VALUE", or "{NAME=VALUE …}" for several parameters.
bool isCustomValue(const QString& choice);

/// Whether the option, which has a custom choice, takes the value: a number, measure (points, or
/// with pt, in, ft, mm, cm or m behind it) or text within the bounds that the PPD gives, a paper
/// within those of custom papers, or all parameters of several.
/// @param ppd     not null. @param option  one of its options.
/// @param choice  a custom value as it is written.
bool takesCustomValue(ppd_file_t* ppd, const ppd_option_t& option, const QString& choice);

/// Whether a number lies within the parameter's bounds; of a text, its length in characters.
bool isWithinBounds(const ppd::CustomParameter& parameter, double number);

/// What an option's custom value consists of, and how it is put together and taken apart.
///
/// Values are written as PPDs have them: numbers with a point, lengths in points (1/72 inch).
class CustomForm {
public:
    /// @param ppd      borrowed for the call; null: nothing is asked for.
    /// @param keyword  an option's main keyword; nothing is asked for where it takes no custom
    /// value.
    CustomForm(ppd_file_t* ppd, const QString& keyword);

    /// What the user is asked for, in the order of the values. Of a label size these are width and
    /// height; how it is fed is the printer's business.
    const std::vector<ppd::CustomParameter>& parameters() const { return mParameters; }
    /// The choice that stands for the values. @param values  one for each parameter.
    QString composed(const QStringList& values) const;
    /// The values of a choice, one for each parameter, lengths in points whatever their unit was.
    /// Nothing when it is no custom value of this form; whether the values lie within their bounds
    /// is not looked at.
    std::optional<QStringList> takenApart(const QString& choice) const;

private:
    std::optional<QStringList> collected(const QString& collection) const;

    bool mIsLabelSize;
    std::vector<ppd::CustomParameter> mParameters;
};

} // namespace labelcut
