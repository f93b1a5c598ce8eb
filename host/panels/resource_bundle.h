// Panels: a plug-in's bundle, read from a folder or from resources compiled into the plug-in.
#pragma once

#include <QLocale>
#include <QString>

#include <map>

#include "host/texts/text_table.h"
#include "platform/dialog/pde_bundle.h"

namespace labelcut {

/// A bundle below one root: interface files "NAME.ui", pictures "NAME.svg" or "NAME.png", and
/// string tables "TABLE_LANGUAGE.qm" (Qt message files by id), of which the best match for the
/// locale's languages is taken, English when none fits. What is missing is simply not there.
class ResourceBundle : public PDEBundle {
public:
    /// @param root    a folder, or a resource path beginning ":/".
    /// @param locale  whose user-interface languages choose the string tables.
    explicit ResourceBundle(QString root, const QLocale& locale = QLocale::system());

    QString localizedStringForKey(const QString& key, const QString& value,
                                  const QString& table) const override;
    QString pathForImageResource(const QString& name) const override;
    QString pathForInterfaceFile(const QString& name) const override;

private:
    const TextTable& table(const QString& name) const;
    QString existing(const QString& name, std::initializer_list<const char*> suffixes) const;

    QString mRoot;
    QLocale mLocale;
    mutable std::map<QString, TextTable> mTables;
};

} // namespace labelcut
