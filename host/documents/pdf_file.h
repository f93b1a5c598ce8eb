// Documents: PDF files, their pages, and pages laid out on paper.
#pragma once

#include <QString>

#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "host/core/call_limits.h"
#include "host/core/result.h"
#include "host/documents/paper.h"
#include "host/documents/pdf_engine.h"

namespace labelcut {

/// An opened PDF file.
class PdfFile {
public:
    /// @param path  the file. @param name  what the user calls it, for sentences.
    /// @param cancel  borrowed as long as the file is open; may be null. Whatever is being done
    /// with the file ends soon after it is set.
    /// @return the failure says that it is encrypted, broken or without pages, or that the library
    /// for PDF is not installed; or Cancelled. May be called on any thread.
    static Result<PdfFile> open(const QString& path, const QString& name,
                                const CancelFlag* cancel = nullptr);
    /// How many pages it has; at least 1.
    int pages() const { return mContent->pages(); }
    /// It was damaged, and what could be found of it was put together again.
    bool isRepaired() const { return mContent->isRepaired(); }
    bool isEncrypted() const { return mContent->isEncrypted(); }
    /// Whether every page is shown with the paper's measure; true for no paper.
    bool fits(const std::optional<JobPaper>& paper) const { return mContent->fits(paper); }

    /// Writes the pages of `files` that lie in `range`, counted through all of them, to `target`.
    ///
    /// A page that has the paper's measure stays untouched. Any other is centred on a page of the
    /// paper, turned when it is wide and the paper is high or the other way round, and shrunk,
    /// never enlarged, to fit what the printer can print on.
    /// @param paper  nothing: every page keeps its measure.
    /// @param cancel  borrowed for the call; may be null.
    /// @return the failure is a sentence that names the broken file, or the target; or Cancelled.
    static Result<Done> join(const std::vector<PdfFile>& files, const PageRange& range,
                             const std::optional<JobPaper>& paper, const QString& target,
                             const CancelFlag* cancel = nullptr);

private:
    explicit PdfFile(std::unique_ptr<PdfContent> content)
        : mContent(std::move(content)) {}

    std::unique_ptr<PdfContent> mContent;
};

} // namespace labelcut
