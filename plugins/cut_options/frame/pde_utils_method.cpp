// Plug-in frame: every reading of the printer's PPD.
#include "plugins/cut_options/frame/pde_utils_method.h"

#include <QLocale>
#include <QRegularExpression>

#include <algorithm>
#include <cmath>
#include <span>

#include "platform/printing/ppd_lookup.h"
#include "platform/toolkit/text_encoding.h"

namespace labelcut {

namespace {

double coordinate(QStringView text) {
    const double number = QLocale::c().toDouble(text.trimmed());
    return std::isfinite(number) ? number : 0.0;
}

} // namespace

std::optional<QString> PDEUtilsMethod13::ppdAttrValStr(ppd_file_t* ppd, const char* cStrKey) {
    const ppd_attr_t* attribute = ppd::findAttr(ppd, cStrKey);
    if (!attribute || !attribute->value)
        return std::nullopt;
    return decodeCString(attribute->value, TextEncoding::SystemDefault);
}

std::optional<QString> PDEUtilsMethod13::ppdOptionTextStr(ppd_file_t* ppd, const char* cStrKey) {
    const ppd_option_t* option = ppd::findOption(ppd, cStrKey);
    return option ? decodeCString(option->text, TextEncoding::SystemDefault) : std::nullopt;
}

bool PDEUtilsMethod13::isSupportedItem(ppd_file_t* ppd, const char* cStrKey) {
    return ppdAttrValStr(ppd, cStrKey) == QStringLiteral("False");
}

Point PDEUtilsMethod13::originItem(ppd_file_t* ppd, const char* cStrKey) {
    return pointFromString(ppdAttrValStr(ppd, cStrKey).value_or(QString()));
}

Point pointFromString(const QString& text) {
    static const QRegularExpression notation(QStringLiteral(R"(^\s*+\{([^,{}]*+),([^,{}]*+)\})"));
    // Without a match both are empty, which is 0.
    const QRegularExpressionMatch match = notation.match(text);
    return {coordinate(match.capturedView(1)), coordinate(match.capturedView(2))};
}

PDEChoices PDEUtilsMethod13::arrayFromPPDOption(const ppd_option_t* option) {
    if (!option)
        return std::nullopt;
    const auto count = static_cast<std::size_t>(std::max(option->num_choices, 0));
    PDEChoiceArray array;
    array.reserve(count);
    for (const ppd_choice_t& choice : std::span(option->choices, count))
        array.push_back(PDEChoice::choiceWithChoice(&choice));
    return array;
}

const PDEChoice* PDEUtilsMethod13::findChoiceForString(const std::optional<QString>& text,
                                                       const PDEChoices& choices) {
    if (!choices)
        return nullptr;
    const auto found = std::ranges::find_if(*choices, [&](const PDEChoice& choice) {
        return text ? choice.ppdTitle() == text : choice.isDefaultChoice();
    });
    return found == choices->end() ? nullptr : &*found;
}

std::optional<QString> PDEUtilsMethod13::newOptionTitle(const ppd_option_t* option) {
    return option ? decodeCString(option->text, TextEncoding::Utf8) : std::nullopt;
}

std::optional<QString> PDEUtilsMethod13::newChoiceTitle(const ppd_choice_t* choice) {
    return choice ? decodeCString(choice->text, TextEncoding::Utf8) : std::nullopt;
}

} // namespace labelcut
