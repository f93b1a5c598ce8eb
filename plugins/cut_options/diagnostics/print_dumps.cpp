// Diagnostics: dumps of a PPD option and of the print settings.
#include "plugins/cut_options/diagnostics/pde_log.h"

#include <QByteArray>
#include <QSaveFile>

#include <algorithm>

#include "platform/printing/ppd_lookup.h"
#include "platform/toolkit/system_log.h"
#include "platform/toolkit/text_encoding.h"

namespace labelcut {

namespace {

using Text = std::optional<QString>;

/// The bytes of a record's field up to its terminator, and never beyond the field.
template<std::size_t N>
QByteArray bytesOf(const char (&field)[N]) {
    const auto end = std::find(field, field + N, '\0');
    return QByteArray(field, end - field);
}

template<std::size_t N>
Text textOf(const char (&field)[N]) {
    return decodeText(bytesOf(field), TextEncoding::SystemDefault);
}

/// A flag read as the start of a text: nothing but its terminator when it is 0, else the flag's own
/// byte and the field that follows it in the record.
template<std::size_t N>
Text flagText(char flag, const char (&next)[N]) {
    if (flag == 0)
        return QStringLiteral("");
    return decodeText(QByteArray(1, flag) + bytesOf(next), TextEncoding::SystemDefault);
}

template<typename Value>
void line(const char* format, const Value& value) {
    systemLog(stringWithFormat(QLatin1String(format), value));
}

void logOption(const ppd_option_t& option) {
    line("***** conflicted | %@", flagText(option.conflicted, option.keyword));
    line("***** keyword | %@", textOf(option.keyword));
    line("***** defchoice | %@", textOf(option.defchoice));
    line("***** text | %@", textOf(option.text));
    line("***** ui == %d", option.ui);
    line("***** section == %d", option.section);
    line("***** order == %f", option.order);
    line("***** num_choices == %d", option.num_choices);
}

/// @param choice  null when the option has none.
void logFirstChoice(const ppd_choice_t* choice) {
    line("***** choices->marked | %@", choice ? flagText(choice->marked, choice->choice) : Text());
    line("***** choices->choice | %@", choice ? textOf(choice->choice) : Text());
    line("***** choices->text | %@", choice ? textOf(choice->text) : Text());
}

} // namespace

void _PDELog_ppd_option_t(ppd_file_t* ppd, const char* ppdOptionName) {
    if (!ppd) {
        systemLog(QStringLiteral("PPD file is not loaded!!"));
        return;
    }
    if (!ppdOptionName) {
        systemLog(QStringLiteral("ppdOptionName is NULL!!"));
        return;
    }
    const ppd_option_t* option = ppd::findOption(ppd, ppdOptionName);
    if (!option)
        return;
    const Text keyword = decodeCString(ppdOptionName, TextEncoding::SystemDefault);
    line("+-+-+-+-+-+-+-+-+-+- start is %@", keyword);
    logOption(*option);
    logFirstChoice(option->num_choices > 0 ? option->choices : nullptr);
    line("+-+-+-+-+-+-+-+-+-+- end is %@", keyword);
}

void _PDELog_PMPrintSettings_WriteToFile(const PMPrintSettings* settings,
                                         const std::optional<QString>& name,
                                         const QString& folder) {
    if (!settings || !name)
        return;
    QByteArray data;
    const OSStatus status =
        PMPrintSettingsCreateDataRepresentation(settings, PMDataFormat::XMLDefault, &data);
    if (status != noErr || data.isNull())
        return;
    QSaveFile file(folder + stringWithFormat(QStringLiteral("/KvPDE_%@.plist"), *name));
    if (file.open(QIODevice::WriteOnly) && file.write(data) == data.size())
        file.commit();
}

} // namespace labelcut
