// The dialog: messages in lines where the cause is, never in boxes.
#pragma once

#include <QFrame>
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
class MessageBar : public QFrame {
    Q_OBJECT
public:
    enum class Kind { Information, Warning };

    explicit MessageBar(QWidget* parent = nullptr);

    /// Shows a message under a name; a message of the same name is replaced.
    void show(const QString& name, Kind kind, const QString& text,
              const std::vector<MessageAction>& actions = {});
    void remove(const QString& name);
    /// All texts, in order.
    QStringList texts() const;

private:
    QWidget* line(const QString& name) const;

    QVBoxLayout* mLines;
};

} // namespace labelcut
