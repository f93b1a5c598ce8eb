// Strip: what the strip says in words.
#include "host/strip/strip_words.h"

#include <QLocale>
#include <QStringList>

#include "host/texts/host_text.h"
#include "host/texts/length.h"

namespace labelcut {

namespace {

QString counted(const char* one, const char* many, std::int64_t count) {
    return hostText(count == 1 ? one : many).arg(QLocale().toString(static_cast<qlonglong>(count)));
}

QString tapeText(const JobPlan& plan, const PlanFigures& figures) {
    const QString length = lengthForUser(figures.length);
    const QString tape =
        plan.input().paper
            ? hostText("StripTape").arg(length, lengthForUser(plan.input().paper->size.width()))
            : length;
    switch (figures.lengthIs) {
    case PlanFigures::Meaning::Exactly:
        return tape;
    case PlanFigures::Meaning::AtLeast:
        return hostText("StripAtLeast").arg(tape);
    case PlanFigures::Meaning::AtMost:
        return hostText("StripAtMost").arg(tape);
    case PlanFigures::Meaning::About:
        return hostText("StripAbout").arg(tape);
    }
    return tape;
}

const char* keyOf(PDECut cut) {
    switch (cut) {
    case PDECut::None:
        return "StripLabelNotCut";
    case PDECut::Half:
        return "StripLabelHalfCut";
    case PDECut::ByHand:
        return "StripLabelCutByHand";
    case PDECut::Full:
        return "StripLabelFullCut";
    }
    return "StripLabelNotCut";
}

} // namespace

QString figuresText(const JobPlan& plan) {
    const PlanFigures figures = plan.figures();
    QStringList parts{counted("OneLabel", "ManyLabels", figures.labels), tapeText(plan, figures)};
    if (plan.input().cuts) {
        if (figures.fullCuts > 0 || figures.halfCuts + figures.handCuts == 0)
            parts << (figures.fullCuts == 0
                          ? hostText("StripNoCut")
                          : counted("StripOneCut", "StripCuts", figures.fullCuts));
        if (figures.halfCuts > 0)
            parts << counted("StripOneHalfCut", "StripHalfCuts", figures.halfCuts);
        if (figures.handCuts > 0)
            parts << counted("StripOneHandCut", "StripHandCuts", figures.handCuts);
    }
    return parts.join(QStringLiteral(" · "));
}

QString labelText(const JobPlan& plan, std::int64_t index) {
    const QLocale locale;
    return hostText(keyOf(plan.cutAfter(index)))
        .arg(locale.toString(qlonglong{index} + 1),
             locale.toString(static_cast<qlonglong>(plan.labels())));
}

QString moreText(std::int64_t labels) {
    return hostText("StripMore").arg(QLocale().toString(static_cast<qlonglong>(labels)));
}

QString misfitText(const JobPlan& plan, const PlanMisfit& misfit) {
    const QSizeF label = plan.labelSizeOf(misfit.firstPage);
    const QString page = measureForUser(misfit.measure.width(), misfit.measure.height());
    const QString on = measureForUser(label.width(), label.height());
    if (plan.input().document->measures.size() == 1)
        return hostText("MisfitPage").arg(page, on);
    if (misfit.pages > 1 && misfit.pages == plan.labels() / plan.input().copies)
        return hostText("MisfitPages").arg(page, on);
    const QString first = QLocale().toString(misfit.firstPage);
    if (misfit.pages == 1)
        return hostText("MisfitOnePage").arg(first, page, on);
    if (misfit.pages == 2)
        return hostText("MisfitTwoPages").arg(first, page, on);
    return hostText("MisfitSomePages").arg(first, page, on, QLocale().toString(misfit.pages - 1));
}

} // namespace labelcut
