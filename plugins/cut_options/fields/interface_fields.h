// Input fields: what an interface file can ask for.
//
// A widget of class textFieldClassName() becomes a focus-notifying text field. A QLineEdit, that
// one included, gets a formatter when it has the dynamic property "formatterStyle"; all five are
//   formatterStyle       number: the text style, see pde_formatter.h
//   formatterMinValue    number: lower bound; its check is on when it is given
//   formatterMaxValue    number: upper bound; likewise
//   formatterMaxLength   number: greatest length of the text in bytes
//   formatterFormat      string: format of the conversions, "%@" when not given
// A property that is no number where one is wanted is as if it were not given.
#pragma once

#include <QString>

#include <functional>

class QLineEdit;
class QObject;
class QWidget;

namespace labelcut {

/// Class name by which an interface file names the focus-notifying text field.
QString textFieldClassName();

/// A focus-notifying text field. @param parent  owns it; may be null.
QLineEdit* createTextField(QWidget* parent);

/// Attaches the formatters that the properties in a loaded interface file ask for.
/// @param root  the top widget; it and all below it are looked at. Null does nothing.
void attachFormatters(QWidget* root);

/// Tells a delegate of every change of a field's text by the user, unless the field keeps them to
/// itself as a focus-notifying text field does.
/// @param field                 null does nothing.
/// @param delegate              calls end when it is destroyed; must not be null.
/// @param controlTextDidChange  called with the field after each change.
void setTextDelegate(QLineEdit* field, QObject* delegate,
                     std::function<void(QLineEdit*)> controlTextDidChange);

} // namespace labelcut
