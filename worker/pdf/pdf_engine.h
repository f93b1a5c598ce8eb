// Worker: what libqpdf does with PDF files, in a library of its own.
//
// A worker that draws or interprets does not load it. libqpdf's headers cannot be compiled as C++20
// by every compiler: this header, and what it includes, keeps to C++17.
#pragma once

#include "worker/protocol/descriptor.h"
#include "worker/protocol/message.h"
#include "worker/protocol/step.h"

namespace labelcut::worker {

/// The files of one job. No function throws.
class PdfEngine {
public:
    PdfEngine() = default;
    PdfEngine(const PdfEngine&) = delete;
    PdfEngine& operator=(const PdfEngine&) = delete;
    virtual ~PdfEngine() = default;

    /// Opens a file and keeps it. @return Opened, or Failed; a file that failed is not kept.
    virtual Answer open(Descriptor document, const Step& step) = 0;

    /// Writes the pages of all files that are asked for.
    ///
    /// A page that has the paper's measure stays untouched, but for one that is not plain (see
    /// Opened). Any other lies on a page of the paper where placed() says; what goes beyond is cut
    /// off. Without a paper every page keeps its measure.
    /// @param target  empty. @return Done, or Failed.
    virtual Answer join(const Join& request, Descriptor target, const Step& step) = 0;

    /// Writes the measures of all pages of all files, see Measure.
    /// @param target  empty. @return Done, or Failed.
    virtual Answer measure(Descriptor target, const Step& step) = 0;
};

/// The name and type of the library's only function. The engine is the library's and is never null.
inline constexpr char kPdfEngineFunction[] = "labelcutPdfEngine";
using PdfEngineFunction = PdfEngine* (*)();

} // namespace labelcut::worker
