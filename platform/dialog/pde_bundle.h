// The print dialog's extension interface: the resources that belong to one plug-in.
#pragma once

#include <QString>

namespace labelcut {

/// A plug-in's resource bundle: string tables, pictures and interface files, found by bare name.
///
/// The host creates one for each plug-in it loads and hands it to the principal object. All
/// operations may be called at any time on the dialog's thread, never fail and never throw.
class PDEBundle {
public:
    virtual ~PDEBundle() = default;

    /// The text for `key` in the running language.
    /// @param key    key in the table; any text, an empty one included.
    /// @param value  what to answer when the table has no text for the key; a null string means
    ///               the key itself.
    /// @param table  bare name of the string table; null means the default table "Localizable".
    /// @return the text, else `value`, else `key`.
    virtual QString localizedStringForKey(const QString& key, const QString& value = {},
                                          const QString& table = {}) const = 0;

    /// Full path of the named picture (no extension, the bundle chooses the file), or a null
    /// string when there is none.
    virtual QString pathForImageResource(const QString& name) const = 0;

    /// Full path of the interface file of that name (no extension), or a null string.
    virtual QString pathForInterfaceFile(const QString& name) const = 0;
};

} // namespace labelcut
