#include "async_cover_provider.h"

#include "async_image_response.h"
#include "panelkit.h"

namespace {

constexpr int kConnectedBits = 0xf00;

}  // namespace

QQuickImageResponse *AsyncCoverProvider::requestImageResponse(const QString &id, const QSize &requestedSize) {
  auto *response = new AsyncImageResponse(id, requestedSize, &pool_);
  if ((QueryNetwork() & kConnectedBits) == 0) NetConnectSilent(nullptr);
  pool_.start(response, 0);
  return response;
}
