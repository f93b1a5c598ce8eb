// Worker: pictures, drawings and text as PDF files, by Qt.
#include "worker/drawing/drawing.h"

#include <QGuiApplication>
#include <QImageReader>
#include <QSvgRenderer>

#include <memory>
#include <utility>

#include "worker/drawing/canvas.h"
#include "worker/drawing/self_contained.h"
#include "worker/drawing/text_pages.h"
#include "worker/kinds/document_kind.h"
#include "worker/kinds/plain_text.h"

namespace labelcut::worker {

namespace {

Answer picture(const char* format, Descriptor document, Canvas& canvas) {
    QFile file;
    if (!file.open(document.release(), QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
        return Failed{Problem::PictureDamaged, file.errorString().toStdString()};
    QImageReader reader(&file, format);
    reader.setAutoTransform(true);
    const QImage image = reader.read();
    if (image.isNull())
        return Failed{Problem::PictureDamaged, reader.errorString().toStdString()};
    if (const auto failed = canvas.begin())
        return *failed;
    const QRectF place = fitted(canvas.painter(), image.size(), canvas.printable());
    canvas.painter().drawImage(place, image);
    return canvas.end();
}

Answer drawing(const Descriptor& document, Canvas& canvas) {
    QSvgRenderer renderer(selfContained(QByteArray::fromStdString(contentOf(document.number()))));
    if (!renderer.isValid() || renderer.viewBoxF().isEmpty())
        return Failed{Problem::DrawingDamaged, {}};
    if (const auto failed = canvas.begin())
        return *failed;
    const QRectF place = fitted(canvas.painter(), renderer.viewBoxF().size(), canvas.printable());
    renderer.render(&canvas.painter(), place);
    return canvas.end();
}

Answer plainText(const Descriptor& document, Canvas& canvas, const Step& step) {
    const auto text = decodedText(contentOf(document.number()));
    if (!text)
        return Failed{Problem::UnknownKind, {}};
    if (const auto failed = canvas.begin())
        return *failed;
    if (!TextPages(canvas, step).draw(QString::fromStdU16String(*text)))
        return Failed{Problem::TooManyPages, {}};
    return canvas.end();
}

class QtDrawing : public Drawing {
public:
    void prepare() override {
        // Into files only: there is no display in the cage.
        qputenv("QT_QPA_PLATFORM", "offscreen");
        mApplication = std::make_unique<QGuiApplication>(mArgumentCount, mArguments);
    }

    Answer draw(const Draw& request, Descriptor document, Descriptor target,
                const Step& step) override {
        Canvas canvas(std::move(target), request.paper);
        switch (request.kind) {
        case DocumentKind::PNG:
            return picture("png", std::move(document), canvas);
        case DocumentKind::JPEG:
            return picture("jpeg", std::move(document), canvas);
        case DocumentKind::SVG:
            return drawing(document, canvas);
        case DocumentKind::PlainText:
            return plainText(document, canvas, step);
        case DocumentKind::PDF:
        case DocumentKind::PostScript:
            break;
        }
        return Failed{Problem::Misunderstood, {}};
    }

private:
    char mName[9] = "labelcut";
    char* mArguments[2] = {mName, nullptr};
    int mArgumentCount = 1;
    std::unique_ptr<QGuiApplication> mApplication;
};

} // namespace

} // namespace labelcut::worker

extern "C" __attribute__((visibility("default"))) labelcut::worker::Drawing* labelcutDrawing() {
    // Never destroyed: the process ends without a farewell.
    static auto* drawing = new labelcut::worker::QtDrawing;
    return drawing;
}
