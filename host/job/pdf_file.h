// The job: PDF files, their pages, and pages laid out on paper.
//
// Everything that libqpdf does for us. Its headers cannot be compiled as C++20 by every compiler,
// so this header and its source keep to C++17.
#pragma once

#include <QString>

#include <memory>
#include <optional>
#include <vector>

#include "host/job/paper.h"
#include "platform/printing/result.h"

namespace labelcut {

/// An opened PDF file.
class PdfFile {
public:
    /// @param path  the file. @param name  what the user calls it, for sentences.
    /// @return the failure says that it is encrypted, broken or without pages.
    static Result<PdfFile> open(const QString& path, const QString& name);
    PdfFile(PdfFile&&) noexcept;
    PdfFile& operator=(PdfFile&&) noexcept;
    ~PdfFile();

    /// How many pages it has; at least 1.
    int pages() const;
    /// It was damaged, and what could be found of it was put together again.
    bool isRepaired() const;
    bool isEncrypted() const;
    /// Whether every page is shown with the paper's measure; true for no paper.
    bool fits(const std::optional<JobPaper>& paper) const;

    /// Writes the pages of `files` that lie in `range`, counted through all of them, to `target`.
    ///
    /// A page that has the paper's measure stays untouched. Any other is centred on a page of the
    /// paper, turned when it is wide and the paper is high or the other way round, and shrunk,
    /// never enlarged, to fit what the printer can print on.
    /// @param paper  nothing: every page keeps its measure.
    /// @return the failure is a sentence that names the broken file, or the target.
    static Result<Done> join(const std::vector<PdfFile>& files, const PageRange& range,
                             const std::optional<JobPaper>& paper, const QString& target);

private:
    struct Content;
    explicit PdfFile(std::unique_ptr<Content> content);

    std::unique_ptr<Content> mContent;
};

} // namespace labelcut
