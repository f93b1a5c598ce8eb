// Saved options are understood as the system's own library and tool understand them.
#include "host/settings/saved_options.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QProcess>

#include <cups/cups.h>

#include <map>
#include <random>
#include <span>

#include "tests/support/preset_fixtures.h"
#include "tests/support/private_cupsd.h"

namespace labelcut {

namespace {

using Options = std::map<std::string, std::string>;

Options libraryOptions(const QByteArray& text) {
    cups_option_t* list = nullptr;
    const int count = cupsParseOptions(text.constData(), 0, &list);
    Options all;
    for (const cups_option_t& option : std::span(list, static_cast<std::size_t>(count)))
        all[option.name] = option.value;
    cupsFreeOptions(count, list);
    return all;
}

Options ourOptions(const Settings& settings) {
    Options all;
    for (const Setting& setting : settings)
        all[setting.keyword.toStdString()] = setting.choice.toStdString();
    return all;
}

} // namespace

TEST(SavedDefaultsOracleTest, TextIsTakenAsTheLibraryTakesIt) {
    std::mt19937 random(20'231); // NOLINT: the same lines every time
    const QByteArray alphabet = "abN= ==  {}'\"\\,o\t1";
    for (int round = 0; round < 50'000; ++round) {
        QByteArray text;
        for (auto length = random() % 16; length > 0; --length)
            text += alphabet.at(static_cast<qsizetype>(random() % std::size_t(alphabet.size())));
        ASSERT_EQ(ourOptions(parseOptionText(text)), libraryOptions(text)) << text.constData();
    }
}

TEST(SavedDefaultsOracleTest, WhatTheToolWritesIsRead) {
    test::PrivateCupsd service;
    ASSERT_TRUE(service.start()) << service.errorLog().toStdString();
    const QString ppd = QStringLiteral(LABELCUT_TEST_DATA "/tiny_tape.ppd");
    ASSERT_TRUE(service.addQueue(QStringLiteral("tape"), ppd));
    const test::Folder home;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("CUPS_SERVER"), service.socketPath());
    environment.insert(QStringLiteral("CUPS_SERVERROOT"), home.path(QStringLiteral("etc")));
    environment.insert(QStringLiteral("HOME"), home.path());
    QDir(home.path()).mkpath(QStringLiteral("etc"));
    const auto lpoptions = [&](const QStringList& arguments) {
        QProcess process;
        process.setProcessEnvironment(environment);
        process.setProcessChannelMode(QProcess::ForwardedChannels);
        process.start(QStringLiteral("lpoptions"), arguments);
        EXPECT_TRUE(process.waitForFinished() && process.exitCode() == 0);
    };
    const QString o = QStringLiteral("-o");
    lpoptions({QStringLiteral("-p"), QStringLiteral("tape"), o, QStringLiteral("KvHalfCut=ON"), o,
               QStringLiteral("note=\"it's \\\"two\\\" words\\\\\"")});
    lpoptions(
        {QStringLiteral("-p"), QStringLiteral("tape/narrow"), o, QStringLiteral("PageSize=DC12")});
    lpoptions({QStringLiteral("-d"), QStringLiteral("tape/narrow")});

    // Root's choices are the system's, a user's are in the home.
    const SavedOptions saved = readSavedOptions(
        {home.path(QStringLiteral("etc/lpoptions")), home.path(QStringLiteral(".cups/lpoptions"))});
    EXPECT_TRUE(saved.problems.isEmpty());
    const Options queue = ourOptions(saved.optionsOf({QStringLiteral("tape"), {}}));
    EXPECT_EQ(queue.at("KvHalfCut"), "ON");
    EXPECT_EQ(queue.at("note"), "it's \"two\" words\\");
    const Options narrow =
        ourOptions(saved.optionsOf({QStringLiteral("tape"), QStringLiteral("narrow")}));
    EXPECT_EQ(narrow.at("PageSize"), "DC12");
    EXPECT_EQ(saved.defaultDestination,
              (Destination{QStringLiteral("tape"), QStringLiteral("narrow")}));
}

} // namespace labelcut
