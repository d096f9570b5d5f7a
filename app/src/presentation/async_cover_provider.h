// The image provider "url_image": image://url_image/<cover URL> gives the cover at the size asked for.
#ifndef LUMENPRESS_APP_ASYNC_COVER_PROVIDER_H
#define LUMENPRESS_APP_ASYNC_COVER_PROVIDER_H

#include <QQuickAsyncImageProvider>
#include <QThreadPool>

class AsyncCoverProvider : public QQuickAsyncImageProvider {
public:
  AsyncCoverProvider();
  ~AsyncCoverProvider() override;

  // Asks for the network first, whether the cover is cached or not, then runs it on the pool.
  QQuickImageResponse *requestImageResponse(const QString &id, const QSize &requestedSize) override;

private:
  QThreadPool pool_;
};

#endif
