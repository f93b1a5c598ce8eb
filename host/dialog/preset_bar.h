// The dialog: choices that are kept under a name.
#pragma once

#include <QWidget>

#include "host/dialog/job_snapshot.h"
#include "host/presets/preset_store.h"

class QComboBox;
class QPushButton;
class QToolButton;

namespace labelcut {

class MessageBar;

/// The presets of the printer in force, with ways to apply, keep and remove one. The list shows a
/// preset's name for as long as the choices are those that it made.
class PresetBar : public QWidget {
    Q_OBJECT
public:
    /// @param model     borrowed, outlives this.
    /// @param messages  borrowed, outlives this; where it is told what was replaced or removed, and
    ///                  what cannot be done.
    PresetBar(JobModel& model, MessageBar& messages, QWidget* parent = nullptr);

    QComboBox& list() const { return *mList; }
    /// Lists the presets of the printer that the model has now.
    void reload();
    /// @param now  the model's state.
    void refresh(const JobSnapshot& now);

private:
    void list(const QString& chosen);
    void show(const QString& name);
    void apply(const QString& name);
    void askForName();
    void keep(const QString& name);
    void remove();
    void offerBack(const QString& sentence, const Preset& preset);
    void tell(const QStringList& sentences);
    PrinterIdentity identity() const;

    JobModel& mModel;
    MessageBar& mMessages;
    PresetStore mStore;
    QComboBox* mList;
    QPushButton* mSave;
    QToolButton* mRemove;
    /// The preset that was applied or kept last; empty: none was with this printer.
    QString mName;
    /// What it made of the job.
    JobSnapshot mMade;
};

} // namespace labelcut
