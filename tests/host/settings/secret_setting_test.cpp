// Custom values that are passwords: known as such, shown as dots, never written down.
#include "host/settings/secret_setting.h"

#include <gtest/gtest.h>

#include "host/settings/checked_setting.h"
#include "host/settings/constraints.h"
#include "host/settings/setting_match.h"
#include "tests/support/job_fixtures.h"

namespace labelcut::test {

namespace {

constexpr char kAsking[] = R"ppd(
*OpenUI *Release/Held job: PickOne
*DefaultRelease: None
*Release None: ""
*CloseUI: *Release
*CustomRelease True/Custom: "pop"
*ParamCustomRelease Secret: 1 password 4 8
*OpenUI *Account/Account: PickOne
*DefaultAccount: None
*Account None: ""
*CloseUI: *Account
*CustomAccount True/Custom: "pop pop"
*ParamCustomAccount User: 1 string 1 20
*ParamCustomAccount Code: 2 passcode 4 8
*OpenUI *Serial/Serial: PickOne
*DefaultSerial: None
*Serial None: ""
*CloseUI: *Serial
*CustomSerial True/Custom: "pop"
*ParamCustomSerial Words: 1 string 2 9
)ppd";

Setting setting(const char* keyword, const char* choice) {
    return {QString::fromUtf8(keyword), QString::fromUtf8(choice)};
}

} // namespace

class SecretSettingTest : public testing::Test {
protected:
    std::string shown(const char* keyword, const char* choice) const {
        return shownChoice(mPpd.get(), setting(keyword, choice)).toStdString();
    }
    ppd::File mPpd = printerWith(kAsking);
};

TEST_F(SecretSettingTest, OnlyAPasswordThatWasGivenIsSecret) {
    EXPECT_TRUE(isSecret(mPpd.get(), setting("Release", "Custom.1234")));
    EXPECT_TRUE(isSecret(mPpd.get(), setting("release", "custom.1234")));
    EXPECT_TRUE(isSecret(mPpd.get(), setting("Account", "{User=eva Code=1234}")));
    EXPECT_FALSE(isSecret(mPpd.get(), setting("Release", "None")));
    EXPECT_FALSE(isSecret(mPpd.get(), setting("Serial", "Custom.1234")));
    EXPECT_FALSE(isSecret(mPpd.get(), setting("NoSuchOption", "Custom.1234")));
    EXPECT_FALSE(isSecret(nullptr, setting("Release", "Custom.1234")));
}

TEST_F(SecretSettingTest, APasswordIsShownAsDotsThatDoNotGiveAwayItsLength) {
    EXPECT_EQ(shown("Release", "Custom.1234"), "Custom.••••");
    EXPECT_EQ(shown("Release", "Custom.12345678"), "Custom.••••");
    EXPECT_EQ(shown("Account", "{User=eva Code=123456}"), "{User=eva Code=••••}");
    EXPECT_EQ(shown("Account", "{Code=123456"), "Custom.••••") << "malformed";
    EXPECT_EQ(shown("Release", "None"), "None");
    EXPECT_EQ(shown("Serial", "Custom.ab"), "Custom.ab");
}

TEST_F(SecretSettingTest, WhatIsWrittenDownHasNone) {
    Settings settings{setting("Serial", "Custom.ab"), setting("Release", "Custom.1234"),
                      setting("Account", "{User=eva Code=1234}")};
    EXPECT_EQ(takeSecrets(mPpd.get(), settings),
              (QStringList{QStringLiteral("Held job"), QStringLiteral("Account")}));
    EXPECT_EQ(settings, Settings{setting("Serial", "Custom.ab")});
    EXPECT_TRUE(takeSecrets(mPpd.get(), settings).isEmpty());
}

TEST_F(SecretSettingTest, NoSentenceAboutASettingGivesAPasswordAway) {
    const QString secret = QStringLiteral("TopSecretBeyondAllBounds");
    const Setting tooLong{QStringLiteral("Release"), QStringLiteral("Custom.") + secret};
    const Result<Setting> refused = checkedSetting(mPpd.get(), tooLong);
    ASSERT_FALSE(refused);
    EXPECT_FALSE(refused.error().sentence.contains(secret));
    EXPECT_TRUE(refused.error().sentence.contains(QStringLiteral("Release")));
    const SettingMatch match = matchSettings(mPpd.get(), {tooLong});
    ASSERT_EQ(match.missing.size(), 1U);
    EXPECT_FALSE(describe(mPpd.get(), match.missing.front()).contains(secret));
    EXPECT_FALSE(describe(mPpd.get(), tooLong).contains(secret));
}

} // namespace labelcut::test
