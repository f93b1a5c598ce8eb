// Documents: PDF files, through the library that knows them.
#include "host/documents/pdf_file.h"

#include <QCoreApplication>
#include <QDir>
#include <QLibrary>

#include "host/core/failure.h"
#include "host/texts/host_text.h"

namespace labelcut {

namespace {

/// Where the library lies: as it was installed, wherever that tree is by now; in a build folder.
QString enginePath() {
    const QString program = QCoreApplication::applicationDirPath();
    for (const char* folder : {LABELCUT_LIBRARIES_FROM_PROGRAM, "../lib/labelcut"}) {
        const QDir beside(program + u'/' + QLatin1String(folder));
        if (beside.exists(QStringLiteral("pdf_engine.so")))
            return beside.canonicalPath() + QStringLiteral("/pdf_engine.so");
    }
    return QStringLiteral(LABELCUT_INSTALLED_LIBRARIES "/pdf_engine.so");
}

Result<const PdfEngine*> loadEngine() {
    QLibrary library(enginePath());
    library.setLoadHints(QLibrary::ResolveAllSymbolsHint | QLibrary::PreventUnloadHint);
    const auto function = reinterpret_cast<PdfEngineFunction>(library.resolve(kPdfEngineFunction));
    if (!function)
        return failure(
            hostText("PdfLibraryMissing").arg(library.fileName(), library.errorString()));
    return function();
}

/// Loaded once; what kept it from loading the first time still does.
const Result<const PdfEngine*>& engine() {
    static const Result<const PdfEngine*> loaded = loadEngine();
    return loaded;
}

Error sentenceFor(const PdfProblem& problem) {
    switch (problem.kind) {
    case PdfProblem::Kind::Encrypted:
        return failure(hostText("PdfEncrypted").arg(problem.file));
    case PdfProblem::Kind::WithoutPages:
        return failure(hostText("WithoutPages").arg(problem.file));
    case PdfProblem::Kind::NotWritten:
        return failure(hostText("CannotWriteTemporaryBecause").arg(problem.file, problem.detail));
    case PdfProblem::Kind::Interrupted:
        return cancelled();
    case PdfProblem::Kind::Broken:
        break;
    }
    return failure(hostText("PdfBroken").arg(problem.file, problem.detail));
}

StopWish stopWish(const CancelFlag* cancel) {
    return [cancel] { return cancel && cancel->isCancelled(); };
}

} // namespace

Result<PdfFile> PdfFile::open(const QString& path, const QString& name, const CancelFlag* cancel) {
    if (!engine())
        return engine().error();
    PdfProblem problem;
    std::unique_ptr<PdfContent> content = (*engine())->open(path, name, stopWish(cancel), problem);
    if (!content)
        return sentenceFor(problem);
    return PdfFile(std::move(content));
}

Result<Done> PdfFile::join(const std::vector<PdfFile>& files, const PageRange& range,
                           const std::optional<JobPaper>& paper, const QString& target,
                           const CancelFlag* cancel) {
    if (!engine())
        return engine().error();
    std::vector<PdfContent*> contents;
    contents.reserve(files.size());
    for (const PdfFile& file : files)
        contents.push_back(file.mContent.get());
    const std::optional<PdfProblem> problem =
        (*engine())->join(contents, range, paper, target, stopWish(cancel));
    if (problem)
        return sentenceFor(*problem);
    return Done();
}

} // namespace labelcut
