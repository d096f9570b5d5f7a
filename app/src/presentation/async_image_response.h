// One cover request of the url_image provider: fetched or taken from the cover cache on a pool
// thread, scaled to the size asked for and made fit for the panel.
#ifndef LUMENPRESS_APP_ASYNC_IMAGE_RESPONSE_H
#define LUMENPRESS_APP_ASYNC_IMAGE_RESPONSE_H

#include <QImage>
#include <QQuickImageResponse>
#include <QRunnable>
#include <QSize>
#include <QString>
#include <condition_variable>
#include <mutex>

class QThreadPool;

class AsyncImageResponse : public QQuickImageResponse, public QRunnable {
  Q_OBJECT

public:
  // With a pool, the response is to be started on it, and its end waits for the run.
  AsyncImageResponse(const QString &id, const QSize &requestedSize, QThreadPool *pool = nullptr);
  // QML deletes a response it no longer wants even while it runs: a queued one leaves the
  // pool's queue, a running one is waited for.
  ~AsyncImageResponse() override;

  // Inverted here when the screen is, so that the inversion never reaches the cache.
  QQuickTextureFactory *textureFactory() const override;
  QString errorString() const override;
  void run() override;

private:
  bool loadCached();
  bool download();
  void storeInCache();
  void fitToRequestedSize();
  void pad();
  void finish();

  QString id_;
  int requested_width_;
  int requested_height_;
  QImage image_;
  QString error_;

  QThreadPool *pool_;
  std::mutex run_mutex_;
  std::condition_variable run_ended_;
  bool pending_;
};

#endif
