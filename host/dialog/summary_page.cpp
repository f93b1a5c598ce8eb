// The dialog: everything that is chosen, and the same job as a command.
#include "host/dialog/summary_page.h"

#include <QApplication>
#include <QClipboard>
#include <QFontDatabase>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

#include <utility>

#include "host/dialog/plain_label.h"
#include "host/texts/host_text.h"

namespace labelcut {

namespace {

/// At least; more where there is room.
constexpr int kCommandLines = 3;
/// Characters that stand in one line.
constexpr int kUnwrapped = 24;

QLabel* selectableLabel(const QString& text) {
    QLabel* label = plainLabel(text);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setWordWrap(text.size() > kUnwrapped);
    return label;
}

void setText(QPlainTextEdit& field, const QString& text) {
    if (field.toPlainText() != text)
        field.setPlainText(text);
}

QLabel* headingLabel(const QString& text) {
    QLabel* label = plainLabel(text);
    QFont bold = label->font();
    bold.setBold(true);
    label->setFont(bold);
    return label;
}

/// Commands are for those who ask for them.
QToolButton* unfoldingButton(QWidget& commands) {
    auto* button = new QToolButton;
    button->setObjectName(QStringLiteral("showCommands"));
    button->setText(hostText("ShowAsCommand"));
    button->setAutoRaise(true);
    button->setCheckable(true);
    button->setFocusPolicy(Qt::StrongFocus);
    button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    button->setArrowType(Qt::DownArrow);
    commands.hide();
    QObject::connect(button, &QToolButton::toggled, &commands, [button, &commands](bool isShown) {
        commands.setVisible(isShown);
        button->setArrowType(isShown ? Qt::UpArrow : Qt::DownArrow);
    });
    return button;
}

} // namespace

SummaryPage::SummaryPage(JobModel& model, QWidget* parent)
    : QScrollArea(parent)
    , mModel(model) {
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    auto* page = new QWidget;
    setWidget(page);
    // What is in it takes the focus, and is scrolled to.
    setFocusPolicy(Qt::NoFocus);
    viewport()->setAutoFillBackground(false);
    page->setAutoFillBackground(false);
    auto* choices = new QGroupBox(hostText("SummaryChoices"));
    choices->setObjectName(QStringLiteral("summary"));
    mEntries = new QFormLayout(choices);
    mEntries->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    auto* commands = new QWidget;
    auto* column = new QVBoxLayout(commands);
    column->setContentsMargins(0, 0, 0, 0);
    mLabelcut = addCommand(*column, QStringLiteral("labelcut"), QStringLiteral("Labelcut"));
    mLp = addCommand(*column, QStringLiteral("lp"), QStringLiteral("Lp"));
    mLeftOut = plainLabel();
    mLeftOut->setObjectName(QStringLiteral("leftOutOfCommands"));
    mLeftOut->setWordWrap(true);
    column->addWidget(mLeftOut);
    auto* rows = new QVBoxLayout(page);
    rows->addWidget(choices);
    rows->addWidget(unfoldingButton(*commands), 0, Qt::AlignLeading);
    rows->addWidget(commands);
    rows->addStretch(1);
    showJob();
}

SummaryPage::Command SummaryPage::addCommand(QVBoxLayout& column, const QString& program,
                                             const QString& name) {
    auto* text = new QPlainTextEdit;
    text->setObjectName(QStringLiteral("command") + name);
    text->setReadOnly(true);
    text->setTabChangesFocus(true);
    text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    text->setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    text->setMinimumHeight(kCommandLines * text->fontMetrics().lineSpacing() +
                           2 * (text->frameWidth() + qRound(text->document()->documentMargin())));
    text->setAccessibleName(hostText("CommandFor").arg(program));
    // Shells are written from left to right everywhere.
    text->setLayoutDirection(Qt::LeftToRight);
    auto* copy = new QPushButton(hostText("Copy"));
    copy->setObjectName(QStringLiteral("copy") + name);
    copy->setAccessibleName(hostText("CopyCommandFor").arg(program));
    connect(copy, &QPushButton::clicked, text,
            [text] { QApplication::clipboard()->setText(text->toPlainText()); });

    auto* title = plainLabel(program);
    auto* row = new QWidget;
    auto* grid = new QGridLayout(row);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->addWidget(title, 0, 0);
    grid->addWidget(copy, 0, 1, Qt::AlignTrailing);
    grid->addWidget(text, 1, 0, 1, 2);
    column.addWidget(row);
    return {row, text};
}

/// Where the same lines are to be shown, only their values change.
void SummaryPage::showGroups(const std::vector<SummaryGroup>& groups) {
    QStringList titles;
    QStringList values;
    for (const SummaryGroup& group : groups) {
        titles << group.heading << QString();
        for (const auto& [title, value] : group.lines) {
            titles << title;
            values << value;
        }
    }
    if (std::exchange(mTitles, titles) != titles)
        buildLines(groups);
    for (qsizetype i = 0; i < values.size(); ++i)
        mValues[static_cast<std::size_t>(i)]->setText(values[i]);
}

void SummaryPage::buildLines(const std::vector<SummaryGroup>& groups) {
    mValues.clear();
    while (mEntries->rowCount() > 0)
        mEntries->removeRow(0);
    for (const SummaryGroup& group : groups) {
        mEntries->addRow(headingLabel(group.heading));
        for (const auto& [title, value] : group.lines) {
            mValues.push_back(selectableLabel(value));
            mEntries->addRow(selectableLabel(title), mValues.back());
        }
    }
}

/// Whatever changes is part of the summary.
void SummaryPage::refresh(const JobChanges&) {
    showJob();
}

void SummaryPage::showJob() {
    showGroups(wholeSummary(mModel));
    setText(*mLabelcut.text, mModel.hasPrinter() ? labelcutCommand(mModel) : QString());
    const QString lp = mModel.hasPrinter() ? lpCommand(mModel) : QString();
    setText(*mLp.text, lp);
    mLp.row->setVisible(!lp.isEmpty());
    QStringList sentences;
    for (const QString& title : leftOutOfCommands(mModel))
        sentences << hostText("PasswordLeftOut").arg(title);
    mLeftOut->setText(joinedSentences(sentences));
    mLeftOut->setVisible(!sentences.isEmpty());
}

} // namespace labelcut
