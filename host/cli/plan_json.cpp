// The command line: a plan as JSON, in the shape of docs/plan.md.
#include "host/cli/plan_json.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <string_view>

#include "host/cli/json_text.h"

namespace labelcut {

namespace {

constexpr double kMillimetresPerPoint = 25.4 / 72;

/// A number as JSON. @param points  is written in millimetres, to a hundredth.
std::string millimetres(double points) {
    const long long hundredths = std::llround(points * kMillimetresPerPoint * 100);
    const long long fraction = std::abs(hundredths % 100);
    std::string text = hundredths < 0 ? "-" : "";
    text += std::to_string(std::abs(hundredths / 100));
    if (fraction == 0)
        return text;
    text += fraction < 10 ? ".0" : ".";
    text += std::to_string(fraction % 10 == 0 && fraction >= 10 ? fraction / 10 : fraction);
    return text;
}

/// To a ten-thousandth; 0 … 1.
std::string share(double number) {
    const long long parts = std::llround(number * 10'000);
    if (parts >= 10'000)
        return "1";
    std::string text = std::to_string(10'000 + parts);
    text.replace(0, 1, "0.");
    return text;
}

std::string truth(bool value) {
    return value ? "true" : "false";
}

std::string nameOf(PDECut cut) {
    switch (cut) {
    case PDECut::None:
        return R"("none")";
    case PDECut::Half:
        return R"("half")";
    case PDECut::ByHand:
        return R"("hand")";
    case PDECut::Full:
        return R"("full")";
    }
    return "null";
}

std::string nameOf(PDEMedium medium) {
    switch (medium) {
    case PDEMedium::Unsaid:
        break;
    case PDEMedium::Tape:
        return R"("tape")";
    case PDEMedium::Labels:
        return R"("labels")";
    case PDEMedium::SpecialTape:
        return R"("special tape")";
    }
    return "null";
}

std::string nameOf(PlanFigures::Meaning meaning) {
    using Meaning = PlanFigures::Meaning;
    switch (meaning) {
    case Meaning::Exactly:
        return R"("exactly")";
    case Meaning::AtLeast:
        return R"("at least")";
    case Meaning::AtMost:
        return R"("at most")";
    case Meaning::About:
        return R"("about")";
    }
    return "null";
}

/// One object on its line, built member by member.
class Line {
public:
    Line& add(std::string_view name, std::string_view value) {
        mText += mText.empty() ? "{\"" : ", \"";
        mText += name;
        mText += "\": ";
        mText += value;
        return *this;
    }
    Line& add(std::string_view name, std::int64_t value) {
        return add(name, std::to_string(value));
    }
    std::string end() { return std::move(mText += '}'); }

private:
    std::string mText;
};

class PlanWriter {
public:
    PlanWriter(const JobPlan& plan, std::FILE* out)
        : mPlan(plan)
        , mInput(plan.input())
        , mOut(out) {}

    void write(const QString& printer) {
        put("{\n  \"version\": " + std::to_string(kPlanVersion));
        member("printer", jsonString(printer));
        member("label", label());
        writeMedium();
        writePages();
        member("lead", lead());
        writeLabels();
        member("figures", figures());
        put("\n}\n");
    }

private:
    void put(std::string_view text) { std::fwrite(text.data(), 1, text.size(), mOut); }

    void member(std::string_view name, std::string_view value) {
        put(",\n  \"");
        put(name);
        put("\": ");
        put(value);
    }

    std::string label() const {
        if (!mInput.paper)
            return "null";
        const JobPaper& paper = *mInput.paper;
        return Line()
            .add("name", jsonString(paper.name))
            .add("widthMm", millimetres(paper.size.width()))
            .add("lengthMm", millimetres(paper.size.height()))
            .end();
    }

    void writeMedium() {
        const auto& cuts = mInput.cuts;
        member("cutsKnown", truth(cuts.has_value()));
        member("medium", nameOf(cuts ? cuts->medium : PDEMedium::Unsaid));
        member("mirrored", cuts ? truth(cuts->isMirrored) : "null");
        member("removesBlankSpace", cuts ? truth(cuts->removesBlankSpace) : "null");
    }

    /// The opening bracket, a line for each, the closing one.
    template<typename LineAt>
    void list(std::string_view name, std::int64_t count, LineAt lineAt) {
        member(name, "[");
        for (std::int64_t i = 0; i < count; ++i) {
            put(i == 0 ? "\n    " : ",\n    ");
            put(lineAt(i));
        }
        put(count == 0 ? "]" : "\n  ]");
    }

    void writePages() {
        const auto all = static_cast<int>(mInput.document->measures.size());
        list("pages", mInput.pages.countIn(all),
             [this](std::int64_t i) { return page(mInput.pages.pageAt(static_cast<int>(i))); });
    }

    std::string page(int number) const {
        const PageOfFile place = pageOfFile(*mInput.document, number);
        const QSizeF size = mInput.document->measures[static_cast<std::size_t>(number - 1)];
        return Line()
            .add("page", number)
            .add("file", place.file)
            .add("pageOfFile", place.page)
            .add("widthMm", millimetres(size.width()))
            .add("lengthMm", millimetres(size.height()))
            .add("fit", fit(mPlan.placeOf(number)))
            .end();
    }

    static std::string fit(const worker::Placement& place) {
        return Line()
            .add("turned", truth(place.isTurned))
            .add("scale", share(place.scale))
            .add("leftMm", millimetres(place.left))
            .add("topMm", millimetres(place.top))
            .add("lostWidthMm", millimetres(place.lost.width))
            .add("lostLengthMm", millimetres(place.lost.height))
            .add("losesEdge", truth(place.losesEdge))
            .add("changesSize", truth(place.changesSize))
            .end();
    }

    std::string lead() const {
        if (!mInput.cuts || mInput.cuts->lead == PDELead::Unsaid)
            return "null";
        const bool isBlank = mInput.cuts->lead == PDELead::Blank;
        return Line()
            .add("is", isBlank ? R"("blank")" : R"("chained")")
            .add("cutAfter", isBlank ? nameOf(mInput.cuts->afterLead) : "null")
            .end();
    }

    void writeLabels() {
        const std::int64_t listed = std::min(mPlan.labels(), kMostListedLabels);
        list("labels", listed, [this](std::int64_t i) {
            const JobPlan::Place place = mPlan.placeAt(i);
            return Line()
                .add("label", i + 1)
                .add("page", place.page)
                .add("copy", place.copy)
                .add("cutAfter", mInput.cuts ? nameOf(mPlan.cutAfter(i)) : "null")
                .end();
        });
        member("labelsCutOff", truth(listed < mPlan.labels()));
    }

    std::string figures() const {
        const PlanFigures figures = mPlan.figures();
        const auto known = [this](std::int64_t count) {
            return mInput.cuts ? std::to_string(count) : "null";
        };
        return Line()
            .add("labels", figures.labels)
            .add("fullCuts", known(figures.fullCuts))
            .add("halfCuts", known(figures.halfCuts))
            .add("handCuts", known(figures.handCuts))
            .add("lengthMm", millimetres(figures.length))
            .add("lengthIs", nameOf(figures.lengthIs))
            .add("hasWaste", mInput.cuts ? truth(figures.hasWaste) : "null")
            .end();
    }

    const JobPlan& mPlan;
    const PlanInput& mInput;
    std::FILE* mOut;
};

} // namespace

void writePlanJson(const QString& printer, const JobPlan& plan, std::FILE* out) {
    PlanWriter(plan, out).write(printer);
}

} // namespace labelcut
