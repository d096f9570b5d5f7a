// What every screen of the device shares: the density unit and the one information message.
#ifndef LUMENPRESS_HOST_GLOBAL_H
#define LUMENPRESS_HOST_GLOBAL_H

#include <QObject>
#include <QPointer>
#include <QString>

class QQmlEngine;
class QQuickItem;

class Global : public QObject {
  Q_OBJECT
  Q_PROPERTY(qreal dp READ dp CONSTANT)

public:
  explicit Global(QQmlEngine *engine, QObject *parent = nullptr);

  // Pixels of one density-independent unit: 1 on a 160 dpi panel.
  qreal dp() const { return dp_; }

  // Shows text over the active window until the owner closes it; a newer message replaces it.
  Q_INVOKABLE void openInfoMessage(const QString &text);

private:
  QQuickItem *messageParent() const;

  QQmlEngine *engine_;
  qreal dp_;
  QPointer<QQuickItem> message_;
};

#endif
