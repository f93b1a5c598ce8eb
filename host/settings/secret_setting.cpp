// Settings: custom values that are passwords, which nobody but the printer may see or keep.
#include "host/settings/secret_setting.h"

#include <algorithm>

#include "host/settings/custom_value.h"
#include "host/settings/ppd_view.h"

namespace labelcut {

namespace {

/// Always as many, so that they do not give away how long the password is.
const QString kDots = QStringLiteral("••••");

bool isPassword(const ppd::CustomParameter& parameter) {
    return parameter.type == ppd::CustomParameter::Type::Password;
}

} // namespace

bool isSecret(ppd_file_t* ppd, const Setting& setting) {
    return isCustomValue(setting.choice) &&
           std::ranges::any_of(CustomForm(ppd, setting.keyword).parameters(), isPassword);
}

QString shownChoice(ppd_file_t* ppd, const Setting& setting) {
    if (!isSecret(ppd, setting))
        return setting.choice;
    const CustomForm form(ppd, setting.keyword);
    std::optional<QStringList> values = form.takenApart(setting.choice);
    // Where it is not clear which part is the password, all of it may be.
    if (!values)
        return kCustom + u'.' + kDots;
    for (qsizetype i = 0; i < values->size(); ++i) {
        if (isPassword(form.parameters()[static_cast<std::size_t>(i)]))
            (*values)[i] = kDots;
    }
    return form.composed(*values);
}

QStringList takeSecrets(ppd_file_t* ppd, Settings& settings) {
    QStringList titles;
    std::erase_if(settings, [&](const Setting& setting) {
        if (!isSecret(ppd, setting))
            return false;
        titles << PpdView(ppd).title(setting.keyword);
        return true;
    });
    return titles;
}

} // namespace labelcut
