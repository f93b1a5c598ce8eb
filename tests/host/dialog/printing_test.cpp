// Printing through the dialog: into a file, and on a real print service of the test's own.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAction>
#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QRegularExpression>
#include <QSpinBox>
#include <QTest>

#include <atomic>

#include "host/dialog/job_footer.h"
#include "tests/host/dialog/dialog_fixtures.h"
#include "tests/support/answer_proxy.h"
#include "tests/support/one_truth.h"
#include "tests/support/private_cupsd.h"
#include "tests/support/program.h"

namespace labelcut::test {

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

const QString kQueue = QStringLiteral("tape");

QByteArray contentOf(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

/// The features that PostScript sets and their code, in order.
std::vector<std::string> featuresIn(const QByteArray& postScript) {
    std::vector<std::string> all;
    const QList<QByteArray> lines = postScript.split('\n');
    for (qsizetype i = 0; i + 1 < lines.size(); ++i) {
        if (lines[i].startsWith("%%BeginFeature: *"))
            all.push_back(
                (lines[i].mid(17).trimmed() + ": " + lines[i + 1].trimmed()).toStdString());
    }
    return all;
}

class DialogPrintsTest : public testing::Test {
protected:
    template<typename Widget>
    Widget& control(const char* name) const {
        return *part<Widget>(*mDialog, name);
    }
    std::vector<std::string> messages() const {
        std::vector<std::string> all;
        for (const QString& text : mDialog->messages().texts())
            all.push_back(text.toStdString());
        return all;
    }
    bool isOver() const { return !mDialog->isVisible(); }
    /// Half cut, chain printing and dark print: by clicks, as a user does.
    void makeChoices() const {
        openTab(*mDialog, kPanelTab);
        click(control<QCheckBox>("mHalfCutChkBx"));
        click(control<QCheckBox>("mChainPrintChkBx"));
        openTab(*mDialog, kFeaturesTab);
        choose(optionBox(*mDialog, "Density"), QStringLiteral("Dark"));
    }

    Offscreen mOffscreen;
    PrivateHome mHome;
    std::unique_ptr<PrintDialog> mDialog;
};

class IntoFileTest : public DialogPrintsTest {
protected:
    /// Presses Print and names the file. @return its path.
    QString print() {
        const QString path = mHome.path(QStringLiteral("dialog.ps"));
        click(control<QPushButton>("print"));
        auto* chooser = mDialog->findChild<QFileDialog*>();
        if (!chooser)
            qFatal("no file is asked for");
        Q_EMIT chooser->fileSelected(path);
        chooser->close();
        return path;
    }
};

class OnServiceTest : public DialogPrintsTest {
protected:
    static void SetUpTestSuite() {
        sService = std::make_unique<PrivateCupsd>();
        ASSERT_TRUE(sService->start()) << sService->errorLog().toStdString();
    }
    static void TearDownTestSuite() { sService.reset(); }

    OnServiceTest() { EXPECT_TRUE(sService->addQueue(kQueue, kTapePpd)); }
    ~OnServiceTest() override {
        sService->holdPrinter(false);
        sService->letPrinterSay({});
        mDialog.reset();
        EXPECT_TRUE(sService->removeQueue(kQueue));
    }
    static CupsConnection service(const PrivateCupsd& at = *sService) {
        return CupsConnection(*ServiceAddress::fromText(at.socketPath()));
    }
    void open(const PrivateCupsd& at = *sService) {
        DialogRequest request;
        request.files = {kLabels};
        request.queue = kQueue;
        mDialog = openDialog(request, service(at));
        ASSERT_TRUE(turnUntil(
            [&] { return mDialog->model().pageCount() > 0 && mDialog->model().hasPrinter(); }));
        settle();
        lookAtEveryPage(*mDialog);
    }
    bool turnUntilSays(const char* words) {
        return turnUntil(
            [&] { return control<QLabel>("sentence").text().contains(QLatin1String(words)); });
    }

    /// One of the other ways to print.
    void chooseWay(const char* name) const {
        auto* way = mDialog->findChild<QAction*>(QLatin1String(name));
        ASSERT_TRUE(way && way->isEnabled()) << name;
        way->trigger();
        settle();
    }
    std::string textOf(const char* button) const {
        return control<QPushButton>(button).text().toStdString();
    }
    std::string jobMessages() const {
        return control<MessageBar>("jobMessages").texts().join(u'\n').toStdString();
    }
    bool turnUntilVisible(const char* name) const {
        return turnUntil([&] { return control<QWidget>(name).isVisible(); });
    }
    static JobState stateOf(int job, const PrivateCupsd& at = *sService) {
        const auto status = service(at).jobAttributes(job, {kLong, nullptr});
        return status ? status->state : JobState::Aborted;
    }
    /// How many pages of the job have reached the printer.
    static qsizetype pagesOf(int job) {
        const auto stored = sService->waitForJob(job);
        return stored ? stored->data.count("\n%%Page: ") : -1;
    }

    /// The job that the window speaks of; 0: none.
    int spokenOf() const {
        return QRegularExpression(QStringLiteral("Job (\\d+)"))
            .match(control<QLabel>("sentence").text())
            .captured(1)
            .toInt();
    }

    static std::unique_ptr<PrivateCupsd> sService;
};

std::unique_ptr<PrivateCupsd> OnServiceTest::sService;

} // namespace

TEST_F(IntoFileTest, TheFileIsWhatTheShownCommandMakes) {
    mDialog = openDialog(kTapePpd);
    makeChoices();
    expectOneTruth(*mDialog);
    const QString shown = control<QPlainTextEdit>("commandLabelcut").toPlainText();
    const QString path = print();
    ASSERT_TRUE(turnUntil([&] { return isOver(); }));
    EXPECT_EQ(mDialog->result(), QDialog::Accepted);
    const std::vector<std::string> features = featuresIn(contentOf(path));
    EXPECT_THAT(features, testing::Contains(HasSubstr("KvHalfCut ON")));
    EXPECT_THAT(features, testing::Contains(HasSubstr("KvChainPrint ON")));
    EXPECT_THAT(features, testing::Contains(HasSubstr("Density Dark")));

    Start start;
    start.arguments = shellWords(shown).mid(1);
    start.folder = mHome.path(QString());
    const Outcome outcome = run(start);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(featuresIn(contentOf(mHome.path(QStringLiteral("labels.ps")))), features);
}

TEST_F(IntoFileTest, APresetWithMirrorIsPrintedAlikeInTheWindowAndByCommand) {
    const auto command = [this](const QStringList& arguments) {
        Start start;
        start.arguments = arguments + QStringList{QStringLiteral("--ppd"), kTapePpd};
        start.environment[QStringLiteral("XDG_CONFIG_HOME")] = mHome.path(QStringLiteral("config"));
        const Outcome outcome = run(start);
        EXPECT_EQ(outcome.status, 0) << outcome.err;
    };
    command(words("presets save Flipped --set KvMirror=ON --set KvHalfCut=ON"));
    mDialog = openDialog(kTapePpd);
    auto& mirror = control<QCheckBox>("mMirrorPrintChkBx");
    ASSERT_FALSE(mirror.isChecked());
    ASSERT_EQ(control<QComboBox>("presets").count(), 1);
    choose(control<QComboBox>("presets"), 0);
    EXPECT_TRUE(mirror.isChecked());
    EXPECT_THAT(messages(), testing::IsEmpty());
    expectOneTruth(*mDialog);
    const QString inWindow = print();
    ASSERT_TRUE(turnUntil([&] { return isOver(); }));

    const QString byCommand = mHome.path(QStringLiteral("command.ps"));
    command(words("print --preset Flipped -o") << byCommand << kLabels);
    const std::vector<std::string> features = featuresIn(contentOf(byCommand));
    EXPECT_THAT(features, testing::Contains(HasSubstr("KvMirror ON")));
    EXPECT_THAT(features, testing::Contains(HasSubstr("KvHalfCut ON")));
    EXPECT_EQ(featuresIn(contentOf(inWindow)), features);
}

TEST_F(IntoFileTest, AFileThatCannotBeWrittenKeepsDialogAndChoices) {
    mDialog = openDialog(kTapePpd);
    makeChoices();
    const Settings marks = mDialog->model().marks();
    click(control<QPushButton>("print"));
    auto* chooser = mDialog->findChild<QFileDialog*>();
    ASSERT_TRUE(chooser);
    Q_EMIT chooser->fileSelected(mHome.path(QStringLiteral("no/such/folder/x.ps")));
    chooser->close();
    ASSERT_TRUE(turnUntil([&] { return !mDialog->messages().texts().isEmpty(); }));
    EXPECT_THAT(messages(), ElementsAre(HasSubstr("no/such/folder/x.ps")));
    EXPECT_TRUE(mDialog->isVisible());
    EXPECT_EQ(mDialog->model().marks(), marks);
    EXPECT_TRUE(control<QPushButton>("print").isEnabled());
    expectOneTruth(*mDialog);
}

TEST_F(IntoFileTest, CancelTakesItBackAndLeavesNoFile) {
    mDialog = openDialog(kTapePpd);
    const QString path = print();
    settle();
    EXPECT_TRUE(control<QProgressBar>("progress").isVisible());
    EXPECT_FALSE(control<QPushButton>("print").isEnabled());
    QTest::keyClick(mDialog.get(), Qt::Key_Escape);
    ASSERT_TRUE(turnUntil([&] { return !mDialog->messages().texts().isEmpty(); }));
    EXPECT_THAT(messages(), ElementsAre(HasSubstr("cancelled")));
    EXPECT_TRUE(mDialog->isVisible());
    turnFor(2000);
    EXPECT_FALSE(QFile::exists(path));
}

TEST_F(IntoFileTest, APpdThatChangedMeanwhileIsToldAndNothingIsWritten) {
    const QString ppd = conflictingPpd(mHome);
    mDialog = openDialog(ppd);
    makeChoices();
    QByteArray text = contentOf(ppd);
    text.replace("Density Dark/", "Density Darker/");
    QFile file(ppd);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text);
    file.close();
    const QString path = print();
    ASSERT_TRUE(turnUntil([&] { return !mDialog->messages().texts().isEmpty(); }));
    EXPECT_THAT(messages(), ElementsAre(HasSubstr("Density=Dark")));
    EXPECT_FALSE(QFile::exists(path));
    EXPECT_TRUE(mDialog->isVisible());
}

TEST_F(IntoFileTest, APpdThatIsGoneIsToldAndNothingIsWritten) {
    const QString ppd = conflictingPpd(mHome);
    mDialog = openDialog(ppd);
    makeChoices();
    ASSERT_TRUE(QFile::remove(ppd));
    const QString path = print();
    ASSERT_TRUE(turnUntil([&] { return !mDialog->messages().texts().isEmpty(); }));
    EXPECT_THAT(messages(), ElementsAre(testing::AllOf(HasSubstr(ppd.toStdString()),
                                                       HasSubstr("does not exist"))));
    EXPECT_FALSE(QFile::exists(path));
    EXPECT_TRUE(mDialog->isVisible());
}

TEST_F(IntoFileTest, LabelsThatTheDocumentHasNotAreToldAndNothingIsWritten) {
    mDialog = openDialog(kTapePpd);
    mDialog->model().setPages(PageSelection({20, 30}));
    const QString path = print();
    ASSERT_TRUE(turnUntil([&] { return !mDialog->messages().texts().isEmpty(); }));
    EXPECT_THAT(messages(),
                ElementsAre("There is no label in the range 20-30; the document has 12."));
    EXPECT_FALSE(QFile::exists(path));
    EXPECT_TRUE(mDialog->isVisible());
}

TEST_F(OnServiceTest, LabelsThatTheDocumentHasNotAreToldAndNoJobIsMade) {
    open();
    mDialog->model().setPages(PageSelection({20, PageRange::kToTheEnd}));
    click(control<QPushButton>("print"));
    ASSERT_TRUE(turnUntil([&] { return !mDialog->messages().texts().isEmpty(); }));
    EXPECT_THAT(messages(),
                ElementsAre("There is no label in the range 20-; the document has 12."));
    EXPECT_TRUE(mDialog->isVisible());
    EXPECT_TRUE(control<QPushButton>("print").isEnabled());
    EXPECT_EQ(spokenOf(), 0);
}

TEST_F(OnServiceTest, AJobThatSomebodyElseRemovesIsToldAndTheChoicesStay) {
    open();
    makeChoices();
    const Settings marks = mDialog->model().marks();
    ASSERT_TRUE(sService->pause(kQueue));
    click(control<QPushButton>("print"));
    ASSERT_TRUE(turnUntilSays("waits for its turn"));
    const int job = spokenOf();
    ASSERT_TRUE(service().cancelJob(job, QString(), {kLong, nullptr}));
    ASSERT_TRUE(turnUntil([&] { return !mDialog->messages().texts().isEmpty(); }));
    EXPECT_THAT(messages(), ElementsAre("Job " + std::to_string(job) +
                                        " was removed from “tape” by somebody else."));
    EXPECT_TRUE(mDialog->isVisible());
    EXPECT_EQ(mDialog->model().marks(), marks);
    EXPECT_TRUE(control<QPushButton>("print").isEnabled());
}

TEST_F(OnServiceTest, AJobThatTheServiceGivesUpIsToldWithItsReasonAndTheChoicesStay) {
    PrivateCupsd own;
    ASSERT_TRUE(own.start()) << own.errorLog().toStdString();
    ASSERT_TRUE(own.addQueue(kQueue, kTapePpd));
    own.breakPrinter("The tape is jammed.");
    open(own);
    makeChoices();
    const Settings marks = mDialog->model().marks();
    click(control<QPushButton>("print"));
    ASSERT_TRUE(turnUntil([&] { return !mDialog->messages().texts().isEmpty(); }));
    EXPECT_THAT(messages(), ElementsAre(HasSubstr("gave up job 1 (The tape is jammed.)")));
    EXPECT_TRUE(mDialog->isVisible());
    EXPECT_EQ(mDialog->model().marks(), marks);
    mDialog.reset();
}

TEST_F(OnServiceTest, AJobThatTheServiceForgetsAtItsEndIsNoFailure) {
    PrivateCupsd::Options options;
    options.configuration = "PreserveJobHistory No\n";
    PrivateCupsd own(options);
    ASSERT_TRUE(own.start()) << own.errorLog().toStdString();
    ASSERT_TRUE(own.addQueue(kQueue, kTapePpd));
    open(own);
    click(control<QPushButton>("print"));
    ASSERT_TRUE(turnUntil([&] { return isOver(); })) << testing::PrintToString(messages());
    EXPECT_EQ(mDialog->result(), QDialog::Accepted);
    EXPECT_TRUE(own.waitForJob(1));
    mDialog.reset();
}

TEST_F(OnServiceTest, TheChoicesArriveAtThePrinter) {
    open();
    makeChoices();
    control<QSpinBox>("copies").setValue(2);
    settle();
    expectOneTruth(*mDialog);
    sService->holdPrinter(true);
    click(control<QPushButton>("print"));
    ASSERT_TRUE(turnUntilSays("Job ")) << control<QLabel>("sentence").text().toStdString();
    const int job = spokenOf();
    EXPECT_GT(job, 0);
    EXPECT_EQ(control<QPushButton>("cancel").text().toStdString(), "Close") << "it is sent";
    sService->holdPrinter(false);
    ASSERT_TRUE(turnUntil([&] { return isOver(); }));
    EXPECT_EQ(mDialog->result(), QDialog::Accepted);
    const auto stored = sService->waitForJob(job);
    ASSERT_TRUE(stored);
    EXPECT_EQ(stored->arguments.value(2).toStdString(), "labels.pdf");
    for (const char* pair : {"KvHalfCut=ON", "KvChainPrint=ON", "Density=Dark", "PageSize=T24"})
        EXPECT_THAT(stored->options().toStdString(), HasSubstr(pair));
    for (const char* feature : {"KvHalfCut ON", "KvChainPrint ON", "Density Dark"})
        EXPECT_TRUE(stored->data.contains(QByteArray("%%BeginFeature: *") + feature)) << feature;
}

TEST_F(OnServiceTest, AJobThatWasSentCanBeLeftAlone) {
    open();
    sService->holdPrinter(true);
    click(control<QPushButton>("print"));
    ASSERT_TRUE(turnUntil([&] { return control<QPushButton>("cancel").text() == u"Close"; }));
    click(control<QPushButton>("cancel"));
    ASSERT_TRUE(turnUntil([&] { return isOver(); }));
    EXPECT_EQ(mDialog->result(), QDialog::Accepted) << "the job lies with the service";
}

TEST_F(OnServiceTest, AChoiceThatVanishedFromThePpdIsTold) {
    open();
    makeChoices();
    const Settings marks = mDialog->model().marks();
    QByteArray text = contentOf(kTapePpd);
    text.replace("Density Dark/", "Density Darker/");
    QFile changed(mHome.path(QStringLiteral("changed.ppd")));
    ASSERT_TRUE(changed.open(QIODevice::WriteOnly));
    changed.write(text);
    changed.close();
    ASSERT_TRUE(sService->addQueue(kQueue, changed.fileName()));
    click(control<QPushButton>("print"));
    ASSERT_TRUE(turnUntil([&] { return !mDialog->messages().texts().isEmpty(); }));
    EXPECT_THAT(messages(), ElementsAre(HasSubstr("Density")));
    EXPECT_TRUE(mDialog->isVisible());
    EXPECT_EQ(mDialog->model().marks(), marks);
    EXPECT_TRUE(control<QPushButton>("print").isEnabled());
}

TEST_F(OnServiceTest, ARejectingQueueKeepsDialogAndChoices) {
    open();
    makeChoices();
    const Settings marks = mDialog->model().marks();
    ASSERT_TRUE(sService->reject(kQueue));
    click(control<QPushButton>("print"));
    ASSERT_TRUE(turnUntil([&] { return !mDialog->messages().texts().isEmpty(); }));
    EXPECT_THAT(messages(), ElementsAre(HasSubstr(kQueue.toStdString())));
    EXPECT_TRUE(mDialog->isVisible());
    EXPECT_EQ(mDialog->model().marks(), marks);
    expectOneTruth(*mDialog);
}

TEST_F(OnServiceTest, AQueueThatIsGoneIsSaidSo) {
    open();
    ASSERT_TRUE(sService->removeQueue(kQueue));
    click(control<QPushButton>("print"));
    ASSERT_TRUE(turnUntil([&] { return !mDialog->messages().texts().isEmpty(); }));
    EXPECT_THAT(messages(), ElementsAre(HasSubstr(kQueue.toStdString())));
    EXPECT_TRUE(mDialog->isVisible());
    ASSERT_TRUE(sService->addQueue(kQueue, kTapePpd));
}

TEST_F(OnServiceTest, StatesAreSaidInWordsAtThePrinter) {
    ASSERT_TRUE(sService->pause(kQueue));
    open();
    ASSERT_TRUE(turnUntil([&] { return !mDialog->printerMessages().texts().isEmpty(); }));
    EXPECT_THAT(mDialog->printerMessages().texts().front().toStdString(),
                HasSubstr("held until it is resumed"));
    EXPECT_TRUE(control<QPushButton>("print").isEnabled()) << "a paused queue takes jobs";
}

TEST_F(OnServiceTest, TheQueuesSavedOptionsAreTheStart) {
    ASSERT_TRUE(QDir().mkpath(mHome.path(QStringLiteral(".cups"))));
    QFile saved(mHome.path(QStringLiteral(".cups/lpoptions")));
    ASSERT_TRUE(saved.open(QIODevice::WriteOnly));
    saved.write("Dest tape KvHalfCut=ON Quality=Best\n");
    saved.close();
    open();
    EXPECT_EQ(mDialog->model().choice(QStringLiteral("KvHalfCut")), QStringLiteral("ON"));
    EXPECT_EQ(mDialog->model().choice(QStringLiteral("Quality")), QStringLiteral("Best"));
    expectOneTruth(*mDialog);
}

TEST_F(OnServiceTest, TheLastPrinterIsRemembered) {
    open();
    mDialog.reset();
    DialogRequest request;
    request.files = {kLabels};
    mDialog = openDialog(request, service());
    ASSERT_TRUE(turnUntil([&] { return mDialog->model().hasPrinter(); }));
    EXPECT_EQ(queueOf(mDialog->model()), kQueue);
}

TEST_F(OnServiceTest, WhileAnotherQueuesPpdIsOnItsWayPrintIsOff) {
    ASSERT_TRUE(sService->addQueue(QStringLiteral("roll"), kRollPpd));
    open();
    auto& printers = control<QComboBox>("printers");
    ASSERT_TRUE(turnUntil([&] { return printers.findText(QStringLiteral("roll")) >= 0; }));
    printers.setCurrentIndex(printers.findText(QStringLiteral("roll")));
    Q_EMIT printers.activated(printers.currentIndex());
    EXPECT_FALSE(control<QPushButton>("print").isEnabled());
    ASSERT_TRUE(turnUntil([&] { return queueOf(mDialog->model()) == u"roll"; }));
    settle();
    EXPECT_TRUE(control<QPushButton>("print").isEnabled());
    EXPECT_EQ(printers.currentText().toStdString(), "roll");
    expectOneTruth(*mDialog);
    ASSERT_TRUE(sService->removeQueue(QStringLiteral("roll")));
}

TEST_F(OnServiceTest, AQueueThatIsNotThereIsToldAndNoPrinterTakesItsPlace) {
    ASSERT_TRUE(sService->makeDefault(kQueue));
    QStringList complaints;
    DialogRequest request;
    request.files = {kLabels};
    request.queue = QStringLiteral("NoSuchQueue");
    request.complain = [&](const QString& sentence) { complaints << sentence; };
    mDialog = openDialog(request, service());
    ASSERT_TRUE(turnUntil([&] { return !complaints.isEmpty(); }));
    ASSERT_TRUE(turnUntil([&] { return control<QComboBox>("printers").findText(kQueue) >= 0; }));
    EXPECT_FALSE(mDialog->model().hasPrinter());
    EXPECT_FALSE(control<QPushButton>("print").isEnabled());
    EXPECT_EQ(mDialog->printerMessages().texts(), complaints) << "once, in both places";
    Start start;
    start.arguments = {QStringLiteral("print"), QStringLiteral("--printer"), request.queue,
                       kLabels};
    start.environment = {{QStringLiteral("CUPS_SERVER"), sService->socketPath()}};
    EXPECT_EQ(run(start).err, "labelcut: " + complaints.front().toStdString() + "\n")
        << "the command's sentence";
}

TEST_F(OnServiceTest, QueuesKeepTheirChoicesWhileTheWindowIsOpen) {
    ASSERT_TRUE(sService->addQueue(QStringLiteral("roll"), kRollPpd));
    ASSERT_TRUE(QDir().mkpath(mHome.path(QStringLiteral(".cups"))));
    QFile saved(mHome.path(QStringLiteral(".cups/lpoptions")));
    ASSERT_TRUE(saved.open(QIODevice::WriteOnly));
    saved.write("Dest tape KvChainPrint=ON Quality=Best\n");
    saved.close();
    open();
    click(control<QCheckBox>("mHalfCutChkBx"));
    click(control<QCheckBox>("mChainPrintChkBx"));
    const auto before = labelcutCommand(mDialog->model()).toStdString();
    ASSERT_THAT(before, HasSubstr("KvChainPrint=OFF")) << "other than what is saved";
    for (const QString& queue : {QStringLiteral("roll"), kQueue}) {
        auto& printers = control<QComboBox>("printers");
        ASSERT_TRUE(turnUntil([&] { return printers.findText(queue) >= 0; }));
        choose(printers, printers.findText(queue));
        ASSERT_TRUE(turnUntil([&] { return queueOf(mDialog->model()) == queue; }));
        settle();
    }
    EXPECT_EQ(labelcutCommand(mDialog->model()).toStdString(), before);
    expectOneTruth(*mDialog);
    ASSERT_TRUE(sService->removeQueue(QStringLiteral("roll")));
}

TEST_F(OnServiceTest, AfterAFailureTheFocusIsWhereTheUserWasAndEnterPrints) {
    open();
    ASSERT_TRUE(sService->reject(kQueue));
    auto& copies = control<QSpinBox>("copies");
    copies.setFocus();
    QTest::keyClick(&copies, Qt::Key_Return);
    EXPECT_TRUE(control<QPushButton>("cancel").hasFocus());
    ASSERT_TRUE(turnUntil([&] { return !mDialog->messages().texts().isEmpty(); }));
    settle();
    EXPECT_EQ(mDialog->focusWidget(), &copies);
    EXPECT_TRUE(control<QPushButton>("print").isDefault());
    // By a mouse, the button itself has the focus.
    click(control<QPushButton>("print"));
    ASSERT_TRUE(turnUntil([&] { return control<QPushButton>("print").isEnabled(); }));
    settle();
    EXPECT_EQ(mDialog->focusWidget(), &control<QPushButton>("print"));
    ASSERT_TRUE(sService->accept(kQueue));
    QTest::keyClick(mDialog->focusWidget(), Qt::Key_Return);
    EXPECT_TRUE(turnUntil([&] { return isOver(); }));
    EXPECT_EQ(mDialog->result(), QDialog::Accepted);
}

TEST_F(OnServiceTest, WhileAJobRunsNothingButCancelCanBeUsed) {
    open();
    sService->holdPrinter(true);
    click(control<QPushButton>("print"));
    ASSERT_TRUE(turnUntilSays("Job "));
    for (const char* name : {"presets", "savePreset", "removePreset", "copies", "printers",
                             "chooseFiles", "reset", "undo", "print", "foldPanel"})
        EXPECT_FALSE(control<QWidget>(name).isEnabled()) << name;
    EXPECT_TRUE(control<QPushButton>("cancel").isEnabled());
}

TEST_F(OnServiceTest, OneLabelIsPrintedToCheckAndThenTheOthers) {
    open();
    makeChoices();
    const Settings marks = mDialog->model().marks();
    chooseWay("printCheck");
    ASSERT_TRUE(turnUntilSays("Job ")) << testing::PrintToString(messages());
    const int first = spokenOf();
    ASSERT_TRUE(turnUntil([&] { return textOf("print") == "&Print the other 11 labels"; }))
        << testing::PrintToString(messages());
    EXPECT_FALSE(isOver());
    EXPECT_EQ(mDialog->model().marks(), marks);
    EXPECT_EQ(jobMessages(),
              "Label 1 of 12 was printed. If it is as it should be, print the others.");
    EXPECT_EQ(pagesOf(first), 1);
    EXPECT_FALSE(sService->hasReachedPrinter(first + 1)) << "nothing more is printed unasked";
    click(control<QPushButton>("print"));
    ASSERT_TRUE(turnUntil([&] { return isOver(); })) << testing::PrintToString(messages());
    EXPECT_EQ(mDialog->result(), QDialog::Accepted);
    EXPECT_EQ(pagesOf(first + 1), 11);
    EXPECT_THAT(sService->waitForJob(first + 1)->options().toStdString(),
                HasSubstr("KvHalfCut=ON"));
}

TEST_F(OnServiceTest, TheOthersOfSeveralCopiesAreAllButTheLabelThatWasChecked) {
    open();
    control<QSpinBox>("copies").setValue(2);
    settle();
    chooseWay("printCheck");
    ASSERT_TRUE(turnUntilSays("Job "));
    const int first = spokenOf();
    ASSERT_TRUE(turnUntil([&] { return textOf("print") == "&Print the other 23 labels"; }))
        << testing::PrintToString(messages());
    EXPECT_EQ(pagesOf(first), 1);
    EXPECT_EQ(sService->waitForJob(first)->arguments.value(3).toStdString(), "1");
    click(control<QPushButton>("print"));
    ASSERT_TRUE(turnUntil([&] { return isOver(); })) << testing::PrintToString(messages());
    EXPECT_EQ(pagesOf(first + 1), 23);
    EXPECT_EQ(sService->waitForJob(first + 1)->arguments.value(3).toStdString(), "1");
}

TEST_F(OnServiceTest, OtherChoicesThanThoseCheckedArePrintedWhole) {
    open();
    chooseWay("printCheck");
    ASSERT_TRUE(turnUntil([&] { return textOf("print") == "&Print the other 11 labels"; }));
    openTab(*mDialog, 0);
    click(control<QCheckBox>("mHalfCutChkBx"));
    EXPECT_EQ(textOf("print"), "&Print 12 labels");
    EXPECT_EQ(jobMessages(), "");
    click(control<QCheckBox>("mHalfCutChkBx"));
    EXPECT_EQ(textOf("print"), "&Print the other 11 labels") << "as it was checked";
}

TEST_F(OnServiceTest, OneLabelAloneNeedsNoCheck) {
    open();
    mDialog->model().setPages(PageSelection({3, 3}));
    settle();
    EXPECT_FALSE(mDialog->findChild<QAction*>(QStringLiteral("printCheck"))->isEnabled());
    EXPECT_TRUE(control<QWidget>("waysToPrint").isEnabled());
}

TEST_F(OnServiceTest, ACheckThatIsClosedLeavesItsJobAndPrintsNoOther) {
    open();
    sService->holdPrinter(true);
    chooseWay("printCheck");
    ASSERT_TRUE(turnUntil([&] { return textOf("cancel") == "Close"; }));
    const int job = spokenOf();
    click(control<QPushButton>("cancel"));
    ASSERT_TRUE(turnUntil([&] { return isOver(); }));
    sService->holdPrinter(false);
    EXPECT_EQ(pagesOf(job), 1);
    EXPECT_FALSE(service().jobAttributes(job + 1, {kLong, nullptr}));
}

TEST_F(OnServiceTest, AJobThatIsSentHeldWaitsForItsReleaseWithoutABar) {
    open();
    chooseWay("printHeld");
    ASSERT_TRUE(turnUntilSays("is held until somebody releases it"));
    const int job = spokenOf();
    EXPECT_EQ(textOf("holdJob"), "Release");
    EXPECT_TRUE(isUsable(control<QWidget>("holdJob")));
    EXPECT_FALSE(control<QProgressBar>("progress").isVisible());
    EXPECT_FALSE(sService->hasReachedPrinter(job));
    click(control<QPushButton>("holdJob"));
    ASSERT_TRUE(turnUntil([&] { return isOver(); })) << testing::PrintToString(messages());
    EXPECT_EQ(pagesOf(job), 12);
}

TEST_F(OnServiceTest, AWaitingJobIsHeldFromTheWindow) {
    open();
    ASSERT_TRUE(sService->pause(kQueue));
    click(control<QPushButton>("print"));
    ASSERT_TRUE(turnUntilVisible("holdJob"));
    EXPECT_EQ(textOf("holdJob"), "Hold");
    EXPECT_THAT(jobMessages(), HasSubstr("tape: Paused"));
    click(control<QPushButton>("holdJob"));
    ASSERT_TRUE(turnUntilSays("is held until somebody releases it"));
    EXPECT_EQ(stateOf(spokenOf()), JobState::Held);
    EXPECT_EQ(jobMessages(), "");
}

TEST_F(OnServiceTest, AJobThatWasSentIsCancelledAndCanBePrintedAgain) {
    open();
    makeChoices();
    const Settings marks = mDialog->model().marks();
    ASSERT_TRUE(sService->pause(kQueue));
    click(control<QPushButton>("print"));
    ASSERT_TRUE(turnUntilVisible("cancelJob"));
    const int job = spokenOf();
    QTest::mouseClick(&control<QPushButton>("cancelJob"), Qt::LeftButton);
    EXPECT_FALSE(control<QPushButton>("cancelJob").isEnabled()) << "asked once";
    ASSERT_TRUE(turnUntil([&] { return !messages().empty(); }));
    EXPECT_THAT(messages(), ElementsAre("Cancelled; nothing is printed."));
    EXPECT_EQ(stateOf(job), JobState::Canceled);
    EXPECT_FALSE(isOver());
    EXPECT_EQ(mDialog->model().marks(), marks);
    EXPECT_EQ(textOf("print"), "&Print again");
    EXPECT_FALSE(control<QPushButton>("cancelJob").isVisible());
    ASSERT_TRUE(sService->resume(kQueue));
    click(control<QPushButton>("print"));
    ASSERT_TRUE(turnUntil([&] { return isOver(); })) << testing::PrintToString(messages());
    EXPECT_EQ(pagesOf(job + 1), 12);
}

TEST_F(OnServiceTest, AJobThatMustNotBeCancelledIsToldAndStays) {
    PrivateCupsd::Options options;
    options.policy =
        "<Limit Cancel-Job>\nAuthType Basic\nRequire valid-user\nOrder deny,allow\n</Limit>\n";
    PrivateCupsd strict(options);
    ASSERT_TRUE(strict.start()) << strict.errorLog().toStdString();
    ASSERT_TRUE(strict.addQueue(kQueue, kTapePpd));
    ASSERT_TRUE(strict.pause(kQueue));
    open(strict);
    click(control<QPushButton>("print"));
    ASSERT_TRUE(turnUntilVisible("cancelJob"));
    click(control<QPushButton>("cancelJob"));
    ASSERT_TRUE(turnUntil([&] { return !messages().empty(); }));
    EXPECT_THAT(messages(), ElementsAre(HasSubstr("before you print again")));
    EXPECT_FALSE(isOver());
    EXPECT_EQ(stateOf(1, strict), JobState::Pending);
    mDialog.reset();
}

TEST_F(OnServiceTest, ACancelThatComesTooLateSaysThatTheJobIsPrinted) {
    // The window learns nothing of the job's end before it asks for the cancellation.
    std::atomic<bool> isBlind = false;
    const AnswerProxy proxy(sService->socketPath(), [&](const AnswerProxy::Exchange& exchange) {
        if (exchange.operation == IPP_OP_CANCEL_JOB)
            isBlind = false;
        const bool isLost = isBlind && exchange.operation == IPP_OP_GET_JOB_ATTRIBUTES;
        return AnswerProxy::Reply{isLost ? QByteArray() : exchange.answer};
    });
    DialogRequest request;
    request.files = {kLabels};
    request.queue = kQueue;
    mDialog = openDialog(request, CupsConnection({QStringLiteral("127.0.0.1"), proxy.port()}));
    ASSERT_TRUE(turnUntil(
        [&] { return mDialog->model().pageCount() > 0 && mDialog->model().hasPrinter(); }));
    settle();
    sService->holdPrinter(true);
    click(control<QPushButton>("print"));
    ASSERT_TRUE(turnUntilSays("is being printed"));
    const int job = spokenOf();
    isBlind = true;
    ASSERT_TRUE(turnUntil([&] {
        return jobMessages().find("cannot be seen") != std::string::npos;
    })) << jobMessages();
    sService->holdPrinter(false);
    ASSERT_TRUE(turnUntil([&] { return stateOf(job) == JobState::Completed; }));
    click(control<QPushButton>("cancelJob"));
    ASSERT_TRUE(turnUntil([&] { return !messages().empty(); }));
    EXPECT_THAT(messages(), ElementsAre("Job " + std::to_string(job) +
                                        " could not be cancelled any more: “tape” has printed "
                                        "it."));
    EXPECT_FALSE(isOver());
    mDialog.reset();
}

TEST_F(OnServiceTest, TheWindowCountsLabelsAndSaysWhatThePrinterLacks) {
    open();
    sService->letPrinterSay("STATE: +media-empty-error\n");
    sService->holdPrinter(true);
    click(control<QPushButton>("print"));
    // The filters report every page as soon as they have made it.
    ASSERT_TRUE(turnUntilSays("Label 12 of 12. Job "))
        << control<QLabel>("sentence").text().toStdString();
    EXPECT_EQ(control<QProgressBar>("progress").maximum(), 12);
    ASSERT_TRUE(turnUntil([&] { return !jobMessages().empty(); }));
    EXPECT_EQ(jobMessages(), "tape: Paper or tape is used up. See to it at the printer; the job "
                             "waits until then.");
    sService->letPrinterSay("STATE: -media-empty-error\n");
    sService->holdPrinter(false);
    ASSERT_TRUE(turnUntil([&] { return isOver(); }));
}

TEST_F(OnServiceTest, TheBarStandsWhereTheNumberIsKnown) {
    open();
    auto& footer = *mDialog->findChild<JobFooter*>();
    const auto& bar = control<QProgressBar>("progress");
    footer.setRunning(true, {12, 1});
    JobReport report;
    report.state = JobState::Processing;
    report.sentence = QStringLiteral("It prints.");
    footer.showReport(report);
    EXPECT_TRUE(bar.isVisible());
    EXPECT_EQ(bar.maximum(), 0) << "not known yet";
    report.labelsDone = 2;
    footer.showReport(report);
    EXPECT_EQ(control<QLabel>("sentence").text().toStdString(), "Label 3 of 12. It prints.");
    EXPECT_EQ(bar.maximum(), 12);
    EXPECT_EQ(bar.value(), 3);
    report.labelsDone = 99;
    footer.showReport(report);
    EXPECT_EQ(bar.value(), 12) << "whatever a queue counts";
    report.labelsDone = 0;
    for (const JobState waiting : {JobState::Pending, JobState::Held, JobState::Stopped}) {
        report.state = waiting;
        footer.showReport(report);
        EXPECT_FALSE(bar.isVisible());
    }
}

} // namespace labelcut::test
