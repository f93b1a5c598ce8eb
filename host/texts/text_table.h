// Toolkit: one string table of a bundle, looked up by key.
#pragma once

#include <QLocale>
#include <QString>
#include <QTranslator>

namespace labelcut {

/// The messages of "NAME_LANGUAGE.qm" (a Qt message file by id) in the best of the locale's
/// user-interface languages, in English when none fits. It is read when it is made and never
/// changes, so that any thread may look things up, several at once.
class TextTable {
public:
    /// @param root    a folder, or a resource path beginning ":/". Without such a file in it the
    ///                table is empty.
    /// @param locale  whose user-interface languages choose the file.
    TextTable(const QString& root, const QString& name, const QLocale& locale = QLocale::system());

    /// Null when the table has no such key.
    QString find(const char* key) const { return mMessages.translate("", key); }
    /// The key itself when the table lacks it.
    QString text(const char* key) const;

private:
    QTranslator mMessages;
};

} // namespace labelcut
