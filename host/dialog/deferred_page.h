// The dialog: a page that is made when the user first looks at it.
#pragma once

#include <QVBoxLayout>
#include <QWidget>

#include <functional>
#include <utility>

namespace labelcut {

/// An empty page until it is shown for the first time; then what `make` gives, for good. Most jobs
/// are printed without a look at every page, and the window is there sooner.
class DeferredPage : public QWidget {
public:
    /// @param make  called at most once; its widget becomes the page's only child.
    explicit DeferredPage(std::function<QWidget*()> make)
        : mMake(std::move(make)) {}

protected:
    void showEvent(QShowEvent* event) override {
        QWidget::showEvent(event);
        const auto make = std::exchange(mMake, nullptr);
        if (!make)
            return;
        auto* layout = new QVBoxLayout(this);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(make());
    }

private:
    std::function<QWidget*()> mMake;
};

} // namespace labelcut
