#include "store_manager.h"

#include <QQmlContext>
#include <QTimer>
#include <QUrl>
#include <QtConcurrent>
#include <QtQml>

#include <unistd.h>

#include <cstdio>

#include "async_cover_provider.h"
#include "book_detail_data_model.h"
#include "cached_network_access_manager_factory.h"
#include "cfg_wrapper.h"
#include "device_path.h"
#include "dotted_rectangle.h"
#include "eink_interface.h"
#include "feed_provider.h"
#include "hwconfig.h"
#include "legal_consent_check.h"
#include "lp_log.h"
#include "opds_genre_model.h"
#include "panelkit.h"
#include "panelkit_draw.h"
#include "smart_bitmap.h"

namespace {

using lumenpress::utilities::CfgWrapper;

constexpr char kBookstoreConfig[] = "/mnt/ext1/system/config/bookstore.cfg";
constexpr char kDesktopConfig[] = "/mnt/ext1/system/config/desktop_data.cfg";
constexpr char kHomeTiles[] = "/coreapp/bin/refresh_home_tiles.app";
// The language of the store list's request, whatever the device speaks.
constexpr char kStoresListLanguage[] = "en_DE";

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
StoreManager::StoreManager(QObject *parent)
    : QObject(parent), download_messenger_(new MessageMeneger(this)), user_data_(UserData::instance()) {
  Q_INIT_RESOURCE(qml);
  connectModels();
}

void StoreManager::connectModels() {
  connect(&FeedProvider::Instance(), &FeedProvider::feedStatusChanged, this, &StoreManager::handleFeedStatusChanged,
          Qt::QueuedConnection);
  connect(&stores_, &StoresModel::storesChanged, this, &StoreManager::handleStoresChanged);
  connect(&stores_, &StoresModel::storesChanged, OpdsGenreModel::instance(), &OpdsGenreModel::handleStoresChanged);
  connect(&stores_, &StoresModel::storeLangCodeChanged, this, &StoreManager::handleStoreLangCodeChanged);
  connect(&language_, &LanguageModel::preferablyLanguageChanged, this, &StoreManager::handelPreferedLanguageChanged);
  connect(&stores_watcher_, &QFutureWatcherBase::finished, this, &StoreManager::handleFinished);
  connect(user_data_, &UserData::loginFinished, this, &StoreManager::handleLoginFinished);
  connect(user_data_, &UserData::forceLogOut, this, &StoreManager::handleForceLogOut);
  connect(&FeedProvider::Instance(), &FeedProvider::needToRefreshToken, user_data_,
          &UserData::handleNeedToRefreshToken);
  connect(&stores_, &StoresModel::storesLoaded, &user_menu_, &UserMenuModel::handleStoreLoaded);
  connect(&language_, &LanguageModel::languageLoaded, &user_menu_, &UserMenuModel::handleLanguageLoaded);
  connect(&root_model_, &OpdsListDataModel::isListLoadingChanged, this, &StoreManager::handleRootListLoaded);
}

void StoreManager::setStartView(StartView::EnStartView startView) {
  if (start_view_ == startView) return;
  start_view_ = startView;
  emit startViewChanged(start_view_);
}

QString StoreManager::opdsBaseUrl() {
  const std::string &suffix = language_.storeSuffix();
  std::string url = stores_.currentUrl();
  if (!suffix.empty() && url.size() >= suffix.size()) url.replace(url.size() - suffix.size(), suffix.size(), suffix);
  return QString::fromStdString(url + "lpress/opds/");
}

int StoreManager::Init(int, char **) {
  QTimer::singleShot(30000, Qt::CoarseTimer, startParameterUpdater);
  const timespec start = stopwatch();
  catalogue().setDiskCache("/mnt/ext1/system/cache/bookstore_feeds_cache", "bookstore_feeds_cache");
  const UserData::StoreRunMode mode = user_data_->runMode();
  LegalConsentCheck::start(mode);
  if (mode == UserData::kRunStoreMode || mode == UserData::kSearchMode) drawSplash();
  connect(user_data_, &UserData::accessTokenChangedMainThread, this, &StoreManager::handleAccessTokenChanged);
  readStoreSettings();
  const std::string token = user_data_->getAccessToken();
  if (!token.empty()) catalogue().AddBearerCredentials(opdsBaseUrl().toStdString(), token);
  updateModelsUrl(true);
  OpdsGenreModel::instance()->handleStoresChanged(QString::fromStdString(currentStoreUrl()));
  getStoresList();
  publishToScreens();
  std::fprintf(stderr, "\n\n\n\n+++++++++++++++ All the STAFF takes %6.6f\n\n\n\n", secondsSince(start));
  requireHQUpdate();
  const timespec loading = stopwatch();
  engine_.load(QUrl(QStringLiteral("qrc:/qml/main.qml")));
  if (engine_.rootObjects().isEmpty()) return -1;
  std::fprintf(stderr, "\n\n\n\n+++++++++++++++ engine_.load %6.6f\n\n\n\n", secondsSince(loading));
  return 0;
}

// The store and content language chosen last; an empty store puts the built-in one in force.
void StoreManager::readStoreSettings() {
  const CfgWrapper config(kBookstoreConfig, 0);
  catalogue().SetFileDownloadFolder(config.read<std::string>("download_folder", "/mnt/ext1/Downloads"));
  const std::string store = config.read<std::string>("default_store", "");
  const std::string content = config.read<std::string>("default_content", "");
  stores_.setFallbackUrl(LP_DEFAULT_STORE_URL);
  language_.setContent(content);
  stores_.setCurrentUrl(store);
}

void StoreManager::publishToScreens() {
  qmlRegisterUncreatableType<StartView>("com.lumenpress.bookstore", 1, 0, "StartView", QString());
  QQmlContext *context = engine_.rootContext();
  context->setContextProperty("StoresModel", &stores_);
  context->setContextProperty("LanguageModel", &language_);
  acquisition_model_.setLoadSubmodels(false);
  context->setContextProperty("AudioModel", &audio_model_);
  engine_.setNetworkAccessManagerFactory(new CachedNetworkAccessManagerFactory(this));
  context->setContextProperty("RootListModel", &root_model_);
  context->setContextProperty("DetailModel", &BookDetailDataModel::Instance());
  context->setContextProperty("AcquisitionListModel", &acquisition_model_);
  context->setContextProperty("NavigationHistory", &history_);
  context->setContextProperty("FeedLinksModel", &feed_links_);
  context->setContextProperty("FeaturedLinksModel", &featured_links_);
  context->setContextProperty("DownloadingMessenger", download_messenger_);
  history_model_.SetHistory(&history_);
  context->setContextProperty("NavigationHistoryModel", &history_model_);
  context->setContextProperty("LastSearch", &last_search_);
  context->setContextProperty("CategoryTreeListModel", &category_tree_);
  context->setContextProperty("GenreModel", OpdsGenreModel::instance());
  context->setContextProperty("SortModel", &sort_model_);
  context->setContextProperty("StoreManager", this);
  context->setContextProperty("UserMenu", &user_menu_);
  context->setContextProperty("SearchSuggestion", &search_hints_);
  const auto user = [](QQmlEngine *, QJSEngine *) -> QObject * {
    QQmlEngine::setObjectOwnership(UserData::instance(), QQmlEngine::CppOwnership);
    return UserData::instance();
  };
  qmlRegisterType<NavigationHistory>("qml.bookstore", 1, 0, "HistoryElementType");
  qmlRegisterSingletonType<UserData>("qml.bookstore", 1, 0, "BookStatus", user);
  qmlRegisterSingletonType<UserData>("qml.bookstore", 1, 0, "PaymentError", user);
  qmlRegisterType<UserMenuModel>("qml.bookstore", 1, 0, "MenuElementType");
  qmlRegisterType<DottedRectangle>("qml.bookstore", 1, 0, "DottedRectangle");
  engine_.addImageProvider(QStringLiteral("url_image"), new AsyncCoverProvider);
  qmlRegisterSingletonType(QUrl(QStringLiteral("qrc:/qml/BookstoreConstants.qml")), "com.lumenpress.bookstore", 1, 0,
                           "BookstoreConstants");
  context->setContextProperty("UserData", user_data_);
}

// Whenever the store or the language changes.
void StoreManager::updateModelsUrl(bool update_api) {
  const QString base = opdsBaseUrl();
  const QString content = QString::fromStdString(language_.content());
  root_model_.setModelToUrl(base + "home" + content);
  if (_device_has_audio()) audio_model_.setModelToUrl(base + "audio" + content);
  history_.popItems(100);
  history_.pushRootItem(base + "home" + content);
  feed_links_.setListUrl(base + "home" + content, -1);
  featured_links_.setListUrl(base + "home" + content);
  category_tree_.setModelToUrl(base + "genres" + content);
  language_.setModelToUrl(base + "home" + content);
  if (!update_api) return;
  const std::string api = apiBaseUrl();
  LP_LOG(LP_LOG_INFO, " == == == == SET API BASE URL %s", api.c_str());
  user_data_->setApiBaseUrl(api);
  search_hints_.setBaseUrl(api);
}

// The lighter form the screens call at start.
void StoreManager::loadHomeModels() {
  const QString base = opdsBaseUrl();
  const QString content = QString::fromStdString(language_.content());
  root_model_.setModelToUrl(base + "home" + content);
  if (_device_has_audio()) audio_model_.setModelToUrl(base + "audio" + content);
  category_tree_.setModelToUrl(base + "genres" + content);
  language_.setModelToUrl(base + "home" + content);
  const std::string api = apiBaseUrl();
  LP_LOG(LP_LOG_INFO, " == == == == SET API BASE URL [%s]", api.c_str());
  user_data_->setApiBaseUrl(api);
  search_hints_.setBaseUrl(api);
}

// A disabled store is not asked: the built-in one answers for it.
std::string StoreManager::apiBaseUrl() const {
  return stores_.isDisabled() ? std::string(LP_DEFAULT_STORE_URL) : currentStoreUrl();
}

void StoreManager::SaveDefaultStore(std::string url) {
  CfgWrapper config(kBookstoreConfig, 1);
  config.write<std::string>("default_store", url);
  config.save();
  LP_LOG(LP_LOG_INFO, "++++++++++++++++++++++++++++++++++ SaveDefaultStore %s", url.c_str());
  runUpdateDesktop(true);
}

// Every store of the storefront answers with the same list; the one in use is asked, so that a
// store given at run time needs no second address.
void StoreManager::getStoresList() {
  stores_watcher_.setFuture(QtConcurrent::run(QThreadPool::globalInstance(), [url = currentStoreUrl()] {
    BookstoreApi api([] {});
    api.setBaseUrl(url);
    return api.getStores(kStoresListLanguage);
  }));
}

void StoreManager::handleFinished() {
  if (stores_watcher_.isFinished() && !stores_watcher_.isCanceled()) stores_.setStores(stores_watcher_.result());
}

void StoreManager::handleStoresChanged(QString url) {
  language_.resetContent();
  search_hints_.resetSuggestion();
  if (user_data_->isLoggedIn()) catalogue().AddBearerCredentials(url.toStdString(), user_data_->getAccessToken());
  if (!stores_.isDisabled()) {
    CfgWrapper config(kBookstoreConfig, 1);
    config.remove("default_store");
    config.remove("default_content");
    config.save();
    config.closeNoSave();
    SaveDefaultStore(url.toStdString());
  }
  updateModelsUrl(true);
}

void StoreManager::handleStoreLangCodeChanged(QString lang_code) {
  if (stores_.isDisabled()) return;
  CfgWrapper config(kBookstoreConfig, 1);
  config.write<std::string>("default_store_lang_code", lang_code.toStdString());
  config.save();
}

// Kept as the device keeps it: the catalogue's base, which the next start does not find among
// the stores and so falls back to the first.
void StoreManager::handelPreferedLanguageChanged() {
  updateModelsUrl(true);
  CfgWrapper config(kBookstoreConfig, 1);
  config.write<std::string>("default_content", language_.content());
  config.write<std::string>("default_store", opdsBaseUrl().toStdString());
  config.save();
}

void StoreManager::handleForceLogOut() {
  {
    CfgWrapper config(kBookstoreConfig, 1);
    config.remove("default_content");
    const std::string first = stores_.firstStoreUrl();
    if (first.empty()) {
      config.remove("default_store");
    } else {
      config.write<std::string>("default_store", first);
    }
    config.remove("last_notify_email");
    config.save();
  }
  language_.resetContent();
  stores_.setModelToIndex(0, true);
  updateModelsUrl(true);
  runUpdateDesktop(true);
}

void StoreManager::handleAccessTokenChanged() {
  catalogue().AddBearerCredentials(opdsBaseUrl().toStdString(), user_data_->getAccessToken());
}

void StoreManager::handleLoginFinished(bool) {
  runUpdateDesktop(false);
}

void StoreManager::handleFeedStatusChanged(QString) {}

void StoreManager::handleRootListLoaded(bool val) {
  emit updateAudioAcces();
  if (val) LP_LOG(LP_LOG_INFO, "HANDLE ROOT LIST LOADED %s, has_audio %s", "true", hasAudio() ? "true" : "false");
}

bool StoreManager::hasAudio() {
  return _device_has_audio() != 0;
}

bool StoreManager::isSearchMode() {
  return is_search_mode_;
}

// The desktop's tiles show the store's books; they are fetched anew for another store or user.
void StoreManager::runUpdateDesktop(bool force) {
  int task = FindTaskByAppName("refresh_home_tiles.app");
  if (task > 0) {
    CloseTask(task, 0, 1);
    for (int i = 0; i < 10 && (task = FindTaskByAppName("refresh_home_tiles.app")) > 0; ++i) usleep(100000);
  }
  if (force && access(lumenpress::platform::MapDevicePath(kDesktopConfig).c_str(), F_OK) == 0) {
    CfgWrapper desktop(kDesktopConfig, 1);
    desktop.remove("last_sync_time");
    desktop.save();
  }
  OpenTask(kHomeTiles, 0, nullptr, 37);
}

void StoreManager::runUpdateDesktop() {
  runUpdateDesktop(false);
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
