// Tests of pictures of pages: an ear for what they tell, and documents for readers that obey them.
#pragma once

#include <gtest/gtest.h>

#include <QString>
#include <QStringList>

#include <algorithm>
#include <vector>

#include "host/documents/page_pictures.h"
#include "tests/support/event_loop.h"
#include "tests/support/job_fixtures.h"

namespace labelcut::test {

/// What pictures tell, in its order. Lives as long as they do.
struct Told {
    explicit Told(const PagePictures& pictures) {
        QObject::connect(&pictures, &PagePictures::drawn, &pictures,
                         [this](int page) { pages.push_back(page); });
        QObject::connect(&pictures, &PagePictures::failed, &pictures,
                         [this](const QString& sentence) { sentences << sentence; });
    }
    std::vector<int> pages;
    QStringList sentences;
};

/// Turns the event loop until none of these pages waits.
inline bool areSettled(const PagePictures& pictures, const std::vector<int>& pages) {
    return turnUntil([&] {
        return std::ranges::none_of(
            pages, [&](int page) { return pictures.state(page) == PagePictures::State::Waiting; });
    });
}

/// The picture of a page of the file, or null when it failed.
inline QImage pictureOf(const QString& pdf, int page, QSize pixels) {
    PagePictures pictures;
    pictures.setDocument(pdf, nullptr);
    pictures.want({{page, pixels}});
    EXPECT_TRUE(areSettled(pictures, {page})) << pdf.toStdString();
    return pictures.picture(page);
}

} // namespace labelcut::test
