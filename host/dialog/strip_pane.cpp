// The dialog: the user's labels as they will come out, and what they take.
#include "host/dialog/strip_pane.h"

#include <QHBoxLayout>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

#include "host/dialog/job_model.h"
#include "host/dialog/label_window.h"
#include "host/dialog/line_icons.h"
#include "host/dialog/message_bar.h"
#include "host/dialog/misfit_message.h"
#include "host/dialog/steady_label.h"
#include "host/documents/job_document.h"
#include "host/job/marked_paper.h"
#include "host/strip/strip_words.h"
#include "host/texts/host_text.h"

namespace labelcut {

namespace {

const QString kPicturesMessage = QStringLiteral("pictures");
/// How many labels stand for a document that is not read yet.
constexpr int kPlaces = 3;

/// Pages of the label's own measure, in place of the document's.
std::shared_ptr<const DocumentPages> placesFor(ppd_file_t* ppd) {
    const std::optional<JobPaper> paper = markedPaper(ppd);
    if (!paper)
        return nullptr;
    auto pages = std::make_shared<DocumentPages>();
    pages->measures.assign(kPlaces, paper->size);
    pages->ofFiles = {kPlaces};
    return pages;
}

/// The direction on a label on which the page lies turned, clockwise.
PagePictures::TextDirection turned(PagePictures::TextDirection direction, bool isTurned) {
    using Direction = PagePictures::TextDirection;
    if (!isTurned || direction == Direction::None)
        return direction;
    return direction == Direction::AlongWidth ? Direction::Downwards : Direction::AlongWidth;
}

} // namespace

StripPane::StripPane(JobModel& model, MessageBar& messages, QWidget* parent)
    : QWidget(parent)
    , mModel(model)
    , mMessages(messages)
    , mStrip(new StripView)
    , mFigures(new SteadyLabel(QStringLiteral("figures")))
    , mTurn(new QToolButton) {
    mStrip->setAccessibleName(hostText("StripName"));
    mTurn->setObjectName(QStringLiteral("turnStrip"));
    mTurn->setAutoRaise(true);
    mTurn->setIcon(lineIcon(LineIcon::Turn));
    mTurn->setToolTip(hostText("StripTurn"));
    mTurn->setAccessibleName(hostText("StripTurn"));
    auto* below = new QHBoxLayout;
    below->addWidget(mFigures, 1);
    below->addWidget(mTurn);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(2);
    column->addWidget(mStrip);
    column->addLayout(below);

    mStrip->setPictures(
        [this](int page) { return mPictures.picture(page); },
        [this](int page) { return mPictures.state(page) == PagePictures::State::Failed; });
    connect(mStrip, &StripView::wishesChanged, this, [this] {
        std::vector<PagePictures::Wish> wishes;
        for (const StripView::Wish& wish : mStrip->wishes())
            wishes.push_back({wish.page, wish.pixels});
        mPictures.want(wishes);
    });
    connect(mStrip, &StripView::labelWanted, this, &StripPane::showLarge);
    connect(&mPictures, &PagePictures::drawn, this, [this](int page) {
        showWay();
        mStrip->pictureChanged(page);
    });
    connect(&mPictures, &PagePictures::failed, this, [this](const QString& sentence) {
        mMessages.show(kPicturesMessage, MessageBar::Kind::Warning, sentence);
    });
    connect(mTurn, &QToolButton::clicked, this, [this] {
        mWanted = mStrip->way() == StripWay::Along ? StripWay::Upright : StripWay::Along;
        showWay();
    });
}

/// A label shown large asks the strip and the pictures until its end.
StripPane::~StripPane() {
    delete mLarge;
}

void StripPane::setReading() {
    mFigures->setText(hostText("StripReading"));
}

bool StripPane::isDrawing() const {
    return std::ranges::any_of(mStrip->wishes(), [this](const StripView::Wish& wish) {
        return mPictures.state(wish.page) == PagePictures::State::Waiting;
    });
}

void StripPane::setDocument(std::shared_ptr<const JobDocument> document) {
    mMessages.remove(kPicturesMessage);
    if (!document)
        mFigures->setText(QString());
    const QString pdf = document ? document->pdf() : QString();
    mPictures.setDocument(pdf, std::move(document));
}

void StripPane::refresh() {
    const std::optional<JobPlan> plan = mModel.plan();
    if (plan && plan->labels() > 0) {
        mStrip->setPlan(plan);
        mFigures->setText(figuresText(*plan));
        showMisfit(*plan);
        showWay();
        return;
    }
    mMessages.remove(kMisfitMessage);
    const auto places = mModel.hasPrinter() ? placesFor(mModel.ppd()) : nullptr;
    mStrip->setPlan(places ? std::optional(mModel.planFor(places)) : std::nullopt, false);
    showWay();
}

/// So that the text can be read, unless the user turned the labels. Where nobody knows of a text
/// the first label lies where the language begins to read.
void StripPane::showWay() {
    using Direction = PagePictures::TextDirection;
    const auto& plan = mStrip->plan();
    if (!plan)
        return;
    const int page = plan->pageAt(0);
    const QSizeF label = plan->labelSizeOf(page);
    StripWay way = label.height() >= label.width() ? StripWay::Along : StripWay::Upright;
    bool isReversed = isRightToLeft();
    const Direction text =
        turned(mPictures.textDirection().value_or(Direction::None), plan->placeOf(page).isTurned);
    if (text != Direction::None) {
        way = text == Direction::AlongWidth ? StripWay::Upright : StripWay::Along;
        // What runs up along the label can be read when its top, which comes out first, lies at the
        // right.
        isReversed = way == StripWay::Along ? text == Direction::Upwards : isReversed;
    }
    mStrip->setWay(mWanted.value_or(way));
    mStrip->setReversed(isReversed);
}

void StripPane::showMisfit(const JobPlan& plan) {
    labelcut::showMisfit(mModel, plan, mMessages);
}

void StripPane::showLarge(std::int64_t index) {
    if (!mModel.plan())
        return;
    mLarge = new LabelWindow(*mStrip, mPictures, index, this);
    mLarge->setAttribute(Qt::WA_DeleteOnClose);
    mLarge->open();
}

} // namespace labelcut
