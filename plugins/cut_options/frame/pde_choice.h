// Plug-in frame: one choice of a PPD option, as panels hold it.
#pragma once

#include <QString>

#include <cups/ppd.h>

#include <optional>
#include <vector>

namespace labelcut {

/// A choice with its two titles: userTitle() is shown, ppdTitle() is compared with keywords and
/// sent to the host. The record borrows the choice from the host's opened PPD and must not outlive
/// it. Titles are built on first request and kept.
class PDEChoice {
public:
    /// @param choice  must not be null.
    static PDEChoice choiceWithChoice(const ppd_choice_t* choice) { return PDEChoice(choice); }
    explicit PDEChoice(const ppd_choice_t* choice)
        : mChoice(choice) {}

    /// The choice's translated text; nothing when it is not valid UTF-8.
    const std::optional<QString>& userTitle() const;
    /// The choice keyword; nothing when it is not ASCII.
    const std::optional<QString>& ppdTitle() const;
    const ppd_choice_t* choice() const { return mChoice; }
    /// Whether this is the choice that the option's *Default line names.
    bool isDefaultChoice() const;
    /// One line for debugging.
    QString description() const;

private:
    /// A title that may turn out to be absent, and whether it was looked for already.
    struct LazyTitle {
        bool built = false;
        std::optional<QString> text;
    };

    mutable LazyTitle mUserTitle;
    mutable LazyTitle mPPDTitle;
    const ppd_choice_t* mChoice;
};

/// An option's choices in the PPD's order. Selections point into it, so it is never changed.
using PDEChoiceArray = std::vector<PDEChoice>;
/// Nothing for an option that the PPD lacks; an option without choices has an empty array.
using PDEChoices = std::optional<PDEChoiceArray>;

/// Whether two PPD keywords are equal over the width that the PPD format gives them.
bool equalKeywords(const char* a, const char* b);

} // namespace labelcut
