// The automation driver: a panel's real controls, acted on as a user's input does and read as they
// are. Which controls there are is what the panel says of itself (PDEPanel::inspect()).
#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <map>

class QWidget;

namespace labelcut::script {

/// What a panel lists as its controls. Lines of a script that name no control act on the first of
/// the kind: the count on the "field" and the "stepper", combinations on the "popUp".
///
/// Acts throw Refusal for a control that is not listed or absent and, but for setState(), hidden
/// or disabled.
class PanelControls {
public:
    /// @param view       the panel's view; may be null, then every control is absent. Borrowed.
    /// @param inspected  what the panel's inspect() answered.
    PanelControls(QWidget* view, const QVariantMap& inspected);

    void click(const QString& checkBox) const;
    void enter(const QString& text) const;
    void type(const QString& text) const;
    void step(int value) const;
    void choosePopUp(int tag) const;
    void setState(const QString& checkBox, int state) const;

    /// What can be seen of every checkbox, field, stepper and label, by object name; null for what
    /// is absent.
    QJsonObject all() const;
    /// Entries and selection of the pop-up, or null.
    QJsonValue popUp() const;
    /// Position of the preview within the view, or null when it is not in there.
    QJsonValue previewPlace() const;

private:
    QString first(const char* kind) const;
    QString listedCheckBox(const QString& name) const;

    QWidget* mView;
    /// Object names by kind, in the panel's order.
    std::map<QString, QStringList> mNames;
};

} // namespace labelcut::script
