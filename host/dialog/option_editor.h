// The dialog: one PPD option as a field, with its custom values and the way back to the default.
#pragma once

#include <QWidget>

#include <vector>

#include "host/dialog/job_model.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QToolButton;

namespace labelcut {

/// A pop-up of the option's choices; fields for the custom value while that is chosen; a button
/// that goes back to the printer's default. It reads and writes the model's marks only.
class OptionEditor : public QWidget {
    Q_OBJECT
public:
    /// @param keyword  an option of the model's PPD.
    OptionEditor(JobModel& model, const QString& keyword, QWidget* parent = nullptr);

    /// Shows what is marked now.
    void refresh();
    QComboBox* choices() { return mChoices; }
    /// What is wrong with what was typed, as a sentence; empty while it can be taken. Until it is
    /// put right the marks stay as they are.
    QString problem() const;

private:
    struct CustomField {
        ppd::CustomParameter parameter;
        /// Names the field where there are several; null where there is one.
        QLabel* label;
        QLineEdit* edit;
    };
    void addCustomFields();
    void showCustomFields(bool shown);
    void choiceActivated();
    void customEdited();
    const CustomField* firstRefused() const;
    QString customValue() const;
    void showCustomValue(const QString& value);

    JobModel& mModel;
    QString mKeyword;
    QComboBox* mChoices;
    QToolButton* mReset;
    std::vector<CustomField> mCustom;
    QLabel* mBounds;
    /// What is marked while something else stands in the fields that cannot be taken.
    std::optional<QString> mRefusedOver;
};

} // namespace labelcut
