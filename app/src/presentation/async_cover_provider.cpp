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

void finishCovers() {
  std::lock_guard<std::mutex> lock(pools_mutex);
  for (QThreadPool *pool : livePools()) pool->waitForDone();
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
  if ((QueryNetwork() & kConnectedBits) == 0) NetConnectSilent(nullptr);
  pool_.start(response, 0);
  return response;
}
