// The cover pipeline: a store's cover URL through the cover cache to the image a screen asked
// for, on covers made here and served by a small cover store on loopback.
#include <gtest/gtest.h>
#include <httplib.h>

#include <QBuffer>
#include <QNetworkAccessManager>
#include <QNetworkDiskCache>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QSignalSpy>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <thread>

#include "async_cover_provider.h"
#include "async_image_response.h"
#include "cached_network_access_manager_factory.h"
#include "cover_cache.h"
#include "device_path.h"
#include "event_wait.h"
#include "panelkit.h"

using lumenpress::platform::DeviceRoot;
using lumenpress::platform::MapDevicePath;

namespace {

// Covers by name; any other path is a 404. "slow.jpg" takes its time.
class CoverStore {
public:
  explicit CoverStore(std::map<std::string, std::string> covers) : covers_(std::move(covers)) {
    server_.Get("/(.*)", [this](const httplib::Request &request, httplib::Response &response) {
      ++requests_;
      if (request.matches[1] == "slow.jpg") std::this_thread::sleep_for(std::chrono::milliseconds(300));
      const auto cover = covers_.find(request.matches[1]);
      if (cover == covers_.end()) {
        response.status = 404;
      } else {
        response.set_content(cover->second, "image/jpeg");
      }
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
  const std::map<std::string, std::string> covers_;
  httplib::Server server_;
  std::atomic<int> requests_{0};
  int port_ = 0;
  std::thread listener_;
};

std::string jpeg(const QImage &image) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  image.save(&buffer, "JPEG", 95);
  return bytes.toStdString();
}

std::string flatCover(int width, int height, const QColor &color) {
  QImage image(width, height, QImage::Format_RGB32);
  image.fill(color);
  return jpeg(image);
}

// Black above, white below: its mean grey is a middle grey that neither half has.
std::string halvesCover(int width, int height) {
  QImage image(width, height, QImage::Format_RGB32);
  image.fill(Qt::white);
  for (int y = 0; y < height / 2; ++y) {
    for (int x = 0; x < width; ++x) image.setPixel(x, y, qRgb(0, 0, 0));
  }
  return jpeg(image);
}

struct Delivery {
  QImage image;
  QString error;
};

Delivery deliver(const std::string &url, const QSize &size = QSize()) {
  AsyncImageResponse response(QString::fromStdString(url), size);
  QSignalSpy finished(&response, &QQuickImageResponse::finished);
  response.run();
  EXPECT_EQ(finished.count(), 1) << url;
  std::unique_ptr<QQuickTextureFactory> factory(response.textureFactory());
  return {factory ? factory->image() : QImage(), response.errorString()};
}

QImage cachedCover(const std::string &url) {
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

std::string brokenFile() {
  const std::string path = MapDevicePath("/tmp/broken.jpeg");
  std::ofstream(path) << "\xff\xd8 cut short";
  return path;
}

bool temporaryFilesLeft() {
  for (const auto &entry : std::filesystem::directory_iterator(MapDevicePath("/tmp"))) {
    if (entry.path().filename().string().rfind("boostore_cover_", 0) == 0) return true;
  }
  return false;
}

}  // namespace

TEST(CoverPipeline, CachesTheDevicesFormOnceAndGivesItUnscaledForSizeZero) {
  CoverStore store({{"narrow.jpg", flatCover(300, 450, Qt::red)}, {"wide.jpg", flatCover(1200, 1800, Qt::gray)}});

  const Delivery narrow = deliver(store.url("narrow.jpg"));
  EXPECT_EQ(narrow.error, "");
  EXPECT_EQ(narrow.image.size(), QSize(300, 450));
  EXPECT_TRUE(narrow.image.isGrayscale()) << "a red cover, made grey for a grey panel";
  EXPECT_EQ(cachedCover(store.url("narrow.jpg")).size(), QSize(300, 450)) << "narrower than 400: unscaled";
  EXPECT_TRUE(cachedCover(store.url("narrow.jpg")).isGrayscale());

  EXPECT_EQ(deliver(store.url("wide.jpg"), QSize(0, 0)).image.size(), QSize(400, 600));
  EXPECT_EQ(cachedCover(store.url("wide.jpg")).size(), QSize(400, 600));

  EXPECT_EQ(deliver(store.url("narrow.jpg")).image.size(), QSize(300, 450));
  EXPECT_EQ(store.requests(), 2) << "the second delivery comes from the cache";
  EXPECT_EQ(coverFilePath(store.url("unknown.jpg")), "");
  EXPECT_FALSE(temporaryFilesLeft());
}

TEST(CoverPipeline, TheSameRatioWithinAThousandthIsScaledExactlyWithAFrameAndNoPad) {
  CoverStore store({{"cover.jpg", halvesCover(400, 600)}});

  const QImage small = deliver(store.url("cover.jpg"), QSize(200, 300)).image;
  ASSERT_EQ(small.size(), QSize(200, 300));
  EXPECT_LT(grey(small, 0, 250), 10) << "left edge of the frame";
  EXPECT_LT(grey(small, 198, 250), 10) << "right edge of the frame";
  EXPECT_GT(grey(small, 199, 250), 245) << "the last column is left out";
  EXPECT_LT(grey(small, 100, 298), 10);
  EXPECT_GT(grey(small, 100, 299), 245);

  const QImage large = deliver(store.url("cover.jpg"), QSize(1200, 1801)).image;
  ASSERT_EQ(large.size(), QSize(1200, 1801));
  EXPECT_GT(grey(large, 600, 1800), 245) << "the cover reaches the last row: no pad";
}

TEST(CoverPipeline, AnotherRatioIsCentredOnItsOwnMeanGreyInABlackFrame) {
  CoverStore store({{"halves.jpg", halvesCover(400, 600)}, {"white.jpg", flatCover(300, 300, Qt::white)}});

  const QImage square = deliver(store.url("halves.jpg"), QSize(400, 400)).image;
  ASSERT_EQ(square.size(), QSize(400, 400));
  EXPECT_NEAR(grey(square, 30, 100), 127, 10) << "pad left of the 267 pixels wide cover";
  EXPECT_NEAR(grey(square, 370, 300), 127, 10) << "pad right of it";
  EXPECT_LT(grey(square, 200, 50), 10);
  EXPECT_GT(grey(square, 200, 350), 245);
  EXPECT_LT(grey(square, 0, 100), 10);
  EXPECT_LT(grey(square, 398, 100), 10);
  EXPECT_NEAR(grey(square, 399, 100), 127, 10);

  const QImage tall = deliver(store.url("white.jpg"), QSize(200, 400)).image;
  ASSERT_EQ(tall.size(), QSize(200, 400));
  EXPECT_EQ(grey(tall, 100, 50), 255) << "a white cover has a white pad";
  EXPECT_EQ(grey(tall, 100, 350), 255);
  EXPECT_LT(grey(tall, 100, 0), 10);
}

TEST(CoverPipeline, AGreyPanelGetsTheDisplayAdjustmentAndAColourPanelKeepsTheColours) {
  CoverStore store({{"white.jpg", flatCover(300, 300, Qt::white)}, {"red.jpg", flatCover(300, 300, Qt::red)}});
  writeSetting("/mnt/ext1/system/config/global.cfg", "display_brightness", 50);

  EXPECT_NEAR(grey(deliver(store.url("white.jpg"), QSize(300, 300)).image, 150, 150), 127, 1);
  EXPECT_EQ(grey(cachedCover(store.url("white.jpg")), 150, 150), 255) << "the cache is not adjusted";

  writeSetting("/coreapp/config/device.cfg", "display_colormask", 1);
  const QImage colour = deliver(store.url("red.jpg"), QSize(300, 300)).image;
  EXPECT_GT(qRed(colour.pixel(150, 150)), 245);
  EXPECT_LT(qGreen(colour.pixel(150, 150)), 10);
  EXPECT_FALSE(cachedCover(store.url("red.jpg")).isGrayscale());
}

TEST(CoverPipeline, AnInvertedScreenGetsAnInvertedImageWhileTheCacheStaysAsItCame) {
  CoverStore store({{"white.jpg", flatCover(300, 450, Qt::white)}});
  writeSetting("/mnt/ext1/system/config/global.cfg", "screen_inversion", 1);

  EXPECT_EQ(grey(deliver(store.url("white.jpg")).image, 150, 200), 0);
  EXPECT_EQ(grey(cachedCover(store.url("white.jpg")), 150, 200), 255);
}

TEST(CoverPipeline, FailuresGiveTheirErrorAndLeaveNothingInTheCache) {
  CoverStore store({{"text.jpg", std::string("this is no image")}});
  ASSERT_TRUE(coverCache().addFile(store.url("gone.jpg"), brokenFile(), true));

  const Delivery noUrl = deliver("ftp://127.0.0.1/cover.jpg", QSize(100, 150));
  EXPECT_EQ(noUrl.error, "wrong id");
  EXPECT_TRUE(noUrl.image.isNull());
  EXPECT_EQ(store.requests(), 0);

  EXPECT_EQ(deliver(store.url("gone.jpg"), QSize(100, 150)).error, "wrong requset 404");
  EXPECT_EQ(coverFilePath(store.url("gone.jpg")), "") << "the broken file went with the failure";

  EXPECT_EQ(deliver(store.url("text.jpg"), QSize(100, 150)).error, "wrong image width");
  EXPECT_EQ(coverFilePath(store.url("text.jpg")), "");

  EXPECT_EQ(deliver("http://127.0.0.1:1/cover.jpg").error, "wrong requset 0") << "nobody listens";
  EXPECT_FALSE(temporaryFilesLeft());
}

TEST(CoverPipeline, ACacheFileThatDoesNotLoadIsReplacedByTheStoresCover) {
  CoverStore store({{"cover.jpg", flatCover(300, 450, Qt::white)}});
  ASSERT_TRUE(coverCache().addFile(store.url("cover.jpg"), brokenFile(), true));

  const Delivery delivery = deliver(store.url("cover.jpg"));
  EXPECT_EQ(delivery.error, "");
  EXPECT_EQ(delivery.image.size(), QSize(300, 450));
  EXPECT_EQ(store.requests(), 1);
  EXPECT_EQ(cachedCover(store.url("cover.jpg")).size(), QSize(300, 450));
}

// Through QML as the screens use it: the pool, the network request first, and an image that
// is dropped while its cover is still on the way.
TEST(CoverProvider, QmlImagesLoadThroughThePoolAfterAskingForTheNetwork) {
  CoverStore store({{"cover.jpg", flatCover(400, 600, Qt::white)}, {"slow.jpg", flatCover(400, 600, Qt::white)}});
  std::ofstream(DeviceRoot() + "/host/network_down").flush();
  QQmlEngine engine;
  engine.addImageProvider("url_image", new AsyncCoverProvider);
  QQmlComponent component(&engine);
  component.setData("import QtQuick 2.15\nImage { sourceSize.width: 200; sourceSize.height: 300 }", QUrl());
  std::unique_ptr<QObject> image(component.create());
  ASSERT_TRUE(image) << component.errorString().toStdString();

  std::unique_ptr<QObject> dropped(component.create());
  dropped->setProperty("source", QString::fromStdString("image://url_image/" + store.url("slow.jpg")));
  ASSERT_TRUE(lumenpress::testing::waitUntil([&] { return store.requests() == 1; }));
  dropped.reset();
  image->setProperty("source", QString::fromStdString("image://url_image/" + store.url("cover.jpg")));
  ASSERT_TRUE(lumenpress::testing::waitUntil([&] { return image->property("status").toInt() == 1; }));
  EXPECT_EQ(image->property("implicitWidth").toInt(), 200);
  EXPECT_EQ(image->property("implicitHeight").toInt(), 300);

  image->setProperty("source", QString::fromStdString("image://url_image/" + store.url("missing.jpg")));
  ASSERT_TRUE(lumenpress::testing::waitUntil([&] { return image->property("status").toInt() == 3; }));

  std::ifstream journal(DeviceRoot() + "/host/task_journal.jsonl");
  const std::string calls((std::istreambuf_iterator<char>(journal)), {});
  EXPECT_NE(calls.find("NetConnectSilent"), std::string::npos);
}

TEST(CoverProvider, QmlsOwnNetworkCacheLiesUnderTheDeviceRoot) {
  CachedNetworkAccessManagerFactory factory;
  std::unique_ptr<QNetworkAccessManager> manager(factory.create(nullptr));
  auto *cache = qobject_cast<QNetworkDiskCache *>(manager->cache());
  ASSERT_NE(cache, nullptr);
  EXPECT_TRUE(cache->cacheDirectory().startsWith(QString::fromStdString(DeviceRoot() + "/tmp")));
}
