// Fuzzing: takes inputs from files instead of from libFuzzer, so that a target runs as a test and
// under any compiler.
//   replay_NAME FILE-OR-FOLDER…
#include <QByteArray>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include <cstdio>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

QStringList filesOf(const QString& path) {
    if (!QFileInfo(path).isDir())
        return {path};
    QStringList files;
    for (QDirIterator it(path, QDir::Files, QDirIterator::Subdirectories); it.hasNext();)
        files.append(it.next());
    files.sort();
    return files;
}

/// @return whether the file could be read; an input that fails ends the process.
bool replay(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "%s cannot be read.\n", qPrintable(path));
        return false;
    }
    const QByteArray bytes = file.readAll();
    // A crash inside the target would leave the input unnamed otherwise.
    std::fprintf(stderr, "%s\n", qPrintable(path));
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.constData()),
                           static_cast<std::size_t>(bytes.size()));
    return true;
}

} // namespace

int main(int argc, char** argv) {
    QStringList files;
    for (int i = 1; i < argc; ++i)
        files.append(filesOf(QFile::decodeName(argv[i])));
    bool isGood = !files.isEmpty();
    for (const QString& file : files)
        isGood = replay(file) && isGood;
    std::fprintf(stderr, "%d inputs replayed.\n", static_cast<int>(files.size()));
    return isGood ? 0 : 1;
}
