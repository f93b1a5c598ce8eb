// Tests of presets: folders and printers.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include "host/presets/preset.h"
#include "host/settings/ppd_calls.h"
#include "tests/support/surroundings.h"

namespace labelcut::test {

/// A folder that goes with the test, and the files in it.
class Folder {
public:
    QString path(const QString& name = {}) const {
        return name.isEmpty() ? mFolder.path() : mFolder.filePath(name);
    }
    QStringList entries() const;
    /// Takes the right to write into it from everybody but root.
    void close() const;

private:
    QTemporaryDir mFolder;
};

void writeFile(const QString& path, const QByteArray& bytes);
QByteArray contentOf(const QString& path);

/// A tape printer: PageSize DC24 and DC12 and custom ones, KvHalfCut OFF and ON, KvCutLabel 1 to 9,
/// KvMargin with a custom whole number 0 to 50, KvText with a custom text of 2 to 5 characters,
/// KvFrame with two custom numbers, Width 1 to 9 in points and Gap 0 to 1. Its defaults are marked.
ppd::File tapePrinter();
ppd::File openedPpd(const QByteArray& text);

/// A preset with something in every field.
Preset samplePreset(const QString& name);
PrinterIdentity tapeQueue();

} // namespace labelcut::test
