// A window of 758 by 1024 pixels showing a piece of QML written in the test, with what a screen
// test needs: items by name, taps, and the pixels as the panel would get them.
#ifndef LUMENPRESS_TESTS_CONTROL_SCENE_H
#define LUMENPRESS_TESTS_CONTROL_SCENE_H

#include <QImage>
#include <QQuickItem>
#include <QQuickView>
#include <QString>

namespace lumenpress::testing {

class ControlScene {
public:
  // `body` is the content of an Item that fills the window; the controls module is imported.
  explicit ControlScene(const QString &body);

  bool ready() const { return root_ != nullptr; }
  QString errors() const { return errors_; }
  QQuickItem *root() const { return root_; }
  QQuickItem *item(const QString &objectName) const;
  // Every item of that name, in the order of the visual tree.
  QList<QQuickItem *> items(const QString &objectName) const;
  QQuickWindow *window() { return &view_; }

  void tap(QQuickItem *item);
  // The window's pixels after a frame has been drawn with every change so far.
  QImage grab();

private:
  QQuickView view_;
  QQuickItem *root_ = nullptr;
  QString errors_;
};

// How many pixels of the area are darker than 128.
int darkPixels(const QImage &image, const QRect &area);
// The area an item covers on the window.
QRect areaOf(QQuickItem *item);

}  // namespace lumenpress::testing

#endif
