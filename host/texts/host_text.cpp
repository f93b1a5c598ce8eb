// Labelcut's own texts, in the running language.
#include "host/texts/host_text.h"

#include "platform/toolkit/resource_bundle.h"

namespace labelcut {

QString hostText(const char* key) {
    static const ResourceBundle bundle(QStringLiteral(":/labelcut/host"));
    return bundle.localizedStringForKey(QLatin1String(key), QString(), QStringLiteral("Labelcut"));
}

QString hostText(const char* one, const char* many, int count) {
    return hostText(count == 1 ? one : many).arg(count);
}

} // namespace labelcut
