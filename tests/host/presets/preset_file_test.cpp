// Tests of what a preset file holds when it holds names twice.
#include "host/presets/preset_file.h"

#include <gtest/gtest.h>

#include "tests/support/preset_fixtures.h"

namespace labelcut::test {
namespace {

/// A file with presets of these names, each with its place as its copies.
PresetFile fileOf(const QStringList& names) {
    QStringList entries;
    for (const QString& name : names)
        entries += QStringLiteral(R"({"name":"%1","copies":%2})").arg(name).arg(entries.size() + 1);
    const QString text =
        QStringLiteral(R"({"format":"labelcut-presets","version":1,"presets":[%1]})");
    QString problem;
    return PresetFile::fromBytes(text.arg(entries.join(u',')).toUtf8(), &problem).value();
}

int copiesOf(const PresetFile& file, const char* name) {
    const std::optional<Preset> preset = file.find(QLatin1String(name));
    return preset ? preset->copies : 0;
}

TEST(PresetFile, ARenamedPresetReplacesAllThatHaveTheName) {
    for (const QStringList& names :
         {QStringList{"b", "b", "a"}, QStringList{"b", "a", "b"}, QStringList{"a", "b", "b"}}) {
        PresetFile file = fileOf(names);
        const int copies = copiesOf(file, "a");
        ASSERT_TRUE(file.rename(QStringLiteral("a"), QStringLiteral("b")));
        EXPECT_EQ(copiesOf(file, "b"), copies) << names.join(u' ').toStdString();
        EXPECT_EQ(file.entries().size(), 1U) << names.join(u' ').toStdString();
    }
}

TEST(PresetFile, APresetRenamedToItsOwnNameStaysWithThoseOfTheName) {
    PresetFile file = fileOf({"a", "a", "c"});
    ASSERT_TRUE(file.rename(QStringLiteral("a"), QStringLiteral("a")));
    EXPECT_EQ(copiesOf(file, "a"), 1);
    EXPECT_EQ(file.entries().size(), 3U);
}

TEST(PresetFile, OfTwoOfOneNameTheSecondCountsOnceTheFirstHasAnother) {
    PresetFile file = fileOf({"a", "a"});
    ASSERT_TRUE(file.rename(QStringLiteral("a"), QStringLiteral("c")));
    EXPECT_EQ(copiesOf(file, "c"), 1);
    EXPECT_EQ(copiesOf(file, "a"), 2);
}

TEST(PresetFile, ARemovedPresetTakesThoseOfItsNameAlong) {
    PresetFile file = fileOf({"a", "b", "a"});
    ASSERT_TRUE(file.remove(QStringLiteral("a")));
    EXPECT_EQ(copiesOf(file, "b"), 2);
    EXPECT_EQ(file.entries().size(), 1U);
    EXPECT_FALSE(file.remove(QStringLiteral("a")));
}

} // namespace
} // namespace labelcut::test
