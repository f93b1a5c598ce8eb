// Resource tests: every language has a text of its own for every key the panel asks for.
#include "tests/plugins/cut_options/resources/picture_names.h"

#include <gtest/gtest.h>

#include <QSet>
#include <QTranslator>

namespace {

const QStringList checkBoxes{
    QStringLiteral("mCutEveryChkBx"),    QStringLiteral("mCutAndEndChkBx"),
    QStringLiteral("mMirrorPrintChkBx"), QStringLiteral("mAutoCutChkBx"),
    QStringLiteral("mHalfCutChkBx"),     QStringLiteral("mChainPrintChkBx"),
    QStringLiteral("mSpecialTapeChkBx"), QStringLiteral("mRemoveBlkSpaceChkBx")};

const QStringList titleKeys{
    QStringLiteral("RS_CutAtEvery"),     QStringLiteral("RS_CutAtEnd"),
    QStringLiteral("RS_MirrorPrinting"), QStringLiteral("RS_AutoTapeCut"),
    QStringLiteral("RS_HalfCut"),        QStringLiteral("RS_ChainPrinting"),
    QStringLiteral("RS_SpecialTape"),    QStringLiteral("RS_RemoveBlkSpace")};

QStringList pictureKeys() {
    QStringList keys;
    for (const QString& name : labelcut::test::pictureNames())
        keys << QStringLiteral("AX_") + name;
    return keys;
}

QStringList allKeys() {
    QStringList keys = titleKeys + pictureKeys();
    for (const QString& box : checkBoxes)
        keys << QStringLiteral("AX_") + box;
    for (const char* key : {"OP_PANEL_NAME",
                            "RS_Labels",
                            "RS_STitle_CutLabels",
                            "RS_STitle_AutoTapeCut",
                            "RS_STitle_CutAtEnd",
                            "RS_STitle_HalfCut",
                            "RS_STitle_SpecialTape",
                            "RS_STitle_ChainPrint",
                            "RS_STitle_MirrorPrinting",
                            "RS_STitle_RemoveBlkSpace",
                            "RS_STitle_Yes",
                            "RS_STitle_No",
                            "AX_mOptionPopUpButton",
                            "AX_mCutEveryTxBx",
                            "AX_mCutEveryStpr",
                            "AX_StepUp",
                            "AX_StepDown",
                            "AX_OptionView",
                            "TT_SpecialTapeExcludes",
                            "TT_PaperForbidsRemoveBlkSpace",
                            "TT_CountFollowsCutEvery",
                            "RM_SpecialTapeExcludes",
                            "RM_OneAfterAnother"})
        keys << QLatin1String(key);
    return keys;
}

struct Language {
    const char* code;
};

std::ostream& operator<<(std::ostream& out, const Language& language) {
    return out << language.code;
}

class Strings : public testing::TestWithParam<Language> {
protected:
    void SetUp() override {
        ASSERT_TRUE(mTable.load(QStringLiteral(LABELCUT_BUNDLE_DIR "/Localizable_") +
                                QLatin1String(GetParam().code) + QStringLiteral(".qm")));
    }

    QString text(const QString& key) const {
        return mTable.translate("", key.toUtf8().constData());
    }

    QTranslator mTable;
};

TEST_P(Strings, HaveATextForEveryKey) {
    EXPECT_EQ(allKeys().size(), 63);
    for (const QString& key : allKeys()) {
        const QString value = text(key);
        EXPECT_FALSE(value.trimmed().isEmpty()) << key.toStdString();
        EXPECT_EQ(value, value.trimmed()) << key.toStdString();
        EXPECT_NE(value, key);
    }
    EXPECT_TRUE(text(QStringLiteral("RS_NoSuchKey")).isNull());
}

TEST_P(Strings, SayOfEachPictureWhatNoOtherSays) {
    const QStringList keys = pictureKeys();
    QSet<QString> texts;
    for (const QString& key : keys)
        texts << text(key);
    EXPECT_EQ(texts.size(), keys.size());
}

TEST_P(Strings, KeepTitlesShortAndApart) {
    QSet<QString> titles;
    for (const QString& key : titleKeys) {
        EXPECT_LE(text(key).size(), 24) << text(key).toStdString();
        titles << text(key);
    }
    EXPECT_EQ(titles.size(), titleKeys.size());
}

TEST_P(Strings, AreTranslated) {
    if (QLatin1String(GetParam().code) == QLatin1String("en"))
        return;
    QTranslator english;
    ASSERT_TRUE(english.load(QStringLiteral(LABELCUT_BUNDLE_DIR "/Localizable_en.qm")));
    for (const QString& key : allKeys()) {
        // "No" is the same word in more than one language, and most put a comma into a list.
        if (key == QLatin1String("RS_STitle_No") || key == QLatin1String("RM_OneAfterAnother"))
            continue;
        EXPECT_NE(text(key), english.translate("", key.toUtf8().constData()));
    }
}

INSTANTIATE_TEST_SUITE_P(EveryLanguage, Strings,
                         testing::Values(Language{"en"}, Language{"de"}, Language{"fr"},
                                         Language{"es"}, Language{"ja"}, Language{"zh_CN"}),
                         testing::PrintToStringParamName());

} // namespace
