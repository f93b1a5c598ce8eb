// Fuzzing: a plug-in's metadata, as JSON or in the packed form that shared objects carry.
#include <QCborError>
#include <QCborMap>
#include <QCborValue>
#include <QJsonDocument>

#include <algorithm>

#include "host/panels/plugin_metadata.h"
#include "platform/dialog/pde_plugin.h"
#include "tools/fuzzing/support/bytes.h"
#include "tools/fuzzing/support/property.h"

using namespace labelcut;
using fuzz::Bytes;
using fuzz::require;

namespace {

/// The packed form is taken as Qt's reader of shared objects takes it: as a whole or not at all. A
/// map from bytes that end early does not stand up to being read.
QJsonObject objectFrom(Bytes& bytes) {
    if (!bytes.flag())
        return QJsonDocument::fromJson(bytes.rest()).object();
    QCborParserError error;
    const QCborValue packed = QCborValue::fromCbor(bytes.rest(), &error);
    return error.error == QCborError::NoError ? packed.toMap().toJsonObject() : QJsonObject();
}

/// Everything but the identifier alone, so that the checks behind it are reached more often.
QJsonObject withIid(QJsonObject object) {
    object.insert(QStringLiteral("IID"), QLatin1String(LabelcutPDEPlugin_iid));
    return object;
}

void checkAccepted(const PluginMetadata& metadata, const QJsonObject& object) {
    const QJsonObject said = object.value(QStringLiteral("MetaData")).toObject();
    require(object.value(QStringLiteral("IID")) == QLatin1String(LabelcutPDEPlugin_iid),
            "only panels are accepted");
    require(!metadata.id.isEmpty() && said.value(QStringLiteral("id")) == metadata.id,
            "an accepted plug-in has its own id");
    require(metadata.interfaceVersion >= kPDEInterfaceVersion,
            "an accepted plug-in knows this interface");
    require(metadata.oldestCompatible <= kPDEInterfaceVersion,
            "an accepted plug-in can live with this interface");
    require(said.value(QStringLiteral("interfaceVersion")) == metadata.interfaceVersion,
            "a version is the number that was said");
    const QString file = QStringLiteral("/folder/of/plugin.so");
    const QString root = bundleRoot(file, metadata.resources);
    const bool isFixed =
        metadata.resources.startsWith(u":/") || metadata.resources.startsWith(u'/');
    require(isFixed || root.startsWith(u"/folder/of") || metadata.resources.startsWith(u':'),
            "a relative bundle lies beside the plug-in");
}

void check(const QJsonObject& object) {
    const Result<PluginMetadata> metadata = checkedMetadata(object);
    if (metadata)
        checkAccepted(*metadata, object);
    else
        require(!metadata.error().sentence.isEmpty(), "a refusal says why");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Bytes bytes(data, size);
    const QJsonObject object = objectFrom(bytes);
    check(object);
    check(withIid(object));
    return 0;
}
