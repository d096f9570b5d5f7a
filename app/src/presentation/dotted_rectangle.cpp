#include "dotted_rectangle.h"

#include <QPainter>
#include <QPainterPath>
#include <QPen>

DottedRectangle::DottedRectangle(QQuickItem *parent) : QQuickPaintedItem(parent) {}

// Four units drawn, eight left free, on whole pixels: an e-ink panel shows no grey fringe.
void DottedRectangle::paint(QPainter *painter) {
  QPen pen(color_);
  pen.setDashPattern({4.0, 8.0});
  pen.setStyle(Qt::CustomDashLine);
  painter->setRenderHint(QPainter::Antialiasing, false);
  pen.setWidthF(1.0);
  painter->setPen(pen);
  const QRectF bounds = contentsBoundingRect();
  QPainterPath path;
  path.addRoundedRect(QRectF(bounds.x(), bounds.y(), bounds.width() - 1, bounds.height() - 1), radius_, radius_,
                      Qt::AbsoluteSize);
  painter->drawPath(path);
}

void DottedRectangle::setColor(const QColor &color) {
  if (color == color_) return;
  color_ = color;
  emit colorChanged(color_);
  update();
}

void DottedRectangle::setRadius(int radius) {
  if (radius == radius_) return;
  radius_ = radius;
  emit radiusChanged(radius_);
  update();
}
