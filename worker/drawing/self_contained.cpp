// Worker: SVG drawings without what they would fetch.
#include "worker/drawing/self_contained.h"

#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <algorithm>

namespace labelcut::worker {

namespace {

/// A name without its prefix: whether that is declared does not matter to who draws it.
QStringView localName(QStringView name) {
    return name.mid(name.lastIndexOf(u':') + 1);
}

bool isForeignPicture(const QXmlStreamReader& reader) {
    if (!reader.isStartElement() || localName(reader.qualifiedName()) != u"image")
        return false;
    const QXmlStreamAttributes attributes = reader.attributes();
    return std::ranges::any_of(attributes, [](const QXmlStreamAttribute& attribute) {
        return localName(attribute.qualifiedName()) == u"href" &&
               !attribute.value().trimmed().startsWith(u"data:");
    });
}

} // namespace

QByteArray selfContained(const QByteArray& svg) {
    QByteArray kept;
    QXmlStreamReader reader(svg);
    reader.setNamespaceProcessing(false);
    QXmlStreamWriter writer(&kept);
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.hasError())
            return {};
        if (isForeignPicture(reader))
            reader.skipCurrentElement();
        else if (!reader.isProcessingInstruction() && !reader.isDTD())
            writer.writeCurrentToken(reader);
    }
    return kept;
}

} // namespace labelcut::worker
