// Input fields: the formatter that restricts what can be typed into a text field.
#include "plugins/cut_options/fields/pde_formatter.h"

#include "platform/toolkit/int_value.h"
#include "platform/toolkit/notification_centre.h"
#include "platform/toolkit/string_format.h"
#include "platform/toolkit/text_encoding.h"
#include "plugins/cut_options/fields/calendar_format.h"
#include "plugins/cut_options/fields/system_beep.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace labelcut {

namespace {

const QString kObjectPlaceholder = QStringLiteral("%@");

bool isDigit(char16_t c) {
    return c >= u'0' && c <= u'9';
}

bool isLetter(char16_t c) {
    return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z');
}

bool isCodabarFrame(char16_t c) {
    return (c >= u'A' && c <= u'D') || (c >= u'a' && c <= u'd');
}

bool isOneOf(char16_t c, QStringView set) {
    return set.contains(QChar(c));
}

bool isNumeric(std::int32_t style) {
    return style == kStyleNumber || style == kStyleDecimal;
}

/// Length in bytes of the default encoding, or in characters when the text cannot be converted.
qsizetype measuredLength(const QString& text) {
    return encodedLength(text, TextEncoding::SystemDefault).value_or(text.size());
}

/// What the edit inserts; nothing when it inserts nothing or the ranges make no sense.
std::optional<QString> insertedText(const QString* proposed, const TextRange* proposedRange,
                                    TextRange originalRange) {
    if (!proposed || proposed->isEmpty() || !proposedRange)
        return std::nullopt;
    const std::size_t start = originalRange.location;
    const std::size_t end = proposedRange->location;
    if (end <= start || end > static_cast<std::size_t>(proposed->size()))
        return std::nullopt;
    return proposed->mid(static_cast<qsizetype>(start), static_cast<qsizetype>(end - start));
}

/// The integer value of a text or a number, cut towards zero and saturating.
std::int32_t integerValue(const QVariant& object) {
    if (object.metaType().id() == QMetaType::QString)
        return intValue(object.toString());
    constexpr double kLowest = std::numeric_limits<std::int32_t>::min();
    constexpr double kHighest = std::numeric_limits<std::int32_t>::max();
    const double value = object.toDouble();
    return std::isnan(value) ? 0 : static_cast<std::int32_t>(std::clamp(value, kLowest, kHighest));
}

} // namespace

std::unique_ptr<PDEFormatter> PDEFormatter::init() {
    return initWithFormatString(kObjectPlaceholder, kStyleNone);
}

std::unique_ptr<PDEFormatter> PDEFormatter::initWithStyle(std::int32_t style) {
    return initWithFormatString(kObjectPlaceholder, style);
}

std::unique_ptr<PDEFormatter>
PDEFormatter::initWithFormatString(const std::optional<QString>& format) {
    return initWithFormatString(format, kStyleNone);
}

std::unique_ptr<PDEFormatter>
PDEFormatter::initWithFormatString(const std::optional<QString>& format, std::int32_t style) {
    std::unique_ptr<PDEFormatter> formatter(new PDEFormatter);
    formatter->setFormatString(format);
    formatter->setTextStyle(style);
    return formatter;
}

std::unique_ptr<PDEFormatter>
PDEFormatter::initWithCalendarDate(const std::optional<QDateTime>& date,
                                   const std::optional<QVariantMap>& locale) {
    std::unique_ptr<PDEFormatter> formatter(new PDEFormatter);
    formatter->setTextStyle(kStyleDate);
    formatter->setCalendarDate(date);
    formatter->setCalendarLocale(locale);
    return formatter;
}

void PDEFormatter::setFormatString(const std::optional<QString>& format) {
    mFormatString = format.value_or(kObjectPlaceholder);
}

QVariant PDEFormatter::notificationObject() const {
    const bool isGone = mObject.canConvert<QObject*>() && !mObjectGuard;
    return isGone ? QVariant() : mObject;
}

void PDEFormatter::setNotificationObject(const QVariant& object) {
    mObject = object;
    mObjectGuard = object.value<QObject*>();
}

void PDEFormatter::setMaxValue(std::int32_t value) {
    mMaxValue = value;
    setValidityMaxValue(true);
}

void PDEFormatter::setMinValue(std::int32_t value) {
    mMinValue = value;
    setValidityMinValue(true);
}

void PDEFormatter::addInvalidCharacter(const std::optional<QString>& character) {
    if (character)
        mInvalidCaracters.append(*character);
}

void PDEFormatter::removeInvalidCharacter(const std::optional<QString>& character) {
    if (character)
        mInvalidCaracters.removeAll(*character);
}

bool PDEFormatter::isInvalidCharacter(const std::optional<QString>& character) const {
    return character && mInvalidCaracters.contains(*character);
}

std::optional<QString> PDEFormatter::stringForObjectValue(const QVariant& object) const {
    if (mTextStyle == kStyleDate && mDate)
        return formatCalendarDate(*mDate, mFormatString, mLocale.value_or(QVariantMap()));
    if (!mFormatString)
        return std::nullopt;
    if (isNumeric(mTextStyle) && !mFormatString->contains(kObjectPlaceholder))
        return stringWithFormat(*mFormatString, integerValue(object));
    return stringWithFormat(*mFormatString, object);
}

bool PDEFormatter::getObjectValue(QVariant* object, const std::optional<QString>& string,
                                  QString*) const {
    if (!object || !string)
        return true;
    const std::optional<QString> text = stringForObjectValue(*string);
    *object = text ? QVariant(*text) : QVariant();
    return true;
}

bool PDEFormatter::isPartialStringValid(QString* proposed, TextRange* proposedRange,
                                        const QString& original, TextRange originalRange,
                                        QString*) {
    const std::optional<QString> inserted = insertedText(proposed, proposedRange, originalRange);
    if (!inserted)
        return true;
    const std::optional<Refusal> refusal = vet(*inserted, *proposed, original);
    if (!refusal)
        return true;
    announce(*refusal);
    return false;
}

std::optional<PDEFormatter::Refusal>
PDEFormatter::vet(const QString& inserted, const QString& proposed, const QString& original) const {
    // These look at whole texts, so they hold for each inserted character; the last one is named.
    const bool isForeign =
        mTextStyle != kStyleNone && !canEncode(inserted, TextEncoding::MacOSRoman);
    if (isForeign || isInvalidCharacter(inserted))
        return Refusal{kInvalidCharacterNotification, inserted.last(1)};
    const qsizetype length = measuredLength(proposed);
    if (mMaxLength != 0 && mMaxLength < length)
        return Refusal{kInvalidCharacterNotification, {}};
    if (mTextStyle == kStyleNone)
        return std::nullopt;
    if (!canEncode(inserted, TextEncoding::Ascii))
        return Refusal{kInvalidCharacterNotification, {}};

    // With a length limit the range counts only once the text has its full length.
    const bool isComplete = mMaxLength == 0 || mMaxLength == length;
    const bool isOutOfRange = isNumeric(mTextStyle) && isComplete && !isInRange(proposed);
    std::optional<Refusal> last;
    for (const QChar c : inserted) {
        if (!isAllowedByStyle(c, original))
            last = Refusal{kInvalidCharacterNotification, {}};
        else if (isOutOfRange)
            last = Refusal{kFormatErrorNotification, {}};
    }
    return last;
}

/// @param character  an ASCII character.
/// @param original   the text before the edit; a second point is looked for in it alone.
bool PDEFormatter::isAllowedByStyle(QChar character, const QString& original) const {
    const char16_t c = character.unicode();
    switch (mTextStyle) {
    case kStyleNumber:
        return isDigit(c);
    case kStyleDecimal:
        return c == u'.' ? !original.contains(u'.') : isDigit(c);
    case kStyleAlnum:
        return isDigit(c) || isLetter(c) || c == u' ';
    case kStyleCode39:
        return isDigit(c) || isLetter(c) || isOneOf(c, u" $%+-./");
    case kStyleCodabar:
        return isDigit(c) || isOneOf(c, u"$+-./:");
    case kStyleCodabarFrame:
        return isDigit(c) || isOneOf(c, u"$+-./:") || isCodabarFrame(c);
    case kStylePrintable:
        return c >= 0x20 && c <= 0x7E;
    case kStyleText:
        return isDigit(c) || isLetter(c) || isOneOf(c, u" !\"%'()*+,-./:;<=>?_");
    default:
        return true;
    }
}

bool PDEFormatter::isInRange(const QString& proposed) const {
    const std::int32_t value = intValue(proposed);
    if (mIsValidityMaxValue && mMaxValue < value)
        return false;
    return !mIsValidityMinValue || mMinValue <= value;
}

void PDEFormatter::announce(const Refusal& refusal) {
    QVariant object = notificationObject();
    if (!refusal.character.isNull())
        object = refusal.character;
    else if (!object.isValid())
        object = QVariant::fromValue<QObject*>(this);
    systemBeep();
    NotificationCentre::defaultCentre().post(QLatin1String(refusal.notification), object);
}

} // namespace labelcut
