// The dialog: a text that changes with every click without the window being laid out anew.
#pragma once

#include <QWidget>

class QLabel;

namespace labelcut {

/// Plain text that wraps. A QLabel asks for a new layout whenever its text changes, which costs
/// more than all else that a click does; this one asks only when it needs another height.
class SteadyLabel : public QWidget {
public:
    /// @param name  the object name of the label in it.
    explicit SteadyLabel(const QString& name, QWidget* parent = nullptr);

    void setText(const QString& text);
    QString text() const;

    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    QLabel* mLabel;
    /// At the present width.
    int mNeededHeight = 0;
};

} // namespace labelcut
