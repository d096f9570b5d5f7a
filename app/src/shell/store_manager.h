// The composition root: holds the QML engine and the models, wires them together and
// publishes them to the screens.
#ifndef LUMENPRESS_APP_STORE_MANAGER_H
#define LUMENPRESS_APP_STORE_MANAGER_H

#include <QFutureWatcher>
#include <QObject>
#include <QQmlApplicationEngine>
#include <QString>

#include <string>
#include <vector>

#include "bookstore_api.h"
#include "category_tree_list_model.h"
#include "featured_links_model.h"
#include "feed_links_model.h"
#include "language_model.h"
#include "last_search_model.h"
#include "message_meneger.h"
#include "navigation_history.h"
#include "navigation_history_model.h"
#include "opds_list_data_model.h"
#include "opds_sort_model.h"
#include "search_hint_model.h"
#include "start_view.h"
#include "stores_model.h"
#include "user_data.h"
#include "user_menu_model.h"

class StoreManager : public QObject {
  Q_OBJECT
  Q_PROPERTY(bool isAudioEnabled READ hasAudio NOTIFY updateAudioAcces)
  Q_PROPERTY(StartView::EnStartView startView READ startView WRITE setStartView NOTIFY startViewChanged)

public:
  explicit StoreManager(QObject *parent = nullptr);

  // 0 when the root QML object exists, -1 when it could not be made.
  int Init(int argc, char **argv);
  QString opdsBaseUrl();
  void updateModelsUrl(bool update_api);
  void SaveDefaultStore(std::string url);

  StartView::EnStartView startView() const { return start_view_; }

signals:
  void updateAudioAcces();
  void startViewChanged(StartView::EnStartView startView);

public slots:
  void writeToLog(QString s);
  void getStoresList();
  bool hasAudio();
  void handleAccessTokenChanged();
  void handleFeedStatusChanged(QString url);
  void handleLoginFinished(bool result);
  void handleStoresChanged(QString url);
  void handleStoreLangCodeChanged(QString lang_code);
  void handelPreferedLanguageChanged();
  void handleForceLogOut();
  void handleFinished();
  void handleRootListLoaded(bool val);
  bool isSearchMode();
  void requireHQUpdate();
  void loadHomeModels();
  void allowRedraw();
  void setStartView(StartView::EnStartView startView);
  void runUpdateDesktop(bool force);
  void runUpdateDesktop();

private:
  void connectModels();
  void readStoreSettings();
  void publishToScreens();
  std::string apiBaseUrl() const;
  std::string currentStoreUrl() const { return stores_.currentUrl(); }

  bool is_search_mode_ = false;
  MessageMeneger *download_messenger_;
  UserData *user_data_;
  QQmlApplicationEngine engine_;
  OpdsListDataModel root_model_;
  OpdsListDataModel acquisition_model_;
  OpdsListDataModel audio_model_;
  NavigationHistory history_;
  FeaturedLinksModel featured_links_;
  FeedLinksModel feed_links_;
  NavigationHistoryModel history_model_;
  LastSearchModel last_search_;
  CategoryTreeListModel category_tree_;
  OpdsSortModel sort_model_;
  StoresModel stores_;
  LanguageModel language_;
  UserMenuModel user_menu_;
  SearchHintModel search_hints_;
  QFutureWatcher<std::vector<BookstoreApi::StoreInfo>> stores_watcher_;
  StartView::EnStartView start_view_ = StartView::Home;
};

#endif
