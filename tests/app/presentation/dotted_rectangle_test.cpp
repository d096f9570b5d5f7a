// DottedRectangle painted into an image: dashes of its colour around rounded corners.
#include "dotted_rectangle.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <QSignalSpy>
#include <algorithm>

TEST(DottedRectangle, PaintsFourPixelDashesEightApartAroundRoundedCorners) {
  DottedRectangle rectangle;
  rectangle.setSize(QSizeF(120, 60));
  rectangle.setColor(Qt::red);
  rectangle.setRadius(10);
  QImage image(120, 60, QImage::Format_RGB32);
  image.fill(Qt::white);
  QPainter painter(&image);
  rectangle.paint(&painter);
  const auto drawn = [&](int x, int y) { return image.pixel(x, y) != qRgb(255, 255, 255); };

  int run = 0;
  int longest[2] = {0, 0};  // free, drawn
  for (int x = 12; x < 108; ++x) {
    run = x > 12 && drawn(x, 0) == drawn(x - 1, 0) ? run + 1 : 1;
    longest[drawn(x, 0)] = std::max(longest[drawn(x, 0)], run);
    if (drawn(x, 0)) {
      EXPECT_EQ(image.pixel(x, 0), qRgb(255, 0, 0));
    }
  }
  EXPECT_EQ(longest[1], 4);
  EXPECT_EQ(longest[0], 8);
  EXPECT_FALSE(drawn(0, 0) || drawn(119, 59)) << "rounded corners";
  bool right = false;
  bool bottom = false;
  for (int i = 12; i < 48; ++i) {
    right = right || drawn(119, i);
    bottom = bottom || drawn(i, 59);
  }
  EXPECT_TRUE(right && bottom) << "the outline ends one pixel inside the item";
}

TEST(DottedRectangle, SettersNotifyOncePerChange) {
  DottedRectangle rectangle;
  QSignalSpy color(&rectangle, &DottedRectangle::colorChanged);
  QSignalSpy radius(&rectangle, &DottedRectangle::radiusChanged);
  rectangle.setColor(Qt::blue);
  rectangle.setColor(Qt::blue);
  for (int value : {6, 6, 0}) rectangle.setRadius(value);
  ASSERT_EQ(color.count(), 1);
  EXPECT_EQ(color.first().at(0).value<QColor>(), QColor(Qt::blue));
  ASSERT_EQ(radius.count(), 2);
  EXPECT_EQ(rectangle.property("radius").toInt(), 0);
}
