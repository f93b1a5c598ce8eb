// Plug-in frame: every reading of the printer's PPD, and the colour of a control's text.
#pragma once

#include <QString>

#include <cups/ppd.h>

#include <optional>

#include "platform/toolkit/handles.h"
#include "plugins/cut_options/frame/pde_choice.h"

namespace labelcut {

/// Looks things up in a PPD. A key is a PPD main keyword without the asterisk. A null PPD, option
/// or key gives what the PPD lacks: nothing, false or zero; none of these reports an error.
class PDEUtilsMethod13 {
public:
    /// The attribute's value in the system's default encoding; nothing when there is no such
    /// attribute, it has no value, or the value cannot be decoded.
    static std::optional<QString> ppdAttrValStr(ppd_file_t* ppd, const char* cStrKey);
    /// The option's text in the system's default encoding.
    static std::optional<QString> ppdOptionTextStr(ppd_file_t* ppd, const char* cStrKey);
    /// True exactly when the attribute's value is "False": attributes that are asked this way name
    /// something hidden, so "False" means that the item is to be shown.
    static bool isSupportedItem(ppd_file_t* ppd, const char* cStrKey);
    /// The attribute's value read as a point, "{x, y}"; the zero point when it is absent or empty.
    static Point originItem(ppd_file_t* ppd, const char* cStrKey);
    /// The option's choices, first to last; nothing for no option.
    static PDEChoices arrayFromPPDOption(const ppd_option_t* option);
    /// The first choice whose keyword equals the text, case included; without a text the first that
    /// is the option's default. Borrowed from the array; null when none matches.
    static const PDEChoice* findChoiceForString(const std::optional<QString>& text,
                                                const PDEChoices& choices);
    /// The option's translated text; nothing when it is not valid UTF-8.
    static std::optional<QString> newOptionTitle(const ppd_option_t* option);
    static std::optional<QString> newChoiceTitle(const ppd_choice_t* choice);
    static constexpr bool runningOn105OrLater() { return true; }

    /// Gives a control that can take a text colour the normal one when `enabled` is exactly 1 and
    /// the disabled one otherwise; leaves any other control alone.
    template<typename Control>
    static void setEnabledForText(int enabled, Control& item) {
        if constexpr (requires { item.setTextColor(TextColor::Control); })
            item.setTextColor(enabled == 1 ? TextColor::Control : TextColor::DisabledControl);
    }
};

/// Two numbers in braces, separated by a comma; blanks are free. What is not a finite number is 0,
/// and so are both when the text is anything else. Takes time in proportion to the text.
Point pointFromString(const QString& text);

} // namespace labelcut
