// Presets: a named set of choices for one printer, and which printer that is.
#pragma once

#include <QMap>
#include <QString>

#include <cups/ppd.h>

#include <optional>
#include <vector>

#include "host/core/handling.h"
#include "host/printers/opened_printer.h"
#include "host/settings/setting.h"

namespace labelcut {

/// Whose presets they are: a queue, or a printer that is known by a PPD given by hand.
///
/// Two of them are equal when they stand for the same printer; queue names differing only in the
/// case of ASCII letters name one queue, as for the print service.
class PrinterIdentity {
public:
    /// @param name  the queue's name, not empty.
    static PrinterIdentity forQueue(const QString& name);
    /// By the PPD's NickName and PCFileName, which stay the same wherever the file lies.
    /// @param ppd  borrowed for the call; null and a PPD without either give one common identity.
    static PrinterIdentity forPpd(const ppd_file_t* ppd);

    /// For people: the queue's name, or the PPD's NickName.
    const QString& title() const { return mTitle; }
    /// "queue:NAME" or "ppd:NICKNAME:PCFILENAME"; what files say of whose they are.
    const QString& key() const { return mKey; }
    /// A bare file name, different for different printers: ASCII letters, digits, '-' and '.'.
    QString fileName() const;
    bool operator==(const PrinterIdentity& other) const;

private:
    PrinterIdentity(QString title, QString key);

    QString mTitle;
    QString mKey;
};

/// Whose presets an opened printer takes.
PrinterIdentity identityOf(const OpenedPrinter& printer);

/// What a user keeps under a name.
struct Preset : Handling {
    static constexpr int kMaxNameLength = 100; ///< Characters, as Unicode counts them.

    /// Compared exactly, see presetNameProblem().
    QString name;
    /// The PPD's "PageSize" choice, "Custom.50x500mm" included; empty: the preset leaves it alone.
    QString pageSize;
    /// PPD main keyword → choice keyword, "Custom.VALUE" or "{name=value …}". Without PageSize.
    QMap<QString, QString> options;

    bool operator==(const Preset&) const = default;

    /// A preset of these choices; one for PageSize becomes the page size, the last of a keyword
    /// counts.
    static Preset of(const QString& name, const Settings& settings, const Handling& handling = {});
    /// Its choices, the page size first.
    Settings settings() const;
};

/// Why `name` cannot be a preset's: a sentence. It must not be empty, begin or end with a space,
/// hold control characters or half a surrogate pair, or be longer than kMaxNameLength.
std::optional<QString> presetNameProblem(const QString& name);

} // namespace labelcut
