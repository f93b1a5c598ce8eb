// The same choices by the command line and in the window: the same job, and the same world for
// panels.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSpinBox>

#include "tests/faults/plugin_tree.h"
#include "tests/host/dialog/dialog_fixtures.h"
#include "tests/support/private_cupsd.h"

namespace labelcut::test {

namespace {

/// The plug-ins of the build tree, and the witness beside them.
class TreeWithWitness : public PluginTree {
public:
    TreeWithWitness() {
        for (const char* plugin :
             {LABELCUT_PLUGIN_DIR "/cut_options.so", LABELCUT_WITNESS_DIR "/witness.so"}) {
            const QString from = QLatin1String(plugin);
            EXPECT_TRUE(QFile::copy(from, plugins() + u'/' + from.section(u'/', -1)));
        }
    }
};

struct Wanted {
    const char* name;
    QString ppd;
    Settings settings;
    PageSelection pages;
    Handling handling;
};

void PrintTo(const Wanted& wanted, std::ostream* out) {
    *out << wanted.name;
}

/// What tells one job from the next whatever is in it.
bool isOfThisJobOnly(const QString& attribute) {
    return attribute.startsWith(QStringLiteral("time-at-")) ||
           attribute.startsWith(QStringLiteral("date-time-at-")) ||
           QStringList{QStringLiteral("job-id"), QStringLiteral("job-uri"),
                       QStringLiteral("job-uuid"), QStringLiteral("job-more-info"),
                       QStringLiteral("job-printer-up-time")}
               .contains(attribute);
}

QJsonObject readWitness(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return QJsonDocument::fromJson(file.readAll()).object();
}

class OneOrderTest : public testing::TestWithParam<Wanted> {
protected:
    void SetUp() override {
        ASSERT_TRUE(mService.start()) << mService.errorLog().toStdString();
        ASSERT_TRUE(mService.addQueue(kQueue, GetParam().ppd));
    }
    CupsConnection service() const {
        return CupsConnection(*ServiceAddress::fromText(mService.socketPath()));
    }
    QMap<QString, QString> attributesOf(int job) const {
        const auto status = service().jobAttributes(job, {kLong, nullptr});
        EXPECT_TRUE(status);
        QMap<QString, QString> all = status ? status->attributes : QMap<QString, QString>();
        all.removeIf([](const auto& attribute) { return isOfThisJobOnly(attribute.key()); });
        return all;
    }
    void printByCommand() {
        QStringList arguments{QStringLiteral("print"), QStringLiteral("--printer"), kQueue};
        for (const Setting& setting : GetParam().settings)
            arguments << QStringLiteral("--set") << setting.keyword + u'=' + setting.choice;
        const Handling& handling = GetParam().handling;
        arguments << QStringLiteral("--copies") << QString::number(handling.copies);
        if (handling.isReversed)
            arguments << QStringLiteral("--reverse");
        if (!handling.isCollated)
            arguments << QStringLiteral("--no-collate");
        if (handling.fit != worker::Fit::Unchanged)
            arguments << QStringLiteral("--fit") << fitWord(handling.fit);
        if (!GetParam().pages.isEverything())
            arguments << QStringLiteral("--pages") << toString(GetParam().pages);
        const Outcome outcome =
            mTree.run(arguments + QStringList{kLabels},
                      {{QStringLiteral("CUPS_SERVER"), mService.socketPath()},
                       {QStringLiteral("HOME"), mHome.path(QString())},
                       {QStringLiteral("LABELCUT_WITNESS"), witness("command")}});
        ASSERT_EQ(outcome.status, 0) << outcome.err;
    }
    void printInWindow() {
        const Environment file("LABELCUT_WITNESS", witness("window").toUtf8());
        const PluginSearch plugins = loadPlugins(mTree.plugins());
        ASSERT_EQ(plugins.loaded.size(), 2U);
        DialogRequest request;
        request.files = {kLabels};
        request.queue = kQueue;
        PrintDialog dialog(request, plugins, hostSystem(), service());
        dialog.show();
        ASSERT_TRUE(turnUntil(
            [&] { return dialog.model().pageCount() > 0 && dialog.model().hasPrinter(); }));
        lookAtEveryPage(dialog);
        dialog.model().setPages(GetParam().pages);
        EXPECT_TRUE(dialog.model().chooseAll(GetParam().settings, GetParam().handling).isEmpty());
        settle();
        click(*part<QPushButton>(dialog, "print"));
        ASSERT_TRUE(turnUntil([&] { return !dialog.isVisible(); }));
    }
    QString witness(const char* who) const {
        return mHome.path(QLatin1String(who) + QStringLiteral(".json"));
    }

    const QString kQueue = QStringLiteral("tape");
    Offscreen mOffscreen;
    PrivateHome mHome;
    TreeWithWitness mTree;
    PrivateCupsd mService;
};

} // namespace

TEST_P(OneOrderTest, GivesTheSameJobAndTheSameWorldToPanels) {
    ASSERT_NO_FATAL_FAILURE(printByCommand());
    // Panels see the printer's state; both find it idle.
    ASSERT_TRUE(mService.waitForJob(1));
    ASSERT_TRUE(turnUntil([&] {
        const auto queue = service().queueAttributes(kQueue, {kLong, nullptr});
        return queue && queue->queue.state == PMPrinterState::Idle;
    }));
    ASSERT_NO_FATAL_FAILURE(printInWindow());
    const QMap<QString, QString> byCommand = attributesOf(1);
    const QMap<QString, QString> inWindow = attributesOf(2);
    EXPECT_EQ(byCommand.keys(), inWindow.keys());
    for (auto attribute = byCommand.begin(); attribute != byCommand.end(); ++attribute)
        EXPECT_EQ(attribute.value().toStdString(), inWindow.value(attribute.key()).toStdString())
            << attribute.key().toStdString();
    for (const Setting& setting : GetParam().settings)
        EXPECT_TRUE(byCommand.contains(setting.keyword)) << setting.keyword.toStdString();

    const QJsonObject seenByCommand = readWitness(witness("command"));
    const QJsonObject seenInWindow = readWitness(witness("window"));
    EXPECT_EQ(seenByCommand.keys(), seenInWindow.keys());
    for (const QString& key : seenByCommand.keys())
        EXPECT_EQ(seenByCommand.value(key), seenInWindow.value(key))
            << QJsonDocument(QJsonObject{{key, seenByCommand.value(key)}}).toJson().toStdString()
            << "against "
            << QJsonDocument(QJsonObject{{key, seenInWindow.value(key)}}).toJson().toStdString();
    EXPECT_EQ(seenByCommand.value(QStringLiteral("pages")).toArray().first().toInt(),
              GetParam().pages.hull().first);
}

INSTANTIATE_TEST_SUITE_P(
    Choices, OneOrderTest,
    testing::Values(Wanted{"Nothing", kTapePpd, {}, {}, {}},
                    Wanted{"HalfCutMirrorAndPages",
                           kTapePpd,
                           {{QStringLiteral("KvHalfCut"), QStringLiteral("ON")},
                            {QStringLiteral("KvMirror"), QStringLiteral("ON")},
                            {QStringLiteral("Quality"), QStringLiteral("Best")}},
                           PageSelection({2, 5}),
                           {3}},
                    Wanted{"LabelSizeOfFixedLength",
                           kTapePpd,
                           {{QStringLiteral("PageSize"), QStringLiteral("DC24")},
                            {QStringLiteral("KvChainPrint"), QStringLiteral("ON")}},
                           *parsePageSelection(QStringLiteral("3,5-7,9-")),
                           {2, true, false, worker::Fit::Scale}},
                    Wanted{"LabelSizeOfTheUsersOwn",
                           kTapePpd,
                           {{QStringLiteral("PageSize"), QStringLiteral("Custom.24x120mm")},
                            {QStringLiteral("Density"), QStringLiteral("Dark")}},
                           {},
                           {2, true, true, worker::Fit::Turn}},
                    Wanted{"CutEveryFive",
                           kRollPpd,
                           {{QStringLiteral("KvCutLabel"), QStringLiteral("5")},
                            {QStringLiteral("KvAutoTapeCut"), QStringLiteral("ON")},
                            {QStringLiteral("KvMirror"), QStringLiteral("ON")}},
                           {},
                           {}}),
    [](const auto& instance) { return std::string(instance.param.name); });

} // namespace labelcut::test
