// The cover pipeline on covers made here and served on loopback: the cover cache, the fit to
// the size asked for, the panel's settings, failures, and the provider as QML uses it.
#include <gtest/gtest.h>
#include <httplib.h>

#include <QBuffer>
#include <QPointer>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QSignalSpy>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <mutex>
#include <thread>

#include "async_cover_provider.h"
#include "async_image_response.h"
#include "cover_cache.h"
#include "device_path.h"
#include "event_wait.h"
#include "panelkit.h"

using lumenpress::platform::DeviceRoot;
using lumenpress::platform::MapDevicePath;

namespace {

// JPEG bodies by name; any other name is a 404, and "slow.jpg" takes its time.
class CoverStore {
public:
  explicit CoverStore(std::map<std::string, std::string> bodies) : bodies_(std::move(bodies)) {
    server_.Get("/(.*)", [this](const httplib::Request &request, httplib::Response &response) {
      ++requests_;
      if (request.matches[1] == "slow.jpg") std::this_thread::sleep_for(std::chrono::milliseconds(300));
      const auto body = bodies_.find(request.matches[1]);
      response.status = body == bodies_.end() ? 404 : 200;
      if (body != bodies_.end()) response.set_content(body->second, "image/jpeg");
    });
    port_ = server_.bind_to_any_port("127.0.0.1");
    listener_ = std::thread([this] { server_.listen_after_bind(); });
    while (!server_.is_running()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  ~CoverStore() {
    server_.stop();
    listener_.join();
  }
  std::string url(const std::string &name) const { return "http://127.0.0.1:" + std::to_string(port_) + "/" + name; }
  int requests() const { return requests_; }

private:
  const std::map<std::string, std::string> bodies_;
  httplib::Server server_;
  std::atomic<int> requests_{0};
  int port_ = 0;
  std::thread listener_;
};

// One colour above, another below, as a JPEG.
std::string cover(int width, int height, const QColor &top, const QColor &bottom) {
  QImage image(width, height, QImage::Format_RGB32);
  image.fill(bottom);
  for (int y = 0; y < height / 2; ++y) std::fill_n(reinterpret_cast<QRgb *>(image.scanLine(y)), width, top.rgb());
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  image.save(&buffer, "JPEG", 95);
  return bytes.toStdString();
}

std::string cover(int width, int height, const QColor &color) {
  return cover(width, height, color, color);
}

// The delivered image, with the error, after a run that finished exactly once.
QImage deliver(const std::string &url, const QSize &size = QSize(), QString *error = nullptr) {
  AsyncImageResponse response(QString::fromStdString(url), size);
  QSignalSpy finished(&response, &QQuickImageResponse::finished);
  response.run();
  EXPECT_EQ(finished.count(), 1) << url;
  if (error) *error = response.errorString();
  std::unique_ptr<QQuickTextureFactory> factory(response.textureFactory());
  return factory ? factory->image() : QImage();
}

QImage cached(const std::string &url) {
  const std::string path = coverFilePath(url);
  return path.empty() ? QImage() : QImage(QString::fromStdString(MapDevicePath(path)));
}

int grey(const QImage &image, int x, int y) {
  return qGray(image.pixel(x, y));
}

void writeSetting(const char *path, const char *key, int value) {
  lpconfig *cfg = OpenConfig(path, 1);
  WriteInt(cfg, key, value);
  ASSERT_EQ(CloseConfig(cfg), 0);
}

void cacheBrokenFile(const std::string &url) {
  const std::string path = MapDevicePath("/tmp/broken.jpeg");
  std::ofstream(path) << "\xff\xd8 cut short";
  ASSERT_TRUE(coverCache().addFile(url, path, false));
}

bool temporaryFilesLeft() {
  for (const auto &entry : std::filesystem::directory_iterator(MapDevicePath("/tmp"))) {
    if (entry.path().filename().string().rfind("boostore_cover_", 0) == 0) return true;
  }
  return false;
}

}  // namespace

TEST(CoverPipeline, CachesTheDevicesFormOnceAndGivesItUnscaledForSizeZero) {
  CoverStore store({{"narrow.jpg", cover(300, 450, Qt::red)}, {"wide.jpg", cover(1200, 1800, Qt::gray)}});

  const QImage narrow = deliver(store.url("narrow.jpg"));
  EXPECT_EQ(narrow.size(), QSize(300, 450));
  EXPECT_TRUE(narrow.isGrayscale()) << "a red cover, made grey for a grey panel";
  EXPECT_EQ(cached(store.url("narrow.jpg")).size(), QSize(300, 450));
  EXPECT_EQ(deliver(store.url("wide.jpg"), QSize(0, 0)).size(), QSize(400, 600));
  EXPECT_EQ(cached(store.url("wide.jpg")).size(), QSize(400, 600));
  EXPECT_TRUE(cached(store.url("wide.jpg")).isGrayscale());

  EXPECT_EQ(deliver(store.url("narrow.jpg")).size(), QSize(300, 450));
  EXPECT_EQ(store.requests(), 2) << "the second delivery comes from the cache";
  EXPECT_EQ(coverFilePath(store.url("unknown.jpg")), "");
}

// A cover black above and white below: a frame shows on the white, the pad in the mean grey.
TEST(CoverPipeline, FitsTheSizeAskedForWithAFrameAndPadsAnotherRatioInItsMeanGrey) {
  CoverStore store({{"halves.jpg", cover(400, 600, Qt::black, Qt::white)}, {"white.jpg", cover(300, 300, Qt::white)}});

  const QImage exact = deliver(store.url("halves.jpg"), QSize(200, 300));
  ASSERT_EQ(exact.size(), QSize(200, 300));
  EXPECT_LT(grey(exact, 0, 250) + grey(exact, 198, 250) + grey(exact, 100, 298), 30);
  EXPECT_GT(grey(exact, 199, 250), 245) << "the last column is left out of the frame";
  EXPECT_GT(grey(exact, 100, 299), 245);
  const QImage nearly = deliver(store.url("halves.jpg"), QSize(1200, 1801));
  ASSERT_EQ(nearly.size(), QSize(1200, 1801));
  EXPECT_GT(grey(nearly, 600, 1800), 245) << "within a thousandth the cover reaches the last row";

  const QImage square = deliver(store.url("halves.jpg"), QSize(400, 400));
  ASSERT_EQ(square.size(), QSize(400, 400));
  EXPECT_NEAR(grey(square, 30, 100), 127, 10) << "left of the 267 pixels of cover";
  EXPECT_NEAR(grey(square, 370, 300), 127, 10);
  EXPECT_LT(grey(square, 200, 50), 10);
  EXPECT_LT(grey(square, 0, 100) + grey(square, 398, 100), 20) << "a black frame";

  const QImage white = deliver(store.url("white.jpg"), QSize(200, 400));
  ASSERT_EQ(white.size(), QSize(200, 400));
  EXPECT_EQ(grey(white, 100, 50), 255) << "a white cover has a white pad";
  EXPECT_LT(grey(white, 100, 0), 10);
}

TEST(CoverPipeline, AdjustsForAGreyPanelKeepsColourOnAColourOneAndInvertsOnlyWhatItDelivers) {
  CoverStore store({{"white.jpg", cover(300, 300, Qt::white)}, {"red.jpg", cover(300, 300, Qt::red)}});
  writeSetting("/mnt/ext1/system/config/global.cfg", "display_brightness", 50);
  EXPECT_NEAR(grey(deliver(store.url("white.jpg"), QSize(300, 300)), 150, 150), 127, 1);
  EXPECT_EQ(grey(cached(store.url("white.jpg")), 150, 150), 255);

  writeSetting("/mnt/ext1/system/config/global.cfg", "screen_inversion", 1);
  EXPECT_EQ(grey(deliver(store.url("white.jpg")), 150, 150), 0);
  EXPECT_EQ(grey(cached(store.url("white.jpg")), 150, 150), 255) << "the cache stays as it came";

  writeSetting("/mnt/ext1/system/config/global.cfg", "screen_inversion", 0);
  writeSetting("/coreapp/config/device.cfg", "display_colormask", 1);
  const QRgb red = deliver(store.url("red.jpg"), QSize(300, 300)).pixel(150, 150);
  EXPECT_GT(qRed(red), 245) << "neither grey nor adjusted";
  EXPECT_LT(qGreen(red), 10);
  EXPECT_FALSE(cached(store.url("red.jpg")).isGrayscale());
}

TEST(CoverPipeline, FailuresGiveTheirErrorAndABrokenCacheFileIsFetchedAgain) {
  CoverStore store({{"text.jpg", std::string("this is no image")}, {"cover.jpg", cover(300, 450, Qt::white)}});
  QString error;
  EXPECT_TRUE(deliver("ftp://127.0.0.1/cover.jpg", QSize(100, 150), &error).isNull());
  EXPECT_EQ(error, "wrong id");
  EXPECT_EQ(store.requests(), 0);

  cacheBrokenFile(store.url("gone.jpg"));
  deliver(store.url("gone.jpg"), QSize(100, 150), &error);
  EXPECT_EQ(error, "wrong requset 404");
  EXPECT_EQ(coverFilePath(store.url("gone.jpg")), "") << "the broken file went";
  deliver(store.url("text.jpg"), QSize(100, 150), &error);
  EXPECT_EQ(error, "wrong image width");
  EXPECT_EQ(coverFilePath(store.url("text.jpg")), "");

  cacheBrokenFile(store.url("cover.jpg"));
  EXPECT_EQ(deliver(store.url("cover.jpg"), QSize(), &error).size(), QSize(300, 450));
  EXPECT_EQ(error, "");
  EXPECT_EQ(cached(store.url("cover.jpg")).size(), QSize(300, 450)) << "replaced";
  EXPECT_FALSE(temporaryFilesLeft());
}

// As the screens use it: the network asked for first, the pool, and an image dropped while
// its cover is on the way.
// Keeps an eye on the responses it hands out (on Qt's image reader thread), so a test can wait
// until Qt has freed them all.
class WatchedProvider : public AsyncCoverProvider {
public:
  QQuickImageResponse *requestImageResponse(const QString &id, const QSize &requestedSize) override {
    QQuickImageResponse *response = AsyncCoverProvider::requestImageResponse(id, requestedSize);
    std::lock_guard<std::mutex> lock(mutex_);
    responses_.push_back(response);
    return response;
  }
  bool allFreed() {
    std::lock_guard<std::mutex> lock(mutex_);
    return std::all_of(responses_.begin(), responses_.end(), [](const auto &response) { return response.isNull(); });
  }

private:
  std::mutex mutex_;
  std::vector<QPointer<QQuickImageResponse>> responses_;
};

TEST(CoverProvider, QmlImagesLoadThroughThePoolAfterAskingForTheNetwork) {
  CoverStore store({{"cover.jpg", cover(400, 600, Qt::white)}, {"slow.jpg", cover(400, 600, Qt::white)}});
  std::ofstream(DeviceRoot() + "/host/network_down").flush();
  QQmlEngine engine;
  auto *provider = new WatchedProvider;
  engine.addImageProvider("url_image", provider);
  QQmlComponent component(&engine);
  component.setData("import QtQuick 2.15\nImage { sourceSize.width: 200; sourceSize.height: 300 }", QUrl());
  const auto show = [&](QObject *image, const std::string &name) {
    image->setProperty("source", QString::fromStdString("image://url_image/" + store.url(name)));
  };

  std::unique_ptr<QObject> dropped(component.create());
  show(dropped.get(), "slow.jpg");
  ASSERT_TRUE(lumenpress::testing::waitUntil([&] { return store.requests() == 1; }));
  dropped.reset();
  std::unique_ptr<QObject> image(component.create());
  show(image.get(), "cover.jpg");
  ASSERT_TRUE(lumenpress::testing::waitUntil([&] { return image->property("status").toInt() == 1; }));
  EXPECT_EQ(image->property("implicitWidth").toInt(), 200);
  EXPECT_EQ(image->property("implicitHeight").toInt(), 300);
  show(image.get(), "missing.jpg");
  ASSERT_TRUE(lumenpress::testing::waitUntil([&] { return image->property("status").toInt() == 3; }));

  std::ifstream journal(DeviceRoot() + "/host/task_journal.jsonl");
  EXPECT_NE(std::string(std::istreambuf_iterator<char>(journal), {}).find("NetConnectSilent"), std::string::npos);
  // The dropped cover still ends, and Qt frees its response while the engine lives.
  EXPECT_TRUE(lumenpress::testing::waitUntil([&] { return provider->allFreed(); }));
}
