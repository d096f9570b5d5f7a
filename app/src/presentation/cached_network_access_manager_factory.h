// Gives QML's own network access (Image elements with plain URLs) a disk cache.
#ifndef LUMENPRESS_APP_CACHED_NETWORK_ACCESS_MANAGER_FACTORY_H
#define LUMENPRESS_APP_CACHED_NETWORK_ACCESS_MANAGER_FACTORY_H

#include <QObject>
#include <QQmlNetworkAccessManagerFactory>

class CachedNetworkAccessManagerFactory : public QObject, public QQmlNetworkAccessManagerFactory {
  Q_OBJECT

public:
  using QObject::QObject;

  // Called by the engine from its own threads.
  QNetworkAccessManager *create(QObject *parent) override;
};

#endif
