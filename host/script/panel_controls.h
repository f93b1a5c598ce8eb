// The automation driver: the panel's real controls, acted on as a user's input does and read as
// they are.
#pragma once

#include <QJsonObject>
#include <QString>

class QWidget;

namespace labelcut::script {

/// All of these throw Refusal for a control that is absent and, but for setState(), hidden or
/// disabled; `view` may be null, then every control is absent.
void click(QWidget* view, const QString& control);
void enter(QWidget* view, const QString& text);
void type(QWidget* view, const QString& text);
void step(QWidget* view, int value);
void choosePopUp(QWidget* view, int tag);
void setState(QWidget* view, const QString& control, int state);

/// What can be seen of every control, by field name; null for what is absent.
QJsonObject controls(const QWidget* view);
QJsonValue popUp(const QWidget* view);
/// Position of the preview within the view, or null when it is not in there.
QJsonValue previewPlace(const QWidget* view);

} // namespace labelcut::script
