// Our printing framework: session, settings, page format, paper and printer as plug-ins see them.
//
// The classes are interfaces: the host implements them, tests fake them. Plug-ins call the PM…
// functions below instead of the members; those answer kPMInvalidParameter for a null object and
// never throw. Out-parameters must not be null; they are left alone on failure unless a function
// says otherwise. Lengths are in points, 1/72 inch.
#pragma once

#include <QByteArray>
#include <QString>
#include <QVariant>

#include <cstdint>
#include <optional>

#include "platform/printing/status.h"

namespace labelcut {

/// A URL as the system holds it. Unlike a parsed URL class it keeps its text as it was written:
/// device URIs such as "KVSGUSB://…" are told apart by the case of their scheme.
class PMURL {
public:
    PMURL() = default;
    explicit PMURL(QString text)
        : mText(std::move(text)) {}

    /// The URL's string form; nothing when it has none.
    const std::optional<QString>& string() const { return mText; }
    /// What stands before the first ':' as written; nothing when there is no string form, no ':'
    /// or what stands there is not a scheme by RFC 3986 (a letter, then letters, digits, + - .).
    std::optional<QString> scheme() const;

private:
    std::optional<QString> mText;
};

/// What is printed on: a sheet, a label, a length of tape.
class PMPaper {
public:
    virtual ~PMPaper() = default;
    /// The PPD's own name of this paper ("PageSize" choice). noErr with a null string: it has none.
    virtual OSStatus ppdPaperName(QString* name) const = 0;
    /// The paper's length in feed direction, in points.
    virtual OSStatus height(double* points) const = 0;
};

/// The layout of the job's pages.
class PMPageFormat {
public:
    virtual ~PMPageFormat() = default;
    /// The chosen paper, owned by the page format; noErr with null: none is chosen.
    virtual OSStatus paper(const PMPaper** paper) const = 0;
};

/// How a printer is doing, IPP "printer-state" (RFC 8011, 5.4.11).
enum class PMPrinterState { Idle = 3, Processing = 4, Stopped = 5 };

/// The printer that the dialog is open for.
class PMPrinter {
public:
    virtual ~PMPrinter() = default;
    /// The device URI. kPMKeyNotFound when the printer has none.
    virtual OSStatus copyDeviceURI(PMURL* uri) const = 0;
    /// How the printer was doing when the dialog last heard of it.
    virtual OSStatus state(PMPrinterState* state) const = 0;
};

/// What the panels of one dialog keep for each other while it is open.
class PMPrintSession {
public:
    virtual ~PMPrintSession() = default;
    /// The data under `key`, whichever panel stored it; noErr with an invalid variant: none.
    virtual OSStatus data(const QString& key, QVariant* value) const = 0;
    /// Stores data for the panels of this dialog; it is gone with the dialog. An invalid variant
    /// removes it.
    virtual OSStatus setData(const QString& key, const QVariant& value) = 0;
};

/// Formats of PMPrintSettings::dataRepresentation().
enum class PMDataFormat : std::uint32_t { XMLDefault = 0 };

/// The settings of one job, which go with it.
class PMPrintSettings {
public:
    virtual ~PMPrintSettings() = default;
    /// The value under `key`: text, number, truth value, bytes (QByteArray), date, list or map.
    /// kPMKeyNotFound when there is none.
    virtual OSStatus value(const QString& key, QVariant* value) const = 0;
    /// Store a value; `locked` keeps users from changing it. An invalid variant removes the value.
    virtual OSStatus setValue(const QString& key, const QVariant& value, bool locked) = 0;
    /// First page to print, counted from 1.
    virtual OSStatus firstPage(std::uint32_t* page) const = 0;
    /// kPMValueOutOfRange for 0, and for a page behind the last.
    virtual OSStatus setFirstPage(std::uint32_t page, bool locked) = 0;
    /// Last page to print; 0xFFFFFFFF stands for "to the end".
    virtual OSStatus lastPage(std::uint32_t* page) const = 0;
    /// kPMValueOutOfRange for a page before the first.
    virtual OSStatus setLastPage(std::uint32_t page, bool locked) = 0;
    /// Everything as bytes that read back equal.
    virtual OSStatus dataRepresentation(PMDataFormat format, QByteArray* bytes) const = 0;
};

/// @name The calls that plug-ins make
/// @{
OSStatus PMGetPageFormatPaper(const PMPageFormat* format, const PMPaper** paper);
OSStatus PMPaperGetPPDPaperName(const PMPaper* paper, QString* name);
OSStatus PMPaperGetHeight(const PMPaper* paper, double* points);
OSStatus PMPrinterCopyDeviceURI(const PMPrinter* printer, PMURL* uri);
OSStatus PMPrinterGetState(const PMPrinter* printer, PMPrinterState* state);
OSStatus PMSessionGetDataFromSession(const PMPrintSession* session, const QString& key,
                                     QVariant* value);
OSStatus PMSessionSetDataInSession(PMPrintSession* session, const QString& key,
                                   const QVariant& value);
OSStatus PMPrintSettingsGetValue(const PMPrintSettings* settings, const QString& key,
                                 QVariant* value);
OSStatus PMPrintSettingsSetValue(PMPrintSettings* settings, const QString& key,
                                 const QVariant& value, bool locked);
OSStatus PMGetFirstPage(const PMPrintSettings* settings, std::uint32_t* page);
OSStatus PMSetFirstPage(PMPrintSettings* settings, std::uint32_t page, bool locked);
OSStatus PMGetLastPage(const PMPrintSettings* settings, std::uint32_t* page);
OSStatus PMSetLastPage(PMPrintSettings* settings, std::uint32_t page, bool locked);
OSStatus PMPrintSettingsCreateDataRepresentation(const PMPrintSettings* settings,
                                                 PMDataFormat format, QByteArray* bytes);
/// The URL's string form (nothing when it has none), and its scheme as it is written.
std::optional<QString> CFURLGetString(const PMURL& url);
std::optional<QString> CFURLCopyScheme(const PMURL& url);
/// @}

} // namespace labelcut
