// Fuzzing: a file that lies in memory only, for interfaces that want a path or a descriptor.
#pragma once

#include <QByteArray>
#include <QString>

namespace labelcut::fuzz {

class MemoryFile {
public:
    MemoryFile();
    ~MemoryFile();
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    /// Replaces the contents; the next write to the descriptor goes behind them.
    void set(const QByteArray& contents);
    QByteArray contents() const;
    int descriptor() const { return mDescriptor; }
    /// A path that opens the file anew, from its beginning.
    QString path() const;

private:
    int mDescriptor;
};

} // namespace labelcut::fuzz
