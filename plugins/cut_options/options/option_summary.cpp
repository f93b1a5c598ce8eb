// Cut-options panel: its share of the dialog's summary, and the remark below its controls; both
// composed afresh on every call.
#include "plugins/cut_options/options/option_pde.h"

namespace labelcut {

namespace {

constexpr char kYes[] = "RS_STitle_Yes";
constexpr char kNo[] = "RS_STitle_No";

QString userTitle(const PDEChoice& choice) {
    return choice.userTitle().value_or(QString());
}

} // namespace

QString OptionPDE13_v400_::summaryTitle(const Row& row) const {
    return titleOfOption(row.keyword, row.summaryTitleKey);
}

SummaryWords OptionPDE13_v400_::summaryWords() {
    return {localized(QLatin1String(kYes)), localized(QLatin1String(kNo))};
}

QString OptionPDE13_v400_::yesNoValue(const Row& row) const {
    switch (indexOfMarkedOption(this->*row.choices, QLatin1String(row.keyword))) {
    case 1:
        return localized(QLatin1String(kYes));
    case 0:
        return localized(QLatin1String(kNo));
    default:
        return userTitle(*(this->*row.selection));
    }
}

// Whether the tape is cut at all is read from automatic cut; the count from the selection.
QString OptionPDE13_v400_::countValue() const {
    switch (indexOfMarkedOption(mAutoCut_Choices, QLatin1String(keyword::kAutoCut))) {
    case 0:
        return localized(QLatin1String(kNo));
    case 1:
        return mCutEvery_Selection->ppdTitle().value_or(QString()) + u' ' +
               localized(QStringLiteral("RS_Labels"));
    default:
        return userTitle(*mCutEvery_Selection);
    }
}

std::optional<QVariantMap> OptionPDE13_v400_::summaryInfo() {
    QVariantMap summary;
    QStringList order;
    for (const Row* row : rowsBy(&Row::displayRank)) {
        if (!(this->*row->selection) || (row->item == item::kAutoCut && mCutEvery_Selection) ||
            (row->item == item::kRemoveBlkSpace && mTapeState != 0))
            continue;
        const QString title = summaryTitle(*row);
        order.append(title);
        summary.insert(title, row->item == item::kCutLabel ? countValue() : yesNoValue(*row));
    }
    // Last, so that the whole list stands there whatever an option is called.
    summary.insert(QLatin1String(kSummaryDisplayOrder), order);
    return summary;
}

QString OptionPDE13_v400_::remark() {
    if (!specialTapeExcludes())
        return {};
    QString titles;
    for (const Row* row : rowsBy(&Row::displayRank)) {
        const Button& box = this->*row->checkBox;
        if (row->exclusionRank == 0 || box.isHidden() || box.state() == 0)
            continue;
        titles = titles.isEmpty()
                     ? box.title()
                     : localized(QStringLiteral("RM_OneAfterAnother")).arg(titles, box.title());
    }
    if (titles.isEmpty())
        return {};
    return localized(QStringLiteral("RM_SpecialTapeExcludes"))
        .arg(mSpecialTapeChkBx.title(), titles);
}

} // namespace labelcut
