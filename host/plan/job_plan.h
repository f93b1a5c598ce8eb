// Plan: the job label by label: from which page each comes, where the page lies on it, what is cut
// after it; and what all of that takes.
#pragma once

#include <QSizeF>

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "host/documents/paper.h"
#include "platform/dialog/pde_cut_plan.h"
#include "worker/protocol/page_fit.h"

namespace labelcut {

/// The pages of a job's files, one after the other.
struct DocumentPages {
    /// As they are shown, in points; one or more.
    std::vector<QSizeF> measures;
    /// How many of them each file has, in the files' order.
    std::vector<int> ofFiles;
};

/// A page by its place. Both counted from 1.
struct PageOfFile {
    int file = 1;
    int page = 1;
};
/// Where the page stands. @param page  counted from 1 through all files.
PageOfFile pageOfFile(const DocumentPages& document, int page);

/// Everything that a plan is made of.
struct PlanInput {
    /// Never null.
    std::shared_ptr<const DocumentPages> document;
    PageSelection pages;
    /// 1 or more.
    int copies = 1;
    bool isReversed = false;
    /// Whether copies come set by set; otherwise all copies of a page come together.
    bool isCollated = true;
    /// Nothing: every page is its own label.
    std::optional<JobPaper> paper;
    worker::Fit fit = worker::Fit::Unchanged;
    /// What a panel says; nothing: nobody knows what is cut.
    std::optional<PDECutPlan> cuts;
};

/// What the job takes.
struct PlanFigures {
    std::int64_t labels = 0;
    /// Cuts of each kind, that of the lead among them.
    std::int64_t fullCuts = 0;
    std::int64_t halfCuts = 0;
    std::int64_t handCuts = 0;
    /// Tape that is used, in points, and how that is meant: leads and gaps take more than a
    /// printer's description says, blank space that is removed takes less.
    double length = 0;
    enum class Meaning { Exactly, AtLeast, AtMost, About } lengthIs = Meaning::Exactly;
    /// Whether tape is thrown away of which nobody knows how much: the blank lead.
    bool hasWaste = false;
};

/// The pages of the job that lose an edge, or change their size, where nobody asked for it.
struct PlanMisfit {
    /// How many of the selected pages do.
    int pages = 0;
    /// The first of them, counted from 1, and its measure in points.
    int firstPage = 0;
    QSizeF measure;
    /// Of that page.
    worker::Placement place;
};

/// A value that is made anew at every change: what it takes does not grow with the job's labels,
/// but for length() without a paper and misfit().
class JobPlan {
public:
    explicit JobPlan(PlanInput input);

    const PlanInput& input() const { return mInput; }
    /// How many come out; 0 when the selection holds none of the pages.
    std::int64_t labels() const { return mLabels; }

    struct Label {
        /// Counted from 1 through all files.
        int page = 0;
        /// Which of the copies it is, counted from 1.
        int copy = 1;
        /// The page as it is shown, and the label; points.
        QSizeF pageSize;
        QSizeF size;
        worker::Placement place;
        PDECut cutAfter = PDECut::None;
    };
    /// @param index  counted from 0, below labels().
    Label label(std::int64_t index) const;
    /// Which page of the document a label is, and which copy of it; both counted from 1.
    struct Place {
        int page = 0;
        int copy = 1;
    };
    /// For those who need no more of a label.
    Place placeAt(std::int64_t index) const;
    int pageAt(std::int64_t index) const { return placeAt(index).page; }
    PDECut cutAfter(std::int64_t index) const;

    /// Where a page lies on its label. @param page  counted from 1.
    worker::Placement placeOf(int page) const;
    /// The label that the page comes to lie on, in points.
    QSizeF labelSizeOf(int page) const;

    PlanFigures figures() const;
    /// What loses an edge or its size with this fit; nothing when all pages are whole.
    std::optional<PlanMisfit> misfit() const;

private:
    PDECut strongestAt(bool endsGroup, bool endsSet) const;
    std::int64_t setSize() const;
    void countCuts(PlanFigures& figures) const;
    void measureTape(PlanFigures& figures) const;

    PlanInput mInput;
    int mSelected = 0;
    std::int64_t mLabels = 0;
};

/// The same measures for those who reckon where pages lie.
worker::Label labelOf(const JobPaper& paper);

} // namespace labelcut
