// Worker: pictures of the pages of PDF files, by Poppler, in a library of its own.
//
// By Poppler's C++ interface: Qt's renderer draws the same pages in twice the memory, cannot do
// without an application with a display, and does not tell which way words run.
#pragma once

#include "worker/protocol/descriptor.h"
#include "worker/protocol/message.h"

namespace labelcut::worker {

/// One file, and its pages. No function throws, but for what no memory is left for.
class PageRenderer {
public:
    PageRenderer() = default;
    PageRenderer(const PageRenderer&) = delete;
    PageRenderer& operator=(const PageRenderer&) = delete;
    virtual ~PageRenderer() = default;

    /// Opens a file in place of the one before. @return Shown, or Failed; then there is none.
    virtual Answer show(Descriptor document) = 0;

    /// Draws a page of it on white, turned as its /Rotate says: what its crop box shows, without
    /// what is beyond the media box, fills the picture, whatever their proportions are.
    /// @return Drawn, or Failed: there is no such page, or `target` has another size.
    virtual Answer render(const Render& request, Descriptor target) = 0;
};

/// The name and type of the library's only function. The renderer is the library's and is never
/// null.
inline constexpr char kPageRendererFunction[] = "labelcutPageRenderer";
using PageRendererFunction = PageRenderer* (*)();

} // namespace labelcut::worker
