// Settings: what differs between two lists of them, and what is marked in a PPD.
#include "host/settings/setting.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include <algorithm>

#include "host/settings/ppd_calls.h"
#include "host/settings/ppd_view.h"

namespace labelcut::test {

namespace {

/// As the function's description says it, however long that takes.
Settings differingOneByOne(const Settings& settings, const Settings& others) {
    Settings different;
    for (const Setting& setting : settings) {
        if (choiceFor(others, setting.keyword) != setting.choice)
            different.push_back(setting);
    }
    return different;
}

/// Every list of up to three keywords, in every order, each with one of two choices.
std::vector<Settings> smallLists() {
    const QStringList keywords{QStringLiteral("A"), QStringLiteral("B"), QStringLiteral("C")};
    std::vector<Settings> all{{}};
    for (std::size_t from = 0; from < all.size(); ++from) {
        const Settings shorter = all[from];
        for (const QString& keyword : keywords) {
            if (choiceFor(shorter, keyword))
                continue;
            for (const char* choice : {"1", "2"}) {
                all.push_back(shorter);
                all.back().push_back({keyword, QLatin1String(choice)});
            }
        }
    }
    return all;
}

/// The tape sample with an option of which several choices may be marked.
ppd::File openWithPickMany() {
    const QTemporaryDir folder;
    QFile sample(QStringLiteral(LABELCUT_SAMPLES "/tape.ppd"));
    QFile changed(folder.filePath(QStringLiteral("many.ppd")));
    if (!sample.open(QIODevice::ReadOnly) || !changed.open(QIODevice::WriteOnly))
        qFatal("no PPD to test with");
    changed.write(sample.readAll() + "*OpenUI *Extras/Extras: PickMany\n*DefaultExtras: None\n"
                                     "*Extras None/None: \"\"\n*Extras One/One: \"\"\n"
                                     "*Extras Two/Two: \"\"\n*CloseUI: *Extras\n");
    changed.close();
    return ppd::openFile(changed.fileName(), nullptr);
}

/// All marks, one look-up for each option.
Settings marksOneByOne(const PpdView& view) {
    Settings all;
    for (const PpdView::Group& group : view.groups()) {
        for (const auto& option : group.options) {
            const std::optional<QString> marked = view.marked(option.keyword);
            if (marked && option.keyword != kPageRegion)
                all.push_back({option.keyword, *marked});
        }
    }
    return all;
}

} // namespace

TEST(SettingTest, WhatDiffersIsFoundInAnyOrder) {
    const std::vector<Settings> lists = smallLists();
    ASSERT_EQ(lists.size(), 1U + 6 + 24 + 48);
    for (const Settings& settings : lists) {
        for (const Settings& others : lists)
            ASSERT_EQ(differing(settings, others), differingOneByOne(settings, others));
    }
}

TEST(PpdViewTest, AllMarksAreThoseOfTheKeywordsOneByOne) {
    const ppd::File file = openWithPickMany();
    ASSERT_TRUE(file);
    const PpdView view(file.get());
    EXPECT_EQ(view.marks(), Settings()) << "nothing is marked yet";
    ppd::markDefaults(file.get());
    EXPECT_EQ(view.marks(), marksOneByOne(view));
    for (const auto& [keyword, choice] :
         std::initializer_list<std::pair<const char*, const char*>>{{"Quality", "Best"},
                                                                    {"Quality", "Draft"},
                                                                    {"FeedLength", "Custom.72"},
                                                                    {"PageSize", "Custom.100x200"},
                                                                    {"Extras", "Two"},
                                                                    {"Extras", "One"}}) {
        ASSERT_TRUE(ppd::markOption(file.get(), keyword, choice)) << keyword << ' ' << choice;
        EXPECT_EQ(view.marks(), marksOneByOne(view)) << keyword << ' ' << choice;
    }
    ASSERT_TRUE(ppd::unmarkOption(file.get(), "Quality"));
    EXPECT_FALSE(choiceFor(view.marks(), QStringLiteral("Quality")));
    EXPECT_EQ(view.marks(), marksOneByOne(view));
}

} // namespace labelcut::test
