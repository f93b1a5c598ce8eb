// Labelcut's own texts, in the running language.
#include "host/texts/host_text.h"

#include "host/texts/text_table.h"

/// Outside of any namespace, as the macro wants it.
static void initHostTexts() {
    Q_INIT_RESOURCE(labelcut_texts);
}

namespace labelcut {

namespace {

/// Made by the first look-up on whatever thread, which others wait for; read only from then on.
/// Never destroyed: a call in the background may still have something to say at the program's end.
const TextTable& table() {
    static const TextTable* const texts = [] {
        initHostTexts();
        return new TextTable(QStringLiteral(":/labelcut/host"), QStringLiteral("Labelcut"));
    }();
    return *texts;
}

} // namespace

QString hostText(const char* key) {
    return table().text(key);
}

QString hostText(const char* one, const char* many, int count) {
    return hostText(count == 1 ? one : many).arg(count);
}

QString joinedSentences(const QStringList& sentences) {
    QString all;
    for (const QString& sentence : sentences)
        all = all.isEmpty() ? sentence : hostText("SentenceAfterSentence").arg(all, sentence);
    return all;
}

} // namespace labelcut
