// The dialog: lengths as users write them.
#pragma once

#include <QString>

#include <optional>

namespace labelcut {

/// A length in points as the user writes it: millimetres or inches, by the locale.
QString lengthForUser(double points);
/// Width and height in points as the user writes them.
QString measureForUser(double width, double height);
/// A length, read back; nothing when it is no length. @param text  a number, its unit optional.
std::optional<double> pointsFromUser(const QString& text);

} // namespace labelcut
