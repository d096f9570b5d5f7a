#include "async_cover_provider.h"

#include <QCoreApplication>

#include <mutex>
#include <set>

#include "async_image_response.h"
#include "panelkit.h"

namespace {

constexpr int kConnectedBits = 0xf00;

// Qt scales images with the help of its global pool, which goes with the application object.
// A cover still running then must not outlive it, even when the engine never frees its provider.
std::mutex pools_mutex;
std::set<QThreadPool *> &livePools() {
  static std::set<QThreadPool *> pools;
  return pools;
}

// Qt's image reader drops the responses it still waited for when its engine goes, without
// freeing them; those left are freed with the application.
std::set<QObject *> &liveResponses() {
  static std::set<QObject *> responses;
  return responses;
}

void finishCovers() {
  std::set<QObject *> orphans;
  {
    std::lock_guard<std::mutex> lock(pools_mutex);
    for (QThreadPool *pool : livePools()) pool->waitForDone();
    orphans.swap(liveResponses());
  }
  for (QObject *response : orphans) delete response;
}

}  // namespace

AsyncCoverProvider::AsyncCoverProvider() {
  static std::once_flag registered;
  std::call_once(registered, [] { qAddPostRoutine(finishCovers); });
  std::lock_guard<std::mutex> lock(pools_mutex);
  livePools().insert(&pool_);
}

AsyncCoverProvider::~AsyncCoverProvider() {
  std::lock_guard<std::mutex> lock(pools_mutex);
  livePools().erase(&pool_);
}

QQuickImageResponse *AsyncCoverProvider::requestImageResponse(const QString &id, const QSize &requestedSize) {
  auto *response = new AsyncImageResponse(id, requestedSize, &pool_);
  {
    std::lock_guard<std::mutex> lock(pools_mutex);
    liveResponses().insert(response);
  }
  QObject::connect(response, &QObject::destroyed, [response] {
    std::lock_guard<std::mutex> lock(pools_mutex);
    liveResponses().erase(response);
  });
  if ((QueryNetwork() & kConnectedBits) == 0) NetConnectSilent(nullptr);
  pool_.start(response, 0);
  return response;
}
