// The dialog: messages in lines where the cause is, never in boxes.
#pragma once

#include <QFrame>
#include <QPointer>
#include <QStringList>

#include <functional>
#include <vector>

class QVBoxLayout;

namespace labelcut {

/// Something that a message offers to do.
struct MessageAction {
    QString text;
    std::function<void()> act;
};

/// Lines of plain text, each with an icon and buttons. Takes no room while it has nothing to say.
/// A screen reader speaks each as it appears. When a message goes that has the focus, the focus
/// goes back to where it was before.
class MessageBar : public QFrame {
    Q_OBJECT
public:
    enum class Kind { Information, Warning };
    /// Sentences of one message that are shown; what is beyond them stands in its tool tip.
    static constexpr int kMaxSentences = 4;

    explicit MessageBar(QWidget* parent = nullptr);

    /// Shows a message under a name; a message of the same name is replaced, or stays when it says
    /// the same, and so do those of its buttons that are still offered, in their places: each is
    /// known by its text, and does what it did. One of another name that says the same makes room
    /// for it.
    void show(const QString& name, Kind kind, const QString& text,
              const std::vector<MessageAction>& actions = {});
    /// Adds a sentence to the message of that name, or begins one.
    void add(const QString& name, const QString& sentence);
    void remove(const QString& name);
    /// Whether a message of that name is there.
    bool shows(const QString& name) const { return row(name) != nullptr; }
    /// All texts, in order; each whole, one sentence a line.
    QStringList texts() const;

private:
    class Row;
    Row* row(const QString& name) const;
    std::vector<Row*> rows() const;
    void offer(Row& row, const std::vector<MessageAction>& actions);
    void giveFocusBack();

    QVBoxLayout* mRows;
    /// Where the focus was before it came here; null: nowhere, or that is gone.
    QPointer<QWidget> mFocusBefore;
};

} // namespace labelcut
