// Plug-in frame: what is loaded in the printer, as far as the print job tells it.
#include "plugins/cut_options/frame/tape_info.h"

#include <QVariantMap>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <span>

#include "platform/toolkit/property_list.h"
#include "platform/toolkit/text_encoding.h"

namespace labelcut {

namespace {

constexpr double kPointsPerInch = 72.0;
constexpr std::size_t kNameBytes = 256;

bool isPaperOf(const ppd_file_t* ppd, const char* name) {
    if (!ppd)
        return false;
    for (const ppd_size_t& size : std::span(ppd->sizes, static_cast<std::size_t>(ppd->num_sizes))) {
        if (std::strcmp(size.name, name) == 0)
            return true;
    }
    return false;
}

/// A stored number as 32 bits hold it: of an integer the lower ones, of a fraction its whole part.
std::optional<std::int32_t> numberOf(const QVariant& value) {
    switch (value.typeId()) {
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::UChar:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::LongLong:
        return static_cast<std::int32_t>(value.toLongLong());
    case QMetaType::ULong:
    case QMetaType::ULongLong:
        return static_cast<std::int32_t>(value.toULongLong());
    case QMetaType::Float:
    case QMetaType::Double: {
        constexpr double kMin = std::numeric_limits<std::int32_t>::min();
        constexpr double kMax = std::numeric_limits<std::int32_t>::max();
        const double number = value.toDouble();
        return std::isnan(number) ? 0 : static_cast<std::int32_t>(std::clamp(number, kMin, kMax));
    }
    default:
        return std::nullopt;
    }
}

} // namespace

bool isFixedLengthPaper(const char* name) {
    return std::strncmp(name, "DC", 2) == 0 || std::strncmp(name, "AV", 2) == 0;
}

OSStatus GetTapeInfo(const PMPrintSession*, const PMPrintSettings* settings,
                     const PMPageFormat* pageFormat, const ppd_file_t* ppd, TapeInfo* info) {
    *info = TapeInfo{};
    const PMPaper* paper = nullptr;
    if (const OSStatus status = PMGetPageFormatPaper(pageFormat, &paper); status != noErr)
        return status;
    if (!paper)
        return noErr;

    std::array<char, kNameBytes> buffer{};
    QString name;
    const bool fromPageFormat = PMPaperGetPPDPaperName(paper, &name) == noErr && !name.isNull();
    if (fromPageFormat) {
        CFStringGetCString(name, buffer, TextEncoding::Utf8);
        info->paperName = name;
    } else {
        GetTapeInfo2(nullptr, settings, info);
    }

    double points = 0.0;
    if (const OSStatus status = PMPaperGetHeight(paper, &points); status != noErr)
        return status;
    if (points == 0.0)
        return noErr;
    info->height = points / kPointsPerInch / kInchesPerMillimetre;

    if (!fromPageFormat || buffer.front() == '\0' || !isPaperOf(ppd, buffer.data()))
        return noErr;
    info->tapeState = isFixedLengthPaper(buffer.data()) ? 1 : 0;
    return noErr;
}

OSStatus GetTapeInfo2(const void*, const PMPrintSettings* settings, TapeInfo* info) {
    info->paperName.reset();
    QVariant value;
    if (PMPrintSettingsGetValue(settings, QLatin1String(kTicketKey), &value) != noErr)
        return noErr;
    if (value.typeId() != QMetaType::QByteArray)
        return noErr;
    const std::optional<QVariant> ticket = propertyListFromXml(value.toByteArray());
    if (!ticket || ticket->typeId() != QMetaType::QVariantMap)
        return noErr;
    const QVariant name = ticket->toMap().value(QLatin1String(kTicketPaperName));
    if (name.typeId() == QMetaType::QString)
        info->paperName = name.toString();
    return noErr;
}

OSStatus GetTicketFromSession(const PMPrintSession* session, const QString& key,
                              std::int32_t* number) {
    QVariant value;
    if (PMSessionGetDataFromSession(session, key, &value) != noErr || !value.isValid())
        return kPMSessionDataNotFound;
    if (const std::optional<std::int32_t> read = numberOf(value))
        *number = *read;
    return noErr;
}

OSStatus GetTapeInfo3(PMPrintSettings* settings, FirstAndLastPage* pages) {
    *pages = {};
    std::uint32_t first = 0;
    if (PMGetFirstPage(settings, &first) == noErr) {
        PMSetFirstPage(settings, first, false);
        pages->first = first;
    }
    std::uint32_t last = 0;
    if (const OSStatus status = PMGetLastPage(settings, &last); status != noErr)
        return status;
    const OSStatus written = PMSetLastPage(settings, last, false);
    pages->last = last;
    return written;
}

long RoundDouble(double x) {
    constexpr double kLimit = 9223372036854775808.0; // 2^63, exact
    if (std::isnan(x))
        return 0;
    if (x >= kLimit)
        return std::numeric_limits<long>::max();
    if (x < -kLimit)
        return std::numeric_limits<long>::min();
    const double whole = std::trunc(x);
    const double fraction = x - whole;
    const long t = static_cast<long>(whole);
    if (fraction >= 0.5)
        return t + 1;
    if (fraction <= -0.5)
        return t - 1;
    return t;
}

double MiriToInch(double millimetres) {
    return millimetres * kInchesPerMillimetre;
}

double InchToMiri(double inches) {
    return inches / kInchesPerMillimetre;
}

} // namespace labelcut
