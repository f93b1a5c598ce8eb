// Pictures of strips with every kind of cut, to be looked at.
//
//     strip_pictures FILE.png [dark]
#include <QApplication>
#include <QStyleFactory>

#include "host/strip/strip_view.h"
#include "tests/host/strip/strip_plans.h"

using namespace labelcut;

namespace {

struct Case {
    const char* name;
    PlanInput input;
    StripWay way = StripWay::Along;
    bool isReversed = false;
    std::int64_t current = 0;
};

PlanInput withCuts(int pages, void (*change)(PlanInput&)) {
    PlanInput input = test::planOf(pages);
    change(input);
    return input;
}

QList<Case> cases() {
    const auto full = [](PlanInput& input) {
        input.cuts->afterEach = PDECut::Full;
        input.cuts->lead = PDELead::Blank;
        input.cuts->afterLead = PDECut::Full;
    };
    const auto half = [](PlanInput& input) {
        input.cuts->afterEach = PDECut::Half;
        input.cuts->lead = PDELead::Blank;
        input.cuts->afterLead = PDECut::Half;
        input.cuts->afterLast = PDECut::Full;
        input.cuts->isMirrored = true;
    };
    const auto roll = [](PlanInput& input) {
        input.cuts->afterGroup = PDECut::Full;
        input.cuts->groupSize = 3;
        input.cuts->medium = PDEMedium::Labels;
    };
    const auto special = [](PlanInput& input) {
        input.cuts->medium = PDEMedium::SpecialTape;
        input.cuts->lead = PDELead::Blank;
        input.cuts->afterLast = PDECut::ByHand;
    };
    const auto misfit = [](PlanInput& input) {
        input.paper = test::labelPaper(24, 24);
        input.fit = worker::Fit::Actual;
        input.cuts->afterEach = PDECut::Full;
    };
    const auto square = [](PlanInput& input) {
        input = test::planOf(30, 50, 30);
        input.cuts->afterEach = PDECut::Full;
        input.cuts->medium = PDEMedium::Labels;
    };
    return {{"full", withCuts(5, full)},
            {"half-mirrored", withCuts(3, half)},
            {"every3-of-100", withCuts(100, roll)},
            {"special", withCuts(3, special)},
            {"misfit", withCuts(5, misfit)},
            {"upright", withCuts(30, square), StripWay::Upright},
            {"reversed", withCuts(100, half), StripWay::Along, true},
            {"banner", test::planOf(2, 24, 1000)}};
}

void useDark() {
    QPalette palette(QColor(0x2b, 0x2b, 0x2b));
    palette.setColor(QPalette::WindowText, Qt::white);
    QApplication::setPalette(palette);
}

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setStyle(QStringLiteral("Fusion"));
    if (argc > 2)
        useDark();
    QList<QPixmap> strips;
    for (const Case& each : cases()) {
        StripView strip;
        strip.setPictures(
            [&](int page) {
                const QSizeF size =
                    each.input.document->measures[static_cast<std::size_t>(page - 1)];
                return test::pageOf(page, (size * 1.2).toSize());
            },
            [](int) { return false; });
        strip.resize(760, strip.sizeHint().height());
        strip.setWay(each.way);
        strip.setReversed(each.isReversed);
        strip.setPlan(JobPlan(each.input));
        strips << strip.grab();
    }
    const int height = strips.front().height() + 4;
    QPixmap sheet(strips.front().width(), height * static_cast<int>(strips.size()));
    sheet.fill(Qt::gray);
    QPainter painter(&sheet);
    for (int i = 0; i < strips.size(); ++i)
        painter.drawPixmap(0, i * height, strips[i]);
    painter.end();
    return sheet.save(QString::fromLocal8Bit(argc > 1 ? argv[1] : "strips.png")) ? 0 : 1;
}
