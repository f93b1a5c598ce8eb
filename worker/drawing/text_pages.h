// Worker: text on pages, line by line.
#pragma once

#include <QFont>
#include <QString>
#include <QTextOption>

#include "worker/drawing/canvas.h"
#include "worker/protocol/step.h"

namespace labelcut::worker {

/// Draws text from top to bottom of the printable area, page after page. What it has drawn it does
/// not keep: time grows with the text, memory hardly.
class TextPages {
public:
    /// @param canvas  borrowed; begun. @param step  told of every page.
    TextPages(Canvas& canvas, Step step);
    TextPages(const TextPages&) = delete;
    TextPages& operator=(const TextPages&) = delete;
    ~TextPages() { mCanvas.painter().restore(); }

    /// The whole text: lines are wrapped, a form feed starts a page, a line end at the very end is
    /// no line. @return false when it takes more than kMostPages.
    bool draw(const QString& text);

private:
    bool drawPage(QStringView text);
    bool drawParagraph(QStringView text);
    /// Draws the lines of the front of a paragraph, but the last one, which may not be full, when
    /// more follows. @return how many characters were drawn, at least 1; 0 when no page is left.
    qsizetype drawLines(QStringView front, bool isAll);
    /// Makes room for a line. @return false when no page is left.
    bool takeLine(double height);
    bool startPage();
    void clip();

    Canvas& mCanvas;
    Step mStep;
    QFont mFont;
    QTextOption mOption;
    double mWidth = 0;
    double mHeight = 0;
    double mEmptyLine = 0; ///< Height of a line without characters.
    double mDown = 0;      ///< Where the next line begins, from the top of the printable area.
    std::uint32_t mPages = 1;
    // All of them in dots of the canvas.
};

} // namespace labelcut::worker
