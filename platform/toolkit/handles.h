// Toolkit: null-safe handles onto the widgets of an interface file.
//
// A handle borrows its widget and notices when it dies. On an absent or dead widget every operation
// does nothing and answers 0, false or empty; this is written here and nowhere else. Positions are
// points with y upward, a widget's position being its lower-left corner in its parent.
#pragma once

#include <QLineEdit>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <cstdint>

class QCheckBox;
class QComboBox;
class QLabel;

namespace labelcut {

class Stepper;

struct Point {
    double x = 0;
    double y = 0;
    bool operator==(const Point&) const = default;
};

struct Size {
    double width = 0;
    double height = 0;
    bool operator==(const Size&) const = default;
};

struct Frame {
    Point origin;
    Size size;
    bool operator==(const Frame&) const = default;
};

/// Any widget.
class View {
public:
    View() = default;
    explicit View(QWidget* widget)
        : mWidget(widget) {}

    explicit operator bool() const { return !mWidget.isNull(); }
    QWidget* widget() const { return mWidget.data(); }
    /// Whether both stand for the same living widget.
    bool isSame(const View& other) const { return mWidget && mWidget == other.mWidget; }

    Frame frame() const;
    void setFrameOrigin(Point origin);
    /// For a root view: its children keep their distance from the top edge.
    void setFrameSize(Size size);

    /// The widget's own flags, whatever its parents are.
    bool isHidden() const;
    void setHidden(bool hidden);
    bool isEnabled() const;
    void setEnabled(bool enabled);

    /// The parent, absent for a root view.
    View superview() const;
    /// Puts `replacement` in the place of the direct child `old`, which is deleted. Does nothing
    /// without both, or when `old` is not a child of this view.
    void replaceSubview(View& old, const View& replacement);

    /// Shown as plain text; an empty text takes the tool tip away.
    void setToolTip(const QString& text);

private:
    QPointer<QWidget> mWidget;
};

/// A checkbox.
class Button : public View {
public:
    Button() = default;
    explicit Button(QCheckBox* box);

    /// 0 off, 1 on, -1 mixed, or the bare number it was set to.
    int state() const;
    /// Sends no action.
    void setState(int state);
    QString title() const;
    /// Shown as plain text: no mnemonic is read from it, and the box keeps the shortcut it has.
    void setTitle(const QString& title);
    /// Width that the whole title needs, in points; 0 without a widget.
    double widthForTitle(const QString& title) const;

private:
    QCheckBox* box() const;
};

enum class TextColor { Control, DisabledControl };

/// A text field, either one to type into or a static text.
class TextField : public View {
public:
    TextField() = default;
    explicit TextField(QLineEdit* field);
    explicit TextField(QLabel* label);

    QString stringValue() const;
    /// Sends no action; leaves the caret at the end. Shown as plain text.
    void setStringValue(const QString& text);
    std::int32_t intValue() const;
    void setTextColor(TextColor color);
    double widthForText(const QString& text) const;
};

/// Whether a static text was given the disabled text colour.
bool showsDisabledTextColor(const QWidget& label);

class StepperHandle : public View {
public:
    StepperHandle() = default;
    explicit StepperHandle(Stepper* stepper);

    std::int32_t intValue() const;
    void setIntValue(std::int32_t value);

private:
    Stepper* stepper() const;
};

/// A pop-up button whose entries carry a tag each.
class PopUpButton : public View {
public:
    /// Item role under which an entry of the combo box keeps its tag (int).
    static constexpr int kTagRole = Qt::UserRole;

    PopUpButton() = default;
    explicit PopUpButton(QComboBox* box);

    QStringList itemTitles() const;
    int count() const;
    void removeItemWithTitle(const QString& title);
    void setTitleAt(int index, const QString& title);
    /// The selected entry's tag; 0 when nothing is selected.
    std::int64_t selectedTag() const;
    /// Does nothing when no entry has the tag. Sends no action.
    void selectItemWithTag(std::int64_t tag);

private:
    QComboBox* box() const;
};

/// Height of the key window's frame in points of `view`'s scale, or nothing when the application
/// has no key window.
struct KeyWindow {
    bool exists = false;
    double frameHeight = 0;
};
KeyWindow keyWindow(const View& view);

} // namespace labelcut
