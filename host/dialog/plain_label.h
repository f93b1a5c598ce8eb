// The dialog: labels for texts that come from elsewhere.
#pragma once

#include <QString>

class QLabel;

namespace labelcut {

/// A label that takes its text as it is, no markup, and stands at the side where its layout begins
/// also when the text is of the other direction.
QLabel* plainLabel(const QString& text = {});

} // namespace labelcut
