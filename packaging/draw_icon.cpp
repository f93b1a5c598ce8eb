// Draws an SVG picture as a PNG file: labelcut_draw_icon SVG PIXELS PNG.
#include <QCoreApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 4)
        return 2;
    QSvgRenderer renderer(arguments[1]);
    const int pixels = arguments[2].toInt();
    if (!renderer.isValid() || pixels < 1)
        return 1;
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    {
        QPainter painter(&image);
        renderer.render(&painter);
    }
    return image.save(arguments[3], "PNG") ? 0 : 1;
}
