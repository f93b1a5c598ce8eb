// Settings: what a PPD says, without libcups' records.
//
// The host reads options, choices, titles and label sizes through this view; what is marked changes
// through host/settings/ppd_calls.h. Another library for PPDs has to fill this view, and the rest
// of the host stays as it is.
#pragma once

#include <QMarginsF>
#include <QSizeF>
#include <QString>
#include <QStringList>

#include <cups/ppd.h>

#include <optional>
#include <vector>

#include "host/settings/setting.h"

namespace labelcut {

/// Borrows the file for its own life; copied at will. A null file is an empty PPD. Keywords are
/// compared as libcups does, without regard to case; what is answered is spelled as in the PPD.
/// Titles are in the language in which the file was opened, as plain text.
class PpdView {
public:
    struct Choice {
        QString keyword;
        QString title;
    };
    struct Option {
        QString keyword;
        QString title;
    };
    struct Group {
        QString keyword;
        QString title;
        std::vector<Option> options;
    };
    /// A label size. Points, 1/72 inch.
    struct LabelSize {
        QString keyword;
        /// Width, and length in feed direction; either may be 0 or less in a faulty PPD.
        QSizeF size;
        /// What the printer leaves free at each edge; may be negative in a faulty PPD.
        QMarginsF margins;
    };

    explicit PpdView(ppd_file_t* file)
        : mFile(file) {}

    /// What the printer calls itself; empty when the PPD does not say.
    QString name() const;
    /// Whether there is anything to choose: a PPD that damage has emptied has nothing.
    bool hasContent() const;

    bool hasOption(const QString& keyword) const;
    /// All options in their groups, in the PPD's order; those of a group within a group stand in
    /// the outer one.
    std::vector<Group> groups() const;
    /// The option's choices in the PPD's order; empty for an unknown option.
    std::vector<Choice> choices(const QString& keyword) const;
    /// The choice that the PPD has by default, as the list of choices spells it; nothing when there
    /// is none among them.
    std::optional<QString> defaultChoice(const QString& keyword) const;

    /// The option's title; its keyword when the PPD lacks it.
    QString title(const QString& keyword) const;
    /// The choice's title; the choice itself for a value of the user's own and an unknown one.
    QString title(const Setting& setting) const;

    /// What is marked; nothing when nothing is. A value of the user's own as Setting says.
    std::optional<QString> marked(const QString& keyword) const;
    /// What is marked for every option but the label size's twin, in the PPD's order.
    Settings marks() const;
    /// The marked label size, with the measure of the user's own; nothing when none is marked.
    std::optional<LabelSize> labelSize() const;
    /// The choice of the label size for labels of that measure, to half a millimetre: one of the
    /// PPD's, else one of the user's own where the PPD takes it; nothing otherwise.
    /// @param size  in points, width and length in feed direction.
    std::optional<QString> labelSizeFor(const QSizeF& size) const;

private:
    ppd_file_t* mFile;
};

} // namespace labelcut
