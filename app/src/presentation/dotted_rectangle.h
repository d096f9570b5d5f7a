// A rounded rectangle with a dotted outline, which QML's Rectangle cannot draw.
#ifndef LUMENPRESS_APP_DOTTED_RECTANGLE_H
#define LUMENPRESS_APP_DOTTED_RECTANGLE_H

#include <QColor>
#include <QQuickPaintedItem>

class DottedRectangle : public QQuickPaintedItem {
  Q_OBJECT
  Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)
  Q_PROPERTY(int radius READ radius WRITE setRadius NOTIFY radiusChanged)

public:
  explicit DottedRectangle(QQuickItem *parent = nullptr);

  void paint(QPainter *painter) override;

  QColor color() const { return color_; }
  int radius() const { return radius_; }
  void setColor(const QColor &color);
  void setRadius(int radius);

signals:
  void colorChanged(QColor color);
  void radiusChanged(int radius);

private:
  QColor color_ = Qt::black;
  int radius_ = 0;
};

#endif
