// Tests of the toolkit: points, their scale, and right to left.
#include <gtest/gtest.h>

#include <QApplication>
#include <QFontMetricsF>
#include <QWidget>

#include "platform/toolkit/points.h"

namespace labelcut::test {
namespace {

TEST(Points, AreThePixelsOfAWidgetThatWasNeverPlaced) {
    QWidget root;
    root.setGeometry(1, 2, 30, 40);
    EXPECT_EQ(points::rect(root), QRectF(1, 2, 30, 40));
    EXPECT_EQ(points::scale(root), 1.0);
}

TEST(Points, AreKeptExactlyWhateverThePixels) {
    QWidget root;
    points::adopt(root, 1.5);
    points::setRootSize(root, {200, 100});
    QWidget child(&root);
    points::setRect(child, {10.25, 20.5, 30.75, 40});
    EXPECT_EQ(points::rect(child), QRectF(10.25, 20.5, 30.75, 40));
    EXPECT_EQ(child.geometry(), QRect(15, 31, 46, 60));
    EXPECT_EQ(root.size(), QSize(300, 150));
    EXPECT_EQ(points::rect(root).size(), QSizeF(200, 100));
}

TEST(Points, ScaleByTheNearestAncestorThatHasOne) {
    QWidget root;
    QWidget child(&root);
    QWidget grandchild(&child);
    EXPECT_EQ(points::scale(grandchild), 1.0);
    points::adopt(root, 2.0);
    EXPECT_EQ(points::scale(grandchild), 2.0);
    points::adopt(child, 3.0);
    EXPECT_EQ(points::scale(grandchild), 3.0);
    EXPECT_EQ(points::scale(root), 2.0);
}

TEST(Adopt, TakesTheLoadedGeometryAsPoints) {
    QWidget root;
    root.resize(100, 50);
    QWidget child(&root);
    child.setGeometry(10, 5, 20, 10);
    QWidget grandchild(&child);
    grandchild.setGeometry(1, 1, 2, 2);
    points::adopt(root, 2.0);
    EXPECT_EQ(points::rect(child), QRectF(10, 5, 20, 10));
    EXPECT_EQ(child.geometry(), QRect(20, 10, 40, 20));
    EXPECT_EQ(root.size(), QSize(200, 100));
    EXPECT_EQ(grandchild.geometry(), QRect(1, 1, 2, 2));
    EXPECT_EQ(root.minimumSize(), root.maximumSize());
}

TEST(RootSize, LeavesChildrenThatWereNeverPlaced) {
    QWidget root;
    QWidget placed(&root);
    points::setRect(placed, {1, 2, 3, 4});
    QWidget stray(&root);
    stray.setGeometry(5, 6, 7, 8);
    root.setLayoutDirection(Qt::RightToLeft);
    points::setRootSize(root, {100, 50});
    EXPECT_EQ(stray.geometry(), QRect(5, 6, 7, 8));
    EXPECT_EQ(placed.geometry(), QRect(96, 2, 3, 4));
}

TEST(RightToLeft, MirrorsPixelsAndKeepsPoints) {
    QWidget root;
    root.setLayoutDirection(Qt::RightToLeft);
    points::setRootSize(root, {100, 50});
    QWidget child(&root);
    points::setRect(child, {10, 20, 30, 5});
    EXPECT_EQ(child.geometry(), QRect(60, 20, 30, 5));
    EXPECT_EQ(points::rect(child), QRectF(10, 20, 30, 5));
    points::setRootSize(root, {200, 50});
    EXPECT_EQ(child.geometry(), QRect(160, 20, 30, 5));
}

TEST(ScaleForFont, GrowsWithTheFontAndIsNeverBelowOne) {
    QWidget widget;
    double last = 0;
    for (const int pixels : {4, 8, 12, 24, 48, 96}) {
        QFont font = widget.font();
        font.setPixelSize(pixels);
        widget.setFont(font);
        const double scale = points::scaleForFont(widget);
        EXPECT_GE(scale, 1.0);
        EXPECT_GE(scale, last);
        // A row's text fits the 20 points of a checkbox.
        EXPECT_LE(QFontMetricsF(font).height(), 20 * scale) << pixels;
        last = scale;
    }
    EXPECT_GT(last, 4.0);
}

} // namespace
} // namespace labelcut::test
