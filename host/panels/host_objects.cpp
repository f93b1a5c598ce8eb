// Panels: the print objects that a host holds.
#include "host/panels/host_objects.h"

#include <algorithm>
#include <span>
#include <utility>

#include "host/settings/ppd_calls.h"
#include "platform/toolkit/property_list.h"

namespace labelcut {

namespace {

constexpr qlonglong kRepresentationVersion = 1;

constexpr QLatin1String kVersion("version");
constexpr QLatin1String kValues("values");
constexpr QLatin1String kLocked("locked");

bool isPageKey(const QString& key) {
    return key == QLatin1String(kFirstPageKey) || key == QLatin1String(kLastPageKey);
}

bool isPage(const QVariant& value) {
    if (value.typeId() != QMetaType::LongLong)
        return false;
    const qlonglong page = value.toLongLong();
    return page >= 1 && page <= qlonglong(kLastPageOfAll);
}

/// The pair as it can be kept and represented; nothing when it cannot.
std::optional<QVariant> kept(const QString& key, const QVariant& value) {
    const QVariantMap around{{kValues, QVariantMap{{key, value}}}};
    const std::optional<QVariant> normal = propertyListValue(around);
    if (!normal)
        return std::nullopt;
    const QVariantMap values = normal->toMap().value(kValues).toMap();
    if (!values.contains(key))
        return std::nullopt;
    return values.value(key);
}

bool isSame(const QVariant& a, const QVariant& b) {
    return a.metaType() == b.metaType() && a == b;
}

} // namespace

OSStatus HostPrinter::copyDeviceURI(PMURL* uri) const {
    if (!mDeviceUri)
        return kPMKeyNotFound;
    *uri = PMURL(*mDeviceUri);
    return noErr;
}

OSStatus HostPrinter::state(PMPrinterState* state) const {
    *state = mState;
    return noErr;
}

OSStatus HostPrintSession::data(const QString& key, QVariant* value) const {
    *value = mData.value(key);
    return noErr;
}

OSStatus HostPrintSession::setData(const QString& key, const QVariant& value) {
    if (key.isEmpty())
        return kPMInvalidParameter;
    if (value.isValid())
        mData.insert(key, value);
    else
        mData.remove(key);
    return noErr;
}

OSStatus HostPrintSettings::value(const QString& key, QVariant* value) const {
    const auto found = mValues.constFind(key);
    if (found == mValues.cend())
        return kPMKeyNotFound;
    *value = *found;
    return noErr;
}

OSStatus HostPrintSettings::setValue(const QString& key, const QVariant& value, bool locked) {
    if (key.isEmpty())
        return kPMInvalidParameter;
    if (!value.isValid())
        return store(key, value, locked);
    const std::optional<QVariant> normal = kept(key, value);
    if (!normal)
        return kPMInvalidParameter;
    return isPageKey(key) ? setPageValue(key, *normal, locked) : store(key, *normal, locked);
}

OSStatus HostPrintSettings::firstPage(std::uint32_t* page) const {
    *page = this->page(kFirstPageKey, 1);
    return noErr;
}

OSStatus HostPrintSettings::setFirstPage(std::uint32_t page, bool locked) {
    return setPageValue(QLatin1String(kFirstPageKey), qlonglong(page), locked);
}

OSStatus HostPrintSettings::lastPage(std::uint32_t* page) const {
    *page = this->page(kLastPageKey, kLastPageOfAll);
    return noErr;
}

OSStatus HostPrintSettings::setLastPage(std::uint32_t page, bool locked) {
    return setPageValue(QLatin1String(kLastPageKey), qlonglong(page), locked);
}

OSStatus HostPrintSettings::setPageRange(std::uint32_t first, std::uint32_t last, bool locked) {
    if (first < 1 || first > last)
        return kPMValueOutOfRange;
    const QString firstKey = QLatin1String(kFirstPageKey);
    const QString lastKey = QLatin1String(kLastPageKey);
    if (refuses(firstKey, qlonglong(first), locked) || refuses(lastKey, qlonglong(last), locked))
        return kPMItemLocked;
    store(firstKey, qlonglong(first), locked);
    return store(lastKey, qlonglong(last), locked);
}

OSStatus HostPrintSettings::dataRepresentation(PMDataFormat format, QByteArray* bytes) const {
    if (format != PMDataFormat::XMLDefault)
        return kPMInvalidParameter;
    QStringList locked = mLocked.values();
    locked.sort();
    QByteArray xml = propertyListToXml(
        {{kVersion, kRepresentationVersion}, {kValues, mValues}, {kLocked, locked}});
    if (xml.isEmpty())
        return kPMGeneralError;
    *bytes = std::move(xml);
    return noErr;
}

std::optional<HostPrintSettings>
HostPrintSettings::fromDataRepresentation(const QByteArray& bytes) {
    const QVariantMap top = propertyListFromXml(bytes).value_or(QVariant()).toMap();
    const QVariant values = top.value(kValues);
    const QVariant locked = top.value(kLocked);
    if (top.value(kVersion) != QVariant(kRepresentationVersion) ||
        values.typeId() != QMetaType::QVariantMap || locked.typeId() != QMetaType::QVariantList)
        return std::nullopt;

    HostPrintSettings settings;
    settings.mValues = values.toMap();
    if (settings.mValues.contains(QString()) || !settings.isPageRangeValid())
        return std::nullopt;
    for (const QVariant& key : locked.toList()) {
        if (key.typeId() != QMetaType::QString || !settings.mValues.contains(key.toString()))
            return std::nullopt;
        settings.mLocked.insert(key.toString());
    }
    return settings;
}

OSStatus HostPrintSettings::setTicketPaperName(const std::optional<QString>& ppdPaperName) {
    const QString key = QLatin1String(kTicketKey);
    if (!ppdPaperName)
        return setValue(key, {}, false);
    return setValue(key, propertyListToXml({{QLatin1String(kTicketPaperName), *ppdPaperName}}),
                    false);
}

bool HostPrintSettings::operator==(const HostPrintSettings& other) const {
    return mLocked == other.mLocked &&
           std::ranges::equal(mValues.asKeyValueRange(), other.mValues.asKeyValueRange(),
                              [](const auto& a, const auto& b) {
                                  return a.first == b.first && isSame(a.second, b.second);
                              });
}

bool HostPrintSettings::refuses(const QString& key, const QVariant& value, bool locked) const {
    return !locked && isLocked(key) && !isSame(mValues.value(key), value);
}

OSStatus HostPrintSettings::store(const QString& key, const QVariant& value, bool locked) {
    if (refuses(key, value, locked))
        return kPMItemLocked;
    if (!value.isValid()) {
        mValues.remove(key);
        mLocked.remove(key);
        return noErr;
    }
    mValues.insert(key, value);
    if (locked)
        mLocked.insert(key);
    return noErr;
}

OSStatus HostPrintSettings::setPageValue(const QString& key, const QVariant& value, bool locked) {
    HostPrintSettings changed = *this;
    changed.mValues.insert(key, value);
    return changed.isPageRangeValid() ? store(key, value, locked) : kPMValueOutOfRange;
}

std::uint32_t HostPrintSettings::page(const char* key, std::uint32_t otherwise) const {
    const QVariant value = mValues.value(QLatin1String(key));
    return value.isValid() ? static_cast<std::uint32_t>(value.toLongLong()) : otherwise;
}

bool HostPrintSettings::isPageRangeValid() const {
    for (const char* key : {kFirstPageKey, kLastPageKey}) {
        const auto found = mValues.constFind(QLatin1String(key));
        if (found != mValues.cend() && !isPage(*found))
            return false;
    }
    return page(kFirstPageKey, 1) <= page(kLastPageKey, kLastPageOfAll);
}

HostPaper::HostPaper(std::optional<QString> ppdName, double height)
    : mPpdName(std::move(ppdName))
    , mHeight(height) {}

HostPaper HostPaper::fromPpdSize(const ppd_size_t& size) {
    return {QString::fromUtf8(size.name), double(size.length)};
}

std::optional<HostPaper> HostPaper::fromMarkedPageSize(ppd_file_t* ppd) {
    const ppd_choice_t* choice = ppd::findMarkedChoice(ppd, "PageSize");
    if (!choice)
        return std::nullopt;
    const std::span sizes(ppd->sizes, static_cast<std::size_t>(std::max(ppd->num_sizes, 0)));
    const auto isChosen = [&](const ppd_size_t& size) {
        return qstrcmp(size.name, choice->choice) == 0;
    };
    const auto found = std::ranges::find_if(sizes, isChosen);
    if (found == sizes.end())
        return std::nullopt;
    return fromPpdSize(*found);
}

OSStatus HostPaper::ppdPaperName(QString* name) const {
    *name = mPpdName.value_or(QString());
    return noErr;
}

OSStatus HostPaper::height(double* points) const {
    *points = mHeight;
    return noErr;
}

OSStatus HostPageFormat::paper(const PMPaper** paper) const {
    *paper = mPaper ? &*mPaper : nullptr;
    return noErr;
}

} // namespace labelcut
