// The dialog: what is said when choices exclude each other.
#include "host/dialog/conflict_message.h"

#include "host/dialog/job_model.h"
#include "host/dialog/message_bar.h"
#include "host/texts/host_text.h"

namespace labelcut {

namespace {
const QString kName = QStringLiteral("conflict");
} // namespace

void showConflict(JobModel& model, MessageBar& messages) {
    model.searchFix();
    QString sentence = model.conflictSentence();
    if (sentence.isEmpty()) {
        messages.remove(kName);
        return;
    }
    std::vector<MessageAction> ways;
    bool gaveUp = false;
    if (const QString fix = model.fixText(&gaveUp); !fix.isEmpty())
        ways.push_back({hostText("FixConflict").arg(fix), [&model] { model.applyFix(); }});
    if (gaveUp)
        sentence += u' ' + gaveUpSentence();
    if (model.canUndo())
        ways.push_back({hostText("Undo"), [&model] { model.undo(); }});
    messages.show(kName, MessageBar::Kind::Warning, sentence, ways);
}

void completeConflict(JobModel& model, MessageBar& messages) {
    if (messages.shows(kName))
        showConflict(model, messages);
}

} // namespace labelcut
