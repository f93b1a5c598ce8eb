// Tests of the dialog: real windows on printers of the tests' own, and hands to use them.
#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTemporaryDir>

#include <memory>

#include "host/dialog/job_description.h"
#include "host/dialog/message_bar.h"
#include "host/dialog/print_dialog.h"
#include "tests/support/event_loop.h"
#include "tests/support/expected_warnings.h"
#include "tests/support/program.h"
#include "tests/support/surroundings.h"

namespace labelcut::test {

/// Labels in the sample document.
inline constexpr int kLabelCount = 12;

/// The plug-ins of the build tree.
const PluginSearch& plugins();
const PDESystem& hostSystem();

/// While one lives, the user's configuration and home are empty folders of the test's own.
class PrivateHome {
public:
    PrivateHome();
    QString path(const QString& name) const { return mFolder.filePath(name); }

private:
    QTemporaryDir mFolder;
    Environment mHome{"HOME", QFile::encodeName(mFolder.path())};
    Environment mConfig{"XDG_CONFIG_HOME", QFile::encodeName(path(QStringLiteral("config")))};
};

/// The sample printer for tape, in a file of its own with more at its end.
QString extendedPpd(const PrivateHome& home, const QByteArray& more);

/// The same printer, on which these exclude each other as well:
/// half cut and draft quality; dark print and best quality.
QString conflictingPpd(const PrivateHome& home);

/// While one lives, windows are shown, about which the platform without a screen complains.
class Offscreen {
private:
    ExpectedWarning mComplaint{QStringLiteral("^This plugin does not support "),
                               ExpectedWarning::Arrival::Possible};
};

/// A printer known by its PPD, open with the plug-ins of the build tree.
std::unique_ptr<OpenedPrinter> openedPpd(const QString& path, const Settings& wanted = {});

/// The name of the model's queue; empty for a printer without one.
QString queueOf(const JobModel& model);

/// A way to no print service.
CupsConnection noService();

/// Looks at every page once, which makes it, and comes back to the first.
void lookAtEveryPage(PrintDialog& dialog);
/// A dialog that is on the screen, every page looked at, with the sample labels unless told
/// otherwise.
std::unique_ptr<PrintDialog> openDialog(const DialogRequest& request,
                                        const CupsConnection& service = noService());
/// The same for a PPD given by hand.
std::unique_ptr<PrintDialog> openDialog(const QString& ppd, const Settings& choices = {});
/// Waits until what was scheduled is done.
void settle();
/// The same once the PPD that is on its way is read.
void settleWithPrinter(const PrintDialog& dialog);

/// The same once the search for a way out of a conflict has ended, where one is on.
void settleWithFix(PrintDialog& dialog);

/// A child by its object name; fails the running test when there is none.
template<typename Widget>
Widget* part(const QWidget& root, const char* name) {
    auto* found = root.findChild<Widget*>(QLatin1String(name));
    if (!found)
        qFatal("the dialog has no \"%s\"", name);
    return found;
}

/// Whether the user could act on it: it is on the screen and enabled.
bool isUsable(const QWidget& widget);
/// What a mouse does in the middle of it; a checkbox is hit at its box.
void click(QWidget& widget);
/// Types into the field as it stands, or in place of all of its text.
void type(QLineEdit& field, const QString& text);
/// Opens the pop-up by keyboard and chooses the entry at `index`.
void choose(QComboBox& box, int index);
/// The same by the entry's data.
void choose(QComboBox& box, const QString& data);
/// The page of that position comes to the front.
/// The tabs of a printer with one panel.
inline constexpr int kPanelTab = 0;
inline constexpr int kFeaturesTab = 1;
inline constexpr int kSummaryTab = 2;
void openTab(PrintDialog& dialog, int index);
/// The pop-up of a PPD option on the dialog's own pages.
QComboBox& optionBox(const PrintDialog& dialog, const char* keyword);
/// A button of a message that offers something, by the start of its text; null: there is none.
QPushButton* offer(const MessageBar& bar, const QString& start);

} // namespace labelcut::test
