// The command line: a plan in plain words.
#include "host/cli/plan_text.h"

#include <QFileInfo>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <optional>

#include "host/core/harmless_text.h"

namespace labelcut {

namespace {

/// More lines, and more labels, are counted only: nobody reads so many.
constexpr int kMostLines = 100;
constexpr std::int64_t kMostLabels = 100'000;

/// To a tenth of a millimetre, without the unit.
QString millimetres(double points) {
    const double tenths = std::round(points * 254 / 72);
    return QString::number(tenths / 10, 'f', std::fmod(tenths, 10) == 0 ? 0 : 1);
}

QString measure(const QSizeF& size) {
    return QStringLiteral("%1 × %2 mm").arg(millimetres(size.width()), millimetres(size.height()));
}

QString counted(std::int64_t count, const char* one, const char* many) {
    return QString::number(count) + u' ' + QLatin1String(count == 1 ? one : many);
}

/// "page 3", "pages 3-5", "pages 5-3".
QString numbered(const char* one, const char* many, int first, int last) {
    if (first == last)
        return QLatin1String(one) + u' ' + QString::number(first);
    return QLatin1String(many) + u' ' + QString::number(first) + u'-' + QString::number(last);
}

QString nameOf(PDECut cut) {
    switch (cut) {
    case PDECut::None:
        break;
    case PDECut::Half:
        return QStringLiteral("half cut");
    case PDECut::ByHand:
        return QStringLiteral("cut by hand");
    case PDECut::Full:
        return QStringLiteral("full cut");
    }
    return QStringLiteral("no cut");
}

/// What of a page is not simply whole; empty: nothing.
QString fitText(const worker::Placement& place) {
    QStringList parts;
    if (place.isTurned)
        parts << QStringLiteral("turned");
    if (place.changesSize)
        parts << QStringLiteral("scaled to %1 %").arg(std::lround(place.scale * 100));
    if (place.losesEdge) {
        QStringList lost;
        if (place.lost.width > worker::kSameMeasure)
            lost << millimetres(place.lost.width) + QStringLiteral(" mm at the width");
        if (place.lost.height > worker::kSameMeasure)
            lost << millimetres(place.lost.height) + QStringLiteral(" mm at the length");
        parts << QStringLiteral("cut off by ") + lost.join(QStringLiteral(" and "));
    }
    return parts.join(QStringLiteral(", "));
}

class PlanTeller {
public:
    PlanTeller(const PlanReport& report, const std::function<void(const QString&)>& say)
        : mReport(report)
        , mPlan(*report.plan)
        , mInput(mPlan.input())
        , mSay(say) {}

    void tell() {
        say(heading());
        tellLead();
        tellLabels();
        tellEnd();
        if (!mReport.refusal.isEmpty())
            say(QStringLiteral("Print refuses that: ") + mReport.refusal);
        say(mInput.cuts ? figuresText() : unknownCuts());
        say(tapeText());
    }

private:
    /// Labels that follow each other and differ only in their number, but that a stronger cut may
    /// come after the last.
    struct Run {
        std::int64_t first = 0;
        JobPlan::Label from;
        JobPlan::Label to;
        std::int64_t length = 1;
    };

    void say(const QString& line) const { mSay(harmless(line)); }

    QString heading() const {
        QStringList files;
        for (const QString& file : mReport.files)
            files << QStringLiteral("\"%1\"").arg(file);
        QString text = QStringLiteral("Plan of %1 for \"%2\"")
                           .arg(files.join(QStringLiteral(", ")), mReport.printer);
        if (mInput.paper)
            text += QStringLiteral(", %1, %2").arg(mInput.paper->name, measure(mInput.paper->size));
        if (mInput.cuts && mInput.cuts->isMirrored)
            text += QStringLiteral(", mirrored");
        if (mInput.cuts && mInput.cuts->removesBlankSpace)
            text += QStringLiteral(", blank space removed");
        return text + u':';
    }

    void row(const QString& name, const QString& text) const {
        const auto widest = static_cast<int>(QString::number(mPlan.labels()).size());
        say(QStringLiteral("  ") + name.leftJustified(std::max(2 * widest + 1, 4) + 2) + text);
    }

    void tellLead() const {
        if (!mInput.cuts || mInput.cuts->lead == PDELead::Unsaid)
            return;
        row(QStringLiteral("lead"),
            mInput.cuts->lead == PDELead::Blank
                ? QStringLiteral("blank tape, ") + nameOf(mInput.cuts->afterLead)
                : QStringLiteral("none: label 1 follows the last one of the job before"));
    }

    void tellLabels() const {
        std::optional<Run> run;
        std::int64_t told = 0;
        int lines = 0;
        const auto finish = [&] {
            tellRun(*run);
            told += run->length;
            ++lines;
            run.reset();
        };
        const std::int64_t most = std::min(mPlan.labels(), kMostLabels);
        for (std::int64_t i = 0; i < most && lines < kMostLines; ++i) {
            const JobPlan::Label label = mPlan.label(i);
            if (run && grows(*run, label)) {
                run->to = label;
                ++run->length;
                continue;
            }
            if (run)
                finish();
            run = Run{i, label, label};
        }
        if (run && lines < kMostLines)
            finish();
        if (told < mPlan.labels())
            row(QStringLiteral("…"),
                QStringLiteral("and %1; --json lists more of them")
                    .arg(counted(mPlan.labels() - told, "more label", "more labels")));
    }

    /// Whether the label goes on as the run does: the next page up or down, or the next copy.
    bool grows(const Run& run, const JobPlan::Label& next) const {
        const int page = next.page - run.to.page;
        const int copy = next.copy - run.to.copy;
        const bool isNext = copy == 0 ? std::abs(page) == 1 : copy == 1 && page == 0;
        const bool goesOn =
            run.length == 1 || (page == (run.to.page - run.from.page) / (run.length - 1) &&
                                copy == (run.to.copy - run.from.copy) / (run.length - 1));
        return isNext && goesOn && next.pageSize == run.from.pageSize &&
               run.to.cutAfter == run.from.cutAfter && next.cutAfter >= run.from.cutAfter &&
               fileOf(next.page) == fileOf(run.from.page);
    }

    int fileOf(int page) const { return pageOfFile(*mInput.document, page).file; }

    void tellRun(const Run& run) const {
        const std::int64_t first = run.first + 1;
        QString numbers = QString::number(first);
        if (run.length > 1)
            numbers += u'-' + QString::number(run.first + run.length);
        QStringList parts{pagesText(run)};
        if (mInput.copies > 1)
            parts << numbered("copy", "copies", run.from.copy, run.to.copy);
        parts << measure(run.from.pageSize);
        const QString fit = fitText(run.from.place);
        if (!fit.isEmpty())
            parts << fit;
        if (mInput.cuts)
            parts << cutText(run);
        row(numbers, parts.join(QStringLiteral(", ")));
    }

    static QString cutText(const Run& run) {
        const PDECut each = run.from.cutAfter;
        const PDECut last = run.to.cutAfter;
        QString text = nameOf(each);
        if (run.length > 1 && each != PDECut::None)
            text += QLatin1String(" after each");
        if (last == each)
            return text;
        const QString end = nameOf(last) + QLatin1String(" after the last");
        return each == PDECut::None ? end : text + QLatin1String(", ") + end;
    }

    QString pagesText(const Run& run) const {
        const QString pages = numbered("page", "pages", run.from.page, run.to.page);
        if (mReport.files.size() < 2)
            return pages;
        const PageOfFile from = pageOfFile(*mInput.document, run.from.page);
        const PageOfFile to = pageOfFile(*mInput.document, run.to.page);
        return pages + QStringLiteral(" (%1 of \"%2\")")
                           .arg(numbered("page", "pages", from.page, to.page),
                                QFileInfo(mReport.files.value(from.file - 1)).fileName());
    }

    void tellEnd() const {
        if (!mInput.cuts)
            return;
        const PDECut last = mPlan.cutAfter(mPlan.labels() - 1);
        row(QStringLiteral("end"), last == PDECut::None
                                       ? QStringLiteral("no cut: the last label stays in the "
                                                        "printer until the next job")
                                       : nameOf(last));
    }

    static QString unknownCuts() {
        return QStringLiteral("What is cut is not known: no panel of this printer says it.");
    }

    QString figuresText() const {
        const PlanFigures figures = mPlan.figures();
        return QStringLiteral("%1: %2, %3, %4.")
            .arg(counted(figures.labels, "label", "labels"),
                 counted(figures.fullCuts, "full cut", "full cuts"),
                 counted(figures.halfCuts, "half cut", "half cuts"),
                 counted(figures.handCuts, "cut by hand", "cuts by hand"));
    }

    QString tapeText() const {
        const PlanFigures figures = mPlan.figures();
        QString text = meant(figures.lengthIs) + millimetres(figures.length) + QLatin1String(" mm");
        if (mInput.paper)
            text += QStringLiteral(" of %1 mm %2")
                        .arg(millimetres(mInput.paper->size.width()), mediumText());
        text[0] = text[0].toUpper();
        if (figures.hasWaste)
            text += QStringLiteral("; the blank lead is waste, how long it is the printer's "
                                   "description does not say");
        return text + u'.';
    }

    static QString meant(PlanFigures::Meaning meaning) {
        using Meaning = PlanFigures::Meaning;
        switch (meaning) {
        case Meaning::Exactly:
            break;
        case Meaning::AtLeast:
            return QStringLiteral("at least ");
        case Meaning::AtMost:
            return QStringLiteral("at most ");
        case Meaning::About:
            return QStringLiteral("about ");
        }
        return {};
    }

    QString mediumText() const {
        switch (mInput.cuts ? mInput.cuts->medium : PDEMedium::Unsaid) {
        case PDEMedium::Unsaid:
        case PDEMedium::Labels:
            break;
        case PDEMedium::Tape:
            return QStringLiteral("tape");
        case PDEMedium::SpecialTape:
            return QStringLiteral("special tape");
        }
        return QStringLiteral("labels");
    }

    const PlanReport& mReport;
    const JobPlan& mPlan;
    const PlanInput& mInput;
    const std::function<void(const QString&)>& mSay;
};

} // namespace

void tellPlan(const PlanReport& report, const std::function<void(const QString& line)>& say) {
    PlanTeller(report, say).tell();
}

} // namespace labelcut
