// The dialog: one PPD option as a field, with its custom values and the way back to the default.
#pragma once

#include <QGridLayout>

#include <optional>
#include <vector>

#include "host/dialog/custom_field.h"
#include "host/dialog/eliding_combo_box.h"
#include "host/dialog/job_model.h"
#include "host/settings/custom_value.h"

class QLabel;
class QToolButton;

namespace labelcut {

/// A pop-up of the option's choices; below it, while "Custom" is chosen, fields for its values; a
/// button that goes back to the printer's default. It reads and writes the model's marks only.
///
/// It is a layout and not a widget, so that a label beside it stands next to the pop-up that it
/// names: screen readers look for a field's label among its siblings.
class OptionEditor : public QGridLayout {
    Q_OBJECT
public:
    /// @param keyword  an option of the model's PPD.
    /// @param page     parent of the widgets; the layout is put into a layout of this widget.
    OptionEditor(JobModel& model, const QString& keyword, QWidget& page);

    /// Shows what is marked now.
    void refresh();
    const QString& keyword() const { return mKeyword; }
    QComboBox* choices() { return mChoices; }
    /// What is wrong with what was typed, as a sentence; empty while it can be taken. Until it is
    /// put right the marks stay as they are.
    QString problem() const;
    /// The field that holds what cannot be taken; the pop-up while there is none.
    QWidget* problemField() const;

Q_SIGNALS:
    /// What problem() says may be something else now.
    void problemChanged();

private:
    void buildChoices();
    void buildReset();
    void buildFields(QWidget& page);
    void setShown(QWidget& part, bool shown);
    void showFields(bool shown);
    void showValues(const QString& choice);
    void showProblem();
    void choiceActivated();
    void goBack();
    void takeTyped();
    CustomField* firstRefused() const;
    std::optional<QString> typedChoice() const;

    JobModel& mModel;
    QString mKeyword;
    QString mTitle;
    CustomForm mForm;
    ElidingComboBox* mChoices;
    QToolButton* mReset;
    std::vector<CustomField*> mFields;
    QLabel* mBounds;
    /// What is marked while something else stands in the fields that cannot be taken.
    std::optional<QString> mRefusedOver;
};

} // namespace labelcut
