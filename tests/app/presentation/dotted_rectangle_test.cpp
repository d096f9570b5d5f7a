// DottedRectangle painted into an image: a dashed outline of its colour with rounded corners.
#include "dotted_rectangle.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <QSignalSpy>
#include <algorithm>

namespace {

QImage painted(DottedRectangle &rectangle) {
  QImage image(static_cast<int>(rectangle.width()), static_cast<int>(rectangle.height()), QImage::Format_RGB32);
  image.fill(Qt::white);
  QPainter painter(&image);
  rectangle.paint(&painter);
  return image;
}

bool drawn(const QImage &image, int x, int y) {
  return image.pixel(x, y) != qRgb(255, 255, 255);
}

struct Runs {
  int dash = 0;
  int gap = 0;
};

// The longest runs of drawn and of free pixels along row y.
Runs longestRuns(const QImage &image, int y, int from, int to) {
  Runs longest;
  int run = 0;
  for (int x = from; x < to; ++x) {
    const bool on = drawn(image, x, y);
    run = x > from && on == drawn(image, x - 1, y) ? run + 1 : 1;
    int &best = on ? longest.dash : longest.gap;
    best = std::max(best, run);
  }
  return longest;
}

}  // namespace

TEST(DottedRectangle, PaintsFourPixelDashesEightApartAroundRoundedCorners) {
  DottedRectangle rectangle;
  rectangle.setSize(QSizeF(120, 60));
  rectangle.setColor(Qt::red);
  rectangle.setRadius(10);
  const QImage image = painted(rectangle);

  const Runs top = longestRuns(image, 0, 12, 108);
  EXPECT_EQ(top.dash, 4);
  EXPECT_EQ(top.gap, 8);
  for (int x = 12; x < 108; ++x) {
    if (drawn(image, x, 0)) {
      EXPECT_EQ(image.pixel(x, 0), qRgb(255, 0, 0));
    }
  }
  EXPECT_FALSE(drawn(image, 0, 0)) << "the corner is rounded off";
  EXPECT_FALSE(drawn(image, 119, 59));
  bool right_edge = false;
  bool bottom_edge = false;
  for (int i = 12; i < 48; ++i) right_edge = right_edge || drawn(image, 119, i);
  for (int i = 12; i < 108; ++i) bottom_edge = bottom_edge || drawn(image, i, 59);
  EXPECT_TRUE(right_edge) << "the outline ends one pixel inside the item";
  EXPECT_TRUE(bottom_edge);
}

TEST(DottedRectangle, SettersNotifyOncePerChange) {
  DottedRectangle rectangle;
  QSignalSpy color(&rectangle, &DottedRectangle::colorChanged);
  QSignalSpy radius(&rectangle, &DottedRectangle::radiusChanged);
  rectangle.setColor(Qt::blue);
  rectangle.setColor(Qt::blue);
  rectangle.setRadius(6);
  rectangle.setRadius(6);
  rectangle.setRadius(0);
  ASSERT_EQ(color.count(), 1);
  EXPECT_EQ(color.first().at(0).value<QColor>(), QColor(Qt::blue));
  ASSERT_EQ(radius.count(), 2);
  EXPECT_EQ(radius.last().at(0).toInt(), 0);
  EXPECT_EQ(rectangle.property("radius").toInt(), 0);
}
