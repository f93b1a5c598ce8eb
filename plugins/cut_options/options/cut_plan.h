// Cut-options panel: what choices that were sent to the printer mean for the tape.
#pragma once

#include "platform/dialog/pde_cut_plan.h"

namespace labelcut {

/// The choices of the eight options as the job has them: true where the option's second choice,
/// "on", is marked. An option that the PPD lacks is off.
struct SentChoices {
    /// A printer of the roll label family; otherwise of the tape family.
    bool isRV = false;
    /// The PPD has KvAutoTapeCut.
    bool hasAutoCut = false;
    bool autoCut = false;
    /// The number that is marked for KvCutLabel; 0 without the option.
    int cutEvery = 0;
    bool cutAtEnd = false;
    bool halfCut = false;
    bool chainPrint = false;
    bool specialTape = false;
    bool mirror = false;
    bool removeBlankSpace = false;
    /// The label size is one of fixed length.
    bool hasFixedLength = false;
};

/// What the pictures of the panel show of these choices. Where a picture is silent the choice
/// itself counts:
///  - the number of "cut every": the full cut comes after every so many labels; the picture shows
///  1;
///  - without KvAutoTapeCut the number is all that the printer is told, so it cuts by it;
///  - cut at end beside cut every, and on tape: the tape is cut behind the last label, even when
///    that would wait in the printer for the next job;
///  - remove blank space, on tape that is no special tape and labels of no fixed length.
PDECutPlan cutPlanOf(const SentChoices& choices);

} // namespace labelcut
