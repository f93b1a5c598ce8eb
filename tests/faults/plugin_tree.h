// Faults: the program as if installed elsewhere, with plug-ins of the test's choice.
#pragma once

#include <QDir>

#include <unistd.h>

#include "tests/faults/fault_fixtures.h"

namespace labelcut::test {

/// A folder with the program and an empty folder of plug-ins beside it.
class PluginTree {
public:
    PluginTree()
        : mFolder(QStringLiteral(LABELCUT_SCRATCH "/tree-XXXXXX")) {
        QDir(mFolder.path()).mkpath(QStringLiteral("bin"));
        QDir(mFolder.path()).mkpath(QStringLiteral("lib/labelcut/plugins"));
        // The same file by another name: the program looks for plug-ins beside itself.
        EXPECT_EQ(link(LABELCUT_PROGRAM, QFile::encodeName(program()).constData()), 0);
        for (const char* part : {"document_worker", "drawing.so", "pdf_engine.so"}) {
            const QByteArray there = QByteArray(LABELCUT_PLUGIN_DIR "/../") + part;
            const QByteArray here = QFile::encodeName(path(QStringLiteral("lib/labelcut/"))) + part;
            EXPECT_EQ(link(there.constData(), here.constData()), 0) << part;
        }
    }
    QString plugins() const { return mFolder.filePath(QStringLiteral("lib/labelcut/plugins")); }
    QString program() const { return mFolder.filePath(QStringLiteral("bin/labelcut")); }
    QString path(const QString& name) const { return mFolder.filePath(name); }
    QString write(const QString& name, const QByteArray& bytes) const {
        return fileWith(plugins() + u'/' + name, bytes);
    }
    Outcome run(const QStringList& arguments, const std::map<QString, QString>& environment = {},
                const QString& folder = {}) const {
        Start start;
        start.program = program();
        start.arguments = arguments;
        start.environment = environment;
        start.folder = folder;
        return test::run(start);
    }

private:
    QTemporaryDir mFolder;
};

} // namespace labelcut::test
