// Cut-options panel: its share of the dialog's summary, composed afresh on every call.
#include "plugins/cut_options/options/option_pde.h"

namespace labelcut {

namespace {

/// The order in which the dialog shows the entries; it is not the order of the options' table.
constexpr std::uint32_t kSummaryOrder[] = {
    item::kCutLabel,    item::kAutoCut,    item::kCutAtEnd, item::kHalfCut,
    item::kSpecialTape, item::kChainPrint, item::kMirror,   item::kRemoveBlkSpace,
};

QString userTitle(const PDEChoice& choice) {
    return choice.userTitle().value_or(QString());
}

} // namespace

QString OptionPDE13_v400_::summaryTitle(const Row& row) const {
    return titleOfOption(row.keyword, row.summaryTitleKey);
}

QString OptionPDE13_v400_::yesNoValue(const Row& row) const {
    switch (indexOfMarkedOption(this->*row.choices, QLatin1String(row.keyword))) {
    case 1:
        return localized(QStringLiteral("RS_STitle_Yes"));
    case 0:
        return localized(QStringLiteral("RS_STitle_No"));
    default:
        return userTitle(*(this->*row.selection));
    }
}

// Whether the tape is cut at all is read from automatic cut; the count from the selection.
QString OptionPDE13_v400_::countValue() const {
    switch (indexOfMarkedOption(mAutoCut_Choices, QLatin1String(keyword::kAutoCut))) {
    case 0:
        return localized(QStringLiteral("RS_STitle_No"));
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
    for (const std::uint32_t itemBit : kSummaryOrder) {
        const Row& row = rowOf(itemBit);
        const bool isCount = itemBit == item::kCutLabel;
        if (!(this->*row.selection) || (itemBit == item::kAutoCut && mCutEvery_Selection) ||
            (itemBit == item::kRemoveBlkSpace && mTapeState != 0))
            continue;
        const QString title = summaryTitle(row);
        order.append(title);
        summary.insert(title, isCount ? countValue() : yesNoValue(row));
    }
    // Last, so that the whole list stands there whatever an option is called.
    summary.insert(QLatin1String(kSummaryDisplayOrder), order);
    return summary;
}

} // namespace labelcut
