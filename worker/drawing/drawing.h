// Worker: pictures, drawings and text as PDF files, by Qt, in a library of its own.
//
// A worker that reads PDF files does not load it.
#pragma once

#include "worker/protocol/descriptor.h"
#include "worker/protocol/message.h"
#include "worker/protocol/step.h"

namespace labelcut::worker {

/// No function throws, but for what no memory is left for.
class Drawing {
public:
    Drawing() = default;
    Drawing(const Drawing&) = delete;
    Drawing& operator=(const Drawing&) = delete;
    virtual ~Drawing() = default;

    /// Loads what drawing takes, as far as that is known before a document is. Once, first.
    virtual void prepare() = 0;

    /// Draws `document` on pages of the request's paper: a picture scaled to fit the printable area
    /// and turned when that makes it larger, text in a fixed-pitch font, wrapped, a form feed
    /// starting a new page. @param target  empty. @return Done, or Failed.
    virtual Answer draw(const Draw& request, Descriptor document, Descriptor target,
                        const Step& step) = 0;
};

/// The name and type of the library's only function. The object is the library's and is never null.
inline constexpr char kDrawingFunction[] = "labelcutDrawing";
using DrawingFunction = Drawing* (*)();

} // namespace labelcut::worker
