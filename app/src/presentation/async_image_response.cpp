#include "async_image_response.h"

#include <unistd.h>

#include <QPainter>
#include <QThreadPool>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "cover_cache.h"
#include "device_path.h"
#include "display_adjustment.h"
#include "http_request.h"
#include "http_request_runner.h"
#include "lp_log.h"
#include "panelkit_draw.h"

using lumenpress::utilities::HttpRequest;
using lumenpress::utilities::HttpRequestRunner;

namespace {

constexpr int kCacheWidth = 400;
constexpr int kRequestTimeoutSeconds = 30;
constexpr double kSameRatio = 0.001;
constexpr int kSampleStep = 5;

bool greyPanel() {
  return device_display_colormask() == 0;
}

// Mean luminance of every fifth pixel in both directions, white for an empty image.
int meanGrey(const QImage &image) {
  int64_t sum = 0;
  int64_t samples = 0;
  for (int y = 0; y < image.height(); y += kSampleStep) {
    for (int x = 0; x < image.width(); x += kSampleStep) {
      const QRgb pixel = image.pixel(x, y);
      sum += (11 * qRed(pixel) + 16 * qGreen(pixel) + 5 * qBlue(pixel)) >> 5;
      ++samples;
    }
  }
  return samples > 0 ? static_cast<int>(sum / samples) : 255;
}

// Leaves the rightmost column and the bottom row out, as the device's covers have it.
void drawFrame(QImage *image, const QPen &pen) {
  QPainter painter(image);
  painter.setPen(pen);
  painter.drawRect(0, 0, image->width() - 2, image->height() - 2);
}

}  // namespace

AsyncImageResponse::AsyncImageResponse(const QString &id, const QSize &requestedSize, QThreadPool *pool)
    : id_(id),
      requested_width_(requestedSize.width()),
      requested_height_(requestedSize.height()),
      pool_(pool),
      pending_(pool != nullptr) {
  setAutoDelete(false);
}

AsyncImageResponse::~AsyncImageResponse() {
  std::unique_lock<std::mutex> lock(run_mutex_);
  if (!pending_ || pool_->tryTake(this)) return;
  run_ended_.wait(lock, [this] { return !pending_; });
}

QQuickTextureFactory *AsyncImageResponse::textureFactory() const {
  if (PkGetScreenModeInversion() == 0) return QQuickTextureFactory::textureFactoryForImage(image_);
  QImage inverted = image_;
  inverted.invertPixels();
  return QQuickTextureFactory::textureFactoryForImage(inverted);
}

QString AsyncImageResponse::errorString() const {
  return error_;
}

void AsyncImageResponse::run() {
  if (!id_.startsWith("http://") && !id_.startsWith("https://")) {
    error_ = "wrong id";
  } else if (loadCached() || download()) {
    if (image_.width() == 0) {
      error_ = "wrong image width";
    } else if (requested_width_ >= 1 && requested_height_ >= 1) {
      fitToRequestedSize();
    }
  }
  if (!error_.isEmpty()) LP_LOG(LP_LOG_WARNING, "cover %s: %s", qPrintable(id_), qPrintable(error_));
  finish();
}

// A cached file that does not load is dropped, to be fetched again.
bool AsyncImageResponse::loadCached() {
  const std::string key = id_.toStdString();
  long long size = 0;
  const std::string path = coverCache().getFile(key, &size);
  if (!path.empty() && image_.load(QString::fromStdString(lumenpress::platform::MapDevicePath(path)))) return true;
  coverCache().removeFile(key);
  return false;
}

// False with the error set when the store did not give the cover; a body that is no image
// goes on as an empty image.
bool AsyncImageResponse::download() {
  const HttpRequest request("GET", id_.toStdString());
  long code = 0;
  std::vector<char> body;
  const int result = HttpRequestRunner().PerformRequest(request, &code, &body, kRequestTimeoutSeconds);
  if (result != 0 || code != 200) {
    error_ = QString("wrong requset %1").arg(code);
    return false;
  }
  const int length = body.empty() ? 0 : static_cast<int>(body.size() - 1);
  if (image_.loadFromData(reinterpret_cast<const uchar *>(body.data()), length)) storeInCache();
  return true;
}

// The cache holds the device's form of a cover: at most 400 pixels wide, grey on a grey panel.
void AsyncImageResponse::storeInCache() {
  std::string reserved = lumenpress::platform::MapDevicePath("/tmp/boostore_cover_XXXXXX");
  const int fd = mkstemp(reserved.data());
  if (image_.width() > kCacheWidth) image_ = image_.scaledToWidth(kCacheWidth, Qt::SmoothTransformation);
  if (greyPanel()) image_ = image_.convertToFormat(QImage::Format_Grayscale8);
  if (fd < 0) {
    LP_LOG(LP_LOG_ERROR, "cover %s not cached: no temporary file", qPrintable(id_));
    return;
  }
  const std::string name = reserved + ".jpeg";
  if (image_.save(QString::fromStdString(name))) {
    coverCache().addFile(id_.toStdString(), name, true);
  } else {
    LP_LOG(LP_LOG_ERROR, "cover %s not cached: cannot write %s", qPrintable(id_), name.c_str());
  }
  unlink(name.c_str());
  unlink(reserved.c_str());
  close(fd);
}

void AsyncImageResponse::fitToRequestedSize() {
  const QSize requested(requested_width_, requested_height_);
  const double ratio = static_cast<double>(image_.height()) / image_.width();
  const double requested_ratio = static_cast<double>(requested_height_) / requested_width_;
  if (std::fabs(ratio - requested_ratio) < kSameRatio) {
    image_ = image_.scaled(requested, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  } else if (ratio < requested_ratio) {
    image_ = image_.scaledToWidth(requested_width_, Qt::SmoothTransformation);
  } else {
    image_ = image_.scaledToHeight(requested_height_, Qt::SmoothTransformation);
  }
  if (greyPanel()) applyDisplayAdjustment(&image_);
  if (image_.size() == requested) {
    drawFrame(&image_, QPen());
  } else {
    pad();
  }
}

// Centres the cover on a flat ground of its own mean grey.
void AsyncImageResponse::pad() {
  QImage padded(requested_width_, requested_height_, image_.format());
  const int grey = meanGrey(image_);
  padded.fill(QColor(grey, grey, grey));
  {
    QPainter painter(&padded);
    painter.drawImage((requested_width_ - image_.width()) / 2, (requested_height_ - image_.height()) / 2, image_);
  }
  drawFrame(&padded, QPen(Qt::black));
  image_ = padded;
}

// Nothing of the response is touched after the signal but the run's own lock: QML may
// delete it as soon as the signal arrives, and the destructor waits for this.
void AsyncImageResponse::finish() {
  emit finished();
  std::lock_guard<std::mutex> lock(run_mutex_);
  pending_ = false;
  run_ended_.notify_all();
}
