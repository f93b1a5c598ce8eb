// Presets in their files: what is kept, and what survives damage, a full disk and other writers.
#include "host/core/copies.h"
#include "host/presets/preset_store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QLockFile>
#include <QRegularExpression>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <thread>

#include "tests/support/preset_fixtures.h"

namespace labelcut {

using test::contentOf;
using test::Folder;
using test::samplePreset;
using test::tapeQueue;
using test::writeFile;
using testing::HasSubstr;

namespace {

const PrinterIdentity kTape = tapeQueue();

QString text(const char* utf8) {
    return QString::fromUtf8(utf8);
}

QStringList names(const PresetStore& store, const PrinterIdentity& printer = kTape) {
    QStringList all;
    for (const Preset& preset : store.list(printer).presets)
        all << preset.name;
    return all;
}

template<typename T>
std::string sentence(const Result<T>& result) {
    return result ? "(no error)" : result.error().sentence.toStdString();
}

void saveAll(PresetStore& store, const QStringList& wanted) {
    for (const QString& name : wanted) {
        const auto saved = store.save(kTape, samplePreset(name), Overwrite::No);
        EXPECT_TRUE(saved) << sentence(saved);
    }
}

/// The parts of a file around its list of presets.
QByteArray fileOf(const QByteArray& presets, const QByteArray& version = "1") {
    return R"({"format":"labelcut-presets","version":)" + version + R"(,"presets":)" + presets +
           "}";
}

} // namespace

class PresetStoreTest : public testing::Test {
protected:
    Folder folder;
    PresetStore store{folder.path()};
    const QString file = store.filePath(kTape);
};

TEST_F(PresetStoreTest, WithoutAFileThereIsNothing) {
    EXPECT_TRUE(store.list(kTape).presets.empty());
    EXPECT_TRUE(store.list(kTape).problems.isEmpty());
    EXPECT_EQ(folder.entries(), QStringList()) << "looking makes no file";
}

TEST_F(PresetStoreTest, WhatIsSavedIsLoadedByAnotherStore) {
    Preset preset = samplePreset(text("Küche – ラベル 🏷"));
    preset.pageSize = text("Custom.50x500mm");
    preset.options.insert(text("KvFrame"), text("{Width=3 Gap=0.5}"));
    ASSERT_TRUE(store.save(kTape, preset, Overwrite::No));

    const PresetStore other(folder.path());
    const Result<Preset> loaded = other.load(kTape, preset.name);
    ASSERT_TRUE(loaded) << sentence(loaded);
    EXPECT_EQ(*loaded, preset);
    EXPECT_EQ(folder.entries(), QStringList{QFileInfo(file).fileName()}) << "no lock stays";
}

TEST_F(PresetStoreTest, OnlyTheUserCanReadTheFile) {
    saveAll(store, {text("a")});
    struct stat status {};
    ASSERT_EQ(stat(QFile::encodeName(file).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600U);
}

TEST_F(PresetStoreTest, TheFolderIsMadeWhenItIsNeeded) {
    PresetStore deep(folder.path(text("a/b/presets")));
    saveAll(deep, {text("a")});
    EXPECT_EQ(names(deep), QStringList{text("a")});
}

TEST_F(PresetStoreTest, TheStandardFolderFollowsTheUsersConfiguration) {
    const test::Environment home("XDG_CONFIG_HOME", folder.path().toUtf8());
    EXPECT_EQ(PresetStore::standardFolder(), folder.path(text("labelcut/presets")));
}

TEST_F(PresetStoreTest, NamesAreSortedForPeople) {
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::English));
    saveAll(store, {text("10"), text("9"), text("b"), text("A")});
    EXPECT_EQ(names(store), (QStringList{text("9"), text("10"), text("A"), text("b")}));
    QLocale::setDefault(before);
}

TEST_F(PresetStoreTest, NamesAreComparedExactly) {
    // The same letter as one character and as two, and in another case.
    const QStringList all{text("\u00e9"), text("e\u0301"), text("\u00c9")};
    saveAll(store, all);
    EXPECT_EQ(store.list(kTape).presets.size(), 3U);
    for (const QString& name : all)
        EXPECT_EQ(store.load(kTape, name)->name, name);
    EXPECT_FALSE(store.load(kTape, text("e")));
}

TEST_F(PresetStoreTest, NamesThatCannotBeAreRefused) {
    const QString longest(Preset::kMaxNameLength, QChar(0x00E9));
    const QString longestPairs = text("🏷").repeated(Preset::kMaxNameLength);
    saveAll(store, {longest, longestPairs});
    for (const QString& name :
         {QString(), text("   "), text(" a"), text("a\t"), text("a\nb"),
          text("a\x7f"
               "b"),
          QString(QChar(0xD800)), longest + u'x', longestPairs + u'x', text("a\u2028b")}) {
        EXPECT_FALSE(store.save(kTape, samplePreset(name), Overwrite::Yes)) << name.toStdString();
        EXPECT_FALSE(store.rename(kTape, longest, name)) << name.toStdString();
    }
    EXPECT_EQ(store.list(kTape).presets.size(), 2U);
}

TEST_F(PresetStoreTest, ContentsThatCouldNotBeReadAgainAreRefused) {
    const auto refused = [&](auto&& spoil, const char* word) {
        Preset preset = samplePreset(text("a"));
        spoil(preset);
        const auto saved = store.save(kTape, preset, Overwrite::Yes);
        EXPECT_THAT(sentence(saved), HasSubstr(word));
    };
    refused([](Preset& p) { p.copies = 0; }, "copies");
    refused([](Preset& p) { p.copies = kMaxCopies + 1; }, "copies");
    refused([](Preset& p) { p.options.insert(QString(), text("ON")); }, "keyword");
    refused([](Preset& p) { p.options.insert(QString(41, u'k'), text("ON")); }, "keyword");
    refused([](Preset& p) { p.options.insert(text("KvMirror"), QString()); }, "KvMirror");
    refused([](Preset& p) { p.options.insert(text("PageSize"), text("DC24")); }, "page size");
    EXPECT_EQ(folder.entries(), QStringList());
}

TEST_F(PresetStoreTest, ASecondOfOneNameNeedsConsent) {
    saveAll(store, {text("a")});
    Preset other = samplePreset(text("a"));
    other.copies = 8;
    EXPECT_THAT(sentence(store.save(kTape, other, Overwrite::No)), HasSubstr("already"));
    EXPECT_EQ(store.load(kTape, text("a"))->copies, 3);
    ASSERT_TRUE(store.save(kTape, other, Overwrite::Yes));
    EXPECT_EQ(store.load(kTape, text("a"))->copies, 8);
    EXPECT_EQ(names(store), QStringList{text("a")});
}

TEST_F(PresetStoreTest, APresetIsRenamed) {
    saveAll(store, {text("a"), text("b")});
    ASSERT_TRUE(store.rename(kTape, text("a"), text("c")));
    EXPECT_EQ(names(store), (QStringList{text("b"), text("c")}));
    EXPECT_EQ(*store.load(kTape, text("c")), samplePreset(text("c")));
    EXPECT_TRUE(store.rename(kTape, text("c"), text("c"))) << "to its own name";
    EXPECT_THAT(sentence(store.rename(kTape, text("c"), text("b"))), HasSubstr("already"));
    EXPECT_THAT(sentence(store.rename(kTape, text("x"), text("y"))), HasSubstr("no preset “x”"));
    EXPECT_EQ(names(store), (QStringList{text("b"), text("c")}));
    ASSERT_TRUE(store.rename(kTape, text("c"), text("b"), Overwrite::Yes));
    EXPECT_EQ(names(store), QStringList{text("b")});
}

TEST_F(PresetStoreTest, APresetIsRemoved) {
    saveAll(store, {text("a"), text("b")});
    ASSERT_TRUE(store.remove(kTape, text("a")));
    EXPECT_EQ(names(store), QStringList{text("b")});
    EXPECT_THAT(sentence(store.remove(kTape, text("a"))), HasSubstr("It has “b”."));
    ASSERT_TRUE(store.remove(kTape, text("b")));
    EXPECT_THAT(sentence(store.load(kTape, text("b"))), HasSubstr("It has none."));
}

TEST_F(PresetStoreTest, EveryPrinterHasItsOwn) {
    const ppd::File ppd = test::tapePrinter();
    const PrinterIdentity byFile = PrinterIdentity::forPpd(ppd.get());
    const PrinterIdentity named = PrinterIdentity::forQueue(byFile.title());
    ASSERT_TRUE(store.save(kTape, samplePreset(text("a")), Overwrite::No));
    ASSERT_TRUE(store.save(byFile, samplePreset(text("b")), Overwrite::No));
    ASSERT_TRUE(store.save(named, samplePreset(text("c")), Overwrite::No));
    EXPECT_EQ(names(store), QStringList{text("a")});
    EXPECT_EQ(names(store, byFile), QStringList{text("b")});
    EXPECT_EQ(names(store, named), QStringList{text("c")});
}

TEST(PrinterIdentityTest, FileNamesAreSafeAndDiffer) {
    static const QRegularExpression safe(QStringLiteral("^[a-z0-9-]{1,80}\\.json$"));
    QStringList seen;
    for (const QString& name :
         {text("tape"), text("../../etc/passwd"), text("a/b"), text("a-b"), text("ä"), text("ö"),
          text("CON"), text(".."), text("a b"), QString(500, u'x'), QString(501, u'x')}) {
        const QString fileName = PrinterIdentity::forQueue(name).fileName();
        EXPECT_TRUE(safe.match(fileName).hasMatch()) << fileName.toStdString();
        EXPECT_FALSE(seen.contains(fileName)) << name.toStdString();
        seen << fileName;
    }
}

TEST(PrinterIdentityTest, QueuesAreOneWhateverTheCaseOfTheirAsciiLetters) {
    EXPECT_EQ(PrinterIdentity::forQueue(text("Tape")), PrinterIdentity::forQueue(text("tAPE")));
    EXPECT_FALSE(PrinterIdentity::forQueue(text("Ä")) == PrinterIdentity::forQueue(text("ä")));
}

TEST(PrinterIdentityTest, APpdIsKnownByWhatItSaysOfItself) {
    const ppd::File first = test::tapePrinter();
    const ppd::File second = test::tapePrinter();
    const PrinterIdentity identity = PrinterIdentity::forPpd(first.get());
    EXPECT_EQ(identity, PrinterIdentity::forPpd(second.get()));
    EXPECT_EQ(identity.title(), QStringLiteral("Tape 24"));
    EXPECT_EQ(identity.key(), QStringLiteral("ppd:Tape 24:TAPE.PPD"));
    EXPECT_FALSE(identity == PrinterIdentity::forPpd(nullptr));
}

// --- damage ---

struct Damage {
    const char* name;
    QByteArray bytes;
    const char* reason;
};

class DamagedFileTest : public PresetStoreTest, public testing::WithParamInterface<Damage> {};

TEST_P(DamagedFileTest, IsReportedAndKeptAsideByTheNextWrite) {
    writeFile(file, GetParam().bytes);
    // given presets of another printer, which must not suffer
    const PrinterIdentity other = PrinterIdentity::forQueue(text("roll"));
    ASSERT_TRUE(store.save(other, samplePreset(text("other")), Overwrite::No));

    // when looked at: told, untouched
    const PresetList list = store.list(kTape);
    EXPECT_TRUE(list.presets.empty());
    ASSERT_EQ(list.problems.size(), 1);
    EXPECT_THAT(list.problems.front().toStdString(), HasSubstr(GetParam().reason));
    EXPECT_THAT(list.problems.front().toStdString(), HasSubstr(file.toStdString()));
    EXPECT_EQ(contentOf(file), GetParam().bytes);

    // when written: the bytes stay under another name, and that is told
    for (int round = 1; round <= 2; ++round) {
        writeFile(file, GetParam().bytes);
        const auto saved = store.save(kTape, samplePreset(text("a")), Overwrite::No);
        ASSERT_TRUE(saved) << sentence(saved);
        const QString aside = QStringLiteral("%1.damaged-%2").arg(file).arg(round);
        ASSERT_EQ(saved->size(), 1);
        EXPECT_THAT(saved->front().toStdString(), HasSubstr(aside.toStdString()));
        EXPECT_EQ(contentOf(aside), GetParam().bytes);
        EXPECT_EQ(names(store), QStringList{text("a")});
    }
    EXPECT_EQ(contentOf(file + text(".damaged-1")), GetParam().bytes) << "nothing wrote over it";
    EXPECT_EQ(names(store, other), QStringList{text("other")});
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, DamagedFileTest,
    testing::Values(
        Damage{"Empty", "", "no JSON"}, Damage{"NotJson", "hello", "no JSON"},
        Damage{"Truncated", fileOf("[{\"name\":\"a\",\"copies\":1}").chopped(8), "no JSON"},
        Damage{"Binary", QByteArray("\0\xff\xfe{", 4), "no JSON"},
        Damage{"TooDeep", fileOf(QByteArray(5'000, '[')), "no JSON"},
        Damage{"Array", "[1]", "no preset file"},
        Damage{"OtherFormat", "{\"a\":1}", "no preset file"},
        Damage{"NewerVersion", fileOf("[]", "2"), "version"},
        Damage{"VersionText", fileOf("[]", "\"1\""), "version"},
        Damage{"NoList", fileOf("{}"), "list of presets"},
        Damage{"Huge", fileOf("[\"" + QByteArray(1024 * 1024, 'x') + "\"]"), "more than"}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(PresetStoreTest, AFileThatCannotBeReadIsReportedAndKeptAside) {
    writeFile(file, fileOf("[]"));
    ASSERT_EQ(chmod(QFile::encodeName(file).constData(), 0000), 0);
    ASSERT_EQ(chmod(QFile::encodeName(folder.path()).constData(), 0777), 0);
    {
        const test::Unprivileged user;
        EXPECT_EQ(store.list(kTape).problems.size(), 1);
        const auto saved = store.save(kTape, samplePreset(text("a")), Overwrite::No);
        ASSERT_TRUE(saved) << sentence(saved);
        EXPECT_EQ(saved->size(), 1);
        EXPECT_EQ(names(store), QStringList{text("a")});
    }
    EXPECT_TRUE(QFileInfo::exists(file + text(".damaged-1")));
}

TEST_F(PresetStoreTest, WhatIsNoFileIsNotWaitedFor) {
    ASSERT_EQ(mkfifo(QFile::encodeName(file).constData(), 0600), 0);
    EXPECT_EQ(store.list(kTape).problems.size(), 1);
    const auto saved = store.save(kTape, samplePreset(text("a")), Overwrite::No);
    ASSERT_TRUE(saved) << sentence(saved);
    EXPECT_EQ(names(store), QStringList{text("a")});
}

TEST_F(PresetStoreTest, ADamagedPresetLosesNothingElse) {
    const QByteArray bad = R"([
        {"name":"good","pageSize":"DC12","copies":2,"options":{"KvHalfCut":"ON"},"later":[1]},
        17, {"copies":1}, {"name":" x"}, {"name":"size","pageSize":4},
        {"name":"copies","copies":0}, {"name":"half","copies":1.5}, {"name":"list","options":[]},
        {"name":"type","options":{"KvHalfCut":true}}, {"name":"key","options":{"":"ON"}},
        {"name":"good","copies":9}, {"name":"last"}])";
    writeFile(file, fileOf(bad));

    const PresetList list = store.list(kTape);
    EXPECT_EQ(names(store), (QStringList{text("good"), text("last")}));
    EXPECT_EQ(list.problems.size(), 10);
    EXPECT_THAT(list.problems.join(u'\n').toStdString(), HasSubstr("number 2 in"));
    EXPECT_THAT(list.problems.join(u'\n').toStdString(), HasSubstr("The preset “copies” in"));
    EXPECT_EQ(list.presets.front().copies, 2) << "the first of a name counts";

    // A change elsewhere keeps the damaged ones, and what it does not know.
    ASSERT_TRUE(store.save(kTape, samplePreset(text("new")), Overwrite::No));
    Preset good = *store.load(kTape, text("good"));
    good.copies = 5;
    ASSERT_TRUE(store.save(kTape, good, Overwrite::Yes));
    EXPECT_EQ(store.list(kTape).problems.size(), 10);
    EXPECT_EQ(names(store), (QStringList{text("good"), text("last"), text("new")}));
    EXPECT_TRUE(contentOf(file).contains("\"later\""));

    // A damaged one goes when it is asked for by its name.
    ASSERT_TRUE(store.remove(kTape, text("copies")));
    EXPECT_EQ(store.list(kTape).problems.size(), 9);
}

TEST_F(PresetStoreTest, HandlingIsKeptAndItsDefaultsAreNotWritten) {
    const Handling odd{2, true, false, worker::Fit::Scale};
    ASSERT_TRUE(store.save(kTape, Preset::of(text("a"), {}, odd), Overwrite::No));
    EXPECT_EQ(static_cast<const Handling&>(*store.load(kTape, text("a"))), odd);
    for (const char* member : {"\"reversed\": true", "\"collated\": false", "\"fit\": \"scale\""})
        EXPECT_TRUE(contentOf(file).contains(member)) << member;
    ASSERT_TRUE(store.save(kTape, Preset::of(text("a"), {}), Overwrite::Yes));
    EXPECT_EQ(static_cast<const Handling&>(*store.load(kTape, text("a"))), Handling());
    for (const char* member : {"reversed", "collated", "fit"})
        EXPECT_FALSE(contentOf(file).contains(member)) << member;
    writeFile(file, fileOf(R"([{"name":"r","reversed":1}, {"name":"c","collated":"no"},
                               {"name":"f","fit":"wide"}, {"name":"n","fit":1}, {"name":"old"}])"));
    EXPECT_EQ(names(store), QStringList{text("old")});
    EXPECT_EQ(store.list(kTape).problems.size(), 4);
}

TEST_F(PresetStoreTest, AFullDiskLeavesTheOldFile) {
    saveAll(store, {text("a")});
    const QByteArray before = contentOf(file);
    const test::FullDisk disk(static_cast<rlim_t>(before.size()));
    const auto saved = store.save(kTape, samplePreset(text("b")), Overwrite::No);
    ASSERT_FALSE(saved);
    EXPECT_THAT(sentence(saved), HasSubstr(file.toStdString()));
    EXPECT_THAT(sentence(saved), HasSubstr("Make room"));
    EXPECT_EQ(contentOf(file), before);
    EXPECT_EQ(folder.entries().size(), 1) << "nothing half written stays";
}

TEST_F(PresetStoreTest, AFullDiskLeavesADamagedFileInItsPlace) {
    writeFile(file, "damaged");
    Preset large = samplePreset(text("b"));
    for (int number = 0; number < 100; ++number)
        large.options.insert(text("KvOption%1").arg(number), text("ON"));
    // Room enough for the lock.
    const test::FullDisk disk(1'000);
    const auto saved = store.save(kTape, large, Overwrite::No);
    EXPECT_THAT(sentence(saved), HasSubstr("Make room"));
    EXPECT_EQ(contentOf(file), "damaged");
    EXPECT_EQ(folder.entries().size(), 1);
}

TEST_F(PresetStoreTest, ADamagedFileThatCannotBeKeptAsideIsNotWrittenOver) {
    writeFile(file, "damaged");
    for (int number = 1; number <= 1'000; ++number)
        writeFile(text("%1.damaged-%2").arg(file).arg(number), "");
    const auto saved = store.save(kTape, samplePreset(text("b")), Overwrite::No);
    EXPECT_THAT(sentence(saved), HasSubstr("too many damaged files"));
    EXPECT_EQ(contentOf(file), "damaged");
    ASSERT_TRUE(QFile::remove(file + text(".damaged-1000")));
    EXPECT_TRUE(store.save(kTape, samplePreset(text("b")), Overwrite::No));
    EXPECT_EQ(contentOf(file + text(".damaged-1000")), "damaged");
}

TEST_F(PresetStoreTest, AClosedFolderLeavesTheOldFile) {
    saveAll(store, {text("a")});
    ASSERT_EQ(chmod(QFile::encodeName(file).constData(), 0644), 0);
    folder.close();
    const test::Unprivileged user;
    const auto saved = store.save(kTape, samplePreset(text("b")), Overwrite::No);
    ASSERT_FALSE(saved);
    EXPECT_THAT(sentence(saved), HasSubstr(file.toStdString()));
    EXPECT_THAT(sentence(saved), HasSubstr("let yourself write"));
    EXPECT_FALSE(store.remove(kTape, text("a")));
    EXPECT_EQ(names(store), QStringList{text("a")});
}

TEST_F(PresetStoreTest, AFolderThatCannotBeMadeIsNamed) {
    writeFile(folder.path(text("file")), "");
    PresetStore blocked(folder.path(text("file/presets")));
    EXPECT_THAT(sentence(blocked.save(kTape, samplePreset(text("b")), Overwrite::No)),
                HasSubstr("file/presets"));
}

TEST_F(PresetStoreTest, WithoutAPlaceNothingIsThereAndNothingIsWritten) {
    PresetStore nowhere{QString()};
    EXPECT_TRUE(nowhere.list(kTape).presets.empty());
    EXPECT_EQ(nowhere.list(kTape).problems, QStringList());
    EXPECT_THAT(sentence(nowhere.save(kTape, samplePreset(text("b")), Overwrite::No)),
                HasSubstr("no home folder"));
}

TEST_F(PresetStoreTest, AFileNeverGrowsBeyondWhatIsRead) {
    Preset large = samplePreset(text("large"));
    for (int i = 0; i < 200; ++i)
        large.options.insert(QStringLiteral("Kv%1").arg(i), QString(4'000, u'x'));
    ASSERT_TRUE(store.save(kTape, large, Overwrite::No));
    large.name = text("larger");
    EXPECT_THAT(sentence(store.save(kTape, large, Overwrite::No)), HasSubstr("remove presets"));
    EXPECT_EQ(names(store), QStringList{text("large")});
}

// --- several writers ---

TEST_F(PresetStoreTest, WritersAtOnceLoseNothing) {
    constexpr int kWriters = 4;
    constexpr int kPresets = 10;
    const auto writeSome = [&](int writer) {
        PresetStore own(folder.path());
        bool isGood = true;
        for (int i = 0; i < kPresets; ++i) {
            const QString name = QStringLiteral("%1-%2").arg(writer).arg(i);
            isGood = own.save(kTape, samplePreset(name), Overwrite::No) && isGood;
        }
        return isGood;
    };
    std::vector<pid_t> children;
    for (int writer = 0; writer < kWriters; ++writer) {
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0)
            _exit(writeSome(writer) ? 0 : 1);
        children.push_back(child);
    }
    // Threads of one process as well.
    std::thread thread([&] { EXPECT_TRUE(writeSome(kWriters)); });
    EXPECT_TRUE(writeSome(kWriters + 1));
    thread.join();
    for (const pid_t child : children) {
        int status = -1;
        waitpid(child, &status, 0);
        EXPECT_EQ(status, 0);
    }
    EXPECT_EQ(store.list(kTape).presets.size(), std::size_t((kWriters + 2) * kPresets));
    EXPECT_EQ(folder.entries().size(), 1) << "no lock stays";
}

TEST_F(PresetStoreTest, ALockThatIsHeldIsNotWaitedForForEver) {
    QLockFile other(file + text(".lock"));
    ASSERT_TRUE(other.lock());
    EXPECT_THAT(sentence(store.save(kTape, samplePreset(text("a")), Overwrite::No)),
                HasSubstr("another program"));
    EXPECT_EQ(names(store), QStringList());
}

TEST_F(PresetStoreTest, AProgramThatWasKilledLeavesNoLock) {
    int ready[2] = {};
    ASSERT_EQ(pipe(ready), 0);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        QLockFile lock(file + text(".lock"));
        const char isLocked = lock.lock() ? 1 : 0;
        if (write(ready[1], &isLocked, 1) != 1)
            _exit(1);
        pause();
        _exit(0);
    }
    char isLocked = 0;
    ASSERT_EQ(read(ready[0], &isLocked, 1), 1);
    ASSERT_EQ(isLocked, 1);
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    close(ready[0]);
    close(ready[1]);
    saveAll(store, {text("a")});
    EXPECT_EQ(names(store), QStringList{text("a")});
}

} // namespace labelcut
