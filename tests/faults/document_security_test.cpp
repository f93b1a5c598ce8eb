// Security: documents are programs and names are words, and neither gets to do anything.
#include <QDir>

#include "host/documents/job_document.h"
#include "tests/faults/fault_fixtures.h"

namespace labelcut::test {

using testing::HasSubstr;

namespace {

class DocumentSecurityTest : public testing::Test {
protected:
    Outcome print(const QStringList& files, const std::map<QString, QString>& environment = {}) {
        QFile::remove(output());
        Start start;
        start.arguments = QStringList{QStringLiteral("print"),
                                      QStringLiteral("--ppd"),
                                      kTapePpd,
                                      QStringLiteral("-o"),
                                      output(),
                                      QStringLiteral("--")} +
                          files;
        start.folder = mFolder.path();
        start.environment = environment;
        return run(start);
    }
    QString path(const QString& name) const { return mFolder.filePath(name); }
    QString output() const { return mHome.path(QStringLiteral("out.ps")); }

    PrivateHome mHome;
    QTemporaryDir mFolder;
};

/// PostScript that makes a page once it has done what it must not.
QByteArray program(const QByteArray& deed) {
    return "%!PS\n" + deed + "\n<</PageSize[68 142]>>setpagedevice 9 9 20 20 rectfill showpage\n";
}

const std::map<QString, QString> kLooseEnvironment{
    {QStringLiteral("GS_OPTIONS"), QStringLiteral("-dNOSAFER")},
    {QStringLiteral("GS_LIB"), QStringLiteral("/etc")},
};

} // namespace

TEST_F(DocumentSecurityTest, AProgramReachesNoFileAndNoOtherProgram) {
    const QByteArray trace = QFile::encodeName(path(QStringLiteral("trace")));
    const QByteArray kept = QFile::encodeName(fileWith(path(QStringLiteral("kept")), "kept"));
    const QByteArray refused[] = {
        "(/etc/passwd) (r) file pop",
        "(/etc/passwd) run",
        "(" + trace + ") (w) file (x) writestring",
        "(" + trace + ") (a) file pop",
        "(%pipe%touch " + trace + ") (r) file pop",
        "(%pipe%touch " + trace + ") (w) file pop",
        "(" + kept + ") deletefile",
        "(" + kept + ") (" + trace + ") renamefile",
        ".setsafe /permitfilereading pop (/etc/passwd) (r) file pop",
    };
    const QByteArray inVain[] = {
        "<</OutputFile (" + trace + ")>> setpagedevice",
        "<</OutputFile (%pipe%touch " + trace + ")>> setpagedevice",
        "{<</SAFER false>> setuserparams} stopped {(" + trace + ") (w) file} stopped",
        "(/etc/passwd) status {(" + trace + ") (w) file} if",
        "{systemdict /SAFER false put} stopped {(" + trace + ") (w) file} stopped",
    };
    const auto expectUntouched = [&](const QByteArray& deed) {
        EXPECT_FALSE(QFile::exists(QFile::decodeName(trace))) << deed.constData();
        EXPECT_EQ(contentOf(QFile::decodeName(kept)), "kept") << deed.constData();
    };
    for (const auto& environment : {std::map<QString, QString>(), kLooseEnvironment}) {
        for (const QByteArray& deed : refused) {
            const Outcome outcome =
                print({fileWith(path(QStringLiteral("spy.ps")), program(deed))}, environment);
            EXPECT_EQ(outcome.status, 1) << deed.constData() << outcome.out;
            EXPECT_THAT(outcome.err, HasSubstr("spy.ps” cannot be interpreted by Ghostscript"))
                << deed.constData();
            EXPECT_FALSE(QFile::exists(output())) << deed.constData();
            expectUntouched(deed);
        }
    }
    for (const QByteArray& deed : inVain) {
        print({fileWith(path(QStringLiteral("spy.ps")), program(deed))});
        expectUntouched(deed);
    }
    // What the same page does without a deed.
    const Outcome good = print({fileWith(path(QStringLiteral("good.ps")), program(""))});
    EXPECT_EQ(good.status, 0) << good.err;
}

TEST_F(DocumentSecurityTest, ANameIsNeverASwitchAPipeOrAList) {
    const QByteArray trace = QFile::encodeName(path(QStringLiteral("trace")));
    for (const char* name :
         {"-dNOSAFER", "-sOutputFile=x.ps", "--help", "@list.ps", "%pipe%touch trace",
          "|touch trace", "%stdin", "-", "$(touch trace).ps", "`touch trace`", "; touch trace",
          "a b'c\"d.ps", "new\nline.ps", "%d.ps", "%1%2%n.ps"}) {
        const QString file = QString::fromUtf8(name);
        fileWith(path(file), program(""));
        const Outcome outcome = print({file});
        EXPECT_EQ(outcome.status, 0) << name << ": " << outcome.err;
        EXPECT_TRUE(QFile::exists(output())) << name;
        EXPECT_FALSE(QFile::exists(QFile::decodeName(trace))) << name;
        EXPECT_TRUE(QFile::remove(path(file)));
    }
    EXPECT_TRUE(QDir(mFolder.path()).isEmpty()) << "nothing was made beside the documents";
}

TEST_F(DocumentSecurityTest, ADrawingReadsNoOtherFile) {
    // A picture that is all black, which would show.
    QImage black(20, 20, QImage::Format_RGB32);
    black.fill(Qt::black);
    const QString secret = path(QStringLiteral("secret.png"));
    ASSERT_TRUE(black.save(secret));
    const auto drawing = [&](const QByteArray& link) {
        return fileWith(path(QStringLiteral("d.svg")),
                        "<svg xmlns='http://www.w3.org/2000/svg' "
                        "xmlns:xlink='http://www.w3.org/1999/xlink' viewBox='0 0 20 20'>"
                        "<image width='20' height='20' xlink:href='" +
                            link + "'/></svg>");
    };
    const QByteArray file = QFile::encodeName(secret);
    const auto hasPicture = [&](const QByteArray& link) {
        const Result<JobDocument> made = JobDocument::prepare({drawing(link)}, std::nullopt);
        EXPECT_TRUE(made) << link.constData();
        return made && contentOf(made->pdf()).contains("/Subtype /Image");
    };
    for (const QByteArray& link :
         {file, "file://" + file, QByteArray("secret.png"), QByteArray("http://127.0.0.1:9/x.png")})
        EXPECT_FALSE(hasPicture(link)) << link.constData();
    EXPECT_TRUE(hasPicture("data:image/png;base64," + contentOf(secret).toBase64()))
        << "a picture within the drawing is drawn";
}

} // namespace labelcut::test
