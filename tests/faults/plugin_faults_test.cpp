// Faults of plug-ins: missing, damaged or hostile to the rules, they are named, and printing goes
// on.
#include <QDir>

#include <unistd.h>

#include "host/panels/plugin_loader.h"
#include "tests/faults/plugin_tree.h"

namespace labelcut::test {

using testing::AllOf;
using testing::HasSubstr;

namespace {

QByteArray testPlugin(const char* name) {
    return contentOf(QStringLiteral(LABELCUT_TEST_PLUGIN_DIR "/%1.so").arg(QLatin1String(name)));
}

QByteArray cutOptions() {
    return contentOf(QStringLiteral(LABELCUT_PLUGIN_DIR "/cut_options.so"));
}

struct Fault {
    const char* name;
    QByteArray (*file)();
    const char* said;
};

void PrintTo(const Fault& fault, std::ostream* out) {
    *out << fault.name;
}

const Fault kFaults[] = {
    {"Text", [] { return QByteArray("no plug-in at all\n"); }, "not a plug-in, or it is damaged"},
    {"CutOff", [] { return cutOptions().left(50'000); }, "damaged"},
    {"Newer", [] { return testPlugin("newer"); }, "needs version 4 of the interface, this is 3"},
    {"Older", [] { return testPlugin("older"); },
     "built for version 2 of the interface, this is 3"},
    {"ThrowsAnError", [] { return testPlugin("throws_an_error"); },
     "its constructor failed: out of order"},
    {"ThrowsANumber", [] { return testPlugin("throws_a_number"); }, "its constructor failed"},
    {"GivesNothing", [] { return testPlugin("gives_nothing"); }, "test.so"},
};

class PluginFaultTest : public testing::TestWithParam<Fault> {
protected:
    PrivateHome mHome;
    PluginTree mTree;
};

} // namespace

TEST_P(PluginFaultTest, IsNamedByTheCommandWhichPrints) {
    mTree.write(QStringLiteral("test.so"), GetParam().file());
    const QString output = mHome.path(QStringLiteral("out.ps"));
    const Outcome outcome = mTree.run(
        {QStringLiteral("print"), kLabels, QStringLiteral("--ppd"), kTapePpd,
         QStringLiteral("--set"), QStringLiteral("KvHalfCut=ON"), QStringLiteral("-o"), output});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_THAT(outcome.err, AllOf(HasSubstr("The plug-in \""), HasSubstr("test.so"),
                                   HasSubstr(GetParam().said)));
    EXPECT_TRUE(contentOf(output).contains("%%BeginFeature: *KvHalfCut ON"));
}

TEST_P(PluginFaultTest, IsNamedByTheDialogWhichPrints) {
    mTree.write(QStringLiteral("test.so"), GetParam().file());
    const PluginSearch search = loadPlugins(mTree.plugins());
    DialogRequest request;
    request.files = {kLabels};
    request.ppdPath = kTapePpd;
    const Offscreen offscreen;
    PrintDialog dialog(request, search, hostSystem(), noService());
    dialog.show();
    ASSERT_TRUE(turnUntil([&] { return dialog.model().pageCount() > 0; }));
    settleWithPrinter(dialog);
    EXPECT_THAT(messagesOf(dialog), AllOf(HasSubstr("test.so"), HasSubstr(GetParam().said)));
    // Without its panel an option is one among the others, and is printed all the same.
    dialog.tabs().setCurrentIndex(1);
    settle();
    choose(optionBox(dialog, "KvHalfCut"), QStringLiteral("ON"));
    const QString output = mHome.path(QStringLiteral("out.ps"));
    pressPrint(dialog, output);
    ASSERT_TRUE(turnUntil([&] { return !dialog.isVisible(); })) << messagesOf(dialog);
    EXPECT_TRUE(contentOf(output).contains("%%BeginFeature: *KvHalfCut ON"));
}

INSTANTIATE_TEST_SUITE_P(Faults, PluginFaultTest, testing::ValuesIn(kFaults),
                         [](const auto& fault) { return std::string(fault.param.name); });

TEST(PluginInUseTest, AFailingPanelIsNamedByTheCommandWhichPrintsWhatWasAskedFor) {
    const PrivateHome home;
    const PluginTree tree;
    tree.write(QStringLiteral("test.so"), testPlugin("throws_in_use"));
    const QString output = home.path(QStringLiteral("out.ps"));
    const Outcome outcome = tree.run(
        {QStringLiteral("print"), kLabels, QStringLiteral("--ppd"), kTapePpd,
         QStringLiteral("--set"), QStringLiteral("KvHalfCut=ON"), QStringLiteral("-o"), output});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_THAT(outcome.err, AllOf(HasSubstr("The panel of the plug-in"), HasSubstr("test.so"),
                                   HasSubstr("broken in use")));
    EXPECT_TRUE(contentOf(output).contains("%%BeginFeature: *KvHalfCut ON"));
}

/// The window with the cut options' plug-in and others behind it.
class PluginsInUseTest : public testing::Test {
protected:
    void open(std::initializer_list<const char*> others) {
        for (const char* other : others)
            mTree.write(QLatin1String(other) + QStringLiteral(".so"), testPlugin(other));
        mSearch = plugins();
        const PluginSearch more = loadPlugins(mTree.plugins());
        mSearch.loaded.insert(mSearch.loaded.end(), more.loaded.begin(), more.loaded.end());
        DialogRequest request;
        request.files = {kLabels};
        request.ppdPath = kTapePpd;
        mDialog = std::make_unique<PrintDialog>(request, mSearch, hostSystem(), noService());
        mDialog->show();
        ASSERT_TRUE(turnUntil([&] { return mDialog->model().pageCount() > 0; }));
        settleWithPrinter(*mDialog);
    }
    QByteArray printed() {
        const QString output = mHome.path(QStringLiteral("out.ps"));
        pressPrint(*mDialog, output);
        EXPECT_TRUE(turnUntil([&] { return !mDialog->isVisible(); })) << messagesOf(*mDialog);
        return contentOf(output);
    }

    Offscreen mOffscreen;
    PrivateHome mHome;
    PluginTree mTree;
    PluginSearch mSearch;
    std::unique_ptr<PrintDialog> mDialog;
};

TEST_F(PluginsInUseTest, AFailingPanelCostsNoChoiceOfTheOthers) {
    open({"throws_in_use"});
    EXPECT_THAT(messagesOf(*mDialog), HasSubstr("broken in use"));
    click(*part<QCheckBox>(*mDialog, "mMirrorPrintChkBx"));
    settle();
    EXPECT_EQ(mDialog->model().choice(QStringLiteral("KvMirror")), QStringLiteral("ON"));
    EXPECT_TRUE(printed().contains("%%BeginFeature: *KvMirror ON"));
}

TEST_F(PluginsInUseTest, PanelsThatNeverAgreeAreToldAndWhatIsShownIsPrinted) {
    open({"wants_off", "wants_on"});
    click(*part<QCheckBox>(*mDialog, "mMirrorPrintChkBx"));
    settle();
    EXPECT_THAT(messagesOf(*mDialog), AllOf(HasSubstr("“KvMirror”"), HasSubstr("without end")));
    const QString shown = mDialog->model().choice(QStringLiteral("KvMirror")).value_or(QString());
    EXPECT_TRUE(printed().contains("%%BeginFeature: *KvMirror " + shown.toLatin1()));
}

TEST(NoPluginTest, ACommandSaysSoAndPrints) {
    const PrivateHome home;
    const PluginTree tree;
    const QString output = home.path(QStringLiteral("out.ps"));
    const Outcome outcome = tree.run({QStringLiteral("print"), kLabels, QStringLiteral("--ppd"),
                                      kTapePpd, QStringLiteral("-o"), output});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_THAT(outcome.err,
                AllOf(HasSubstr("No plug-in was found in"), HasSubstr("install Labelcut anew")));
    EXPECT_TRUE(QFile::exists(output));
}

} // namespace labelcut::test
