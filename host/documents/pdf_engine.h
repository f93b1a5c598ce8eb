// Documents: what libqpdf does for us, in a library of its own that is loaded with the first
// document.
//
// A window that is to be there at once, and commands that read no document, do not wait for it.
// libqpdf's headers cannot be compiled as C++20 by every compiler: this header keeps to C++17.
#pragma once

#include <QSizeF>
#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "host/documents/paper.h"

namespace labelcut {

/// Why a file cannot be used; the caller makes the sentence.
struct PdfProblem {
    enum class Kind { Encrypted, Broken, WithoutPages, NotWritten, Interrupted };
    Kind kind = Kind::Broken;
    /// What the user calls the file; for NotWritten the target's path.
    QString file;
    /// libqpdf's own words; may be empty.
    QString detail;
};

/// Whether work is no longer wanted; asked often, from the thread that does the work. Never empty.
using StopWish = std::function<bool()>;

/// An opened file. Made by an engine, given back to the same engine only.
class PdfContent {
public:
    PdfContent() = default;
    PdfContent(const PdfContent&) = delete;
    PdfContent& operator=(const PdfContent&) = delete;
    virtual ~PdfContent() = default;

    /// At least 1.
    virtual int pages() const = 0;
    virtual bool isRepaired() const = 0;
    virtual bool isEncrypted() const = 0;
    virtual bool fits(const std::optional<JobPaper>& paper) const = 0;
};

/// No function throws.
class PdfEngine {
public:
    PdfEngine() = default;
    PdfEngine(const PdfEngine&) = delete;
    PdfEngine& operator=(const PdfEngine&) = delete;
    virtual ~PdfEngine() = default;

    /// @param stop  kept as long as the content. @return null, and `problem` says why.
    virtual std::unique_ptr<PdfContent> open(const QString& path, const QString& name,
                                             const StopWish& stop, PdfProblem& problem) const = 0;
    /// See PdfFile::join().
    virtual std::optional<PdfProblem> join(const std::vector<PdfContent*>& files,
                                           const PageRange& range,
                                           const std::optional<JobPaper>& paper,
                                           const QString& target, const StopWish& stop) const = 0;
};

/// The name and type of the library's only function. The engine is the library's and is never null.
inline constexpr char kPdfEngineFunction[] = "labelcutPdfEngine";
using PdfEngineFunction = const PdfEngine* (*)();

} // namespace labelcut
