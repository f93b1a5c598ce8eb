// Failures and states as a German user reads them.
#include <gtest/gtest.h>

#include <QTemporaryDir>

#include "host/documents/documents.h"
#include "host/documents/job_document.h"
#include "host/job/job_sender.h"
#include "host/presets/preset_store.h"
#include "host/printers/printer_directory.h"
#include "host/printers/printer_state.h"
#include "host/settings/checked_setting.h"
#include "host/settings/setting_match.h"

namespace labelcut {

namespace {

QString text(const char* utf8) {
    return QString::fromUtf8(utf8);
}

Queue pausedQueue() {
    Queue queue;
    queue.state = PMPrinterState::Stopped;
    queue.stateReasons = QStringList{text("paused"), text("media-empty-error")};
    queue.stateMessage = text("Paused");
    return queue;
}

} // namespace

TEST(GermanText, TellsOfPrinters) {
    EXPECT_EQ(stateSentence(pausedQueue()),
              text("Angehalten: Aufträge warten, bis er fortgesetzt wird. Papier oder Band ist "
                   "aufgebraucht."));
    EXPECT_EQ(stateSentence(Queue()), text("Bereit."));
    EXPECT_EQ(reasonText(text("blade-blunt-warning")), text("Der Drucker meldet: blade blunt"));
    EXPECT_EQ(goneSentence(text("%1 & %2")).left(40),
              text("Der Drucker „%1 & %2“ ist nicht mehr da:"));
    const auto ppd = openPpd("no PPD", text("Küche %2"));
    ASSERT_FALSE(ppd);
    EXPECT_TRUE(ppd.error().sentence.startsWith(
        text("Die Druckerbeschreibung (PPD) von „Küche %2“ ist nicht verwendbar: ")))
        << ppd.error().sentence.toStdString();
}

TEST(GermanText, TellsOfDocuments) {
    const QTemporaryDir folder;
    const QString odd = folder.filePath(text("%2 %1.pdf"));
    EXPECT_EQ(copyDocument(odd, folder.filePath(text("copy"))).error().sentence,
              text("„") + odd + text("“ gibt es nicht; prüfen Sie den Namen der Datei."));
    EXPECT_EQ(copyDocument(folder.path(), folder.filePath(text("copy"))).error().sentence,
              text("„") + folder.path() + text("“ ist ein Ordner; nennen Sie eine Datei darin."));
    EXPECT_EQ(JobDocument::prepare({}, std::nullopt).error().sentence,
              text("Es ist keine Datei genannt; nennen Sie eine, die gedruckt werden soll."));
    EXPECT_EQ(noSuchPage(PageSelection({4, 9}), 3),
              text("Im Bereich 4-9 gibt es kein Etikett; das Dokument hat 3."));
}

TEST(GermanText, TellsOfSettings) {
    const ppd::File ppd = ppd::openFile(text(LABELCUT_SAMPLES "/tape.ppd"), nullptr);
    ASSERT_TRUE(ppd);
    const auto wrong = [&](const char* keyword, const char* choice) {
        return checkedSetting(ppd.get(), {text(keyword), text(choice)}).error().sentence;
    };
    EXPECT_EQ(wrong("KvHalfCutt", "ON"),
              text("Der Drucker hat keine Option „KvHalfCutt“; meinten Sie KvHalfCut?"));
    EXPECT_EQ(wrong("KvHalfCut", "%3"),
              text("Die Option KvHalfCut hat keine Einstellung „%3“; sie bietet OFF, ON."));
}

TEST(GermanText, TellsOfPresets) {
    const QTemporaryDir folder;
    PresetStore store(folder.path());
    const PrinterIdentity printer = PrinterIdentity::forQueue(text("Küche %2"));
    EXPECT_EQ(store.load(printer, text("Lang")).error().sentence,
              text("Der Drucker „Küche %2“ hat keine Vorgabe „Lang“. Es gibt keine."));
    Preset preset;
    preset.name = text("Kurz");
    ASSERT_TRUE(store.save(printer, preset, Overwrite::No));
    EXPECT_EQ(store.load(printer, text("Lang")).error().sentence,
              text("Der Drucker „Küche %2“ hat keine Vorgabe „Lang“. Es gibt „Kurz“."));
    preset.name = QString();
    EXPECT_EQ(store.save(printer, preset, Overwrite::No).error().sentence,
              text("Eine Vorgabe braucht einen Namen."));
}

TEST(GermanText, TellsOfChoicesThatAreGone) {
    const ppd::File ppd = ppd::openFile(text(LABELCUT_SAMPLES "/tape.ppd"), nullptr);
    ASSERT_TRUE(ppd);
    const SettingMatch match = matchSettings(ppd.get(), {{text("KvGone"), text("%1")}});
    EXPECT_EQ(
        describe(ppd.get(), match.missing),
        QStringList{text("Dieser Drucker hat keine Option „KvGone“ (mehr), sodass „KvGone=%1“ "
                         "nicht verwendet werden kann.")});
}

} // namespace labelcut
