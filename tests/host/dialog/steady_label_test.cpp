// The text that asks for a new layout only when it needs another height.
#include <gtest/gtest.h>

#include <QLabel>
#include <QVBoxLayout>

#include "host/dialog/steady_label.h"
#include "tests/host/dialog/dialog_fixtures.h"

namespace labelcut::test {

namespace {

/// Counts how often its content asks for a new layout.
class CountingWindow : public QWidget {
public:
    bool event(QEvent* event) override {
        mRequests += event->type() == QEvent::LayoutRequest ? 1 : 0;
        return QWidget::event(event);
    }
    int takeRequests() { return std::exchange(mRequests, 0); }

private:
    int mRequests = 0;
};

} // namespace

TEST(SteadyLabelTest, AsksForALayoutOnlyWhenItNeedsAnotherHeight) {
    const Offscreen offscreen;
    CountingWindow window;
    auto* layout = new QVBoxLayout(&window);
    auto* label = new SteadyLabel(QStringLiteral("text"));
    layout->addWidget(label);
    layout->addStretch(1);
    label->setText(QStringLiteral("12 labels, half cut"));
    window.resize(300, 200);
    window.show();
    settle();
    const int oneLine = label->height();
    window.takeRequests();

    label->setText(QStringLiteral("12 labels, mirrored"));
    settle();
    EXPECT_EQ(window.takeRequests(), 0);
    EXPECT_EQ(label->text(), QStringLiteral("12 labels, mirrored"));
    EXPECT_EQ(part<QLabel>(window, "text")->size(), label->size());

    label->setText(QStringLiteral("12 labels, mirrored, ").repeated(6));
    settle();
    EXPECT_GT(window.takeRequests(), 0);
    EXPECT_GT(label->height(), oneLine);
    label->setText(QStringLiteral("12 labels"));
    settle();
    EXPECT_EQ(label->height(), oneLine);
}

} // namespace labelcut::test
