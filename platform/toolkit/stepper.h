// Toolkit: the stepper of interface files, two small arrows that change a number.
#pragma once

#include <QPointer>
#include <QWidget>

class QLineEdit;
class QToolButton;

namespace labelcut {

/// Two arrows, one above the other, and a number that is shown elsewhere. The number has no range
/// of its own: whoever reacts to stepped() corrects it. The arrows take no focus; a field that is
/// given with setField() sends them its Up and Down keys and, while it has the focus, the wheel.
///
/// In interface files: a QWidget of class "Stepper", with the properties "value" and the
/// accessible names of the arrows, "upName" and "downName".
class Stepper : public QWidget {
    Q_OBJECT
    Q_PROPERTY(int value READ value WRITE setValue)
public:
    explicit Stepper(QWidget* parent = nullptr);

    int value() const { return mValue; }
    /// Sets the number; sends no action.
    void setValue(int value) { mValue = value; }
    /// As a user's step does: sets the number, then sends the action.
    Q_INVOKABLE void stepTo(int value);
    void setField(QLineEdit* field);
    /// What a screen reader calls the arrows, and their tool tips.
    void setArrowNames(const QString& up, const QString& down);

Q_SIGNALS:
    void stepped();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QToolButton* addArrow(Qt::ArrowType arrow, int step);
    void stepBy(int step);

    int mValue = 0;
    int mWheel = 0;
    /// A widget only: it is compared with while it is being destroyed.
    QPointer<QWidget> mField;
    QToolButton* mUp;
    QToolButton* mDown;
};

} // namespace labelcut
