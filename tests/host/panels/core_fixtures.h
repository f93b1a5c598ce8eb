// Test support: plug-in folders made for one test, and a host to load them into.
#pragma once

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "host/panels/panel_host.h"
#include "tests/support/ppd_builder.h"

namespace labelcut::test {

inline QByteArray bytesOf(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

/// A folder of plug-ins.
class PluginFolder {
public:
    /// Copies test plug-ins there, each under its own name.
    explicit PluginFolder(std::initializer_list<const char*> behaviours = {}) {
        for (const char* behaviour : behaviours)
            add(QLatin1String(behaviour));
    }
    void add(const QString& behaviour) {
        const QString file = behaviour + QStringLiteral(".so");
        copy(QStringLiteral(LABELCUT_TEST_PLUGIN_DIR "/") + file, file);
    }
    void copy(const QString& from, const QString& name) {
        EXPECT_TRUE(QFile::copy(from, filePath(name))) << from.toStdString();
    }
    void write(const QString& name, const QByteArray& bytes) {
        QFile file(filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    QString path() const { return mFolder.path(); }
    QString filePath(const QString& name) const { return mFolder.filePath(name); }
    PluginSearch load() const { return loadPlugins(path()); }

private:
    QTemporaryDir mFolder;
};

/// How often the test plug-ins did that since the last time somebody asked.
inline int takeCount(const char* what) {
    const int count = qApp->property(what).toInt();
    qApp->setProperty(what, 0);
    return count;
}

inline QString choice(const PDEPanel& panel, const char* selection) {
    return panel.inspect()
        .value(QStringLiteral("selections"))
        .toMap()
        .value(QLatin1String(selection))
        .toString();
}

/// A host on a PPD with its defaults marked.
inline std::unique_ptr<PanelHost> hostOn(const PpdBuilder& builder) {
    PanelHostSetup setup;
    setup.ppd = builder.open();
    ppd::markDefaults(setup.ppd.get());
    return std::make_unique<PanelHost>(std::move(setup));
}

} // namespace labelcut::test
