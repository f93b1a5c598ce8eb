// Tests of the automation driver: every line of its protocol, with the plug-in as it is shipped.
#include <gtest/gtest.h>

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <set>

#include "host/script/panel_script.h"
#include "tests/plugins/cut_options/options/qstring_printing.h"
#include "tests/support/ppd_builder.h"

namespace labelcut::test {
namespace {

const PluginSearch& plugins() {
    static const PluginSearch search = loadPlugins(QStringLiteral(LABELCUT_PLUGIN_DIR));
    return search;
}

QJsonObject object(const QByteArray& json) {
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    EXPECT_EQ(error.error, QJsonParseError::NoError) << json.toStdString();
    return document.object();
}

QJsonValue parsed(const QByteArray& json) {
    return object("{\"v\":" + json + "}").value(QLatin1String("v"));
}

std::string shown(const QJsonValue& v) {
    return QJsonDocument(QJsonObject{{QStringLiteral("v"), v}})
        .toJson(QJsonDocument::Compact)
        .toStdString();
}

#define EXPECT_JSON(actual, wanted)                                                                \
    EXPECT_TRUE(QJsonValue(actual) == parsed(wanted))                                              \
        << shown(actual) << " is not " << QByteArray(wanted).toStdString()

class PanelScriptTest : public testing::Test {
protected:
    QJsonObject run(const QByteArray& line) { return mScript.carryOut(line); }
    QJsonObject ok(const QByteArray& line) {
        const QJsonObject answer = run(line);
        EXPECT_EQ(answer.value(QLatin1String("ok")), QJsonValue(true))
            << line.toStdString() << " gave " << shown(answer);
        EXPECT_FALSE(answer.contains(QLatin1String("error")));
        return answer;
    }
    /// An answer of exactly "ok" and "error".
    QString refused(const QByteArray& line) {
        const QJsonObject answer = run(line);
        EXPECT_EQ(answer.value(QLatin1String("ok")), QJsonValue(false)) << line.toStdString();
        EXPECT_EQ(answer.size(), 2) << shown(answer);
        const QString error = answer.value(QLatin1String("error")).toString();
        EXPECT_FALSE(error.isEmpty()) << line.toStdString();
        return error;
    }
    QByteArray write(const PpdBuilder& ppd) {
        const QString path = mFolder.filePath(QStringLiteral("%1.ppd").arg(++mFiles));
        QFile out(path);
        EXPECT_TRUE(out.open(QIODevice::WriteOnly));
        out.write(ppd.text());
        return path.toUtf8();
    }
    QJsonObject open(const PpdBuilder& ppd, const QByteArray& more = {}) {
        return ok("{\"do\":\"open\",\"ppd\":\"" + write(ppd) + "\"" + more + "}");
    }
    /// As a dialog shows a panel for the first time; the logs are empty then.
    void show(const PpdBuilder& ppd, const QByteArray& more = {}) {
        open(ppd, more);
        for (const char* line : {"keys", "view", "willShow", "restore", "state"})
            ok("{\"do\":\"" + QByteArray(line) + "\"}");
    }
    QJsonObject state() { return ok(R"({"do":"state"})"); }
    QJsonObject control(const char* name) {
        return state()
            .value(QLatin1String("controls"))
            .toObject()
            .value(QLatin1String(name))
            .toObject();
    }

    QTemporaryDir mFolder;
    int mFiles = 0;
    PanelScript mScript{plugins()};
};

std::set<QString> keysOf(const QJsonObject& answer) {
    const QStringList keys = answer.keys();
    return {keys.begin(), keys.end()};
}

std::set<QString> names(std::initializer_list<const char*> all) {
    std::set<QString> result;
    for (const char* name : all)
        result.insert(QLatin1String(name));
    return result;
}

// Opening.

TEST_F(PanelScriptTest, OpenAnswersAcceptedAndPanels) {
    const QJsonObject answer = open(PpdBuilder::tapePrinter());
    EXPECT_EQ(keysOf(answer), names({"ok", "accepted", "panels"}));
    EXPECT_JSON(answer.value(QLatin1String("accepted")), "true");
    EXPECT_JSON(answer.value(QLatin1String("panels")), "1");
}

TEST_F(PanelScriptTest, OpenNeedsNothing) {
    EXPECT_JSON(ok(R"({"do":"open"})").value(QLatin1String("panels")), "1");
    EXPECT_JSON(ok(R"({"do":"keys"})").value(QLatin1String("keys")), "[]");
    const QJsonObject answer = ok(
        R"({"do":"open","ppd":null,"uri":null,"paper":null,"ticket":null,"settings":true,"system":null,"resources":null,"marks":"defaults"})");
    EXPECT_JSON(answer.value(QLatin1String("panels")), "1");
}

TEST_F(PanelScriptTest, OpenOfAnotherTypeHasNoPanel) {
    const QJsonObject answer = open(PpdBuilder::tapePrinter(), R"(,"type":"something")");
    EXPECT_JSON(answer.value(QLatin1String("accepted")), "true");
    EXPECT_JSON(answer.value(QLatin1String("panels")), "0");
    refused(R"({"do":"name"})");
    refused(R"({"do":"state"})");
    open(PpdBuilder::tapePrinter(), R"(,"type":"BDB091F4-E57F-11D3-B5CC-0050E4603277")");
    ok(R"({"do":"name"})");
}

TEST_F(PanelScriptTest, OpenDiscardsThePreviousPanelAndItsLogs) {
    show(PpdBuilder::tapePrinter());
    ok(R"({"do":"click","control":"mHalfCutChkBx"})");
    open(PpdBuilder::tapePrinter());
    const QJsonObject s = state();
    EXPECT_JSON(s.value(QLatin1String("calls")), "[]");
    EXPECT_JSON(s.value(QLatin1String("panelSize")), "null");
    EXPECT_JSON(s.value(QLatin1String("marked")).toObject().value(QLatin1String("KvHalfCut")),
                "\"OFF\"");
}

TEST_F(PanelScriptTest, OpenThatFailsLeavesNoPanel) {
    const QByteArray lines[] = {
        R"({"do":"open","ppd":"/nonexistent/x.ppd"})",
        "{\"do\":\"open\",\"ppd\":\"" + mFolder.path().toUtf8() + "\"}",
        R"({"do":"open","ppd":7})",
        R"({"do":"open","ppd":""})",
        R"({"do":"open","marks":"all"})",
        R"({"do":"open","marks":null})",
        R"({"do":"open","marks":1})",
        R"({"do":"open","uri":1})",
        R"({"do":"open","ticket":{}})",
        R"({"do":"open","settings":"yes"})",
        R"({"do":"open","settings":null})",
        R"({"do":"open","settings":0})",
        R"({"do":"open","type":null})",
        R"({"do":"open","type":1})",
        R"({"do":"open","system":"11.0.0"})",
        R"({"do":"open","system":[11,0]})",
        R"({"do":"open","system":[11,0,0,0]})",
        R"({"do":"open","system":[11,0,"0"]})",
        R"({"do":"open","system":[11,0.5,0]})",
        R"({"do":"open","system":{}})",
        R"({"do":"open","resources":1})",
        R"({"do":"open","paper":"DC24"})",
        R"({"do":"open","paper":[]})",
        R"({"do":"open","paper":{}})",
        R"({"do":"open","paper":{"name":"DC24"}})",
        R"({"do":"open","paper":{"height":68}})",
        R"({"do":"open","paper":{"name":1,"height":68}})",
        R"({"do":"open","paper":{"name":"DC24","height":"68"}})",
    };
    for (const QByteArray& line : lines) {
        open(PpdBuilder::tapePrinter());
        refused(line);
        refused(R"({"do":"state"})");
        refused(R"({"do":"close"})");
    }
}

TEST_F(PanelScriptTest, OpenMarksTheDefaultsOrNothing) {
    PpdBuilder ppd;
    ppd.onOff("KvHalfCut", "ON").onOff("KvMirror");
    const auto half = [this] {
        return state().value(QLatin1String("marked")).toObject().value(QLatin1String("KvHalfCut"));
    };
    open(ppd);
    EXPECT_JSON(half(), "\"ON\"");
    open(ppd, R"(,"marks":"defaults")");
    EXPECT_JSON(half(), "\"ON\"");
    open(ppd, R"(,"marks":"none")");
    EXPECT_JSON(half(), "null");
}

TEST_F(PanelScriptTest, OpenTakesTheDeviceUri) {
    for (const auto& [uri, usb] :
         {std::pair("\"usb://x/y\"", "1"), std::pair("\"KVSGUSB:x\"", "1"),
          std::pair("\"USB://x\"", "0"), std::pair("\"ipp://x\"", "0"), std::pair("null", "0")}) {
        open(PpdBuilder::tapePrinter(), ",\"uri\":" + QByteArray(uri));
        EXPECT_JSON(state().value(QLatin1String("usb")), usb);
    }
}

TEST_F(PanelScriptTest, OpenTakesThePaperAndTheTicket) {
    open(PpdBuilder::tapePrinter(), R"(,"paper":{"name":"DC24","height":68})");
    ok(R"({"do":"save"})");
    EXPECT_JSON(state().value(QLatin1String("tapeState")), "1");
    open(PpdBuilder::tapePrinter(), R"(,"paper":{"name":"T24","height":68.5})");
    ok(R"({"do":"save"})");
    EXPECT_JSON(state().value(QLatin1String("tapeState")), "0");
    // Only the page format's own name can set the tape state.
    open(
        PpdBuilder::tapePrinter(),
        R"(,"paper":{"name":null,"height":68},"ticket":"<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>SgPaperName2</key><string>DC24</string></dict></plist>")");
    ok(R"({"do":"save"})");
    EXPECT_JSON(state().value(QLatin1String("tapeState")), "0");
}

TEST_F(PanelScriptTest, OpenWithoutSettingsSavesNothing) {
    open(PpdBuilder::tapePrinter(), R"(,"settings":false)");
    ok(R"({"do":"keys"})");
    EXPECT_JSON(state().value(QLatin1String("calls")), "[]");
    open(PpdBuilder::tapePrinter(), R"(,"settings":true)");
    ok(R"({"do":"keys"})");
    EXPECT_EQ(state().value(QLatin1String("calls")).toArray().size(), 6);
}

TEST_F(PanelScriptTest, OpenTakesResourcesFromAFolder) {
    ASSERT_TRUE(QFile::copy(QStringLiteral(LABELCUT_BUNDLE_DIR "/OptionPDE.ui"),
                            mFolder.filePath(QStringLiteral("OptionPDE.ui"))));
    ASSERT_TRUE(QFile::copy(QStringLiteral(LABELCUT_BUNDLE_DIR "/AHCMOffOffOffOff.svg"),
                            mFolder.filePath(QStringLiteral("AHCMOffOffOffOff.svg"))));
    show(PpdBuilder::tapePrinter(), ",\"resources\":\"" + mFolder.path().toUtf8() + "\"");
    EXPECT_JSON(ok(R"({"do":"name"})").value(QLatin1String("text")), "\"OP_PANEL_NAME\"");
    QJsonObject preview = state().value(QLatin1String("preview")).toObject();
    EXPECT_JSON(preview.value(QLatin1String("slot")), "8");
    EXPECT_JSON(preview.value(QLatin1String("image")), "null");
    ok(R"({"do":"popup","tag":4})");
    preview = state().value(QLatin1String("preview")).toObject();
    EXPECT_JSON(preview.value(QLatin1String("slot")), "0");
    EXPECT_JSON(preview.value(QLatin1String("image")), "\"AHCMOffOffOffOff\"");
    // And the plug-in's own again.
    open(PpdBuilder::tapePrinter());
    EXPECT_JSON(ok(R"({"do":"name"})").value(QLatin1String("text")), "\"Cut Options\"");
}

TEST_F(PanelScriptTest, OpenWithEmptyResourcesHasNoView) {
    open(PpdBuilder::tapePrinter(), R"(,"resources":"/nonexistent")");
    const QJsonObject answer = ok(R"({"do":"view"})");
    EXPECT_JSON(answer.value(QLatin1String("loaded")), "false");
    EXPECT_JSON(answer.value(QLatin1String("size")), "null");
    ok(R"({"do":"willShow"})");
    EXPECT_JSON(state().value(QLatin1String("popup")), "null");
    refused(R"({"do":"click","control":"mHalfCutChkBx"})");
}

// Calls the dialog makes.

TEST_F(PanelScriptTest, NameAndKind) {
    open(PpdBuilder::tapePrinter());
    EXPECT_TRUE(ok(R"({"do":"name"})") == object(R"({"ok":true,"text":"Cut Options"})"));
    EXPECT_TRUE(ok(R"({"do":"kind"})") ==
                object(R"({"ok":true,"text":"org.labelcut.printer.cups.pde.OptionPDEKind"})"));
}

TEST_F(PanelScriptTest, KeysWriteTheCurrentChoicesOnce) {
    open(PpdBuilder::rollPrinter());
    for (int i = 0; i < 2; ++i)
        EXPECT_TRUE(
            ok(R"({"do":"keys"})") ==
            object(
                R"({"ok":true,"keys":["KvCutLabel","KvCutAtEnd","KvMirror","KvAutoTapeCut","KvRemoveBlkSpace"]})"));
    EXPECT_JSON(
        state().value(QLatin1String("calls")),
        R"([["KvAutoTapeCut","ON"],["KvCutLabel","1"],["KvCutAtEnd","OFF"],["KvMirror","OFF"],["KvRemoveBlkSpace","OFF"]])");
    // Taken, they are not told again.
    EXPECT_JSON(state().value(QLatin1String("calls")), "[]");
}

TEST_F(PanelScriptTest, ViewAnswersItsSize) {
    open(PpdBuilder::tapePrinter());
    for (int i = 0; i < 2; ++i)
        EXPECT_TRUE(ok(R"({"do":"view"})") ==
                    object(R"({"ok":true,"loaded":true,"size":[516,184]})"));
    EXPECT_JSON(state().value(QLatin1String("panelSize")), "[516,184]");
}

TEST_F(PanelScriptTest, AnswersOfOneValue) {
    open(PpdBuilder::tapePrinter());
    for (const auto& [line, wanted] :
         {std::pair("shouldHide", true), std::pair("shouldShowHelp", false),
          std::pair("shouldPrint", true), std::pair("save", true), std::pair("restore", true)}) {
        const QJsonObject answer = ok("{\"do\":\"" + QByteArray(line) + "\"}");
        EXPECT_TRUE(answer ==
                    (QJsonObject{{QStringLiteral("ok"), true}, {QStringLiteral("value"), wanted}}))
            << line;
    }
    for (const char* line : {"willShow", "close"})
        EXPECT_TRUE(ok("{\"do\":\"" + QByteArray(line) + "\"}") == object(R"({"ok":true})"));
}

TEST_F(PanelScriptTest, ShouldPrintSendsTheDefaultsOfWhatIsUnmarked) {
    open(PpdBuilder::tapePrinter());
    ok(R"({"do":"unmark","key":"KvAutoTapeCut"})");
    ok(R"({"do":"shouldPrint"})");
    EXPECT_JSON(state().value(QLatin1String("calls")), R"([["KvAutoTapeCut","ON"]])");
}

TEST_F(PanelScriptTest, SummaryComesWithItsOrder) {
    show(PpdBuilder::rollPrinter());
    const QJsonObject answer = ok(R"({"do":"summary"})");
    EXPECT_EQ(keysOf(answer), names({"ok", "summary", "order"}));
    EXPECT_JSON(answer.value(QLatin1String("order")),
                R"(["Cut every","KvCutAtEnd","KvMirror","KvRemoveBlkSpace"])");
    EXPECT_JSON(
        answer.value(QLatin1String("summary")),
        R"({"Cut every":"1 labels","KvCutAtEnd":"No","KvMirror":"No","KvRemoveBlkSpace":"No"})");
    ok(R"({"do":"open"})");
    EXPECT_TRUE(ok(R"({"do":"summary"})") == object(R"({"ok":true,"summary":{},"order":[]})"));
}

TEST_F(PanelScriptTest, NotifyTellsThePanelOnly) {
    show(PpdBuilder::tapePrinter());
    ok(R"({"do":"notify","key":"KvHalfCut","choice":"ON"})");
    QJsonObject s = state();
    EXPECT_JSON(
        s.value(QLatin1String("selections")).toObject().value(QLatin1String("mHalfCut_Selection")),
        "\"ON\"");
    EXPECT_JSON(s.value(QLatin1String("marked")).toObject().value(QLatin1String("KvHalfCut")),
                "\"OFF\"");
    ok(R"({"do":"notify","key":"KvHalfCut","choice":null})");
    ok(R"({"do":"notify","key":null,"choice":"OFF"})");
    ok(R"({"do":"notify","key":null,"choice":null})");
    s = state();
    EXPECT_JSON(
        s.value(QLatin1String("selections")).toObject().value(QLatin1String("mHalfCut_Selection")),
        "\"ON\"");
    ok(R"({"do":"notify","key":"KvHalfCut","choice":"none of them"})");
    EXPECT_JSON(state()
                    .value(QLatin1String("selections"))
                    .toObject()
                    .value(QLatin1String("mHalfCut_Selection")),
                "null");
}

TEST_F(PanelScriptTest, HostChangeMarksAndNotifies) {
    show(PpdBuilder::tapePrinter());
    EXPECT_TRUE(ok(R"({"do":"hostChange","key":"KvHalfCut","choice":"ON"})") ==
                object(R"({"ok":true})"));
    const QJsonObject s = state();
    EXPECT_JSON(
        s.value(QLatin1String("selections")).toObject().value(QLatin1String("mHalfCut_Selection")),
        "\"ON\"");
    EXPECT_JSON(s.value(QLatin1String("marked")).toObject().value(QLatin1String("KvHalfCut")),
                "\"ON\"");
    EXPECT_JSON(s.value(QLatin1String("calls")), "[]");
    // The controls follow later.
    EXPECT_JSON(control("mHalfCutChkBx").value(QLatin1String("state")), "0");
}

// Around the panel.

TEST_F(PanelScriptTest, MarkAndUnmarkTellNobody) {
    show(PpdBuilder::tapePrinter());
    ok(R"({"do":"mark","key":"KvHalfCut","choice":"ON"})");
    QJsonObject s = state();
    EXPECT_JSON(s.value(QLatin1String("marked")).toObject().value(QLatin1String("KvHalfCut")),
                "\"ON\"");
    EXPECT_JSON(
        s.value(QLatin1String("selections")).toObject().value(QLatin1String("mHalfCut_Selection")),
        "\"OFF\"");
    ok(R"({"do":"unmark","key":"KvHalfCut"})");
    s = state();
    EXPECT_JSON(s.value(QLatin1String("marked")).toObject().value(QLatin1String("KvHalfCut")),
                "null");
    EXPECT_JSON(
        s.value(QLatin1String("selections")).toObject().value(QLatin1String("mHalfCut_Selection")),
        "\"OFF\"");
}

TEST_F(PanelScriptTest, WhatThePpdLacksIsRefusedAndNothingHappens) {
    const char* pairs[] = {R"("key":"KvHalfCut","choice":"DEEP")",
                           R"("key":"KvCutLabel","choice":"1")", R"("key":"None","choice":"ON")",
                           R"("key":"","choice":"")"};
    show(PpdBuilder::tapePrinter());
    const QJsonObject before = state();
    for (const char* pair : pairs) {
        refused(QByteArray(R"({"do":"mark",)") + pair + "}");
        refused(QByteArray(R"({"do":"hostChange",)") + pair + "}");
    }
    refused(R"({"do":"unmark","key":"KvCutLabel"})");
    EXPECT_TRUE(state() == before);
    ok(R"({"do":"open"})");
    refused(R"({"do":"mark","key":"KvHalfCut","choice":"ON"})");
    refused(R"({"do":"hostChange","key":"KvHalfCut","choice":"ON"})");
    refused(R"({"do":"unmark","key":"KvHalfCut"})");
}

TEST_F(PanelScriptTest, PaperChangesAndGoes) {
    show(PpdBuilder::tapePrinter());
    const auto tapeState = [this] {
        ok(R"({"do":"save"})");
        return state().value(QLatin1String("tapeState"));
    };
    EXPECT_TRUE(ok(R"({"do":"paper","name":"DC24","height":68})") == object(R"({"ok":true})"));
    EXPECT_JSON(tapeState(), "1");
    ok(R"({"do":"paper","none":true})");
    EXPECT_JSON(tapeState(), "0");
    ok(R"({"do":"paper","none":false,"name":"AV100","height":0.5})");
    EXPECT_JSON(tapeState(), "1");
    ok(R"({"do":"paper","name":null,"height":68})");
    EXPECT_JSON(tapeState(), "0");
    ok(R"({"do":"paper","name":"DC24","height":0})");
    EXPECT_JSON(tapeState(), "0");
}

TEST_F(PanelScriptTest, LocalizeAnswersTheBundlesText) {
    open(PpdBuilder::tapePrinter());
    EXPECT_TRUE(ok(R"({"do":"localize","key":"RS_Labels"})") ==
                object(R"({"ok":true,"text":"labels"})"));
    EXPECT_JSON(ok(R"({"do":"localize","key":"no such key"})").value(QLatin1String("text")),
                "\"no such key\"");
    EXPECT_JSON(ok(R"({"do":"localize","key":""})").value(QLatin1String("text")), "\"\"");
}

// What the user does.

TEST_F(PanelScriptTest, ClickTicksAndSends) {
    show(PpdBuilder::tapePrinter());
    EXPECT_TRUE(ok(R"({"do":"click","control":"mHalfCutChkBx"})") == object(R"({"ok":true})"));
    const QJsonObject s = state();
    EXPECT_JSON(s.value(QLatin1String("calls")), R"([["KvHalfCut","ON"]])");
    EXPECT_JSON(s.value(QLatin1String("popup")).toObject().value(QLatin1String("selected")), "10");
    EXPECT_JSON(s.value(QLatin1String("preview")).toObject().value(QLatin1String("slot")), "12");
    EXPECT_JSON(s.value(QLatin1String("preview")).toObject().value(QLatin1String("image")),
                "\"AHCMOnOnOffOff\"");
}

TEST_F(PanelScriptTest, EnterReplacesTheTextInOneEdit) {
    show(PpdBuilder::rollPrinter());
    ok(R"({"do":"enter","text":"12"})");
    EXPECT_JSON(state().value(QLatin1String("calls")), R"([["KvCutLabel","12"]])");
    EXPECT_JSON(control("mCutEveryTxBx").value(QLatin1String("text")), "\"12\"");
    EXPECT_JSON(control("mCutEveryStpr").value(QLatin1String("value")), "12");
    ok(R"({"do":"enter","text":""})");
    EXPECT_JSON(state().value(QLatin1String("calls")), R"([["KvCutLabel","1"]])");
    ok(R"({"do":"enter","text":"abc"})");
    EXPECT_JSON(control("mCutEveryTxBx").value(QLatin1String("text")), "\"1\"");
}

TEST_F(PanelScriptTest, TypePressesAKeyForEachCharacter) {
    show(PpdBuilder::rollPrinter());
    ok(R"({"do":"type","text":"120"})");
    EXPECT_JSON(state().value(QLatin1String("calls")),
                R"([["KvCutLabel","1"],["KvCutLabel","12"],["KvCutLabel","99"]])");
    // Over the old text: a first key that is no digit leaves the smallest count behind.
    ok(R"({"do":"type","text":"x5"})");
    EXPECT_JSON(state().value(QLatin1String("calls")),
                R"([["KvCutLabel","1"],["KvCutLabel","15"]])");
    ok(R"({"do":"type","text":""})");
    EXPECT_JSON(state().value(QLatin1String("calls")), "[]");
}

TEST_F(PanelScriptTest, StepSetsTheStepperAndSends) {
    show(PpdBuilder::rollPrinter());
    for (const auto& [value, shownValue] :
         {std::pair("7", "7"), std::pair("150", "99"), std::pair("-2147483648", "1"),
          std::pair("2147483647", "99"), std::pair("3.0", "3")}) {
        ok("{\"do\":\"step\",\"value\":" + QByteArray(value) + "}");
        EXPECT_JSON(state().value(QLatin1String("calls")),
                    "[[\"KvCutLabel\",\"" + QByteArray(shownValue) + "\"]]");
        EXPECT_JSON(control("mCutEveryStpr").value(QLatin1String("value")), shownValue);
        EXPECT_JSON(control("mCutEveryTxBx").value(QLatin1String("text")),
                    "\"" + QByteArray(shownValue) + "\"");
    }
}

TEST_F(PanelScriptTest, PopupChoosesTheEntry) {
    show(PpdBuilder::tapePrinter());
    ok(R"({"do":"popup","tag":7})");
    const QJsonObject s = state();
    EXPECT_JSON(s.value(QLatin1String("calls")), "[]");
    EXPECT_JSON(s.value(QLatin1String("popup")).toObject().value(QLatin1String("selected")), "7");
    EXPECT_JSON(s.value(QLatin1String("preview")).toObject().value(QLatin1String("slot")), "6");
    // Chosen again it acts again.
    ok(R"({"do":"set","control":"mHalfCutChkBx","state":0})");
    ok(R"({"do":"popup","tag":7})");
    EXPECT_JSON(control("mHalfCutChkBx").value(QLatin1String("state")), "1");
    for (const char* tag : {"1", "3", "0", "13", "-1"})
        refused("{\"do\":\"popup\",\"tag\":" + QByteArray(tag) + "}");
    EXPECT_JSON(state().value(QLatin1String("popup")).toObject().value(QLatin1String("selected")),
                "7");
}

TEST_F(PanelScriptTest, SetPutsABoxIntoAStateWithoutItsAction) {
    show(PpdBuilder::tapePrinter());
    for (const char* wanted : {"-1", "1", "0"}) {
        ok("{\"do\":\"set\",\"control\":\"mHalfCutChkBx\",\"state\":" + QByteArray(wanted) + "}");
        EXPECT_JSON(control("mHalfCutChkBx").value(QLatin1String("state")), wanted);
    }
    // Hidden and disabled boxes too.
    ok(R"({"do":"set","control":"mCutEveryChkBx","state":1})");
    EXPECT_JSON(control("mCutEveryChkBx").value(QLatin1String("state")), "1");
    EXPECT_JSON(state().value(QLatin1String("calls")), "[]");
    // A click on a mixed box turns it off.
    ok(R"({"do":"set","control":"mHalfCutChkBx","state":-1})");
    ok(R"({"do":"click","control":"mHalfCutChkBx"})");
    EXPECT_JSON(state().value(QLatin1String("calls")), R"([["KvHalfCut","OFF"]])");
}

TEST_F(PanelScriptTest, ControlsOutOfReachAreRefusedAndNothingHappens) {
    show(PpdBuilder::tapePrinter());
    const QJsonObject shownState = state();
    refused(R"({"do":"click","control":"mCutEveryChkBx"})"); // hidden
    refused(R"({"do":"enter","text":"5"})");
    refused(R"({"do":"type","text":"5"})");
    refused(R"({"do":"step","value":5})");
    EXPECT_TRUE(state() == shownState);

    ok(R"({"do":"click","control":"mSpecialTapeChkBx"})");
    const QJsonObject special = state();
    refused(R"({"do":"click","control":"mHalfCutChkBx"})"); // disabled
    QJsonObject after = state();
    after.insert(QStringLiteral("calls"), special.value(QLatin1String("calls")));
    EXPECT_TRUE(after == special);

    show(PpdBuilder::rollPrinter());
    ok(R"({"do":"click","control":"mCutEveryChkBx"})"); // switches the count off
    refused(R"({"do":"enter","text":"5"})");
    refused(R"({"do":"type","text":"5"})");
    refused(R"({"do":"step","value":5})");
}

TEST_F(PanelScriptTest, ControlsAreAbsentUntilTheViewIsLoaded) {
    open(PpdBuilder::rollPrinter());
    for (const char* line :
         {R"({"do":"click","control":"mCutEveryChkBx"})", R"({"do":"enter","text":"5"})",
          R"({"do":"type","text":"5"})", R"({"do":"step","value":5})", R"({"do":"popup","tag":1})",
          R"({"do":"set","control":"mCutEveryChkBx","state":1})"})
        refused(line);
}

// State.

const std::initializer_list<const char*> kControls = {
    "mCutEveryChkBx", "mCutAndEndChkBx",  "mMirrorPrintChkBx", "mAutoCutChkBx",
    "mHalfCutChkBx",  "mChainPrintChkBx", "mSpecialTapeChkBx", "mRemoveBlkSpaceChkBx",
    "mCutEveryTxBx",  "mCutEveryStpr",    "mCutEveryStr"};

TEST_F(PanelScriptTest, StateHasAllItsFields) {
    open(PpdBuilder::tapePrinter());
    for (int shownYet = 0; shownYet < 2; ++shownYet) {
        const QJsonObject s = state();
        EXPECT_EQ(keysOf(s),
                  names({"ok", "controls", "popup", "preview", "selections", "marked", "tapeState",
                         "usb", "autoCutShown", "isRV", "panelSize", "calls", "resized"}));
        EXPECT_EQ(keysOf(s.value(QLatin1String("controls")).toObject()), names(kControls));
        EXPECT_EQ(keysOf(s.value(QLatin1String("selections")).toObject()),
                  names({"mCutEvery_Selection", "mCutEnd_Selection", "mMirror_Selection",
                         "mAutoCut_Selection", "mHalfCut_Selection", "mChainPrint_Selection",
                         "mSpecialTape_Selection", "mRemoveBlkSpace_Selection",
                         "mAutoCut_CutEvery_Selection"}));
        EXPECT_EQ(keysOf(s.value(QLatin1String("marked")).toObject()),
                  names({"KvCutLabel", "KvCutAtEnd", "KvMirror", "KvAutoTapeCut", "KvHalfCut",
                         "KvChainPrint", "KvSpecialTape", "KvRemoveBlkSpace"}));
        for (const char* name : kControls)
            EXPECT_EQ(
                s.value(QLatin1String("controls")).toObject().value(QLatin1String(name)).isNull(),
                shownYet == 0);
        EXPECT_EQ(s.value(QLatin1String("popup")).isNull(), shownYet == 0);
        EXPECT_EQ(s.value(QLatin1String("preview")).isNull(), shownYet == 0);
        EXPECT_EQ(s.value(QLatin1String("panelSize")).isNull(), shownYet == 0);
        EXPECT_JSON(s.value(QLatin1String("resized")), "0");
        ok(R"({"do":"view"})");
    }
}

TEST_F(PanelScriptTest, StateOfControlsIsExact) {
    show(PpdBuilder::rollPrinter());
    EXPECT_JSON(
        control("mCutEveryChkBx"),
        R"({"enabled":true,"hidden":false,"x":12,"below":38,"width":176,"height":20,"state":1,"title":"Cut every"})");
    EXPECT_JSON(
        control("mCutEveryTxBx"),
        R"({"enabled":true,"hidden":false,"x":32,"below":68,"width":48,"height":26,"text":"1"})");
    EXPECT_JSON(
        control("mCutEveryStpr"),
        R"({"enabled":true,"hidden":false,"x":82,"below":69,"width":20,"height":28,"value":1})");
    EXPECT_JSON(
        control("mCutEveryStr"),
        R"({"enabled":true,"hidden":false,"x":108,"below":62,"width":80,"height":20,"text":"labels","grey":false})");
    EXPECT_JSON(control("mHalfCutChkBx").value(QLatin1String("hidden")), "true");
    EXPECT_JSON(control("mCutAndEndChkBx").value(QLatin1String("below")), "90");
    ok(R"({"do":"click","control":"mCutEveryChkBx"})");
    EXPECT_JSON(control("mCutEveryStr").value(QLatin1String("grey")), "true");
    EXPECT_JSON(control("mCutEveryTxBx").value(QLatin1String("enabled")), "false");
    EXPECT_JSON(state().value(QLatin1String("preview")),
                R"({"slot":0,"image":"EveryEndMirrorOffOffOff","x":204,"below":130})");
    EXPECT_JSON(
        state().value(QLatin1String("popup")),
        R"({"entries":[{"tag":1,"title":""},{"tag":2,"title":""},{"tag":3,"title":""}],"selected":1})");
}

TEST_F(PanelScriptTest, StateTellsFamilyAndFlags) {
    open(PpdBuilder::rollPrinter());
    EXPECT_JSON(state().value(QLatin1String("isRV")), "true");
    EXPECT_JSON(state().value(QLatin1String("autoCutShown")), "0");
    open(PpdBuilder::tapePrinter());
    EXPECT_JSON(state().value(QLatin1String("isRV")), "false");
    EXPECT_JSON(state().value(QLatin1String("autoCutShown")), "1");
}

TEST_F(PanelScriptTest, StateOfAPopUpWithoutEntriesSelectsNothing) {
    PpdBuilder ppd;
    ppd.attribute("KvTapeType", "RV").onOff("KvMirror");
    show(ppd);
    EXPECT_JSON(state().value(QLatin1String("popup")),
                R"({"entries":[{"tag":1,"title":""}],"selected":1})");
}

TEST_F(PanelScriptTest, StateShowsTheFallbackTitleForATextOfBadBytes) {
    PpdBuilder ppd;
    ppd.onOff("KvHalfCut", "OFF", "bad \xFF");
    show(ppd);
    EXPECT_JSON(control("mHalfCutChkBx").value(QLatin1String("title")), "\"Half cut\"");
}

// Refusals.

TEST_F(PanelScriptTest, LinesThatAreNoCommandAreRefused) {
    open(PpdBuilder::rollPrinter());
    for (const char* line :
         {"x", "[]", "[1]", "7", "null", "\"open\"", "{", "{}", "{}}", R"({"do":null})",
          R"({"do":7})", R"({"do":""})", R"({"do":"OPEN"})", R"({"do":"open "})", R"({"do":"fly"})",
          R"({"Do":"state"})", "\xFF", "{\"do\":\"state\"} x"})
        refused(line);
    // The panel is still there.
    ok(R"({"do":"state"})");
}

TEST_F(PanelScriptTest, MissingAndIllTypedFieldsAreRefused) {
    show(PpdBuilder::rollPrinter());
    const QJsonObject before = state();
    for (const char* line : {
             R"({"do":"click"})",
             R"({"do":"click","control":1})",
             R"({"do":"click","control":null})",
             R"({"do":"click","control":"mCutEveryTxBx"})",
             R"({"do":"click","control":"mOptionPopUpButton"})",
             R"({"do":"click","control":""})",
             R"({"do":"click","control":"mcuteverychkbx"})",
             R"({"do":"enter"})",
             R"({"do":"enter","text":5})",
             R"({"do":"enter","text":null})",
             R"({"do":"type"})",
             R"({"do":"type","text":5})",
             R"({"do":"step"})",
             R"({"do":"step","value":"5"})",
             R"({"do":"step","value":1.5})",
             R"({"do":"step","value":null})",
             R"({"do":"step","value":2147483648})",
             R"({"do":"step","value":-2147483649})",
             R"({"do":"step","value":1e300})",
             R"({"do":"popup"})",
             R"({"do":"popup","tag":"3"})",
             R"({"do":"popup","tag":3.5})",
             R"({"do":"set"})",
             R"({"do":"set","control":"mMirrorPrintChkBx"})",
             R"({"do":"set","state":1})",
             R"({"do":"set","control":"mMirrorPrintChkBx","state":2})",
             R"({"do":"set","control":"mMirrorPrintChkBx","state":-2})",
             R"({"do":"set","control":"mMirrorPrintChkBx","state":"1"})",
             R"({"do":"set","control":"mMirrorPrintChkBx","state":true})",
             R"({"do":"set","control":"mCutEveryTxBx","state":1})",
             R"({"do":"set","control":"none","state":1})",
             R"({"do":"mark"})",
             R"({"do":"mark","key":"KvMirror"})",
             R"({"do":"mark","choice":"ON"})",
             R"({"do":"mark","key":"KvMirror","choice":null})",
             R"({"do":"mark","key":1,"choice":"ON"})",
             R"({"do":"unmark"})",
             R"({"do":"unmark","key":null})",
             R"({"do":"hostChange","key":"KvMirror"})",
             R"({"do":"hostChange","key":null,"choice":"ON"})",
             R"({"do":"notify"})",
             R"({"do":"notify","key":"KvMirror"})",
             R"({"do":"notify","choice":"ON"})",
             R"({"do":"notify","key":1,"choice":"ON"})",
             R"({"do":"notify","key":"KvMirror","choice":1})",
             R"({"do":"paper"})",
             R"({"do":"paper","name":"DC24"})",
             R"({"do":"paper","height":5})",
             R"({"do":"paper","name":"DC24","height":"5"})",
             R"({"do":"paper","name":5,"height":5})",
             R"({"do":"paper","none":1})",
             R"({"do":"paper","none":false})",
             R"({"do":"paper","none":null})",
             R"({"do":"localize"})",
             R"({"do":"localize","key":null})",
         })
        refused(line);
    ok(R"({"do":"save"})");
    ok(R"({"do":"state"})");
    QJsonObject after = state();
    EXPECT_TRUE(after == before) << shown(after) << shown(before);
}

TEST_F(PanelScriptTest, WithoutAPanelOnlyOpenAndQuitAreCarriedOut) {
    for (const char* act :
         {"name", "kind", "keys", "view", "willShow", "shouldHide", "shouldShowHelp", "shouldPrint",
          "save", "restore", "summary", "close", "state"})
        refused("{\"do\":\"" + QByteArray(act) + "\"}");
    for (const char* line :
         {R"({"do":"notify","key":"KvMirror","choice":"ON"})",
          R"({"do":"hostChange","key":"KvMirror","choice":"ON"})",
          R"({"do":"mark","key":"KvMirror","choice":"ON"})", R"({"do":"unmark","key":"KvMirror"})",
          R"({"do":"paper","none":true})", R"({"do":"localize","key":"RS_Labels"})",
          R"({"do":"click","control":"mMirrorPrintChkBx"})", R"({"do":"enter","text":"5"})",
          R"({"do":"type","text":"5"})", R"({"do":"step","value":5})", R"({"do":"popup","tag":5})",
          R"({"do":"set","control":"mMirrorPrintChkBx","state":1})"})
        refused(line);
    EXPECT_FALSE(mScript.hasQuit());
    EXPECT_TRUE(ok(R"({"do":"quit"})") == object(R"({"ok":true})"));
    EXPECT_TRUE(mScript.hasQuit());
}

TEST(PanelScriptWithoutPlugins, SaysWhyItCannotOpen) {
    PluginSearch none;
    PanelScript script(none);
    QJsonObject answer = script.carryOut(R"({"do":"open"})");
    EXPECT_FALSE(answer.value(QLatin1String("ok")).toBool());
    PluginSearch broken;
    broken.refused.push_back({QStringLiteral("x.so"), QStringLiteral("it is damaged")});
    PanelScript other(broken);
    answer = other.carryOut(R"({"do":"open"})");
    EXPECT_TRUE(answer.value(QLatin1String("error")).toString().contains(u"x.so"));
    EXPECT_TRUE(answer.value(QLatin1String("error")).toString().contains(u"it is damaged"));
}

// The loop over lines.

struct Ran {
    int status;
    QList<QByteArray> lines;
};

Ran runLines(const QByteArray& text) {
    QBuffer in;
    in.setData(text);
    in.open(QIODevice::ReadOnly);
    QByteArray answers;
    QBuffer out(&answers);
    out.open(QIODevice::WriteOnly);
    const int status = runPanelScript(in, out, plugins());
    EXPECT_TRUE(answers.isEmpty() || answers.endsWith('\n'));
    QList<QByteArray> lines = answers.split('\n');
    lines.removeLast();
    return {status, lines};
}

TEST(PanelScriptLoop, AnswersEachLineWithOneLine) {
    const Ran ran = runLines("{\"do\":\"open\"}\n\n   \r\n{\"do\":\"name\"}\r\n{\"do\":\"kind\"}");
    EXPECT_EQ(ran.status, 0);
    ASSERT_EQ(ran.lines.size(), 3);
    for (const QByteArray& line : ran.lines)
        EXPECT_EQ(object(line).value(QLatin1String("ok")), QJsonValue(true));
}

TEST(PanelScriptLoop, GoesOnAfterARefusalAndEndsWithStatus1) {
    const Ran ran = runLines("{\"do\":\"name\"}\nnonsense\n{\"do\":\"open\"}\n{\"do\":\"name\"}\n");
    EXPECT_EQ(ran.status, 1);
    ASSERT_EQ(ran.lines.size(), 4);
    EXPECT_EQ(object(ran.lines[3]).value(QLatin1String("ok")), QJsonValue(true));
}

TEST(PanelScriptLoop, EndsAtQuit) {
    const Ran ran = runLines("{\"do\":\"quit\"}\n{\"do\":\"open\"}\n");
    EXPECT_EQ(ran.status, 0);
    ASSERT_EQ(ran.lines.size(), 1);
    EXPECT_EQ(runLines("x\n{\"do\":\"quit\"}\n").status, 1);
    EXPECT_EQ(runLines("").status, 0);
    EXPECT_EQ(runLines("\n\n").lines.size(), 0);
}

TEST(PanelScriptLoop, FlushesEachAnswerAtOnce) {
    QTemporaryDir folder;
    QFile out(folder.filePath(QStringLiteral("answers")));
    ASSERT_TRUE(out.open(QIODevice::WriteOnly));
    // A source of lines that looks at the answers before it gives the next.
    class Source : public QBuffer {
    public:
        QString answers;
        QList<qint64> sizes;

    protected:
        qint64 readData(char* data, qint64 max) override {
            sizes.append(QFile(answers).size());
            return QBuffer::readData(data, std::min<qint64>(max, 1));
        }
    } in;
    in.answers = out.fileName();
    in.setData("{\"do\":\"open\"}\n{\"do\":\"kind\"}\n");
    in.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    EXPECT_EQ(runPanelScript(in, out, plugins()), 0);
    ASSERT_GT(in.sizes.size(), 20);
    EXPECT_EQ(in.sizes.first(), 0);
    EXPECT_GT(in.sizes[20], 0);
}

// The version test keeps its first answer for the process, so it comes last and on its own.
TEST(PanelScriptSystem, AnOldSystemIsRefusedOnlyWhenAskedFirst) {
    PanelScript script(plugins());
    const QJsonObject answer = script.carryOut(R"({"do":"open","system":[10,4,11]})");
    // Earlier tests of this process asked a newer system; the answer holds.
    EXPECT_EQ(answer.value(QLatin1String("ok")), QJsonValue(true));
    EXPECT_TRUE(answer.contains(QLatin1String("accepted")));
    EXPECT_EQ(answer.value(QLatin1String("panels")).isNull(),
              !answer.value(QLatin1String("accepted")).toBool());
}

// Another plug-in's panel.

class PanelScriptOfAnotherPlugin : public testing::Test {
protected:
    QJsonObject run(const QByteArray& line) { return mScript.carryOut(line); }

    PluginSearch mPlugins = loadPlugins(QStringLiteral(LABELCUT_SECOND_EXAMPLE_DIR));
    PanelScript mScript{mPlugins};
};

TEST_F(PanelScriptOfAnotherPlugin, WorksAndShowsWhatThePanelLists) {
    EXPECT_JSON(run(R"({"do":"open"})"), R"({"ok":true,"accepted":true,"panels":1})");
    EXPECT_JSON(run(R"({"do":"state"})").value(QLatin1String("controls")),
                R"({"watchSupply":null})");
    run(R"({"do":"view"})");
    EXPECT_JSON(run(R"({"do":"click","control":"watchSupply"})"), R"({"ok":true})");
    const QJsonObject state = run(R"({"do":"state"})");
    EXPECT_JSON(state.value(QLatin1String("usedUp")), "true");
    EXPECT_JSON(state.value(QLatin1String("controls"))
                    .toObject()
                    .value(QLatin1String("watchSupply"))
                    .toObject()
                    .value(QLatin1String("state")),
                "1");
    EXPECT_JSON(state.value(QLatin1String("marked")), "{}");
    EXPECT_JSON(state.value(QLatin1String("popup")), "null");
    EXPECT_JSON(state.value(QLatin1String("preview")), "null");
    EXPECT_JSON(state.value(QLatin1String("resized")), "1");
}

TEST_F(PanelScriptOfAnotherPlugin, RefusesWhatThePanelDoesNotList) {
    run(R"({"do":"open"})");
    run(R"({"do":"view"})");
    for (const char* line :
         {R"({"do":"click","control":"mHalfCutChkBx"})", R"({"do":"enter","text":"1"})",
          R"({"do":"type","text":"1"})", R"({"do":"step","value":1})", R"({"do":"popup","tag":1})"})
        EXPECT_JSON(run(line).value(QLatin1String("ok")), "false");
}

} // namespace
} // namespace labelcut::test
