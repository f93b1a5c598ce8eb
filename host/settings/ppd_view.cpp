// Settings: what a PPD says, without libcups' records.
#include "host/settings/ppd_view.h"

#include <cmath>

#include "host/settings/custom_value.h"
#include "host/settings/ppd_calls.h"
#include "host/settings/ppd_records.h"

namespace labelcut {

namespace {

/// A look at the flags of an option's choices takes far less than one at all that is marked.
std::optional<QString> markedOf(ppd_file_t* file, const ppd_option_t& option) {
    // Of several that are marked, libcups knows which one it names.
    if (option.ui == PPD_UI_PICKMANY)
        return ppd::markedValue(file, option.keyword);
    for (const ppd_choice_t& choice : ppd::choicesOf(option)) {
        if (!choice.marked)
            continue;
        if (qstrcmp(choice.choice, "Custom") == 0)
            return ppd::markedValue(file, option.keyword);
        return QString::fromUtf8(choice.choice);
    }
    return std::nullopt;
}

ppd_option_t* find(ppd_file_t* file, const QString& keyword) {
    return ppd::findOption(file, keyword.toUtf8().constData());
}

} // namespace

QString PpdView::name() const {
    if (!mFile)
        return {};
    for (const char* name :
         {mFile->nickname, mFile->shortnickname, mFile->modelname, mFile->product}) {
        if (name && *name)
            return QString::fromUtf8(name);
    }
    return {};
}

bool PpdView::hasContent() const {
    return mFile && (mFile->num_groups > 0 || mFile->num_sizes > 0);
}

bool PpdView::hasOption(const QString& keyword) const {
    return find(mFile, keyword) != nullptr;
}

std::vector<PpdView::Group> PpdView::groups() const {
    std::vector<Group> all;
    for (const ppd_group_t& group : ppd::groupsOf(mFile)) {
        all.push_back({QString::fromUtf8(group.name), QString::fromUtf8(group.text), {}});
        for (const ppd_option_t& option : ppd::optionsOf(group))
            all.back().options.push_back(
                {QString::fromUtf8(option.keyword), QString::fromUtf8(option.text)});
    }
    return all;
}

std::vector<PpdView::Choice> PpdView::choices(const QString& keyword) const {
    std::vector<Choice> all;
    const ppd_option_t* option = find(mFile, keyword);
    if (!option)
        return all;
    for (const ppd_choice_t& choice : ppd::choicesOf(*option))
        all.push_back({QString::fromUtf8(choice.choice), QString::fromUtf8(choice.text)});
    return all;
}

std::optional<QString> PpdView::defaultChoice(const QString& keyword) const {
    const ppd_option_t* option = find(mFile, keyword);
    if (!option)
        return std::nullopt;
    // The PPD may name a default that it lacks, or in another case.
    for (const ppd_choice_t& choice : ppd::choicesOf(*option)) {
        if (qstricmp(choice.choice, option->defchoice) == 0)
            return QString::fromUtf8(choice.choice);
    }
    return std::nullopt;
}

QString PpdView::title(const QString& keyword) const {
    const ppd_option_t* option = find(mFile, keyword);
    return option ? QString::fromUtf8(option->text) : keyword;
}

QString PpdView::title(const Setting& setting) const {
    const ppd_choice_t* choice =
        ppd::findChoice(find(mFile, setting.keyword), setting.choice.toUtf8().constData());
    return choice ? QString::fromUtf8(choice->text) : setting.choice;
}

std::optional<QString> PpdView::marked(const QString& keyword) const {
    return ppd::markedValue(mFile, keyword.toUtf8().constData());
}

Settings PpdView::marks() const {
    Settings all;
    for (const ppd_group_t& group : ppd::groupsOf(mFile)) {
        for (const ppd_option_t& option : ppd::optionsOf(group)) {
            if (QLatin1String(option.keyword) == kPageRegion)
                continue;
            if (auto choice = markedOf(mFile, option))
                all.push_back({QString::fromUtf8(option.keyword), std::move(*choice)});
        }
    }
    return all;
}

std::optional<PpdView::LabelSize> PpdView::labelSize() const {
    const ppd_size_t* size = ppd::markedPageSize(mFile);
    if (!size)
        return std::nullopt;
    const auto points = [](float value) { return static_cast<double>(value); };
    return LabelSize{QString::fromUtf8(size->name),
                     {points(size->width), points(size->length)},
                     {points(size->left), points(size->length - size->top),
                      points(size->width - size->right), points(size->bottom)}};
}

std::optional<QString> PpdView::labelSizeFor(const QSizeF& size) const {
    constexpr double kSame = 0.5 * 72 / 25.4 + 0.5;
    if (!mFile || !hasOption(kPageSize))
        return std::nullopt;
    for (const ppd_size_t& known : ppd::sizesOf(*mFile)) {
        const double width = static_cast<double>(known.width);
        const double length = static_cast<double>(known.length);
        if (std::abs(width - size.width()) <= kSame && std::abs(length - size.height()) <= kSame)
            return QString::fromUtf8(known.name);
    }
    const QString own =
        QStringLiteral("Custom.%1x%2")
            .arg(QString::number(size.width(), 'f', 2), QString::number(size.height(), 'f', 2));
    ppd_option_t* option = ppd::findOption(mFile, kPageSize.data());
    if (option && ppd::findChoice(option, kCustom.data()) && takesCustomValue(mFile, *option, own))
        return own;
    return std::nullopt;
}

} // namespace labelcut
