// Tests of the base panel: what it takes from the host, its answers, and the order of its hooks.
#include "plugins/cut_options/frame/base_pde.h"

#include <gtest/gtest.h>

#include <QPointer>

#include <cstring>

#include "tests/plugins/cut_options/frame/recording_panel.h"
#include "tests/support/ppd_builder.h"

namespace labelcut::test {
namespace {

QString repeated(const QString& text, int count) {
    return text.repeated(count);
}

TEST(BasePanelConstruction, AsksTheHostInAFixedOrderForSettingsTwice) {
    RecordingPanelOnHost setting;
    setting.construct();
    EXPECT_EQ(setting.host->asked,
              (QStringList{QStringLiteral("printSession"), QStringLiteral("printSettings"),
                           QStringLiteral("printSettings"), QStringLiteral("pageFormat"),
                           QStringLiteral("PMPrinter"), QStringLiteral("ppdFile")}));
    EXPECT_TRUE(setting.panel->calls.isEmpty());
    EXPECT_TRUE(setting.host->sent.empty());
}

TEST(BasePanelConstruction, HoldsWhatTheHostGave) {
    RecordingPanelOnHost setting(PpdBuilder::tapePrinter().open());
    const RecordingPanel& panel = setting.construct();
    EXPECT_EQ(panel.pdePluginCallbackObject, setting.host);
    EXPECT_EQ(panel.nsPDEBundle, setting.bundle);
    EXPECT_EQ(panel.printSession, &setting.host->session);
    EXPECT_EQ(panel.pmPrintSettings, &setting.host->settings);
    EXPECT_EQ(panel.printSettings, &setting.host->settings);
    EXPECT_EQ(panel.formatSettings, &setting.host->format);
    EXPECT_EQ(panel.printer, &setting.host->fakePrinter);
    EXPECT_EQ(panel.ppd, setting.host->ppd.get());
    EXPECT_FALSE(panel.supportedOptions());
    EXPECT_TRUE(panel.thePDEName.isNull());
    EXPECT_FALSE(panel.kPDEView);
    EXPECT_EQ(panel.mLoadedNibFlg, 0);
    EXPECT_EQ(panel.mFormattedItemFlg, 0);
}

TEST(BasePanelConstruction, HoldsNothingWhereTheHostHasNothing) {
    RecordingPanelOnHost setting;
    setting.host->hasSession = setting.host->hasSettings = false;
    setting.host->hasFormat = setting.host->hasPrinter = false;
    const RecordingPanel& panel = setting.construct();
    EXPECT_EQ(panel.printSession, nullptr);
    EXPECT_EQ(panel.pmPrintSettings, nullptr);
    EXPECT_EQ(panel.printSettings, nullptr);
    EXPECT_EQ(panel.formatSettings, nullptr);
    EXPECT_EQ(panel.printer, nullptr);
    EXPECT_EQ(panel.ppd, nullptr);
    EXPECT_EQ(panel.deviceURI.front(), '\0');
}

TEST(BasePanelConstruction, GivesNothingWithoutAHost) {
    RecordingPanel panel;
    EXPECT_EQ(panel.initWithCallback(nullptr, std::make_shared<RecordingBundle>()), nullptr);
    EXPECT_FALSE(panel.pdePluginCallbackObject);
    panel.setViewFrameSize({300, 200});
    panel.dialogDidExpand();
    EXPECT_FALSE(panel.panelView());
}

TEST(BasePanelConstruction, ForgetsWhatAnEarlierOneBuilt) {
    RecordingPanelOnHost setting;
    RecordingPanel& panel = setting.construct();
    panel.panelName();
    panel.setSupportedOptions(QStringList{QStringLiteral("KvMirror")});
    panel.initWithCallback(setting.host, setting.bundle);
    EXPECT_FALSE(panel.supportedOptions());
    EXPECT_TRUE(panel.thePDEName.isNull());
}

TEST(BasePanelTeardown, ReleasesTheViewThenTheHostThenTheBundle) {
    QStringList released;
    RecordingPanelOnHost setting;
    setting.writeInterface("kPDEView");
    auto panel = std::make_unique<RecordingPanel>();
    {
        const std::shared_ptr<FakeHost> host(new FakeHost, [&](FakeHost* gone) {
            released.append(QStringLiteral("host"));
            delete gone;
        });
        const std::shared_ptr<RecordingBundle> bundle(new RecordingBundle,
                                                      [&](RecordingBundle* gone) {
                                                          released.append(QStringLiteral("bundle"));
                                                          delete gone;
                                                      });
        bundle->interfaceFile = setting.bundle->interfaceFile;
        panel->initWithCallback(host, bundle);
    }
    QObject::connect(panel->panelView(), &QObject::destroyed,
                     [&] { released.append(QStringLiteral("view")); });
    EXPECT_TRUE(released.isEmpty()) << "the panel keeps all of them alive";

    panel.reset();
    EXPECT_EQ(released, (QStringList{QStringLiteral("view"), QStringLiteral("host"),
                                     QStringLiteral("bundle")}));
}

struct UriCase {
    const char* name;
    QString uri;
    QByteArray held;
};

// The copy has room for 254 bytes and a terminator, one less than the field.
TEST(DeviceUri, FitsUpTo254BytesAndStaysEmptyBeyond) {
    const QString e = QStringLiteral("é");
    const UriCase cases[] = {
        {"empty", QStringLiteral(""), ""},
        {"short", QStringLiteral("usb://Maker/Model?serial=1"), "usb://Maker/Model?serial=1"},
        {"253 bytes", repeated(QStringLiteral("u"), 253), QByteArray(253, 'u')},
        {"254 bytes", repeated(QStringLiteral("u"), 254), QByteArray(254, 'u')},
        {"255 bytes", repeated(QStringLiteral("u"), 255), ""},
        {"256 bytes", repeated(QStringLiteral("u"), 256), ""},
        {"257 bytes", repeated(QStringLiteral("u"), 257), ""},
        {"100000 bytes", repeated(QStringLiteral("u"), 100'000), ""},
        {"127 letters of two bytes", repeated(e, 127), repeated(e, 127).toUtf8()},
        {"255 bytes, 128 letters", repeated(e, 127) + QLatin1Char('u'), ""},
        {"not encodable", QStringLiteral("usb://") + QChar(0xD800), ""},
    };
    for (const UriCase& c : cases) {
        RecordingPanelOnHost setting;
        setting.host->fakePrinter.uri = PMURL(c.uri);
        const RecordingPanel& panel = setting.construct();
        EXPECT_EQ(QByteArray(panel.deviceURI.data()), c.held) << c.name;
        EXPECT_EQ(panel.deviceURI.back(), '\0') << c.name << ": the last byte is never written";
    }
}

TEST(DeviceUri, StaysEmptyWithoutAPrinterWithoutAUriAndWithoutAStringForm) {
    RecordingPanelOnHost noPrinter;
    noPrinter.host->hasPrinter = false;
    EXPECT_EQ(noPrinter.construct().deviceURI.front(), '\0');

    RecordingPanelOnHost noUri;
    noUri.host->fakePrinter.uri = PMURL(QStringLiteral("usb://x"));
    noUri.host->fakePrinter.uriStatus = kPMKeyNotFound;
    EXPECT_EQ(noUri.construct().deviceURI.front(), '\0');

    RecordingPanelOnHost noString;
    noString.host->fakePrinter.uri = PMURL();
    EXPECT_EQ(noString.construct().deviceURI.front(), '\0');
}

TEST(BasePanelName, ComesFromTheDefaultTableAndIsBuiltOnce) {
    RecordingPanelOnHost setting;
    RecordingPanel& panel = setting.construct();
    const QString first = panel.panelName();
    EXPECT_EQ(first, QStringLiteral("<OP_PANEL_NAME>"));
    const QString second = panel.panelName();
    EXPECT_EQ(second.constData(), first.constData()) << "the same object";
    EXPECT_EQ(setting.bundle->asked,
              QStringList{QStringLiteral("text OP_PANEL_NAME no value no table")});
}

TEST(BasePanelName, IsItsKeyWithoutABundle) {
    RecordingPanel panel;
    panel.initWithCallback(std::make_shared<FakeHost>(), nullptr);
    EXPECT_EQ(panel.panelName(), QStringLiteral("OP_PANEL_NAME"));
}

TEST(BasePanelKind, IsTheVendorsPrefixAndTheKind) {
    RecordingPanelOnHost setting;
    EXPECT_EQ(setting.construct().panelKind(),
              QStringLiteral("org.labelcut.printer.cups.pde.OptionPDEKind"));
}

TEST(BasePanelView, IsLoadedOnceAndAwakesWhenItsControlsAreConnected) {
    RecordingPanelOnHost setting;
    RecordingPanel& panel = setting.construct();
    QWidget* const view = panel.panelView();
    ASSERT_TRUE(view);
    EXPECT_EQ(view->objectName(), QStringLiteral("kPDEView"));
    EXPECT_EQ(panel.panelView(), view);
    EXPECT_EQ(panel.calls, (QStringList{QStringLiteral("connectOutlets kPDEView"),
                                        QStringLiteral("awakeFromNib")}));
    EXPECT_EQ(setting.bundle->asked, QStringList{QStringLiteral("interface OptionPDE")});
    EXPECT_EQ(panel.mLoadedNibFlg, 0) << "no operation writes it";
}

TEST(BasePanelView, IsNothingWithoutABundleAndWithoutAFile) {
    RecordingPanel bundleless;
    bundleless.initWithCallback(std::make_shared<FakeHost>(), nullptr);
    EXPECT_FALSE(bundleless.panelView());
    EXPECT_TRUE(bundleless.calls.isEmpty());

    RecordingPanelOnHost fileless;
    fileless.bundle->interfaceFile = fileless.folder.filePath(QStringLiteral("missing.ui"));
    EXPECT_FALSE(fileless.construct().panelView());
    EXPECT_TRUE(fileless.panel->calls.isEmpty());
}

TEST(BasePanelView, IsNothingWhenTheFileNamesNoView) {
    RecordingPanelOnHost setting;
    setting.writeInterface("somethingElse");
    EXPECT_FALSE(setting.construct().panelView());
    EXPECT_FALSE(setting.panel->kPDEView);
}

TEST(BasePanelView, GoesWithThePanel) {
    RecordingPanelOnHost setting;
    const QPointer<QWidget> view = setting.construct().panelView();
    ASSERT_TRUE(view);
    setting.panel.reset();
    EXPECT_FALSE(view);
}

TEST(BasePanelView, MayBeDestroyedByTheHostFirst) {
    RecordingPanelOnHost setting;
    RecordingPanel& panel = setting.construct();
    {
        QWidget window;
        panel.panelView()->setParent(&window);
    }
    EXPECT_FALSE(panel.kPDEView);
    EXPECT_TRUE(panel.panelView()) << "and is then built anew";
    {
        QWidget window;
        panel.panelView()->setParent(&window);
    }
    setting.panel.reset();
}

TEST(BasePanelHooks, WillShowSetsTitlesThenInitialisesThenRefreshes) {
    RecordingPanelOnHost setting;
    RecordingPanel& panel = setting.construct();
    const QStringList once{QStringLiteral("initSetTitleTexts"), QStringLiteral("initUI"),
                           QStringLiteral("updateUI"), QStringLiteral("setPDEItems")};
    panel.willShow();
    EXPECT_EQ(panel.calls, once);
    panel.willShow();
    EXPECT_EQ(panel.calls, once + once);
}

TEST(BasePanelHooks, SaveWritesTheValuesAndNeverFails) {
    RecordingPanelOnHost setting;
    RecordingPanel& panel = setting.construct();
    QString error = QStringLiteral("untouched");
    EXPECT_TRUE(panel.saveValuesAndReturnError(&error));
    EXPECT_TRUE(panel.saveValuesAndReturnError(nullptr));
    EXPECT_EQ(error, QStringLiteral("untouched"));
    EXPECT_EQ(panel.calls,
              (QStringList{QStringLiteral("setValuesToKey"), QStringLiteral("setValuesToKey")}));
}

TEST(BasePanelHooks, RestoreRereadsThenRefreshesAndNeverFails) {
    RecordingPanelOnHost setting;
    RecordingPanel& panel = setting.construct();
    QString error = QStringLiteral("untouched");
    EXPECT_TRUE(panel.restoreValuesAndReturnError(&error));
    EXPECT_EQ(error, QStringLiteral("untouched"));
    EXPECT_EQ(panel.calls, (QStringList{QStringLiteral("setPDEItems2"), QStringLiteral("updateUI"),
                                        QStringLiteral("setPDEItems")}));
    EXPECT_TRUE(panel.restoreValuesAndReturnError(nullptr));
}

TEST(BasePanelHooks, SupportedKeysAreWrittenAndNotSaid) {
    RecordingPanelOnHost setting;
    RecordingPanel& panel = setting.construct();
    EXPECT_FALSE(panel.supportedPPDOptionKeys());
    EXPECT_EQ(panel.calls, QStringList{QStringLiteral("setValuesToKey")});
}

TEST(BasePanelHooks, DoNothingInTheBaseExceptThatRefreshingSetsTheItems) {
    auto host = std::make_shared<FakeHost>(PpdBuilder::tapePrinter().open());
    BasePDE13_v400_ panel;
    panel.initWithCallback(host, nullptr);
    host->asked.clear();
    panel.initSetTitleTexts();
    panel.initUI();
    panel.getValuesFromKey();
    panel.setValuesToKey();
    panel.setPDEItems();
    panel.setPDEItems2();
    panel.updateUI();
    panel.updateUIItem(0x7FFFFFFF);
    panel.updateMarkedSelections(0xFFFFFFFF);
    panel.awakeFromNib();
    panel.printWindowWillClose(true);
    panel.printWindowWillClose(false);
    panel.PPDOptionKeyValueDidChange(QStringLiteral("KvMirror"), QStringLiteral("ON"));
    panel.PPDOptionKeyValueDidChange(QString(), QString());
    EXPECT_EQ(panel.indexForSummary("KvMirror"), 0);
    EXPECT_EQ(panel.indexForSummary(nullptr), 0);
    EXPECT_TRUE(host->asked.isEmpty());
    EXPECT_TRUE(host->sent.empty());
    EXPECT_EQ(host->resized, 0);

    RecordingPanelOnHost setting;
    setting.construct().updateUI();
    EXPECT_EQ(setting.panel->calls,
              (QStringList{QStringLiteral("updateUI"), QStringLiteral("setPDEItems")}));
}

TEST(BasePanelAnswers, AreTheDefaultsOfThePanelInterface) {
    RecordingPanelOnHost setting;
    RecordingPanel& panel = setting.construct();
    EXPECT_TRUE(panel.shouldHide());
    EXPECT_TRUE(panel.shouldPrint());
    EXPECT_FALSE(panel.shouldShowHelp());
    EXPECT_FALSE(panel.summaryInfo());
    EXPECT_TRUE(panel.calls.isEmpty());
}

TEST(SupportedOptions, AreWhatWasSet) {
    RecordingPanelOnHost setting;
    RecordingPanel& panel = setting.construct();
    const QStringList keys{QStringLiteral("KvMirror"), QStringLiteral("KvHalfCut")};
    panel.setSupportedOptions(keys);
    EXPECT_EQ(panel.supportedOptions(), keys);
    panel.setSupportedOptions(panel.supportedOptions());
    EXPECT_EQ(panel.supportedOptions(), keys) << "the list that is held already";
    panel.setSupportedOptions(QStringList());
    EXPECT_EQ(panel.supportedOptions(), QStringList()) << "an empty list is a list";
    panel.setSupportedOptions(std::nullopt);
    EXPECT_FALSE(panel.supportedOptions());
}

TEST(FileVersion, IsTheAttributesValue) {
    RecordingPanelOnHost without;
    EXPECT_FALSE(without.construct().fileVerString());

    RecordingPanelOnHost lacking(PpdBuilder().open());
    EXPECT_FALSE(lacking.construct().fileVerString());

    RecordingPanelOnHost having(PpdBuilder().attribute("FileVersion", "4.0.1").open());
    EXPECT_EQ(having.construct().fileVerString(), QStringLiteral("4.0.1"));
}

TEST(PrinterFamily, IsRollLabelExactlyForTheTapeTypeRV) {
    struct Case {
        const char* value;
        bool isRV;
    };
    for (const Case& c :
         {Case{"RV", true}, Case{"rv", false}, Case{"Rv", false}, Case{"RV ", false},
          Case{" RV", false}, Case{"RVX", false}, Case{"R", false}, Case{"SG", false},
          Case{"", false}, Case{"R\xC3", false}}) {
        RecordingPanelOnHost setting(PpdBuilder().attribute("KvTapeType", c.value).open());
        const ppd_attr_t* held = ppd::findAttr(setting.host->ppd.get(), "KvTapeType");
        ASSERT_TRUE(held);
        ASSERT_STREQ(held->value, c.value);
        EXPECT_EQ(setting.construct().isRVPrinter(), c.isRV) << '"' << c.value << '"';
    }
}

TEST(PrinterFamily, IsTapeWithoutPpdWithoutAttributeAndWithoutValue) {
    RecordingPanelOnHost without;
    EXPECT_FALSE(without.construct().isRVPrinter());
    RecordingPanelOnHost lacking(PpdBuilder().open());
    EXPECT_FALSE(lacking.construct().isRVPrinter());
    RecordingPanelOnHost bare(PpdBuilder().bareAttribute("KvTapeType").open());
    EXPECT_FALSE(bare.construct().isRVPrinter());
}

} // namespace
} // namespace labelcut::test
