// Input fields: the formatter that restricts what can be typed into a text field.
#pragma once

#include <QDateTime>
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QVariantMap>

#include <cstdint>
#include <memory>

#include "plugins/cut_options/fields/formatter.h"

namespace labelcut {

/// Posted to the default notification centre for a refused edit: a character is not allowed, or the
/// text grew past its greatest length.
inline constexpr char kInvalidCharacterNotification[] = "InvalidCharacterNotification";
/// Posted for a refused edit: the number in the text left its range.
inline constexpr char kFormatErrorNotification[] = "FormatErrorNotification";

/// Text styles with a meaning of their own. Every other number stands for "any ASCII character".
/// @{
inline constexpr std::int32_t kStyleNone = 0;         ///< only invalid characters and length count
inline constexpr std::int32_t kStyleNumber = 2;       ///< digits; the range counts
inline constexpr std::int32_t kStyleDecimal = 4;      ///< digits and "."; the range counts
inline constexpr std::int32_t kStyleDate = 5;         ///< any ASCII; conversions show the date
inline constexpr std::int32_t kStyleAlnum = 6;        ///< digits, letters, space
inline constexpr std::int32_t kStyleCode39 = 7;       ///< Code 39, lower-case letters too
inline constexpr std::int32_t kStyleCodabar = 8;      ///< Codabar's data characters
inline constexpr std::int32_t kStyleCodabarFrame = 9; ///< with start and stop characters
inline constexpr std::int32_t kStylePrintable = 10;   ///< 0x20 to 0x7E
inline constexpr std::int32_t kStyleText = 11;        ///< digits, letters, some punctuation
/// @}

/// Vets edits by text style, length and range, and converts through a format string.
///
/// A refused edit sounds the beep and posts one notification, delivered before the vetting returns.
/// Its object is the refused character (a text) when that character alone was to blame, else the
/// notification object when set, else the formatter itself. Main thread only.
class PDEFormatter : public QObject, public Formatter {
    Q_OBJECT
public:
    /// @name Initialisers
    /// Never null. An absent format stands for "%@"; a style is one of the numbers above.
    /// @{
    static std::unique_ptr<PDEFormatter> init();
    static std::unique_ptr<PDEFormatter> initWithStyle(std::int32_t style);
    static std::unique_ptr<PDEFormatter> initWithFormatString(const std::optional<QString>& format);
    static std::unique_ptr<PDEFormatter> initWithFormatString(const std::optional<QString>& format,
                                                              std::int32_t style);
    /// The date style. The format stays absent until setFormatString() is called.
    /// @param date    the date shown; nothing: none.
    /// @param locale  names of months and days, see calendar_format.h; nothing: none.
    static std::unique_ptr<PDEFormatter>
    initWithCalendarDate(const std::optional<QDateTime>& date,
                         const std::optional<QVariantMap>& locale);
    /// @}

    /// The format of the conversions: one "%@", or one integer conversion; for the date style a
    /// calendar format. Setting nothing sets "%@".
    std::optional<QString> formatString() const { return mFormatString; }
    void setFormatString(const std::optional<QString>& format);

    std::optional<QDateTime> calendarDate() const { return mDate; }
    void setCalendarDate(const std::optional<QDateTime>& date) { mDate = date; }
    std::optional<QVariantMap> calendarLocale() const { return mLocale; }
    void setCalendarLocale(const std::optional<QVariantMap>& locale) { mLocale = locale; }

    /// What refusals are about when no character is to blame; invalid: the formatter itself. A
    /// QObject is borrowed, and no longer set once it is gone.
    QVariant notificationObject() const;
    void setNotificationObject(const QVariant& object);

    std::int32_t textStyle() const { return mTextStyle; }
    void setTextStyle(std::int32_t style) { mTextStyle = style; }

    /// Greatest length of the whole text, in bytes of the system's default encoding; 0: no limit.
    std::int32_t maxLength() const { return mMaxLength; }
    void setMaxLength(std::int32_t bytes) { mMaxLength = bytes; }

    /// Bounds of the number in the text, both included. Setting one switches its check on.
    std::int32_t maxValue() const { return mMaxValue; }
    void setMaxValue(std::int32_t value);
    std::int32_t minValue() const { return mMinValue; }
    void setMinValue(std::int32_t value);
    /// Whether a bound is checked. Switching off keeps the bound.
    bool isValidityMaxValue() const { return mIsValidityMaxValue; }
    void setValidityMaxValue(bool isChecked) { mIsValidityMaxValue = isChecked; }
    bool isValidityMinValue() const { return mIsValidityMinValue; }
    void setValidityMinValue(bool isChecked) { mIsValidityMinValue = isChecked; }

    /// Texts that may not be typed. Each is compared with the whole inserted text, character by
    /// character. Adding keeps duplicates, removing takes every equal entry; nothing is ignored.
    void addInvalidCharacter(const std::optional<QString>& character);
    void removeInvalidCharacter(const std::optional<QString>& character);
    bool isInvalidCharacter(const std::optional<QString>& character) const;

    /// The date for the date style, if one is set; else the format applied to the object, or to its
    /// integer value when the style is a number's and the format has no "%@". Nothing only when the
    /// format is absent and no date is shown.
    std::optional<QString> stringForObjectValue(const QVariant& object) const override;
    /// Always true. The value is stringForObjectValue() of the text: always a text, never a number.
    bool getObjectValue(QVariant* object, const std::optional<QString>& string,
                        QString* errorDescription) const override;
    /// Changes neither the proposed text nor the range nor the error text. An edit is accepted at
    /// once unless the caret moves past where the selection began: deletions are never vetted.
    bool isPartialStringValid(QString* proposed, TextRange* proposedRange, const QString& original,
                              TextRange originalRange, QString* errorDescription) override;

private:
    PDEFormatter() = default;

    /// Why an edit is refused.
    struct Refusal {
        const char* notification = nullptr;
        QString character; ///< null when no single character is to blame
    };
    std::optional<Refusal> vet(const QString& inserted, const QString& proposed,
                               const QString& original) const;
    bool isAllowedByStyle(QChar character, const QString& original) const;
    bool isInRange(const QString& proposed) const;
    void announce(const Refusal& refusal);

    std::optional<QString> mFormatString;
    std::int32_t mTextStyle = kStyleNone;
    std::int32_t mMaxLength = 0;
    bool mIsValidityMaxValue = false;
    bool mIsValidityMinValue = false;
    std::int32_t mMaxValue = 0;
    std::int32_t mMinValue = 0;
    QVariant mObject;
    /// mObject again when it is a QObject.
    QPointer<QObject> mObjectGuard;
    QStringList mInvalidCaracters;
    std::optional<QDateTime> mDate;
    std::optional<QVariantMap> mLocale;
};

} // namespace labelcut
