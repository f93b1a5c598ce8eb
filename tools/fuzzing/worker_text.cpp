// Fuzzing: what the worker makes of a document's bytes before any library sees them: its kind, and
// its text.
#include <QString>
#include <QStringDecoder>

#include <algorithm>
#include <string>

#include "tools/fuzzing/support/bytes.h"
#include "tools/fuzzing/support/memory_file.h"
#include "tools/fuzzing/support/property.h"
#include "worker/kinds/document_kind.h"
#include "worker/kinds/plain_text.h"

using namespace labelcut;
using fuzz::Bytes;
using fuzz::require;
using namespace labelcut::worker;

namespace {

bool isOdd(QChar c) {
    return c.category() == QChar::Other_Control && c != u'\t' && c != u'\n' && c != u'\r' &&
           c != u'\f';
}

/// Whether the toolkit might take a later character for a byte order mark, and turn around.
bool hasLaterMark(const std::u16string& text) {
    return text.find(u'\ufeff') != std::u16string::npos ||
           text.find(u'\ufffe') != std::u16string::npos;
}

void checkText(const QByteArray& content) {
    const auto ours = decodedText({content.constData(), static_cast<std::size_t>(content.size())});
    const auto encoding = QStringConverter::encodingForData(content);
    QStringDecoder decoder(encoding.value_or(QStringConverter::Utf8));
    const QString theirs = decoder.decode(content);
    if (ours && !hasLaterMark(*ours))
        require(QString::fromStdU16String(*ours) == theirs, "text is what the toolkit reads");
    const bool isText = !decoder.hasError() && std::none_of(theirs.begin(), theirs.end(), isOdd);
    // A decoder waits for the rest of a character that is cut off, and finds no error.
    const bool isWhole = theirs.toUtf8() == content;
    require(ours || !isText || !isWhole, "what the toolkit reads is text");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Bytes bytes(data, size);
    const QByteArray content = bytes.rest();
    checkText(content);
    fuzz::MemoryFile file;
    file.set(content);
    const Answer answer = documentKind(file.descriptor());
    const auto* kind = std::get_if<Kind>(&answer);
    require(kind || std::holds_alternative<Failed>(answer), "a kind, or why there is none");
    if (kind && kind->kind == DocumentKind::PlainText)
        require(decodedText(contentOf(file.descriptor())).has_value(), "a text can be read");
    return 0;
}
