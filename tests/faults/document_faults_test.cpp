// Faults of documents: what was there when the dialog opened is not there when Print is pressed.
#include <sys/stat.h>
#include <unistd.h>

#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>

#include <chrono>
#include <future>
#include <string_view>
#include <thread>

#include "tests/faults/fault_fixtures.h"
#include "tests/support/made_pdf.h"

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

class DocumentFaultTest : public testing::Test {
protected:
    /// On a printer that is a PPD, with choices made.
    std::unique_ptr<PrintDialog> open(const QStringList& documents) {
        DialogRequest request;
        request.files = documents;
        request.ppdPath = kTapePpd;
        auto dialog = openDialog(request);
        EXPECT_TRUE(turnUntil([&] { return dialog->model().pageCount() > 0; }));
        makeChoices(*dialog);
        return dialog;
    }
    QString output() const { return mHome.path(QStringLiteral("out.ps")); }

    Offscreen mOffscreen;
    PrivateHome mHome;
    PrivateTemporaries mTemporaries;
};

class LostDocumentTest : public DocumentFaultTest, public testing::WithParamInterface<Loss> {};

} // namespace

TEST_P(LostDocumentTest, IsNamedAndNothingElseIsLost) {
    const QString document = fileWith(mHome.path(QStringLiteral("shelf.pdf")), contentOf(kLabels));
    auto dialog = open({document});
    const Settings marks = dialog->model().marks();

    GetParam().happens(document);
    pressPrint(*dialog, output());
    ASSERT_TRUE(turnUntilTold(*dialog, GetParam().said)) << messagesOf(*dialog);
    EXPECT_THAT(messagesOf(*dialog), HasSubstr("shelf.pdf"));
    EXPECT_FALSE(QFile::exists(output()));
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_EQ(dialog->model().marks(), marks);
    EXPECT_TRUE(part<QPushButton>(*dialog, "print")->isEnabled()) << "perhaps it comes back";
    expectOneTruth(*dialog);

    // It does, and the same window prints it.
    QFile::remove(document);
    QDir().rmdir(document);
    fileWith(document, contentOf(kLabels));
    pressPrint(*dialog, output());
    ASSERT_TRUE(turnUntil([&] { return !dialog->isVisible(); })) << messagesOf(*dialog);
    EXPECT_TRUE(contentOf(output()).contains("%%BeginFeature: *KvHalfCut ON"));
    dialog.reset();
    EXPECT_TRUE(turnUntil([&] { return mTemporaries.entries().isEmpty(); }));
}

INSTANTIATE_TEST_SUITE_P(Losses, LostDocumentTest, testing::ValuesIn(kLosses),
                         [](const auto& loss) { return std::string(loss.param.name); });

TEST_F(DocumentFaultTest, WhatHasChangedSinceItWasShownIsToldBeforeItIsPrinted) {
    const QString first = fileWith(mHome.path(QStringLiteral("first.pdf")), contentOf(kLabels));
    const QString second = fileWith(mHome.path(QStringLiteral("second.pdf")), contentOf(kLabels));
    auto dialog = open({first, second});
    const Settings marks = dialog->model().marks();
    ASSERT_EQ(dialog->model().pageCount(), 2 * kLabelCount);

    largePdf(second, 10);
    pressPrint(*dialog, output());
    ASSERT_TRUE(turnUntilTold(*dialog, "has changed since it was opened here, and nothing was "
                                       "printed"))
        << messagesOf(*dialog);
    EXPECT_THAT(messagesOf(*dialog), HasSubstr("second.pdf"));
    EXPECT_FALSE(QFile::exists(output()));
    EXPECT_TRUE(turnUntil([&] { return dialog->model().pageCount() == kLabelCount + 1; }))
        << "shown as it is now";
    EXPECT_EQ(dialog->model().marks(), marks);
    expectOneTruth(*dialog);

    pressPrint(*dialog, output());
    ASSERT_TRUE(turnUntil([&] { return !dialog->isVisible(); })) << messagesOf(*dialog);
    EXPECT_TRUE(contentOf(output()).contains("%%BeginFeature: *KvHalfCut ON"));
}

TEST_F(DocumentFaultTest, AChangeThatShowsInNoSizeAndNoTimeIsToldAsWell) {
    const QString document = fileWith(mHome.path(QStringLiteral("words.txt")), "shelf 1");
    const auto before = QFileInfo(document).lastModified();
    auto dialog = open({document});
    fileWith(document, "shelf 2");
    {
        QFile file(document);
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        ASSERT_TRUE(file.setFileTime(before, QFileDevice::FileModificationTime));
    }
    pressPrint(*dialog, output());
    EXPECT_TRUE(turnUntilTold(*dialog, "words.txt” has changed since")) << messagesOf(*dialog);
    EXPECT_FALSE(QFile::exists(output()));
}

// --- work that is no longer wanted ---

/// A file of the work, which is there while that step is being done.
class InterruptedWorkTest : public testing::TestWithParam<const char*> {
protected:
    bool hasBegun() const {
        const QStringList folders = mTemporaries.entries();
        return !folders.isEmpty() &&
               QDir(mTemporaries.path() + u'/' + folders.front()).exists(QLatin1String(GetParam()));
    }
    /// What a user does on a thread of their own. @return how long its traces stay. Milliseconds.
    qint64 stopOnceBegun(CancelFlag& cancel) const {
        constexpr std::chrono::milliseconds kLook(5);
        while (!hasBegun())
            std::this_thread::sleep_for(kLook);
        std::this_thread::sleep_for(std::chrono::milliseconds(400));
        QElapsedTimer sinceWish;
        sinceWish.start();
        cancel.cancel();
        while (!mTemporaries.entries().isEmpty() && sinceWish.elapsed() < kLong)
            std::this_thread::sleep_for(kLook);
        return sinceWish.elapsed();
    }

    PrivateHome mHome;
    PrivateTemporaries mTemporaries;
};

TEST_P(InterruptedWorkTest, LeavesNothingSoonAfterTheWish) {
    const QString document =
        fileWith(mHome.path(QStringLiteral("many.pdf")), pdfOfPages(kManyPages));
    const JobPaper paper{QStringLiteral("T24"), {68, 142}, QRectF(3, 3, 62, 136)};
    CancelFlag cancel;
    auto user = std::async(std::launch::async, [&] { return stopOnceBegun(cancel); });
    const auto made = [&]() -> Result<QString> {
        const Result<JobDocument> prepared = JobDocument::prepare({document}, paper, &cancel);
        if (!prepared)
            return prepared.error();
        return prepared->composed({{}, false, 1, paper, worker::Fit::Scale}, &cancel);
    }();
    EXPECT_LT(user.get(), 1'000);
    ASSERT_FALSE(made) << "done before the wish";
    EXPECT_EQ(made.error().kind, ErrorKind::Cancelled) << made.error().sentence.toStdString();
}

INSTANTIATE_TEST_SUITE_P(Steps, InterruptedWorkTest, testing::Values("copy0", "pages2.pdf"),
                         [](const auto& file) {
                             const bool isWritten = file.param == std::string_view("pages2.pdf");
                             return std::string(isWritten ? "Writing" : "Reading");
                         });

TEST_F(DocumentFaultTest, CancelEndsWorkOnManyPages) {
    auto dialog = open({fileWith(mHome.path(QStringLiteral("many.pdf")), pdfOfPages(kManyPages))});
    ASSERT_TRUE(turnUntil([&] { return dialog->model().pageCount() > 0; })) << "counted";
    // What is shown stays for as long as the window does.
    const QStringList shown = mTemporaries.entries();
    EXPECT_EQ(shown.size(), 1);
    dialog->model().setFit(worker::Fit::Scale);
    const Settings marks = dialog->model().marks();
    pressPrint(*dialog, output());
    ASSERT_TRUE(turnUntil([&] { return mTemporaries.entries() != shown; }));
    turnFor(500);
    click(*part<QPushButton>(*dialog, "cancel"));
    EXPECT_TRUE(turnUntilTold(*dialog, "Printing was cancelled")) << messagesOf(*dialog);
    EXPECT_TRUE(turnUntil([&] { return mTemporaries.entries() == shown; }, 1'000));
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_EQ(dialog->model().marks(), marks);
    EXPECT_FALSE(QFile::exists(output()));
    expectOneTruth(*dialog);
}

} // namespace labelcut::test
