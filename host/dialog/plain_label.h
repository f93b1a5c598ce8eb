// The dialog: labels for texts that come from elsewhere.
#pragma once

#include <QString>

class QLabel;
class QWidget;

namespace labelcut {

/// A label that takes its text as it is, no markup, and stands at the side where its layout begins
/// also when the text is of the other direction.
QLabel* plainLabel(const QString& text = {});

/// The name of a field beside it, as plain text on one line or, where it is long, on several.
/// @param field  the label's buddy.
QLabel* fieldLabel(const QString& name, QWidget& field);

} // namespace labelcut
