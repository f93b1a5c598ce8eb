// Fuzzing: the worker's protocol from both sides, what the worker is asked and what it answers.
#include <QByteArray>

#include <cmath>
#include <string>
#include <string_view>

#include "tools/fuzzing/support/bytes.h"
#include "tools/fuzzing/support/property.h"
#include "worker/protocol/message.h"

using namespace labelcut;
using fuzz::Bytes;
using fuzz::require;
using namespace labelcut::worker;

namespace {

void check(const std::optional<Paper>& paper) {
    if (!paper)
        return;
    require(paper->name.size() <= kLongestText, "a paper's name is bounded");
    for (const double measure :
         {paper->width, paper->height, paper->left, paper->top, paper->right, paper->bottom})
        require(std::isfinite(measure), "a paper's measures are numbers");
}

void check(const Open&) {}
void check(const Join& join) {
    require(join.pages.size() <= kMostRuns, "pages are bounded");
    require(join.repeats >= 1 && join.repeats <= kMostRepeats, "pages are repeated within bounds");
    require(join.sets >= 1 && join.sets <= kMostRepeats, "sets are bounded");
    require(join.fit <= kLastFit, "a fit is one of the known");
    std::uint64_t free = 1;
    for (const PageRun& run : join.pages) {
        require(run.first >= free && run.first <= run.last, "pages run forwards, apart, from 1");
        free = std::uint64_t{run.last} + 2;
    }
    check(join.paper);
}
void check(const Draw& draw) {
    require(draw.kind != DocumentKind::PDF && draw.kind != DocumentKind::PostScript &&
                draw.kind <= kLastKind,
            "only what is drawn is drawn");
    check(draw.paper);
}
void check(const Interpret& interpret) {
    require(interpret.times >= 1, "a document is interpreted at least once");
}
void check(const Measure&) {}
void check(const Show&) {}
void check(const Render& render) {
    require(render.page >= 1, "pages count from 1");
    require(render.width >= 1 && render.width <= kLargestSide && render.height >= 1 &&
                render.height <= kLargestSide,
            "a picture has a measure");
    require(std::uint64_t{render.width} * render.height <= kMostPixels, "a picture is bounded");
}
void check(const Progress&) {}
void check(const Kind& kind) {
    require(kind.kind <= kLastKind, "a kind is one of the known");
}
void check(const Opened& opened) {
    require(opened.pages >= 1 && opened.pages <= kMostPages, "a document has its pages");
}
void check(const Done&) {}
void check(const Shown& shown) {
    require(shown.pages >= 1 && shown.pages <= kMostPages, "a shown document has its pages");
}
void check(const Drawn& drawn) {
    require(drawn.textDirection <= kLastTextDirection, "a direction is one of the known");
}
void check(const Failed& failed) {
    require(failed.problem <= kLastProblem, "a problem is one of the known");
    require(failed.detail.size() <= kLongestText, "a reason is bounded");
}

template<typename Message>
void checkMessage(const std::optional<Message>& message, std::string_view bytes) {
    if (!message)
        return;
    require(encode(*message) == bytes, "what is taken is what would be sent");
    std::visit([](const auto& value) { check(value); }, *message);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Bytes bytes(data, size);
    const bool isRequest = bytes.flag();
    const std::string message = bytes.rest().toStdString();
    if (isRequest)
        checkMessage(decodeRequest(message), message);
    else
        checkMessage(decodeAnswer(message), message);
    return 0;
}
