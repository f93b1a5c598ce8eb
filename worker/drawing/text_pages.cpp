// Worker: text on pages, line by line.
#include "worker/drawing/text_pages.h"

#include <QFontMetricsF>
#include <QTextLayout>

#include <algorithm>
#include <utility>

namespace labelcut::worker {

namespace {

/// A label should hold about this many columns of text …
constexpr double kColumns = 24;
/// … in a size between these two. Points.
constexpr double kSmallestText = 5;
constexpr double kLargestText = 10;
/// From one tab stop to the next. Points.
constexpr double kTab = 60;
/// Dots in a point.
constexpr double kDots = kResolution / kPointsPerInch;
/// Laying out a paragraph takes memory for every character of it, so that a longer one is laid out
/// piece by piece. Characters.
constexpr qsizetype kPiece = 2000;

QFont textFont(double printableWidth) {
    QFont font(QStringLiteral("monospace"));
    font.setStyleHint(QFont::TypeWriter);
    font.setFixedPitch(true);
    constexpr double kWidthToHeight = 0.6;
    font.setPointSizeF(
        std::clamp(printableWidth / kColumns / kWidthToHeight, kSmallestText, kLargestText));
    return font;
}

/// The first `most` characters, without half a character at the end.
QStringView front(QStringView text, qsizetype most) {
    if (text.size() <= most)
        return text;
    return text.left(text[most - 1].isHighSurrogate() ? most - 1 : most);
}

/// Takes the text up to the first `end` off the front, and `end` with it.
QStringView takeUpTo(QStringView& text, QChar end) {
    const qsizetype at = text.indexOf(end);
    const QStringView taken = at < 0 ? text : text.left(at);
    text = at < 0 ? QStringView() : text.mid(at + 1);
    return taken;
}

} // namespace

TextPages::TextPages(Canvas& canvas, Step step)
    : mCanvas(canvas)
    , mStep(std::move(step))
    , mFont(textFont(canvas.printable().width()), &canvas.writer())
    , mWidth(canvas.printable().width() * kDots)
    , mHeight(canvas.printable().height() * kDots)
    , mEmptyLine(QFontMetricsF(mFont, &canvas.writer()).height()) {
    mOption.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    mOption.setTabStopDistance(kTab * kDots);
    mCanvas.painter().save();
    clip();
}

bool TextPages::draw(const QString& text) {
    QString unified = text;
    unified.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    if (unified.endsWith(u'\n') || unified.endsWith(u'\f'))
        unified.chop(1);
    QStringView rest = unified;
    if (!drawPage(takeUpTo(rest, u'\f')))
        return false;
    while (rest.data()) {
        if (!startPage() || !drawPage(takeUpTo(rest, u'\f')))
            return false;
    }
    return true;
}

bool TextPages::drawPage(QStringView text) {
    QStringView rest = text;
    do {
        if (!drawParagraph(takeUpTo(rest, u'\n')))
            return false;
    } while (rest.data());
    return true;
}

bool TextPages::drawParagraph(QStringView text) {
    if (text.isEmpty())
        return takeLine(mEmptyLine);
    const bool isRightToLeft = text.isRightToLeft();
    mOption.setTextDirection(isRightToLeft ? Qt::RightToLeft : Qt::LeftToRight);
    mOption.setAlignment(isRightToLeft ? Qt::AlignRight : Qt::AlignLeft);
    while (!text.isEmpty()) {
        const QStringView piece = front(text, kPiece);
        const qsizetype drawn = drawLines(piece, piece.size() == text.size());
        if (drawn == 0)
            return false;
        text = text.mid(drawn);
    }
    return true;
}

qsizetype TextPages::drawLines(QStringView front, bool isAll) {
    QTextLayout layout(front.toString(), mFont, &mCanvas.writer());
    layout.setTextOption(mOption);
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLeadingIncluded(true);
        line.setLineWidth(mWidth);
    }
    layout.endLayout();
    const int lines =
        isAll || layout.lineCount() == 1 ? layout.lineCount() : layout.lineCount() - 1;
    for (int i = 0; i < lines; ++i) {
        const QTextLine line = layout.lineAt(i);
        if (!takeLine(line.height()))
            return 0;
        line.draw(&mCanvas.painter(), QPointF(0, mDown - line.height() - line.y()));
    }
    return lines == layout.lineCount() ? front.size() : layout.lineAt(lines).textStart();
}

bool TextPages::takeLine(double height) {
    if (mDown > 0 && mDown + height > mHeight && !startPage())
        return false;
    mDown += height;
    return true;
}

bool TextPages::startPage() {
    if (mPages == kMostPages)
        return false;
    ++mPages;
    mDown = 0;
    mStep();
    mCanvas.painter().restore();
    mCanvas.newPage();
    mCanvas.painter().save();
    clip();
    return true;
}

void TextPages::clip() {
    QPainter& painter = mCanvas.painter();
    painter.translate(mCanvas.printable().topLeft());
    painter.scale(1 / kDots, 1 / kDots);
    painter.setClipRect(QRectF(0, 0, mWidth, mHeight));
}

} // namespace labelcut::worker
