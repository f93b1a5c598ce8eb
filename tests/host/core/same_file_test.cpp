// Whether two names lead to one file.
#include "host/core/same_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QFile>

#include <unistd.h>

#include "tests/support/job_fixtures.h"

namespace labelcut {

TEST(SameFileTest, LinksOfBothKindsLeadToTheFile) {
    const test::Folder folder;
    const QString file = folder.file(QStringLiteral("file"), "x");
    const QString other = folder.file(QStringLiteral("other"), "x");
    const QString soft = folder.path(QStringLiteral("soft"));
    const QString hard = folder.path(QStringLiteral("hard"));
    ASSERT_TRUE(QFile::link(file, soft));
    ASSERT_EQ(link(QFile::encodeName(file).constData(), QFile::encodeName(hard).constData()), 0);
    for (const QString& name : {file, soft, hard, folder.path(QStringLiteral("./file"))}) {
        EXPECT_EQ(sameFileAmong(name, {other, file}), file);
        EXPECT_EQ(sameFileAmong(file, {other, name}), name);
    }
    EXPECT_EQ(sameFileAmong(file, {other}), std::nullopt) << "of the same content";
}

TEST(SameFileTest, WhatIsNotThereIsNoFile) {
    const test::Folder folder;
    const QString file = folder.file(QStringLiteral("file"), "x");
    const QString none = folder.path(QStringLiteral("none"));
    EXPECT_EQ(sameFileAmong(none, {none, file}), std::nullopt);
    EXPECT_EQ(sameFileAmong(file, {none, QString()}), std::nullopt);
    EXPECT_EQ(sameFileAmong(QString(), {QString()}), std::nullopt);
}

TEST(SameFileTest, TheRefusalNamesBoth) {
    const test::Folder folder;
    const QString file = folder.file(QStringLiteral("file"), "x");
    const QString soft = folder.path(QStringLiteral("soft"));
    ASSERT_TRUE(QFile::link(file, soft));
    EXPECT_FALSE(reasonAgainstReplacing(soft, {}));
    const auto reason = reasonAgainstReplacing(soft, {file});
    ASSERT_TRUE(reason);
    EXPECT_THAT(reason->sentence.toStdString(),
                testing::AllOf(testing::HasSubstr("/soft” would replace"),
                               testing::HasSubstr("/file”, which is in use")));
}

} // namespace labelcut
