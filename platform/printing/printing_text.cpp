// Our printing framework: its sentences, in the running language.
#include "platform/printing/printing_text.h"

#include "platform/toolkit/text_table.h"

/// Outside of any namespace, as the macro wants it.
static void initPrintingTexts() {
    Q_INIT_RESOURCE(labelcut_printing_texts);
}

namespace labelcut {

QString printingText(const char* key) {
    // Made by the first look-up on whatever thread, which others wait for; read only from then on.
    // Never destroyed: a call in the background may still fail while the program ends.
    static const TextTable* const table = [] {
        initPrintingTexts();
        return new TextTable(QStringLiteral(":/labelcut/printing"), QStringLiteral("Printing"));
    }();
    return table->text(key);
}

} // namespace labelcut
