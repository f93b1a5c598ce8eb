// Panels: the print objects that a host holds and lends to its panels.
//
// Plain values, each filled by the host from a queue, a PPD or what the user chose; they speak to
// no service and own no PPD. They are copyable, belong to one thread at a time, and never throw.
// Lengths are in points, 1/72 inch. Out-parameters must not be null, and are left alone on failure.
#pragma once

#include <QByteArray>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <cups/ppd.h>

#include <cstdint>
#include <optional>

#include "platform/printing/print_objects.h"
#include "platform/printing/print_ticket.h"

namespace labelcut {

/// A locked print setting was to be changed by somebody who may not.
inline constexpr OSStatus kPMItemLocked = -30890;

/// The print settings under which the page range is kept, as integers.
inline constexpr char kFirstPageKey[] = "org.labelcut.print.FirstPage";
inline constexpr char kLastPageKey[] = "org.labelcut.print.LastPage";
/// The last page of a range without end.
inline constexpr std::uint32_t kLastPageOfAll = 0xFFFFFFFFU;

/// The chosen printer. New, it is idle, accepts jobs and has no device URI: a PPD without a queue.
class HostPrinter : public PMPrinter {
public:
    /// noErr, or kPMKeyNotFound when there is no device URI.
    OSStatus copyDeviceURI(PMURL* uri) const override;
    /// Always noErr.
    OSStatus state(PMPrinterState* state) const override;

    const std::optional<QString>& deviceUri() const { return mDeviceUri; }
    /// @param uri  the queue's "device-uri" as it is written, of any length; nothing for none.
    void setDeviceUri(std::optional<QString> uri) { mDeviceUri = std::move(uri); }
    void setState(PMPrinterState state) { mState = state; }
    /// The queue's "printer-state-reasons" without "none": keywords such as "media-empty-error".
    const QStringList& stateReasons() const { return mStateReasons; }
    void setStateReasons(QStringList reasons) { mStateReasons = std::move(reasons); }
    /// Whether the queue takes new jobs; a stopped one may, and a working one may not.
    bool isAccepting() const { return mAccepting; }
    void setAccepting(bool accepting) { mAccepting = accepting; }

private:
    std::optional<QString> mDeviceUri;
    PMPrinterState mState = PMPrinterState::Idle;
    QStringList mStateReasons;
    bool mAccepting = true;
};

/// What the panels of one dialog keep for each other while it is open.
class HostPrintSession : public PMPrintSession {
public:
    /// Always noErr; an invalid variant when nothing is stored under `key`.
    OSStatus data(const QString& key, QVariant* value) const override;
    /// Stores any value, an invalid variant removes. kPMInvalidParameter for an empty key.
    OSStatus setData(const QString& key, const QVariant& value) override;

private:
    QVariantMap mData;
};

/// The job's print settings.
///
/// Values have the types of property lists (see platform/toolkit/property_list.h): numbers are
/// kept as qlonglong, qulonglong or double whatever type they come in, lists of strings as
/// QVariantList, dates in UTC, and characters that XML cannot hold become U+FFFD. So what is kept
/// is what dataRepresentation() gives back.
///
/// A locked value changes only by a set with `locked`, or after unlock(). A set without it that
/// would change the value answers kPMItemLocked; one with the value that stands already is noErr,
/// and the value stays locked. Locks hold for removal too, and an absent value is never locked.
///
/// The page range is kept under kFirstPageKey and kLastPageKey, whichever way it is set.
class HostPrintSettings : public PMPrintSettings {
public:
    /// kPMKeyNotFound when there is none. The page range is only found here once it was set.
    OSStatus value(const QString& key, QVariant* value) const override;
    /// noErr; kPMItemLocked, see above; kPMInvalidParameter for an empty key, a key with
    /// characters that XML cannot hold, a value of another type or nested too deep; for the keys
    /// of the page range also what setFirstPage() answers, kPMValueOutOfRange for other types.
    OSStatus setValue(const QString& key, const QVariant& value, bool locked) override;

    /// Always noErr; 1 when no first page was set.
    OSStatus firstPage(std::uint32_t* page) const override;
    /// @param page  1 or more, at most the last page.
    /// @return noErr, kPMValueOutOfRange or kPMItemLocked.
    OSStatus setFirstPage(std::uint32_t page, bool locked) override;
    /// Always noErr; kLastPageOfAll when no last page was set.
    OSStatus lastPage(std::uint32_t* page) const override;
    /// @param page  at least the first page. @return as for setFirstPage().
    OSStatus setLastPage(std::uint32_t page, bool locked) override;
    /// Both at once, so that any range can follow any other; all or nothing.
    /// @return as for setFirstPage(), kPMItemLocked when either is locked and would change.
    OSStatus setPageRange(std::uint32_t first, std::uint32_t last, bool locked);

    /// An XML property list: a dictionary of "version" (integer, 1), "values" (dictionary) and
    /// "locked" (array of the locked keys, in their order).
    /// @param format  XMLDefault; kPMInvalidParameter for others.
    /// @return also kPMGeneralError when the values together pass the limits of property lists.
    OSStatus dataRepresentation(PMDataFormat format, QByteArray* bytes) const override;
    /// The settings that dataRepresentation() wrote; equal to them.
    /// @param bytes  any bytes. @return nothing when they are no settings: not a property list of
    ///               this shape and version, a page range that is none, a lock without value.
    static std::optional<HostPrintSettings> fromDataRepresentation(const QByteArray& bytes);

    /// Puts a paper name into the ticket that label jobs carry, replacing any earlier ticket.
    /// @param ppdPaperName  the PPD's name of the medium; nothing removes the ticket.
    /// @return noErr, or kPMItemLocked.
    OSStatus setTicketPaperName(const std::optional<QString>& ppdPaperName);

    bool isLocked(const QString& key) const { return mLocked.contains(key); }
    /// Lets users change the value again; nothing happens when it is absent or not locked.
    void unlock(const QString& key) { mLocked.remove(key); }
    QStringList keys() const { return mValues.keys(); }

    /// The same values, of the same types, and the same locks.
    bool operator==(const HostPrintSettings& other) const;

private:
    bool refuses(const QString& key, const QVariant& value, bool locked) const;
    OSStatus store(const QString& key, const QVariant& value, bool locked);
    OSStatus setPageValue(const QString& key, const QVariant& value, bool locked);
    std::uint32_t page(const char* key, std::uint32_t otherwise) const;
    bool isPageRangeValid() const;

    QVariantMap mValues;
    QSet<QString> mLocked;
};

/// A paper: one of the PPD's page sizes, or what a host knows of another.
class HostPaper : public PMPaper {
public:
    /// @param ppdName  the PPD's "PageSize" choice; nothing when the paper is not of a PPD.
    /// @param height   length in feed direction in points; 0 stands for unknown.
    HostPaper(std::optional<QString> ppdName, double height);
    /// The paper of one page size record. @param size  borrowed for the call.
    static HostPaper fromPpdSize(const ppd_size_t& size);
    /// The paper of the page size that is marked in `ppd`. A marked custom size gives the name
    /// "Custom" and the measure it was marked with.
    /// @param ppd  borrowed for the call; may be null.
    /// @return nothing when no page size is marked, or the PPD has none of that name.
    static std::optional<HostPaper> fromMarkedPageSize(ppd_file_t* ppd);

    /// Always noErr; a null string when the paper is not of a PPD.
    OSStatus ppdPaperName(QString* name) const override;
    /// Always noErr.
    OSStatus height(double* points) const override;

private:
    std::optional<QString> mPpdName;
    double mHeight;
};

/// The job's page format. New, no paper is chosen.
class HostPageFormat : public PMPageFormat {
public:
    /// Always noErr; null when no paper is chosen. The paper is this object's, and the pointer
    /// holds until the next setPaper() or the end of this object.
    OSStatus paper(const PMPaper** paper) const override;
    /// @param paper  nothing for no paper.
    void setPaper(std::optional<HostPaper> paper) { mPaper = std::move(paper); }

private:
    std::optional<HostPaper> mPaper;
};

} // namespace labelcut
