// Toolkit: a picture that is drawn sharp at any scale, in a light and a dark variant.
#pragma once

#include <QByteArray>
#include <QIcon>
#include <QImage>
#include <QSizeF>
#include <QString>

#include <memory>

class QPainter;
class QSvgRenderer;

namespace labelcut {

/// A picture loaded whole from a file: an SVG picture, or any image format that Qt reads. A file of
/// the same name in the folder "dark" beside it, when there is one, is drawn on dark backgrounds;
/// it is read when it is first needed. Parsing waits until the picture is first measured or drawn.
class Picture {
public:
    /// @return the picture, or null for a null path, or a file that cannot be read.
    static std::shared_ptr<const Picture> fromFile(const QString& path);
    ~Picture();

    /// Size in points; empty when the file holds no picture.
    QSizeF size() const;
    /// Draws the whole picture into `target`.
    void draw(QPainter& painter, const QRectF& target, bool onDark) const;

private:
    struct Variant;
    Picture(std::unique_ptr<Variant> light, QString darkPath);

    std::unique_ptr<Variant> mLight;
    mutable std::unique_ptr<Variant> mDark;
    /// Empty once it has been looked for.
    mutable QString mDarkPath;
};

/// An icon that draws the picture for the application's current palette.
QIcon iconFromPicture(std::shared_ptr<const Picture> picture);

/// Whether pictures on this palette's windows are to be drawn for a dark background.
bool isDark(const QPalette& palette);

} // namespace labelcut
