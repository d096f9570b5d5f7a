#include "store_manager.h"

#include <QQmlContext>
#include <QTimer>
#include <QUrl>
#include <QtQml>

#include <cstdio>

#include "async_cover_provider.h"
#include "cached_network_access_manager_factory.h"
#include "dotted_rectangle.h"
#include "eink_interface.h"
#include "feed_provider.h"
#include "hwconfig.h"
#include "lp_log.h"
#include "panelkit.h"
#include "panelkit_draw.h"
#include "smart_bitmap.h"

namespace {

constexpr char kBookstoreConfig[] = "/mnt/ext1/system/config/bookstore.cfg";

double secondsSince(const timespec &start) {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return static_cast<double>(now.tv_sec - start.tv_sec) + (now.tv_nsec - start.tv_nsec) / 1000000000.0;
}

timespec stopwatch() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return now;
}

// The device fetches its unit parameters once the store has settled.
void startParameterUpdater() {
  const char *const argv[] = {"-f", "-r"};
  OpenTask("/coreapp/bin/fetch_unit_params.app", 2, argv, 0);
}

// Drawn straight on the panel, so that the owner sees the store long before the screens are
// compiled.
void drawSplash() {
  const lumenpress::utilities::SmartBitmap splash("splash_screen", false);
  if (splash.empty()) return;
  FillArea(0, 0, ScreenWidth(), ScreenHeight(), 0x00FFFFFF);
  const int y = static_cast<int>((ScreenHeight() - PanelHeight()) * 0.372);
  DrawBitmap((ScreenWidth() - splash.width()) / 2, y, splash.get());
  PartialUpdate(0, 0, ScreenWidth(), ScreenHeight());
}

lumenpress::opds::DataManager &catalogue() {
  return FeedProvider::Instance().dataManager();
}

lumenpress::utilities::EinkPlatform *panel() {
  return lumenpress::utilities::EinkInterface::instance()->platform();
}

}  // namespace

// The screens are compiled into this library; a static library's resources need registering.
StoreManager::StoreManager(QObject *parent) : QObject(parent), download_messenger_(new MessageMeneger(this)) {
  Q_INIT_RESOURCE(qml);
}

void StoreManager::setStartView(StartView::EnStartView startView) {
  if (start_view_ == startView) return;
  start_view_ = startView;
  emit startViewChanged(start_view_);
}

QString StoreManager::opdsBaseUrl() {
  return QString::fromStdString(store_url_ + "lpress/opds/");
}

int StoreManager::Init(int, char **) {
  QTimer::singleShot(30000, Qt::CoarseTimer, startParameterUpdater);
  const timespec start = stopwatch();
  catalogue().setDiskCache("/mnt/ext1/system/cache/bookstore_feeds_cache", "bookstore_feeds_cache");
  drawSplash();
  readStoreSettings();
  publishToScreens();
  std::fprintf(stderr, "\n\n\n\n+++++++++++++++ All the STAFF takes %6.6f\n\n\n\n", secondsSince(start));
  requireHQUpdate();
  const timespec loading = stopwatch();
  engine_.load(QUrl(QStringLiteral("qrc:/qml/main.qml")));
  if (engine_.rootObjects().isEmpty()) return -1;
  std::fprintf(stderr, "\n\n\n\n+++++++++++++++ engine_.load %6.6f\n\n\n\n", secondsSince(loading));
  return 0;
}

void StoreManager::readStoreSettings() {
  lpconfig *config = OpenConfig(kBookstoreConfig, 0);
  std::string folder = ReadString(config, "download_folder", "/mnt/ext1/Downloads");
  catalogue().SetFileDownloadFolder(folder);
  store_url_ = ReadString(config, "default_store", "");
  CloseConfigNoSave(config);
  if (store_url_.empty()) store_url_ = LP_DEFAULT_STORE_URL;
}

void StoreManager::publishToScreens() {
  qmlRegisterUncreatableType<StartView>("com.lumenpress.bookstore", 1, 0, "StartView", QString());
  QQmlContext *context = engine_.rootContext();
  acquisition_model_.setLoadSubmodels(false);
  engine_.setNetworkAccessManagerFactory(new CachedNetworkAccessManagerFactory(this));
  context->setContextProperty("AudioModel", &audio_model_);
  context->setContextProperty("RootListModel", &root_model_);
  context->setContextProperty("AcquisitionListModel", &acquisition_model_);
  context->setContextProperty("DownloadingMessenger", download_messenger_);
  context->setContextProperty("StoreManager", this);
  qmlRegisterType<DottedRectangle>("qml.bookstore", 1, 0, "DottedRectangle");
  engine_.addImageProvider(QStringLiteral("url_image"), new AsyncCoverProvider);
  qmlRegisterSingletonType(QUrl(QStringLiteral("qrc:/qml/BookstoreConstants.qml")), "com.lumenpress.bookstore", 1, 0,
                           "BookstoreConstants");
}

void StoreManager::loadHomeModels() {
  const QString base = opdsBaseUrl();
  root_model_.setModelToUrl(base + "home");
  if (_device_has_audio()) audio_model_.setModelToUrl(base + "audio");
  LP_LOG(LP_LOG_INFO, " == == == == SET API BASE URL [%s]", store_url_.c_str());
}

void StoreManager::requireHQUpdate() {
  if (auto *platform = panel()) platform->requestUpdate(5);
}

void StoreManager::allowRedraw() {
  if (auto *platform = panel()) platform->allowRedraw(1, 1);
}

void StoreManager::writeToLog(QString s) {
  LP_LOG(LP_LOG_INFO, "%s", s.toLocal8Bit().constData());
}
