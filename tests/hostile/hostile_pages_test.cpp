// Documents that mean harm, shown: each page is drawn or fails soon, its worker takes little and is
// gone with it, other files do not show, and the event loop turns all the while.
//
// They reach the renderer as they are; in the program libqpdf would have written them anew.
#include <gtest/gtest.h>

#include <QColor>
#include <QDir>
#include <QProcess>

#include <sys/resource.h>

#include <memory>
#include <vector>

#include "host/documents/document_worker.h"
#include "tests/host/documents/page_pictures_fixture.h"

namespace labelcut {

using namespace std::chrono_literals;

namespace {

constexpr auto kPatience = 2s;
/// Documents that are shown at the same time.
constexpr int kAtOnce = 4;
/// Of each worker, with the libraries' code and what it maps of the document. Kilobytes.
constexpr long kMostMemory = 512 << 10;
/// The colour of files that no document has a right to.
constexpr QRgb kCanary = qRgb(0xc8, 0x14, 0x5a);

QStringList made(const QString& folder) {
    QProcess maker;
    const auto run = [&](const QStringList& arguments) {
        maker.start(QStringLiteral(LABELCUT_PYTHON),
                    QStringList{QStringLiteral("-B"),
                                QStringLiteral(LABELCUT_HOSTILE "/make_documents.py")} +
                        arguments);
        EXPECT_TRUE(maker.waitForFinished(120'000)) << maker.errorString().toStdString();
        EXPECT_EQ(maker.exitCode(), 0) << maker.readAllStandardError().toStdString();
        return QString::fromUtf8(maker.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts);
    };
    QStringList names;
    for (const QString& line : run({})) {
        if (const QString name = line.split(u' ').value(1); name.endsWith(QLatin1String(".pdf")))
            names << name;
    }
    return run(QStringList{folder} + names);
}

/// The most that any process took that this one has started and that has ended. Kilobytes.
long mostMemory() {
    rusage usage{};
    getrusage(RUSAGE_CHILDREN, &usage);
    return usage.ru_maxrss;
}

bool showsCanary(const QImage& picture) {
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (picture.pixel(x, y) == kCanary)
                return true;
        }
    }
    return false;
}

} // namespace

TEST(HostilePagesTest, AreDrawnOrFailSoonAndHurtNobody) {
    const test::Folder folder;
    const QStringList documents = made(folder.path(QStringLiteral("made")));
    ASSERT_GT(documents.size(), 60);
    ASSERT_LT(mostMemory(), kMostMemory) << "their maker takes less than they may";
    const test::Pulse pulse;
    for (int first = 0; first < documents.size(); first += kAtOnce) {
        const QStringList some = documents.mid(first, kAtOnce);
        std::vector<std::unique_ptr<PagePictures>> all;
        for (const QString& document : some) {
            all.push_back(
                std::make_unique<PagePictures>(DocumentWorker::installedProgram(), kPatience));
            all.back()->setDocument(document, nullptr);
            all.back()->want({{1, {136, 284}}});
        }
        for (std::size_t i = 0; i < all.size(); ++i) {
            const std::string name = some.at(static_cast<qsizetype>(i)).toStdString();
            EXPECT_TRUE(test::areSettled(*all[i], {1})) << name;
            EXPECT_FALSE(showsCanary(all[i]->picture(1))) << name;
        }
    }
    EXPECT_LT(pulse.longestPause(), test::kSoon);
    if (!LABELCUT_INSTRUMENTED) {
        EXPECT_LT(mostMemory(), kMostMemory);
    }
}

} // namespace labelcut
