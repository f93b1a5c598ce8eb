#include "plugins/cut_options/diagnostics/pde_log.h"

#include "host/settings/ppd_calls.h"
#include "tests/plugins/cut_options/diagnostics/captured_output.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <csignal>
#include <cstring>

#include <sys/resource.h>

using namespace labelcut;
using labelcut::test::LogLines;

namespace {

constexpr char kPPD[] = R"ppd(*PPD-Adobe: "4.3"
*FormatVersion: "4.3"
*FileVersion: "1.0"
*LanguageVersion: English
*LanguageEncoding: ISOLatin1
*PCFileName: "DUMP.PPD"
*Manufacturer: "Labelcut"
*Product: "(Dump)"
*ModelName: "Dump"
*ShortNickName: "Dump"
*NickName: "Dump"
*PSVersion: "(3010.000) 0"
*LanguageLevel: "3"
*ColorDevice: False
*DefaultColorSpace: Gray
*OpenUI *PageSize/Media Size: PickOne
*DefaultPageSize: DC24
*PageSize DC24/24 mm: ""
*CloseUI: *PageSize
*OpenUI *PageRegion: PickOne
*DefaultPageRegion: DC24
*PageRegion DC24/24 mm: ""
*CloseUI: *PageRegion
*DefaultImageableArea: DC24
*ImageableArea DC24/24 mm: "0 0 68 283"
*DefaultPaperDimension: DC24
*PaperDimension DC24/24 mm: "68 283"
*OpenUI *KvHalfCut/Half Cut: PickOne
*OrderDependency: 12.5 AnySetup *KvHalfCut
*DefaultKvHalfCut: ON
*KvHalfCut OFF/Off: ""
*KvHalfCut ON/On: ""
*CloseUI: *KvHalfCut
)ppd";

class OptionDump : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(folder.isValid());
        QFile file(folder.filePath(QStringLiteral("dump.ppd")));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(kPPD);
        file.close();
        ppd::OpenError error;
        opened = ppd::openFile(file.fileName(), &error);
        ASSERT_TRUE(opened) << error.reason.toStdString() << " in line " << error.line;
        option = ppd::findOption(opened.get(), "KvHalfCut");
        ASSERT_TRUE(option);
    }
    QStringList dump() {
        log.lines.clear();
        _PDELog_ppd_option_t(opened.get(), "KvHalfCut");
        return log.lines;
    }

    QTemporaryDir folder;
    ppd::File opened;
    ppd_option_t* option = nullptr;
    LogLines log;
};

TEST_F(OptionDump, LogsThirteenLinesInOrder) {
    ppd::markOption(opened.get(), "KvHalfCut", "ON");
    const QStringList expected{
        QStringLiteral("+-+-+-+-+-+-+-+-+-+- start is KvHalfCut"),
        QStringLiteral("***** conflicted | "),
        QStringLiteral("***** keyword | KvHalfCut"),
        QStringLiteral("***** defchoice | ON"),
        QStringLiteral("***** text | Half Cut"),
        QStringLiteral("***** ui == 1"),
        QStringLiteral("***** section == 0"),
        QStringLiteral("***** order == 12.500000"),
        QStringLiteral("***** num_choices == 2"),
        QStringLiteral("***** choices->marked | "),
        QStringLiteral("***** choices->choice | OFF"),
        QStringLiteral("***** choices->text | Off"),
        QStringLiteral("+-+-+-+-+-+-+-+-+-+- end is KvHalfCut"),
    };
    EXPECT_EQ(dump(), expected);
}

TEST_F(OptionDump, ShowsAFlagAsItsByteAndTheTextThatFollowsIt) {
    ppd::markOption(opened.get(), "KvHalfCut", "OFF");
    option->conflicted = 1;
    const QStringList lines = dump();
    EXPECT_EQ(lines.value(1), QStringLiteral("***** conflicted | \u0001KvHalfCut"));
    EXPECT_EQ(lines.value(9), QStringLiteral("***** choices->marked | \u0001OFF"));
}

TEST_F(OptionDump, ReadsNothingBeyondAFieldWithoutATerminator) {
    ppd_choice_t& first = option->choices[0];
    std::memset(option->defchoice, 'd', sizeof option->defchoice);
    std::memset(option->text, 't', sizeof option->text);
    std::memset(first.choice, 'k', sizeof first.choice);
    first.marked = 'm';
    const QStringList lines = dump();
    const QString choice(PPD_MAX_NAME, u'k');
    EXPECT_EQ(lines.value(3), QStringLiteral("***** defchoice | ") + QString(PPD_MAX_NAME, u'd'));
    EXPECT_EQ(lines.value(4), QStringLiteral("***** text | ") + QString(PPD_MAX_TEXT, u't'));
    EXPECT_EQ(lines.value(9), QStringLiteral("***** choices->marked | m") + choice);
    EXPECT_EQ(lines.value(10), QStringLiteral("***** choices->choice | ") + choice);
}

TEST_F(OptionDump, ShowsTextsThatCannotBeDecodedAsNull) {
    std::strcpy(option->text, "\xFF");
    option->conflicted = static_cast<char>(0x80);
    const QStringList lines = dump();
    EXPECT_EQ(lines.value(1), QStringLiteral("***** conflicted | (null)"));
    EXPECT_EQ(lines.value(4), QStringLiteral("***** text | (null)"));
}

TEST_F(OptionDump, ReadsNoTextAsAFormat) {
    std::strcpy(option->text, "100%d%@%n");
    EXPECT_EQ(dump().value(4), QStringLiteral("***** text | 100%d%@%n"));
}

TEST_F(OptionDump, ShowsNoChoiceOfAnOptionWithoutChoices) {
    const int count = std::exchange(option->num_choices, 0);
    const QStringList lines = dump();
    option->num_choices = count;
    ASSERT_EQ(lines.size(), 13);
    EXPECT_EQ(lines.value(8), QStringLiteral("***** num_choices == 0"));
    EXPECT_EQ(lines.value(9), QStringLiteral("***** choices->marked | (null)"));
    EXPECT_EQ(lines.value(10), QStringLiteral("***** choices->choice | (null)"));
    EXPECT_EQ(lines.value(11), QStringLiteral("***** choices->text | (null)"));
}

TEST_F(OptionDump, SaysOnlyThatNoPPDIsLoaded) {
    _PDELog_ppd_option_t(nullptr, "KvHalfCut");
    _PDELog_ppd_option_t(nullptr, nullptr);
    const QString message = QStringLiteral("PPD file is not loaded!!");
    EXPECT_EQ(log.lines, (QStringList{message, message}));
}

TEST_F(OptionDump, SaysOnlyThatTheNameIsNull) {
    _PDELog_ppd_option_t(opened.get(), nullptr);
    EXPECT_EQ(log.lines, QStringList{QStringLiteral("ppdOptionName is NULL!!")});
}

TEST_F(OptionDump, LogsNothingForAnOptionThatTheFileLacks) {
    _PDELog_ppd_option_t(opened.get(), "KvNoSuchOption");
    EXPECT_EQ(log.lines, QStringList());
}

/// Print settings that only have a data representation.
class Settings : public PMPrintSettings {
public:
    OSStatus value(const QString&, QVariant*) const override { return kPMKeyNotFound; }
    OSStatus setValue(const QString&, const QVariant&, bool) override { return kPMGeneralError; }
    OSStatus firstPage(std::uint32_t*) const override { return kPMGeneralError; }
    OSStatus setFirstPage(std::uint32_t, bool) override { return kPMGeneralError; }
    OSStatus lastPage(std::uint32_t*) const override { return kPMGeneralError; }
    OSStatus setLastPage(std::uint32_t, bool) override { return kPMGeneralError; }
    OSStatus dataRepresentation(PMDataFormat format, QByteArray* bytes) const override {
        EXPECT_EQ(format, PMDataFormat::XMLDefault);
        if (status == noErr)
            *bytes = data;
        return status;
    }

    OSStatus status = noErr;
    QByteArray data = "<plist/>";
};

class SettingsDump : public testing::Test {
protected:
    QStringList files() const { return QDir(folder.path()).entryList(QDir::Files | QDir::Hidden); }
    QByteArray content(const char* name) const {
        QFile file(folder.filePath(QLatin1String(name)));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
    }
    void dump(const char* name) {
        _PDELog_PMPrintSettings_WriteToFile(&settings, QString::fromUtf8(name), folder.path());
    }

    QTemporaryDir folder;
    Settings settings;
    LogLines log;
};

TEST_F(SettingsDump, WritesThePropertyListUnderTheNameGiven) {
    dump("before");
    EXPECT_EQ(files(), QStringList{QStringLiteral("KvPDE_before.plist")});
    EXPECT_EQ(content("KvPDE_before.plist"), "<plist/>");
}

TEST_F(SettingsDump, ReplacesAnOlderFile) {
    dump("x");
    settings.data = "newer";
    dump("x");
    EXPECT_EQ(content("KvPDE_x.plist"), "newer");
}

TEST_F(SettingsDump, TakesPercentSignsOfTheNameAsTheyAre) {
    dump("%@ %d");
    EXPECT_EQ(files(), QStringList{QStringLiteral("KvPDE_%@ %d.plist")});
}

TEST_F(SettingsDump, WritesNothingWithoutSettingsOrName) {
    _PDELog_PMPrintSettings_WriteToFile(nullptr, QStringLiteral("x"), folder.path());
    _PDELog_PMPrintSettings_WriteToFile(&settings, std::nullopt, folder.path());
    EXPECT_EQ(files(), QStringList());
}

TEST_F(SettingsDump, WritesNothingWhenNoDataComesBack) {
    settings.status = kPMGeneralError;
    dump("x");
    settings.status = noErr;
    settings.data = QByteArray();
    dump("x");
    EXPECT_EQ(files(), QStringList());
}

TEST_F(SettingsDump, IsSilentAboutAFolderThatIsNotThere) {
    _PDELog_PMPrintSettings_WriteToFile(&settings, QStringLiteral("x"),
                                        folder.filePath(QStringLiteral("missing")));
    EXPECT_EQ(files(), QStringList());
    EXPECT_EQ(log.lines, QStringList());
}

TEST_F(SettingsDump, LeavesTheOldFileAndNoHalfOneWhenTheDiskTakesNoMore) {
    dump("x");
    settings.data = QByteArray(100'000, 'n');
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit small{1000, before.rlim_max};
    auto* const handler = std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &small);
    dump("x");
    dump("y");
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(content("KvPDE_x.plist"), "<plist/>");
    EXPECT_EQ(files(), QStringList{QStringLiteral("KvPDE_x.plist")});
}

} // namespace
