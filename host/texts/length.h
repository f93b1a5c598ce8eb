// Texts: lengths as users write them.
#pragma once

#include <QString>

#include <optional>

namespace labelcut {

/// A length in points as the user writes it: millimetres or inches, by the locale.
QString lengthForUser(double points);
/// The same to a hundredth of a millimetre, for a field in which it can be changed.
QString lengthToEdit(double points);
/// Width and height in points as the user writes them.
QString measureForUser(double width, double height);
/// A length, read back; nothing when it is no length. @param text  a number, with mm, cm, in or pt
/// behind it or, without, in the unit of the country.
std::optional<double> pointsFromUser(const QString& text);

} // namespace labelcut
