// The dialog: checkboxes as assistive programs see them.
#pragma once

namespace labelcut {

/// From now on what an assistive program does to a checkbox is a click, as a user's would be: Qt's
/// own way changes the tick only, so that whoever waits for clicks, as panels do, hears nothing.
/// Any number of calls.
void makeAccessibleTogglesClicks();

} // namespace labelcut
