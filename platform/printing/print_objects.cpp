// Our printing framework: the null-safe calls of plug-ins onto the print objects.
#include "platform/printing/print_objects.h"

#include <algorithm>

namespace labelcut {

namespace {

/// Calls `member` on `object` with the arguments, or answers that there is no object.
template<typename Object, typename Member, typename... Arguments>
OSStatus ask(Object* object, Member member, Arguments&&... arguments) {
    return object ? (object->*member)(std::forward<Arguments>(arguments)...) : kPMInvalidParameter;
}

bool isAsciiLetter(QChar c) {
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}

bool isSchemeCharacter(QChar c) {
    return isAsciiLetter(c) || (c >= u'0' && c <= u'9') || c == u'+' || c == u'-' || c == u'.';
}

} // namespace

std::optional<QString> PMURL::scheme() const {
    if (!mText)
        return std::nullopt;
    const qsizetype colon = mText->indexOf(u':');
    if (colon <= 0)
        return std::nullopt;
    const QString name = mText->left(colon);
    if (!isAsciiLetter(name.front()) || !std::ranges::all_of(name, isSchemeCharacter))
        return std::nullopt;
    return name;
}

OSStatus PMGetPageFormatPaper(const PMPageFormat* format, const PMPaper** paper) {
    return ask(format, &PMPageFormat::paper, paper);
}

OSStatus PMPaperGetPPDPaperName(const PMPaper* paper, QString* name) {
    return ask(paper, &PMPaper::ppdPaperName, name);
}

OSStatus PMPaperGetHeight(const PMPaper* paper, double* points) {
    return ask(paper, &PMPaper::height, points);
}

OSStatus PMPrinterCopyDeviceURI(const PMPrinter* printer, PMURL* uri) {
    return ask(printer, &PMPrinter::copyDeviceURI, uri);
}

OSStatus PMPrinterGetState(const PMPrinter* printer, PMPrinterState* state) {
    return ask(printer, &PMPrinter::state, state);
}

OSStatus PMSessionGetDataFromSession(const PMPrintSession* session, const QString& key,
                                     QVariant* value) {
    return ask(session, &PMPrintSession::data, key, value);
}

OSStatus PMSessionSetDataInSession(PMPrintSession* session, const QString& key,
                                   const QVariant& value) {
    return ask(session, &PMPrintSession::setData, key, value);
}

OSStatus PMPrintSettingsGetValue(const PMPrintSettings* settings, const QString& key,
                                 QVariant* value) {
    return ask(settings, &PMPrintSettings::value, key, value);
}

OSStatus PMPrintSettingsSetValue(PMPrintSettings* settings, const QString& key,
                                 const QVariant& value, bool locked) {
    return ask(settings, &PMPrintSettings::setValue, key, value, locked);
}

OSStatus PMGetFirstPage(const PMPrintSettings* settings, std::uint32_t* page) {
    return ask(settings, &PMPrintSettings::firstPage, page);
}

OSStatus PMSetFirstPage(PMPrintSettings* settings, std::uint32_t page, bool locked) {
    return ask(settings, &PMPrintSettings::setFirstPage, page, locked);
}

OSStatus PMGetLastPage(const PMPrintSettings* settings, std::uint32_t* page) {
    return ask(settings, &PMPrintSettings::lastPage, page);
}

OSStatus PMSetLastPage(PMPrintSettings* settings, std::uint32_t page, bool locked) {
    return ask(settings, &PMPrintSettings::setLastPage, page, locked);
}

OSStatus PMPrintSettingsCreateDataRepresentation(const PMPrintSettings* settings,
                                                 PMDataFormat format, QByteArray* bytes) {
    return ask(settings, &PMPrintSettings::dataRepresentation, format, bytes);
}

std::optional<QString> CFURLGetString(const PMURL& url) {
    return url.string();
}

std::optional<QString> CFURLCopyScheme(const PMURL& url) {
    return url.scheme();
}

} // namespace labelcut
