// Input fields: the sound of a refusal.
#include "plugins/cut_options/fields/system_beep.h"

#include <QApplication>

#include <utility>

namespace labelcut {

namespace {

Beep replacement;

} // namespace

void systemBeep() {
    if (replacement)
        replacement();
    else
        QApplication::beep();
}

Beep setSystemBeep(Beep beep) {
    return std::exchange(replacement, std::move(beep));
}

} // namespace labelcut
