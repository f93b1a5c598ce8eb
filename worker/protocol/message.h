// Worker's protocol: what the program asks the worker that reads documents, and what it answers.
//
// A message is one packet of at most kLargestMessage bytes: a byte that names the message, then its
// fields in the order of their declaration; numbers in the byte order of the machine, truth values
// as one byte 0 or 1, texts as a count of four bytes and so many bytes, something optional as a
// truth value and, if true, its fields. Descriptors travel beside the bytes (channel.h). Neither
// side believes the other: what is no message, holds a value that its field cannot have, or goes on
// after its last field is refused as a whole. This header keeps to C++17, see pdf_engine.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "worker/protocol/page_fit.h"

namespace labelcut::worker {

/// Bytes.
inline constexpr std::size_t kLargestMessage = 8192;
/// The longest name of a paper and the longest reason; longer ones are cut. Bytes.
inline constexpr std::size_t kLongestText = 2048;

/// The kinds of file that can be printed.
enum class DocumentKind : std::uint8_t { PDF, PostScript, PNG, JPEG, SVG, PlainText };
inline constexpr DocumentKind kLastKind = DocumentKind::PlainText;

/// The paper that pages are laid out on. Points, 1/72 inch; the printable area is measured from the
/// top left corner. Every number is finite.
struct Paper {
    std::string name;
    double width = 0;
    double height = 0;
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;
};

// Requests. Each is answered by any number of Progress and one other answer.

/// With the document's descriptor. A PDF file is opened and kept for Join, and the answer is
/// Opened; any other document is only told by Kind.
struct Open {};

/// Pages first … last, counted from 1 through all files that were opened, in their order.
struct PageRun {
    std::uint32_t first = 1;
    std::uint32_t last = 1;
};
/// So many of them, a paper and what stands between fit one message.
inline constexpr std::size_t kMostRuns = 500;

/// The most that a page can be repeated.
inline constexpr std::uint32_t kMostRepeats = 9999;

/// With the target's descriptor: writes pages of all files that were opened. See
/// PdfEngine::join(). Answer: Done.
struct Join {
    /// Ascending, with a page at least between two of them; none: every page.
    std::vector<PageRun> pages;
    /// The last page first.
    bool isReversed = false;
    /// Each page so often in a row, 1 … kMostRepeats. With all sets no more than kMostPages.
    std::uint32_t repeats = 1;
    /// What pages are laid out on; nothing: they keep their measure.
    std::optional<Paper> paper;
    Fit fit = Fit::Unchanged;
    /// All of it so often, one set behind the other; 1 … kMostRepeats.
    std::uint32_t sets = 1;
    /// So many pages at the front of all that are left out; fewer than there are.
    std::uint32_t skipped = 0;
};

/// With the descriptors of document and target: draws a document of `kind`, no PDF and no
/// PostScript, as a PDF file. Answer: Done.
struct Draw {
    DocumentKind kind = DocumentKind::PNG;
    Paper paper;
};

/// With the descriptor of a folder, which holds the document as "input": the worker becomes
/// Ghostscript, which writes "output" there, says the rest on standard output and ends. No answer
/// but a refusal. When no page was made for PDF, kNoPageMade stands in what it said.
struct Interpret {
    enum class Target : std::uint8_t { PDF, PostScript };
    Target target = Target::PDF;
    /// For PostScript: how often the document is interpreted, one after the other; 1 or more.
    std::uint32_t times = 1;
    /// For PostScript: whether it asks for the pages' measure; otherwise it leaves the paper alone.
    bool setsPageSize = true;
};

/// Ghostscript itself makes a blank page of a document without any.
inline constexpr std::string_view kNoPageMade = "labelcut-pages 0\n";

/// With the target's descriptor: writes the measure at which each page of all opened files is
/// shown, in their order, as two doubles, width and height. Points, 0 … kLongestSide. Answer: Done.
struct Measure {};
/// Longer sides are told, and laid out, as this. Points; some 350 m.
inline constexpr double kLongestSide = 1'000'000;

/// With the descriptor of a PDF file, which is kept in place of an earlier one for Render. Answer:
/// Shown.
struct Show {};

/// With the descriptor of a file in memory of exactly kBytesOfPixel * width * height bytes: draws a
/// page of the file that was shown, as people see it, so that it fills the picture. Rows come from
/// the top, pixels of a row from the left, each as blue, green, red and a byte without meaning.
/// Answer: Drawn.
struct Render {
    /// From 1.
    std::uint32_t page = 1;
    /// Pixels; at most kLargestSide each and kMostPixels together.
    std::uint32_t width = 1;
    std::uint32_t height = 1;
    /// Whether Drawn.textDirection is looked for, which takes its time.
    bool asksTextDirection = true;
};
inline constexpr std::uint32_t kLargestSide = 32'767;
inline constexpr std::uint32_t kMostPixels = 16'000'000;
inline constexpr std::uint32_t kBytesOfPixel = 4;

using Request = std::variant<Open, Join, Draw, Interpret, Measure, Show, Render>;

// Answers.

/// Something was done that brings the work nearer to its end.
struct Progress {};

struct Kind {
    DocumentKind kind = DocumentKind::PDF;
};

struct Opened {
    /// 1 … kMostPages.
    std::uint32_t pages = 1;
    /// It was damaged, and what could be found of it was put together again.
    bool isRepaired = false;
    bool isEncrypted = false;
    /// Whether all of each page is shown, in units of points. Not everybody heeds what else a page
    /// may say; Join writes it as one that is plain.
    bool isPlain = true;
};

struct Done {};

struct Shown {
    /// 1 … kMostPages.
    std::uint32_t pages = 1;
};

/// How most words of a page run, as it is shown.
enum class TextDirection : std::uint8_t {
    None,       ///< It has no words, or too many to look at, or nobody asked.
    AlongWidth, ///< From left to right, or upside down.
    Downwards,  ///< Along the height, from the top to the bottom.
    Upwards,
};
inline constexpr TextDirection kLastTextDirection = TextDirection::Upwards;

struct Drawn {
    TextDirection textDirection = TextDirection::None;
};

enum class Problem : std::uint8_t {
    UnknownKind,        ///< No document of the kinds that are printed.
    Encrypted,          ///< A PDF file that asks for a password.
    Broken,             ///< A damaged PDF file.
    WithoutPages,       ///< A PDF file with nothing to print.
    TooManyPages,       ///< More than kMostPages, or repeating makes so many.
    TextTooLong,        ///< More than kLargestText.
    PictureDamaged,     ///< Or too large.
    DrawingDamaged,     ///< SVG.
    NotWritten,         ///< The target refuses bytes.
    OutOfMemory,        ///< The limit of the cage.
    GhostscriptMissing, ///< Not installed.
    ModuleMissing,      ///< The library that reads such documents cannot be loaded.
    NoCage,             ///< The system refuses what the cage is made of; nothing was read.
    Misunderstood,      ///< A request that makes no sense now.
};
inline constexpr Problem kLastProblem = Problem::Misunderstood;

struct Failed {
    Problem problem = Problem::Misunderstood;
    /// A library's own words; may be empty.
    std::string detail;
    /// For Join: which of the files it is about, counted from 0 as they were opened; or kNoFile.
    std::uint32_t file = 0;
};
/// The library does not say which.
inline constexpr std::uint32_t kNoFile = UINT32_MAX;

using Answer = std::variant<Progress, Kind, Opened, Done, Failed, Shown, Drawn>;

/// More pages are refused. 20,000 are a day's work of a label printer.
inline constexpr std::uint32_t kMostPages = 100'000;
/// What the cage lets a worker have. Bytes of memory that it writes to, and of each file.
inline constexpr std::uint64_t kMemoryLimit = 384ULL << 20;
inline constexpr std::uint64_t kOutputLimit = 2ULL << 30;
/// Text beyond this is no label. Bytes.
inline constexpr std::int64_t kLargestText = 4 << 20;

std::string encode(const Request& request);
std::string encode(const Answer& answer);
/// @return nothing for bytes that are no such message.
std::optional<Request> decodeRequest(std::string_view bytes);
std::optional<Answer> decodeAnswer(std::string_view bytes);

} // namespace labelcut::worker
