#include "cached_network_access_manager_factory.h"

#include <QNetworkAccessManager>
#include <QNetworkDiskCache>

#include "device_path.h"

QNetworkAccessManager *CachedNetworkAccessManagerFactory::create(QObject *parent) {
  auto *manager = new QNetworkAccessManager(parent);
  auto *cache = new QNetworkDiskCache(parent);
  cache->setCacheDirectory(QString::fromStdString(lumenpress::platform::MapDevicePath("/tmp")));
  manager->setCache(cache);
  return manager;
}
