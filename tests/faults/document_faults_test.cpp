// Faults of documents: what was there when the dialog opened is not there when Print is pressed.
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>

#include "tests/faults/fault_fixtures.h"

namespace labelcut::test {

using testing::HasSubstr;

namespace {

struct Loss {
    const char* name;
    void (*happens)(const QString& document);
    const char* said;
};

void PrintTo(const Loss& loss, std::ostream* out) {
    *out << loss.name;
}

void replaceBy(const QString& path, const QByteArray& contents) {
    fileWith(path, contents);
}

constexpr Loss kLosses[] = {
    {"Deleted", [](const QString& path) { EXPECT_TRUE(QFile::remove(path)); }, "does not exist"},
    {"Emptied", [](const QString& path) { replaceBy(path, ""); }, "is empty"},
    {"CutOff", [](const QString& path) { replaceBy(path, contentOf(path).left(100)); },
     "is a broken PDF"},
    {"AnotherKind", [](const QString& path) { replaceBy(path, QByteArray("PK\x03\x04\0", 5)); },
     "is not a PDF"},
    {"AFolder",
     [](const QString& path) {
         EXPECT_TRUE(QFile::remove(path));
         EXPECT_TRUE(QDir().mkdir(path));
     },
     "is a folder"},
    {"APipe",
     [](const QString& path) {
         EXPECT_TRUE(QFile::remove(path));
         EXPECT_EQ(mkfifo(QFile::encodeName(path).constData(), 0600), 0);
     },
     "is not a regular file"},
    {"ALinkToItself",
     [](const QString& path) {
         EXPECT_TRUE(QFile::remove(path));
         EXPECT_EQ(
             symlink(QFile::encodeName(path).constData(), QFile::encodeName(path).constData()), 0);
     },
     "does not exist"},
};

class LostDocumentTest : public testing::TestWithParam<Loss> {
protected:
    Offscreen mOffscreen;
    PrivateHome mHome;
    PrivateTemporaries mTemporaries;
};

} // namespace

TEST_P(LostDocumentTest, IsNamedAndNothingElseIsLost) {
    const QString document = fileWith(mHome.path(QStringLiteral("shelf.pdf")), contentOf(kLabels));
    DialogRequest request;
    request.files = {document};
    request.ppdPath = kTapePpd;
    auto dialog = openDialog(request);
    ASSERT_TRUE(turnUntil([&] { return dialog->model().pageCount() > 0; }));
    makeChoices(*dialog);
    const Marks marks = dialog->model().marks();

    GetParam().happens(document);
    const QString output = mHome.path(QStringLiteral("out.ps"));
    pressPrint(*dialog, output);
    ASSERT_TRUE(turnUntilTold(*dialog, GetParam().said)) << messagesOf(*dialog);
    EXPECT_THAT(messagesOf(*dialog), HasSubstr("shelf.pdf"));
    EXPECT_FALSE(QFile::exists(output));
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_EQ(dialog->model().marks(), marks);
    EXPECT_TRUE(part<QPushButton>(*dialog, "print")->isEnabled()) << "perhaps it comes back";
    expectOneTruth(*dialog);

    // It does, and the same window prints it.
    QFile::remove(document);
    QDir().rmdir(document);
    fileWith(document, contentOf(kLabels));
    pressPrint(*dialog, output);
    ASSERT_TRUE(turnUntil([&] { return !dialog->isVisible(); })) << messagesOf(*dialog);
    EXPECT_TRUE(contentOf(output).contains("%%BeginFeature: *KvHalfCut ON"));
    dialog.reset();
    EXPECT_TRUE(turnUntil([&] { return mTemporaries.entries().isEmpty(); }));
}

INSTANTIATE_TEST_SUITE_P(Losses, LostDocumentTest, testing::ValuesIn(kLosses),
                         [](const auto& loss) { return std::string(loss.param.name); });

} // namespace labelcut::test
