// Tests of the toolkit: a bundle's texts, pictures and interface files.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "host/panels/resource_bundle.h"

namespace labelcut::test {
namespace {

QString built() {
    return QStringLiteral(LABELCUT_BUNDLE_DIR);
}

struct LanguageRow {
    const char* locale;
    const char* yes;
};

TEST(BundleLanguage, IsTheBestMatchElseEnglish) {
    constexpr LanguageRow kLanguages[] = {
        {"en", "Yes"},
        {"en_GB", "Yes"},
        {"de", "Ja"},
        {"de_AT", "Ja"},
        {"fr_CA", "Oui"},
        {"es_MX", "S\xC3\xAD"},
        {"ja_JP", "\xE3\x81\xAF\xE3\x81\x84"},
        {"zh_CN", "\xE6\x98\xAF"},
        {"zh", "\xE6\x98\xAF"},
        {"sv_SE", "Yes"},
        {"C", "Yes"},
    };
    for (const LanguageRow& row : kLanguages) {
        const ResourceBundle bundle(built(), QLocale(QLatin1String(row.locale)));
        EXPECT_EQ(bundle.localizedStringForKey(QStringLiteral("RS_STitle_Yes"), {}, {}),
                  QString::fromUtf8(row.yes))
            << row.locale;
    }
}

TEST(BundleText, WithoutAnEntryIsTheValueElseTheKey) {
    const ResourceBundle bundle(built(), QLocale::c());
    const QString key = QStringLiteral("no such key");
    EXPECT_EQ(bundle.localizedStringForKey(key, {}, {}), key);
    EXPECT_EQ(bundle.localizedStringForKey(key, QStringLiteral("value"), {}),
              QStringLiteral("value"));
    EXPECT_EQ(bundle.localizedStringForKey(key, QStringLiteral(""), {}), QString());
    EXPECT_EQ(bundle.localizedStringForKey(QString(), {}, {}), QString());
    EXPECT_EQ(
        bundle.localizedStringForKey(QStringLiteral("RS_Labels"), QStringLiteral("value"), {}),
        QStringLiteral("labels"));
}

TEST(BundleText, KeysAreExact) {
    const ResourceBundle bundle(built(), QLocale::c());
    for (const char* key : {"rs_labels", "RS_Labels ", "RS_Label", "labels", "&", "<b>", "%1", "é"})
        EXPECT_EQ(bundle.localizedStringForKey(QString::fromUtf8(key), {}, {}),
                  QString::fromUtf8(key));
}

TEST(BundleText, ComesFromTheNamedTable) {
    QTemporaryDir folder;
    const ResourceBundle bundle(folder.path(), QLocale(QStringLiteral("de")));
    const QString key = QStringLiteral("RS_STitle_Yes");
    ASSERT_TRUE(QFile::copy(built() + QStringLiteral("/Localizable_de.qm"),
                            folder.filePath(QStringLiteral("Other_de.qm"))));
    EXPECT_EQ(bundle.localizedStringForKey(key, {}, {}), key);
    EXPECT_EQ(bundle.localizedStringForKey(key, {}, QStringLiteral("Other")), QStringLiteral("Ja"));
    EXPECT_EQ(bundle.localizedStringForKey(key, {}, QStringLiteral("None")), key);
    EXPECT_EQ(bundle.localizedStringForKey(key, QStringLiteral("v"), QStringLiteral("None")),
              QStringLiteral("v"));
}

TEST(BundleText, OfABrokenTableIsTheKey) {
    QTemporaryDir folder;
    for (const char* name : {"Localizable_de.qm", "Localizable_en.qm"}) {
        QFile out(folder.filePath(QLatin1String(name)));
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        out.write("not a table");
    }
    const ResourceBundle bundle(folder.path(), QLocale(QStringLiteral("de")));
    EXPECT_EQ(bundle.localizedStringForKey(QStringLiteral("RS_Labels"), {}, {}),
              QStringLiteral("RS_Labels"));
}

TEST(BundleText, FallsBackToEnglishWhenTheLanguageIsNotThere) {
    QTemporaryDir folder;
    ASSERT_TRUE(QFile::copy(built() + QStringLiteral("/Localizable_en.qm"),
                            folder.filePath(QStringLiteral("Localizable_en.qm"))));
    const ResourceBundle bundle(folder.path(), QLocale(QStringLiteral("de")));
    EXPECT_EQ(bundle.localizedStringForKey(QStringLiteral("RS_STitle_Yes"), {}, {}),
              QStringLiteral("Yes"));
}

TEST(BundleFiles, AreFoundByBareName) {
    QTemporaryDir folder;
    for (const char* name : {"a.svg", "a.png", "b.png", "c.ui", "d.jpg", ".svg"}) {
        QFile out(folder.filePath(QLatin1String(name)));
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
    }
    QDir(folder.path()).mkdir(QStringLiteral("sub"));
    ASSERT_TRUE(QFile::copy(folder.filePath(QStringLiteral("a.svg")),
                            folder.filePath(QStringLiteral("sub/e.svg"))));
    const ResourceBundle bundle(folder.path(), QLocale::c());
    const auto picture = [&](const char* name) {
        return bundle.pathForImageResource(QLatin1String(name));
    };
    EXPECT_EQ(picture("a"), folder.filePath(QStringLiteral("a.svg")));
    EXPECT_EQ(picture("b"), folder.filePath(QStringLiteral("b.png")));
    for (const char* none : {"c", "d", "e", "sub/e", "", "a.svg", "../x", "A"})
        EXPECT_TRUE(picture(none).isNull()) << none;
    EXPECT_EQ(bundle.pathForInterfaceFile(QStringLiteral("c")),
              folder.filePath(QStringLiteral("c.ui")));
    EXPECT_TRUE(bundle.pathForInterfaceFile(QStringLiteral("a")).isNull());
}

} // namespace
} // namespace labelcut::test
