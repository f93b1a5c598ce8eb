// The print dialog's extension interface: what a panel says of what will be cut.
#pragma once

#include <optional>

namespace labelcut {

/// What happens to the tape between two labels, or behind the last one; each is stronger than those
/// before it.
enum class PDECut {
    None,   ///< The tape runs on.
    Half,   ///< The labels are parted, their backing is not.
    ByHand, ///< The user cuts.
    Full,   ///< The printer cuts the tape.
};

/// The blank tape that lies in front of the first label when it leaves the printer.
enum class PDELead {
    Unsaid,  ///< The panel does not know.
    Blank,   ///< It is there, and thrown away.
    Chained, ///< There is none: the first label follows the last one of the job before.
};

/// What the labels are on, as far as it changes how they look.
enum class PDEMedium {
    Unsaid,
    Tape,        ///< Continuous: labels are as long as their page.
    Labels,      ///< Die-cut, with gaps between them.
    SpecialTape, ///< Woven; never cut by the printer.
};

/// What will be cut in a job, as a rule for labels in the order in which they come out. Where more
/// than one cut comes to the same place, the strongest is made.
struct PDECutPlan {
    /// After every label.
    PDECut afterEach = PDECut::None;
    /// After every `groupSize`-th label, counted through the whole job. A size below 1: never.
    PDECut afterGroup = PDECut::None;
    int groupSize = 0;
    /// After every copy of the whole document.
    PDECut afterSet = PDECut::None;
    /// After the last label, whatever else is said; nothing: as after any other label there.
    std::optional<PDECut> afterLast;

    PDELead lead = PDELead::Unsaid;
    /// Between the blank lead and the first label; of no meaning without a lead.
    PDECut afterLead = PDECut::None;

    PDEMedium medium = PDEMedium::Unsaid;
    bool isMirrored = false;
    /// Blank tape at both ends of a label is not printed, so that it may come out shorter.
    bool removesBlankSpace = false;

    bool operator==(const PDECutPlan&) const = default;
};

} // namespace labelcut
