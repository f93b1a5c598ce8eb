// The dialog: every option of the printer that no panel and no other page shows.
#include "host/dialog/features_page.h"

#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QTextDocument>
#include <QVBoxLayout>

#include "host/dialog/option_editor.h"
#include "host/dialog/plain_label.h"
#include "host/settings/ppd_records.h"
#include "host/texts/host_text.h"

namespace labelcut {

namespace {

constexpr char kInstallable[] = "InstallableOptions";
/// Longer titles of groups are cut short.
constexpr int kTitleLetters = 30;

QGroupBox* groupBox(const QString& title) {
    auto* box = new QGroupBox;
    const QFontMetrics metrics = box->fontMetrics();
    const QString fitting =
        metrics.elidedText(title, Qt::ElideRight, kTitleLetters * metrics.averageCharWidth());
    box->setTitle(QString(fitting).replace(u'&', QStringLiteral("&&")));
    box->setToolTip(fitting == title ? QString()
                                     : Qt::convertFromPlainText(title, Qt::WhiteSpaceNormal));
    box->setAccessibleName(title);
    return box;
}

} // namespace

FeaturesPage::FeaturesPage(JobModel& model, QWidget* parent)
    : QScrollArea(parent)
    , mModel(model) {
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    auto* page = new QWidget;
    new QVBoxLayout(page);
    setWidget(page);
    // What is in it takes the focus, and is scrolled to.
    setFocusPolicy(Qt::NoFocus);
    viewport()->setAutoFillBackground(false);
    page->setAutoFillBackground(false);
    const QStringList elsewhere = model.panelKeywords() + QStringList{QStringLiteral("PageSize"),
                                                                      QStringLiteral("PageRegion")};
    for (const ppd_group_t& group : ppd::groupsOf(model.ppd()))
        addGroup(group, elsewhere);
    if (mEditors.empty()) {
        auto* none = new QLabel(hostText("NoFeatures"));
        none->setAlignment(Qt::AlignCenter);
        page->layout()->addWidget(none);
    }
    static_cast<QVBoxLayout*>(page->layout())->addStretch(1);
}

void FeaturesPage::addGroup(const ppd_group_t& group, const QStringList& elsewhere) {
    if (QLatin1String(group.name) == QLatin1String(kInstallable))
        return;
    auto* box = groupBox(QString::fromUtf8(group.text));
    auto* form = new QFormLayout(box);
    form->setFieldGrowthPolicy(QFormLayout::FieldsStayAtSizeHint);
    form->setRowWrapPolicy(QFormLayout::WrapLongRows);
    for (const ppd_option_t& option : ppd::optionsOf(group)) {
        const QString keyword = QString::fromUtf8(option.keyword);
        if (elsewhere.contains(keyword) || option.num_choices == 0)
            continue;
        auto* editor = new OptionEditor(mModel, keyword, *box);
        form->addRow(fieldLabel(QString::fromUtf8(option.text), *editor->choices()), editor);
        connect(editor, &OptionEditor::problemChanged, this, [this] { problemChanged(); });
        mEditors.push_back(editor);
    }
    if (form->rowCount() == 0)
        delete box;
    else
        QScrollArea::widget()->layout()->addWidget(box);
}

void FeaturesPage::refresh(const JobChanges& changes) {
    for (OptionEditor* editor : mEditors) {
        if (changes.keywords.contains(editor->keyword()))
            editor->refresh();
    }
}

PageProblem FeaturesPage::problem() const {
    for (OptionEditor* editor : mEditors) {
        if (const QString problem = editor->problem(); !problem.isEmpty())
            return {problem, editor->problemField()};
    }
    return {};
}

} // namespace labelcut
