// Tests of the automation driver: what an old system answers. The plug-in keeps its first answer
// for the process, so this is a program of its own.
#include <gtest/gtest.h>

#include <QJsonObject>

#include "host/script/panel_script.h"

namespace labelcut::test {
namespace {

TEST(OldSystem, IsRefusedAndStaysRefusedForTheProcess) {
    const PluginSearch plugins = loadPlugins(QStringLiteral(LABELCUT_PLUGIN_DIR));
    PanelScript script(plugins);
    for (const char* line : {R"({"do":"open","system":[10,4,11]})",
                             R"({"do":"open","system":[11,0,0]})", R"({"do":"open"})"}) {
        const QJsonObject answer = script.carryOut(line);
        EXPECT_EQ(answer.value(QLatin1String("ok")), QJsonValue(true)) << line;
        EXPECT_EQ(answer.value(QLatin1String("accepted")), QJsonValue(false)) << line;
        ASSERT_TRUE(answer.contains(QLatin1String("panels"))) << line;
        EXPECT_TRUE(answer.value(QLatin1String("panels")).isNull()) << line;
        EXPECT_FALSE(script.carryOut(R"({"do":"name"})").value(QLatin1String("ok")).toBool());
    }
}

} // namespace
} // namespace labelcut::test
