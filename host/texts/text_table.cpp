// Toolkit: one string table of a bundle, looked up by key.
#include "host/texts/text_table.h"

namespace labelcut {

TextTable::TextTable(const QString& root, const QString& name, const QLocale& locale) {
    const QString suffix = QStringLiteral(".qm");
    if (!mMessages.load(locale, name, QStringLiteral("_"), root, suffix))
        static_cast<void>(mMessages.load(name + QStringLiteral("_en") + suffix, root));
}

QString TextTable::text(const char* key) const {
    const QString found = find(key);
    return found.isNull() ? QString::fromUtf8(key) : found;
}

} // namespace labelcut
