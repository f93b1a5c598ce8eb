// Performance: a document read as a job's is, once through the caged worker and once by the same
// libraries within this process: the difference is what the cage costs.
//
//     read_document caged|bare FILE
//
// FILE is a PDF, PNG, JPEG, SVG or text file; it is laid out on a label of 24 mm.
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QLibrary>
#include <QTemporaryDir>

#include <fcntl.h>

#include <cstdio>
#include <cstring>
#include <utility>

#include "host/documents/documents.h"
#include "host/documents/job_document.h"
#include "worker/drawing/drawing.h"
#include "worker/kinds/document_kind.h"
#include "worker/pdf/pdf_engine.h"

using namespace labelcut;
using worker::Descriptor;

namespace {

const worker::Paper kPaper{"T24", 68, 142, 3, 3, 65, 139};

bool readCaged(const QString& file) {
    const JobPaper paper{
        QString::fromStdString(kPaper.name), QSizeF(kPaper.width, kPaper.height),
        QRectF(QPointF(kPaper.left, kPaper.top), QPointF(kPaper.right, kPaper.bottom))};
    return static_cast<bool>(JobDocument::prepare({file}, paper));
}

template<typename Function>
Function load(const char* library, const char* name) {
    return reinterpret_cast<Function>(QLibrary::resolve(
        QStringLiteral(LABELCUT_BENCH_LIBRARIES "/") + QLatin1String(library), name));
}

Descriptor opened(const QString& path, int flags) {
    return Descriptor(open(QFile::encodeName(path).constData(), flags | O_CLOEXEC, 0600));
}

bool succeeded(const worker::Answer& answer) {
    return !std::holds_alternative<worker::Failed>(answer);
}

bool readBare(const QString& file) {
    const QTemporaryDir folder;
    QString path = folder.filePath(QStringLiteral("copy"));
    if (!copyDocument(file, path))
        return false;
    const worker::Answer kind = worker::documentKind(opened(path, O_RDONLY).number());
    if (!succeeded(kind))
        return false;
    if (std::get<worker::Kind>(kind).kind != worker::DocumentKind::PDF) {
        worker::Drawing* drawing =
            load<worker::DrawingFunction>("drawing.so", worker::kDrawingFunction)();
        drawing->prepare();
        const QString made = folder.filePath(QStringLiteral("made.pdf"));
        if (!succeeded(drawing->draw({std::get<worker::Kind>(kind).kind, kPaper},
                                     opened(path, O_RDONLY), opened(made, O_RDWR | O_CREAT),
                                     [] {})))
            return false;
        path = made;
    }
    worker::PdfEngine* engine =
        load<worker::PdfEngineFunction>("pdf_engine.so", worker::kPdfEngineFunction)();
    const worker::Answer answer = engine->open(opened(path, O_RDONLY), [] {});
    const auto* found = std::get_if<worker::Opened>(&answer);
    const QString measures = folder.filePath(QStringLiteral("measures"));
    if (!found || !succeeded(engine->measure(opened(measures, O_RDWR | O_CREAT), [] {})))
        return false;
    const QString joined = folder.filePath(QStringLiteral("job.pdf"));
    return found->isPlain || succeeded(engine->join({}, opened(joined, O_RDWR | O_CREAT), [] {}));
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    if (argc != 3)
        return 2;
    const QString file = QFile::decodeName(argv[2]);
    const bool isRead = std::strcmp(argv[1], "caged") == 0 ? readCaged(file) : readBare(file);
    if (!isRead)
        std::fprintf(stderr, "\"%s\" cannot be read\n", argv[2]);
    return isRead ? 0 : 1;
}
