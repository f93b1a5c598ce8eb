// What the command line does with presets.
#include "host/presets/preset_commands.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/preset_fixtures.h"

namespace labelcut {

using testing::HasSubstr;

namespace {

QString text(const char* utf8) {
    return QString::fromUtf8(utf8);
}

} // namespace

class PresetCommandsTest : public testing::Test {
protected:
    test::Folder folder;
    PresetStore store{folder.path()};
    const PrinterIdentity printer = test::tapeQueue();

    QStringList listed() const { return presetcommands::list(store, printer)->lines; }
};

TEST_F(PresetCommandsTest, TheirLivesFromEndToEnd) {
    EXPECT_EQ(listed(), QStringList());
    const auto saved =
        presetcommands::save(store, printer, test::samplePreset(text("Küche")), Overwrite::No);
    ASSERT_TRUE(saved);
    EXPECT_EQ(saved->lines, QStringList{text("Saved “Küche” for “tape”.")});
    EXPECT_EQ(listed(), QStringList{text("Küche")});

    const auto renamed =
        presetcommands::rename(store, printer, text("Küche"), text("b"), Overwrite::No);
    ASSERT_TRUE(renamed);
    EXPECT_EQ(listed(), QStringList{text("b")});
    ASSERT_TRUE(presetcommands::remove(store, printer, text("b")));
    EXPECT_EQ(listed(), QStringList());
}

TEST_F(PresetCommandsTest, ShowGivesWhatCanBeTyped) {
    ASSERT_TRUE(store.save(printer, test::samplePreset(text("a")), Overwrite::No));
    const auto shown = presetcommands::show(store, printer, text("a"));
    ASSERT_TRUE(shown);
    EXPECT_EQ(shown->lines, (QStringList{text("PageSize=DC12"), text("KvHalfCut=ON"),
                                         text("KvMargin=Custom.7"), text("copies=3")}));
    EXPECT_TRUE(shown->warnings.isEmpty());
}

TEST_F(PresetCommandsTest, ShowWarnsOfWhatThePrinterLacks) {
    Preset preset = test::samplePreset(text("a"));
    preset.options.insert(text("KvGone"), text("ON"));
    ASSERT_TRUE(store.save(printer, preset, Overwrite::No));
    const ppd::File ppd = test::tapePrinter();
    const auto shown = presetcommands::show(store, printer, text("a"), ppd.get());
    ASSERT_TRUE(shown);
    EXPECT_TRUE(shown->lines.contains(text("KvGone=ON")));
    ASSERT_EQ(shown->warnings.size(), 1);
    EXPECT_THAT(shown->warnings.front().toStdString(), HasSubstr("KvGone"));
}

TEST_F(PresetCommandsTest, DamageIsAWarning) {
    test::writeFile(store.filePath(printer), "damaged");
    const auto listed = presetcommands::list(store, printer);
    ASSERT_TRUE(listed);
    EXPECT_EQ(listed->warnings.size(), 1);
    const auto saved =
        presetcommands::save(store, printer, test::samplePreset(text("a")), Overwrite::No);
    ASSERT_TRUE(saved);
    EXPECT_EQ(saved->warnings.size(), 1);
}

TEST_F(PresetCommandsTest, FailuresAreTheStores) {
    EXPECT_FALSE(presetcommands::show(store, printer, text("a")));
    EXPECT_FALSE(presetcommands::remove(store, printer, text("a")));
    EXPECT_FALSE(presetcommands::rename(store, printer, text("a"), text("b"), Overwrite::No));
    ASSERT_TRUE(store.save(printer, test::samplePreset(text("a")), Overwrite::No));
    EXPECT_FALSE(
        presetcommands::save(store, printer, test::samplePreset(text("a")), Overwrite::No));
}

TEST_F(PresetCommandsTest, ChoicesBecomeAPresetAndBack) {
    const Settings typed{{text("KvHalfCut"), text("OFF")},
                         {text("PageSize"), text("DC24")},
                         {text("KvHalfCut"), text("ON")}};
    const Preset preset = Preset::of(text("a"), typed, Handling{2});
    EXPECT_EQ(preset.pageSize, text("DC24"));
    EXPECT_EQ(preset.copies, 2);
    EXPECT_EQ(preset.settings(),
              (Settings{{text("PageSize"), text("DC24")}, {text("KvHalfCut"), text("ON")}}));
}

} // namespace labelcut
