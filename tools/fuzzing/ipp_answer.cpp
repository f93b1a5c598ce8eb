// Fuzzing: answers of a print service, before and while the library reads them; and messages that
// the library itself has written.
#include <algorithm>

#include "host/service/ipp_answer.h"
#include "tools/fuzzing/support/bytes.h"
#include "tools/fuzzing/support/property.h"

using namespace labelcut;
using fuzz::Bytes;
using fuzz::require;

namespace {

/// Messages that are built go a little deeper than what passes.
constexpr int kMaxBuiltDepth = kMaxAnswerDepth + 4;
/// Far above what an input of the greatest length takes.
constexpr CallLimits kAmple{600'000, nullptr};

/// How deep the collections of a message lie within each other; 0 without any.
int depthOf(ipp_t* message) {
    int deepest = 0;
    for (ipp_attribute_t* attribute = ippFirstAttribute(message); attribute;
         attribute = ippNextAttribute(message))
        for (int i = 0; i < ippGetCount(attribute); ++i)
            if (ipp_t* collection = ippGetCollection(attribute, i))
                deepest = std::max(deepest, 1 + depthOf(collection));
    return deepest;
}

ssize_t append(void* bytes, ipp_uchar_t* buffer, std::size_t size) {
    static_cast<QByteArray*>(bytes)->append(reinterpret_cast<char*>(buffer),
                                            static_cast<qsizetype>(size));
    return static_cast<ssize_t>(size);
}

/// Empty: the library does not write it.
QByteArray written(ipp_t* message) {
    QByteArray bytes;
    ippSetState(message, IPP_STATE_IDLE);
    ipp_state_t state = IPP_STATE_IDLE;
    while (state != IPP_STATE_DATA && state != IPP_STATE_ERROR)
        state = ippWriteIO(&bytes, append, 1, nullptr, message);
    return state == IPP_STATE_DATA ? bytes : QByteArray();
}

IppShape shapeByPieces(const QByteArray& bytes, IppScan& scan) {
    IppShape shape = IppShape::Unfinished;
    for (qsizetype size = 0; size < bytes.size() && shape == IppShape::Unfinished; size += 7)
        shape = scan.look(QByteArrayView(bytes).first(size));
    return shape == IppShape::Unfinished ? scan.look(bytes) : shape;
}

/// Bytes of any kind.
void checkAnswer(const QByteArray& bytes) {
    IppScan scan;
    const IppShape shape = scan.look(bytes);
    IppScan pieces;
    require(shapeByPieces(bytes, pieces) == shape, "pieces are found to be what the whole is");
    require(scan.length() <= bytes.size(), "no byte is looked at that has not come");
    if (shape != IppShape::Whole)
        return;
    require(pieces.length() == scan.length(), "a message ends where it ends, in pieces too");
    const QByteArray message = bytes.first(scan.length());
    require(!readIpp(QByteArrayView(message).chopped(1), Deadline(kAmple)),
            "the library needs all bytes up to the end that was found");
    const IppMessage read = readIpp(message, Deadline(kAmple));
    require(!read || depthOf(read.get()) <= kMaxAnswerDepth, "what passes is not too deep");
}

void addValue(ipp_t* to, ipp_tag_t group, Bytes& input) {
    const QByteArray name = "n" + QByteArray::number(input.below(4));
    const QByteArray text = input.text();
    switch (input.below(6)) {
    case 0:
        ippAddInteger(to, group, IPP_TAG_INTEGER, name.constData(), input.byte());
        break;
    case 1:
        ippAddString(to, group, IPP_TAG_TEXT, name.constData(), nullptr, text.constData());
        break;
    case 2:
        ippAddOctetString(to, group, name.constData(), text.constData(),
                          static_cast<int>(text.size()));
        break;
    case 3:
        ippAddOutOfBand(to, group, IPP_TAG_NOVALUE, name.constData());
        break;
    case 4:
        ippAddRange(to, group, name.constData(), input.byte(), input.byte());
        break;
    default:
        ippAddBoolean(to, group, name.constData(), input.flag());
        break;
    }
}

/// A message that the library writes: values, and collections within each other. One collection a
/// level, so that the number of parts stays far within its limit.
void checkWritten(Bytes& input) {
    const int depth = input.below(kMaxBuiltDepth + 1);
    IppMessage inner;
    for (int level = depth; level > 0; --level) {
        IppMessage outer(ippNew());
        for (int i = input.below(4); i > 0; --i)
            addValue(outer.get(), IPP_TAG_ZERO, input);
        if (inner)
            ippAddCollection(outer.get(), IPP_TAG_ZERO, "inner", inner.get());
        inner = std::move(outer);
    }
    const IppMessage message(ippNewRequest(IPP_OP_GET_PRINTER_ATTRIBUTES));
    if (inner)
        ippAddCollection(message.get(), IPP_TAG_PRINTER, "outer", inner.get());
    for (int i = input.below(16); i > 0; --i)
        addValue(message.get(), IPP_TAG_PRINTER, input);

    const QByteArray bytes = written(message.get());
    require(!bytes.isEmpty(), "the library writes what it has built");
    IppScan scan;
    const IppShape shape = scan.look(bytes);
    if (depth > kMaxAnswerDepth) {
        require(shape == IppShape::TooMuch, "what is too deep does not pass");
        return;
    }
    require(shape == IppShape::Whole, "what the library writes within the limits passes");
    require(scan.length() == bytes.size(), "it ends where the library has ended");
    const IppMessage read = readIpp(bytes, Deadline(kAmple));
    require(read != nullptr, "the library reads what it has written");
    require(depthOf(read.get()) == depth, "it is as deep as it was built");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Bytes input(data, size);
    const bool isAnswer = input.flag();
    if (isAnswer)
        checkAnswer(input.rest());
    else
        checkWritten(input);
    return 0;
}
