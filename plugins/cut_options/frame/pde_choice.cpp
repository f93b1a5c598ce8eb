// Plug-in frame: one choice of a PPD option, as panels hold it.
#include "plugins/cut_options/frame/pde_choice.h"

#include <cstring>

#include "platform/printing/ppd_lookup.h"
#include "platform/toolkit/text_encoding.h"

namespace labelcut {

namespace {

/// PPDs are localised before panels see them; their texts are then UTF-8.
const bool userTitlesAreUtf8 = true;

std::optional<QString> decodeUserTitle(const char* text) {
    return userTitlesAreUtf8 ? decodeCString(text, TextEncoding::Utf8)
                             : decodeCString(text, TextEncoding::SystemDefault);
}

QString orNull(const std::optional<QString>& text) {
    return text.value_or(QStringLiteral("(null)"));
}

} // namespace

bool equalKeywords(const char* a, const char* b) {
    return std::strncmp(a, b, ppd::kMaxName) == 0;
}

const std::optional<QString>& PDEChoice::userTitle() const {
    if (!mUserTitle.built)
        mUserTitle = {true, decodeUserTitle(mChoice->text)};
    return mUserTitle.text;
}

const std::optional<QString>& PDEChoice::ppdTitle() const {
    if (!mPPDTitle.built)
        mPPDTitle = {true, decodeCString(mChoice->choice, TextEncoding::Ascii)};
    return mPPDTitle.text;
}

bool PDEChoice::isDefaultChoice() const {
    return equalKeywords(mChoice->choice, mChoice->option->defchoice);
}

QString PDEChoice::description() const {
    const ppd_option_t& option = *mChoice->option;
    return QStringLiteral(
               "<PDEChoice %1 userTitle:\"%2\" ppdTitle:\"%3\" marked:%4 choice:%5 of %6>")
        .arg(QStringLiteral("0x%1").arg(reinterpret_cast<quintptr>(this), 0, 16),
             orNull(userTitle()), orNull(ppdTitle()),
             mChoice->marked ? QStringLiteral("YES") : QStringLiteral("NO"),
             QString::number(mChoice - option.choices + 1), QString::number(option.num_choices));
}

} // namespace labelcut
