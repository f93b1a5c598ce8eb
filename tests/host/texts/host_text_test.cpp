// Labelcut's texts, in each of its languages, and asked for by several threads at once.
#include "host/texts/host_text.h"

#include <gtest/gtest.h>

#include <QDirIterator>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include <barrier>
#include <thread>
#include <vector>

#include "host/texts/text_table.h"

namespace labelcut {

namespace {

/// Every room's texts by key, each an object of languages.
QJsonObject allTexts() {
    QJsonObject all;
    QDirIterator tables(QStringLiteral(LABELCUT_HOST), {QStringLiteral("texts.json")}, QDir::Files,
                        QDirIterator::Subdirectories);
    while (tables.hasNext()) {
        QFile file(tables.next());
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        const QJsonObject root = QJsonDocument::fromJson(file.readAll()).object();
        const QJsonObject texts = root.value(QLatin1String("texts")).toObject();
        for (auto text = texts.begin(); text != texts.end(); ++text)
            all.insert(text.key(), text.value());
    }
    return all;
}

} // namespace

// The first of all, so that these look-ups are the process's first as well.
TEST(HostText, IsFoundByManyThreadsAtOnceFromTheFirstLookUpOn) {
    constexpr int kThreads = 16;
    std::barrier start(kThreads);
    std::vector<QString> found(kThreads);
    std::vector<std::thread> threads;
    threads.reserve(kThreads);
    for (QString& text : found)
        threads.emplace_back([&start, &text] {
            start.arrive_and_wait();
            for (int i = 0; i < 200; ++i)
                text = hostText("OneLabel", "ManyLabels", 2);
        });
    for (std::thread& thread : threads)
        thread.join();
    for (const QString& text : found)
        EXPECT_EQ(text, QStringLiteral("2 labels"));
}

TEST(HostText, IsTheTablesInEveryLanguage) {
    ASSERT_EQ(hostText("Cancel"), QStringLiteral("Cancel")); // the resources are there
    const QJsonObject all = allTexts();
    ASSERT_GT(all.size(), 200);
    for (const char* language : {"en", "de", "fr", "es", "ja", "zh_CN"}) {
        const TextTable table(QStringLiteral(":/labelcut/host"), QStringLiteral("Labelcut"),
                              QLocale(QLatin1String(language)));
        for (auto text = all.begin(); text != all.end(); ++text)
            EXPECT_EQ(table.find(text.key().toUtf8().constData()),
                      text.value().toObject().value(QLatin1String(language)).toString())
                << language << ", " << text.key().toStdString();
    }
}

TEST(HostText, IsEnglishInALanguageWithoutTable) {
    const TextTable table(QStringLiteral(":/labelcut/host"), QStringLiteral("Labelcut"),
                          QLocale(QLocale::Finnish));
    EXPECT_EQ(table.text("Cancel"), QStringLiteral("Cancel"));
}

TEST(HostText, OfAnUnknownKeyIsTheKey) {
    EXPECT_EQ(hostText("NoSuchKey"), QStringLiteral("NoSuchKey"));
    EXPECT_EQ(TextTable(QStringLiteral(":/nowhere"), QStringLiteral("None")).text("Key"),
              QStringLiteral("Key"));
    EXPECT_TRUE(
        TextTable(QStringLiteral(":/nowhere"), QStringLiteral("None")).find("Key").isNull());
}

TEST(HostText, JoinsSentences) {
    EXPECT_EQ(joinedSentences({}), QString());
    EXPECT_EQ(joinedSentences({QStringLiteral("One.")}), QStringLiteral("One."));
    EXPECT_EQ(joinedSentences({QStringLiteral("%2."), QStringLiteral("%1."), QStringLiteral("3.")}),
              QStringLiteral("%2. %1. 3."));
}

} // namespace labelcut
