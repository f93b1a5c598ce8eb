// Pictures of the panel for people to look at: contact sheets of every combination of both natural
// printers in one language, made by every test run. Look at them after each change of the panel.
#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QPainter>

#include "host/panels/panel_host.h"
#include "host/snapshot/snapshot.h"

namespace labelcut::test {
namespace {

using Choices = Settings;

/// Every combination that the pop-up offers for the family.
std::vector<Choices> rollCombinations() {
    const auto make = [](const char* cut, const char* end) {
        return Choices{{"KvAutoTapeCut", QLatin1String(cut)}, {"KvCutAtEnd", QLatin1String(end)}};
    };
    return {make("OFF", "OFF"), make("OFF", "ON"), make("ON", "OFF")};
}

std::vector<Choices> tapeCombinations() {
    std::vector<Choices> all;
    const auto onOff = [](int bit) {
        return bit != 0 ? QStringLiteral("ON") : QStringLiteral("OFF");
    };
    for (int bits = 0; bits < 8; ++bits)
        all.push_back({{"KvAutoTapeCut", onOff(bits & 4)},
                       {"KvHalfCut", onOff(bits & 2)},
                       {"KvChainPrint", onOff(bits & 1)}});
    all.push_back({{"KvSpecialTape", "ON"}});
    return all;
}

QImage panelWith(const QString& ppdPath, const Choices& choices) {
    Result<FoundPrinter> found = findPpdFile(ppdPath);
    if (!found) {
        ADD_FAILURE() << found.error().sentence.toStdString();
        return {};
    }
    const PluginSearch plugins = loadPlugins(QStringLiteral(LABELCUT_PLUGIN_DIR));
    const HostSystem system;
    OpenedPrinter printer(std::move(*found), choices, plugins, system);
    EXPECT_TRUE(printer.unkeptAtFirst().lacking.empty());
    const Result<QImage> image = takePanelSnapshot(printer);
    EXPECT_TRUE(image) << (image ? "" : image.error().sentence.toStdString());
    return image ? *image : QImage();
}

QImage contactSheet(const std::vector<QImage>& images) {
    constexpr int kColumns = 3;
    QSize cell;
    for (const QImage& image : images)
        cell = cell.expandedTo(image.size());
    const int rows = (static_cast<int>(images.size()) + kColumns - 1) / kColumns;
    QImage sheet(cell.width() * kColumns, cell.height() * rows, QImage::Format_RGB32);
    sheet.fill(Qt::gray);
    QPainter painter(&sheet);
    for (int i = 0; i < static_cast<int>(images.size()); ++i) {
        QImage image = images[static_cast<std::size_t>(i)];
        image.setDevicePixelRatio(1);
        painter.drawImage((i % kColumns) * cell.width(), (i / kColumns) * cell.height(), image);
    }
    return sheet;
}

/// How the panels of one sheet look.
struct Look {
    const char* name;
    bool dark;
    Qt::LayoutDirection direction;
    double fontScale;
};

class PanelPictures : public testing::TestWithParam<Look> {};

TEST_P(PanelPictures, ShowEveryCombinationOfBothPrinters) {
    const Look look = GetParam();
    const QFont usual = QApplication::font();
    setSnapshotLook(look.dark);
    QApplication::setLayoutDirection(look.direction);
    QFont font = usual;
    font.setPointSizeF(usual.pointSizeF() * look.fontScale);
    QApplication::setFont(font);

    std::vector<QImage> images;
    for (const Choices& choices : rollCombinations())
        images.push_back(panelWith(QStringLiteral(LABELCUT_SAMPLES "/roll.ppd"), choices));
    for (const Choices& choices : tapeCombinations())
        images.push_back(panelWith(QStringLiteral(LABELCUT_SAMPLES "/tape.ppd"), choices));
    for (std::size_t i = 1; i < images.size(); ++i)
        EXPECT_NE(images[i], images[i - 1]) << "two combinations look the same";

    const QString language = qEnvironmentVariable("LANGUAGE", QStringLiteral("en"));
    const QString scale = qEnvironmentVariable("QT_SCALE_FACTOR", QStringLiteral("1"));
    const QDir folder(QStringLiteral(LABELCUT_PICTURES));
    ASSERT_TRUE(folder.mkpath(QStringLiteral(".")));
    EXPECT_TRUE(contactSheet(images).save(folder.filePath(
        QStringLiteral("panel-%1-%2-%3x.png").arg(language, QLatin1String(look.name), scale))));

    QApplication::setFont(usual);
    QApplication::setLayoutDirection(Qt::LeftToRight);
    setSnapshotLook(false);
}

INSTANTIATE_TEST_SUITE_P(Looks, PanelPictures,
                         testing::Values(Look{"light", false, Qt::LeftToRight, 1.0},
                                         Look{"dark", true, Qt::LeftToRight, 1.0},
                                         Look{"rtl", false, Qt::RightToLeft, 1.0},
                                         Look{"font150", false, Qt::LeftToRight, 1.5}),
                         [](const auto& param) { return std::string(param.param.name); });

} // namespace
} // namespace labelcut::test
