// Worker: what kind of file a document is, told by its content and never by its name.
#include "worker/kinds/document_kind.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string_view>

#include "worker/kinds/plain_text.h"

namespace labelcut::worker {

namespace {

using namespace std::string_view_literals;

/// How far into a file the marks of its kind are looked for. Bytes.
constexpr std::size_t kHead = 4096;
constexpr std::size_t kPdfMarkWithin = 1024;

std::string read(int document, std::size_t most) {
    std::string bytes(most, '\0');
    std::size_t size = 0;
    while (size < most) {
        const ssize_t got =
            pread(document, bytes.data() + size, most - size, static_cast<off_t>(size));
        if (got <= 0)
            break;
        size += static_cast<std::size_t>(got);
    }
    bytes.resize(size);
    return bytes;
}

bool startsWith(std::string_view text, std::string_view start) {
    return text.substr(0, start.size()) == start;
}

/// Takes everything up to the end of `mark` off the front; everything when it is not there.
void skipBehind(std::string_view& text, std::string_view mark) {
    const std::size_t at = text.find(mark);
    text.remove_prefix(at == std::string_view::npos ? text.size() : at + mark.size());
}

/// A document type declaration may hold others, in brackets.
void skipDoctype(std::string_view& text) {
    const std::size_t bracket = text.find('[');
    if (bracket != std::string_view::npos && bracket < text.find('>'))
        skipBehind(text, "]");
    skipBehind(text, ">");
}

/// The name of an XML document's first element, without its prefix; empty for what is none.
std::string_view rootElement(std::string_view text) {
    if (startsWith(text, "\xef\xbb\xbf"))
        text.remove_prefix(3);
    for (;;) {
        text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
        if (startsWith(text, "<?"))
            skipBehind(text, "?>");
        else if (startsWith(text, "<!--"))
            skipBehind(text, "-->");
        else if (startsWith(text, "<!DOCTYPE"))
            skipDoctype(text);
        else
            break;
    }
    if (!startsWith(text, "<"))
        return {};
    text = text.substr(1, text.find_first_of(" \t\r\n/>", 1) - 1);
    return text.substr(text.find(':') + 1);
}

std::optional<DocumentKind> kindByMark(std::string_view head) {
    if (head.substr(0, kPdfMarkWithin).find("%PDF-") != std::string_view::npos)
        return DocumentKind::PDF;
    if (startsWith(head, "%!") || startsWith(head, "\x04%!"))
        return DocumentKind::PostScript;
    if (startsWith(head, "\x89PNG\r\n\x1a\n"sv))
        return DocumentKind::PNG;
    if (startsWith(head, "\xff\xd8\xff"sv))
        return DocumentKind::JPEG;
    if (rootElement(head) == "svg")
        return DocumentKind::SVG;
    return std::nullopt;
}

/// Most files that are no text show it at once, so that how long they are does not matter.
bool canBeText(std::string_view head) {
    const bool hasWideMark = startsWith(head, "\xff\xfe") || startsWith(head, "\xfe\xff") ||
                             startsWith(head, "\0\0\xfe\xff"sv);
    return hasWideMark || std::ranges::none_of(head, [](char c) {
               return static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n' && c != '\r' &&
                      c != '\f';
           });
}

} // namespace

Answer documentKind(int document) {
    const std::string head = read(document, kHead);
    if (const auto kind = kindByMark(head))
        return Kind{*kind};
    if (!canBeText(head))
        return Failed{Problem::UnknownKind, {}};
    struct stat info {};
    fstat(document, &info);
    if (info.st_size > kLargestText)
        return Failed{Problem::TextTooLong, {}};
    if (!decodedText(contentOf(document)))
        return Failed{Problem::UnknownKind, {}};
    return Kind{DocumentKind::PlainText};
}

std::string contentOf(int document) {
    struct stat info {};
    fstat(document, &info);
    return read(document, static_cast<std::size_t>(std::max<off_t>(info.st_size, 0)));
}

} // namespace labelcut::worker
